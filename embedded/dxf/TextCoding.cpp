#include <embedded/dxf/TextCoding.h>

#include <embedded/Text.h>
#include <embedded/dxf/CodePages.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace lomlisp::embedded {

namespace {

constexpr char32_t kFirstByteCode = 0xDC80;
constexpr char32_t kLastByteCode = 0xDCFF;
constexpr char32_t kReplacement = 0xFFFD;
constexpr size_t kEscapeLength = 7;  // \U+XXXX

unsigned char ByteAt(std::string_view bytes, size_t at) {
  return at < bytes.size() ? static_cast<unsigned char>(bytes[at]) : 0;
}

char32_t CharacterAt(std::wstring_view text, size_t at) {
  return at < text.size() ? static_cast<char32_t>(text[at]) : 0;
}

bool IsHighSurrogate(char32_t code) { return code >= 0xD800 && code <= 0xDBFF; }
bool IsLowSurrogate(char32_t code) { return code >= 0xDC00 && code <= 0xDFFF; }
bool IsSurrogate(char32_t code) { return IsHighSurrogate(code) || IsLowSurrogate(code); }

char32_t Joined(char32_t high, char32_t low) { return 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00); }

void AppendWide(char32_t character, std::wstring& text) {
  if (sizeof(wchar_t) == 2 && character >= 0x10000) {
    text += static_cast<wchar_t>(0xD7C0 + (character >> 10));
    text += static_cast<wchar_t>(0xDC00 + (character & 0x3FF));
  } else {
    text += static_cast<wchar_t>(character);
  }
}

void AppendByteCode(unsigned char byte, std::wstring& text) {
  text += static_cast<wchar_t>(kFirstByteCode + (byte - 0x80u));
}

// --- Carets and \U+XXXX, in bytes as in characters ---

constexpr char kCaretDistance = 'A' - 1;

template <typename Text>
bool IsCaret(const Text& text, size_t at) {
  return text[at] == '^' && at + 1 < text.size() &&
         (text[at + 1] == 'I' || text[at + 1] == 'J' || text[at + 1] == 'M');
}

template <typename Text>
int HexDigitAt(const Text& text, size_t at) {
  const auto character = text[at];
  if (character >= '0' && character <= '9') return static_cast<int>(character - '0');
  if (character >= 'A' && character <= 'F') return static_cast<int>(character - 'A') + 10;
  if (character >= 'a' && character <= 'f') return static_cast<int>(character - 'a') + 10;
  return -1;
}

struct Escape {
  char32_t character = 0;
  size_t length = 0;  // 0: there is none
};

template <typename Text>
Escape ReadFourDigits(const Text& text, size_t at) {
  if (text.size() - at < kEscapeLength || text[at] != '\\' || text[at + 1] != 'U' || text[at + 2] != '+')
    return {};
  Escape escape{0, kEscapeLength};
  for (size_t digit = at + 3; digit < at + kEscapeLength; ++digit) {
    const int value = HexDigitAt(text, digit);
    if (value < 0) return {};
    escape.character = escape.character << 4 | static_cast<char32_t>(value);
  }
  return escape;
}

// A lone surrogate is no character, so the text stays.
template <typename Text>
Escape ReadEscape(const Text& text, size_t at) {
  const Escape first = ReadFourDigits(text, at);
  if (first.length == 0 || !IsSurrogate(first.character)) return first;
  if (!IsHighSurrogate(first.character)) return {};
  const Escape second = ReadFourDigits(text, at + first.length);
  if (second.length == 0 || !IsLowSurrogate(second.character)) return {};
  return {Joined(first.character, second.character), first.length + second.length};
}

void AppendFourDigits(char32_t code, std::string& bytes) {
  bytes += "\\U+";
  for (int shift = 12; shift >= 0; shift -= 4) bytes += "0123456789ABCDEF"[(code >> shift) & 0xF];
}

void AppendEscape(char32_t character, std::string& bytes) {
  if (character < 0x10000) return AppendFourDigits(character, bytes);
  AppendFourDigits(0xD7C0 + (character >> 10), bytes);
  AppendFourDigits(0xDC00 + (character & 0x3FF), bytes);
}

// --- UTF-8 ---

// The character that begins there; length 0 when it is none, too long, or a surrogate.
Escape ReadUtf8(std::string_view bytes, size_t at) {
  const unsigned char lead = ByteAt(bytes, at);
  const size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC0 || lead >= 0xF8 || bytes.size() - at < length) return {};
  char32_t character = lead & (0x7Fu >> length);
  for (size_t index = at + 1; index < at + length; ++index) {
    const unsigned char byte = ByteAt(bytes, index);
    if ((byte & 0xC0) != 0x80) return {};
    character = character << 6 | (byte & 0x3Fu);
  }
  constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  if (character < kLeast[length] || character > 0x10FFFF || IsSurrogate(character)) return {};
  return {character, length};
}

void AppendUtf8(char32_t character, std::string& bytes) {
  const auto append = [&](char32_t byte) { bytes += static_cast<char>(static_cast<unsigned char>(byte)); };
  if (character < 0x800) {
    append(0xC0 | character >> 6);
  } else if (character < 0x10000) {
    append(0xE0 | character >> 12);
    append(0x80 | (character >> 6 & 0x3F));
  } else {
    append(0xF0 | character >> 18);
    append(0x80 | (character >> 12 & 0x3F));
    append(0x80 | (character >> 6 & 0x3F));
  }
  append(0x80 | (character & 0x3F));
}

// --- Characters of two bytes ---

bool IsLead(unsigned char byte) { return byte >= 0x81 && byte <= 0xFE; }
// Whatever ASCII is behind a lead passes through with it; what no file can hold is left to the escapes.
bool IsAsciiTrail(char32_t code) { return code != 0 && code < 0x80 && code != '\n' && code != '\r'; }

// --- What needs no thought ---

bool IsPlain(char character) {
  return static_cast<unsigned char>(character) < 0x80 && character != '^' && character != '\\';
}
bool IsPlain(wchar_t character) {
  return character >= L' ' && character < L'\x7F' && character != L'^' && character != L'\\';
}

template <typename Text>
size_t PlainEnd(const Text& text, size_t at) {
  while (at < text.size() && IsPlain(text[at])) ++at;
  return at;
}

// As append does, without the text between that it makes where the characters differ in width.
template <typename From, typename To>
void AppendPlain(const From& from, To& to) {
  const size_t begin = to.size();
  to.resize(begin + from.size());
  std::transform(from.begin(), from.end(), to.begin() + static_cast<std::ptrdiff_t>(begin),
                 [](auto character) { return static_cast<typename To::value_type>(character); });
}

}  // namespace

TextCoding::TextCoding(DxfVersion version, std::wstring_view codePage) {
  const bool isUtf8 = version >= DxfVersion::R2007 || Folded(codePage) == L"UTF-8";
  m_form = isUtf8 ? Form::Utf8 : IsDoubleByte(codePage) ? Form::DoubleByte : Form::SingleByte;
  if (m_form == Form::SingleByte) m_page = FindCodePage(codePage);
}

// --- Decoding ---

void TextCoding::Decode(std::string_view bytes, std::wstring& text) const {
  for (size_t at = 0; at < bytes.size();) {
    const size_t end = PlainEnd(bytes, at);
    AppendPlain(bytes.substr(at, end - at), text);
    at = end < bytes.size() ? end + DecodeCharacter(bytes, end, text) : end;
  }
}

// Gives the number of bytes that were used.
size_t TextCoding::DecodeCharacter(std::string_view bytes, size_t at, std::wstring& text) const {
  if (ByteAt(bytes, at) >= 0x80) return DecodeByte(bytes, at, text);
  if (IsCaret(bytes, at)) {
    text += static_cast<wchar_t>(bytes[at + 1] - kCaretDistance);
    return 2;
  }
  if (const Escape escape = ReadEscape(bytes, at); escape.length > 0) {
    AppendWide(escape.character, text);
    return escape.length;
  }
  text += static_cast<wchar_t>(bytes[at]);
  return 1;
}

size_t TextCoding::DecodeByte(std::string_view bytes, size_t at, std::wstring& text) const {
  const unsigned char byte = ByteAt(bytes, at);
  if (m_form == Form::Utf8) {
    if (const Escape character = ReadUtf8(bytes, at); character.length > 0) {
      AppendWide(character.character, text);
      return character.length;
    }
  } else if (m_form == Form::SingleByte && !m_page.empty()) {
    const size_t first = 0x100 - m_page.size();
    const char16_t character = byte < first ? byte : m_page[byte - first];
    if (character != kNoCharacter) {
      text += static_cast<wchar_t>(character);
      return 1;
    }
  }
  AppendByteCode(byte, text);
  if (m_form != Form::DoubleByte || !IsLead(byte) || at + 1 >= bytes.size()) return 1;
  const unsigned char trail = ByteAt(bytes, at + 1);
  if (trail >= 0x80) {
    AppendByteCode(trail, text);
  } else if (IsAsciiTrail(trail)) {
    text += static_cast<wchar_t>(trail);
  } else {
    return 1;
  }
  return 2;
}

// --- Encoding ---

void TextCoding::Encode(std::wstring_view text, std::string& bytes) const {
  for (size_t at = 0; at < text.size();) {
    const size_t end = PlainEnd(text, at);
    AppendPlain(text.substr(at, end - at), bytes);
    at = end < text.size() ? end + EncodeCharacter(text, end, bytes) : end;
  }
}

// Gives the number of characters that were used.
size_t TextCoding::EncodeCharacter(std::wstring_view text, size_t at, std::string& bytes) const {
  const char32_t code = CharacterAt(text, at);
  if (IsHighSurrogate(code) && IsLowSurrogate(CharacterAt(text, at + 1))) {
    EncodeInPage(Joined(code, CharacterAt(text, at + 1)), bytes);
    return 2;
  }
  if (code >= kFirstByteCode && code <= kLastByteCode) {
    const auto byte = static_cast<unsigned char>(code - kFirstByteCode + 0x80);
    bytes += static_cast<char>(byte);
    const char32_t trail = CharacterAt(text, at + 1);
    if (m_form != Form::DoubleByte || !IsLead(byte)) return 1;
    if (trail >= kFirstByteCode && trail <= kLastByteCode) {
      bytes += static_cast<char>(static_cast<unsigned char>(trail - kFirstByteCode + 0x80));
    } else if (IsAsciiTrail(trail)) {
      bytes += static_cast<char>(trail);
    } else {
      return 1;
    }
    return 2;
  }
  if (code == L'\t' || code == L'\n' || code == L'\r') {
    bytes += '^';
    bytes += static_cast<char>(code + kCaretDistance);
  } else if (code < 0x20 || IsCaret(text, at) || ReadEscape(text, at).length > 0) {
    AppendEscape(code, bytes);
  } else {
    EncodeInPage(code, bytes);
  }
  return 1;
}

void TextCoding::EncodeInPage(char32_t character, std::string& bytes) const {
  if (character > 0x10FFFF) character = kReplacement;
  if (character < 0x80) {
    bytes += static_cast<char>(character);
  } else if (m_form == Form::Utf8 && !IsSurrogate(character)) {
    AppendUtf8(character, bytes);
  } else if (const unsigned char byte = ByteInPage(character); byte != 0) {
    bytes += static_cast<char>(byte);
  } else {
    AppendEscape(character, bytes);
  }
}

// 0 when the page does not have it.
unsigned char TextCoding::ByteInPage(char32_t character) const {
  if (m_page.empty() || character > 0xFFFF || character == kNoCharacter) return 0;
  const size_t first = 0x100 - m_page.size();
  if (character < first) return static_cast<unsigned char>(character);
  const size_t index = m_page.find(static_cast<char16_t>(character));
  return index != std::u16string_view::npos ? static_cast<unsigned char>(first + index) : 0;
}

}  // namespace lomlisp::embedded
