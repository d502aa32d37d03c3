#include <embedded/dxf/BinaryTags.h>

#include <embedded/dxf/Fault.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <type_traits>

namespace lomlisp::embedded {

// The first tag, 0 SECTION or a comment, tells the width of the codes.
BinaryTags::BinaryTags(std::string_view bytes, const TextCoding& coding) : TagSource(bytes, coding) {
  m_position = kBinarySentinel.size();
  const auto byte = [&](size_t at) {
    return at < m_bytes.size() ? static_cast<unsigned char>(m_bytes[at]) : 0;
  };
  m_hasShortCodes = byte(m_position) == kLargeCode || (byte(m_position) == 0 && byte(m_position + 1) != 0);
}

std::string_view BinaryTags::Take(size_t size) {
  if (size > m_bytes.size() - m_position) throw Fault("the file ends within a group", m_begin);
  const std::string_view bytes = m_bytes.substr(m_position, size);
  m_position += size;
  return bytes;
}

template <typename Integer>
Integer BinaryTags::TakeInteger() {
  const std::string_view bytes = Take(sizeof(Integer));
  uint64_t integer = 0;
  for (size_t index = sizeof(Integer); index-- > 0;)
    integer = integer << 8 | static_cast<unsigned char>(bytes[index]);
  return static_cast<Integer>(integer);
}

std::string_view BinaryTags::TakeText() {
  const size_t end = m_bytes.find('\0', m_position);
  if (end == std::string_view::npos) throw Fault("a text without an end", m_begin);
  const std::string_view text = Take(end - m_position);
  Take(1);
  return text;
}

double BinaryTags::TakeReal() {
  const auto real = std::bit_cast<double>(TakeInteger<uint64_t>());
  if (!std::isfinite(real)) throw Fault("a number that is infinite or none at all", m_begin);
  return real;
}

std::wstring BinaryTags::TakeBinary() {
  std::wstring digits;
  for (const char character : Take(TakeInteger<unsigned char>())) {
    const auto byte = static_cast<unsigned char>(character);
    digits += L"0123456789ABCDEF"[byte >> 4];
    digits += L"0123456789ABCDEF"[byte & 0xF];
  }
  return digits;
}

Reference BinaryTags::TakeReference() {
  const std::string_view text = TakeText();
  const auto handle = ReadHandle(std::wstring(text.begin(), text.end()));
  if (!handle) throw Fault("a handle that is none", m_begin);
  return Reference{*handle};
}

int BinaryTags::TakeCode() {
  int code = m_hasShortCodes ? TakeInteger<unsigned char>() : TakeInteger<int16_t>();
  if (m_hasShortCodes && code == kLargeCode) code = TakeInteger<int16_t>();
  if (code < 0 || code > kLastCode)
    throw Fault("the group code " + std::to_string(code) + " is out of range", m_begin);
  return code;
}

void BinaryTags::TakeValue(Tag& tag) {
  const auto set = [&](auto integer) { tag.value = static_cast<long long>(integer); };
  switch (KindOf(tag.code)) {
    case GroupKind::Text:
    case GroupKind::Handle:
      return m_coding.Decode(TakeText(), tag.value.emplace<std::wstring>());
    case GroupKind::Binary:
      tag.value = TakeBinary();
      return;
    case GroupKind::Real:
    case GroupKind::Point:
      tag.value = TakeReal();
      return;
    case GroupKind::Short:
      return set(TakeInteger<int16_t>());
    case GroupKind::Long:
      return set(TakeInteger<int32_t>());
    case GroupKind::Int64:
      return set(TakeInteger<int64_t>());
    case GroupKind::Bool:
      return set(TakeInteger<unsigned char>());
    case GroupKind::Reference:
      tag.value = TakeReference();
      return;
  }
}

bool BinaryTags::Next(Tag& tag) {
  do {
    m_begin = m_position;
    if (m_position == m_bytes.size()) return false;
    tag.place = m_begin;
    tag.code = TakeCode();
    TakeValue(tag);
  } while (tag.code == kCommentCode);
  return true;
}

}  // namespace lomlisp::embedded
