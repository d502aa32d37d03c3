// The functions of the session that are written in C++, by subject. The LISP file of the same name checks the
// arguments and calls them.
#pragma once

#include <shell/Input.h>

namespace lomlisp::shell {

void DefineEntityFunctions();
void DefineSelectionFunctions();
void DefineTableFunctions();
void DefineVariableFunctions();
// `input` outlives them.
void DefineInputFunctions(Input& input);

}  // namespace lomlisp::shell
