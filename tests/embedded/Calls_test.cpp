#include <tests/support/HostTest.h>

#include <stdexcept>

namespace lomlisp::test {
namespace {

using embedded::CallResult;
using embedded::Owner;
using embedded::Switches;
using Kind = embedded::CallResult::Kind;
using Errors = std::vector<std::string>;

class CallsTest : public HostTest {
 protected:
  CallsTest() {
    host.Define(L"NOTHING", [] { return RTNORM; });
    host.Define(L"FIRST", [] {
      const resbuf* arguments = acedGetArgs();
      if (arguments == nullptr) return acedRetList(nullptr);
      resbuf first = *arguments;
      first.rbnext = nullptr;
      return acedRetVal(&first);
    });
    host.Define(L"ALL", [] { return acedRetList(acedGetArgs()); });
  }

  // The types and values in which the arguments of a call arrive.
  std::string Arriving(std::wstring_view arguments) {
    std::string types;
    host.Define(L"LOOK", [&] {
      types = Types(acedGetArgs());
      return RTNORM;
    });
    EXPECT_EQ(host.Call(L"LOOK", arguments).errors, Errors());
    return types;
  }

  // What comes of returning the chain.
  CallResult Returning(Kind kind, const resbuf* chain) {
    host.Define(L"RETURN", [&] { return kind == Kind::Value ? acedRetVal(chain) : acedRetList(chain); });
    return host.Call(L"RETURN", L"");
  }
  std::string ListOf(std::wstring_view items) {
    const CallResult result = Returning(Kind::List, TextChain(items));
    EXPECT_EQ(result.errors, Errors());
    EXPECT_EQ(result.kind, Kind::List);
    return Utf8(result.Text());
  }
};

TEST_F(CallsTest, NamesAreWithoutRegardToCase) {
  host.Define(L"My\u00E4", [] { return RTNORM; });
  EXPECT_TRUE(host.IsDefined(L"MY\u00C4"));
  EXPECT_TRUE(host.IsDefined(L"my\u00E4"));
  EXPECT_EQ(host.Call(L"mY\u00C4", L"").errors, Errors());
}

TEST_F(CallsTest, AnUnknownFunctionIsAnError) {
  const CallResult result = host.Call(L"foo", L"1");
  EXPECT_EQ(result.errors, Errors{"no function is named FOO"});
  EXPECT_EQ(result.status, RTERROR);
  EXPECT_EQ(Utf8(result.Text()), "nil");
}

TEST_F(CallsTest, WrongArgumentTextIsAnError) {
  EXPECT_EQ(host.Call(L"ALL", L"(1").errors, Errors{"a list that does not end (at character 3)"});
}

TEST_F(CallsTest, NothingReturnedIsNil) {
  const CallResult result = host.Call(L"NOTHING", L"1 2");
  EXPECT_EQ(result.kind, Kind::Nothing);
  EXPECT_EQ(result.status, RTNORM);
  EXPECT_EQ(Utf8(result.Text()), "nil");
  EXPECT_EQ(result.errors, Errors());
}

TEST_F(CallsTest, TheStatusIsWhatTheFunctionGaveBack) {
  host.Define(L"CANCEL", [] { return RTCAN; });
  EXPECT_EQ(host.Call(L"CANCEL", L"").status, RTCAN);
}

// --- Arguments ---

TEST_F(CallsTest, ArgumentsArriveAsOneChainEachTimeTheSame) {
  host.Define(L"TWICE", [&] {
    resbuf* first = acedGetArgs();
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(acedGetArgs(), first);
    EXPECT_EQ(host.ledger.Live().blocks, 0U);
    EXPECT_EQ(host.ledger.Live(Owner::Host).blocks, 3U);
    return RTNORM;
  });
  EXPECT_EQ(host.Call(L"TWICE", L"1 \"a\"").errors, Errors());
  EXPECT_EQ(host.ledger.Live(Owner::Host).blocks, 0U);
}

TEST_F(CallsTest, NoArgumentsAreNull) {
  host.Define(L"NONE", [] {
    EXPECT_EQ(acedGetArgs(), nullptr);
    return RTNORM;
  });
  host.Call(L"NONE", L"");
}

TEST_F(CallsTest, ArgumentsArriveByTheirTypes) {
  EXPECT_EQ(Arriving(L"1 70000 2.5 \"a\" T nil () (nil ())"),
            "5003:1 5010 5001 5005:a 5021 5019 5019 5016 5019 5019 5017");
}

TEST_F(CallsTest, DottedPairsArriveAsTheSwitchSays) {
  host.switches.dotted = Switches::Dotted::BeforeLast;
  EXPECT_EQ(Arriving(L"(1 . 2)"), "5016 5003:1 5018 5003:2 5017");
  EXPECT_EQ(Arriving(L"((1 . 2) . (3 4 . 5))"),
            "5016 5016 5003:1 5018 5003:2 5017 5018 5016 5003:3 5003:4 5018 5003:5 5017 5017");
  host.switches.dotted = Switches::Dotted::AtEnd;
  EXPECT_EQ(Arriving(L"(1 . 2)"), "5016 5003:1 5003:2 5018");
  EXPECT_EQ(Arriving(L"((1 . 2) 3 (4 . (5 . 6)))"),
            "5016 5016 5003:1 5003:2 5018 5003:3 5016 5003:4 5016 5003:5 5003:6 5018 5018 5017");
  EXPECT_EQ(Arriving(L"(1 2 3 . 4)"), "5016 5003:1 5003:2 5003:3 5018 5003:4 5017");
}

TEST_F(CallsTest, PointsArriveAsTheSwitchSays) {
  EXPECT_EQ(Arriving(L"(1.0 2.0) (1.0 2.0 3.0)"), "5002 5009");
  EXPECT_EQ(Arriving(L"((1.0 2.0) (\"a\" . (1.0 2.0 3.0)))"), "5016 5002 5016 5005:a 5018 5009 5017 5017");
  EXPECT_EQ(Arriving(L"(1.0) (1.0 2) (1.0 2.0 3.0 4.0) (1.0 . 2.0)"),
            "5016 5001 5017 5016 5001 5003:2 5017 5016 5001 5001 5001 5001 5017 5016 5001 5018 5001 5017");
  host.switches.pointsAsRecords = false;
  EXPECT_EQ(Arriving(L"(1.0 2.0) ((1.0 2.0 3.0))"), "5016 5001 5001 5017 5016 5016 5001 5001 5001 5017 5017");
}

TEST_F(CallsTest, PointsKeepTheirCoordinates) {
  for (const bool asRecords : {true, false}) {
    host.switches.pointsAsRecords = asRecords;
    EXPECT_EQ(Utf8(host.Call(L"ALL", L"(1.5 2.5) (1.5 2.5 3.5)").Text()), "((1.5 2.5) (1.5 2.5 3.5))");
  }
  const ads_point coordinates = {1.5, 2.5, 3.5};
  resbuf* point = acutBuildList(RT3DPOINT, coordinates, 0);
  host.switches.pointsAsRecords = false;
  std::string types;
  host.Define(L"LOOK", [&] {
    types = Types(acedGetArgs());
    return RTNORM;
  });
  host.Call(L"LOOK", embedded::Capture(point));
  EXPECT_EQ(types, "5016 5001 5001 5001 5017");
  acutRelRb(point);
}

TEST_F(CallsTest, BrokenArgumentsArriveAsTheyAre) {
  resbuf* chain = acutBuildList(RTLB, RTSHORT, 1, 0);
  host.Define(L"LOOK", [&] {
    EXPECT_EQ(Types(acedGetArgs()), "5016 5003:1");
    return RTNORM;
  });
  EXPECT_EQ(host.Call(L"LOOK", embedded::Capture(chain)).errors, Errors());
  acutRelRb(chain);
}

TEST_F(CallsTest, AChangedArgumentChainIsAnError) {
  const Errors changed = {"the argument chain was changed"};
  const std::vector<std::function<void(resbuf*)>> changes = {
      [](resbuf* chain) { chain->resval.rint = 2; },
      [](resbuf* chain) { chain->restype = RTSTR; },
      [](resbuf* chain) { chain->rbnext = nullptr; },
      [](resbuf* chain) { chain->rbnext = chain; },
      [](resbuf* chain) { chain->rbnext = reinterpret_cast<resbuf*>(0x5); },
      [](resbuf* chain) { chain->rbnext->resval.rstring[0] = L'b'; },
      [](resbuf* chain) { chain->rbnext->resval.rstring[1] = L'b'; },
      [](resbuf* chain) { chain->rbnext->resval.rstring = nullptr; },
      [](resbuf* chain) { chain->rbnext->resval.rstring = reinterpret_cast<wchar_t*>(0x5); },
      [](resbuf* chain) { chain->rbnext->restype = RTSHORT; },
  };
  for (const auto& change : changes) {
    host.Define(L"CHANGE", [&] {
      change(acedGetArgs());
      return RTNORM;
    });
    EXPECT_EQ(host.Call(L"CHANGE", L"1 \"a\"").errors, changed);
    EXPECT_EQ(host.ledger.Live(Owner::Host).blocks, 0U);
  }
}

TEST_F(CallsTest, TheArgumentsCannotBeFreed) {
  host.Define(L"FREE", [] { return acutRelRb(acedGetArgs()); });
  const Errors errors = host.Call(L"FREE", L"1 \"a\"").errors;
  ASSERT_EQ(errors.size(), 3U);
  for (const std::string& error : errors) EXPECT_TRUE(error.starts_with("freed a block that is the host's"));
  EXPECT_EQ(host.ledger.TakeFaults(), Errors()) << "the call has told them";
  EXPECT_EQ(host.ledger.Live(Owner::Host).blocks, 0U);
}

TEST_F(CallsTest, HeapFaultsAreErrorsOfTheCallInWhichTheyCameToLight) {
  acad_free(&host);
  host.Define(L"INNER", [this] {
    acad_free(&host);
    return RTNORM;
  });
  host.Define(L"OUTER", [this] {
    acad_free(&host);
    EXPECT_EQ(host.Call(L"INNER", L"").errors.size(), 1U);
    acad_free(&host);
    return RTNORM;
  });
  EXPECT_EQ(host.Call(L"OUTER", L"").errors.size(), 2U);
  EXPECT_EQ(host.ledger.TakeFaults().size(), 1U) << "the one from before the call";
}

TEST_F(CallsTest, AnArgumentThatIsWrittenPastItsEndIsAnErrorOfItsCall) {
  if (kSanitized) GTEST_SKIP() << "the sanitizer ends the program at the write";
  host.Define(L"WRITE", [] {
    wchar_t* const text = acedGetArgs()->resval.rstring;
    text[2] = L'b';
    return RTNORM;
  });
  const Errors errors = host.Call(L"WRITE", L"\"a\"").errors;
  ASSERT_EQ(errors.size(), 1U);
  EXPECT_TRUE(errors[0].starts_with("written outside the block")) << errors[0];
  EXPECT_NE(errors[0].find("during WRITE"), std::string::npos) << errors[0];
}

TEST_F(CallsTest, TheArgumentsAreFreedAfterTheCall) {
  resbuf* kept = nullptr;
  host.Define(L"KEEP", [&] {
    kept = acedGetArgs();
    return RTNORM;
  });
  host.Call(L"KEEP", L"1");
  EXPECT_TRUE(host.ledger.IsFreed(kept));
}

// --- Results ---

TEST_F(CallsTest, AValueIsReturned) {
  const CallResult result = Returning(Kind::Value, TextChain(L"\"text\""));
  EXPECT_EQ(result.kind, Kind::Value);
  EXPECT_EQ(result.status, RTNORM);
  EXPECT_EQ(Utf8(result.Text()), "\"text\"");
  EXPECT_EQ(Utf8(Returning(Kind::Value, TextChain(L"T")).Text()), "T");
}

TEST_F(CallsTest, ValuesWithoutContentAreNil) {
  for (const short type : {RTVOID, RTNIL}) {
    resbuf record{};
    record.restype = type;
    const CallResult result = Returning(Kind::Value, &record);
    EXPECT_EQ(result.status, RTNORM);
    ASSERT_EQ(result.value.size(), 1U);
    EXPECT_EQ(result.value[0].type, RTNIL);
  }
}

TEST_F(CallsTest, AValueIsExactlyOneRecordThatIsNoBracket) {
  EXPECT_EQ(Returning(Kind::Value, TextChain(L"1 2")).errors, Errors{"acedRetVal: more than one record"});
  EXPECT_EQ(Returning(Kind::Value, nullptr).errors, Errors{"acedRetVal: no record"});
  for (const short type : {RTLB, RTLE, RTDOTE}) {
    resbuf record{};
    record.restype = type;
    const CallResult result = Returning(Kind::Value, &record);
    EXPECT_EQ(result.status, RTERROR);
    EXPECT_EQ(result.errors.size(), 1U);
    EXPECT_EQ(result.kind, Kind::Nothing);
    EXPECT_EQ(Utf8(result.Text()), "nil");
  }
}

TEST_F(CallsTest, ItemsBecomeOneList) {
  EXPECT_EQ(ListOf(L"1 2"), "(1 2)");
  EXPECT_EQ(ListOf(L"1"), "(1)");
  EXPECT_EQ(ListOf(L"nil"), "(nil)");
  EXPECT_EQ(ListOf(L"(1 2) 3"), "((1 2) 3)");
  EXPECT_EQ(ListOf(L"() 3"), "(nil 3)");
}

TEST_F(CallsTest, NoItemsAreNil) {
  const CallResult result = Returning(Kind::List, nullptr);
  EXPECT_EQ(result.kind, Kind::List);
  EXPECT_EQ(result.status, RTNORM);
  EXPECT_EQ(Utf8(result.Text()), "nil");
}

TEST_F(CallsTest, OneProperListIsFoldedAsTheSwitchSays) {
  EXPECT_EQ(ListOf(L"(1 2)"), "(1 2)");
  EXPECT_EQ(ListOf(L"((1 2))"), "((1 2))");
  EXPECT_EQ(ListOf(L"((1 . 2))"), "((1 . 2))");
  EXPECT_EQ(ListOf(L"()"), "nil");
  EXPECT_EQ(ListOf(L"(1 . 2)"), "((1 . 2))");
  EXPECT_EQ(ListOf(L"(1) (2)"), "((1) (2))");
  host.switches.foldSingleList = false;
  EXPECT_EQ(ListOf(L"(1 2)"), "((1 2))");
  EXPECT_EQ(ListOf(L"((1 2))"), "(((1 2)))");
  EXPECT_EQ(ListOf(L"()"), "(nil)");
}

TEST_F(CallsTest, ADotAmongTheItemsMakesADottedPair) {
  for (const bool fold : {true, false}) {
    host.switches.foldSingleList = fold;
    resbuf* chain = acutBuildList(RTSHORT, 1, RTDOTE, RTLB, RTSHORT, 2, RTLE, 0);
    EXPECT_EQ(Utf8(Returning(Kind::List, chain).Text()), "(1 . (2))");
    acutRelRb(chain);
    chain = acutBuildList(RTLB, RTSHORT, 1, RTLE, RTDOTE, RTSHORT, 2, 0);
    EXPECT_EQ(Utf8(Returning(Kind::List, chain).Text()), "((1) . 2)");
    acutRelRb(chain);
    chain = acutBuildList(RTSHORT, 1, RTSHORT, 2, RTDOTE, 0);
    EXPECT_EQ(Utf8(Returning(Kind::List, chain).Text()), "(1 . 2)");
    acutRelRb(chain);
    chain = acutBuildList(RTLB, RTSHORT, 1, RTSHORT, 2, RTDOTE, 0);
    EXPECT_EQ(Utf8(Returning(Kind::List, chain).Text()), "((1 . 2))");
    acutRelRb(chain);
  }
}

TEST_F(CallsTest, ARunOfGroupsBecomesAListOfPairs) {
  resbuf* chain = acutBuildList(0, L"LINE", 8, L"0", 0);
  EXPECT_EQ(Utf8(Returning(Kind::List, chain).Text()), "((0 . \"LINE\") (8 . \"0\"))");
  acutRelRb(chain);
}

TEST_F(CallsTest, ABrokenListIsRefused) {
  resbuf* chain = acutBuildList(RTSHORT, 1, RTLE, 0);
  const CallResult result = Returning(Kind::List, chain);
  EXPECT_EQ(result.status, RTERROR);
  EXPECT_EQ(result.errors, Errors{"acedRetList: an end of a list without its beginning (record 2)"});
  EXPECT_EQ(result.kind, Kind::Nothing);
  acutRelRb(chain);
}

TEST_F(CallsTest, ASecondResultIsRefused) {
  TextChain first(L"1");
  TextChain second(L"2");
  host.Define(L"TWO", [&] {
    EXPECT_EQ(acedRetVal(first), RTNORM);
    EXPECT_EQ(acedRetVal(second), RTERROR);
    return acedRetList(second);
  });
  const CallResult result = host.Call(L"TWO", L"");
  EXPECT_EQ(result.status, RTERROR);
  EXPECT_EQ(Utf8(result.Text()), "1");
  EXPECT_EQ(result.errors, (Errors{"a second result", "a second result"}));
}

TEST_F(CallsTest, ARefusedResultIsNone) {
  TextChain good(L"1");
  TextChain bad(L"1 2");
  host.Define(L"TWO", [&] {
    EXPECT_EQ(acedRetVal(bad), RTERROR);
    return acedRetVal(good);
  });
  EXPECT_EQ(host.Call(L"TWO", L"").status, RTNORM);
}

TEST_F(CallsTest, OutsideACallNothingCanBeAskedOrReturned) {
  TextChain chain(L"1");
  EXPECT_EQ(acedGetArgs(), nullptr);
  EXPECT_EQ(acedRetVal(chain), RTERROR);
  EXPECT_EQ(acedRetList(chain), RTERROR);
  EXPECT_EQ(acedRetList(nullptr), RTERROR);
}

TEST_F(CallsTest, ExceptionsBecomeErrors) {
  host.Define(L"THROW", []() -> int { throw std::runtime_error("out of order"); });
  host.Define(L"THROW-NUMBER", []() -> int { throw 5; });
  EXPECT_EQ(host.Call(L"THROW", L"1").errors, Errors{"an exception: out of order"});
  EXPECT_EQ(host.Call(L"THROW-NUMBER", L"1").errors, Errors{"an exception"});
  EXPECT_EQ(host.Call(L"THROW", L"1").status, RTERROR);
  EXPECT_EQ(host.CurrentFrame(), nullptr);
  EXPECT_EQ(host.ledger.Live(Owner::Host).blocks, 0U);
}

TEST_F(CallsTest, CallsNest) {
  host.Define(L"OUTER", [&] {
    const resbuf* mine = acedGetArgs();
    EXPECT_EQ(Utf8(host.Call(L"ALL", L"7 8").Text()), "(7 8)");
    EXPECT_EQ(acedGetArgs(), mine);
    return acedRetVal(mine);
  });
  const CallResult result = host.Call(L"OUTER", L"1");
  EXPECT_EQ(Utf8(result.Text()), "1");
  EXPECT_EQ(result.errors, Errors());
}

TEST_F(CallsTest, AFunctionMayDefineItselfAnewOrResetTheHost) {
  host.Define(L"SELF", [this] {
    host.Define(L"SELF", [] { return RTCAN; });
    return RTNORM;
  });
  EXPECT_EQ(host.Call(L"SELF", L"").status, RTNORM);
  EXPECT_EQ(host.Call(L"SELF", L"").status, RTCAN);
  host.Define(L"RESET", [this] {
    host.Reset();
    return acedRetVal(acedGetArgs());
  });
  EXPECT_EQ(Utf8(host.Call(L"RESET", L"5").Text()), "5");
  EXPECT_FALSE(host.IsDefined(L"RESET"));
}

// --- Calls written in LISP ---

TEST_F(CallsTest, ACallIsEvaluated) {
  EXPECT_EQ(Utf8(host.Evaluate(L"(all 1 2.5 \"a\" T nil ())").Text()), "(1 2.5 \"a\" T nil nil)");
  EXPECT_EQ(Utf8(host.Evaluate(L" ( ALL ) ; nothing").Text()), "nil");
  EXPECT_EQ(host.Evaluate(L"(ALL 1)").kind, Kind::List);
}

TEST_F(CallsTest, QuotedItemsAreNotEvaluated) {
  EXPECT_EQ(Utf8(host.Evaluate(L"(ALL '(1 . 2) '(all 1)'5)").Text()), "nil");
  EXPECT_EQ(host.Evaluate(L"(ALL '(all 1))").errors, Errors{"the symbol ALL is no value (at character 8)"});
  EXPECT_EQ(Utf8(host.Evaluate(L"(ALL '(1 . 2) '((3))'5)").Text()), "((1 . 2) ((3)) 5)");
}

TEST_F(CallsTest, InnerCallsAreEvaluatedFirst) {
  EXPECT_EQ(Utf8(host.Evaluate(L"(ALL 1 (ALL 2 (FIRST 3 4)) (NOTHING))").Text()), "(1 (2 3) nil)");
  EXPECT_EQ(host.log.Count("acedRetList"), 2U);
}

TEST_F(CallsTest, SymbolsGiveTheirValues) {
  std::string error;
  host.symbols.Set(L"X", *embedded::FromText(L"(1 2)", error));
  EXPECT_EQ(Utf8(host.Evaluate(L"(ALL x y)").Text()), "((1 2) nil)");
}

TEST_F(CallsTest, ErrorsOfInnerCallsAreNamed) {
  host.Define(L"THROW", []() -> int { throw std::runtime_error("out of order"); });
  const CallResult result = host.Evaluate(L"(ALL 1 (THROW 2))");
  EXPECT_EQ(result.errors, Errors{"THROW: an exception: out of order"});
  EXPECT_EQ(Utf8(result.Text()), "(1 nil)");
  EXPECT_EQ(host.Evaluate(L"(THROW)").errors, Errors{"an exception: out of order"});
}

TEST_F(CallsTest, NothingIsCalledWhenTheTextIsWrong) {
  const auto error = [&](std::wstring_view text) {
    const CallResult result = host.Evaluate(text);
    EXPECT_EQ(result.status, RTERROR);
    return result.errors.size() == 1 ? result.errors[0] : "?";
  };
  EXPECT_EQ(error(L""), "a call is expected, as in (NAME 1 2) (at character 1)");
  EXPECT_EQ(error(L"5"), "a call is expected, as in (NAME 1 2) (at character 1)");
  EXPECT_EQ(
      error(L"()"),
      "a list that is no call: it must begin with a function's name, or have a ' before it (at character 2)");
  EXPECT_EQ(
      error(L"(ALL (1 2))"),
      "a list that is no call: it must begin with a function's name, or have a ' before it (at character 7)");
  EXPECT_EQ(error(L"(ALL (FOO 2))"), "no function is named FOO (at character 7)");
  EXPECT_EQ(error(L"(FOO)"), "no function is named FOO (at character 2)");
  EXPECT_EQ(error(L"(ALL (ALL 1)"), "a call that does not end (at character 13)");
  EXPECT_EQ(error(L"(ALL 1) 2"), "something behind the call (at character 9)");
  EXPECT_EQ(error(L"(ALL 1))"), "something behind the call (at character 8)");
  EXPECT_EQ(error(L"(ALL 1 . 2)"), "a dot in a call (at character 8)");
  EXPECT_EQ(error(L"(ALL \"a)"), "a text that does not end (at character 6)");
  EXPECT_EQ(error(L"(ALL '"), "a quote with nothing behind it (at character 7)");
  EXPECT_EQ(error(L"(\"a"), "a text that does not end (at character 2)");
  EXPECT_TRUE(host.log.Calls().empty());
}

TEST_F(CallsTest, DeeplyNestedCallsAreEvaluated) {
  constexpr size_t kDepth = 20'000;
  host.log.Enable(false);
  std::wstring text;
  for (size_t level = 0; level < kDepth; ++level) text += L"(FIRST ";
  text += L"5" + std::wstring(kDepth, L')');
  EXPECT_EQ(Utf8(host.Evaluate(text).Text()), "5");
}

}  // namespace
}  // namespace lomlisp::test
