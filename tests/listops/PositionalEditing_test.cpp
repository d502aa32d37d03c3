// AddNth, DeleteNth, SubstNth and Insert: lists edited at a position.
#include <tests/listops/Values.h>
#include <tests/support/SmallStack.h>

#include <limits>

namespace lomlisp::test::positional_editing {
namespace {

constexpr int kLowest = std::numeric_limits<int>::min();
constexpr int kHighest = std::numeric_limits<int>::max();

const std::string kAddNoList = "CLOMAdsLisp::AddNth :  Keine Liste !\n";
const std::string kAddBehindEnd = "CLOMAdsLisp::AddNth : Liste hat zuwenig Elemente !\n";
const std::string kDeleteNoList = "CLOMAdsLisp::DeleteNth :  Keine Liste !\n";
const std::string kDeleteBehindEnd = "CLOMAdsLisp::DeleteNth : Liste hat zuwenig Elemente !\n";
const std::string kSubstNoList = "CLOMAdsLisp::SubstNth :  Keine Liste !\n";
const std::string kSubstBehindEnd = "CLOMAdsLisp::SubstNth : Liste hat zuwenig Elemente !\n";

std::vector<CLOMAdsLispVar> ImproperValues() {
  return {V(L"7"),
          V(L"2.5"),
          V(L"\"text\""),
          DottedOf({1, 2}),
          DottedOf({1}),
          DottedOf({1, 2, 3}),
          DottedOf({}),
          DottedOf({1, CLOMAdsLisp::nil()}),
          DottedOf({1, NilAtom()})};
}

// (1 2 3) as a pair of 1 and (2 3).
CLOMAdsLispVar PairWithList() { return DottedOf({1, V(L"(2 3)")}); }

// Everything of which a list may consist: null, an RTNIL atom, lists, dotted lists, text.
CLOMAdsLispVar Mixed() {
  return ListOf({CLOMAdsLisp::nil(), NilAtom(), ListOf({}), V(L"(1 (2.5))"), DottedOf({1, 2}),
                 DottedOf({1, 2, 3}), L"text"});
}
const std::string kMixedMembers = "nil nil () (1 (2.500000)) (1 . 2) (1 . 2 3) \"text\"";

std::vector<Element> MembersOf(const CLOMAdsLispVar& list) {
  const Element node = list.New();
  if (node == nullptr) return {};
  return {node->children.begin(), node->children.end()};
}

CLOMAdsLispVar DeepList() {
  CLOMAdsLispVar core = 1;
  for (int level = 0; level < kLarge; ++level) core.List();
  return core;
}
int Levels(Element node) {
  int levels = 0;
  for (; node != nullptr && !node->children.empty(); ++levels) {
    const Element first = node->children.front();
    node = first;
  }
  return levels;
}

// 0, 1, ... in a list of kLarge RTLONGs.
CLOMAdsLispVar LongList() {
  CLOMAdsLispVar list = ListOf({});
  for (long n = 0; n < kLarge; ++n) list.New()->children.push_back(CLOMAdsLispVar(n).New());
  return list;
}
long NumberAt(const CLOMAdsLispVar& list, int position) {
  return Child(list, static_cast<size_t>(position))->atom;
}

struct Expectation {
  int n;
  const char* result;
  bool refused = false;
};

class PositionalEditing : public HostTest {
 protected:
  // Each position for a list, which must stay as it is. A refusal gives nil and the message.
  template <class Edit>
  void Check(const CLOMAdsLispVar& list, std::initializer_list<Expectation> expectations, Edit edit,
             const std::string& refusal) {
    const std::string before = Text(list);
    const std::vector<Element> members = MembersOf(list);
    for (const Expectation& expected : expectations) {
      SCOPED_TRACE(before + " at " + std::to_string(expected.n));
      const CLOMAdsLispVar result = edit(expected.n, list);
      EXPECT_EQ(Text(result), expected.result);
      EXPECT_EQ(Printed(), expected.refused ? refusal : "");
      if (expected.result == std::string("nil"))
        EXPECT_TRUE(IsEmptyHandle(result));
      else
        EXPECT_EQ(result.New()->Kind(), CLOMLispElement::List);
    }
    EXPECT_EQ(Text(list), before);
    EXPECT_EQ(MembersOf(list), members);
  }

  void CheckAdd(const CLOMAdsLispVar& list, std::initializer_list<Expectation> expectations) {
    Check(
        list, expectations, [](int n, const CLOMAdsLispVar& of) { return CLOMAdsLisp::AddNth(n, 9, of); },
        kAddBehindEnd);
  }
  // Both forms.
  void CheckDelete(const CLOMAdsLispVar& list, std::initializer_list<Expectation> expectations) {
    Check(
        list, expectations, [](int n, const CLOMAdsLispVar& of) { return CLOMAdsLisp::DeleteNth(n, of); },
        kDeleteBehindEnd);
    Check(
        list, expectations, [](int n, const CLOMAdsLispVar& of) { return CLOMAdsLisp::DeleteNth(n, 9, of); },
        kDeleteBehindEnd);
  }
  void CheckSubst(const CLOMAdsLispVar& list, std::initializer_list<Expectation> expectations) {
    Check(
        list, expectations, [](int n, const CLOMAdsLispVar& of) { return CLOMAdsLisp::SubstNth(n, 9, of); },
        kSubstBehindEnd);
  }
};

// --- AddNth ---

TEST_F(PositionalEditing, AddNthPutsTheValueInFrontOfTheMember) {
  CheckAdd(V(L"(1 2 3)"), {{0, "(9 1 2 3)"}, {1, "(1 9 2 3)"}, {2, "(1 2 9 3)"}, {3, "(1 2 3 9)"}});
  CheckAdd(V(L"(1)"), {{0, "(9 1)"}, {1, "(1 9)"}});
}

TEST_F(PositionalEditing, AddNthRefusesAPositionBehindTheEnd) {
  CheckAdd(V(L"(1 2 3)"), {{4, "nil", true}, {5, "nil", true}, {kHighest, "nil", true}});
}

TEST_F(PositionalEditing, AddNthPutsTheValueInFrontForANegativePosition) {
  CheckAdd(V(L"(1 2 3)"), {{-1, "(9 1 2 3)"}, {-2, "(9 1 2 3)"}, {kLowest, "(9 1 2 3)"}});
}

TEST_F(PositionalEditing, AddNthToNothingGivesAListOfOne) {
  for (const CLOMAdsLispVar& list : {CLOMAdsLispVar(), NilAtom(), ListOf({})})
    CheckAdd(list, {{0, "(9)"}, {-1, "(9)"}, {kLowest, "(9)"}, {1, "nil", true}});
}

TEST_F(PositionalEditing, AddNthTakesAPairWithAListAsOneList) {
  CheckAdd(PairWithList(), {{-1, "(9 1 2 3)"},
                            {0, "(9 1 2 3)"},
                            {1, "(1 9 2 3)"},
                            {2, "(1 2 9 3)"},
                            {3, "(1 2 3 9)"},
                            {4, "nil", true}});
  CheckAdd(DottedOf({1, ListOf({})}), {{0, "(9 1)"}, {1, "(1 9)"}, {2, "nil", true}});
}

TEST_F(PositionalEditing, AddNthSharesTheValueAndCopiesTheMembers) {
  const CLOMAdsLispVar list = V(L"((1 \"a\") 2 (3 . 4))");
  for (const CLOMAdsLispVar& value : {V(L"9"), V(L"(8 9)"), ListOf({}), DottedOf({8, 9}), NilAtom()}) {
    for (int n = -1; n <= 3; ++n) {
      const CLOMAdsLispVar result = CLOMAdsLisp::AddNth(n, value, list);
      EXPECT_EQ(ChildCount(result), 4U);
      EXPECT_EQ(Child(result, static_cast<size_t>(std::max(n, 0))), value.New());
      EXPECT_FALSE(ShareNodes(result, list));
    }
  }
  EXPECT_EQ(Text(list), "((1 \"a\") 2 (3 . 4))");
}

TEST_F(PositionalEditing, AddNthTakesNilAsAMemberWithoutANode) {
  const CLOMAdsLispVar result = CLOMAdsLisp::AddNth(1, CLOMAdsLisp::Nil, V(L"(1 2)"));
  EXPECT_EQ(Text(result), "(1 nil 2)");
  EXPECT_EQ(Child(result, 1), nullptr);
}

TEST_F(PositionalEditing, AddNthCopiesEveryKindOfMember) {
  const CLOMAdsLispVar list = Mixed();
  const CLOMAdsLispVar result = CLOMAdsLisp::AddNth(7, 9, list);
  EXPECT_EQ(Text(result), "(" + kMixedMembers + " 9)");
  EXPECT_EQ(Child(result, 0), nullptr);
  ASSERT_NE(Child(result, 1), nullptr);
  EXPECT_EQ(Child(result, 1)->atom.Type(), RTNIL);
  EXPECT_FALSE(ShareNodes(result, list));
  EXPECT_EQ(Printed(), "");
}

TEST_F(PositionalEditing, AddNthCopiesTextsUnderDxfCodes) {
  CLOMAdsLispVar layer = L"wall";
  ASSERT_TRUE(layer.GetAtom().MakeDXF(8));
  const CLOMAdsLispVar result = CLOMAdsLisp::AddNth(1, 9, ListOf({layer}));
  layer.Clean();
  EXPECT_EQ(Text(result), "(\"wall\" 9)");
  EXPECT_EQ(Child(result, 0)->atom.Type(), 8);
}

TEST_F(PositionalEditing, AddNthRefusesWhatIsNoListWhateverThePosition) {
  for (const CLOMAdsLispVar& value : ImproperValues()) {
    for (const int n : {-1, 0, 100}) {
      EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::AddNth(n, 9, value)));
      EXPECT_EQ(Printed(), kAddNoList);
    }
  }
}

TEST_F(PositionalEditing, AddNthOfTheListToItselfBuildsNoCycle) {
  NodeWatch watch;
  {
    const CLOMAdsLispVar list = V(L"((1) 2)");
    const CLOMAdsLispVar result = CLOMAdsLisp::AddNth(1, list, list);
    EXPECT_EQ(Text(result), "((1) ((1) 2) 2)");
    EXPECT_EQ(Child(result, 1), list.New());
    EXPECT_EQ(Text(list), "((1) 2)");
    watch.Note(result);
    watch.Note(list);
  }
  EXPECT_EQ(watch.Alive(), 0U);
}

TEST_F(PositionalEditing, AddNthOfAMemberSharesOnlyTheNewOne) {
  const CLOMAdsLispVar list = V(L"((1) 2)");
  const CLOMAdsLispVar result = CLOMAdsLisp::AddNth(2, CLOMAdsLisp::Car(list), list);
  EXPECT_EQ(Text(result), "((1) 2 (1))");
  EXPECT_NE(Child(result, 0), Child(list, 0));
  EXPECT_EQ(Child(result, 2), Child(list, 0));
}

TEST_F(PositionalEditing, AddNthIntoTheVariableItself) {
  CLOMAdsLispVar list = V(L"(1 2)");
  const CLOMAdsLispVar other = list;
  list = CLOMAdsLisp::AddNth(1, list, list);
  EXPECT_EQ(Text(list), "(1 (1 2) 2)");
  EXPECT_EQ(Text(other), "(1 2)");
}

// --- DeleteNth ---

TEST_F(PositionalEditing, DeleteNthTakesTheMemberOut) {
  CheckDelete(V(L"(1 2 3)"), {{0, "(2 3)"}, {1, "(1 3)"}, {2, "(1 2)"}});
}

TEST_F(PositionalEditing, DeleteNthRefusesAPositionFromTheEndOn) {
  CheckDelete(V(L"(1 2 3)"), {{3, "nil", true}, {4, "nil", true}, {kHighest, "nil", true}});
  CheckDelete(V(L"(1)"), {{1, "nil", true}});
}

TEST_F(PositionalEditing, DeleteNthTakesNothingOutForANegativePosition) {
  CheckDelete(V(L"(1 2 3)"), {{-1, "(1 2 3)"}, {-2, "(1 2 3)"}, {kLowest, "(1 2 3)"}});
}

TEST_F(PositionalEditing, DeleteNthOfTheOnlyMemberGivesNil) {
  CheckDelete(V(L"(1)"), {{0, "nil"}, {-1, "(1)"}});
  CheckDelete(ListOf({CLOMAdsLisp::nil()}), {{0, "nil"}, {-1, "(nil)"}});
}

TEST_F(PositionalEditing, DeleteNthFromNothingHasNoPositionButNegativeOnes) {
  for (const CLOMAdsLispVar& list : {CLOMAdsLispVar(), NilAtom(), ListOf({})})
    CheckDelete(list, {{0, "nil", true}, {1, "nil", true}, {-1, "nil"}, {-2, "nil"}, {kLowest, "nil"}});
}

TEST_F(PositionalEditing, DeleteNthTakesAPairWithAListAsOneList) {
  CheckDelete(PairWithList(), {{-1, "(1 2 3)"}, {0, "(2 3)"}, {1, "(1 3)"}, {2, "(1 2)"}, {3, "nil", true}});
  CheckDelete(DottedOf({1, ListOf({})}), {{0, "nil"}, {1, "nil", true}});
}

TEST_F(PositionalEditing, DeleteNthCopiesTheMembers) {
  const CLOMAdsLispVar list = Mixed();
  for (int n = -1; n < 7; ++n) {
    const CLOMAdsLispVar result = CLOMAdsLisp::DeleteNth(n, list);
    EXPECT_EQ(ChildCount(result), n < 0 ? 7U : 6U);
    EXPECT_FALSE(ShareNodes(result, list));
  }
  EXPECT_EQ(Text(CLOMAdsLisp::DeleteNth(-1, list)), "(" + kMixedMembers + ")");
  EXPECT_EQ(Text(CLOMAdsLisp::DeleteNth(0, list)), "(" + kMixedMembers.substr(4) + ")");
  EXPECT_EQ(Text(list), "(" + kMixedMembers + ")");
}

TEST_F(PositionalEditing, DeleteNthIgnoresItsMiddleArgument) {
  const CLOMAdsLispVar list = V(L"(1 (2) 3)");
  for (const CLOMAdsLispVar& ignored :
       {CLOMAdsLispVar(), NilAtom(), V(L"3"), ListOf({}), DottedOf({1, 2}), list}) {
    const CLOMAdsLispVar result = CLOMAdsLisp::DeleteNth(1, ignored, list);
    EXPECT_EQ(Text(result), "(1 3)");
    EXPECT_FALSE(ShareNodes(result, list));
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(PositionalEditing, DeleteNthRefusesWhatIsNoListWhateverThePosition) {
  for (const CLOMAdsLispVar& value : ImproperValues()) {
    for (const int n : {-1, 0, 100}) {
      EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::DeleteNth(n, value)));
      EXPECT_EQ(Printed(), kDeleteNoList);
      EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::DeleteNth(n, V(L"(1 2)"), value)));
      EXPECT_EQ(Printed(), kDeleteNoList);
    }
  }
}

// --- SubstNth ---

TEST_F(PositionalEditing, SubstNthReplacesTheMember) {
  CheckSubst(V(L"(1 2 3)"), {{0, "(9 2 3)"}, {1, "(1 9 3)"}, {2, "(1 2 9)"}});
  CheckSubst(V(L"(1)"), {{0, "(9)"}});
}

TEST_F(PositionalEditing, SubstNthRefusesAPositionFromTheEndOn) {
  CheckSubst(V(L"(1 2 3)"), {{3, "nil", true}, {4, "nil", true}, {kHighest, "nil", true}});
}

TEST_F(PositionalEditing, SubstNthPutsTheValueInFrontForANegativePosition) {
  CheckSubst(V(L"(1 2 3)"), {{-1, "(9 1 2 3)"}, {-2, "(9 1 2 3)"}, {kLowest, "(9 1 2 3)"}});
}

TEST_F(PositionalEditing, SubstNthInNothingHasNoPositionButNegativeOnes) {
  for (const CLOMAdsLispVar& list : {CLOMAdsLispVar(), NilAtom(), ListOf({})})
    CheckSubst(list, {{0, "nil", true}, {1, "nil", true}, {-1, "(9)"}, {-2, "(9)"}, {kLowest, "(9)"}});
}

TEST_F(PositionalEditing, SubstNthTakesAPairWithAListAsOneList) {
  CheckSubst(PairWithList(),
             {{-1, "(9 1 2 3)"}, {0, "(9 2 3)"}, {1, "(1 9 3)"}, {2, "(1 2 9)"}, {3, "nil", true}});
  CheckSubst(DottedOf({1, ListOf({})}), {{-1, "(9 1)"}, {0, "(9)"}, {1, "nil", true}});
}

TEST_F(PositionalEditing, SubstNthSharesTheValueAndCopiesTheMembers) {
  const CLOMAdsLispVar list = V(L"((1 \"a\") 2 (3 . 4))");
  for (const CLOMAdsLispVar& value : {V(L"9"), V(L"(8 9)"), ListOf({}), DottedOf({8, 9}), NilAtom()}) {
    for (size_t n = 0; n < 3; ++n) {
      const CLOMAdsLispVar result = CLOMAdsLisp::SubstNth(static_cast<int>(n), value, list);
      EXPECT_EQ(ChildCount(result), 3U);
      EXPECT_EQ(Child(result, n), value.New());
      EXPECT_FALSE(ShareNodes(result, list));
    }
  }
  EXPECT_EQ(Text(list), "((1 \"a\") 2 (3 . 4))");
}

TEST_F(PositionalEditing, SubstNthTakesNilAsAMemberWithoutANode) {
  const CLOMAdsLispVar result = CLOMAdsLisp::SubstNth(0, CLOMAdsLisp::Nil, V(L"(1)"));
  EXPECT_EQ(Text(result), "(nil)");
  EXPECT_EQ(Child(result, 0), nullptr);
}

TEST_F(PositionalEditing, SubstNthRefusesWhatIsNoListWhateverThePosition) {
  for (const CLOMAdsLispVar& value : ImproperValues()) {
    for (const int n : {-1, 0, 100}) {
      EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::SubstNth(n, 9, value)));
      EXPECT_EQ(Printed(), kSubstNoList);
    }
  }
}

TEST_F(PositionalEditing, SubstNthByTheListItselfBuildsNoCycle) {
  NodeWatch watch;
  {
    const CLOMAdsLispVar list = V(L"(1 2)");
    const CLOMAdsLispVar result = CLOMAdsLisp::SubstNth(0, list, list);
    EXPECT_EQ(Text(result), "((1 2) 2)");
    EXPECT_EQ(Child(result, 0), list.New());
    EXPECT_EQ(Text(list), "(1 2)");
    watch.Note(result);
  }
  EXPECT_EQ(watch.Alive(), 0U);
}

// --- Insert ---

TEST_F(PositionalEditing, InsertSplicesTheMembersIn) {
  const struct {
    int n;
    const char* result;
  } cases[] = {{kLowest, "(8 9 1 2 3)"}, {-1, "(8 9 1 2 3)"}, {0, "(8 9 1 2 3)"}, {1, "(1 8 9 2 3)"},
               {2, "(1 2 8 9 3)"},       {3, "(1 2 3 8 9)"},  {4, "(1 2 3 8 9)"}, {kHighest, "(1 2 3 8 9)"}};
  for (const auto& [n, result] : cases) {
    EXPECT_EQ(Text(CLOMAdsLisp::Insert(V(L"(1 2 3)"), V(L"(8 9)"), n)), result) << n;
    EXPECT_EQ(Text(CLOMAdsLisp::Insert(PairWithList(), V(L"(8 9)"), n)), result) << n;
    EXPECT_EQ(Text(CLOMAdsLisp::Insert(V(L"(1 2 3)"), DottedOf({8, V(L"(9)")}), n)), result) << n;
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(PositionalEditing, InsertGivesAProperList) {
  for (const int n : {0, 1, 2, 5}) {
    EXPECT_FALSE(IsDotted(CLOMAdsLisp::Insert(PairWithList(), V(L"(9)"), n)));
    EXPECT_FALSE(IsDotted(CLOMAdsLisp::Insert(V(L"(9)"), PairWithList(), n)));
  }
}

TEST_F(PositionalEditing, InsertSharesTheMembersOfBothLists) {
  const CLOMAdsLispVar list = Mixed();
  const CLOMAdsLispVar more = V(L"((8) 9)");
  const std::vector<Element> members = MembersOf(list);
  const std::vector<Element> moreMembers = MembersOf(more);
  for (int n = -1; n <= 9; ++n) {
    const CLOMAdsLispVar result = CLOMAdsLisp::Insert(list, more, n);
    std::vector<Element> expected = members;
    expected.insert(expected.begin() + std::clamp(n, 0, 7), moreMembers.begin(), moreMembers.end());
    EXPECT_EQ(MembersOf(result), expected) << n;
    EXPECT_NE(result.New(), list.New());
    EXPECT_NE(result.New(), more.New());
  }
  EXPECT_EQ(MembersOf(list), members);
  EXPECT_EQ(MembersOf(more), moreMembers);
  EXPECT_EQ(Printed(), "");
}

TEST_F(PositionalEditing, InsertCountsAnEmptyListAsNoMembers) {
  for (const CLOMAdsLispVar& nothing : {CLOMAdsLispVar(), NilAtom(), ListOf({})}) {
    for (const int n : {-1, 0, 1, 2, 3}) {
      EXPECT_EQ(Text(CLOMAdsLisp::Insert(V(L"(1 2)"), nothing, n)), "(1 2)");
      EXPECT_EQ(Text(CLOMAdsLisp::Insert(nothing, V(L"(1 2)"), n)), "(1 2)");
      for (const CLOMAdsLispVar& other : {CLOMAdsLispVar(), NilAtom(), ListOf({})})
        EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Insert(nothing, other, n)));
    }
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(PositionalEditing, InsertOfNothingStillSharesTheMembers) {
  const CLOMAdsLispVar list = V(L"((1) 2)");
  for (const int n : {0, 1, 2}) {
    EXPECT_EQ(MembersOf(CLOMAdsLisp::Insert(list, CLOMAdsLisp::Nil, n)), MembersOf(list));
    EXPECT_EQ(MembersOf(CLOMAdsLisp::Insert(CLOMAdsLisp::Nil, list, n)), MembersOf(list));
  }
}

TEST_F(PositionalEditing, InsertRefusesWhatIsNoListSilently) {
  const CLOMAdsLispVar list = V(L"(1 2)");
  for (const CLOMAdsLispVar& value : ImproperValues()) {
    for (const int n : {-1, 0, 1, 5}) {
      EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Insert(list, value, n)));
      EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Insert(value, list, n)));
      EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Insert(CLOMAdsLisp::Nil, value, n)));
      EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Insert(value, CLOMAdsLisp::Nil, n)));
      EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Insert(value, value, n)));
    }
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(PositionalEditing, InsertOfAListIntoItselfTakesItsMembersTwice) {
  const CLOMAdsLispVar list = V(L"((1) 2)");
  const struct {
    int n;
    const char* result;
  } cases[] = {{0, "((1) 2 (1) 2)"}, {1, "((1) (1) 2 2)"}, {2, "((1) 2 (1) 2)"}};
  for (const auto& [n, result] : cases) EXPECT_EQ(Text(CLOMAdsLisp::Insert(list, list, n)), result);
  EXPECT_EQ(Text(list), "((1) 2)");
}

TEST_F(PositionalEditing, InsertOfAListsOwnMemberBuildsNoCycle) {
  NodeWatch watch;
  {
    const CLOMAdsLispVar inner = V(L"(1 2)");
    const CLOMAdsLispVar outer = ListOf({inner, 3});
    const CLOMAdsLispVar result = CLOMAdsLisp::Insert(outer, inner, 1);
    const CLOMAdsLispVar around = CLOMAdsLisp::Insert(inner, outer, 1);
    EXPECT_EQ(Text(result), "((1 2) 1 2 3)");
    EXPECT_EQ(Text(around), "(1 (1 2) 3 2)");
    watch.Note(result);
    watch.Note(around);
  }
  EXPECT_EQ(watch.Alive(), 0U);
}

// --- Memory and size ---

TEST_F(PositionalEditing, TextsForWhichMemoryRunsOutAreLeftOut) {
  const CLOMAdsLispVar list = V(L"(\"a\" (\"b\" 1) \"c\")");
  for (uint64_t failing = 1; failing <= 3; ++failing) {
    host.ledger.FailAllocation(failing);
    const CLOMAdsLispVar added = CLOMAdsLisp::AddNth(3, 9, list);
    host.ledger.FailAllocation(failing);
    const CLOMAdsLispVar deleted = CLOMAdsLisp::DeleteNth(-1, list);
    host.ledger.FailAllocation(failing);
    const CLOMAdsLispVar replaced = CLOMAdsLisp::SubstNth(-1, 9, list);
    host.ledger.FailAllocation(0);
    EXPECT_EQ(ChildCount(added), 4U);
    EXPECT_NE(Text(added), "(\"a\" (\"b\" 1) \"c\" 9)");
    EXPECT_EQ(ChildCount(deleted), 3U);
    EXPECT_NE(Text(deleted), "(\"a\" (\"b\" 1) \"c\")");
    EXPECT_EQ(ChildCount(replaced), 4U);
    EXPECT_NE(Text(replaced), "(9 \"a\" (\"b\" 1) \"c\")");
  }
  EXPECT_EQ(Text(list), "(\"a\" (\"b\" 1) \"c\")");
}

TEST_F(PositionalEditing, DeepMembersNeedNoStack) {
  OnSmallStack([] {
    const CLOMAdsLispVar list = ListOf({DeepList(), 2});
    EXPECT_EQ(Levels(Child(CLOMAdsLisp::AddNth(1, list, list), 0)), kLarge);
    EXPECT_EQ(Levels(Child(CLOMAdsLisp::DeleteNth(1, list), 0)), kLarge);
    EXPECT_EQ(Levels(Child(CLOMAdsLisp::SubstNth(1, list, list), 1)), kLarge + 1);
    EXPECT_EQ(Levels(Child(CLOMAdsLisp::Insert(list, list, 1), 1)), kLarge);
  });
}

TEST_F(PositionalEditing, LongListsAreEditedInLinearTime) {
  OnSmallStack([] {
    constexpr int kMiddle = kLarge / 2;
    const CLOMAdsLispVar list = LongList();
    const CLOMAdsLispVar added = CLOMAdsLisp::AddNth(kMiddle, -1L, list);
    EXPECT_EQ(ChildCount(added), size_t{kLarge} + 1);
    EXPECT_EQ(NumberAt(added, kMiddle - 1), kMiddle - 1);
    EXPECT_EQ(NumberAt(added, kMiddle), -1);
    EXPECT_EQ(NumberAt(added, kLarge), kLarge - 1);
    const CLOMAdsLispVar deleted = CLOMAdsLisp::DeleteNth(kMiddle, list);
    EXPECT_EQ(ChildCount(deleted), size_t{kLarge} - 1);
    EXPECT_EQ(NumberAt(deleted, kMiddle), kMiddle + 1);
    const CLOMAdsLispVar replaced = CLOMAdsLisp::SubstNth(kMiddle, -1L, list);
    EXPECT_EQ(ChildCount(replaced), size_t{kLarge});
    EXPECT_EQ(NumberAt(replaced, kMiddle), -1);
    const CLOMAdsLispVar inserted = CLOMAdsLisp::Insert(list, list, kMiddle);
    EXPECT_EQ(ChildCount(inserted), 2 * size_t{kLarge});
    EXPECT_EQ(Child(inserted, kMiddle), Child(list, 0));
    EXPECT_EQ(Child(inserted, kMiddle + kLarge), Child(list, kMiddle));
  });
}

}  // namespace
}  // namespace lomlisp::test::positional_editing
