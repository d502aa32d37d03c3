#include <lomlisp/resbuf/Text.h>

#include <lomlisp/platform/ads.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <cwchar>

namespace lomlisp {

namespace {

// Reads a text as UTF-16 code units: a character beyond the first plane gives two.
class UnitReader {
 public:
  explicit UnitReader(const wchar_t* text) : m_text(text) {}

  // 0 at the end of the text.
  uint32_t Next() {
    if (m_lowUnit != 0) {
      const uint32_t unit = m_lowUnit;
      m_lowUnit = 0;
      return unit;
    }
    const auto character = static_cast<uint32_t>(*m_text);
    if (character == 0) return 0;
    ++m_text;
    if (character < 0x10000 || character > 0x10FFFF) return character;
    m_lowUnit = 0xDC00 + ((character - 0x10000) & 0x3FF);
    return 0xD800 + ((character - 0x10000) >> 10);
  }

 private:
  const wchar_t* m_text;
  uint32_t m_lowUnit = 0;
};

}  // namespace

size_t TextLength(const wchar_t* text) { return text != nullptr ? std::wcslen(text) : 0; }

wchar_t* CopyText(const wchar_t* text) {
  if (text == nullptr) return nullptr;
  const size_t bytes = (std::wcslen(text) + 1) * sizeof(wchar_t);
  void* const copy = acad_malloc(bytes);
  if (copy != nullptr) std::memcpy(copy, text, bytes);
  return static_cast<wchar_t*>(copy);
}

int CompareText(const wchar_t* a, const wchar_t* b) {
  while (*a != 0 && *a == *b) {
    ++a;
    ++b;
  }
  const auto firstOfA = static_cast<uint32_t>(*a);
  const auto firstOfB = static_cast<uint32_t>(*b);
  if (firstOfA < 0x10000 && firstOfB < 0x10000) return firstOfA == firstOfB ? 0 : firstOfA < firstOfB ? -1 : 1;
  UnitReader unitsOfA(a);
  UnitReader unitsOfB(b);
  for (;;) {
    const uint32_t unitOfA = unitsOfA.Next();
    const uint32_t unitOfB = unitsOfB.Next();
    if (unitOfA != unitOfB) return unitOfA < unitOfB ? -1 : 1;
    if (unitOfA == 0) return 0;
  }
}

bool AreTextsEqual(const wchar_t* a, const wchar_t* b) {
  if (a == nullptr || b == nullptr) return a == b;
  return CompareText(a, b) == 0;
}

uint64_t FirstUnits(const wchar_t* text) {
  constexpr uint32_t kGreatest = 0xFFFF;
  UnitReader units(text);
  uint64_t first = 0;
  for (int shift = 48; shift >= 0; shift -= 16) {
    const uint32_t unit = units.Next();
    first |= uint64_t{(std::min)(unit, kGreatest)} << shift;
    // What is no character counts as greater than all that are: the whole texts decide.
    if (unit >= kGreatest) break;
  }
  return first;
}

}  // namespace lomlisp
