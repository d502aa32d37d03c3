#include <lomlisp/resbuf/AtomText.h>
#include <lomlisp/resbuf/ResBuf.h>

#include <algorithm>
#include <iterator>

using namespace lomlisp;

void ResBuf::Print(wchar_t* buf, size_t len) const {
  static wchar_t printed[2048];
  const size_t length = AtomText(*this, NameForm::Long).CopyTo(printed, std::size(printed) - 1);
  printed[length] = 0;
  if (buf == nullptr) {
    acutPrintf(L"%s", printed);
  } else if (len > 0) {
    const size_t copied = (std::min)(length, len - 1);
    std::copy_n(printed, copied, buf);
    buf[copied] = 0;
    buf[len - 1] = 0;
  }
}

unsigned long ResBuf::DebugPrint(int measureOnly, wchar_t*& cursor, unsigned long& remaining) const {
  const AtomText text(*this, NameForm::Short);
  const auto estimate = static_cast<unsigned long>(text.Estimate());
  if (measureOnly != 0 || cursor == nullptr || remaining == 0) return estimate;
  const size_t written = text.CopyTo(cursor, remaining);
  cursor += written;
  remaining -= static_cast<unsigned long>(written);
  if (remaining > 0) *cursor = 0;
  return estimate;
}
