#include <tests/support/Chains.h>
#include <tests/support/SmallStack.h>

#include <limits>
#include <random>

namespace lomlisp::test::equality {
namespace {

using Value = CLOMAdsLispVar;
using ConstElement = CLOMAdsLispVar::ConstElement;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr int kSharedLevels = 60;  // 2 to the power of 60 leaves

Value Atom(const resbuf& record) {
  Value atom(0);
  atom.GetAtom() = record;
  return atom;
}
Value NilAtom() { return Atom(NoValue(RTNIL)); }

// A list whose two members are one and the same list, and so on.
Value Doubled(Value core) {
  for (int i = 0; i < kSharedLevels; ++i) core = ListOf({core, core});
  return core;
}

// A list that has the same node as each of its members.
Value Repeated(const Value& member, int count) {
  Value list = ListOf({});
  for (int i = 0; i < count; ++i) list.New()->children.push_back(member.New());
  return list;
}

Value DottedChain(int levels, int last) {
  Value chain(last);
  for (int i = 0; i < levels; ++i) chain = Dotted({1, chain});
  return chain;
}

std::string CannotCompare(const std::string& typeName) {
  return "Fehler bei ResBuf::operator== :Ich kann ResBufs vom Typ " + typeName + " nicht vergleichen\nName";
}

class Equality : public HostTest {
 protected:
  // All forms of the test for one tolerance, which must agree.
  static bool AreEqual(const Value& a, const Value& b, double tol = 0.0) {
    const bool equal = Value::isEqual(a.New(), b.New(), tol);
    EXPECT_EQ(a.Equal(b, tol), equal);
    EXPECT_EQ(CLOMAdsLisp::Equal(a, b, tol), equal);
    if (tol == 0.0) {
      EXPECT_EQ(a == b, equal);
      EXPECT_EQ(a != b, !equal);
    }
    return equal;
  }
  static bool AreEq(const Value& a, const Value& b) {
    const bool eq = a.Eq(b);
    EXPECT_EQ(CLOMAdsLisp::Eq(a, b), eq);
    return eq;
  }
};

// --- nil ---

TEST_F(Equality, NilEqualsNil) {
  EXPECT_TRUE(AreEqual(Value(), Value()));
  EXPECT_TRUE(AreEqual(CLOMAdsLisp::Nil, Value()));
  EXPECT_TRUE(AreEqual(Value(), Value(), -1.0));
  EXPECT_TRUE(AreEq(Value(), CLOMAdsLisp::Nil));
}

TEST_F(Equality, NilEqualsNothingElse) {
  const Value others[] = {NilAtom(), ListOf({}), ListOf({}, true), V(L"(1)"), V(L"0"), Value(L"")};
  for (const Value& other : others) {
    SCOPED_TRACE(Tree(other));
    EXPECT_FALSE(AreEqual(Value(), other));
    EXPECT_FALSE(AreEqual(other, Value()));
    EXPECT_FALSE(AreEq(Value(), other));
    EXPECT_FALSE(AreEq(other, Value()));
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(Equality, NilAtomsAreEqualToEachOther) {
  EXPECT_TRUE(AreEqual(NilAtom(), NilAtom()));
  EXPECT_TRUE(AreEq(NilAtom(), NilAtom()));
}

// --- Atoms ---

TEST_F(Equality, AtomsAreComparedAsRecords) {
  const __int64 name[2] = {31, 32};
  struct Pair {
    Value a, b;
    bool equal;
  };
  const Pair pairs[] = {
      {5, 5, true},
      {5, 6, false},
      {5, 5.0, true},
      {5.0, 5L, true},
      {5L, Value(static_cast<__int64>(5)), true},
      {Value(static_cast<__int64>(4294967301)), 5, false},
      {3, 3.0000000001, true},
      {3.0, 3.000000002, false},
      {Atom(Real(0.5, RTANG)), 0.5, true},
      {L"ab", L"ab", true},
      {L"ab", L"AB", false},
      {L"", L"", true},
      {L"5", 5, false},
      {5, L"5", false},
      {Atom(String(nullptr)), Atom(String(nullptr)), true},
      {Atom(String(nullptr)), L"", false},
      {Value(name), Atom(Name(31)), true},
      {Value(name), Atom(Name(31, RTPICKS)), true},
      {Value(name), Atom(Name(30)), false},
      {Atom(Point(1, 2, 3)), Atom(Point(1, 2, 3)), true},
      {Atom(Point(1, 2, 3)), Atom(Point(1, 2, 4)), false},
      {NilAtom(), 0, false},
      {kNaN, kNaN, false},
  };
  for (const Pair& pair : pairs) {
    SCOPED_TRACE(Tree(pair.a) + " and " + Tree(pair.b));
    EXPECT_EQ(AreEqual(pair.a, pair.b), pair.equal);
    EXPECT_EQ(AreEq(pair.a, pair.b), pair.equal);
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(Equality, TheFirstValueIsTheOneThatIsAsked) {
  const Value flat = Atom(Point(1, 2, 0, RTPOINT));
  const Value solid = Atom(Point(1, 2, 5));
  EXPECT_TRUE(AreEqual(flat, solid));
  EXPECT_FALSE(AreEqual(solid, flat));
  EXPECT_TRUE(AreEq(flat, solid));
  EXPECT_FALSE(AreEq(solid, flat));
}

TEST_F(Equality, TheToleranceReachesAtoms) {
  EXPECT_TRUE(AreEqual(1.0, 1.0005, 0.001));
  EXPECT_FALSE(AreEqual(1.0, 1.0005, 0.0001));
  EXPECT_TRUE(AreEqual(1.0, 1.5, 0.5));
  EXPECT_TRUE(AreEqual(1, 1.5, 0.5));
  EXPECT_FALSE(AreEqual(1, 2, 5.0));
  EXPECT_FALSE(AreEqual(1.0, 1.0, -0.1));
  EXPECT_TRUE(AreEqual(1, 1, -0.1));
}

TEST_F(Equality, ANodeEqualsItselfWhateverItHolds) {
  for (const Value& value : {Value(kNaN), Value(1.0), Atom(Short(3, 62)), Atom(NoValue(RTT)),
                             ListOf({kNaN, Atom(Short(3, 62))}), Dotted({1, kNaN}), ListOf({})}) {
    const Value copy = value;
    EXPECT_TRUE(AreEqual(value, copy));
    EXPECT_TRUE(AreEqual(value, value, -1.0));
    EXPECT_TRUE(AreEq(value, copy));
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(Equality, SharedMembersEqualThemselvesInDifferentLists) {
  const Value member = ListOf({kNaN, Atom(Short(3, 62))});
  EXPECT_TRUE(AreEqual(ListOf({1, member}), ListOf({1, member}), -1.0));
  EXPECT_EQ(Printed(), "");
}

// --- Kinds ---

TEST_F(Equality, ValuesOfDifferentKindsAreNotEqual) {
  const Value values[] = {V(L"1"),       ListOf({}),      V(L"(1)"),      Dotted({}),
                          Dotted({1}),   V(L"(1 2)"),     V(L"(1 . 2)"),  Dotted({1, V(L"(2 3)")}),
                          V(L"(1 2 3)"), V(L"(1 (2 3))"), V(L"((1 2) 3)")};
  for (const Value& a : values)
    for (const Value& b : values) {
      if (a.New() == b.New()) continue;
      SCOPED_TRACE(Tree(a) + " and " + Tree(b));
      EXPECT_FALSE(AreEqual(a, b));
      EXPECT_FALSE(AreEq(a, b));
    }
  EXPECT_EQ(Printed(), "");
}

TEST_F(Equality, AnAtomWithoutAValueIsAnEmptyList) {
  EXPECT_TRUE(AreEqual(Atom(NoValue(RTNONE)), ListOf({})));
  EXPECT_FALSE(AreEqual(Atom(NoValue(RTNONE)), Value()));
}

// --- Lists ---

TEST_F(Equality, ListsAreComparedByTheirMembers) {
  for (const wchar_t* const text : {L"()", L"(1)", L"(1 (2 3))", L"(1 2.5 \"a\")", L"((() ()) ((1) (2 . 3)))",
                                    L"(1 . 2)", L"((0 . \"LINE\") (8 . \"0\"))", L"(nil 1 nil)"}) {
    SCOPED_TRACE(Utf8(text));
    EXPECT_TRUE(AreEqual(V(text), V(text)));
    EXPECT_FALSE(AreEq(V(text), V(text)));
  }
}

TEST_F(Equality, OneDifferenceMakesListsUnequal) {
  struct Pair {
    const wchar_t *a, *b;
  };
  for (const Pair& pair :
       {Pair{L"(1 2)", L"(1 . 2)"}, Pair{L"(1 2)", L"(2 1)"}, Pair{L"(1 2)", L"(1 2 3)"}, Pair{L"(1)", L"()"},
        Pair{L"(1 (2 3))", L"(1 (2 4))"}, Pair{L"(1 (2 3))", L"(1 2 3)"}, Pair{L"((1) 2)", L"(1 (2))"},
        Pair{L"(1 . 2)", L"(1 . 3)"}, Pair{L"(\"a\")", L"(\"A\")"}, Pair{L"(1)", L"1"}}) {
    SCOPED_TRACE(Utf8(pair.a) + " and " + Utf8(pair.b));
    EXPECT_FALSE(AreEqual(V(pair.a), V(pair.b)));
    EXPECT_FALSE(AreEqual(V(pair.b), V(pair.a)));
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(Equality, EmptyListsOfOneKindAreEqual) {
  EXPECT_TRUE(AreEqual(ListOf({}), ListOf({})));
  EXPECT_TRUE(AreEqual(Dotted({}), Dotted({})));
  EXPECT_FALSE(AreEq(ListOf({}), ListOf({})));
}

TEST_F(Equality, ADottedListWithAListBehindItsDotIsNotTheListThatItReadsAs) {
  const Value dotted = Dotted({1, V(L"(2 3)")});
  EXPECT_TRUE(AreEqual(dotted, Dotted({1, V(L"(2 3)")})));
  EXPECT_FALSE(AreEqual(dotted, V(L"(1 2 3)")));
  EXPECT_FALSE(AreEqual(V(L"(1 2 3)"), dotted));
}

TEST_F(Equality, MembersThatAreNilEqualOnlySuch) {
  const Value null = ListOf({1, Value()});
  EXPECT_TRUE(AreEqual(null, ListOf({1, Value()})));
  EXPECT_FALSE(AreEqual(null, ListOf({1, NilAtom()})));
  EXPECT_FALSE(AreEqual(ListOf({1, NilAtom()}), null));
  EXPECT_TRUE(AreEqual(ListOf({NilAtom()}), ListOf({NilAtom()})));
  EXPECT_FALSE(AreEqual(null, ListOf({1, ListOf({})})));
  EXPECT_FALSE(AreEqual(ListOf({1, 2}), null));
  EXPECT_TRUE(AreEqual(Dotted({1, Value()}), Dotted({1, Value()})));
}

TEST_F(Equality, TheToleranceReachesEveryLevel) {
  const Value a = V(L"(1.0 (2.0 (3.0 . 4.0)) 5)");
  const Value b = V(L"(1.25 (2.25 (3.25 . 4.25)) 5)");
  EXPECT_TRUE(AreEqual(a, b, 0.25));
  EXPECT_FALSE(AreEqual(a, b, 0.125));
  EXPECT_FALSE(AreEqual(a, b));
  EXPECT_FALSE(AreEqual(a, V(L"(1.0 (2.0 (3.0 . 4.0)) 6)"), 2.0));
  EXPECT_TRUE(AreEqual(V(L"((1.0))"), V(L"((1.0000000005))")));
  EXPECT_FALSE(AreEqual(V(L"((1.0))"), V(L"((1.0))"), -1.0));
}

TEST_F(Equality, NumbersInListsMayBeOfDifferentTypes) {
  EXPECT_TRUE(AreEqual(ListOf({1, 2L, 3.0}), ListOf({1.0, 2, static_cast<__int64>(3)})));
}

// --- What is printed, and when ---

TEST_F(Equality, AtomsWithoutAComparisonPrintTheTypeOfTheFirst) {
  const Value dxf = Atom(Short(3, 62));
  EXPECT_FALSE(Value(3).Equal(dxf, 0.0));
  EXPECT_EQ(Printed(), CannotCompare("RTSHORT"));
  EXPECT_FALSE(dxf.Equal(3, 0.0));
  EXPECT_EQ(Printed(), "");
  EXPECT_FALSE(dxf.Eq(Atom(Short(3, 62))));
  EXPECT_EQ(Printed(), CannotCompare("<62>"));
  EXPECT_TRUE(Value(L"a") != Atom(NoValue(RTT)));
  EXPECT_EQ(Printed(), CannotCompare("RTSTR"));
  EXPECT_FALSE(CLOMAdsLisp::Equal(Atom(NoValue(RTT)), Atom(NoValue(RTT)), 0.0));
  EXPECT_EQ(Printed(), CannotCompare("<5021>"));
}

TEST_F(Equality, TheFirstDifferenceEndsTheComparison) {
  const Value dxf = Atom(Short(3, 62));
  EXPECT_FALSE(ListOf({1, dxf}).Equal(ListOf({2, Atom(Short(3, 62))}), 0.0));
  EXPECT_EQ(Printed(), "");
  EXPECT_FALSE(ListOf({dxf, dxf}).Equal(ListOf({Atom(Short(3, 62)), Atom(Short(3, 62))}), 0.0));
  EXPECT_EQ(Printed(), CannotCompare("<62>"));
  EXPECT_FALSE(ListOf({1, L"a"}).Equal(ListOf({Atom(Short(3, 62)), Atom(NoValue(RTT))}), 0.0));
  EXPECT_EQ(Printed(), CannotCompare("RTSHORT"));
}

TEST_F(Equality, MembersAreComparedToTheirDepthBeforeTheNextOne) {
  const Value dxf = Atom(Short(3, 62));
  // The second members differ silently, but what the first ones hold comes before them.
  EXPECT_FALSE(ListOf({ListOf({ListOf({L"a"})}), 1}).Equal(ListOf({ListOf({ListOf({dxf})}), 2}), 0.0));
  EXPECT_EQ(Printed(), CannotCompare("RTSTR"));
  EXPECT_FALSE(ListOf({ListOf({ListOf({1})}), 1}).Equal(ListOf({ListOf({ListOf({2})}), dxf}), 0.0));
  EXPECT_EQ(Printed(), "");
  // The first members are equal, so the second ones are reached.
  EXPECT_FALSE(ListOf({ListOf({1, 2}), 1.5}).Equal(ListOf({ListOf({1, 2}), dxf}), 0.0));
  EXPECT_EQ(Printed(), CannotCompare("RTREAL"));
}

TEST_F(Equality, KindsAndCountsComeBeforeTheMembers) {
  const Value dxf = Atom(Short(3, 62));
  EXPECT_FALSE(ListOf({1, 2}).Equal(ListOf({dxf}), 0.0));
  EXPECT_FALSE(ListOf({1}).Equal(Dotted({dxf}), 0.0));
  EXPECT_FALSE(ListOf({1}).Equal(dxf, 0.0));
  EXPECT_FALSE(ListOf({ListOf({1}), 2}).Equal(ListOf({ListOf({dxf}), 2, 3}), 0.0));
  EXPECT_FALSE(ListOf({1}).Eq(ListOf({dxf})));
  EXPECT_FALSE(Value().Equal(dxf, 0.0));
  EXPECT_EQ(Printed(), "");
}

// --- Eq ---

TEST_F(Equality, EqOfListsIsIdentity) {
  const Value list = V(L"(1 2)");
  EXPECT_TRUE(AreEq(list, Value(list)));
  EXPECT_FALSE(AreEq(list, V(L"(1 2)")));
  EXPECT_FALSE(AreEq(list, V(L"1")));
  EXPECT_FALSE(AreEq(V(L"1"), list));
  EXPECT_FALSE(AreEq(V(L"(1 . 2)"), V(L"(1 . 2)")));
  EXPECT_FALSE(AreEq(ListOf({Value()}), ListOf({Value()})));
  EXPECT_EQ(Printed(), "");
}

TEST_F(Equality, EqOfAtomsHasTheDefaultTolerance) {
  EXPECT_TRUE(AreEq(3.0, 3.0000000005));
  EXPECT_FALSE(AreEq(3.0, 3.000000002));
}

// --- Shared trees ---

TEST_F(Equality, TreesThatShareTheirMembersAreComparedOnce) {
  EXPECT_TRUE(AreEqual(Doubled(1), Doubled(1)));
  EXPECT_FALSE(AreEqual(Doubled(1), Doubled(2)));
  EXPECT_FALSE(AreEqual(Doubled(ListOf({1, 2})), Doubled(ListOf({1, 3}))));
  EXPECT_TRUE(AreEqual(Doubled(Dotted({1, 2})), Doubled(Dotted({1, 2}))));
  EXPECT_TRUE(AreEqual(Doubled(Value()), Doubled(Value())));
  EXPECT_FALSE(AreEqual(ListOf({Doubled(1.0), Doubled(1.0), 1}), ListOf({Doubled(1.0), Doubled(1.0), 2})));
  EXPECT_TRUE(AreEqual(ListOf({Doubled(1.0), 1}), ListOf({Doubled(1.25), 1}), 0.25));
}

TEST_F(Equality, ATreeThatSharesIsComparedAtOnceWithOneThatAlternates) {
  Value a(1), b(1), c(1);
  for (int i = 0; i < kSharedLevels; ++i) {
    const Value next = ListOf({b, c});
    c = ListOf({c, b});
    b = next;
    a = ListOf({a, a});
  }
  EXPECT_TRUE(AreEqual(a, b));
  EXPECT_TRUE(AreEqual(b, a));
  EXPECT_TRUE(AreEqual(b, c));
}

TEST_F(Equality, ATreeOfUnevenBranchesIsComparedAtOnce) {
  const auto fibonacci = [] {
    Value smaller(1), larger(2);
    for (int i = 0; i < 2 * kSharedLevels; ++i) {
      const Value next = Dotted({larger, smaller});
      smaller = larger;
      larger = next;
    }
    return larger;
  };
  EXPECT_TRUE(AreEqual(fibonacci(), fibonacci()));
}

TEST_F(Equality, WithinATolerancePairsDoNotChain) {
  const Value low = V(L"(1.0)"), middle = V(L"(1.25)"), high = V(L"(1.5)");
  // low is near middle and middle is near high, but low is not near high.
  EXPECT_TRUE(AreEqual(ListOf({low, middle}), ListOf({middle, high}), 0.25));
  EXPECT_FALSE(AreEqual(ListOf({low, middle, low}), ListOf({middle, high, high}), 0.25));
}

TEST_F(Equality, APairIsNotItsMirrorImage) {
  const Value flat = ListOf({Atom(Point(1, 2, 0, RTPOINT))});
  const Value solid = ListOf({Atom(Point(1, 2, 5))});
  EXPECT_TRUE(AreEqual(ListOf({flat, flat}), ListOf({solid, solid})));
  EXPECT_FALSE(AreEqual(ListOf({flat, solid}), ListOf({solid, flat})));
}

// --- Against a plain model ---

bool ModelEqual(const ConstElement& a, const ConstElement& b, double tol) {
  if (a == b) return true;
  if (a == nullptr || b == nullptr || a->Kind() != b->Kind()) return false;
  if (a->Kind() == CLOMLispElement::Atom) return a->atom.Equal(b->atom, tol) != 0;
  if (a->children.size() != b->children.size()) return false;
  for (size_t i = 0; i < a->children.size(); ++i)
    if (!ModelEqual(a->children[i], b->children[i], tol)) return false;
  return true;
}

// Values in layers: lists have members of the layers below them, which they share.
std::vector<Value> RandomValues(std::mt19937& random) {
  const auto below = [&random](size_t bound) { return static_cast<size_t>(random() % bound); };
  std::vector<Value> values = {
      1.0, 1.25, 1.5, 1, L"a", Value(), NilAtom(), Atom(Point(1, 2, 0, RTPOINT)), Atom(Point(1, 2, 5))};
  for (int layer = 0; layer < 4; ++layer) {
    const size_t lower = values.size();
    for (int i = 0; i < 12; ++i) {
      const Value list = ListOf({}, below(4) == 0);
      for (size_t count = below(4); count > 0; --count)
        list.New()->children.push_back(values[below(2) == 0 ? below(3) : below(lower)].New());
      values.push_back(list);
    }
  }
  return values;
}

TEST_F(Equality, AgreesWithAPlainComparisonOfEveryPair) {
  std::mt19937 random(20);
  int equalLists = 0;
  for (int round = 0; round < 10; ++round) {
    const std::vector<Value> values = RandomValues(random);
    for (const double tol : {0.0, 0.25})
      for (const Value& a : values)
        for (const Value& b : values) {
          const bool expected = ModelEqual(a.New(), b.New(), tol);
          ASSERT_EQ(a.Equal(b, tol), expected) << Tree(a) << " and " << Tree(b) << " within " << tol;
          if (expected && a.New() != b.New() && a.ListP()) ++equalLists;
        }
  }
  EXPECT_GT(equalLists, 100) << "the values are too different to tell anything";
}

// --- Deep and long values ---

TEST_F(Equality, DeepValuesNeedNoStack) {
  OnSmallStack([] {
    const Value deep = Nested(kLarge, 1);
    const Value same = Nested(kLarge, 1);
    EXPECT_TRUE(deep == same);
    EXPECT_FALSE(deep.Eq(same));
    EXPECT_FALSE(deep == Nested(kLarge, 2));
    EXPECT_FALSE(deep == CLOMAdsLisp::List(same));
    const Value chain = DottedChain(kLarge / 5, 2);
    EXPECT_TRUE(chain == DottedChain(kLarge / 5, 2));
    EXPECT_FALSE(chain == DottedChain(kLarge / 5, 3));
  });
}

TEST_F(Equality, LongValuesTakeLinearTime) {
  OnSmallStack([] {
    const Value a = Repeated(1, kLarge);
    const Value b = Repeated(1, kLarge);
    EXPECT_TRUE(a == b);
    b.New()->children.back() = Value(2).New();
    EXPECT_FALSE(a == b);
    // A long list of one and the same long list.
    EXPECT_TRUE(Repeated(a, kLarge) == Repeated(Repeated(1, kLarge), kLarge));
    EXPECT_FALSE(Repeated(a, kLarge) == Repeated(b, kLarge));
  });
}

}  // namespace
}  // namespace lomlisp::test::equality
