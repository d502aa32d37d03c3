#include <embedded/SelectionRequest.h>

#include <embedded/Session.h>
#include <embedded/Text.h>
#include <embedded/UserPoints.h>

#include <algorithm>
#include <string>
#include <utility>
#include <variant>

namespace lomlisp::embedded {

namespace {

constexpr const char* kNothingSelected = "the user selected nothing";

Selected Refused(std::string objection) { return {{RTERROR, std::move(objection), false}, {}}; }

Selected Found(std::vector<Object*> entities) { return {{RTNORM, {}, false}, std::move(entities)}; }

std::vector<Object*> EntitiesAt(Host& host, const Point& point) {
  Object* entity = host.CurrentSession().picker.At(point, host.answers.halfPickBox);
  return entity != nullptr ? std::vector{entity} : std::vector<Object*>();
}

Selected FoundAt(Host& host, const Point& point) {
  std::vector<Object*> entities = EntitiesAt(host, point);
  return entities.empty() ? Refused("nothing is there") : Found(std::move(entities));
}

// A box that is drawn from left to right is a window, from right to left it is a crossing one.
std::vector<Object*> EntitiesInBox(Session& session, const Point& first, const Point& second) {
  return session.picker.Window(first, second, second.x < first.x);
}

std::vector<Object*> Live(std::vector<Object*> entities) {
  std::erase_if(entities, [](const Object* entity) { return entity->isErased; });
  return entities;
}

std::vector<Object*> Live(const Drawing& drawing, const std::vector<uint64_t>& handles) {
  std::vector<Object*> entities;
  for (const uint64_t handle : handles) {
    if (Object* entity = drawing.FindHandle(handle)) entities.push_back(entity);
  }
  return Live(std::move(entities));
}

std::vector<Object*> Everything(const Drawing& drawing) { return Live(drawing.Entities().members); }

std::vector<Object*> LastVisible(Session& session) {
  std::vector<Object*> visible = session.picker.All();
  if (visible.size() > 1) visible.erase(visible.begin(), visible.end() - 1);
  return visible;
}

// --- What the user selects ---

// By one answer.
struct Choice {
  std::vector<Object*> entities;
  bool isWhole = false;  // nothing is added to it
};

// What is laid down in other ways than as text.
class Choosing {
 public:
  explicit Choosing(Host& host) : m_host(host) {}

  std::vector<Object*> operator()(const PickEntity& pick) const {
    return Live(m_host.CurrentDrawing(), {pick.handle});
  }
  std::vector<Object*> operator()(const PickPoint& pick) const { return EntitiesAt(m_host, pick.point); }
  std::vector<Object*> operator()(const SelectEntities& selection) const {
    return Live(m_host.CurrentDrawing(), selection.handles);
  }
  template <typename Other>
  std::vector<Object*> operator()(const Other&) const {
    return {};
  }

 private:
  Host& m_host;
};

// "1,2" picks, "1,2 3,4" is a box.
std::optional<std::vector<Object*>> EntitiesByPoints(Host& host, std::wstring_view text) {
  const size_t blank = std::min(text.find_first_of(L" \t"), text.size());
  PointOrigin origin = CurrentOrigin(host.variables);
  const auto first = ReadPoint(text.substr(0, blank), origin);
  if (!first) return std::nullopt;
  if (blank == text.size()) return EntitiesAt(host, *first);
  origin.last = *first;
  const auto second = ReadPoint(Trimmed(text.substr(blank)), origin);
  if (!second) return std::nullopt;
  return EntitiesInBox(host.CurrentSession(), *first, *second);
}

std::optional<std::vector<Object*>> EntitiesByText(Host& host, std::wstring_view text) {
  Session& session = host.CurrentSession();
  const auto way = Keywords(L"ALL Last Previous").Match(text);
  if (!way) return EntitiesByPoints(host, text);
  if (*way == L"ALL") return session.picker.All();
  return *way == L"Last" ? LastVisible(session) : Live(session.sets.Previous());
}

std::optional<Choice> ChoiceBy(Host& host, const UserAnswer& answer) {
  const auto typed = TypedText(answer);
  if (!typed) return Choice{std::visit(Choosing(host), answer), true};
  auto entities = EntitiesByText(host, *typed);
  return entities ? std::optional(Choice{std::move(*entities), false}) : std::nullopt;
}

void Add(SelectionSet& selection, const std::vector<Object*>& entities) {
  for (Object* entity : entities) selection.Add(*entity);
}

// As in "2 found (1 duplicate), 5 total".
void Report(Console& console, size_t found, size_t before, size_t total) {
  const size_t duplicates = before + found - total;
  std::wstring text = std::to_wstring(found) + L" found";
  if (duplicates > 0)
    text += L" (" + std::to_wstring(duplicates) + (duplicates == 1 ? L" duplicate)" : L" duplicates)");
  if (before > 0) text += L", " + std::to_wstring(total) + L" total";
  console.Write(text + L"\n");
}

Selected SelectByAnswers(Host& host, bool isOnce) {
  Question question(host, L"Select objects: ", L"*Invalid selection*", 0);
  SelectionSet selection;
  for (;;) {
    const auto reply = question.Ask<Choice>([&](const UserAnswer& answer) { return ChoiceBy(host, answer); });
    if (reply.status != RTNORM && reply.status != RTNONE) return {reply, {}};
    const Choice& choice = reply.value;
    const size_t before = selection.Size();
    Add(selection, choice.entities);
    if (reply.status == RTNORM && !choice.isWhole)
      Report(host.console, choice.entities.size(), before, selection.Size());
    if (reply.status == RTNONE || choice.isWhole || isOnce) break;
  }
  return selection.Size() > 0 ? Found(selection.Members()) : Refused(kNothingSelected);
}

Selected SelectByUser(Host& host, const SelectionRequest& request) {
  if (request.first && request.second)
    return Found(EntitiesInBox(host.CurrentSession(), *request.first, *request.second));
  if (request.first) return FoundAt(host, *request.first);
  return SelectByAnswers(host, request.isOnce);
}

// --- The other modes ---

Selected SelectInWindow(Session& session, const SelectionRequest& request) {
  if (!request.first || !request.second) return Refused("two points are needed");
  const bool isCrossing = request.mode == SelectionMode::Crossing;
  return Found(session.picker.Window(*request.first, *request.second, isCrossing));
}

Selected SelectAlong(Session& session, const SelectionRequest& request) {
  std::vector<Object*> entities;
  const bool isCrossing = request.mode == SelectionMode::CrossingPolygon;
  const auto objection = request.mode == SelectionMode::Fence
                             ? session.picker.Fence(request.corners, entities)
                             : session.picker.Polygon(request.corners, isCrossing, entities);
  return objection ? Refused(*objection) : Found(std::move(entities));
}

}  // namespace

Selected Select(Host& host, const SelectionRequest& request) {
  Session& session = host.CurrentSession();
  switch (request.mode) {
    case SelectionMode::User:
      return SelectByUser(host, request);
    case SelectionMode::Everything:
      return Found(Everything(*session.drawing));
    case SelectionMode::Visible:
      return Found(session.picker.All());
    case SelectionMode::Last:
      return Found(LastVisible(session));
    case SelectionMode::Previous:
      return Found(Live(session.sets.Previous()));
    case SelectionMode::Implied:
      return Found(Live(*session.drawing, session.implied));
    case SelectionMode::Window:
    case SelectionMode::Crossing:
      return SelectInWindow(session, request);
    default:
      return SelectAlong(session, request);
  }
}

}  // namespace lomlisp::embedded
