#include <embedded/selection/PlaneGeometry.h>

#include <cmath>
#include <numbers>

namespace lomlisp::embedded {

namespace {

// Products of three coordinates must not overflow.
constexpr double kGreatest = 1e100;
// A few roundings of a number of size 1.
constexpr double kRounding = 16 * std::numeric_limits<double>::epsilon();
// What an angle that was calculated may be wrong by.
constexpr double kAngleError = 1e-12;
constexpr double kCircle = 2 * std::numbers::pi;

double Dot(Position a, Position b) { return a.x * b.x + a.y * b.y; }
double Cross(Position a, Position b) { return a.x * b.y - a.y * b.x; }
double Size(Position a) { return std::abs(a.x) + std::abs(a.y); }

// The same and as much more as something calculated may be wrong by.
Box Widened(const Box& box, double error) {
  const double slack = error + kRounding * (Size(box.low) + Size(box.high));
  const Position by{slack, slack};
  return {box.low - by, box.high + by};
}

// Whether the position, which is on the segment's line, is between its ends.
bool IsBetween(const Segment& segment, Position position, double error) {
  return Widened(segment.Bounds(), error).Contains(Box{position, position});
}

// The parameter of a position on the segment.
double ParameterOf(const Segment& segment, Position position) {
  const Position along = segment.last - segment.first;
  const double square = Dot(along, along);
  return square > 0 ? std::clamp(Dot(position - segment.first, along) / square, 0.0, 1.0) : 0.0;
}

// How far an angle is from the arc's start, from 0 up to a whole circle.
double OffsetOf(const Arc& arc, double angle) {
  const double offset = std::fmod(angle - arc.start, kCircle);
  return offset < 0 ? offset + kCircle : offset;
}

void AddMeetingAt(const Arc& arc, double angle, const Segment& edge, std::vector<double>& parameters) {
  double parameter = OffsetOf(arc, angle);
  if (parameter > kCircle - kAngleError) parameter = 0;
  if (parameter > arc.sweep + kAngleError) return;
  parameter = std::min(parameter, arc.sweep);
  const double error = kAngleError * (Size(arc.u) + Size(arc.v)) + kRounding * Size(arc.center);
  if (IsBetween(edge, arc.At(parameter), error)) parameters.push_back(parameter);
}

}  // namespace

bool IsUsable(Position position) {
  return std::abs(position.x) <= kGreatest && std::abs(position.y) <= kGreatest;
}

Box Widened(const Box& box) { return Widened(box, 0); }

Position DirectionOf(double angle) {
  constexpr double kZero = 1e-15;
  const double x = std::cos(angle);
  const double y = std::sin(angle);
  if (std::abs(x) < kZero) return {0, std::copysign(1.0, y)};
  if (std::abs(y) < kZero) return {std::copysign(1.0, x), 0};
  return {x, y};
}

double SweepBetween(double start, double end) {
  // Files give the end of a whole ellipse with some digits only.
  constexpr double kFileError = 1e-6;
  const double difference = end - start;
  if (std::abs(std::abs(difference) - kCircle) < kFileError) return kCircle;
  const double sweep = std::fmod(difference, kCircle);
  return sweep > 0 ? sweep : sweep + kCircle;
}

Box Segment::Bounds() const {
  return {{std::min(first.x, last.x), std::min(first.y, last.y)},
          {std::max(first.x, last.x), std::max(first.y, last.y)}};
}

bool Segment::Has(Position position) const {
  return IsBetween(*this, position, 0) && SideOf(first, last, position) == 0;
}

Position Arc::At(double parameter) const {
  if (parameter <= 0) return first;
  if (parameter >= sweep) return last;
  const double angle = start + parameter;
  return center + u * std::cos(angle) + v * std::sin(angle);
}

Box Arc::Bounds() const {
  // A turning point so near an end is that end, but for rounding.
  constexpr double kNearEnd = 1e-9;
  const auto isInside = [&](double angle) {
    const double offset = OffsetOf(*this, angle);
    return offset > kNearEnd && offset < sweep - kNearEnd;
  };
  Box box;
  box.Add(first);
  box.Add(last);
  const Position turn{std::atan2(v.x, u.x), std::atan2(v.y, u.y)};
  const Position reach{std::hypot(u.x, v.x), std::hypot(u.y, v.y)};
  if (isInside(turn.x)) box.Add(Position{center.x + reach.x, first.y});
  if (isInside(turn.x + std::numbers::pi)) box.Add(Position{center.x - reach.x, first.y});
  if (isInside(turn.y)) box.Add(Position{first.x, center.y + reach.y});
  if (isInside(turn.y + std::numbers::pi)) box.Add(Position{first.x, center.y - reach.y});
  return box;
}

bool Arc::IsUsable() const {
  const auto isUsable = [](Position position) { return embedded::IsUsable(position); };
  return isUsable(center) && isUsable(u) && isUsable(v) && isUsable(first) && isUsable(last) &&
         isUsable({start, sweep});
}

bool Arc::IsFlat() const {
  constexpr double kFlat = 1e-12;
  return std::abs(Cross(u, v)) <= kFlat * (Dot(u, u) + Dot(v, v));
}

Segment Arc::Line() const {
  const Position along = Dot(u, u) > Dot(v, v) ? u : v;
  const double turn = std::atan2(Dot(v, along), Dot(u, along));
  Segment line{first, first};
  for (const double parameter : {sweep, OffsetOf(*this, turn), OffsetOf(*this, turn + std::numbers::pi)}) {
    if (parameter > sweep) continue;
    const Position position = At(parameter);
    if (Dot(position - line.first, along) < 0) line.first = position;
    if (Dot(position - line.last, along) > 0) line.last = position;
  }
  return line;
}

int SideOf(Position a, Position b, Position position) {
  const Position along = b - a;
  const Position across = position - a;
  const double left = along.x * across.y;
  const double right = along.y * across.x;
  const double error = (std::abs(a.x) + std::abs(b.x)) * std::abs(across.y) +
                       (std::abs(a.y) + std::abs(position.y)) * std::abs(along.x) +
                       (std::abs(a.y) + std::abs(b.y)) * std::abs(across.x) +
                       (std::abs(a.x) + std::abs(position.x)) * std::abs(along.y);
  if (std::abs(left - right) <= kRounding * error) return 0;
  return left > right ? 1 : -1;
}

bool IsRightOf(const Segment& edge, Position position) {
  const bool isUpwards = edge.last.y > position.y;
  if ((edge.first.y > position.y) == isUpwards) return false;
  return SideOf(edge.first, edge.last, position) == (isUpwards ? 1 : -1);
}

bool IsIn(const Segment& segment, const Box& box) {
  const auto side = [&](double x, double y) { return SideOf(segment.first, segment.last, {x, y}); };
  const int first = side(box.low.x, box.low.y);
  return first == 0 || side(box.high.x, box.low.y) != first || side(box.high.x, box.high.y) != first ||
         side(box.low.x, box.high.y) != first;
}

void AddMeetings(const Segment& segment, const Segment& edge, std::vector<double>& parameters) {
  const int first = SideOf(edge.first, edge.last, segment.first);
  const int last = SideOf(edge.first, edge.last, segment.last);
  if (first * last > 0) return;
  const int edgeFirst = SideOf(segment.first, segment.last, edge.first);
  const int edgeLast = SideOf(segment.first, segment.last, edge.last);
  if (edgeFirst * edgeLast > 0) return;
  if (first * last < 0 && edgeFirst * edgeLast < 0) {
    const Position along = edge.last - edge.first;
    const double before = Cross(along, segment.first - edge.first);
    const double behind = Cross(along, segment.last - edge.first);
    parameters.push_back(before / (before - behind));
    return;
  }
  if (first == 0 && IsBetween(edge, segment.first, 0)) parameters.push_back(0);
  if (last == 0 && IsBetween(edge, segment.last, 0)) parameters.push_back(1);
  if (edgeFirst == 0 && IsBetween(segment, edge.first, 0))
    parameters.push_back(ParameterOf(segment, edge.first));
  if (edgeLast == 0 && IsBetween(segment, edge.last, 0))
    parameters.push_back(ParameterOf(segment, edge.last));
}

void AddMeetings(const Arc& arc, const Segment& edge, std::vector<double>& parameters) {
  if (edge.Has(arc.first)) parameters.push_back(0);
  if (edge.Has(arc.last)) parameters.push_back(arc.sweep);
  // The line on which the edge lies; for a point one through the center.
  Position along = edge.last - edge.first;
  if (along == Position()) along = edge.first - arc.center;
  const Position normal{-along.y, along.x};
  const double x = Dot(normal, arc.u);
  const double y = Dot(normal, arc.v);
  const double reach = std::hypot(x, y);
  const double distance = Dot(normal, edge.first - arc.center);
  const double error = kAngleError * reach + kRounding * Size(normal) * (Size(edge.first) + Size(arc.center));
  if (reach == 0 || std::abs(distance) > reach + error) return;
  const double middle = std::atan2(y, x);
  const double half = std::acos(std::clamp(distance / reach, -1.0, 1.0));
  AddMeetingAt(arc, middle - half, edge, parameters);
  AddMeetingAt(arc, middle + half, edge, parameters);
}

}  // namespace lomlisp::embedded
