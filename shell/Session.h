// A session: evaluates what scripts and users enter, and shows what came of it.
#pragma once

#include <shell/Input.h>
#include <shell/Interpreter.h>
#include <shell/Options.h>
#include <shell/Report.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lomlisp::shell {

inline constexpr std::wstring_view kPrompt = L"Command: ";

// One in a process. It makes the embedded host LISP's.
class Session {
 public:
  explicit Session(const Options& options);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  Report& Results() { return m_report; }
  Input& UserInput() { return m_input; }
  const Input& UserInput() const { return m_input; }

  // Show a form as if it had been typed, its value or error. False when one failed; without
  // Options::keepsGoing nothing behind it is evaluated.
  bool RunScript(const std::filesystem::path& path);
  bool RunForms(std::wstring_view text, const std::string& file = {});
  // Evaluates what the user has entered. False when it failed.
  bool Evaluate(std::wstring_view text, const std::string& file = {}, int line = 1);

  // Shows a line of the program's own.
  void Show(const std::string& line);
  // Shows an error of the program's own, and notes it.
  void ShowError(const std::string& text);
  // What the user sees already, for the transcript alone.
  void Record(std::wstring_view text);

  // What could not be written of all that was shown, a line each.
  std::vector<std::string> CloseOutput();

 private:
  void ShowOutcome(const Outcome& outcome);
  void StartLine();
  void Flush();
  void LeaveInterruptedLine();
  void WriteTranscript();

  Report m_report;
  Input m_input;
  bool m_keepsGoing;
  std::filesystem::path m_transcriptPath;
  std::ofstream m_transcript;
};

}  // namespace lomlisp::shell
