// The functions for entities and selection sets, of a host in which no drawing is open: every one
// is logged, takes orders, checks what it is handed, and fails.
#include <embedded/PlatformCall.h>

using lomlisp::embedded::PlatformCall;

namespace {

int NoDrawing() { return RTERROR; }

}  // namespace

int acdbEntDel(const ads_name name) { return PlatformCall("acdbEntDel").TakesName(name).Run(NoDrawing); }

resbuf* acdbEntGetX(const ads_name name, const resbuf* applications) {
  return PlatformCall("acdbEntGetX").TakesName(name).Takes(applications).Run([]() -> resbuf* {
    return nullptr;
  });
}

int acdbEntLast(ads_name) { return PlatformCall("acdbEntLast").Run(NoDrawing); }

int acdbEntMake(const resbuf* groups) { return PlatformCall("acdbEntMake").Takes(groups).Run(NoDrawing); }

int acdbEntMod(const resbuf* groups) { return PlatformCall("acdbEntMod").Takes(groups).Run(NoDrawing); }

int acdbEntNext(const ads_name name, ads_name) {
  return PlatformCall("acdbEntNext").TakesName(name).Run(NoDrawing);
}

int acdbEntUpd(const ads_name name) { return PlatformCall("acdbEntUpd").TakesName(name).Run(NoDrawing); }

int acedEntSel(const ACHAR* prompt, ads_name, ads_point) {
  return PlatformCall("acedEntSel", prompt).Run(NoDrawing);
}

// The two in the middle are points or chains, as the mode says; only a drawing can tell.
int acedSSGet(const ACHAR* mode, const void*, const void*, const resbuf* filter, ads_name) {
  return PlatformCall("acedSSGet", mode).Takes(filter).Run(NoDrawing);
}
