// A first client module: small LISP functions over lists of parts.
#pragma once

#include <examples/LispFunction.h>

#include <span>

namespace parts {

// (COUNT-KINDS names)         each name with how often it occurs: (("bolt" . 2) ("nut" . 1))
// (BOUNDING-BOX points)       the lower left and the upper right corner: ((0.0 0.0) (4.0 2.5))
// (LABEL prefix size pitch)   a text: "M12x1.75"
// (GROUP code entity)         the group of an entity list under a code: (8 . "WALLS"), or nil
// (NEST rows)                 the rows as one list within a list, which arrives as it is
// (NEXT-NUMBER prefix)        counts the LISP symbol LAST-NUMBER up and gives "P-0001", ..., nil when it cannot be set,
//                             and an error behind the last number that an int holds
// (REMEMBER name value)       sets a LISP symbol and gives the value
std::span<const LispFunction> Functions();

}  // namespace parts
