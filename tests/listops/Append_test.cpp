// Append and NConc: the members of one list at the end of another.
#include <tests/listops/Values.h>

namespace lomlisp::test::append {

using AppendTest = HostTest;
using NConcTest = HostTest;

namespace {

const std::string kMemberNoList = "CLOMAdsLispVar::Append : Keine Liste !\n";
const std::string kStaticNoList = "CLOMAdsLisp::Append : keine Liste !\n";

std::vector<CLOMAdsLispVar> ImproperValues() {
  return {V(L"7"),          V(L"\"text\""),
          DottedOf({1, 2}), DottedOf({1, 2, 3}),
          DottedOf({1}),    DottedOf({1, CLOMAdsLisp::nil()})};
}

using Extend = CLOMAdsLispVar& (*)(CLOMAdsLispVar&, const CLOMAdsLispVar&);

CLOMAdsLispVar& ByAppend(CLOMAdsLispVar& a, const CLOMAdsLispVar& b) { return a.Append(b); }
CLOMAdsLispVar& ByNConc(CLOMAdsLispVar& a, const CLOMAdsLispVar& b) { return a.NConc(b); }
CLOMAdsLispVar& ByStaticNConc(CLOMAdsLispVar& a, const CLOMAdsLispVar& b) {
  const CLOMAdsLispVar given = CLOMAdsLisp::NConc(a, b);
  EXPECT_EQ(given.New(), a.New());
  return a;
}

std::string FormName(const ::testing::TestParamInfo<Extend>& info) {
  if (info.param == ByAppend) return "Append";
  return info.param == ByNConc ? "NConc" : "StaticNConc";
}

}  // namespace

// --- The member and NConc, which are the same ---

class ExtendTest : public HostTest, public ::testing::WithParamInterface<Extend> {
 protected:
  // The operation, checked to give its own variable.
  static void Apply(CLOMAdsLispVar& a, const CLOMAdsLispVar& b) { EXPECT_EQ(&GetParam()(a, b), &a); }
};
INSTANTIATE_TEST_SUITE_P(Forms, ExtendTest, ::testing::Values(ByAppend, ByNConc, ByStaticNConc), FormName);

TEST_P(ExtendTest, ExtendsAnUnsharedListInPlaceWithTheMembersThemselves) {
  CLOMAdsLispVar a = V(L"(1 2)");
  const CLOMAdsLispVar b = V(L"((3) 4)");
  const CLOMLispElement* node = a.New().get();
  const CLOMLispElement* first = Child(a, 0).get();
  Apply(a, b);
  EXPECT_EQ(Text(a), "(1 2 (3) 4)");
  EXPECT_EQ(a.New().get(), node);
  EXPECT_EQ(Child(a, 0).get(), first);
  EXPECT_EQ(Child(a, 2), Child(b, 0));
  EXPECT_EQ(Child(a, 3), Child(b, 1));
  EXPECT_EQ(Text(b), "((3) 4)");
  EXPECT_EQ(Printed(), "");
}

TEST_P(ExtendTest, ExtendsADeepCopyOfASharedList) {
  CLOMAdsLispVar a = V(L"((1) 2)");
  const CLOMAdsLispVar other = a;
  const CLOMAdsLispVar b = V(L"(3)");
  Apply(a, b);
  EXPECT_EQ(Text(a), "((1) 2 3)");
  EXPECT_EQ(Text(other), "((1) 2)");
  EXPECT_FALSE(ShareNodes(a, other));
  EXPECT_EQ(Child(a, 2), Child(b, 0));
}

TEST_P(ExtendTest, CountsAParentListAsAnOwner) {
  CLOMAdsLispVar a = V(L"(1)");
  const CLOMAdsLispVar parent = ListOf({a});
  Apply(a, V(L"(2)"));
  EXPECT_EQ(Text(a), "(1 2)");
  EXPECT_EQ(Text(parent), "((1))");
}

TEST_P(ExtendTest, ByNilChangesNothing) {
  for (const CLOMAdsLispVar& nil : {CLOMAdsLispVar(), NilAtom()}) {
    CLOMAdsLispVar a = V(L"(1)");
    const CLOMAdsLispVar other = a;
    Apply(a, nil);
    EXPECT_EQ(a.New(), other.New());
  }
  EXPECT_EQ(Printed(), "");
}

TEST_P(ExtendTest, OfNilSharesTheOtherListItself) {
  for (const CLOMAdsLispVar& b : {V(L"(1 2)"), ListOf({}), DottedOf({1, V(L"(2)")})}) {
    CLOMAdsLispVar nil;
    Apply(nil, b);
    EXPECT_EQ(nil.New(), b.New());
    CLOMAdsLispVar nilAtom = NilAtom();
    Apply(nilAtom, b);
    EXPECT_EQ(nilAtom.New(), b.New());
  }
  EXPECT_EQ(Printed(), "");
}

TEST_P(ExtendTest, OfNilByNilStaysAsItIs) {
  CLOMAdsLispVar nil;
  Apply(nil, NilAtom());
  EXPECT_TRUE(IsEmptyHandle(nil));
  CLOMAdsLispVar nilAtom = NilAtom();
  const Element node = nilAtom.New();
  Apply(nilAtom, CLOMAdsLisp::Nil);
  EXPECT_EQ(nilAtom.New(), node);
  EXPECT_EQ(Printed(), "");
}

TEST_P(ExtendTest, ByAnEmptyListAddsThatListAsAMember) {
  const CLOMAdsLispVar empty = ListOf({});
  CLOMAdsLispVar a = V(L"(1)");
  Apply(a, empty);
  EXPECT_EQ(Text(a), "(1 ())");
  EXPECT_EQ(Child(a, 1), empty.New());
}

TEST_P(ExtendTest, OfAnEmptyListWorksInPlace) {
  CLOMAdsLispVar a = ListOf({});
  const CLOMLispElement* node = a.New().get();
  Apply(a, V(L"(1 2)"));
  EXPECT_EQ(Text(a), "(1 2)");
  EXPECT_EQ(a.New().get(), node);
}

TEST_P(ExtendTest, TakesNullMembersAlong) {
  CLOMAdsLispVar a = ListOf({CLOMAdsLisp::nil()});
  const CLOMAdsLispVar other = a;
  Apply(a, ListOf({CLOMAdsLisp::nil(), 2}));
  EXPECT_EQ(Text(a), "(nil nil 2)");
}

TEST_P(ExtendTest, TakesTheTwoMembersOfAListAsDottedPair) {
  CLOMAdsLispVar a = V(L"(0)");
  Apply(a, DottedOf({1, V(L"(2 3)")}));
  EXPECT_EQ(Text(a), "(0 1 (2 3))");
  EXPECT_EQ(Printed(), "");
}

TEST_P(ExtendTest, OfAListAsDottedPairKeepsItsMark) {
  for (const bool shared : {false, true}) {
    CLOMAdsLispVar a = DottedOf({1, V(L"(2)")});
    const CLOMAdsLispVar other = shared ? a : CLOMAdsLispVar();
    Apply(a, V(L"(3)"));
    EXPECT_EQ(Text(a), "(1 . (2) 3)");
    EXPECT_TRUE(IsDotted(a));
  }
}

TEST_P(ExtendTest, RefusesWhatIsNoProperListOnEitherSide) {
  for (const CLOMAdsLispVar& value : ImproperValues()) {
    CLOMAdsLispVar a = V(L"(1)");
    const Element node = a.New();
    Apply(a, value);
    EXPECT_EQ(a.New(), node);
    EXPECT_EQ(Text(a), "(1)");
    EXPECT_EQ(Printed(), kMemberNoList);

    CLOMAdsLispVar improper = value;
    Apply(improper, V(L"(1)"));
    EXPECT_EQ(improper.New(), value.New());
    EXPECT_EQ(Printed(), kMemberNoList);
  }
}

TEST_P(ExtendTest, RefusesBeforeItLooksForNil) {
  CLOMAdsLispVar nil;
  Apply(nil, V(L"7"));
  EXPECT_TRUE(IsEmptyHandle(nil));
  EXPECT_EQ(Printed(), kMemberNoList);
  CLOMAdsLispVar atom = V(L"7");
  Apply(atom, CLOMAdsLisp::Nil);
  EXPECT_EQ(Text(atom), "7");
  EXPECT_EQ(Printed(), kMemberNoList);
  Apply(atom, V(L"8"));
  EXPECT_EQ(Printed(), kMemberNoList);
}

TEST_P(ExtendTest, ByItselfTakesItsMembersTwice) {
  CLOMAdsLispVar a = V(L"((1) 2)");
  const CLOMLispElement* node = a.New().get();
  Apply(a, a);
  EXPECT_EQ(Text(a), "((1) 2 (1) 2)");
  EXPECT_EQ(a.New().get(), node);
  EXPECT_EQ(Child(a, 0), Child(a, 2));
}

TEST_P(ExtendTest, ByItselfWhileSharedTakesTheOldMembersBehindTheirCopies) {
  CLOMAdsLispVar a = V(L"((1) 2)");
  const CLOMAdsLispVar other = a;
  Apply(a, a);
  EXPECT_EQ(Text(a), "((1) 2 (1) 2)");
  EXPECT_EQ(Text(other), "((1) 2)");
  EXPECT_NE(Child(a, 0), Child(other, 0));
  EXPECT_EQ(Child(a, 2), Child(other, 0));
}

TEST_P(ExtendTest, ByAnotherHandleOnTheSameNodeLeavesThatOneAlone) {
  CLOMAdsLispVar a = V(L"(1 2)");
  const CLOMAdsLispVar b = a;
  Apply(a, b);
  EXPECT_EQ(Text(a), "(1 2 1 2)");
  EXPECT_EQ(Text(b), "(1 2)");
}

TEST_P(ExtendTest, OfAnEmptyListByItselfAddsAFreshEmptyList) {
  NodeWatch watch;
  {
    CLOMAdsLispVar a = ListOf({});
    Apply(a, a);
    EXPECT_EQ(Text(a), "(())");
    EXPECT_NE(Child(a, 0), a.New());
    watch.Note(a);
  }
  EXPECT_EQ(watch.Alive(), 0U);
}

TEST_P(ExtendTest, OfASharedEmptyListByItselfAddsAFreshEmptyListToo) {
  CLOMAdsLispVar a = ListOf({});
  const CLOMAdsLispVar other = a;
  Apply(a, a);
  EXPECT_EQ(Text(a), "(())");
  EXPECT_NE(Child(a, 0), other.New());
  EXPECT_EQ(Text(other), "()");
}

TEST_P(ExtendTest, OfAnEmptyListByAnotherHandleOnItLeavesThatOneAlone) {
  NodeWatch watch;
  {
    CLOMAdsLispVar a = ListOf({});
    const CLOMAdsLispVar b = a;
    Apply(a, b);
    EXPECT_EQ(Text(a), "(())");
    EXPECT_EQ(Text(b), "()");
    watch.Note(a);
    watch.Note(b);
  }
  EXPECT_EQ(watch.Alive(), 0U);
}

TEST_P(ExtendTest, ByAListAroundItselfBuildsNoCycle) {
  NodeWatch watch;
  {
    CLOMAdsLispVar a = V(L"(1)");
    const CLOMAdsLispVar around = ListOf({ListOf({a})});
    Apply(a, around);
    EXPECT_EQ(Text(a), "(1 ((1)))");
    EXPECT_EQ(Text(around), "(((1)))");
    watch.Note(a);
    watch.Note(around);
  }
  EXPECT_EQ(watch.Alive(), 0U);
}

TEST_P(ExtendTest, ByItsOwnMemberWorksInPlace) {
  CLOMAdsLispVar a = V(L"((1 2))");
  const CLOMLispElement* node = a.New().get();
  Apply(a, CLOMAdsLisp::Car(a));
  EXPECT_EQ(Text(a), "((1 2) 1 2)");
  EXPECT_EQ(a.New().get(), node);
}

// --- Append, static ---

TEST_F(AppendTest, StaticChangesNeitherListAndSharesTheSecondsMembers) {
  const CLOMAdsLispVar a = V(L"((1) 2)");
  const CLOMAdsLispVar b = V(L"((3))");
  const CLOMAdsLispVar both = CLOMAdsLisp::Append(a, b);
  EXPECT_EQ(Text(both), "((1) 2 (3))");
  EXPECT_EQ(Text(a), "((1) 2)");
  EXPECT_EQ(Text(b), "((3))");
  EXPECT_FALSE(ShareNodes(both, a));
  EXPECT_EQ(Child(both, 2), Child(b, 0));
  EXPECT_EQ(Printed(), "");
}

TEST_F(AppendTest, StaticWithNilSharesTheOtherListItself) {
  const CLOMAdsLispVar list = V(L"(1)");
  EXPECT_EQ(CLOMAdsLisp::Append(list, CLOMAdsLisp::Nil).New(), list.New());
  EXPECT_EQ(CLOMAdsLisp::Append(CLOMAdsLisp::Nil, list).New(), list.New());
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Append(CLOMAdsLisp::Nil, CLOMAdsLisp::Nil)));
  EXPECT_EQ(Printed(), "");
}

TEST_F(AppendTest, StaticWithAnEmptyListAddsThatListAsAMember) {
  const CLOMAdsLispVar empty = ListOf({});
  const CLOMAdsLispVar both = CLOMAdsLisp::Append(V(L"(1)"), empty);
  EXPECT_EQ(Text(both), "(1 ())");
  EXPECT_EQ(Child(both, 1), empty.New());
}

TEST_F(AppendTest, StaticOfAListWithItselfLeavesItAlone) {
  const CLOMAdsLispVar list = V(L"(1 2)");
  const CLOMAdsLispVar both = CLOMAdsLisp::Append(list, list);
  EXPECT_EQ(Text(both), "(1 2 1 2)");
  EXPECT_EQ(Text(list), "(1 2)");
  EXPECT_EQ(Child(both, 2), Child(list, 0));
  const CLOMAdsLispVar empty = ListOf({});
  EXPECT_EQ(Text(CLOMAdsLisp::Append(empty, empty)), "(())");
  EXPECT_EQ(Text(empty), "()");
}

TEST_F(AppendTest, StaticRefusesWhatIsNoProperListWithoutEcho) {
  const CLOMAdsLispVar list = V(L"(1)");
  for (const CLOMAdsLispVar& value : ImproperValues()) {
    EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Append(list, value)));
    EXPECT_EQ(Printed(), kStaticNoList);
    EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Append(value, list)));
    EXPECT_EQ(Printed(), kStaticNoList);
    EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Append(value, CLOMAdsLisp::Nil)));
    EXPECT_EQ(Printed(), kStaticNoList);
  }
}

// --- NConc, static ---

TEST_F(NConcTest, StaticGivesAHandleOnTheExtendedList) {
  CLOMAdsLispVar a = V(L"(1)");
  const CLOMAdsLispVar given = CLOMAdsLisp::NConc(a, V(L"(2)"));
  EXPECT_EQ(Text(a), "(1 2)");
  EXPECT_EQ(given.New(), a.New());
}

TEST_F(NConcTest, StaticMovesASharedVariableOnToTheExtendedCopy) {
  CLOMAdsLispVar a = V(L"(1)");
  const CLOMAdsLispVar other = a;
  const CLOMAdsLispVar given = CLOMAdsLisp::NConc(a, V(L"(2)"));
  EXPECT_EQ(Text(a), "(1 2)");
  EXPECT_EQ(given.New(), a.New());
  EXPECT_EQ(Text(other), "(1)");
}

TEST_F(NConcTest, StaticGivesTheUnchangedVariableAfterARefusal) {
  CLOMAdsLispVar a = V(L"(1)");
  EXPECT_EQ(CLOMAdsLisp::NConc(a, V(L"7")).New(), a.New());
  EXPECT_EQ(Printed(), kMemberNoList);
}

}  // namespace lomlisp::test::append
