#include <tests/support/Chains.h>

namespace lomlisp::test {
namespace {

class ValueSystemVariables : public HostTest {
 protected:
  // Variables of each type, whatever a new drawing has.
  ValueSystemVariables() {
    Define(L"MYSHORT", Short(5));
    Define(L"MYREAL", Real(2.5));
    Define(L"MYTEXT", NoValue(RTSTR), L"text");
    Define(L"MYPOINT", Point(1, 2.5, 0, RTPOINT));
    Define(L"MY3DPOINT", Point(1, 2.5, -3));
  }

  void Define(std::wstring_view name, const resbuf& record, const wchar_t* text = nullptr) {
    embedded::SystemVariable variable;
    variable.value.type = record.restype;
    variable.value.value = record.resval;
    variable.value.hasText = text != nullptr;
    if (text != nullptr) variable.value.text = text;
    host.variables.Define(name, variable);
  }
  const embedded::Record& Value(std::wstring_view name) { return host.variables.Find(name)->value; }

  static std::string GetVar(const wchar_t* name) {
    CLOMAdsLispVar value(L"old");
    if (value.GetVar(name)) return Tree(value);
    EXPECT_EQ(value.New(), nullptr);
    return "false";
  }
  // The one record that the platform was last given.
  const embedded::Record& Given() const {
    const embedded::LoggedCall* call = host.log.Last("acedSetVar");
    EXPECT_EQ(call->chains.at(0).size(), 1U);
    return call->chains.at(0).at(0);
  }
};

std::string CannotSet(const std::string& name, const std::string& value) {
  return "CLOMAdsLispVar::SetVar : Kann Variable \"" + name + "\" nicht setzen ( " + value + " ) !\n";
}
std::string CannotSetPoint(const std::string& name) {
  return "CLOMAdsLispVar::SetVar : Kann Variable \"" + name + "\" nicht setzen !\n";
}
constexpr const char* kNoAtom = "CLOMAdsLispVar::SetVar : Wert ist kein Atom !\n";

// --- GetVar ---

TEST_F(ValueSystemVariables, GetVarGivesTheValue) {
  EXPECT_EQ(GetVar(L"MYSHORT"), "5003:5");
  EXPECT_EQ(GetVar(L"myshort"), "5003:5");
  EXPECT_EQ(GetVar(L"MYREAL"), "5001:2.5");
  EXPECT_EQ(GetVar(L"MYTEXT"), "5005:text");
  EXPECT_EQ(GetVar(L"MYPOINT"), "(5001:1 5001:2.5)");
  EXPECT_EQ(GetVar(L"MY3DPOINT"), "(5001:1 5001:2.5 5001:-3)");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueSystemVariables, GetVarFailsSilentlyWhenThePlatformRefuses) {
  EXPECT_EQ(GetVar(L"NOSUCHVARIABLE"), "false");
  for (const int status : {RTERROR, RTCAN, RTREJ, RTFAIL, RTKWORD, 0}) {
    host.log.Answer("acedGetVar", status, 1);
    EXPECT_EQ(GetVar(L"MYTEXT"), "false");
  }
  EXPECT_EQ(GetVar(L"MYTEXT"), "5005:text");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueSystemVariables, TheNameOfGetVarMayBeTheValuesOwnText) {
  CLOMAdsLispVar value(L"MYTEXT");
  EXPECT_TRUE(value.GetVar(value.GetAtom()));
  EXPECT_EQ(Tree(value), "5005:text");
}

TEST_F(ValueSystemVariables, GetVarLeavesTheTreeThatTheValueShared) {
  CLOMAdsLispVar value = V(L"(1 2)");
  const CLOMAdsLispVar other(value);
  EXPECT_TRUE(value.GetVar(L"MYSHORT"));
  EXPECT_EQ(Tree(other), "(5003:1 5003:2)");
}

// --- SetVar ---

TEST_F(ValueSystemVariables, SetVarTakesAtoms) {
  EXPECT_TRUE(CLOMAdsLispVar(short{7}).SetVar(L"MYSHORT"));
  EXPECT_EQ(host.log.Last("acedSetVar")->name, L"MYSHORT");
  EXPECT_EQ(Given().type, RTSHORT);
  EXPECT_EQ(Value(L"MYSHORT").value.rint, 7);
  EXPECT_TRUE(CLOMAdsLispVar(1.25).SetVar(L"MYREAL"));
  EXPECT_EQ(Value(L"MYREAL").value.rreal, 1.25);
  EXPECT_TRUE(CLOMAdsLispVar(L"new").SetVar(L"MYTEXT"));
  EXPECT_EQ(Value(L"MYTEXT").text, L"new");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueSystemVariables, SetVarTakesPoints) {
  EXPECT_TRUE(V(L"(4 5.5)").SetVar(L"MYPOINT"));
  EXPECT_EQ(Given().type, RTPOINT);
  EXPECT_EQ(Given().value.rpoint[0], 4);
  EXPECT_EQ(Given().value.rpoint[1], 5.5);
  EXPECT_TRUE(V(L"(4.0 5 6)").SetVar(L"MY3DPOINT"));
  EXPECT_EQ(Given().type, RT3DPOINT);
  EXPECT_EQ(Given().value.rpoint[0], 4);
  EXPECT_EQ(Given().value.rpoint[1], 5);
  EXPECT_EQ(Given().value.rpoint[2], 6);
  EXPECT_EQ(GetVar(L"MY3DPOINT"), "(5001:4 5001:5 5001:6)");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueSystemVariables, SetVarRefusesEverythingElseAndThePlatformIsNotAsked) {
  for (const CLOMAdsLispVar& value :
       {V(L"(\"a\" \"b\" \"c\")"), V(L"(1)"), V(L"(1 2 3 4)"), V(L"(1 . 2)"), ListOf({}), CLOMAdsLispVar()}) {
    EXPECT_FALSE(value.SetVar(L"MYSHORT"));
    EXPECT_EQ(Printed(), kNoAtom);
  }
  EXPECT_TRUE(host.log.Calls().empty());
}

TEST_F(ValueSystemVariables, SetVarNamesTheVariableAndTheAtomItCannotTake) {
  host.log.AnswerAll("acedSetVar", RTERROR);
  EXPECT_FALSE(CLOMAdsLispVar(L"X").SetVar(L"MYTEXT"));
  EXPECT_EQ(Printed(), CannotSet("MYTEXT", "\"X\""));
  EXPECT_FALSE(CLOMAdsLispVar(short{-5}).SetVar(L"MYSHORT"));
  EXPECT_EQ(Printed(), CannotSet("MYSHORT", "-5"));
  EXPECT_FALSE(CLOMAdsLispVar(2.5).SetVar(L"a %s name"));
  EXPECT_EQ(Printed(), CannotSet("a %s name", "2.500000"));
  CLOMAdsLispVar nil(short{1});
  nil.GetAtom() = static_cast<ADSResType>(RTNIL);
  EXPECT_FALSE(nil.SetVar(L"MYSHORT"));
  EXPECT_EQ(Printed(), CannotSet("MYSHORT", "nil"));
}

TEST_F(ValueSystemVariables, SetVarNamesOnlyTheVariableForAPoint) {
  host.log.AnswerAll("acedSetVar", RTERROR);
  EXPECT_FALSE(V(L"(1 2)").SetVar(L"MYPOINT"));
  EXPECT_EQ(Printed(), CannotSetPoint("MYPOINT"));
  EXPECT_FALSE(V(L"(1 2 3)").SetVar(L"MY3DPOINT"));
  EXPECT_EQ(Printed(), CannotSetPoint("MY3DPOINT"));
}

TEST_F(ValueSystemVariables, OnlyTheStatusOfSuccessIsTrue) {
  for (const int status : {RTERROR, RTCAN, RTREJ, RTFAIL, RTKWORD, 0, 1}) {
    host.log.Answer("acedSetVar", status, 1);
    EXPECT_FALSE(CLOMAdsLispVar(short{1}).SetVar(L"MYSHORT"));
    host.log.Answer("acedSetVar", status, 1);
    EXPECT_FALSE(V(L"(1 2 3)").SetVar(L"MY3DPOINT"));
  }
  EXPECT_EQ(Value(L"MYSHORT").value.rint, 5);
}

TEST_F(ValueSystemVariables, AWrongTypeKeepsTheOldValue) {
  EXPECT_FALSE(CLOMAdsLispVar(L"X").SetVar(L"MYSHORT"));
  EXPECT_EQ(Printed(), CannotSet("MYSHORT", "\"X\""));
  EXPECT_EQ(Value(L"MYSHORT").value.rint, 5);
  EXPECT_FALSE(CLOMAdsLispVar(short{1}).SetVar(L"NOSUCHVARIABLE"));
  EXPECT_EQ(Printed(), CannotSet("NOSUCHVARIABLE", "1"));
}

TEST_F(ValueSystemVariables, TheNameOfSetVarMayBeTheValuesOwnText) {
  CLOMAdsLispVar value(L"MYTEXT");
  EXPECT_TRUE(value.SetVar(value.GetAtom()));
  EXPECT_EQ(Value(L"MYTEXT").text, L"MYTEXT");
}

// --- The facade ---

TEST_F(ValueSystemVariables, TheFacadeTakesATextAsTheName) {
  EXPECT_EQ(Tree(CLOMAdsLisp::GetVar(L"MYSHORT")), "5003:5");
  const CLOMAdsLispVar point = V(L"(4 5 6)"), number(short{9});
  EXPECT_EQ(CLOMAdsLisp::SetVar(L"MY3DPOINT", point).New(), point.New()) << "the tree is shared";
  EXPECT_EQ(CLOMAdsLisp::SetVar(L"MYSHORT", number).New(), number.New());
  EXPECT_EQ(Value(L"MYSHORT").value.rint, 9);
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueSystemVariables, TheFacadeGivesNilOnFailure) {
  EXPECT_EQ(Tree(CLOMAdsLisp::GetVar(L"NOSUCHVARIABLE")), "nil");
  EXPECT_EQ(Printed(), "");
  EXPECT_EQ(Tree(CLOMAdsLisp::SetVar(L"NOSUCHVARIABLE", short{1})), "nil");
  EXPECT_EQ(Printed(), CannotSet("NOSUCHVARIABLE", "1"));
  EXPECT_EQ(Tree(CLOMAdsLisp::SetVar(L"MYSHORT", CLOMAdsLisp::Nil)), "nil");
  EXPECT_EQ(Printed(), kNoAtom);
}

TEST_F(ValueSystemVariables, AnythingElseIsNoNameAndThePlatformIsNotAsked) {
  for (const CLOMAdsLispVar& name :
       {CLOMAdsLispVar(short{1}), CLOMAdsLispVar(), V(L"(\"X\")"), V(L"T"), CLOMAdsLispVar(2.5)}) {
    EXPECT_EQ(Tree(CLOMAdsLisp::GetVar(name)), "nil");
    EXPECT_EQ(Printed(), "CLOMAdsLisp::GetVar : Parameter ist kein String !\n");
    EXPECT_EQ(Tree(CLOMAdsLisp::SetVar(name, short{1})), "nil");
    EXPECT_EQ(Printed(), "CLOMAdsLisp::SetVar : Parameter ist kein String !\n");
  }
  EXPECT_TRUE(host.log.Calls().empty());
}

// --- Memory ---

TEST_F(ValueSystemVariables, NothingLeaksWhenMemoryRunsOut) {
  FailEachAllocation([] { return GetVar(L"MYTEXT") == "5005:text"; });
  const CLOMAdsLispVar text(L"new");
  FailEachAllocation([&] { return text.SetVar(L"MYTEXT") && Value(L"MYTEXT").text == L"new"; });
}

}  // namespace
}  // namespace lomlisp::test
