#include <tests/support/Chains.h>
#include <tests/support/SmallStack.h>

#include <cmath>
#include <limits>
#include <locale>
#include <vector>

namespace lomlisp::test {
namespace {

using Value = CLOMAdsLispVar;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kLargestReal = std::numeric_limits<double>::max();
constexpr double kSmallestReal = std::numeric_limits<double>::denorm_min();
constexpr __int64 kMin64 = std::numeric_limits<__int64>::min();

Value Atom(const resbuf& record) {
  Value atom(0);
  atom.GetAtom() = record;
  return atom;
}
Value Big(__int64 value) { return Value(value); }
Value NullText() { return Atom(String(nullptr)); }

// Everything that is neither a number nor a text.
std::vector<Value> OtherValues() {
  return {Value(),
          Atom(NoValue(RTNIL)),
          Atom(NoValue(RTNONE)),
          Atom(NoValue(RTT)),
          Atom(Real(1.5, RTANG)),
          Atom(Real(0.0, RTANG)),
          Atom(Name(31)),
          Atom(Name(31, RTPICKS)),
          Atom(Point(1, 2, 3)),
          Atom(Short(3, 62)),
          Atom(Real(2.5, 40)),
          Atom(String(L"yes", RTDXF0)),
          ListOf({}),
          ListOf({1}),
          ListOf({L"yes"}),
          ListOf({1, 2, 3, 4}),
          ListOf({1, L"2"}),
          ListOf({Value(), Value()}),
          Dotted({1, 2})};
}

struct Expectation {
  Value value;
  int result;
};
struct TextAsReal {
  const wchar_t* text;
  double result;
};

// A number with a comma instead of the point, and with grouped digits.
class CommaNumbers : public std::numpunct<wchar_t> {
  wchar_t do_decimal_point() const override { return L','; }
  wchar_t do_thousands_sep() const override { return L'.'; }
  std::string do_grouping() const override { return "\3"; }
};

class Coercions : public HostTest {
 protected:
  void TearDown() override {
    EXPECT_EQ(Printed(), "") << "coercions are silent";
    HostTest::TearDown();
  }

  static void ExpectReal(const Value& value, double expected) {
    ASSERT_TRUE(value.AtomP());
    EXPECT_EQ(value.GetAtom().Type(), RTREAL);
    EXPECT_EQ(value.GetAtom().resval.rreal, expected);
  }
  static double FloatOf(const std::wstring& text) {
    const Value real = Value(text).MakeFloat();
    EXPECT_EQ(real.GetAtom().Type(), RTREAL);
    return real.GetAtom().resval.rreal;
  }
  static std::string IntOf(const std::wstring& text) { return Tree(Value(text).MakeInt()); }
};

// --- MakeBool ---

TEST_F(Coercions, ATextIsTrueByItsFirstCharacter) {
  for (const wchar_t* const text : {L"y", L"Y", L"t", L"T", L"x", L"X", L"j", L"J", L"1", L"yes", L"Ja",
                                    L"ja", L"true", L"Tx", L"10", L"1.5", L"xno"})
    EXPECT_EQ(Tree(Value(text).MakeBool()), "5003:1") << Utf8(text);
  for (const wchar_t* const text : {L"", L" ", L" y", L"no", L"nein", L"0", L"01", L"2", L"-1", L"+1", L"on",
                                    L"wahr", L"f", L"\u00FD", L"\uFF11"})
    EXPECT_EQ(Tree(Value(text).MakeBool()), "5003:0") << Utf8(text);
  EXPECT_EQ(Tree(NullText().MakeBool()), "5003:0");
}

TEST_F(Coercions, ANumberIsTrueUnlessItIsZero) {
  for (const Expectation& each : {Expectation{0, 0},
                                  Expectation{1, 1},
                                  Expectation{-1, 1},
                                  Expectation{-32768, 1},
                                  Expectation{0L, 0},
                                  Expectation{65536L, 1},
                                  Expectation{-1L, 1},
                                  Expectation{Big(0), 0},
                                  Expectation{Big(1), 1},
                                  Expectation{Big(65536), 1},
                                  Expectation{Big(4294967296), 1},
                                  Expectation{Big(kMin64), 1},
                                  Expectation{0.0, 0},
                                  Expectation{-0.0, 0},
                                  Expectation{2.5, 1},
                                  Expectation{0.25, 1},
                                  Expectation{1e-300, 1},
                                  Expectation{kSmallestReal, 1},
                                  Expectation{kInfinity, 1},
                                  Expectation{kNaN, 1}})
    EXPECT_EQ(Tree(each.value.MakeBool()), "5003:" + std::to_string(each.result)) << Tree(each.value);
}

TEST_F(Coercions, EverythingElseIsFalse) {
  for (const Value& value : OtherValues()) EXPECT_EQ(Tree(value.MakeBool()), "5003:0") << Tree(value);
}

TEST_F(Coercions, ATruthValueIsANewAtom) {
  const Value one = 1;
  EXPECT_NE(one.MakeBool().New(), one.New());
  EXPECT_NE(one.MakeBool().New(), one.MakeBool().New());
}

// --- MakeInt ---

TEST_F(Coercions, AnIntegerIsSharedAsAnInteger) {
  for (const Value& value : {Value(7), Value(-32768), Big(7), Big(kMin64)})
    EXPECT_EQ(value.MakeInt().New(), value.New()) << Tree(value);
}

TEST_F(Coercions, ANumberIsTruncatedTowardZeroToTheLow16BitsOf32) {
  for (const Expectation& each : {
           Expectation{2.9, 2},
           Expectation{-2.9, -2},
           Expectation{0.9, 0},
           Expectation{-0.0, 0},
           Expectation{32767.5, 32767},
           Expectation{32768.0, -32768},
           Expectation{70000.7, 4464},
           Expectation{-70000.7, -4464},
           Expectation{2147483647.9, -1},
           Expectation{-2147483648.9, 0},
           Expectation{7L, 7},
           Expectation{70000L, 4464},
           Expectation{-1L, -1},
           Expectation{2147483647L, -1},
       }) {
    const Value integer = each.value.MakeInt();
    EXPECT_EQ(Tree(integer), "5003:" + std::to_string(each.result)) << Tree(each.value);
    EXPECT_NE(integer.New(), each.value.New());
  }
}

TEST_F(Coercions, ARealOutOfRangeIsTheSmallestInteger) {
  // Of the smallest integer of 32 bits only zeros are left in 16.
  for (const double real :
       {2147483648.0, 4294967297.0, -2147483649.0, 1e300, -1e300, kInfinity, -kInfinity, kNaN})
    EXPECT_EQ(Tree(Value(real).MakeInt()), "5003:0") << real;
}

TEST_F(Coercions, ATextWithoutPointAndCommaIsReadAsAnInteger) {
  struct Case {
    const wchar_t* text;
    int result;
  };
  for (const Case& each : {Case{L"42", 42},  Case{L"-42", -42},  Case{L"+42", 42},
                           Case{L"0", 0},    Case{L"-0", 0},     Case{L"0012", 12},
                           Case{L"010", 10}, Case{L"  42", 42},  Case{L" \t\n\v\f\r42", 42},
                           Case{L"42 ", 42}, Case{L"1 2", 1},    Case{L"12abc", 12},
                           Case{L"5-3", 5},  Case{L"1_000", 1},  Case{L"1'000", 1},
                           Case{L"1e3", 1},  Case{L"-1e3", -1},  Case{L"0x1F", 0},
                           Case{L"", 0},     Case{L" ", 0},      Case{L"+", 0},
                           Case{L"-", 0},    Case{L"--5", 0},    Case{L"+-5", 0},
                           Case{L"- 5", 0},  Case{L"abc", 0},    Case{L"a1", 0},
                           Case{L"(1)", 0},  Case{L"\uFF11", 0}, Case{L"7\u00E4", 7}})
    EXPECT_EQ(IntOf(each.text), "5003:" + std::to_string(each.result)) << Utf8(each.text);
  EXPECT_EQ(Tree(NullText().MakeInt()), "5003:0");
}

TEST_F(Coercions, AnIntegerInATextSaturatesAt32BitsOfWhich16Stay) {
  struct Case {
    const wchar_t* text;
    int result;
  };
  for (const Case& each :
       {Case{L"32767", 32767}, Case{L"32768", -32768}, Case{L"-32769", 32767}, Case{L"65535", -1},
        Case{L"65536", 0}, Case{L"70000", 4464}, Case{L"-70000", -4464}, Case{L"2147483646", -2},
        Case{L"2147483647", -1}, Case{L"2147483648", -1}, Case{L"4294967297", -1},
        Case{L"9223372036854775808", -1}, Case{L"99999999999999999999", -1}, Case{L"-2147483647", 1},
        Case{L"-2147483648", 0}, Case{L"-2147483649", 0}, Case{L"-4294967297", 0},
        Case{L"-99999999999999999999", 0}, Case{L"0000000000000000000000000000000007", 7}})
    EXPECT_EQ(IntOf(each.text), "5003:" + std::to_string(each.result)) << Utf8(each.text);
}

TEST_F(Coercions, ATextWithAPointOrACommaIsReadAsARealAndTruncated) {
  struct Case {
    const wchar_t* text;
    int result;
  };
  for (const Case& each :
       {Case{L"12.9", 12},     Case{L"-12.9", -12},      Case{L"+12.9", 12},    Case{L"1.5e3", 1500},
        Case{L"1.5E+3", 1500}, Case{L"1500.0e-2", 15},   Case{L"3,7", 3},       Case{L"-3,7", -3},
        Case{L"1e2,5", 100},   Case{L"1e3.", 1000},      Case{L"7,", 7},        Case{L"7.", 7},
        Case{L"1.e2", 100},    Case{L".5", 0},           Case{L"-.5e1", -5},    Case{L"1.5.2", 1},
        Case{L" \t-1.5", -1},  Case{L"12.9abc", 12},     Case{L",5", 0},        Case{L".", 0},
        Case{L"-.", 0},        Case{L".e2", 0},          Case{L"abc1.5", 0},    Case{L"- 1.5", 0},
        Case{L"0x1F.8", 0},    Case{L"32768.0", -32768}, Case{L"70000.5", 4464}})
    EXPECT_EQ(IntOf(each.text), "5003:" + std::to_string(each.result)) << Utf8(each.text);
}

TEST_F(Coercions, ARealInATextThatIsOutOfRangeDoesNotSaturate) {
  EXPECT_EQ(IntOf(L"2147483647.9"), "5003:-1");
  EXPECT_EQ(IntOf(L"2147483648.0"), "5003:0");
  EXPECT_EQ(IntOf(L"4294967297,"), "5003:0");
  EXPECT_EQ(IntOf(L"-2147483649.0"), "5003:0");
  EXPECT_EQ(IntOf(L"1.5e10"), "5003:0");
  EXPECT_EQ(IntOf(L"1.0e400"), "5003:0");
  EXPECT_EQ(IntOf(L"-1.0e400"), "5003:0");
}

TEST_F(Coercions, EverythingElseIsTheIntegerZero) {
  for (const Value& value : OtherValues()) EXPECT_EQ(Tree(value.MakeInt()), "5003:0") << Tree(value);
}

// --- MakeFloat ---

TEST_F(Coercions, ARealIsSharedAsAReal) {
  for (const Value& value : {Value(2.5), Value(kNaN), Value(70000L), Big(7)})
    EXPECT_EQ(value.MakeFloat().New(), value.New()) << Tree(value);
}

TEST_F(Coercions, AShortIntegerBecomesANewReal) {
  ExpectReal(Value(7).MakeFloat(), 7.0);
  ExpectReal(Value(-32768).MakeFloat(), -32768.0);
}

TEST_F(Coercions, ATextIsReadAsAReal) {
  for (const TextAsReal& each : {
           TextAsReal{L"12.9", 12.9},     TextAsReal{L"-12.9", -12.9},   TextAsReal{L"+12.9", 12.9},
           TextAsReal{L"42", 42.0},       TextAsReal{L"70000", 70000.0}, TextAsReal{L"1e3", 1000.0},
           TextAsReal{L"1E3", 1000.0},    TextAsReal{L"1e+3", 1000.0},   TextAsReal{L"-1.5e-3", -0.0015},
           TextAsReal{L"1e0003", 1000.0}, TextAsReal{L".5", 0.5},        TextAsReal{L"5.", 5.0},
           TextAsReal{L"-.5", -0.5},      TextAsReal{L"1.e2", 100.0},    TextAsReal{L"0012.50", 12.5},
           TextAsReal{L"0.1", 0.1},       TextAsReal{L"3,7", 3.0},       TextAsReal{L"1.000,5", 1.0},
           TextAsReal{L"1.5.2", 1.5},     TextAsReal{L"  7.5", 7.5},     TextAsReal{L" \t\n\v\f\r7.5", 7.5},
           TextAsReal{L"7.5 ", 7.5},      TextAsReal{L"7.5abc", 7.5},    TextAsReal{L"1.5-2", 1.5},
           TextAsReal{L"1 2", 1.0},       TextAsReal{L"1e2e3", 100.0},   TextAsReal{L"1e2.5", 100.0},
       })
    EXPECT_EQ(FloatOf(each.text), each.result) << Utf8(each.text);
}

TEST_F(Coercions, ATextThatDoesNotBeginWithADecimalNumberIsZero) {
  for (const wchar_t* const text :
       {L"",   L" ",  L"abc", L"a1",    L".",    L"-",   L"+",    L"-.",       L"+-1", L"--1",     L"- 1",
        L",5", L"e3", L".e3", L"(1.5)", L"0x1F", L"inf", L"-inf", L"infinity", L"nan", L"\uFF11.5"})
    EXPECT_EQ(FloatOf(text), 0.0) << Utf8(text);
  ExpectReal(NullText().MakeFloat(), 0.0);
}

TEST_F(Coercions, ARealInATextIsRoundedToTheNearest) {
  for (const TextAsReal& each : {
           TextAsReal{L"9007199254740993", 9007199254740992.0},
           TextAsReal{L"9007199254740993.0000000001", 9007199254740994.0},
           TextAsReal{L"123456789012345678901234567890", 123456789012345678901234567890.0},
           TextAsReal{L"0.30000000000000004", 0.1 + 0.2},
           TextAsReal{L"1.7976931348623157e308", kLargestReal},
           TextAsReal{L"1.7976931348623158e308", kLargestReal},
           TextAsReal{L"2.2250738585072014e-308", std::numeric_limits<double>::min()},
           TextAsReal{L"4.9e-324", kSmallestReal},
           TextAsReal{L"2.4703282292062328e-324", kSmallestReal},
       })
    EXPECT_EQ(FloatOf(each.text), each.result) << Utf8(each.text);
}

TEST_F(Coercions, ARealInATextOverflowsToInfinityAndUnderflowsToZero) {
  for (const TextAsReal& each : {
           TextAsReal{L"1.7976931348623159e308", kInfinity},
           TextAsReal{L"1e400", kInfinity},
           TextAsReal{L"-1e400", -kInfinity},
           TextAsReal{L"1e99999999999999999999", kInfinity},
           TextAsReal{L"2.4703282292062327e-324", 0.0},
           TextAsReal{L"1e-400", 0.0},
           TextAsReal{L"-1e-400", 0.0},
           TextAsReal{L"1e-99999999999999999999", 0.0},
           TextAsReal{L"0e400", 0.0},
           TextAsReal{L"0.000e99999999999999999999", 0.0},
       })
    EXPECT_EQ(FloatOf(each.text), each.result) << Utf8(each.text);
}

TEST_F(Coercions, ZeroInATextKeepsItsSign) {
  EXPECT_TRUE(std::signbit(FloatOf(L"-0")));
  EXPECT_TRUE(std::signbit(FloatOf(L"-0.0e5")));
  EXPECT_FALSE(std::signbit(FloatOf(L"0")));
}

TEST_F(Coercions, EverythingElseIsTheRealZero) {
  for (const Value& value : OtherValues()) {
    SCOPED_TRACE(Tree(value));
    ExpectReal(value.MakeFloat(), 0.0);
  }
}

// --- Long texts ---

TEST_F(Coercions, LongNumbersInTextsTakeLinearTime) {
  const std::wstring zeros(kLarge, L'0'), nines(kLarge, L'9'), blanks(kLarge, L' ');
  const std::wstring length = std::to_wstring(kLarge), oneMore = std::to_wstring(kLarge + 1);

  EXPECT_EQ(IntOf(nines), "5003:-1");
  EXPECT_EQ(IntOf(L"-" + nines), "5003:0");
  EXPECT_EQ(IntOf(zeros + L"7"), "5003:7");
  EXPECT_EQ(IntOf(blanks + L"7" + blanks), "5003:7");
  EXPECT_EQ(IntOf(zeros + L"7.9" + zeros), "5003:7");
  EXPECT_EQ(IntOf(blanks), "5003:0");

  EXPECT_EQ(FloatOf(nines), kInfinity);
  EXPECT_EQ(FloatOf(L"0." + zeros + L"1"), 0.0);
  EXPECT_EQ(FloatOf(zeros + L"1.5"), 1.5);
  EXPECT_EQ(FloatOf(L"1.5" + zeros), 1.5);
  EXPECT_EQ(FloatOf(L"0." + nines), 1.0);
  EXPECT_EQ(FloatOf(L"0." + zeros + L"1e" + oneMore), 1.0);
  EXPECT_EQ(FloatOf(L"1" + zeros + L"e-" + length), 1.0);
  EXPECT_EQ(FloatOf(L"1e" + nines), kInfinity);
  EXPECT_EQ(FloatOf(L"1e-" + nines), 0.0);
  EXPECT_EQ(FloatOf(L"1e" + zeros + L"2"), 100.0);
  // The last of very many digits decides on which side of the middle the number lies.
  EXPECT_EQ(FloatOf(L"9007199254740993." + zeros), 9007199254740992.0);
  EXPECT_EQ(FloatOf(L"9007199254740993." + zeros + L"1"), 9007199254740994.0);
}

// --- MakeString ---

TEST_F(Coercions, ATextIsSharedAsAText) {
  for (const Value& value : {Value(L"ab"), Value(L""), NullText()})
    EXPECT_EQ(value.MakeString().New(), value.New());
}

TEST_F(Coercions, AnIntegerIsWrittenWithItsLow32Bits) {
  EXPECT_EQ(Tree(Value(42).MakeString()), "5005:42");
  EXPECT_EQ(Tree(Value(0).MakeString()), "5005:0");
  EXPECT_EQ(Tree(Value(-32768).MakeString()), "5005:-32768");
  EXPECT_EQ(Tree(Big(100000).MakeString()), "5005:100000");
  EXPECT_EQ(Tree(Big(5000000000).MakeString()), "5005:705032704");
  EXPECT_EQ(Tree(Big(4294967295).MakeString()), "5005:-1");
  EXPECT_EQ(Tree(Big(kMin64).MakeString()), "5005:0");
}

TEST_F(Coercions, ARealIsWrittenAsTheShortestText) {
  struct Case {
    Value value;
    const char* text;
  };
  for (const Case& each :
       {Case{2.5, "2.5"}, Case{3.0, "3"}, Case{0.1, "0.1"}, Case{-0.0, "-0"},
        Case{0.1 + 0.2, "0.30000000000000004"}, Case{1e300, "1e+300"}, Case{kInfinity, "inf"},
        Case{-kInfinity, "-inf"}, Case{7L, "7"}, Case{-70001L, "-70001"}, Case{2147483647L, "2147483647"}})
    EXPECT_EQ(Tree(each.value.MakeString()), std::string("5005:") + each.text);
}

TEST_F(Coercions, APointIsWrittenWithThreeCoordinatesOfSixDecimals) {
  struct Case {
    Value value;
    const char* text;
  };
  for (const Case& each : {
           Case{ListOf({1, 2, 3}), "(1.000000 2.000000 3.000000)"},
           Case{ListOf({1, 2}), "(1.000000 2.000000 0.000000)"},
           Case{ListOf({1.5, -2L, Big(3)}), "(1.500000 -2.000000 3.000000)"},
           Case{ListOf({-0.0, 0.0000004, -0.0000004}), "(-0.000000 0.000000 -0.000000)"},
           Case{ListOf({0.9999996, 1e22, 2.25}), "(1.000000 10000000000000000000000.000000 2.250000)"},
       })
    EXPECT_EQ(Tree(each.value.MakeString()), std::string("5005:") + each.text);
}

TEST_F(Coercions, APointOfTheLargestRealsIsWrittenWhole) {
  const std::wstring text =
      ListOf({kLargestReal, -kLargestReal, kLargestReal}).MakeString().GetAtom().resval.rstring;
  EXPECT_EQ(text.size(), 953U);  // 309 digits before and 6 behind each point
  EXPECT_EQ(text.substr(0, 18), L"(17976931348623157");
  EXPECT_EQ(text.substr(946), L"000000)");
}

TEST_F(Coercions, EverythingElseIsTheEmptyText) {
  for (const Value& value : OtherValues()) EXPECT_EQ(Tree(value.MakeString()), "5005:") << Tree(value);
}

TEST_F(Coercions, TheGlobalLocaleMakesNoDifference) {
  const std::locale before = std::locale::global(std::locale(std::locale::classic(), new CommaNumbers));
  const double fromText = FloatOf(L"1234.5"), withComma = FloatOf(L"3,7");
  const std::wstring integer = Value(12345).MakeString().GetAtom().resval.rstring;
  const std::wstring real = Value(12345.5).MakeString().GetAtom().resval.rstring;
  const std::wstring point = ListOf({1234.5, 2}).MakeString().GetAtom().resval.rstring;
  std::locale::global(before);

  EXPECT_EQ(fromText, 1234.5);
  EXPECT_EQ(withComma, 3.0);
  EXPECT_EQ(integer, L"12345");
  EXPECT_EQ(real, L"12345.5");
  EXPECT_EQ(point, L"(1234.500000 2.000000 0.000000)");
}

// --- MakeMaximum and MakeMinimum ---

TEST_F(Coercions, WithARealBothBecomeReal) {
  struct Case {
    Value a, b;
    double greater, smaller;
  };
  const Value list = ListOf({1, 2});
  for (const Case& each :
       {Case{1.5, 2.5, 2.5, 1.5}, Case{2.5, 1.5, 2.5, 1.5}, Case{2.5, 2.5, 2.5, 2.5}, Case{3, 2.5, 3.0, 2.5},
        Case{2.5, 3, 3.0, 2.5}, Case{70000L, 3, 70000.0, 3.0}, Case{3, 70000L, 70000.0, 3.0},
        Case{70000L, 70001L, 70001.0, 70000.0}, Case{Big(5), 4, 5.0, 4.0}, Case{4, Big(-5), 4.0, -5.0},
        Case{2.0, L"7.5", 7.5, 2.0}, Case{L"7.5abc", 2.0, 7.5, 2.0}, Case{2.0, L"abc", 2.0, 0.0},
        Case{-2.0, Value(), 0.0, -2.0}, Case{Value(), -2.0, 0.0, -2.0}, Case{list, 2.0, 2.0, 0.0},
        Case{-kInfinity, kInfinity, kInfinity, -kInfinity}}) {
    SCOPED_TRACE(Tree(each.a) + " and " + Tree(each.b));
    ExpectReal(each.a.MakeMaximum(each.b), each.greater);
    ExpectReal(each.a.MakeMinimum(each.b), each.smaller);
  }
}

TEST_F(Coercions, TheGreaterRealIsANewOneWhateverItsType) {
  for (const Value& value : {Value(2.5), Value(70000L), Big(5)}) {
    const Value greater = value.MakeMaximum(value), smaller = value.MakeMinimum(value);
    EXPECT_EQ(greater.GetAtom().Type(), RTREAL);
    EXPECT_EQ(smaller.GetAtom().Type(), RTREAL);
    EXPECT_NE(greater.New(), value.New());
    EXPECT_NE(smaller.New(), value.New());
  }
}

TEST_F(Coercions, LargeIntegersAreComparedAsReals) {
  const Value odd = Big(9007199254740993);
  ExpectReal(odd.MakeMaximum(1), 9007199254740992.0);
  ExpectReal(Value(1).MakeMinimum(odd), 1.0);
}

TEST_F(Coercions, OfTwoRealsWithoutADifferenceTheOtherOneCounts) {
  EXPECT_TRUE(std::signbit(Value(0.0).MakeMaximum(-0.0).GetAtom().resval.rreal));
  EXPECT_TRUE(std::signbit(Value(0.0).MakeMinimum(-0.0).GetAtom().resval.rreal));
  EXPECT_FALSE(std::signbit(Value(-0.0).MakeMaximum(0.0).GetAtom().resval.rreal));
  ExpectReal(Value(kNaN).MakeMaximum(1.0), 1.0);
  ExpectReal(Value(kNaN).MakeMinimum(1.0), 1.0);
  EXPECT_TRUE(std::isnan(Value(1.0).MakeMaximum(kNaN).GetAtom().resval.rreal));
  EXPECT_TRUE(std::isnan(Value(1.0).MakeMinimum(kNaN).GetAtom().resval.rreal));
}

TEST_F(Coercions, WithAnIntegerAndNoRealBothBecomeIntegers) {
  struct Case {
    Value a, b;
    int greater, smaller;
  };
  for (const Case& each : {Case{1, 2, 2, 1}, Case{2, 1, 2, 1}, Case{2, 2, 2, 2}, Case{-3, -4, -3, -4},
                           Case{3, L"7", 7, 3}, Case{L"7", 3, 7, 3}, Case{3, L"7.9", 7, 3},
                           Case{3, L"70000", 4464, 3}, Case{3, L"40000", 3, -25536}, Case{3, L"abc", 3, 0},
                           Case{-3, Value(), 0, -3}, Case{Value(), -3, 0, -3}, Case{3, ListOf({7, 8}), 3, 0},
                           Case{Atom(Name(31)), 3, 3, 0}, Case{3, Atom(Real(9.5, RTANG)), 3, 0}}) {
    SCOPED_TRACE(Tree(each.a) + " and " + Tree(each.b));
    EXPECT_EQ(Tree(each.a.MakeMaximum(each.b)), "5003:" + std::to_string(each.greater));
    EXPECT_EQ(Tree(each.a.MakeMinimum(each.b)), "5003:" + std::to_string(each.smaller));
  }
}

TEST_F(Coercions, WithATextAndNoNumberTheirLengthsCount) {
  struct Case {
    Value a, b;
    const char *longer, *shorter;
  };
  const Value point = ListOf({1, 2, 3});
  for (const Case& each :
       {Case{L"abc", L"zz", "abc", "zz"}, Case{L"zz", L"abc", "abc", "zz"},
        Case{L"abc", L"xyz", "abc", "abc"}, Case{L"xyz", L"abc", "xyz", "xyz"}, Case{L"10", L"9", "10", "9"},
        Case{L"", L"a", "a", ""}, Case{L"abc", Value(), "abc", ""}, Case{Value(), L"abc", "abc", ""},
        Case{Value(), L"", "", ""}, Case{L"abc", ListOf({}), "abc", ""},
        Case{Atom(Name(31)), L"abc", "abc", ""}, Case{L"abc", point, "(1.000000 2.000000 3.000000)", "abc"},
        Case{point, L"abc", "(1.000000 2.000000 3.000000)", "abc"}}) {
    SCOPED_TRACE(Tree(each.a) + " and " + Tree(each.b));
    EXPECT_EQ(Tree(each.a.MakeMaximum(each.b)), std::string("5005:") + each.longer);
    EXPECT_EQ(Tree(each.a.MakeMinimum(each.b)), std::string("5005:") + each.shorter);
  }
}

TEST_F(Coercions, ANullTextCountsAsEmptyAgainstATextAndAsZeroAgainstANumber) {
  EXPECT_EQ(Tree(NullText().MakeMaximum(L"a")), "5005:a");
  EXPECT_EQ(Tree(Value(L"a").MakeMaximum(NullText())), "5005:a");
  EXPECT_EQ(Text(NullText().MakeMinimum(L"a")), "\"\"");
  EXPECT_EQ(Text(Value(L"a").MakeMinimum(NullText())), "\"\"");
  EXPECT_EQ(Tree(NullText().MakeMaximum(-3)), "5003:0");
  ExpectReal(Value(-2.5).MakeMaximum(NullText()), 0.0);
}

TEST_F(Coercions, WithoutANumberOrATextTheFirstIsShared) {
  for (const Value& a : OtherValues())
    for (const Value& b : OtherValues()) {
      EXPECT_EQ(a.MakeMaximum(b).New(), a.New()) << Tree(a) << " and " << Tree(b);
      EXPECT_EQ(a.MakeMinimum(b).New(), a.New()) << Tree(a) << " and " << Tree(b);
    }
}

TEST_F(Coercions, AValueMayBeComparedWithItself) {
  const Value text = L"ab";
  EXPECT_EQ(Tree(text.MakeMaximum(text)), "5005:ab");
  EXPECT_EQ(Tree(Value(7).MakeMinimum(7)), "5003:7");
  const Value list = ListOf({1});
  EXPECT_EQ(list.MakeMaximum(list).New(), list.New());
}

// --- All of them ---

TEST_F(Coercions, TheValueItselfIsNeverChanged) {
  std::vector<Value> values = OtherValues();
  for (const Value& value :
       {Value(7), Value(2.5), Value(70000L), Big(7), Value(L"7"), ListOf({1, 2}), NullText()})
    values.push_back(value);
  for (const Value& value : values) {
    const auto node = value.New();
    const std::string tree = Tree(value);
    value.MakeBool();
    value.MakeInt();
    value.MakeFloat();
    value.MakeString();
    for (const Value& other : {Value(1), Value(1.5), Value(L"other"), Value()}) {
      value.MakeMaximum(other);
      value.MakeMinimum(other);
    }
    EXPECT_EQ(value.New(), node);
    EXPECT_EQ(Tree(value), tree);
  }
}

TEST_F(Coercions, WithoutMemoryATextStaysNull) {
  const Value point = ListOf({1, 2, 3});
  const std::string written = "5005:(1.000000 2.000000 3.000000)";
  FailEachAllocation([] { return Tree(Value(42).MakeString()) == "5005:42"; });
  FailEachAllocation([] { return Tree(Value(2.5).MakeString()) == "5005:2.5"; });
  FailEachAllocation([&] { return Tree(point.MakeString()) == written; });
  FailEachAllocation([&] { return Tree(point.MakeMaximum(L"a")) == written; });
}

TEST_F(Coercions, DeepAndLongValuesNeedNoStack) {
  OnSmallStack([] {
    const Value text = std::wstring(kLarge, L'x');
    Value list = ListOf({});
    for (int i = 0; i < kLarge; ++i) list.New()->children.push_back(Value(1).New());
    for (const Value& value : {Nested(kLarge, 1), list}) {
      EXPECT_EQ(Tree(value.MakeBool()), "5003:0");
      EXPECT_EQ(Tree(value.MakeInt()), "5003:0");
      ExpectReal(value.MakeFloat(), 0.0);
      EXPECT_EQ(Tree(value.MakeString()), "5005:");
      EXPECT_EQ(value.MakeMaximum(value).New(), value.New());
      EXPECT_EQ(Tree(value.MakeMinimum(L"a")), "5005:");
    }
    EXPECT_EQ(Tree(text.MakeBool()), "5003:1");
    EXPECT_EQ(text.MakeString().New(), text.New());
    EXPECT_EQ(Tree(text.MakeMinimum(L"a")), "5005:a");
    EXPECT_EQ(Tree(text.MakeMaximum(L"a")), Tree(text));
  });
}

}  // namespace
}  // namespace lomlisp::test
