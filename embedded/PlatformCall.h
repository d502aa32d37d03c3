// What the logged platform functions have in common: orders, checks, the log.
#pragma once

#include <embedded/Host.h>

#include <optional>
#include <string>
#include <type_traits>
#include <utility>

namespace lomlisp::embedded {

class PlatformCall {
 public:
  explicit PlatformCall(const char* function, const wchar_t* name = nullptr) {
    m_call.function = function;
    if (name != nullptr && m_isWatched) m_call.name = name;
  }

  PlatformCall& Takes(const resbuf* chain, Place place = Place::Items) {
    auto objection = Check(chain, m_host.ledger, place);
    if (objection) {
      Object(std::move(*objection));
      m_call.chains.emplace_back();
    } else if (m_isWatched) {
      m_call.chains.push_back(Capture(chain));
    }
    return *this;
  }

  // Only the record itself: the link of a single record need not be set.
  PlatformCall& TakesRecord(const resbuf* record) {
    if (record == nullptr) return Takes(nullptr);
    resbuf single = *record;
    single.rbnext = nullptr;
    return Takes(&single);
  }

  PlatformCall& TakesPoint(const double* point) {
    if (point == nullptr) return Takes(nullptr);
    resbuf record{nullptr, RT3DPOINT, {}};
    for (size_t axis = 0; axis < 3; ++axis) record.resval.rpoint[axis] = point[axis];
    return Takes(&record);
  }

  // A text beside the one that is the call's name.
  PlatformCall& TakesText(const ACHAR* text) {
    if (m_isWatched && text != nullptr) m_call.chains.push_back({Record{RTSTR, {}, text, true}});
    return *this;
  }

  PlatformCall& TakesName(const ads_name name) { return TakesName(name, RTENAME); }
  PlatformCall& TakesSet(const ads_name name) { return TakesName(name, RTPICKS); }

  // What the caller gets, for an observer.
  void Gives(const resbuf* chain) {
    if (m_host.log.IsObserved()) m_call.result = Capture(chain);
  }
  void GivesName(const ads_name name, short type = RTENAME) {
    const resbuf record{nullptr, type, {.rlname = {name[0], name[1]}}};
    Gives(&record);
  }

  void Object(std::string objection) {
    if (!m_call.objection) m_call.objection = std::move(objection);
  }

  bool HasObjection() const { return m_call.objection.has_value(); }

  // For `work`: a refusal, whose reason is in the log. It is an answer like others, and no mistake of the
  // function that is being called.
  int Refuse(std::string reason) {
    Object(std::move(reason));
    return RTERROR;
  }
  // The same for what is one.
  int Report(std::string reason) {
    Object(std::move(reason));
    return Blame();
  }

  // Answers what was ordered, or RTERROR for a bad chain, or what `work` gives: a status or a
  // pointer.
  template <typename Work>
  auto Run(Work work) {
    using Answer = decltype(work());
    if constexpr (std::is_pointer_v<Answer>) {
      const auto order = Order();
      m_call.forced = order && *order != RTNORM;
      if (m_call.forced) return Log(*order, Answer());
      if (m_call.objection) return Log(Blame(), Answer());
      const Answer answer = work();
      if constexpr (std::is_same_v<Answer, resbuf*>) Gives(answer);
      return Log(answer != nullptr ? RTNORM : RTERROR, answer);
    } else {
      const auto order = Order();
      m_call.forced = order.has_value();
      const int status = order ? *order : m_call.objection ? Blame() : work();
      return Log(status, status);
    }
  }

 private:
  PlatformCall& TakesName(const ads_name name, short type) {
    if (name == nullptr) return Takes(nullptr);
    resbuf record{nullptr, type, {}};
    record.resval.rlname[0] = name[0];
    record.resval.rlname[1] = name[1];
    return Takes(&record);
  }

  std::optional<int> Order() { return m_host.log.HasOrders() ? m_host.log.Order(m_call) : std::nullopt; }

  // What was objected to is a mistake of the function that is being called.
  int Blame() {
    if (Host::Frame* frame = m_host.CurrentFrame())
      frame->errors.push_back(m_call.function + ": " + *m_call.objection);
    return RTERROR;
  }

  template <typename Answer>
  Answer Log(int status, Answer answer) {
    m_call.status = status;
    m_host.log.Add(std::move(m_call));
    return answer;
  }

  Host& m_host = Host::Instance();
  LoggedCall m_call;
  bool m_isWatched = m_host.log.Enabled() || m_host.log.HasOrders() || m_host.log.IsObserved();
};

}  // namespace lomlisp::embedded
