// The least that somebody needs who brings the platform functions himself: a call that adds up its
// arguments, without the embedded host.

#include <lomlisp/lomlisp.h>

#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <iostream>

namespace {

long returned = 0;
int liveBlocks = 0;

}  // namespace

void* acad_malloc(size_t size) {
  ++liveBlocks;
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
    if (chain->restype == RTSTR) acad_free(chain->resval.rstring);
    acad_free(chain);
    chain = next;
  }
  return RTNORM;
}

// Enough for records without a value.
resbuf* acutBuildList(int type, ...) { return acutNewRb(type); }

int acutPrintf(const ACHAR*, ...) { return RTNORM; }

resbuf* acedGetArgs() {
  static resbuf second{nullptr, RTSHORT, {}};
  static resbuf first{&second, RTSHORT, {}};
  first.resval.rint = 40;
  second.resval.rint = 2;
  return &first;
}

int acedRetVal(const resbuf* record) {
  if (record == nullptr || record->restype != RTLONG) return RTERROR;
  returned = record->resval.rlong;
  return RTNORM;
}

int acedRetList(const resbuf*) { return RTERROR; }
int acedGetSym(const ACHAR*, resbuf**) { return RTERROR; }
int acedPutSym(const ACHAR*, resbuf*) { return RTERROR; }
int acedGetVar(const ACHAR*, resbuf*) { return RTERROR; }
int acedSetVar(const ACHAR*, const resbuf*) { return RTERROR; }

int main() {
  {
    CLOMAdsLispVar a;
    CLOMAdsLispVar b;
    CLOMAdsLisp::Parameter(a, b);
    long x = 0;
    long y = 0;
    CLOMAdsLisp::SetQ(x, a);
    CLOMAdsLisp::SetQ(y, b);
    CLOMAdsLisp::Return(x + y);
  }
  if (returned == 42 && liveBlocks == 0) return 0;
  std::cerr << "returned " << returned << ", " << liveBlocks << " blocks live\n";
  return 1;
}
