// Runs a script of LISP calls against the example modules in the embedded host, and shows each call, what
// the module printed, what came back, what changed in the drawing, and the memory balance.

#include <embedded/Host.h>
#include <embedded/Text.h>
#include <embedded/drawing/Drawing.h>
#include <examples/DrawingChanges.h>
#include <examples/parts/Parts.h>
#include <examples/plan/Plan.h>

#include <algorithm>
#include <fstream>
#include <iostream>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace {

using lomlisp::embedded::DxfError;
using lomlisp::embedded::Host;

// As many of the changes as one likes to read.
constexpr size_t kShownChanges = 12;

// Messages of the host are plain ASCII.
std::wstring Widen(const std::string& text) { return std::wstring(text.begin(), text.end()); }

// Whether everything about the call was right.
bool RunLine(Host& host, const std::wstring& line) {
  host.console.Write(L"\n> " + line + L"\n");
  const auto result = host.Evaluate(line);
  // Some messages end without a line break.
  if (host.console.Text().back() != L'\n') host.console.Write(L"\n");
  host.console.Write(L"= " + result.Text() + L"\n");
  for (const std::string& error : result.errors) host.console.Write(L"! " + Widen(error) + L"\n");
  return result.errors.empty();
}

bool RunScript(Host& host, std::ifstream& script) {
  bool good = true;
  for (std::string line; std::getline(script, line);)
    if (!line.empty() && line[0] != ';') good = RunLine(host, lomlisp::embedded::FromUtf8(line)) && good;
  return good;
}

void ReportChanges(Host& host, const DrawingSnapshot& before) {
  const std::vector<std::wstring> changes = before.ChangesSince(host.CurrentDrawing());
  host.console.Write(L"\nChanges: " + std::to_wstring(changes.size()) + L"\n");
  const size_t shown = std::min(changes.size(), kShownChanges);
  for (const std::wstring& change : std::span(changes).first(shown))
    host.console.Write(L"  " + change + L"\n");
  if (shown < changes.size())
    host.console.Write(L"  ... and " + std::to_wstring(changes.size() - shown) + L" more\n");
}

bool ReportMemory(Host& host, const lomlisp::embedded::Balance& before) {
  host.ledger.CheckGuards();
  const auto live = host.ledger.Live();
  host.console.Write(L"\nMemory: " + std::to_wstring(live.blocks - before.blocks) + L" blocks, " +
                     std::to_wstring(live.bytes - before.bytes) + L" bytes not released\n");
  const auto faults = host.ledger.TakeFaults();
  for (const std::string& fault : faults) host.console.Write(L"! " + Widen(fault) + L"\n");
  return live == before && faults.empty();
}

// Whether there was none.
bool ReportError(const char* file, const std::optional<DxfError>& error) {
  if (!error) return true;
  std::cerr << file;
  if (error->line > 0) std::cerr << ":" << error->line;
  std::cerr << ": " << error->message << "\n";
  return false;
}

void DefineFunctions(Host& host) {
  for (const LispFunction& function : parts::Functions()) host.Define(function.name, function.call);
  for (const LispFunction& function : plan::Functions()) host.Define(function.name, function.call);
}

bool RunOnDrawing(Host& host, std::ifstream& script, const char* drawing, const char* saved) {
  if (!ReportError(drawing, host.Open(drawing))) return false;
  const DrawingSnapshot before(host.CurrentDrawing());
  host.console.Write(L"Opened: " + std::to_wstring(before.Size()) + L" entities\n");
  const bool good = RunScript(host, script);
  ReportChanges(host, before);
  return ReportError(saved, host.Save(saved)) && good;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2 && argc != 4) {
    std::cerr << "usage: run SCRIPT [DRAWING SAVED]\n";
    return 2;
  }
  std::ifstream script(argv[1]);
  if (!script) {
    std::cerr << argv[1] << ": cannot be read\n";
    return 2;
  }

  Host& host = Host::Instance();
  host.console.Echo(true);
  DefineFunctions(host);
  const auto before = host.ledger.Live();
  const bool good = argc == 4 ? RunOnDrawing(host, script, argv[2], argv[3]) : RunScript(host, script);
  return ReportMemory(host, before) && good ? 0 : 1;
}
