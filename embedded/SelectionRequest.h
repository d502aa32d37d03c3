// What acedSSGet is asked for.
#pragma once

#include <embedded/Host.h>
#include <embedded/selection/SelectionMode.h>

#include <optional>
#include <string>
#include <vector>

namespace lomlisp::embedded {

struct Session;

struct SelectionRequest {
  SelectionMode mode = SelectionMode::User;
  std::optional<Point> first;
  std::optional<Point> second;
  std::vector<Point> corners;
};

// What was selected: its status, and why there is nothing.
struct Selected {
  std::vector<Object*> entities;
  int status = RTNORM;
  std::string objection;   // for the log, where the status is not RTNORM
  bool isMistake = false;  // whether the function that is being called is to blame
};

// Carries the request out, without a filter. Takes an answer of the user's where the mode asks him.
Selected Select(Session& session, Answers& answers, const SelectionRequest& request);

}  // namespace lomlisp::embedded
