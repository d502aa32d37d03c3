// Memory for nodes and short child sequences: blocks of a few small sizes, of which a value takes millions.
// The general heap is most of what such a block costs.
//
// Blocks of one size lie side by side in slabs. A slab whose blocks have all come back is free for any size,
// and a region of slabs that are all free goes back to the general heap. Taking and giving back a block is a
// few instructions. Like the values themselves, all of it belongs to one thread at a time.
#pragma once

#include <lomlisp/platform/api.h>

#include <cstddef>

namespace lomlisp::slabheap {

inline constexpr size_t kLargest = 128;

// A block of at most kLargest bytes, aligned as std::max_align_t is. Throws std::bad_alloc.
LOMLISP_API void* Allocate(size_t bytes);
// The block must have been allocated with the same number of bytes.
LOMLISP_API void Free(void* block, size_t bytes) noexcept;

}  // namespace lomlisp::slabheap

namespace lomlisp {

// For std::allocate_shared.
template <class T>
struct SlabAllocator {
  using value_type = T;

  SlabAllocator() = default;
  template <class U>
  SlabAllocator(const SlabAllocator<U>&) {}

  T* allocate(size_t count) {
    static_assert(sizeof(T) <= slabheap::kLargest);
    static_assert(alignof(T) <= alignof(std::max_align_t));
    return static_cast<T*>(slabheap::Allocate(count * sizeof(T)));
  }
  // What was made here is no object of a derived class, whose destructor would have to be looked up.
  template <class Object>
  void destroy(Object* object) {
    object->Object::~Object();
  }
  void deallocate(T* block, size_t count) noexcept { slabheap::Free(block, count * sizeof(T)); }

  friend bool operator==(SlabAllocator, SlabAllocator) { return true; }
};

}  // namespace lomlisp
