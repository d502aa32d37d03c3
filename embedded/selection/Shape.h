// What of an entity is to be seen in plan view.
#pragma once

#include <embedded/drawing/Drawing.h>
#include <embedded/selection/PlaneGeometry.h>
#include <embedded/selection/Transform.h>

#include <array>
#include <functional>
#include <vector>

namespace lomlisp::embedded {

// Lines and filled areas. What has a coordinate that is no number, or beyond 1e100, is left out.
class Shape {
 public:
  using Area = std::array<Position, 4>;  // its corners around; the sides may cross

  void Clear();
  void Add(Position point) { Add(point, point); }
  void Add(Position first, Position last);
  void Add(const Arc& arc);
  // The sides are among the segments, too.
  void AddArea(const Area& area);

  const std::vector<Segment>& Segments() const { return m_segments; }
  const std::vector<Arc>& Arcs() const { return m_arcs; }
  const std::vector<Area>& Areas() const { return m_areas; }
  Box Bounds() const;

 private:
  std::vector<Segment> m_segments;
  std::vector<Arc> m_arcs;
  std::vector<Area> m_areas;
};

// Adds what an entity shows, with its parts, but not the content of an INSERT's block. Entities of
// unknown type, or without the groups that make their geometry, show nothing; so do hatches,
// dimensions, leaders, infinite lines and viewports.
void AddShape(const Object& entity, const Transform& toWorld, Shape& shape);

// Of the copies in an array those that reach farthest, or all.
enum class Copies { Outer, All };

// Calls `visit` with the shape of an entity, and for an INSERT then with those of what it inserts, one
// after another, until it gives false. Nothing is inserted into itself, and no more than 250,000
// entities are shown for one: the others are left out.
void VisitShapes(Drawing& drawing, const Object& entity, Copies copies,
                 const std::function<bool(const Shape&)>& visit);

// --- For the entity types ---

// The first group of that code if it holds a point; null otherwise.
const Point* FindPoint(const Groups& groups, int code);
// The extrusion, of length 1; (0 0 1) for one that is missing or damaged.
Point NormalOf(const Object& entity);
// From the entity's own coordinates to those of the world.
Transform OwnAxes(const Object& entity, const Transform& toWorld);
// The arc of an ellipse around `center` with the half axes x and y, from one angle over another.
Arc ArcOf(const Transform& toWorld, const Point& center, const Point& x, const Point& y, double start,
          double sweep);

void AddLwPolyline(const Object& entity, const Transform& toWorld, Shape& shape);
void AddPolyline(const Object& entity, const Transform& toWorld, Shape& shape);
// TEXT, ATTRIB and ATTDEF.
void AddText(const Object& entity, const Transform& toWorld, Shape& shape);
void AddMText(const Object& entity, const Transform& toWorld, Shape& shape);

}  // namespace lomlisp::embedded
