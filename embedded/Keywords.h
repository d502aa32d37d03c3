// The keywords that a question to the user takes.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lomlisp::embedded {

class Keywords {
 public:
  Keywords() = default;
  // From a list separated by blanks. What has to be typed of a keyword is its first run of characters that
  // are not lower case ("Yes", "eXit"), or what is behind its comma ("LTYPE,LT"); of one in lower case, all.
  // Behind a name that begins with '_' stand the names that the program sees, one for each in front of it:
  // "Ja Nein _Yes No".
  explicit Keywords(std::wstring_view list);

  bool IsEmpty() const { return m_keywords.empty(); }
  // The whole name of the first keyword that was typed, without regard to case; nothing when there is none.
  // Behind a '_' the names that the program sees are typed.
  std::optional<std::wstring> Match(std::wstring_view typed) const;

 private:
  struct Name {
    std::wstring whole;
    std::wstring folded;
    std::wstring required;  // folded
  };
  struct Keyword {
    Name shown;
    Name seen;
  };
  static Name ReadName(std::wstring_view word);
  static bool IsTyped(const Name& name, std::wstring_view folded);

  std::vector<Keyword> m_keywords;
};

}  // namespace lomlisp::embedded
