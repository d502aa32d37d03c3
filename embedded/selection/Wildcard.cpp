#include <embedded/selection/Wildcard.h>

#include <embedded/Text.h>

#include <algorithm>

namespace lomlisp::embedded {

namespace {

// The character at `position`, which moves behind it. Two surrogates are one character, so that a pattern
// means the same whatever the width of wchar_t.
char32_t Take(std::wstring_view text, size_t& position) {
  const auto unit = static_cast<char32_t>(text[position++]);
  if (unit < 0xD800 || unit > 0xDBFF || position == text.size()) return unit;
  const auto low = static_cast<char32_t>(text[position]);
  if (low < 0xDC00 || low > 0xDFFF) return unit;
  ++position;
  return 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
}

bool IsDigit(char32_t character) { return character >= U'0' && character <= U'9'; }

bool IsLetter(char32_t character) {
  const char32_t upper = Folded(character);
  return (upper >= U'A' && upper <= U'Z') ||
         (upper >= 0xC0 && upper <= 0xFF && upper != 0xD7 && upper != 0xF7);
}

// The lower-case letter of an upper-case one; other characters as they are.
char32_t LowerCase(char32_t upper) {
  const char32_t lower = upper + (U'a' - U'A');
  return Folded(lower) == upper ? lower : upper;
}

}  // namespace

class Wildcard::Compiler {
 public:
  Compiler(std::wstring_view pattern, Wildcard& wildcard)
      : m_pattern(pattern), m_wildcard(wildcard), m_lastClose(FindLastClose()) {}

  void Run() {
    BeginAlternative();
    while (m_position < m_pattern.size()) TakeToken();
    EndAlternative();
  }

 private:
  // Found once, so that brackets without an end do not each look for it.
  size_t FindLastClose() const {
    size_t last = 0;
    for (size_t position = 0; position < m_pattern.size(); ++position) {
      if (m_pattern[position] == L'`')
        ++position;
      else if (m_pattern[position] == L']')
        last = position;
    }
    return last;
  }

  void BeginAlternative() {
    m_isNegated = m_position < m_pattern.size() && m_pattern[m_position] == L'~';
    if (m_isNegated) ++m_position;
    m_firstToken = m_wildcard.m_tokens.size();
  }

  void EndAlternative() {
    m_wildcard.m_alternatives.push_back({m_firstToken, m_wildcard.m_tokens.size(), m_isNegated});
  }

  void TakeToken() {
    const size_t begin = m_position;
    const char32_t character = Take(m_pattern, m_position);
    switch (character) {
      case U'#':
        return Add(Kind::Digit);
      case U'@':
        return Add(Kind::Letter);
      case U'.':
        return Add(Kind::Other);
      case U'?':
        return Add(Kind::Any);
      case U'*':
        return Add(Kind::Run);
      case U',':
        EndAlternative();
        return BeginAlternative();
      case U'[':
        if (begin < m_lastClose) return AddBrackets();
        break;
      case U'`':
        m_position = begin;
        return AddLiteral(TakeEscaped());
      default:
        break;
    }
    AddLiteral(character);
  }

  void AddBrackets() {
    const bool isNegated = m_pattern[m_position] == L'~';
    if (isNegated) ++m_position;
    const size_t first = m_wildcard.m_ranges.size();
    while (m_pattern[m_position] != L']') m_wildcard.m_ranges.push_back(TakeRange());
    ++m_position;
    m_wildcard.m_tokens.push_back(
        {isNegated ? Kind::NoneOf : Kind::OneOf, 0, first, m_wildcard.m_ranges.size()});
  }

  // One character or a range, of brackets that are closed.
  Range TakeRange() {
    const char32_t first = TakeEscaped();
    const bool isRange = m_pattern[m_position] == L'-' && m_pattern[m_position + 1] != L']';
    if (!isRange) return {first, first};
    ++m_position;
    return {first, TakeEscaped()};
  }

  char32_t TakeEscaped() {
    if (m_pattern[m_position] == L'`' && m_position + 1 < m_pattern.size()) ++m_position;
    return Take(m_pattern, m_position);
  }

  void Add(Kind kind) { m_wildcard.m_tokens.push_back({kind}); }
  void AddLiteral(char32_t character) { m_wildcard.m_tokens.push_back({Kind::Literal, Folded(character)}); }

  std::wstring_view m_pattern;
  Wildcard& m_wildcard;
  size_t m_position = 0;
  size_t m_lastClose;
  size_t m_firstToken = 0;
  bool m_isNegated = false;
};

Wildcard::Wildcard(std::wstring_view pattern) { Compiler(pattern, *this).Run(); }

bool Wildcard::Matches(std::wstring_view text) const {
  return std::any_of(m_alternatives.begin(), m_alternatives.end(), [&](const Alternative& alternative) {
    return MatchesTokens(alternative, text) != alternative.isNegated;
  });
}

// What stands behind the latest run is tried at one place after another; earlier runs need no second
// try, since the latest can take whatever they would leave.
bool Wildcard::MatchesTokens(const Alternative& alternative, std::wstring_view text) const {
  size_t token = alternative.firstToken;
  size_t behindRun = alternative.endToken;
  size_t tried = 0;
  bool hasRun = false;
  for (size_t position = 0;;) {
    if (token < alternative.endToken && m_tokens[token].kind == Kind::Run) {
      hasRun = true;
      behindRun = ++token;
      tried = position;
      if (token == alternative.endToken) return true;
      continue;
    }
    if (position == text.size()) return token == alternative.endToken;
    if (token < alternative.endToken && MatchesOne(m_tokens[token], Take(text, position))) {
      ++token;
      continue;
    }
    if (!hasRun) return false;
    Take(text, tried);
    position = tried;
    token = behindRun;
  }
}

bool Wildcard::MatchesOne(const Token& token, char32_t character) const {
  switch (token.kind) {
    case Kind::Literal:
      return Folded(character) == token.literal;
    case Kind::Digit:
      return IsDigit(character);
    case Kind::Letter:
      return IsLetter(character);
    case Kind::Other:
      return !IsDigit(character) && !IsLetter(character);
    case Kind::OneOf:
      return IsInRanges(token, character);
    case Kind::NoneOf:
      return !IsInRanges(token, character);
    case Kind::Any:
    case Kind::Run:
      break;
  }
  return true;
}

// The ends of a range are not folded: [_-z] and [A-z] hold what stands between the two as they are written.
bool Wildcard::IsInRanges(const Token& token, char32_t character) const {
  const char32_t upper = Folded(character);
  const char32_t lower = LowerCase(upper);
  for (size_t index = token.firstRange; index < token.endRange; ++index) {
    const Range& range = m_ranges[index];
    const auto holds = [&](char32_t letter) { return range.first <= letter && letter <= range.last; };
    if (holds(upper) || holds(lower)) return true;
  }
  return false;
}

bool MatchesWildcard(std::wstring_view text, std::wstring_view pattern) {
  return Wildcard(pattern).Matches(text);
}

}  // namespace lomlisp::embedded
