// The functions by which a module says what it defines.
#include <embedded/Module.h>
#include <embedded/PlatformCall.h>

using namespace lomlisp::embedded;

namespace {

Modules::Module* CurrentModule() { return Host::Instance().modules.Current(); }

constexpr const char* kNoModule = "no module handles a message or a call";

}  // namespace

int acedDefun(const ACHAR* name, short code) {
  PlatformCall call("acedDefun", name);
  return call.Run([&] {
    Modules::Module* module = CurrentModule();
    if (module == nullptr) return call.Refuse(kNoModule);
    return module->Define(name, code) ? RTNORM : call.Report("a name or a code that cannot be one");
  });
}

int acedUndef(const ACHAR* name, short code) {
  PlatformCall call("acedUndef", name);
  return call.Run([&] {
    Modules::Module* module = CurrentModule();
    if (module == nullptr) return call.Refuse(kNoModule);
    return module->Undefine(name, code) ? RTNORM : call.Refuse("not a function of the module with that code");
  });
}

int acedRegFunc(int (*handler)(), int code) {
  PlatformCall call("acedRegFunc");
  return call.Run([&] {
    Modules::Module* module = CurrentModule();
    if (module == nullptr) return call.Refuse(kNoModule);
    if (handler == nullptr || code < 0) return call.Report("no handler, or a code that cannot be one");
    module->handlers.insert_or_assign(code, handler);
    return RTNORM;
  });
}

int acedGetFunCode() {
  const Host::Frame* frame = Host::Instance().CurrentFrame();
  return frame != nullptr ? frame->code : RTERROR;
}

bool acrxUnlockApplication(void* packet) {
  Modules::Module* module = CurrentModule();
  if (module == nullptr || module != packet) return false;
  module->isUnlocked = true;
  return true;
}

bool acrxRegisterAppMDIAware(void* packet) { return packet != nullptr && packet == CurrentModule(); }
