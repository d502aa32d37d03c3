#include <shell/Session.h>

#include <shell/Interpreter.h>
#include <shell/ScriptText.h>
#include <shell/Signals.h>
#include <shell/functions/Functions.h>
#include <shell/functions/Modules.h>
#include <shell/functions/Program.h>

#include <embedded/Host.h>
#include <embedded/Text.h>

#include <unistd.h>

#include <cstdio>

namespace lomlisp::shell {

namespace {

using embedded::Chain;
using embedded::Host;

Input::Kind InputKind(const Options& options) {
  if (options.isBatch) return Input::Kind::Nobody;
  return isatty(STDIN_FILENO) != 0 ? Input::Kind::Terminal : Input::Kind::Pipe;
}

std::string Joined(const std::vector<std::wstring>& names) {
  std::string joined;
  for (const std::wstring& name : names) joined += (joined.empty() ? "" : " ") + embedded::Utf8(name);
  return joined;
}

}  // namespace

Session::Session(const Options& options) : m_input(InputKind(options)), m_keepsGoing(options.keepsGoing) {
  Host& host = Host::Instance();
  host.console.Echo(!options.isBatch);
  host.log.Enable(false);
  m_input.onLine = [this](std::wstring_view prompt, std::wstring_view line, bool isVisible) {
    const std::wstring text = std::wstring(prompt) + std::wstring(line) + L"\n";
    isVisible ? Record(text) : Host::Instance().console.Write(text);
  };
  if (options.transcript) {
    m_transcriptPath = *options.transcript;
    m_transcript.open(m_transcriptPath, std::ios::binary | std::ios::trunc);
  }

  Interpreter& lisp = Interpreter::Instance();
  lisp.Define("write", [](const std::vector<Chain>& arguments) {
    Host::Instance().console.Write(arguments.front().front().text);
    return arguments.front();
  });
  DefineEntityFunctions();
  DefineSelectionFunctions();
  DefineTableFunctions();
  DefineVariableFunctions();
  DefineInputFunctions(m_input);
  DefineModuleFunctions(m_report);
  DefineDiagnostics(m_report);
  DefineDrawingFunctions();
}

Session::~Session() { WriteTranscript(); }

bool Session::RunScript(const std::filesystem::path& path) {
  const auto text = ReadScript(path);
  if (!text) {
    ShowError(path.string() + ": cannot be read");
    return false;
  }
  Interpreter::Instance().AddToSearchPath((std::filesystem::absolute(path).parent_path() / "").string());
  return RunForms(*text, path.string());
}

bool Session::RunForms(std::wstring_view text, const std::string& file) {
  bool isGood = true;
  for (const FormPlace& form : Interpreter::Instance().Forms(text)) {
    if (IsTimeOver() || (!isGood && !m_keepsGoing)) return false;
    const std::wstring_view source = text.substr(form.begin, form.end - form.begin);
    StartLine();
    Host::Instance().console.Write(std::wstring(kPrompt) + std::wstring(source) + L"\n");
    isGood = Evaluate(source, file, form.line) && isGood;
  }
  return isGood;
}

bool Session::Evaluate(std::wstring_view text, const std::string& file, int line) {
  ForgetInterrupt();
  Flush();
  const Outcome outcome = Interpreter::Instance().Evaluate(text, file, line);
  if (WasInterrupted()) LeaveInterruptedLine();
  ShowOutcome(outcome);
  if (!outcome.error) return true;
  const std::string place = outcome.place.empty() ? std::string() : embedded::Utf8(outcome.place) + ": ";
  m_report.errors.push_back(place + embedded::Utf8(*outcome.error));
  ++m_report.failedForms;
  return false;
}

// A terminal shows the interrupt as ^C.
void Session::LeaveInterruptedLine() {
  ForgetInterrupt();
  if (m_input.From() == Input::Kind::Terminal) std::fputc('\n', stdout);
}

// The script's own *error* has shown what it wants to be seen.
void Session::ShowOutcome(const Outcome& outcome) {
  if (!outcome.error) {
    if (!outcome.value.empty()) Show(embedded::Utf8(outcome.value));
    return;
  }
  if (outcome.isTold) return StartLine();
  Show("; error: " + embedded::Utf8(*outcome.error));
  if (!outcome.calls.empty()) Show("; in: " + Joined(outcome.calls));
  if (!outcome.place.empty()) Show("; at: " + embedded::Utf8(outcome.place));
}

void Session::StartLine() {
  embedded::Console& console = Host::Instance().console;
  if (!console.IsAtLineStart()) console.Write(L"\n");
}

void Session::Show(const std::string& line) {
  StartLine();
  Host::Instance().console.Write(embedded::FromUtf8(line) + L"\n");
}

void Session::ShowError(const std::string& text) {
  Show(text);
  m_report.errors.push_back(text);
}

// What was shown must be seen even if a module brings the program down.
void Session::Flush() {
  WriteTranscript();
  m_transcript.flush();
  std::fflush(stdout);
}

void Session::WriteTranscript() {
  const std::string text = embedded::Utf8(Host::Instance().console.Take());
  if (m_transcript.is_open()) m_transcript << text;
}

void Session::Record(std::wstring_view text) {
  WriteTranscript();
  if (m_transcript.is_open()) m_transcript << embedded::Utf8(text);
}

std::vector<std::string> Session::CloseOutput() {
  WriteTranscript();
  std::vector<std::string> errors;
  if (!m_transcriptPath.empty()) {
    m_transcript.close();
    if (!m_transcript) errors.push_back(m_transcriptPath.string() + ": cannot be written");
  }
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
    errors.emplace_back("standard output: cannot be written");
  return errors;
}

}  // namespace lomlisp::shell
