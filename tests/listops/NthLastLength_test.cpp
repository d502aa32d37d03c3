// Nth, Last and Length: members by position, and how many there are.
#include <tests/listops/Values.h>

#include <utility>

namespace lomlisp::test::nth_last_length {

using NthTest = HostTest;
using LastTest = HostTest;
using LengthTest = HostTest;

namespace {

// (1 . (2 3)), which LISP reads as the proper list (1 2 3).
CLOMAdsLispVar ListAsDottedPair() { return DottedOf({1, V(L"(2 3)")}); }

// Everything but nil that is no proper list.
std::vector<CLOMAdsLispVar> ImproperValues() {
  return {V(L"7"),
          V(L"2.5"),
          V(L"\"text\""),
          DottedOf({1, 2}),
          DottedOf({1, 2, 3}),
          DottedOf({1, 2, V(L"(3)")}),
          DottedOf({1}),
          DottedOf({}),
          DottedOf({1, CLOMAdsLisp::nil()}),
          DottedOf({1, NilAtom()}),
          DottedOf({1, DottedOf({2, 3})})};
}

const std::string kNthNoList = "CLOMAdsLisp::Nth : Parameter muß eine Liste sein !\n";
const std::string kLastNoList = "CLOMAdsLisp::Last : Parameter muß eine Liste sein !\n";
const std::string kLengthNoList = "CLOMAdsLisp::Length : Parameter muß eine Liste sein !\n";

}  // namespace

// --- Nth, member ---

TEST_F(NthTest, MemberMovesTheHandleOnToTheMember) {
  const CLOMAdsLispVar list = V(L"(1 (2) 3)");
  for (unsigned int n = 0; n < 3; ++n) {
    CLOMAdsLispVar value = list;
    EXPECT_EQ(&value.Nth(n), &value);
    EXPECT_EQ(value.New(), Child(list, n));
  }
  EXPECT_EQ(Text(list), "(1 (2) 3)");
  EXPECT_EQ(Printed(), "");
}

TEST_F(NthTest, MemberOfAnUnsharedListLetsTheOthersGo) {
  CLOMAdsLispVar list = V(L"((1) (2))");
  const std::weak_ptr<CLOMLispElement> first = Child(list, 0);
  EXPECT_EQ(Text(list.Nth(1)), "(2)");
  EXPECT_TRUE(first.expired());
}

TEST_F(NthTest, MemberGivesANullMemberAsNil) {
  CLOMAdsLispVar list = ListOf({1, CLOMAdsLisp::nil()});
  EXPECT_TRUE(IsEmptyHandle(list.Nth(1)));
  EXPECT_EQ(Printed(), "");
}

TEST_F(NthTest, MemberAtExactlyTheLengthIsNilWithoutAMessage) {
  for (CLOMAdsLispVar list : {ListOf({}), V(L"(1)"), V(L"(1 2 3)"), ListAsDottedPair()}) {
    EXPECT_TRUE(IsEmptyHandle(list.Nth(static_cast<unsigned int>(list.Length()))));
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(NthTest, MemberBehindTheLengthReportsBothNumbersAndTheList) {
  CLOMAdsLispVar list = V(L"(1 2 3)");
  const Element node = list.New();
  EXPECT_EQ(list.Nth(4).New(), node);
  EXPECT_EQ(Printed(), "CLOMAdsLispVar::Nth : Zuwenig Elemente ( 4 >= 3) !\n(1 2 3)\n");
}

TEST_F(NthTest, MemberBehindTheLengthOfAnEmptyListReportsToo) {
  CLOMAdsLispVar list = ListOf({});
  EXPECT_EQ(Text(list.Nth(1)), "()");
  EXPECT_EQ(Printed(), "CLOMAdsLispVar::Nth : Zuwenig Elemente ( 1 >= 0) !\n()\n");
}

TEST_F(NthTest, MemberPrintsAHugePositionAsASignedNumber) {
  CLOMAdsLispVar list = V(L"(1 2 3)");
  list.Nth(4294967295U);
  EXPECT_EQ(Printed(), "CLOMAdsLispVar::Nth : Zuwenig Elemente ( -1 >= 3) !\n(1 2 3)\n");
}

TEST_F(NthTest, MemberOfNilAtZeroStaysNilWithoutAMessage) {
  CLOMAdsLispVar nil;
  EXPECT_TRUE(IsEmptyHandle(nil.Nth(0)));
  CLOMAdsLispVar nilAtom = NilAtom();
  EXPECT_TRUE(nilAtom.Nth(0).NilP());
  EXPECT_EQ(Printed(), "");
}

TEST_F(NthTest, MemberOfNilBehindZeroReports) {
  for (CLOMAdsLispVar nil : {CLOMAdsLispVar(), NilAtom()}) {
    const Element node = nil.New();
    EXPECT_EQ(nil.Nth(1).New(), node);
    EXPECT_EQ(Printed(), "CLOMAdsLispVar::Nth : Zuwenig Elemente ( 1 >= 0) !\nnil\n");
  }
}

TEST_F(NthTest, MemberOfWhatIsNoProperListReportsItAndStays) {
  for (CLOMAdsLispVar value : ImproperValues()) {
    const Element node = value.New();
    EXPECT_EQ(value.Nth(0).New(), node);
    EXPECT_EQ(Printed(), "CLOMAdsLispVar::Nth : Keine Liste !\n" + Text(value) + "\n");
  }
}

TEST_F(NthTest, MemberCountsThroughAListAsDottedPair) {
  const CLOMAdsLispVar list = ListAsDottedPair();
  const Element expected[] = {Child(list, 0), Child(list, 1)->children[0], Child(list, 1)->children[1]};
  for (unsigned int n = 0; n < 3; ++n) {
    CLOMAdsLispVar value = list;
    EXPECT_EQ(value.Nth(n).New(), expected[n]);
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(NthTest, MemberOfAPairWithAnEmptyListAsCdrHasOneMember) {
  const CLOMAdsLispVar list = DottedOf({1, ListOf({})});
  CLOMAdsLispVar value = list;
  EXPECT_EQ(Text(value.Nth(0)), "1");
  value = list;
  EXPECT_TRUE(IsEmptyHandle(value.Nth(1)));
  EXPECT_EQ(Printed(), "");
  value = list;
  value.Nth(2);
  EXPECT_EQ(Printed(), "CLOMAdsLispVar::Nth : Zuwenig Elemente ( 2 >= 1) !\n(1 . ())\n");
}

// --- Nth, static ---

TEST_F(NthTest, StaticGivesTheMemberItselfAndLeavesTheListAlone) {
  const CLOMAdsLispVar list = V(L"(1 2 3)");
  EXPECT_EQ(CLOMAdsLisp::Nth(2, list).New(), Child(list, 2));
  EXPECT_EQ(Text(list), "(1 2 3)");
  EXPECT_EQ(Printed(), "");
}

TEST_F(NthTest, StaticAtExactlyTheLengthIsNilWithoutAMessage) {
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Nth(3, V(L"(1 2 3)"))));
  EXPECT_EQ(Printed(), "");
}

TEST_F(NthTest, StaticBehindTheLengthGivesTheWholeList) {
  const CLOMAdsLispVar list = V(L"(1 2 3)");
  EXPECT_EQ(CLOMAdsLisp::Nth(4, list).New(), list.New());
  EXPECT_EQ(Printed(), "CLOMAdsLispVar::Nth : Zuwenig Elemente ( 4 >= 3) !\n(1 2 3)\n");
}

TEST_F(NthTest, StaticRefusesNil) {
  for (const CLOMAdsLispVar& nil : {CLOMAdsLispVar(), NilAtom()}) {
    EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Nth(0, nil)));
    EXPECT_EQ(Printed(), kNthNoList + "nil\n");
  }
}

TEST_F(NthTest, StaticRefusesWhatIsNoProperList) {
  for (const CLOMAdsLispVar& value : ImproperValues()) {
    EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Nth(0, value)));
    EXPECT_EQ(Printed(), kNthNoList + Text(value) + "\n");
  }
}

// --- Nth from the end ---

TEST_F(NthTest, ReversedCountsFromTheEndWithoutReversing) {
  const CLOMAdsLispVar list = V(L"(1 (2) 3)");
  for (unsigned int n = 0; n < 3; ++n)
    EXPECT_EQ(CLOMAdsLisp::Nth(n, CLOMAdsLisp::Reverse(list)).New(), Child(list, 2 - n));
  EXPECT_EQ(Text(list), "(1 (2) 3)");
  EXPECT_EQ(Printed(), "");
}

TEST_F(NthTest, ReversedCountsThroughAListAsDottedPair) {
  const CLOMAdsLispVar list = ListAsDottedPair();
  EXPECT_EQ(CLOMAdsLisp::Nth(0, CLOMAdsLisp::Reverse(list)).New(), Child(list, 1)->children[1]);
  EXPECT_EQ(CLOMAdsLisp::Nth(2, CLOMAdsLisp::Reverse(list)).New(), Child(list, 0));
}

TEST_F(NthTest, ReversedAtOrBehindTheLengthWrapsAndGivesTheWholeList) {
  const CLOMAdsLispVar list = V(L"(1 2 3)");
  EXPECT_EQ(CLOMAdsLisp::Nth(3, CLOMAdsLisp::Reverse(list)).New(), list.New());
  EXPECT_EQ(Printed(), "CLOMAdsLispVar::Nth : Zuwenig Elemente ( -1 >= 3) !\n(1 2 3)\n");
  EXPECT_EQ(CLOMAdsLisp::Nth(5, CLOMAdsLisp::Reverse(list)).New(), list.New());
  EXPECT_EQ(Printed(), "CLOMAdsLispVar::Nth : Zuwenig Elemente ( -3 >= 3) !\n(1 2 3)\n");
}

TEST_F(NthTest, ReversedWithTheGreatestPositionWrapsToExactlyTheLength) {
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Nth(4294967295U, CLOMAdsLisp::Reverse(V(L"(1 2 3)")))));
  EXPECT_EQ(Printed(), "");
}

TEST_F(NthTest, ReversedOfAnEmptyListGivesTheListAfterTheMessage) {
  const CLOMAdsLispVar list = ListOf({});
  EXPECT_EQ(CLOMAdsLisp::Nth(0, CLOMAdsLisp::Reverse(list)).New(), list.New());
  EXPECT_EQ(Printed(), "CLOMAdsLispVar::Nth : Zuwenig Elemente ( -1 >= 0) !\n()\n");
}

TEST_F(NthTest, ReversedNilIsRefused) {
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Nth(0, CLOMAdsLisp::Reverse(CLOMAdsLisp::Nil))));
  EXPECT_EQ(Printed(), kNthNoList + "nil\n");
}

TEST_F(NthTest, ReversedAtomIsRefusedByBothInOrder) {
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Nth(0, CLOMAdsLisp::Reverse(V(L"7")))));
  EXPECT_EQ(Printed(), "CLOMAdsLisp::Reverse : Parameter muß eine Liste sein !\n" + kNthNoList + "nil\n");
}

// --- Last ---

TEST_F(LastTest, MemberMovesTheHandleOnToTheLastMember) {
  CLOMAdsLispVar list = V(L"(1 (2 3))");
  const CLOMAdsLispVar other = list;
  EXPECT_EQ(&list.Last(), &list);
  EXPECT_EQ(list.New(), Child(other, 1));
  EXPECT_EQ(Text(other), "(1 (2 3))");
  EXPECT_EQ(Printed(), "");
}

TEST_F(LastTest, MemberLeavesAListOfOneAsItIs) {
  CLOMAdsLispVar list = V(L"(1)");
  const Element node = list.New();
  EXPECT_EQ(list.Last().New(), node);
  EXPECT_EQ(Text(list), "(1)");
  EXPECT_EQ(Printed(), "");
}

TEST_F(LastTest, MemberLeavesAnEmptyListAsItIs) {
  CLOMAdsLispVar list = ListOf({});
  const Element node = list.New();
  EXPECT_EQ(list.Last().New(), node);
  EXPECT_EQ(Printed(), "");
}

TEST_F(LastTest, MemberGivesANullLastMemberAsNil) {
  CLOMAdsLispVar list = ListOf({1, CLOMAdsLisp::nil()});
  EXPECT_TRUE(IsEmptyHandle(list.Last()));
  EXPECT_EQ(Printed(), "");
}

TEST_F(LastTest, MemberOfAListAsDottedPairIsItsCdr) {
  CLOMAdsLispVar list = ListAsDottedPair();
  const Element cdr = Child(list, 1);
  EXPECT_EQ(list.Last().New(), cdr);
  EXPECT_EQ(Text(list), "(2 3)");
}

TEST_F(LastTest, MemberOfNilReportsNilAndStays) {
  for (CLOMAdsLispVar nil : {CLOMAdsLispVar(), NilAtom()}) {
    const Element node = nil.New();
    EXPECT_EQ(nil.Last().New(), node);
    EXPECT_EQ(Printed(), "CLOMAdsLispVar::Last : nil !\n");
  }
}

TEST_F(LastTest, MemberOfWhatIsNoProperListReportsAndStays) {
  for (CLOMAdsLispVar value : ImproperValues()) {
    const Element node = value.New();
    EXPECT_EQ(value.Last().New(), node);
    EXPECT_EQ(Printed(), "CLOMAdsLispVar::Last : Keine Liste !\n");
  }
}

TEST_F(LastTest, StaticGivesTheLastMemberItselfAndLeavesTheListAlone) {
  const CLOMAdsLispVar list = V(L"(1 2)");
  EXPECT_EQ(CLOMAdsLisp::Last(list).New(), Child(list, 1));
  EXPECT_EQ(Text(list), "(1 2)");
  EXPECT_EQ(Printed(), "");
}

TEST_F(LastTest, StaticOfOneMemberIsTheList) {
  const CLOMAdsLispVar list = V(L"(1)");
  EXPECT_EQ(CLOMAdsLisp::Last(list).New(), list.New());
  EXPECT_EQ(Printed(), "");
}

TEST_F(LastTest, StaticRefusesNil) {
  for (const CLOMAdsLispVar& nil : {CLOMAdsLispVar(), NilAtom()}) {
    EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Last(nil)));
    EXPECT_EQ(Printed(), kLastNoList + "nil\n");
  }
}

TEST_F(LastTest, StaticRefusesWhatIsNoProperList) {
  for (const CLOMAdsLispVar& value : ImproperValues()) {
    EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Last(value)));
    EXPECT_EQ(Printed(), kLastNoList + Text(value) + "\n");
  }
}

// --- Length ---

TEST_F(LengthTest, IsTheNumberOfMembersWithoutAMessage) {
  const std::pair<CLOMAdsLispVar, unsigned __int64> cases[] = {
      {CLOMAdsLispVar(), 0},
      {NilAtom(), 0},
      {ListOf({}), 0},
      {V(L"(1)"), 1},
      {V(L"(1 (2 3) 4)"), 3},
      {ListOf({CLOMAdsLisp::nil(), CLOMAdsLisp::nil()}), 2},
      {ListOf({ListOf({})}), 1},
      {ListAsDottedPair(), 3},
      {DottedOf({1, ListOf({})}), 1},
      {DottedOf({CLOMAdsLisp::nil(), V(L"(2)")}), 2},
  };
  for (const auto& [list, length] : cases) {
    EXPECT_EQ(list.Length(), length) << Text(list);
    EXPECT_EQ(CLOMAdsLisp::Length(list), length) << Text(list);
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(LengthTest, MemberOfWhatIsNoProperListIsZeroAndReports) {
  for (const CLOMAdsLispVar& value : ImproperValues()) {
    EXPECT_EQ(value.Length(), 0U);
    EXPECT_EQ(Printed(), "CLOMAdsLispVar::Length: Keine Liste !\n");
  }
}

TEST_F(LengthTest, StaticOfWhatIsNoProperListIsZeroAndReportsWithEcho) {
  EXPECT_EQ(CLOMAdsLisp::Length(DottedOf({1, 2})), 0U);
  EXPECT_EQ(Printed(), kLengthNoList + "(1 . 2)\n");
  for (const CLOMAdsLispVar& value : ImproperValues()) {
    EXPECT_EQ(CLOMAdsLisp::Length(value), 0U);
    EXPECT_EQ(Printed(), kLengthNoList + Text(value) + "\n");
  }
}

}  // namespace lomlisp::test::nth_last_length
