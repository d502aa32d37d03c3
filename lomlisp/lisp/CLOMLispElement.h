// The node of a LISP value.
#pragma once

#include <lomlisp/lisp/ChildSeq.h>
#include <lomlisp/platform/api.h>
#include <lomlisp/resbuf/ResBuf.h>

// One node of the tree that a LISP value is: an atom, a list or a dotted list. Nodes are shared;
// each is one allocation with its count, as std::make_shared makes it. An empty node
// pointer is nil, also as a child. A fresh node is an empty list.
class LOMLISP_API CLOMLispElement {
 public:
  enum : int { List = 0, Atom = 1, DottedList = 2 };

  CLOMLispElement() = default;
  CLOMLispElement(const CLOMLispElement&) = delete;
  CLOMLispElement& operator=(const CLOMLispElement&) = delete;
  virtual ~CLOMLispElement() = default;

  // List, Atom or DottedList. An atom is what has a value; only RTNONE has the base type RTNONE.
  virtual int Kind() const {
    if (dotted == 1) return DottedList;
    return atom.Type() != RTNONE ? Atom : List;
  }

  lomlisp::ChildSeq children;  // the members in order; of a dotted list, the last one is the cdr
  unsigned char dotted = 0;    // 1 for a dotted list
  ResBuf atom;                 // the value; RTNONE unless the node is an atom
};
