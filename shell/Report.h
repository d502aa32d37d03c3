// What happened in a session, as its end tells it.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace lomlisp::shell {

struct Report {
  std::map<std::string, uint64_t> calls;  // of client functions
  std::function<void()> onCall;           // told before each of them; null for nobody
  std::vector<std::string> errors;        // of forms and of modules, a line each
  uint64_t failedForms = 0;
};

// Shows that a module misbehaved, and notes it.
void Blame(Report& report, const std::string& text);

}  // namespace lomlisp::shell
