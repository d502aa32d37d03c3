// ReplaceTextW: other texts throughout a value.

#include <lomlisp/lisp/CLOMAdsLispVar.h>
#include <lomlisp/lisp/TreeWalk.h>
#include <lomlisp/platform/binary.h>
#include <lomlisp/resbuf/Text.h>

#include <algorithm>
#include <cwchar>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

using namespace lomlisp;

namespace {

// Replaces the texts of the atoms that it walks over, each once, however many ways lead to it: a new
// text may stand in the table as well.
class TextReplacer {
 public:
  TextReplacer(const CStringArray& from, const CStringArray& to) {
    const auto count = (std::min)(from.GetSize(), to.GetSize());
    for (decltype(from.GetSize()) i = 0; i < count; ++i)
      m_replacements.emplace(from[i].GetString(), to[i].GetString());
  }

  void Leaf(node::Node node) {
    if (node == nullptr) return;
    const wchar_t* const text = ReplacementFor(node->atom);
    if (text == nullptr || !m_replaced.insert(node).second) return;
    // Walks are over constant trees; this one is over the value's own.
    Replace(const_cast<CLOMLispElement*>(node)->atom, text);
  }
  bool Enter(const CLOMLispElement& list) { return m_entered.insert(&list).second; }
  void BeforeChild(const CLOMLispElement&, size_t) {}
  void AfterChild(const CLOMLispElement&, size_t) {}
  void Leave(const CLOMLispElement&) {}

 private:
  // Null when the atom stays as it is.
  const wchar_t* ReplacementFor(const ResBuf& atom) const {
    if (atom.BaseType() != RTSTR || IsBinary(atom.Type()) || atom.resval.rstring == nullptr) return nullptr;
    const auto found = m_replacements.find(atom.resval.rstring);
    return found != m_replacements.end() ? found->second : nullptr;
  }

  static void Replace(ResBuf& atom, const wchar_t* text) {
    const size_t length = std::wcslen(text);
    if (atom.Type() == RTSTR && TextLength(atom.resval.rstring) >= length)
      std::wmemcpy(atom.resval.rstring, text, length + 1);
    else
      Exchange(atom, ResBuf(text));
  }

  // The old text stays when there is no memory for the new one. The text under a DXF code may be
  // somebody else's, so it is never written over.
  static void Exchange(ResBuf& atom, ResBuf replacement) {
    if (atom.Type() != RTSTR) replacement.MakeDXF(atom.Type());
    if (replacement.resval.rstring != nullptr) atom = std::move(replacement);
  }

  std::unordered_map<std::wstring_view, const wchar_t*> m_replacements;
  std::unordered_set<node::Node> m_entered;
  std::unordered_set<node::Node> m_replaced;
};

}  // namespace

bool CLOMAdsLispVar::ReplaceTextW(const CStringArray& from, const CStringArray& to) {
  if (from.GetSize() == 0) return true;
  TextReplacer replacer(from, to);
  WalkTree(m_element.get(), replacer);
  return true;
}
