#include <tests/failures/Heaps.h>

#include <lomlisp/platform/suite.h>

#include <cstdarg>
#include <cstdlib>
#include <new>

namespace lomlisp::test {

namespace {

Blocks live = {};
Blocks asked = {};
Heap failingHeap = Heap::Standard;
long failing = 0;  // 0: none
bool andAllBehindFail = false;
bool hasFailed = false;
bool isWatched = false;
int unwatched = 0;

long& In(Blocks& blocks, Heap heap) { return heap == Heap::Standard ? blocks.standard : blocks.platform; }

}  // namespace

Blocks LiveBlocks() { return live; }

Watch::Watch(Heap heap, long n, bool andAllBehind) {
  asked = {};
  failingHeap = heap;
  failing = n;
  andAllBehindFail = andAllBehind;
  hasFailed = false;
  isWatched = true;
}

Watch::~Watch() { isWatched = false; }

Blocks Watch::Asked() const { return asked; }
bool Watch::HasFailed() const { return hasFailed; }

Unwatched::Unwatched() { ++unwatched; }
Unwatched::~Unwatched() { --unwatched; }

bool MustFail(Heap heap) {
  if (!isWatched || unwatched > 0) return false;
  const long number = ++In(asked, heap);
  if (heap != failingHeap || failing == 0) return false;
  const bool fails = number == failing || (andAllBehindFail && number > failing);
  hasFailed = hasFailed || fails;
  return fails;
}

namespace {

void* Take(Heap heap, size_t size) {
  void* const block = MustFail(heap) ? nullptr : std::malloc(size > 0 ? size : 1);
  if (block != nullptr) ++In(live, heap);
  return block;
}

void GiveBack(Heap heap, void* block) {
  if (block != nullptr) --In(live, heap);
  std::free(block);
}

}  // namespace

}  // namespace lomlisp::test

using namespace lomlisp::test;

// --- The standard heap ---

void* operator new(size_t size, const std::nothrow_t&) noexcept { return Take(Heap::Standard, size); }
void* operator new(size_t size) {
  if (void* const block = operator new(size, std::nothrow)) return block;
  throw std::bad_alloc();
}
void* operator new[](size_t size) { return operator new(size); }
void* operator new[](size_t size, const std::nothrow_t&) noexcept { return operator new(size, std::nothrow); }
void operator delete(void* block) noexcept { GiveBack(Heap::Standard, block); }
void operator delete(void* block, size_t) noexcept { GiveBack(Heap::Standard, block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { GiveBack(Heap::Standard, block); }
void operator delete[](void* block) noexcept { GiveBack(Heap::Standard, block); }
void operator delete[](void* block, size_t) noexcept { GiveBack(Heap::Standard, block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { GiveBack(Heap::Standard, block); }

// --- The platform's heap ---

void* acad_malloc(size_t size) { return Take(Heap::Platform, size); }

void acad_free(void* block) { GiveBack(Heap::Platform, block); }

resbuf* acutNewRb(int type) {
  void* const block = acad_malloc(sizeof(resbuf));
  return block != nullptr ? new (block) resbuf{nullptr, static_cast<short>(type), {.rpoint = {}}} : nullptr;
}

int acutRelRb(resbuf* chain) {
  while (chain != nullptr) {
    resbuf* const next = chain->rbnext;
    if (DxfType(chain->restype) == RTSTR || chain->restype == RTDXF0) acad_free(chain->resval.rstring);
    acad_free(chain);
    chain = next;
  }
  return RTNORM;
}

// Enough for records without a value.
resbuf* acutBuildList(int type, ...) { return acutNewRb(type); }

int acutPrintf(const ACHAR*, ...) { return RTNORM; }
