#include <embedded/drawing/EntityTypes.h>

#include <embedded/Text.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace lomlisp::embedded {

namespace {

const std::vector<int> kTextOrder = {39, 10, 40, 1, 50, 41, 51, 7, 71, 72, 11, 210};
const std::vector<int> kPolylineOrder = {66, 10, 70, 39, 40, 41, 71, 72, 73, 74, 75, 210};
const std::vector<int> kVertexOrder = {10, 40, 41, 42, 70, 50, 71, 72, 73, 74, 91};
const std::vector<int> kInsertOrder = {66, 2, 10, 41, 42, 43, 50, 70, 71, 44, 45, 210};
const std::vector<int> kTraceOrder = {10, 11, 12, 13, 39, 210};

EntityType Polyline(PolylineKind kind, std::wstring_view marker) {
  return {L"POLYLINE", kind, {{marker, kPolylineOrder}}, {}, {}, true, true};
}

EntityType Vertex(PolylineKind kind, std::wstring_view marker) {
  return {L"VERTEX", kind, {{L"AcDbVertex", {}}, {marker, kVertexOrder}}, {10}, {}, false, true};
}

EntityType Insert(int kind, std::wstring_view marker) {
  return {L"INSERT", kind, {{marker, kInsertOrder}}, {2, 10}, {}, true, true};
}

const std::vector<EntityType>& EntityTypes() {
  static const std::vector<EntityType> types = {
      {L"LINE", 0, {{L"AcDbLine", {39, 10, 11, 210}}}, {10, 11}, {}, true, true},
      {L"ARC",
       0,
       {{L"AcDbCircle", {39, 10, 40, 210}}, {L"AcDbArc", {50, 51}}},
       {10, 40, 50, 51},
       {40},
       true,
       true},
      {L"CIRCLE", 0, {{L"AcDbCircle", {39, 10, 40, 210}}}, {10, 40}, {40}, true, true},
      {L"ELLIPSE", 0, {{L"AcDbEllipse", {10, 11, 210, 40, 41, 42}}}, {10, 11, 40}, {40}, true, false},
      {L"POINT", 0, {{L"AcDbPoint", {10, 39, 210, 50}}}, {10}, {}, true, true},
      {L"LWPOLYLINE",
       0,
       {{L"AcDbPolyline", {90, 70, 43, 38, 39, -10, -40, -41, -42, -91, 210}}},
       {10},
       {},
       true,
       false},
      Polyline(kFlatPolyline, L"AcDb2dPolyline"),
      Polyline(kSpacePolyline, L"AcDb3dPolyline"),
      Polyline(kPolygonMesh, L"AcDbPolygonMesh"),
      Polyline(kPolyfaceMesh, L"AcDbPolyFaceMesh"),
      Vertex(kFlatPolyline, L"AcDb2dVertex"),
      Vertex(kSpacePolyline, L"AcDb3dPolylineVertex"),
      Vertex(kPolygonMesh, L"AcDbPolygonMeshVertex"),
      Vertex(kPolyfaceMesh, L"AcDbPolyFaceMeshVertex"),
      {L"VERTEX", kPolyfaceRecord, {{L"AcDbFaceRecord", kVertexOrder}}, {71}, {}, false, true},
      {L"SEQEND", 0, {}, {}, {}, false, true},
      {L"TEXT", 0, {{L"AcDbText", kTextOrder}, {L"AcDbText", {73}}}, {10, 40, 1}, {40}, true, true},
      {L"MTEXT",
       0,
       {{L"AcDbMText", {10, 40, 41, 46, 71, 72, -3, 1, 7, 210, 11, 42, 43, 50, 73, 44, 90, 63, 45}}},
       {10, 1},
       {40},
       true,
       false},
      {L"SOLID", 0, {{L"AcDbTrace", kTraceOrder}}, {10, 11, 12}, {}, true, true},
      {L"TRACE", 0, {{L"AcDbTrace", kTraceOrder}}, {10, 11, 12}, {}, true, true},
      {L"3DFACE", 0, {{L"AcDbFace", {10, 11, 12, 13, 70}}}, {10, 11, 12}, {}, false, true},
      Insert(0, L"AcDbBlockReference"),
      Insert(1, L"AcDbMInsertBlock"),
      {L"ATTRIB",
       0,
       {{L"AcDbText", kTextOrder}, {L"AcDbAttribute", {-280, 2, 70, 73, 74}}},
       {10, 40, 1, 2},
       {40},
       true,
       true},
      {L"ATTDEF",
       0,
       {{L"AcDbText", kTextOrder}, {L"AcDbAttributeDefinition", {-280, 3, 2, 70, 73, 74}}},
       {10, 40, 1, 3, 2},
       {40},
       true,
       true},
      {L"BLOCK", 0, {{L"AcDbBlockBegin", {2, 70, 10, 3, 1, 4}}}, {2, 10}, {}, false, true},
      {L"ENDBLK", 0, {{L"AcDbBlockEnd", {}}}, {}, {}, false, true},
  };
  return types;
}

// In ascending order. Those that only the platform itself makes, as VIEWPORT, are not among them.
constexpr std::wstring_view kOtherTypes[] = {
    L"3DSOLID",
    L"ACAD_PROXY_ENTITY",
    L"ACAD_TABLE",
    L"ARC_DIMENSION",
    L"BODY",
    L"DGNUNDERLAY",
    L"DIMENSION",
    L"DWFUNDERLAY",
    L"EXTRUDEDSURFACE",
    L"HATCH",
    L"HELIX",
    L"IMAGE",
    L"LEADER",
    L"LIGHT",
    L"LOFTEDSURFACE",
    L"MESH",
    L"MLINE",
    L"MPOLYGON",
    L"MULTILEADER",
    L"NURBSURFACE",
    L"OLE2FRAME",
    L"OLEFRAME",
    L"PDFUNDERLAY",
    L"PLANESURFACE",
    L"RAY",
    L"REGION",
    L"REVOLVEDSURFACE",
    L"SECTION",
    L"SHAPE",
    L"SPLINE",
    L"SURFACE",
    L"SWEPTSURFACE",
    L"TOLERANCE",
    L"WIPEOUT",
    L"XLINE",
};

constexpr std::wstring_view kOtherTypesInR12[] = {L"DIMENSION", L"SHAPE"};

int KindOfVertex(const Groups& groups, const Groups& header) {
  const PolylineKind kind = PolylineKindOf(header);
  if (kind != kPolyfaceMesh) return kind;
  constexpr long long kMeshVertexBit = 64;
  const Group* flags = Find(groups, 70);
  const bool isRecord = flags != nullptr ? (IntegerOf(groups, 70) & kMeshVertexBit) == 0
                                         : Find(groups, 71) != nullptr && Find(groups, 10) == nullptr;
  return isRecord ? kPolyfaceRecord : kPolyfaceMesh;
}

int KindOfEntity(std::wstring_view name, const Groups& groups, const Groups* header) {
  if (name == L"POLYLINE") return PolylineKindOf(groups);
  if (name == L"VERTEX" && header != nullptr) return KindOfVertex(groups, *header);
  if (name == L"INSERT") return IntegerOf(groups, 70) > 1 || IntegerOf(groups, 71) > 1 ? 1 : 0;
  return 0;
}

}  // namespace

size_t ClassSection::RankOf(int code) const {
  for (size_t rank = 0; rank < order.size(); ++rank) {
    if (std::abs(order[rank]) != code) continue;
    if (order[rank] < 0)
      while (rank > 0 && order[rank - 1] < 0) --rank;
    return rank;
  }
  return order.size();
}

bool ClassSection::Repeats(int code) const {
  return std::find(order.begin(), order.end(), -code) != order.end();
}

bool EntityType::Lists(int code) const {
  return std::any_of(sections.begin(), sections.end(),
                     [&](const ClassSection& one) { return one.Lists(code); });
}

bool EntityType::Repeats(int code) const {
  if (std::any_of(sections.begin(), sections.end(),
                  [&](const ClassSection& one) { return one.Repeats(code); }))
    return true;
  return !Lists(code) && !CommonSection().Lists(code);
}

const ClassSection& CommonSection() {
  static const ClassSection section = {L"AcDbEntity",
                                       {67, 410, 8, 6, 347, 62, 420, 430, 370, 48, 60, 440, 390, 348, 284}};
  return section;
}

const EntityType* FindEntityType(std::wstring_view name, const Groups& groups, const Groups* header) {
  const int kind = KindOfEntity(name, groups, header);
  const auto& types = EntityTypes();
  const auto found = std::find_if(types.begin(), types.end(), [&](const EntityType& type) {
    return type.name == name && type.kind == kind;
  });
  return found != types.end() ? &*found : nullptr;
}

bool IsOtherGraphicType(std::wstring_view name) {
  return std::binary_search(std::begin(kOtherTypes), std::end(kOtherTypes), name);
}

bool IsOtherTypeInR12(std::wstring_view name) {
  return std::find(std::begin(kOtherTypesInR12), std::end(kOtherTypesInR12), name) !=
         std::end(kOtherTypesInR12);
}

PolylineKind PolylineKindOf(const Groups& header) {
  const long long flags = IntegerOf(header, 70);
  if ((flags & 64) != 0) return kPolyfaceMesh;
  if ((flags & 16) != 0) return kPolygonMesh;
  return (flags & 8) != 0 ? kSpacePolyline : kFlatPolyline;
}

bool IsDefault(const Group& group) {
  switch (group.code) {
    case 6: {
      const auto* name = std::get_if<std::wstring>(&group.value);
      return name != nullptr && Folded(*name) == L"BYLAYER";
    }
    case 39:
      return group.value == GroupValue(0.0);
    case 48:
      return group.value == GroupValue(1.0);
    case 60:
      return group.value == GroupValue(0LL);
    case 62:
      return group.value == GroupValue(256LL);
    default:
      return false;
  }
}

void FlattenPoints(std::wstring_view type, Groups& groups) {
  // The first point of a HATCH is its elevation.
  const bool isHatch = type == L"HATCH";
  if (!isHatch && type != L"LWPOLYLINE" && type != L"VIEW") return;
  bool isElevation = isHatch;
  for (Group& group : groups) {
    auto* point = std::get_if<Point>(&group.value);
    if (point == nullptr || group.code == 210 || (group.code != 10 && !isHatch)) continue;
    if (!isElevation) *point = Point{point->x, point->y, 0.0, true};
    isElevation = false;
  }
}

}  // namespace lomlisp::embedded
