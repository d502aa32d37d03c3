// What a user draws to select with: a window, a polygon, a fence.
#pragma once

#include <embedded/selection/Shape.h>
#include <embedded/selection/SpatialIndex.h>

#include <optional>
#include <string>
#include <vector>

namespace lomlisp::embedded {

class Region {
 public:
  // The rectangle between two usable corners; it may be a line or a point.
  static Region Window(Position a, Position b);
  // Nothing and an objection for a polygon that has fewer than three different corners or crosses or
  // touches itself, for a fence of fewer than two points, and for points that are not usable. A polygon is
  // closed whether or not the last point repeats the first.
  static std::optional<Region> Polygon(std::vector<Position> corners, std::string& objection);
  static std::optional<Region> Fence(std::vector<Position> points, std::string& objection);

  const Box& Bounds() const { return m_bounds; }
  // Whether all of the shape is inside; nothing is inside a fence. A border belongs to it.
  bool Contains(const Shape& shape) const;
  // Whether a part of the shape is inside or touches the border.
  bool Meets(const Shape& shape) const;
  // False only when nothing in the box can meet the region.
  bool MayMeet(const Box& box) const;
  // True only when everything in the box is inside; for a window also whenever it is.
  bool MustContain(const Box& box) const;
  // Then MustContain tells what it contains.
  bool IsWindow() const { return m_kind == Kind::Window; }

 private:
  enum class Kind { Window, Polygon, Fence };
  Region(std::vector<Position> corners, Kind kind);

  bool Has(Position position) const;
  bool HasEdgeIn(const Box& box) const;
  bool IsCrossingItself() const;
  template <typename Curve>
  bool MeetsCurve(const Curve& curve) const;
  template <typename Curve>
  bool ContainsCurve(const Curve& curve) const;

  std::vector<Segment> m_edges;
  SpatialIndex m_index;  // of the edges, in widened boxes
  Box m_bounds;          // of these boxes
  Kind m_kind;
};

}  // namespace lomlisp::embedded
