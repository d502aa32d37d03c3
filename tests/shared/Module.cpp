// What a module sees and does of the library that it shares with others. It is built twice.
#include <lomlisp/lomlisp.h>
#include <lomlisp/text/DebugLayout.h>
#include <tests/shared/Module.h>

#include <stdexcept>

namespace {

class Here : public lomlisp::test::SharingModule {
 public:
  const CLOMAdsLispVar* Nil() const override { return &CLOMAdsLisp::Nil; }
  const wchar_t** ReadPosition() const override { return &CLOMAdsLispVar::s_pszNextChar; }
  const void* FallbackRecord() const override { return &CLOMAdsLispVar().GetAtom(); }
  unsigned long* DebugIndentation() const override { return &lomlisp::debugIndentation; }

  void Make(CLOMAdsLispVar& value) const override {
    CLOMAdsLisp::SetQ(value, CLOMAdsLisp::List(1, L"text", CLOMAdsLisp::Cons(2.5, L"b")));
  }
  void Change(CLOMAdsLispVar& value) const override { value.Append(CLOMAdsLisp::List(L"more")); }
  void Destroy(CLOMAdsLispVar* value) const override { delete value; }
  CLOMAdsLispVar* New() const override { return new CLOMAdsLispVar(CLOMAdsLisp::List(L"new")); }

  resbuf* NewChain() const override { return acutBuildList(RTSHORT, 1, RTSTR, L"chain", 0); }
  void Release(resbuf* chain) const override { acutRelRb(chain); }

  void Throw() const override { throw std::runtime_error("out of paper"); }
};

}  // namespace

extern "C" const lomlisp::test::SharingModule* Sharing() {
  static const Here here;
  return &here;
}
