#include <algorithm>
#include <array>

#include <tests/support/Chains.h>
#include <tests/support/SmallStack.h>

namespace lomlisp::test::printer {
namespace {

constexpr size_t kMany = kLarge;

// A buffer with more behind it than is told, so that writes past the end are seen.
class Buffer {
 public:
  explicit Buffer(size_t size) : m_size(size), m_characters(size + 8, kUntouched) {}
  ~Buffer() {
    for (size_t i = m_size; i < m_characters.size(); ++i)
      EXPECT_EQ(m_characters[i], kUntouched) << "written past the end";
  }
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;

  wchar_t* Data() { return m_characters.data(); }
  size_t Size() const { return m_size; }
  std::wstring Text() const { return std::wstring(m_characters.data()); }
  wchar_t Last() const { return m_characters[m_size - 1]; }
  bool IsUntouched() const {
    return std::all_of(m_characters.begin(), m_characters.end(), [](wchar_t c) { return c == kUntouched; });
  }

 private:
  static constexpr wchar_t kUntouched = L'\x7F';
  size_t m_size;
  std::wstring m_characters;
};

// What pieces leave in a buffer in which each may take half of the room that is left.
std::wstring Halved(std::wstring text, const std::vector<std::wstring>& pieces, size_t size) {
  for (const std::wstring& piece : pieces)
    text += piece.substr(0, text.size() < size ? (size - text.size()) / 2 : 0);
  return text;
}

CLOMAdsLispVar Atom(const resbuf& record) {
  CLOMAdsLispVar value(short{1});
  value.GetAtom() = record;
  return value;
}

class Printer : public HostTest {
 protected:
  std::string OnCommandLine(const CLOMAdsLispVar& value) {
    Printed();
    value.PrinC(nullptr, 0);
    return Printed();
  }
  // Both outputs, which must agree.
  std::string Both(const CLOMAdsLispVar& value) {
    EXPECT_EQ(OnCommandLine(value), Text(value));
    return Text(value);
  }
};

// --- The text ---

TEST_F(Printer, Nil) {
  EXPECT_EQ(Both(CLOMAdsLisp::Nil), "nil");
  EXPECT_EQ(Both(Atom(NoValue(RTNIL))), "nil");
  EXPECT_EQ(Both(ListOf({CLOMAdsLisp::Nil})), "(nil)");
}

TEST_F(Printer, Atoms) {
  EXPECT_EQ(Both(short{-5}), "-5");
  EXPECT_EQ(Both(70000L), "70000");
  EXPECT_EQ(Both(static_cast<__int64>(1) << 40), "1099511627776");
  EXPECT_EQ(Both(2.5), "2.500000");
  EXPECT_EQ(Both(-1e-9), "-0.000000");
  EXPECT_EQ(Both(1e20), "100000000000000000000.000000");
  EXPECT_EQ(Both(Atom(Real(1.25, RTANG))), "1.250000");
  EXPECT_EQ(Both(Atom(Point(1, 2.5, 9, RTPOINT))), "( 1.000000 2.500000 )");
  EXPECT_EQ(Both(Atom(Point(1, 2.5, 9))), "( 1.000000 2.500000 9.000000 )");
  EXPECT_EQ(Both(Atom(Name(0x1F))), "<Entity name: 1f>");
  EXPECT_EQ(Both(Atom(Name(0x2A, RTPICKS))), "<Selection set: 2a>");
  EXPECT_EQ(Both(Atom(Real(1, RTORINT))), "RTORINT");
  EXPECT_EQ(Both(Atom(NoValue(RTVOID))), "RTVOID");
  EXPECT_EQ(Both(Atom(NoValue(RTLB))), "(");
  EXPECT_EQ(Both(Atom(NoValue(RTLE))), ")");
  EXPECT_EQ(Both(Atom(NoValue(RTDOTE))), "RTDOTE)");
  EXPECT_EQ(Both(Atom(NoValue(RTT))), "<5021>");
  EXPECT_EQ(Both(Atom(String(L"LINE", RTDXF0))), "RTDXF0");
}

TEST_F(Printer, AGroupPrintsAsItsBaseType) {
  CLOMAdsLispVar text(L"layer");
  text.GetAtom().MakeDXF(8);
  EXPECT_EQ(Both(text), "\"layer\"");
  EXPECT_EQ(Both(Atom(Short(7, 62))), "7");
  EXPECT_EQ(Both(Atom(Real(2.5, 40))), "2.500000");
  EXPECT_EQ(Both(Atom(Point(1, 2, 3, 10))), "( 1.000000 2.000000 3.000000 )");
}

TEST_F(Printer, TextsAreQuotedButNotEscaped) {
  EXPECT_EQ(Both(L"abc"), "\"abc\"");
  EXPECT_EQ(Both(L""), "\"\"");
  EXPECT_EQ(Both(L"a\"b\\c\n"), "\"a\"b\\c\n\"");
  EXPECT_EQ(Both(L"\u00E4\u00DF"), "\"\u00E4\u00DF\"");
  EXPECT_EQ(Both(CLOMAdsLispVar(Records{String(nullptr)})), "\"\"");
}

TEST_F(Printer, TextsAreNoFormats) {
  EXPECT_EQ(Both(L"100%d %s %n"), "\"100%d %s %n\"");
  EXPECT_EQ(Both(ListOf({L"%s", L"%%"})), "(\"%s\" \"%%\")");
}

TEST_F(Printer, Lists) {
  EXPECT_EQ(Both(ListOf({})), "()");
  EXPECT_EQ(Both(V(L"(1)")), "(1)");
  EXPECT_EQ(Both(V(L"(1 2 3)")), "(1 2 3)");
  EXPECT_EQ(Both(V(L"(1 (2 (\"a\")) 3)")), "(1 (2 (\"a\")) 3)");
  EXPECT_EQ(Both(ListOf({ListOf({}), ListOf({})})), "(() ())");
}

TEST_F(Printer, OnlyTheFirstSeparatorOfADottedListIsADot) {
  EXPECT_EQ(Both(V(L"(1 . 2)")), "(1 . 2)");
  EXPECT_EQ(Both(ListOf({short{1}, Dotted({short{2}, short{3}})})), "(1 (2 . 3))");
  EXPECT_EQ(Both(Dotted({short{1}, short{2}, short{3}})), "(1 . 2 3)");
  EXPECT_EQ(Both(Dotted({Dotted({short{1}, short{2}, short{3}}), short{4}, short{5}})), "((1 . 2 3) . 4 5)");
  EXPECT_EQ(Both(Dotted({short{1}, ListOf({short{2}, short{3}})})), "(1 . (2 3))");
  EXPECT_EQ(Both(Dotted({CLOMAdsLisp::Nil, CLOMAdsLisp::Nil})), "(nil . nil)");
  EXPECT_EQ(Both(Dotted({short{1}})), "(1)");
}

// --- Buffers ---

TEST_F(Printer, PrinCDiscardsWhatTheBufferHeld) {
  Buffer buffer(40);
  wcscpy(buffer.Data(), L"old");
  V(L"(1 2)").PrinC(buffer.Data(), buffer.Size());
  EXPECT_EQ(buffer.Text(), L"(1 2)");
  EXPECT_EQ(Printed(), "");
}

TEST_F(Printer, PrintAppendsTheNodeItIsGiven) {
  Buffer buffer(40);
  wcscpy(buffer.Data(), L"old ");
  const CLOMAdsLispVar other = V(L"(1 2)");
  CLOMAdsLisp::Nil.Print(other.New(), buffer.Data(), buffer.Size());
  EXPECT_EQ(buffer.Text(), L"old (1 2)");
  CLOMAdsLisp::Nil.Print(nullptr, buffer.Data(), buffer.Size());
  EXPECT_EQ(buffer.Text(), L"old (1 2)nil");
}

TEST_F(Printer, PrintWithoutABufferGoesToTheCommandLine) {
  CLOMAdsLisp::Nil.Print(V(L"(1 . 2)").New(), nullptr, 100);
  EXPECT_EQ(Printed(), "(1 . 2)");
  V(L"5").PrinC(nullptr, 100);
  EXPECT_EQ(Printed(), "5");
}

TEST_F(Printer, SizeZeroWritesNothing) {
  Buffer buffer(0);
  V(L"(1 2)").PrinC(buffer.Data(), 0);
  CLOMAdsLisp::Nil.PrinC(buffer.Data(), 0);
  V(L"(1 2)").Print(V(L"\"x\"").New(), buffer.Data(), 0);
  EXPECT_TRUE(buffer.IsUntouched());
  EXPECT_EQ(Printed(), "");
}

TEST_F(Printer, EachPieceMayTakeHalfOfTheRoomThatIsLeft) {
  const CLOMAdsLispVar value = ListOf({short{1}, L"abcdef", Dotted({2.5, CLOMAdsLisp::Nil}), ListOf({})});
  const std::vector<std::wstring> pieces = {L"(",   L"1",   L" ", L"\"abcdef\"", L" ", L"(", L"2.500000",
                                            L" . ", L"nil", L")", L" ",          L"(", L")", L")"};
  for (size_t size = 1; size <= 80; ++size) {
    Buffer buffer(size);
    value.PrinC(buffer.Data(), size);
    EXPECT_EQ(buffer.Text(), Halved(L"", pieces, size)) << size;
    EXPECT_EQ(buffer.Last(), L'\0') << size;
  }
}

TEST_F(Printer, WhatTheBufferHoldsTakesRoomToo) {
  const std::vector<std::wstring> pieces = {L"(", L"\"abcdef\"", L" ", L"nil", L")"};
  for (size_t size = 6; size <= 40; ++size) {
    Buffer buffer(size);
    wcscpy(buffer.Data(), L"12345");
    CLOMAdsLisp::Nil.Print(ListOf({L"abcdef", CLOMAdsLisp::Nil}).New(), buffer.Data(), size);
    EXPECT_EQ(buffer.Text(), Halved(L"12345", pieces, size)) << size;
  }
}

TEST_F(Printer, AnAtomIsCutAt16383Characters) {
  const std::wstring text(20'000, L'a');
  Buffer buffer(100'000);
  CLOMAdsLispVar(text).PrinC(buffer.Data(), buffer.Size());
  EXPECT_EQ(buffer.Text(), L"\"" + text.substr(0, 16'382));
}

TEST_F(Printer, OnTheCommandLineAnAtomIsCutAt2047Characters) {
  EXPECT_EQ(OnCommandLine(CLOMAdsLispVar(std::wstring(2'045, L'a'))), "\"" + std::string(2'045, 'a') + "\"");
  EXPECT_EQ(OnCommandLine(CLOMAdsLispVar(std::wstring(3'000, L'a'))), "\"" + std::string(2'046, 'a'));
}

// --- Text values ---

TEST_F(Printer, ToStringGivesATextAtom) {
  EXPECT_EQ(Tree(CLOMAdsLisp::ToString(CLOMAdsLisp::Nil)), "5005:nil");
  EXPECT_EQ(Tree(CLOMAdsLisp::ToString(ListOf({}))), "5005:()");
  EXPECT_EQ(Tree(CLOMAdsLisp::ToString(V(L"(1 \"a\")"))), "5005:(1 \"a\")");
  EXPECT_EQ(Printed(), "");
}

TEST_F(Printer, ToStringHasRoomFor5000Characters) {
  const auto length = [](size_t printed) {
    const CLOMAdsLispVar text(std::wstring(printed - 2, L'a'));
    return std::wstring(static_cast<wchar_t*>(CLOMAdsLisp::ToString(text).GetAtom())).size();
  };
  EXPECT_EQ(length(2'499), 2'499U);
  EXPECT_EQ(length(2'500), 2'500U);
  EXPECT_EQ(length(2'501), 2'500U);
  EXPECT_EQ(length(4'000), 2'500U);
  const CLOMAdsLispVar cut = CLOMAdsLisp::ToString(CLOMAdsLispVar(std::wstring(3'998, L'a')));
  EXPECT_EQ(std::wstring(static_cast<wchar_t*>(cut.GetAtom())), L"\"" + std::wstring(2'499, L'a'));
}

TEST_F(Printer, ToCStringHasRoomFor16384Characters) {
  const auto length = [](size_t printed) {
    return CLOMAdsLisp::ToCString(CLOMAdsLispVar(std::wstring(printed - 2, L'a'))).GetLength();
  };
  EXPECT_EQ(length(8'191), 8'191);
  EXPECT_EQ(length(8'192), 8'192);
  EXPECT_EQ(length(8'193), 8'192);
  EXPECT_EQ(length(20'000), 8'192);
}

TEST_F(Printer, PrinCOfTheFacadePrintsAndGivesTheValue) {
  const CLOMAdsLispVar value = V(L"(1 2)");
  EXPECT_EQ(CLOMAdsLisp::PrinC(value).New(), value.New());
  EXPECT_EQ(Printed(), "(1 2)");
  EXPECT_EQ(CLOMAdsLisp::PrinC(CLOMAdsLisp::Nil).New(), nullptr);
  EXPECT_EQ(Printed(), "nil");
}

// --- Size and memory ---

TEST_F(Printer, AMillionLevelsNeedNoStack) {
  const CLOMAdsLispVar value = Nested(kMany, CLOMAdsLisp::Nil);
  CString cut, text;
  OnSmallStack([&] {
    cut = CLOMAdsLisp::ToCString(value);
    text = static_cast<const wchar_t*>(CLOMAdsLisp::ToString(value).GetAtom().resval.rstring);
    value.PrinC(nullptr, 0);
  });
  EXPECT_EQ(std::wstring(cut), std::wstring(16'383, L'('));
  EXPECT_EQ(std::wstring(text), std::wstring(4'999, L'('));
  EXPECT_TRUE(host.console.Take() == std::wstring(kMany, L'(') + L"nil" + std::wstring(kMany, L')'));
}

TEST_F(Printer, AMillionLevelsIntoABuffer) {
  const CLOMAdsLispVar value = Nested(kMany, short{1});
  Buffer buffer(3 * kMany);
  OnSmallStack([&] { value.PrinC(buffer.Data(), buffer.Size()); });
  EXPECT_TRUE(buffer.Text() == std::wstring(kMany, L'(') + L"1" + std::wstring(kMany, L')'));
}

TEST_F(Printer, AMillionMembersTakeLinearTime) {
  CLOMAdsLispVar value = ListOf({});
  for (size_t i = 0; i < kMany; ++i) value.New()->children.push_back(CLOMAdsLispVar(short{1}).New());
  Buffer buffer(3 * kMany);
  OnSmallStack([&] { value.PrinC(buffer.Data(), buffer.Size()); });
  const std::wstring text = buffer.Text();
  EXPECT_EQ(text.size(), 2 * kMany + 1);
  EXPECT_EQ(text.substr(0, 6), L"(1 1 1");
  EXPECT_EQ(text.substr(text.size() - 3), L" 1)");
}

TEST_F(Printer, ATextAtomForWhichMemoryRunsOutIsEmpty) {
  FailEachAllocation([] { return Tree(CLOMAdsLisp::ToString(CLOMAdsLisp::Nil)) == "5005:nil"; });
}

}  // namespace
}  // namespace lomlisp::test::printer
