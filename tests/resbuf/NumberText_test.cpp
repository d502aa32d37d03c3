// Numbers as texts against the standard library's conversions.
#include <tests/support/HostTest.h>

#include <charconv>
#include <cmath>
#include <cstring>
#include <iterator>
#include <limits>
#include <random>
#include <string>

namespace lomlisp::test {
namespace {

std::string Printed(const ResBuf& record) {
  wchar_t text[400];
  record.Print(text, std::size(text));
  return Utf8(text);
}
std::string RealText(double value) { return Printed(ResBuf(value)); }
std::string StandardRealText(double value) {
  char text[400];
  return {text, std::to_chars(text, std::end(text), value, std::chars_format::fixed, 6).ptr};
}
std::string IntegerText(__int64 value) { return Printed(ResBuf(value)); }
double StandardReal(const std::string& text) {
  double value = 0.0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}
double Scanned(const std::string& text) {
  const CLOMAdsLispVar value(std::wstring(text.begin(), text.end()).c_str());
  return value.MakeFloat().GetAtom().resval.rreal;
}

class NumberText : public HostTest {
 protected:
  // Both signs, and the numbers on either side.
  static void ExpectStandardText(double value) {
    const double next = std::nextafter(value, std::numeric_limits<double>::infinity());
    for (const double each : {value, -value, next, -next}) ASSERT_EQ(RealText(each), StandardRealText(each));
  }
  template <class Integer>
  Integer Random() {
    return static_cast<Integer>(m_random());
  }

 private:
  std::mt19937_64 m_random{1};
};

TEST_F(NumberText, RealsOfAllExponentsAsTheStandardWritesThem) {
  for (int exponent = -1074; exponent < 1024; ++exponent) {
    ExpectStandardText(std::ldexp(1.0, exponent));
    ExpectStandardText(std::nextafter(std::ldexp(1.0, exponent), 0.0));
    for (int i = 0; i < 20; ++i)
      ExpectStandardText(
          std::ldexp(1.0 + std::ldexp(static_cast<double>(Random<uint32_t>()), -32), exponent));
  }
  for (const double value : {0.0, std::numeric_limits<double>::infinity(), std::nan("")}) {
    EXPECT_EQ(RealText(value), StandardRealText(value));
    EXPECT_EQ(RealText(-value), StandardRealText(-value));
  }
}

TEST_F(NumberText, RealsWithFewDecimalsAsTheStandardWritesThem) {
  for (unsigned int i = 0; i < Rounds(50'000); ++i) {
    const double digits = Random<int32_t>();
    for (const double divisor : {1.0, 10.0, 1e3, 1e6, 1e7, 1e9}) ExpectStandardText(digits / divisor);
  }
}

// Half a millionth is a number only in odd multiples of 1/128.
TEST_F(NumberText, BetweenTwoTextsTheEvenOneIsWritten) {
  EXPECT_EQ(RealText(1 / 128.0), "0.007812");
  EXPECT_EQ(RealText(3 / 128.0), "0.023438");
  EXPECT_EQ(RealText(-1 / 128.0), "-0.007812");
  for (unsigned int i = 0; i < Rounds(100'000); ++i)
    ExpectStandardText((2.0 * std::abs(static_cast<double>(Random<int32_t>())) + 1.0) / 128.0);
}

TEST_F(NumberText, Integers) {
  using Limits = std::numeric_limits<__int64>;
  for (const __int64 value : {0LL, 7LL, -7LL, 10LL, -32768LL, Limits::max(), Limits::min()})
    EXPECT_EQ(IntegerText(value), std::to_string(value));
  for (unsigned int i = 0; i < Rounds(100'000); ++i) {
    const __int64 value = Random<__int64>() >> (i % 64);
    ASSERT_EQ(IntegerText(value), std::to_string(value));
  }
}

TEST_F(NumberText, DecimalsAreReadAsTheStandardReadsThem) {
  for (unsigned int i = 0; i < Rounds(100'000); ++i) {
    std::string text = std::to_string(Random<uint64_t>() >> (i % 64));
    text.insert(Random<uint32_t>() % (text.size() + 1), ".");
    if (i % 3 == 0) text.insert(0, std::string(i % 7, '0'));
    if (i % 5 == 0) text += "e" + std::to_string(static_cast<int>(i % 40) - 20);
    ASSERT_EQ(Scanned(text), StandardReal(text)) << text;
    ASSERT_EQ(Scanned("-" + text), -StandardReal(text)) << text;
  }
}

TEST_F(NumberText, DecimalsOfOneToTwentyDigits) {
  for (size_t length = 1; length <= 20; ++length) {
    for (const char digit : {'1', '9'}) {
      const std::string digits(length, digit);
      for (size_t point = 0; point <= length; ++point) {
        std::string text = digits;
        text.insert(point, ".");
        EXPECT_EQ(Scanned(text), StandardReal(text)) << text;
      }
      EXPECT_EQ(Scanned(digits), StandardReal(digits)) << digits;
    }
  }
  EXPECT_EQ(Scanned("9007199254740993"), 9007199254740992.0);
  EXPECT_TRUE(std::signbit(Scanned("-0")));
}

}  // namespace
}  // namespace lomlisp::test
