// A platform of one's own whose functions take nothing from the standard heap that counts: what fails there
// is the library's. It has a few entities, and values for every symbol and variable.
#pragma once

#include <lomlisp/lomlisp.h>

#include <string>

namespace lomlisp::test {

struct Platform {
  resbuf* arguments;
  // What was handed over since the last Forget: results, symbols, entities.
  std::string taken;
  // Selection sets that nobody has freed.
  int openSets;
};

Platform& ThePlatform();

void Forget();

// The members of a list as the arguments of a call, as long as the object lives.
class Arguments {
 public:
  explicit Arguments(const CLOMAdsLispVar& list);
  ~Arguments();
  Arguments(const Arguments&) = delete;
  Arguments& operator=(const Arguments&) = delete;

 private:
  ADSList m_chain;
};

// The name of an entity, from 1.
CLOMAdsLispVar EntityName(int number);

// The types of a chain with their numbers and texts.
std::string Described(const resbuf* chain);

}  // namespace lomlisp::test
