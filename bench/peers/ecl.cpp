// ECL through its C interface.

#include <bench/peers/Conses.h>

#include <ecl/ecl.h>
#include <gc/gc.h>

#include <algorithm>
#include <cstring>
#include <string>

namespace {

using AnyFunction = void (*)();

struct Ecl {
  using Value = cl_object;
  static Value roots[4];

  // --- Conses and atoms ---

  static Value Nil() { return ECL_NIL; }
  static bool IsNil(Value value) { return Null(value); }
  static bool IsCons(Value value) { return ECL_CONSP(value); }
  static Value Cons(Value first, Value rest) { return ecl_cons(first, rest); }
  static Value Car(Value cons) { return ECL_CONS_CAR(cons); }
  static Value Cdr(Value cons) { return ECL_CONS_CDR(cons); }
  static void SetCdr(Value cons, Value rest) { ECL_RPLACD(cons, rest); }

  static Value Integer(long number) { return ecl_make_fixnum(number); }
  static Value Real(double number) { return ecl_make_double_float(number); }
  // Characters of one byte where all are ASCII.
  static Value Text(const wchar_t* text, size_t length) {
    if (std::any_of(text, text + length, [](wchar_t c) { return c > 127; })) return WideText(text, length);
    const Value value = ecl_alloc_simple_base_string(static_cast<cl_index>(length));
    std::transform(text, text + length, value->base_string.self,
                   [](wchar_t c) { return static_cast<ecl_base_char>(c); });
    return value;
  }
  static Value WideText(const wchar_t* text, size_t length) {
    const Value value = ecl_alloc_simple_extended_string(static_cast<cl_index>(length));
    std::memcpy(value->string.self, text, length * sizeof(wchar_t));
    return value;
  }

  static long ToInteger(Value value) { return ecl_fixnum(value); }
  static double ToReal(Value value) { return ecl_double_float(value); }
  static wchar_t* PlatformText(Value value) {
    const size_t length = value->string.fillp;
    auto* const text = static_cast<wchar_t*>(acad_malloc((length + 1) * sizeof(wchar_t)));
    if (ECL_BASE_STRING_P(value))
      std::copy_n(value->base_string.self, length, text);
    else
      std::memcpy(text, value->string.self, length * sizeof(wchar_t));
    text[length] = 0;
    return text;
  }
  static std::string Characters(Value value) {
    std::string text;
    for (cl_index i = 0; i < value->string.fillp; ++i) text += static_cast<char>(ecl_char(value, i));
    return text;
  }
  static void AddAtom(Value value, Digest& digest) {
    if (ECL_FIXNUMP(value))
      digest.Integer(ToInteger(value));
    else if (ECL_STRINGP(value))
      digest.Characters(Characters(value));
    else
      digest.Real(ToReal(value));
  }

  // --- A call ---

  static Value Pick(Value a, Value, Value c, Value, Value e) { return cl_list(3, a, c, e); }
  static Value CallPick(Value arguments) {
    static const Value function = Function(reinterpret_cast<AnyFunction>(Pick), 5);
    return cl_apply(2, function, arguments);
  }

  // --- Text ---

  static Value TextToRead(const std::string& text) {
    return ecl_make_simple_base_string(text.c_str(), static_cast<cl_fixnum>(text.size()));
  }
  static Value Read(Value text) {
    return cl_read(1, ecl_make_string_input_stream(text, 0, text->base_string.fillp));
  }
  static Value Print(Value value) {
    const Value stream = ecl_make_string_output_stream(0, 0);
    ecl_prin1(value, stream);
    return cl_get_output_stream_string(stream);
  }
  static Value Format() {
    static const Value control = Kept(ecl_make_constant_base_string("~5D ~8,3F ~A ~X ~E ~C", -1));
    static const Value text = Kept(Text(kFormatText, 4));
    return cl_format(8, ECL_NIL, control, Integer(kFormatInteger), Real(kFormatReal), text,
                     Integer(kFormatHexadecimal), Real(kFormatExponent), ECL_CODE_CHAR(*kFormatCharacter));
  }

  // --- Lists ---

  static Value DeepCopy(Value value) { return cl_copy_tree(value); }
  static bool Equal(Value a, Value b) { return ecl_equal(a, b); }
  static Value CopyOfList(Value list) { return cl_copy_list(list); }
  static Value ReverseInPlace(Value list) { return cl_nreverse(list); }
  static Value Append(Value a, Value b) { return ecl_append(a, b); }
  static Value Assoc(Value key, Value pairs) { return ecl_assoc(key, pairs); }
  static Value Member(Value member, Value list) { return ecl_member(member, list); }
  static Value Position(Value member, Value list) {
    static const Value test = Symbol(":TEST");
    static const Value equal = cl_symbol_function(Symbol("EQUAL"));
    return cl_position(4, member, list, test, equal);
  }
  static Value Substitute(Value newMember, Value oldMember, Value list) {
    return cl_substitute(3, newMember, oldMember, list);
  }
  static Value Remove(Value member, Value list) { return cl_remove(2, member, list); }

  // The orders are compiled for the keys that there are.
  static Value Truth(bool isTrue) { return isTrue ? ECL_T : ECL_NIL; }
  static Value NumberBefore(Value a, Value b) {
    if (ECL_FIXNUMP(a) && ECL_FIXNUMP(b)) return Truth(ecl_fixnum(a) < ecl_fixnum(b));
    return Truth(ecl_double_float(a) < ecl_double_float(b));
  }
  static Value TextBefore(Value a, Value b) {
    const auto* const first = a->base_string.self;
    const auto* const second = b->base_string.self;
    return Truth(std::lexicographical_compare(first, first + a->base_string.fillp, second,
                                              second + b->base_string.fillp));
  }
  static Value PairBefore(Value a, Value b) { return Truth(ecl_fixnum(Car(a)) < ecl_fixnum(Car(b))); }
  static Value SortNumbers(Value list) { return SortBy<NumberBefore>(list); }
  static Value SortTexts(Value list) { return SortBy<TextBefore>(list); }
  static Value SortPairs(Value list) { return SortBy<PairBefore>(list); }

  template <Value (*before)(Value, Value)>
  static Value SortBy(Value list) {
    static const Value function = Function(reinterpret_cast<AnyFunction>(before), 2);
    return cl_sort(2, list, function);
  }

  // --- Memory ---

  static size_t HeapBytes() { return GC_get_total_bytes(); }
  static Value NewVector(int size) {
    const Value vector = ecl_alloc_simple_vector(static_cast<cl_index>(size), ecl_aet_object);
    std::fill_n(vector->vector.self.t, size, ECL_NIL);
    return vector;
  }
  static void SetSlot(Value vector, int position, Value value) { vector->vector.self.t[position] = value; }
  static Value Slot(Value vector, int position) { return vector->vector.self.t[position]; }

  // --- The system ---

  static Value Kept(Value value) {
    static Value kept = ECL_NIL;
    if (Null(kept)) ecl_register_root(&kept);
    kept = ecl_cons(value, kept);
    return value;
  }
  static Value Function(AnyFunction code, int arguments) {
    return Kept(ecl_make_cfun(reinterpret_cast<cl_objectfn_fixed>(code), ECL_NIL, ECL_NIL, arguments));
  }
  static Value Symbol(const char* name) { return Kept(ecl_read_from_cstring(name)); }

  static void Start() {
    static char name[] = "ecl";
    static char* arguments[] = {name};
    // No limit that would end a large list.
    ecl_set_option(ECL_OPT_HEAP_SIZE, 0);
    cl_boot(1, arguments);
    for (Value& root : roots) {
      root = ECL_NIL;
      ecl_register_root(&root);
    }
    cl_eval(
        ecl_read_from_cstring("(setf *print-pretty* nil *print-circle* nil *print-readably* nil"
                              "      *read-default-float-format* 'double-float)"));
  }
};

Ecl::Value Ecl::roots[4];

}  // namespace

Workload MakeWorkload(const std::string& row, int size) {
  Ecl::Start();
  return Conses<Ecl>::Make(row, size);
}
