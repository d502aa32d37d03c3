// Lists and their nodes, for operations that work on nodes.
#pragma once

#include <lomlisp/lisp/CLOMAdsLispVar.h>
#include <lomlisp/lisp/Node.h>

#include <cstddef>

namespace lomlisp {

// A handle on a node.
inline CLOMAdsLispVar ValueOf(CLOMAdsLispVar::Element node) {
  struct Handle : CLOMAdsLispVar {
    explicit Handle(Element& element) : CLOMAdsLispVar(element) {}
  };
  return Handle(node);
}

// The members of a proper list, possibly nil. (a . (b c)) is the list (a b c), kept in two nodes.
class Members {
 public:
  explicit Members(node::Node list) {
    if (list == nullptr) return;
    m_first = &list->children;
    m_countInFirst = list->dotted == 1 ? 1 : m_first->size();
    if (list->dotted == 1) m_rest = &(*m_first)[1]->children;
  }

  size_t size() const { return m_countInFirst + (m_rest != nullptr ? m_rest->size() : 0); }
  const ChildSeq::value_type& operator[](size_t position) const {
    return position < m_countInFirst ? (*m_first)[position] : (*m_rest)[position - m_countInFirst];
  }

 private:
  const ChildSeq* m_first = nullptr;
  const ChildSeq* m_rest = nullptr;
  size_t m_countInFirst = 0;
};

}  // namespace lomlisp
