// What ours and the limit do with nodes outside the clock.
#pragma once

#include <bench/peers/Digest.h>
#include <lomlisp/lisp/CLOMLispElement.h>

void AddNode(const CLOMLispElement& node, Digest& digest);

// Gives a list of groups, as it was read, the form in which it is written to a chain: one group with the
// extended data behind the others, (-3 ("APPLICATION" ((1000 . "text") ...))).
void NestExtendedData(CLOMLispElement& entity);
