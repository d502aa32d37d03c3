// What the program ends with.
#pragma once

namespace lomlisp::shell {

enum ExitStatus {
  kGood = 0,
  kFailed = 1,         // a form failed, or a module misbehaved
  kBadInvocation = 2,  // the command line, or a file that cannot be read
  kNotWritten = 3,     // a file that cannot be written
  kTimeout = 124       // as timeout(1) has it
};

}  // namespace lomlisp::shell
