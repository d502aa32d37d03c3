// Making chains by hand, as fast as the platform allows.
#pragma once

#include <lomlisp/platform/suite.h>

#include <cwchar>
#include <memory>
#include <utility>

struct ReleaseRecords {
  void operator()(resbuf* chain) const { acutRelRb(chain); }
};
using OwnedChain = std::unique_ptr<resbuf, ReleaseRecords>;

inline wchar_t* CopyOfText(const wchar_t* text, size_t length) {
  auto* const copy = static_cast<wchar_t*>(acad_malloc((length + 1) * sizeof(wchar_t)));
  std::wmemcpy(copy, text, length);
  copy[length] = 0;
  return copy;
}

// A chain that grows at its end.
class ChainBuilder {
 public:
  resbuf& Append(short type) {
    resbuf* const record = acutNewRb(type);
    (m_last == nullptr ? m_first : m_last->rbnext) = record;
    m_last = record;
    return *record;
  }
  OwnedChain Take() {
    m_last = nullptr;
    return OwnedChain(std::exchange(m_first, nullptr));
  }

 private:
  resbuf* m_first = nullptr;
  resbuf* m_last = nullptr;
};
