// lomsh: a LISP session with a drawing and client modules.
#include <shell/Batch.h>
#include <shell/ExitStatus.h>
#include <shell/Options.h>
#include <shell/Prompt.h>
#include <shell/Session.h>
#include <shell/Signals.h>
#include <shell/functions/Modules.h>
#include <shell/functions/Program.h>

#include <embedded/Host.h>
#include <embedded/Text.h>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <iostream>
#include <system_error>

namespace {

using lomlisp::embedded::Drawing;
using lomlisp::embedded::Host;
using namespace lomlisp::shell;

uint64_t EntityCount() {
  const Drawing& drawing = Host::Instance().CurrentDrawing();
  const auto& members = drawing.Entities().members;
  return static_cast<uint64_t>(
      std::count_if(members.begin(), members.end(), [](const auto* entity) { return !entity->isErased; }));
}

bool IsReadable(const std::string& file) {
  std::error_code ignored;
  return access(file.c_str(), R_OK) == 0 && !std::filesystem::is_directory(file, ignored);
}

// From the drawing that is opened to the report at the end.
class Run {
 public:
  explicit Run(const Options& options) : m_options(options), m_session(options) {
    m_result.file = options.drawing ? options.drawing->string() : std::string();
  }

  int All() {
    m_status = Prepare();
    m_result.entitiesBefore = EntityCount();
    if (m_status == kGood) Work();
    m_result.entitiesAfter = EntityCount();
    Finish();
    return m_status;
  }

 private:
  int Prepare() {
    for (const Options::Work& work : m_options.work)
      if (work.isFile && !IsReadable(work.text)) return Refuse(work.text + ": cannot be read");
    if (m_options.drawing)
      if (const auto error = OpenDrawing(*m_options.drawing)) return Refuse(*error);
    for (const auto& module : m_options.modules)
      if (const auto error = LoadModule(module, m_session.Results())) return Refuse(*error);
    return kGood;
  }

  // The message is for whoever started the program, too.
  int Refuse(const std::string& text) {
    Complain(text);
    return kBadInvocation;
  }

  void Complain(const std::string& text) {
    std::cerr << "lomsh: " << text << "\n";
    m_session.Results().errors.push_back(text);
  }

  void Work() {
    bool isGood = RunScripts();
    if (isGood || m_options.isInteractive) isGood = RunAtPrompt() && isGood;
    if (!isGood && m_status == kGood) m_status = kFailed;
    if (m_options.save) Save(isGood);
  }

  bool RunScripts() {
    if (m_options.timeout > 0) {
      PrepareLastWords();
      SetTimeLimit(m_options.timeout);
    }
    bool isGood = true;
    for (const Options::Work& work : m_options.work) {
      if (!isGood && !m_options.keepsGoing) break;
      isGood = (work.isFile ? m_session.RunScript(work.text)
                            : m_session.RunForms(lomlisp::embedded::FromUtf8(work.text))) &&
               isGood;
    }
    LiftTimeLimit();
    if (!IsTimeOver()) return isGood;
    Complain("the time limit of " + std::to_string(m_options.timeout) + " seconds is over");
    m_status = kTimeout;
    return false;
  }

  // What a batch leaves behind when it must be killed.
  void PrepareLastWords() {
    if (!m_options.isBatch) return;
    const auto update = [this] {
      BatchResult result = m_result;
      result.status = kTimeout;
      result.seconds = m_options.timeout;
      Report report = m_session.Results();
      report.errors.emplace_back("the time limit is over, and what was called does not end");
      SetLastWords(BatchLine(result, report));
    };
    m_session.Results().onCall = update;
    update();
  }

  bool RunAtPrompt() {
    const bool isWanted = m_options.isInteractive || m_options.work.empty();
    if (!isWanted || m_options.isBatch) return true;
    const size_t known = m_session.Results().errors.size();
    const bool isGood = RunPrompt(m_session);
    // A user at a terminal has seen the errors.
    if (m_session.UserInput().From() == Input::Kind::Terminal) m_session.Results().errors.resize(known);
    return isGood;
  }

  void Save(bool isGood) {
    if (!isGood) return Complain("not saved, since something failed: " + m_options.save->string());
    const auto error = SaveDrawing(*m_options.save);
    if (!error) return;
    Complain(*error);
    m_status = kNotWritten;
  }

  void Finish() {
    Host& host = Host::Instance();
    host.modules.UnloadAll();
    TakeModuleReports(m_session.Results());
    m_result.memory = m_options.checksMemory ? ShowMemory(m_session.Results()) : host.ledger.Live();
    const bool isBalanced = m_result.memory == lomlisp::embedded::Balance();
    if (m_options.checksMemory && !isBalanced)
      Complain("memory is not released: " + std::to_string(m_result.memory.blocks) + " blocks");
    if (m_status == kGood && !m_session.Results().errors.empty()) m_status = kFailed;
    if (m_options.isBatch) WriteBatchLine();
    for (const std::string& error : m_session.CloseOutput()) {
      Complain(error);
      m_status = kNotWritten;
    }
  }

  void WriteBatchLine() {
    m_result.status = m_status;
    const std::chrono::duration<double, std::milli> spent = std::chrono::steady_clock::now() - m_begin;
    m_result.seconds = std::round(spent.count()) / 1000.0;
    std::cout << BatchLine(m_result, m_session.Results()) << std::flush;
  }

  const Options& m_options;
  const std::chrono::steady_clock::time_point m_begin = std::chrono::steady_clock::now();
  Session m_session;
  BatchResult m_result;
  int m_status = kGood;
};

}  // namespace

int main(int argc, char** argv) {
  const ReadOptions read = ReadCommandLine(argc, argv);
  if (!read.options) {
    (read.status == kGood ? std::cout : std::cerr) << read.message;
    return read.status;
  }
  std::signal(SIGPIPE, SIG_IGN);
  try {
    HandleInterrupts();
    HandleCrashes();
    return Run(*read.options).All();
  } catch (const std::exception& exception) {
    std::cerr << "lomsh: " << exception.what() << "\n";
    return kFailed;
  }
}
