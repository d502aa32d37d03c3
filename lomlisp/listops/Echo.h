// Messages that name the value they are about.
#pragma once

#include <lomlisp/lisp/CLOMAdsLispVar.h>

namespace lomlisp {

// The value on a line of its own.
inline void PrintLine(const CLOMAdsLispVar& value) {
  value.PrinC(nullptr, 0);
  acutPrintf(L"\n");
}

// The message, then the value.
inline void Report(const wchar_t* message, const CLOMAdsLispVar& value) {
  acutPrintf(message);
  PrintLine(value);
}

}  // namespace lomlisp
