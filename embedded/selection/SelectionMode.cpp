#include <embedded/selection/SelectionMode.h>

#include <embedded/Text.h>

#include <algorithm>
#include <iterator>
#include <string>

namespace lomlisp::embedded {

namespace {

struct NamedMode {
  std::wstring_view letters;
  SelectionMode mode;
};

constexpr NamedMode kModes[] = {
    {L"", SelectionMode::User},
    {L"X", SelectionMode::Everything},
    {L"A", SelectionMode::Visible},
    {L"L", SelectionMode::Last},
    {L"P", SelectionMode::Previous},
    {L"I", SelectionMode::Implied},
    {L"W", SelectionMode::Window},
    {L"C", SelectionMode::Crossing},
    {L"WP", SelectionMode::WindowPolygon},
    {L"CP", SelectionMode::CrossingPolygon},
    {L"F", SelectionMode::Fence},
};

constexpr std::wstring_view kSuffixes = L"SENLPDRUV$";

// ":S", ":E-D" and so on.
bool AreSuffixes(std::wstring_view text) {
  bool isLetterExpected = false;
  for (const wchar_t character : text) {
    const bool isMark = character == L':' || character == L'-';
    if (isMark == isLetterExpected) return false;
    if (!isMark && kSuffixes.find(character) == std::wstring_view::npos) return false;
    isLetterExpected = isMark;
  }
  return !isLetterExpected;
}

}  // namespace

std::optional<SelectionMode> ReadSelectionMode(std::wstring_view text) {
  const std::wstring folded = Folded(text);
  std::wstring_view rest = folded;
  rest.remove_prefix(std::min(rest.find_first_not_of(L"_+.#"), rest.size()));
  const size_t end = std::min(rest.find_first_of(L":-"), rest.size());
  const auto* found = std::find_if(std::begin(kModes), std::end(kModes), [&](const NamedMode& candidate) {
    return candidate.letters == rest.substr(0, end);
  });
  if (found == std::end(kModes) || !AreSuffixes(rest.substr(end))) return std::nullopt;
  return found->mode;
}

bool SelectsOnce(std::wstring_view mode) {
  const std::wstring folded = Folded(mode);
  return folded.find(L'S', std::min(folded.find(L':'), folded.size())) != std::wstring::npos;
}

}  // namespace lomlisp::embedded
