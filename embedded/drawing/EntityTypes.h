// What the types of entities are made of: their classes, the usual order of the groups, what is required.
#pragma once

#include <embedded/drawing/Group.h>

#include <string_view>
#include <vector>

namespace lomlisp::embedded {

// The groups of an entity that belong to one class, behind its marker (100).
struct ClassSection {
  std::wstring_view marker;
  // The codes in their usual order. Those that can stand there repeatedly are negative; neighbours among
  // them alternate, as the coordinates and widths of vertices do.
  std::vector<int> order;

  // Equal for codes that alternate; greater than all others for a code that is not listed.
  size_t RankOf(int code) const;
  bool Lists(int code) const { return RankOf(code) < order.size(); }
  bool Repeats(int code) const;
};

struct EntityType {
  std::wstring_view name;
  int kind = 0;  // tells types of one name apart, see FindEntityType
  std::vector<ClassSection> sections;
  std::vector<int> required;
  std::vector<int> positive;  // codes of reals that must be greater than zero
  bool hasExtrusion = false;
  bool isInR12 = true;

  bool Lists(int code) const;
  // Whether such an entity can hold several groups of that code; true for unknown codes.
  bool Repeats(int code) const;
};

// What is common to all entities, behind AcDbEntity.
const ClassSection& CommonSection();

// Null for a type that is not described. `header` are the groups of the POLYLINE of a VERTEX; without them
// and without groups the type's plainest kind is given.
const EntityType* FindEntityType(std::wstring_view name, const Groups& groups = {},
                                 const Groups* header = nullptr);
// Graphic types that are not described, and what is known of them.
bool IsOtherGraphicType(std::wstring_view name);
bool IsOtherTypeInR12(std::wstring_view name);

// The kinds of POLYLINE, and of its VERTEX: one more for the faces.
enum PolylineKind { kFlatPolyline, kSpacePolyline, kPolygonMesh, kPolyfaceMesh, kPolyfaceRecord };
PolylineKind PolylineKindOf(const Groups& header);

// Whether the group is what an entity without one has: color and line type by layer, thickness 0, line type
// scale 1, visible.
bool IsDefault(const Group& group);

// Takes the third coordinate from the points that have none in a file.
void FlattenPoints(std::wstring_view type, Groups& groups);

}  // namespace lomlisp::embedded
