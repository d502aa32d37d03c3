#include <shell/functions/Modules.h>

#include <shell/Interpreter.h>
#include <shell/Values.h>
#include <shell/functions/Arguments.h>

#include <embedded/Host.h>
#include <embedded/Nesting.h>
#include <embedded/Text.h>

#include <algorithm>
#include <vector>

namespace lomlisp::shell {

namespace {

using embedded::CallResult;
using embedded::Chain;
using embedded::Host;
using embedded::Mark;

Chain ValueOfCall(const std::wstring& name, const CallResult& result) {
  if (result.status != RTNORM) throw LispError(L"the function returned an error: " + name);
  return result.kind == CallResult::Kind::Void ? Chain{Mark(RTVOID)} : result.value;
}

// (call-host "call-client" name argument ...)
Chain CallClient(Report& report, const Arguments& arguments) {
  Host& host = Host::Instance();
  const std::wstring& name = TextIn(arguments[0]);
  const std::string place = embedded::Utf8(name) + ": ";
  Chain chain;
  for (size_t index = 1; index < arguments.size(); ++index)
    chain.insert(chain.end(), arguments[index].begin(), arguments[index].end());
  ++report.calls[embedded::Utf8(name)];
  if (report.onCall) report.onCall();
  const CallResult result = host.Call(name, chain);
  for (const std::string& error : result.errors) Blame(report, place + error);
  for (const std::string& notice : result.notices)
    host.console.Write(embedded::FromUtf8("; " + place + notice + "\n"));
  return ValueOfCall(name, result);
}

Chain ArxLoad(Report& report, const Arguments& arguments) {
  if (const auto error = LoadModule(embedded::Utf8(TextIn(arguments[0])), report))
    throw LispError(L"ARXLOAD failed: " + embedded::FromUtf8(*error));
  return arguments[0];
}

// A module may be named without its ending, as for loading.
std::string NameOfLoaded(const std::string& name) {
  const std::vector<std::string> names = Host::Instance().modules.Names();
  const bool isWithoutEnding = std::find(names.begin(), names.end(), name + ".so") != names.end();
  return isWithoutEnding ? name + ".so" : name;
}

Chain ArxUnload(Report& report, const Arguments& arguments) {
  const auto error = Host::Instance().modules.Unload(NameOfLoaded(embedded::Utf8(TextIn(arguments[0]))));
  TakeModuleReports(report);
  if (error) throw LispError(L"ARXUNLOAD failed: " + embedded::FromUtf8(*error));
  return arguments[0];
}

Chain Arx() {
  Chain names = {Mark(RTLB)};
  for (const std::string& name : Host::Instance().modules.Names())
    names.push_back(TextItem(embedded::FromUtf8(name)).front());
  names.push_back(Mark(RTLE));
  return names;
}

}  // namespace

void Blame(Report& report, const std::string& text) {
  embedded::Console& console = Host::Instance().console;
  if (!console.IsAtLineStart()) console.Write(L"\n");
  console.Write(embedded::FromUtf8("! " + text + "\n"));
  report.errors.push_back(text);
}

void DefineModuleFunctions(Report& report) {
  Interpreter& lisp = Interpreter::Instance();
  lisp.Define("call-client", [&report](const Arguments& arguments) { return CallClient(report, arguments); });
  lisp.Define("arxload", [&report](const Arguments& arguments) { return ArxLoad(report, arguments); });
  lisp.Define("arxunload", [&report](const Arguments& arguments) { return ArxUnload(report, arguments); });
  lisp.Define("arx", [](const Arguments&) { return Arx(); });
  Host& host = Host::Instance();
  host.ObserveDefinitions([&lisp](const std::wstring& name, bool isDefined) {
    if (isDefined)
      lisp.DefineClient(name);
    else
      lisp.UndefineClient(name);
  });
  host.symbols.KeepIn({[&lisp](std::wstring_view name) { return lisp.Symbol(name); },
                       [&lisp](std::wstring_view name, const Chain& item) { lisp.SetSymbol(name, item); }});
}

std::optional<std::string> LoadModule(const std::filesystem::path& path, Report& report) {
  auto error = Host::Instance().modules.Load(path);
  TakeModuleReports(report);
  return error;
}

void TakeModuleReports(Report& report) {
  for (const std::string& text : Host::Instance().modules.TakeReports()) Blame(report, text);
}

}  // namespace lomlisp::shell
