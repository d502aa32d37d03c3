// Equality of trees, and the order of atoms.

#include <lomlisp/lisp/Equality.h>

#include <lomlisp/lisp/CLOMAdsLispVar.h>
#include <lomlisp/lisp/TreeWalk.h>
#include <lomlisp/lisp/messages.h>

#include <functional>
#include <unordered_set>
#include <utility>

using namespace lomlisp;

namespace {

using node::Node;

// Compares two lists, depth-first from left to right, up to the first difference.
class ListComparison {
 public:
  explicit ListComparison(double tol) : m_tol(tol) {}

  bool Run(const CLOMLispElement& a, const CLOMLispElement& b) {
    if (a.children.size() != b.children.size()) return false;
    Pair current{&a, &b, 0};
    for (;;) {
      if (current.next == current.a->children.size()) {
        if (m_outer.empty()) return true;
        current = m_outer.top();
        m_outer.pop();
        continue;
      }
      const Child& childOfA = current.a->children[current.next];
      const Child& childOfB = current.b->children[current.next];
      ++current.next;
      const Verdict verdict = Compare(childOfA, childOfB);
      if (verdict == Verdict::Different) return false;
      if (verdict == Verdict::Equal) continue;
      m_outer.push(current);
      current = {childOfA.get(), childOfB.get(), 0};
    }
  }

 private:
  using Child = ChildSeq::value_type;
  using Nodes = std::pair<Node, Node>;
  struct Hash {
    size_t operator()(const Nodes& nodes) const {
      return std::hash<Node>()(nodes.first) * 31 + std::hash<Node>()(nodes.second);
    }
  };
  // Two lists of the same length whose members before `next` are equal.
  struct Pair {
    Node a;
    Node b;
    size_t next;
  };
  enum class Verdict { Equal, Different, AsTheirMembers };

  // What two members say without members of their own.
  Verdict Compare(const Child& a, const Child& b) {
    if (a == b) return Verdict::Equal;
    if (a == nullptr || b == nullptr) return Verdict::Different;
    const int kind = a->Kind();
    if (kind != b->Kind()) return Verdict::Different;
    if (kind == CLOMLispElement::Atom)
      return node::AreAtomsEqual(a->atom, b->atom, m_tol) ? Verdict::Equal : Verdict::Different;
    if (a->children.size() != b->children.size()) return Verdict::Different;
    return WasMet(a, b) ? Verdict::Equal : Verdict::AsTheirMembers;
  }

  // Only a pair with a shared node can be met again, and then it has been found equal.
  bool WasMet(const Child& a, const Child& b) {
    const bool isShared = a.use_count() > 1 || b.use_count() > 1;
    return isShared && !m_met.insert({a.get(), b.get()}).second;
  }

  double m_tol;
  WalkStack<Pair> m_outer;
  std::unordered_set<Nodes, Hash> m_met;
};

struct Order {
  bool equal;
  bool less;
};

// False, with the message, unless both are atoms.
bool CompareAtoms(Node a, Node b, Order& order) {
  if (!node::IsAtom(a) || !node::IsAtom(b)) {
    acutPrintf(messages::OrderOfOther);
    return false;
  }
  order.equal = a->atom.Equal(b->atom, 0.0) != 0;
  order.less = !order.equal && a->atom.Less(b->atom) != 0;
  return true;
}

}  // namespace

bool node::AreListsEqual(const CLOMLispElement& a, const CLOMLispElement& b, double tol) {
  return ListComparison(tol).Run(a, b);
}

bool node::IsLess(Node a, Node b) {
  Order order{};
  return CompareAtoms(a, b, order) && order.less;
}

bool CLOMAdsLispVar::isEqual(const ConstElement& a, const ConstElement& b, double tol) {
  return node::AreEqual(a.get(), b.get(), tol);
}

bool CLOMAdsLispVar::Equal(const CLOMAdsLispVar& other, double tol) const {
  return node::AreEqual(m_element.get(), other.m_element.get(), tol);
}

bool CLOMAdsLispVar::Eq(const CLOMAdsLispVar& other) const {
  if (m_element == other.m_element) return true;
  return AtomP() && other.AtomP() && m_element->atom.Equal(other.m_element->atom, 0.0) != 0;
}

bool CLOMAdsLispVar::operator<(const CLOMAdsLispVar& other) const {
  return node::IsLess(m_element.get(), other.m_element.get());
}

bool CLOMAdsLispVar::operator<=(const CLOMAdsLispVar& other) const {
  Order order{};
  return CompareAtoms(m_element.get(), other.m_element.get(), order) && (order.equal || order.less);
}

bool CLOMAdsLispVar::operator>(const CLOMAdsLispVar& other) const {
  Order order{};
  return CompareAtoms(m_element.get(), other.m_element.get(), order) && !order.equal && !order.less;
}

bool CLOMAdsLispVar::operator>=(const CLOMAdsLispVar& other) const {
  Order order{};
  return CompareAtoms(m_element.get(), other.m_element.get(), order) && !order.less;
}
