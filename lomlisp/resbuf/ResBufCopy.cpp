#include <lomlisp/resbuf/BinaryData.h>
#include <lomlisp/resbuf/ResBuf.h>
#include <lomlisp/resbuf/messages.h>

using namespace lomlisp;

namespace {

constexpr const wchar_t* kFunction = L"ResBuf::copyToAcadResBuf";

}  // namespace

resbuf* ResBuf::copyToAcadResBuf(const resbuf* record) {
  if (record == nullptr) return nullptr;
  const bool baseIsText = DxfType(record->restype) == RTSTR;
  resbuf* const copy = acutNewRb(record->restype);
  if (copy == nullptr) {
    acutPrintf(baseIsText ? messages::CannotMakeTextRecord : messages::CannotMakeRecord, kFunction);
    return nullptr;
  }
  copy->restype = record->restype;
  copy->resval = record->resval;
  copy->rbnext = nullptr;
  // acutRelRb releases the text of RTDXF0 too, so the copy needs one of its own.
  if (!baseIsText && record->restype != RTDXF0) return copy;
  if (!CopyContent(*copy)) {
    acutPrintf(messages::CannotMakeText, kFunction);
    acutRelRb(copy);
    return nullptr;
  }
  return copy;
}

resbuf* ResBuf::copyToAcadResBufList(const resbuf* chain) {
  resbuf* first = nullptr;
  resbuf** link = &first;
  for (; chain != nullptr; chain = chain->rbnext) {
    *link = copyToAcadResBuf(chain);
    if (*link == nullptr) {
      if (first != nullptr) acutRelRb(first);
      return nullptr;
    }
    link = &(*link)->rbnext;
  }
  return first;
}
