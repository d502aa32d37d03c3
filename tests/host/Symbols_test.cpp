#include <tests/support/Chains.h>
#include <tests/support/SmallStack.h>

namespace lomlisp::test {
namespace {

class ValueSymbols : public HostTest {
 protected:
  void Bind(std::wstring_view name, std::wstring_view text) {
    std::string error;
    host.symbols.Set(name, embedded::FromText(text, error).value());
  }
  std::string Bound(std::wstring_view name) {
    const embedded::Chain* value = host.symbols.Find(name);
    return value != nullptr ? Utf8(embedded::ToText(*value)) : "unbound";
  }
  static std::string GetSym(const wchar_t* name) {
    CLOMAdsLispVar value(L"old");
    if (value.GetSym(name)) return Tree(value);
    EXPECT_EQ(value.New(), nullptr);
    return "false";
  }
  // The types of the records that the platform was last given for a symbol.
  std::string Put() const {
    std::string types;
    for (const embedded::Record& record : host.log.Last("acedPutSym")->chains.at(0))
      types += (types.empty() ? "" : " ") + std::to_string(record.type);
    return types;
  }
};

std::string CannotSet(const std::string& name) {
  return "\nLOM_LispVariable::PutSym : Kann Variable \"" + name + "\" nicht setzen !";
}

// --- GetSym ---

TEST_F(ValueSymbols, GetSymGivesTheValue) {
  Bind(L"X", L"5");
  EXPECT_EQ(GetSym(L"X"), "5003:5");
  EXPECT_EQ(GetSym(L"x"), "5003:5");
  Bind(L"X", L"\"text\"");
  EXPECT_EQ(GetSym(L"X"), "5005:text");
  Bind(L"X", L"T");
  EXPECT_EQ(GetSym(L"X"), "5021");
  Bind(L"X", L"(1 (\"a\" nil) 2.5)");
  EXPECT_EQ(GetSym(L"X"), "(5003:1 (5005:a nil) 5001:2.5)");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueSymbols, GetSymReadsBothDottedForms) {
  Bind(L"X", L"(1 . \"b\")");
  for (const auto dotted : {embedded::Switches::Dotted::BeforeLast, embedded::Switches::Dotted::AtEnd}) {
    host.switches.dotted = dotted;
    EXPECT_EQ(GetSym(L"X"), "{5003:1 5005:b}");
  }
}

TEST_F(ValueSymbols, AnUnboundSymbolIsNilAndNoFailure) {
  for (const bool null : {false, true}) {
    host.switches.unboundGivesNull = null;
    EXPECT_EQ(GetSym(L"NOWHERE"), "nil");
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueSymbols, GetSymFailsSilentlyWhenThePlatformRefuses) {
  Bind(L"X", L"5");
  for (const int status : {RTERROR, RTCAN, RTREJ, RTFAIL, RTKWORD, 0}) {
    host.log.Answer("acedGetSym", status, 1);
    EXPECT_EQ(GetSym(L"X"), "false");
  }
  EXPECT_EQ(GetSym(L"X"), "5003:5");
  EXPECT_EQ(GetSym(L"not a name"), "false");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueSymbols, GetSymLeavesTheTreeThatTheValueShared) {
  Bind(L"X", L"5");
  CLOMAdsLispVar value = V(L"(1 2)");
  const CLOMAdsLispVar other(value);
  EXPECT_TRUE(value.GetSym(L"X"));
  EXPECT_EQ(Tree(other), "(5003:1 5003:2)");
}

TEST_F(ValueSymbols, TheNameMayBeTheValuesOwnText) {
  Bind(L"OWN", L"5");
  CLOMAdsLispVar value(L"OWN");
  EXPECT_TRUE(value.GetSym(value.GetAtom()));
  EXPECT_EQ(Tree(value), "5003:5");
}

TEST_F(ValueSymbols, AValueThatCannotBeConvertedIsNilAndNoFailure) {
  embedded::Record record;
  record.type = 1001;
  record.text = L"APP";
  record.hasText = true;
  host.symbols.Set(L"X", {record});
  EXPECT_EQ(GetSym(L"X"), "nil");
  EXPECT_EQ(Printed(), "");
  embedded::Record unknown;
  unknown.type = 5025;
  host.symbols.Set(L"X", {unknown});
  EXPECT_EQ(GetSym(L"X"), "nil");
  EXPECT_EQ(Printed(),
            "LispVar::ADSToLisp : invalid type Nr. 5025 in resbuf\n"
            "                     as a result of the nontransparent interface\n");
}

TEST_F(ValueSymbols, TextsOfGroupsAreReleasedWithTheChain) {
  embedded::Chain groups(2);
  for (embedded::Record& record : groups) {
    record.type = 8;
    record.text = L"layer";
    record.hasText = true;
  }
  host.symbols.Set(L"X", groups);
  EXPECT_EQ(GetSym(L"X"), "({5003:8 5005:layer} {5003:8 5005:layer})");
}

// --- PutSym ---

TEST_F(ValueSymbols, PutSymKeepsTheBracketsOfAList) {
  EXPECT_TRUE(V(L"(1 2)").PutSym(L"X"));
  EXPECT_EQ(Put(), "5016 5003 5003 5017");
  EXPECT_EQ(host.log.Last("acedPutSym")->name, L"X");
  EXPECT_EQ(Bound(L"X"), "(1 2)");
  EXPECT_TRUE(V(L"((1))").PutSym(L"X"));
  EXPECT_EQ(Bound(L"X"), "((1))");
  EXPECT_EQ(host.log.Count("acedGetSym"), 0U);
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueSymbols, PutSymStoresEveryKindOfValue) {
  EXPECT_TRUE(CLOMAdsLispVar(L"text").PutSym(L"X"));
  EXPECT_EQ(Bound(L"X"), "\"text\"");
  EXPECT_TRUE(V(L"(1 . 2)").PutSym(L"X"));
  EXPECT_EQ(Put(), "5016 5003 5018 5003 5017");
  EXPECT_EQ(Bound(L"X"), "(1 . 2)");
  EXPECT_TRUE(V(L"T").PutSym(L"X"));
  EXPECT_EQ(Put(), "5021");
  EXPECT_TRUE(V(L"((0 . \"s\"))").PutSym(L"X"));
  EXPECT_EQ(Put(), "5016 5016 5003 5018 5005 5017 5017") << "groups stay plain";
  EXPECT_TRUE(CLOMAdsLisp::Nil.PutSym(L"X"));
  EXPECT_EQ(Put(), "5019");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueSymbols, PutSymNamesTheSymbolThatCannotBeSet) {
  for (const int status : {RTERROR, RTCAN, RTREJ, RTFAIL, RTKWORD, 0}) {
    host.log.Answer("acedPutSym", status, 1);
    EXPECT_FALSE(CLOMAdsLispVar(short{1}).PutSym(L"X"));
    EXPECT_EQ(Printed(), CannotSet("X"));
  }
  EXPECT_FALSE(CLOMAdsLispVar(short{1}).PutSym(L"T"));
  EXPECT_EQ(Printed(), CannotSet("T"));
  EXPECT_FALSE(CLOMAdsLispVar(short{1}).PutSym(L"no name %d"));
  EXPECT_EQ(Printed(), CannotSet("no name %d"));
}

TEST_F(ValueSymbols, TheNameOfPutSymMayBeTheValuesOwnText) {
  CLOMAdsLispVar value(L"OWN");
  EXPECT_TRUE(value.PutSym(value.GetAtom()));
  EXPECT_EQ(Bound(L"OWN"), "\"OWN\"");
}

TEST_F(ValueSymbols, WhatWasPutComesBack) {
  for (const wchar_t* text : {L"(1 (2 . \"b\") nil T)", L"\"x\"", L"70000", L"((1))"}) {
    EXPECT_TRUE(V(text).PutSym(L"X"));
    EXPECT_EQ(GetSym(L"X"), Tree(V(text)));
  }
}

// --- The facade ---

TEST_F(ValueSymbols, TheFacadeTakesATextAsTheName) {
  const CLOMAdsLispVar name(L"X"), value = V(L"(1 2)");
  EXPECT_EQ(CLOMAdsLisp::PutSym(name, value).New(), value.New()) << "the tree is shared";
  EXPECT_EQ(Bound(L"X"), "(1 2)");
  EXPECT_EQ(Tree(CLOMAdsLisp::GetSym(name)), "(5003:1 5003:2)");
  EXPECT_EQ(Tree(CLOMAdsLisp::GetSym(L"NOWHERE")), "nil");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueSymbols, TheFacadeGivesNilOnFailure) {
  host.log.AnswerAll("acedGetSym", RTERROR);
  host.log.AnswerAll("acedPutSym", RTERROR);
  Bind(L"X", L"5");
  EXPECT_EQ(Tree(CLOMAdsLisp::GetSym(L"X")), "nil");
  EXPECT_EQ(Printed(), "");
  EXPECT_EQ(Tree(CLOMAdsLisp::PutSym(L"X", short{1})), "nil");
  EXPECT_EQ(Printed(), CannotSet("X"));
}

TEST_F(ValueSymbols, AnythingElseIsNoNameAndThePlatformIsNotAsked) {
  for (const CLOMAdsLispVar& name :
       {CLOMAdsLispVar(short{1}), CLOMAdsLispVar(), V(L"(\"X\")"), V(L"T"), CLOMAdsLispVar(2.5)}) {
    EXPECT_EQ(Tree(CLOMAdsLisp::GetSym(name)), "nil");
    EXPECT_EQ(Printed(), "CLOMAdsLisp::GetSym : Parameter ist kein String !\n");
    EXPECT_EQ(Tree(CLOMAdsLisp::PutSym(name, short{1})), "nil");
    EXPECT_EQ(Printed(), "CLOMAdsLisp::PutSym : Parameter ist kein String !\n");
  }
  EXPECT_TRUE(host.log.Calls().empty());
}

// --- Size and memory ---

TEST_F(ValueSymbols, ManyLevels) {
  const CLOMAdsLispVar value = Nested(kLarge / 5, short{1});
  host.log.Enable(false);
  OnSmallStack([&] {
    EXPECT_TRUE(value.PutSym(L"X"));
    CLOMAdsLispVar back;
    EXPECT_TRUE(back.GetSym(L"X"));
    EXPECT_EQ(back.Length(), 1U);
  });
}

TEST_F(ValueSymbols, NothingLeaksWhenMemoryRunsOut) {
  Bind(L"X", L"(1 \"a\" (\"b\"))");
  FailEachAllocation([&] { return GetSym(L"X") == "(5003:1 5005:a (5005:b))"; });
  const CLOMAdsLispVar value = V(L"(1 \"a\")");
  FailEachAllocation([&] { return value.PutSym(L"Y") && Bound(L"Y") == "(1 \"a\")"; });
}

}  // namespace
}  // namespace lomlisp::test
