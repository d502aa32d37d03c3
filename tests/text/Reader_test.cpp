// LISP text to values.
#include <tests/support/Chains.h>
#include <tests/support/SmallStack.h>

namespace lomlisp::test::reader {
namespace {

using Element = CLOMAdsLispVar::Element;
using Token = CLOMAdsLispVar::Token;

constexpr const char* kTooLong = "CLOMAdsLispVar::Read : Wert zu lang ( > 100 Zeichen ) !\n";
constexpr const char* kNoString = "CLOMAdsLisp::Read : Parameter ist nicht vom Typ String !\n";

std::string Malformed(std::wstring_view text) {
  return "LispVar::Read : String \"" + Utf8(text) + "\" war nicht wohlgeformt\n";
}

const std::wstring kLongToken(100, L'1');

std::wstring Repeat(std::wstring_view text, size_t times) {
  std::wstring all;
  all.reserve(text.size() * times);
  for (size_t i = 0; i < times; ++i) all += text;
  return all;
}

// How many lists stand in each other, each as the first member of the one around it.
size_t Depth(const CLOMAdsLispVar& value) {
  size_t depth = 0;
  Element node = value.New();
  while (node != nullptr && !node->children.empty()) {
    const Element child = node->children[0];
    node = child;
    ++depth;
  }
  return depth;
}

struct Expected {
  const wchar_t* text;
  const char* tree;
};

class ReaderTest : public HostTest {
 protected:
  // The tree of a text that can be read.
  std::string Read(const wchar_t* text) {
    CLOMAdsLispVar value(short{77});
    EXPECT_TRUE(value.Read(text));
    EXPECT_EQ(Printed(), "");
    return Tree(value);
  }
  template <size_t N>
  void Check(const Expected (&cases)[N]) {
    for (const auto& [text, tree] : cases) EXPECT_EQ(Read(text), tree) << Utf8(text);
  }
  void CheckMalformed(std::initializer_list<const wchar_t*> texts) {
    for (const wchar_t* text : texts) {
      CLOMAdsLispVar value(short{77});
      const Element before = value.New();
      EXPECT_FALSE(value.Read(text)) << Utf8(text);
      EXPECT_EQ(value.New(), before);
      EXPECT_EQ(Tree(value), "5003:77");
      EXPECT_EQ(Printed(), Malformed(text));
    }
  }
};

// --- What can be read ---

TEST_F(ReaderTest, Atoms) {
  Check({{L"7", "5003:7"},
         {L"-1", "5003:-1"},
         {L"+7", "5003:7"},
         {L"2.5", "5001:2.5"},
         {L"-2.", "5001:-2"},
         {L"\"a b\"", "5005:a b"},
         {L"\"\"", "5005:"},
         {L"\"\u00E4\u00DF\"", "5005:\u00E4\u00DF"},
         {L"\"a\\\"", "5005:a\\"}});
}

TEST_F(ReaderTest, IntegersKeepTheir16LowBits) {
  Check({{L"32767", "5003:32767"},
         {L"32768", "5003:-32768"},
         {L"65535", "5003:-1"},
         {L"65536", "5003:0"},
         {L"70000", "5003:4464"},
         {L"-32769", "5003:32767"},
         {L"2147483647", "5003:-1"},
         {L"99999999999", "5003:-1"},
         {L"-99999999999", "5003:0"},
         {L"4294967301", "5003:-1"}});
}

TEST_F(ReaderTest, NoTextNilAndEmptyBracketsAreAnEmptyList) {
  Check({{L"", "()"},
         {L" \t\n\v\f\r ", "()"},
         {L"nil", "()"},
         {L"NIL", "()"},
         {L"Nil", "()"},
         {L" nil ", "()"},
         {L"()", "()"},
         {L"(  )", "()"},
         {L"( . )", "()"},
         {L"(.)", "()"}});
  EXPECT_EQ(Read(nullptr), "()");
  CLOMAdsLispVar value;
  EXPECT_TRUE(value.Read(L"nil"));
  EXPECT_FALSE(value.NilP());
}

TEST_F(ReaderTest, Lists) {
  Check({{L"(1 2.5 \"a b\")", "(5003:1 5001:2.5 5005:a b)"},
         {L"(1)", "(5003:1)"},
         {L"((1))", "((5003:1))"},
         {L"(1 (2 (3)) 4)", "(5003:1 (5003:2 (5003:3)) 5003:4)"},
         {L"(())", "(())"},
         {L"(() nil (()))", "(() () (()))"},
         {L"(nil)", "(())"},
         {L"(1 nil2)", "(5003:1 () 5003:2)"},
         {L"(\"(\" \")\")", "(5005:( 5005:))"}});
}

TEST_F(ReaderTest, BlanksAreNeededOnlyBetweenWhatWouldRunTogether) {
  Check({{L"  ( 1\n2 )\t", "(5003:1 5003:2)"},
         {L"(1\"a\"(2)nil-3\"b\")", "(5003:1 5005:a (5003:2) () 5003:-3 5005:b)"},
         {L"(1-2+3.)", "(5003:1 5003:-2 5001:3)"},
         {L"\"x\" ", "5005:x"}});
}

TEST_F(ReaderTest, DottedLists) {
  Check({{L"(1 . 2)", "{5003:1 5003:2}"},
         {L"(1 . \"a\")", "{5003:1 5005:a}"},
         {L"(1 .2)", "{5003:1 5003:2}"},
         {L"(\"a\".2.5)", "{5005:a 5001:2.5}"},
         {L"(1 2 . 3)", "{5003:1 5003:2 5003:3}"},
         {L"((1 . 2) . 3)", "{{5003:1 5003:2} 5003:3}"},
         {L"((1 2) . 3)", "{(5003:1 5003:2) 5003:3}"},
         {L"(() . 1)", "{() 5003:1}"},
         {L"((1 . 2) (3 . 4))", "({5003:1 5003:2} {5003:3 5003:4})"}});
}

TEST_F(ReaderTest, NilBehindADotIsAnEmptyList) { EXPECT_EQ(Read(L"(1 . nil)"), "{5003:1 ()}"); }

TEST_F(ReaderTest, ADotRightBehindDigitsBelongsToTheNumber) {
  Check({{L"(1. 2)", "(5001:1 5003:2)"}, {L"(1.2)", "(5001:1.2)"}, {L"(1. . 2)", "{5001:1 5003:2}"}});
}

// --- What cannot ---

TEST_F(ReaderTest, RefusesMoreThanOneItem) {
  CheckMalformed({L"1 2", L"() ()", L"(1) 2", L"nil nil", L"nil x", L"nilx", L"\"a\"\"b\"", L"1 )", L"()) ",
                  L"1 .", L"1-2", L"1 . 2"});
}

TEST_F(ReaderTest, RefusesOpenAndStrayBrackets) {
  CheckMalformed(
      {L"(", L"((", L"(1", L"(1 2", L"((1)", L"(1 (2)", L")", L"())", L"(1))", L"(nil", L"(\"a\""});
}

TEST_F(ReaderTest, RefusesADotThatDoesNotEndAListWithOneAtom) {
  CheckMalformed({L".", L". 1", L".5", L"(1 . (2 3))", L"(1 . ())", L"(1 . )", L"(1 .", L"(1 . 2",
                  L"(1 . 2 3)", L"(1 . 2 . 3)", L"(1 . .)", L"(1 . . 2)", L"( . 5)", L"( . (1))", L"( . ",
                  L"(1 (. 2))", L"(1 . 2 (3))"});
}

TEST_F(ReaderTest, RefusesSymbolsQuotesCommentsAndExponents) {
  CheckMalformed({L"a", L"T", L"'x", L"'(1)", L"; c", L"1 ; c", L"(a)", L"(1 a)", L"(1 . a)", L"+",
                  L"(- 1 2)", L"12a", L"1.5e3", L"3.x", L"(1 2b)", L"#t", L"{}", L"\u00E4", L"\u00A01"});
}

TEST_F(ReaderTest, RefusesTextsThatAreOpenOrRunIntoALetter) {
  CheckMalformed({L"\"", L"\"abc", L"(\"abc)", L"\"x\"y", L"\"x\"1", L"(\"x\"y)", L"(1 \"a\"\")"});
}

TEST_F(ReaderTest, RefusesWhatThePrinterWritesForADottedListOfThree) {
  const CLOMAdsLispVar three = Dotted({short{1}, short{2}, short{3}});
  EXPECT_EQ(Text(three), "(1 . 2 3)");
  CheckMalformed({L"(1 . 2 3)"});
}

// --- Messages ---

TEST_F(ReaderTest, TheMessageHoldsTheWholeTextAsItIs) {
  CheckMalformed({L"%s %d %n", L" (\u00C4\u00DF\n", L"100%"});
  const std::wstring text = L"(" + Repeat(L"12345 ", 5000);
  CheckMalformed({text.c_str()});
}

TEST_F(ReaderTest, ATokenThatIsTooLongIsReportedInFrontOfTheText) {
  for (const std::wstring& text :
       {kLongToken, L"(" + kLongToken + L")", L"(1 . " + kLongToken + L")", L"1 " + kLongToken,
        L"(1) " + kLongToken, L"( . " + kLongToken + L")", L"(1 " + kLongToken + L" " + kLongToken + L")",
        L"\"" + std::wstring(98, L'x') + L"\""}) {
    CLOMAdsLispVar value(short{77});
    EXPECT_FALSE(value.Read(text.c_str()));
    EXPECT_EQ(Tree(value), "5003:77");
    EXPECT_EQ(Printed(), kTooLong + Malformed(text)) << Utf8(text);
  }
}

TEST_F(ReaderTest, ATokenBehindTheFailureIsReportedByTheSecondAttempt) {
  for (const std::wstring& text :
       {L"1 2 " + kLongToken, L"1 (2 " + kLongToken + L")", L"(1 . (2 " + kLongToken + L"))",
        L"(1 . 2 3 " + kLongToken + L")", L"( . 5 " + kLongToken + L")", L"() (" + kLongToken + L")"}) {
    CLOMAdsLispVar value(short{77});
    EXPECT_FALSE(value.Read(text.c_str()));
    EXPECT_EQ(Printed(), kTooLong + Malformed(text)) << Utf8(text);
  }
}

TEST_F(ReaderTest, ATokenThatNoAttemptReachesIsNotReported) {
  for (const std::wstring& text : {L"a " + kLongToken, L") " + kLongToken, L"(1 . ) " + kLongToken,
                                   L"1 2 3 " + kLongToken, L"(1 . 2 3 4 " + kLongToken + L")"}) {
    CLOMAdsLispVar value;
    EXPECT_FALSE(value.Read(text.c_str()));
    EXPECT_EQ(Printed(), Malformed(text)) << Utf8(text);
  }
}

TEST_F(ReaderTest, NinetySevenCharactersBetweenQuotesCanBeRead) {
  const std::wstring text(97, L'x');
  CLOMAdsLispVar value;
  EXPECT_TRUE(value.Read((L"\"" + text + L"\"").c_str()));
  EXPECT_EQ(Tree(value), "5005:" + Utf8(text));
  EXPECT_EQ(Printed(), "");
}

// --- The value ---

TEST_F(ReaderTest, ReplacesTheHandleNotTheTreeItShared) {
  CLOMAdsLispVar value = V(L"(1 2)");
  const CLOMAdsLispVar other(value);
  EXPECT_TRUE(value.Read(L"(3)"));
  EXPECT_EQ(Tree(value), "(5003:3)");
  EXPECT_EQ(Tree(other), "(5003:1 5003:2)");
}

TEST_F(ReaderTest, EachReadingMakesNewNodes) {
  CLOMAdsLispVar first, second;
  EXPECT_TRUE(first.Read(L"(1 (2))"));
  EXPECT_TRUE(second.Read(L"(1 (2))"));
  EXPECT_NE(first.New(), second.New());
  EXPECT_NE(first.New()->children[1], second.New()->children[1]);
  EXPECT_EQ(first.New().use_count(), 2);
}

TEST_F(ReaderTest, KeepsTheOldTreeOnFailure) {
  CLOMAdsLispVar value = V(L"(1 (2))");
  const Element before = value.New();
  EXPECT_FALSE(value.Read(L"(3 4"));
  EXPECT_EQ(value.New(), before);
  EXPECT_EQ(Tree(value), "(5003:1 (5003:2))");
  CLOMAdsLispVar nil;
  EXPECT_FALSE(nil.Read(L"(3 4"));
  EXPECT_EQ(nil.New(), nullptr);
  EXPECT_EQ(Printed(), Malformed(L"(3 4") + Malformed(L"(3 4"));
}

TEST_F(ReaderTest, ASuccessFollowsAFailure) {
  CheckMalformed({L"(1 (2"});
  EXPECT_EQ(Read(L"(1 (2))"), "(5003:1 (5003:2))");
}

TEST_F(ReaderTest, ReadsTheValuesOwnText) {
  CLOMAdsLispVar value(L"(1 \"inner\")");
  EXPECT_TRUE(value.Read(value.GetAtom().resval.rstring));
  EXPECT_EQ(Tree(value), "(5003:1 5005:inner)");
  value = V(L"(0 \"(2 . 3)\")");
  EXPECT_TRUE(value.Read(value.New()->children[1]->atom.resval.rstring));
  EXPECT_EQ(Tree(value), "{5003:2 5003:3}");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ReaderTest, FailsOnTheValuesOwnText) {
  CLOMAdsLispVar value(L"(1 a)");
  EXPECT_FALSE(value.Read(value.GetAtom().resval.rstring));
  EXPECT_EQ(Tree(value), "5005:(1 a)");
  EXPECT_EQ(Printed(), Malformed(L"(1 a)"));
}

TEST_F(ReaderTest, TheTextIsCopied) {
  wchar_t text[] = L"(\"abc\")";
  CLOMAdsLispVar value;
  EXPECT_TRUE(value.Read(text));
  text[2] = L'x';
  EXPECT_EQ(Tree(value), "(5005:abc)");
}

TEST_F(ReaderTest, ReadsWhatThePrinterWrites) {
  for (const wchar_t* text :
       {L"0", L"-32768", L"\"\"", L"\"a.b (c)\"", L"2.500000", L"-0.125000", L"()", L"(1)", L"(1 . 2)",
        L"((1 . \"a\") (2 . \"b\"))", L"(1 (2 (3.500000)) \"x y\" () (()))", L"((1 2) . 3)"}) {
    CLOMAdsLispVar value, again;
    EXPECT_TRUE(value.Read(text));
    EXPECT_EQ(Text(value), Utf8(text));
    EXPECT_TRUE(again.Read(CLOMAdsLisp::ToCString(value).GetString()));
    EXPECT_EQ(Tree(again), Tree(value));
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(ReaderTest, SurvivesEachFailedAllocationOfAText) {
  FailEachAllocation([] {
    CLOMAdsLispVar value;
    EXPECT_TRUE(value.Read(L"(\"a\" (\"b\" . \"c\") \"d\")"));
    return Tree(value) == "(5005:a {5005:b 5005:c} 5005:d)";
  });
}

// --- The static form ---

TEST_F(ReaderTest, StaticReadsTheTextOfAString) {
  const CLOMAdsLispVar text(L"(1 . \"a\")");
  EXPECT_EQ(Tree(CLOMAdsLisp::Read(text)), "{5003:1 5005:a}");
  EXPECT_EQ(Tree(text), "5005:(1 . \"a\")");
  EXPECT_EQ(Tree(CLOMAdsLisp::Read(L"")), "()");
  EXPECT_EQ(Tree(CLOMAdsLisp::Read(CLOMAdsLispVar(Records{String(nullptr)}))), "()");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ReaderTest, StaticGivesNilForAMalformedText) {
  const CLOMAdsLispVar text(L"(1");
  EXPECT_EQ(CLOMAdsLisp::Read(text).New(), nullptr);
  EXPECT_EQ(Tree(text), "5005:(1");
  EXPECT_EQ(Printed(), Malformed(L"(1"));
}

TEST_F(ReaderTest, StaticRefusesWhatIsNoString) {
  CLOMAdsLispVar group(L"1");
  group.GetAtom().MakeDXF(8);
  for (const CLOMAdsLispVar& value :
       {CLOMAdsLispVar(), V(L"7"), V(L"2.5"), V(L"(\"1\")"), ListOf({}),
        CLOMAdsLispVar(Records{NoValue(RTT)}), CLOMAdsLispVar(Records{String(L"1", RTDXF0)}), group}) {
    EXPECT_EQ(CLOMAdsLisp::Read(value).New(), nullptr);
    EXPECT_EQ(Printed(), kNoString);
  }
}

// --- The stages ---

struct Staged {
  bool read;
  std::string tree;
  Token::Kind next;
};

// One stage on a fresh node, after the first token of the text was read.
Staged RunStage(bool (*stage)(Token&, Element&), const wchar_t* text) {
  CLOMAdsLispVar::s_pszNextChar = text;
  Token token{};
  CLOMAdsLispVar::getToken(token);
  Element node = std::make_shared<CLOMLispElement>();
  const bool read = stage(token, node);
  return {read, Tree(node), token.kind};
}

struct ExpectedStage {
  const wchar_t* text;
  const char* tree;
  Token::Kind next;
};

template <size_t N>
void CheckStage(bool (*stage)(Token&, Element&), const ExpectedStage (&cases)[N]) {
  for (const auto& [text, tree, next] : cases) {
    const Staged staged = RunStage(stage, text);
    EXPECT_TRUE(staged.read) << Utf8(text);
    EXPECT_EQ(staged.tree, tree) << Utf8(text);
    EXPECT_EQ(staged.next, next) << Utf8(text);
  }
}

TEST_F(ReaderTest, AnAtomLeavesTheTokenBehindIt) {
  CheckStage(CLOMAdsLispVar::String_Atom, {{L"5)", "5003:5", Token::Close},
                                           {L"70000 (", "5003:4464", Token::Open},
                                           {L"2.5 1.5", "5001:2.5", Token::Real},
                                           {L"\"a\" .", "5005:a", Token::Dot},
                                           {L"nil 3", "()", Token::Integer},
                                           {L"nil", "()", Token::End},
                                           {L"1 a", "5003:1", Token::Error},
                                           {L"", "()", Token::End}});
  EXPECT_EQ(Printed(), "");
}

TEST_F(ReaderTest, WhatIsNoAtomIsNotTouched) {
  for (const wchar_t* text : {L"( 1", L") 1", L". 1", L"a 1"}) {
    CLOMAdsLispVar::s_pszNextChar = text;
    Token token{};
    CLOMAdsLispVar::getToken(token);
    const Token::Kind kind = token.kind;
    const wchar_t* const position = CLOMAdsLispVar::s_pszNextChar;
    Element node = std::make_shared<CLOMLispElement>();
    EXPECT_FALSE(CLOMAdsLispVar::String_Atom(token, node)) << Utf8(text);
    EXPECT_EQ(Tree(node), "()");
    EXPECT_EQ(token.kind, kind);
    EXPECT_EQ(CLOMAdsLispVar::s_pszNextChar, position);
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(ReaderTest, AnItemLeavesTheTokenBehindIt) {
  CheckStage(CLOMAdsLispVar::String_Liste, {{L"", "()", Token::End},
                                            {L"()", "()", Token::End},
                                            {L"() 1", "()", Token::Integer},
                                            {L"5 \"a\"", "5003:5", Token::String},
                                            {L"(1 2) )", "(5003:1 5003:2)", Token::Close},
                                            {L"(1 . 2) nil", "{5003:1 5003:2}", Token::Nil},
                                            {L"( . ) .", "()", Token::Dot},
                                            {L"((1)) a", "((5003:1))", Token::Error},
                                            {L"nil (", "()", Token::Open}});
  EXPECT_EQ(Printed(), "");
}

TEST_F(ReaderTest, AnItemFailsSilently) {
  for (const wchar_t* text :
       {L")", L". 1", L"a", L"(", L"(1", L"(1 .", L"(1 . )", L"( . 1)", L"(a)", L"((1)"})
    EXPECT_FALSE(RunStage(CLOMAdsLispVar::String_Liste, text).read) << Utf8(text);
  EXPECT_EQ(Printed(), "");
}

TEST_F(ReaderTest, ItemsEndAtABracketOrTheEnd) {
  CheckStage(CLOMAdsLispVar::String_ElementListe, {{L"", "()", Token::End},
                                                   {L")", "()", Token::Close},
                                                   {L"1 2) 3", "(5003:1 5003:2)", Token::Close},
                                                   {L"1 2", "(5003:1 5003:2)", Token::End},
                                                   {L"(1) nil)", "((5003:1) ())", Token::Close},
                                                   {L"1 . 2)", "{5003:1 5003:2}", Token::Close},
                                                   {L"1 2 . 3", "{5003:1 5003:2 5003:3}", Token::End},
                                                   {L"1 . 2 3", "{5003:1 5003:2}", Token::Integer},
                                                   {L"1 . ", "{5003:1 ()}", Token::End},
                                                   {L". )", "()", Token::Close},
                                                   {L". 5", "()", Token::Integer}});
  EXPECT_EQ(Printed(), "");
}

TEST_F(ReaderTest, ItemsFailSilently) {
  for (const wchar_t* text : {L"a", L"1 a", L"1 . )", L"1 . (2)", L"1 . .", L"1 (2", L"1 (2 . ))"})
    EXPECT_FALSE(RunStage(CLOMAdsLispVar::String_ElementListe, text).read) << Utf8(text);
  EXPECT_EQ(Printed(), "");
}

// --- Size ---

TEST_F(ReaderTest, ReadsDeepTextOnASmallStack) {
  constexpr size_t kDepth = kLarge;
  const std::wstring lists = Repeat(L"(", kDepth) + Repeat(L")", kDepth);
  const std::wstring pairs = Repeat(L"(", kDepth) + L"1" + Repeat(L" . 2)", kDepth);
  OnSmallStack([&] {
    CLOMAdsLispVar value;
    EXPECT_TRUE(value.Read(lists.c_str()));
    EXPECT_EQ(Depth(value), kDepth - 1);
    EXPECT_TRUE(value.Read(pairs.c_str()));
    EXPECT_EQ(Depth(value), kDepth);
    EXPECT_EQ(value.New()->Kind(), CLOMLispElement::DottedList);
  });
  EXPECT_EQ(Printed(), "");
}

TEST_F(ReaderTest, FailsOnDeepTextOnASmallStack) {
  const std::wstring open = Repeat(L"(", kLarge);
  for (const std::wstring& text : {open, open + L"a", L"1 " + open, L"(1 . " + open + Repeat(L")", kLarge)}) {
    OnSmallStack([&] {
      CLOMAdsLispVar value(short{77});
      EXPECT_FALSE(value.Read(text.c_str()));
      EXPECT_EQ(Tree(value), "5003:77");
    });
    EXPECT_TRUE(Printed() == Malformed(text));
  }
}

TEST_F(ReaderTest, ReadsLongText) {
  OnSmallStack([&] {
    CLOMAdsLispVar value;
    EXPECT_TRUE(value.Read((L"(" + Repeat(L"-12 ", kLarge) + L". 2.5)").c_str()));
    const Element node = value.New();
    ASSERT_EQ(node->children.size(), static_cast<size_t>(kLarge) + 1);
    EXPECT_EQ(Tree(node->children[kLarge - 1]), "5003:-12");
    EXPECT_EQ(Tree(node->children[kLarge]), "5001:2.5");
    EXPECT_TRUE(value.Read((Repeat(L" ", kLarge) + L"()" + Repeat(L"\n", kLarge)).c_str()));
    EXPECT_EQ(Tree(value), "()");
  });
  EXPECT_EQ(Printed(), "");
}

TEST_F(ReaderTest, FailsOnLongTextOnASmallStack) {
  const std::wstring text = L"(" + Repeat(L"(1) ", kLarge) + L"a";
  OnSmallStack([&] {
    CLOMAdsLispVar value;
    EXPECT_FALSE(value.Read(text.c_str()));
    EXPECT_EQ(value.New(), nullptr);
  });
  EXPECT_TRUE(Printed() == Malformed(text));
}

}  // namespace
}  // namespace lomlisp::test::reader
