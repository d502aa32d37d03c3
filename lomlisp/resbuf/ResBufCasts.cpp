#include <lomlisp/resbuf/Integer.h>
#include <lomlisp/resbuf/ResBuf.h>
#include <lomlisp/resbuf/messages.h>

using namespace lomlisp;

namespace {

void ReportCast(const ResBuf& record, const wchar_t* message) {
  acutPrintf(message, record.TypeName());
  acutPrintf(messages::CastValue);
  record.Print(nullptr, 0);
  acutPrintf(messages::CastEnd);
}

// The low bits of an integer record, or a real through `TruncatedTo`.
template <class Integer, class TruncatedTo = Integer>
Integer CastToInteger(const ResBuf& record, const wchar_t* message) {
  switch (record.Type()) {
    case RTSHORT:
      return static_cast<Integer>(record.resval.rint);
    case RTLONG:
      return static_cast<Integer>(record.resval.rlong);
    case RTINT64:
      return static_cast<Integer>(record.resval.mnInt64);
    case RTREAL:
    case RTANG:
      return static_cast<Integer>(Truncate<TruncatedTo>(record.resval.rreal));
    default:
      ReportCast(record, message);
      return 0;
  }
}

}  // namespace

ResBuf::operator short() const { return CastToInteger<short>(*this, messages::CastToShort); }

ResBuf::operator int() const { return CastToInteger<int32_t>(*this, messages::CastToInt); }

ResBuf::operator unsigned int() const { return CastToInteger<uint32_t, __int64>(*this, messages::CastToInt); }

ResBuf::operator long() const { return CastToInteger<int32_t>(*this, messages::CastToLong); }

ResBuf::operator __int64() const { return CastToInteger<__int64>(*this, messages::CastToInt64); }

ResBuf::operator double() const {
  switch (restype) {
    case RTSHORT:
      return resval.rint;
    case RTLONG:
      return resval.rlong;
    case RTINT64:
      return static_cast<double>(resval.mnInt64);
    case RTREAL:
    case RTANG:
      return resval.rreal;
    default:
      ReportCast(*this, messages::CastToDouble);
      return 0.0;
  }
}

ResBuf::operator wchar_t*() const {
  if (restype == RTSTR) return resval.rstring;
  ReportCast(*this, messages::CastToText);
  return nullptr;
}

ResBuf::operator double*() const {
  if (restype == RTPOINT || restype == RT3DPOINT) return const_cast<double*>(resval.rpoint);
  ReportCast(*this, messages::CastToPoint);
  static ads_point zero = {0.0, 0.0, 0.0};
  return zero;
}

ResBuf::operator __int64*() const {
  if (restype == RTENAME || restype == RTPICKS) return const_cast<__int64*>(resval.rlname);
  ReportCast(*this, messages::CastToName);
  static ads_name zero = {0, 0};
  return zero;
}
