// The platform functions for selecting entities.
#include <lomlisp/platform/modules.h>

#include <embedded/PlatformCall.h>
#include <embedded/Question.h>
#include <embedded/SelectionRequest.h>
#include <embedded/Session.h>
#include <embedded/UserPoints.h>
#include <embedded/selection/Filter.h>

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

using namespace lomlisp::embedded;

namespace {

constexpr short kNothingPicked = 7;
constexpr short kNullAnswer = 52;

void SetErrno(short number) {
  if (SystemVariable* variable = Host::Instance().variables.Find(L"ERRNO"))
    variable->value.value.rint = number;
}

// --- One entity ---

// What the user's answer means to acedEntSel.
class Picking {
 public:
  Picking(PlatformCall& call, ads_name name, ads_point picked)
      : m_call(call), m_name(name), m_picked(picked) {}

  int operator()(const PickEntity& pick) {
    const Object* entity = m_session.drawing->FindHandle(pick.handle);
    if (entity == nullptr || entity->isErased)
      return m_call.Report("the user picks an entity that is not there");
    return Hit(*entity, pick.point);
  }
  int operator()(const PickPoint& pick) {
    const Object* entity = m_session.picker.At(pick.point, m_answers.halfPickBox);
    return entity != nullptr ? Hit(*entity, pick.point) : (*this)(PickNothing());
  }
  int operator()(const PickNothing&) {
    SetErrno(kNothingPicked);
    return m_call.Refuse("the user picked nothing");
  }
  int operator()(const SelectEntities&) {
    return m_call.Report("a selection is laid down where an entity is picked");
  }
  // Enter, cancellations, keywords and other texts end the question before.
  template <typename Other>
  int operator()(const Other&) {
    return RTERROR;
  }

 private:
  int Hit(const Object& entity, const Point& point) {
    m_session.drawing->NameOf(entity.handle, m_name);
    m_call.GivesName(m_name);
    m_picked[0] = point.x;
    m_picked[1] = point.y;
    m_picked[2] = point.z;
    SetLastPoint(Host::Instance().variables, point);
    return RTNORM;
  }

  PlatformCall& m_call;
  Session& m_session = Host::Instance().CurrentSession();
  Answers& m_answers = Host::Instance().answers;
  __int64* m_name;
  double* m_picked;
};

// A point that is typed is a pick.
std::optional<UserAnswer> PickFrom(const UserAnswer& answer) {
  if (!TypedText(answer)) return answer;
  const auto point = PointFrom(answer, CurrentOrigin(Host::Instance().variables));
  return point ? std::optional<UserAnswer>(PickPoint{*point}) : std::nullopt;
}

int SelectEntity(PlatformCall& call, const ACHAR* prompt, ads_name name, ads_point picked) {
  if (name == nullptr || picked == nullptr) return call.Refuse("no place for the name or the point");
  Question question(Host::Instance(), prompt != nullptr ? prompt : L"Select object: ", L"Invalid selection.",
                    0);
  const auto reply = question.Ask<UserAnswer>(PickFrom);
  if (reply.status == RTNORM) return std::visit(Picking(call, name, picked), reply.value);
  if (reply.status != RTNONE) return Answered(call, reply);
  SetErrno(kNullAnswer);
  return call.Refuse("the user gave an empty answer");
}

// --- Sets ---

const char* const kTooManySets = "too many selection sets";
const char* const kNoSet = "no selection set has this name";
const char* const kNoEntity = "no entity has this name, or it is erased";

// A set's name is its number, with the drawing's: sets end with their drawing.
void GiveSet(PlatformCall& call, const Session& session, uint64_t number, ads_name set) {
  set[0] = static_cast<__int64>(number);
  set[1] = static_cast<__int64>(session.drawing->Serial());
  call.GivesName(set, RTPICKS);
}

bool IsNone(const ads_name name) { return name == nullptr || (name[0] == 0 && name[1] == 0); }

SelectionSet* FindSet(Session& session, const ads_name set) {
  const bool isOurs = set != nullptr && set[1] == static_cast<__int64>(session.drawing->Serial());
  return isOurs ? session.sets.Find(static_cast<uint64_t>(set[0])) : nullptr;
}

std::optional<Point> PointFrom(const void* place) {
  if (place == nullptr) return std::nullopt;
  const auto* point = static_cast<const double*>(place);
  return Point{point[0], point[1], point[2], false};
}

// The points of a chain, bare or within brackets; nothing when something else is in it.
std::optional<std::vector<Point>> PointsFrom(const Chain& chain) {
  std::vector<Point> points;
  for (size_t index = 0; index < chain.size(); ++index) {
    const Record& record = chain[index];
    const bool isOuterBracket =
        (index == 0 && record.type == RTLB) || (index + 1 == chain.size() && record.type == RTLE);
    if (isOuterBracket) continue;
    if (record.type != RTPOINT && record.type != RT3DPOINT) return std::nullopt;
    const double* at = record.value.rpoint;
    points.push_back({at[0], at[1], record.type == RTPOINT ? 0.0 : at[2], false});
  }
  return points;
}

// acedSSGet with its arguments.
class SelectionCall {
 public:
  SelectionCall(const ACHAR* mode, const void* first, const void* second, const resbuf* filter)
      : m_call("acedSSGet", mode), m_filter(filter) {
    const auto read = ReadSelectionMode(mode != nullptr ? mode : L"");
    m_request.mode = read.value_or(SelectionMode::User);
    if (!read) m_objection = "an unknown mode";
    m_request.isOnce = SelectsOnce(mode != nullptr ? mode : L"");
    if (TakesPointChain(m_request.mode))
      TakePoints(static_cast<const resbuf*>(first));
    else
      m_request.first = TakePoint(first);
    m_request.second = TakePoint(second);
    m_call.Takes(filter);
  }

  int Run(ads_name set) {
    return m_call.Run([&] { return Work(set); });
  }

 private:
  // A chain where a point belongs can be told by its first record, which is on the host's heap.
  std::optional<Point> TakePoint(const void* place) {
    const bool isRecord = place != nullptr && Host::Instance().ledger.BytesFrom(place) == sizeof(resbuf);
    if (isRecord) {
      m_objection = "a chain where a point belongs";
      m_call.Takes(static_cast<const resbuf*>(place));
      return std::nullopt;
    }
    m_call.TakesPoint(static_cast<const double*>(place));
    return PointFrom(place);
  }

  void TakePoints(const resbuf* chain) {
    m_call.Takes(chain);
    if (m_call.HasObjection()) return;
    const auto points = PointsFrom(Capture(chain));
    if (!points) m_objection = "something that is no point among the corners";
    if (points) m_request.corners = *points;
  }

  int Work(ads_name set) {
    if (set == nullptr) m_objection = "no place for the set's name";
    if (!m_objection.empty()) return m_call.Refuse(m_objection);
    Host& host = Host::Instance();
    Session& session = host.CurrentSession();
    std::string objection;
    const auto filter = Filter::Compile(Capture(m_filter), *session.drawing, objection);
    if (!filter) return m_call.Refuse(objection);
    Selected selected = Select(host, m_request);
    if (selected.status != RTNORM) return Answered(m_call, selected);
    std::erase_if(selected.entities, [&](const Object* entity) { return !filter->Matches(*entity); });
    if (selected.entities.empty()) return m_call.Refuse("nothing is selected");
    if (host.switches.newestFirst && m_request.mode == SelectionMode::Everything)
      std::reverse(selected.entities.begin(), selected.entities.end());
    return Give(session, std::move(selected.entities), set);
  }

  int Give(Session& session, std::vector<Object*> entities, ads_name set) {
    const auto number = session.sets.Make(entities);
    if (!number) return m_call.Refuse(kTooManySets);
    session.sets.SetPrevious(std::move(entities));
    GiveSet(m_call, session, *number, set);
    return RTNORM;
  }

  PlatformCall m_call;
  const resbuf* m_filter;
  SelectionRequest m_request;
  std::string m_objection;
};

// --- Members of sets ---

int AddToSet(PlatformCall& call, const ads_name entity, const ads_name set, ads_name result) {
  Session& session = Host::Instance().CurrentSession();
  Object* member = IsNone(entity) ? nullptr : session.drawing->FindLive(entity);
  if (member == nullptr && !IsNone(entity)) return call.Refuse(kNoEntity);
  if (result == nullptr) return call.Refuse("no place for the set's name");
  if (IsNone(set)) {
    const auto number =
        session.sets.Make(member != nullptr ? std::vector<Object*>{member} : std::vector<Object*>());
    if (!number) return call.Refuse(kTooManySets);
    GiveSet(call, session, *number, result);
    return RTNORM;
  }
  SelectionSet* found = FindSet(session, set);
  if (found == nullptr) return call.Refuse(kNoSet);
  if (member == nullptr) return call.Refuse("no entity to add");
  found->Add(*member);
  GiveSet(call, session, static_cast<uint64_t>(set[0]), result);
  return RTNORM;
}

// Calls `work` with the set and the entity, which may be erased, as it stays in its sets.
template <typename Work>
int WithMember(PlatformCall& call, const ads_name entity, const ads_name set, Work work) {
  Session& session = Host::Instance().CurrentSession();
  SelectionSet* found = FindSet(session, set);
  if (found == nullptr) return call.Refuse(kNoSet);
  const Object* member = session.drawing->FindName(entity);
  if (member == nullptr) return call.Refuse(kNoEntity);
  return work(*found, *member) ? RTNORM : call.Refuse("the entity is not in the set");
}

int GiveMember(PlatformCall& call, const ads_name set, int32_t position, ads_name entity) {
  Session& session = Host::Instance().CurrentSession();
  const SelectionSet* found = FindSet(session, set);
  if (found == nullptr || entity == nullptr) return call.Refuse(kNoSet);
  const Object* member = position >= 0 ? found->At(static_cast<size_t>(position)) : nullptr;
  if (member == nullptr) return call.Refuse("the set has no such position");
  session.drawing->NameOf(member->handle, entity);
  call.GivesName(entity);
  return RTNORM;
}

int GiveLength(PlatformCall& call, const ads_name set, int32_t* length) {
  const SelectionSet* found = FindSet(Host::Instance().CurrentSession(), set);
  if (found == nullptr || length == nullptr) return call.Refuse(kNoSet);
  *length = static_cast<int32_t>(found->Size());
  return RTNORM;
}

int FreeSet(PlatformCall& call, const ads_name set) {
  Session& session = Host::Instance().CurrentSession();
  if (FindSet(session, set) == nullptr) return call.Refuse(kNoSet);
  session.sets.Free(static_cast<uint64_t>(set[0]));
  return RTNORM;
}

}  // namespace

int acedEntSel(const ACHAR* prompt, ads_name name, ads_point picked) {
  PlatformCall call("acedEntSel", prompt);
  return call.Run([&] { return SelectEntity(call, prompt, name, picked); });
}

int acedSSGet(const ACHAR* mode, const void* first, const void* second, const resbuf* filter, ads_name set) {
  return SelectionCall(mode, first, second, filter).Run(set);
}

int acedSSLength(const ads_name set, int32_t* length) {
  PlatformCall call("acedSSLength");
  return call.TakesSet(set).Run([&] { return GiveLength(call, set, length); });
}

int acedSSName(const ads_name set, int32_t position, ads_name entity) {
  PlatformCall call("acedSSName");
  return call.TakesSet(set).Run([&] { return GiveMember(call, set, position, entity); });
}

int acedSSAdd(const ads_name entity, const ads_name set, ads_name result) {
  PlatformCall call("acedSSAdd");
  return call.TakesName(entity).TakesSet(set).Run([&] { return AddToSet(call, entity, set, result); });
}

int acedSSDel(const ads_name entity, const ads_name set) {
  PlatformCall call("acedSSDel");
  return call.TakesName(entity).TakesSet(set).Run([&] {
    return WithMember(call, entity, set,
                      [](SelectionSet& from, const Object& member) { return from.Delete(member); });
  });
}

int acedSSMemb(const ads_name entity, const ads_name set) {
  PlatformCall call("acedSSMemb");
  return call.TakesName(entity).TakesSet(set).Run([&] {
    return WithMember(call, entity, set,
                      [](const SelectionSet& in, const Object& member) { return in.Contains(member); });
  });
}

int acedSSFree(const ads_name set) {
  PlatformCall call("acedSSFree");
  return call.TakesSet(set).Run([&] { return FreeSet(call, set); });
}
