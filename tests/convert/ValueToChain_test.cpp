#include <tests/support/Chains.h>
#include <tests/support/SmallStack.h>

namespace lomlisp::test::value_to_chain {
namespace {

constexpr size_t kMany = kLarge;
constexpr size_t kSome = kLarge / 20;

CLOMAdsLispVar Group(short code, const CLOMAdsLispVar& value) { return Dotted({code, value}); }

size_t Count(const resbuf* chain) {
  size_t count = 0;
  for (; chain != nullptr; chain = chain->rbnext) ++count;
  return count;
}

// Extended data whose list of groups is again extended data, and so on; the innermost list is
// `core`. No list is dotted, so that each is tried as an entity list.
CLOMAdsLispVar NestedExtendedData(size_t depth, const CLOMAdsLispVar& core) {
  CLOMAdsLispVar groups = core;
  for (size_t i = 0; i < depth; ++i) groups = ListOf({ListOf({short{-3}, ListOf({L"A", groups})})});
  return groups;
}

class ValueToChain : public HostTest {
 protected:
  static std::string Plain(const CLOMAdsLispVar& value) {
    ADSList target;
    return Types(value.LispToADS(target));
  }
  static std::string Dxf(const CLOMAdsLispVar& value) {
    ADSList target;
    return Types(value.LispToDXF(target));
  }
};

// --- Plain ---

TEST_F(ValueToChain, NilIsOneRecordInBothForms) {
  EXPECT_EQ(Plain(CLOMAdsLisp::Nil), "5019");
  EXPECT_EQ(Dxf(CLOMAdsLisp::Nil), "5019");
  CLOMAdsLispVar atom(static_cast<short>(1));
  atom.GetAtom() = static_cast<ADSResType>(RTNIL);
  EXPECT_EQ(Plain(atom), "5019");
  EXPECT_EQ(Dxf(atom), "5019");
}

TEST_F(ValueToChain, AnAtomIsItsRecord) {
  for (const bool dxf : {false, true}) {
    for (const resbuf& record : {Short(-5), Long(70000), Int64(1LL << 40), Real(2.5), Real(1.5, RTANG),
                                 Real(0.25, RTORINT), Name(31), Name(7, RTPICKS), NoValue(RTT)}) {
      ADSList target;
      const CLOMAdsLispVar value(Records{record});
      CLOMAdsLispVar::LispToADS(value.New(), target, dxf);
      ASSERT_EQ(Count(target), 1U);
      EXPECT_EQ(AtomTree(*target.First()), AtomTree(value.GetAtom()));
      EXPECT_NE(target.First(), &value.GetAtom());
    }
  }
}

TEST_F(ValueToChain, TextsAreCopied) {
  const CLOMAdsLispVar value(L"text");
  ADSList target;
  value.LispToADS(target);
  EXPECT_EQ(Types(target), "5005:text");
  EXPECT_NE(target.First()->resval.rstring, value.GetAtom().resval.rstring);
  EXPECT_EQ(Plain(CLOMAdsLispVar(Records{String(nullptr)})), "5005");
  EXPECT_EQ(Plain(CLOMAdsLispVar(Records{String(L"LINE", RTDXF0)})), "5020:LINE");
}

TEST_F(ValueToChain, ThePointOfAnAtomStaysOneRecord) {
  const double point[3] = {1, 2, 3};
  CLOMAdsLispVar value(static_cast<short>(1));
  value.GetAtom() = ResBuf(point);
  EXPECT_EQ(Plain(value), "5009");
  value.GetAtom() = ResBuf(point, ADSPointType::Point);
  EXPECT_EQ(Plain(value), "5002");
}

TEST_F(ValueToChain, AListIsBracketed) {
  EXPECT_EQ(Plain(ListOf({})), "5016 5017");
  EXPECT_EQ(Plain(V(L"(1 \"a\")")), "5016 5003:1 5005:a 5017");
  EXPECT_EQ(Plain(V(L"(1 (2 (3)) 4)")), "5016 5003:1 5016 5003:2 5016 5003:3 5017 5017 5003:4 5017");
  EXPECT_EQ(Plain(ListOf({ListOf({})})), "5016 5016 5017 5017");
  EXPECT_EQ(Plain(V(L"(1.0 2.0 3.0)")), "5016 5001 5001 5001 5017");
}

TEST_F(ValueToChain, AMissingMemberIsNil) {
  EXPECT_EQ(Plain(ListOf({CLOMAdsLisp::Nil, static_cast<short>(1)})), "5016 5019 5003:1 5017");
  EXPECT_EQ(Dxf(ListOf({CLOMAdsLisp::Nil})), "5016 5019 5017");
}

TEST_F(ValueToChain, TheDotStandsBehindTheFirstMember) {
  EXPECT_EQ(Plain(V(L"(1 . 2)")), "5016 5003:1 5018 5003:2 5017");
  EXPECT_EQ(Plain(Dotted({short{1}, short{2}, short{3}, short{4}})),
            "5016 5003:1 5018 5003:2 5003:3 5003:4 5017");
  EXPECT_EQ(Plain(Dotted({short{1}})), "5016 5003:1 5018 5017");
  EXPECT_EQ(Plain(Dotted({})), "5016 5017");
  EXPECT_EQ(Plain(Dotted({CLOMAdsLisp::Nil, CLOMAdsLisp::Nil})), "5016 5019 5018 5019 5017");
}

TEST_F(ValueToChain, DotsNest) {
  EXPECT_EQ(Plain(Dotted({Dotted({short{1}, short{2}}), Dotted({short{3}, short{4}})})),
            "5016 5016 5003:1 5018 5003:2 5017 5018 5016 5003:3 5018 5003:4 5017 5017");
}

TEST_F(ValueToChain, GroupsAreBracketedInThePlainForm) {
  EXPECT_EQ(Plain(V(L"((0 . \"s\") (8 . \"l\"))")),
            "5016 5016 5003:0 5018 5005:s 5017 5016 5003:8 5018 5005:l 5017 5017");
}

TEST_F(ValueToChain, AppendsAtTheEndWhereverTheCursorStands) {
  for (const bool dxf : {false, true}) {
    ADSList target(new ResBuf(short{7}), ADSCopyFlag::Adopt);
    target.Add(new ResBuf(short{8}), ADSCopyFlag::Adopt);
    target.GoStart();
    CLOMAdsLispVar::LispToADS(V(L"((8 . \"a\"))").New(), target, dxf);
    target.GoFirst();
    CLOMAdsLispVar::LispToADS(V(L"9").New(), target, dxf);
    EXPECT_EQ(Types(target), dxf ? "5003:7 5003:8 8:a 5003:9"
                                 : "5003:7 5003:8 5016 5016 5003:8 5018 5005:a 5017 5017 5003:9");
  }
}

TEST_F(ValueToChain, GivesTheTarget) {
  ADSList target;
  const CLOMAdsLispVar value = V(L"(1)");
  EXPECT_EQ(&value.LispToADS(target), &target);
  EXPECT_EQ(&value.LispToDXF(target), &target);
  EXPECT_EQ(Types(target), "5016 5003:1 5017 5016 5003:1 5017");
}

TEST_F(ValueToChain, TheValueOutlivesTheChainAndTheOtherWayRound) {
  CLOMAdsLispVar value = V(L"((0 . \"s\") (8 . \"l\"))");
  ADSList kept;
  {
    ADSList target;
    value.LispToDXF(target);
    value.LispToDXF(kept);
  }
  EXPECT_EQ(Tree(value), "({5003:0 5005:s} {5003:8 5005:l})");
  value.Clean();
  EXPECT_EQ(Types(kept), "0:s 8:l");
}

// --- DXF ---

TEST_F(ValueToChain, AnEntityListIsABareRun) {
  EXPECT_EQ(Dxf(V(L"((0 . \"s\") (8 . \"l\"))")), "0:s 8:l");
  EXPECT_EQ(Dxf(V(L"((0 . \"s\") (62 . 1) (40 . 2.5))")), "0:s 62 40");
}

TEST_F(ValueToChain, ValuesKeepTheirFields) {
  ADSList target;
  V(L"((62 . 7) (40 . 2.5))").LispToDXF(target);
  const ResBuf* color = target.First();
  EXPECT_EQ(color->restype, 62);
  EXPECT_EQ(color->resval.rint, 7);
  const ResBuf* radius = color->Next();
  EXPECT_EQ(radius->restype, 40);
  EXPECT_EQ(radius->resval.rreal, 2.5);
}

TEST_F(ValueToChain, OneMemberThatIsNoGroupBracketsTheList) {
  EXPECT_EQ(Dxf(V(L"((0 . \"s\") \"x\")")), "5016 5016 5003:0 5018 5005:s 5017 5005:x 5017");
  EXPECT_EQ(Dxf(V(L"((0 . \"s\") nil)")), "5016 5016 5003:0 5018 5005:s 5017 5019 5017");
}

TEST_F(ValueToChain, AnInnerEntityListIsABareRun) {
  EXPECT_EQ(Dxf(ListOf({L"x", V(L"((8 . \"l\") (62 . 1))"), short{5}})), "5016 5005:x 8:l 62 5003:5 5017");
  EXPECT_EQ(Dxf(ListOf({V(L"((8 . \"a\"))"), V(L"((8 . \"b\"))")})), "5016 8:a 8:b 5017");
  EXPECT_EQ(Dxf(ListOf({L"x", ListOf({L"y", V(L"((8 . \"l\"))")})})),
            "5016 5005:x 5016 5005:y 8:l 5017 5017");
}

TEST_F(ValueToChain, AnEmptyListIsNothing) {
  EXPECT_EQ(Dxf(ListOf({})), "");
  EXPECT_EQ(Dxf(ListOf({ListOf({})})), "5016 5017");
  EXPECT_EQ(Dxf(ListOf({L"x", ListOf({})})), "5016 5005:x 5017");
}

TEST_F(ValueToChain, ThePartsOfADottedListArePlain) {
  EXPECT_EQ(Dxf(Dotted({short{5}, V(L"((8 . \"l\"))")})),
            "5016 5003:5 5018 5016 5016 5003:8 5018 5005:l 5017 5017 5017");
  EXPECT_EQ(Dxf(Dotted({L"x", ListOf({L"y", V(L"((8 . \"l\"))"), ListOf({})})})),
            "5016 5005:x 5018 5016 5005:y 5016 5016 5003:8 5018 5005:l 5017 5017 5016 5017 5017 5017");
}

TEST_F(ValueToChain, AGroupAloneIsNoEntityList) {
  EXPECT_EQ(Dxf(V(L"(8 . \"l\")")), "5016 5003:8 5018 5005:l 5017");
}

TEST_F(ValueToChain, TheDotOfAnEntityListDoesNotCount) {
  EXPECT_EQ(Dxf(Dotted({Group(0, L"s"), Group(8, L"l")})), "0:s 8:l");
}

TEST_F(ValueToChain, ListsOfTwoOrThreeNumbersArePointRecords) {
  EXPECT_EQ(Dxf(V(L"((62 . 1))")), "62");
  EXPECT_EQ(Dxf(V(L"((62 1))")), "5009");
  EXPECT_EQ(Dxf(V(L"((1.0 2.0 3.0) (4.0 5.0 6.0))")), "5009 5009");
  EXPECT_EQ(Dxf(V(L"(1.0 2.0 3.0)")), "5016 5001 5001 5001 5017");
  EXPECT_EQ(Dxf(V(L"((10 1.0 2.0))")), "5009");
}

TEST_F(ValueToChain, AFlatPointGroupBracketsTheList) {
  EXPECT_EQ(Dxf(V(L"((0 . \"s\") (10 1.0 2.0 3.0))")),
            "5016 5016 5003:0 5018 5005:s 5017 5016 5003:10 5001 5001 5001 5017 5017");
}

TEST_F(ValueToChain, ExtendedDataIsPartOfTheRun) {
  const CLOMAdsLispVar groups = ListOf({Group(1000, L"x"), Group(1070, short{7})});
  EXPECT_EQ(Dxf(ListOf({Group(0, L"s"), ListOf({short{-3}, ListOf({L"APP", groups})}), Group(8, L"l")})),
            "0:s -3 1001:APP 1000:x 1070 8:l");
}

TEST_F(ValueToChain, ATrialThatFailsLeavesNothingBehind) {
  const CLOMAdsLispVar broken = ListOf({Group(0, L"s"), Group(-3, ListOf({L"APP", ListOf({L"x"})}))});
  EXPECT_EQ(Dxf(broken),
            "5016 5016 5003:0 5018 5005:s 5017 "
            "5016 5003:-3 5018 5016 5005:APP 5016 5005:x 5017 5017 5017 5017");
}

// --- Owners of the texts ---

TEST_F(ValueToChain, AChainOfTextGroupsCanBeGivenAway) {
  const CLOMAdsLispVar value = V(L"((0 . \"s\") (8 . \"l\") (62 . 1) (1000 . \"x\"))");
  ADSList target;
  value.LispToDXF(target);
  target.DeleteMode(ADSDeleteFlag::Keep);
  resbuf* chain = target;
  EXPECT_EQ(Types(chain), "0:s 8:l 62 1000:x");
  acutRelRb(chain);
}

TEST_F(ValueToChain, AnIntegerUnderATextCodeIsNoText) {
  ADSList target;
  Dotted({short{8}, short{5}}).List().LispToDXF(target);
  ASSERT_EQ(Count(target), 1U);
  EXPECT_EQ(target.First()->restype, 8);
  EXPECT_EQ(target.First()->resval.rstring, nullptr);
}

TEST_F(ValueToChain, ATextUnderAnIntegerCodeStaysAText) {
  ADSList target;
  Dotted({short{62}, L"text"}).List().LispToDXF(target);
  ASSERT_EQ(Count(target), 1U);
  EXPECT_EQ(target.First()->restype, 62);
  EXPECT_EQ(Utf8(target.First()->resval.rstring), "text");
}

TEST_F(ValueToChain, GroupsOfAnotherKindThanTheirCodeCanBeGivenAwayAndCopied) {
  const CLOMAdsLispVar value = ListOf({Group(8, short{5}), Group(62, L"x"), Group(8, L"l")});
  ADSList target;
  value.LispToDXF(target);
  const ADSList copy(target);
  EXPECT_EQ(Count(copy), 3U);
  target.DeleteMode(ADSDeleteFlag::Keep);
  acutRelRb(target);
}

TEST_F(ValueToChain, AnAtomThatIsATextGroupIsWrittenWithItsText) {
  CLOMAdsLispVar value(L"l");
  ASSERT_TRUE(value.GetAtom().MakeDXF(8));
  EXPECT_EQ(Plain(value), "8:l");
  EXPECT_EQ(Dxf(ListOf({Group(0, value)})), "0:l");
}

TEST_F(ValueToChain, NothingLeaksWhenMemoryRunsOut) {
  const CLOMAdsLispVar value =
      ListOf({L"x", V(L"((0 . \"s\") (8 . \"l\"))"), ListOf({Group(8, L"m"), L"broken"}),
              ListOf({Group(-3, ListOf({L"APP", ListOf({Group(1000, L"y")})})), Group(10, V(L"(1 2 3)"))})});
  for (const bool dxf : {false, true}) {
    const std::string whole = dxf ? Dxf(value) : Plain(value);
    FailEachAllocation([&] { return (dxf ? Dxf(value) : Plain(value)) == whole; });
  }
}

// --- Size ---

TEST_F(ValueToChain, AMillionLevelsNeedNoStack) {
  for (const bool dxf : {false, true}) {
    const CLOMAdsLispVar value = Nested(kMany, short{1});
    OnSmallStack([&] {
      ADSList target;
      CLOMAdsLispVar::LispToADS(value.New(), target, dxf);
      EXPECT_EQ(Count(target), 2 * kMany + 1);
    });
  }
}

TEST_F(ValueToChain, AMillionMembers) {
  CLOMAdsLispVar value = ListOf({});
  for (size_t i = 0; i < kMany; ++i) value.New()->children.push_back(CLOMAdsLispVar(short{1}).New());
  for (const bool dxf : {false, true}) {
    OnSmallStack([&] {
      ADSList target;
      CLOMAdsLispVar::LispToADS(value.New(), target, dxf);
      EXPECT_EQ(Count(target), kMany + 2);
    });
  }
}

TEST_F(ValueToChain, AMillionGroups) {
  CLOMAdsLispVar value = ListOf({});
  const CLOMAdsLispVar group = Group(62, short{1});
  for (size_t i = 0; i < kMany; ++i) value.New()->children.push_back(group.New());
  OnSmallStack([&] {
    ADSList target;
    value.LispToDXF(target);
    EXPECT_EQ(Count(target), kMany);
  });
}

TEST_F(ValueToChain, DeepExtendedDataNeedsNoStack) {
  const CLOMAdsLispVar value = NestedExtendedData(kSome, ListOf({Group(1070, short{1})}));
  OnSmallStack([&] {
    ADSList target;
    value.LispToDXF(target);
    EXPECT_EQ(Count(target), kSome * 2 + 1);
  });
}

// There is no clock in here: what takes quadratic time meets the time limit of the test run.

TEST_F(ValueToChain, AFailureAtTheInnermostLevelIsNotFoundAgainAtEveryLevel) {
  const CLOMAdsLispVar broken = NestedExtendedData(kSome, ListOf({L"x"}));
  OnSmallStack([&] {
    ADSList target;
    broken.LispToDXF(target);
    // A level is three pairs of brackets, the code and the name; the innermost list is ("x").
    EXPECT_EQ(Count(target), kSome * 8 + 3);
  });
}

TEST_F(ValueToChain, AFailureBetweenGoodGroupsTakesLinearTimeToo) {
  const CLOMAdsLispVar good = ListOf({Group(1070, short{1}), Group(1000, L"x")});
  CLOMAdsLispVar groups = ListOf({Group(1070, short{1}), L"x"});
  for (size_t i = 0; i < kSome; ++i)
    groups = ListOf(
        {Group(62, short{1}), ListOf({short{-3}, ListOf({L"A", good, groups, good})}), Group(8, L"l")});
  ADSList target;
  groups.LispToDXF(target);
  // Two bracketed pairs of five records, three pairs of brackets, the code, the name, and twice a
  // run of two groups; the innermost list is a pair and a text in brackets.
  EXPECT_EQ(Count(target), kSome * (2 * 5 + 3 * 2 + 2 + 2 * 2) + 8);
}

}  // namespace
}  // namespace lomlisp::test::value_to_chain
