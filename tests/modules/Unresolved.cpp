// A module that asks for a function which no host has.
#include <lomlisp/platform/modules.h>

int acedNothingOfTheKind();

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode, void*) {
  return acedNothingOfTheKind() == RTNORM ? AcRx::kRetOK : AcRx::kRetError;
}
