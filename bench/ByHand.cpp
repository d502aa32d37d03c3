#include <bench/ByHand.h>
#include <lomlisp/lisp/NewNode.h>

#include <utility>

using Element = std::shared_ptr<CLOMLispElement>;

namespace {

Element Atom(const resbuf& record) {
  auto atom = lomlisp::NewNode();
  atom->atom = record;
  return atom;
}

Element Value(const resbuf& group) {
  if (DxfType(group.restype) != RT3DPOINT) {
    resbuf retyped = group;
    retyped.restype = DxfType(group.restype);
    return Atom(retyped);
  }
  auto point = lomlisp::NewNode();
  point->children.reserve(3);
  for (const double coordinate : group.resval.rpoint) {
    auto atom = lomlisp::NewNode();
    atom->atom = coordinate;
    point->children.push_back(std::move(atom));
  }
  return point;
}

}  // namespace

Element NodesByHand(const resbuf* chain) {
  auto list = lomlisp::NewNode();
  for (; chain != nullptr; chain = chain->rbnext) {
    auto group = lomlisp::NewNode();
    if (chain->restype == -3) {
      group->atom = chain->restype;
    } else if (chain->restype == 1001) {
      group->children.push_back(Value(*chain));
    } else {
      auto code = lomlisp::NewNode();
      code->atom = chain->restype;
      group->dotted = 1;
      group->children.reserve(2);
      group->children.push_back(std::move(code));
      group->children.push_back(Value(*chain));
    }
    list->children.push_back(std::move(group));
  }
  return list;
}
