// Client modules and their functions.
#pragma once

#include <shell/Report.h>

#include <filesystem>
#include <optional>
#include <string>

namespace lomlisp::shell {

// From now on modules' functions are functions of LISP, and its symbols are theirs. `report` outlives that.
void DefineModuleFunctions(Report& report);

// Says why it could not be done.
std::optional<std::string> LoadModule(const std::filesystem::path& path, Report& report);

// Shows and notes what modules did wrong since the last time.
void TakeModuleReports(Report& report);

}  // namespace lomlisp::shell
