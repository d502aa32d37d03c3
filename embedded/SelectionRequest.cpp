#include <embedded/SelectionRequest.h>

#include <embedded/Session.h>

#include <utility>

namespace lomlisp::embedded {

namespace {

Selected Refused(std::string objection) { return {{}, RTERROR, std::move(objection), false}; }

Selected Found(std::vector<Object*> entities) { return {std::move(entities), RTNORM, {}, false}; }

Selected FoundAt(Session& session, const Answers& answers, const Point& point) {
  Object* entity = session.picker.At(point, answers.halfPickBox);
  return entity != nullptr ? Found({entity}) : Refused("nothing is there");
}

// A box that is drawn from left to right is a window, from right to left it is a crossing one.
Selected FoundInBox(Session& session, const Point& first, const Point& second) {
  return Found(session.picker.Window(first, second, second.x < first.x));
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

// One answer of the user's.
class Selecting {
 public:
  Selecting(Session& session, Answers& answers) : m_session(session), m_answers(answers) {}

  Selected operator()(const PickEntity& pick) const { return Found(Live(*m_session.drawing, {pick.handle})); }
  Selected operator()(const PickPoint& pick) const { return FoundAt(m_session, m_answers, pick.point); }
  Selected operator()(const PickNothing&) const { return Refused("the user picked nothing"); }
  Selected operator()(const SelectEntities& selection) const {
    return Found(Live(*m_session.drawing, selection.handles));
  }
  Selected operator()(const PressEnter&) const { return Refused("the user selected nothing"); }
  Selected operator()(const PressCancel&) const { return {{}, RTCAN, "the user cancelled", false}; }
  Selected operator()(const TypeKeyword& typed) const {
    m_answers.lastKeyword = typed.keyword;
    return {{}, RTKWORD, "the user typed a keyword", false};
  }

 private:
  Session& m_session;
  Answers& m_answers;
};

Selected SelectByUser(Session& session, Answers& answers, const SelectionRequest& request) {
  if (request.first && request.second) return FoundInBox(session, *request.first, *request.second);
  if (request.first) return FoundAt(session, answers, *request.first);
  const auto answer = answers.Take();
  if (!answer) return {{}, RTERROR, "the user is asked, and no answer is laid down", true};
  return std::visit(Selecting(session, answers), *answer);
}

std::vector<Object*> Everything(const Drawing& drawing) { return Live(drawing.Entities().members); }

std::vector<Object*> LastVisible(Session& session) {
  std::vector<Object*> visible = session.picker.All();
  if (visible.size() > 1) visible.erase(visible.begin(), visible.end() - 1);
  return visible;
}

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

Selected Select(Session& session, Answers& answers, const SelectionRequest& request) {
  switch (request.mode) {
    case SelectionMode::User:
      return SelectByUser(session, answers, request);
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
