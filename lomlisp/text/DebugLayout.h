// How the debugging form of values is laid out.
#pragma once

#include <lomlisp/platform/api.h>

namespace lomlisp {

// Blanks for each level in front of atoms and nil, 0 at first; with 0 everything stands in one line.
LOMLISP_API extern unsigned long debugIndentation;
// With indentation, whether each member gets its index in front: 0, as at first, or 1.
LOMLISP_API extern unsigned long debugNumbering;

}  // namespace lomlisp
