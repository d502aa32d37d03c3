// LISP values in the form in which the host hands them to a module.
#pragma once

#include <embedded/Host.h>

namespace lomlisp::embedded {

// nil for (), dots and points as the switches say.
Chain Shaped(Chain value, const Switches& switches);

}  // namespace lomlisp::embedded
