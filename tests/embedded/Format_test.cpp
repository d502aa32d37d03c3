#include <embedded/Format.h>
#include <tests/support/HostTest.h>

#include <clocale>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <limits>

namespace lomlisp::test {
namespace {

std::string Format(const wchar_t* format, ...) {
  std::wstring text;
  std::va_list arguments;
  va_start(arguments, format);
  embedded::AppendFormatted(text, format, arguments);
  va_end(arguments);
  return Utf8(text);
}

TEST(Format, TextWithoutDirectivesIsCopied) {
  EXPECT_EQ(Format(L""), "");
  EXPECT_EQ(Format(L"plain\n"), "plain\n");
  EXPECT_EQ(Format(nullptr), "");
}

TEST(Format, WideAndNarrowTexts) {
  EXPECT_EQ(Format(L"<%s>", L"wide"), "<wide>");
  EXPECT_EQ(Format(L"<%ls>", L"wide"), "<wide>");
  EXPECT_EQ(Format(L"<%S>", "narrow"), "<narrow>");
  EXPECT_EQ(Format(L"<%hs>", "narrow"), "<narrow>");
  EXPECT_EQ(Format(L"%s", L"\u00DCbergebener"), "\u00DCbergebener");
  EXPECT_EQ(Format(L"%S", "\xDC"), "\u00DC");
  EXPECT_EQ(Format(L"%s|%S", static_cast<wchar_t*>(nullptr), static_cast<char*>(nullptr)), "(null)|(null)");
}

TEST(Format, WidthAndPrecisionOfTexts) {
  EXPECT_EQ(Format(L"<%6s>", L"abc"), "<   abc>");
  EXPECT_EQ(Format(L"<%-6s>", L"abc"), "<abc   >");
  EXPECT_EQ(Format(L"<%2s>", L"abc"), "<abc>");
  EXPECT_EQ(Format(L"<%.2s>", L"abc"), "<ab>");
  EXPECT_EQ(Format(L"<%.0s>", L"abc"), "<>");
  EXPECT_EQ(Format(L"<%.s>", L"abc"), "<>");
  EXPECT_EQ(Format(L"<%5.1s>", L"abc"), "<    a>");
  const wchar_t unterminated[] = {L'a', L'b'};
  EXPECT_EQ(Format(L"%.2s", unterminated), "ab");
}

TEST(Format, StarsTakeWidthAndPrecisionFromTheArguments) {
  EXPECT_EQ(Format(L"<%*s>", 5, L"abc"), "<  abc>");
  EXPECT_EQ(Format(L"<%*s>", -5, L"abc"), "<abc  >");
  EXPECT_EQ(Format(L"<%.*s>", 1, L"abc"), "<a>");
  EXPECT_EQ(Format(L"<%.*s>", -1, L"abc"), "<abc>");
  EXPECT_EQ(Format(L"<%*.*f>", 8, 2, 3.14159), "<    3.14>");
  EXPECT_EQ(Format(L"<%.*f>", -1, 0.5), "<0.500000>");
}

TEST(Format, CharactersAndPercents) {
  EXPECT_EQ(Format(L"%c%c", L'a', L'\u00FC'), "a\u00FC");
  EXPECT_EQ(Format(L"<%3c|%-3c>", L'a', L'b'), "<  a|b  >");
  EXPECT_EQ(Format(L"100%%"), "100%");
}

TEST(Format, Integers) {
  EXPECT_EQ(Format(L"%d %i %u", -5, 5, 7U), "-5 5 7");
  EXPECT_EQ(Format(L"%x %X %o", 255U, 255U, 8U), "ff FF 10");
  EXPECT_EQ(Format(L"%d", std::numeric_limits<int>::min()), "-2147483648");
  EXPECT_EQ(Format(L"%u", -1), "4294967295");
  EXPECT_EQ(Format(L"%x", -1), "ffffffff");
}

TEST(Format, SizesOfIntegers) {
  EXPECT_EQ(Format(L"%hd %hu %hx", 70000, 70000, -1), "4464 4464 ffff");
  EXPECT_EQ(Format(L"%hhd %hhu", 200, 456), "-56 200");
  EXPECT_EQ(Format(L"%ld %lx %lu", -1L, -1L, -1L), "-1 ffffffff 4294967295");
  EXPECT_EQ(Format(L"%lld %llx", -5000000000LL, -1LL), "-5000000000 ffffffffffffffff");
  EXPECT_EQ(Format(L"%I64i %I64u %I64x", -5000000000LL, -1LL, -1LL),
            "-5000000000 18446744073709551615 ffffffffffffffff");
  EXPECT_EQ(Format(L"%I32d %I32u", -5, -5), "-5 4294967291");
  EXPECT_EQ(Format(L"%zu %td", size_t{7}, std::ptrdiff_t{-7}), "7 -7");
}

TEST(Format, ALongPrintsItsLower32BitsOnEverySystem) {
  if constexpr (sizeof(long) > 4) {
    EXPECT_EQ(Format(L"%ld", static_cast<long>(0x1'0000'0005)), "5");
    EXPECT_EQ(Format(L"%lx", static_cast<long>(0x1'0000'001F)), "1f");
  }
  EXPECT_EQ(Format(L"%I64i", std::numeric_limits<long long>::min()), "-9223372036854775808");
}

TEST(Format, FlagsOfIntegers) {
  EXPECT_EQ(Format(L"%+d % d %+d", 5, 5, -5), "+5  5 -5");
  EXPECT_EQ(Format(L"%+ d", 5), "+5");
  EXPECT_EQ(Format(L"<%05d|%-05d|%05d>", 42, 42, -42), "<00042|42   |-0042>");
  EXPECT_EQ(Format(L"<%05.3d>", 42), "<  042>");
  EXPECT_EQ(Format(L"%#x %#X %#o %#x %#o", 255U, 255U, 8U, 0U, 0U), "0xff 0XFF 010 0 0");
  EXPECT_EQ(Format(L"<%#08x>", 255U), "<0x0000ff>");
  EXPECT_EQ(Format(L"<%.0d|%.d|%.0x>", 0, 0, 0U), "<||>");
  EXPECT_EQ(Format(L"%.5d", -42), "-00042");
}

TEST(Format, RealsAsTheCStandardHasThem) {
  const double numbers[] = {0.0,      -0.0,       1.0,      -1.5,     0.1,  2.5,   1e10,
                            123456.0, 1234567.0,  1e-4,     1e-5,     1e15, 1e100, 1.7e308,
                            5e-324,   0.00001234, 999999.4, 99999.95, 0.5,  1e21};
  const char* formats[] = {"%f",    "%F",       "%e",    "%E",     "%g",       "%G",      "%.0f",
                           "%.1f",  "%.3e",     "%.0e",  "%.0g",   "%.10g",    "%#g",     "%#.3g",
                           "%#.0f", "%#.0e",    "%#.0g", "%12.3f", "%-12.3f|", "%012.3f", "%+.2f",
                           "% .2f", "%+012.2e", "%.20g", "%.30f",  "%#G",      "%#.12G"};
  for (const double number : numbers)
    for (const char* format : formats) {
      char expected[512];
      std::snprintf(expected, sizeof expected, format, number);
      const std::wstring wide(format, format + std::char_traits<char>::length(format));
      EXPECT_EQ(Format(wide.c_str(), number), expected) << format << " of " << number;
    }
}

// Where the C library at hand drops the zeroes after rounding up, against the standard.
TEST(Format, RoundingUpToTheNextPowerKeepsTheZeroes) {
  EXPECT_EQ(Format(L"%#g %#G %g", 999999.5, 999999.5, 999999.5), "1.00000e+06 1.00000E+06 1e+06");
}

TEST(Format, InfinityAndNotANumber) {
  const double infinity = std::numeric_limits<double>::infinity();
  const double notANumber = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(Format(L"%f %e %g %F %E %G", infinity, -infinity, infinity, infinity, infinity, -infinity),
            "inf -inf inf INF INF -INF");
  EXPECT_EQ(Format(L"%f %F", notANumber, notANumber), "nan NAN");
  EXPECT_EQ(Format(L"<%06f|%-6f|%+f>", infinity, infinity, infinity), "<   inf|inf   |+inf>");
}

TEST(Format, TheLocaleMakesNoDifference) {
  std::setlocale(LC_ALL, "de_DE.UTF-8");
  EXPECT_EQ(Format(L"%f %.1e %g", 1234.5, 1.5, 0.5), "1234.500000 1.5e+00 0.5");
  std::setlocale(LC_ALL, "C");
}

TEST(Format, Pointers) {
  const size_t digits = 2 * sizeof(void*);
  EXPECT_EQ(Format(L"%p", reinterpret_cast<void*>(0xBEEF)), std::string(digits - 4, '0') + "BEEF");
  EXPECT_EQ(Format(L"%p", nullptr), std::string(digits, '0'));
}

TEST(Format, UnknownDirectivesStand) {
  EXPECT_EQ(Format(L"%q|%5.2y|%", 1, 2), "%q|%5.2y|%");
  EXPECT_EQ(Format(L"%-08.3"), "%-08.3");
  EXPECT_EQ(Format(L"%n"), "%n");
  EXPECT_EQ(Format(L"a%lqb%d", 7), "a%lqb7");
}

TEST(Format, LengthHasNoLimit) {
  const std::wstring text(1'000'000, L'x');
  EXPECT_EQ(Format(L"<%s>", text.c_str()).size(), 1'000'002U);
  EXPECT_EQ(Format(L"%100000d", 1).size(), 100'000U);
  EXPECT_EQ(Format(L"%.50000f", 0.5).size(), 50'002U);
  std::wstring percents;
  for (int count = 0; count < 200'000; ++count) percents += L"%%x";
  EXPECT_EQ(Format(percents.c_str()).size(), 400'000U);
}

class ConsoleTest : public HostTest {};

TEST_F(ConsoleTest, PrintingIsCaptured) {
  EXPECT_EQ(acutPrintf(L"%d and %s\n", 1, L"two"), RTNORM);
  acutPrintf(L"three");
  EXPECT_EQ(Utf8(host.console.Text()), "1 and two\nthree");
  EXPECT_EQ(Printed(), "1 and two\nthree");
  EXPECT_EQ(Printed(), "");
  EXPECT_EQ(acutPrintf(nullptr), RTNORM);
  EXPECT_EQ(Printed(), "");
}

TEST_F(ConsoleTest, PrintingIsEchoedAsUtf8WhenAsked) {
  ::testing::internal::CaptureStdout();
  acutPrintf(L"silent");
  host.console.Echo(true);
  std::wstring text = L"a\u00E4\u20AC";
  if constexpr (sizeof(wchar_t) > 2) text += static_cast<wchar_t>(0x1F600);
  text += static_cast<wchar_t>(0xD83D);
  text += static_cast<wchar_t>(0xDE00);
  text += static_cast<wchar_t>(0xD83D);
  acutPrintf(L"%s!", text.c_str());
  std::fflush(stdout);
  const std::string grin = "\xF0\x9F\x98\x80";
  EXPECT_EQ(::testing::internal::GetCapturedStdout(),
            "a\xC3\xA4\xE2\x82\xAC" + (sizeof(wchar_t) > 2 ? grin : "") + grin + "\xEF\xBF\xBD!");
}

TEST_F(ConsoleTest, AResetEmptiesItAndEndsTheEcho) {
  host.console.Echo(true);
  host.Reset();
  ::testing::internal::CaptureStdout();
  acutPrintf(L"text");
  std::fflush(stdout);
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
}

}  // namespace
}  // namespace lomlisp::test
