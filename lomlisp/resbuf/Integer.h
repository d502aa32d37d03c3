// From reals to integers.
#pragma once

#include <lomlisp/platform/ads.h>

#include <cmath>
#include <limits>

namespace lomlisp {

// The real without its fraction; the smallest integer when it is out of range or no number.
template <class Integer>
Integer Truncate(double value) {
  // Both bounds are powers of two, so they are exact as doubles for every width.
  constexpr auto lowest = static_cast<double>((std::numeric_limits<Integer>::min)());
  const double whole = std::trunc(value);
  if (!(whole >= lowest && whole < -lowest)) return (std::numeric_limits<Integer>::min)();
  return static_cast<Integer>(whole);
}

// The same, but a real above the range gives the greatest integer.
template <class Integer>
Integer TruncateSaturated(double value) {
  if (value >= -static_cast<double>((std::numeric_limits<Integer>::min)()))
    return (std::numeric_limits<Integer>::max)();
  return Truncate<Integer>(value);
}

}  // namespace lomlisp
