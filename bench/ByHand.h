// The loop that makes the nodes of an entity chain, and nothing else: the limit of ADSToLisp.
#pragma once

#include <lomlisp/lisp/CLOMLispElement.h>

#include <memory>

std::shared_ptr<CLOMLispElement> NodesByHand(const resbuf* chain);
