#include <shell/Terminal.h>

#include <shell/Signals.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <readline/history.h>
#include <readline/readline.h>

#include <cctype>
#include <filesystem>
#include <system_error>
#include <utility>

namespace lomlisp::shell {

namespace {

constexpr int kHistoryLines = 1000;

// The line editor has one of these in a process.
Completer& TheCompleter() {
  static Completer completer;
  return completer;
}

// Empty where there is no place for it.
std::filesystem::path HistoryFile() {
  const char* const state = std::getenv("XDG_STATE_HOME");
  const char* const home = std::getenv("HOME");
  if (state != nullptr && *state != '\0') return std::filesystem::path(state) / "lomsh" / "history";
  if (home == nullptr || *home == '\0') return {};
  return std::filesystem::path(home) / ".local" / "state" / "lomsh" / "history";
}

bool IsLower(const std::string& word) {
  for (const char letter : word)
    if (std::isupper(static_cast<unsigned char>(letter)) != 0) return false;
  return true;
}

std::string Lowered(std::string word) {
  for (char& letter : word) letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  return word;
}

// One of the completions at a time, null behind the last, as the line editor wants it.
char* NextCompletion(const char* beginning, int state) {
  static std::vector<std::string> words;
  static size_t next = 0;
  if (state == 0) {
    words = TheCompleter()(beginning);
    next = 0;
  }
  if (next == words.size()) return nullptr;
  const std::string& word = words[next++];
  return strdup((IsLower(beginning) ? Lowered(word) : word).c_str());
}

// Within a string the names of files.
char** Complete(const char* beginning, int start, int) {
  bool isInString = false;
  for (int index = 0; index < start; ++index)
    if (rl_line_buffer[index] == '"' && (index == 0 || rl_line_buffer[index - 1] != '\\'))
      isInString = !isInString;
  if (isInString) return nullptr;
  rl_attempted_completion_over = 1;
  return rl_completion_matches(beginning, NextCompletion);
}

// Called when a signal has come while a line was edited.
int LeaveInterruptedLine() {
  if (!WasInterrupted()) return 0;
  rl_replace_line("", 0);
  rl_done = 1;
  return 0;
}

}  // namespace

void Terminal::Start(Completer completer) {
  TheCompleter() = std::move(completer);
  rl_readline_name = "lomsh";
  rl_attempted_completion_function = Complete;
  static char wordBreaks[] = " \t\n()'\"`;,";
  rl_basic_word_break_characters = wordBreaks;
  rl_completer_word_break_characters = wordBreaks;
  rl_completer_quote_characters = "\"";
  rl_signal_event_hook = LeaveInterruptedLine;
  rl_variable_bind("blink-matching-paren", "on");
  // The text is a program: what is pasted must not run.
  rl_variable_bind("enable-bracketed-paste", "on");
  using_history();
  stifle_history(kHistoryLines);
  if (const auto file = HistoryFile(); !file.empty()) read_history(file.c_str());
}

void Terminal::Finish() {
  const auto file = HistoryFile();
  if (file.empty()) return;
  std::error_code ignored;
  std::filesystem::create_directories(file.parent_path(), ignored);
  write_history(file.c_str());
}

std::optional<std::string> Terminal::ReadLine(const std::string& prompt) {
  ForgetInterrupt();
  char* const line = readline(prompt.c_str());
  if (WasInterrupted()) {
    std::free(line);
    std::fputs("^C\n", stdout);
    return std::string();
  }
  if (line == nullptr) return std::nullopt;
  const std::string text = line;
  std::free(line);
  return text;
}

void Terminal::Remember(const std::string& line) {
  const HIST_ENTRY* const last =
      history_length > 0 ? history_get(history_base + history_length - 1) : nullptr;
  if (line.empty() || (last != nullptr && line == last->line)) return;
  add_history(line.c_str());
}

}  // namespace lomlisp::shell
