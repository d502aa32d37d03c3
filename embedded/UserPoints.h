// Points as the user gives them, typed or picked.
#pragma once

#include <embedded/Answers.h>
#include <embedded/Host.h>

#include <optional>
#include <string_view>

namespace lomlisp::embedded {

// The finite number that the whole of the text is.
std::optional<double> ReadReal(std::wstring_view text);
// The same angle from 0 up to, but not including, a whole turn of that size.
double WithinTurn(double angle, double turn);
// In degrees; gives radians from 0 up to, but not including, a whole turn.
std::optional<double> ReadAngle(std::wstring_view text);

// What typed points refer to.
struct PointOrigin {
  Point last;              // for what begins with @
  double elevation = 0.0;  // for points of two coordinates
};
// By LASTPOINT and ELEVATION.
PointOrigin CurrentOrigin(SystemVariables& variables);

// "1,2", "1,2,3" or, by distance and angle in degrees, "5<30"; with a @ in front, from the last point.
std::optional<Point> ReadPoint(std::wstring_view text, const PointOrigin& origin);
// The point that an answer is, finite.
std::optional<Point> PointFrom(const UserAnswer& answer, const PointOrigin& origin);
// Sets LASTPOINT.
void SetLastPoint(SystemVariables& variables, const Point& point);

}  // namespace lomlisp::embedded
