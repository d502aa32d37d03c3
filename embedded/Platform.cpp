// The functions for records, memory and printing.
#include <lomlisp/platform/suite.h>

#include <embedded/Caller.h>
#include <embedded/Format.h>
#include <embedded/Host.h>
#include <embedded/Nesting.h>

#include <cstdarg>
#include <new>
#include <utility>

using namespace lomlisp::embedded;

namespace {

Ledger& TheLedger() { return Host::Instance().ledger; }

// These calls are frequent, so they are neither logged nor, without orders, anything but made.
bool IsRefused(const char* function) {
  CallLog& log = Host::Instance().log;
  if (!log.HasOrders()) return false;
  LoggedCall call;
  call.function = function;
  const auto order = log.Order(call);
  return order && *order != RTNORM;
}

std::optional<int> OrderFor(const char* function) {
  CallLog& log = Host::Instance().log;
  return log.HasOrders() ? log.OrderByName(function) : std::nullopt;
}

// A va_list may be an array type, which a function cannot take by reference.
struct Values {
  std::va_list list;
};

bool TakePoint(Values& values, Record& record, size_t coordinates) {
  const auto* point = va_arg(values.list, const ads_real*);
  if (point == nullptr) return false;
  for (size_t axis = 0; axis < coordinates; ++axis) record.value.rpoint[axis] = point[axis];
  return true;
}

bool TakeName(Values& values, Record& record) {
  const auto* name = va_arg(values.list, const __int64*);
  if (name == nullptr) return false;
  record.value.rlname[0] = name[0];
  record.value.rlname[1] = name[1];
  return true;
}

void TakeText(Values& values, Record& record) {
  const auto* text = va_arg(values.list, const ACHAR*);
  record.hasText = text != nullptr;
  if (record.hasText) record.text = text;
}

// The value that follows a type: a short and an RTLONG come as an int, an RTINT64 as an __int64, points
// and names as the address of their array. False for an unknown type and for a null array.
bool TakeValue(Values& values, Record& record) {
  switch (DxfType(record.type)) {
    case RTREAL:
    case RTANG:
    case RTORINT:
      record.value.rreal = va_arg(values.list, double);
      return true;
    case RTPOINT:
      return TakePoint(values, record, 2);
    case RT3DPOINT:
      return TakePoint(values, record, 3);
    case RTSHORT:
      record.value.rint = static_cast<short>(va_arg(values.list, int));
      return true;
    case RTLONG:
      record.value.rlong = va_arg(values.list, int);
      return true;
    case RTINT64:
      record.value.mnInt64 = va_arg(values.list, __int64);
      return true;
    case RTENAME:
    case RTPICKS:
      return TakeName(values, record);
    case RTSTR:
    case RTDXF0:
      TakeText(values, record);
      return true;
    default:
      return IsKnown(record.type);
  }
}

std::optional<Chain> TakeChain(int type, Values& values) {
  Chain chain;
  do {
    if (!std::in_range<short>(type)) return std::nullopt;
    Record& record = chain.emplace_back(Mark(static_cast<short>(type)));
    if (!TakeValue(values, record)) return std::nullopt;
    type = va_arg(values.list, int);
  } while (type != 0);
  return chain;
}

}  // namespace

void* acad_malloc(size_t size) {
  const void* caller = LOMLISP_CALLER;
  if (IsRefused("acad_malloc")) return nullptr;
  return TheLedger().Allocate(size, Owner::Client, Ledger::kPlainMemory, caller);
}

void acad_free(void* block) { TheLedger().Free(block); }

resbuf* acutNewRb(int type) {
  const void* caller = LOMLISP_CALLER;
  if (IsRefused("acutNewRb") || !std::in_range<short>(type)) return nullptr;
  void* block = TheLedger().Allocate(sizeof(resbuf), Owner::Client, type, caller);
  if (block == nullptr) return nullptr;
  return new (block) resbuf{nullptr, static_cast<short>(type), {.rpoint = {}}};
}

int acutRelRb(resbuf* chain) {
  if (const auto order = OrderFor("acutRelRb")) return *order;
  ReleaseChain(chain, TheLedger());
  return RTNORM;
}

resbuf* acutBuildList(int type, ...) {
  const void* caller = LOMLISP_CALLER;
  if (IsRefused("acutBuildList")) return nullptr;
  Values values;
  va_start(values.list, type);
  const auto chain = TakeChain(type, values);
  va_end(values.list);
  return chain ? Materialise(*chain, TheLedger(), Owner::Client, caller) : nullptr;
}

int acutPrintf(const ACHAR* format, ...) {
  if (const auto order = OrderFor("acutPrintf")) return *order;
  std::va_list arguments;
  va_start(arguments, format);
  std::wstring text;
  AppendFormatted(text, format, arguments);
  va_end(arguments);
  Host::Instance().console.Write(text);
  return RTNORM;
}
