// The library as a shared library, used by a program and two modules in one process.
#include <embedded/SharedObject.h>
#include <lomlisp/text/DebugLayout.h>
#include <tests/shared/Module.h>
#include <tests/support/HostTest.h>

#include <memory>
#include <stdexcept>
#include <utility>

namespace lomlisp::test {
namespace {

using embedded::SharedObject;

class SharedLibrary : public HostTest {
 protected:
  SharedLibrary() : m_first(Open(FIRST_MODULE)), m_second(Open(SECOND_MODULE)) {}
  ~SharedLibrary() override { host.Reset(); }

  const SharingModule& First() const { return *Sharing(m_first); }
  const SharingModule& Second() const { return *Sharing(m_second); }
  void CloseFirst() { const SharedObject closed = std::move(m_first); }

 private:
  static SharedObject Open(const char* path) {
    std::string error;
    auto object = SharedObject::Open(path, error);
    if (!object) throw std::runtime_error(error);
    return std::move(*object);
  }
  static const SharingModule* Sharing(const SharedObject& object) {
    return reinterpret_cast<const SharingModule* (*)()>(object.Find("Sharing"))();
  }

  SharedObject m_first;
  SharedObject m_second;
};

TEST_F(SharedLibrary, IsSeenByTwoModules) { EXPECT_NE(&First(), &Second()); }

TEST_F(SharedLibrary, HasOneOfEachStaticObject) {
  for (const SharingModule* module : {&First(), &Second()}) {
    EXPECT_EQ(module->Nil(), &CLOMAdsLisp::Nil);
    EXPECT_EQ(module->ReadPosition(), &CLOMAdsLispVar::s_pszNextChar);
    EXPECT_EQ(module->FallbackRecord(), &CLOMAdsLispVar().GetAtom());
    EXPECT_EQ(module->DebugIndentation(), &debugIndentation);
  }
}

TEST_F(SharedLibrary, ReadsOnWhereAModuleStopped) {
  CLOMAdsLispVar::Token token;
  *First().ReadPosition() = L"17 (";
  CLOMAdsLispVar::getToken(token);
  EXPECT_EQ(token.kind, CLOMAdsLispVar::Token::Integer);
  EXPECT_EQ(token.integer, 17);
  EXPECT_EQ(std::wstring(*Second().ReadPosition()).back(), L'(');
  CLOMAdsLispVar::s_pszNextChar = nullptr;
}

TEST_F(SharedLibrary, ValuesThatOneModuleMakesMayEndInAnother) {
  CLOMAdsLispVar value;
  First().Make(value);
  Second().Change(value);
  EXPECT_EQ(Text(value), "(1 \"text\" (2.500000 . \"b\") \"more\")");
  Second().Make(value);
  CLOMAdsLispVar* const made = First().New();
  value.Append(*made);
  Second().Destroy(made);
  EXPECT_EQ(Text(value), "(1 \"text\" (2.500000 . \"b\") \"new\")");
}

TEST_F(SharedLibrary, ValuesOutliveTheModuleThatMadeThem) {
  CLOMAdsLispVar value;
  First().Make(value);
  CloseFirst();
  EXPECT_EQ(Text(value), "(1 \"text\" (2.500000 . \"b\"))");
}

TEST_F(SharedLibrary, ChainsThatOneModuleMakesAreReleasedByAnother) {
  resbuf* const chain = First().NewChain();
  EXPECT_EQ(Types(chain), "5003:1 5005:chain");
  Second().Release(chain);
}

TEST_F(SharedLibrary, AModulesExceptionIsCaughtOutside) {
  try {
    First().Throw();
    ADD_FAILURE() << "not thrown";
  } catch (const std::exception& error) {
    EXPECT_STREQ(error.what(), "out of paper");
  }
  host.Define(L"THROW", [this] {
    Second().Throw();
    return RTNORM;
  });
  EXPECT_EQ(host.Call(L"THROW", L"").errors, std::vector<std::string>{"an exception: out of paper"});
}

// --- Client modules ---

TEST_F(SharedLibrary, ModulesAreLoadedCalledAndUnloaded) {
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(host.modules.Load(PLAN_MODULE).value_or(""), "");
    EXPECT_EQ(host.modules.Load(PARTS_MODULE).value_or(""), "");
    EXPECT_EQ(Utf8(host.Evaluate(L"(COUNT-KINDS '(\"bolt\" \"nut\" \"bolt\"))").Text()),
              "((\"bolt\" . 2) (\"nut\" . 1))");
    EXPECT_EQ(Utf8(host.Evaluate(L"(COUNT-KINDS (LAYER-TOTALS))").Text()), "nil");
    host.modules.UnloadAll();
    EXPECT_FALSE(host.IsDefined(L"COUNT-KINDS"));
    EXPECT_EQ(host.modules.TakeReports(), std::vector<std::string>());
  }
}

TEST_F(SharedLibrary, WhatIsNoModuleIsRefused) {
  EXPECT_NE(host.modules.Load("missing.module").value_or(""), "");
  const std::string error = host.modules.Load(FIRST_MODULE).value_or("");
  EXPECT_TRUE(error.ends_with("is no module: it has no acrxEntryPoint")) << error;
}

}  // namespace
}  // namespace lomlisp::test
