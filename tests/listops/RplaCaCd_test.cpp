// RplaCa and RplaCd: changes in place at the two ends of a list.
#include <tests/listops/Values.h>

#include <string>

namespace lomlisp::test {

using RplaCaTest = HostTest;
using RplaCdTest = HostTest;

namespace {

// A list, a value and the list afterwards.
struct Case {
  CLOMAdsLispVar list;
  CLOMAdsLispVar value;
  std::string text;
};

using Replace = CLOMAdsLispVar& (*)(CLOMAdsLispVar&, const CLOMAdsLispVar&);

CLOMAdsLispVar& CaByMember(CLOMAdsLispVar& list, const CLOMAdsLispVar& value) { return list.RplaCa(value); }
CLOMAdsLispVar& CdByMember(CLOMAdsLispVar& list, const CLOMAdsLispVar& value) { return list.RplaCd(value); }
CLOMAdsLispVar& CaByStatic(CLOMAdsLispVar& list, const CLOMAdsLispVar& value) {
  const CLOMAdsLispVar given = CLOMAdsLisp::RplaCa(list, value);
  EXPECT_EQ(given.New(), list.New());
  return list;
}
CLOMAdsLispVar& CdByStatic(CLOMAdsLispVar& list, const CLOMAdsLispVar& value) {
  const CLOMAdsLispVar given = CLOMAdsLisp::RplaCd(list, value);
  EXPECT_EQ(given.New(), list.New());
  return list;
}

// Runs the operation on the very node, which another handle shares, and compares what both see.
void ExpectInPlace(Replace replace, const Case& example) {
  CLOMAdsLispVar list = example.list;
  const std::string before = Text(list) + " <- " + Text(example.value);
  const std::string valueBefore = Text(example.value);
  EXPECT_EQ(&replace(list, example.value), &list);
  EXPECT_EQ(Text(list), example.text) << before;
  EXPECT_EQ(list.New(), example.list.New()) << before;
  EXPECT_EQ(Text(example.value), valueBefore) << before;
  EXPECT_FALSE(ShareNodes(list, example.value)) << before;
}

void ExpectRefused(Replace replace, CLOMAdsLispVar value) {
  const Element node = value.New();
  const std::string text = Text(value);
  EXPECT_EQ(&replace(value, V(L"(8 9)")), &value);
  EXPECT_EQ(value.New(), node);
  EXPECT_EQ(Text(value), text);
}

}  // namespace

// --- RplaCa ---

TEST_F(RplaCaTest, PutsTheMembersOfACopyInThePlaceOfTheFirstMember) {
  for (const Replace replace : {CaByMember, CaByStatic}) {
    const Case cases[] = {{V(L"(1 2 3)"), V(L"(8 9)"), "(8 9 2 3)"},
                          {V(L"(1)"), V(L"(8 9)"), "(8 9)"},
                          {V(L"(1 2)"), V(L"((8) 9)"), "((8) 9 2)"},
                          {ListOf({}), V(L"(8 9)"), "(8 9)"},
                          {V(L"(1 2)"), DottedOf({8, 9}), "(8 9 2)"},
                          {V(L"(1 2)"), ListOf({CLOMAdsLisp::nil(), 9}), "(nil 9 2)"},
                          {ListOf({CLOMAdsLisp::nil(), 2}), V(L"(8)"), "(8 2)"},
                          {DottedOf({1, 2}), V(L"(8)"), "(8 . 2)"},
                          {DottedOf({1, 2}), V(L"(8 9)"), "(8 . 9 2)"},
                          {DottedOf({1, 2, 3}), V(L"(8)"), "(8 . 2 3)"}};
    for (const Case& example : cases) ExpectInPlace(replace, example);
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(RplaCaTest, OnlyRemovesTheFirstMemberForAValueWithoutMembers) {
  for (const Replace replace : {CaByMember, CaByStatic}) {
    for (const CLOMAdsLispVar& value : {V(L"9"), V(L"\"text\""), CLOMAdsLispVar(), NilAtom(), ListOf({})}) {
      ExpectInPlace(replace, {V(L"(1 2 3)"), value, "(2 3)"});
      ExpectInPlace(replace, {V(L"(1)"), value, "()"});
      ExpectInPlace(replace, {ListOf({}), value, "()"});
    }
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(RplaCaTest, KeepsTheDottedMark) {
  CLOMAdsLispVar list = DottedOf({1, 2});
  list.RplaCa(V(L"9"));
  EXPECT_TRUE(IsDotted(list));
  EXPECT_EQ(ChildCount(list), 1U);
}

TEST_F(RplaCaTest, RefusesNilAndAtoms) {
  for (const Replace replace : {CaByMember, CaByStatic}) {
    for (const CLOMAdsLispVar& value : {CLOMAdsLispVar(), NilAtom(), V(L"7"), V(L"\"text\"")}) {
      ExpectRefused(replace, value);
      EXPECT_EQ(Printed(), "CLOMAdsLispVar::RplaCa : Keine oder leere Liste !\n");
    }
  }
}

TEST_F(RplaCaTest, IsSeenThroughAnAssignedVariable) {
  CLOMAdsLispVar list = V(L"(1 2)");
  CLOMAdsLispVar other;
  other.SetQ(list);
  list.RplaCa(V(L"(8)"));
  EXPECT_EQ(Text(other), "(8 2)");
  other.RplaCa(V(L"(9)"));
  EXPECT_EQ(Text(list), "(9 2)");
}

TEST_F(RplaCaTest, CopiesItsOwnListFirst) {
  CLOMAdsLispVar list = V(L"((1) 2)");
  const Element second = Child(list, 1);
  list.RplaCa(list);
  EXPECT_EQ(Text(list), "((1) 2 2)");
  EXPECT_EQ(Child(list, 2), second);
  EXPECT_NE(Child(list, 1), second);
}

TEST_F(RplaCaTest, CopiesAListAroundItsOwnFirst) {
  NodeWatch watch;
  {
    CLOMAdsLispVar list = V(L"(1 2)");
    const CLOMAdsLispVar around = ListOf({list});
    list.RplaCa(around);
    EXPECT_EQ(Text(list), "((1 2) 2)");
    EXPECT_EQ(Text(around), "(((1 2) 2))");
    watch.Note(list);
    watch.Note(around);
  }
  EXPECT_EQ(watch.Alive(), 0U);
}

TEST_F(RplaCaTest, TakesItsOwnFirstMember) {
  CLOMAdsLispVar list = V(L"((8 9) 2)");
  list.RplaCa(CLOMAdsLisp::Car(list));
  EXPECT_EQ(Text(list), "(8 9 2)");
}

TEST_F(RplaCaTest, LetsTheRemovedMemberGo) {
  CLOMAdsLispVar list = V(L"((1) 2)");
  const std::weak_ptr<CLOMLispElement> first = Child(list, 0);
  list.RplaCa(V(L"(8)"));
  EXPECT_TRUE(first.expired());
}

// --- RplaCd ---

TEST_F(RplaCdTest, PutsTheMembersOfACopyInThePlaceOfTheLastMember) {
  for (const Replace replace : {CdByMember, CdByStatic}) {
    const Case cases[] = {{V(L"(1 2)"), V(L"(8 9)"), "(1 8 9)"},
                          {V(L"(1 2 3)"), V(L"(8 9)"), "(1 2 8 9)"},
                          {V(L"(1)"), V(L"(8 9)"), "(8 9)"},
                          {V(L"(1 2)"), V(L"((8) 9)"), "(1 (8) 9)"},
                          {ListOf({}), V(L"(8 9)"), "(8 9)"},
                          {V(L"(1 2)"), DottedOf({8, 9}), "(1 8 9)"},
                          {V(L"(1 2)"), ListOf({CLOMAdsLisp::nil(), 9}), "(1 nil 9)"},
                          {ListOf({1, CLOMAdsLisp::nil()}), V(L"(8)"), "(1 8)"}};
    for (const Case& example : cases) ExpectInPlace(replace, example);
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(RplaCdTest, OnlyRemovesTheLastMemberForAValueWithoutMembers) {
  for (const Replace replace : {CdByMember, CdByStatic}) {
    for (const CLOMAdsLispVar& value : {V(L"9"), V(L"\"text\""), CLOMAdsLispVar(), NilAtom(), ListOf({})}) {
      ExpectInPlace(replace, {V(L"(1 2 3)"), value, "(1 2)"});
      ExpectInPlace(replace, {V(L"(1)"), value, "()"});
      ExpectInPlace(replace, {ListOf({}), value, "()"});
    }
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(RplaCdTest, PutsTheCopyItselfInThePlaceOfTheCdrOfADottedList) {
  for (const Replace replace : {CdByMember, CdByStatic}) {
    const Case cases[] = {{DottedOf({1, 2}), V(L"9"), "(1 . 9)"},
                          {DottedOf({1, 2}), V(L"\"text\""), "(1 . \"text\")"},
                          {DottedOf({1, 2}), V(L"(8 9)"), "(1 . (8 9))"},
                          {DottedOf({1, 2}), ListOf({}), "(1 . ())"},
                          {DottedOf({1, 2}), DottedOf({8, 9}), "(1 . (8 . 9))"},
                          {DottedOf({1, 2}), CLOMAdsLispVar(), "(1 . nil)"},
                          {DottedOf({1, 2, 3}), V(L"9"), "(1 . 2 9)"},
                          {DottedOf({1}), V(L"9"), "(9)"},
                          {DottedOf({}), V(L"9"), "(9)"}};
    for (const Case& example : cases) {
      ExpectInPlace(replace, example);
      EXPECT_TRUE(IsDotted(example.list));
    }
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(RplaCdTest, PutsNilIntoADottedListInTheShapeThatItHas) {
  CLOMAdsLispVar pair = DottedOf({1, 2});
  pair.RplaCd(NilAtom());
  ASSERT_EQ(ChildCount(pair), 2U);
  ASSERT_NE(Child(pair, 1), nullptr);
  EXPECT_EQ(Child(pair, 1)->atom.Type(), RTNIL);
  pair.RplaCd(CLOMAdsLisp::Nil);
  ASSERT_EQ(ChildCount(pair), 2U);
  EXPECT_EQ(Child(pair, 1), nullptr);
}

TEST_F(RplaCdTest, RefusesNilAndAtoms) {
  for (const Replace replace : {CdByMember, CdByStatic}) {
    for (const CLOMAdsLispVar& value : {CLOMAdsLispVar(), NilAtom(), V(L"7"), V(L"\"text\"")}) {
      ExpectRefused(replace, value);
      EXPECT_EQ(Printed(), "CLOMAdsLispVar::RplaCd : Keine oder leere Liste !\n");
    }
  }
}

TEST_F(RplaCdTest, IsSeenThroughAnAssignedVariable) {
  CLOMAdsLispVar list = V(L"(1 2)");
  CLOMAdsLispVar other;
  other.SetQ(list);
  list.RplaCd(V(L"(8)"));
  EXPECT_EQ(Text(other), "(1 8)");
}

TEST_F(RplaCdTest, CopiesItsOwnListFirst) {
  CLOMAdsLispVar list = V(L"(1 (2))");
  const Element first = Child(list, 0);
  list.RplaCd(list);
  EXPECT_EQ(Text(list), "(1 1 (2))");
  EXPECT_EQ(Child(list, 0), first);
  EXPECT_NE(Child(list, 1), first);
}

TEST_F(RplaCdTest, OfAPairByItselfBuildsNoCycle) {
  NodeWatch watch;
  {
    CLOMAdsLispVar pair = DottedOf({1, 2});
    pair.RplaCd(pair);
    EXPECT_EQ(Text(pair), "(1 . (1 . 2))");
    const CLOMAdsLispVar around = ListOf({pair});
    pair.RplaCd(around);
    EXPECT_EQ(Text(pair), "(1 . ((1 . (1 . 2))))");
    watch.Note(pair);
    watch.Note(around);
  }
  EXPECT_EQ(watch.Alive(), 0U);
}

TEST_F(RplaCdTest, LetsTheRemovedMemberGo) {
  CLOMAdsLispVar list = V(L"(1 (2))");
  const std::weak_ptr<CLOMLispElement> last = Child(list, 1);
  list.RplaCd(V(L"(8)"));
  EXPECT_TRUE(last.expired());
}

}  // namespace lomlisp::test
