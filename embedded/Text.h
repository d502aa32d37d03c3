// Texts of the host: names without regard to case, and UTF-8 for the world outside.
#pragma once

#include <string>
#include <string_view>

namespace lomlisp::embedded {

// Upper case, by the same rule on every system: A to Z and the letters of Latin-1.
inline std::wstring Folded(std::wstring_view name) {
  std::wstring folded(name);
  for (wchar_t& letter : folded) {
    const bool isLower = (letter >= L'a' && letter <= L'z') ||
                         (letter >= L'\u00E0' && letter <= L'\u00FE' && letter != L'\u00F7');
    if (isLower) letter = static_cast<wchar_t>(letter - (L'a' - L'A'));
  }
  return folded;
}

// Joins pairs of surrogates whatever the width of wchar_t; a single one becomes U+FFFD.
std::string Utf8(std::wstring_view text);

}  // namespace lomlisp::embedded
