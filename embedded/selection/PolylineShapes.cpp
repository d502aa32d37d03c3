#include <embedded/selection/Shape.h>

#include <cmath>
#include <utility>

namespace lomlisp::embedded {

namespace {

constexpr long long kClosed = 1;
constexpr long long kSpatial = 8;
constexpr long long kMesh = 16;
constexpr long long kClosedAcross = 32;
constexpr long long kFaces = 64;

// The flags of a VERTEX.
constexpr long long kFrameControl = 16;
constexpr long long kFaceVertex = 64;
constexpr long long kFaceRecord = 128;

struct Vertex {
  Point position;
  double bulge = 0.0;  // of the piece that begins here: the tangent of a quarter of its angle
};

// The arc of that bulge; of a damaged one it is not usable.
Arc BulgeArc(const Transform& toWorld, const Point& begin, const Point& end, double bulge) {
  const double away = (1 - bulge * bulge) / (4 * bulge);
  const Point center{(begin.x + end.x) / 2 - (end.y - begin.y) * away,
                     (begin.y + end.y) / 2 + (end.x - begin.x) * away, begin.z};
  const Point x{begin.x - center.x, begin.y - center.y, 0};
  const Point y = bulge > 0 ? Point{-x.y, x.x, 0} : Point{x.y, -x.x, 0};
  Arc arc = ArcOf(toWorld, center, x, y, 0, 4 * std::atan(std::abs(bulge)));
  arc.first = toWorld.Plan(begin);
  arc.last = toWorld.Plan(end);
  return arc;
}

// The way from one vertex to the next. The center of a flatter arc would be too far away to calculate with.
void AddPiece(const Transform& toWorld, const Vertex& vertex, const Point& end, Shape& shape) {
  constexpr double kLeastBulge = 1e-8;
  if (std::abs(vertex.bulge) >= kLeastBulge) {
    const Arc arc = BulgeArc(toWorld, vertex.position, end, vertex.bulge);
    if (arc.IsUsable()) return shape.Add(arc);
  }
  shape.Add(toWorld.Plan(vertex.position), toWorld.Plan(end));
}

void AddPath(const Transform& toWorld, const std::vector<Vertex>& vertices, bool isClosed, Shape& shape) {
  if (vertices.size() == 1) shape.Add(toWorld.Plan(vertices.front().position));
  for (size_t index = 1; index < vertices.size(); ++index)
    AddPiece(toWorld, vertices[index - 1], vertices[index].position, shape);
  if (isClosed && vertices.size() > 1) AddPiece(toWorld, vertices.back(), vertices.front().position, shape);
}

// The vertices of a line or a mesh that is to be seen, not those that only steer its curve.
std::vector<Vertex> VerticesOf(const Object& polyline) {
  std::vector<Vertex> vertices;
  for (const Object* part : polyline.parts) {
    const Point* position = FindPoint(part->groups, 10);
    const bool isSeen = (IntegerOf(part->groups, 70) & kFrameControl) == 0;
    if (part->Type() == L"VERTEX" && position != nullptr && isSeen)
      vertices.push_back({*position, RealOf(part->groups, 42)});
  }
  return vertices;
}

void AddSpatialPath(const Object& entity, const Transform& toWorld, bool isClosed, Shape& shape) {
  std::vector<Vertex> vertices = VerticesOf(entity);
  for (Vertex& vertex : vertices) vertex.bulge = 0;
  AddPath(toWorld, vertices, isClosed, shape);
}

// All vertices of a flat one have the elevation of their header.
void AddFlatPath(const Object& entity, const Transform& toWorld, bool isClosed, Shape& shape) {
  const double elevation = PointOf(entity.groups, 10).z;
  std::vector<Vertex> vertices = VerticesOf(entity);
  for (Vertex& vertex : vertices) vertex.position.z = elevation;
  AddPath(OwnAxes(entity, toWorld), vertices, isClosed, shape);
}

// Rows of vertices, each joined to its neighbours in its row and in the next one. A smoothed mesh has its
// numbers in other groups. Vertices that fill no row whole are joined as far as they go.
void AddMesh(const Object& entity, const Transform& toWorld, long long flags, Shape& shape) {
  const std::vector<Vertex> vertices = VerticesOf(entity);
  const bool isSmoothed = IntegerOf(entity.groups, 75) != 0;
  const long long columns = IntegerOf(entity.groups, isSmoothed ? 74 : 72);
  const size_t count = vertices.size();
  const size_t row = columns > 0 && std::cmp_less(columns, count) ? static_cast<size_t>(columns) : count;
  const auto join = [&](size_t from, size_t to) {
    shape.Add(toWorld.Plan(vertices[from].position), toWorld.Plan(vertices[to].position));
  };
  for (size_t index = 0; index < count; ++index) {
    const bool isLastInRow = (index + 1) % row == 0;
    if (!isLastInRow && index + 1 < count) join(index, index + 1);
    if (isLastInRow && (flags & kClosedAcross) != 0) join(index, index + 1 - row);
    if (count - index > row) join(index, index + row);
    if (count - index <= row && (flags & kClosed) != 0) join(index, index % row);
  }
}

// The numbers of a face's vertices, from 1 on, are negative where the edge behind is invisible.
void AddFaceRecord(const Groups& groups, const std::vector<Position>& vertices, Shape& shape) {
  std::vector<Position> corners;
  for (int code = 71; code <= 74; ++code) {
    const long long number = IntegerOf(groups, code);
    const auto index = static_cast<size_t>(number < 0 ? -(number + 1) : number - 1);
    if (number != 0 && index < vertices.size()) corners.push_back(vertices[index]);
  }
  for (size_t index = 0; index < corners.size(); ++index)
    shape.Add(corners[index], corners[(index + 1) % corners.size()]);
}

void AddFaces(const Object& entity, const Transform& toWorld, Shape& shape) {
  std::vector<Position> vertices;
  for (const Object* part : entity.parts)
    if ((IntegerOf(part->groups, 70) & kFaceVertex) != 0)
      vertices.push_back(toWorld.Plan(PointOf(part->groups, 10)));
  for (const Object* part : entity.parts)
    if ((IntegerOf(part->groups, 70) & (kFaceVertex | kFaceRecord)) == kFaceRecord)
      AddFaceRecord(part->groups, vertices, shape);
}

}  // namespace

void AddLwPolyline(const Object& entity, const Transform& toWorld, Shape& shape) {
  const double elevation = RealOf(entity.groups, 38);
  std::vector<Vertex> vertices;
  for (const Group& group : entity.groups) {
    if (const auto* point = std::get_if<Point>(&group.value); point != nullptr && group.code == 10)
      vertices.push_back({{point->x, point->y, elevation}, 0});
    if (const auto* bulge = std::get_if<double>(&group.value);
        bulge != nullptr && group.code == 42 && !vertices.empty())
      vertices.back().bulge = *bulge;
  }
  const bool isClosed = (IntegerOf(entity.groups, 70) & kClosed) != 0;
  AddPath(OwnAxes(entity, toWorld), vertices, isClosed, shape);
}

void AddPolyline(const Object& entity, const Transform& toWorld, Shape& shape) {
  const long long flags = IntegerOf(entity.groups, 70);
  if ((flags & kFaces) != 0) return AddFaces(entity, toWorld, shape);
  if ((flags & kMesh) != 0) return AddMesh(entity, toWorld, flags, shape);
  const bool isClosed = (flags & kClosed) != 0;
  if ((flags & kSpatial) != 0) return AddSpatialPath(entity, toWorld, isClosed, shape);
  AddFlatPath(entity, toWorld, isClosed, shape);
}

}  // namespace lomlisp::embedded
