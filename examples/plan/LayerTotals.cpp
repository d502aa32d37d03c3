#include <examples/plan/Entities.h>
#include <examples/plan/Plan.h>

#include <cmath>
#include <map>
#include <numbers>
#include <string>
#include <vector>

namespace plan {

namespace {

struct Measure {
  double length = 0.0;
  double area = 0.0;
};

struct Vertex {
  double x = 0.0;
  double y = 0.0;
  double bulge = 0.0;  // of the piece that begins here: the tangent of a quarter of its angle
};

// The length of a piece, and the area between it and the origin with its sign.
Measure PieceFrom(const Vertex& from, const Vertex& to) {
  const double chord = std::hypot(to.x - from.x, to.y - from.y);
  Measure piece{chord, (from.x * to.y - to.x * from.y) / 2};
  if (from.bulge == 0.0) return piece;
  const double angle = 4 * std::atan(from.bulge);
  const double radius = chord / (2 * std::sin(std::abs(angle) / 2));
  piece.length = radius * std::abs(angle);
  piece.area += radius * radius / 2 * (angle - std::sin(angle));
  return piece;
}

Measure MeasureVertices(const std::vector<Vertex>& vertices, bool isClosed) {
  Measure whole;
  for (size_t index = 0; index < vertices.size(); ++index) {
    const bool isLast = index + 1 == vertices.size();
    if (isLast && !isClosed) break;
    const Measure piece = PieceFrom(vertices[index], vertices[isLast ? 0 : index + 1]);
    whole.length += piece.length;
    whole.area += piece.area;
  }
  whole.area = isClosed ? std::abs(whole.area) : 0.0;
  return whole;
}

// The groups of all vertices stand one behind the other: 10, 42, 10, 42, ...
Measure MeasurePolyline(const CLOMAdsLispVar& entity) {
  std::vector<Vertex> vertices;
  for (CLOMAdsLispVar rest = entity; !rest.NilP(); CLOMAdsLisp::SetQ(rest, CLOMAdsLisp::Cdr(rest))) {
    const CLOMAdsLispVar group = CLOMAdsLisp::Car(rest);
    int code = 0;
    CLOMAdsLisp::SetQ(code, CLOMAdsLisp::Car(group));
    if (code == 10) {
      ads_point point;
      CLOMAdsLisp::SetQ(point, CLOMAdsLisp::Cdr(group));
      vertices.push_back({point[0], point[1]});
    } else if (code == 42 && !vertices.empty()) {
      CLOMAdsLisp::SetQ(vertices.back().bulge, CLOMAdsLisp::Cdr(group));
    }
  }
  return MeasureVertices(vertices, (IntegerOf(70, entity) & 1) != 0);
}

Measure MeasureLine(const CLOMAdsLispVar& entity) {
  ads_point from;
  ads_point to;
  CLOMAdsLisp::SetQ(from, GroupOf(10, entity));
  CLOMAdsLisp::SetQ(to, GroupOf(11, entity));
  return {std::hypot(to[0] - from[0], to[1] - from[1], to[2] - from[2]), 0.0};
}

Measure MeasureCircle(const CLOMAdsLispVar& entity) {
  const double radius = RealOf(40, entity);
  return {2 * std::numbers::pi * radius, std::numbers::pi * radius * radius};
}

// Angles are in radians.
Measure MeasureArc(const CLOMAdsLispVar& entity) {
  double angle = RealOf(51, entity) - RealOf(50, entity);
  if (angle <= 0.0) angle += 2 * std::numbers::pi;
  return {RealOf(40, entity) * angle, 0.0};
}

Measure MeasureOf(const CLOMAdsLispVar& entity) {
  const std::wstring type = TextOf(0, entity);
  if (type == L"LINE") return MeasureLine(entity);
  if (type == L"CIRCLE") return MeasureCircle(entity);
  if (type == L"ARC") return MeasureArc(entity);
  return MeasurePolyline(entity);
}

}  // namespace

int LayerTotals() {
  std::map<std::wstring, Measure> totals;
  Selection(OfType(L"LINE,ARC,CIRCLE,LWPOLYLINE")).ForEachList([&](const CLOMAdsLispVar& entity) {
    const Measure measure = MeasureOf(entity);
    Measure& total = totals[TextOf(8, entity)];
    total.length += measure.length;
    total.area += measure.area;
  });

  CLOMAdsLispVar result;
  for (const auto& [layer, total] : totals) {
    const CLOMAdsLispVar entry = CLOMAdsLisp::List(layer, total.length, total.area);
    CLOMAdsLisp::SetQ(result, CLOMAdsLisp::Cons(entry, result));
  }
  CLOMAdsLisp::SetQ(result, CLOMAdsLisp::Reverse(result));
  CLOMAdsLisp::Return(result);
  return RTNORM;
}

}  // namespace plan
