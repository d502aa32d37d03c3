#include <tests/support/HostTest.h>

#include <chrono>
#include <limits>

namespace lomlisp::test {
namespace {

using embedded::Chain;
using embedded::FromText;
using embedded::ToText;

std::string RoundTrip(std::wstring_view text) {
  std::string error;
  const auto chain = FromText(text, error);
  return chain ? Utf8(ToText(*chain)) : "error: " + error;
}

Chain Read(std::wstring_view text) {
  std::string error;
  const auto chain = FromText(text, error);
  EXPECT_TRUE(chain) << error;
  return chain.value_or(Chain());
}

TEST(ChainText, ItemsReadAndPrintAlike) {
  for (const wchar_t* text : {L"",
                              L"1",
                              L"-32768",
                              L"2147483647",
                              L"2.5",
                              L"-0.5",
                              L"1e+20",
                              L"1.0",
                              L"T",
                              L"nil",
                              L"()",
                              L"(1 2)",
                              L"(())",
                              L"(nil)",
                              L"(1 . 2)",
                              L"(1 2 . 3)",
                              L"(1 . (2 . 3))",
                              L"((1 . 2) (3 . 4) 5)",
                              L"\"text\"",
                              L"\"\"",
                              L"1 2.5 (\"a\" . nil)",
                              L"<Entity name: 1f>",
                              L"<Selection set: ffffffffffffffff>"})
    EXPECT_EQ(RoundTrip(text), Utf8(text));
}

TEST(ChainText, IntegersAreOfTheSmallestTypeThatHoldsThem) {
  EXPECT_EQ(Read(L"32767")[0].type, RTSHORT);
  EXPECT_EQ(Read(L"-32768")[0].value.rint, -32768);
  EXPECT_EQ(Read(L"32768")[0].type, RTLONG);
  EXPECT_EQ(Read(L"-32769")[0].value.rlong, -32769);
  EXPECT_EQ(Read(L"+2147483647")[0].value.rlong, 2147483647);
  EXPECT_EQ(Read(L"-2147483648")[0].value.rlong, std::numeric_limits<int32_t>::min());
  EXPECT_EQ(Read(L"2147483648")[0].type, RTREAL);
  EXPECT_EQ(Read(L"2147483648")[0].value.rreal, 2147483648.0);
  EXPECT_EQ(Read(L"99999999999999999999")[0].value.rreal, 1e20);
}

TEST(ChainText, RealsHaveAPointOrAnExponent) {
  for (const wchar_t* text : {L"2.5", L"+2.5", L"25e-1", L"2.5E0", L"0.25e1"}) {
    ASSERT_EQ(Read(text).size(), 1U);
    EXPECT_EQ(Read(text)[0].type, RTREAL);
    EXPECT_EQ(Read(text)[0].value.rreal, 2.5);
  }
  EXPECT_EQ(Read(L"1.")[0].type, RTREAL);
  EXPECT_EQ(Read(L".5")[0].value.rreal, 0.5);
  EXPECT_EQ(Read(L"-.5")[0].value.rreal, -0.5);
}

TEST(ChainText, RealsPrintAsRealsThatReadBack) {
  EXPECT_EQ(RoundTrip(L"3.0"), "3.0");
  EXPECT_EQ(RoundTrip(L"0.1"), "0.1");
  EXPECT_EQ(RoundTrip(L"1e300"), "1e+300");
  EXPECT_EQ(RoundTrip(L"0.30000000000000004"), "0.30000000000000004");
}

TEST(ChainText, EscapesReadAndPrint) {
  EXPECT_EQ(Read(LR"("\"\\\n\t\r\e\101\7")")[0].text,
            L"\"\\\n\t\r\x1B"
            L"A\7");
  EXPECT_EQ(RoundTrip(LR"("a\"\\\n\t\r\e\001\037b")"), R"("a\"\\\n\t\r\e\001\037b")");
  EXPECT_EQ(Read(LR"("\1011")")[0].text, L"A1");
}

TEST(ChainText, BlanksCommentsAndQuotesAreSkipped) {
  EXPECT_EQ(RoundTrip(L" \t\n1;one\n  ; two\n2 ; three"), "1 2");
  EXPECT_EQ(RoundTrip(L"'1 '(1 '2 ''(3)) '()"), "1 (1 2 (3)) ()");
  EXPECT_EQ(RoundTrip(L"(1\"a\"(2)'3)"), "(1 \"a\" (2) 3)");
}

TEST(ChainText, TAndNilReadInAnyCase) {
  EXPECT_EQ(Read(L"t")[0].type, RTT);
  EXPECT_EQ(Read(L"NIL")[0].type, RTNIL);
  EXPECT_EQ(Read(L"()")[0].type, RTLB);
}

TEST(ChainText, WhatIsNoItemIsNamedWithItsPlace) {
  EXPECT_EQ(RoundTrip(L"(1 foo)"), "error: the symbol FOO is no value (at character 4)");
  EXPECT_EQ(RoundTrip(L"'foo"), "error: the symbol FOO is no value (at character 2)");
  EXPECT_EQ(RoundTrip(L"1 2)"), "error: an end of a list without its beginning (at character 4)");
  EXPECT_EQ(RoundTrip(L"(1 (2)"), "error: a list that does not end (at character 7)");
  EXPECT_EQ(RoundTrip(L"\"text"), "error: a text that does not end (at character 1)");
  EXPECT_EQ(RoundTrip(L"1 . 2"), "error: a dot outside a list (at character 3)");
  EXPECT_EQ(RoundTrip(L"(. 2)"), "error: a dot with nothing before it (at character 2)");
  EXPECT_EQ(RoundTrip(L"(1 .)"), "error: a dot with nothing behind it (at character 5)");
  EXPECT_EQ(RoundTrip(L"(1 . 2 . 3)"), "error: a second dot in a list (at character 8)");
  EXPECT_EQ(RoundTrip(L"(1 . 2 3)"), "error: a second item behind a dot (at character 8)");
  EXPECT_EQ(RoundTrip(L"(1 ')"), "error: a quote with nothing behind it (at character 5)");
  EXPECT_EQ(RoundTrip(L"'"), "error: a quote with nothing behind it (at character 2)");
  EXPECT_EQ(RoundTrip(L"1e999"), "error: a number out of range (at character 1)");
  EXPECT_EQ(RoundTrip(L"\"\\q\""), "error: an unknown escape in a text (at character 1)");
  EXPECT_EQ(RoundTrip(L"\"\\000\""), "error: an unknown escape in a text (at character 1)");
  EXPECT_EQ(RoundTrip(L"<Entity name: 1g>"), "error: a name that is not written in full (at character 1)");
  EXPECT_EQ(RoundTrip(L"<Entity name: 1f"), "error: a name that is not written in full (at character 1)");
  EXPECT_EQ(RoundTrip(L"1.5.2"), "error: the symbol 1.5.2 is no value (at character 1)");
  EXPECT_EQ(RoundTrip(L"1e"), "error: the symbol 1E is no value (at character 1)");
}

class ChainTextTest : public HostTest {};

TEST_F(ChainTextTest, PairsInEitherFormPrintAlike) {
  resbuf* chain = acutBuildList(RTLB, RTSHORT, 1, RTSHORT, 2, RTDOTE, 0);
  EXPECT_EQ(Text(chain), "(1 . 2)");
  acutRelRb(chain);
  chain = acutBuildList(RTLB, RTSHORT, 1, RTLB, RTSHORT, 2, RTLE, RTDOTE, RTSHORT, 3, 0);
  EXPECT_EQ(Text(chain), "(1 . (2)) 3");
  acutRelRb(chain);
  chain = acutBuildList(RTLB, RTLB, RTSHORT, 1, RTLB, RTLE, RTDOTE, RTLB, RTSHORT, 3, RTSHORT, 4, RTDOTE,
                        RTDOTE, 0);
  EXPECT_EQ(Text(chain), "((1 . ()) . (3 . 4))");
  acutRelRb(chain);
}

TEST_F(ChainTextTest, BrokenChainsPrintAsTheyStand) {
  resbuf* chain = acutBuildList(RTSHORT, 1, RTDOTE, RTSHORT, 2, RTLE, RTLB, RTNONE, 0);
  EXPECT_EQ(Text(chain), "1 . 2) (nil");
  chain->restype = 5025;
  EXPECT_EQ(Text(chain), "<type 5025> . 2) (nil");
  acutRelRb(chain);
}

TEST_F(ChainTextTest, AMillionLevelsAndItemsReadAndPrint) {
  constexpr size_t kCount = kLarge;
  const std::wstring deep = std::wstring(kCount, L'(') + L"1" + std::wstring(kCount, L')');
  EXPECT_TRUE(ToText(Read(deep)) == deep);
  std::wstring wide = L"(";
  for (size_t count = 0; count < kCount; ++count) wide += L"1 ";
  wide.back() = L')';
  EXPECT_TRUE(ToText(Read(wide)) == wide);
  std::wstring pairs;
  for (size_t count = 0; count < kCount / 4; ++count) pairs += L"(1 . ";
  pairs += L"2" + std::wstring(kCount / 4, L')');
  EXPECT_TRUE(ToText(Read(pairs)) == pairs);
}

}  // namespace
}  // namespace lomlisp::test
