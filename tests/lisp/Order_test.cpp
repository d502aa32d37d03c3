#include <tests/support/Chains.h>
#include <tests/support/SmallStack.h>

#include <limits>

namespace lomlisp::test::order {
namespace {

using Value = CLOMAdsLispVar;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr const char* kNoAtom = "CLOMAdsLispVar::operator!= : Mind. ein Operand ist kein Atom !\n";

Value Atom(const resbuf& record) {
  Value atom(0);
  atom.GetAtom() = record;
  return atom;
}
Value NilAtom() { return Atom(NoValue(RTNIL)); }
Value Big(__int64 value) { return Value(value); }

std::string CannotCompare(const std::string& typeName) {
  return "Fehler bei ResBuf::operator== :Ich kann ResBufs vom Typ " + typeName + " nicht vergleichen\nName";
}
std::string CannotOrder(const std::string& typeName) {
  return "Fehler bei ResBuf::operator< :Ich kann ResBufs vom Typ " + typeName + " nicht vergleichen\nName";
}

// What the four operators say of a pair. What is neither equal nor less counts as greater; Neither
// is the answer for operands that are no atoms.
enum class Relation { Less, Equal, Greater, Neither };

class OrderOfAtoms : public HostTest {
 protected:
  struct Pair {
    Value a, b;
    Relation relation;
  };

  // Each of the operators must print `message`.
  void ExpectRelation(const Value& a, const Value& b, Relation relation, const std::string& message = "") {
    SCOPED_TRACE(Tree(a) + " and " + Tree(b));
    const bool less = a < b;
    EXPECT_EQ(Printed(), message);
    const bool lessOrEqual = a <= b;
    EXPECT_EQ(Printed(), message);
    const bool greater = a > b;
    EXPECT_EQ(Printed(), message);
    const bool greaterOrEqual = a >= b;
    EXPECT_EQ(Printed(), message);
    EXPECT_EQ(less, relation == Relation::Less) << "<";
    EXPECT_EQ(lessOrEqual, relation == Relation::Less || relation == Relation::Equal) << "<=";
    EXPECT_EQ(greater, relation == Relation::Greater) << ">";
    EXPECT_EQ(greaterOrEqual, relation == Relation::Greater || relation == Relation::Equal) << ">=";
  }
  void ExpectRelations(std::initializer_list<Pair> pairs) {
    for (const Pair& pair : pairs) ExpectRelation(pair.a, pair.b, pair.relation);
  }
  // That neither is less than the other, both ways.
  void ExpectNoOrder(const Value& a, const Value& b) {
    ExpectRelation(a, b, Relation::Greater);
    ExpectRelation(b, a, Relation::Greater);
  }
};

// --- Numbers ---

TEST_F(OrderOfAtoms, NumbersOfOneTypeAreOrderedByValue) {
  ExpectRelations({
      {1, 2, Relation::Less},
      {2, 1, Relation::Greater},
      {2, 2, Relation::Equal},
      {-1, 1, Relation::Less},
      {-32768, 32767, Relation::Less},
      {1L, 70000L, Relation::Less},
      {70000L, -70000L, Relation::Greater},
      {70000L, 70000L, Relation::Equal},
      {Big(5000000000), Big(5000000001), Relation::Less},
      {Big(5000000001), Big(5000000000), Relation::Greater},
      {Big(5000000000), Big(5000000000), Relation::Equal},
      {1.5, 2.5, Relation::Less},
      {2.5, -2.5, Relation::Greater},
      {2.5, 2.5, Relation::Equal},
      {Atom(Real(0.5, RTANG)), Atom(Real(1.5, RTANG)), Relation::Less},
      {Atom(Real(1.5, RTANG)), Atom(Real(0.5, RTANG)), Relation::Greater},
  });
}

TEST_F(OrderOfAtoms, RealsWithinABillionthAreEqual) {
  ExpectRelations({
      {1.0, 1.0000000005, Relation::Equal},
      {1.0000000005, 1.0, Relation::Equal},
      {1.0, 1.000000002, Relation::Less},
      {1.000000002, 1.0, Relation::Greater},
      {0.0, -0.0, Relation::Equal},
  });
}

TEST_F(OrderOfAtoms, LargeIntegersKeepAllTheirDigits) {
  ExpectRelation(Big(9007199254740992), Big(9007199254740993), Relation::Less);
  ExpectRelation(Big(9007199254740993), Big(9007199254740992), Relation::Greater);
}

TEST_F(OrderOfAtoms, ARealAndAnAngleAreOrderedByValue) {
  ExpectRelation(1.0, Atom(Real(1.5, RTANG)), Relation::Less);
  ExpectRelation(Atom(Real(1.5, RTANG)), 1.0, Relation::Greater);
  ExpectRelation(Atom(Real(1.5, RTANG)), 1.5, Relation::Equal);
}

TEST_F(OrderOfAtoms, NumbersOfDifferentTypesAreEqualByValue) {
  ExpectRelations({
      {2, 2.0, Relation::Equal},
      {2.0, 2, Relation::Equal},
      {2L, 2, Relation::Equal},
      {Big(2), 2.0000000005, Relation::Equal},
      {-1, -1L, Relation::Equal},
  });
}

// Only equality converts: otherwise the bits of the second value are read as the first one's type.
TEST_F(OrderOfAtoms, UnequalNumbersOfDifferentTypesAreOrderedByTheBitsOfTheSecond) {
  ExpectRelations({
      {3, 70000L, Relation::Less},                     // 4464
      {5000, 70000L, Relation::Greater},               // 4464
      {70000L, Big(4294967297), Relation::Greater},    // 1
      {5L, -1, Relation::Less},                        // 65535
      {3, 5.0, Relation::Greater},                     // 0
      {-3, 5.0, Relation::Less},                       // 0
      {5.0, 30000, Relation::Greater},                 // the smallest reals
      {-5.0, -30000, Relation::Less},                  // the smallest reals
      {Big(5), 5.5, Relation::Less},                   // the bits of 5.5
      {5.5, Big(4618441417868443648), Relation::Less}  // 6.0
  });
}

TEST_F(OrderOfAtoms, InfinityIsBeyondEveryNumber) {
  ExpectRelation(1.0, kInfinity, Relation::Less);
  ExpectRelation(kInfinity, 1.0, Relation::Greater);
  ExpectRelation(-kInfinity, kInfinity, Relation::Less);
}

TEST_F(OrderOfAtoms, WhatIsNoNumberIsGreaterThanEverythingAndEverythingThanIt) {
  ExpectNoOrder(kNaN, 1.0);
  ExpectNoOrder(kNaN, kNaN);
  const Value same = kNaN;
  ExpectRelation(same, same, Relation::Greater);
}

// --- Texts ---

TEST_F(OrderOfAtoms, TextsAreOrderedByTheirCodeUnits) {
  ExpectRelations({
      {L"ab", L"abc", Relation::Less},
      {L"abc", L"ab", Relation::Greater},
      {L"ab", L"ab", Relation::Equal},
      {L"B", L"a", Relation::Less},
      {L"a", L"B", Relation::Greater},
      {L"", L"a", Relation::Less},
      {L"", L"", Relation::Equal},
      {L"10", L"9", Relation::Less},
      {L"z", L"\u00E4", Relation::Less},
      {L"\uFFE6", L"\U00010000", Relation::Greater},
      {L"\U00010000", L"\uFFE6", Relation::Less},
  });
}

TEST_F(OrderOfAtoms, ANullTextEqualsOnlyItself) {
  const Value null = Atom(String(nullptr));
  ExpectRelation(null, Atom(String(nullptr)), Relation::Equal);
  ExpectNoOrder(null, L"a");
  ExpectNoOrder(null, L"");
}

// --- Atoms without an order among them ---

TEST_F(OrderOfAtoms, AtomsOfDifferentFamiliesAreEachGreaterThanTheOther) {
  const __int64 name[2] = {31, 32};
  ExpectNoOrder(L"1", 1);
  ExpectNoOrder(L"", 2.5);
  ExpectNoOrder(NilAtom(), 1);
  ExpectNoOrder(NilAtom(), L"a");
  ExpectNoOrder(Value(name), 1L);
  ExpectNoOrder(Value(name), L"a");
  ExpectNoOrder(Value(name), Atom(Name(30, RTPICKS)));
  ExpectNoOrder(Atom(Point(1, 2, 3)), 1.0);
}

TEST_F(OrderOfAtoms, AtomsThatAreEqualByTypeAloneAreEqual) {
  ExpectRelation(NilAtom(), NilAtom(), Relation::Equal);
  ExpectRelation(Atom(NoValue(RTVOID)), Atom(NoValue(RTVOID)), Relation::Equal);
  ExpectRelation(Atom(Real(1.0, RTORINT)), Atom(Real(2.0, RTORINT)), Relation::Equal);
}

TEST_F(OrderOfAtoms, EqualPointsAndNamesAreEqualSilently) {
  ExpectRelation(Atom(Point(1, 2, 3)), Atom(Point(1, 2, 3)), Relation::Equal);
  ExpectRelation(Atom(Point(1, 2, 0, RTPOINT)), Atom(Point(1, 2, 5)), Relation::Equal);
  ExpectRelation(Atom(Name(31)), Atom(Name(31)), Relation::Equal);
  ExpectRelation(Atom(Name(31)), Atom(Name(31, RTPICKS)), Relation::Equal);
}

TEST_F(OrderOfAtoms, DifferentPointsAndNamesAreRefusedWithAMessage) {
  ExpectRelation(Atom(Point(1, 2, 3)), Atom(Point(1, 2, 4)), Relation::Greater, CannotOrder("RT3DPOINT"));
  ExpectRelation(Atom(Point(1, 2, 0, RTPOINT)), Atom(Point(0, 2, 0, RTPOINT)), Relation::Greater,
                 CannotOrder("RTPOINT"));
  ExpectRelation(Atom(Name(1)), Atom(Name(2)), Relation::Greater, CannotOrder("RTENAME"));
  ExpectRelation(Atom(Name(2, RTPICKS)), Atom(Name(1, RTPICKS)), Relation::Greater, CannotOrder("RTPICKS"));
}

TEST_F(OrderOfAtoms, EqualityIsAskedFirst) {
  const std::string both = CannotCompare("<5021>") + CannotOrder("<5021>");
  ExpectRelation(Atom(NoValue(RTT)), Atom(NoValue(RTT)), Relation::Greater, both);
  ExpectRelation(Atom(Short(3, 62)), Atom(Short(3, 62)), Relation::Greater,
                 CannotCompare("<62>") + CannotOrder("<62>"));
  ExpectRelation(3, Atom(Short(4, 62)), Relation::Greater, CannotCompare("RTSHORT"));
  ExpectRelation(Atom(Short(3, 62)), 4, Relation::Greater);
}

// --- Operands that are no atoms ---

TEST_F(OrderOfAtoms, WithoutTwoAtomsEveryOperatorIsFalse) {
  const Value others[] = {Value(),       ListOf({}), V(L"(1)"),         V(L"(1 2)"),
                          V(L"(1 . 2)"), Dotted({}), ListOf({Value()}), Atom(NoValue(RTNONE))};
  for (const Value& other : others) {
    ExpectRelation(other, 1, Relation::Neither, kNoAtom);
    ExpectRelation(1, other, Relation::Neither, kNoAtom);
    ExpectRelation(L"a", other, Relation::Neither, kNoAtom);
    ExpectRelation(other, other, Relation::Neither, kNoAtom);
    ExpectRelation(other, Value(other), Relation::Neither, kNoAtom);
  }
}

TEST_F(OrderOfAtoms, AtomsAreAskedForBeforeAnythingIsCompared) {
  ExpectRelation(Atom(NoValue(RTT)), Value(), Relation::Neither, kNoAtom);
  ExpectRelation(V(L"(1)"), Atom(NoValue(RTT)), Relation::Neither, kNoAtom);
}

TEST_F(OrderOfAtoms, AnAtomIsEqualToItself) {
  for (const Value& atom : {Value(1), Value(2.5), Value(L"a"), Value(70000L), Atom(Name(31))})
    ExpectRelation(atom, atom, Relation::Equal);
}

TEST_F(OrderOfAtoms, TheOperandsStayAsTheyAre) {
  const Value a = 1, b = L"b";
  const auto before = a.New();
  ExpectNoOrder(a, b);
  EXPECT_EQ(a.New(), before);
  EXPECT_EQ(Tree(a), "5003:1");
  EXPECT_EQ(Tree(b), "5005:b");
}

// --- Deep and long values ---

TEST_F(OrderOfAtoms, DeepAndLongOperandsNeedNoStack) {
  OnSmallStack([this] {
    const Value deep = Nested(kLarge, 1);
    EXPECT_FALSE(deep < 1);
    EXPECT_FALSE(Value(1) >= deep);
    EXPECT_EQ(Printed(), std::string(kNoAtom) + kNoAtom);

    const std::wstring text(kLarge, L'a');
    EXPECT_TRUE(Value(text) < Value(text + L'a'));
    EXPECT_TRUE(Value(text + L'b') > Value(text + L'a'));
    EXPECT_TRUE(Value(text) >= Value(text));
    EXPECT_EQ(Printed(), "");
  });
}

}  // namespace
}  // namespace lomlisp::test::order
