// The two heaps of a program, the standard one and the platform's: what is live on them, and allocations that
// are told to fail.
#pragma once

#include <cstddef>

namespace lomlisp::test {

enum class Heap { Standard, Platform };

struct Blocks {
  long standard;
  long platform;
  friend bool operator==(const Blocks&, const Blocks&) = default;
};

Blocks LiveBlocks();

// As long as one is there, allocations are counted, and one of them fails.
class Watch {
 public:
  // Counts alone.
  Watch() : Watch(Heap::Standard, 0, false) {}
  // The n-th allocation from that heap fails (1 is the next one), or that one and all behind it.
  Watch(Heap heap, long n, bool andAllBehind);
  ~Watch();
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

  Blocks Asked() const;
  bool HasFailed() const;
};

// What is done meanwhile neither counts nor fails: what a platform does for itself, and what a test looks at.
class Unwatched {
 public:
  Unwatched();
  ~Unwatched();
  Unwatched(const Unwatched&) = delete;
  Unwatched& operator=(const Unwatched&) = delete;
};

// Counts an allocation. Whether it has to fail.
bool MustFail(Heap heap);

}  // namespace lomlisp::test
