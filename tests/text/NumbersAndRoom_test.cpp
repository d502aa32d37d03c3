// Numbers in texts that end within their exponent or go beyond what a real holds, and buffers without room.
#include <tests/support/HostTest.h>

#include <cmath>
#include <limits>

namespace lomlisp::test::numbers_and_room {
namespace {

class NumbersAndRoom : public HostTest {
 protected:
  static double Real(const wchar_t* text) {
    return static_cast<double>(CLOMAdsLispVar(text).MakeFloat().GetAtom());
  }
};

TEST_F(NumbersAndRoom, AnExponentWithoutDigitsIsNone) {
  for (const wchar_t* const text : {L"2.5e", L"2.5E+", L"2.5e-", L"2.5ex", L"2.5e+x"})
    EXPECT_EQ(Real(text), 2.5) << Utf8(text);
}

TEST_F(NumbersAndRoom, ARealOutOfRangeIsInfiniteOrZero) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(Real(L"1e+400"), kInfinity);
  EXPECT_EQ(Real(L"-1E400"), -kInfinity);
  EXPECT_EQ(Real(L"1e-400"), 0.0);
  EXPECT_EQ(Real(L"1e+99999999999999999999"), kInfinity);
  EXPECT_EQ(Real(L"1e-99999999999999999999"), 0.0);
  EXPECT_EQ(Real(L"0.000e+99999999999999999999"), 0.0);
  EXPECT_TRUE(std::signbit(Real(L"-0.000e+400")));
}

TEST_F(NumbersAndRoom, WhatIsPrintedBehindAFullBufferOnlyEndsIt) {
  wchar_t buffer[] = {L'a', L'b', L'c', L'd'};
  const CLOMAdsLispVar value(L"text");
  value.Print(value.New(), buffer, 4);
  EXPECT_STREQ(buffer, L"abc");
}

}  // namespace
}  // namespace lomlisp::test::numbers_and_room
