#include <embedded/selection/Shape.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>
#include <string_view>
#include <utility>

namespace lomlisp::embedded {

namespace {

void AddLine(const Object& entity, const Transform& toWorld, Shape& shape) {
  const Point* first = FindPoint(entity.groups, 10);
  const Point* last = FindPoint(entity.groups, 11);
  if (first != nullptr && last != nullptr) shape.Add(toWorld.Plan(*first), toWorld.Plan(*last));
}

void AddPoint(const Object& entity, const Transform& toWorld, Shape& shape) {
  if (const Point* point = FindPoint(entity.groups, 10)) shape.Add(toWorld.Plan(*point));
}

void AddCircleArc(const Object& entity, const Transform& toWorld, double start, double sweep, Shape& shape) {
  const Point* center = FindPoint(entity.groups, 10);
  const double radius = RealOf(entity.groups, 40);
  if (center == nullptr) return;
  const Transform axes = OwnAxes(entity, toWorld);
  shape.Add(ArcOf(axes, *center, {radius, 0, 0}, {0, radius, 0}, start, sweep));
}

void AddCircle(const Object& entity, const Transform& toWorld, Shape& shape) {
  AddCircleArc(entity, toWorld, 0, 2 * std::numbers::pi, shape);
}

void AddArc(const Object& entity, const Transform& toWorld, Shape& shape) {
  const double start = Radians(RealOf(entity.groups, 50));
  const double end = Radians(RealOf(entity.groups, 51));
  AddCircleArc(entity, toWorld, start, SweepBetween(start, end), shape);
}

void AddEllipse(const Object& entity, const Transform& toWorld, Shape& shape) {
  const Groups& groups = entity.groups;
  const Point* center = FindPoint(groups, 10);
  const Point* major = FindPoint(groups, 11);
  if (center == nullptr || major == nullptr) return;
  const Point minor = Scaled(CrossProduct(NormalOf(entity), *major), RealOf(groups, 40, 1.0));
  const double start = RealOf(groups, 41);
  const double end = RealOf(groups, 42, 2 * std::numbers::pi);
  shape.Add(ArcOf(toWorld, *center, *major, minor, start, SweepBetween(start, end)));
}

// A missing fourth corner is the third one.
bool ReadCorners(const Groups& groups, const Transform& toWorld, Shape::Area& corners) {
  for (size_t index = 0; index < corners.size(); ++index) {
    const Point* corner = FindPoint(groups, 10 + static_cast<int>(index));
    if (corner == nullptr && index < 3) return false;
    corners[index] = corner != nullptr ? toWorld.Plan(*corner) : corners[2];
  }
  return true;
}

// The third and the fourth corner stand crosswise to the first two.
void AddSolid(const Object& entity, const Transform& toWorld, Shape& shape) {
  Shape::Area corners;
  if (!ReadCorners(entity.groups, OwnAxes(entity, toWorld), corners)) return;
  std::swap(corners[2], corners[3]);
  shape.AddArea(corners);
}

void AddFace(const Object& entity, const Transform& toWorld, Shape& shape) {
  Shape::Area corners;
  if (!ReadCorners(entity.groups, toWorld, corners)) return;
  for (size_t index = 0; index < corners.size(); ++index)
    shape.Add(corners[index], corners[(index + 1) % corners.size()]);
}

// The polygon through the fit points, or the control polygon where there are none.
void AddSpline(const Object& entity, const Transform& toWorld, Shape& shape) {
  constexpr int kFitCode = 11;
  constexpr int kControlCode = 10;
  const int code = FindPoint(entity.groups, kFitCode) != nullptr ? kFitCode : kControlCode;
  const bool isClosed = (IntegerOf(entity.groups, 70) & 1) != 0;
  std::vector<Position> corners;
  for (const Group& group : entity.groups)
    if (const auto* point = std::get_if<Point>(&group.value); point != nullptr && group.code == code)
      corners.push_back(toWorld.Plan(*point));
  if (corners.size() == 1) shape.Add(corners.front());
  for (size_t index = 1; index < corners.size(); ++index) shape.Add(corners[index - 1], corners[index]);
  if (isClosed && corners.size() > 2) shape.Add(corners.back(), corners.front());
}

// The attributes; they stand where the INSERT stands, not in its block.
void AddAttributes(const Object& entity, const Transform& toWorld, Shape& shape) {
  constexpr long long kInvisible = 1;
  for (const Object* part : entity.parts)
    if (part->Type() == L"ATTRIB" && (IntegerOf(part->groups, 70) & kInvisible) == 0)
      AddText(*part, toWorld, shape);
}

struct TypeShape {
  std::wstring_view type;
  void (*add)(const Object&, const Transform&, Shape&);
};

constexpr TypeShape kTypeShapes[] = {
    {L"LINE", AddLine},       {L"INSERT", AddAttributes}, {L"LWPOLYLINE", AddLwPolyline},
    {L"CIRCLE", AddCircle},   {L"ARC", AddArc},           {L"TEXT", AddText},
    {L"MTEXT", AddMText},     {L"POINT", AddPoint},       {L"POLYLINE", AddPolyline},
    {L"ELLIPSE", AddEllipse}, {L"SOLID", AddSolid},       {L"TRACE", AddSolid},
    {L"3DFACE", AddFace},     {L"SPLINE", AddSpline},     {L"ATTDEF", AddText},
    {L"ATTRIB", AddText},
};

}  // namespace

void Shape::Clear() {
  m_segments.clear();
  m_arcs.clear();
  m_areas.clear();
}

void Shape::Add(Position first, Position last) {
  if (IsUsable(first) && IsUsable(last)) m_segments.push_back({first, last});
}

void Shape::Add(const Arc& arc) {
  if (!arc.IsUsable()) return;
  if (arc.IsFlat())
    m_segments.push_back(arc.Line());
  else
    m_arcs.push_back(arc);
}

void Shape::AddArea(const Area& area) {
  if (!std::all_of(area.begin(), area.end(), IsUsable)) return;
  m_areas.push_back(area);
  for (size_t index = 0; index < area.size(); ++index) Add(area[index], area[(index + 1) % area.size()]);
}

Box Shape::Bounds() const {
  Box box;
  for (const Segment& segment : m_segments) box.Add(segment.Bounds());
  for (const Arc& arc : m_arcs) box.Add(arc.Bounds());
  return box;
}

void AddShape(const Object& entity, const Transform& toWorld, Shape& shape) {
  const std::wstring_view type = entity.Type();
  const auto* found = std::find_if(std::begin(kTypeShapes), std::end(kTypeShapes),
                                   [&](const TypeShape& candidate) { return candidate.type == type; });
  if (found != std::end(kTypeShapes)) found->add(entity, toWorld, shape);
}

const Point* FindPoint(const Groups& groups, int code) {
  const Group* group = Find(groups, code);
  return group != nullptr ? std::get_if<Point>(&group->value) : nullptr;
}

Point NormalOf(const Object& entity) {
  const Point normal = Normalised(PointOf(entity.groups, 210));
  return normal == Point() ? Point{0, 0, 1} : normal;
}

Transform OwnAxes(const Object& entity, const Transform& toWorld) {
  const Point normal = NormalOf(entity);
  return normal == Point{0, 0, 1} ? toWorld : toWorld * ObjectAxes(normal);
}

Arc ArcOf(const Transform& toWorld, const Point& center, const Point& x, const Point& y, double start,
          double sweep) {
  const auto at = [&](double angle) {
    const Position direction = DirectionOf(angle);
    return toWorld.Plan(Sum(center, Sum(Scaled(x, direction.x), Scaled(y, direction.y))));
  };
  // Of a start many turns away the sweep would be rounded off.
  const double turned = std::fmod(start, 2 * std::numbers::pi);
  return {toWorld.Plan(center), toWorld.PlanOfVector(x), toWorld.PlanOfVector(y), turned, sweep,
          at(turned),           at(turned + sweep)};
}

}  // namespace lomlisp::embedded
