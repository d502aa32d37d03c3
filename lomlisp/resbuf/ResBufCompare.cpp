#include <lomlisp/resbuf/Integer.h>
#include <lomlisp/resbuf/ResBuf.h>
#include <lomlisp/resbuf/Text.h>
#include <lomlisp/resbuf/messages.h>

#include <cmath>
#include <cstring>

using namespace lomlisp;

namespace {

constexpr double kDefaultTolerance = 1e-9;

bool Near(double a, double b, double tol) {
  return (tol == 0.0 ? kDefaultTolerance : tol) >= std::fabs(a - b);
}

bool IsReal(short type) { return type == RTREAL || type == RTANG; }
bool IsInteger(short type) { return type == RTSHORT || type == RTLONG || type == RTINT64; }
bool IsName(short type) { return type == RTENAME || type == RTPICKS; }

// The types of one class can be ordered: all numbers are of one.
short OrderClass(short type) { return IsReal(type) || IsInteger(type) ? RTREAL : type; }

__int64 IntegerOf(const ResBuf& record) { return static_cast<__int64>(record); }

int EqualInteger(const ResBuf& record, __int64 value, double tol) {
  switch (record.Type()) {
    case RTSHORT:
      return record.resval.rint == value;
    case RTLONG:
      return record.resval.rlong == value;
    case RTINT64:
      return record.resval.mnInt64 == value;
    case RTREAL:
    case RTANG:
      return Near(record.resval.rreal, static_cast<double>(value), tol);
    default:
      return 0;
  }
}

// The first bytes of a value, whatever they were written as.
template <class Value>
Value ReadAs(const resbuf& record) {
  Value value;
  std::memcpy(&value, &record.resval, sizeof value);
  return value;
}

}  // namespace

int ResBuf::Equal(short value, double tol) const { return EqualInteger(*this, value, tol); }
int ResBuf::Equal(long value, double tol) const { return EqualInteger(*this, value, tol); }
int ResBuf::Equal(__int64 value, double tol) const { return EqualInteger(*this, value, tol); }

int ResBuf::Equal(double value, double tol) const {
  if (!IsReal(restype) && !IsInteger(restype)) return 0;
  return Near(static_cast<double>(*this), value, tol);
}

int ResBuf::Equal(const wchar_t* text) const {
  return restype == RTSTR && AreTextsEqual(resval.rstring, text);
}

int ResBuf::Equal(const double* point, double tol) const {
  if ((restype != RTPOINT && restype != RT3DPOINT) || point == nullptr) return 0;
  return Near(resval.rpoint[0], point[0], tol) && Near(resval.rpoint[1], point[1], tol) &&
         (restype == RTPOINT || Near(resval.rpoint[2], point[2], tol));
}

int ResBuf::Equal(const __int64* name) const {
  if (!IsName(restype) || name == nullptr) return 0;
  return resval.rlname[0] == name[0] && resval.rlname[1] == name[1];
}

int ResBuf::Equal(const resbuf& record, double tol) const {
  switch (record.restype) {
    case RTNONE:
    case RTORINT:
    case RTVOID:
    case RTLB:
    case RTLE:
    case RTDOTE:
    case RTNIL:
    case RTDXF0:
      return Equal(ADSResType(record.restype));
    case RTREAL:
    case RTANG:
      return Equal(record.resval.rreal, tol);
    case RTPOINT:
    case RT3DPOINT:
      return Equal(record.resval.rpoint, tol);
    case RTSHORT:
      return Equal(record.resval.rint, tol);
    case RTSTR:
      return Equal(record.resval.rstring);
    case RTENAME:
    case RTPICKS:
      return Equal(record.resval.rlname);
    case RTLONG:
      return Equal(static_cast<__int64>(record.resval.rlong), tol);
    case RTINT64:
      return Equal(record.resval.mnInt64, tol);
    default:
      acutPrintf(messages::CannotCompare, TypeName());
      return 0;
  }
}

int ResBuf::Less(__int64 value) const {
  if (IsReal(restype)) return resval.rreal < static_cast<double>(value);
  return IsInteger(restype) && IntegerOf(*this) < value;
}

int ResBuf::Less(double value) const {
  if (IsReal(restype)) return resval.rreal < value;
  return IsInteger(restype) && IntegerOf(*this) < TruncateSaturated<__int64>(value);
}

int ResBuf::Less(const wchar_t* text) const {
  return restype == RTSTR && resval.rstring != nullptr && text != nullptr &&
         CompareText(resval.rstring, text) < 0;
}

int ResBuf::Less(const resbuf& record) const {
  if (OrderClass(restype) != OrderClass(record.restype)) return 0;
  switch (restype) {
    case RTREAL:
    case RTANG:
      return Less(ReadAs<double>(record));
    case RTSHORT:
      return Less(ReadAs<short>(record));
    case RTLONG:
      return Less(static_cast<__int64>(ReadAs<int32_t>(record)));
    case RTINT64:
      return Less(ReadAs<__int64>(record));
    case RTSTR:
      return Less(record.resval.rstring);
    default:
      acutPrintf(messages::CannotOrder, TypeName());
      return 0;
  }
}
