// The one way in which the library walks over a tree.
#pragma once

#include <lomlisp/lisp/Node.h>

#include <array>
#include <cstddef>
#include <vector>

namespace lomlisp {

// A stack whose first entries need no heap, so that a walk over an ordinary value allocates nothing.
template <class Entry, size_t kInline = 32>
class WalkStack {
 public:
  bool empty() const { return m_size == 0; }
  size_t size() const { return m_size; }
  Entry& top() { return m_size <= kInline ? m_inline[m_size - 1] : m_heap.back(); }
  void push(Entry entry) {
    if (m_size < kInline)
      m_inline[m_size] = entry;
    else
      m_heap.push_back(entry);
    ++m_size;
  }
  void pop() {
    if (m_size > kInline) m_heap.pop_back();
    --m_size;
  }

 private:
  std::array<Entry, kInline> m_inline;
  std::vector<Entry> m_heap;
  size_t m_size = 0;
};

// Goes through the tree below `root` depth-first and from left to right, with an explicit stack.
// The visitor gets
//   Leaf(node)             nil (null, or an RTNIL atom) or an atom
//   bool Enter(node)       a list; false leaves its members out, and Leave is not called
//   BeforeChild(node, i)   a list that was entered, before member i is visited
//   AfterChild(node, i)    and after it
//   Leave(node)            after the last member
// Linear in the tree as it is walked: a node that is shared is visited once for each way to it.
template <class Visitor>
void WalkTree(node::Node root, Visitor& visitor) {
  // Whether the node is done with, that is no list whose members come next.
  const auto visit = [&](node::Node node) {
    if (node == nullptr || node::IsAtom(node)) {
      visitor.Leaf(node);
      return true;
    }
    return !visitor.Enter(*node);
  };
  if (visit(root)) return;

  struct Open {
    node::Node list;
    size_t next;
  };
  WalkStack<Open> outer;  // the lists around the current one
  Open current{root, 0};
  for (;;) {
    const ChildSeq& children = current.list->children;
    if (current.next == children.size()) {
      visitor.Leave(*current.list);
      if (outer.empty()) return;
      current = outer.top();
      outer.pop();
      visitor.AfterChild(*current.list, current.next - 1);
      continue;
    }
    const node::Node child = children[current.next].get();
    visitor.BeforeChild(*current.list, current.next++);
    if (visit(child)) {
      visitor.AfterChild(*current.list, current.next - 1);
    } else {
      outer.push(current);
      current = {child, 0};
    }
  }
}

}  // namespace lomlisp
