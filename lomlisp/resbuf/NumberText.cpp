#include <lomlisp/resbuf/NumberText.h>

#include <lomlisp/resbuf/Characters.h>

#include <algorithm>
#include <limits>
#include <string_view>

namespace lomlisp {

namespace {

// Moves `text` behind blanks and a sign; whether the sign is a minus.
bool SkipSign(const wchar_t*& text) {
  while (IsBlank(*text)) ++text;
  const bool negative = *text == L'-';
  if (negative || *text == L'+') ++text;
  return negative;
}

// The end of a real without its sign.
const wchar_t* SkipReal(const wchar_t* text) {
  text = SkipDigits(text);
  if (*text == L'.') text = SkipDigits(text + 1);
  if (*text != L'e' && *text != L'E') return text;
  const bool hasSign = text[1] == L'+' || text[1] == L'-';
  const wchar_t* const exponent = text + (hasSign ? 2 : 1);
  return IsDigit(*exponent) ? SkipDigits(exponent) : text;
}

// Whether a real that is out of range is too great, and not too small.
bool IsTooGreat(std::string_view digits) {
  const size_t exponentMark = (std::min)(digits.find_first_of("eE"), digits.size());
  const std::string_view mantissa = digits.substr(0, exponentMark);
  const size_t point = (std::min)(mantissa.find('.'), mantissa.size());
  const size_t leading = mantissa.find_first_not_of("0.");
  if (leading == std::string_view::npos) return false;
  std::string_view exponentText = digits.substr((std::min)(exponentMark + 1, digits.size()));
  if (exponentText.starts_with('+')) exponentText.remove_prefix(1);
  long long exponent = 0;
  const auto scanned = std::from_chars(exponentText.begin(), exponentText.end(), exponent);
  if (scanned.ec == std::errc::result_out_of_range) return !exponentText.starts_with('-');
  // Compares without an overflow: the exponent is anything, positions in a text are not.
  return exponent > static_cast<long long>(leading) - static_cast<long long>(point);
}

}  // namespace

int32_t ScanInteger(const wchar_t* text) {
  if (text == nullptr) return 0;
  using Limits = std::numeric_limits<int32_t>;
  const bool negative = SkipSign(text);
  int64_t magnitude = 0;
  for (; IsDigit(*text) && magnitude <= (Limits::max)(); ++text) magnitude = magnitude * 10 + (*text - L'0');
  return static_cast<int32_t>(negative ? std::max<int64_t>(-magnitude, (Limits::min)())
                                       : std::min<int64_t>(magnitude, (Limits::max)()));
}

double ScanReal(const wchar_t* text) {
  if (text == nullptr) return 0.0;
  const bool negative = SkipSign(text);
  const std::string digits(text, SkipReal(text));
  double magnitude = 0.0;
  const auto scanned = std::from_chars(digits.data(), digits.data() + digits.size(), magnitude);
  if (scanned.ec == std::errc::result_out_of_range)
    magnitude = IsTooGreat({digits.data(), scanned.ptr}) ? std::numeric_limits<double>::infinity() : 0.0;
  return negative ? -magnitude : magnitude;
}

void AppendReal(std::wstring& text, double value, std::chars_format format, int precision) {
  constexpr size_t kLongestWhole = std::numeric_limits<double>::max_exponent10 + 1;
  std::string digits(kLongestWhole + static_cast<size_t>(precision) + 10, '\0');
  const char* const begin = digits.data();
  const char* const end =
      std::to_chars(digits.data(), digits.data() + digits.size(), value, format, precision).ptr;
  text.append(begin, end);
}

}  // namespace lomlisp
