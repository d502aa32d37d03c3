// What the user answers: laid down by a test or a script, or given when he is asked.
#pragma once

#include <embedded/Keywords.h>
#include <embedded/drawing/Group.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace lomlisp::embedded {

// Picks an entity, of which the handle is given, at a point.
struct PickEntity {
  uint64_t handle;
  Point point;
};
// Picks whatever is there, or nothing.
struct PickPoint {
  Point point;
};
struct PickNothing {};
// Selects entities for acedSSGet.
struct SelectEntities {
  std::vector<uint64_t> handles;
};
struct PressEnter {};
struct PressCancel {};
// A keyword, whether or not the question has it.
struct TypeKeyword {
  std::wstring keyword;
};
// A line, without its end, as a terminal gives it: what it means is the question's to say.
struct TypeText {
  std::wstring text;
};

using UserAnswer = std::variant<PickEntity, PickPoint, PickNothing, SelectEntities, PressEnter, PressCancel,
                                TypeKeyword, TypeText>;

// Somebody to ask: shows the prompt in his own way, and gives nothing at the end of his input. The drawing
// must stay open meanwhile.
using AnswerSource = std::function<std::optional<UserAnswer>(const std::wstring& prompt)>;

// What acedInitGet says about the next answer.
struct AnswerRules {
  int flags = 0;
  Keywords keywords;
};

// Every function that waits for the user takes the next answer from the queue, or else from the source. Where
// there is neither it fails and says so, since nobody would come.
class Answers {
 public:
  void Add(UserAnswer answer) { m_queue.push_back(std::move(answer)); }
  std::optional<UserAnswer> Take() {
    if (m_queue.empty()) return std::nullopt;
    UserAnswer answer = std::move(m_queue.front());
    m_queue.pop_front();
    return answer;
  }
  size_t Waiting() const { return m_queue.size(); }
  // The source goes too.
  void Clear() { *this = Answers(); }

  // Null: there is nobody. While a source answers, prompts and answers are its own to show, as a line editor
  // must, and the console has neither.
  AnswerSource source;
  AnswerRules rules;         // for the next question
  double halfPickBox = 1.0;  // half the side of the pick box, in drawing units
  std::wstring lastKeyword;  // the keyword that was answered last

 private:
  std::deque<UserAnswer> m_queue;
};

}  // namespace lomlisp::embedded
