// Client modules as shared objects: loading, calling, unloading, and what is said of those that misbehave.
#include <embedded/SharedObject.h>
#include <tests/support/HostTest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#ifndef _WIN32
#include <dlfcn.h>
#endif

// The module has one of the same name.
int NameOfBoth() { return 1; }

namespace lomlisp::test {
namespace {

using embedded::CallResult;
using embedded::Modules;
using embedded::SharedObject;
using Texts = std::vector<std::string>;

const std::filesystem::path kTestModules = TEST_MODULES;
const std::filesystem::path kParts = PARTS_MODULE;
const std::filesystem::path kPlan = PLAN_MODULE;

#ifdef _WIN32

bool IsInProcess(const std::filesystem::path& path) {
  return GetModuleHandleW(std::filesystem::absolute(path).make_preferred().c_str()) != nullptr;
}

std::string SystemText(int error) { return std::system_category().message(error); }
const std::string kNoFile = SystemText(ERROR_MOD_NOT_FOUND);
const std::string kNoObject = SystemText(ERROR_BAD_EXE_FORMAT);
// The whole of a DLL that it needs, of which Windows does not say the name.
const std::string kUnresolved = SystemText(ERROR_MOD_NOT_FOUND);
// The host does not look for the names of functions there.
const std::string kByFunction;

#else

bool IsInProcess(const std::filesystem::path& path) {
  void* const handle = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
  if (handle != nullptr) dlclose(handle);
  return handle != nullptr;
}

const std::string kNoFile = "cannot open";
const std::string kNoObject = "invalid ELF header";
const std::string kUnresolved = "undefined symbol: _Z20acedNothingOfTheKindv";
const std::string kByFunction = ", by ";

#endif

class ModulesTest : public HostTest {
 protected:
  ~ModulesTest() override { host.Reset(); }

  // Empty when there is none.
  static std::string Text(const std::optional<std::string>& error) { return error.value_or(""); }
  std::string Load(const char* module) { return LoadFile(kTestModules / module); }
  std::string Unload(const char* module) { return Text(host.modules.Unload(module)); }
  std::string LoadFile(const std::filesystem::path& file) { return Text(host.modules.Load(file)); }
  std::string UnloadFile(const std::filesystem::path& file) {
    return Unload(file.filename().string().c_str());
  }
  Texts Reports() { return host.modules.TakeReports(); }

  std::string Call(const wchar_t* expression) {
    const CallResult result = host.Evaluate(expression);
    EXPECT_EQ(result.errors, Texts());
    return Utf8(result.Text());
  }
  Texts ErrorsOf(const wchar_t* function) { return host.Call(function, L"1").errors; }
};

// --- Loading and unloading ---

TEST_F(ModulesTest, AModuleIsLoadedCalledUnloadedAndLoadedAgain) {
  for (int time = 0; time < 3; ++time) {
    EXPECT_FALSE(IsInProcess(kParts));
    EXPECT_EQ(LoadFile(kParts), "");
    EXPECT_TRUE(IsInProcess(kParts));
    EXPECT_EQ(host.modules.Names(), Texts{kParts.filename().string()});
    EXPECT_EQ(Call(L"(count-kinds '(\"bolt\" \"nut\" \"bolt\"))"), "((\"bolt\" . 2) (\"nut\" . 1))");
    EXPECT_EQ(UnloadFile(kParts), "");
    EXPECT_EQ(host.modules.Names(), Texts());
    EXPECT_EQ(host.FunctionNames().size(), 0U);
    EXPECT_EQ(ErrorsOf(L"COUNT-KINDS"), Texts{"no function is named COUNT-KINDS"});
    EXPECT_EQ(Reports(), Texts());
  }
  EXPECT_FALSE(IsInProcess(kParts));
}

TEST_F(ModulesTest, SeveralModulesAreThereTogether) {
  EXPECT_EQ(LoadFile(kPlan), "");
  EXPECT_EQ(LoadFile(kParts), "");
  EXPECT_EQ(host.modules.Names(), (Texts{kPlan.filename().string(), kParts.filename().string()}));
  EXPECT_EQ(Call(L"(COUNT-KINDS (LAYER-TOTALS))"), "nil");
  EXPECT_EQ(UnloadFile(kPlan), "");
  EXPECT_FALSE(host.IsDefined(L"LAYER-TOTALS"));
  EXPECT_EQ(Call(L"(NEST '(1 2))"), "((1 2))");
  host.modules.UnloadAll();
  EXPECT_EQ(host.modules.Names(), Texts());
}

TEST_F(ModulesTest, StaticObjectsBeginAnew) {
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(Load("Misbehaving.so"), "");
    EXPECT_EQ(Call(L"(COUNT)"), "1");
    EXPECT_EQ(Call(L"(COUNT)"), "2");
    EXPECT_EQ(Unload("Misbehaving.so"), "");
  }
}

TEST_F(ModulesTest, MessagesComeInOrder) {
  EXPECT_EQ(Load("Refusing.so"), "");
  EXPECT_EQ(Unload("Refusing.so"), "");
  EXPECT_EQ(Printed(), "1 3 4 2 ");
}

TEST_F(ModulesTest, ResetUnloadsAllModules) {
  EXPECT_EQ(Load("Misbehaving.so"), "");
  host.Reset();
  EXPECT_EQ(host.modules.Names(), Texts());
  EXPECT_FALSE(IsInProcess(kTestModules / "Misbehaving.so"));
}

// --- What cannot be loaded ---

TEST_F(ModulesTest, FilesThatAreNoModules) {
  const std::string folder = (kTestModules / "").string();
  EXPECT_TRUE(Load("Missing.so").starts_with(folder + "Missing.so: " + kNoFile)) << Load("Missing.so");
  const std::filesystem::path source = std::filesystem::path(TEST_SOURCES) / "NoEntry.cpp";
  EXPECT_EQ(LoadFile(source), source.string() + ": " + kNoObject);
  EXPECT_EQ(Load("NoEntry.so"), folder + "NoEntry.so: is no module: it has no acrxEntryPoint");
  EXPECT_FALSE(IsInProcess(kTestModules / "NoEntry.so"));
  const std::string unresolved = Load("Unresolved.so");
  EXPECT_TRUE(unresolved.starts_with(folder + "Unresolved.so: " + kUnresolved)) << unresolved;
  EXPECT_EQ(host.modules.Names(), Texts());
}

TEST_F(ModulesTest, AModuleIsLoadedOnce) {
  EXPECT_EQ(Load("Misbehaving.so"), "");
  EXPECT_EQ(Load("Misbehaving.so"), "Misbehaving.so: a module of that name is loaded already");
  EXPECT_EQ(Call(L"(COUNT)"), "1");
  EXPECT_EQ(Unload("Misbehaving.so"), "");
  EXPECT_FALSE(IsInProcess(kTestModules / "Misbehaving.so"));
}

// A program may not make links on Windows, unless its user is an administrator.
#ifndef _WIN32
TEST_F(ModulesTest, AModuleOfTwoNamesIsLoadedOnce) {
  EXPECT_EQ(Load("Misbehaving.so"), "");
  const auto link = std::filesystem::temp_directory_path() / "lomlisp_other_name.so";
  std::filesystem::remove(link);
  std::filesystem::create_symlink(kTestModules / "Misbehaving.so", link);
  EXPECT_EQ(LoadFile(link), "lomlisp_other_name.so: is loaded already, as Misbehaving.so");
  std::filesystem::remove(link);
  EXPECT_EQ(Call(L"(COUNT)"), "1");
  EXPECT_EQ(Unload("Misbehaving.so"), "");
  EXPECT_FALSE(IsInProcess(kTestModules / "Misbehaving.so"));
}
#endif

TEST_F(ModulesTest, AModuleMayRefuseAndNothingIsLeft) {
  const std::vector<std::pair<const wchar_t*, std::string>> cases = {
      {L"\"refuse\"", "Refusing.so: refuses to be loaded"},
      {L"\"refuse the drawing\"", "Refusing.so: refuses to be loaded"},
      {L"\"throw\"", "Refusing.so: refuses to be loaded: an exception: no license"}};
  for (const auto& [misdeed, error] : cases) {
    CLOMAdsLisp::PutSym(L"MISDEED", V(misdeed));
    EXPECT_EQ(Load("Refusing.so"), error);
    EXPECT_EQ(host.modules.Names(), Texts());
    EXPECT_FALSE(host.IsDefined(L"C:NOTHING"));
    EXPECT_FALSE(IsInProcess(kTestModules / "Refusing.so"));
    EXPECT_EQ(Reports(), Texts());
  }
  EXPECT_EQ(Printed(), "1 1 3 2 1 ");
}

TEST_F(ModulesTest, WhatARefusingModuleLeaksIsReported) {
  CLOMAdsLisp::PutSym(L"MISDEED", V(L"\"leak\""));
  EXPECT_EQ(Load("Refusing.so"), "Refusing.so: refuses to be loaded");
  const Texts reports = Reports();
  ASSERT_EQ(reports.size(), 1U);
  EXPECT_TRUE(reports[0].starts_with("Refusing.so kInitAppMsg: not released: memory, 24 bytes" + kByFunction))
      << reports[0];
  acad_free(reinterpret_cast<void*>(host.symbols.Find(L"LEAKED")->front().value.rlname[0]));
}

TEST_F(ModulesTest, AFunctionThatCannotBeDefinedIsReported) {
  CLOMAdsLisp::PutSym(L"MISDEED", V(L"\"define nonsense\""));
  EXPECT_EQ(Load("Refusing.so"), "");
  EXPECT_EQ(Reports(), Texts{"Refusing.so kInitAppMsg: acedDefun: a name or a code that cannot be one"});
}

// --- What cannot be unloaded ---

TEST_F(ModulesTest, UnloadingNeedsAModuleThatAllowsIt) {
  EXPECT_EQ(Unload("Refusing.so"), "Refusing.so: no module of that name is loaded");
  CLOMAdsLisp::PutSym(L"MISDEED", V(L"\"stay locked\""));
  EXPECT_EQ(Load("Refusing.so"), "");
  EXPECT_EQ(Unload("Refusing.so"), "Refusing.so: is locked: it has not called acrxUnlockApplication");
  EXPECT_TRUE(host.IsDefined(L"C:NOTHING"));
}

TEST_F(ModulesTest, AModuleThatIsBeingCalledStays) {
  EXPECT_EQ(Load("Misbehaving.so"), "");
  EXPECT_EQ(Call(L"(UNLOAD-ITSELF)"), "\"Misbehaving.so: is being called\"");
  EXPECT_EQ(Unload("Misbehaving.so"), "");
}

TEST_F(ModulesTest, UnloadingCannotBeRefused) {
  const std::vector<std::pair<const wchar_t*, std::string>> cases = {
      {L"\"fail at the end\"", "Refusing.so kUnloadAppMsg: answered with an error"},
      {L"\"throw at the end\"", "Refusing.so kUnloadAppMsg: an exception: busy"}};
  for (const auto& [misdeed, report] : cases) {
    CLOMAdsLisp::PutSym(L"MISDEED", V(misdeed));
    EXPECT_EQ(Load("Refusing.so"), "");
    EXPECT_EQ(Unload("Refusing.so"), "");
    EXPECT_EQ(Reports(), Texts{report});
    EXPECT_FALSE(IsInProcess(kTestModules / "Refusing.so"));
  }
}

// --- Calls ---

class Calls : public ModulesTest {
 protected:
  Calls() { EXPECT_EQ(Load("Misbehaving.so"), ""); }

  // What the module exports, for as long as it is loaded.
  static void* Export(const char* name) {
    std::string error;
    const auto object = SharedObject::Open(kTestModules / "Misbehaving.so", error);
    return object ? object->Find(name) : nullptr;
  }
};

TEST_F(Calls, GoToTheHandlerOrToTheEntryPoint) {
  EXPECT_EQ(Call(L"(COUNT)"), "1");
  EXPECT_EQ(Call(L"(CODE)"), "11");
  EXPECT_EQ(acedGetFunCode(), RTERROR);
}

TEST_F(Calls, UseTheModulesOwnFunctions) {
  EXPECT_EQ(NameOfBoth(), 1);
  EXPECT_EQ(Call(L"(NAME-OF-BOTH)"), "2");
}

TEST_F(Calls, Nest) {
  EXPECT_EQ(Call(L"(NESTED (CODE))"), "1110");
  EXPECT_EQ(Unload("Misbehaving.so"), "");
}

TEST_F(Calls, MayFailByTheirMessage) {
  EXPECT_EQ(host.Call(L"FAIL-BY-MESSAGE", L"").status, RTERROR);
  EXPECT_EQ(host.Call(L"CODE", L"").status, RTNORM);
}

TEST_F(Calls, ExceptionsStayInside) {
  EXPECT_EQ(ErrorsOf(L"THROW"), Texts{"an exception: out of paper"});
  EXPECT_EQ(ErrorsOf(L"THROW-BY-MESSAGE"), Texts{"an exception"});
  EXPECT_EQ(host.Evaluate(L"(CODE (THROW))").errors, Texts{"THROW: an exception: out of paper"});
  EXPECT_EQ(Call(L"(CODE)"), "11");
  EXPECT_EQ(Unload("Misbehaving.so"), "");
}

TEST_F(Calls, ASecondResultIsAnError) {
  const CallResult result = host.Call(L"TWICE", L"");
  EXPECT_EQ(result.errors, Texts{"a second result"});
  EXPECT_EQ(Utf8(result.Text()), "1");
  EXPECT_EQ(result.status, RTNORM);
}

TEST_F(Calls, NoResultIsNilAndNoticed) {
  const CallResult result = host.Call(L"NOT", L"");
  EXPECT_EQ(result.errors, Texts());
  EXPECT_EQ(result.notices, Texts{"no result"});
  EXPECT_EQ(Utf8(result.Text()), "nil");
  EXPECT_EQ(host.Evaluate(L"(CODE (NOT))").notices, Texts{"NOT: no result"});
  EXPECT_EQ(host.Call(L"FAIL-BY-MESSAGE", L"").notices, Texts()) << "a failed call needs none";
  EXPECT_EQ(host.Call(L"CODE", L"").notices, Texts());
}

TEST_F(Calls, ADoubleFreeIsAnErrorOfItsFunction) {
  const Texts errors = ErrorsOf(L"FREE-TWICE");
  ASSERT_EQ(errors.size(), 1U);
  EXPECT_TRUE(errors[0].starts_with("freed twice: record of type 5003")) << errors[0];
  EXPECT_NE(errors[0].find("during FREE-TWICE"), std::string::npos) << errors[0];
  EXPECT_EQ(Call(L"(CODE)"), "11");
}

TEST_F(Calls, AKeptArgumentChainIsFoundWhenItIsUsed) {
  EXPECT_EQ(ErrorsOf(L"KEEP"), Texts());
  EXPECT_EQ(ErrorsOf(L"USE-KEPT"), Texts{"acedRetList: a record that was freed (record 1)"});
}

TEST_F(Calls, AKeptArgumentChainThatIsWrittenIsReportedWithItsFunction) {
  EXPECT_EQ(ErrorsOf(L"KEEP"), Texts());
  if (kSanitized) {
    EXPECT_DEATH(ErrorsOf(L"WRITE-KEPT"), "use-after-poison") << "the sanitizer sees the write itself";
    return;
  }
  EXPECT_EQ(ErrorsOf(L"WRITE-KEPT"), Texts());
  EXPECT_EQ(Unload("Misbehaving.so"), "");
  const Texts reports = Reports();
  ASSERT_EQ(reports.size(), 1U);
  EXPECT_TRUE(reports[0].starts_with("Misbehaving.so: written after the free: record of type 5003"))
      << reports[0];
  EXPECT_NE(reports[0].find("during KEEP"), std::string::npos) << reports[0];
}

TEST_F(Calls, LeaksAreReportedByFunctionWhenTheModuleGoes) {
  EXPECT_EQ(Call(L"(LEAK)"), "nil");
  EXPECT_EQ(Call(L"(HOLD)"), "(1 \"held\")");
  EXPECT_EQ(Call(L"(CODE)"), "11");
  EXPECT_EQ(Reports(), Texts()) << "what lives may still be released";
  resbuf* const lost = *static_cast<resbuf**>(Export("lost"));
  EXPECT_EQ(Unload("Misbehaving.so"), "");
  const Texts reports = Reports();
  ASSERT_EQ(reports.size(), 3U);
  EXPECT_TRUE(reports[0].starts_with("Misbehaving.so LEAK: not released: record of type 5003")) << reports[0];
  EXPECT_TRUE(reports[1].starts_with("Misbehaving.so LEAK: not released: record of type 5005")) << reports[1];
  EXPECT_TRUE(reports[2].starts_with("Misbehaving.so LEAK: not released: memory")) << reports[2];
  acutRelRb(lost);
}

// --- Names and codes ---

TEST_F(Calls, FunctionsAreUndefinedByNameAndCode) {
  EXPECT_EQ(Call(L"(FORGET)"), "T");
  EXPECT_FALSE(host.IsDefined(L"CODE"));
}

TEST_F(Calls, ANameThatIsDefinedAnewIsNoLongerTheModules) {
  host.Define(L"CODE", [] { return acedRetStr(L"the program's"); });
  EXPECT_EQ(Call(L"(FORGET)"), "nil");
  EXPECT_EQ(Unload("Misbehaving.so"), "");
  EXPECT_EQ(Call(L"(CODE)"), "\"the program's\"");
}

TEST_F(ModulesTest, OnlyModulesDefineFunctions) {
  EXPECT_EQ(acedDefun(L"F", 0), RTERROR);
  EXPECT_EQ(acedUndef(L"F", 0), RTERROR);
  EXPECT_EQ(acedRegFunc([] { return RTNORM; }, 0), RTERROR);
  EXPECT_EQ(host.log.Last("acedDefun")->objection, "no module handles a message or a call");
  EXPECT_FALSE(acrxUnlockApplication(this));
  EXPECT_FALSE(acrxRegisterAppMDIAware(nullptr));
  EXPECT_FALSE(host.IsDefined(L"F"));
}

// --- Values and modules ---

TEST_F(Calls, AValueOutlivesTheModuleThatMadeIt) {
  const auto makeValue = reinterpret_cast<CLOMAdsLispVar* (*)()>(Export("MakeValue"));
  const std::unique_ptr<CLOMAdsLispVar> value(makeValue());
  EXPECT_EQ(Unload("Misbehaving.so"), "");
  ASSERT_FALSE(IsInProcess(kTestModules / "Misbehaving.so"));
  EXPECT_EQ(test::Text(*value), "(1 \"c\" (\"a\" . \"b\"))");
  CLOMAdsLisp::SetQ(*value, CLOMAdsLisp::Cons(0, *value));
  EXPECT_EQ(test::Text(*value), "(0 1 \"c\" (\"a\" . \"b\"))");
}

TEST_F(ModulesTest, ASymbolOutlivesTheModuleThatSetIt) {
  EXPECT_EQ(LoadFile(kParts), "");
  EXPECT_EQ(Call(L"(REMEMBER \"KEPT\" '(1 (\"a\" . 2)))"), "(1 (\"a\" . 2))");
  EXPECT_EQ(UnloadFile(kParts), "");
  EXPECT_EQ(test::Text(CLOMAdsLisp::GetSym(L"KEPT")), "(1 (\"a\" . 2))");
}

// --- Results ---

class Results : public HostTest {
 protected:
  template <typename Function>
  CallResult Returning(Function function) {
    host.Define(L"F", [function] { return function(); });
    return host.Call(L"F", L"");
  }
};

TEST_F(Results, HaveFunctionsOfTheirOwn) {
  const ads_point point{1, 2.5, 3};
  const ads_name name{0x1f, 1};
  EXPECT_EQ(Utf8(Returning([] { return acedRetNil(); }).Text()), "nil");
  EXPECT_EQ(Utf8(Returning([] { return acedRetT(); }).Text()), "T");
  EXPECT_EQ(Utf8(Returning([] { return acedRetReal(0.5); }).Text()), "0.5");
  EXPECT_EQ(Utf8(Returning([] { return acedRetStr(L"a\"b"); }).Text()), "\"a\\\"b\"");
  EXPECT_EQ(Utf8(Returning([&] { return acedRetPoint(point); }).Text()), "(1.0 2.5 3.0)");
  EXPECT_EQ(Returning([&] { return acedRetName(name, RTENAME); }).value[0].value.rlname[0], 0x1f);
  EXPECT_EQ(Returning([&] { return acedRetName(name, RTPICKS); }).value[0].type, RTPICKS);
}

TEST_F(Results, IntegersAreAsShortAsTheyCanBe) {
  const auto typeOf = [this](int value) {
    return Returning([=] { return acedRetInt(value); }).value[0].type;
  };
  EXPECT_EQ(typeOf(32767), RTSHORT);
  EXPECT_EQ(typeOf(-32768), RTSHORT);
  EXPECT_EQ(typeOf(32768), RTLONG);
  EXPECT_EQ(Utf8(Returning([] { return acedRetInt(-2147483647); }).Text()), "-2147483647");
}

TEST_F(Results, VoidIsNilThatIsNotPrinted) {
  const CallResult result = Returning([] { return acedRetVoid(); });
  EXPECT_EQ(result.kind, CallResult::Kind::Void);
  EXPECT_EQ(Utf8(result.Text()), "nil");
  EXPECT_EQ(result.notices, Texts());
}

TEST_F(Results, NullIsNone) {
  EXPECT_EQ(Returning([] { return acedRetStr(nullptr); }).errors, Texts{"acedRetStr: no text"});
  EXPECT_EQ(Returning([] { return acedRetPoint(nullptr); }).errors, Texts{"acedRetPoint: no point"});
  EXPECT_EQ(Returning([] { return acedRetName(nullptr, RTENAME); }).errors, Texts{"acedRetName: no name"});
  const ads_name name{1, 1};
  EXPECT_EQ(Returning([&] { return acedRetName(name, RTSTR); }).errors,
            Texts{"acedRetName: a type that is neither RTENAME nor RTPICKS"});
  EXPECT_EQ(acedRetT(), RTERROR) << "outside of a call";
}

}  // namespace
}  // namespace lomlisp::test
