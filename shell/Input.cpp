#include <shell/Input.h>

#include <shell/Terminal.h>

#include <embedded/Text.h>

#include <iostream>
#include <sstream>

namespace lomlisp::shell {

Input::Input(Kind kind) : m_kind(kind) {}

std::optional<std::wstring> Input::ReadPipe() {
  if (!m_fed.empty()) {
    std::wstring line = std::move(m_fed.front());
    m_fed.pop_front();
    return line;
  }
  std::string line;
  if (m_kind == Kind::Nobody || !std::getline(std::cin, line)) return std::nullopt;
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return embedded::FromUtf8(line);
}

// What was pasted has many lines, which are as many answers.
std::optional<std::wstring> Input::ReadTerminal(std::wstring_view prompt) {
  const auto bytes = Terminal::ReadLine(embedded::Utf8(prompt));
  if (!bytes) return std::nullopt;
  std::wistringstream lines(embedded::FromUtf8(*bytes));
  std::wstring first;
  std::getline(lines, first);
  for (std::wstring line; std::getline(lines, line);) Feed(line);
  return first;
}

std::optional<std::wstring> Input::ReadLine(std::wstring_view prompt) {
  const bool isEdited = m_fed.empty() && m_kind == Kind::Terminal;
  auto line = isEdited ? ReadTerminal(prompt) : ReadPipe();
  if (line && onLine) onLine(prompt, *line, isEdited);
  return line;
}

}  // namespace lomlisp::shell
