// A module that answers messages as the LISP symbol MISDEED says, and prints those that it gets.
#include <lomlisp/lomlisp.h>
#include <lomlisp/platform/modules.h>

#include <cstdint>
#include <stdexcept>
#include <string>

namespace {

std::wstring Misdeed() {
  std::wstring misdeed;
  const CLOMAdsLispVar value = CLOMAdsLisp::GetSym(L"MISDEED");
  if (value.StringP()) CLOMAdsLisp::SetQ(misdeed, value);
  return misdeed;
}

int Nothing() { return acedRetVoid(); }

void Define() {
  acedDefun(L"C:NOTHING", 0);
  acedRegFunc(Nothing, 0);
}

// The test releases what the symbol LEAKED holds.
void Leak() {
  resbuf leaked{nullptr, RTENAME, {}};
  leaked.resval.rlname[0] = reinterpret_cast<intptr_t>(acad_malloc(24));
  acedPutSym(L"LEAKED", &leaked);
}

AcRx::AppRetCode Initialise(const std::wstring& misdeed, void* packet) {
  Define();
  if (misdeed != L"stay locked") acrxUnlockApplication(packet);
  if (misdeed == L"throw") throw std::runtime_error("no license");
  if (misdeed == L"leak") Leak();
  if (misdeed == L"define nonsense") acedDefun(L"(", 1);
  return misdeed == L"refuse" || misdeed == L"leak" ? AcRx::kRetError : AcRx::kRetOK;
}

AcRx::AppRetCode Leave(const std::wstring& misdeed) {
  if (misdeed == L"throw at the end") throw std::runtime_error("busy");
  return misdeed == L"fail at the end" ? AcRx::kRetError : AcRx::kRetOK;
}

}  // namespace

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
  acutPrintf(L"%d ", static_cast<int>(message));
  const std::wstring misdeed = Misdeed();
  switch (message) {
    case AcRx::kInitAppMsg:
      return Initialise(misdeed, packet);
    case AcRx::kLoadDwgMsg:
      return misdeed == L"refuse the drawing" ? AcRx::kRetError : AcRx::kRetOK;
    case AcRx::kUnloadAppMsg:
      return Leave(misdeed);
    default:
      return AcRx::kRetOK;
  }
}
