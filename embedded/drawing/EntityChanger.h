// Changes of the objects of a drawing.
#pragma once

#include <embedded/Chain.h>
#include <embedded/drawing/Drawing.h>

#include <optional>
#include <string>

namespace lomlisp::embedded {

// Each says why it did nothing, or nothing when it did it.

// Replaces groups of the object that the chain's -1 names; those that are not given stay. Handles, the owner,
// markers, the space (67, 410), 66, bracketed groups (102) and embedded objects are never changed.
//
// The k-th given group of a code replaces the k-th stored one. When their numbers differ, the given ones
// take the place of all stored ones of these codes; of a code that a type holds once, the last given counts.
// The vertices of a LWPOLYLINE are replaced when their number differs; otherwise a width or bulge counts
// for the vertex that it is given behind, or, given without any vertices, for all in order. Extended data
// are replaced per application; an application without groups loses its data.
//
// A missing layer is made. Entries of tables can be changed and, the ones that every drawing has
// excepted, renamed, and so can an XRECORD; blocks, dictionaries and other objects cannot.
std::optional<std::string> ModifyEntity(Drawing& drawing, const Chain& chain);

// Erases an entity with its parts, or restores it.
std::optional<std::string> DeleteEntity(Drawing& drawing, const ads_name name);

// Regenerates an entity, or the whole that a part belongs to.
std::optional<std::string> UpdateEntity(Drawing& drawing, const ads_name name);

}  // namespace lomlisp::embedded
