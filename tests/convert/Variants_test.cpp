#include <tests/support/Chains.h>
#include <tests/support/HostTest.h>

#include <string>
#include <vector>

namespace lomlisp::test {

namespace {

class Variants : public HostTest {
 protected:
  void TearDown() override {
    EXPECT_EQ(Printed(), "");
    HostTest::TearDown();
  }
};

COleVariant WithInteger(VARTYPE type, long long value) {
  COleVariant variant;
  variant.vt = type;
  variant.llVal = value;
  return variant;
}

COleVariant WithText(BSTR text) {
  COleVariant variant;
  variant.vt = VT_BSTR;
  variant.bstrVal = text;
  return variant;
}

// --- From variants ---

TEST_F(Variants, IntegersBecomeShortsAndLongs) {
  struct Expectation {
    VARTYPE type;
    long long value;
    const char* tree;
  };
  const std::vector<Expectation> expectations = {{VT_I2, -5, "5003:-5"},
                                                 {VT_I2, 32767, "5003:32767"},
                                                 {VT_UI2, 40000, "5003:-25536"},
                                                 {VT_UI2, 65535, "5003:-1"},
                                                 {VT_I4, -100000, "5010:-100000"},
                                                 {VT_UI4, 4294967295, "5010:-1"},
                                                 {VT_INT, 100000, "5010:100000"},
                                                 {VT_UINT, 2147483648, "5010:-2147483648"},
                                                 {VT_I1, 200, "5003:-56"},
                                                 {VT_UI1, 200, "5003:-56"},
                                                 {VT_UI1, 255, "5003:-1"},
                                                 {VT_I1, 127, "5003:127"},
                                                 {VT_UI1, 0, "5003:0"}};
  for (const Expectation& expected : expectations) {
    EXPECT_EQ(Tree(CLOMAdsLispVar(WithInteger(expected.type, expected.value))), expected.tree)
        << expected.type;
    EXPECT_EQ(AtomTree(ResBuf(WithInteger(expected.type, expected.value))), expected.tree) << expected.type;
  }
}

TEST_F(Variants, RealsBecomeReals) {
  EXPECT_EQ(Tree(CLOMAdsLispVar(COleVariant(0.5F))), "5001:0.5");
  EXPECT_EQ(CLOMAdsLispVar(COleVariant(0.1F)).GetAtom().resval.rreal, static_cast<double>(0.1F));
  EXPECT_EQ(CLOMAdsLispVar(COleVariant(0.1)).GetAtom().resval.rreal, 0.1);
}

TEST_F(Variants, TruthBecomesTheLongOneOrZero) {
  EXPECT_EQ(Tree(CLOMAdsLispVar(COleVariant(short{1}, VT_BOOL))), "5010:1");
  EXPECT_EQ(Tree(CLOMAdsLispVar(COleVariant(short{0}, VT_BOOL))), "5010:0");
  EXPECT_EQ(Tree(CLOMAdsLispVar(WithInteger(VT_BOOL, 2))), "5010:1");
}

TEST_F(Variants, TextsBecomeTexts) {
  EXPECT_EQ(Tree(CLOMAdsLispVar(COleVariant(L"abc", VT_BSTR))), "5005:abc");
  EXPECT_EQ(Tree(CLOMAdsLispVar(COleVariant(L"", VT_BSTR))), "5005:");
  EXPECT_EQ(Tree(CLOMAdsLispVar(WithText(nullptr))), "5005:");
  EXPECT_EQ(Tree(CLOMAdsLispVar(WithText(SysAllocStringLen(L"ab\0cd", 5)))), "5005:ab");
  const std::wstring text(100'000, L'x');
  EXPECT_EQ(CLOMAdsLispVar(COleVariant(text.c_str(), VT_BSTR)).GetAtom().resval.rstring, text);
}

TEST_F(Variants, OtherTypesBecomeAnEmptyList) {
  for (const int type : {int{VT_EMPTY}, int{VT_NULL}, int{VT_DATE}, int{VT_ERROR}, int{VT_CY}, int{VT_I8},
                         int{VT_UI8}, VT_I4 | VT_BYREF, VT_BSTR | VT_BYREF, 14, 99}) {
    const COleVariant variant = WithInteger(static_cast<VARTYPE>(type), -1);
    const CLOMAdsLispVar value(variant);
    EXPECT_EQ(Tree(value), "()") << type;
    EXPECT_FALSE(value.NilP()) << type;
    EXPECT_EQ(ResBuf(variant).Type(), RTNONE) << type;
  }
}

TEST_F(Variants, TheCallersVariantStaysAsItWas) {
  const COleVariant text(L"abc", VT_BSTR);
  const BSTR before = text.bstrVal;
  const CLOMAdsLispVar value(text);
  EXPECT_EQ(text.vt, VT_BSTR);
  EXPECT_EQ(text.bstrVal, before);
  EXPECT_STREQ(text.bstrVal, L"abc");
  EXPECT_NE(value.GetAtom().resval.rstring, text.bstrVal);
}

TEST_F(Variants, ARecordIsSetAnew) {
  ResBuf record(L"old");
  record = ResBuf(COleVariant(1.5));
  EXPECT_EQ(AtomTree(record), "5001:1.5");
}

TEST_F(Variants, ATextForWhichMemoryRunsOutIsNull) {
  FailEachAllocation([&] {
    const CLOMAdsLispVar value(COleVariant(L"abc", VT_BSTR));
    EXPECT_EQ(value.GetAtom().Type(), RTSTR);
    return value.GetAtom().resval.rstring != nullptr;
  });
}

// --- To variants ---

TEST_F(Variants, ShortsBecomeI4) {
  const COleVariant variant = CLOMAdsLispVar(-7).LispToOleVariant();
  EXPECT_EQ(variant.vt, VT_I4);
  EXPECT_EQ(variant.lVal, -7);
}

TEST_F(Variants, RealsAndLongsBecomeR8) {
  for (const CLOMAdsLispVar& value :
       {CLOMAdsLispVar(100000.0), CLOMAdsLispVar(100000L), CLOMAdsLispVar(100000LL)}) {
    const COleVariant variant = value.LispToOleVariant();
    EXPECT_EQ(variant.vt, VT_R8);
    EXPECT_EQ(variant.dblVal, 100000.0);
  }
}

TEST_F(Variants, TextsBecomeBstrs) {
  const CLOMAdsLispVar value(L"abc");
  const COleVariant variant = value.LispToOleVariant();
  EXPECT_EQ(variant.vt, VT_BSTR);
  EXPECT_STREQ(variant.bstrVal, L"abc");
  EXPECT_EQ(SysStringLen(variant.bstrVal), 3U);
  CLOMAdsLispVar null(1);
  null.GetAtom() = static_cast<const wchar_t*>(nullptr);
  const COleVariant empty = null.LispToOleVariant();
  EXPECT_EQ(empty.vt, VT_BSTR);
  EXPECT_EQ(SysStringLen(empty.bstrVal), 0U);
}

TEST_F(Variants, EverythingElseBecomesEmpty) {
  const __int64 name[2] = {1, 2};
  for (const CLOMAdsLispVar& value : {CLOMAdsLispVar(), ListOf({}), ListOf({1, 2}), Dotted({1, 2}),
                                      CLOMAdsLispVar(name), V(L"nil"), V(L"(1.0 2.0 3.0)")})
    EXPECT_EQ(value.LispToOleVariant().vt, VT_EMPTY) << Tree(value);
  for (const resbuf& record :
       {NoValue(RTT), NoValue(RTNIL), Real(1.0, RTANG), Point(1, 2, 3), Short(1, 70)}) {
    CLOMAdsLispVar value(1);
    value.GetAtom() = record;
    EXPECT_EQ(value.LispToOleVariant().vt, VT_EMPTY) << record.restype;
  }
}

TEST_F(Variants, ThereAndBackShortsBecomeLongs) {
  EXPECT_EQ(Tree(CLOMAdsLispVar(CLOMAdsLispVar(7).LispToOleVariant())), "5010:7");
  EXPECT_EQ(Tree(CLOMAdsLispVar(CLOMAdsLispVar(7L).LispToOleVariant())), "5001:7");
  EXPECT_EQ(Tree(CLOMAdsLispVar(CLOMAdsLispVar(L"a b").LispToOleVariant())), "5005:a b");
  EXPECT_EQ(Tree(CLOMAdsLispVar(CLOMAdsLisp::Nil.LispToOleVariant())), "()");
}

}  // namespace
}  // namespace lomlisp::test
