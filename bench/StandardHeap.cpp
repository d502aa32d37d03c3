#include <bench/StandardHeap.h>

#include <cstdlib>
#include <new>

namespace {

size_t bytesTaken = 0;
size_t blocksTaken = 0;

}  // namespace

size_t StandardHeapBytes() { return bytesTaken; }
size_t StandardHeapBlocks() { return blocksTaken; }

void* operator new(size_t size) {
  bytesTaken += size;
  ++blocksTaken;
  if (void* const block = std::malloc(size)) return block;
  throw std::bad_alloc();
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, size_t) noexcept { std::free(block); }
