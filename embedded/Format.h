// Formatting as the command line does it, the same on every system.
#pragma once

#include <cstdarg>
#include <string>

namespace lomlisp::embedded {

// Appends the formatted text. Directives, with the flags "-+ #0", width, precision and '*':
//   %s wide text, %S and %hs narrow text (a null text is "(null)"), %c, %%, %p,
//   %d %i %u %x %X %o with hh, h, l and I32 (32 bits), ll and I64 (64 bits), I, z, t and j,
//   %f %F %e %E %g %G, as the C standard has them in the "C" locale.
// Everything else is copied as it stands.
void AppendFormatted(std::wstring& out, const wchar_t* format, std::va_list arguments);

}  // namespace lomlisp::embedded
