// The entities of the drawing.

#include <lomlisp/host/messages.h>
#include <lomlisp/listops/CLOMAdsLisp.h>
#include <lomlisp/resbuf/ADSList.h>

using namespace lomlisp;

namespace {

// Whether the value is an entity name, which is then taken; otherwise the message is printed.
bool TakeName(const CLOMAdsLispVar& value, __int64 (&name)[2], const wchar_t* message) {
  if (!CLOMAdsLisp::ENameP(value)) {
    acutPrintf(message);
    return false;
  }
  CLOMAdsLisp::SetQ(name, value);
  return true;
}

CLOMAdsLispVar NameOf(const ads_name& name) { return CLOMAdsLispVar(static_cast<const __int64*>(name)); }

}  // namespace

CLOMAdsLispVar CLOMAdsLisp::EntDel(const CLOMAdsLispVar& name) {
  ads_name entity;
  if (!TakeName(name, entity, messages::EntDelNoName)) return Nil;
  return acdbEntDel(entity) == RTNORM ? name : Nil;
}

CLOMAdsLispVar CLOMAdsLisp::EntGet(const CLOMAdsLispVar& name, const CLOMAdsLispVar& applications) {
  ads_name entity;
  if (!TakeName(name, entity, messages::EntGetNoName)) return Nil;
  ADSList names;
  if (!NilP(applications)) applications.LispToDXF(names);
  const ADSList groups(acdbEntGetX(entity, names), ADSCopyFlag::Adopt);
  return CLOMAdsLispVar(groups);
}

CLOMAdsLispVar CLOMAdsLisp::EntGet(const CLOMAdsLispVar& name) { return EntGet(name, Nil); }

CLOMAdsLispVar CLOMAdsLisp::EntLast() {
  ads_name last = {};
  if (acdbEntLast(last) == RTNORM) return NameOf(last);
  acutPrintf(messages::EntLastFailed);
  return Nil;
}

CLOMAdsLispVar CLOMAdsLisp::EntMake(const CLOMAdsLispVar& groups) {
  ADSList chain;
  groups.LispToDXF(chain);
  return acdbEntMake(chain) == RTNORM ? groups : Nil;
}

CLOMAdsLispVar CLOMAdsLisp::EntMod(const CLOMAdsLispVar& groups) {
  ADSList chain;
  groups.LispToDXF(chain);
  return acdbEntMod(chain) == RTNORM ? groups : Nil;
}

CLOMAdsLispVar CLOMAdsLisp::EntNext(const CLOMAdsLispVar& name) {
  ads_name entity;
  if (!TakeName(name, entity, messages::EntNextNoName)) return Nil;
  ads_name next = {};
  return acdbEntNext(entity, next) == RTNORM ? NameOf(next) : Nil;
}

CLOMAdsLispVar CLOMAdsLisp::EntSel(const CLOMAdsLispVar& prompt) {
  const wchar_t* text = nullptr;
  if (!NilP(prompt)) {
    if (!StringP(prompt)) {
      acutPrintf(messages::EntSelNoPrompt);
      return Nil;
    }
    SetQ(text, prompt);
  }
  ads_name entity = {};
  ads_point picked = {};
  if (acedEntSel(text, entity, picked) != RTNORM) return Nil;
  return List(NameOf(entity), static_cast<const double*>(picked));
}

CLOMAdsLispVar CLOMAdsLisp::EntUpd(const CLOMAdsLispVar& name) {
  ads_name entity;
  if (!TakeName(name, entity, messages::EntUpdNoName)) return Nil;
  return acdbEntUpd(entity) == RTNORM ? name : Nil;
}
