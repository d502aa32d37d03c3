// What the session gives beyond the host's own LISP.
#pragma once

#include <shell/Report.h>

#include <embedded/Ledger.h>

#include <filesystem>
#include <optional>
#include <string>

namespace lomlisp::shell {

// (memory), (trace-host T). `report` outlives them.
void DefineDiagnostics(Report& report);

// Shows what modules have of the platform's heap, and gives it. Misuse that came to light is noted.
embedded::Balance ShowMemory(Report& report);

// (open-drawing "a.dxf"), (save-drawing "b.dxf"), (new-drawing), (changes), (draw).
void DefineDrawingFunctions();

// These say why it could not be done, with the file and the line.
std::optional<std::string> OpenDrawing(const std::filesystem::path& path);
std::optional<std::string> SaveDrawing(const std::filesystem::path& path);

}  // namespace lomlisp::shell
