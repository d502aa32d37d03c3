// The least that somebody needs who brings the platform functions himself: a call that adds up its
// arguments, without the embedded host.

#include <lomlisp/lomlisp.h>
#include <tests/own_platform/Memory.h>

#include <iostream>

namespace {

long returned = 0;

}  // namespace

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
  if (returned == 42 && LiveBlocks() == 0) return 0;
  std::cerr << "returned " << returned << ", " << LiveBlocks() << " blocks live\n";
  return 1;
}
