// Texts of the host: names without regard to case, and UTF-8 for the world outside.
#pragma once

#include <string>
#include <string_view>

namespace lomlisp::embedded {

// Upper case, by the same rule on every system: A to Z and the letters of Latin-1.
constexpr char32_t Folded(char32_t letter) {
  const bool isLower =
      (letter >= U'a' && letter <= U'z') || (letter >= 0xE0 && letter <= 0xFE && letter != 0xF7);
  return isLower ? letter - (U'a' - U'A') : letter;
}
inline std::wstring Folded(std::wstring_view name) {
  std::wstring folded(name);
  for (wchar_t& letter : folded) letter = static_cast<wchar_t>(Folded(static_cast<char32_t>(letter)));
  return folded;
}

// Without the blanks and control characters around it.
std::wstring_view Trimmed(std::wstring_view text);

// Joins pairs of surrogates whatever the width of wchar_t; a single one becomes U+FFFD.
std::string Utf8(std::wstring_view text);
// The other way round; for each faulty sequence of bytes a U+FFFD.
std::wstring FromUtf8(std::string_view bytes);

}  // namespace lomlisp::embedded
