// One client module, and what it has told the host about itself.
#pragma once

#include <lomlisp/platform/modules.h>

#include <embedded/Host.h>
#include <embedded/SharedObject.h>

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>

namespace lomlisp::embedded {

struct Modules::Module {
  using EntryPoint = decltype(&acrxEntryPoint);
  using Handler = int (*)();

  Module(std::string file, SharedObject opened)
      : name(std::move(file)),
        object(std::move(opened)),
        entry(reinterpret_cast<EntryPoint>(object.Find("acrxEntryPoint"))) {}

  // What the books call the handling of a message.
  std::string BookName(AcRx::AppMsgCode message) const;
  CallResult Send(AcRx::AppMsgCode message);
  // Whether it has become a function of the module; a name that LISP cannot call has not.
  bool Define(const ACHAR* function, short code);
  bool Undefine(const ACHAR* function, short code);

  std::string name;
  SharedObject object;
  EntryPoint entry;
  std::map<int, Handler> handlers;
  std::map<std::wstring, short> codes;  // by the function's folded name
  std::set<std::string> bookNames;      // the names under which its blocks stand in the books
  uint64_t mark = Host::Instance().ledger.Mark();
  int running = 0;  // messages and calls that it handles
  bool isUnlocked = false;

 private:
  int Call(int code);
};

// As long as a module handles a message or a call.
class Running {
 public:
  explicit Running(Modules::Module& module) : m_module(module) {
    ++m_module.running;
    Stack().push_back(&m_module);
  }
  ~Running() {
    Stack().pop_back();
    --m_module.running;
  }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

 private:
  static std::vector<Modules::Module*>& Stack() { return Host::Instance().modules.m_running; }
  Modules::Module& m_module;
};

}  // namespace lomlisp::embedded
