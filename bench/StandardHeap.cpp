#include <bench/StandardHeap.h>

#include <cstdlib>
#include <new>

namespace {

size_t bytesTaken = 0;
size_t blocksTaken = 0;

}  // namespace

size_t StandardHeapBytes() { return bytesTaken; }
size_t StandardHeapBlocks() { return blocksTaken; }

void* operator new(size_t size, const std::nothrow_t&) noexcept {
  bytesTaken += size;
  ++blocksTaken;
  return std::malloc(size);
}
void* operator new(size_t size) {
  if (void* const block = operator new(size, std::nothrow)) return block;
  throw std::bad_alloc();
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, size_t) noexcept { std::free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { std::free(block); }
