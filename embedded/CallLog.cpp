#include <embedded/Host.h>

#include <algorithm>
#include <utility>

namespace lomlisp::embedded {

size_t CallLog::Count(std::string_view function) const {
  return static_cast<size_t>(std::count_if(
      m_calls.begin(), m_calls.end(), [&](const LoggedCall& call) { return call.function == function; }));
}

const LoggedCall* CallLog::Last(std::string_view function) const {
  const auto found = std::find_if(m_calls.rbegin(), m_calls.rend(),
                                  [&](const LoggedCall& call) { return call.function == function; });
  return found != m_calls.rend() ? &*found : nullptr;
}

void CallLog::Answer(std::string_view function, int status, uint64_t n) {
  if (n > 0) m_rules.push_back({std::string(function), status, n});
}

void CallLog::AnswerAll(std::string_view function, int status) {
  m_rules.push_back({std::string(function), status, 0});
}

void CallLog::AnswerIf(std::function<std::optional<int>(const LoggedCall&)> order) {
  m_predicates.push_back(std::move(order));
}

void CallLog::Reset() { *this = CallLog(); }

// The orders are asked in the order in which they were given; all of them count the call.
std::optional<int> CallLog::OrderByName(std::string_view function) {
  std::optional<int> answer;
  std::erase_if(m_rules, [&](Rule& rule) {
    if (rule.function != function) return false;
    const bool isAlways = rule.countdown == 0;
    const bool isDue = isAlways || --rule.countdown == 0;
    if (isDue && !answer) answer = rule.status;
    return isDue && !isAlways;
  });
  return answer;
}

std::optional<int> CallLog::Order(const LoggedCall& call) {
  std::optional<int> answer = OrderByName(call.function);
  for (const auto& predicate : m_predicates) {
    if (answer) break;
    answer = predicate(call);
  }
  return answer;
}

void CallLog::Add(LoggedCall call) {
  if (m_observer) m_observer(call);
  if (m_enabled) m_calls.push_back(std::move(call));
}

}  // namespace lomlisp::embedded
