// Inherit and InheritanceStatus: two association lists merged from their greatest keys down.
#include <tests/listops/Values.h>
#include <tests/support/SmallStack.h>

namespace lomlisp::test {
namespace {

const std::string kInheritRefused = "CLOMAdsLisp::Inherit : keine Assoziations-Liste !\n";
const std::string kStatusRefused = "CLOMAdsLisp::InheritanceStatus : keine Assoziations-Liste !\n";
const std::string kCarOfNil = "CLOMAdsLisp::Car : Parameter ist nil !\n";
const std::string kNoAtom = "CLOMAdsLispVar::operator!= : Mind. ein Operand ist kein Atom !\n";

std::string CarOfAtom(const std::string& atom) {
  return "CLOMAdsLisp::Car : Parameter muß eine Liste sein !\n" + atom + "\n";
}
std::string CannotCompare(const std::string& typeName) {
  return "Fehler bei ResBuf::operator== :Ich kann ResBufs vom Typ " + typeName + " nicht vergleichen\nName";
}

std::vector<Element> MembersOf(const CLOMAdsLispVar& list) {
  const Element node = list.New();
  if (node == nullptr) return {};
  return {node->children.begin(), node->children.end()};
}

// Two lists, and what becomes of them.
struct Merge {
  const wchar_t* own;
  const wchar_t* inherited;
  const char* merged;
  const char* status;
};

class InheritanceTest : public HostTest {
 protected:
  void Check(const Merge& expected, const std::string& printed = "") {
    const CLOMAdsLispVar own = V(expected.own), inherited = V(expected.inherited);
    Check(own, inherited, expected.merged, expected.status, printed);
  }
  // Both functions, which print the same here, and leave the lists as they are.
  void Check(const CLOMAdsLispVar& own, const CLOMAdsLispVar& inherited, const std::string& merged,
             const std::string& status, const std::string& printed) {
    SCOPED_TRACE(Text(own) + " and " + Text(inherited));
    const std::string ownText = Text(own), inheritedText = Text(inherited);
    const std::vector<Element> ownMembers = MembersOf(own), inheritedMembers = MembersOf(inherited);
    EXPECT_EQ(Text(CLOMAdsLisp::Inherit(own, inherited)), merged);
    EXPECT_EQ(Printed(), printed);
    EXPECT_EQ(Text(CLOMAdsLisp::InheritanceStatus(own, inherited)), status);
    EXPECT_EQ(Printed(), printed);
    EXPECT_EQ(Text(own), ownText);
    EXPECT_EQ(Text(inherited), inheritedText);
    EXPECT_EQ(MembersOf(own), ownMembers);
    EXPECT_EQ(MembersOf(inherited), inheritedMembers);
  }
};

// --- Lists in order ---

TEST_F(InheritanceTest, OwnEntriesWinAndTheOthersAreInherited) {
  const Merge merges[] = {
      {L"((1 . 10) (3 . 30))", L"((1 . 11) (2 . 22))", "((1 . 10) (2 . 22) (3 . 30))",
       "((1 . 1) (2 . 0) (3 . 2))"},
      {L"((1 . 10) (4 . 40) (5 . 50))", L"((2 . 21) (4 . 41) (6 . 61))",
       "((1 . 10) (2 . 21) (4 . 40) (5 . 50) (6 . 61))", "((1 . 2) (2 . 0) (4 . 1) (5 . 2) (6 . 0))"},
      {L"((1 10 100))", L"((1 11) (2 22))", "((1 10 100) (2 22))", "((1 . 1) (2 . 0))"},
      {L"((1))", L"((2))", "((1) (2))", "((1 . 2) (2 . 0))"},
      {L"((\"A\" . 1) (\"b\" . 2))", L"((\"B\" . 3) (\"b\" . 4))", "((\"A\" . 1) (\"B\" . 3) (\"b\" . 2))",
       "((\"A\" . 2) (\"B\" . 0) (\"b\" . 1))"},
  };
  for (const Merge& merge : merges) Check(merge);
}

TEST_F(InheritanceTest, ListsWithTheSameKeys) {
  Check({L"((1 . 10) (2 . 20))", L"((1 . 11) (2 . 21))", "((1 . 10) (2 . 20))", "((1 . 1) (2 . 1))"});
  Check({L"((1 . 10))", L"((1 . 11))", "((1 . 10))", "((1 . 1))"});
}

TEST_F(InheritanceTest, ListsWithoutACommonKey) {
  Check({L"((1 . 10) (2 . 20))", L"((3 . 31) (4 . 41))", "((1 . 10) (2 . 20) (3 . 31) (4 . 41))",
         "((1 . 2) (2 . 2) (3 . 0) (4 . 0))"});
  Check({L"((3 . 30) (4 . 40))", L"((1 . 11) (2 . 21))", "((1 . 11) (2 . 21) (3 . 30) (4 . 40))",
         "((1 . 0) (2 . 0) (3 . 2) (4 . 2))"});
}

TEST_F(InheritanceTest, WhatIsLeftOfOneListComesInFrontInItsOrder) {
  Check({L"((1 . 10) (2 . 20) (3 . 30))", L"((3 . 31))", "((1 . 10) (2 . 20) (3 . 30))",
         "((1 . 2) (2 . 2) (3 . 1))"});
  Check({L"((3 . 30))", L"((1 . 11) (2 . 21) (3 . 31))", "((1 . 11) (2 . 21) (3 . 30))",
         "((1 . 0) (2 . 0) (3 . 1))"});
  Check({L"((1 . 10) (2 . 20) (3 . 30))", L"((9 . 91))", "((1 . 10) (2 . 20) (3 . 30) (9 . 91))",
         "((1 . 2) (2 . 2) (3 . 2) (9 . 0))"});
  Check({L"((9 . 90))", L"((1 . 11) (2 . 21) (3 . 31))", "((1 . 11) (2 . 21) (3 . 31) (9 . 90))",
         "((1 . 0) (2 . 0) (3 . 0) (9 . 2))"});
}

// --- Lists in any other order, and keys that are there twice ---

TEST_F(InheritanceTest, UnsortedListsGiveWhatTheMergeMeets) {
  // 2 and 3 are greater than 1; then 1 meets 1, and the inherited 3 is left.
  Check({L"((1 . 10) (3 . 30) (2 . 20))", L"((3 . 31) (1 . 11))", "((3 . 31) (1 . 10) (3 . 30) (2 . 20))",
         "((3 . 0) (1 . 1) (3 . 2) (2 . 2))"});
  // 1 is less than 3; then 1 meets 1, and the own 3 is left.
  Check({L"((3 . 30) (1 . 10))", L"((1 . 11) (3 . 31))", "((3 . 30) (1 . 10) (3 . 31))",
         "((3 . 2) (1 . 1) (3 . 0))"});
  Check({L"((5 . 50) (2 . 20) (7 . 70))", L"((9 . 91))", "((5 . 50) (2 . 20) (7 . 70) (9 . 91))",
         "((5 . 2) (2 . 2) (7 . 2) (9 . 0))"});
  Check({L"((9 . 90))", L"((5 . 51) (2 . 21) (7 . 71))", "((5 . 51) (2 . 21) (7 . 71) (9 . 90))",
         "((5 . 0) (2 . 0) (7 . 0) (9 . 2))"});
}

TEST_F(InheritanceTest, EqualKeysPairUpOneByOne) {
  Check({L"((1 . 10) (1 . 20))", L"((1 . 11))", "((1 . 10) (1 . 20))", "((1 . 2) (1 . 1))"});
  Check({L"((1 . 10))", L"((1 . 11) (1 . 21))", "((1 . 11) (1 . 10))", "((1 . 0) (1 . 1))"});
  Check({L"((1 . 10) (1 . 20))", L"((1 . 11) (1 . 21))", "((1 . 10) (1 . 20))", "((1 . 1) (1 . 1))"});
}

// --- Keys of other types ---

TEST_F(InheritanceTest, NumbersOfDifferentTypesCanBeTheSameKey) {
  Check({L"((1.0 . 10))", L"((1 . 11))", "((1.000000 . 10))", "((1.000000 . 1))"});
  Check({L"((1 . 10))", L"((1.0 . 11))", "((1 . 10))", "((1 . 1))"});
  Check({L"((1.0 . 10))", L"((1.0000000001 . 11))", "((1.000000 . 10))", "((1.000000 . 1))"});
  Check({L"((1.0 . 10))", L"((1.0000001 . 11))", "((1.000000 . 10) (1.000000 . 11))",
         "((1.000000 . 2) (1.000000 . 0))"});
}

TEST_F(InheritanceTest, OwnKeysThatHaveNoOrderCountAsGreater) {
  Check({L"((\"a\" . 10))", L"((5 . 51))", "((5 . 51) (\"a\" . 10))", "((5 . 0) (\"a\" . 2))"});
  Check({L"((5 . 50))", L"((\"a\" . 11))", "((\"a\" . 11) (5 . 50))", "((\"a\" . 0) (5 . 2))"});
}

TEST_F(InheritanceTest, KeysOfDifferentNumericTypesAreOrderedByTheOwnType) {
  // The lowest 16 bits of the real 1.5 are 0.
  Check(ListOf({DottedOf({1, 10})}), ListOf({DottedOf({1.5, 11})}), "((1.500000 . 11) (1 . 10))",
        "((1.500000 . 0) (1 . 2))", "");
}

TEST_F(InheritanceTest, ListsAsKeysAreComparedButHaveNoOrder) {
  Check({L"(((1 2) . 10))", L"(((1 2) . 11))", "(((1 2) . 10))", "(((1 2) . 1))"});
  Check({L"(((1) . 10))", L"(((2) . 11))", "(((2) . 11) ((1) . 10))", "(((2) . 0) ((1) . 2))"}, kNoAtom);
  Check({L"((1 . 10) ((5) . 50))", L"((2 . 21) (3 . 31))", "((1 . 10) (2 . 21) (3 . 31) ((5) . 50))",
         "((1 . 2) (2 . 0) (3 . 0) ((5) . 2))"},
        kNoAtom);
}

TEST_F(InheritanceTest, NilAsAKeyEqualsNilInTheSameForm) {
  const CLOMAdsLispVar nil = CLOMAdsLisp::nil();
  Check(ListOf({DottedOf({nil, 10})}), ListOf({DottedOf({nil, 11})}), "((nil . 10))", "((nil . 1))", "");
  Check(ListOf({DottedOf({NilAtom(), 10})}), ListOf({DottedOf({NilAtom(), 11})}), "((nil . 10))",
        "((nil . 1))", "");
  Check(ListOf({DottedOf({nil, 10})}), V(L"((1 . 11))"), "((1 . 11) (nil . 10))", "((1 . 0) (nil . 2))",
        kNoAtom);
  Check(V(L"((1 . 10))"), ListOf({DottedOf({nil, 11})}), "((nil . 11) (1 . 10))", "((nil . 0) (1 . 2))",
        kNoAtom);
}

TEST_F(InheritanceTest, KeysUnderDxfCodesCannotBeCompared) {
  CLOMAdsLispVar color = 1;
  ASSERT_TRUE(color.GetAtom().MakeDXF(62));
  // Once for equality, and once more for the order.
  Check(V(L"((1 . 10))"), ListOf({DottedOf({color, 11})}), "((1 . 11) (1 . 10))", "((1 . 0) (1 . 2))",
        CannotCompare("RTSHORT") + CannotCompare("RTSHORT"));
}

// --- Entries without a key ---

TEST_F(InheritanceTest, EntriesThatAreAtomsHaveTheKeyNilAndSaySo) {
  Check(ListOf({7}), ListOf({8}), "(7)", "((nil . 1))", CarOfAtom("7") + CarOfAtom("8"));
  Check(ListOf({CLOMAdsLisp::nil()}), ListOf({CLOMAdsLisp::nil()}), "(nil)", "((nil . 1))",
        kCarOfNil + kCarOfNil);
  Check(ListOf({NilAtom()}), ListOf({ListOf({})}), "(nil)", "((nil . 1))", CarOfAtom("nil"));
  Check(ListOf({ListOf({})}), ListOf({ListOf({})}), "(())", "((nil . 1))", "");
}

TEST_F(InheritanceTest, EntriesOfOwnAreAskedForTheirKeyFirst) {
  Check(ListOf({L"own", L"first"}), ListOf({8, 9}), "(\"own\" \"first\")", "((nil . 1) (nil . 1))",
        CarOfAtom("\"first\"") + CarOfAtom("9") + CarOfAtom("\"own\"") + CarOfAtom("8"));
}

TEST_F(InheritanceTest, AnEntryIsAskedForItsKeyOnceHoweverOftenItIsCompared) {
  const CLOMAdsLispVar own = V(L"((1 . 10) (2 . 20) (3 . 30))");
  EXPECT_EQ(Text(CLOMAdsLisp::Inherit(own, ListOf({9}))), "(9 (1 . 10) (2 . 20) (3 . 30))");
  EXPECT_EQ(Printed(), CarOfAtom("9") + kNoAtom + kNoAtom + kNoAtom);
  // Here the atom comes up in the merge only after the first comparison.
  EXPECT_EQ(Text(CLOMAdsLisp::Inherit(V(L"((2 . 20))"), V(L"(9 (5 . 51))"))), "(9 (2 . 20) (5 . 51))");
  EXPECT_EQ(Printed(), CarOfAtom("9") + kNoAtom);
}

TEST_F(InheritanceTest, AnOwnAtomCountsAsGreater) {
  Check(ListOf({7, V(L"(2 . 20)")}), V(L"((1 . 11))"), "((1 . 11) 7 (2 . 20))", "((1 . 0) (nil . 2) (2 . 2))",
        CarOfAtom("7") + kNoAtom);
}

TEST_F(InheritanceTest, InheritDoesNotAskWhatIsLeftForItsKey) {
  EXPECT_EQ(Text(CLOMAdsLisp::Inherit(V(L"(7 8 (1 . 10))"), V(L"((1 . 11))"))), "(7 8 (1 . 10))");
  EXPECT_EQ(Text(CLOMAdsLisp::Inherit(V(L"((1 . 10))"), V(L"(7 8 (1 . 11))"))), "(7 8 (1 . 10))");
  EXPECT_EQ(Printed(), "");
}

TEST_F(InheritanceTest, StatusAsksWhatIsLeftForItsKeyOnceFromTheEnd) {
  EXPECT_EQ(Text(CLOMAdsLisp::InheritanceStatus(V(L"((9 . 90))"), V(L"(7 (1 . 11) (2 . 21) 8 (9 . 91))"))),
            "((nil . 0) (1 . 0) (2 . 0) (nil . 0) (9 . 1))");
  EXPECT_EQ(Printed(), CarOfAtom("8") + CarOfAtom("7"));
  EXPECT_EQ(Text(CLOMAdsLisp::InheritanceStatus(V(L"(7 (1 . 10) 8 (9 . 90))"), V(L"((9 . 91))"))),
            "((nil . 2) (1 . 2) (nil . 2) (9 . 1))");
  EXPECT_EQ(Printed(), CarOfAtom("8") + CarOfAtom("7"));
}

TEST_F(InheritanceTest, StatusOfOneListAsksEachEntryFromTheEnd) {
  const CLOMAdsLispVar list = ListOf({7, CLOMAdsLisp::nil(), V(L"(1 . 2)"), ListOf({}), 8});
  const std::string printed = CarOfAtom("8") + kCarOfNil + CarOfAtom("7");
  for (const CLOMAdsLispVar& nothing : {CLOMAdsLispVar(), NilAtom(), ListOf({})}) {
    EXPECT_EQ(Text(CLOMAdsLisp::InheritanceStatus(nothing, list)),
              "((nil . 0) (nil . 0) (1 . 0) (nil . 0) (nil . 0))");
    EXPECT_EQ(Printed(), printed);
    EXPECT_EQ(Text(CLOMAdsLisp::InheritanceStatus(list, nothing)),
              "((nil . 2) (nil . 2) (1 . 2) (nil . 2) (nil . 2))");
    EXPECT_EQ(Printed(), printed);
  }
}

// --- nil, empty lists and what is no list ---

TEST_F(InheritanceTest, InheritWithNilOrAnEmptyListGivesTheOtherListItself) {
  const CLOMAdsLispVar list = V(L"(7 (1 . 2))");
  for (const CLOMAdsLispVar& nothing : {CLOMAdsLispVar(), NilAtom(), ListOf({})}) {
    EXPECT_EQ(CLOMAdsLisp::Inherit(nothing, list).New(), list.New());
    EXPECT_EQ(CLOMAdsLisp::Inherit(list, nothing).New(), list.New());
  }
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Inherit(CLOMAdsLisp::Nil, CLOMAdsLisp::Nil)));
  EXPECT_EQ(Printed(), "");
}

TEST_F(InheritanceTest, StatusOfOneListSaysThatForEveryKey) {
  const CLOMAdsLispVar list = V(L"((1 . 10) (2 20))");
  for (const CLOMAdsLispVar& nothing : {CLOMAdsLispVar(), NilAtom(), ListOf({})}) {
    EXPECT_EQ(Text(CLOMAdsLisp::InheritanceStatus(nothing, list)), "((1 . 0) (2 . 0))");
    EXPECT_EQ(Text(CLOMAdsLisp::InheritanceStatus(list, nothing)), "((1 . 2) (2 . 2))");
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(InheritanceTest, StatusOfNothingIsNil) {
  for (const CLOMAdsLispVar& own : {CLOMAdsLispVar(), NilAtom(), ListOf({})})
    for (const CLOMAdsLispVar& inherited : {CLOMAdsLispVar(), NilAtom(), ListOf({})})
      EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::InheritanceStatus(own, inherited)));
  EXPECT_EQ(Printed(), "");
}

TEST_F(InheritanceTest, RefusesWhatIsNoProperListOnEitherSide) {
  const std::vector<CLOMAdsLispVar> improper = {V(L"5"), V(L"\"a\""), V(L"(1 . 2)"), DottedOf({}),
                                                DottedOf({V(L"(1 . 2)"), V(L"((3 . 4))")})};
  for (const CLOMAdsLispVar& value : improper) {
    for (const CLOMAdsLispVar& other : {CLOMAdsLispVar(), ListOf({}), V(L"((1 . 2))"), value}) {
      EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Inherit(value, other)));
      EXPECT_EQ(Printed(), kInheritRefused);
      EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Inherit(other, value)));
      EXPECT_EQ(Printed(), kInheritRefused);
      EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::InheritanceStatus(value, other)));
      EXPECT_EQ(Printed(), kStatusRefused);
      EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::InheritanceStatus(other, value)));
      EXPECT_EQ(Printed(), kStatusRefused);
    }
  }
}

// --- Sharing ---

TEST_F(InheritanceTest, InheritSharesTheEntriesInANewList) {
  const CLOMAdsLispVar own = V(L"((1 . 10) (3 . 30) (4 . 40))");
  const CLOMAdsLispVar inherited = V(L"((0 . 1) (1 . 11) (2 . 22) (5 . 55))");
  const CLOMAdsLispVar merged = CLOMAdsLisp::Inherit(own, inherited);
  const std::vector<Element> expected = {Child(inherited, 0), Child(own, 0), Child(inherited, 2),
                                         Child(own, 1),       Child(own, 2), Child(inherited, 3)};
  EXPECT_EQ(MembersOf(merged), expected);
  EXPECT_NE(merged.New(), own.New());
  EXPECT_NE(merged.New(), inherited.New());
  EXPECT_EQ(merged.New()->Kind(), CLOMLispElement::List);
}

TEST_F(InheritanceTest, InheritTakesEntriesWithoutANodeAlong) {
  const CLOMAdsLispVar nil = CLOMAdsLisp::nil();
  const CLOMAdsLispVar merged = CLOMAdsLisp::Inherit(ListOf({nil, V(L"(2 . 20)")}), V(L"((2 . 21))"));
  EXPECT_EQ(Text(merged), "(nil (2 . 20))");
  EXPECT_EQ(Child(merged, 0), nullptr);
}

TEST_F(InheritanceTest, StatusSharesTheKeysInPairsWithIntegers) {
  const CLOMAdsLispVar own = V(L"((\"a\" . 10) (\"c\" 30))");
  const CLOMAdsLispVar inherited = V(L"((\"a\" . 11) (\"b\" 22))");
  const CLOMAdsLispVar status = CLOMAdsLisp::InheritanceStatus(own, inherited);
  ASSERT_EQ(Text(status), "((\"a\" . 1) (\"b\" . 0) (\"c\" . 2))");
  const Element keys[] = {Child(own, 0)->children[0], Child(inherited, 1)->children[0],
                          Child(own, 1)->children[0]};
  for (size_t i = 0; i < 3; ++i) {
    const Element pair = Child(status, i);
    EXPECT_EQ(pair->Kind(), CLOMLispElement::DottedList);
    ASSERT_EQ(pair->children.size(), 2U);
    EXPECT_EQ(pair->children[0], keys[i]);
    EXPECT_EQ(pair->children[1]->atom.Type(), RTSHORT);
  }
  EXPECT_EQ(status.New()->Kind(), CLOMLispElement::List);
}

TEST_F(InheritanceTest, StatusPairsAListAsKeyWithItsStatus) {
  const CLOMAdsLispVar status =
      CLOMAdsLisp::InheritanceStatus(V(L"(((1 2) . 3))"), ListOf({DottedOf({V(L"(1 2)"), 4})}));
  EXPECT_EQ(Text(status), "(((1 2) . 1))");
  EXPECT_TRUE(IsDotted(NodeHandle(Child(status, 0))));
}

TEST_F(InheritanceTest, AListWithItself) {
  const CLOMAdsLispVar list = V(L"((1 . 10) (2 . 20))");
  const CLOMAdsLispVar merged = CLOMAdsLisp::Inherit(list, list);
  EXPECT_EQ(MembersOf(merged), MembersOf(list));
  EXPECT_NE(merged.New(), list.New());
  EXPECT_EQ(Text(CLOMAdsLisp::InheritanceStatus(list, list)), "((1 . 1) (2 . 1))");
  EXPECT_EQ(Text(list), "((1 . 10) (2 . 20))");
}

TEST_F(InheritanceTest, IntoTheVariableItself) {
  CLOMAdsLispVar own = V(L"((1 . 10))");
  const CLOMAdsLispVar before = own;
  own = CLOMAdsLisp::Inherit(own, V(L"((1 . 11) (2 . 22))"));
  EXPECT_EQ(Text(own), "((1 . 10) (2 . 22))");
  EXPECT_EQ(Text(before), "((1 . 10))");
}

// --- Size ---

TEST_F(InheritanceTest, LongListsAreMergedInLinearTime) {
  OnSmallStack([] {
    constexpr int kMany = kLarge / 4;
    constexpr size_t kHalf = kMany / 2;
    CLOMAdsLispVar own = ListOf({}), inherited = ListOf({});
    for (long key = 0; key < kMany; ++key) {
      const CLOMAdsLispVar number = key;
      if (key % 2 == 0) own.New()->children.push_back(ListOf({number}).New());
      if (key % 2 == 1) inherited.New()->children.push_back(ListOf({number}).New());
    }
    const CLOMAdsLispVar merged = CLOMAdsLisp::Inherit(own, inherited);
    ASSERT_EQ(ChildCount(merged), size_t{kMany});
    EXPECT_EQ(Child(merged, 0), Child(own, 0));
    EXPECT_EQ(Child(merged, kMany - 2), Child(own, kHalf - 1));
    EXPECT_EQ(Child(merged, kMany - 1), Child(inherited, kHalf - 1));
    EXPECT_EQ(ChildCount(CLOMAdsLisp::Inherit(merged, inherited)), size_t{kMany});
    EXPECT_EQ(ChildCount(CLOMAdsLisp::Inherit(ListOf({ListOf({-1L})}), merged)), size_t{kMany} + 1);
    const CLOMAdsLispVar status = CLOMAdsLisp::InheritanceStatus(own, merged);
    ASSERT_EQ(ChildCount(status), size_t{kMany});
    EXPECT_EQ(Text(NodeHandle(Child(status, 0))), "(0 . 1)");
    EXPECT_EQ(Text(NodeHandle(Child(status, 1))), "(1 . 0)");
    EXPECT_EQ(ChildCount(CLOMAdsLisp::InheritanceStatus(merged, CLOMAdsLisp::Nil)), size_t{kMany});
  });
}

TEST_F(InheritanceTest, DeepKeysNeedNoStack) {
  OnSmallStack([] {
    CLOMAdsLispVar keys[] = {1, 1};
    for (CLOMAdsLispVar& key : keys)
      for (int level = 0; level < kLarge; ++level) key.List();
    const CLOMAdsLispVar own = ListOf({DottedOf({keys[0], 10})});
    const CLOMAdsLispVar inherited = ListOf({DottedOf({keys[1], 11})});
    EXPECT_EQ(MembersOf(CLOMAdsLisp::Inherit(own, inherited)), MembersOf(own));
    const CLOMAdsLispVar status = CLOMAdsLisp::InheritanceStatus(own, inherited);
    ASSERT_EQ(ChildCount(status), 1U);
    EXPECT_EQ(Child(status, 0)->children[0], keys[0].New());
  });
}

}  // namespace
}  // namespace lomlisp::test
