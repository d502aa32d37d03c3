// Head and CopyHead: deep copies of the leading members.
#include <tests/listops/Values.h>

#include <limits>

namespace lomlisp::test {

using HeadTest = HostTest;
using CopyHeadTest = HostTest;

namespace {

constexpr int kGreatest = std::numeric_limits<int>::max();
constexpr int kLowest = std::numeric_limits<int>::min();

CLOMAdsLispVar CopyOf(const CLOMAdsLispVar& source, int n) {
  Element head;
  Element rest;
  EXPECT_TRUE(CLOMAdsLispVar::CopyHead(source.New(), head, rest, n));
  EXPECT_EQ(rest, nullptr);
  return NodeHandle(head);
}

}  // namespace

// --- CopyHead ---

TEST_F(CopyHeadTest, ClearsBothResultsFirst) {
  Element head = V(L"(8)").New();
  Element rest = V(L"(9)").New();
  EXPECT_TRUE(CLOMAdsLispVar::CopyHead(V(L"(1 2)").New(), head, rest, 0));
  EXPECT_EQ(head, nullptr);
  EXPECT_EQ(rest, nullptr);
  EXPECT_EQ(Printed(), "");
}

TEST_F(CopyHeadTest, OfNoNodeIsNil) {
  for (const int n : {0, 1, -1, kGreatest, kLowest}) EXPECT_TRUE(IsEmptyHandle(CopyOf(CLOMAdsLispVar(), n)));
  EXPECT_EQ(Printed(), "");
}

TEST_F(CopyHeadTest, TakesOneMemberMoreThanTheNumberAndAllOfThemForANegativeOne) {
  const CLOMAdsLispVar list = V(L"(1 2 3)");
  EXPECT_TRUE(IsEmptyHandle(CopyOf(list, 0)));
  EXPECT_EQ(Text(CopyOf(list, 1)), "(1 2)");
  EXPECT_EQ(Text(CopyOf(list, 2)), "(1 2 3)");
  EXPECT_EQ(Text(CopyOf(list, 3)), "(1 2 3)");
  EXPECT_EQ(Text(CopyOf(list, kGreatest)), "(1 2 3)");
  EXPECT_EQ(Text(CopyOf(list, -1)), "(1 2 3)");
  EXPECT_EQ(Text(CopyOf(list, kLowest)), "(1 2 3)");
  EXPECT_EQ(Printed(), "");
}

TEST_F(CopyHeadTest, SharesNoNodeWithTheSource) {
  const CLOMAdsLispVar list = V(L"(1 (2 (\"a\" (3 . 4))) (((5))))");
  for (const int n : {-1, 1, 2}) {
    const CLOMAdsLispVar copy = CopyOf(list, n);
    EXPECT_FALSE(ShareNodes(copy, list));
  }
  EXPECT_EQ(Text(CopyOf(list, -1)), Text(list));
}

TEST_F(CopyHeadTest, OfNodesThatAreMetTwiceMakesTwoCopies) {
  const CLOMAdsLispVar part = V(L"(1)");
  const CLOMAdsLispVar copy = CopyOf(ListOf({part, part}), -1);
  EXPECT_EQ(Text(copy), "((1) (1))");
  EXPECT_NE(Child(copy, 0), Child(copy, 1));
}

TEST_F(CopyHeadTest, GivesTextsOfTheirOwn) {
  CLOMAdsLispVar text = V(L"\"old\"");
  const CLOMAdsLispVar copy = CopyOf(ListOf({text}), -1);
  text.GetAtom() = L"new";
  EXPECT_EQ(Text(copy), "(\"old\")");
}

TEST_F(CopyHeadTest, KeepsTheDottedMark) {
  const CLOMAdsLispVar list = DottedOf({1, 2, 3});
  EXPECT_EQ(Text(CopyOf(list, -1)), "(1 . 2 3)");
  EXPECT_EQ(Text(CopyOf(list, 1)), "(1 . 2)");
  EXPECT_TRUE(IsDotted(CopyOf(DottedOf({}), -1)));
  EXPECT_EQ(Text(CopyOf(ListOf({DottedOf({1, 2})}), -1)), "((1 . 2))");
}

TEST_F(CopyHeadTest, KeepsNullMembersAndNilAtomsAsTheyAre) {
  const CLOMAdsLispVar copy = CopyOf(ListOf({CLOMAdsLisp::nil(), NilAtom()}), -1);
  ASSERT_EQ(ChildCount(copy), 2U);
  EXPECT_EQ(Child(copy, 0), nullptr);
  ASSERT_NE(Child(copy, 1), nullptr);
  EXPECT_EQ(Child(copy, 1)->atom.Type(), RTNIL);
}

TEST_F(CopyHeadTest, OfAnEmptyListIsANewEmptyList) {
  const CLOMAdsLispVar list = ListOf({});
  for (const int n : {-1, 1}) {
    const CLOMAdsLispVar copy = CopyOf(list, n);
    EXPECT_EQ(Text(copy), "()");
    EXPECT_NE(copy.New(), list.New());
  }
}

TEST_F(CopyHeadTest, OfAnAtomIsANewAtom) {
  for (const CLOMAdsLispVar& atom : {V(L"7"), V(L"2.5"), V(L"\"text\""), CLOMAdsLispVar(70000L), NilAtom()}) {
    for (const int n : {-1, 1, kGreatest}) {
      const CLOMAdsLispVar copy = CopyOf(atom, n);
      ASSERT_FALSE(IsEmptyHandle(copy));
      EXPECT_NE(copy.New(), atom.New());
      EXPECT_EQ(copy.New()->atom.Type(), atom.New()->atom.Type());
      EXPECT_EQ(Text(copy), Text(atom));
    }
    EXPECT_TRUE(IsEmptyHandle(CopyOf(atom, 0)));
  }
  EXPECT_EQ(Printed(), "");
}

// --- Head, member ---

TEST_F(HeadTest, MemberKeepsTheMembersUpToThePosition) {
  const std::pair<int, std::string> cases[] = {{0, "nil"},          {1, "(1 2)"},    {2, "(1 2 3)"},
                                               {9, "(1 2 3)"},      {-1, "(1 2 3)"}, {kGreatest, "(1 2 3)"},
                                               {kLowest, "(1 2 3)"}};
  for (const auto& [n, text] : cases) {
    CLOMAdsLispVar list = V(L"(1 2 3)");
    EXPECT_EQ(&list.Head(n), &list);
    EXPECT_EQ(Text(list), text) << n;
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(HeadTest, MemberWithZeroIsTheEmptyHandle) {
  CLOMAdsLispVar list = V(L"(1 2 3)");
  EXPECT_TRUE(IsEmptyHandle(list.Head(0)));
}

TEST_F(HeadTest, MemberMovesOnToADeepCopyAndLeavesTheOthersAlone) {
  CLOMAdsLispVar list = V(L"((1) (2) (3))");
  const CLOMAdsLispVar other = list;
  list.Head(-1);
  EXPECT_EQ(Text(list), "((1) (2) (3))");
  EXPECT_FALSE(ShareNodes(list, other));
  list.Head(1);
  EXPECT_EQ(Text(list), "((1) (2))");
  EXPECT_EQ(Text(other), "((1) (2) (3))");
}

TEST_F(HeadTest, MemberLetsAnUnsharedTreeGo) {
  CLOMAdsLispVar list = V(L"((1) (2))");
  NodeWatch watch;
  watch.Note(list);
  list.Head(-1);
  EXPECT_EQ(watch.Alive(), 0U);
}

TEST_F(HeadTest, MemberOfNilIsNilWithoutAMessage) {
  CLOMAdsLispVar nil;
  EXPECT_TRUE(IsEmptyHandle(nil.Head(1)));
  EXPECT_TRUE(IsEmptyHandle(nil.Head(-1)));
  EXPECT_EQ(Printed(), "");
}

TEST_F(HeadTest, MemberOfAnAtomIsANewAtomWithoutAMessage) {
  CLOMAdsLispVar atom = V(L"7");
  const CLOMAdsLispVar other = atom;
  EXPECT_EQ(Text(atom.Head(1)), "7");
  EXPECT_NE(atom.New(), other.New());
  EXPECT_EQ(Printed(), "");
}

TEST_F(HeadTest, MemberOfADottedListKeepsItsMark) {
  CLOMAdsLispVar list = DottedOf({1, 2, 3});
  EXPECT_EQ(Text(list.Head(1)), "(1 . 2)");
  EXPECT_EQ(Printed(), "");
}

// --- Head, static ---

TEST_F(HeadTest, StaticLeavesItsArgumentAlone) {
  const CLOMAdsLispVar list = V(L"((1) (2) (3))");
  const Element node = list.New();
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Head(0, list)));
  EXPECT_EQ(Text(CLOMAdsLisp::Head(1, list)), "((1) (2))");
  const CLOMAdsLispVar copy = CLOMAdsLisp::Head(-1, list);
  EXPECT_EQ(Text(copy), "((1) (2) (3))");
  EXPECT_FALSE(ShareNodes(copy, list));
  EXPECT_EQ(list.New(), node);
  EXPECT_EQ(Text(list), "((1) (2) (3))");
  EXPECT_EQ(Printed(), "");
}

}  // namespace lomlisp::test
