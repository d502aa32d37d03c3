// One record of an entity list.
#pragma once

#include <lomlisp/lisp/CLOMAdsLispVar.h>
#include <lomlisp/platform/binary.h>
#include <lomlisp/resbuf/ResBuf.h>

namespace lomlisp {

// A new record with a copy of the value under a DXF code; null when memory runs out.
inline ResBuf* NewDxfGroup(const ResBuf& value, short code) {
  auto* const record = new ResBuf(value);
  if (record == nullptr) return nullptr;
  const bool isPlain = value.Type() != RTSTR && !ResBuf::MayHoldText(value.Type()) &&
                       DxfType(code) != RTSTR && !IsBinary(code);
  if (isPlain)
    record->restype = code;
  else
    record->MakeDXF(code);
  return record;
}

// The same value under another type. Not a ResBuf, which would free the platform's text.
inline resbuf Retyped(const resbuf& record, short type) {
  resbuf copy = record;
  copy.restype = type;
  copy.rbnext = nullptr;
  return copy;
}

// Reads the value of a group into a fresh node.
inline void ReadGroupValue(const resbuf& group, CLOMAdsLispVar::Element& node) {
  if (IsBinary(group.restype)) {
    node->atom = group;
    node->atom.MakeBaseType();
    return;
  }
  const resbuf value = Retyped(group, DxfType(group.restype));
  CLOMAdsLispVar::ADS_Atom(&value, node);
}

}  // namespace lomlisp
