// The modes of acedSSGet.
#pragma once

#include <optional>
#include <string_view>

namespace lomlisp::embedded {

enum class SelectionMode {
  User,             // no mode: the user selects, or the points that are given do
  Everything,       // X: the whole drawing
  Visible,          // A
  Last,             // L
  Previous,         // P
  Implied,          // I: what was selected before the command
  Window,           // W
  Crossing,         // C
  WindowPolygon,    // WP
  CrossingPolygon,  // CP
  Fence             // F
};

// Without regard to case. In front of the letters _ + . and # may stand, behind them suffixes as in
// "W:S" or ":S:E", of which none but S means anything here. Nothing for an unknown mode.
std::optional<SelectionMode> ReadSelectionMode(std::wstring_view text);
// Whether the suffix S is there: the user selects once, and is not asked for more.
bool SelectsOnce(std::wstring_view mode);

// Whether the mode takes a chain of points where others take a point.
constexpr bool TakesPointChain(SelectionMode mode) {
  return mode == SelectionMode::WindowPolygon || mode == SelectionMode::CrossingPolygon ||
         mode == SelectionMode::Fence;
}

}  // namespace lomlisp::embedded
