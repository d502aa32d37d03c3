// Runs a script of LISP calls against the example module in the embedded host, and shows each call, what the
// module printed, what came back, and the memory balance.

#include <embedded/Host.h>
#include <examples/parts/Parts.h>

#include <fstream>
#include <iostream>
#include <string>

namespace {

using lomlisp::embedded::Host;

// Script files are plain ASCII.
std::wstring Widen(const std::string& text) { return std::wstring(text.begin(), text.end()); }

// Whether everything about the call was right.
bool RunLine(Host& host, const std::string& line) {
  host.console.Write(Widen("\n> " + line + "\n"));
  const auto result = host.Evaluate(Widen(line));
  // Some messages end without a line break.
  if (host.console.Text().back() != L'\n') host.console.Write(L"\n");
  host.console.Write(L"= " + result.Text() + L"\n");
  for (const std::string& error : result.errors) host.console.Write(L"! " + Widen(error) + L"\n");
  return result.errors.empty();
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

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: run SCRIPT\n";
    return 2;
  }
  std::ifstream script(argv[1]);
  if (!script) {
    std::cerr << argv[1] << ": cannot be read\n";
    return 2;
  }

  Host& host = Host::Instance();
  host.console.Echo(true);
  for (const parts::LispFunction& function : parts::Functions()) host.Define(function.name, function.call);
  const auto before = host.ledger.Live();

  bool good = true;
  for (std::string line; std::getline(script, line);)
    if (!line.empty() && line[0] != ';') good = RunLine(host, line) && good;
  return ReportMemory(host, before) && good ? 0 : 1;
}
