// A deep copy of a tree.
#pragma once

#include <lomlisp/lisp/CLOMAdsLispVar.h>

namespace lomlisp {

// Shares nothing with the tree; null for null. Linear in the tree as it is walked.
inline CLOMAdsLispVar::Element DeepCopy(const CLOMAdsLispVar::ConstElement& element) {
  CLOMAdsLispVar::Element copy;
  CLOMAdsLispVar::Element rest;
  CLOMAdsLispVar::CopyHead(element, copy, rest, -1);
  return copy;
}

}  // namespace lomlisp
