// Cons: one more member in front, its proxy, taking a node over, and no reference cycles.
#include <tests/listops/Values.h>

#include <functional>
#include <string>
#include <utility>

namespace lomlisp::test::cons {

using ConsTest = HostTest;
using ConsTakeOverTest = HostTest;
using ConsAssignmentTest = HostTest;

namespace {

// The three ways to put a value in front of another one.
using ConsForm = CLOMAdsLispVar (*)(const CLOMAdsLispVar&, const CLOMAdsLispVar&);

CLOMAdsLispVar ByProxy(const CLOMAdsLispVar& first, const CLOMAdsLispVar& second) {
  return CLOMAdsLisp::Cons(first, second);
}
CLOMAdsLispVar ByMember(const CLOMAdsLispVar& first, const CLOMAdsLispVar& second) {
  CLOMAdsLispVar value = first;
  EXPECT_EQ(&value.Cons(second), &value);
  return value;
}
CLOMAdsLispVar ByTakeOver(const CLOMAdsLispVar& first, const CLOMAdsLispVar& second) {
  CLOMAdsLispVar value = first;
  CLOMAdsLispVar taken = second;
  EXPECT_EQ(&value.Cons(std::move(taken)), &value);
  return value;
}

std::string FormName(const ::testing::TestParamInfo<ConsForm>& info) {
  if (info.param == ByProxy) return "Proxy";
  return info.param == ByMember ? "Member" : "TakeOver";
}

}  // namespace

class ConsFormTest : public HostTest, public ::testing::WithParamInterface<ConsForm> {
 protected:
  static CLOMAdsLispVar Cons(const CLOMAdsLispVar& first, const CLOMAdsLispVar& second) {
    return GetParam()(first, second);
  }
};
INSTANTIATE_TEST_SUITE_P(Forms, ConsFormTest, ::testing::Values(ByProxy, ByMember, ByTakeOver), FormName);

TEST_P(ConsFormTest, InFrontOfNilMakesAListOfOne) {
  const CLOMAdsLispVar first = V(L"1");
  const CLOMAdsLispVar list = Cons(first, CLOMAdsLisp::Nil);
  EXPECT_EQ(Text(list), "(1)");
  EXPECT_FALSE(IsDotted(list));
  EXPECT_EQ(Child(list, 0), first.New());
  EXPECT_EQ(Printed(), "");
}

TEST_P(ConsFormTest, InFrontOfAListSharesAllMembers) {
  const CLOMAdsLispVar first = V(L"(1)");
  const CLOMAdsLispVar second = V(L"((2) 3)");
  const Element members[] = {first.New(), Child(second, 0), Child(second, 1)};
  const CLOMAdsLispVar list = Cons(first, second);
  EXPECT_EQ(Text(list), "((1) (2) 3)");
  for (size_t n = 0; n < 3; ++n) EXPECT_EQ(Child(list, n), members[n]);
  EXPECT_EQ(Text(first), "(1)");
  EXPECT_EQ(Printed(), "");
}

TEST_P(ConsFormTest, InFrontOfAnEmptyListMakesAListOfOne) {
  EXPECT_EQ(Text(Cons(V(L"1"), ListOf({}))), "(1)");
  EXPECT_EQ(Printed(), "");
}

TEST_P(ConsFormTest, InFrontOfAnAtomMakesADottedPair) {
  const CLOMAdsLispVar first = V(L"(1)");
  const CLOMAdsLispVar second = V(L"\"b\"");
  const CLOMAdsLispVar pair = Cons(first, second);
  EXPECT_EQ(Text(pair), "((1) . \"b\")");
  EXPECT_TRUE(IsDotted(pair));
  EXPECT_EQ(Child(pair, 0), first.New());
  EXPECT_EQ(Child(pair, 1), second.New());
  EXPECT_EQ(Printed(), "");
}

TEST_P(ConsFormTest, InFrontOfANilAtomMakesADottedPair) {
  const CLOMAdsLispVar second = NilAtom();
  const CLOMAdsLispVar pair = Cons(V(L"1"), second);
  EXPECT_TRUE(IsDotted(pair));
  EXPECT_EQ(Child(pair, 1), second.New());
  EXPECT_EQ(Text(pair), "(1 . nil)");
}

TEST_P(ConsFormTest, InFrontOfADottedListMakesAListOfTwo) {
  for (const CLOMAdsLispVar& second : {DottedOf({2, 3}), DottedOf({2, 3, 4})}) {
    const std::string text = Text(second);
    const CLOMAdsLispVar list = Cons(V(L"1"), second);
    EXPECT_EQ(Text(list), "(1 " + text + ")");
    EXPECT_FALSE(IsDotted(list));
    EXPECT_EQ(Child(list, 1), second.New());
    EXPECT_EQ(Text(second), text);
  }
  EXPECT_EQ(Printed(), "");
}

TEST_P(ConsFormTest, TakesNilAsTheFirstMember) {
  EXPECT_EQ(Text(Cons(CLOMAdsLisp::Nil, V(L"(2)"))), "(nil 2)");
  EXPECT_EQ(Text(Cons(CLOMAdsLisp::Nil, CLOMAdsLisp::Nil)), "(nil)");
  EXPECT_EQ(Text(Cons(CLOMAdsLisp::Nil, V(L"2"))), "(nil . 2)");
  EXPECT_EQ(Child(Cons(CLOMAdsLisp::Nil, V(L"(2)")), 0), nullptr);
}

TEST_P(ConsFormTest, KeepsNullMembersOfTheSecond) {
  EXPECT_EQ(Text(Cons(V(L"1"), ListOf({CLOMAdsLisp::nil(), 3}))), "(1 nil 3)");
}

TEST_P(ConsFormTest, OfAnAtomWithItselfIsAPair) {
  const CLOMAdsLispVar atom = V(L"1");
  const CLOMAdsLispVar pair = Cons(atom, atom);
  EXPECT_EQ(Text(pair), "(1 . 1)");
  EXPECT_EQ(Child(pair, 0), Child(pair, 1));
}

TEST_P(ConsFormTest, LeavesNothingBehind) {
  NodeWatch watch;
  for (const wchar_t* second : {L"nil", L"()", L"2", L"(2 (3))", L"(2 . 3)"}) {
    const CLOMAdsLispVar list = Cons(V(L"(1)"), V(second));
    watch.Note(list);
  }
  EXPECT_EQ(watch.Alive(), 0U);
}

// --- The proxy, and the copying forms ---

TEST_F(ConsTest, StaticOnlyRefersToItsArguments) {
  const CLOMAdsLispVar first = V(L"1");
  const CLOMAdsLispVar second = V(L"(2)");
  const CLOMConsProxy pair = CLOMAdsLisp::Cons(first, second);
  EXPECT_EQ(&pair.GetFirst(), &first);
  EXPECT_EQ(&pair.GetSecond(), &second);
  EXPECT_EQ(first.New().use_count(), 2);
  EXPECT_EQ(Text(second), "(2)");
}

TEST_F(ConsTest, CopyingLeavesAnUnsharedListAlone) {
  const CLOMAdsLispVar second = V(L"(2 3)");
  const CLOMAdsLispVar byProxy = ByProxy(V(L"1"), second);
  const CLOMAdsLispVar byMember = ByMember(V(L"1"), second);
  EXPECT_NE(byProxy.New(), second.New());
  EXPECT_NE(byMember.New(), second.New());
  EXPECT_EQ(Text(second), "(2 3)");
}

TEST_F(ConsTest, CopyingPutsAListInFrontOfItsOwnMembers) {
  CLOMAdsLispVar list = V(L"(1 2)");
  const CLOMAdsLispVar old = list;
  list.Cons(list);
  EXPECT_EQ(Text(list), "((1 2) 1 2)");
  EXPECT_EQ(Child(list, 0), old.New());
  EXPECT_EQ(Text(old), "(1 2)");
}

// --- Taking a node over ---

TEST_F(ConsTakeOverTest, PushesOntoTheNodeItself) {
  CLOMAdsLispVar first = V(L"1");
  CLOMAdsLispVar second = V(L"(2 3)");
  const CLOMLispElement* node = second.New().get();
  first.Cons(std::move(second));
  EXPECT_EQ(first.New().get(), node);
  EXPECT_EQ(Text(first), "(1 2 3)");
}

TEST_F(ConsTakeOverTest, IsSeenByEverybodyWhoSharesTheNode) {
  CLOMAdsLispVar first = V(L"1");
  CLOMAdsLispVar second = V(L"(2 3)");
  const CLOMAdsLispVar other = second;
  const CLOMAdsLispVar parent = ListOf({second});
  first.Cons(std::move(second));
  EXPECT_EQ(first.New(), other.New());
  EXPECT_EQ(Text(other), "(1 2 3)");
  EXPECT_EQ(Text(parent), "((1 2 3))");
}

TEST_F(ConsTakeOverTest, PushesOntoAnEmptyListItself) {
  CLOMAdsLispVar first = V(L"1");
  CLOMAdsLispVar second = ListOf({});
  const CLOMAdsLispVar other = second;
  first.Cons(std::move(second));
  EXPECT_EQ(first.New(), other.New());
  EXPECT_EQ(Text(other), "(1)");
}

TEST_F(ConsTakeOverTest, LeavesADottedListAlone) {
  CLOMAdsLispVar first = V(L"1");
  CLOMAdsLispVar second = DottedOf({2, 3});
  const CLOMAdsLispVar other = second;
  first.Cons(std::move(second));
  EXPECT_EQ(Text(first), "(1 (2 . 3))");
  EXPECT_EQ(Text(other), "(2 . 3)");
}

TEST_F(ConsTakeOverTest, OfAListOntoItselfPushesACopy) {
  NodeWatch watch;
  {
    CLOMAdsLispVar first = V(L"((1) 2)");
    CLOMAdsLispVar second = first;
    first.Cons(std::move(second));
    EXPECT_EQ(Text(first), "(((1) 2) (1) 2)");
    watch.Note(first);
  }
  EXPECT_EQ(watch.Alive(), 0U);
}

TEST_F(ConsTakeOverTest, OfAHandleOntoItselfPushesACopy) {
  NodeWatch watch;
  {
    CLOMAdsLispVar list = V(L"((1) 2)");
    CLOMAdsLispVar& same = list;
    list.Cons(std::move(same));
    ASSERT_NE(Child(list, 0), list.New());
    EXPECT_EQ(Text(list), "(((1) 2) (1) 2)");
    watch.Note(list);
  }
  EXPECT_EQ(watch.Alive(), 0U);
}

// --- Assignment of the proxy ---

TEST_F(ConsAssignmentTest, PushesOntoItsOwnUnsharedList) {
  CLOMAdsLispVar list = V(L"(2 3)");
  const CLOMAdsLispVar first = V(L"(1)");
  const CLOMLispElement* node = list.New().get();
  const CLOMAdsLispVar given = CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Cons(first, list));
  EXPECT_EQ(Text(list), "((1) 2 3)");
  EXPECT_EQ(list.New().get(), node);
  EXPECT_EQ(given.New(), list.New());
  EXPECT_EQ(Child(list, 0), first.New());
}

TEST_F(ConsAssignmentTest, PushesOntoItsOwnSharedListForEverybody) {
  CLOMAdsLispVar list = V(L"(2 3)");
  const CLOMAdsLispVar other = list;
  const CLOMAdsLispVar parent = ListOf({9, list});
  CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Cons(V(L"1"), list));
  EXPECT_EQ(list.New(), other.New());
  EXPECT_EQ(Text(other), "(1 2 3)");
  EXPECT_EQ(Text(parent), "(9 (1 2 3))");
}

TEST_F(ConsAssignmentTest, PushesOntoAListThatOnlyAParentShares) {
  CLOMAdsLispVar list = V(L"(2)");
  const CLOMAdsLispVar parent = ListOf({list});
  CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Cons(V(L"1"), list));
  EXPECT_EQ(Child(parent, 0), list.New());
  EXPECT_EQ(Text(parent), "((1 2))");
}

TEST_F(ConsAssignmentTest, TakesItsOwnFirstMemberOnceMore) {
  CLOMAdsLispVar list = V(L"((1) 2)");
  CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Cons(CLOMAdsLisp::Car(list), list));
  EXPECT_EQ(Text(list), "((1) (1) 2)");
  EXPECT_EQ(Child(list, 0), Child(list, 1));
}

TEST_F(ConsAssignmentTest, OntoNilAtomsAndDottedListsMakesANewNode) {
  const std::pair<CLOMAdsLispVar, std::string> cases[] = {{CLOMAdsLispVar(), "(1)"},
                                                          {V(L"2"), "(1 . 2)"},
                                                          {NilAtom(), "(1 . nil)"},
                                                          {DottedOf({2, 3}), "(1 (2 . 3))"},
                                                          {ListOf({}), "(1)"}};
  for (const auto& [second, text] : cases) {
    CLOMAdsLispVar target = second;
    CLOMAdsLisp::SetQ(target, CLOMAdsLisp::Cons(V(L"1"), target));
    EXPECT_EQ(Text(target), text);
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(ConsAssignmentTest, ToAnotherVariableLeavesTheListAlone) {
  const CLOMAdsLispVar list = V(L"(2 3)");
  CLOMAdsLispVar target = list;
  const CLOMAdsLispVar given = CLOMAdsLisp::SetQ(target, CLOMAdsLisp::Cons(V(L"1"), list));
  EXPECT_EQ(Text(target), "(1 2 3)");
  EXPECT_EQ(given.New(), target.New());
  EXPECT_EQ(Text(list), "(2 3)");
}

TEST_F(ConsAssignmentTest, ToItsFirstValueLeavesTheSecondAlone) {
  CLOMAdsLispVar first = V(L"(1)");
  const CLOMAdsLispVar list = V(L"(2)");
  const Element node = first.New();
  CLOMAdsLisp::SetQ(first, CLOMAdsLisp::Cons(first, list));
  EXPECT_EQ(Text(first), "((1) 2)");
  EXPECT_EQ(Child(first, 0), node);
  EXPECT_EQ(Text(list), "(2)");
}

TEST_F(ConsAssignmentTest, OfAListToItselfTwicePushesACopyOfIt) {
  CLOMAdsLispVar list = V(L"((1) 2)");
  const CLOMLispElement* node = list.New().get();
  const Element inner = Child(list, 0);
  CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Cons(list, list));
  EXPECT_EQ(Text(list), "(((1) 2) (1) 2)");
  EXPECT_EQ(list.New().get(), node);
  EXPECT_EQ(Child(list, 1), inner);
  EXPECT_FALSE(ShareNodes(NodeHandle(Child(list, 0)), NodeHandle(inner)));
}

TEST_F(ConsAssignmentTest, OfAHandleOnTheSameNodePushesACopyTakenBefore) {
  CLOMAdsLispVar list = V(L"(1 2)");
  const CLOMAdsLispVar first = list;
  CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Cons(first, list));
  EXPECT_EQ(Text(list), "((1 2) 1 2)");
  EXPECT_EQ(first.New(), list.New());
}

TEST_F(ConsAssignmentTest, OfAListAroundTheNodePushesACopyTakenBefore) {
  CLOMAdsLispVar list = V(L"(1 2)");
  const CLOMAdsLispVar around = ListOf({0, ListOf({list})});
  CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Cons(around, list));
  EXPECT_EQ(Text(list), "((0 ((1 2))) 1 2)");
  EXPECT_EQ(Text(around), "(0 (((0 ((1 2))) 1 2)))");
  EXPECT_NE(Child(list, 0), around.New());
}

TEST_F(ConsAssignmentTest, OfWhatDoesNotReachTheSharedNodePushesItUncopied) {
  CLOMAdsLispVar list = V(L"((1) 2)");
  const CLOMAdsLispVar other = list;
  const CLOMAdsLispVar first = ListOf({NodeHandle(Child(list, 0)), CLOMAdsLisp::nil()});
  CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Cons(first, list));
  EXPECT_EQ(Child(list, 0), first.New());
  EXPECT_EQ(Text(other), "(((1) nil) (1) 2)");
}

// Without cycles everything dies with its last handle. The first value is told to share the list's
// node, to contain it at several depths, to be a part of it, or to have nothing to do with it.
TEST_F(ConsAssignmentTest, NeverBuildsACycle) {
  using Situation = std::function<CLOMAdsLispVar(const CLOMAdsLispVar&)>;
  const Situation firsts[] = {
      [](const CLOMAdsLispVar&) { return V(L"(7)"); },
      [](const CLOMAdsLispVar& list) { return list; },
      [](const CLOMAdsLispVar& list) { return ListOf({list}); },
      [](const CLOMAdsLispVar& list) {
        return ListOf({CLOMAdsLisp::nil(), list, list});
      },
      [](const CLOMAdsLispVar& list) {
        return DottedOf({1, list});
      },
      [](const CLOMAdsLispVar& list) { return ListOf({ListOf({ListOf({list})})}); },
      [](const CLOMAdsLispVar& list) { return NodeHandle(Child(list, 0)); },
      [](const CLOMAdsLispVar& list) { return ListOf({NodeHandle(Child(list, 0))}); },
  };
  for (const Situation& situation : firsts) {
    for (const bool shared : {false, true}) {
      NodeWatch watch;
      {
        CLOMAdsLispVar list = V(L"((1) 2)");
        const CLOMAdsLispVar other = shared ? list : CLOMAdsLispVar();
        const CLOMAdsLispVar first = situation(list);
        const std::string expected = "(" + Text(first) + " (1) 2)";
        CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Cons(first, list));
        EXPECT_EQ(Text(list), expected);
        watch.Note(list);
        watch.Note(first);
        CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Cons(first, list));
        watch.Note(list);
        EXPECT_TRUE(!shared || other.New() == list.New());
      }
      EXPECT_EQ(watch.Alive(), 0U);
    }
  }
}

}  // namespace lomlisp::test::cons
