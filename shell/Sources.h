// The LISP files of the dialect and of the session's functions, as they were when the program was built.
#pragma once

#include <span>

namespace lomlisp::shell {

struct LispSource {
  const char* name;
  const char* text;
};

// In the order of their loading.
std::span<const LispSource> LispSources();

}  // namespace lomlisp::shell
