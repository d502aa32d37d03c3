// Fresh nodes for whoever builds a tree.
#pragma once

#include <lomlisp/lisp/CLOMLispElement.h>
#include <lomlisp/lisp/SlabHeap.h>

#include <memory>

namespace lomlisp {

inline std::shared_ptr<CLOMLispElement> NewNode() {
  return std::allocate_shared<CLOMLispElement>(SlabAllocator<CLOMLispElement>());
}

// Gives the pointer within the list, which is good until the list grows.
inline std::shared_ptr<CLOMLispElement>& AppendNode(CLOMLispElement& list) {
  list.children.push_back(NewNode());
  return list.children.back();
}

}  // namespace lomlisp
