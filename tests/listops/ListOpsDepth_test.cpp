// Deep and long values on a small stack.
//
// There is no clock in here: what takes quadratic time runs for hours and meets the time limit of
// the test run instead.
#include <tests/listops/Values.h>
#include <tests/support/SmallStack.h>

#include <string>
#include <utility>

namespace lomlisp::test::listops_depth {

namespace {

constexpr int kMany = kLarge;
// How often an operation is repeated on a list that is long from the start.
constexpr int kOften = kLarge / 10;

// (((... 1 ...)))
CLOMAdsLispVar DeepList(CLOMAdsLispVar core = 1) {
  for (int level = 0; level < kMany; ++level) core.List();
  return core;
}

// (1 . (1 . ... (1 . 2)))
CLOMAdsLispVar DeepPairs() {
  const CLOMAdsLispVar car = 1;
  CLOMAdsLispVar pairs = 2;
  for (int level = 0; level < kMany; ++level) pairs = DottedOf({car, pairs});
  return pairs;
}

// (999999 ... 1 0)
CLOMAdsLispVar LongList() {
  CLOMAdsLispVar list;
  for (long n = 0; n < kMany; ++n) CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Cons(n, list));
  return list;
}

// How many lists lie around the innermost last member.
int Levels(const CLOMAdsLispVar& value) {
  int levels = 0;
  for (Element node = value.New(); node != nullptr && !node->children.empty(); ++levels) {
    const Element last = node->children.back();
    node = last;
  }
  return levels;
}

long NumberAt(const CLOMAdsLispVar& list, size_t position) { return Child(list, position)->atom; }

}  // namespace

class ListOpsDepthTest : public HostTest {};

// --- Depth ---

TEST_F(ListOpsDepthTest, DeepValuesAreReleased) {
  OnSmallStack([] {
    CLOMAdsLispVar core = V(L"(1)");
    const std::weak_ptr<CLOMLispElement> innermost = core.New();
    CLOMAdsLispVar list = DeepList(std::move(core));
    EXPECT_EQ(Levels(list), kMany + 1);
    CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Nil);
    EXPECT_TRUE(innermost.expired());
  });
}

TEST_F(ListOpsDepthTest, CarAndCdrWalkDownAllLevels) {
  OnSmallStack([] {
    CLOMAdsLispVar list = DeepList();
    int levels = 0;
    for (; list.ListP(); ++levels) list.Car();
    EXPECT_EQ(levels, kMany);

    CLOMAdsLispVar pairs = DeepPairs();
    for (levels = 0; pairs.ListP(); ++levels) CLOMAdsLisp::SetQ(pairs, CLOMAdsLisp::Cdr(pairs));
    EXPECT_EQ(levels, kMany);
    EXPECT_EQ(Text(pairs), "2");
  });
}

TEST_F(ListOpsDepthTest, AccessReachesDeepMembersAndEchoesThemWhole) {
  OnSmallStack([this] {
    const CLOMAdsLispVar deep = DeepList();
    const CLOMAdsLispVar list = ListOf({0, deep});
    EXPECT_EQ(CLOMAdsLisp::Last(list).New(), deep.New());
    EXPECT_EQ(CLOMAdsLisp::Nth(1, list).New(), deep.New());
    EXPECT_EQ(CLOMAdsLisp::Nth(0, CLOMAdsLisp::Reverse(list)).New(), deep.New());
    EXPECT_EQ(CLOMAdsLisp::Length(list), 2U);
    EXPECT_EQ(Printed(), "");

    const std::string text = std::string(kMany, '(') + "1" + std::string(kMany, ')');
    EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Nth(0, DottedOf({deep, 2}))));
    EXPECT_TRUE(Printed() == "CLOMAdsLisp::Nth : Parameter muß eine Liste sein !\n(" + text + " . 2)\n");
    short target = 9;
    CLOMAdsLisp::SetQ(target, deep);
    EXPECT_EQ(target, 0);
    EXPECT_TRUE(Printed() == "CLOMAdsLispVar::GetAtom : Kein Atom : Liste !" + text + "\n");
  });
}

TEST_F(ListOpsDepthTest, HeadCopiesAllLevels) {
  OnSmallStack([] {
    const CLOMAdsLispVar pairs = DeepPairs();
    const CLOMAdsLispVar copy = CLOMAdsLisp::Head(-1, pairs);
    EXPECT_EQ(Levels(copy), kMany);
    EXPECT_NE(copy.New(), pairs.New());
    EXPECT_NE(Child(copy, 1), Child(pairs, 1));
  });
}

TEST_F(ListOpsDepthTest, ConstructionTakesDeepValues) {
  OnSmallStack([] {
    const CLOMAdsLispVar deep = DeepList();
    const CLOMAdsLispVar list = CLOMAdsLisp::List(deep, 0);
    const CLOMAdsLispVar longer = CLOMAdsLisp::Cons(deep, list);
    EXPECT_EQ(Child(longer, 0), deep.New());

    const CLOMAdsLispVar extended = CLOMAdsLisp::Append(list, ListOf({deep}));
    EXPECT_EQ(Levels(NodeHandle(Child(extended, 0))), kMany);
    EXPECT_NE(Child(extended, 0), deep.New());
    EXPECT_EQ(Child(extended, 2), deep.New());

    const CLOMAdsLispVar reversed = CLOMAdsLisp::Reverse(list);
    EXPECT_EQ(Levels(NodeHandle(Child(reversed, 1))), kMany);
    EXPECT_NE(Child(reversed, 1), deep.New());
  });
}

TEST_F(ListOpsDepthTest, ConsOntoASharedListLooksThroughAllLevels) {
  OnSmallStack([] {
    CLOMAdsLispVar list = V(L"(1 2)");
    const CLOMAdsLispVar around = DeepList(list);
    CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Cons(around, list));
    EXPECT_EQ(ChildCount(list), 3U);
    EXPECT_NE(Child(list, 0), around.New());
    EXPECT_EQ(Levels(NodeHandle(Child(list, 0))), kMany + 1);
  });
}

TEST_F(ListOpsDepthTest, ReplacingTakesDeepValues) {
  OnSmallStack([] {
    const CLOMAdsLispVar deep = DeepList();
    CLOMAdsLispVar list = V(L"(1 2)");
    list.RplaCa(deep);
    EXPECT_EQ(Levels(NodeHandle(Child(list, 0))), kMany - 1);
    CLOMAdsLispVar pair = DottedOf({1, 2});
    pair.RplaCd(deep);
    EXPECT_EQ(Levels(pair), kMany + 1);
    list.RplaCa(CLOMAdsLisp::Nil);
    EXPECT_EQ(Text(list), "(2)");
  });
}

// --- Length ---

TEST_F(ListOpsDepthTest, CdrInPlaceConsumesALongList) {
  OnSmallStack([] {
    CLOMAdsLispVar list = LongList();
    int steps = 0;
    for (; !list.NilP(); ++steps) CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Cdr(list));
    EXPECT_EQ(steps, kMany);
  });
}

TEST_F(ListOpsDepthTest, ConsPushesOntoALongListThatOthersShare) {
  OnSmallStack([] {
    CLOMAdsLispVar list = ListOf({});
    const CLOMAdsLispVar other = list;
    for (long n = 0; n < kMany; ++n) CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Cons(n, list));
    EXPECT_EQ(other.Length(), static_cast<unsigned __int64>(kMany));
    EXPECT_EQ(NumberAt(other, 0), kMany - 1);
  });
}

TEST_F(ListOpsDepthTest, ConsAndCdrWorkAsAStackOnALongList) {
  OnSmallStack([] {
    CLOMAdsLispVar list = LongList();
    for (int n = 0; n < kOften; ++n) {
      CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Cons(n, list));
      CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Cdr(list));
    }
    EXPECT_EQ(list.Length(), static_cast<unsigned __int64>(kMany));
  });
}

TEST_F(ListOpsDepthTest, NConcExtendsALongListMemberByMember) {
  OnSmallStack([] {
    CLOMAdsLispVar list;
    for (long n = 0; n < kMany; ++n) CLOMAdsLisp::NConc(list, CLOMAdsLisp::List(n));
    EXPECT_EQ(list.Length(), static_cast<unsigned __int64>(kMany));
    EXPECT_EQ(NumberAt(list, 0), 0);
    EXPECT_EQ(NumberAt(list, kMany - 1), kMany - 1);
  });
}

TEST_F(ListOpsDepthTest, LongListsAreJoinedAndCopied) {
  OnSmallStack([] {
    CLOMAdsLispVar list = LongList();
    const CLOMAdsLispVar both = CLOMAdsLisp::Append(list, list);
    EXPECT_EQ(both.Length(), 2U * kMany);
    EXPECT_EQ(Child(both, kMany), Child(list, 0));
    list.NConc(list);
    EXPECT_EQ(list.Length(), 2U * kMany);
    EXPECT_EQ(CLOMAdsLisp::Head(kMany, list).Length(), 1U + kMany);
  });
}

TEST_F(ListOpsDepthTest, MembersOfALongListAreReachedDirectly) {
  OnSmallStack([] {
    const CLOMAdsLispVar list = LongList();
    const CLOMAdsLispVar last = CLOMAdsLisp::Last(list);
    for (unsigned int n = 0; n < kMany; n += kMany / kOften) {
      const long fromFront = CLOMAdsLisp::Nth(n, list).GetAtom();
      const long fromBehind = CLOMAdsLisp::Nth(n, CLOMAdsLisp::Reverse(list)).GetAtom();
      ASSERT_EQ(fromFront, kMany - 1L - n);
      ASSERT_EQ(fromBehind, static_cast<long>(n));
      ASSERT_EQ(CLOMAdsLisp::Length(list), static_cast<unsigned __int64>(kMany));
      ASSERT_EQ(CLOMAdsLisp::Last(list).New(), last.New());
    }
  });
}

TEST_F(ListOpsDepthTest, LongListsAreReversed) {
  OnSmallStack([] {
    CLOMAdsLispVar list = LongList();
    CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Reverse(list));
    EXPECT_EQ(NumberAt(list, 0), 0);
    const CLOMAdsLispVar copy = CLOMAdsLisp::Reverse(list);
    EXPECT_EQ(NumberAt(copy, 0), kMany - 1);
    EXPECT_EQ(NumberAt(copy, kMany - 1), 0);
  });
}

TEST_F(ListOpsDepthTest, TheEndsOfALongListAreReplacedDirectly) {
  OnSmallStack([] {
    CLOMAdsLispVar list = LongList();
    for (long n = 0; n < kOften; ++n) {
      const CLOMAdsLispVar value = CLOMAdsLisp::List(-n);
      list.RplaCa(value);
      list.RplaCd(value);
    }
    EXPECT_EQ(list.Length(), static_cast<unsigned __int64>(kMany));
    EXPECT_EQ(NumberAt(list, 0), 1 - kOften);
    EXPECT_EQ(NumberAt(list, 1), kMany - 2);
    EXPECT_EQ(NumberAt(list, kMany - 1), 1 - kOften);
    CLOMAdsLispVar rest = CLOMAdsLisp::Cdr(list);
    EXPECT_EQ(CLOMAdsLisp::Length(rest), kMany - 1U);
    rest.RplaCa(list);
    EXPECT_EQ(CLOMAdsLisp::Length(rest), 2U * kMany - 2U);
  });
}

// Sixty levels, but 2^60 ways down to the bottom.
TEST_F(ListOpsDepthTest, ConsLooksThroughSharedPartsOnlyOnce) {
  CLOMAdsLispVar parts = 1;
  for (int level = 0; level < 60; ++level) parts = ListOf({parts, parts});
  CLOMAdsLispVar list = V(L"(1)");
  const CLOMAdsLispVar other = list;
  CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Cons(parts, list));
  EXPECT_EQ(Child(other, 0), parts.New());
}

}  // namespace lomlisp::test::listops_depth
