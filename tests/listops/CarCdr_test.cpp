// Car and Cdr: the first member and the rest.
#include <tests/listops/Values.h>

namespace lomlisp::test {

using CarTest = HostTest;
using CdrTest = HostTest;

namespace {

std::vector<CLOMAdsLispVar> Atoms() {
  return {V(L"1"), V(L"-2.5"), V(L"\"text\""), CLOMAdsLispVar(70000L), NilAtom()};
}

}  // namespace

// --- Car, static ---

TEST_F(CarTest, StaticGivesTheFirstMemberItself) {
  const CLOMAdsLispVar list = V(L"((1 2) 3)");
  const CLOMAdsLispVar first = CLOMAdsLisp::Car(list);
  EXPECT_EQ(Text(first), "(1 2)");
  EXPECT_EQ(first.New(), Child(list, 0));
  EXPECT_EQ(Text(list), "((1 2) 3)");
  EXPECT_EQ(Printed(), "");
}

TEST_F(CarTest, StaticOfADottedListGivesItsCar) {
  EXPECT_EQ(Text(CLOMAdsLisp::Car(DottedOf({1, 2}))), "1");
  EXPECT_EQ(Text(CLOMAdsLisp::Car(DottedOf({1, 2, 3}))), "1");
  EXPECT_EQ(Printed(), "");
}

TEST_F(CarTest, StaticOfAnEmptyListIsNilWithoutAMessage) {
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Car(ListOf({}))));
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Car(DottedOf({}))));
  EXPECT_EQ(Printed(), "");
}

TEST_F(CarTest, StaticGivesANullFirstMemberAsNil) {
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Car(ListOf({CLOMAdsLisp::nil(), 2}))));
  EXPECT_EQ(Printed(), "");
}

TEST_F(CarTest, StaticOfNilReportsNilWithoutEcho) {
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Car(CLOMAdsLisp::Nil)));
  EXPECT_EQ(Printed(), "CLOMAdsLisp::Car : Parameter ist nil !\n");
}

TEST_F(CarTest, StaticOfAnAtomReportsAndEchoesIt) {
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Car(V(L"7"))));
  EXPECT_EQ(Printed(), "CLOMAdsLisp::Car : Parameter muß eine Liste sein !\n7\n");
  for (const CLOMAdsLispVar& atom : Atoms()) {
    EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Car(atom)));
    EXPECT_EQ(Printed(), "CLOMAdsLisp::Car : Parameter muß eine Liste sein !\n" + Text(atom) + "\n");
  }
}

TEST_F(CarTest, StaticTakesANilAtomForAnAtomFirst) {
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Car(NilAtom())));
  EXPECT_EQ(Printed(), "CLOMAdsLisp::Car : Parameter muß eine Liste sein !\nnil\n");
}

// --- Car, member ---

TEST_F(CarTest, MemberMovesTheHandleOnToTheFirstMember) {
  CLOMAdsLispVar list = V(L"((1 2) 3)");
  const CLOMAdsLispVar other = list;
  const Element first = Child(list, 0);
  EXPECT_EQ(&list.Car(), &list);
  EXPECT_EQ(list.New(), first);
  EXPECT_EQ(Text(other), "((1 2) 3)");
  EXPECT_EQ(Printed(), "");
}

TEST_F(CarTest, MemberLetsTheRestOfAnUnsharedListGo) {
  CLOMAdsLispVar list = V(L"((1 2) (3 4))");
  const std::weak_ptr<CLOMLispElement> root = list.New();
  const std::weak_ptr<CLOMLispElement> second = Child(list, 1);
  list.Car();
  EXPECT_EQ(Text(list), "(1 2)");
  EXPECT_TRUE(root.expired());
  EXPECT_TRUE(second.expired());
}

TEST_F(CarTest, MemberOfAnEmptyListIsNilWithoutAMessage) {
  CLOMAdsLispVar list = ListOf({});
  EXPECT_TRUE(IsEmptyHandle(list.Car()));
  EXPECT_EQ(Printed(), "");
}

TEST_F(CarTest, MemberOfADottedListIsItsCar) {
  CLOMAdsLispVar pair = DottedOf({1, 2});
  EXPECT_EQ(Text(pair.Car()), "1");
  EXPECT_EQ(Printed(), "");
}

TEST_F(CarTest, MemberOfNilReportsAndStays) {
  CLOMAdsLispVar nil;
  EXPECT_EQ(&nil.Car(), &nil);
  EXPECT_TRUE(IsEmptyHandle(nil));
  EXPECT_EQ(Printed(), "CLOMAdsLispVar::Car : nil !\n");
}

TEST_F(CarTest, MemberOfANilAtomReportsNilAndStays) {
  CLOMAdsLispVar nil = NilAtom();
  const Element node = nil.New();
  EXPECT_EQ(nil.Car().New(), node);
  EXPECT_EQ(Printed(), "CLOMAdsLispVar::Car : nil !\n");
}

TEST_F(CarTest, MemberOfAnAtomReportsAndStays) {
  CLOMAdsLispVar atom = V(L"7");
  const Element node = atom.New();
  EXPECT_EQ(atom.Car().New(), node);
  EXPECT_EQ(Printed(), "CLOMAdsLispVar::Car : Keine Liste !\n");
}

// --- Cdr, static and its proxy ---

TEST_F(CdrTest, StaticRefersToItsArgument) {
  const CLOMAdsLispVar list = V(L"(1 2)");
  const CLOMAdsLispVar pair = DottedOf({1, 2});
  const CLOMAdsLispVar nil;
  EXPECT_EQ(&CLOMAdsLisp::Cdr(list).GetList(), &list);
  EXPECT_EQ(&CLOMAdsLisp::Cdr(pair).GetList(), &pair);
  EXPECT_EQ(&CLOMAdsLisp::Cdr(nil).GetList(), &nil);
  EXPECT_EQ(Printed(), "");
}

TEST_F(CdrTest, StaticOfAnAtomReportsAtOnceAndRefersToNil) {
  for (const CLOMAdsLispVar& atom : Atoms()) {
    const CLOMCdrProxy rest = CLOMAdsLisp::Cdr(atom);
    EXPECT_EQ(Printed(), "CLOMAdsLisp::Cdr : Parameter muß eine Liste sein !\n" + Text(atom) + "\n");
    EXPECT_EQ(&rest.GetList(), &CLOMAdsLisp::Nil);
    EXPECT_TRUE(IsEmptyHandle(CLOMAdsLispVar(rest)));
    EXPECT_EQ(Printed(), "");
  }
}

TEST_F(CdrTest, StaticLeavesItsArgumentAloneAndSharesTheMembers) {
  const CLOMAdsLispVar list = V(L"(1 (2) 3)");
  const CLOMAdsLispVar rest = CLOMAdsLisp::Cdr(list);
  EXPECT_EQ(Text(rest), "((2) 3)");
  EXPECT_EQ(Text(list), "(1 (2) 3)");
  EXPECT_EQ(Child(rest, 0), Child(list, 1));
  EXPECT_EQ(Child(rest, 1), Child(list, 2));
}

TEST_F(CdrTest, StaticOfAnUnsharedListCopiesAllTheSame) {
  const CLOMAdsLispVar list = V(L"(1 2)");
  const Element node = list.New();
  const CLOMAdsLispVar rest(CLOMAdsLisp::Cdr(list));
  EXPECT_EQ(list.New(), node);
  EXPECT_NE(rest.New(), node);
  EXPECT_EQ(Text(list), "(1 2)");
}

TEST_F(CdrTest, StaticOfNilIsNilWithoutAMessage) {
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLispVar(CLOMAdsLisp::Cdr(CLOMAdsLisp::Nil))));
  EXPECT_EQ(Printed(), "");
}

// --- Cdr, member ---

class CdrModeTest : public HostTest, public ::testing::WithParamInterface<bool> {};
INSTANTIATE_TEST_SUITE_P(InPlaceAndCopying, CdrModeTest, ::testing::Bool());

TEST_P(CdrModeTest, OfNilStaysWithoutAMessage) {
  CLOMAdsLispVar nil;
  EXPECT_EQ(&nil.Cdr(GetParam()), &nil);
  EXPECT_TRUE(IsEmptyHandle(nil));
  CLOMAdsLispVar nilAtom = NilAtom();
  const Element node = nilAtom.New();
  EXPECT_EQ(nilAtom.Cdr(GetParam()).New(), node);
  EXPECT_EQ(Printed(), "");
}

TEST_P(CdrModeTest, OfAnAtomReportsAndStays) {
  CLOMAdsLispVar atom = V(L"\"text\"");
  const Element node = atom.New();
  EXPECT_EQ(atom.Cdr(GetParam()).New(), node);
  EXPECT_EQ(Printed(), "CLOMAdsLispVar::Cdr : Keine Liste !\n");
}

TEST_P(CdrModeTest, OfADottedPairIsTheCdrItself) {
  CLOMAdsLispVar pair = DottedOf({1, V(L"\"b\"")});
  const Element cdr = Child(pair, 1);
  EXPECT_EQ(pair.Cdr(GetParam()).New(), cdr);
  EXPECT_EQ(Text(pair), "\"b\"");
  EXPECT_EQ(Printed(), "");
}

TEST_P(CdrModeTest, OfASharedDottedPairLeavesThePairAlone) {
  CLOMAdsLispVar pair = DottedOf({1, V(L"(2 3)")});
  const CLOMAdsLispVar other = pair;
  EXPECT_EQ(pair.Cdr(GetParam()).New(), Child(other, 1));
  EXPECT_EQ(Text(other), "(1 . (2 3))");
}

TEST_P(CdrModeTest, OfADottedPairWithANullCdrIsNil) {
  CLOMAdsLispVar pair = DottedOf({1, CLOMAdsLisp::nil()});
  EXPECT_TRUE(IsEmptyHandle(pair.Cdr(GetParam())));
  EXPECT_EQ(Printed(), "");
}

TEST_P(CdrModeTest, OfFewerThanTwoMembersIsNil) {
  for (CLOMAdsLispVar list : {ListOf({}), ListOf({1}), DottedOf({}), DottedOf({1})}) {
    EXPECT_TRUE(IsEmptyHandle(list.Cdr(GetParam())));
  }
  EXPECT_EQ(Printed(), "");
}

TEST_P(CdrModeTest, OfOneSharedMemberLeavesTheNodeAlone) {
  CLOMAdsLispVar list = V(L"(1)");
  const CLOMAdsLispVar other = list;
  list.Cdr(GetParam());
  EXPECT_EQ(Text(other), "(1)");
}

TEST_P(CdrModeTest, OfASharedListMakesANewListOfTheSameMembers) {
  CLOMAdsLispVar list = V(L"(1 (2) 3)");
  const CLOMAdsLispVar other = list;
  list.Cdr(GetParam());
  EXPECT_EQ(Text(list), "((2) 3)");
  EXPECT_EQ(Text(other), "(1 (2) 3)");
  EXPECT_NE(list.New(), other.New());
  EXPECT_EQ(Child(list, 0), Child(other, 1));
  EXPECT_EQ(Child(list, 1), Child(other, 2));
  EXPECT_EQ(Printed(), "");
}

TEST_P(CdrModeTest, OfASharedLongerDottedListIsAProperList) {
  CLOMAdsLispVar list = DottedOf({1, 2, 3});
  const CLOMAdsLispVar other = list;
  list.Cdr(GetParam());
  EXPECT_EQ(Text(list), "(2 3)");
  EXPECT_FALSE(IsDotted(list));
  EXPECT_EQ(Text(other), "(1 . 2 3)");
}

TEST_P(CdrModeTest, KeepsNullMembers) {
  CLOMAdsLispVar list = ListOf({1, CLOMAdsLisp::nil(), CLOMAdsLisp::nil()});
  EXPECT_EQ(Text(list.Cdr(GetParam())), "(nil nil)");
}

TEST_F(CdrTest, InPlaceRemovesTheFirstMemberOfAnUnsharedList) {
  CLOMAdsLispVar list = V(L"(1 2 3)");
  const CLOMLispElement* node = list.New().get();
  const std::weak_ptr<CLOMLispElement> first = Child(list, 0);
  EXPECT_EQ(&list.Cdr(false), &list);
  EXPECT_EQ(list.New().get(), node);
  EXPECT_EQ(Text(list), "(2 3)");
  EXPECT_TRUE(first.expired());
}

TEST_F(CdrTest, InPlaceKeepsTheDottedMarkOfALongerDottedList) {
  CLOMAdsLispVar list = DottedOf({1, 2, 3});
  const CLOMLispElement* node = list.New().get();
  EXPECT_EQ(Text(list.Cdr(false)), "(2 . 3)");
  EXPECT_EQ(list.New().get(), node);
  EXPECT_TRUE(IsDotted(list));
}

TEST_F(CdrTest, CopyingDropsTheDottedMarkOfAnUnsharedLongerDottedList) {
  CLOMAdsLispVar list = DottedOf({1, 2, 3});
  EXPECT_EQ(Text(list.Cdr(true)), "(2 3)");
  EXPECT_FALSE(IsDotted(list));
}

TEST_F(CdrTest, CopyingMakesANewNodeForAnUnsharedListAndLetsTheOldOneGo) {
  CLOMAdsLispVar list = V(L"(1 2 3)");
  const std::weak_ptr<CLOMLispElement> node = list.New();
  const Element second = Child(list, 1);
  EXPECT_EQ(Text(list.Cdr(true)), "(2 3)");
  EXPECT_EQ(Child(list, 0), second);
  EXPECT_TRUE(node.expired());
}

TEST_F(CdrTest, InPlaceCountsAParentListAsAnOwner) {
  CLOMAdsLispVar list = V(L"(1 2 3)");
  const CLOMAdsLispVar parent = ListOf({list});
  list.Cdr(false);
  EXPECT_EQ(Text(list), "(2 3)");
  EXPECT_EQ(Text(parent), "((1 2 3))");
}

// --- Cdr through assignment ---

TEST_F(CdrTest, AssignedToItsOwnUnsharedListWorksInPlace) {
  CLOMAdsLispVar list = V(L"(1 2 3)");
  const CLOMLispElement* node = list.New().get();
  const CLOMAdsLispVar given = CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Cdr(list));
  EXPECT_EQ(list.New().get(), node);
  EXPECT_EQ(given.New(), list.New());
  EXPECT_EQ(Text(list), "(2 3)");
}

TEST_F(CdrTest, AssignedToItsOwnSharedListLeavesTheOthersAlone) {
  CLOMAdsLispVar list = V(L"(1 2 3)");
  const CLOMAdsLispVar other = list;
  CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Cdr(list));
  EXPECT_EQ(Text(list), "(2 3)");
  EXPECT_EQ(Text(other), "(1 2 3)");
}

TEST_F(CdrTest, AssignedToItsOwnUnsharedLongerDottedListKeepsTheMark) {
  CLOMAdsLispVar list = DottedOf({1, 2, 3});
  CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Cdr(list));
  EXPECT_EQ(Text(list), "(2 . 3)");
}

TEST_F(CdrTest, AssignedToAnotherVariableLeavesTheListAlone) {
  const CLOMAdsLispVar list = V(L"(1 2 3)");
  CLOMAdsLispVar target = V(L"9");
  const CLOMAdsLispVar given = CLOMAdsLisp::SetQ(target, CLOMAdsLisp::Cdr(list));
  EXPECT_EQ(Text(target), "(2 3)");
  EXPECT_EQ(given.New(), target.New());
  EXPECT_EQ(Text(list), "(1 2 3)");
}

TEST_F(CdrTest, AssignedToAnotherHandleOnTheSameNodeLeavesTheListAlone) {
  const CLOMAdsLispVar list = V(L"(1 2 3)");
  CLOMAdsLispVar target = list;
  CLOMAdsLisp::SetQ(target, CLOMAdsLisp::Cdr(list));
  EXPECT_EQ(Text(target), "(2 3)");
  EXPECT_EQ(Text(list), "(1 2 3)");
}

TEST_F(CdrTest, AssignedFromTheNilThatABadArgumentGivesMakesTheTargetNil) {
  CLOMAdsLispVar target = V(L"7");
  CLOMAdsLisp::SetQ(target, CLOMAdsLisp::Cdr(target));
  EXPECT_TRUE(IsEmptyHandle(target));
  EXPECT_EQ(Printed(), "CLOMAdsLisp::Cdr : Parameter muß eine Liste sein !\n7\n");
}

}  // namespace lomlisp::test
