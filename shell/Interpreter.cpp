#include <shell/Interpreter.h>

#include <shell/Sources.h>
#include <shell/Values.h>

#include <embedded/Text.h>

#include <exception>
#include <map>
#include <stdexcept>
#include <utility>

namespace lomlisp::shell {

namespace {

using embedded::Chain;

std::map<std::string, Interpreter::Function, std::less<>>& Functions() {
  static std::map<std::string, Interpreter::Function, std::less<>> functions;
  return functions;
}

// Set from signal handlers: the symbol must have been looked up before.
cl_object InterruptedSymbol() {
  static const cl_object symbol = LomSymbol("*INTERRUPTED*");
  return symbol;
}
cl_object StopKeyword() {
  static const cl_object keyword = ecl_make_keyword("STOP");
  return keyword;
}

std::vector<std::wstring> TextsOf(cl_object list) {
  std::vector<std::wstring> texts;
  for (; ECL_CONSP(list); list = ecl_cdr(list)) texts.push_back(TextOf(ecl_car(list)));
  return texts;
}

std::vector<Chain> ChainsOf(cl_object list) {
  std::vector<Chain> items;
  for (; ECL_CONSP(list); list = ecl_cdr(list)) AppendItem(items.emplace_back(), ecl_car(list));
  return items;
}

cl_object Nth(cl_fixnum index, cl_object list) { return ecl_nth(index, list); }

// What went wrong, if something did: no exception may pass through LISP.
std::optional<std::wstring> CallFunction(const std::string& name, cl_object arguments, Chain& value) {
  try {
    value = Functions().at(name)(ChainsOf(arguments));
    return std::nullopt;
  } catch (const LispError& error) {
    return error.Text();
  } catch (const std::exception& exception) {
    return embedded::FromUtf8(name + ": " + exception.what());
  }
}

// (host-call name arguments) gives the value, and the text of the error, if there was one.
cl_object HostCall(cl_object name, cl_object arguments) {
  cl_object value = ECL_NIL;
  cl_object problem = ECL_NIL;
  {
    Chain chain;
    if (const auto error = CallFunction(embedded::Utf8(TextOf(name)), arguments, chain))
      problem = LispText(*error);
    else
      value = ValueOf(chain);
  }
  const cl_env_ptr environment = ecl_process_env();
  ecl_return2(environment, value, problem);
}

// LISP keeps functions of any number of arguments under one type.
void DefineHostCall() {
  const auto anyFunction = reinterpret_cast<void (*)()>(HostCall);
  ecl_def_c_function(LomSymbol("HOST-CALL"), reinterpret_cast<cl_objectfn_fixed>(anyFunction), 2);
}

// The LISP does nothing about signals, which are the program's: above all, it must not jump out of a module
// that crashes.
void Boot() {
  for (const int trap : {ECL_OPT_TRAP_SIGINT, ECL_OPT_TRAP_SIGPIPE, ECL_OPT_TRAP_SIGSEGV, ECL_OPT_TRAP_SIGBUS,
                         ECL_OPT_TRAP_SIGILL, ECL_OPT_TRAP_SIGFPE, ECL_OPT_SIGNAL_HANDLING_THREAD})
    ecl_set_option(trap, 0);
  static char name[] = "lomsh";
  static char* arguments[] = {name, nullptr};
  cl_boot(1, arguments);
}

// An object that lives as long as the program. The collector looks at the stack and at what LISP knows, and not
// at a program's static objects.
class Permanent {
 public:
  explicit Permanent(cl_object object) : m_object(object) { ecl_register_root(&m_object); }
  cl_object Get() const { return m_object; }

 private:
  cl_object m_object;
};

// A fault in the dialect itself, which no script can bring about.
void Load(const LispSource& source) {
  static const Permanent load(cl_eval(ecl_read_from_cstring(
      "(lambda (text) (handler-case (let ((*load-verbose* nil))"
      "  (with-input-from-string (in text) (load in)) nil) (error (problem) (princ-to-string problem))))")));
  const cl_object problem = cl_funcall(2, load.Get(), LispText(embedded::FromUtf8(source.text)));
  if (problem != ECL_NIL)
    throw std::runtime_error(std::string(source.name) + ": " + embedded::Utf8(TextOf(problem)));
}

}  // namespace

Interpreter& Interpreter::Instance() {
  static auto* const interpreter = new Interpreter;
  return *interpreter;
}

Interpreter::Interpreter() {
  Boot();
  for (const LispSource& source : LispSources()) {
    Load(source);
    if (std::string_view(source.name) == "package.lisp") DefineHostCall();
  }
  InterruptedSymbol();
  StopKeyword();
}

void Interpreter::Define(const std::string& name, Function function) {
  Functions().insert_or_assign(name, std::move(function));
}

void Interpreter::DefineClient(std::wstring_view name) {
  cl_funcall(2, LomSymbol("DEFINE-CLIENT-FUNCTION"), LispText(name));
}

void Interpreter::UndefineClient(std::wstring_view name) {
  cl_funcall(2, LomSymbol("UNDEFINE-CLIENT-FUNCTION"), LispText(name));
}

Outcome Interpreter::Evaluate(std::wstring_view text, const std::string& file, int line) {
  const cl_object name = file.empty() ? ECL_NIL : LispText(embedded::FromUtf8(file));
  const cl_object results =
      cl_funcall(4, LomSymbol("EVALUATE-FOR-PROGRAM"), LispText(text), name, ecl_make_int32_t(line));
  Outcome outcome;
  outcome.value = TextOf(Nth(0, results));
  if (const cl_object error = Nth(1, results); error != ECL_NIL) outcome.error = TextOf(error);
  outcome.calls = TextsOf(Nth(2, results));
  outcome.place = TextOf(Nth(3, results));
  outcome.isTold = Nth(4, results) != ECL_NIL;
  return outcome;
}

std::vector<FormPlace> Interpreter::Forms(std::wstring_view text) {
  std::vector<FormPlace> forms;
  cl_object places = cl_funcall(2, LomSymbol("FORM-PLACES"), LispText(text));
  for (; ECL_CONSP(places); places = ecl_cdr(places)) {
    const cl_object place = ecl_car(places);
    forms.push_back({static_cast<size_t>(ecl_to_uint64_t(Nth(0, place))),
                     static_cast<size_t>(ecl_to_uint64_t(Nth(1, place))), ecl_to_int32_t(Nth(2, place))});
  }
  return forms;
}

bool Interpreter::IsComplete(std::wstring_view text) {
  return cl_funcall(2, LomSymbol("TEXT-COMPLETE-P"), LispText(text)) != ECL_NIL;
}

std::vector<std::wstring> Interpreter::Completions(std::wstring_view beginning) {
  return TextsOf(cl_funcall(2, LomSymbol("COMPLETIONS"), LispText(beginning)));
}

bool Interpreter::IsCommand(std::wstring_view name) {
  return cl_funcall(2, LomSymbol("COMMAND-DEFINED-P"), LispText(embedded::Folded(name))) != ECL_NIL;
}

void Interpreter::AddToSearchPath(const std::string& folder) {
  const cl_object path = LomSymbol("*SEARCH-PATH*");
  const cl_object added = cl_list(1, LispText(embedded::FromUtf8(folder)));
  cl_set(path, ecl_append(ecl_symbol_value(path), added));
}

std::optional<Chain> Interpreter::Symbol(std::wstring_view name) {
  const cl_object value = cl_funcall(2, LomSymbol("SYMBOL-ITEM"), LispText(name));
  if (value == ECL_NIL) return std::nullopt;
  Chain item;
  try {
    AppendItem(item, value);
  } catch (const LispError&) {
    item.clear();
  }
  return item;
}

void Interpreter::SetSymbol(std::wstring_view name, const Chain& item) {
  cl_funcall(3, LomSymbol("SET-SYMBOL-ITEM"), LispText(name), ValueOf(item));
}

void Interpreter::Interrupt() { InterruptedSymbol()->symbol.value = ECL_T; }

void Interpreter::ClearInterrupt() {
  if (InterruptedSymbol()->symbol.value == ECL_T) InterruptedSymbol()->symbol.value = ECL_NIL;
}

void Interpreter::Stop() { InterruptedSymbol()->symbol.value = StopKeyword(); }

}  // namespace lomlisp::shell
