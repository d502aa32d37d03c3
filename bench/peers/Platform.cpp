#include <bench/peers/Platform.h>

#include <lomlisp/platform/suite.h>

#include <cstdarg>
#include <cstdlib>
#include <cwchar>
#include <initializer_list>

void* acad_malloc(size_t size) { return std::malloc(size); }
void acad_free(void* block) { std::free(block); }

resbuf* acutNewRb(int type) {
  auto* const record = static_cast<resbuf*>(std::calloc(1, sizeof(resbuf)));
  if (record != nullptr) record->restype = static_cast<short>(type);
  return record;
}

int acutRelRb(resbuf* chain) {
  while (chain != nullptr) {
    resbuf* const next = chain->rbnext;
    if (DxfType(chain->restype) == RTSTR) std::free(chain->resval.rstring);
    std::free(chain);
    chain = next;
  }
  return RTNORM;
}

// Enough for records without a value.
resbuf* acutBuildList(int type, ...) { return acutNewRb(type); }
// A message means that something is wrong with the measurement.
int acutPrintf(const ACHAR* format, ...) {
  std::fwprintf(stderr, L"printed: %ls\n", format);
  std::abort();
}

int acedGetSym(const ACHAR*, resbuf**) { return RTERROR; }
int acedPutSym(const ACHAR*, resbuf*) { return RTERROR; }

namespace {

wchar_t argumentText[] = L"text";

// The arguments, once for all calls.
resbuf* Arguments() {
  static resbuf records[9] = {};
  static resbuf* const first = [] {
    size_t count = 0;
    for (const short type : {RTSHORT, RTREAL, RTSTR, RTLB, RTSHORT, RTSHORT, RTSHORT, RTLE, RTSHORT}) {
      resbuf& record = records[count++];
      record.restype = type;
      if (count < 9) record.rbnext = &records[count];
      if (type == RTSHORT) record.resval.rint = static_cast<short>(count);
    }
    records[1].resval.rreal = 2.5;
    records[2].resval.rstring = argumentText;
    return &records[0];
  }();
  return first;
}

resbuf* returned = nullptr;

resbuf* Copied(const resbuf& record) {
  resbuf* const copy = acutNewRb(record.restype);
  copy->resval = record.resval;
  if (DxfType(record.restype) == RTSTR) {
    const size_t size = std::wcslen(record.resval.rstring) + 1;
    copy->resval.rstring = static_cast<wchar_t*>(std::malloc(size * sizeof(wchar_t)));
    std::wmemcpy(copy->resval.rstring, record.resval.rstring, size);
  }
  return copy;
}

void AddRecord(const resbuf& record, Digest& digest) {
  digest.Integer(record.restype);
  switch (DxfType(record.restype)) {
    case RTSTR:
      return digest.Characters(record.resval.rstring);
    case RTREAL:
      return digest.Real(record.resval.rreal);
    case RT3DPOINT:
      for (const double coordinate : record.resval.rpoint) digest.Real(coordinate);
      return;
    case RTENAME:
      return digest.Integer(record.resval.rlname[0]);
    case RTSHORT:
      if (record.restype != -3) digest.Integer(record.resval.rint);
      return;
    default:
      return;
  }
}

}  // namespace

resbuf* acedGetArgs() { return Arguments(); }

// As the chain stays the caller's, the platform takes a copy.
int acedRetList(const resbuf* chain) {
  acutRelRb(returned);
  returned = nullptr;
  for (resbuf** link = &returned; chain != nullptr; chain = chain->rbnext) {
    *link = Copied(*chain);
    link = &(*link)->rbnext;
  }
  return RTNORM;
}

int acedRetVal(const resbuf* record) { return acedRetList(record); }

const resbuf* Returned() { return returned; }

Digest DigestOfChain(const resbuf* chain) {
  Digest digest;
  for (; chain != nullptr; chain = chain->rbnext) AddRecord(*chain, digest);
  return digest;
}
