#include <embedded/drawing/HandleHash.h>

#include <random>

namespace lomlisp::embedded {

uint64_t HandleHash::Seed() {
  static const uint64_t seed = [] {
    std::random_device random;
    return (uint64_t{random()} << 32) | random();
  }();
  return seed;
}

}  // namespace lomlisp::embedded
