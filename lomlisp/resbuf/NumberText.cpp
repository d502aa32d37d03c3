#include <lomlisp/resbuf/NumberText.h>

#include <lomlisp/resbuf/Characters.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <limits>
#include <optional>
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

// Whether a real that is out of range, and so is not zero, is too great, and not too small.
bool IsTooGreat(std::string_view digits) {
  const size_t exponentMark = (std::min)(digits.find_first_of("eE"), digits.size());
  const std::string_view mantissa = digits.substr(0, exponentMark);
  const size_t point = (std::min)(mantissa.find('.'), mantissa.size());
  const size_t leading = mantissa.find_first_not_of("0.");
  std::string_view exponentText = digits.substr((std::min)(exponentMark + 1, digits.size()));
  if (exponentText.starts_with('+')) exponentText.remove_prefix(1);
  long long exponent = 0;
  const auto scanned = std::from_chars(exponentText.begin(), exponentText.end(), exponent);
  if (scanned.ec == std::errc::result_out_of_range) return !exponentText.starts_with('-');
  // Compares without an overflow: the exponent is anything, positions in a text are not.
  return exponent > static_cast<long long>(leading) - static_cast<long long>(point);
}

// A real without a sign and an exponent, when it is short: its digits as a whole number and the power of ten
// are then exact, so that only their quotient is rounded.
std::optional<double> ShortReal(const wchar_t* text, const wchar_t* end) {
  constexpr std::ptrdiff_t kLongest = 16;
  if (end - text > kLongest) return std::nullopt;
  uint64_t digits = 0;
  double divisor = 1.0;
  bool behindPoint = false;
  for (; text != end; ++text) {
    if (*text == L'.') {
      behindPoint = true;
      continue;
    }
    if (!IsDigit(*text)) return std::nullopt;
    digits = digits * 10 + static_cast<uint64_t>(*text - L'0');
    if (behindPoint) divisor *= 10.0;
  }
  return static_cast<double>(digits) / divisor;
}

// The digits of the numbers below a hundred, one behind the other.
struct DigitPairs {
  wchar_t digits[200];
};

constexpr DigitPairs MakeDigitPairs() {
  DigitPairs pairs{};
  for (size_t i = 0; i < 100; ++i) {
    pairs.digits[i * 2] = static_cast<wchar_t>(L'0' + i / 10);
    pairs.digits[i * 2 + 1] = static_cast<wchar_t>(L'0' + i % 10);
  }
  return pairs;
}

constexpr DigitPairs kDigitPairs = MakeDigitPairs();

void WritePair(wchar_t* target, uint64_t number) {
  target[0] = kDigitPairs.digits[number * 2];
  target[1] = kDigitPairs.digits[number * 2 + 1];
}

wchar_t* WriteDigits(wchar_t* target, uint64_t number) {
  wchar_t digits[20];
  wchar_t* const end = std::end(digits);
  wchar_t* first = end;
  for (; number >= 100; number /= 100) WritePair(first -= 2, number % 100);
  if (number >= 10)
    WritePair(first -= 2, number);
  else
    *--first = static_cast<wchar_t>(L'0' + number);
  return std::copy(first, end, target);
}

// Zeros stand in front.
wchar_t* WriteSixDigits(wchar_t* target, uint32_t number) {
  WritePair(target, number / 10'000);
  WritePair(target + 2, number / 100 % 100);
  WritePair(target + 4, number % 100);
  return target + 6;
}

// A magnitude times a million as a whole number, rounded as "%f" rounds: exactly, and to the even one between
// two. Nothing for numbers that are too small or too great for 64 bits at each step.
std::optional<uint64_t> Millionths(double magnitude) {
  if (magnitude == 0.0) return 0;
  if (!(magnitude >= 0x1p-11 && magnitude < 0x1p43)) return std::nullopt;
  uint64_t bits = 0;
  std::memcpy(&bits, &magnitude, sizeof bits);
  // magnitude = mantissa / 2^shift, and the shift lies between 10 and 63.
  const uint64_t mantissa = (bits & 0xF'FFFF'FFFF'FFFF) | 0x10'0000'0000'0000;
  const int shift = 1075 - static_cast<int>(bits >> 52);
  // mantissa * 1,000,000 = high * 2^64 + low
  const uint64_t lower = (mantissa & 0xFFFF'FFFF) * 1'000'000;
  const uint64_t upper = (mantissa >> 32) * 1'000'000 + (lower >> 32);
  const uint64_t high = upper >> 32;
  const uint64_t low = (upper << 32) | (lower & 0xFFFF'FFFF);
  const uint64_t whole = (high << (64 - shift)) | (low >> shift);
  const uint64_t rest = low << (64 - shift);
  constexpr uint64_t kHalf = uint64_t{1} << 63;
  return whole + (rest > kHalf || (rest == kHalf && whole % 2 != 0) ? 1 : 0);
}

}  // namespace

int32_t ScanInteger(const wchar_t* text) {
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
  const wchar_t* const end = SkipReal(text);
  if (const auto magnitude = ShortReal(text, end)) return negative ? -*magnitude : *magnitude;
  const std::string digits(text, end);
  double magnitude = 0.0;
  const auto scanned = std::from_chars(digits.data(), digits.data() + digits.size(), magnitude);
  if (scanned.ec == std::errc::result_out_of_range)
    magnitude = IsTooGreat({digits.data(), scanned.ptr}) ? std::numeric_limits<double>::infinity() : 0.0;
  return negative ? -magnitude : magnitude;
}

wchar_t* WriteInteger(wchar_t* target, long long value) {
  const auto number = static_cast<uint64_t>(value);
  if (value >= 0) return WriteDigits(target, number);
  *target = L'-';
  return WriteDigits(target + 1, 0 - number);
}

wchar_t* WriteReal(wchar_t* target, double value) {
  if (const auto millionths = Millionths(std::fabs(value))) {
    if (std::signbit(value)) *target++ = L'-';
    target = WriteDigits(target, *millionths / 1'000'000);
    *target++ = L'.';
    return WriteSixDigits(target, static_cast<uint32_t>(*millionths % 1'000'000));
  }
  char digits[320];
  const char* const end = std::to_chars(digits, std::end(digits), value, std::chars_format::fixed, 6).ptr;
  return std::copy(static_cast<const char*>(digits), end, target);
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
