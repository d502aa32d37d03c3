#include <lomlisp/text/UpperCase.h>
#include <tests/listops/Values.h>

#ifdef __linux__
#include <clocale>
#include <cwctype>
#endif

namespace lomlisp::test {

namespace {

class StrCaseTest : public HostTest {};

std::string Upper(const wchar_t* text) {
  return Utf8(static_cast<wchar_t*>(CLOMAdsLisp::StrCase(text).GetAtom()));
}

TEST_F(StrCaseTest, EachCharacterBecomesItsUpperCaseForm) {
  EXPECT_EQ(Upper(L"abc XYZ 12,;"), "ABC XYZ 12,;");
  EXPECT_EQ(Upper(L"\u00E4\u00F6\u00FC \u00E9\u00F1"), Utf8(L"\u00C4\u00D6\u00DC \u00C9\u00D1"));
  EXPECT_EQ(Upper(L"\u03B1\u03C9 \u0436\u044F"), Utf8(L"\u0391\u03A9 \u0416\u042F"));
  EXPECT_EQ(Upper(L"\u00FF"), Utf8(L"\u0178"));
  EXPECT_EQ(Upper(L""), "");
  EXPECT_EQ(Printed(), "");
}

TEST_F(StrCaseTest, TheLengthStays) {
  EXPECT_EQ(Upper(L"stra\u00DFe"), Utf8(L"STRA\u00DFE"));
  EXPECT_EQ(Upper(L"\u0149\u01F0"), Utf8(L"\u0149\u01F0"));
}

TEST_F(StrCaseTest, ANewTextIsMade) {
  const CLOMAdsLispVar text(L"ABC");
  const CLOMAdsLispVar upper = CLOMAdsLisp::StrCase(text);
  EXPECT_NE(upper.New(), text.New());
  EXPECT_EQ(upper.GetAtom().Type(), RTSTR);
  const CLOMAdsLispVar lower(L"abc");
  CLOMAdsLisp::StrCase(lower);
  EXPECT_EQ(Text(lower), "\"abc\"");
}

TEST_F(StrCaseTest, ANullTextIsEmpty) {
  CLOMAdsLispVar value(1);
  value.GetAtom() = static_cast<const wchar_t*>(nullptr);
  const CLOMAdsLispVar upper = CLOMAdsLisp::StrCase(value);
  EXPECT_STREQ(static_cast<wchar_t*>(upper.GetAtom()), L"");
}

TEST_F(StrCaseTest, WhatIsNoTextIsRefused) {
  for (const CLOMAdsLispVar& value :
       {CLOMAdsLispVar(), NilAtom(), CLOMAdsLispVar(5), CLOMAdsLispVar(1.5), ListOf({L"a"}), ListOf({})}) {
    EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::StrCase(value)));
    EXPECT_EQ(Printed(), "CLOMAdsLisp::StrCase : Parameter ist nicht vom Typ String !\n");
  }
}

TEST_F(StrCaseTest, LongTextsTakeLinearTime) {
  const std::wstring lower(kLarge, L'a');
  EXPECT_TRUE(static_cast<wchar_t*>(CLOMAdsLisp::StrCase(lower).GetAtom()) == std::wstring(kLarge, L'A'));
}

TEST_F(StrCaseTest, CharactersBeyondTheFirstPlaneStay) {
  if constexpr (sizeof(wchar_t) > 2) {
    for (const uint32_t code : {0x10428U, 0x1E922U, 0x10FFFFU})
      EXPECT_EQ(UpperCase(static_cast<wchar_t>(code)), static_cast<wchar_t>(code));
  }
}

#ifdef __linux__
// The system's table for a locale that everybody has, against ours.
TEST_F(StrCaseTest, TheTableIsTheSystemsOne) {
  const locale_t locale = newlocale(LC_ALL_MASK, "C.UTF-8", nullptr);
  ASSERT_NE(locale, nullptr);
  for (wint_t code = 1; code < 0x10000; ++code)
    ASSERT_EQ(static_cast<wint_t>(UpperCase(static_cast<wchar_t>(code))), towupper_l(code, locale)) << code;
  freelocale(locale);
}
#endif

}  // namespace
}  // namespace lomlisp::test
