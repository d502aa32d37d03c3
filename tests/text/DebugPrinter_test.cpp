#include <tests/support/Chains.h>
#include <tests/support/SmallStack.h>

namespace lomlisp::test {
namespace {

constexpr size_t kMany = kLarge;

CLOMAdsLispVar Atom(const resbuf& record) {
  CLOMAdsLispVar value(short{1});
  value.GetAtom() = record;
  return value;
}

class DebugPrinter : public HostTest {
 protected:
  static std::string Debug(const CLOMAdsLispVar& value) { return Utf8(value.GetAsDebugString().GetString()); }

  void TearDown() override {
    EXPECT_EQ(Printed(), "");
    HostTest::TearDown();
  }
};

TEST_F(DebugPrinter, Nil) {
  EXPECT_EQ(Debug(CLOMAdsLisp::Nil), "nil");
  EXPECT_EQ(Debug(Atom(NoValue(RTNIL))), "nil");
  EXPECT_EQ(Debug(ListOf({CLOMAdsLisp::Nil})), "(nil)");
}

TEST_F(DebugPrinter, AtomsHaveTheirDebuggingForm) {
  EXPECT_EQ(Debug(short{-32768}), "-32768");
  EXPECT_EQ(Debug(CLOMAdsLispVar(Records{Long(-2147483647 - 1)})), "-2147483648");
  EXPECT_EQ(Debug(static_cast<__int64>(1) << 40), "1099511627776");
  EXPECT_EQ(Debug(2.5), "2.500000");
  EXPECT_EQ(Debug(Atom(Real(1.25, RTANG))), "1.250000");
  EXPECT_EQ(Debug(Atom(Point(1, 2.5, 9, RTPOINT))), "( 1.000000 2.500000 )");
  EXPECT_EQ(Debug(Atom(Point(1, 2.5, 9))), "( 1.000000 2.500000 9.000000 )");
  EXPECT_EQ(Debug(Atom(Name(0x1F))), "<Ename: 1f>");
  EXPECT_EQ(Debug(Atom(Name(0x2A, RTPICKS))), "<Selset: 2a>");
  EXPECT_EQ(Debug(Atom(Name(0xFFFFFFFFLL))), "<Ename: ffffffff>");
  EXPECT_EQ(Debug(Atom(Name(0xFFFFFFFFLL, RTPICKS))), "<Selset: ffffffff>");
  EXPECT_EQ(Debug(Atom(NoValue(RTT))), "<5021>");
  EXPECT_EQ(Debug(Atom(NoValue(RTVOID))), "RTVOID");
  EXPECT_EQ(Debug(Atom(NoValue(RTDOTE))), "RTDOTE)");
}

TEST_F(DebugPrinter, TextsAreWhole) {
  EXPECT_EQ(Debug(L"abc"), "\"abc\"");
  EXPECT_EQ(Debug(L""), "\"\"");
  EXPECT_EQ(Debug(L"100%d %s"), "\"100%d %s\"");
  EXPECT_EQ(Debug(CLOMAdsLispVar(Records{String(nullptr)})), "\"\"");
  for (const size_t length : {2'045U, 2'046U, 2'047U, 16'382U, 16'384U, 50'000U})
    EXPECT_EQ(Debug(std::wstring(length, L'a')), "\"" + std::string(length, 'a') + "\"");
}

TEST_F(DebugPrinter, ListsAreWhole) {
  EXPECT_EQ(Debug(ListOf({})), "()");
  EXPECT_EQ(Debug(ListOf({L"abc"})), "(\"abc\")");
  EXPECT_EQ(Debug(ListOf({Atom(Name(0xFFFFFFFFLL))})), "(<Ename: ffffffff>)");
  EXPECT_EQ(Debug(ListOf({CLOMAdsLisp::Nil, ListOf({}), ListOf({L"x"})})), "(nil () (\"x\"))");
  EXPECT_EQ(Debug(V(L"(1 (2 (\"a\")) 3)")), "(1 (2 (\"a\")) 3)");
}

TEST_F(DebugPrinter, OnlyTheFirstSeparatorOfADottedListIsADot) {
  EXPECT_EQ(Debug(V(L"(1 . 2)")), "(1 . 2)");
  EXPECT_EQ(Debug(Dotted({L"a", L"b", L"c"})), "(\"a\" . \"b\" \"c\")");
  EXPECT_EQ(Debug(Dotted({Dotted({L"a", L"b"}), L"c", L"d"})), "((\"a\" . \"b\") . \"c\" \"d\")");
}

TEST_F(DebugPrinter, ThereAreNoLineBreaks) {
  const std::string text = Debug(V(L"((1 2) (3 (4)) (\"a\" . \"b\"))"));
  EXPECT_EQ(text, "((1 2) (3 (4)) (\"a\" . \"b\"))");
}

TEST_F(DebugPrinter, ANumberLongerThanItsEstimateUsesUpTheRoom) {
  const std::string text = Debug(ListOf({1e200}));
  EXPECT_EQ(text.substr(0, 2), "(9");
  EXPECT_GE(text.size(), 49U);
  EXPECT_LE(text.size(), 51U);
  EXPECT_EQ(text.find(')'), std::string::npos);
}

TEST_F(DebugPrinter, TheValueIsNotChanged) {
  const CLOMAdsLispVar value = V(L"(1 (\"a\" . 2))");
  Debug(value);
  EXPECT_EQ(Tree(value), "(5003:1 {5005:a 5003:2})");
}

TEST_F(DebugPrinter, AMillionLevelsNeedNoStack) {
  const CLOMAdsLispVar value = Nested(kMany, CLOMAdsLisp::Nil);
  CString text;
  OnSmallStack([&] { text = value.GetAsDebugString(); });
  EXPECT_TRUE(std::wstring(text) == std::wstring(kMany, L'(') + L"nil" + std::wstring(kMany, L')'));
}

TEST_F(DebugPrinter, AMillionMembersTakeLinearTime) {
  CLOMAdsLispVar value = ListOf({});
  for (size_t i = 0; i < kMany; ++i) value.New()->children.push_back(nullptr);
  CString text;
  OnSmallStack([&] { text = value.GetAsDebugString(); });
  EXPECT_EQ(text.GetLength(), static_cast<int>(4 * kMany + 1));
}

}  // namespace
}  // namespace lomlisp::test
