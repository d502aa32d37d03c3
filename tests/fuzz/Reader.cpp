// LISP text to values, and back: what can be read and printed reads the same again.
#include <tests/fuzz/Fuzz.h>

#include <cmath>
#include <vector>

namespace {

// What is printed otherwise than it can be read. (1 2 . 3) gets its dot behind the first item, and no list can be
// read behind a dot, not even that of (1 . nil), which is printed as one. A real is printed with all of its digits,
// and a hundred characters are too many for a number.
bool IsUnreadable(const CLOMLispElement& node) {
  if (node.dotted != 0 && (node.children.size() > 2 || CLOMAdsLispVar::isList(node.children.back()))) return true;
  return node.atom.Type() == RTREAL && std::fabs(node.atom.resval.rreal) >= 1e90;
}

bool HasUnreadable(const CLOMAdsLispVar& value) {
  std::vector<const CLOMLispElement*> left{value.New().get()};
  while (!left.empty()) {
    const CLOMLispElement* const node = left.back();
    left.pop_back();
    if (node == nullptr) continue;
    if (IsUnreadable(*node)) return true;
    for (const auto& child : node->children) left.push_back(child.get());
  }
  return false;
}

}  // namespace

void lomlisp::fuzz::Try(Input& input) {
  const std::wstring text = TakeRest(input);
  CLOMAdsLispVar value;
  if (!value.Read(text.c_str())) return;
  // Room for a number of a hundred digits, of which a piece may take half.
  std::vector<wchar_t> printed(8192 + text.size() * 16);
  value.PrinC(printed.data(), printed.size());
  if (HasUnreadable(value)) return;
  CLOMAdsLispVar again;
  Require(again.Read(printed.data()), "what was printed can be read");
  value.GetAsDebugString();
}
