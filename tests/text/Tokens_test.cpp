// The tokens of LISP text, one by one.
#include <tests/support/HostTest.h>

#include <cmath>
#include <limits>
#include <sstream>

namespace lomlisp::test::tokens {
namespace {

using Token = CLOMAdsLispVar::Token;

constexpr const char* kTooLong = "CLOMAdsLispVar::Read : Wert zu lang ( > 100 Zeichen ) !\n";

Token Next() {
  Token token{};
  CLOMAdsLispVar::getToken(token);
  return token;
}
Token FirstOf(const wchar_t* text) {
  CLOMAdsLispVar::s_pszNextChar = text;
  return Next();
}

// Where the next token begins, counted from the start of the text.
std::ptrdiff_t Position(const wchar_t* text) { return CLOMAdsLispVar::s_pszNextChar - text; }

std::string Name(const Token& token) {
  std::ostringstream name;
  switch (token.kind) {
    case Token::Integer:
      name << "int:" << token.integer;
      break;
    case Token::Real:
      name << "real:" << token.real;
      break;
    case Token::String:
      name << "text:" << Utf8(token.text);
      break;
    case Token::Open:
      name << '(';
      break;
    case Token::Close:
      name << ')';
      break;
    case Token::Dot:
      name << '.';
      break;
    case Token::Error:
      name << "error";
      break;
    case Token::Nil:
      name << "nil";
      break;
    case Token::End:
      name << "end";
      break;
  }
  return name.str();
}

// All tokens up to the end or the first error, as in "( int:1 text:a ) end".
std::string TokensOf(const wchar_t* text) {
  Token token = FirstOf(text);
  std::string names = Name(token);
  while (token.kind != Token::End && token.kind != Token::Error) {
    token = Next();
    names += ' ' + Name(token);
  }
  return names;
}

struct Expected {
  const wchar_t* text;
  const char* tokens;
};

class Tokens : public HostTest {
 protected:
  template <size_t N>
  void Check(const Expected (&cases)[N]) {
    for (const auto& [text, tokens] : cases) EXPECT_EQ(TokensOf(text), tokens) << Utf8(text);
    EXPECT_EQ(Printed(), "");
  }
};

TEST_F(Tokens, TheirKindsAreNumbered) {
  EXPECT_EQ(static_cast<int>(Token::Integer), 0);
  EXPECT_EQ(static_cast<int>(Token::Real), 1);
  EXPECT_EQ(static_cast<int>(Token::String), 2);
  EXPECT_EQ(static_cast<int>(Token::Open), 3);
  EXPECT_EQ(static_cast<int>(Token::Close), 4);
  EXPECT_EQ(static_cast<int>(Token::Dot), 5);
  EXPECT_EQ(static_cast<int>(Token::Error), 6);
  EXPECT_EQ(static_cast<int>(Token::Nil), 7);
  EXPECT_EQ(static_cast<int>(Token::End), 8);
}

// --- Numbers ---

TEST_F(Tokens, Integers) {
  Check({{L"0", "int:0 end"},
         {L"7", "int:7 end"},
         {L"+7", "int:7 end"},
         {L"-7", "int:-7 end"},
         {L"70000", "int:70000 end"},
         {L"007", "int:7 end"},
         {L"-0", "int:0 end"}});
}

TEST_F(Tokens, IntegersSaturateAt32Bits) {
  Check({{L"2147483647", "int:2147483647 end"},
         {L"2147483648", "int:2147483647 end"},
         {L"-2147483648", "int:-2147483648 end"},
         {L"-2147483649", "int:-2147483648 end"},
         {L"4294967296", "int:2147483647 end"},
         {L"18446744073709551617", "int:2147483647 end"},
         {L"-99999999999999999999", "int:-2147483648 end"}});
}

TEST_F(Tokens, Reals) {
  Check({{L"1.5", "real:1.5 end"},
         {L"+1.5", "real:1.5 end"},
         {L"-1.5", "real:-1.5 end"},
         {L"1.", "real:1 end"},
         {L"-1.", "real:-1 end"},
         {L"00.250", "real:0.25 end"}});
}

TEST_F(Tokens, RealsAreTheNearestDouble) {
  const struct {
    const wchar_t* text;
    double value;
  } cases[] = {{L"0.1", 0.1},
               {L"3.14159265358979323846", 3.14159265358979323846},
               {L"123456789012345678901234567890.5", 123456789012345678901234567890.5},
               {L"0.000000000000000000000000000001", 1e-30},
               {L"9007199254740993.", 9007199254740992.0},
               {L"2147483648.0", 2147483648.0}};
  for (const auto& [text, value] : cases) {
    const Token token = FirstOf(text);
    EXPECT_EQ(token.kind, Token::Real);
    EXPECT_EQ(token.real, value) << Utf8(text);
  }
  EXPECT_TRUE(std::signbit(FirstOf(L"-0.0").real));
}

TEST_F(Tokens, ASecondDotIsATokenOfItsOwn) {
  Check({{L"1..", "real:1 . end"}, {L"1.5.2", "real:1.5 . int:2 end"}, {L"1. .2", "real:1 . int:2 end"}});
}

TEST_F(Tokens, ADotInFrontBelongsToNoNumber) {
  Check({{L".5", ". int:5 end"}, {L"-.5", "error"}, {L"+.5", "error"}});
}

TEST_F(Tokens, ASignNeedsADigit) {
  Check({{L"+", "error"}, {L"-", "error"}, {L"- 1", "error"}, {L"+-1", "error"}, {L"--1", "error"}});
}

TEST_F(Tokens, ASignBehindANumberBeginsTheNextOne) {
  Check({{L"1-2", "int:1 int:-2 end"}, {L"1.+2.", "real:1 real:2 end"}, {L"1-", "int:1 error"}});
}

TEST_F(Tokens, ALetterBehindANumberIsAnErrorAtTheStartOfTheNumber) {
  const struct {
    const wchar_t* text;
    std::ptrdiff_t start;
  } cases[] = {{L"12a", 0},  {L"12Z", 0},   {L"1e3", 0},    {L"1.5e3", 0}, {L"3.x", 0},
               {L"0x10", 0}, {L"1.5x2", 0}, {L"  -12a", 2}, {L"\t+3.x", 1}};
  for (const auto& [text, start] : cases) {
    EXPECT_EQ(FirstOf(text).kind, Token::Error) << Utf8(text);
    EXPECT_EQ(Position(text), start) << Utf8(text);
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(Tokens, AnyOtherCharacterEndsANumber) {
  Check({{L"1(", "int:1 ( end"},
         {L"1)", "int:1 ) end"},
         {L"1.5)", "real:1.5 ) end"},
         {L"1\"a\"", "int:1 text:a end"},
         {L"1_", "int:1 error"},
         {L"1'", "int:1 error"},
         {L"1,5", "int:1 error"},
         {L"1\u00E4", "int:1 error"},
         {L"1\u0661", "int:1 error"}});
}

// --- Texts ---

TEST_F(Tokens, Texts) {
  Check({{L"\"abc\"", "text:abc end"},
         {L"\"\"", "text: end"},
         {L"\" a b \"", "text: a b  end"},
         {L"\"(1 . nil)\"", "text:(1 . nil) end"},
         {L"\"\u00E4\u00DF\"", "text:\u00E4\u00DF end"},
         {L"\"a\nb\"", "text:a\nb end"},
         {L"\"%s%d\"", "text:%s%d end"}});
}

TEST_F(Tokens, ABackslashEscapesNothing) {
  Check({{L"\"a\\n\"", "text:a\\n end"}, {L"\"a\\\" b", "text:a\\ error"}, {L"\"\\\\\"", "text:\\\\ end"}});
}

TEST_F(Tokens, AnUnclosedTextIsAnErrorAtItsQuote) {
  for (const wchar_t* text : {L"\"", L"\"abc", L"\"abc)\n"}) {
    EXPECT_EQ(FirstOf(text).kind, Token::Error) << Utf8(text);
    EXPECT_EQ(Position(text), 0);
  }
  const wchar_t* const text = L" \v\"abc";
  EXPECT_EQ(FirstOf(text).kind, Token::Error);
  EXPECT_EQ(Position(text), 2);
  EXPECT_EQ(Printed(), "");
}

TEST_F(Tokens, ALetterOrDigitBehindATextIsAnErrorAtItsQuote) {
  for (const wchar_t* text : {L"\"x\"y", L"\"x\"Z", L"\"x\"9", L"\"\"n", L"\"a\"nil"}) {
    EXPECT_EQ(FirstOf(text).kind, Token::Error) << Utf8(text);
    EXPECT_EQ(Position(text), 0);
  }
  const wchar_t* const text = L"  \"x\"y";
  EXPECT_EQ(FirstOf(text).kind, Token::Error);
  EXPECT_EQ(Position(text), 2);
  EXPECT_EQ(Printed(), "");
}

TEST_F(Tokens, AnyOtherCharacterMayFollowAText) {
  Check({{L"\"x\" y", "text:x error"},
         {L"\"x\")", "text:x ) end"},
         {L"\"x\"(", "text:x ( end"},
         {L"\"x\".", "text:x . end"},
         {L"\"x\"\"y\"", "text:x text:y end"},
         {L"\"x\"-1", "text:x int:-1 end"},
         {L"\"x\"_", "text:x error"},
         {L"\"x\"\u00E4", "text:x error"}});
}

// --- Everything else ---

TEST_F(Tokens, BracketsAndDots) {
  Check({{L"(", "( end"},
         {L")", ") end"},
         {L".", ". end"},
         {L"(.)", "( . ) end"},
         {L"()))((", "( ) ) ) ( ( end"},
         {L"(1 . (\"a\" nil))", "( int:1 . ( text:a nil ) ) end"}});
}

TEST_F(Tokens, NilInAnyCaseAndWhateverFollows) {
  Check({{L"nil", "nil end"},
         {L"NIL", "nil end"},
         {L"nIl", "nil end"},
         {L"nil)", "nil ) end"},
         {L"nilx", "nil error"},
         {L"nil5", "nil int:5 end"},
         {L"nilNIL", "nil nil end"},
         {L"nil\"a\"", "nil text:a end"}});
}

TEST_F(Tokens, NilNeedsItsThreeLetters) {
  Check({{L"n", "error"},
         {L"ni", "error"},
         {L"ni l", "error"},
         {L"nix", "error"},
         {L"n\u0130l", "error"},
         {L"n\u0131l", "error"}});
}

TEST_F(Tokens, TheEndStaysWhereItIs) {
  const wchar_t* const text = L" 1 ";
  EXPECT_EQ(Name(FirstOf(text)), "int:1");
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(Next().kind, Token::End);
    EXPECT_EQ(Position(text), 3);
  }
  EXPECT_EQ(FirstOf(L"").kind, Token::End);
}

TEST_F(Tokens, AnErrorStaysWhereItIs) {
  for (const wchar_t* text :
       {L"a", L"T", L"'x", L";c", L"#", L"_", L"+", L"-", L"*", L"{", L"\u00E4", L"\x01", L"\x7F", L","}) {
    EXPECT_EQ(FirstOf(text).kind, Token::Error) << Utf8(text);
    EXPECT_EQ(Position(text), 0);
    EXPECT_EQ(Next().kind, Token::Error) << Utf8(text);
    EXPECT_EQ(Position(text), 0);
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(Tokens, AnAcceptedTokenMovesThePositionRightBehindIt) {
  const struct {
    const wchar_t* text;
    std::ptrdiff_t end;
  } cases[] = {{L"12 ", 2}, {L"-1.5 ", 4},  {L"1.) ", 2}, {L"\"ab\" ", 4}, {L"( 1", 1},
               {L") ", 1},  {L" \t . ", 4}, {L"nil ", 3}, {L"nilx", 3},    {L"   12)", 5}};
  for (const auto& [text, end] : cases) {
    EXPECT_NE(FirstOf(text).kind, Token::Error) << Utf8(text);
    EXPECT_EQ(Position(text), end) << Utf8(text);
  }
}

TEST_F(Tokens, BlanksAreSkipped) {
  Check({{L"   ", "end"},
         {L" \t\n\v\f\r1", "int:1 end"},
         {L"1 \t\n\v\f\r2", "int:1 int:2 end"},
         {L"( \n ) ", "( ) end"}});
}

TEST_F(Tokens, BlanksBeyondAsciiAreErrors) {
  for (const wchar_t* text : {L"\u00A0", L"\u0085", L"\u2003", L"\u3000", L"\x1C", L"\b"})
    EXPECT_EQ(FirstOf(text).kind, Token::Error) << static_cast<unsigned>(*text);
}

// --- The limit: less than 100 characters ---

TEST_F(Tokens, NinetyNineCharactersAreAccepted) {
  EXPECT_EQ(FirstOf(std::wstring(99, L'1').c_str()).integer, std::numeric_limits<int32_t>::max());
  EXPECT_EQ(FirstOf((L"-" + std::wstring(98, L'1')).c_str()).integer, std::numeric_limits<int32_t>::min());
  EXPECT_EQ(Name(FirstOf((std::wstring(98, L'0') + L"5").c_str())), "int:5");
  const Token great = FirstOf((L"1" + std::wstring(96, L'0') + L".5").c_str());
  EXPECT_EQ(great.kind, Token::Real);
  EXPECT_EQ(great.real, 1e96);
  EXPECT_EQ(FirstOf((L"0." + std::wstring(96, L'0') + L"1").c_str()).real, 1e-97);
  const Token text = FirstOf((L"\"" + std::wstring(97, L'x') + L"\"").c_str());
  EXPECT_EQ(text.kind, Token::String);
  EXPECT_EQ(std::wstring(text.text), std::wstring(97, L'x'));
  EXPECT_EQ(Printed(), "");
}

TEST_F(Tokens, AHundredCharactersAreTooLong) {
  for (const std::wstring& token :
       {std::wstring(100, L'1'), L"+" + std::wstring(99, L'1'), L"1." + std::wstring(98, L'0'),
        std::wstring(99, L'1') + L".", L"\"" + std::wstring(98, L'x') + L"\"",
        L"\"" + std::wstring(5000, L'x') + L"\"", std::wstring(5000, L'0')}) {
    EXPECT_EQ(FirstOf(token.c_str()).kind, Token::Error);
    EXPECT_EQ(Printed(), kTooLong);
    EXPECT_EQ(Position(token.c_str()), static_cast<std::ptrdiff_t>(token.size()));
  }
}

TEST_F(Tokens, BlanksInFrontDoNotCount) {
  EXPECT_EQ(FirstOf((std::wstring(50, L' ') + std::wstring(99, L'0')).c_str()).kind, Token::Integer);
  EXPECT_EQ(Printed(), "");
}

TEST_F(Tokens, ReadingGoesOnBehindOneThatIsTooLong) {
  const std::wstring text = L"  " + std::wstring(100, L'1') + L" 7";
  EXPECT_EQ(FirstOf(text.c_str()).kind, Token::Error);
  EXPECT_EQ(Position(text.c_str()), 102);
  EXPECT_EQ(Name(Next()), "int:7");
  EXPECT_EQ(Printed(), kTooLong);
}

TEST_F(Tokens, AMalformedOneIsNotTooLong) {
  for (const std::wstring& token : {std::wstring(100, L'1') + L"a", L"\"" + std::wstring(200, L'x'),
                                    L"\"" + std::wstring(200, L'x') + L"\"y", std::wstring(200, L'a')}) {
    EXPECT_EQ(FirstOf(token.c_str()).kind, Token::Error);
    EXPECT_EQ(Position(token.c_str()), 0);
    EXPECT_EQ(Printed(), "");
  }
}

}  // namespace
}  // namespace lomlisp::test::tokens
