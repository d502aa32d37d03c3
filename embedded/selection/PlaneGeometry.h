// Points, boxes, segments and arcs in the plane, and where they meet.
//
// Touching is meeting, and what rounding cannot tell from touching counts as touching.
#pragma once

#include <algorithm>
#include <limits>
#include <vector>

namespace lomlisp::embedded {

struct Position {
  double x = 0.0;
  double y = 0.0;
  friend bool operator==(const Position&, const Position&) = default;
  friend Position operator+(Position a, Position b) { return {a.x + b.x, a.y + b.y}; }
  friend Position operator-(Position a, Position b) { return {a.x - b.x, a.y - b.y}; }
  friend Position operator*(Position a, double factor) { return {a.x * factor, a.y * factor}; }
};

// Whether both are numbers small enough to be calculated with; all functions here expect such positions.
bool IsUsable(Position position);

// Boxes are compared exactly; Widened makes good what rounding took.
struct Box {
  Position low{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};
  Position high{-std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};

  bool IsEmpty() const { return low.x > high.x; }
  void Add(Position position) { Add(Box{position, position}); }
  void Add(const Box& other) {
    low = {std::min(low.x, other.low.x), std::min(low.y, other.low.y)};
    high = {std::max(high.x, other.high.x), std::max(high.y, other.high.y)};
  }
  bool Contains(const Box& other) const {
    return low.x <= other.low.x && low.y <= other.low.y && other.high.x <= high.x && other.high.y <= high.y;
  }
  bool Overlaps(const Box& other) const {
    return low.x <= other.high.x && other.low.x <= high.x && low.y <= other.high.y && other.low.y <= high.y;
  }
};

// A few roundings of its coordinates larger on every side.
Box Widened(const Box& box);

// The cosine and the sine of an angle in radians, exact at the quarters of the circle.
Position DirectionOf(double angle);

// The angle that an arc sweeps counterclockwise between two angles, above 0 and up to the whole circle,
// which equal angles stand for.
double SweepBetween(double start, double end);

// Both ends may be one point.
struct Segment {
  Position first;
  Position last;

  double LastParameter() const { return 1.0; }
  Position At(double parameter) const { return first + (last - first) * parameter; }
  Box Bounds() const;
  bool Has(Position position) const;
};

// A part of an ellipse: center + u cos t + v sin t, where t runs from `start` over `sweep`, which is
// positive and at most a whole circle. A point of it goes by the part of the sweep before it.
struct Arc {
  Position center;
  Position u;
  Position v;
  double start = 0.0;
  double sweep = 0.0;
  Position first;  // the ends, known more exactly than they can be calculated
  Position last;

  double LastParameter() const { return sweep; }
  Position At(double parameter) const;
  Box Bounds() const;
  bool IsUsable() const;
  // Whether it is seen from its edge, or has shrunk to a point; it is then the same as its Line.
  bool IsFlat() const;
  Segment Line() const;
};

// On which side of the line from a to b a point lies: 1 left, -1 right, 0 on it.
int SideOf(Position a, Position b, Position position);

// Whether a ray from the position to the right goes through the segment. Of the edges of a closed line, an
// odd number is met from within.
bool IsRightOf(const Segment& edge, Position position);

// Whether a segment has a part in a box that its own box overlaps.
bool IsIn(const Segment& segment, const Box& box);

// Adds the parameters of the curve where it meets the edge; where the two run together, those of
// the ends of the common part.
void AddMeetings(const Segment& segment, const Segment& edge, std::vector<double>& parameters);
void AddMeetings(const Arc& arc, const Segment& edge, std::vector<double>& parameters);

}  // namespace lomlisp::embedded
