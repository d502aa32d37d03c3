#include <shell/Prompt.h>

#include <shell/Interpreter.h>
#include <shell/Signals.h>
#include <shell/Terminal.h>

#include <embedded/Host.h>
#include <embedded/Text.h>

#include <algorithm>
#include <cwctype>
#include <optional>
#include <string>

namespace lomlisp::shell {

namespace {

using embedded::Host;

// While something is open, as the host asks on.
constexpr std::wstring_view kOpenPrompt = L"(_> ";

constexpr const char* kHelp =
    "(form)            evaluates; goes on over the lines until all is closed\n"
    "!name             the value of a variable\n"
    "NAME [answers]    calls the command, which is the function C:NAME\n"
    "(arxload \"a.so\")  (arxunload \"a.so\")  (arx)        client modules\n"
    "(open-drawing \"a.dxf\")  (save-drawing \"b.dxf\")  (new-drawing)\n"
    "(changes)  (draw \"a.svg\")                          what is not saved yet, and a picture\n"
    "(answer \"text\" '(1 2) nil)                         what the next questions are answered with\n"
    "(memory)  (trace-host T)  (lom-return-flag T)      looking at the host\n"
    "QUIT              leaves the session";

std::wstring Trimmed(const std::wstring& text) {
  const auto isBlank = [](wchar_t letter) { return std::iswspace(static_cast<wint_t>(letter)) != 0; };
  const auto begin = std::find_if_not(text.begin(), text.end(), isBlank);
  const auto end = std::find_if_not(text.rbegin(), std::make_reverse_iterator(begin), isBlank).base();
  return std::wstring(begin, end);
}

std::vector<std::wstring> Words(const std::wstring& line) {
  std::vector<std::wstring> words;
  for (size_t begin = 0; (begin = line.find_first_not_of(L" \t", begin)) != std::wstring::npos;) {
    const size_t end = std::min(line.find_first_of(L" \t", begin), line.size());
    words.push_back(line.substr(begin, end - begin));
    begin = end;
  }
  return words;
}

class Prompt {
 public:
  explicit Prompt(Session& session) : m_session(session) {}

  bool Run() {
    while (!m_isLeaving) {
      StartLine();
      const auto line = ReadLine(kPrompt);
      if (!line)
        Leave();
      else
        Execute(Trimmed(*line));
    }
    return m_isGood;
  }

 private:
  bool IsTerminal() const { return m_session.UserInput().From() == Input::Kind::Terminal; }

  static void StartLine() {
    embedded::Console& console = Host::Instance().console;
    if (!console.IsAtLineStart()) console.Write(L"\n");
  }

  void Execute(const std::wstring& line) {
    if (line.empty() || line.front() == L';') return;
    if (line.front() == L'(' || line.front() == L'\'') return Evaluate(line, 0);
    if (line.front() == L'!') return Evaluate(line, 1);
    ExecuteCommand(line);
  }

  // The form that begins at `begin` of the line.
  void Evaluate(const std::wstring& line, size_t begin) {
    const auto form = Completed(line.substr(begin));
    if (!form) return;
    Remember(line.substr(0, begin) + *form);
    m_isWarned = false;
    m_isGood = m_session.Evaluate(*form) && m_isGood;
  }

  void Remember(const std::wstring& text) const {
    if (IsTerminal()) Terminal::Remember(embedded::Utf8(text));
  }

  // Nothing at the end of input; "" after an interrupt.
  std::optional<std::wstring> ReadLine(std::wstring_view prompt) {
    auto line = m_session.UserInput().ReadLine(prompt);
    m_isInterrupted = WasInterrupted();
    if (m_isInterrupted) ForgetInterrupt();
    return line;
  }

  // The line, with those behind it until no list and no string is open. Nothing after an interrupt.
  std::optional<std::wstring> Completed(std::wstring text) {
    while (!Interpreter::Instance().IsComplete(text)) {
      const auto more = ReadLine(kOpenPrompt);
      if (m_isInterrupted) return std::nullopt;
      if (!more) break;
      text += L'\n' + *more;
    }
    return text;
  }

  // What stands behind the name answers the command's questions.
  void ExecuteCommand(const std::wstring& line) {
    const std::vector<std::wstring> words = Words(line);
    const std::wstring name = embedded::Folded(words.front());
    Remember(line);
    if (name == L"QUIT" || name == L"EXIT") return Leave();
    if (name == L"HELP" || name == L"?") return m_session.Show(kHelp);
    if (!Interpreter::Instance().IsCommand(name)) {
      m_session.ShowError("Unknown command \"" + embedded::Utf8(name) + "\".");
      m_isGood = false;
      return;
    }
    m_isWarned = false;
    for (size_t index = 1; index < words.size(); ++index) m_session.UserInput().Feed(words[index]);
    m_isGood = m_session.Evaluate(L"(C:" + name + L")") && m_isGood;
  }

  // Changes that are not saved are worth a question.
  void Leave() {
    const bool isChanged = Host::Instance().CurrentDrawing().IsModified() && IsTerminal();
    if (isChanged && !m_isWarned) {
      m_session.Show("The drawing has changes that are not saved. QUIT again to leave it so.");
      m_isWarned = true;
      return;
    }
    m_isLeaving = true;
  }

  Session& m_session;
  bool m_isGood = true;
  bool m_isWarned = false;
  bool m_isLeaving = false;
  bool m_isInterrupted = false;  // the line that was read last
};

// Functions whose name begins so; at the beginning of a line commands, too.
std::vector<std::string> Completions(const std::string& beginning) {
  const std::wstring begin = embedded::FromUtf8(beginning);
  std::vector<std::string> words;
  for (const std::wstring& name : Interpreter::Instance().Completions(begin))
    words.push_back(embedded::Utf8(name));
  for (const std::wstring& name : Interpreter::Instance().Completions(L"C:" + begin))
    words.push_back(embedded::Utf8(name.substr(2)));
  return words;
}

}  // namespace

bool RunPrompt(Session& session) {
  const bool isTerminal = session.UserInput().From() == Input::Kind::Terminal;
  if (isTerminal) Terminal::Start(Completions);
  const bool isGood = Prompt(session).Run();
  if (isTerminal) Terminal::Finish();
  return isTerminal || isGood;
}

}  // namespace lomlisp::shell
