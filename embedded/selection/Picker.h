// The entities of the model space by where they are.
#pragma once

#include <embedded/drawing/Drawing.h>
#include <embedded/selection/Region.h>
#include <embedded/selection/SpatialIndex.h>

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace lomlisp::embedded {

// Selects entities in plan view: z is dropped. They come in drawing order; a polyline with its vertices and
// an INSERT with its attributes are one, found by any of their parts. Only what is visible is found: neither
// erased nor invisible (60), on a layer that is neither off nor frozen.
//
// The index is built by the first question and then follows the drawing's changes, which it takes: one Picker
// for a drawing. A question costs little beside what it finds; after a change in a block everything is
// measured anew. What shows nothing (see AddShape) is found by All alone.
class Picker {
 public:
  explicit Picker(Drawing& drawing) : m_drawing(drawing) {}

  std::vector<Object*> All() const;
  // What is entirely inside the rectangle, border included; crossing: what is inside or touches it.
  // Nothing for coordinates that are no numbers.
  std::vector<Object*> Window(const Point& a, const Point& b, bool isCrossing);
  // The same for a polygon, which is closed by itself. Gives an objection, and nothing found, when
  // it has fewer than three different points or crosses or touches itself.
  std::optional<std::string> Polygon(const std::vector<Point>& corners, bool isCrossing,
                                     std::vector<Object*>& found);
  // What a line through the points meets; an objection when there are fewer than two.
  std::optional<std::string> Fence(const std::vector<Point>& points, std::vector<Object*>& found);
  // The last drawn entity that meets the square around the point; null for none.
  Object* At(const Point& point, double halfBox);

  // How many boxes the last question looked at.
  size_t Examined() const { return m_examined; }

 private:
  using Items = std::vector<SpatialIndex::Item>;

  void Update();
  void Build();
  Box BoxOf(const Object& entity) const;
  bool Selects(const Region& region, bool isCrossing, const SpatialIndex::Item& item) const;
  Items Candidates(const Region& region);
  std::vector<Object*> Select(const Region& region, bool isCrossing);

  Drawing& m_drawing;
  bool m_isBuilt = false;
  SpatialIndex m_index;                      // by position in the drawing
  std::unordered_map<size_t, Box> m_recent;  // changed since the index was built, by position
  size_t m_examined = 0;
};

}  // namespace lomlisp::embedded
