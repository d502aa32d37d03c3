// What the user answers, as a test or a script has laid it down.
#pragma once

#include <embedded/drawing/Group.h>

#include <cstdint>
#include <deque>
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
struct TypeKeyword {
  std::wstring keyword;
};

using UserAnswer =
    std::variant<PickEntity, PickPoint, PickNothing, SelectEntities, PressEnter, PressCancel, TypeKeyword>;

// A queue: every function that waits for the user takes the next answer. Where there is none it fails and
// says so, since nobody would come.
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
  void Clear() { *this = Answers(); }

  double halfPickBox = 1.0;  // half the side of the pick box, in drawing units
  std::wstring lastKeyword;  // the keyword that was answered last

 private:
  std::deque<UserAnswer> m_queue;
};

}  // namespace lomlisp::embedded
