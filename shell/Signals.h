// Interrupts by the user, crashes, and the time limit.
#pragma once

#include <string>

namespace lomlisp::shell {

// From now on an interrupt by the user ends what is being evaluated. Three of them in a row, which no
// evaluation has taken, end the program.
void HandleInterrupts();
bool WasInterrupted();
void ForgetInterrupt();

// From now on a crash says in which function of a module it was, before the program ends by it. Where crashes
// are looked after already, as under a sanitizer, it stays so.
void HandleCrashes();

// Ends what is being evaluated after so many seconds from now, and what comes after it. Where that does not
// help within two more seconds, writes the last words to standard output and ends the program with kTimeout.
void SetTimeLimit(unsigned seconds);
void SetLastWords(std::string words);
void LiftTimeLimit();
bool IsTimeOver();

}  // namespace lomlisp::shell
