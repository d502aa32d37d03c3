// LISP text to values, and back: what can be read and printed reads the same again.
#include <tests/fuzz/Fuzz.h>

#include <vector>

namespace {

// (1 2 . 3) has its dot behind the first item when it is printed, and no list can be read behind a dot,
// not even that of (1 . nil), which is printed as one.
bool HasUnreadableDot(const CLOMAdsLispVar& value) {
  std::vector<const CLOMLispElement*> left{value.New().get()};
  while (!left.empty()) {
    const CLOMLispElement* const node = left.back();
    left.pop_back();
    if (node == nullptr) continue;
    if (node->dotted != 0 && (node->children.size() > 2 || CLOMAdsLispVar::isList(node->children.back())))
      return true;
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
  if (HasUnreadableDot(value)) return;
  CLOMAdsLispVar again;
  Require(again.Read(printed.data()), "what was printed can be read");
  value.GetAsDebugString();
}
