// Where handles are in a hash table.
#pragma once

#include <cstddef>
#include <cstdint>

namespace lomlisp::embedded {

// A file can give its objects any handles, also such as a known hash would all put into one place, where each is
// searched among all. So the places are others in each process.
class HandleHash {
 public:
  size_t operator()(uint64_t handle) const {
    uint64_t bits = handle ^ Seed();
    bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9U;
    bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EBU;
    return static_cast<size_t>(bits ^ (bits >> 31));
  }

 private:
  static uint64_t Seed();
};

}  // namespace lomlisp::embedded
