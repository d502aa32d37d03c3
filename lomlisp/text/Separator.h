// What stands between the members of a list in its printed forms.
#pragma once

#include <lomlisp/lisp/Node.h>

namespace lomlisp {

// Behind member `index`: null behind the last, a dot behind the first of a dotted list, else a
// blank.
inline const wchar_t* Separator(const CLOMLispElement& list, size_t index) {
  if (index + 1 == list.children.size()) return nullptr;
  return index == 0 && list.dotted == 1 ? L" . " : L" ";
}

}  // namespace lomlisp
