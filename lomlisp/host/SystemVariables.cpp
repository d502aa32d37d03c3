// System variables.

#include <lomlisp/host/messages.h>
#include <lomlisp/listops/CLOMAdsLisp.h>
#include <lomlisp/resbuf/ADSList.h>

#include <utility>

using namespace lomlisp;

namespace {

bool SetAtom(const wchar_t* name, const CLOMAdsLispVar& value) {
  ADSList chain;
  value.LispToADS(chain);
  if (acedSetVar(name, chain) == RTNORM) return true;
  acutPrintf(messages::SetVarAtomRefused, name);
  CLOMAdsLisp::PrinC(value);
  acutPrintf(messages::SetVarAtomRefusedEnd);
  return false;
}

bool SetPoint(const wchar_t* name, const CLOMAdsLispVar& value) {
  double point[3];
  value.GetPoint(point);
  const ResBuf record(point, value.Length() == 2 ? ADSPointType::Point : ADSPointType::Point3d);
  if (acedSetVar(name, &record) == RTNORM) return true;
  acutPrintf(messages::SetVarPointRefused, name);
  return false;
}

}  // namespace

bool CLOMAdsLispVar::GetVar(const wchar_t* name) {
  // The name may be a text of the old value, which therefore goes last.
  const Element old = std::exchange(m_element, nullptr);
  auto* const record = new ResBuf(ADSResType(RTNIL));
  if (record == nullptr) return false;
  const ADSList owner(record, ADSCopyFlag::Adopt);
  if (owner.isNIL() || acedGetVar(name, record) != RTNORM) return false;
  ADSToLisp(owner);
  return true;
}

bool CLOMAdsLispVar::SetVar(const wchar_t* name) const {
  if (AtomP()) return SetAtom(name, *this);
  if (PointP()) return SetPoint(name, *this);
  acutPrintf(messages::SetVarNoAtom);
  return false;
}

CLOMAdsLispVar CLOMAdsLisp::GetVar(const CLOMAdsLispVar& name) {
  if (!StringP(name)) {
    acutPrintf(messages::GetVarNoName);
    return Nil;
  }
  CLOMAdsLispVar value;
  value.GetVar(static_cast<wchar_t*>(name.GetAtom()));
  return value;
}

CLOMAdsLispVar CLOMAdsLisp::SetVar(const CLOMAdsLispVar& name, const CLOMAdsLispVar& value) {
  if (!StringP(name)) {
    acutPrintf(messages::SetVarNoName);
    return Nil;
  }
  return value.SetVar(static_cast<wchar_t*>(name.GetAtom())) ? value : Nil;
}
