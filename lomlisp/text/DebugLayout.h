// How the debugging form of values is laid out.
#pragma once

namespace lomlisp {

// Blanks for each level in front of atoms and nil; with 0 everything stands in one line.
inline unsigned long debugIndentation = 0;
// With indentation, whether each member gets its index in front: 0 or 1.
inline unsigned long debugNumbering = 0;

}  // namespace lomlisp
