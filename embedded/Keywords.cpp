#include <embedded/Keywords.h>
#include <embedded/Text.h>

#include <algorithm>

namespace lomlisp::embedded {

namespace {

std::vector<std::wstring_view> Words(std::wstring_view list) {
  constexpr std::wstring_view kBlanks = L" \t\r\n";
  std::vector<std::wstring_view> words;
  for (size_t begin = list.find_first_not_of(kBlanks); begin != list.npos;) {
    const size_t end = std::min(list.find_first_of(kBlanks, begin), list.size());
    words.push_back(list.substr(begin, end - begin));
    begin = list.find_first_not_of(kBlanks, end);
  }
  return words;
}

bool IsLower(wchar_t letter) {
  const auto code = static_cast<char32_t>(letter);
  return Folded(code) != code;
}

std::wstring_view FirstCapitals(std::wstring_view name) {
  const auto begin = std::find_if_not(name.begin(), name.end(), IsLower);
  return {begin, std::find_if(begin, name.end(), IsLower)};
}

}  // namespace

Keywords::Name Keywords::ReadName(std::wstring_view word) {
  const size_t comma = std::min(word.find(L','), word.size());
  const std::wstring_view name = word.substr(0, comma);
  std::wstring_view required = comma < word.size() ? word.substr(comma + 1) : FirstCapitals(name);
  if (required.empty()) required = name;
  return {std::wstring(name), Folded(name), Folded(required)};
}

Keywords::Keywords(std::wstring_view list) {
  std::vector<std::wstring_view> words = Words(list);
  const auto marked =
      std::find_if(words.begin(), words.end(), [](std::wstring_view word) { return word.front() == L'_'; });
  const auto shown = static_cast<size_t>(marked - words.begin());
  if (marked != words.end()) marked->remove_prefix(1);
  // A list that begins with its mark has no other names.
  const size_t count = shown > 0 ? shown : words.size();
  for (size_t index = 0; index < count; ++index) {
    const Name name = ReadName(words[index]);
    const Name seen = shown + index < words.size() ? ReadName(words[shown + index]) : name;
    if (!name.whole.empty()) m_keywords.push_back({name, seen.whole.empty() ? name : seen});
  }
}

// As much as is required, and as much more as is right; or all of it, where a part in the middle is required.
bool Keywords::IsTyped(const Name& name, std::wstring_view folded) {
  if (folded == name.folded || folded == name.required) return true;
  const size_t begin = name.folded.find(name.required);
  return begin != std::wstring::npos && folded.starts_with(name.required) &&
         std::wstring_view(name.folded).substr(begin).starts_with(folded);
}

std::optional<std::wstring> Keywords::Match(std::wstring_view typed) const {
  const bool isMarked = typed.starts_with(L'_');
  const std::wstring folded = Folded(typed.substr(isMarked ? 1 : 0));
  const auto found = std::find_if(m_keywords.begin(), m_keywords.end(), [&](const Keyword& keyword) {
    return IsTyped(isMarked ? keyword.seen : keyword.shown, folded);
  });
  return found != m_keywords.end() ? std::optional(found->seen.whole) : std::nullopt;
}

}  // namespace lomlisp::embedded
