// Assoc, Member, Position and Index: members found by value and by key.
#include <tests/listops/Values.h>
#include <tests/support/SmallStack.h>

namespace lomlisp::test::search {
namespace {

const std::string kMemberNoList = "CLOMAdsLisp::Member : Parameter \"List\" muß eine Liste sein !\n";
const std::string kPositionNoList = "CLOMAdsLisp::Position :  Keine Liste !\n";
const std::string kCarOfNil = "CLOMAdsLisp::Car : Parameter ist nil !\n";

std::string AssocNoList(const std::string& value) {
  return "CLOMAdsLisp::Assoc : keine Assoziativ-Liste : " + value + "\n";
}
std::string IndexNoList(const std::string& value) {
  return "CLOMAdsLisp::Index: keine Assoziativ-Liste !\n" + value + "\n";
}
std::string CarOfAtom(const std::string& atom) {
  return "CLOMAdsLisp::Car : Parameter muß eine Liste sein !\n" + atom + "\n";
}
std::string CannotCompare(const std::string& typeName) {
  return "Fehler bei ResBuf::operator== :Ich kann ResBufs vom Typ " + typeName + " nicht vergleichen\nName";
}

CLOMAdsLispVar PointAtom(double z, ADSPointType type) {
  const double point[3] = {1, 2, z};
  CLOMAdsLispVar atom = 0;
  atom.GetAtom() = ResBuf(point, type);
  return atom;
}
// A flat point asks for two coordinates, one in space for three.
CLOMAdsLispVar FlatPoint() { return PointAtom(0, ADSPointType::Point); }
CLOMAdsLispVar SpatialPoint() { return PointAtom(5, ADSPointType::Point3d); }

// An atom that cannot be compared, except with itself.
CLOMAdsLispVar DxfAtom() {
  CLOMAdsLispVar atom = 1;
  EXPECT_TRUE(atom.GetAtom().MakeDXF(62));
  return atom;
}

// (1 2 3) as a pair of 1 and (2 3).
CLOMAdsLispVar PairWithList() { return DottedOf({1, V(L"(2 3)")}); }

CLOMAdsLispVar DeepList() {
  CLOMAdsLispVar core = 1;
  for (int level = 0; level < kLarge; ++level) core.List();
  return core;
}

using ListSearch = HostTest;

// --- Assoc ---

TEST_F(ListSearch, AssocGivesTheFirstPairWithTheKeyItself) {
  const CLOMAdsLispVar list = V(L"((0 . \"LINE\") (8 . \"0\") (8 . \"1\") (10 1.0 2.0 3.0))");
  EXPECT_EQ(CLOMAdsLisp::Assoc(0, list).New(), Child(list, 0));
  EXPECT_EQ(CLOMAdsLisp::Assoc(8, list).New(), Child(list, 1));
  EXPECT_EQ(CLOMAdsLisp::Assoc(10, list).New(), Child(list, 3));
  EXPECT_EQ(Text(CLOMAdsLisp::Assoc(8, list)), "(8 . \"0\")");
  EXPECT_EQ(Text(list), "((0 . \"LINE\") (8 . \"0\") (8 . \"1\") (10 1.000000 2.000000 3.000000))");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ListSearch, AssocGivesNilWhenThereIsNoSuchKey) {
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Assoc(9, V(L"((1 . 9) (2 9))"))));
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Assoc(CLOMAdsLisp::Nil, V(L"((1 . 9))"))));
  EXPECT_EQ(Printed(), "");
}

TEST_F(ListSearch, AssocSkipsMembersWithoutMembersSilently) {
  const CLOMAdsLispVar list =
      ListOf({1, CLOMAdsLisp::nil(), NilAtom(), ListOf({}), DottedOf({}), L"text", V(L"(2 3)")});
  EXPECT_EQ(CLOMAdsLisp::Assoc(2, list).New(), Child(list, 6));
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Assoc(1, list)));
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Assoc(CLOMAdsLisp::Nil, list)));
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Assoc(NilAtom(), list)));
  EXPECT_EQ(Printed(), "");
}

TEST_F(ListSearch, AssocComparesStructures) {
  const CLOMAdsLispVar list =
      ListOf({V(L"((1 2) . 3)"), DottedOf({V(L"(1 . 2)"), 4}), DottedOf({CLOMAdsLisp::nil(), 5}),
              DottedOf({NilAtom(), 6}), DottedOf({ListOf({}), 7}), V(L"(\"ab\" . 8)")});
  EXPECT_EQ(Text(CLOMAdsLisp::Assoc(V(L"(1 2)"), list)), "((1 2) . 3)");
  EXPECT_EQ(Text(CLOMAdsLisp::Assoc(V(L"(1 . 2)"), list)), "((1 . 2) . 4)");
  EXPECT_EQ(Text(CLOMAdsLisp::Assoc(CLOMAdsLisp::Nil, list)), "(nil . 5)");
  EXPECT_EQ(Text(CLOMAdsLisp::Assoc(NilAtom(), list)), "(nil . 6)");
  EXPECT_EQ(Text(CLOMAdsLisp::Assoc(ListOf({}), list)), "(() . 7)");
  EXPECT_EQ(Text(CLOMAdsLisp::Assoc(L"ab", list)), "(\"ab\" . 8)");
  EXPECT_EQ(Text(CLOMAdsLisp::Assoc(L"AB", list)), "nil");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ListSearch, AssocComparesRealsWithTheSmallestTolerance) {
  const CLOMAdsLispVar list = V(L"((1.0000001 . 7))");
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Assoc(1.0, list)));
  EXPECT_EQ(CLOMAdsLisp::Assoc(1.0000001 + 1e-10, list).New(), Child(list, 0));
  EXPECT_EQ(Text(CLOMAdsLisp::Assoc(1.0, V(L"((2 . 3) (1 . 4))"))), "(1 . 4)");
}

TEST_F(ListSearch, AssocOfNothingIsNilSilently) {
  for (const CLOMAdsLispVar& nothing : {CLOMAdsLispVar(), NilAtom(), ListOf({})})
    for (const CLOMAdsLispVar& key : {CLOMAdsLispVar(1), CLOMAdsLispVar(), NilAtom()})
      EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Assoc(key, nothing)));
  EXPECT_EQ(Printed(), "");
}

TEST_F(ListSearch, AssocRefusesWhatIsNoProperListAndPrintsIt) {
  const std::pair<CLOMAdsLispVar, const char*> cases[] = {
      {V(L"5"), "5"},
      {V(L"\"a\""), "\"a\""},
      {V(L"(1 . 2)"), "(1 . 2)"},
      {PairWithList(), "(1 . (2 3))"},
      {DottedOf({V(L"(1 . 2)"), V(L"((3 . 4))")}), "((1 . 2) . ((3 . 4)))"},
      {DottedOf({}), "()"}};
  for (const auto& [list, text] : cases) {
    EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Assoc(1, list)));
    EXPECT_EQ(Printed(), AssocNoList(text));
  }
}

TEST_F(ListSearch, AssocAsksTheFirstMemberWhetherItEqualsTheKey) {
  EXPECT_FALSE(CLOMAdsLisp::Assoc(SpatialPoint(), ListOf({DottedOf({FlatPoint(), 1})})).NilP());
  EXPECT_TRUE(CLOMAdsLisp::Assoc(FlatPoint(), ListOf({DottedOf({SpatialPoint(), 1})})).NilP());
}

TEST_F(ListSearch, AssocStopsAtTheMatch) {
  const CLOMAdsLispVar key = DxfAtom();
  const CLOMAdsLispVar list = ListOf({V(L"(1 . 2)"), V(L"(\"a\" . 2)"), DottedOf({key, 3}), V(L"(2.5 . 4)")});
  EXPECT_EQ(CLOMAdsLisp::Assoc(key, list).New(), Child(list, 2));
  EXPECT_EQ(Printed(), CannotCompare("RTSHORT") + CannotCompare("RTSTR"));
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Assoc(DxfAtom(), list)));
  EXPECT_EQ(Printed(), CannotCompare("RTSHORT") + CannotCompare("RTSTR") + CannotCompare("<62>") +
                           CannotCompare("RTREAL"));
}

TEST_F(ListSearch, AssocOfAKeyFromTheListItself) {
  const CLOMAdsLispVar list = V(L"((1 . 2) ((3) . 4))");
  const CLOMAdsLispVar pair = CLOMAdsLisp::Assoc(CLOMAdsLisp::Car(CLOMAdsLisp::Last(list)), list);
  EXPECT_EQ(pair.New(), Child(list, 1));
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Assoc(list, list)));
  const CLOMAdsLispVar around = ListOf({DottedOf({list, 1})});
  EXPECT_EQ(CLOMAdsLisp::Assoc(list, around).New(), Child(around, 0));
}

TEST_F(ListSearch, AssocGivesThePairThatChangesReach) {
  CLOMAdsLispVar list = V(L"((1 . 2))");
  CLOMAdsLispVar pair = CLOMAdsLisp::Assoc(1, list);
  pair.RplaCd(3);
  EXPECT_EQ(Text(list), "((1 . 3))");
}

TEST_F(ListSearch, AssocKeepsThePairOfAListThatDies) {
  EXPECT_EQ(Text(CLOMAdsLisp::Assoc(2, V(L"((1 . 2) (2 \"a\"))"))), "(2 \"a\")");
}

// --- Member ---

TEST_F(ListSearch, MemberGivesTheRestFromTheFirstMatchOn) {
  const CLOMAdsLispVar list = V(L"(1 2 3 2)");
  EXPECT_EQ(Text(CLOMAdsLisp::Member(1, list)), "(1 2 3 2)");
  EXPECT_EQ(Text(CLOMAdsLisp::Member(2, list)), "(2 3 2)");
  EXPECT_EQ(Text(CLOMAdsLisp::Member(3, list)), "(3 2)");
  EXPECT_EQ(Text(CLOMAdsLisp::Member(2, V(L"(1 2)"))), "(2)");
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Member(4, list)));
  EXPECT_EQ(Text(list), "(1 2 3 2)");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ListSearch, MemberSharesTheListOrItsMembers) {
  const CLOMAdsLispVar list = V(L"((1) (2) (3))");
  EXPECT_EQ(CLOMAdsLisp::Member(V(L"(1)"), list).New(), list.New());
  for (size_t i = 1; i < 3; ++i) {
    const CLOMAdsLispVar rest = CLOMAdsLisp::Member(NodeHandle(Child(list, i)), list);
    EXPECT_NE(rest.New(), list.New());
    ASSERT_EQ(ChildCount(rest), 3 - i);
    for (size_t k = i; k < 3; ++k) EXPECT_EQ(Child(rest, k - i), Child(list, k));
  }
  EXPECT_EQ(ChildCount(list), 3U);
}

TEST_F(ListSearch, MemberOfAListThatNobodyElseHolds) {
  EXPECT_EQ(Text(CLOMAdsLisp::Member(1, V(L"(1 2 3)"))), "(1 2 3)");
  EXPECT_EQ(Text(CLOMAdsLisp::Member(3, V(L"(1 2 3)"))), "(3)");
  EXPECT_EQ(Text(CLOMAdsLisp::Member(3, PairWithList())), "(3)");
  EXPECT_EQ(Text(CLOMAdsLisp::Member(4, V(L"(1 2 3)"))), "nil");
}

TEST_F(ListSearch, MemberWalksIntoTheListOfAPair) {
  const CLOMAdsLispVar pair = PairWithList();
  EXPECT_EQ(CLOMAdsLisp::Member(1, pair).New(), pair.New());
  EXPECT_EQ(CLOMAdsLisp::Member(2, pair).New(), Child(pair, 1));
  const CLOMAdsLispVar rest = CLOMAdsLisp::Member(3, pair);
  EXPECT_EQ(Text(rest), "(3)");
  EXPECT_EQ(Child(rest, 0), Child(pair, 1)->children[1]);
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Member(V(L"(2 3)"), pair)));
  EXPECT_EQ(Text(pair), "(1 . (2 3))");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ListSearch, MemberFindsTheTwoFormsOfNilApart) {
  const CLOMAdsLispVar list = ListOf({1, CLOMAdsLisp::nil(), NilAtom(), 2});
  EXPECT_EQ(Text(CLOMAdsLisp::Member(CLOMAdsLisp::Nil, list)), "(nil nil 2)");
  EXPECT_EQ(Text(CLOMAdsLisp::Member(NilAtom(), list)), "(nil 2)");
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Member(CLOMAdsLisp::Nil, V(L"(1 2)"))));
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Member(NilAtom(), ListOf({CLOMAdsLisp::nil()}))));
}

TEST_F(ListSearch, MemberOfNilIsNilSilently) {
  for (const CLOMAdsLispVar& nil : {CLOMAdsLispVar(), NilAtom()})
    for (const CLOMAdsLispVar& value : {CLOMAdsLispVar(1), CLOMAdsLispVar(), NilAtom()})
      EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Member(value, nil)));
  EXPECT_EQ(Printed(), "");
}

// The first member of an empty list is nil, and an empty list is not nil.
TEST_F(ListSearch, MemberOfAnEmptyListFindsOnlyNil) {
  const CLOMAdsLispVar empty = ListOf({});
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Member(1, empty)));
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Member(empty, empty)));
  EXPECT_EQ(CLOMAdsLisp::Member(CLOMAdsLisp::Nil, empty).New(), empty.New());
  EXPECT_EQ(Printed(), "");
}

TEST_F(ListSearch, MemberAndPositionRefuseWhatIsNoList) {
  for (const CLOMAdsLispVar& value :
       {V(L"5"), V(L"\"a\""), DottedOf({1, 2}), DottedOf({1}), DottedOf({1, 2, 3}), DottedOf({}),
        DottedOf({1, CLOMAdsLisp::nil()}), DottedOf({1, NilAtom()})}) {
    EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Member(1, value)));
    EXPECT_EQ(Printed(), kMemberNoList);
    EXPECT_EQ(CLOMAdsLisp::Position(1, value), -1);
    EXPECT_EQ(Printed(), kPositionNoList);
  }
}

TEST_F(ListSearch, MemberAndPositionAskTheValueWhetherItEqualsTheMember) {
  EXPECT_FALSE(CLOMAdsLisp::Member(FlatPoint(), ListOf({SpatialPoint()})).NilP());
  EXPECT_TRUE(CLOMAdsLisp::Member(SpatialPoint(), ListOf({FlatPoint()})).NilP());
  EXPECT_EQ(CLOMAdsLisp::Position(FlatPoint(), ListOf({0, SpatialPoint()})), 1);
  EXPECT_EQ(CLOMAdsLisp::Position(SpatialPoint(), ListOf({0, FlatPoint()})), -1);
}

TEST_F(ListSearch, MemberAndPositionStopAtTheMatch) {
  const CLOMAdsLispVar list = ListOf({DxfAtom(), 7, DxfAtom()});
  EXPECT_EQ(Text(CLOMAdsLisp::Member(7, list)), "(7 1)");
  EXPECT_EQ(Printed(), CannotCompare("RTSHORT"));
  EXPECT_EQ(CLOMAdsLisp::Position(7, list), 1);
  EXPECT_EQ(Printed(), CannotCompare("RTSHORT"));
  EXPECT_EQ(CLOMAdsLisp::Position(L"a", list), -1);
  EXPECT_EQ(Printed(), CannotCompare("RTSTR") + CannotCompare("RTSTR"));
}

TEST_F(ListSearch, MemberAndPositionOfAListInItself) {
  const CLOMAdsLispVar list = V(L"(1 (2))");
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Member(list, list)));
  EXPECT_EQ(CLOMAdsLisp::Position(list, list), -1);
  const CLOMAdsLispVar around = ListOf({0, list});
  EXPECT_EQ(Text(CLOMAdsLisp::Member(list, around)), "((1 (2)))");
  EXPECT_EQ(CLOMAdsLisp::Position(list, around), 1);
  EXPECT_EQ(Text(list), "(1 (2))");
}

TEST_F(ListSearch, MemberIntoTheVariableItself) {
  CLOMAdsLispVar list = V(L"(1 2 3)");
  const CLOMAdsLispVar other = list;
  list = CLOMAdsLisp::Member(2, list);
  EXPECT_EQ(Text(list), "(2 3)");
  list.RplaCa(V(L"(8 9)"));
  EXPECT_EQ(Text(list), "(8 9 3)");
  EXPECT_EQ(Text(other), "(1 2 3)");
}

// --- Position ---

TEST_F(ListSearch, PositionCountsFromZero) {
  const CLOMAdsLispVar list = V(L"(1 \"b\" (3 4) 1.5 \"b\" (3 . 4))");
  EXPECT_EQ(CLOMAdsLisp::Position(1, list), 0);
  EXPECT_EQ(CLOMAdsLisp::Position(L"b", list), 1);
  EXPECT_EQ(CLOMAdsLisp::Position(V(L"(3 4)"), list), 2);
  EXPECT_EQ(CLOMAdsLisp::Position(1.5, list), 3);
  EXPECT_EQ(CLOMAdsLisp::Position(V(L"(3 . 4)"), list), 5);
  EXPECT_EQ(CLOMAdsLisp::Position(3, list), -1);
  EXPECT_EQ(CLOMAdsLisp::Position(L"B", list), -1);
  EXPECT_EQ(CLOMAdsLisp::Position(CLOMAdsLisp::Nil, list), -1);
  EXPECT_EQ(Text(list), "(1 \"b\" (3 4) 1.500000 \"b\" (3 . 4))");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ListSearch, PositionComparesRealsWithTheSmallestTolerance) {
  EXPECT_EQ(CLOMAdsLisp::Position(1.0, ListOf({1.0000001, 1.0 + 1e-10, 1})), 1);
  EXPECT_EQ(CLOMAdsLisp::Position(1, ListOf({2.0, 1.0})), 1);
}

TEST_F(ListSearch, PositionWalksIntoTheListOfAPair) {
  const CLOMAdsLispVar pair = PairWithList();
  EXPECT_EQ(CLOMAdsLisp::Position(1, pair), 0);
  EXPECT_EQ(CLOMAdsLisp::Position(2, pair), 1);
  EXPECT_EQ(CLOMAdsLisp::Position(3, pair), 2);
  EXPECT_EQ(CLOMAdsLisp::Position(V(L"(2 3)"), pair), -1);
  EXPECT_EQ(CLOMAdsLisp::Position(2, DottedOf({1, ListOf({})})), -1);
  EXPECT_EQ(CLOMAdsLisp::Position(3, PairWithList()), 2);
  EXPECT_EQ(Printed(), "");
}

TEST_F(ListSearch, PositionFindsTheTwoFormsOfNilApart) {
  const CLOMAdsLispVar list = ListOf({1, NilAtom(), CLOMAdsLisp::nil()});
  EXPECT_EQ(CLOMAdsLisp::Position(NilAtom(), list), 1);
  EXPECT_EQ(CLOMAdsLisp::Position(CLOMAdsLisp::Nil, list), 2);
}

TEST_F(ListSearch, PositionInNilIsMinusOneSilently) {
  for (const CLOMAdsLispVar& nil : {CLOMAdsLispVar(), NilAtom()})
    for (const CLOMAdsLispVar& value : {CLOMAdsLispVar(1), CLOMAdsLispVar(), NilAtom()})
      EXPECT_EQ(CLOMAdsLisp::Position(value, nil), -1);
  EXPECT_EQ(CLOMAdsLisp::Position(1, ListOf({})), -1);
  EXPECT_EQ(CLOMAdsLisp::Position(CLOMAdsLisp::Nil, ListOf({})), 0);
  EXPECT_EQ(Printed(), "");
}

// --- Index ---

TEST_F(ListSearch, IndexGivesThePositionOfTheFirstPairWithTheKey) {
  const CLOMAdsLispVar list = V(L"((1 . 10) (\"b\" 20) ((3) . 30) (1 . 40) (2.5))");
  EXPECT_EQ(CLOMAdsLisp::Index(1, list), 0);
  EXPECT_EQ(CLOMAdsLisp::Index(L"b", list), 1);
  EXPECT_EQ(CLOMAdsLisp::Index(V(L"(3)"), list), 2);
  EXPECT_EQ(CLOMAdsLisp::Index(2.5, list), 4);
  EXPECT_EQ(CLOMAdsLisp::Index(10, list), -1);
  EXPECT_EQ(CLOMAdsLisp::Index(CLOMAdsLisp::Nil, list), -1);
  EXPECT_EQ(Text(list), "((1 . 10) (\"b\" 20) ((3) . 30) (1 . 40) (2.500000))");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ListSearch, IndexPrintsTheMessageOfCarForAtomsAndWalksOn) {
  const CLOMAdsLispVar list = ListOf({7, L"a", NilAtom(), CLOMAdsLisp::nil(), V(L"(1 . 2)"), 8});
  EXPECT_EQ(CLOMAdsLisp::Index(1, list), 4);
  EXPECT_EQ(Printed(), CarOfAtom("7") + CarOfAtom("\"a\"") + CarOfAtom("nil") + kCarOfNil);
  EXPECT_EQ(CLOMAdsLisp::Index(9, list), -1);
  EXPECT_EQ(Printed(), CarOfAtom("7") + CarOfAtom("\"a\"") + CarOfAtom("nil") + kCarOfNil + CarOfAtom("8"));
}

TEST_F(ListSearch, IndexTakesNilAsTheKeyOfWhatHasNone) {
  EXPECT_EQ(CLOMAdsLisp::Index(CLOMAdsLisp::Nil, ListOf({V(L"(1 . 2)"), 7, 8})), 1);
  EXPECT_EQ(Printed(), CarOfAtom("7"));
  EXPECT_EQ(CLOMAdsLisp::Index(CLOMAdsLisp::Nil, ListOf({V(L"(1 . 2)"), CLOMAdsLisp::nil()})), 1);
  EXPECT_EQ(Printed(), kCarOfNil);
  EXPECT_EQ(CLOMAdsLisp::Index(CLOMAdsLisp::Nil, ListOf({V(L"(1 . 2)"), ListOf({})})), 1);
  EXPECT_EQ(CLOMAdsLisp::Index(CLOMAdsLisp::Nil, ListOf({DottedOf({CLOMAdsLisp::nil(), 2})})), 0);
  EXPECT_EQ(Printed(), "");
  EXPECT_EQ(CLOMAdsLisp::Index(NilAtom(), ListOf({7, DottedOf({NilAtom(), 2})})), 1);
  EXPECT_EQ(Printed(), CarOfAtom("7"));
}

TEST_F(ListSearch, IndexComparesRealsWithTheSmallestTolerance) {
  EXPECT_EQ(CLOMAdsLisp::Index(1.0, V(L"((1.0000001 . 2) (1.0 . 3))")), 1);
  EXPECT_EQ(CLOMAdsLisp::Index(1.0, V(L"((2 . 2) (1 . 3))")), 1);
}

TEST_F(ListSearch, IndexInNilIsMinusOneSilently) {
  for (const CLOMAdsLispVar& nil : {CLOMAdsLispVar(), NilAtom()})
    for (const CLOMAdsLispVar& key : {CLOMAdsLispVar(1), CLOMAdsLispVar(), NilAtom()})
      EXPECT_EQ(CLOMAdsLisp::Index(key, nil), -1);
  EXPECT_EQ(Printed(), "");
}

// The first member of an empty list is nil, and an empty list is not nil.
TEST_F(ListSearch, IndexInAnEmptyListPrintsTheMessageOfCar) {
  EXPECT_EQ(CLOMAdsLisp::Index(1, ListOf({})), -1);
  EXPECT_EQ(Printed(), kCarOfNil);
  EXPECT_EQ(CLOMAdsLisp::Index(CLOMAdsLisp::Nil, ListOf({})), 0);
  EXPECT_EQ(Printed(), kCarOfNil);
}

TEST_F(ListSearch, IndexRefusesWhatIsNoProperListAndPrintsIt) {
  const std::pair<CLOMAdsLispVar, const char*> cases[] = {{V(L"5"), "5"},
                                                          {V(L"\"a\""), "\"a\""},
                                                          {V(L"(1 . 2)"), "(1 . 2)"},
                                                          {PairWithList(), "(1 . (2 3))"},
                                                          {DottedOf({}), "()"}};
  for (const auto& [list, text] : cases) {
    EXPECT_EQ(CLOMAdsLisp::Index(1, list), -1);
    EXPECT_EQ(Printed(), IndexNoList(text));
  }
}

TEST_F(ListSearch, IndexAsksTheFirstMemberWhetherItEqualsTheKey) {
  EXPECT_EQ(CLOMAdsLisp::Index(SpatialPoint(), ListOf({DottedOf({FlatPoint(), 1})})), 0);
  EXPECT_EQ(CLOMAdsLisp::Index(FlatPoint(), ListOf({DottedOf({SpatialPoint(), 1})})), -1);
  const CLOMAdsLispVar key = DxfAtom();
  EXPECT_EQ(CLOMAdsLisp::Index(key, ListOf({V(L"(\"a\")"), DottedOf({key, 3}), V(L"(1)")})), 1);
  EXPECT_EQ(Printed(), CannotCompare("RTSTR"));
}

TEST_F(ListSearch, IndexOfAKeyFromTheListItself) {
  const CLOMAdsLispVar list = V(L"((1 . 2) ((3) . 4))");
  EXPECT_EQ(CLOMAdsLisp::Index(CLOMAdsLisp::Car(CLOMAdsLisp::Last(list)), list), 1);
  EXPECT_EQ(CLOMAdsLisp::Index(list, list), -1);
  EXPECT_EQ(CLOMAdsLisp::Index(list, ListOf({DottedOf({list, 1})})), 0);
}

// --- Size ---

TEST_F(ListSearch, DeepKeysNeedNoStack) {
  OnSmallStack([] {
    const CLOMAdsLispVar deep = DeepList();
    const CLOMAdsLispVar values = ListOf({1, DeepList()});
    const CLOMAdsLispVar pairs = ListOf({V(L"(1 . 2)"), DottedOf({DeepList(), 3})});
    EXPECT_EQ(Child(CLOMAdsLisp::Member(deep, values), 0), Child(values, 1));
    EXPECT_EQ(CLOMAdsLisp::Position(deep, values), 1);
    EXPECT_EQ(CLOMAdsLisp::Assoc(deep, pairs).New(), Child(pairs, 1));
    EXPECT_EQ(CLOMAdsLisp::Index(deep, pairs), 1);
  });
}

TEST_F(ListSearch, LongListsAreSearchedInLinearTime) {
  OnSmallStack([] {
    CLOMAdsLispVar values = ListOf({});
    CLOMAdsLispVar pairs = ListOf({});
    for (long n = 0; n < kLarge; ++n) {
      const CLOMAdsLispVar number = n;
      values.New()->children.push_back(number.New());
      pairs.New()->children.push_back(ListOf({number}).New());
    }
    constexpr int kEnd = kLarge - 1;
    const CLOMAdsLispVar last = long{kEnd};
    const CLOMAdsLispVar rest = CLOMAdsLisp::Member(last, values);
    EXPECT_EQ(ChildCount(rest), 1U);
    EXPECT_EQ(Child(rest, 0), Child(values, kEnd));
    EXPECT_EQ(ChildCount(CLOMAdsLisp::Member(1L, values)), size_t{kEnd});
    EXPECT_EQ(CLOMAdsLisp::Position(last, values), kEnd);
    EXPECT_EQ(CLOMAdsLisp::Position(L"none", values), -1);
    EXPECT_EQ(CLOMAdsLisp::Assoc(last, pairs).New(), Child(pairs, kEnd));
    EXPECT_EQ(CLOMAdsLisp::Index(last, pairs), kEnd);
    EXPECT_EQ(CLOMAdsLisp::Index(L"none", pairs), -1);
  });
}

}  // namespace
}  // namespace lomlisp::test::search
