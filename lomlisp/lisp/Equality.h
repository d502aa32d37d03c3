// Structural equality of nodes.
#pragma once

#include <lomlisp/lisp/Node.h>

namespace lomlisp::node {

// Whether two trees are equal: see CLOMAdsLispVar::isEqual.
bool AreEqual(Node a, Node b, double tol);

}  // namespace lomlisp::node
