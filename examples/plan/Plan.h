// A client module that works on a drawing: what is written for an office that draws floor plans.
#pragma once

#include <examples/LispFunction.h>

#include <span>

namespace plan {

// (BILL-OF-MATERIALS tag)      how often each block is inserted, by its name and the text of an attribute:
//                              ((("CHAIR" . "oak") . 4) (("DOOR" . "T30") . 2)); "" where it has none
// (LAYER-TOTALS)               the length of all curves and the area of the closed ones, layer by layer:
//                              (("ROOMS" 92.5 210.25) ("WALLS" 310.0 0.0))
// (MOVE-TO-LAYER filter layer) puts everything that matches the filter on a layer, and gives the number
// (REPLACE-TEXTS old new)      replaces texts throughout the drawing from two lists of texts, and gives the
//                              number of entities that changed
// (TAG-ENTITIES filter application values)
//                              attaches texts, integers and reals to everything that matches, and gives the
//                              number
// (READ-TAGS application)      what the entities carry: ((layer value ...) ...)
std::span<const LispFunction> Functions();

int BillOfMaterials();
int LayerTotals();
int MoveToLayer();
int ReplaceTexts();
int TagEntities();
int ReadTags();

}  // namespace plan
