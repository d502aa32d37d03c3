#include <embedded/selection/Wildcard.h>
#include <tests/support/HostTest.h>

#include <random>
#include <utility>
#include <vector>

namespace lomlisp::test {
namespace {

using embedded::MatchesWildcard;

struct Case {
  const wchar_t* pattern;
  std::vector<const wchar_t*> matching;
  std::vector<const wchar_t*> others;
};

void ExpectMatches(const std::vector<Case>& cases) {
  for (const auto& [pattern, matching, others] : cases) {
    for (const wchar_t* text : matching)
      EXPECT_TRUE(MatchesWildcard(text, pattern)) << Utf8(pattern) << " and " << Utf8(text);
    for (const wchar_t* text : others)
      EXPECT_FALSE(MatchesWildcard(text, pattern)) << Utf8(pattern) << " and " << Utf8(text);
  }
}

TEST(WildcardMatch, PlainTextsAreComparedWholeWithoutCase) {
  ExpectMatches({{L"Walls", {L"walls", L"WALLS"}, {L"Wall", L"Walls2", L"", L" Walls"}},
                 {L"", {L""}, {L"a", L" "}},
                 {L"T\u00FCr", {L"T\u00DCR", L"t\u00FCr"}, {L"Tur"}},
                 {L"\u00F7", {L"\u00F7"}, {L"\u00D7"}},
                 {L"a-b]{}()\\^$+|", {L"A-B]{}()\\^$+|"}, {L"ab"}}});
}

TEST(WildcardMatch, ClassesTakeOneCharacterOfTheirs) {
  ExpectMatches({{L"#", {L"0", L"9"}, {L"", L"a", L"12", L"\u00B2", L"/", L":"}},
                 {L"@",
                  {L"a", L"Z", L"\u00E4", L"\u00DF", L"\u00FF"},
                  {L"1", L"_", L"", L"@", L"`", L"[", L"{", L"\u00D7", L"\u00F7", L"\u0416"}},
                 {L".", {L".", L" ", L"_", L"\u20AC", L"\u00F7"}, {L"a", L"1", L"\u00E4", L"", L".."}},
                 {L"?", {L"a", L"1", L"?", L"\U0001F600"}, {L"", L"ab"}},
                 {L"@#.", {L"A1-"}, {L"1A-", L"A1", L"A1-2"}}});
}

TEST(WildcardMatch, RunsTakeAnyNumberOfCharacters) {
  ExpectMatches({{L"*", {L"", L"a", L"abc"}, {}},
                 {L"a*", {L"a", L"ABC"}, {L"", L"ba"}},
                 {L"*a", {L"a", L"bca", L"aa"}, {L"", L"ab"}},
                 {L"*m*", {L"m", L"Name"}, {L"", L"none"}},
                 {L"a*b*c", {L"abc", L"aXbXc", L"abcbc", L"aabbcc"}, {L"ac", L"abcd", L"acb"}},
                 {L"**?**#", {L"a1", L"11", L"abc9"}, {L"1", L"a"}},
                 {L"*aab", {L"aaab", L"aabaab"}, {L"aaba"}},
                 {L"*LINE", {L"LINE", L"Polyline"}, {L"LINES"}}});
}

TEST(WildcardMatch, BracketsTakeOneOfTheirCharactersOrNoneOfThem) {
  ExpectMatches({{L"[abc]", {L"a", L"B"}, {L"d", L"", L"ab", L"[abc]"}},
                 {L"[a-c]x", {L"ax", L"Cx"}, {L"dx", L"x", L"-x"}},
                 {L"[A-C1-3]", {L"b", L"2"}, {L"d", L"4", L"-"}},
                 {L"[~a-c]", {L"d", L"1", L"-"}, {L"a", L"B", L""}},
                 {L"[a~]", {L"a", L"~"}, {L"b"}},
                 {L"[-a]", {L"-", L"a"}, {L"b"}},
                 {L"[a-]", {L"-", L"a"}, {L"b"}},
                 {L"[~-]", {L"a"}, {L"-"}},
                 {L"[a,b]", {L"a", L",", L"b"}, {L"a,b", L"[a"}},
                 {L"[#@.*?]", {L"#", L"*", L"."}, {L"1", L"a"}},
                 {L"[a`-c]", {L"a", L"-", L"c"}, {L"b"}},
                 {L"[`]x]", {L"]", L"x"}, {L"`", L"x]"}},
                 {L"[Z-`]]", {L"]", L"\\", L"z"}, {L"`", L"y", L"^", L"Z]"}},
                 {L"[[]", {L"["}, {L"]", L""}}});
}

TEST(WildcardMatch, RangesHoldWhatStandsBetweenTheirEndsInEitherCase) {
  ExpectMatches({{L"[_-z]", {L"_", L"a", L"A", L"Z"}, {L"^", L"{"}},
                 {L"[A-z]", {L"a", L"Z", L"^"}, {L"@", L"{"}},
                 {L"[\u00E0-\u00E5]", {L"\u00E4", L"\u00C4"}, {L"\u00E6", L"\u00C6", L"a"}},
                 {L"[c-a]", {}, {L"a", L"b", L"c", L"-"}},
                 {L"[\U0001F600-\U0001F610]", {L"\U0001F605"}, {L"\U0001F611", L"a"}}});
}

TEST(WildcardMatch, EmptyBracketsMatchNothingAndTheirContraryAnyCharacter) {
  ExpectMatches({{L"[]", {}, {L"", L"a", L"[]", L"]"}}, {L"[~]", {L"a", L"~"}, {L"", L"ab"}}});
}

TEST(WildcardMatch, ATildeCountsAtTheBeginningOfAnAlternativeOnly) {
  ExpectMatches({{L"~a*", {L"b", L"", L"ba"}, {L"a", L"ABC"}},
                 {L"~", {L"a", L"~"}, {L""}},
                 {L"~~a", {L"a", L""}, {L"~a"}},
                 {L"a~b", {L"a~b"}, {L"ab"}},
                 {L"~*", {}, {L"", L"a"}},
                 {L"`~a", {L"~a"}, {L"b", L"a"}},
                 {L"???,~*m*,N*", {L"abc", L"xy", L"Name"}, {L"mnop"}}});
}

TEST(WildcardMatch, ACommaSeparatesAlternatives) {
  ExpectMatches({{L"*LINE,ARC", {L"LWPOLYLINE", L"arc"}, {L"CIRCLE", L"LINE,ARC2"}},
                 {L"a,", {L"a", L""}, {L"a,", L"b"}},
                 {L",", {L""}, {L","}},
                 {L"~a,~b", {L"a", L"b", L"c"}, {}},
                 {L"a`,b", {L"a,b"}, {L"a", L"b"}}});
}

TEST(WildcardMatch, ABackQuoteTakesTheNextCharacterLiterally) {
  ExpectMatches({{L"`*U#", {L"*u1"}, {L"xU1", L"`*U1"}},
                 {L"`#`@`.`?`[`]``", {L"#@.?[]`"}, {L"1a.x[]`"}},
                 {L"`a", {L"A"}, {L"`a"}}});
}

TEST(WildcardMatch, ABackQuoteAtTheEndAndAnOpenBracketStandForThemselves) {
  ExpectMatches({{L"a`", {L"a`"}, {L"a", L"a`b"}},
                 {L"`", {L"`"}, {L""}},
                 {L"[", {L"["}, {L"", L"a"}},
                 {L"[ab", {L"[AB"}, {L"a", L"b"}},
                 {L"[a,b", {L"[a", L"b"}, {L"a"}},
                 {L"[a`]", {L"[a]"}, {L"a", L"]"}},
                 {L"[a]b[c", {L"ab[c"}, {L"[a]b[c"}}});
}

TEST(WildcardMatch, TwoSurrogatesAreOneCharacter) {
  const std::wstring pair{static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00)};
  const std::wstring low = pair.substr(1);
  EXPECT_TRUE(MatchesWildcard(pair, L"?"));
  EXPECT_FALSE(MatchesWildcard(pair, L"??"));
  EXPECT_TRUE(MatchesWildcard(pair, L"[~a]"));
  EXPECT_TRUE(MatchesWildcard(pair, L"[" + pair + L"]"));
  EXPECT_TRUE(MatchesWildcard(L"x" + pair + L"y", L"*" + pair + L"*"));
  EXPECT_FALSE(MatchesWildcard(pair, L"*[" + low + L"]"));
  // Single ones are characters of their own, whatever stands behind the end of the text.
  EXPECT_TRUE(MatchesWildcard(std::wstring_view(pair).substr(0, 1), L"?"));
  EXPECT_TRUE(MatchesWildcard(pair.substr(0, 1) + L"x", L"?x"));
  EXPECT_TRUE(MatchesWildcard(low, L"?"));
}

TEST(WildcardMatch, LongPatternsAndTextsTakeNoExponentialTime) {
  std::wstring runs;
  for (int count = 0; count < 200; ++count) runs += L"*a";
  const std::wstring text(2000, L'a');
  EXPECT_TRUE(MatchesWildcard(text, runs));
  EXPECT_FALSE(MatchesWildcard(text, runs + L"b"));
}

TEST(WildcardMatch, OpenBracketsAreReadInLinearTime) {
  const std::wstring brackets(static_cast<size_t>(kLarge), L'[');
  EXPECT_TRUE(MatchesWildcard(brackets, brackets));
  std::wstring longest = L"[";
  for (int count = 0; count < kLarge; ++count) longest += L"a-c";
  EXPECT_TRUE(MatchesWildcard(L"b", longest + L"]"));
  EXPECT_FALSE(MatchesWildcard(L"d", longest + L"]"));
}

// --- Against a matcher that tries everything ---

struct Piece {
  const wchar_t* pattern;
  bool (*takes)(wchar_t character);  // null for a run
};

constexpr Piece kPieces[] = {
    {L"a", [](wchar_t c) { return c == L'a' || c == L'A'; }},
    {L"B", [](wchar_t c) { return c == L'b' || c == L'B'; }},
    {L"#", [](wchar_t c) { return c == L'1' || c == L'2'; }},
    {L"@", [](wchar_t c) { return c == L'a' || c == L'A' || c == L'b' || c == L'B'; }},
    {L".", [](wchar_t c) { return c == L'*' || c == L',' || c == L'-'; }},
    {L"?", [](wchar_t) { return true; }},
    {L"*", nullptr},
    {L"*", nullptr},
    {L"[1b-]", [](wchar_t c) { return c == L'1' || c == L'b' || c == L'B' || c == L'-'; }},
    {L"[~1-2*]", [](wchar_t c) { return c != L'1' && c != L'2' && c != L'*'; }},
    {L"`*", [](wchar_t c) { return c == L'*'; }},
    {L"`,", [](wchar_t c) { return c == L','; }},
};

bool Matches(const std::vector<Piece>& pieces, size_t piece, std::wstring_view text) {
  if (piece == pieces.size()) return text.empty();
  if (pieces[piece].takes == nullptr) {
    for (size_t length = 0; length <= text.size(); ++length)
      if (Matches(pieces, piece + 1, text.substr(length))) return true;
    return false;
  }
  return !text.empty() && pieces[piece].takes(text[0]) && Matches(pieces, piece + 1, text.substr(1));
}

class RandomPatterns {
 public:
  size_t Below(size_t end) { return m_random() % end; }

  std::wstring NewText() {
    std::wstring text;
    for (size_t length = Below(7); length > 0; --length) text += L"aAbB12*,-"[Below(9)];
    return text;
  }

  // An alternative and what it matches.
  std::pair<std::wstring, std::vector<Piece>> NewAlternative() {
    std::pair<std::wstring, std::vector<Piece>> made;
    for (size_t length = Below(6); length > 0; --length) {
      const Piece& piece = kPieces[Below(std::size(kPieces))];
      made.first += piece.pattern;
      made.second.push_back(piece);
    }
    return made;
  }

 private:
  std::mt19937 m_random{20240607};
};

TEST(WildcardMatch, RandomPatternsMatchWhatTryingEverythingMatches) {
  RandomPatterns random;
  size_t matches = 0;
  const unsigned int rounds = Rounds(200'000);
  for (unsigned int round = 0; round < rounds; ++round) {
    const std::wstring text = random.NewText();
    std::wstring pattern;
    bool isExpected = false;
    for (size_t alternatives = 1 + random.Below(2); alternatives > 0; --alternatives) {
      const auto [alternative, pieces] = random.NewAlternative();
      const bool isNegated = random.Below(5) == 0;
      pattern += (isNegated ? L"~" : L"") + alternative + (alternatives > 1 ? L"," : L"");
      isExpected = isExpected || Matches(pieces, 0, text) != isNegated;
    }
    ASSERT_EQ(MatchesWildcard(text, pattern), isExpected) << Utf8(pattern) << " and " << Utf8(text);
    if (isExpected) ++matches;
  }
  EXPECT_GT(matches, rounds / 10);
  EXPECT_LT(matches, rounds - rounds / 10);
}

}  // namespace
}  // namespace lomlisp::test
