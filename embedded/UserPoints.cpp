#include <embedded/UserPoints.h>

#include <embedded/Reader.h>
#include <embedded/Text.h>

#include <cmath>
#include <numbers>
#include <variant>

namespace lomlisp::embedded {

namespace {

constexpr double kTurn = 360.0;
constexpr double kRadians = std::numbers::pi / 180.0;

std::optional<Point> Finite(const Point& point) {
  const bool isFinite = std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z);
  return isFinite ? std::optional(point) : std::nullopt;
}

// "5<30".
std::optional<Point> ReadPolar(std::wstring_view text, size_t mark) {
  const auto distance = ReadReal(text.substr(0, mark));
  const auto angle = ReadAngle(text.substr(mark + 1));
  if (!distance || !angle) return std::nullopt;
  return Point{*distance * std::cos(*angle), *distance * std::sin(*angle), 0.0, true};
}

// "1,2" or "1,2,3".
std::optional<Point> ReadCoordinates(std::wstring_view text) {
  const size_t comma = text.find(L',');
  if (comma == text.npos) return std::nullopt;
  const size_t second = text.find(L',', comma + 1);
  const bool isFlat = second == text.npos;
  const auto x = ReadReal(text.substr(0, comma));
  const auto y = ReadReal(text.substr(comma + 1, isFlat ? text.npos : second - comma - 1));
  const auto z = isFlat ? 0.0 : ReadReal(text.substr(second + 1));
  if (!x || !y || !z) return std::nullopt;
  return Point{*x, *y, *z, isFlat};
}

}  // namespace

std::optional<double> ReadReal(std::wstring_view text) {
  const auto number = ReadNumber(text);
  if (!number) return std::nullopt;
  if (number->type == RTSHORT) return number->value.rint;
  if (number->type == RTLONG) return number->value.rlong;
  return std::isfinite(number->value.rreal) ? std::optional(number->value.rreal) : std::nullopt;
}

double WithinTurn(double angle, double turn) {
  const double rest = std::fmod(angle, turn);
  if (rest >= 0.0) return std::abs(rest);  // no -0.0
  // A small negative angle is rounded up to the whole turn.
  return rest + turn >= turn ? 0.0 : rest + turn;
}

std::optional<double> ReadAngle(std::wstring_view text) {
  const auto degrees = ReadReal(text);
  return degrees ? std::optional(WithinTurn(*degrees, kTurn) * kRadians) : std::nullopt;
}

PointOrigin CurrentOrigin(SystemVariables& variables) {
  PointOrigin origin;
  if (const SystemVariable* last = variables.Find(L"LASTPOINT")) {
    const double* at = last->value.value.rpoint;
    origin.last = {at[0], at[1], at[2], false};
  }
  if (const SystemVariable* elevation = variables.Find(L"ELEVATION"))
    origin.elevation = elevation->value.value.rreal;
  return origin;
}

std::optional<Point> ReadPoint(std::wstring_view text, const PointOrigin& origin) {
  const bool isRelative = text.starts_with(L'@');
  if (isRelative) text.remove_prefix(1);
  if (isRelative && text.empty()) return Finite(origin.last);
  const size_t mark = text.find(L'<');
  auto point = mark != text.npos ? ReadPolar(text, mark) : ReadCoordinates(text);
  if (!point) return std::nullopt;
  if (isRelative)
    point = Point{origin.last.x + point->x, origin.last.y + point->y, origin.last.z + point->z, false};
  else if (point->isFlat)
    point = Point{point->x, point->y, origin.elevation, false};
  return Finite(*point);
}

std::optional<Point> PointFrom(const UserAnswer& answer, const PointOrigin& origin) {
  if (const auto* pick = std::get_if<PickPoint>(&answer)) return Finite(pick->point);
  if (const auto* pick = std::get_if<PickEntity>(&answer)) return Finite(pick->point);
  const auto* typed = std::get_if<TypeText>(&answer);
  return typed != nullptr ? ReadPoint(Trimmed(typed->text), origin) : std::nullopt;
}

void SetLastPoint(SystemVariables& variables, const Point& point) {
  SystemVariable* variable = variables.Find(L"LASTPOINT");
  if (variable == nullptr) return;
  variable->value.value.rpoint[0] = point.x;
  variable->value.value.rpoint[1] = point.y;
  variable->value.value.rpoint[2] = point.z;
}

}  // namespace lomlisp::embedded
