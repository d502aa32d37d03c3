#include <lomlisp/platform/modules.h>

#include <tests/real_host/Functions.h>

#include <map>
#include <string>

namespace {

std::map<std::wstring, int> codes;
std::map<int, int (*)()> handlers;

}  // namespace

bool CallFunction(const wchar_t* name) {
  const auto code = codes.find(name);
  if (code == codes.end()) return false;
  const auto handler = handlers.find(code->second);
  return handler != handlers.end() && handler->second() == RTNORM;
}

int acedDefun(const ACHAR* name, short code) {
  codes[name] = code;
  return RTNORM;
}
int acedUndef(const ACHAR* name, short) { return codes.erase(name) != 0 ? RTNORM : RTERROR; }
int acedRegFunc(int (*handler)(void), int code) {
  handlers[code] = handler;
  return RTNORM;
}
bool acrxUnlockApplication(void*) { return true; }
bool acrxRegisterAppMDIAware(void*) { return true; }

int acedSSLength(const ads_name, AdsInt32*) { return RTERROR; }
int acedSSName(const ads_name, AdsInt32, ads_name) { return RTERROR; }
int acedSSFree(const ads_name) { return RTERROR; }
int acdbRegApp(const ACHAR*) { return RTERROR; }
struct resbuf* acdbTblSearch(const ACHAR*, const ACHAR*, int) {
  return nullptr;
}
