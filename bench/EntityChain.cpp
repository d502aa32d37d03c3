#include <bench/EntityChain.h>

#include <lomlisp/platform/suite.h>

#include <string>

namespace {

wchar_t* PlatformText(const std::wstring& text) {
  auto* const copy = static_cast<wchar_t*>(acad_malloc((text.size() + 1) * sizeof(wchar_t)));
  text.copy(copy, text.size());
  copy[text.size()] = 0;
  return copy;
}

resbuf* NewGroup(short code) {
  resbuf* const record = acutNewRb(code);
  switch (DxfType(code)) {
    case RTSTR:
      record->resval.rstring = PlatformText(L"text of group " + std::to_wstring(code));
      break;
    case RT3DPOINT:
      record->resval.rpoint[0] = 1.5;
      break;
    case RTREAL:
      record->resval.rreal = 2.5;
      break;
    case RTENAME:
      record->resval.rlname[0] = 77;
      break;
    default:
      record->resval.rint = 3;
      break;
  }
  return record;
}

// Common groups in turn, then extended data.
short CodeAt(int position, int groups) {
  constexpr short kCommon[] = {0, 8, 10, 40, 62, 330};
  const int firstExtended = groups / 7 * 6;
  if (position < firstExtended) return kCommon[position % 6];
  if (position == firstExtended) return -3;
  return position == firstExtended + 1 ? 1001 : 1000;
}

}  // namespace

resbuf* NewEntityChain(int groups) {
  resbuf* first = nullptr;
  resbuf** link = &first;
  for (int i = 0; i < groups; ++i) {
    *link = NewGroup(CodeAt(i, groups));
    link = &(*link)->rbnext;
  }
  return first;
}
