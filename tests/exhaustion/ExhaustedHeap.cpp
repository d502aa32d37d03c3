#include <tests/exhaustion/ExhaustedHeap.h>

#include <cstdlib>
#include <new>

namespace {

bool isExhausted = false;

}  // namespace

ExhaustedHeap::ExhaustedHeap() { isExhausted = true; }
ExhaustedHeap::~ExhaustedHeap() { isExhausted = false; }

void* operator new(size_t size, const std::nothrow_t&) noexcept {
  return isExhausted ? nullptr : std::malloc(size);
}
void* operator new(size_t size) {
  if (void* const block = operator new(size, std::nothrow)) return block;
  throw std::bad_alloc();
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, size_t) noexcept { std::free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { std::free(block); }
