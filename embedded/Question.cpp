#include <embedded/Question.h>

#include <embedded/PlatformCall.h>
#include <embedded/Text.h>

#include <charconv>
#include <iterator>
#include <variant>

namespace lomlisp::embedded {

namespace {

void AppendNumber(std::wstring& text, double number) {
  char digits[32];
  const char* end = std::to_chars(digits, std::end(digits), number).ptr;
  text.append(std::cbegin(digits), end);
}

std::wstring Coordinates(const Point& point) {
  std::wstring text;
  AppendNumber(text, point.x);
  text += L',';
  AppendNumber(text, point.y);
  text += L',';
  AppendNumber(text, point.z);
  return text;
}

class Showing {
 public:
  std::wstring operator()(const PickEntity& pick) const { return Coordinates(pick.point); }
  std::wstring operator()(const PickPoint& pick) const { return Coordinates(pick.point); }
  std::wstring operator()(const PressCancel&) const { return L"*Cancel*"; }
  std::wstring operator()(const TypeKeyword& typed) const { return typed.keyword; }
  std::wstring operator()(const TypeText& typed) const { return typed.text; }
  template <typename Other>
  std::wstring operator()(const Other&) const {
    return {};
  }
};

}  // namespace

std::optional<std::wstring_view> TypedText(const UserAnswer& answer) {
  const auto* typed = std::get_if<TypeText>(&answer);
  return typed != nullptr ? std::optional(Trimmed(typed->text)) : std::nullopt;
}

std::wstring Shown(const UserAnswer& answer) { return std::visit(Showing(), answer); }

std::optional<UserAnswer> TakeAnswer(Host& host, const std::wstring& prompt) {
  if (auto answer = host.answers.Take()) {
    host.console.Write(prompt + Shown(*answer) + L"\n");
    return answer;
  }
  // A copy: the source may put another one in its place.
  const AnswerSource source = host.answers.source;
  return source ? source(prompt) : std::nullopt;
}

int Answered(PlatformCall& call, const Outcome& outcome) {
  if (outcome.isMistake) return call.Report(outcome.objection);
  if (!outcome.objection.empty()) call.Refuse(outcome.objection);
  return outcome.status;
}

Outcome Unanswered() { return {RTERROR, "the user is asked, and no answer is laid down", true}; }

Outcome Cancelled() { return {RTCAN, "the user cancelled", false}; }

Question::Question(Host& host, std::wstring prompt, const wchar_t* refusal, int honoured)
    : m_host(host),
      m_prompt(std::move(prompt)),
      m_refusal(refusal),
      m_rules(std::exchange(host.answers.rules, {})) {
  m_rules.flags &= honoured;
}

std::optional<Outcome> Question::End(const UserAnswer& answer) {
  if (std::holds_alternative<PressCancel>(answer)) return Cancelled();
  if (const auto* typed = std::get_if<TypeKeyword>(&answer)) return Keyword(typed->keyword);
  if (IsEnter(answer)) {
    if ((m_rules.flags & kNoEnter) == 0) return Outcome{RTNONE, {}, false};
    // Any text may be no text as well.
    return (m_rules.flags & kAnyText) != 0 ? std::optional(Keyword({})) : std::nullopt;
  }
  const auto typed = TypedText(answer);
  const auto keyword = typed ? m_rules.keywords.Match(*typed) : std::nullopt;
  return keyword ? std::optional(Keyword(*keyword)) : std::nullopt;
}

std::optional<Outcome> Question::AnyText(const UserAnswer& answer) {
  const auto typed = TypedText(answer);
  const bool isTaken = typed && (m_rules.flags & kAnyText) != 0;
  return isTaken ? std::optional(Keyword(*typed)) : std::nullopt;
}

Outcome Question::Keyword(std::wstring_view keyword) {
  m_host.answers.lastKeyword = keyword;
  return {RTKWORD, {}, false};
}

bool Question::IsEnter(const UserAnswer& answer) {
  const auto typed = TypedText(answer);
  return std::holds_alternative<PressEnter>(answer) || (typed && typed->empty());
}

void Question::Refuse(const wchar_t* reason) { m_host.console.Write(std::wstring(reason) + L"\n"); }

}  // namespace lomlisp::embedded
