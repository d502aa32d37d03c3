#include <lomlisp/resbuf/ResBuf.h>

#include <lomlisp/resbuf/BinaryData.h>
#include <lomlisp/resbuf/DxfTexts.h>
#include <lomlisp/resbuf/Text.h>
#include <lomlisp/resbuf/messages.h>

#include <algorithm>
#include <cwchar>
#include <utility>

using namespace lomlisp;

void* ResBuf::operator new(size_t size) noexcept { return acad_malloc(size); }

void ResBuf::operator delete(void* record) noexcept {
  if (record != nullptr) acad_free(record);
}

void ResBuf::Init() {
  rbnext = nullptr;
  restype = RTNONE;
  resval = {};
}

void ResBuf::Init(short value) {
  restype = RTSHORT;
  resval.rint = value;
}

void ResBuf::Init(long value) {
  restype = RTLONG;
  resval.rlong = static_cast<int32_t>(value);
}

void ResBuf::Init(__int64 value) {
  restype = RTINT64;
  resval.mnInt64 = value;
}

void ResBuf::Init(double value, ADSRealType type) {
  restype = static_cast<short>(type);
  resval.rreal = value;
}

void ResBuf::Init(const wchar_t* text) {
  restype = RTSTR;
  resval.rstring = CopyText(text);
}

void ResBuf::Init(const double* point, ADSPointType type) {
  if (point == nullptr) return;
  restype = static_cast<short>(type);
  resval.rpoint[0] = point[0];
  resval.rpoint[1] = point[1];
  resval.rpoint[2] = type == ADSPointType::Point3d ? point[2] : 0.0;
}

void ResBuf::Init(const __int64* name, ADSNameType type) {
  if (name == nullptr) return;
  restype = static_cast<short>(type);
  std::copy_n(name, 2, resval.rlname);
}

void ResBuf::Init(ADSResType type) {
  restype = static_cast<short>(type);
  if (restype != RTSTR && !dxftexts::IsTextCode(restype)) resval.rlong = -1;
}

void ResBuf::Init(const resbuf& record) {
  restype = record.restype;
  resval = record.resval;
  if (restype == RTSTR)
    resval.rstring = CopyText(record.resval.rstring);
  else if (MayHoldText(restype))
    dxftexts::Hold(*this);
}

void ResBuf::Destroy() {
  if (MayHoldText(restype)) {
    dxftexts::Drop(*this);
  } else if (restype == RTSTR && resval.rstring != nullptr) {
    acad_free(resval.rstring);
    resval.rstring = nullptr;
  }
}

ResBuf& ResBuf::CopyOwner(const resbuf& record) {
  // What is let go may be what the source holds.
  if (MayOwn(restype)) return *this = ResBuf(record);
  rbnext = nullptr;
  Init(record);
  return *this;
}

ResBuf& ResBuf::operator=(ResBuf&& record) noexcept {
  if (this == &record) return *this;
  rbnext = nullptr;
  return Assign(std::move(record));
}

void ResBuf::TakeHolder(const ResBuf& other) noexcept { dxftexts::Move(other, *this); }

void ResBuf::Reverse() {
  if (restype == RTLB)
    restype = RTLE;
  else if (restype == RTLE)
    restype = RTLB;
}

namespace {

// Not constant, because TypeName gives them to callers as wchar_t*.
struct {
  short type;
  wchar_t name[10];
} typeNames[] = {
    {RTNONE, L"RTNONE"},   {RTREAL, L"RTREAL"},       {RTPOINT, L"RTPOINT"}, {RTSHORT, L"RTSHORT"},
    {RTANG, L"RTANG"},     {RTSTR, L"RTSTR"},         {RTENAME, L"RTENAME"}, {RTPICKS, L"RTPICKS"},
    {RTORINT, L"RTORINT"}, {RT3DPOINT, L"RT3DPOINT"}, {RTLONG, L"RTLONG"},   {RTVOID, L"RTVOID"},
    {RTLB, L"RTLB"},       {RTLE, L"RTLE"},           {RTDOTE, L"RTDOTE"},   {RTNIL, L"RTNIL"},
    {RTDXF0, L"RTDXF0"},   {RTINT64, L"RTINT64"},
};

}  // namespace

// The base type of a base type is itself.
bool ResBuf::isDXF(short type) { return DxfType(type) != type; }

wchar_t* ResBuf::TypeName(short type) const {
  for (auto& entry : typeNames)
    if (entry.type == type) return entry.name;
  static wchar_t number[200];
  static_cast<void>(std::swprintf(number, std::size(number), L"<%d>", static_cast<int>(restype)));
  return number;
}

void ResBuf::MakeBaseType() {
  if (IsBinary(restype)) return MakeDigits();
  const short base = BaseType();
  if (base == RTSTR)
    dxftexts::Release(*this);
  else if (base != restype)
    dxftexts::Drop(*this);
  restype = base;
}

bool ResBuf::MakeDXF(short type) {
  if (!isDXF(type)) {
    acutPrintf(messages::NoDxfCode, static_cast<int>(type));
    return false;
  }
  if (IsBinary(type) && !IsBinary(restype)) return MakeBytes(type);
  if (IsBinary(restype) && !IsBinary(type)) MakeDigits();
  if (restype == RTSTR || dxftexts::Holds(*this))
    dxftexts::Own(*this, type);
  else if (dxftexts::IsTextCode(type) && !dxftexts::IsTextCode(restype))
    resval = {};  // a number is no pointer to a text
  restype = type;
  return true;
}

void ResBuf::MakeDigits() {
  wchar_t* const digits = NewDigits(*this);
  dxftexts::Drop(*this);
  resval = {};
  restype = RTSTR;
  resval.rstring = digits;
}

// Only a text can say what the bytes are.
bool ResBuf::MakeBytes(short type) {
  const bool isText = restype == RTSTR || dxftexts::Holds(*this);
  const wchar_t* const digits = isText ? resval.rstring : nullptr;
  if (!AreBytes(digits)) {
    acutPrintf(messages::NoBytes, static_cast<int>(type));
    return false;
  }
  resbuf group = {};
  TakeBytes(group, digits);
  Destroy();
  restype = type;
  resval = group.resval;
  dxftexts::Own(*this, type);
  return true;
}
