// Reverse: the members in the other order, of a copy or in place.
#include <tests/listops/Values.h>

#include <utility>

namespace lomlisp::test::reverse {

using ReverseTest = HostTest;

namespace {

std::vector<CLOMAdsLispVar> ImproperValues() {
  return {V(L"7"), V(L"\"text\""), DottedOf({1, 2}), DottedOf({1, 2, 3}), DottedOf({1, CLOMAdsLisp::nil()})};
}

}  // namespace

// --- Both modes of the member ---

class ReverseModeTest : public HostTest, public ::testing::WithParamInterface<bool> {};
INSTANTIATE_TEST_SUITE_P(InPlaceAndCopying, ReverseModeTest, ::testing::Bool());

TEST_P(ReverseModeTest, TurnsTheTopLevelRound) {
  const std::pair<CLOMAdsLispVar, std::string> cases[] = {
      {ListOf({}), "()"},
      {V(L"(1)"), "(1)"},
      {V(L"(1 2)"), "(2 1)"},
      {V(L"(1 2 3)"), "(3 2 1)"},
      {V(L"(1 2 3 4)"), "(4 3 2 1)"},
      {V(L"((1 2) (3 4))"), "((3 4) (1 2))"},
      {ListOf({1, CLOMAdsLisp::nil(), CLOMAdsLisp::nil()}), "(nil nil 1)"},
      {DottedOf({1, V(L"(2 3)")}), "((2 3) . 1)"}};
  for (const auto& [list, text] : cases) {
    CLOMAdsLispVar value = list;
    EXPECT_EQ(&value.Reverse(GetParam()), &value);
    EXPECT_EQ(Text(value), text);
  }
  EXPECT_EQ(Printed(), "");
}

TEST_P(ReverseModeTest, LeavesNilAsItIsWithoutAMessage) {
  for (CLOMAdsLispVar nil : {CLOMAdsLispVar(), NilAtom()}) {
    const Element node = nil.New();
    EXPECT_EQ(nil.Reverse(GetParam()).New(), node);
  }
  EXPECT_EQ(Printed(), "");
}

TEST_P(ReverseModeTest, RefusesWhatIsNoProperList) {
  for (CLOMAdsLispVar value : ImproperValues()) {
    const Element node = value.New();
    const std::string text = Text(value);
    EXPECT_EQ(value.Reverse(GetParam()).New(), node);
    EXPECT_EQ(Text(value), text);
    EXPECT_EQ(Printed(), "CLOMAdsLispVar::Reverse : Keine Liste !\n");
  }
}

TEST_F(ReverseTest, InPlaceIsSeenByEverybodyWhoSharesTheList) {
  CLOMAdsLispVar list = V(L"((1) 2 3)");
  const CLOMAdsLispVar other = list;
  const CLOMAdsLispVar parent = ListOf({list});
  const Element first = Child(list, 0);
  list.Reverse(false);
  EXPECT_EQ(list.New(), other.New());
  EXPECT_EQ(Text(other), "(3 2 (1))");
  EXPECT_EQ(Text(parent), "((3 2 (1)))");
  EXPECT_EQ(Child(list, 2), first);
}

TEST_F(ReverseTest, CopyingLeavesTheOthersAloneAndSharesNoNode) {
  CLOMAdsLispVar list = V(L"((1 (2)) 3)");
  const CLOMAdsLispVar other = list;
  list.Reverse(true);
  EXPECT_EQ(Text(list), "(3 (1 (2)))");
  EXPECT_EQ(Text(other), "((1 (2)) 3)");
  EXPECT_FALSE(ShareNodes(list, other));
}

TEST_F(ReverseTest, CopyingCopiesAnUnsharedListToo) {
  CLOMAdsLispVar list = V(L"((1) 2)");
  NodeWatch watch;
  watch.Note(list);
  list.Reverse(true);
  EXPECT_EQ(Text(list), "(2 (1))");
  EXPECT_EQ(watch.Alive(), 0U);
}

// --- Static and its proxy ---

TEST_F(ReverseTest, StaticRefersToItsArgument) {
  for (const CLOMAdsLispVar& list : {V(L"(1 2)"), ListOf({}), DottedOf({1, V(L"(2)")})})
    EXPECT_EQ(&CLOMAdsLisp::Reverse(list).GetList(), &list);
  EXPECT_EQ(Printed(), "");
}

TEST_F(ReverseTest, StaticOfNilRefersToTheSharedNilWithoutAMessage) {
  for (const CLOMAdsLispVar& nil : {CLOMAdsLispVar(), NilAtom()}) {
    EXPECT_EQ(&CLOMAdsLisp::Reverse(nil).GetList(), &CLOMAdsLisp::Nil);
    EXPECT_TRUE(IsEmptyHandle(CLOMAdsLispVar(CLOMAdsLisp::Reverse(nil))));
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(ReverseTest, StaticOfWhatIsNoProperListReportsWithoutEchoAndRefersToNil) {
  for (const CLOMAdsLispVar& value : ImproperValues()) {
    const CLOMReverseProxy reversed = CLOMAdsLisp::Reverse(value);
    EXPECT_EQ(Printed(), "CLOMAdsLisp::Reverse : Parameter muß eine Liste sein !\n");
    EXPECT_EQ(&reversed.GetList(), &CLOMAdsLisp::Nil);
    EXPECT_TRUE(IsEmptyHandle(CLOMAdsLispVar(reversed)));
    EXPECT_EQ(Printed(), "");
  }
}

TEST_F(ReverseTest, StaticMakesADeepCopyAndLeavesAnUnsharedListAlone) {
  const CLOMAdsLispVar list = V(L"((1) 2)");
  const CLOMAdsLispVar reversed = CLOMAdsLisp::Reverse(list);
  EXPECT_EQ(Text(reversed), "(2 (1))");
  EXPECT_EQ(Text(list), "((1) 2)");
  EXPECT_FALSE(ShareNodes(reversed, list));
}

// --- Assignment of the proxy ---

TEST_F(ReverseTest, AssignedToItsOwnListWorksInPlaceForEverybody) {
  CLOMAdsLispVar list = V(L"(1 2 3)");
  const CLOMAdsLispVar other = list;
  const CLOMAdsLispVar given = CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Reverse(list));
  EXPECT_EQ(Text(list), "(3 2 1)");
  EXPECT_EQ(given.New(), list.New());
  EXPECT_EQ(other.New(), list.New());
}

TEST_F(ReverseTest, AssignedToAnotherHandleOnTheSameNodeCopies) {
  const CLOMAdsLispVar list = V(L"((1) 2)");
  CLOMAdsLispVar target = list;
  const CLOMAdsLispVar given = CLOMAdsLisp::SetQ(target, CLOMAdsLisp::Reverse(list));
  EXPECT_EQ(Text(target), "(2 (1))");
  EXPECT_EQ(given.New(), target.New());
  EXPECT_EQ(Text(list), "((1) 2)");
  EXPECT_FALSE(ShareNodes(target, list));
}

TEST_F(ReverseTest, AssignedAfterARefusalMakesTheTargetNil) {
  CLOMAdsLispVar target = V(L"7");
  CLOMAdsLisp::SetQ(target, CLOMAdsLisp::Reverse(target));
  EXPECT_TRUE(IsEmptyHandle(target));
  EXPECT_EQ(Printed(), "CLOMAdsLisp::Reverse : Parameter muß eine Liste sein !\n");
}

}  // namespace lomlisp::test::reverse
