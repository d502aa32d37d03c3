// What a new drawing holds.
#pragma once

#include <embedded/drawing/Drawing.h>

namespace lomlisp::embedded {

// Fills an empty drawing: the header, the tables with the entries that every drawing has, the two
// spaces, the dictionaries of a file of the newest version.
void FillNewDrawing(Drawing& drawing);

}  // namespace lomlisp::embedded
