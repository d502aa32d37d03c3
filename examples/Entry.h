// What the entry points of the example modules have in common.
#pragma once

#include <lomlisp/platform/modules.h>

#include <examples/LispFunction.h>

#include <span>

// The functions are numbered as they stand.
inline bool DefineFunctions(std::span<const LispFunction> functions) {
  short code = 0;
  for (const LispFunction& function : functions) {
    if (acedDefun(function.name, code) != RTNORM || acedRegFunc(function.call, code) != RTNORM) return false;
    ++code;
  }
  return true;
}

inline void UndefineFunctions(std::span<const LispFunction> functions) {
  short code = 0;
  for (const LispFunction& function : functions) acedUndef(function.name, code++);
}

// The answer to a message of the host.
inline AcRx::AppRetCode Answer(AcRx::AppMsgCode message, void* packet,
                               std::span<const LispFunction> functions) {
  switch (message) {
    case AcRx::kInitAppMsg:
      acrxUnlockApplication(packet);
      acrxRegisterAppMDIAware(packet);
      break;
    case AcRx::kLoadDwgMsg:
      if (!DefineFunctions(functions)) return AcRx::kRetError;
      break;
    case AcRx::kUnloadDwgMsg:
      UndefineFunctions(functions);
      break;
    default:
      break;
  }
  return AcRx::kRetOK;
}
