// What acedSSGet is asked for.
#pragma once

#include <embedded/Question.h>
#include <embedded/selection/SelectionMode.h>

#include <optional>
#include <vector>

namespace lomlisp::embedded {

struct SelectionRequest {
  SelectionMode mode = SelectionMode::User;
  std::optional<Point> first;
  std::optional<Point> second;
  std::vector<Point> corners;
  bool isOnce = false;  // the user is not asked for more
};

// What was selected, or why there is nothing.
struct Selected : Outcome {
  std::vector<Object*> entities;
};

// Carries the request out, without a filter. Asks the user where the mode does so: what he types adds up
// until Enter, any other answer is the last.
Selected Select(Host& host, const SelectionRequest& request);

}  // namespace lomlisp::embedded
