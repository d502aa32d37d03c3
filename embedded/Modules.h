// The client modules that are loaded: shared objects with the entry point of platform/modules.h.
//
// A module finds the library and the platform functions in the program that loads it, so that all share
// one copy of either; cmake/Modules.cmake builds both sides.
#pragma once

#include <lomlisp/platform/modules.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lomlisp::embedded {

class Modules {
 public:
  Modules();
  ~Modules();
  Modules(const Modules&) = delete;
  Modules& operator=(const Modules&) = delete;

  // Loads a module and tells it so: first kInitAppMsg, then kLoadDwgMsg. Gives why it could not be done;
  // then nothing of the module is left.
  std::optional<std::string> Load(const std::filesystem::path& path);
  // Tells the module so (kUnloadDwgMsg, kUnloadAppMsg), undefines its functions, and closes it. Gives why it
  // could not be done; then the module stays. `name` is that of the file, without its folder.
  std::optional<std::string> Unload(std::string_view name);
  // The latest first, also those that do not allow it. Not for use in a message or a call.
  void UnloadAll();
  // In the order of their loading.
  std::vector<std::string> Names() const;

  // What modules did wrong outside of calls, a line each, since the last time: errors in messages, memory
  // that their functions did not release before they were unloaded, and misuse of it found then.
  std::vector<std::string> TakeReports();

  // --- For the platform functions ---

  struct Module;
  // The one that handles a message or a call; null when none does.
  Module* Current() const { return m_running.empty() ? nullptr : m_running.back(); }

 private:
  friend class Running;
  Module* Find(std::string_view name) const;
  std::optional<std::string> Start(Module& module);
  void Tell(Module& module, AcRx::AppMsgCode message);
  void Report(const std::string& origin, const std::vector<std::string>& errors);
  void Stop(Module& module);
  std::unique_ptr<Module> Take(Module& module);
  void Close(Module& module);

  std::vector<std::unique_ptr<Module>> m_modules;
  std::vector<Module*> m_running;
  std::vector<std::string> m_reports;
};

}  // namespace lomlisp::embedded
