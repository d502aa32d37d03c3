// Coordinates: those of an entity's own plane, of a block, of the world.
#pragma once

#include <embedded/drawing/Group.h>
#include <embedded/selection/PlaneGeometry.h>

namespace lomlisp::embedded {

// An affine map of space.
struct Transform {
  Point x{1, 0, 0};  // where the unit vectors go
  Point y{0, 1, 0};
  Point z{0, 0, 1};
  Point origin;

  Point Apply(const Point& point) const;
  Point ApplyToVector(const Point& vector) const;
  // The same in plan view.
  Position Plan(const Point& point) const;
  Position PlanOfVector(const Point& vector) const;
};

// The map that applies `inner` first.
Transform operator*(const Transform& outer, const Transform& inner);

Transform Translation(const Point& by);
Transform Scaling(double x, double y, double z);
// About the z axis, by an angle in degrees.
Transform Rotation(double degrees);

// From the coordinates of an entity with that extrusion to those of the world, by the arbitrary axis
// algorithm; a vector without a direction counts as (0 0 1).
Transform ObjectAxes(const Point& extrusion);

// Without a direction when the vector has none.
Point Normalised(const Point& vector);
Point CrossProduct(const Point& a, const Point& b);
Point Sum(const Point& a, const Point& b);
Point Scaled(const Point& vector, double factor);
double Radians(double degrees);

}  // namespace lomlisp::embedded
