// Loads the first example module into the stand-in for the host, and calls one of its functions.
#include <lomlisp/platform/modules.h>
#include <tests/real_host/Functions.h>
#include <tests/real_host/Platform.h>

#include <cstring>
#include <iostream>

namespace {

using EntryPoint = AcRx::AppRetCode (*)(AcRx::AppMsgCode, void*);

bool Call() {
  resbuf* const end = acutNewRb(RTLE);
  resbuf* const begin = acutNewRb(RTLB);
  begin->rbnext = TextGroup(RTSTR, L"bolt", TextGroup(RTSTR, L"nut", TextGroup(RTSTR, L"bolt", end)));
  SetArguments(begin);
  const bool good = CallFunction(L"COUNT-KINDS");
  SetArguments(nullptr);
  acutRelRb(begin);
  return good &&
         Returned() ==
             "5016 ?, 5005 'bolt', 5018 ?, 5010 ?, 5017 ?, 5016 ?, 5005 'nut', 5018 ?, 5010 ?, 5017 ?";
}

int Run(EntryPoint entry) {
  if (entry(AcRx::kInitAppMsg, nullptr) != AcRx::kRetOK) return 2;
  if (entry(AcRx::kLoadDwgMsg, nullptr) != AcRx::kRetOK) return 3;
  if (!Call()) {
    std::cerr << Returned() << "\n";
    return 4;
  }
  entry(AcRx::kUnloadDwgMsg, nullptr);
  return CallFunction(L"COUNT-KINDS") ? 5 : 0;
}

}  // namespace

int main(int count, char** arguments) {
  const HMODULE module = count > 1 ? LoadLibraryA(arguments[1]) : nullptr;
  if (module == nullptr) {
    std::cerr << "cannot load it: " << GetLastError() << "\n";
    return 1;
  }
  const FARPROC function = GetProcAddress(module, "acrxEntryPoint");
  if (function == nullptr) return 1;
  EntryPoint entry = nullptr;
  std::memcpy(&entry, &function, sizeof entry);
  return Run(entry);
}
