// The embedded host: everything that platform/ads.h asks of a platform, in process, and the
// controls of it.
//
// A module is linked with lomlisp and this library instead of the real host's. Its functions are
// registered under their LISP names and called with arguments; symbols, system variables, the
// command line and the heap can be looked at; every platform call is logged, and can be told to
// answer any status. One host per process, one thread.
#pragma once

#include <embedded/Answers.h>
#include <embedded/Chain.h>
#include <embedded/Ledger.h>
#include <embedded/Modules.h>
#include <embedded/dxf/Dxf.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace lomlisp::embedded {

// What the real host's releases do differently.
struct Switches {
  enum class Dotted { BeforeLast, AtEnd };  // RTLB a RTDOTE b RTLE, or RTLB a b RTDOTE
  Dotted dotted = Dotted::BeforeLast;
  bool pointsAsRecords = true;    // a list of two or three reals arrives as RTPOINT / RT3DPOINT
  bool foldSingleList = true;     // acedRetList of exactly one bracketed list gives that list
  bool unboundGivesNull = false;  // acedGetSym of an unbound symbol: a null chain, not RTNIL
  size_t selectionSets = 128;     // how many a module can have at a time; counts for the next drawing
  bool newestFirst = false;       // sets of mode X begin with the newest entity, not with the oldest
};

// The command line.
class Console {
 public:
  void Write(std::wstring_view text);
  // What was printed since the start, or since the last Take.
  const std::wstring& Text() const { return m_text; }
  std::wstring Take();
  // Also writes to standard output, as UTF-8.
  void Echo(bool on) { m_echo = on; }
  // Whether the next text begins a line.
  bool IsAtLineStart() const { return m_isAtLineStart; }
  void Reset();

 private:
  std::wstring m_text;
  bool m_isAtLineStart = true;
  bool m_echo = false;
};

// One call of a platform function, as the log keeps it.
struct LoggedCall {
  std::string function;                  // "acedPutSym"
  std::wstring name;                     // its text argument, if it has one
  std::vector<Chain> chains;             // its chains, records and entity names (as RTENAME), in order
  std::optional<std::string> objection;  // what was wrong with a chain
  bool forced = false;                   // the answer was an order of the test
  int status = RTNORM;                   // what it answered; for pointers RTNORM or, for null, RTERROR
  std::optional<Chain> result;           // the chain or name that it gave, only for an observer
};

// The calls that were made (those for memory and printing excepted), and orders how to answer.
// An ordered call answers before it does anything; a function that gives a pointer gives null for
// every status but RTNORM, which is no order to it. Printing and acutRelRb take orders by their
// name only, so that a general order does not silence messages or make leaks.
class CallLog {
 public:
  const std::vector<LoggedCall>& Calls() const { return m_calls; }
  size_t Count(std::string_view function) const;
  // The latest call of that function; null when there is none.
  const LoggedCall* Last(std::string_view function) const;
  void Clear() { m_calls.clear(); }
  // Off for measurements: the copies of the arguments cost more than the calls.
  void Enable(bool on) { m_enabled = on; }
  bool Enabled() const { return m_enabled; }
  // Told of every call when it has answered, also while the log is off. Null for nobody.
  void Observe(std::function<void(const LoggedCall&)> observer) { m_observer = std::move(observer); }
  bool IsObserved() const { return m_observer != nullptr; }

  // The n-th call of the function from now on (1 is the next one) answers `status`.
  void Answer(std::string_view function, int status, uint64_t n);
  void AnswerAll(std::string_view function, int status);
  // Asked for every call, those for memory by their function alone; the call is ordered when an
  // answer comes back.
  void AnswerIf(std::function<std::optional<int>(const LoggedCall&)> order);
  void Reset();

  // For the platform functions: the answer that was ordered for this call, if any.
  std::optional<int> Order(const LoggedCall& call);
  std::optional<int> OrderByName(std::string_view function);
  bool HasOrders() const { return !m_rules.empty() || !m_predicates.empty(); }
  void Add(LoggedCall call);

 private:
  struct Rule {
    std::string function;
    int status;
    uint64_t countdown;  // 0: always
  };
  std::vector<LoggedCall> m_calls;
  std::vector<Rule> m_rules;
  std::vector<std::function<std::optional<int>(const LoggedCall&)>> m_predicates;
  std::function<void(const LoggedCall&)> m_observer;
  bool m_enabled = true;
};

// Where the values of symbols are, when there is a LISP that has variables of its own.
struct SymbolStore {
  // The item; nothing for an unbound symbol, an empty chain for a value that no chain can hold.
  std::function<std::optional<Chain>(std::wstring_view name)> read;
  // Takes one item; nil unbinds.
  std::function<void(std::wstring_view name, const Chain& item)> write;
};

// LISP symbols, their names without regard to case.
class Symbols {
 public:
  // A name that LISP can bind: no blanks, brackets, quotes, dots alone, numbers; not T, not nil.
  static bool IsLegal(std::wstring_view name);
  // Stores one item; nil unbinds. False for an illegal name and for anything but one item.
  bool Set(std::wstring_view name, Chain value);
  // The item, empty for a value that no chain can hold; null when the symbol is unbound. It is good until
  // the next call.
  const Chain* Find(std::wstring_view name);
  // Keeps no values here from now on. Both functions must be there.
  void KeepIn(SymbolStore store);
  void Reset() { *this = Symbols(); }

 private:
  std::map<std::wstring, Chain> m_values;
  SymbolStore m_store;
  std::optional<Chain> m_found;
};

// One system variable. Its type is that of its value: RTSHORT, RTREAL, RTSTR, RTPOINT, RT3DPOINT.
struct SystemVariable {
  Record value;
  double lowest = -1e99;
  double highest = 1e99;
  bool readOnly = false;
};

// System variables, their names without regard to case.
class SystemVariables {
 public:
  SystemVariables() { Reset(); }
  void Define(std::wstring_view name, SystemVariable variable);
  SystemVariable* Find(std::wstring_view name);
  // Why the value cannot be set, or nothing when it has been. Integers are taken for reals.
  std::optional<std::string> Set(std::wstring_view name, const Record& value);
  // The variables and values of a new drawing.
  void Reset();

 private:
  std::map<std::wstring, SystemVariable> m_variables;
};

// What came of a call.
struct CallResult {
  enum class Kind { Nothing, Void, Value, List };
  Kind kind = Kind::Nothing;        // how it returned: not at all, by acedRetVoid, by acedRetList, or else
  Chain value;                      // what LISP gets, one item: nil for Nothing and Void
  int status = RTNORM;              // what the function gave back
  std::vector<std::string> errors;  // two results, a changed argument chain, a double free, an exception, ...
  std::vector<std::string> notices;  // what is allowed but seldom meant: a good status without a result
  std::wstring Text() const { return ToText(value); }
};

struct Session;

class Host {
 public:
  using Function = std::function<int()>;

  static Host& Instance();

  // Everything as in a new process, functions and switches included.
  void Reset();

  Switches switches;
  Console console;
  CallLog log;
  Symbols symbols;
  SystemVariables variables;
  Ledger ledger;
  Answers answers;
  Modules modules;

  // --- The drawing ---

  // The drawing that is open: at first, and after Reset, a new one.
  Drawing& CurrentDrawing();
  // Opens a DXF file in place of it; the system variables that its header holds are set, and DWGNAME and
  // DWGPREFIX. The names and selection sets of the old drawing are dead from then on, and the caller must
  // hold nothing of it. When there is an error, everything stays as it was.
  std::optional<DxfError> Open(const std::filesystem::path& path, const DxfProgress& progress = {});
  // Saves the drawing in its version, with the system variables in the header that were changed. An error
  // leaves the old file.
  std::optional<DxfError> Save(const std::filesystem::path& path, DxfForm form = DxfForm::Ascii);
  // A new drawing.
  void CloseDrawing();

  // --- LISP functions ---

  // A function may belong to an owner, which stands for itself alone. A name that is defined already is
  // defined anew, whoever owned it.
  void Define(std::wstring_view name, Function function, const void* owner = nullptr);
  // False unless the name is defined and is that owner's.
  bool Undefine(std::wstring_view name, const void* owner = nullptr);
  void UndefineAll(const void* owner);
  bool IsDefined(std::wstring_view name) const;
  // Told of the names that are defined and undefined from now on, in upper case. Null for nobody.
  void ObserveDefinitions(std::function<void(const std::wstring& name, bool isDefined)> observer);
  // In upper case, in alphabetical order.
  std::vector<std::wstring> FunctionNames() const;
  // Calls with the items of a chain as arguments; calls may nest. An unknown function is an error
  // of the result.
  CallResult Call(std::wstring_view name, const Chain& arguments);
  // Calls with the items of a text, as in Call(L"SUM", L"1 2.5 (\"a\" . nil)").
  CallResult Call(std::wstring_view name, std::wstring_view arguments);
  // Evaluates a call written in LISP, as in L"(SUM 1 (NEG 2) '(3 4) X)": the arguments are values,
  // 'quoted items, symbols, or calls of defined functions. Nothing is called when there is an error
  // in the text; the errors of the inner calls are among those of the result.
  CallResult Evaluate(std::wstring_view expression);
  // Calls a function that LISP does not know; the books know it under that name.
  CallResult Run(const std::string& name, const Function& function, Chain arguments);

  // --- For the platform functions: the call that is going on ---

  struct Frame {
    std::string name;
    resbuf* arguments = nullptr;
    std::optional<Chain> result;
    CallResult::Kind kind = CallResult::Kind::Nothing;
    std::vector<std::string> errors;
    int code = RTERROR;  // a module's code for the function
  };
  Frame* CurrentFrame() { return m_frames.empty() ? nullptr : m_frames.back(); }
  // The drawing with what hangs on it.
  Session& CurrentSession();

 private:
  Host();
  ~Host();
  CallResult RunInFrame(const std::string& name, const Function& function, Chain arguments);

  struct Definition {
    Function function;
    const void* owner;
  };
  std::unique_ptr<Session> m_session;
  std::map<std::wstring, Definition> m_functions;
  std::function<void(const std::wstring& name, bool isDefined)> m_definitionObserver;
  std::vector<Frame*> m_frames;
};

}  // namespace lomlisp::embedded
