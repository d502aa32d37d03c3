#include <shell/Terminal.h>

#include <shell/Signals.h>

#include <sys/select.h>

#include <csignal>
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

// False when a signal came first. Signals are let in only while this waits, or one that comes just before
// would wait for the next key.
bool WaitForKey(int file) {
  sigset_t all;
  sigset_t usual;
  sigfillset(&all);
  sigprocmask(SIG_BLOCK, &all, &usual);
  int ready = 0;
  if (rl_pending_signal() == 0 && !WasInterrupted()) {
    fd_set files;
    FD_ZERO(&files);
    FD_SET(file, &files);
    ready = pselect(file + 1, &files, nullptr, nullptr, nullptr, &usual);
  }
  sigprocmask(SIG_SETMASK, &usual, nullptr);
  return ready > 0;
}

// The line editor's own waits on after an interrupt. For it the input is at its end then.
int ReadKey(FILE* stream) {
  while (!WasInterrupted()) {
    if (WaitForKey(fileno(stream))) return rl_getc(stream);
    rl_check_signals();
  }
  return EOF;
}

}  // namespace

void Terminal::Start(Completer completer) {
  TheCompleter() = std::move(completer);
  rl_readline_name = "lomsh";
  rl_attempted_completion_function = Complete;
  static char wordBreaks[] = " \t\n!()'\"`;,";
  rl_basic_word_break_characters = wordBreaks;
  rl_completer_word_break_characters = wordBreaks;
  rl_completer_quote_characters = "\"";
  rl_getc_function = ReadKey;
  rl_variable_bind("blink-matching-paren", "on");
  // The text is a program: what is pasted must not run.
  rl_variable_bind("enable-bracketed-paste", "on");
  using_history();
  stifle_history(kHistoryLines);
  // Times between them keep an entry of many lines together.
  history_comment_char = '#';
  history_write_timestamps = 1;
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
  char* const line = readline(prompt.c_str());
  if (WasInterrupted()) {
    std::free(line);
    std::fputs("\n", stdout);
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
