#include <embedded/dxf/AsciiTags.h>

#include <embedded/dxf/Fault.h>

#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <system_error>

namespace lomlisp::embedded {

namespace {

std::string_view Trimmed(std::string_view text) {
  const auto isBlank = [](char character) { return character == ' ' || character == '\t'; };
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

// For a message: not all of a long line, and nothing that is not printable.
std::string Quoted(std::string_view text) {
  constexpr size_t kMost = 40;
  std::string quoted = "\"";
  for (const char character : text.substr(0, kMost))
    quoted += character >= ' ' && character <= '~' ? character : '?';
  return quoted + (text.size() > kMost ? "...\"" : "\"");
}

// A number that is the whole text; `format` is the base or the form of it.
template <typename Number, typename Format>
std::optional<Number> Parse(std::string_view text, Format format) {
  Number number{};
  const char* end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data(), end, number, format);
  if (error != std::errc() || stopped != end) return std::nullopt;
  return number;
}

// std::from_chars takes no plus sign.
std::string_view WithoutPlus(std::string_view text) {
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  return text;
}

std::optional<double> ParseReal(std::string_view text) {
  const auto real = Parse<double>(WithoutPlus(text), std::chars_format::general);
  return real && std::isfinite(*real) ? real : std::nullopt;
}

// Some programs write integers as reals.
std::optional<long long> ParseInteger(std::string_view text) {
  constexpr double kBeyond = 9223372036854775808.0;
  if (const auto integer = Parse<long long>(WithoutPlus(text), 10)) return integer;
  const auto real = ParseReal(text);
  if (!real || *real != std::trunc(*real) || *real < -kBeyond || *real >= kBeyond) return std::nullopt;
  return static_cast<long long>(*real);
}

std::optional<Reference> ParseReference(std::string_view text) {
  const auto handle = Parse<uint64_t>(text, 16);
  return handle ? std::optional(Reference{*handle}) : std::nullopt;
}

bool IsHexDigit(char character) {
  return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'F') ||
         (character >= 'a' && character <= 'f');
}

std::optional<std::wstring> ParseBinary(std::string_view text) {
  if (text.size() % 2 != 0) return std::nullopt;
  std::wstring digits;
  digits.reserve(text.size());
  for (const char character : text) {
    if (!IsHexDigit(character)) return std::nullopt;
    digits += static_cast<wchar_t>(character >= 'a' ? character - 'a' + 'A' : character);
  }
  return digits;
}

}  // namespace

std::string_view AsciiTags::NextLine() {
  ++m_line;
  const char* const begin = m_bytes.data() + m_position;
  const char* const limit = m_bytes.data() + m_bytes.size();
  const char* end = begin;
  while (end != limit && *end != '\n' && *end != '\r') ++end;
  const std::string_view line(begin, static_cast<size_t>(end - begin));
  m_position += line.size();
  if (end != limit) m_position += *end == '\r' && end + 1 != limit && end[1] == '\n' ? 2 : 1;
  return line;
}

int AsciiTags::ReadCode(std::string_view line) const {
  const auto code = Parse<int>(line, 10);
  if (!code) throw Fault("a group code belongs here, not " + Quoted(line), m_line);
  if (*code < 0 || *code > kLastCode)
    throw Fault("the group code " + std::to_string(*code) + " is out of range", m_line);
  return *code;
}

void AsciiTags::ReadValue(Tag& tag, std::string_view line) const {
  const auto set = [&](const auto& value, const char* expected) {
    if (!value)
      throw Fault(
          std::string(expected) + " belongs to group " + std::to_string(tag.code) + ", not " + Quoted(line),
          m_line);
    tag.value = *value;
  };
  switch (KindOf(tag.code)) {
    case GroupKind::Text:
    case GroupKind::Handle:
      return m_coding.Decode(line, tag.value.emplace<std::wstring>());
    case GroupKind::Binary:
      return set(ParseBinary(Trimmed(line)), "an even number of hexadecimal digits");
    case GroupKind::Real:
    case GroupKind::Point:
      return set(ParseReal(Trimmed(line)), "a number");
    case GroupKind::Short:
    case GroupKind::Long:
    case GroupKind::Int64:
    case GroupKind::Bool:
      return set(ParseInteger(Trimmed(line)), "an integer");
    case GroupKind::Reference:
      return set(ParseReference(Trimmed(line)), "a handle");
  }
}

bool AsciiTags::Next(Tag& tag) {
  do {
    if (m_position == m_bytes.size()) return false;
    const std::string_view line = Trimmed(NextLine());
    if (line.empty() && IsRestBlank()) return false;
    tag.code = ReadCode(line);
    tag.place = m_line;
    if (m_position == m_bytes.size()) throw Fault("the file ends behind a group code", m_line);
    ReadValue(tag, NextLine());
  } while (tag.code == kCommentCode);
  return true;
}

}  // namespace lomlisp::embedded
