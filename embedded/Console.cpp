#include <embedded/Host.h>
#include <embedded/Text.h>

#include <cstdint>
#include <cstdio>
#include <utility>

namespace lomlisp::embedded {

namespace {

constexpr uint32_t kReplacement = 0xFFFD;

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

std::string Utf8(std::wstring_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (size_t index = 0; index < text.size(); ++index) {
    uint32_t code = UnitAt(text, index);
    if (IsHighSurrogate(code) && IsLowSurrogate(UnitAt(text, index + 1)))
      code = 0x10000 + ((code - 0xD800) << 10) + (UnitAt(text, ++index) - 0xDC00);
    else if (IsHighSurrogate(code) || IsLowSurrogate(code) || code > 0x10FFFF)
      code = kReplacement;
    AppendCodePoint(bytes, code);
  }
  return bytes;
}

void Console::Write(std::wstring_view text) {
  m_text += text;
  if (!m_echo) return;
  const std::string bytes = Utf8(text);
  std::fwrite(bytes.data(), 1, bytes.size(), stdout);
}

std::wstring Console::Take() { return std::exchange(m_text, {}); }

void Console::Reset() {
  m_text.clear();
  m_echo = false;
}

}  // namespace lomlisp::embedded
