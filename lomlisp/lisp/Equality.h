// Structural equality of nodes, and the order of atoms.
#pragma once

#include <lomlisp/lisp/Node.h>
#include <lomlisp/resbuf/Text.h>

namespace lomlisp::node {

// Whether two atoms are equal. Most comparisons are of integers, as of the codes of DXF groups, and of texts.
inline bool AreAtomsEqual(const ResBuf& a, const ResBuf& b, double tol) {
  if (a.Type() == RTSHORT && b.Type() == RTSHORT) return a.resval.rint == b.resval.rint;
  if (a.Type() == RTLONG && b.Type() == RTLONG) return a.resval.rlong == b.resval.rlong;
  if (a.Type() == RTSTR && b.Type() == RTSTR) return AreTextsEqual(a.resval.rstring, b.resval.rstring);
  return a.Equal(b, tol) != 0;
}

// Whether two lists of the same kind are equal.
bool AreListsEqual(const CLOMLispElement& a, const CLOMLispElement& b, double tol);

// Whether two trees are equal: see CLOMAdsLispVar::isEqual. In the header, because searches ask it of each
// member, which mostly is an atom.
inline bool AreEqual(Node a, Node b, double tol) {
  if (a == b) return true;
  if (a == nullptr || b == nullptr) return false;
  const int kind = a->Kind();
  if (kind != b->Kind()) return false;
  return kind == CLOMLispElement::Atom ? AreAtomsEqual(a->atom, b->atom, tol) : AreListsEqual(*a, *b, tol);
}

// Whether an atom is less than another: see CLOMAdsLispVar::operator<.
bool IsLess(Node a, Node b);

}  // namespace lomlisp::node
