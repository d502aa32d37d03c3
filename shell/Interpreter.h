// The LISP of the session: an installed Common Lisp, with the dialect that makes it behave as the host's.
#pragma once

#include <embedded/Chain.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lomlisp::shell {

// What came of an evaluation.
struct Outcome {
  std::wstring value;                 // as the prompt shows it; empty where it shows nothing
  std::optional<std::wstring> error;  // the host's text for it
  std::vector<std::wstring> calls;    // the functions that were being called, the innermost first
  std::wstring place;                 // of the error: file and line
  bool isTold = false;                // the script's own *error* was called with it
};

// A form within a text.
struct FormPlace {
  size_t begin;
  size_t end;
  int line;
};

// One in a process, in its first thread, and never destroyed: the LISP beneath can be started once.
class Interpreter {
 public:
  // One item for each argument. Gives the items of its value. May throw LispError.
  using Function = std::function<embedded::Chain(const std::vector<embedded::Chain>& arguments)>;

  static Interpreter& Instance();

  // Makes a function callable by (call-host "name" ...) from the dialect, which needs "write" for what
  // scripts show and "read-line" for what they read, nil at the end.
  void Define(const std::string& name, Function function);
  // Makes a function of a client module the value of its symbol, and takes it back. The function that is
  // called is "call-client", with the name as its first argument.
  void DefineClient(std::wstring_view name);
  void UndefineClient(std::wstring_view name);

  // Evaluates all forms of a text, which begins in a line of a file.
  Outcome Evaluate(std::wstring_view text, const std::string& file = {}, int line = 1);
  // The forms of a text, which begins in line 1. One that cannot be read reaches to the end.
  std::vector<FormPlace> Forms(std::wstring_view text);
  // Whether no list and no string is open at the end.
  bool IsComplete(std::wstring_view text);
  // Names of symbols with a value that begin so.
  std::vector<std::wstring> Completions(std::wstring_view beginning);
  bool IsCommand(std::wstring_view name);
  // Where LOAD looks for files, besides the current folder; each with a slash at its end.
  void AddToSearchPath(const std::string& folder);

  // The value of a symbol as one item: nothing when it is nil, an empty chain when no chain can hold it.
  std::optional<embedded::Chain> Symbol(std::wstring_view name);
  void SetSymbol(std::wstring_view name, const embedded::Chain& item);

  // For signal handlers: what is being evaluated ends with an error, or with one that no script can catch.
  static void Interrupt();
  static void Stop();
  // Takes an interrupt back that nothing has noticed.
  static void ClearInterrupt();

 private:
  Interpreter();
};

}  // namespace lomlisp::shell
