// Guile through its C interface. What it has as a procedure alone is compiled for its virtual machine.

#include <bench/peers/Conses.h>

#include <gc/gc.h>
#include <libguile.h>

#include <cstdlib>
#include <string>

namespace {

struct Guile {
  using Value = SCM;
  // The garbage collector looks at static data.
  static Value roots[4];

  // --- Conses and atoms ---

  static Value Nil() { return SCM_EOL; }
  static bool IsNil(Value value) { return scm_is_null(value); }
  static bool IsCons(Value value) { return scm_is_pair(value); }
  static Value Cons(Value first, Value rest) { return scm_cons(first, rest); }
  static Value Car(Value cons) { return SCM_CAR(cons); }
  static Value Cdr(Value cons) { return SCM_CDR(cons); }
  static void SetCdr(Value cons, Value rest) { SCM_SETCDR(cons, rest); }

  static Value Integer(long number) { return SCM_I_MAKINUM(number); }
  static Value Real(double number) { return scm_from_double(number); }
  static Value Text(const wchar_t* text, size_t length) {
    return scm_from_utf32_stringn(reinterpret_cast<const scm_t_wchar*>(text), length);
  }

  static long ToInteger(Value value) { return SCM_I_INUM(value); }
  static double ToReal(Value value) { return SCM_REAL_VALUE(value); }
  // The platform's heap is the standard one, as Guile's copy is.
  static wchar_t* PlatformText(Value value) {
    return reinterpret_cast<wchar_t*>(scm_to_utf32_stringn(value, nullptr));
  }
  static std::string Characters(Value value) {
    size_t length = 0;
    char* const characters = scm_to_utf8_stringn(value, &length);
    std::string text(characters, length);
    std::free(characters);
    return text;
  }
  static void AddAtom(Value value, Digest& digest) {
    if (SCM_I_INUMP(value))
      digest.Integer(ToInteger(value));
    else if (scm_is_string(value))
      digest.Characters(Characters(value));
    else
      digest.Real(ToReal(value));
  }

  // --- A call ---

  static Value Pick(Value a, Value, Value c, Value, Value e) { return scm_list_3(a, c, e); }
  static Value CallPick(Value arguments) {
    static const Value function = scm_c_make_gsubr("pick", 5, 0, 0, reinterpret_cast<scm_t_subr>(Pick));
    return scm_apply_0(function, arguments);
  }

  // --- Text ---

  static Value TextToRead(const std::string& text) { return scm_from_utf8_stringn(text.data(), text.size()); }
  static Value Read(Value text) { return scm_read(scm_open_input_string(text)); }
  // Member by member: within one list, Guile compares each cons with all members so far, which is quadratic.
  static Value Print(Value list) {
    const Value port = scm_open_output_string();
    scm_c_write(port, "(", 1);
    for (; IsCons(list); list = Cdr(list)) {
      scm_write(Car(list), port);
      scm_c_write(port, " ", 1);
    }
    scm_c_write(port, ")", 1);
    return scm_get_output_string(port);
  }

  // --- Lists ---

  static Value DeepCopy(Value value) {
    static const Value procedure = scm_c_public_ref("ice-9 copy-tree", "copy-tree");
    return scm_call_1(procedure, value);
  }
  static bool Equal(Value a, Value b) { return scm_is_true(scm_equal_p(a, b)); }
  static Value CopyOfList(Value list) { return scm_list_copy(list); }
  static Value ReverseInPlace(Value list) { return scm_reverse_x(list, SCM_EOL); }
  static Value Append(Value a, Value b) { return scm_append(scm_list_2(a, b)); }
  static Value Assoc(Value key, Value pairs) { return scm_assoc(key, pairs); }
  static Value Member(Value member, Value list) { return scm_member(member, list); }
  static Value Position(Value member, Value list) {
    static const Value procedure = Compiled(
        "(lambda (member list) (let next ((rest list) (position 0))"
        "  (if (equal? (car rest) member) position (next (cdr rest) (+ position 1)))))");
    return scm_call_2(procedure, member, list);
  }
  static Value Substitute(Value newMember, Value oldMember, Value list) {
    static const Value procedure =
        Compiled("(lambda (new old list) (map (lambda (member) (if (equal? member old) new member)) list))");
    return scm_call_3(procedure, newMember, oldMember, list);
  }
  static Value Remove(Value member, Value list) { return scm_delete(member, list); }

  static Value SortNumbers(Value list) {
    static const Value before = scm_c_public_ref("guile", "<");
    return scm_sort_list_x(list, before);
  }
  static Value SortTexts(Value list) {
    static const Value before = scm_c_public_ref("guile", "string<?");
    return scm_sort_list_x(list, before);
  }
  static Value SortPairs(Value list) {
    static const Value before = Compiled("(lambda (a b) (< (car a) (car b)))");
    return scm_sort_list_x(list, before);
  }

  // --- Memory ---

  static size_t HeapBytes() { return GC_get_total_bytes(); }
  static Value NewVector(int size) { return scm_c_make_vector(static_cast<size_t>(size), SCM_EOL); }
  static void SetSlot(Value vector, int position, Value value) {
    scm_c_vector_set_x(vector, static_cast<size_t>(position), value);
  }
  static Value Slot(Value vector, int position) {
    return scm_c_vector_ref(vector, static_cast<size_t>(position));
  }

  // --- The system ---

  static Value Compiled(const char* procedure) {
    const std::string expression =
        std::string("(begin (use-modules (system base compile)) (compile '") + procedure + "))";
    return scm_c_eval_string(expression.c_str());
  }
};

Guile::Value Guile::roots[4];

}  // namespace

Workload MakeWorkload(const std::string& row, int size) {
  scm_init_guile();
  for (SCM& root : Guile::roots) root = SCM_EOL;
  return Conses<Guile>::Make(row, size);
}
