// The code pages of DXF files up to R2004.
#pragma once

#include <string_view>

namespace lomlisp::embedded {

// A byte that stands for nothing.
inline constexpr char16_t kNoCharacter = u'\uFFFD';

// The characters of the last bytes of a code page, at most those of 0x80 to 0xFF; what is before them
// stands for itself. Empty for an unknown name, and for those with characters of two bytes. The name
// without regard to case.
std::u16string_view FindCodePage(std::wstring_view name);

// Whether it is a code page with characters of two bytes.
bool IsDoubleByte(std::wstring_view name);

}  // namespace lomlisp::embedded
