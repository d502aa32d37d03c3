#include <tests/support/Chains.h>
#include <tests/support/SmallStack.h>

namespace lomlisp::test::return_value {
namespace {

constexpr size_t kMany = kLarge / 5;

class ValueReturn : public HostTest {
 protected:
  embedded::CallResult Run(const std::function<void()>& body) {
    host.Define(L"F", [&] {
      body();
      return RTNORM;
    });
    return host.Call(L"F", L"");
  }

  // The platform function that was called and the records it was given, as in
  // "acedRetList 5003:1 5003:2".
  std::string Handed(const CLOMAdsLispVar& value) {
    const std::string before = Tree(value);
    host.log.Clear();
    const embedded::CallResult result = Run([&] { EXPECT_TRUE(value.ads_return()); });
    for (const std::string& error : result.errors) ADD_FAILURE() << error;
    EXPECT_EQ(Tree(value), before) << "the value stays";
    EXPECT_EQ(host.log.Count("acedRetVal") + host.log.Count("acedRetList"), 1U);
    return LastReturn();
  }
  std::string LastReturn() const {
    for (const char* function : {"acedRetVal", "acedRetList"}) {
      const embedded::LoggedCall* call = host.log.Last(function);
      if (call == nullptr) continue;
      EXPECT_EQ(call->objection.value_or(""), "");
      std::string text = function;
      for (const embedded::Record& record : call->chains.at(0)) text += " " + Word(record);
      return text;
    }
    return "";
  }
  // What LISP gets.
  std::string Received(const CLOMAdsLispVar& value) {
    return Utf8(Run([&] { value.ads_return(); }).Text());
  }

  void SetFlag(std::wstring_view text) {
    std::string error;
    host.symbols.Set(L"LOM_RETURNFLAG", embedded::FromText(text, error).value());
  }

 private:
  static std::string Word(const embedded::Record& record) {
    std::string word = std::to_string(record.type);
    if (record.type == RTSHORT) word += ":" + std::to_string(record.value.rint);
    if (record.hasText) word += ":" + Utf8(record.text);
    return word;
  }
};

// --- What each kind of value becomes ---

TEST_F(ValueReturn, NilIsOneRecord) {
  EXPECT_EQ(Handed(CLOMAdsLisp::Nil), "acedRetVal 5019");
  EXPECT_EQ(Received(CLOMAdsLisp::Nil), "nil");
  CLOMAdsLispVar atom(short{1});
  atom.GetAtom() = static_cast<ADSResType>(RTNIL);
  EXPECT_EQ(Handed(atom), "acedRetVal 5019");
}

TEST_F(ValueReturn, TheEmptyListIsAnEmptyChain) {
  EXPECT_EQ(Handed(ListOf({})), "acedRetList");
  EXPECT_EQ(Received(ListOf({})), "nil");
}

TEST_F(ValueReturn, AnAtomIsItsRecord) {
  EXPECT_EQ(Handed(V(L"T")), "acedRetVal 5021");
  EXPECT_EQ(Handed(short{-5}), "acedRetVal 5003:-5");
  EXPECT_EQ(Handed(L"text"), "acedRetVal 5005:text");
  EXPECT_EQ(Handed(2.5), "acedRetVal 5001");
  EXPECT_EQ(Handed(70000L), "acedRetVal 5010");
  EXPECT_EQ(Handed(CLOMAdsLispVar(Records{Name(31)})), "acedRetVal 5006");
  EXPECT_EQ(Handed(CLOMAdsLispVar(Records{Name(7, RTPICKS)})), "acedRetVal 5007");
  const double point[3] = {1, 2, 3};
  CLOMAdsLispVar atom(short{1});
  atom.GetAtom() = ResBuf(point);
  EXPECT_EQ(Handed(atom), "acedRetVal 5009");
}

TEST_F(ValueReturn, LispReceivesTheAtom) {
  EXPECT_EQ(Received(V(L"T")), "T");
  EXPECT_EQ(Received(short{-5}), "-5");
  EXPECT_EQ(Received(L"text"), "\"text\"");
}

TEST_F(ValueReturn, AListIsItsMembers) {
  EXPECT_EQ(Handed(V(L"(1 2 3)")), "acedRetList 5003:1 5003:2 5003:3");
  EXPECT_EQ(Received(V(L"(1 2 3)")), "(1 2 3)");
  EXPECT_EQ(Handed(V(L"(\"a\")")), "acedRetList 5005:a");
  EXPECT_EQ(Received(V(L"(\"a\")")), "(\"a\")");
  EXPECT_EQ(Handed(V(L"(1 (2 3))")), "acedRetList 5003:1 5016 5003:2 5003:3 5017");
}

TEST_F(ValueReturn, ADottedPairIsItsPartsAndTheDot) {
  EXPECT_EQ(Handed(V(L"(1 . 2)")), "acedRetList 5003:1 5018 5003:2");
  EXPECT_EQ(Received(V(L"(1 . 2)")), "(1 . 2)");
}

TEST_F(ValueReturn, GroupsStayPlain) {
  EXPECT_EQ(Handed(V(L"((0 . \"s\") (8 . \"l\"))")),
            "acedRetList 5016 5003:0 5018 5005:s 5017 5016 5003:8 5018 5005:l 5017");
}

// --- The only member of a list is a list ---

TEST_F(ValueReturn, AListInAListIsWrappedOnceMore) {
  EXPECT_EQ(Handed(V(L"((\"A\" 1))")), "acedRetList 5016 5016 5005:A 5003:1 5017 5017");
  EXPECT_EQ(Received(V(L"((\"A\" 1))")), "((\"A\" 1))");
  EXPECT_EQ(Handed(ListOf({ListOf({})})), "acedRetList 5016 5016 5017 5017");
  EXPECT_EQ(Received(V(L"(((1)))")), "(((1)))");
}

TEST_F(ValueReturn, AListAsTheCdrOfTheOnlyMemberIsWrappedToo) {
  const CLOMAdsLispVar value = ListOf({Dotted({short{1}, ListOf({short{2}})})});
  EXPECT_EQ(Handed(value), "acedRetList 5016 5016 5003:1 5018 5016 5003:2 5017 5017 5017");
}

TEST_F(ValueReturn, OtherListsAreNotWrapped) {
  EXPECT_EQ(Handed(V(L"((1 2) (3 4))")), "acedRetList 5016 5003:1 5003:2 5017 5016 5003:3 5003:4 5017");
  EXPECT_EQ(Received(V(L"((1 2) (3 4))")), "((1 2) (3 4))");
  EXPECT_EQ(Handed(V(L"((1 . 2))")), "acedRetList 5016 5003:1 5018 5003:2 5017");
  EXPECT_EQ(Received(V(L"((1 . 2))")), "((1 . 2))");
  EXPECT_EQ(Handed(ListOf({CLOMAdsLisp::Nil})), "acedRetList 5019");
  EXPECT_EQ(Received(ListOf({CLOMAdsLisp::Nil})), "(nil)");
  CLOMAdsLispVar nilAtom(short{1});
  nilAtom.GetAtom() = static_cast<ADSResType>(RTNIL);
  EXPECT_EQ(Handed(ListOf({nilAtom})), "acedRetList 5019");
  EXPECT_EQ(Handed(Dotted({short{1}, ListOf({short{2}})})), "acedRetList 5003:1 5018 5016 5003:2 5017");
  EXPECT_EQ(Printed(), "");
}

// --- The symbol that switches the wrapping off ---

TEST_F(ValueReturn, WithTheFlagNothingIsWrapped) {
  for (const wchar_t* flag : {L"T", L"1", L"0", L"\"\"", L"(1 2)"}) {
    SetFlag(flag);
    EXPECT_EQ(Handed(V(L"((\"A\" 1))")), "acedRetList 5016 5005:A 5003:1 5017");
    EXPECT_EQ(Received(V(L"((\"A\" 1))")), "(\"A\" 1)") << "LISP folds a single list";
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueReturn, WithTheFlagOtherValuesAreAsWithout) {
  SetFlag(L"T");
  EXPECT_EQ(Handed(CLOMAdsLisp::Nil), "acedRetVal 5019");
  EXPECT_EQ(Handed(ListOf({})), "acedRetList");
  EXPECT_EQ(Handed(short{1}), "acedRetVal 5003:1");
  EXPECT_EQ(Handed(V(L"(1 2)")), "acedRetList 5003:1 5003:2");
  EXPECT_EQ(Handed(V(L"(1 . 2)")), "acedRetList 5003:1 5018 5003:2");
}

TEST_F(ValueReturn, TheFlagIsReadAtEachReturn) {
  const CLOMAdsLispVar value = V(L"((1))");
  EXPECT_EQ(Handed(value), "acedRetList 5016 5016 5003:1 5017 5017");
  SetFlag(L"T");
  EXPECT_EQ(Handed(value), "acedRetList 5016 5003:1 5017");
  EXPECT_EQ(host.log.Count("acedGetSym"), 1U);
  EXPECT_EQ(host.log.Last("acedGetSym")->name, L"LOM_RETURNFLAG");
  SetFlag(L"nil");
  EXPECT_EQ(Handed(value), "acedRetList 5016 5016 5003:1 5017 5017");
}

TEST_F(ValueReturn, AnUnboundFlagCountsAsNil) {
  for (const bool null : {false, true}) {
    host.switches.unboundGivesNull = null;
    EXPECT_EQ(Handed(V(L"((1))")), "acedRetList 5016 5016 5003:1 5017 5017");
  }
}

TEST_F(ValueReturn, AFlagThatCannotBeReadCountsAsNil) {
  SetFlag(L"T");
  host.log.AnswerAll("acedGetSym", RTERROR);
  EXPECT_EQ(Handed(V(L"((1))")), "acedRetList 5016 5016 5003:1 5017 5017");
  EXPECT_EQ(Printed(), "");
}

// --- Outcome ---

TEST_F(ValueReturn, OnlyTheStatusOfSuccessIsTrue) {
  for (const int status : {RTERROR, RTCAN, RTREJ, RTFAIL, RTKWORD, 0, 1}) {
    host.log.AnswerAll("acedRetVal", status);
    host.log.AnswerAll("acedRetList", status);
    Run([] {
      EXPECT_FALSE(CLOMAdsLispVar(short{1}).ads_return());
      EXPECT_FALSE(V(L"(1 2)").ads_return());
      EXPECT_FALSE(CLOMAdsLisp::Nil.ads_return());
    });
    host.log.Reset();
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueReturn, OutsideOfACallNothingCanBeReturned) {
  EXPECT_FALSE(CLOMAdsLispVar(short{1}).ads_return());
  EXPECT_FALSE(V(L"(1 2)").ads_return());
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueReturn, ReturnGivesItsArgumentWhateverThePlatformSays) {
  const CLOMAdsLispVar value = V(L"(1 2)");
  EXPECT_EQ(Utf8(Run([&] { EXPECT_EQ(CLOMAdsLisp::Return(value).New(), value.New()); }).Text()), "(1 2)");
  host.log.AnswerAll("acedRetList", RTERROR);
  Run([&] { EXPECT_EQ(CLOMAdsLisp::Return(value).New(), value.New()); });
  EXPECT_EQ(CLOMAdsLisp::Return(CLOMAdsLisp::Nil).New(), nullptr);
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueReturn, ArgumentsCanBeReturned) {
  host.Define(L"ECHO", [] {
    CLOMAdsLisp::Return(CLOMAdsLisp::ParameterList());
    return RTNORM;
  });
  for (const wchar_t* arguments : {L"1 2", L"\"a\" (1 . 2) nil T", L"((1))", L"(1 2)"})
    EXPECT_EQ(host.Call(L"ECHO", arguments).Text(), L"(" + std::wstring(arguments) + L")");
}

// --- Size and memory ---

TEST_F(ValueReturn, ManyLevels) {
  host.log.Enable(false);
  const CLOMAdsLispVar value = Nested(kMany, short{1});
  const embedded::CallResult result = Run([&] { OnSmallStack([&] { EXPECT_TRUE(value.ads_return()); }); });
  EXPECT_EQ(result.value.size(), 2 * kMany + 1) << "as deep as it was";
}

TEST_F(ValueReturn, ManyMembers) {
  host.log.Enable(false);
  CLOMAdsLispVar value = ListOf({});
  for (size_t i = 0; i < kMany; ++i) value.New()->children.push_back(CLOMAdsLispVar(short{1}).New());
  const embedded::CallResult result = Run([&] { OnSmallStack([&] { EXPECT_TRUE(value.ads_return()); }); });
  EXPECT_EQ(result.value.size(), kMany + 2);
}

TEST_F(ValueReturn, NothingLeaksWhenMemoryRunsOut) {
  for (const wchar_t* text : {L"((\"A\" 1))", L"(1 \"b\")", L"\"c\"", L"5"}) {
    const CLOMAdsLispVar value = V(text);
    FailEachAllocation([&] { return Received(value) == Utf8(text); });
  }
}

}  // namespace
}  // namespace lomlisp::test::return_value
