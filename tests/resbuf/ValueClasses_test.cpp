// The value classes and helpers of the platform seam.
#include <lomlisp/platform/mfc.h>
#include <lomlisp/platform/suite.h>
#include <tests/support/HostTest.h>

#include <cstring>
#include <limits>
#include <random>
#include <utility>

namespace lomlisp::test {

namespace {

class ValueClasses : public HostTest {};

// --- BSTR ---

TEST_F(ValueClasses, ABstrKnowsItsLengthAndEndsWithAZero) {
  const BSTR text = SysAllocStringLen(L"ab\0cd", 5);
  EXPECT_EQ(SysStringLen(text), 5U);
  EXPECT_EQ(std::wstring(text, 5), std::wstring(L"ab\0cd", 5));
  EXPECT_EQ(text[5], 0);
  SysFreeString(text);

  const BSTR copy = SysAllocString(L"abc");
  EXPECT_EQ(SysStringLen(copy), 3U);
  EXPECT_STREQ(copy, L"abc");
  SysFreeString(copy);

  const BSTR unset = SysAllocStringLen(nullptr, 7);
  EXPECT_EQ(SysStringLen(unset), 7U);
  EXPECT_EQ(unset[7], 0);
  SysFreeString(unset);
}

TEST_F(ValueClasses, ANullBstrIsEmpty) {
  EXPECT_EQ(SysAllocString(nullptr), nullptr);
  EXPECT_EQ(SysStringLen(nullptr), 0U);
  SysFreeString(nullptr);
}

// --- VARIANT ---

TEST_F(ValueClasses, VariantInitAndClearGiveAnEmptyVariant) {
  VARIANT variant;
  VariantInit(&variant);
  EXPECT_EQ(variant.vt, VT_EMPTY);
  variant.vt = VT_BSTR;
  variant.bstrVal = SysAllocString(L"abc");
  EXPECT_EQ(VariantClear(&variant), S_OK);
  EXPECT_EQ(variant.vt, VT_EMPTY);
  AfxVariantInit(&variant);
  EXPECT_EQ(variant.vt, VT_EMPTY);
}

TEST_F(ValueClasses, VariantClearLeavesWhatIsOnlyReferredTo) {
  BSTR text = SysAllocString(L"abc");
  VARIANT variant;
  VariantInit(&variant);
  variant.vt = VT_BSTR | VT_BYREF;
  variant.byref = &text;
  VariantClear(&variant);
  EXPECT_STREQ(text, L"abc");
  SysFreeString(text);
}

TEST_F(ValueClasses, VariantCopyIsDeep) {
  const COleVariant source(L"ab\0cd", VT_BSTR);
  VARIANT copy;
  VariantInit(&copy);
  EXPECT_EQ(VariantCopy(&copy, &source), S_OK);
  EXPECT_NE(copy.bstrVal, source.bstrVal);
  EXPECT_STREQ(copy.bstrVal, L"ab");
  EXPECT_EQ(VariantCopy(&copy, &copy), S_OK);
  EXPECT_STREQ(copy.bstrVal, L"ab");
  const COleVariant number(1.5);
  EXPECT_EQ(VariantCopy(&copy, &number), S_OK);
  EXPECT_EQ(copy.vt, VT_R8);
  EXPECT_EQ(copy.dblVal, 1.5);
}

// --- COleVariant ---

TEST_F(ValueClasses, AnOleVariantTakesTheTypeOfItsValue) {
  EXPECT_EQ(COleVariant().vt, VT_EMPTY);
  EXPECT_EQ(COleVariant(static_cast<unsigned char>(200)).vt, VT_UI1);
  EXPECT_EQ(COleVariant(static_cast<unsigned char>(200)).bVal, 200);
  EXPECT_EQ(COleVariant(short{-5}).vt, VT_I2);
  EXPECT_EQ(COleVariant(short{-5}).iVal, -5);
  EXPECT_EQ(COleVariant(short{3}, VT_BOOL).boolVal, VARIANT_TRUE);
  EXPECT_EQ(COleVariant(100000L).vt, VT_I4);
  EXPECT_EQ(COleVariant(100000L).lVal, 100000);
  EXPECT_EQ(COleVariant(7L, VT_ERROR).vt, VT_ERROR);
  EXPECT_EQ(COleVariant(7L, VT_BOOL).boolVal, VARIANT_TRUE);
  EXPECT_EQ(COleVariant(0L, VT_BOOL).boolVal, VARIANT_FALSE);
  EXPECT_EQ(COleVariant(0.5F).vt, VT_R4);
  EXPECT_EQ(COleVariant(0.5F).fltVal, 0.5F);
  EXPECT_EQ(COleVariant(0.5).vt, VT_R8);
  EXPECT_STREQ(COleVariant(CString(L"abc")).bstrVal, L"abc");
  EXPECT_EQ(SysStringLen(COleVariant(CString(L"a\0b", 3)).bstrVal), 3U);
  EXPECT_EQ(SysStringLen(COleVariant(nullptr, VT_BSTR).bstrVal), 0U);
}

TEST_F(ValueClasses, AssignmentFreesTheOldText) {
  COleVariant variant(L"old", VT_BSTR);
  variant = 1.5;
  EXPECT_EQ(variant.vt, VT_R8);
  variant = L"new";
  EXPECT_STREQ(variant.bstrVal, L"new");
  variant = static_cast<const wchar_t*>(variant.bstrVal);
  EXPECT_STREQ(variant.bstrVal, L"new");
  variant = CString(L"newer");
  EXPECT_STREQ(variant.bstrVal, L"newer");
  variant = 5L;
  EXPECT_EQ(variant.vt, VT_I4);
  variant.Clear();
  EXPECT_EQ(variant.vt, VT_EMPTY);
}

TEST_F(ValueClasses, CopiesAreDeepAndMovesTakeOver) {
  COleVariant source(L"abc", VT_BSTR);
  const COleVariant copy = source;
  EXPECT_NE(copy.bstrVal, source.bstrVal);
  COleVariant assigned(L"x", VT_BSTR);
  assigned = copy;
  EXPECT_STREQ(assigned.bstrVal, L"abc");
  const BSTR text = source.bstrVal;
  const COleVariant taken = std::move(source);
  EXPECT_EQ(taken.bstrVal, text);
  const COleVariant& moved = source;
  EXPECT_EQ(moved.vt, VT_EMPTY);
}

// --- CStringArray ---

TEST_F(ValueClasses, AStringArrayGrowsAsAnArrayDoes) {
  CStringArray texts;
  EXPECT_TRUE(texts.IsEmpty());
  EXPECT_EQ(texts.Add(L"a"), 0);
  EXPECT_EQ(texts.Add(CString(L"b")), 1);
  texts.SetAtGrow(3, L"d");
  EXPECT_EQ(texts.GetSize(), 4);
  EXPECT_TRUE(texts[2].IsEmpty());
  EXPECT_TRUE(texts[3] == L"d");
  texts.RemoveAll();
  EXPECT_EQ(texts.GetCount(), 0);
}

// --- The shortest text of a real ---

std::string Shortest(double value) { return Utf8(lom_string_utils::FormatShortestDouble(value).GetString()); }

TEST_F(ValueClasses, TheShortestTextOfARealHasNoDigitTooMany) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(Shortest(0.0), "0");
  EXPECT_EQ(Shortest(-0.0), "-0");
  EXPECT_EQ(Shortest(0.1), "0.1");
  EXPECT_EQ(Shortest(1.0 / 3.0), "0.3333333333333333");
  EXPECT_EQ(Shortest(100.0), "100");
  EXPECT_EQ(Shortest(1e300), "1e+300");
  EXPECT_EQ(Shortest(-2.5e-10), "-2.5e-10");
  EXPECT_EQ(Shortest(std::numeric_limits<double>::max()), "1.7976931348623157e+308");
  EXPECT_EQ(Shortest(std::numeric_limits<double>::denorm_min()), "5e-324");
  EXPECT_EQ(Shortest(kInfinity), "inf");
  EXPECT_EQ(Shortest(-kInfinity), "-inf");
  EXPECT_EQ(Shortest(std::numeric_limits<double>::quiet_NaN()), "nan");
}

TEST_F(ValueClasses, TheShortestTextReadsBackAsTheSameReal) {
  std::mt19937_64 random(3);
  for (unsigned int round = 0; round < Rounds(10'000); ++round) {
    const uint64_t bits = random();
    double value = 0.0;
    static_assert(sizeof value == sizeof bits);
    std::memcpy(&value, &bits, sizeof value);
    if (value != value) continue;
    EXPECT_EQ(std::stod(Shortest(value)), value);
  }
}

}  // namespace
}  // namespace lomlisp::test
