// What stands between the members of a list in its printed forms.
#pragma once

#include <lomlisp/lisp/Node.h>

#include <cstddef>
#include <string_view>

namespace lomlisp {

// Behind member `index`: nothing behind the last, a dot behind the first of a dotted list, else a
// blank.
inline std::wstring_view Separator(const CLOMLispElement& list, size_t index) {
  if (index + 1 == list.children.size()) return {};
  using namespace std::string_view_literals;
  return index == 0 && list.dotted == 1 ? L" . "sv : L" "sv;
}

}  // namespace lomlisp
