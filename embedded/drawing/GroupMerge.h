// Given groups put over the stored ones of an object.
#pragma once

#include <embedded/drawing/EntityTypes.h>

#include <optional>
#include <string>

namespace lomlisp::embedded {

// What a change comes to.
struct MergedGroups {
  Groups groups;   // all of the object
  Groups changed;  // the given ones that were not stored already
};

// How the given groups count is said at ModifyEntity. Null for a type that is not described. Nothing, with
// the reason, when a width or bulge of a LWPOLYLINE cannot be told to a vertex, or when brackets (102) do
// not balance. Log-linear.
std::optional<MergedGroups> MergeGroups(const EntityType* type, const Groups& stored, const Groups& given,
                                        std::string& objection);

}  // namespace lomlisp::embedded
