// Subst and Delete: members replaced and removed by value.
#include <tests/listops/Values.h>
#include <tests/support/SmallStack.h>

namespace lomlisp::test::subst_delete {
namespace {

// Both functions print the same text.
const std::string kNoList = "CLOMAdsLisp::Subst :  Keine Liste !\n";

std::string CannotCompare(const std::string& typeName) {
  return "Fehler bei ResBuf::operator== :Ich kann ResBufs vom Typ " + typeName + " nicht vergleichen\nName";
}

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

CLOMAdsLispVar PointAtom(double z, ADSPointType type) {
  const double point[3] = {1, 2, z};
  CLOMAdsLispVar atom = 0;
  atom.GetAtom() = ResBuf(point, type);
  return atom;
}

CLOMAdsLispVar Under(short code, CLOMAdsLispVar atom) {
  EXPECT_TRUE(atom.GetAtom().MakeDXF(code));
  return atom;
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

CLOMAdsLispVar LongList() {
  CLOMAdsLispVar list = ListOf({});
  for (long n = 0; n < kLarge; ++n) list.New()->children.push_back(CLOMAdsLispVar(n % 2).New());
  return list;
}

// What is looked for in which list, and what is left when it is replaced by 9 or deleted.
struct Search {
  CLOMAdsLispVar value;
  CLOMAdsLispVar list;
  const char* replaced;
  const char* deleted;
};

class SubstDelete : public HostTest {
 protected:
  void Check(std::initializer_list<Search> searches) {
    for (const auto& [value, list, replaced, deleted] : searches) {
      const std::string before = Text(list);
      SCOPED_TRACE(Text(value) + " in " + before);
      EXPECT_EQ(Text(CLOMAdsLisp::Subst(9, value, list)), replaced);
      EXPECT_EQ(Text(CLOMAdsLisp::Delete(value, list)), deleted);
      EXPECT_EQ(Text(list), before);
      EXPECT_EQ(Printed(), "");
    }
  }
};

// --- What both find ---

TEST_F(SubstDelete, FindsEveryMemberThatEqualsTheValue) {
  Check({{2, V(L"(1 2 3 2)"), "(1 9 3 9)", "(1 3)"},
         {1, V(L"(1 2 3)"), "(9 2 3)", "(2 3)"},
         {3, V(L"(1 2 3)"), "(1 2 9)", "(1 2)"},
         {4, V(L"(1 2 3)"), "(1 2 3)", "(1 2 3)"},
         {1, V(L"(1 1 1)"), "(9 9 9)", "()"},
         {L"b", V(L"(\"a\" \"b\" \"B\")"), "(\"a\" 9 \"B\")", "(\"a\" \"B\")"}});
}

TEST_F(SubstDelete, LooksAtTheTopLevelOnly) {
  Check({{2, V(L"(1 2 (2) 2)"), "(1 9 (2) 9)", "(1 (2))"},
         {2, V(L"((2 . 2) (1 (2)))"), "((2 . 2) (1 (2)))", "((2 . 2) (1 (2)))"}});
}

TEST_F(SubstDelete, ComparesStructures) {
  Check(
      {{V(L"(2 (3))"), V(L"(1 (2 (3)) (2 3))"), "(1 9 (2 3))", "(1 (2 3))"},
       {DottedOf({1, 2}), V(L"((1 2) (1 . 2))"), "((1 2) 9)", "((1 2))"},
       {V(L"(1 2)"), V(L"((1 2) (1 . 2))"), "(9 (1 . 2))", "((1 . 2))"},
       {ListOf({}), ListOf({1, ListOf({}), CLOMAdsLisp::nil(), NilAtom()}), "(1 9 nil nil)", "(1 nil nil)"}});
}

TEST_F(SubstDelete, ComparesNumbersOfDifferentTypesWithTheSmallestTolerance) {
  Check({{2, V(L"(2.0 2.0000000001 2.0000001)"), "(9 9 2.000000)", "(2.000000)"},
         {2.0, ListOf({2, 2L, 2LL, 2.5}), "(9 9 9 2.500000)", "(2.500000)"},
         {2, V(L"(\"2\" 2)"), "(\"2\" 9)", "(\"2\")"}});
}

TEST_F(SubstDelete, TellsTheTwoFormsOfNilApart) {
  const CLOMAdsLispVar list = ListOf({CLOMAdsLisp::nil(), 1, NilAtom()});
  Check({{CLOMAdsLispVar(), list, "(9 1 nil)", "(1 nil)"}, {NilAtom(), list, "(nil 1 9)", "(nil 1)"}});
  EXPECT_EQ(Child(CLOMAdsLisp::Delete(CLOMAdsLisp::Nil, list), 1), Child(list, 2));
  EXPECT_EQ(Child(CLOMAdsLisp::Delete(NilAtom(), list), 0), nullptr);
}

TEST_F(SubstDelete, TakesAPairWithAListAsOneList) {
  const CLOMAdsLispVar pair = PairWithList();
  Check({{1, pair, "(9 2 3)", "(2 3)"},
         {2, pair, "(1 9 3)", "(1 3)"},
         {3, pair, "(1 2 9)", "(1 2)"},
         {V(L"(2 3)"), pair, "(1 2 3)", "(1 2 3)"},
         {1, DottedOf({1, ListOf({})}), "(9)", "()"},
         {ListOf({}), DottedOf({1, ListOf({})}), "(1)", "(1)"}});
  EXPECT_FALSE(IsDotted(CLOMAdsLisp::Subst(9, 4, pair)));
  EXPECT_FALSE(IsDotted(CLOMAdsLisp::Delete(4, pair)));
}

TEST_F(SubstDelete, OfNothingIsNilSilently) {
  for (const CLOMAdsLispVar& nothing : {CLOMAdsLispVar(), NilAtom(), ListOf({})}) {
    for (const CLOMAdsLispVar& value : {CLOMAdsLispVar(), NilAtom(), ListOf({}), CLOMAdsLispVar(1)}) {
      EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Subst(9, value, nothing)));
      EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Delete(value, nothing)));
    }
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(SubstDelete, RefuseWhatIsNoListWithTheSameMessage) {
  for (const CLOMAdsLispVar& value : ImproperValues()) {
    EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Subst(9, 1, value)));
    EXPECT_EQ(Printed(), kNoList);
    EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Delete(1, value)));
    EXPECT_EQ(Printed(), kNoList);
  }
}

// --- Subst ---

TEST_F(SubstDelete, SubstSharesTheNewValueAndCopiesTheOtherMembers) {
  const CLOMAdsLispVar list = V(L"((1 \"a\") 2 (3 . 4) 2)");
  for (const CLOMAdsLispVar& value : {V(L"9"), V(L"(8 9)"), ListOf({}), DottedOf({8, 9}), NilAtom()}) {
    const CLOMAdsLispVar result = CLOMAdsLisp::Subst(value, 2, list);
    ASSERT_EQ(ChildCount(result), 4U);
    EXPECT_EQ(Child(result, 1), value.New());
    EXPECT_EQ(Child(result, 3), value.New());
    EXPECT_FALSE(ShareNodes(result, list));
    EXPECT_EQ(Text(NodeHandle(Child(result, 0))), "(1 \"a\")");
    EXPECT_EQ(Text(NodeHandle(Child(result, 2))), "(3 . 4)");
  }
}

TEST_F(SubstDelete, SubstCopiesEverythingWhenNothingIsFound) {
  const CLOMAdsLispVar list = ListOf({CLOMAdsLisp::nil(), NilAtom(), ListOf({}), V(L"(1 (\"a\"))"), 2});
  const CLOMAdsLispVar result = CLOMAdsLisp::Subst(9, 7, list);
  EXPECT_EQ(Text(result), "(nil nil () (1 (\"a\")) 2)");
  EXPECT_EQ(Child(result, 0), nullptr);
  EXPECT_NE(Child(result, 1), nullptr);
  EXPECT_FALSE(ShareNodes(result, list));
}

TEST_F(SubstDelete, SubstByNilLeavesMembersWithoutANode) {
  const CLOMAdsLispVar result = CLOMAdsLisp::Subst(CLOMAdsLisp::Nil, 2, V(L"(1 2)"));
  EXPECT_EQ(Text(result), "(1 nil)");
  EXPECT_EQ(Child(result, 1), nullptr);
}

TEST_F(SubstDelete, SubstDoesNotLookAtWhatItPutIn) {
  EXPECT_EQ(Text(CLOMAdsLisp::Subst(1, 2, V(L"(1 2 1)"))), "(1 1 1)");
  EXPECT_EQ(Text(CLOMAdsLisp::Subst(V(L"(2)"), 2, V(L"(1 2)"))), "(1 (2))");
}

TEST_F(SubstDelete, SubstAsksTheMemberWhetherItEqualsTheOldValue) {
  const CLOMAdsLispVar flat = PointAtom(0, ADSPointType::Point);
  const CLOMAdsLispVar spatial = PointAtom(5, ADSPointType::Point3d);
  // A flat point compares two coordinates, one in space three.
  EXPECT_EQ(Child(CLOMAdsLisp::Subst(9, spatial, ListOf({flat})), 0)->atom.Type(), RTSHORT);
  EXPECT_EQ(Child(CLOMAdsLisp::Subst(9, flat, ListOf({spatial})), 0)->atom.Type(), RT3DPOINT);
  EXPECT_EQ(Printed(), "");
}

TEST_F(SubstDelete, SubstComparesFromTheLastMemberToTheFirst) {
  const CLOMAdsLispVar list = ListOf({1, 2L, 3.0, L"a", V(L"(1)"), CLOMAdsLisp::nil()});
  EXPECT_EQ(Text(CLOMAdsLisp::Subst(9, Under(62, 1), list)), "(1 2 3.000000 \"a\" (1) nil)");
  EXPECT_EQ(Printed(), CannotCompare("RTSTR") + CannotCompare("RTREAL") + CannotCompare("RTLONG") +
                           CannotCompare("RTSHORT"));
}

TEST_F(SubstDelete, SubstOfTheListInItselfBuildsNoCycle) {
  NodeWatch watch;
  {
    const CLOMAdsLispVar list = V(L"(1 2)");
    const CLOMAdsLispVar result = CLOMAdsLisp::Subst(list, 2, list);
    EXPECT_EQ(Text(result), "(1 (1 2))");
    EXPECT_EQ(Child(result, 1), list.New());
    EXPECT_EQ(Text(list), "(1 2)");
    watch.Note(result);
  }
  EXPECT_EQ(watch.Alive(), 0U);
}

TEST_F(SubstDelete, SubstOfAMemberByAnother) {
  const CLOMAdsLispVar list = V(L"((1) (2) (1))");
  const CLOMAdsLispVar result = CLOMAdsLisp::Subst(NodeHandle(Child(list, 1)), CLOMAdsLisp::Car(list), list);
  EXPECT_EQ(Text(result), "((2) (2) (2))");
  EXPECT_EQ(Child(result, 0), Child(list, 1));
  EXPECT_NE(Child(result, 1), Child(list, 1));
  EXPECT_EQ(Child(result, 2), Child(list, 1));
}

TEST_F(SubstDelete, SubstWithoutMemoryForATextLeavesItOut) {
  const CLOMAdsLispVar list = V(L"(\"a\" (\"b\") 1)");
  for (uint64_t failing = 1; failing <= 2; ++failing) {
    host.ledger.FailAllocation(failing);
    const CLOMAdsLispVar result = CLOMAdsLisp::Subst(9, 1, list);
    host.ledger.FailAllocation(0);
    EXPECT_EQ(ChildCount(result), 3U);
    EXPECT_NE(Text(result), "(\"a\" (\"b\") 9)");
  }
  EXPECT_EQ(Text(CLOMAdsLisp::Subst(9, 1, list)), "(\"a\" (\"b\") 9)");
}

// --- Delete ---

TEST_F(SubstDelete, DeleteSharesTheMembersInANewList) {
  const CLOMAdsLispVar list = ListOf({V(L"(1)"), 2, CLOMAdsLisp::nil(), DottedOf({3, 4}), ListOf({}), 2});
  const CLOMAdsLispVar rest = CLOMAdsLisp::Delete(2, list);
  ASSERT_EQ(ChildCount(rest), 4U);
  EXPECT_EQ(Child(rest, 0), Child(list, 0));
  EXPECT_EQ(Child(rest, 1), nullptr);
  EXPECT_EQ(Child(rest, 2), Child(list, 3));
  EXPECT_EQ(Child(rest, 3), Child(list, 4));
  EXPECT_EQ(ChildCount(list), 6U);

  const CLOMAdsLispVar all = CLOMAdsLisp::Delete(7, list);
  EXPECT_NE(all.New(), list.New());
  ASSERT_EQ(ChildCount(all), 6U);
  for (size_t i = 0; i < 6; ++i) EXPECT_EQ(Child(all, i), Child(list, i));
}

TEST_F(SubstDelete, DeleteSharesTheMembersOfAPairWithAList) {
  const CLOMAdsLispVar pair = DottedOf({V(L"(1)"), V(L"((2) 3)")});
  const CLOMAdsLispVar rest = CLOMAdsLisp::Delete(3, pair);
  ASSERT_EQ(ChildCount(rest), 2U);
  EXPECT_EQ(Child(rest, 0), Child(pair, 0));
  EXPECT_EQ(Child(rest, 1), Child(pair, 1)->children[0]);
}

TEST_F(SubstDelete, DeleteOfAllMembersGivesAnEmptyList) {
  const CLOMAdsLispVar list = V(L"(1 1)");
  const CLOMAdsLispVar rest = CLOMAdsLisp::Delete(1, list);
  EXPECT_EQ(Text(rest), "()");
  ASSERT_FALSE(IsEmptyHandle(rest));
  EXPECT_NE(rest.New(), list.New());
  EXPECT_EQ(Text(CLOMAdsLisp::Delete(CLOMAdsLisp::Nil, ListOf({CLOMAdsLisp::nil()}))), "()");
}

TEST_F(SubstDelete, DeleteOfAMemberOrOfTheListItself) {
  const CLOMAdsLispVar list = V(L"((1) (2) (1))");
  EXPECT_EQ(Text(CLOMAdsLisp::Delete(CLOMAdsLisp::Car(list), list)), "((2))");
  EXPECT_EQ(Text(CLOMAdsLisp::Delete(list, list)), "((1) (2) (1))");
  EXPECT_EQ(Text(CLOMAdsLisp::Delete(list, ListOf({list, 1}))), "(1)");
  EXPECT_EQ(Text(list), "((1) (2) (1))");
}

// --- Size ---

TEST_F(SubstDelete, DeepMembersNeedNoStack) {
  OnSmallStack([] {
    const CLOMAdsLispVar deep = DeepList();
    const CLOMAdsLispVar list = ListOf({deep, 2, DeepList()});
    const CLOMAdsLispVar kept = CLOMAdsLisp::Subst(9, 2, list);
    EXPECT_EQ(Levels(Child(kept, 0)), kLarge);
    EXPECT_NE(Child(kept, 0), deep.New());
    EXPECT_TRUE(Text(CLOMAdsLisp::Subst(9, deep, list)) == "(9 2 9)");
    EXPECT_TRUE(Text(CLOMAdsLisp::Delete(deep, list)) == "(2)");
  });
}

TEST_F(SubstDelete, LongListsAreEditedInLinearTime) {
  OnSmallStack([] {
    const CLOMAdsLispVar list = LongList();
    const CLOMAdsLispVar value = L"one";
    const CLOMAdsLispVar replaced = CLOMAdsLisp::Subst(value, 1L, list);
    EXPECT_EQ(ChildCount(replaced), size_t{kLarge});
    EXPECT_EQ(Child(replaced, kLarge - 1), value.New());
    EXPECT_EQ(Child(replaced, kLarge - 2)->atom.Type(), RTLONG);
    const CLOMAdsLispVar rest = CLOMAdsLisp::Delete(1L, list);
    EXPECT_EQ(ChildCount(rest), size_t{kLarge} / 2);
    EXPECT_EQ(Child(rest, kLarge / 2 - 1), Child(list, kLarge - 2));
  });
}

}  // namespace
}  // namespace lomlisp::test::subst_delete
