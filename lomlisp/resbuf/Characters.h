// Character classes that do not depend on the locale or the run-time library.
#pragma once

namespace lomlisp {

constexpr bool IsBlank(wchar_t c) { return c == L' ' || (c >= L'\t' && c <= L'\r'); }
constexpr bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }
constexpr bool IsLetter(wchar_t c) { return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z'); }

constexpr const wchar_t* SkipDigits(const wchar_t* text) {
  while (IsDigit(*text)) ++text;
  return text;
}

}  // namespace lomlisp
