// Where a session's lines come from: a terminal, a file or pipe, or nowhere.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lomlisp::shell {

class Input {
 public:
  enum class Kind { Terminal, Pipe, Nobody };

  explicit Input(Kind kind);

  Kind From() const { return m_kind; }

  // A line without its end; nothing at the end of input, and from nobody. At a terminal, with line editing
  // behind the prompt; after an interrupt "", and WasInterrupted() holds until it is forgotten. Otherwise the
  // prompt and the line are shown.
  std::optional<std::wstring> ReadLine(std::wstring_view prompt);
  // Lines that come before all others.
  void Feed(std::wstring_view line) { m_fed.emplace_back(line); }

  // Told what was read behind which prompt.
  std::function<void(std::wstring_view prompt, std::wstring_view line, bool isVisible)> onLine;

 private:
  std::optional<std::wstring> ReadPipe();
  std::optional<std::wstring> ReadTerminal(std::wstring_view prompt);

  Kind m_kind;
  std::deque<std::wstring> m_fed;
};

}  // namespace lomlisp::shell
