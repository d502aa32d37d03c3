// CopyHead and Head: deep copies.

#include <lomlisp/lisp/CLOMAdsLispVar.h>
#include <lomlisp/lisp/NewNode.h>
#include <lomlisp/lisp/TreeWalk.h>

#include <algorithm>
#include <utility>

using namespace lomlisp;

namespace {

using Element = CLOMAdsLispVar::Element;

// A new node of the same kind with the same atom, without children.
Element CopyNode(const CLOMLispElement& node) {
  auto copy = NewNode();
  copy->dotted = node.dotted;
  copy->atom = node.atom;
  return copy;
}

// Appends a deep copy of each tree that it walks over to the children of one node.
class Copier {
 public:
  explicit Copier(CLOMLispElement& parent) { m_open.push(&parent); }

  void Leaf(node::Node node) { Append(node != nullptr ? CopyNode(*node) : nullptr); }
  bool Enter(const CLOMLispElement& list) {
    Element copy = CopyNode(list);
    copy->children.reserve(list.children.size());
    CLOMLispElement* const opened = copy.get();
    Append(std::move(copy));
    m_open.push(opened);
    return true;
  }
  void BeforeChild(const CLOMLispElement&, size_t) {}
  void AfterChild(const CLOMLispElement&, size_t) {}
  void Leave(const CLOMLispElement&) { m_open.pop(); }

 private:
  void Append(Element copy) { m_open.top()->children.push_back(std::move(copy)); }

  WalkStack<CLOMLispElement*> m_open;
};

}  // namespace

bool CLOMAdsLispVar::CopyHead(const ConstElement& source, Element& head, Element& rest, int n) {
  head.reset();
  rest.reset();
  if (source == nullptr || n == 0) return true;
  const size_t length = source->children.size();
  const size_t count = n < 0 ? length : (std::min)(length, static_cast<size_t>(n) + 1);
  Element copy = CopyNode(*source);
  copy->children.reserve(count);
  Copier copier(*copy);
  for (size_t i = 0; i < count; ++i) WalkTree(source->children[i].get(), copier);
  head = std::move(copy);
  return true;
}

CLOMAdsLispVar& CLOMAdsLispVar::Head(int n) {
  Element head;
  Element rest;
  CopyHead(m_element, head, rest, n);
  m_element = std::move(head);
  return *this;
}
