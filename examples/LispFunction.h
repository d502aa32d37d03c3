// A function of a client module under the name by which LISP calls it.
#pragma once

struct LispFunction {
  const wchar_t* name;
  // Takes its arguments from the host, returns its result to it, and gives a status code.
  int (*call)();
};
