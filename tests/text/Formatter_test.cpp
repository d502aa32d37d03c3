// Values in a format of directives.
#include <tests/support/Chains.h>
#include <tests/support/SmallStack.h>

#include <limits>

namespace lomlisp::test::formatter {
namespace {

using Values = CArray<CLOMAdsLispVar, CLOMAdsLispVar>;

// A piece of text takes at most this many characters.
constexpr size_t kPiece = 2047;

Values Of(std::initializer_list<CLOMAdsLispVar> members) {
  Values values;
  for (const CLOMAdsLispVar& member : members) values.Add(member);
  return values;
}

std::wstring Characters(const CLOMAdsLispVar& text) {
  EXPECT_TRUE(text.StringP());
  return text.StringP() ? std::wstring(static_cast<wchar_t*>(text.GetAtom())) : L"<no text>";
}

// The text of a format with one value.
std::wstring Wide(const std::wstring& format, const CLOMAdsLispVar& value) {
  CLOMAdsLispVar result;
  EXPECT_EQ(CLOMAdsLispVar::Format(result, format.c_str(), Of({value})), 1);
  return Characters(result);
}

CLOMAdsLispVar Atom(const resbuf& record) {
  CLOMAdsLispVar value(short{1});
  value.GetAtom() = record;
  return value;
}

struct Expected {
  const wchar_t* format;
  CLOMAdsLispVar value;
  const char* text;
};

class FormatterTest : public HostTest {
 protected:
  // Formats with exactly one directive.
  void Check(std::initializer_list<Expected> cases) {
    for (const auto& [format, value, text] : cases)
      EXPECT_EQ(Utf8(Wide(format, value)), text) << Utf8(format) << " of " << Text(value);
    EXPECT_EQ(Printed(), "");
  }
};

// --- Plain text and counting ---

TEST_F(FormatterTest, TextWithoutDirectivesIsCopied) {
  for (const wchar_t* format :
       {L"abc", L" ", L"a\nb\t\"c\"\\", L"\u00E4\u00DF", L"d s f 5 - + . 0", L"{}()*#"}) {
    CLOMAdsLispVar result(short{77});
    EXPECT_EQ(CLOMAdsLispVar::Format(result, format, Of({1, 2})), 0);
    EXPECT_EQ(Characters(result), format);
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(FormatterTest, TwoPercentSignsAreOne) {
  const struct {
    const wchar_t* format;
    int count;
    const char* text;
  } cases[] = {{L"%%", 0, "%"},      {L"%%%%", 0, "%%"},       {L"a%%b", 0, "a%b"},
               {L"%%d", 0, "%d"},    {L"%%%d", 1, "%5"},       {L"%d%%", 1, "5%"},
               {L"%d%%d", 1, "5%d"}, {L"%%%%%d%%", 1, "%%5%"}, {L"100%%!", 0, "100%!"}};
  for (const auto& [format, count, text] : cases) {
    CLOMAdsLispVar result;
    EXPECT_EQ(CLOMAdsLispVar::Format(result, format, Of({5, 6})), count) << Utf8(format);
    EXPECT_EQ(Utf8(Characters(result)), text);
  }
}

TEST_F(FormatterTest, DirectivesTakeTheValuesInOrder) {
  CLOMAdsLispVar result;
  EXPECT_EQ(CLOMAdsLispVar::Format(result, L"%d-%s-%f-%c-%x", Of({1, L"two", 3.5, L"four", 255})), 5);
  EXPECT_EQ(Utf8(Characters(result)), "1-two-3.500000-f-ff");
}

TEST_F(FormatterTest, DirectivesWithoutAValueAreEmptyButCounted) {
  CLOMAdsLispVar result;
  EXPECT_EQ(CLOMAdsLispVar::Format(result, L"%d %d", Of({1})), 2);
  EXPECT_EQ(Utf8(Characters(result)), "1 ");
  EXPECT_EQ(CLOMAdsLispVar::Format(result, L"<%s|%c|%5.2f|%x|%05s>", Of({})), 5);
  EXPECT_EQ(Utf8(Characters(result)), "<||||>");
  EXPECT_EQ(CLOMAdsLispVar::Format(result, L"%d", Of({})), 1);
  EXPECT_EQ(Characters(result), L"");
  EXPECT_EQ(Printed(), "");
}

TEST_F(FormatterTest, ValuesLeftOverAreIgnored) {
  CLOMAdsLispVar result;
  EXPECT_EQ(CLOMAdsLispVar::Format(result, L"%d", Of({1, 2, 3})), 1);
  EXPECT_EQ(Characters(result), L"1");
}

TEST_F(FormatterTest, ADirectiveThatIsOpenAtTheEndIsDropped) {
  for (const wchar_t* format :
       {L"%", L"%5", L"%-", L"%.", L"%.2", L"%0", L"% ", L"%l", L"%%%", L"%5%%", L"%gg "}) {
    CLOMAdsLispVar result;
    EXPECT_EQ(CLOMAdsLispVar::Format(result, format, Of({1})), 0) << Utf8(format);
    EXPECT_EQ(Characters(result), std::wstring_view(format) == L"%%%" ? L"%" : L"");
    EXPECT_EQ(CLOMAdsLispVar::Format(result, (std::wstring(L"%d and ") + format).c_str(), Of({1, 2})), 1);
    EXPECT_EQ(Characters(result), std::wstring_view(format) == L"%%%" ? L"1 and %" : L"1 and ");
  }
}

// --- Integers ---

TEST_F(FormatterTest, IntegersOfEachDirective) {
  Check({{L"%d", 42, "42"},
         {L"%i", 42, "42"},
         {L"%u", 42, "42"},
         {L"%o", 42, "52"},
         {L"%x", 42, "2a"},
         {L"%d", -42, "-42"},
         {L"%i", -42, "-42"},
         {L"%u", -42, "4294967254"},
         {L"%o", -1, "37777777777"},
         {L"%x", -1, "ffffffff"},
         {L"%d", 0, "0"},
         {L"%o", 0, "0"},
         {L"%x", 0, "0"},
         {L"%d", 32767, "32767"},
         {L"%d", -32768, "-32768"},
         {L"%x", 0xABC, "abc"}});
}

TEST_F(FormatterTest, CapitalsMeanTheSameAsSmallLetters) {
  Check({{L"%D", -42, "-42"},
         {L"%I", -42, "-42"},
         {L"%U", -1, "4294967295"},
         {L"%O", 42, "52"},
         {L"%X", 0xABC, "abc"},
         {L"%F", 2.5, "2.500000"},
         {L"%F", std::numeric_limits<double>::infinity(), "inf"},
         {L"%E", 2.5, "2.500000e+00"},
         {L"%S", L"abc", "abc"},
         {L"%C", L"abc", "a"},
         {L"%5S", L"abc", ""},
         {L"%08X", 0xABC, "00000abc"}});
}

TEST_F(FormatterTest, OtherValuesAsIntegers) {
  Check({{L"%d", 12.9, "12"},
         {L"%d", -12.9, "-12"},
         {L"%d", 70000.0, "4464"},
         {L"%d", 70000L, "4464"},
         {L"%d", 1e10, "0"},
         {L"%d", L"12.9", "12"},
         {L"%d", L"-12.9", "-12"},
         {L"%d", L"1e3", "1"},
         {L"%d", L"1.5e3", "1500"},
         {L"%d", L"3,7", "3"},
         {L"%d", L"70000", "4464"},
         {L"%d", L"99999999999", "-1"},
         {L"%d", L"abc", "0"},
         {L"%d", L"", "0"},
         {L"%x", L"255", "ff"},
         {L"%d", CLOMAdsLisp::Nil, "0"},
         {L"%d", V(L"(7)"), "0"},
         {L"%d", V(L"(1.0 2.0 3.0)"), "0"},
         {L"%d", Atom(Real(7, RTANG)), "0"},
         {L"%d", Atom(Name(7)), "0"},
         {L"%d", Atom(String(nullptr)), "0"}});
}

TEST_F(FormatterTest, A64BitIntegerShowsIts32LowBits) {
  constexpr __int64 kBit32 = 1LL << 32;
  Check({{L"%d", static_cast<__int64>(70000), "70000"},
         {L"%d", kBit32 + 7, "7"},
         {L"%d", static_cast<__int64>(-1), "-1"},
         {L"%d", kBit32 - 1, "-1"},
         {L"%u", kBit32 - 1, "4294967295"},
         {L"%d", static_cast<__int64>(1) << 31, "-2147483648"},
         {L"%u", static_cast<__int64>(1) << 31, "2147483648"},
         {L"%x", static_cast<__int64>(1) << 31, "80000000"},
         {L"%x", static_cast<__int64>(0xABCDEF), "abcdef"}});
}

TEST_F(FormatterTest, IntegersWithAWidth) {
  Check({{L"<%5d>", 42, "<   42>"},
         {L"<%2d>", 42, "<42>"},
         {L"<%1d>", 42, "<42>"},
         {L"<%3d>", -42, "<-42>"},
         {L"<%12i>", -42, "<         -42>"},
         {L"<%6u>", 42, "<    42>"},
         {L"<%6o>", 42, "<    52>"},
         {L"<%6x>", 42, "<    2a>"},
         {L"<%10d>", 7, "<         7>"}});
}

TEST_F(FormatterTest, IntegersHaveNoPrecision) {
  Check({{L"<%.5d>", 42, "<42>"},
         {L"<%.d>", 42, "<42>"},
         {L"<%5.3d>", 42, "<   42>"},
         {L"<%.1d>", 0, "<0>"},
         {L"<%8.4x>", 255, "<      ff>"},
         {L"<%.99999999999d>", 42, "<42>"}});
}

// --- Flags ---

// What a piece looks like: a sign, digits, and filling up to a width.
std::string Filled(const std::string& sign, const std::string& digits, bool left, bool zero, size_t width) {
  const size_t length = sign.size() + digits.size();
  const size_t filling = width > length ? width - length : 0;
  if (left) return sign + digits + std::string(filling, ' ');
  if (zero) return sign + std::string(filling, '0') + digits;
  return std::string(filling, ' ') + sign + digits;
}

TEST_F(FormatterTest, EachCombinationOfFlagsInEitherOrder) {
  struct Case {
    const wchar_t* directive;
    CLOMAdsLispVar value;
    bool negative;
    bool hasSign;
    const char* digits;
  };
  const Case cases[] = {{L"d", 42, false, true, "42"},        {L"i", -42, true, true, "42"},
                        {L"x", 42, false, false, "2a"},       {L"u", 42, false, false, "42"},
                        {L"o", 42, false, false, "52"},       {L"f", 2.5, false, true, "2.500000"},
                        {L".2f", -2.5, true, true, "2.50"},   {L"e", 2.5, false, true, "2.500000e+00"},
                        {L".1e", -2.5, true, true, "2.5e+00"}};
  for (const Case& c : cases) {
    for (unsigned flags = 0; flags < 16; ++flags) {
      const bool left = (flags & 1) != 0, plus = (flags & 2) != 0, blank = (flags & 4) != 0,
                 zero = (flags & 8) != 0;
      std::wstring written;
      for (const auto& [set, flag] : {std::pair{left, L'-'}, {plus, L'+'}, {blank, L' '}, {zero, L'0'}})
        if (set) written += flag;
      std::string sign;
      if (c.negative)
        sign = "-";
      else if (c.hasSign && (plus || blank))
        sign = plus ? "+" : " ";
      const std::wstring reversed(written.rbegin(), written.rend());
      for (const std::wstring& order : {written, reversed, written + reversed}) {
        EXPECT_EQ(Utf8(Wide(L"%" + order + L"15" + c.directive, c.value)),
                  Filled(sign, c.digits, left, zero, 15))
            << Utf8(order) << Utf8(c.directive);
        EXPECT_EQ(Utf8(Wide(L"%" + order + c.directive, c.value)), sign + c.digits)
            << Utf8(order) << Utf8(c.directive);
      }
    }
  }
}

TEST_F(FormatterTest, FlagsMayStandBehindTheWidth) {
  Check({{L"<%5-d>", 42, "<42   >"},
         {L"<%5+d>", 42, "<  +42>"},
         {L"<%5 d>", 12345, "< 12345>"},
         {L"<%5-+d>", 42, "<+42  >"},
         {L"<%8.2-f>", 2.5, "<2.50    >"},
         {L"<%.2+f>", 2.5, "<+2.50>"},
         {L"<%8.+f>", 2.5, "<+2.500000>"}});
}

TEST_F(FormatterTest, AFlagHoldsForItsDirectiveOnly) {
  CLOMAdsLispVar result;
  EXPECT_EQ(CLOMAdsLispVar::Format(result, L"%+d%d%05d%5d%-4d%4d%.2f%f", Of({1, 2, 3, 4, 5, 6, 7.0, 8.0})),
            8);
  EXPECT_EQ(Utf8(Characters(result)), "+1200003    45      67.008.000000");
}

TEST_F(FormatterTest, AZeroIsAFlagUnlessADigitStandsInFrontOfIt) {
  Check({{L"<%0d>", 42, "<42>"},
         {L"<%05d>", 42, "<00042>"},
         {L"<%0005d>", 42, "<00042>"},
         {L"<%10d>", 42, "<        42>"},
         {L"<%010d>", 42, "<0000000042>"},
         {L"<%5-0d>", 42, "<42   >"},
         {L"<%5+0d>", 42, "<+0042>"},
         {L"<%5.0d>", 42, "<00042>"},
         {L"<%-5.0d>", 42, "<42   >"}});
}

TEST_F(FormatterTest, AZeroBehindTheDotIsNoPrecision) {
  Check({{L"<%.0f>", 2.5, "<2.500000>"},
         {L"<%.0e>", 2.5, "<2.500000e+00>"},
         {L"<%10.0f>", 2.5, "<002.500000>"},
         {L"<%.05f>", 2.5, "<2.50000>"},
         {L"<%.00002f>", 2.5, "<2.50>"},
         {L"<%6.02f>", 2.5, "<002.50>"},
         {L"<%.10f>", 0.5, "<0.5000000000>"}});
}

// --- Numbers that are met again ---

TEST_F(FormatterTest, ASecondWidthIsSkipped) {
  Check({{L"<%5 3d>", 42, "<   42>"},
         {L"<%5 3d>", 12345, "< 12345>"},
         {L"<%5+3d>", 42, "<  +42>"},
         {L"<%5-9d>", 42, "<42   >"},
         {L"<%5l7d>", 42, "<   42>"},
         {L"<%1+2-3 4d>", 42, "<+42>"}});
}

TEST_F(FormatterTest, ASecondPrecisionIsSkipped) {
  Check({{L"<%.2.3f>", 2.5, "<2.50>"},
         {L"<%5.2.7f>", 2.5, "< 2.50>"},
         {L"<%.2 9f>", 2.5, "< 2.50>"},
         {L"<%.1+1e>", 2.5, "<+2.5e+00>"},
         {L"<%..2f>", 2.5, "<2.50>"},
         {L"<%...1.2.3f>", 2.5, "<2.5>"}});
}

TEST_F(FormatterTest, TheDigitsBehindASkippedOneAreSkippedWithIt) {
  Check({{L"<%5+30d>", 42, "<  +42>"},
         {L"<%5+03d>", 42, "<+0042>"},
         {L"<%5-12345678901234567890d>", 42, "<42   >"},
         {L"<%.2+1000f>", 2.5, "<+2.50>"},
         {L"<%6.2+10f>", 2.5, "< +2.50>"}});
}

// --- Reals ---

TEST_F(FormatterTest, RealsAsTheStandardHasThem) {
  const double infinity = std::numeric_limits<double>::infinity();
  Check({{L"%f", 3.14159, "3.141590"},
         {L"%e", 3.14159, "3.141590e+00"},
         {L"%f", -0.0, "-0.000000"},
         {L"%e", 0.0, "0.000000e+00"},
         {L"%f", 1e22, "10000000000000000000000.000000"},
         {L"%f", 1e-7, "0.000000"},
         {L"%e", 1e100, "1.000000e+100"},
         {L"%e", 1e-5, "1.000000e-05"},
         {L"%e", 5e-324, "4.940656e-324"},
         {L"%f", infinity, "inf"},
         {L"%e", -infinity, "-inf"},
         {L"%+f", infinity, "+inf"},
         {L"%f", std::numeric_limits<double>::quiet_NaN(), "nan"},
         {L"<%06f>", infinity, "<   inf>"},
         {L"<%-6e>", infinity, "<inf   >"}});
}

TEST_F(FormatterTest, RealsWithAWidthAndAPrecision) {
  Check({{L"<%5.2f>", 3.14159, "< 3.14>"},
         {L"<%10f>", 2.5, "<  2.500000>"},
         {L"<%10.f>", 2.5, "<  2.500000>"},
         {L"<%.f>", 2.5, "<2.500000>"},
         {L"<%.3f>", 2.5, "<2.500>"},
         {L"<%.2f>", 0.125, "<0.12>"},
         {L"<%.1f>", 0.25, "<0.2>"},
         {L"<%.1f>", 0.35, "<0.3>"},
         {L"<%.20f>", 0.1, "<0.10000000000000000555>"},
         {L"<%12.3e>", 3.14159, "<   3.142e+00>"},
         {L"<%.1e>", 9.96, "<1.0e+01>"},
         {L"<%15e>", 2.5, "<   2.500000e+00>"},
         {L"<%3.2f>", 3.14159, "<3.14>"}});
}

TEST_F(FormatterTest, OtherValuesAsReals) {
  Check({{L"%f", 7, "7.000000"},
         {L"%f", 70000L, "70000.000000"},
         {L"%f", static_cast<__int64>(1) << 40, "1099511627776.000000"},
         {L"%f", L"2.5", "2.500000"},
         {L"%f", L" -1e3x", "-1000.000000"},
         {L"%.1f", L"3,7", "3.0"},
         {L"%f", L"abc", "0.000000"},
         {L"%f", L"", "0.000000"},
         {L"%e", CLOMAdsLisp::Nil, "0.000000e+00"},
         {L"%f", V(L"(7)"), "0.000000"},
         {L"%f", Atom(Real(7, RTANG)), "0.000000"},
         {L"%f", Atom(String(nullptr)), "0.000000"}});
}

// --- Texts and characters ---

TEST_F(FormatterTest, Texts) {
  Check({{L"<%s>", L"abc", "<abc>"},
         {L"<%s>", L"", "<>"},
         {L"<%s>", L"\u00E4\u00DF", "<\u00E4\u00DF>"},
         {L"<%s>", L"%d %s %% \\n", "<%d %s %% \\n>"},
         {L"<%s>", Atom(String(nullptr)), "<>"}});
}

TEST_F(FormatterTest, OtherValuesAsTexts) {
  Check({{L"%s", 42, "42"},
         {L"%s", -42, "-42"},
         {L"%s", static_cast<__int64>(70000), "70000"},
         {L"%s", (1LL << 32) + 5, "5"},
         {L"%s", 2.5, "2.5"},
         {L"%s", 2.0, "2"},
         {L"%s", 0.1, "0.1"},
         {L"%s", 1e300, "1e+300"},
         {L"%s", 70000L, "70000"},
         {L"%s", V(L"(1 2 3)"), "(1.000000 2.000000 3.000000)"},
         {L"%s", V(L"(1.5 2)"), "(1.500000 2.000000 0.000000)"},
         {L"%s", CLOMAdsLisp::Nil, ""},
         {L"%s", Atom(NoValue(RTNIL)), ""},
         {L"%s", V(L"(\"a\")"), ""},
         {L"%s", ListOf({}), ""},
         {L"%s", V(L"(1 . 2)"), ""},
         {L"%s", Atom(Name(7)), ""},
         {L"%s", Atom(NoValue(RTT)), ""},
         {L"%s", Atom(Real(0, RTANG)), ""}});
}

TEST_F(FormatterTest, TextsHaveNoPrecisionAndFlagsDoNothing) {
  Check({{L"<%.2s>", L"abc", "<abc>"},
         {L"<%.s>", L"abc", "<abc>"},
         {L"<%.0s>", L"abc", "<abc>"},
         {L"<%-s>", L"abc", "<abc>"},
         {L"<%+s>", L"abc", "<abc>"},
         {L"<% s>", L"abc", "<abc>"},
         {L"<%0s>", L"abc", "<abc>"}});
}

TEST_F(FormatterTest, ATextWithAWidthIsNothing) {
  Check({{L"<%5s>", L"abc", "<>"},
         {L"<%1s>", L"abc", "<>"},
         {L"<%-5s>", L"abc", "<>"},
         {L"<%05s>", L"abc", "<>"},
         {L"<%5.2s>", L"abc", "<>"},
         {L"<%5.s>", 42, "<>"},
         {L"<%99999999999s>", L"abc", "<>"}});
}

TEST_F(FormatterTest, ATextWithAWidthTakesItsValueAllTheSame) {
  CLOMAdsLispVar result;
  EXPECT_EQ(CLOMAdsLispVar::Format(result, L"%5s|%s|%s", Of({L"a", L"b", L"c"})), 3);
  EXPECT_EQ(Characters(result), L"|b|c");
}

TEST_F(FormatterTest, ACharacterIsTheFirstOfTheText) {
  Check({{L"<%c>", L"abc", "<a>"},
         {L"<%c>", 65, "<6>"},
         {L"<%c>", -7, "<->"},
         {L"<%c>", 2.5, "<2>"},
         {L"<%c>", V(L"(1 2)"), "<(>"},
         {L"<%c>", L"\u00E4b", "<\u00E4>"},
         {L"<%c>", L"%", "<%>"},
         {L"<%c>", L"", "<>"},
         {L"<%c>", CLOMAdsLisp::Nil, "<>"},
         {L"<%c>", Atom(String(nullptr)), "<>"}});
}

TEST_F(FormatterTest, ACharacterHasNoFlagsWidthOrPrecision) {
  Check({{L"<%5c>", L"abc", "<a>"},
         {L"<%-5c>", L"abc", "<a>"},
         {L"<%05c>", 42, "<4>"},
         {L"<%.3c>", L"abc", "<a>"},
         {L"<%+ 8.2c>", L"abc", "<a>"}});
}

// --- Characters without a meaning ---

TEST_F(FormatterTest, OtherCharactersInADirectiveAreSkipped) {
  const std::wstring_view meaning = L" %+-.0123456789cCdDiIoOuUxXeEfFsS";
  std::wstring skipped;
  for (wchar_t c = 1; c < 256; ++c)
    if (meaning.find(c) == std::wstring_view::npos) skipped += c;
  skipped += L"\u0660\u2003\u20AC\uFFFD";
  for (const wchar_t c : skipped) {
    EXPECT_EQ(Wide(std::wstring(L"<%") + c + L"d>", 42), L"<42>") << static_cast<unsigned>(c);
    EXPECT_EQ(Wide(std::wstring(L"<%5") + c + L"d>", 42), L"<   42>") << static_cast<unsigned>(c);
  }
  EXPECT_EQ(Wide(L"<%" + skipped + L"d>", 42), L"<42>");
}

TEST_F(FormatterTest, ADirectiveStaysOpenUntilItsLetter) {
  Check({{L"%ld", 7, "7"},
         {L"%I64d", 7, "764d"},
         {L"%lls", L"abc", "abc"},
         {L"%g abc", 65, "6"},
         {L"%*d", 7, "7"},
         {L"%#x", 255, "ff"},
         {L"%1$d", 7, "7"},
         {L"%5%d", 42, "   42"},
         {L"%-%d", 42, "42"},
         {L"%5%%d", 42, "   42"},
         {L"100% done", 7, "100 7one"},
         {L"%\nabc", L"x", "x"}});
}

// --- No format ---

TEST_F(FormatterTest, WithoutAFormatTheResultSharesTheFirstValue) {
  for (const wchar_t* format : {static_cast<const wchar_t*>(nullptr), L""}) {
    for (const CLOMAdsLispVar& first : {V(L"7"), V(L"(1 2)"), V(L"\"a\""), CLOMAdsLispVar()}) {
      CLOMAdsLispVar result(short{77});
      EXPECT_EQ(CLOMAdsLispVar::Format(result, format, Of({first, 8})), 1);
      EXPECT_EQ(result.New(), first.New());
    }
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(FormatterTest, WithoutAFormatAndValuesTheResultStays) {
  for (const wchar_t* format : {static_cast<const wchar_t*>(nullptr), L""}) {
    CLOMAdsLispVar result(short{77});
    const CLOMAdsLispVar before(result);
    EXPECT_EQ(CLOMAdsLispVar::Format(result, format, Of({})), 0);
    EXPECT_EQ(result.New(), before.New());
  }
}

// --- The result ---

TEST_F(FormatterTest, TheResultIsANewTextEvenIfEmpty) {
  CLOMAdsLispVar result = V(L"(1 2)");
  const CLOMAdsLispVar other(result);
  EXPECT_EQ(CLOMAdsLispVar::Format(result, L"%s", Of({L""})), 1);
  EXPECT_EQ(Tree(result), "5005:");
  EXPECT_EQ(Tree(other), "(5003:1 5003:2)");
  const CLOMAdsLispVar text(L"abc");
  EXPECT_EQ(CLOMAdsLispVar::Format(result, L"%s", Of({text})), 1);
  EXPECT_NE(result.New(), text.New());
  EXPECT_EQ(Tree(result), "5005:abc");
}

TEST_F(FormatterTest, TheResultMayBeOneOfTheValues) {
  Values values = Of({1, L"b"});
  EXPECT_EQ(CLOMAdsLispVar::Format(values.ElementAt(0), L"%d%s%d", values), 3);
  EXPECT_EQ(Tree(values.GetAt(0)), "5005:1b");
  EXPECT_EQ(CLOMAdsLispVar::Format(values.ElementAt(1), L"%s-%s", values), 2);
  EXPECT_EQ(Tree(values.GetAt(1)), "5005:1b-b");
}

TEST_F(FormatterTest, TheResultMayBeTheFirstValueWithoutAFormat) {
  Values values = Of({V(L"(1 2)"), 3});
  EXPECT_EQ(CLOMAdsLispVar::Format(values.ElementAt(0), nullptr, values), 1);
  EXPECT_EQ(Tree(values.GetAt(0)), "(5003:1 5003:2)");
  EXPECT_EQ(CLOMAdsLispVar::Format(values.ElementAt(1), L"", values), 1);
  EXPECT_EQ(values.GetAt(1).New(), values.GetAt(0).New());
}

TEST_F(FormatterTest, TheFormatMayBeTheTextOfTheResultOrOfAValue) {
  CLOMAdsLispVar result(L"<%d>");
  EXPECT_EQ(CLOMAdsLispVar::Format(result, result.GetAtom().resval.rstring, Of({7})), 1);
  EXPECT_EQ(Tree(result), "5005:<7>");
  Values values = Of({L"[%s]"});
  CLOMAdsLispVar& value = values.ElementAt(0);
  EXPECT_EQ(CLOMAdsLispVar::Format(value, value.GetAtom().resval.rstring, values), 1);
  EXPECT_EQ(Tree(value), "5005:[[%s]]");
}

TEST_F(FormatterTest, TheValuesStayAsTheyAre) {
  const Values values = Of({L"12.5", 2.5, 7, V(L"(1 2 3)")});
  CLOMAdsLispVar result;
  EXPECT_EQ(CLOMAdsLispVar::Format(result, L"%d %s %f %s", values), 4);
  EXPECT_EQ(Utf8(Characters(result)), "12 2.5 7.000000 (1.000000 2.000000 3.000000)");
  EXPECT_EQ(Tree(values.GetAt(0)), "5005:12.5");
  EXPECT_EQ(Tree(values.GetAt(1)), "5001:2.5");
  EXPECT_EQ(Tree(values.GetAt(2)), "5003:7");
  EXPECT_EQ(Tree(values.GetAt(3)), "(5003:1 5003:2 5003:3)");
}

TEST_F(FormatterTest, SurvivesEachFailedAllocationOfAText) {
  const Values values = Of({L"a", 2, V(L"(1 2)")});
  FailEachAllocation([&] {
    CLOMAdsLispVar result;
    EXPECT_EQ(CLOMAdsLispVar::Format(result, L"%s %s %s %d", values), 4);
    return Tree(result) == "5005:a 2 (1.000000 2.000000 0.000000) ";
  });
}

// --- Size ---

TEST_F(FormatterTest, APieceIsCutAt2047Characters) {
  EXPECT_EQ(Wide(L"[%2047d]", 42), L"[" + std::wstring(kPiece - 2, L' ') + L"42]");
  EXPECT_EQ(Wide(L"[%2048d]", 42), L"[" + std::wstring(kPiece - 1, L' ') + L"4]");
  EXPECT_EQ(Wide(L"[%2049d]", 42), L"[" + std::wstring(kPiece, L' ') + L"]");
  EXPECT_EQ(Wide(L"[%-3000d]", 42), L"[42" + std::wstring(kPiece - 2, L' ') + L"]");
  EXPECT_EQ(Wide(L"[%+03000d]", 42), L"[+" + std::wstring(kPiece - 1, L'0') + L"]");
  EXPECT_EQ(Wide(L"[%.2045f]", 0.5), L"[0.5" + std::wstring(kPiece - 3, L'0') + L"]");
  EXPECT_EQ(Wide(L"[%.2046f]", 0.5), L"[0.5" + std::wstring(kPiece - 3, L'0') + L"]");
  EXPECT_EQ(Wide(L"[%.3000e]", 0.5), L"[5." + std::wstring(kPiece - 2, L'0') + L"]");
  EXPECT_EQ(Wide(L"[%2050.3f]", 0.5), L"[" + std::wstring(kPiece - 2, L' ') + L"0.]");
}

TEST_F(FormatterTest, WidthAndPrecisionSaturate) {
  for (const wchar_t* number : {L"2147483647", L"2147483648", L"4294967297", L"99999999999999999999999"}) {
    const std::wstring n(number);
    EXPECT_EQ(Wide(L"[%" + n + L"d]", 42), L"[" + std::wstring(kPiece, L' ') + L"]");
    EXPECT_EQ(Wide(L"[%-" + n + L"d]", 42), L"[42" + std::wstring(kPiece - 2, L' ') + L"]");
    EXPECT_EQ(Wide(L"[%." + n + L"f]", -0.5), L"[-0.5" + std::wstring(kPiece - 4, L'0') + L"]");
    EXPECT_EQ(Wide(L"[%." + n + L"e]", 0.5), L"[5." + std::wstring(kPiece - 2, L'0') + L"]");
    EXPECT_EQ(Wide(L"[%" + n + L"." + n + L"f]", 0.5), L"[0.5" + std::wstring(kPiece - 3, L'0') + L"]");
    EXPECT_EQ(Wide(L"[%" + n + L"c]", L"abc"), L"[a]");
  }
}

TEST_F(FormatterTest, TextsAreNotCut) {
  const std::wstring text(5000, L'x');
  EXPECT_EQ(Wide(L"[%s]", text), L"[" + text + L"]");
  EXPECT_EQ(Wide(L"[%-.3s]", text), L"[" + text + L"]");
}

TEST_F(FormatterTest, LongFormatsAreLinear) {
  OnSmallStack([&] {
    const auto many = [](std::wstring_view text) {
      std::wstring all;
      for (int i = 0; i < kLarge; ++i) all += text;
      return all;
    };
    CLOMAdsLispVar result;
    const std::wstring plain = many(L"x");
    EXPECT_EQ(CLOMAdsLispVar::Format(result, plain.c_str(), Of({1})), 0);
    EXPECT_TRUE(Characters(result) == plain);
    EXPECT_EQ(CLOMAdsLispVar::Format(result, many(L"%d").c_str(), Of({1, 2, 3})), kLarge);
    EXPECT_EQ(Characters(result), L"123");
    EXPECT_EQ(Wide(L"<%" + many(L"5") + L"s>", L"a"), L"<>");
    EXPECT_EQ(Wide(L"<%5+" + many(L"3") + L"d>", 42), L"<  +42>");
    EXPECT_EQ(Wide(L"<%5" + many(L"+3") + L"d>", 42), L"<  +42>");
    EXPECT_EQ(Wide(L"<%.2" + many(L".3") + L"f>", 2.5), L"<2.50>");
    EXPECT_EQ(Wide(L"<%" + many(L"-0 +") + L"5d>", 42), L"<+42  >");
    EXPECT_EQ(Wide(L"<%" + many(L"l") + L"d>", 42), L"<42>");
    EXPECT_TRUE(Wide(L"%s", plain) == plain);
  });
}

TEST_F(FormatterTest, ManyValuesAreLinear) {
  OnSmallStack([&] {
    Values values;
    std::wstring format, text;
    for (int i = 0; i < kLarge; ++i) {
      values.Add(short{5});
      format += L"%d,";
      text += L"5,";
    }
    CLOMAdsLispVar result;
    EXPECT_EQ(CLOMAdsLispVar::Format(result, format.c_str(), values), kLarge);
    EXPECT_TRUE(Characters(result) == text);
  });
}

TEST_F(FormatterTest, ADeepValueHasNoText) {
  OnSmallStack([&] { EXPECT_EQ(Wide(L"<%s>", Nested(kLarge, short{1})), L"<>"); });
  EXPECT_EQ(Printed(), "");
}

}  // namespace
}  // namespace lomlisp::test::formatter
