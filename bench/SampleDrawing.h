// The drawing that the measurements of drawings work on.
#pragma once

#include <embedded/drawing/Drawing.h>

// Lines, circles and texts in turn, in a grid of cells of 10 by 10, on 20 layers.
void FillWithSamples(lomlisp::embedded::Drawing& drawing, int entities);
