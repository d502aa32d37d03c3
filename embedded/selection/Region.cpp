#include <embedded/selection/Region.h>

#include <algorithm>
#include <utility>

namespace lomlisp::embedded {

namespace {

// A piece of a curve so short lies where its ends lie, as near as can be calculated.
double ShortestPiece(const Segment&) { return 1e-12; }
double ShortestPiece(const Arc&) { return 1e-7; }

bool HasInside(const Shape::Area& area, Position position) {
  bool isInside = false;
  for (size_t index = 0; index < area.size(); ++index)
    if (IsRightOf({area[index], area[(index + 1) % area.size()]}, position)) isInside = !isInside;
  return isInside;
}

// Whether neighbours, the second of which begins where the first one ends, share more than that.
bool IsFoldedBack(const Segment& first, const Segment& second) {
  return first.Has(second.last) || second.Has(first.first);
}

bool IsMeeting(const Segment& a, const Segment& b) {
  std::vector<double> parameters;
  AddMeetings(a, b, parameters);
  return !parameters.empty();
}

// Without points that repeat the one before.
bool Clean(std::vector<Position>& points, std::string& objection) {
  if (!std::all_of(points.begin(), points.end(), IsUsable)) {
    objection = "a coordinate is no number or too large";
    return false;
  }
  points.erase(std::unique(points.begin(), points.end()), points.end());
  return true;
}

}  // namespace

Region::Region(std::vector<Position> corners, Kind kind) : m_kind(kind) {
  const bool isClosed = kind != Kind::Fence;
  const size_t count = isClosed || corners.size() == 1 ? corners.size() : corners.size() - 1;
  std::vector<SpatialIndex::Item> items;
  for (size_t index = 0; index < count; ++index) {
    m_edges.push_back({corners[index], corners[(index + 1) % corners.size()]});
    items.push_back({Widened(m_edges.back().Bounds()), index});
    m_bounds.Add(items.back().box);
  }
  m_index = SpatialIndex(std::move(items));
}

Region Region::Window(Position a, Position b) { return Region({a, {b.x, a.y}, b, {a.x, b.y}}, Kind::Window); }

std::optional<Region> Region::Polygon(std::vector<Position> corners, std::string& objection) {
  if (!Clean(corners, objection)) return std::nullopt;
  while (corners.size() > 1 && corners.back() == corners.front()) corners.pop_back();
  if (corners.size() < 3) {
    objection = "a polygon needs three different points";
    return std::nullopt;
  }
  Region region(std::move(corners), Kind::Polygon);
  if (!region.IsCrossingItself()) return region;
  objection = "the polygon crosses or touches itself";
  return std::nullopt;
}

std::optional<Region> Region::Fence(std::vector<Position> points, std::string& objection) {
  if (points.size() < 2) {
    objection = "a fence needs two points";
    return std::nullopt;
  }
  if (!Clean(points, objection)) return std::nullopt;
  return Region(std::move(points), Kind::Fence);
}

bool Region::IsCrossingItself() const {
  const size_t count = m_edges.size();
  for (size_t index = 0; index < count; ++index) {
    bool isCrossing = false;
    m_index.Search(m_edges[index].Bounds(), [&](const SpatialIndex::Item& item) {
      if (item.number <= index) return true;
      const Segment& edge = m_edges[index];
      const Segment& other = m_edges[item.number];
      if (item.number == index + 1)
        isCrossing = IsFoldedBack(edge, other);
      else if (index == 0 && item.number == count - 1)
        isCrossing = IsFoldedBack(other, edge);
      else
        isCrossing = IsMeeting(edge, other);
      return !isCrossing;
    });
    if (isCrossing) return true;
  }
  return false;
}

bool Region::Contains(const Shape& shape) const {
  const auto contains = [&](const auto& curve) { return ContainsCurve(curve); };
  return std::all_of(shape.Segments().begin(), shape.Segments().end(), contains) &&
         std::all_of(shape.Arcs().begin(), shape.Arcs().end(), contains);
}

bool Region::Meets(const Shape& shape) const {
  const auto meets = [&](const auto& curve) { return MeetsCurve(curve); };
  // An area that no side of leads into the region holds it whole or not at all.
  const auto holds = [&](const Shape::Area& area) { return HasInside(area, m_edges.front().first); };
  return std::any_of(shape.Segments().begin(), shape.Segments().end(), meets) ||
         std::any_of(shape.Arcs().begin(), shape.Arcs().end(), meets) ||
         std::any_of(shape.Areas().begin(), shape.Areas().end(), holds);
}

bool Region::MayMeet(const Box& box) const {
  return m_bounds.Overlaps(box) && (m_kind == Kind::Window || Has(box.low) || HasEdgeIn(box));
}

bool Region::MustContain(const Box& box) const {
  if (m_kind == Kind::Fence || !m_bounds.Contains(box)) return false;
  return m_kind == Kind::Window || (Has(box.low) && !HasEdgeIn(box));
}

bool Region::HasEdgeIn(const Box& box) const {
  bool isIn = false;
  m_index.Search(box, [&](const SpatialIndex::Item& item) {
    isIn = IsIn(m_edges[item.number], box);
    return !isIn;
  });
  return isIn;
}

// On the border, or within: then a ray to the right goes through an odd number of edges.
bool Region::Has(Position position) const {
  const Box ray{position, {std::max(m_bounds.high.x, position.x), position.y}};
  bool isOnBorder = false;
  bool isInside = false;
  m_index.Search(ray, [&](const SpatialIndex::Item& item) {
    isOnBorder = m_edges[item.number].Has(position);
    if (IsRightOf(m_edges[item.number], position)) isInside = !isInside;
    return !isOnBorder;
  });
  return isOnBorder || (isInside && m_kind != Kind::Fence);
}

template <typename Curve>
bool Region::MeetsCurve(const Curve& curve) const {
  const Box box = curve.Bounds();
  if (!m_bounds.Overlaps(box)) return false;
  if (Has(curve.first)) return true;
  std::vector<double> parameters;
  m_index.Search(box, [&](const SpatialIndex::Item& item) {
    AddMeetings(curve, m_edges[item.number], parameters);
    return parameters.empty();
  });
  return !parameters.empty();
}

// Between two points where it meets the border a curve is inside or outside as a whole.
template <typename Curve>
bool Region::ContainsCurve(const Curve& curve) const {
  const Box box = curve.Bounds();
  if (!m_bounds.Contains(box) || !Has(curve.first) || !Has(curve.last)) return false;
  std::vector<double> parameters{0, curve.LastParameter()};
  m_index.Search(box, [&](const SpatialIndex::Item& item) {
    AddMeetings(curve, m_edges[item.number], parameters);
    return true;
  });
  std::sort(parameters.begin(), parameters.end());
  for (size_t index = 1; index < parameters.size(); ++index) {
    const double piece = parameters[index] - parameters[index - 1];
    if (piece > ShortestPiece(curve) && !Has(curve.At(parameters[index - 1] + piece / 2))) return false;
  }
  return true;
}

}  // namespace lomlisp::embedded
