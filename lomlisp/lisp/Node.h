// What kind of value a node is. Inside the library nodes are asked through plain pointers, which
// costs no reference; null is nil.
#pragma once

#include <lomlisp/lisp/CLOMLispElement.h>

#include <algorithm>

namespace lomlisp::node {

using Node = const CLOMLispElement*;

inline int KindOf(Node node) { return node != nullptr ? node->Kind() : CLOMLispElement::List; }

inline bool IsAtom(Node node) { return KindOf(node) == CLOMLispElement::Atom; }

// The type of an atom, exactly; RTNONE, which no atom has, for everything else.
inline short TypeOf(Node node) { return IsAtom(node) ? node->atom.Type() : RTNONE; }
inline bool IsAtomOf(Node node, short type) { return TypeOf(node) == type; }

inline bool IsNull(Node node) { return node == nullptr || IsAtomOf(node, RTNIL); }
inline bool IsList(Node node) { return !IsAtom(node); }
inline bool IsLong(Node node) { return IsAtomOf(node, RTLONG); }
inline bool IsInt64(Node node) { return IsAtomOf(node, RTINT64); }
inline bool IsInt(Node node) {
  const short type = TypeOf(node);
  return type == RTSHORT || type == RTINT64;
}
inline bool IsReal(Node node) {
  const short type = TypeOf(node);
  return type == RTREAL || type == RTLONG || type == RTINT64;
}
inline bool IsNumber(Node node) {
  const short type = TypeOf(node);
  return type == RTREAL || type == RTSHORT || type == RTLONG || type == RTINT64;
}
inline bool IsString(Node node) { return IsAtomOf(node, RTSTR); }
inline bool IsEName(Node node) { return IsAtomOf(node, RTENAME); }
inline bool IsPickSet(Node node) { return IsAtomOf(node, RTPICKS); }

// A list node whose members go on to its end, possibly empty; not nil.
inline bool IsProperList(Node node) { return node != nullptr && node->Kind() == CLOMLispElement::List; }
inline bool IsDottedList(Node node) { return KindOf(node) == CLOMLispElement::DottedList; }

inline bool IsAtomList(Node node) {
  return IsProperList(node) && std::all_of(node->children.begin(), node->children.end(),
                                           [](const auto& child) { return IsAtom(child.get()); });
}

inline bool IsPoint(Node node) {
  return IsProperList(node) && (node->children.size() == 2 || node->children.size() == 3) &&
         std::all_of(node->children.begin(), node->children.end(),
                     [](const auto& child) { return IsNumber(child.get()); });
}

// The coordinates of a node that is a point; z = 0 for two.
inline void GetPoint(const CLOMLispElement& point, double coordinates[3]) {
  const ChildSeq& numbers = point.children;
  coordinates[0] = static_cast<double>(numbers[0]->atom);
  coordinates[1] = static_cast<double>(numbers[1]->atom);
  coordinates[2] = numbers.size() == 3 ? static_cast<double>(numbers[2]->atom) : 0.0;
}

inline bool IsAssocList(Node node) { return IsNull(node) || IsProperList(node); }

inline bool IsRealList(Node node) {
  if (IsNull(node) || IsProperList(node)) return true;
  return IsDottedList(node) && node->children.size() >= 2 && IsProperList(node->children[1].get());
}

}  // namespace lomlisp::node
