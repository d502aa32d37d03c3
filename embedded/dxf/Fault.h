// How what reads and writes files gives up; no further than to the functions of Dxf.h.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

namespace lomlisp::embedded {

struct Fault {
  explicit Fault(std::string what, uint64_t where = 0) : message(std::move(what)), place(where) {}
  std::string message;
  uint64_t place;  // a line or an offset; 0 where it is no matter of one place
};

}  // namespace lomlisp::embedded
