// The value classes of the platform, as far as they are our own, and numbers as texts.
#include <tests/support/HostTest.h>

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace lomlisp::test::value_classes {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// A BSTR for as long as the object lives.
class OwnedText {
 public:
  explicit OwnedText(BSTR text) : m_text(text) {}
  ~OwnedText() { SysFreeString(m_text); }
  OwnedText(const OwnedText&) = delete;
  OwnedText& operator=(const OwnedText&) = delete;
  operator BSTR() const { return m_text; }

 private:
  BSTR m_text;
};

std::wstring Characters(BSTR text) { return text != nullptr ? std::wstring(text, SysStringLen(text)) : L""; }
BSTR Allocate(const std::wstring& text) {
  return SysAllocStringLen(text.data(), static_cast<unsigned int>(text.size()));
}

const std::wstring kWithZero(L"ab\0cd", 5);

VARIANT Empty() {
  VARIANT variant;
  VariantInit(&variant);
  return variant;
}
VARIANT LongVariant(int32_t value) {
  VARIANT variant = Empty();
  variant.vt = VT_I4;
  variant.lVal = value;
  return variant;
}
// The caller frees the text.
VARIANT TextVariant(const std::wstring& text) {
  VARIANT variant = Empty();
  variant.vt = VT_BSTR;
  variant.bstrVal = Allocate(text);
  return variant;
}

void ExpectText(const VARIANT& variant, const std::wstring& text) {
  EXPECT_EQ(variant.vt, VT_BSTR);
  EXPECT_TRUE(Characters(variant.bstrVal) == text) << Utf8(text);
}

using OleTexts = HostTest;
using OlePlainVariants = HostTest;
using OleVariants = HostTest;
using TextArrays = HostTest;
using ShortestReals = HostTest;

// --- BSTR ---

TEST_F(OleTexts, KnowTheirLengthAndEndWithAZero) {
  for (const wchar_t* const text : {L"", L"a", L"abc", L"Stra\u00DFe"}) {
    const OwnedText copy(SysAllocString(text));
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(static_cast<const wchar_t*>(copy), text);
    EXPECT_EQ(SysStringLen(copy), std::wcslen(text));
    EXPECT_EQ(std::wcscmp(copy, text), 0);
  }
}

TEST_F(OleTexts, MayHoldZeros) {
  const OwnedText text(Allocate(kWithZero));
  EXPECT_EQ(SysStringLen(text), 5U);
  EXPECT_TRUE(Characters(text) == kWithZero);
  EXPECT_EQ(static_cast<BSTR>(text)[5], L'\0');
}

TEST_F(OleTexts, MayBeAPartOfAText) {
  const OwnedText text(SysAllocStringLen(L"abcdef", 3));
  EXPECT_TRUE(Characters(text) == L"abc");
  EXPECT_EQ(std::wcscmp(text, L"abc"), 0);
}

TEST_F(OleTexts, MayBeFilledLater) {
  const OwnedText text(SysAllocStringLen(nullptr, 4));
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(SysStringLen(text), 4U);
  EXPECT_EQ(static_cast<BSTR>(text)[4], L'\0');
  std::wmemcpy(text, L"wxyz", 4);
  EXPECT_TRUE(Characters(text) == L"wxyz");
}

TEST_F(OleTexts, AreEmptyWithoutCharacters) {
  const OwnedText empty(SysAllocStringLen(nullptr, 0));
  ASSERT_NE(empty, nullptr);
  EXPECT_EQ(SysStringLen(empty), 0U);
  EXPECT_EQ(static_cast<BSTR>(empty)[0], L'\0');
}

TEST_F(OleTexts, MayBeNullWhichIsEmpty) {
  EXPECT_EQ(SysAllocString(nullptr), nullptr);
  EXPECT_EQ(SysStringLen(nullptr), 0U);
  SysFreeString(nullptr);
}

TEST_F(OleTexts, MayBeLong) {
  const std::wstring characters(kLarge, L'x');
  const OwnedText text(Allocate(characters));
  EXPECT_EQ(SysStringLen(text), static_cast<unsigned int>(kLarge));
  EXPECT_TRUE(Characters(text) == characters);
}

// --- VARIANT ---

TEST_F(OlePlainVariants, AreInitialisedAsEmpty) {
  VARIANT variant;
  std::memset(static_cast<void*>(&variant), 0xFF, sizeof variant);
  VariantInit(&variant);
  EXPECT_EQ(variant.vt, VT_EMPTY);
  std::memset(static_cast<void*>(&variant), 0xFF, sizeof variant);
  AfxVariantInit(&variant);
  EXPECT_EQ(variant.vt, VT_EMPTY);
}

TEST_F(OlePlainVariants, AreEmptyOnceCleared) {
  VARIANT nullText = Empty();
  nullText.vt = VT_BSTR;
  nullText.bstrVal = nullptr;
  for (VARIANT variant : {Empty(), LongVariant(7), TextVariant(L"abc"), TextVariant(L""), nullText}) {
    EXPECT_EQ(VariantClear(&variant), S_OK);
    EXPECT_EQ(variant.vt, VT_EMPTY);
    EXPECT_EQ(VariantClear(&variant), S_OK);
  }
}

TEST_F(OlePlainVariants, DoNotOwnWhatTheyReferTo) {
  BSTR text = Allocate(L"abc");
  VARIANT variant = Empty();
  variant.vt = VT_BYREF | VT_BSTR;
  variant.byref = &text;
  EXPECT_EQ(VariantClear(&variant), S_OK);
  EXPECT_EQ(variant.vt, VT_EMPTY);
  EXPECT_TRUE(Characters(text) == L"abc");
  SysFreeString(text);
}

TEST_F(OlePlainVariants, AreCopiedWithTheirTexts) {
  VARIANT source = TextVariant(kWithZero);
  VARIANT target = Empty();
  EXPECT_EQ(VariantCopy(&target, &source), S_OK);
  EXPECT_NE(target.bstrVal, source.bstrVal);
  VariantClear(&source);
  ExpectText(target, kWithZero);
  VariantClear(&target);
}

TEST_F(OlePlainVariants, AreCopiedOverWhatTheTargetOwned) {
  VARIANT target = TextVariant(L"old");
  VARIANT source = TextVariant(L"new");
  EXPECT_EQ(VariantCopy(&target, &source), S_OK);
  ExpectText(target, L"new");
  VARIANT number = LongVariant(7);
  EXPECT_EQ(VariantCopy(&target, &number), S_OK);
  EXPECT_EQ(target.vt, VT_I4);
  EXPECT_EQ(target.lVal, 7);
  VariantClear(&source);
}

TEST_F(OlePlainVariants, AreCopiedOntoThemselvesWithoutAChange) {
  VARIANT variant = TextVariant(L"abc");
  EXPECT_EQ(VariantCopy(&variant, &variant), S_OK);
  ExpectText(variant, L"abc");
  VariantClear(&variant);
}

TEST_F(OlePlainVariants, AreCopiedWithANullText) {
  VARIANT source = Empty();
  source.vt = VT_BSTR;
  source.bstrVal = nullptr;
  VARIANT target = LongVariant(7);
  EXPECT_EQ(VariantCopy(&target, &source), S_OK);
  ExpectText(target, L"");
  VariantClear(&target);
}

// --- COleVariant ---

TEST_F(OleVariants, AreEmptyAtFirst) { EXPECT_EQ(COleVariant().vt, VT_EMPTY); }

TEST_F(OleVariants, TakeNumbersWithTheTypeOfTheirWidth) {
  const COleVariant byte(static_cast<unsigned char>(200));
  EXPECT_EQ(byte.vt, VT_UI1);
  EXPECT_EQ(byte.bVal, 200);
  const COleVariant shortNumber(static_cast<short>(-7));
  EXPECT_EQ(shortNumber.vt, VT_I2);
  EXPECT_EQ(shortNumber.iVal, -7);
  const COleVariant longNumber(-70000L);
  EXPECT_EQ(longNumber.vt, VT_I4);
  EXPECT_EQ(longNumber.lVal, -70000);
  const COleVariant single(2.5F);
  EXPECT_EQ(single.vt, VT_R4);
  EXPECT_EQ(single.fltVal, 2.5F);
  const COleVariant real(0.1);
  EXPECT_EQ(real.vt, VT_R8);
  EXPECT_EQ(real.dblVal, 0.1);
}

TEST_F(OleVariants, KeepTheLow32BitsOfALong) {
  const COleVariant variant(static_cast<long>(4294967297LL));
  EXPECT_EQ(variant.vt, VT_I4);
  EXPECT_EQ(variant.lVal, 1);
}

TEST_F(OleVariants, TakeTruthValuesAndErrorsByTheirType) {
  for (const COleVariant& yes : {COleVariant(static_cast<short>(1), VT_BOOL), COleVariant(-1L, VT_BOOL),
                                 COleVariant(65536L, VT_BOOL)}) {
    EXPECT_EQ(yes.vt, VT_BOOL);
    EXPECT_EQ(yes.boolVal, VARIANT_TRUE);
  }
  for (const COleVariant& no : {COleVariant(static_cast<short>(0), VT_BOOL), COleVariant(0L, VT_BOOL)}) {
    EXPECT_EQ(no.vt, VT_BOOL);
    EXPECT_EQ(no.boolVal, VARIANT_FALSE);
  }
  const COleVariant error(5L, VT_ERROR);
  EXPECT_EQ(error.vt, VT_ERROR);
  EXPECT_EQ(error.scode, 5);
  const COleVariant typed(static_cast<short>(7), VT_I2);
  EXPECT_EQ(typed.vt, VT_I2);
  EXPECT_EQ(typed.iVal, 7);
}

TEST_F(OleVariants, TakeTexts) {
  ExpectText(COleVariant(L"abc", VT_BSTR), L"abc");
  ExpectText(COleVariant(L"", VT_BSTR), L"");
  ExpectText(COleVariant(CString(L"abc")), L"abc");
  ExpectText(COleVariant(CString()), L"");
  ExpectText(COleVariant(CString(kWithZero.data(), 5)), kWithZero);
}

TEST_F(OleVariants, TakeANullTextAsEmpty) {
  ExpectText(COleVariant(nullptr, VT_BSTR), L"");
  COleVariant variant(7L);
  variant = static_cast<const wchar_t*>(nullptr);
  ExpectText(variant, L"");
}

TEST_F(OleVariants, AreCopiedDeeply) {
  COleVariant source(CString(kWithZero.data(), 5));
  const COleVariant copy(source);
  EXPECT_NE(copy.bstrVal, source.bstrVal);
  source.Clear();
  EXPECT_EQ(source.vt, VT_EMPTY);
  ExpectText(copy, kWithZero);

  VARIANT plain = TextVariant(L"plain");
  const COleVariant fromPlain(plain);
  VariantClear(&plain);
  ExpectText(fromPlain, L"plain");
}

TEST_F(OleVariants, AreMovedWithTheirText) {
  COleVariant source(L"abc", VT_BSTR);
  const BSTR text = source.bstrVal;
  const COleVariant moved(std::move(source));
  EXPECT_EQ(moved.bstrVal, text);
  ExpectText(moved, L"abc");
  EXPECT_EQ(source.vt, VT_EMPTY);
}

TEST_F(OleVariants, AreAssignedDeeply) {
  const COleVariant source(L"abc", VT_BSTR);
  COleVariant target(L"old", VT_BSTR);
  target = source;
  EXPECT_NE(target.bstrVal, source.bstrVal);
  ExpectText(target, L"abc");
  ExpectText(source, L"abc");

  VARIANT plain = TextVariant(L"plain");
  target = plain;
  VariantClear(&plain);
  ExpectText(target, L"plain");
  target = COleVariant(L"temporary", VT_BSTR);
  ExpectText(target, L"temporary");
}

TEST_F(OleVariants, MayBeAssignedToThemselves) {
  COleVariant variant(L"abc", VT_BSTR);
  const COleVariant& same = variant;
  variant = same;
  ExpectText(variant, L"abc");
  variant = static_cast<const VARIANT&>(same);
  ExpectText(variant, L"abc");
}

TEST_F(OleVariants, MayBeAssignedFromTheirOwnText) {
  COleVariant variant(L"abcdef", VT_BSTR);
  variant = static_cast<const wchar_t*>(variant.bstrVal);
  ExpectText(variant, L"abcdef");
  variant = static_cast<const wchar_t*>(variant.bstrVal + 2);
  ExpectText(variant, L"cdef");
}

TEST_F(OleVariants, ChangeTheirTypeWithEachAssignment) {
  COleVariant variant(L"old", VT_BSTR);
  variant = static_cast<unsigned char>(200);
  EXPECT_EQ(variant.vt, VT_UI1);
  EXPECT_EQ(variant.bVal, 200);
  variant = L"text";
  ExpectText(variant, L"text");
  variant = static_cast<short>(-7);
  EXPECT_EQ(variant.vt, VT_I2);
  EXPECT_EQ(variant.iVal, -7);
  variant = CString(L"string");
  ExpectText(variant, L"string");
  variant = -70000L;
  EXPECT_EQ(variant.vt, VT_I4);
  EXPECT_EQ(variant.lVal, -70000);
  variant = 2.5F;
  EXPECT_EQ(variant.vt, VT_R4);
  EXPECT_EQ(variant.fltVal, 2.5F);
  variant = L"text";
  variant = 0.1;
  EXPECT_EQ(variant.vt, VT_R8);
  EXPECT_EQ(variant.dblVal, 0.1);
}

TEST_F(OleVariants, AreEmptyOnceCleared) {
  COleVariant variant(L"abc", VT_BSTR);
  variant.Clear();
  EXPECT_EQ(variant.vt, VT_EMPTY);
  variant.Clear();
  EXPECT_EQ(variant.vt, VT_EMPTY);
  variant = 7L;
  EXPECT_EQ(variant.vt, VT_I4);
}

// --- CStringArray ---

TEST_F(TextArrays, AreEmptyAtFirst) {
  const CStringArray array;
  EXPECT_EQ(array.GetSize(), 0);
  EXPECT_EQ(array.GetCount(), 0);
  EXPECT_EQ(array.GetUpperBound(), -1);
  EXPECT_TRUE(array.IsEmpty());
}

TEST_F(TextArrays, GrowByWhatIsAdded) {
  CStringArray array;
  EXPECT_EQ(array.Add(L"a"), 0);
  EXPECT_EQ(array.Add(CString(L"b")), 1);
  EXPECT_EQ(array.GetSize(), 2);
  EXPECT_EQ(array.GetUpperBound(), 1);
  EXPECT_FALSE(array.IsEmpty());
  EXPECT_TRUE(array[0] == L"a");
  EXPECT_TRUE(array.GetAt(1) == L"b");
}

TEST_F(TextArrays, HoldCopies) {
  CStringArray array;
  CString text(L"a");
  array.Add(text);
  text = L"changed";
  EXPECT_TRUE(array[0] == L"a");
  array[0] = L"b";
  EXPECT_TRUE(array[0] == L"b");
  array.SetAt(0, L"c");
  EXPECT_TRUE(array.ElementAt(0) == L"c");
}

TEST_F(TextArrays, GrowWithEmptyTextsAndShrink) {
  CStringArray array;
  array.SetAtGrow(2, L"c");
  ASSERT_EQ(array.GetSize(), 3);
  EXPECT_TRUE(array[0].IsEmpty());
  EXPECT_TRUE(array[1].IsEmpty());
  EXPECT_TRUE(array[2] == L"c");
  array.SetAtGrow(0, L"a");
  array.SetAtGrow(3, L"d");
  ASSERT_EQ(array.GetSize(), 4);
  EXPECT_TRUE(array[0] == L"a");
  EXPECT_TRUE(array[3] == L"d");
  array.SetSize(1);
  EXPECT_EQ(array.GetSize(), 1);
  EXPECT_TRUE(array[0] == L"a");
  array.RemoveAll();
  EXPECT_TRUE(array.IsEmpty());
}

// --- Numbers as texts ---

std::string Shortest(double value) { return Utf8(lom_string_utils::FormatShortestDouble(value).GetString()); }

TEST_F(ShortestReals, AreWrittenWithAsFewCharactersAsIdentifyThem) {
  struct Case {
    double value;
    const char* text;
  };
  for (const Case& each : {Case{0.0, "0"},
                           Case{-0.0, "-0"},
                           Case{1.0, "1"},
                           Case{-2.5, "-2.5"},
                           Case{0.1, "0.1"},
                           Case{0.001, "0.001"},
                           Case{42.0, "42"},
                           Case{123456.0, "123456"},
                           Case{123456.75, "123456.75"},
                           Case{2147483647.0, "2147483647"},
                           Case{9007199254740993.0, "9007199254740992"},
                           Case{0.1 + 0.2, "0.30000000000000004"},
                           Case{1.0 / 3.0, "0.3333333333333333"},
                           Case{1e300, "1e+300"},
                           Case{-1.5e-300, "-1.5e-300"},
                           Case{5e-324, "5e-324"},
                           Case{std::numeric_limits<double>::max(), "1.7976931348623157e+308"},
                           Case{std::numeric_limits<double>::min(), "2.2250738585072014e-308"},
                           Case{kInfinity, "inf"},
                           Case{-kInfinity, "-inf"},
                           Case{std::numeric_limits<double>::quiet_NaN(), "nan"}})
    EXPECT_EQ(Shortest(each.value), each.text);
}

TEST_F(ShortestReals, OfRoundNumbersTheShorterFormIsWritten) {
  EXPECT_EQ(Shortest(1000.0), "1000");
  EXPECT_EQ(Shortest(10000.0), "10000");
  EXPECT_EQ(Shortest(100000.0), "1e+05");
  EXPECT_EQ(Shortest(1e22), "1e+22");
  EXPECT_EQ(Shortest(0.0001), "1e-04");
}

TEST_F(ShortestReals, ReadBackAsTheSameReal) {
  std::mt19937_64 random(17);
  for (int i = 0; i < 10'000; ++i) {
    const uint64_t bits = random();
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof value);
    if (!std::isfinite(value)) continue;
    const CString text = lom_string_utils::FormatShortestDouble(value);
    const std::string digits = Utf8(text.GetString());
    // Not wcstod: not every system's is exact to the last digit.
    double read = 0.0;
    const auto end = std::from_chars(digits.data(), digits.data() + digits.size(), read).ptr;
    ASSERT_EQ(*end, '\0') << digits;
    ASSERT_EQ(read, value) << digits;
    ASSERT_LE(text.GetLength(), 24);
  }
}

class Texts : public HostTest {};

TEST_F(Texts, AreTakenForTheirCharacters) {
  const CString text(L"abc");
  const wchar_t* const characters = text;
  EXPECT_STREQ(characters, L"abc");
  EXPECT_EQ(characters, text.GetString());
}

TEST_F(Texts, TakeANullPointerForTheEmptyText) {
  const wchar_t* const null = nullptr;
  EXPECT_TRUE(CString(null).IsEmpty());
  CString text(L"ab");
  text += L"c";
  text += null;
  EXPECT_EQ(text, L"abc");
  EXPECT_FALSE(text == null);
  EXPECT_GT(text.Compare(null), 0);
  text = null;
  EXPECT_TRUE(text.IsEmpty());
  EXPECT_TRUE(text == null);
  EXPECT_EQ(text.Compare(null), 0);
}

TEST_F(Texts, MayBeAssignedAPartOfThemselves) {
  CString text(L"abc");
  text = text.GetString() + 1;
  EXPECT_EQ(text, L"bc");
}

}  // namespace
}  // namespace lomlisp::test::value_classes
