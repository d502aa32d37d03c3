// The printed text of one record.
#pragma once

#include <lomlisp/platform/ads.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace lomlisp {

// How the names of entities and selection sets are written.
enum class NameForm { Long, Short };

// The text of a record by its base type, without a copy of the record's own text, which stands between quotes.
// Numbers are written with the C standard's result for "%f", "%d", "%lx", ..., whatever the locale. Of the
// bytes of a binary group only the first 500 are written, four times what the host puts into one. Valid while
// the record lives unchanged.
class AtomText {
 public:
  AtomText(const resbuf& record, NameForm nameForm);
  AtomText(const AtomText&) = delete;
  AtomText& operator=(const AtomText&) = delete;

  size_t Length() const { return m_body.size() + (m_isQuoted ? 2 : 0); }

  // The length that DebugPrint promises for a record. For names it counts the long form, and it does not grow
  // with the digits of a number.
  size_t Estimate() const { return m_estimate != 0 ? m_estimate : Length(); }

  // Writes the first `count` characters, at most all, without a terminating zero; gives how many.
  size_t CopyTo(wchar_t* target, size_t count) const {
    if (!m_isQuoted) return m_body.copy(target, count);
    if (count == 0) return 0;
    *target = kQuote;
    const size_t written = 1 + m_body.copy(target + 1, count - 1);
    if (written == count) return count;
    target[written] = kQuote;
    return written + 1;
  }

  void AppendTo(std::wstring& text) const {
    if (m_isQuoted) text += kQuote;
    text += m_body;
    if (m_isQuoted) text += kQuote;
  }

 private:
  void Put(std::wstring_view text);
  void PutReal(double value);
  void PutInteger(__int64 value);
  void PutHandle(__int64 word);
  void PutBytes(std::string_view bytes);
  void PutPoint(const ads_real* point, int dimensions);
  void EndAt(const wchar_t* end) { m_length = static_cast<size_t>(end - m_number.data()); }

  static constexpr wchar_t kQuote = L'"';

  bool m_isQuoted = false;
  std::wstring_view m_body;
  // The longest number text is a point of three reals of 309 digits before the decimal point.
  std::array<wchar_t, 1000> m_number;
  size_t m_length = 0;
  size_t m_estimate = 0;  // 0: the length
};

}  // namespace lomlisp
