#include <embedded/Text.h>

#include <cstddef>
#include <cstdint>

namespace lomlisp::embedded {

namespace {

constexpr uint32_t kReplacement = 0xFFFD;
constexpr uint32_t kHighestCode = 0x10FFFF;

bool IsHighSurrogate(uint32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(uint32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

uint32_t UnitAt(std::wstring_view text, size_t index) {
  return index < text.size() ? static_cast<uint32_t>(text[index]) : 0;
}

void AppendCodePoint(std::string& bytes, uint32_t code) {
  const auto append = [&](uint32_t byte) { bytes += static_cast<char>(static_cast<unsigned char>(byte)); };
  if (code < 0x80) return append(code);
  if (code < 0x800) {
    append(0xC0 | (code >> 6));
  } else {
    if (code < 0x10000) {
      append(0xE0 | (code >> 12));
    } else {
      append(0xF0 | (code >> 18));
      append(0x80 | ((code >> 12) & 0x3F));
    }
    append(0x80 | ((code >> 6) & 0x3F));
  }
  append(0x80 | (code & 0x3F));
}

}  // namespace

std::wstring_view Trimmed(std::wstring_view text) {
  const auto isBlank = [](wchar_t character) { return static_cast<char32_t>(character) <= U' '; };
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::string Utf8(std::wstring_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (size_t index = 0; index < text.size(); ++index) {
    uint32_t code = UnitAt(text, index);
    if (IsHighSurrogate(code) && IsLowSurrogate(UnitAt(text, index + 1)))
      code = 0x10000 + ((code - 0xD800) << 10) + (UnitAt(text, ++index) - 0xDC00);
    else if (IsHighSurrogate(code) || IsLowSurrogate(code) || code > kHighestCode)
      code = kReplacement;
    AppendCodePoint(bytes, code);
  }
  return bytes;
}

namespace {

// A sequence of bytes by its first one: how many follow, the bits of the first, the least code that needs it.
struct Lead {
  size_t following;
  uint32_t bits;
  uint32_t least;
};

// No bytes follow one that cannot be first; its code is too great for all.
Lead LeadOf(uint32_t byte) {
  if (byte < 0x80) return {0, byte, 0};
  if (byte >= 0xC0 && byte < 0xE0) return {1, byte & 0x1F, 0x80};
  if (byte >= 0xE0 && byte < 0xF0) return {2, byte & 0x0F, 0x800};
  if (byte >= 0xF0 && byte < 0xF8) return {3, byte & 0x07, 0x10000};
  return {0, kHighestCode + 1, 0};
}

void AppendCharacter(std::wstring& text, uint32_t code) {
  if (sizeof(wchar_t) > 2 || code < 0x10000) {
    text += static_cast<wchar_t>(code);
    return;
  }
  text += static_cast<wchar_t>(0xD800 + ((code - 0x10000) >> 10));
  text += static_cast<wchar_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
}

}  // namespace

std::wstring FromUtf8(std::string_view bytes) {
  std::wstring text;
  text.reserve(bytes.size());
  const auto at = [&](size_t index) {
    return static_cast<uint32_t>(static_cast<unsigned char>(bytes[index]));
  };
  for (size_t index = 0; index < bytes.size();) {
    const Lead lead = LeadOf(at(index++));
    uint32_t code = lead.bits;
    size_t taken = 0;
    for (; taken < lead.following && index < bytes.size() && (at(index) & 0xC0) == 0x80; ++taken)
      code = code << 6 | (at(index++) & 0x3F);
    const bool isSurrogate = IsHighSurrogate(code) || IsLowSurrogate(code);
    const bool isGood = taken == lead.following && code >= lead.least && code <= kHighestCode && !isSurrogate;
    AppendCharacter(text, isGood ? code : kReplacement);
  }
  return text;
}

}  // namespace lomlisp::embedded
