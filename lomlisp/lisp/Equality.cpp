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

enum class Verdict { Equal, Different, AsTheirMembers };

// What two nodes say without their members.
Verdict Compare(Node a, Node b, double tol) {
  if (a == b) return Verdict::Equal;
  if (a == nullptr || b == nullptr) return Verdict::Different;
  const int kind = a->Kind();
  if (kind != b->Kind()) return Verdict::Different;
  if (kind == CLOMLispElement::Atom)
    return a->atom.Equal(b->atom, tol) != 0 ? Verdict::Equal : Verdict::Different;
  if (a->children.size() != b->children.size()) return Verdict::Different;
  return a->children.empty() ? Verdict::Equal : Verdict::AsTheirMembers;
}

// Compares two lists, depth-first from left to right, up to the first difference.
class ListComparison {
 public:
  explicit ListComparison(double tol) : m_tol(tol) {}

  bool Run(Node a, Node b) {
    m_open.push({a, b, 0});
    while (!m_open.empty()) {
      Open& open = m_open.top();
      if (open.next == open.a->children.size()) {
        m_open.pop();
        continue;
      }
      const Child& childOfA = open.a->children[open.next];
      const Child& childOfB = open.b->children[open.next];
      ++open.next;
      const Verdict verdict = Compare(childOfA.get(), childOfB.get(), m_tol);
      if (verdict == Verdict::Different) return false;
      if (verdict == Verdict::AsTheirMembers) Enter(childOfA, childOfB);
    }
    return true;
  }

 private:
  using Child = ChildSeq::value_type;
  using Pair = std::pair<Node, Node>;
  struct Hash {
    size_t operator()(const Pair& pair) const {
      return std::hash<Node>()(pair.first) * 31 + std::hash<Node>()(pair.second);
    }
  };
  // Two lists whose members before `next` are equal.
  struct Open {
    Node a;
    Node b;
    size_t next;
  };

  // Only a pair with a shared node can be met again, and then it has been found equal.
  void Enter(const Child& a, const Child& b) {
    const bool isShared = a.use_count() > 1 || b.use_count() > 1;
    if (!isShared || m_met.insert({a.get(), b.get()}).second) m_open.push({a.get(), b.get(), 0});
  }

  double m_tol;
  WalkStack<Open> m_open;
  std::unordered_set<Pair, Hash> m_met;
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

bool node::AreEqual(Node a, Node b, double tol) {
  const Verdict verdict = Compare(a, b, tol);
  return verdict == Verdict::AsTheirMembers ? ListComparison(tol).Run(a, b) : verdict == Verdict::Equal;
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
  Order order{};
  return CompareAtoms(m_element.get(), other.m_element.get(), order) && order.less;
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
