// The session's LISP reader: where the forms of a text are, and what they are. Nothing is evaluated, each form is
// quoted.
#include <tests/fuzz/Fuzz.h>

#include <embedded/Text.h>
#include <shell/Interpreter.h>

#include <algorithm>
#include <cwctype>
#include <functional>
#include <optional>

namespace {

using namespace lomlisp::fuzz;
using lomlisp::shell::FormPlace;
using lomlisp::shell::Interpreter;
using lomlisp::shell::Outcome;

// The reader is written in LISP, where libFuzzer sees no coverage, so it is told what kinds of texts were met.
[[gnu::section("__libfuzzer_extra_counters")]] uint8_t g_kindsMet[256];

// Letters as a, digits as 0, runs as one, of the first few of them.
std::wstring KindOf(std::wstring_view text) {
  std::wstring kind;
  for (const wchar_t character : text) {
    const wchar_t sign = std::iswdigit(static_cast<wint_t>(character)) != 0   ? L'0'
                         : std::iswalpha(static_cast<wint_t>(character)) != 0 ? L'a'
                                                                              : character;
    if (kind.empty() || kind.back() != sign) kind += sign;
    if (kind.size() == 5) break;
  }
  return kind;
}

void NoteKind(std::wstring_view text) {
  g_kindsMet[std::hash<std::wstring>{}(KindOf(text)) % std::size(g_kindsMet)] = 1;
}

void CheckPlaces(const std::wstring& text, const std::vector<FormPlace>& forms) {
  size_t behind = 0;
  for (const FormPlace& form : forms) {
    Require(behind <= form.begin && form.begin < form.end && form.end <= text.size(), "forms follow each other");
    const auto lines = std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(form.begin), L'\n');
    Require(form.line == lines + 1, "a form is in the line in which it begins");
    behind = form.end;
  }
}

// What it is, printed; nothing when it cannot be read.
std::optional<std::wstring> Read(std::wstring_view form) {
  std::wstring quoted = L"'";
  const Outcome outcome = Interpreter::Instance().Evaluate(quoted.append(form));
  NoteKind(outcome.error ? *outcome.error : outcome.value);
  if (outcome.error) return std::nullopt;
  return outcome.value;
}

}  // namespace

void lomlisp::fuzz::Try(Input& input) {
  const std::wstring text = embedded::FromUtf8(input.ConsumeRemainingBytesAsString());
  const auto forms = Interpreter::Instance().Forms(text);
  CheckPlaces(text, forms);
  bool isReadable = true;
  for (const FormPlace& form : forms) {
    const std::wstring_view source = std::wstring_view(text).substr(form.begin, form.end - form.begin);
    NoteKind(source);
    const auto printed = Read(source);
    isReadable = isReadable && printed.has_value();
    if (printed) Require(Read(*printed) == printed, "what is printed reads as the same");
  }
  if (isReadable) Require(Interpreter::Instance().IsComplete(text), "a text of whole forms is complete");
}
