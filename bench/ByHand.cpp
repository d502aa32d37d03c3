#include <bench/ByHand.h>

#include <utility>

using Element = std::shared_ptr<CLOMLispElement>;

namespace {

Element Atom(const resbuf& record) {
  auto atom = std::make_shared<CLOMLispElement>();
  atom->atom = record;
  return atom;
}

Element Value(const resbuf& group) {
  if (DxfType(group.restype) != RT3DPOINT) {
    resbuf retyped = group;
    retyped.restype = DxfType(group.restype);
    return Atom(retyped);
  }
  auto point = std::make_shared<CLOMLispElement>();
  point->children.reserve(3);
  for (const double coordinate : group.resval.rpoint) {
    auto atom = std::make_shared<CLOMLispElement>();
    atom->atom = coordinate;
    point->children.push_back(std::move(atom));
  }
  return point;
}

}  // namespace

Element NodesByHand(const resbuf* chain) {
  auto list = std::make_shared<CLOMLispElement>();
  for (; chain != nullptr; chain = chain->rbnext) {
    auto group = std::make_shared<CLOMLispElement>();
    if (chain->restype == -3) {
      group->atom = chain->restype;
    } else if (chain->restype == 1001) {
      group->children.push_back(Value(*chain));
    } else {
      auto code = std::make_shared<CLOMLispElement>();
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
