// Wildcard patterns: the first line is the pattern, the rest is the text.
#include <tests/fuzz/Fuzz.h>

#include <embedded/selection/Wildcard.h>

void lomlisp::fuzz::Try(Input& input) {
  const std::wstring all = TakeRest(input).substr(0, 2'000);
  const size_t end = std::min(all.find(L'\n'), all.size());
  const std::wstring pattern = all.substr(0, end);
  const std::wstring text = all.substr(std::min(end + 1, all.size()));
  const bool matches = embedded::MatchesWildcard(text, pattern);
  if (pattern.find_first_of(L",`[~") == std::wstring::npos) {
    Require(embedded::MatchesWildcard(text, L"~" + pattern) != matches, "a negated pattern matches what the other does not");
    Require(!matches || embedded::MatchesWildcard(text, pattern + L"*"), "a run may be empty");
  }
}
