// What is different between two states of a drawing.
#pragma once

#include <embedded/drawing/Drawing.h>

#include <string>
#include <vector>

namespace lomlisp::shell {

// A line for each entity of the main list, and for each of their parts, that is new, erased or changed, in
// the order of handles, as in "2F TEXT: (1 . "Kitchen") -> (1 . "Bath")". Takes time n log n.
std::vector<std::wstring> DrawingChanges(embedded::Drawing& before, embedded::Drawing& after);

}  // namespace lomlisp::shell
