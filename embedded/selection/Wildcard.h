// Patterns for texts, as filters and lists of applications have them.
//
//   #       a digit, 0 to 9             *       any run of characters, an empty one too
//   @       a letter                    ?       any one character
//   .       neither letter nor digit    ,       separates alternatives
//   [a-z_]  one of these                ~       first in an alternative: not what follows
//   [~a-z]  none of these               `       takes the next character literally
//
// Without regard to case. Letters are A to Z and those of Latin-1. A back quote counts within brackets
// too, a comma does not; a `-` at either end of them stands for itself, a range that runs backwards holds
// nothing, [] matches no character and [~] any. A bracket that is not closed and a back quote at the
// end stand for themselves. An empty alternative matches the empty text.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace lomlisp::embedded {

// A pattern made ready for many texts.
class Wildcard {
 public:
  explicit Wildcard(std::wstring_view pattern);
  // Takes at most the product of the lengths, and the sum of them where no `*` stands before other
  // characters.
  bool Matches(std::wstring_view text) const;

 private:
  enum class Kind { Literal, Digit, Letter, Other, Any, Run, OneOf, NoneOf };
  struct Token {
    Kind kind;
    char32_t literal = 0;  // upper case
    size_t firstRange = 0;
    size_t endRange = 0;
  };
  struct Range {
    char32_t first;
    char32_t last;
  };
  struct Alternative {
    size_t firstToken;
    size_t endToken;
    bool isNegated;
  };
  class Compiler;

  bool MatchesTokens(const Alternative& alternative, std::wstring_view text) const;
  bool MatchesOne(const Token& token, char32_t character) const;
  bool IsInRanges(const Token& token, char32_t character) const;

  std::vector<Alternative> m_alternatives;
  std::vector<Token> m_tokens;
  std::vector<Range> m_ranges;
};

bool MatchesWildcard(std::wstring_view text, std::wstring_view pattern);

}  // namespace lomlisp::embedded
