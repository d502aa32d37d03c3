// Looking at the host: its memory, and the calls of its platform functions.
#include <shell/functions/Program.h>

#include <shell/Interpreter.h>
#include <shell/functions/Arguments.h>

#include <embedded/Host.h>
#include <embedded/Nesting.h>
#include <embedded/Text.h>

#include <algorithm>
#include <span>

namespace lomlisp::shell {

namespace {

using embedded::Block;
using embedded::Chain;
using embedded::Host;
using embedded::LoggedCall;
using embedded::Mark;

constexpr size_t kShownBlocks = 20;

std::string BlockText(const Block& block) {
  std::string text = "  " + (block.function.empty() ? std::string("(no function)") : block.function) + ": " +
                     block.kind + ", " + std::to_string(block.bytes) + " bytes";
  return block.place.empty() ? text : text + ", by " + block.place;
}

// (memory) gives (blocks bytes).
Chain Memory(Report& report) {
  const embedded::Balance live = ShowMemory(report);
  return {Mark(RTLB), IntegerItem(static_cast<int>(live.blocks)).front(),
          IntegerItem(static_cast<int>(live.bytes)).front(), Mark(RTLE)};
}

std::wstring StatusText(int status) {
  switch (status) {
    case RTNORM:
      return L"RTNORM";
    case RTERROR:
      return L"RTERROR";
    case RTCAN:
      return L"RTCAN";
    case RTREJ:
      return L"RTREJ";
    case RTFAIL:
      return L"RTFAIL";
    case RTKWORD:
      return L"RTKWORD";
    case RTNONE:
      return L"RTNONE";
    default:
      return std::to_wstring(status);
  }
}

// acdbEntGetX <Entity name: 2f> -> RTNORM (0 . "LINE") ...
void ShowCall(const LoggedCall& call) {
  std::wstring line = L"; " + embedded::FromUtf8(call.function);
  if (!call.name.empty()) line += L" \"" + call.name + L"\"";
  for (const Chain& chain : call.chains) line += L" " + (chain.empty() ? L"null" : embedded::ToText(chain));
  line += L" -> " + StatusText(call.status);
  if (call.result && !call.result->empty()) line += L" " + embedded::ToText(*call.result);
  if (call.objection) line += L": " + embedded::FromUtf8(*call.objection);
  embedded::Console& console = Host::Instance().console;
  if (!console.IsAtLineStart()) console.Write(L"\n");
  console.Write(line + L"\n");
}

Chain TraceHost(const Arguments& arguments) {
  embedded::CallLog& log = Host::Instance().log;
  if (IsNil(arguments[0]))
    log.Observe(nullptr);
  else
    log.Observe(ShowCall);
  return arguments[0];
}

}  // namespace

embedded::Balance ShowMemory(Report& report) {
  Host& host = Host::Instance();
  host.ledger.CheckGuards();
  const embedded::Balance live = host.ledger.Live();
  std::string text =
      "Memory: " + std::to_string(live.blocks) + " blocks, " + std::to_string(live.bytes) + " bytes\n";
  const std::vector<Block> blocks = host.ledger.LeaksSince(0);
  const size_t shown = std::min(blocks.size(), kShownBlocks);
  for (const Block& block : std::span(blocks).first(shown)) text += BlockText(block) + "\n";
  if (shown < blocks.size()) text += "  ... and " + std::to_string(blocks.size() - shown) + " more\n";
  host.console.Write(embedded::FromUtf8(text));
  for (const std::string& fault : host.ledger.TakeFaults()) Blame(report, fault);
  return live;
}

void DefineDiagnostics(Report& report) {
  Interpreter& lisp = Interpreter::Instance();
  lisp.Define("memory", [&report](const Arguments&) { return Memory(report); });
  lisp.Define("trace-host", TraceHost);
}

}  // namespace lomlisp::shell
