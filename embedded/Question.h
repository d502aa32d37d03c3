// One question to the user, asked until it has an answer.
#pragma once

#include <embedded/Host.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace lomlisp::embedded {

class PlatformCall;

// How a question ended.
struct Outcome {
  // RTNORM; RTNONE for Enter; RTKWORD, and Answers::lastKeyword has it; RTCAN; RTERROR.
  int status = RTERROR;
  std::string objection;   // for the log, where there is no answer
  bool isMistake = false;  // nobody was there, or the wrong thing was laid down
};

// Logs the objection, and gives what a platform function answers.
int Answered(PlatformCall& call, const Outcome& outcome);

template <typename Value>
struct Reply : Outcome {
  Value value{};  // with RTNORM
};

// What acedInitGet's flags ask for.
inline constexpr int kNoEnter = 1;
inline constexpr int kNoZero = 2;
inline constexpr int kNoNegative = 4;
inline constexpr int kAnyText = 128;

// What was typed, without the blanks around it; nothing for other answers.
std::optional<std::wstring_view> TypedText(const UserAnswer& answer);
// What one sees of an answer.
std::wstring Shown(const UserAnswer& answer);

// The next answer, from the queue or the source; nothing when there is none. One from the queue is shown on
// the console with its prompt.
std::optional<UserAnswer> TakeAnswer(Host& host, const std::wstring& prompt);

// The outcome when nobody answers, and when the user cancels.
Outcome Unanswered();
Outcome Cancelled();

class Question {
 public:
  // Takes what acedInitGet has said; of its flags those in `honoured` count. `refusal` is printed for an
  // answer that is none.
  Question(Host& host, std::wstring prompt, const wchar_t* refusal, int honoured);

  int Flags() const { return m_rules.flags; }
  bool HasKeywords() const { return !m_rules.keywords.IsEmpty(); }
  void ChangePrompt(std::wstring prompt) { m_prompt = std::move(prompt); }

  // `read` gives the value that an answer is, or nothing; it sees no keywords, no Enter, no cancellation.
  // `objection` says why a value is not taken, or gives null. What is refused is followed by another answer.
  template <typename Value, typename Read, typename Objection>
  Reply<Value> Ask(Read read, Objection objection) {
    for (;;) {
      const auto answer = TakeAnswer(m_host, m_prompt);
      if (!answer) return {Unanswered(), {}};
      if (auto end = End(*answer)) return {std::move(*end), {}};
      const wchar_t* reason = m_refusal;
      if (const std::optional<Value> value = IsEnter(*answer) ? std::nullopt : read(*answer)) {
        reason = objection(*value);
        if (reason == nullptr) return {{RTNORM, {}, false}, *value};
      } else if (auto text = AnyText(*answer)) {
        return {std::move(*text), {}};
      }
      Refuse(reason);
    }
  }
  template <typename Value, typename Read>
  Reply<Value> Ask(Read read) {
    return Ask<Value>(read, [](const Value&) -> const wchar_t* { return nullptr; });
  }

 private:
  // What ends the question without a value.
  std::optional<Outcome> End(const UserAnswer& answer);
  // What takes a text that is no answer else.
  std::optional<Outcome> AnyText(const UserAnswer& answer);
  Outcome Keyword(std::wstring_view keyword);
  static bool IsEnter(const UserAnswer& answer);
  void Refuse(const wchar_t* reason);

  Host& m_host;
  std::wstring m_prompt;
  const wchar_t* m_refusal;
  AnswerRules m_rules;
};

}  // namespace lomlisp::embedded
