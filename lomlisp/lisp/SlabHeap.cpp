#include <lomlisp/lisp/SlabHeap.h>

#include <array>
#include <cstdint>
#include <memory>
#include <new>

namespace lomlisp::slabheap {

#ifdef LOMLISP_SANITIZED

// The sanitizers watch each block of the general heap.
void* Allocate(size_t bytes) { return ::operator new(bytes); }
void Free(void* block, size_t) noexcept { ::operator delete(block); }

#else

namespace {

constexpr size_t kGrain = alignof(std::max_align_t);
constexpr size_t kSlabBytes = size_t{32} * 1024;
constexpr size_t kSlabsPerRegion = 31;

// How many grains that many bytes take.
constexpr size_t GrainsFor(size_t bytes) { return (bytes + kGrain - 1) / kGrain; }

struct Block {
  Block* next;
};

// A list that its members belong to by pointers of their own.
template <class Member>
class Chain {
 public:
  Member* First() const { return m_first; }
  void Push(Member& member) {
    member.previous = nullptr;
    member.next = m_first;
    if (m_first != nullptr) m_first->previous = &member;
    m_first = &member;
  }
  void Remove(Member& member) {
    if (member.previous != nullptr)
      member.previous->next = member.next;
    else
      m_first = member.next;
    if (member.next != nullptr) member.next->previous = member.previous;
  }

 private:
  Member* m_first = nullptr;
};

struct Region;

// Stands at the beginning of its own memory, whose address is a multiple of kSlabBytes; the blocks follow.
struct Slab {
  Slab* previous;
  Slab* next;
  Region* region;
  Block* given;     // blocks that came back
  std::byte* rest;  // behind the blocks that have been taken once
  uint32_t blockBytes;
  uint32_t used;
  uint32_t capacity;

  bool IsFull() const { return used == capacity; }

  void* Take() {
    ++used;
    if (given != nullptr) {
      Block* const block = given;
      given = block->next;
      return block;
    }
    void* const block = rest;
    rest += blockBytes;
    return block;
  }
};

constexpr size_t kHeadBytes = GrainsFor(sizeof(Slab)) * kGrain;

// What the general heap gives at once. Its slabs lie between its beginning and its end, where their addresses
// are multiples of their size.
struct Region {
  Region* previous;
  Region* next;
  Slab* free;
  std::byte* rest;
  size_t used;
  void* memory;

  std::byte* End() { return static_cast<std::byte*>(memory) + kSlabBytes * (kSlabsPerRegion + 1); }
  bool IsFull() { return free == nullptr && rest + kSlabBytes > End(); }
};

// Slabs with room, by the grains of their blocks, and regions with room for slabs.
std::array<Chain<Slab>, GrainsFor(kLargest) + 1> slabs;
Chain<Region> regions;

Region& NewRegion() {
  auto region = std::make_unique<Region>();
  region->memory = ::operator new(kSlabBytes*(kSlabsPerRegion + 1));
  const auto address = reinterpret_cast<uintptr_t>(region->memory);
  region->rest = static_cast<std::byte*>(region->memory) + (kSlabBytes - address % kSlabBytes) % kSlabBytes;
  regions.Push(*region);
  return *region.release();
}

void* SlabMemory(Region& region) {
  if (Slab* const slab = region.free) {
    region.free = slab->next;
    return slab;
  }
  void* const memory = region.rest;
  region.rest += kSlabBytes;
  return memory;
}

Slab& NewSlab(size_t grains) {
  Region& region = regions.First() != nullptr ? *regions.First() : NewRegion();
  auto* const slab = new (SlabMemory(region)) Slab{};
  slab->region = &region;
  slab->rest = reinterpret_cast<std::byte*>(slab) + kHeadBytes;
  slab->blockBytes = static_cast<uint32_t>(grains * kGrain);
  slab->capacity = static_cast<uint32_t>((kSlabBytes - kHeadBytes) / slab->blockBytes);
  ++region.used;
  if (region.IsFull()) regions.Remove(region);
  slabs[grains].Push(*slab);
  return *slab;
}

void FreeSlab(Slab& slab) {
  Region& region = *slab.region;
  if (region.IsFull()) regions.Push(region);
  slab.next = region.free;
  region.free = &slab;
  if (--region.used > 0) return;
  regions.Remove(region);
  ::operator delete(region.memory);
  delete &region;
}

Slab& SlabOf(void* block) {
  const auto address = reinterpret_cast<uintptr_t>(block);
  return *reinterpret_cast<Slab*>(static_cast<std::byte*>(block) - address % kSlabBytes);
}

}  // namespace

void* Allocate(size_t bytes) {
  const size_t grains = GrainsFor(bytes);
  Slab* const open = slabs[grains].First();
  Slab& slab = open != nullptr ? *open : NewSlab(grains);
  void* const block = slab.Take();
  if (slab.IsFull()) slabs[grains].Remove(slab);
  return block;
}

void Free(void* block, size_t bytes) noexcept {
  Slab& slab = SlabOf(block);
  Chain<Slab>& open = slabs[GrainsFor(bytes)];
  if (slab.IsFull()) open.Push(slab);
  slab.given = new (block) Block{slab.given};
  // The last slab of a size stays, or else one value would make and free it again and again.
  if (--slab.used > 0 || (slab.previous == nullptr && slab.next == nullptr)) return;
  open.Remove(slab);
  FreeSlab(slab);
}

#endif

}  // namespace lomlisp::slabheap
