// The functions for records, memory and printing of a platform of one's own.
#include <tests/own_platform/Memory.h>

#include <lomlisp/platform/suite.h>

#include <cstdlib>
#include <cstring>

namespace {

int liveBlocks = 0;
long allocatedBlocks = 0;
int printedTexts = 0;

}  // namespace

int LiveBlocks() { return liveBlocks; }
long AllocatedBlocks() { return allocatedBlocks; }
int PrintedTexts() { return printedTexts; }

void* acad_malloc(size_t size) {
  ++liveBlocks;
  ++allocatedBlocks;
  return std::malloc(size);
}

void acad_free(void* block) {
  if (block != nullptr) --liveBlocks;
  std::free(block);
}

resbuf* acutNewRb(int type) {
  auto* const record = static_cast<resbuf*>(acad_malloc(sizeof(resbuf)));
  std::memset(record, 0, sizeof *record);
  record->restype = static_cast<short>(type);
  return record;
}

int acutRelRb(resbuf* chain) {
  while (chain != nullptr) {
    resbuf* const next = chain->rbnext;
    if (DxfType(chain->restype) == RTSTR) acad_free(chain->resval.rstring);
    acad_free(chain);
    chain = next;
  }
  return RTNORM;
}

// Enough for records without a value.
resbuf* acutBuildList(int type, ...) { return acutNewRb(type); }

int acutPrintf(const ACHAR*, ...) {
  ++printedTexts;
  return RTNORM;
}
