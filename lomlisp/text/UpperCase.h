// Upper case, whatever the locale.
#pragma once

#include <lomlisp/platform/api.h>

namespace lomlisp {

// The upper-case form of a character by Unicode's one-to-one mapping (Unicode 14); the character
// itself when it has none, and beyond U+FFFF, so that texts of 16-bit characters give the same.
LOMLISP_API wchar_t UpperCase(wchar_t character);

}  // namespace lomlisp
