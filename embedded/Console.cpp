#include <embedded/Host.h>
#include <embedded/Text.h>

#include <cstdio>
#include <utility>

namespace lomlisp::embedded {

void Console::Write(std::wstring_view text) {
  if (text.empty()) return;
  m_text += text;
  m_isAtLineStart = text.back() == L'\n';
  if (!m_echo) return;
  const std::string bytes = Utf8(text);
  std::fwrite(bytes.data(), 1, bytes.size(), stdout);
}

std::wstring Console::Take() { return std::exchange(m_text, {}); }

void Console::Reset() { *this = Console(); }

}  // namespace lomlisp::embedded
