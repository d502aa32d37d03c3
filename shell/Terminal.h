// The line editor of a terminal.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace lomlisp::shell {

// Gives the words that can stand where one is begun, in any case.
using Completer = std::function<std::vector<std::string>(const std::string& beginning)>;

class Terminal {
 public:
  // Reads the history of earlier sessions.
  static void Start(Completer completer);
  // Writes the history.
  static void Finish();

  // A line without its end; nothing at the end of input. After an interrupt "", and WasInterrupted()
  // holds until it is forgotten.
  static std::optional<std::string> ReadLine(const std::string& prompt);
  static void Remember(const std::string& line);
};

}  // namespace lomlisp::shell
