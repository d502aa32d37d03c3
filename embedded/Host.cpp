#include <embedded/Host.h>

#include <embedded/Session.h>

namespace lomlisp::embedded {

Host::Host() = default;
Host::~Host() = default;

// Never destroyed: static values of the library and of modules free their blocks after main.
Host& Host::Instance() {
  static Host* const host = new Host;
  return *host;
}

void Host::Reset() {
  modules.UnloadAll();
  switches = {};
  console.Reset();
  log.Reset();
  symbols.Reset();
  variables.Reset();
  ledger.Reset();
  answers.Clear();
  CloseDrawing();
  m_functions.clear();
  m_definitionObserver = nullptr;
}

}  // namespace lomlisp::embedded
