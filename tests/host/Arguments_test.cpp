#include <array>
#include <utility>

#include <tests/support/Chains.h>
#include <tests/support/SmallStack.h>

namespace lomlisp::test {
namespace {

constexpr size_t kMany = kLarge / 5;

class ValueArguments : public HostTest {
 protected:
  // Runs the body as the LISP function F with these arguments.
  template <class Arguments>
  void Call(const Arguments& arguments, const std::function<void()>& body) {
    host.Define(L"F", [&] {
      body();
      return RTNORM;
    });
    const embedded::CallResult result = host.Call(L"F", arguments);
    for (const std::string& error : result.errors) ADD_FAILURE() << error;
    EXPECT_EQ(result.status, RTNORM);
  }

  // What getArgs makes of the arguments, "false" when it refuses them.
  template <class Arguments>
  std::string GetArgs(const Arguments& arguments) {
    std::string tree;
    Call(arguments, [&] {
      CLOMAdsLispVar value(L"old");
      const bool converted = value.getArgs();
      tree = converted ? Tree(value) : "false";
      EXPECT_EQ(value.New() == nullptr, !converted);
    });
    return tree;
  }

  static embedded::Chain Unconvertible() {
    embedded::Record record;
    record.type = 1001;
    record.text = L"APP";
    record.hasText = true;
    return {record};
  }

  // N out-parameters, which held something before.
  template <size_t... I>
  static std::string Parameters(std::index_sequence<I...>) {
    std::array<CLOMAdsLispVar, sizeof...(I)> parameters;
    for (CLOMAdsLispVar& parameter : parameters) parameter = CLOMAdsLispVar(L"old");
    CLOMAdsLisp::Parameter(parameters[I]...);
    std::string trees;
    for (const CLOMAdsLispVar& parameter : parameters) trees += (trees.empty() ? "" : " ") + Tree(parameter);
    return trees;
  }
  template <size_t N>
  static std::string Parameters() {
    return Parameters(std::make_index_sequence<N>());
  }
};

using Array = CArray<CLOMAdsLispVar, CLOMAdsLispVar&>;

// --- getArgs ---

TEST_F(ValueArguments, NoArgumentsAreAnEmptyListThatIsNotNil) {
  Call(L"", [] {
    CLOMAdsLispVar value(L"old");
    EXPECT_TRUE(value.getArgs());
    EXPECT_EQ(Tree(value), "()");
    EXPECT_FALSE(value.NilP());
    EXPECT_EQ(Text(value), "()");
    EXPECT_TRUE(CLOMAdsLispVar(value).Car().NilP());
    EXPECT_TRUE(CLOMAdsLispVar(value).Cdr(true).NilP());
  });
}

TEST_F(ValueArguments, ArgumentsAlwaysAreAList) {
  EXPECT_EQ(GetArgs(L"1"), "(5003:1)");
  EXPECT_EQ(GetArgs(L"nil"), "(nil)");
  EXPECT_EQ(GetArgs(L"nil nil"), "(nil nil)");
  EXPECT_EQ(GetArgs(L"T"), "(5021)");
  EXPECT_EQ(GetArgs(L"(1 2)"), "((5003:1 5003:2))");
  EXPECT_EQ(GetArgs(L"1 2.5 \"a\" 70000"), "(5003:1 5001:2.5 5005:a 5010:70000)");
  EXPECT_EQ(GetArgs(L"(1 (2 \"a\")) T"), "((5003:1 (5003:2 5005:a)) 5021)");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueArguments, DottedPairsArriveInBothFormsOfThePlatform) {
  for (const auto dotted : {embedded::Switches::Dotted::BeforeLast, embedded::Switches::Dotted::AtEnd}) {
    host.switches.dotted = dotted;
    EXPECT_EQ(GetArgs(L"1 2 (3 . 4)"), "(5003:1 5003:2 {5003:3 5003:4})");
    EXPECT_EQ(GetArgs(L"(\"a\" . 1) (\"b\" . \"c\")"), "({5005:a 5003:1} {5005:b 5005:c})");
  }
}

TEST_F(ValueArguments, PointsArriveAsListsInBothFormsOfThePlatform) {
  for (const bool records : {false, true}) {
    host.switches.pointsAsRecords = records;
    EXPECT_EQ(GetArgs(L"(1.5 2.0) (1.0 2.0 3.0)"), "((5001:1.5 5001:2) (5001:1 5001:2 5001:3))");
  }
}

TEST_F(ValueArguments, TheSameArgumentsComeAtEachCall) {
  Call(L"1 (\"a\")", [] {
    CLOMAdsLispVar first, second;
    EXPECT_TRUE(first.getArgs());
    first.New()->children.clear();
    EXPECT_TRUE(second.getArgs());
    EXPECT_EQ(Tree(second), "(5003:1 (5005:a))");
    EXPECT_EQ(Tree(first), "()") << "the trees are apart";
  });
}

TEST_F(ValueArguments, TheOldTreeStaysWithItsOtherHandles) {
  Call(L"1", [] {
    CLOMAdsLispVar value = V(L"(7 8)");
    const CLOMAdsLispVar other(value);
    EXPECT_TRUE(value.getArgs());
    EXPECT_EQ(Tree(other), "(5003:7 5003:8)");
  });
}

TEST_F(ValueArguments, ArgumentsOutliveTheCall) {
  CLOMAdsLispVar kept;
  Call(L"\"text\" (1 . \"b\")", [&] { kept.getArgs(); });
  EXPECT_EQ(Tree(kept), "(5005:text {5003:1 5005:b})");
}

TEST_F(ValueArguments, WhatCannotBeConvertedIsNilAndFalse) {
  EXPECT_EQ(GetArgs(Unconvertible()), "false");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueArguments, AnUnknownTypeIsNilAndFalseWithTwoLines) {
  embedded::Record record;
  record.type = 5025;
  EXPECT_EQ(GetArgs(embedded::Chain{record}), "false");
  EXPECT_EQ(Printed(),
            "LispVar::ADSToLisp : invalid type Nr. 5025 in resbuf\n"
            "                     as a result of the nontransparent interface\n");
}

TEST_F(ValueArguments, AsksThePlatformOnceAtEachCall) {
  Call(L"1 2", [&] {
    CLOMAdsLispVar a, b;
    a.getArgs();
    EXPECT_EQ(host.log.Count("acedGetArgs"), 1U);
    CLOMAdsLisp::Parameter(a, b);
    EXPECT_EQ(host.log.Count("acedGetArgs"), 2U);
  });
}

TEST_F(ValueArguments, APlatformWithoutAnAnswerMeansNoArguments) {
  host.log.AnswerAll("acedGetArgs", RTERROR);
  EXPECT_EQ(GetArgs(L"1 2"), "()");
}

// --- ParameterList ---

TEST_F(ValueArguments, ParameterListIsTheWholeList) {
  Call(L"1 (2)", [] { EXPECT_EQ(Tree(CLOMAdsLisp::ParameterList()), "(5003:1 (5003:2))"); });
  Call(L"", [] { EXPECT_EQ(Tree(CLOMAdsLisp::ParameterList()), "()"); });
  Call(Unconvertible(), [] { EXPECT_EQ(Tree(CLOMAdsLisp::ParameterList()), "nil"); });
}

// --- Parameter ---

TEST_F(ValueArguments, EachParameterGetsItsArgument) {
  Call(L"1 2 3 4 5 6 7 8", [] {
    EXPECT_EQ(Parameters<1>(), "5003:1");
    EXPECT_EQ(Parameters<2>(), "5003:1 5003:2");
    EXPECT_EQ(Parameters<3>(), "5003:1 5003:2 5003:3");
    EXPECT_EQ(Parameters<4>(), "5003:1 5003:2 5003:3 5003:4");
    EXPECT_EQ(Parameters<5>(), "5003:1 5003:2 5003:3 5003:4 5003:5");
    EXPECT_EQ(Parameters<6>(), "5003:1 5003:2 5003:3 5003:4 5003:5 5003:6");
    EXPECT_EQ(Parameters<7>(), "5003:1 5003:2 5003:3 5003:4 5003:5 5003:6 5003:7");
    EXPECT_EQ(Parameters<8>(), "5003:1 5003:2 5003:3 5003:4 5003:5 5003:6 5003:7 5003:8");
  });
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueArguments, ParametersWithoutAnArgumentAreNil) {
  Call(L"1 (2)", [] {
    EXPECT_EQ(Parameters<3>(), "5003:1 (5003:2) nil");
    EXPECT_EQ(Parameters<8>(), "5003:1 (5003:2) nil nil nil nil nil nil");
  });
  Call(L"", [] {
    EXPECT_EQ(Parameters<1>(), "nil");
    EXPECT_EQ(Parameters<2>(), "nil nil");
    EXPECT_EQ(Parameters<8>(), "nil nil nil nil nil nil nil nil");
  });
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueArguments, NilArgumentsKeepTheirPlace) {
  Call(L"nil 1 nil 2", [] {
    EXPECT_EQ(Parameters<4>(), "nil 5003:1 nil 5003:2");
    EXPECT_EQ(Parameters<5>(), "nil 5003:1 nil 5003:2 nil");
  });
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueArguments, FurtherArgumentsAreIgnored) {
  Call(L"1 2 3", [] { EXPECT_EQ(Parameters<2>(), "5003:1 5003:2"); });
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueArguments, ParametersAreNilWhenTheArgumentsCannotBeConverted) {
  Call(Unconvertible(), [] {
    EXPECT_EQ(Parameters<1>(), "nil");
    EXPECT_EQ(Parameters<8>(), "nil nil nil nil nil nil nil nil");
  });
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueArguments, AParameterThatComesTwiceHasItsLastArgument) {
  Call(L"1 2", [] {
    CLOMAdsLispVar both;
    CLOMAdsLisp::Parameter(both, both);
    EXPECT_EQ(Tree(both), "5003:2");
  });
}

// --- Parameter with an array ---

TEST_F(ValueArguments, AnArrayGetsEveryArgument) {
  Call(L"1 nil (2 3) \"a\"", [] {
    Array array;
    CLOMAdsLisp::Parameter(array);
    ASSERT_EQ(array.GetSize(), 4);
    EXPECT_EQ(Tree(array[0]), "5003:1");
    EXPECT_EQ(Tree(array[1]), "nil");
    EXPECT_EQ(Tree(array[2]), "(5003:2 5003:3)");
    EXPECT_EQ(Tree(array[3]), "5005:a");
  });
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueArguments, TheArgumentsFollowWhatTheArrayHolds) {
  Call(L"1 2", [] {
    Array array;
    CLOMAdsLispVar held(L"held");
    array.Add(held);
    array.Add(held);
    CLOMAdsLisp::Parameter(array);
    ASSERT_EQ(array.GetSize(), 4);
    EXPECT_EQ(Tree(array[1]), "5005:held");
    EXPECT_EQ(Tree(array[2]), "5003:1");
    EXPECT_EQ(Tree(array[3]), "5003:2");
  });
}

TEST_F(ValueArguments, WithoutArgumentsAnArrayGetsOneNil) {
  Call(L"", [] {
    Array array;
    CLOMAdsLisp::Parameter(array);
    ASSERT_EQ(array.GetSize(), 1);
    EXPECT_EQ(array[0].New(), nullptr);
  });
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueArguments, AnArrayIsLeftAloneWhenTheArgumentsCannotBeConverted) {
  Call(Unconvertible(), [] {
    Array array;
    CLOMAdsLispVar held(L"held");
    array.Add(held);
    CLOMAdsLisp::Parameter(array);
    ASSERT_EQ(array.GetSize(), 1);
    EXPECT_EQ(Tree(array[0]), "5005:held");
  });
}

// --- Size and memory ---

TEST_F(ValueArguments, ManyArguments) {
  embedded::Record one;
  one.type = RTSHORT;
  one.value.rint = 1;
  Call(embedded::Chain(kMany, one), [] {
    OnSmallStack([] {
      CLOMAdsLispVar value, first, second;
      EXPECT_TRUE(value.getArgs());
      EXPECT_EQ(value.Length(), kMany);
      Array array;
      CLOMAdsLisp::Parameter(array);
      EXPECT_EQ(array.GetSize(), static_cast<Array::Index>(kMany));
      CLOMAdsLisp::Parameter(first, second);
      EXPECT_EQ(Tree(second), "5003:1");
    });
  });
}

TEST_F(ValueArguments, TextsForWhichMemoryRunsOutAreNull) {
  Call(L"\"a\" (\"b\")", [] {
    FailEachAllocation([] {
      Array array;
      CLOMAdsLisp::Parameter(array);
      return array.GetSize() == 2 && Tree(array[0]) == "5005:a" && Tree(array[1]) == "(5005:b)";
    });
  });
}

}  // namespace
}  // namespace lomlisp::test
