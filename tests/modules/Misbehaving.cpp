// A module whose functions do what functions may not; those without a handler are called by message.
#include <lomlisp/lomlisp.h>
#include <lomlisp/platform/modules.h>

#include <embedded/Host.h>

#include <stdexcept>

// The program has one of the same name.
int NameOfBoth() { return 2; }

// What Leak leaks: the test releases it in the end.
extern "C" {
resbuf* lost = nullptr;
}

namespace {

int Twice() {
  acedRetInt(1);
  return acedRetInt(2) == RTERROR ? RTNORM : RTFAIL;
}

int Not() { return RTNORM; }

resbuf* kept = nullptr;

int Keep() {
  kept = acedGetArgs();
  return acedRetT();
}

int UseKept() {
  acedRetList(kept);
  return RTNORM;
}

int WriteKept() {
  kept->resval.rint = 7;
  return acedRetT();
}

int Leak() {
  lost = acutBuildList(RTSHORT, 1, RTSTR, L"lost", 0);
  return acedRetNil();
}

// What a static object holds goes with the module.
int Hold() {
  static CLOMAdsLispVar held;
  CLOMAdsLisp::SetQ(held, CLOMAdsLisp::List(1, L"held"));
  CLOMAdsLisp::Return(held);
  return RTNORM;
}

int FreeTwice() {
  resbuf* const record = acutNewRb(RTSHORT);
  acutRelRb(record);
  acutRelRb(record);
  return acedRetNil();
}

// Reading what may change at any time counts as progress, so that the compiler keeps the loop.
int Endless() {
  const volatile bool isOver = false;
  while (!isOver) {
  }
  return acedRetNil();
}

int Throw() { throw std::runtime_error("out of paper"); }

int Count() {
  static int count = 0;
  return acedRetInt(++count);
}

// Calls another function, and tells its own code after that.
int Nested() {
  const auto result = lomlisp::embedded::Host::Instance().Call(L"CODE", L"");
  return acedRetInt(100 * result.value.front().value.rint + acedGetFunCode());
}

int UnloadItself() {
  const auto error = lomlisp::embedded::Host::Instance().modules.Unload("Misbehaving.so");
  return acedRetStr(error ? std::wstring(error->begin(), error->end()).c_str() : L"gone");
}

int Forget() {
  const bool isForgotten = acedUndef(L"CODE", 99) == RTERROR && acedUndef(L"code", 11) == RTNORM &&
                           acedUndef(L"CODE", 11) == RTERROR;
  return isForgotten ? acedRetT() : acedRetNil();
}

struct {
  const wchar_t* name;
  int (*handler)();
} constexpr kFunctions[] = {
    {L"TWICE", Twice},
    {L"NOT", Not},
    {L"KEEP", Keep},
    {L"USE-KEPT", UseKept},
    {L"WRITE-KEPT", WriteKept},
    {L"LEAK", Leak},
    {L"HOLD", Hold},
    {L"FREE-TWICE", FreeTwice},
    {L"THROW", Throw},
    {L"COUNT", Count},
    {L"NESTED", Nested},
    {L"CODE", nullptr},
    {L"THROW-BY-MESSAGE", nullptr},
    {L"FAIL-BY-MESSAGE", nullptr},
    {L"UNLOAD-ITSELF", UnloadItself},
    {L"FORGET", Forget},
    {L"NAME-OF-BOTH", [] { return acedRetInt(NameOfBoth()); }},
    {L"ENDLESS", Endless},
};

constexpr int kThrowByMessage = 12;
constexpr int kFailByMessage = 13;

void Define() {
  short code = 0;
  for (const auto& function : kFunctions) {
    acedDefun(function.name, code);
    if (function.handler != nullptr) acedRegFunc(function.handler, code);
    ++code;
  }
}

AcRx::AppRetCode Invoke() {
  const int code = acedGetFunCode();
  if (code == kThrowByMessage) throw 5;
  if (code == kFailByMessage) return AcRx::kRetError;
  acedRetInt(code);
  return AcRx::kRetOK;
}

}  // namespace

// A value for the program to keep.
extern "C" CLOMAdsLispVar* MakeValue() {
  return new CLOMAdsLispVar(CLOMAdsLisp::List(1, L"c", CLOMAdsLisp::Cons(L"a", L"b")));
}

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
  if (message == AcRx::kInvkSubrMsg) return Invoke();
  if (message == AcRx::kInitAppMsg) acrxUnlockApplication(packet);
  if (message == AcRx::kLoadDwgMsg) Define();
  return AcRx::kRetOK;
}
