// Lists of DXF groups, ((0 . "LINE") (10 0.0 0.0 0.0) (-3 ("APP" (1000 . "x")))), as the bare runs of groups
// that the platform takes and gives.
#pragma once

#include <embedded/Chain.h>

namespace lomlisp::shell {

// Throws LispError for what is no list of groups, and for a value that its code cannot have.
embedded::Chain GroupsOf(const embedded::Chain& list);

// Group by group, the vertices of an LWPOLYLINE as points of two coordinates; extended data in a list with -3, in it a list for each application.
embedded::Chain ListOf(const embedded::Chain& groups);

}  // namespace lomlisp::shell
