// What a user enters at the prompt.
#pragma once

#include <shell/Session.h>

namespace lomlisp::shell {

// Reads and carries out what is entered until the end of input, or QUIT: forms, !variables and names of
// commands. False when it came from no terminal and something failed.
bool RunPrompt(Session& session);

}  // namespace lomlisp::shell
