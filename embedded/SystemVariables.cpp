#include <embedded/Caller.h>
#include <embedded/Host.h>
#include <embedded/Nesting.h>
#include <embedded/PlatformCall.h>
#include <embedded/Text.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

namespace lomlisp::embedded {

namespace {

SystemVariable Integer(short value, short lowest, short highest) {
  SystemVariable variable{Mark(RTSHORT), static_cast<double>(lowest), static_cast<double>(highest)};
  variable.value.value.rint = value;
  return variable;
}

SystemVariable AnyInteger(short value) {
  return Integer(value, std::numeric_limits<short>::min(), std::numeric_limits<short>::max());
}

SystemVariable Real(double value, double lowest, double highest) {
  SystemVariable variable{Mark(RTREAL), lowest, highest};
  variable.value.value.rreal = value;
  return variable;
}

SystemVariable Text(std::wstring_view value) {
  SystemVariable variable{Mark(RTSTR)};
  variable.value.text = value;
  variable.value.hasText = true;
  return variable;
}

SystemVariable PointOfType(short type, double x, double y) {
  SystemVariable variable{Mark(type)};
  variable.value.value.rpoint[0] = x;
  variable.value.value.rpoint[1] = y;
  variable.value.value.rpoint[2] = 0.0;
  return variable;
}

SystemVariable ReadOnly(SystemVariable variable) {
  variable.readOnly = true;
  return variable;
}

std::optional<long long> IntegerOf(const Record& record) {
  switch (record.type) {
    case RTSHORT:
      return record.value.rint;
    case RTLONG:
      return record.value.rlong;
    case RTINT64:
      return record.value.mnInt64;
    default:
      return std::nullopt;
  }
}

std::optional<double> RealOf(const Record& record) {
  if (record.type == RTREAL || record.type == RTANG || record.type == RTORINT) return record.value.rreal;
  const auto integer = IntegerOf(record);
  return integer ? std::optional(static_cast<double>(*integer)) : std::nullopt;
}

// False for what is no number too.
bool IsWithin(double number, const SystemVariable& variable) {
  return number >= variable.lowest && number <= variable.highest;
}

const char* const kWrongType = "the value is of the wrong type";
const char* const kOutOfRange = "the value is out of range";

const char* SetInteger(SystemVariable& variable, const Record& value) {
  const auto integer = IntegerOf(value);
  if (!integer) return kWrongType;
  const bool fits =
      variable.value.type == RTSHORT ? std::in_range<short>(*integer) : std::in_range<int32_t>(*integer);
  if (!fits || !IsWithin(static_cast<double>(*integer), variable)) return kOutOfRange;
  if (variable.value.type == RTSHORT)
    variable.value.value.rint = static_cast<short>(*integer);
  else
    variable.value.value.rlong = static_cast<int32_t>(*integer);
  return nullptr;
}

const char* SetReal(SystemVariable& variable, const Record& value) {
  const auto real = RealOf(value);
  if (!real) return kWrongType;
  if (!IsWithin(*real, variable)) return kOutOfRange;
  variable.value.value.rreal = *real;
  return nullptr;
}

const char* SetText(SystemVariable& variable, const Record& value) {
  if (value.type != RTSTR || !value.hasText) return kWrongType;
  variable.value.text = value.text;
  variable.value.hasText = true;
  return nullptr;
}

// A point of two coordinates is taken for one of three, on the plane.
const char* SetPoint(SystemVariable& variable, const Record& value) {
  const bool isFlat = value.type == RTPOINT;
  if (!isFlat && (value.type != RT3DPOINT || variable.value.type != RT3DPOINT)) return kWrongType;
  double point[3] = {};
  for (size_t axis = 0; axis < (isFlat ? 2u : 3u); ++axis) {
    if (!IsWithin(value.value.rpoint[axis], variable)) return kOutOfRange;
    point[axis] = value.value.rpoint[axis];
  }
  std::memcpy(variable.value.value.rpoint, point, sizeof point);
  return nullptr;
}

const char* SetValue(SystemVariable& variable, const Record& value) {
  switch (variable.value.type) {
    case RTSHORT:
    case RTLONG:
      return SetInteger(variable, value);
    case RTREAL:
      return SetReal(variable, value);
    case RTSTR:
      return SetText(variable, value);
    case RTPOINT:
    case RT3DPOINT:
      return SetPoint(variable, value);
    default:
      return kWrongType;
  }
}

}  // namespace

void SystemVariables::Define(std::wstring_view name, SystemVariable variable) {
  m_variables.insert_or_assign(Folded(name), std::move(variable));
}

SystemVariable* SystemVariables::Find(std::wstring_view name) {
  const auto found = m_variables.find(Folded(name));
  return found != m_variables.end() ? &found->second : nullptr;
}

std::optional<std::string> SystemVariables::Set(std::wstring_view name, const Record& value) {
  SystemVariable* variable = Find(name);
  if (variable == nullptr) return "no variable is named " + Utf8(name);
  if (variable->readOnly) return "the variable is read-only";
  const char* objection = SetValue(*variable, value);
  return objection != nullptr ? std::optional<std::string>(objection) : std::nullopt;
}

void SystemVariables::Reset() {
  constexpr double kGreatest = 1e99;
  constexpr double kSmallest = 1e-99;
  m_variables.clear();
  Define(L"ATTREQ", Integer(1, 0, 1));
  Define(L"AUNITS", Integer(0, 0, 4));
  Define(L"AUPREC", Integer(0, 0, 8));
  Define(L"CECOLOR", Text(L"BYLAYER"));
  Define(L"CLAYER", Text(L"0"));
  Define(L"CMDECHO", Integer(1, 0, 1));
  Define(L"DATE", ReadOnly(Real(2460311.5, 0.0, kGreatest)));
  Define(L"DWGNAME", ReadOnly(Text(L"Drawing1.dwg")));
  Define(L"DWGPREFIX", ReadOnly(Text(L"")));
  Define(L"ELEVATION", Real(0.0, -kGreatest, kGreatest));
  Define(L"ERRNO", AnyInteger(0));
  Define(L"EXPERT", Integer(0, 0, 5));
  Define(L"FILEDIA", Integer(1, 0, 1));
  Define(L"INSUNITS", Integer(4, 0, 24));
  Define(L"LASTPOINT", PointOfType(RT3DPOINT, 0.0, 0.0));
  Define(L"LIMMAX", PointOfType(RTPOINT, 420.0, 297.0));
  Define(L"LIMMIN", PointOfType(RTPOINT, 0.0, 0.0));
  Define(L"LTSCALE", Real(1.0, kSmallest, kGreatest));
  Define(L"LUNITS", Integer(2, 1, 5));
  Define(L"LUPREC", Integer(4, 0, 8));
  Define(L"ORTHOMODE", Integer(0, 0, 1));
  Define(L"OSMODE", Integer(0, 0, 32767));
  Define(L"TEXTSIZE", Real(2.5, kSmallest, kGreatest));
  for (const wchar_t digit : {L'1', L'2', L'3', L'4', L'5'}) {
    Define(std::wstring(L"USERI") + digit, AnyInteger(0));
    Define(std::wstring(L"USERR") + digit, Real(0.0, -kGreatest, kGreatest));
    Define(std::wstring(L"USERS") + digit, Text(L""));
  }
}

}  // namespace lomlisp::embedded

using namespace lomlisp::embedded;

namespace {

// Fills type and value; the link, and what the record held before, are the caller's own.
int GetVariable(PlatformCall& call, const ACHAR* name, resbuf* record, const void* caller) {
  Host& host = Host::Instance();
  const SystemVariable* variable = name != nullptr ? host.variables.Find(name) : nullptr;
  if (variable == nullptr || record == nullptr) return RTERROR;
  ads_u_val value = variable->value.value;
  if (variable->value.type == RTSTR) {
    const std::wstring& text = variable->value.text;
    const size_t bytes = (text.size() + 1) * sizeof(wchar_t);
    void* block = host.ledger.Allocate(bytes, Owner::Client, Ledger::kPlainMemory, caller);
    if (block == nullptr) return RTERROR;
    std::memcpy(block, text.c_str(), bytes);
    value.rstring = static_cast<ACHAR*>(block);
  }
  record->restype = variable->value.type;
  record->resval = value;
  const resbuf single{nullptr, record->restype, record->resval};
  call.Gives(&single);
  return RTNORM;
}

// New entities go to the current layer, so it must be there.
bool IsMissingLayer(const ACHAR* name, const Record& value) {
  const bool isLayer = Folded(name) == L"CLAYER" && value.type == RTSTR;
  return isLayer && Host::Instance().CurrentDrawing().FindEntry(L"LAYER", value.text) == nullptr;
}

int SetVariable(PlatformCall& call, const ACHAR* name, const resbuf* record) {
  if (name == nullptr || record == nullptr) return call.Refuse("no name or no value");
  resbuf single = *record;
  single.rbnext = nullptr;
  const Record value = Capture(&single).front();
  if (IsMissingLayer(name, value)) return call.Refuse("no layer has this name");
  auto objection = Host::Instance().variables.Set(name, value);
  return objection ? call.Refuse(std::move(*objection)) : RTNORM;
}

}  // namespace

int acedGetVar(const ACHAR* name, resbuf* record) {
  const void* caller = LOMLISP_CALLER;
  PlatformCall call("acedGetVar", name);
  return call.Run([&] { return GetVariable(call, name, record, caller); });
}

int acedSetVar(const ACHAR* name, const resbuf* record) {
  PlatformCall call("acedSetVar", name);
  return call.TakesRecord(record).Run([&] { return SetVariable(call, name, record); });
}
