#include <embedded/selection/Transform.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace lomlisp::embedded {

Point Transform::ApplyToVector(const Point& vector) const {
  return {x.x * vector.x + y.x * vector.y + z.x * vector.z, x.y * vector.x + y.y * vector.y + z.y * vector.z,
          x.z * vector.x + y.z * vector.y + z.z * vector.z};
}

Point Transform::Apply(const Point& point) const { return Sum(origin, ApplyToVector(point)); }

Position Transform::Plan(const Point& point) const {
  const Point applied = Apply(point);
  return {applied.x, applied.y};
}

Position Transform::PlanOfVector(const Point& vector) const {
  const Point applied = ApplyToVector(vector);
  return {applied.x, applied.y};
}

Transform operator*(const Transform& outer, const Transform& inner) {
  return {outer.ApplyToVector(inner.x), outer.ApplyToVector(inner.y), outer.ApplyToVector(inner.z),
          outer.Apply(inner.origin)};
}

Transform Translation(const Point& by) {
  Transform map;
  map.origin = by;
  return map;
}

Transform Scaling(double x, double y, double z) { return {{x, 0, 0}, {0, y, 0}, {0, 0, z}, {}}; }

Transform Rotation(double degrees) {
  const Position direction = DirectionOf(Radians(degrees));
  return {{direction.x, direction.y, 0}, {-direction.y, direction.x, 0}, {0, 0, 1}, {}};
}

Transform ObjectAxes(const Point& extrusion) {
  // So near the world's z axis its y axis is the better helper.
  constexpr double kNear = 1.0 / 64.0;
  const Point normal = Normalised(extrusion);
  if (normal.x == 0 && normal.y == 0 && normal.z >= 0) return {};
  const bool isNear = std::abs(normal.x) < kNear && std::abs(normal.y) < kNear;
  const Point helper = isNear ? Point{0, 1, 0} : Point{0, 0, 1};
  const Point x = Normalised(CrossProduct(helper, normal));
  return {x, CrossProduct(normal, x), normal, {}};
}

Point Normalised(const Point& vector) {
  // Brought to size 1 first, so that no square is too large or too small.
  const double size = std::max({std::abs(vector.x), std::abs(vector.y), std::abs(vector.z)});
  const bool isFinite = std::isfinite(vector.x) && std::isfinite(vector.y) && std::isfinite(vector.z);
  if (!isFinite || size == 0) return {};
  const Point scaled{vector.x / size, vector.y / size, vector.z / size};
  const double length = std::hypot(scaled.x, scaled.y, scaled.z);
  return {scaled.x / length, scaled.y / length, scaled.z / length};
}

Point CrossProduct(const Point& a, const Point& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

Point Sum(const Point& a, const Point& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }

Point Scaled(const Point& vector, double factor) {
  return {vector.x * factor, vector.y * factor, vector.z * factor};
}

double Radians(double degrees) { return degrees * (std::numbers::pi / 180); }

}  // namespace lomlisp::embedded
