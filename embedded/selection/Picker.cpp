#include <embedded/selection/Picker.h>

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

namespace lomlisp::embedded {

namespace {

Position PlanOf(const Point& point) { return {point.x, point.y}; }

std::vector<Position> PlanOf(const std::vector<Point>& points) {
  std::vector<Position> positions;
  positions.reserve(points.size());
  for (const Point& point : points) positions.push_back(PlanOf(point));
  return positions;
}

// Tells who is visible; asks for each layer once.
class Visibility {
 public:
  explicit Visibility(Drawing& drawing) : m_drawing(drawing) {}

  bool IsVisible(const Object& entity) {
    constexpr int kPaperSpaceCode = 67;
    constexpr int kInvisibleCode = 60;
    const Groups& groups = entity.groups;
    return !entity.isErased && IntegerOf(groups, kPaperSpaceCode) == 0 &&
           IntegerOf(groups, kInvisibleCode) != 1 && IsLayerVisible(TextOf(groups, kLayerCode, L"0"));
  }

 private:
  bool IsLayerVisible(std::wstring_view name) {
    const auto [known, isNew] = m_layers.try_emplace(name, true);
    if (isNew) known->second = ReadLayer(name);
    return known->second;
  }

  // A layer without an entry is on.
  bool ReadLayer(std::wstring_view name) {
    constexpr long long kFrozen = 1;
    const Object* layer = m_drawing.FindEntry(L"LAYER", name);
    if (layer == nullptr) return true;
    const bool isOff = IntegerOf(layer->groups, 62) < 0;
    return !isOff && (IntegerOf(layer->groups, 70) & kFrozen) == 0;
  }

  Drawing& m_drawing;
  std::unordered_map<std::wstring_view, bool> m_layers;
};

// Whether a changed object may show in inserts.
bool IsOfBlock(const Object& object) {
  return object.list != nullptr ? object.list->block != nullptr : object.Type() == L"BLOCK";
}

// So many changes are looked at one by one before the index is built anew, that both cost the same.
size_t MostRecent(size_t entities) {
  return 64 + 16 * static_cast<size_t>(std::sqrt(static_cast<double>(entities)));
}

}  // namespace

std::vector<Object*> Picker::All() const {
  Visibility visibility(m_drawing);
  std::vector<Object*> found;
  for (Object* entity : m_drawing.Entities().members)
    if (visibility.IsVisible(*entity)) found.push_back(entity);
  return found;
}

std::vector<Object*> Picker::Window(const Point& a, const Point& b, bool isCrossing) {
  if (!IsUsable(PlanOf(a)) || !IsUsable(PlanOf(b))) return {};
  return Select(Region::Window(PlanOf(a), PlanOf(b)), isCrossing);
}

std::optional<std::string> Picker::Polygon(const std::vector<Point>& corners, bool isCrossing,
                                           std::vector<Object*>& found) {
  std::string objection;
  const auto region = Region::Polygon(PlanOf(corners), objection);
  found = region ? Select(*region, isCrossing) : std::vector<Object*>();
  return region ? std::nullopt : std::optional(objection);
}

std::optional<std::string> Picker::Fence(const std::vector<Point>& points, std::vector<Object*>& found) {
  std::string objection;
  const auto region = Region::Fence(PlanOf(points), objection);
  found = region ? Select(*region, true) : std::vector<Object*>();
  return region ? std::nullopt : std::optional(objection);
}

Object* Picker::At(const Point& point, double halfBox) {
  const Position half{halfBox, halfBox};
  const Position low = PlanOf(point) - half;
  const Position high = PlanOf(point) + half;
  if (!IsUsable(low) || !IsUsable(high)) return nullptr;
  const Region region = Region::Window(low, high);
  Visibility visibility(m_drawing);
  Items candidates = Candidates(region);
  std::sort(candidates.begin(), candidates.end(),
            [](const SpatialIndex::Item& a, const SpatialIndex::Item& b) { return a.number > b.number; });
  for (const SpatialIndex::Item& item : candidates) {
    Object* entity = m_drawing.Entities().members[item.number];
    if (visibility.IsVisible(*entity) && Selects(region, true, item)) return entity;
  }
  return nullptr;
}

std::vector<Object*> Picker::Select(const Region& region, bool isCrossing) {
  Visibility visibility(m_drawing);
  std::vector<Object*> found;
  for (const SpatialIndex::Item& item : Candidates(region)) {
    Object* entity = m_drawing.Entities().members[item.number];
    if (visibility.IsVisible(*entity) && Selects(region, isCrossing, item)) found.push_back(entity);
  }
  std::sort(found.begin(), found.end(),
            [](const Object* a, const Object* b) { return a->position < b->position; });
  return found;
}

// Those whose boxes the region may meet.
Picker::Items Picker::Candidates(const Region& region) {
  Update();
  Items candidates;
  const auto mayMeet = [&](const Box& box) { return region.MayMeet(box); };
  m_examined = m_recent.size() + m_index.SearchIf(mayMeet, [&](const SpatialIndex::Item& item) {
    if (!m_recent.contains(item.number)) candidates.push_back(item);
    return true;
  });
  for (const auto& [position, box] : m_recent)
    if (mayMeet(box)) candidates.push_back({box, position});
  return candidates;
}

// Where the boxes leave it open, the entity itself is looked at, up to the first part that decides.
bool Picker::Selects(const Region& region, bool isCrossing, const SpatialIndex::Item& item) const {
  if (region.MustContain(item.box)) return true;
  if (!isCrossing && (region.IsWindow() || !region.Bounds().Contains(item.box))) return false;
  bool isSelected = !isCrossing;
  VisitShapes(m_drawing, *m_drawing.Entities().members[item.number], Copies::All, [&](const Shape& shape) {
    isSelected = isCrossing ? region.Meets(shape) : region.Contains(shape);
    return isSelected != isCrossing;
  });
  return isSelected;
}

void Picker::Update() {
  const std::vector<Object*> changes = m_drawing.TakeChanges();
  const EntityList& entities = m_drawing.Entities();
  const auto isOfBlock = [](const Object* object) { return IsOfBlock(*object); };
  const bool isStale = !m_isBuilt || std::any_of(changes.begin(), changes.end(), isOfBlock);
  if (isStale || m_recent.size() + changes.size() > MostRecent(entities.members.size())) return Build();
  for (const Object* entity : changes)
    if (entity->list == &entities) m_recent[entity->position] = BoxOf(*entity);
}

void Picker::Build() {
  Items items;
  for (const Object* entity : m_drawing.Entities().members)
    if (const Box box = BoxOf(*entity); !box.IsEmpty()) items.push_back({box, entity->position});
  m_index = SpatialIndex(std::move(items));
  m_recent.clear();
  m_isBuilt = true;
}

// Empty when there is nothing to be found.
Box Picker::BoxOf(const Object& entity) const {
  Box box;
  if (entity.isErased) return box;
  VisitShapes(m_drawing, entity, Copies::Outer, [&](const Shape& shape) {
    box.Add(shape.Bounds());
    return true;
  });
  return box;
}

}  // namespace lomlisp::embedded
