#include <bench/peers/Nodes.h>

#include <algorithm>
#include <initializer_list>
#include <memory>

namespace {

using Node = CLOMLispElement;
using Element = std::shared_ptr<Node>;

void AddAtom(const ResBuf& atom, Digest& digest) {
  switch (atom.Type()) {
    case RTREAL:
      return digest.Real(atom.resval.rreal);
    case RTSTR:
      return digest.Characters(atom.resval.rstring);
    case RTLONG:
      return digest.Integer(atom.resval.rlong);
    case RTENAME:
      return digest.Integer(atom.resval.rlname[0]);
    default:
      return digest.Integer(atom.resval.rint);
  }
}

void AddMembers(const Node& list, Digest& digest) {
  for (const Element& member : list.children) {
    // (10 . (1 2 3)) is (10 1 2 3).
    if (list.dotted == 1 && member == list.children.back() && member->Kind() == Node::List)
      AddMembers(*member, digest);
    else
      AddNode(*member, digest);
  }
}

Element NewList(std::initializer_list<Element> members) {
  auto list = std::make_shared<Node>();
  for (const Element& member : members) list->children.push_back(member);
  return list;
}

}  // namespace

void AddNode(const Node& node, Digest& digest) {
  if (node.Kind() == Node::Atom) return AddAtom(node.atom, digest);
  digest.Open();
  AddMembers(node, digest);
  digest.Close();
}

void NestExtendedData(Node& entity) {
  auto& members = entity.children;
  const auto extended = std::find_if(members.begin(), members.end(),
                                     [](const Element& member) { return member->Kind() == Node::Atom; });
  const Element groups = NewList({});
  for (auto group = extended + 2; group != members.end(); ++group) groups->children.push_back(*group);
  const Element name = extended[1]->children.front();
  const Element data = NewList({*extended, NewList({name, groups})});
  members.erase(extended, members.end());
  members.push_back(data);
}
