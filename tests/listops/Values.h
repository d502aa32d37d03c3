// What the tests of the list operations share: values that no chain gives, and looks at the nodes.
#pragma once

#include <tests/support/HostTest.h>

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <unordered_set>
#include <vector>

namespace lomlisp::test {

using Element = CLOMAdsLispVar::Element;

// A handle on a node that was made by hand.
class NodeHandle : public CLOMAdsLispVar {
 public:
  explicit NodeHandle(Element element) : CLOMAdsLispVar(element) {}
};

inline CLOMAdsLispVar MakeNode(std::initializer_list<CLOMAdsLispVar> members, bool dotted) {
  auto node = std::make_shared<CLOMLispElement>();
  for (const CLOMAdsLispVar& member : members) node->children.push_back(member.New());
  node->dotted = dotted ? 1 : 0;
  return NodeHandle(std::move(node));
}
// A list node with these very nodes as its members; without any, the empty list.
inline CLOMAdsLispVar ListOf(std::initializer_list<CLOMAdsLispVar> members) {
  return MakeNode(members, false);
}
// The same as a dotted list, whose last member is the cdr.
inline CLOMAdsLispVar DottedOf(std::initializer_list<CLOMAdsLispVar> members) {
  return MakeNode(members, true);
}
// nil in its other shape: an atom of type RTNIL.
inline CLOMAdsLispVar NilAtom() {
  CLOMAdsLispVar value(1);
  value.GetAtom() = ADSResType(RTNIL);
  return value;
}

inline Element Child(const CLOMAdsLispVar& list, size_t position) { return list.New()->children[position]; }
inline size_t ChildCount(const CLOMAdsLispVar& list) { return list.New()->children.size(); }
inline bool IsDotted(const CLOMAdsLispVar& list) { return list.New()->Kind() == CLOMLispElement::DottedList; }
inline bool IsEmptyHandle(const CLOMAdsLispVar& value) { return value.New() == nullptr; }

// Every node of the tree once.
inline std::vector<Element> NodesOf(const CLOMAdsLispVar& value) {
  std::vector<Element> nodes;
  std::unordered_set<const CLOMLispElement*> seen;
  const auto add = [&](const Element& node) {
    if (node != nullptr && seen.insert(node.get()).second) nodes.push_back(node);
  };
  add(value.New());
  for (size_t next = 0; next < nodes.size(); ++next) {
    const Element node = nodes[next];
    for (const Element& child : node->children) add(child);
  }
  return nodes;
}

inline bool ShareNodes(const CLOMAdsLispVar& a, const CLOMAdsLispVar& b) {
  const std::vector<Element> nodes = NodesOf(a);
  return std::ranges::any_of(
      NodesOf(b), [&](const Element& node) { return std::ranges::find(nodes, node) != nodes.end(); });
}

// Whether every node that was noted has died, as it must once nobody refers to it.
class NodeWatch {
 public:
  void Note(const CLOMAdsLispVar& value) {
    for (const Element& node : NodesOf(value)) m_nodes.push_back(node);
  }
  size_t Alive() const {
    return static_cast<size_t>(
        std::ranges::count_if(m_nodes, [](const auto& node) { return !node.expired(); }));
  }

 private:
  std::vector<std::weak_ptr<CLOMLispElement>> m_nodes;
};

}  // namespace lomlisp::test
