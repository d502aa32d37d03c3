// What each of the programs that are compared answers: a row of the table, run as often as the driver asks.
#pragma once

#include <bench/peers/Digest.h>

#include <cstddef>
#include <functional>
#include <string>

// A row for one peer. Everything that the work needs is there when the workload has been made.
struct Workload {
  std::function<void()> prepare;      // in front of each run, outside the clock; may be empty
  std::function<void()> run;          // what is timed
  std::function<Digest()> check;      // behind each run: the content that the work gave, which it then drops
  std::function<size_t()> heapBytes;  // of a row of memory: what is in use; the row's figure is the growth
  int repeats = 1;  // how often a measurement runs the work, where it is too short for a clock
};

// Each peer brings this. `size` is the number of elements. Throws std::invalid_argument for a row that the
// peer does not have.
Workload MakeWorkload(const std::string& row, int size);
