#include <lomlisp/resbuf/BinaryData.h>

#include <lomlisp/resbuf/Text.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <string_view>

namespace lomlisp {

namespace {

constexpr std::wstring_view kDigits = L"0123456789ABCDEF";
// The length is a short.
constexpr size_t kMostBytes = (std::numeric_limits<short>::max)();

// 16 for what is no digit.
unsigned int ValueOf(wchar_t digit) {
  const wchar_t upper = digit >= L'a' && digit <= L'f' ? static_cast<wchar_t>(digit - L'a' + L'A') : digit;
  return static_cast<unsigned int>((std::min)(kDigits.find(upper), kDigits.size()));
}

}  // namespace

std::array<wchar_t, 2> DigitsOf(char byte) {
  const auto value = static_cast<unsigned char>(byte);
  return {kDigits[value / 16u], kDigits[value % 16u]};
}

wchar_t* NewDigits(const resbuf& record) {
  const std::string_view bytes = BytesOf(record);
  auto* const text = static_cast<wchar_t*>(acad_malloc((bytes.size() * 2 + 1) * sizeof(wchar_t)));
  if (text == nullptr) return nullptr;
  wchar_t* end = text;
  for (const char byte : bytes)
    for (const wchar_t digit : DigitsOf(byte)) *end++ = digit;
  *end = 0;
  return text;
}

bool AreBytes(const wchar_t* digits) {
  const size_t length = TextLength(digits);
  return length % 2 == 0 && length / 2 <= kMostBytes &&
         std::all_of(digits, digits + length, [](wchar_t digit) { return ValueOf(digit) < 16; });
}

void TakeBytes(resbuf& record, const wchar_t* digits) {
  const size_t count = TextLength(digits) / 2;
  char* const buffer = count > 0 ? static_cast<char*>(acad_malloc(count)) : nullptr;
  if (buffer != nullptr)
    for (size_t i = 0; i < count; ++i)
      buffer[i] = static_cast<char>(ValueOf(digits[2 * i]) * 16 + ValueOf(digits[2 * i + 1]));
  SetBuffer(record, buffer, static_cast<short>(count));
}

bool CopyContent(resbuf& record) {
  if (!IsBinary(record.restype)) {
    wchar_t* const text = record.resval.rstring;
    record.resval.rstring = CopyText(text);
    return record.resval.rstring != nullptr || text == nullptr;
  }
  const std::string_view bytes = BytesOf(record);
  auto* const buffer = bytes.empty() ? nullptr : static_cast<char*>(acad_malloc(bytes.size()));
  if (buffer != nullptr) std::memcpy(buffer, bytes.data(), bytes.size());
  SetBuffer(record, buffer, static_cast<short>(bytes.size()));
  return buffer != nullptr || bytes.empty();
}

void ClearContent(resbuf& record) {
  if (IsBinary(record.restype))
    SetBuffer(record, nullptr, 0);
  else
    record.resval.rstring = nullptr;
}

}  // namespace lomlisp
