// Points as LISP has them, lists of two or three numbers.
#pragma once

#include <embedded/Chain.h>

#include <array>
#include <cstddef>
#include <optional>

namespace lomlisp::shell {

using Coordinates = std::array<double, 3>;

// The point that begins at a bracket, which is then behind; nothing when it is none.
std::optional<Coordinates> TakePoint(const embedded::Chain& chain, size_t& position);
// The point that an item is.
std::optional<Coordinates> PointIn(const embedded::Chain& item);
embedded::Chain PointItem(const Coordinates& point);

// As the platform takes it: null for none.
inline const double* PlaceOf(const std::optional<Coordinates>& point) {
  return point ? point->data() : nullptr;
}

}  // namespace lomlisp::shell
