#include <shell/Values.h>

#include <lomlisp/platform/suite.h>

#include <embedded/Nesting.h>

#include <cstdint>
#include <utility>
#include <vector>

namespace lomlisp::shell {

namespace {

using embedded::Chain;
using embedded::Mark;
using embedded::Record;

cl_object EntityNameType() {
  static const cl_object type = LomSymbol("ENTITY-NAME");
  return type;
}
cl_object SelectionSetType() {
  static const cl_object type = LomSymbol("SELECTION-SET");
  return type;
}

std::wstring PrintedText(cl_object value) { return TextOf(cl_funcall(2, LomSymbol("PRINT-VALUE"), value)); }

// --- From values to records ---

Record IntegerRecord(cl_object value) {
  if (ecl_numberp(value) && ecl_number_compare(value, ecl_make_int32_t(INT32_MAX)) <= 0 &&
      ecl_number_compare(value, ecl_make_int32_t(INT32_MIN)) >= 0) {
    const int32_t number = ecl_to_int32_t(value);
    Record record = Mark(std::in_range<short>(number) ? RTSHORT : RTLONG);
    if (record.type == RTSHORT)
      record.value.rint = static_cast<short>(number);
    else
      record.value.rlong = number;
    return record;
  }
  throw LispError(L"bad argument type: fixnump: " + PrintedText(value));
}

Record RealRecord(double real) {
  Record record = Mark(RTREAL);
  record.value.rreal = real;
  return record;
}

Record TextRecord(cl_object value) {
  Record record = Mark(RTSTR);
  record.text = TextOf(value);
  record.hasText = true;
  // A text in a record ends at its first NUL.
  record.text.resize(std::min(record.text.size(), record.text.find(L'\0')));
  return record;
}

Record NameRecord(cl_object value, short type, cl_object kind) {
  Record record = Mark(type);
  for (cl_fixnum word = 0; word < 2; ++word)
    record.value.rlname[word] = ecl_to_int64_t(ecl_structure_ref(value, kind, word));
  return record;
}

Record AtomRecord(cl_object value) {
  if (value == ECL_NIL) return Mark(RTNIL);
  if (value == ECL_T) return Mark(RTT);
  if (ECL_STRINGP(value)) return TextRecord(value);
  if (cl_integerp(value) != ECL_NIL) return IntegerRecord(value);
  if (cl_floatp(value) != ECL_NIL) return RealRecord(ecl_to_double(value));
  if (cl_typep(2, value, EntityNameType()) != ECL_NIL) return NameRecord(value, RTENAME, EntityNameType());
  if (cl_typep(2, value, SelectionSetType()) != ECL_NIL)
    return NameRecord(value, RTPICKS, SelectionSetType());
  throw LispError(L"bad argument value: no chain can hold it: " + PrintedText(value));
}

// --- From records to values ---

cl_object RealsOf(const double* reals, size_t count) {
  cl_object list = ECL_NIL;
  while (count > 0) list = ecl_cons(ecl_make_double_float(reals[--count]), list);
  return list;
}

cl_object NameOf(const Record& record, const char* maker) {
  return cl_funcall(3, LomSymbol(maker), ecl_make_int64_t(record.value.rlname[0]),
                    ecl_make_int64_t(record.value.rlname[1]));
}

// LISP has integers of 32 bits.
cl_object Int64Of(int64_t number) {
  return std::in_range<int32_t>(number) ? ecl_make_int32_t(static_cast<int32_t>(number))
                                        : ecl_make_double_float(static_cast<double>(number));
}

cl_object AtomOf(const Record& record, short type) {
  switch (type) {
    case RTREAL:
    case RTANG:
    case RTORINT:
      return ecl_make_double_float(record.value.rreal);
    case RTPOINT:
      return RealsOf(record.value.rpoint, 2);
    case RT3DPOINT:
      return RealsOf(record.value.rpoint, 3);
    case RTSHORT:
      return ecl_make_int32_t(record.value.rint);
    case RTLONG:
      return ecl_make_int32_t(record.value.rlong);
    case RTINT64:
      return Int64Of(record.value.mnInt64);
    case RTSTR:
    case RTDXF0:
      return record.hasText ? LispText(record.text) : ECL_NIL;
    case RTENAME:
      return NameOf(record, "NAME-OF-ENTITY");
    case RTPICKS:
      return NameOf(record, "NAME-OF-SELECTION-SET");
    case RTT:
      return ECL_T;
    case RTVOID:
      return cl_funcall(2, LomSymbol("HOST-SYMBOL"), LispText(L""));
    default:
      return ECL_NIL;
  }
}

// A group is the pair of its code and its value, which makes a point a list of four.
cl_object ItemOf(const Record& record) {
  const short type = DxfType(record.type);
  const cl_object value = AtomOf(record, type);
  const bool isGroup = type != record.type || record.type == RTDXF0;
  if (!isGroup) return value;
  return ecl_cons(ecl_make_int32_t(record.type == RTDXF0 ? 0 : record.type), value);
}

// What a dot makes of the items behind it. The library writes (a b . c) with the dot behind its first item:
// of several items the last one is the end of the list.
cl_object TailOf(cl_object items) {
  if (ecl_cdr(items) == ECL_NIL) return ecl_car(items);
  cl_object cons = items;
  for (; ecl_cdr(ecl_cdr(cons)) != ECL_NIL; cons = ecl_cdr(cons)) {
  }
  cl_rplacd(cons, ecl_car(ecl_cdr(cons)));
  return items;
}

// The list of the chain's items, built from its end: what is behind a bracket that closes waits in `outer`.
cl_object ItemsOf(const Chain& chain) {
  cl_object items = ECL_NIL;
  cl_object outer = ECL_NIL;
  for (auto record = chain.rbegin(); record != chain.rend(); ++record) {
    switch (record->type) {
      case RTLE:
        outer = ecl_cons(items, outer);
        items = ECL_NIL;
        break;
      case RTLB:
        items = ecl_cons(items, ecl_car(outer));
        outer = ecl_cdr(outer);
        break;
      case RTDOTE:
        items = TailOf(items);
        break;
      default:
        items = ecl_cons(ItemOf(*record), items);
    }
  }
  return items;
}

}  // namespace

void AppendItem(Chain& chain, cl_object value) {
  // What is still to be written of the lists that are open; all of it hangs on `value`.
  std::vector<cl_object> rests;
  for (cl_object next = value;;) {
    if (ECL_CONSP(next)) {
      chain.push_back(Mark(RTLB));
      rests.push_back(ecl_cdr(next));
      next = ecl_car(next);
      continue;
    }
    chain.push_back(AtomRecord(next));
    while (!rests.empty() && rests.back() == ECL_NIL) {
      chain.push_back(Mark(RTLE));
      rests.pop_back();
    }
    if (rests.empty()) return;
    const cl_object rest = rests.back();
    if (ECL_CONSP(rest)) {
      rests.back() = ecl_cdr(rest);
      next = ecl_car(rest);
    } else {
      chain.push_back(Mark(RTDOTE));
      rests.back() = ECL_NIL;
      next = rest;
    }
  }
}

cl_object ValueOf(const Chain& chain) {
  const cl_object items = ItemsOf(embedded::WithDotsBeforeLast(chain));
  const bool isRunOfGroups = !chain.empty() && DxfType(chain.front().type) != chain.front().type;
  const bool isOneItem = !isRunOfGroups && items != ECL_NIL && ecl_cdr(items) == ECL_NIL;
  return isOneItem ? ecl_car(items) : items;
}

cl_object LomSymbol(const char* name) { return ecl_make_symbol(name, "LOM"); }

cl_object LispText(std::wstring_view text) {
  const cl_object string = ecl_alloc_simple_extended_string(text.size());
  for (size_t index = 0; index < text.size(); ++index) {
    const auto character = static_cast<uint32_t>(text[index]);
    string->string.self[index] = static_cast<ecl_character>(character < 0x110000 ? character : 0xFFFD);
  }
  return string;
}

std::wstring TextOf(cl_object string) {
  std::wstring text;
  if (!ECL_STRINGP(string)) return text;
  const auto length = static_cast<cl_index>(ecl_length(string));
  text.reserve(length);
  for (cl_index index = 0; index < length; ++index) text += static_cast<wchar_t>(ecl_char(string, index));
  return text;
}

}  // namespace lomlisp::shell
