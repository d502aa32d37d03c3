#include <embedded/drawing/GroupMerge.h>

#include <embedded/drawing/GivenGroups.h>
#include <embedded/drawing/GroupOrder.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <utility>
#include <vector>

namespace lomlisp::embedded {

namespace {

constexpr int kVertexCode = 10;
constexpr int kVertexCountCode = 90;

// A given group and the class marker that it stands under.
struct Item {
  Group group;
  std::wstring_view marker;
};

bool IsVertexCode(int code) {
  return code == kVertexCode || code == 40 || code == 41 || code == 42 || code == 91;
}

// Codes of an entity that never change: whether parts follow, and the space.
bool IsFixed(int code) { return code == 66 || code == 67 || code == 410; }

bool HasCommonMarker(const Groups& groups) {
  return std::any_of(groups.begin(), groups.end(), [](const Group& group) {
    return group.code == kMarkerCode && group.value == GroupValue(std::wstring(kCommonMarker));
  });
}

// The given value in the form of the stored one: with as many coordinates.
GroupValue InFormOf(const GroupValue& stored, const GroupValue& given) {
  const auto* point = std::get_if<Point>(&given);
  if (point == nullptr) return given;
  if (std::holds_alternative<double>(stored)) return point->x;
  const auto* old = std::get_if<Point>(&stored);
  return old != nullptr && old->isFlat ? Point{point->x, point->y, 0.0, true} : given;
}

// A vertex of a LWPOLYLINE: its point and what follows it.
using Vertices = std::vector<Groups>;

Vertices SplitVertices(const Groups& run) {
  Vertices vertices;
  for (const Group& group : run) {
    if (group.code == kVertexCode) vertices.emplace_back();
    if (!vertices.empty()) vertices.back().push_back(group);
  }
  return vertices;
}

Groups JoinVertices(const Vertices& vertices) {
  Groups run;
  for (const Groups& vertex : vertices) run.insert(run.end(), vertex.begin(), vertex.end());
  return run;
}

bool ByCode(const Group& a, const Group& b) { return a.code < b.code; }

// The stored vertices with the given ones over them, of equal number.
void OverVertices(Vertices& stored, const Vertices& given) {
  std::set<int> codes;
  for (const Groups& vertex : given)
    for (const Group& group : vertex) codes.insert(group.code);
  for (size_t index = 0; index < stored.size(); ++index) {
    Groups& vertex = stored[index];
    std::erase_if(vertex, [&](const Group& group) { return codes.contains(group.code); });
    vertex.insert(vertex.end(), given[index].begin(), given[index].end());
    std::stable_sort(vertex.begin(), vertex.end(), ByCode);
  }
}

class Merge {
 public:
  Merge(const EntityType* type, const Groups& stored, const Groups& given)
      : m_type(type), m_stored(stored), m_dropped(stored.size(), false) {
    m_merged.groups = stored;
    for (const size_t place : FindOwn(stored, type != nullptr).places)
      if (stored[place].code != kMarkerCode) m_places[stored[place].code].push_back(place);
    TakeGiven(given);
  }

  std::optional<MergedGroups> Run(std::string& objection) {
    if (m_type != nullptr && m_type->name == L"LWPOLYLINE" && !MergeVertices(objection)) return std::nullopt;
    std::map<int, std::vector<const Item*>> byCode;
    for (const Item& item : m_items) byCode[item.group.code].push_back(&item);
    for (const auto& [code, items] : byCode) Classify(code, items);
    Rewrite();
    InsertNew();
    Rebuild();
    return std::move(m_merged);
  }

 private:
  void TakeGiven(const Groups& given) {
    Groups own;
    for (const size_t place : FindOwn(given, m_type != nullptr).places) own.push_back(given[place]);
    own = KeepLast(m_type, std::move(own));
    // The markers of the items point into it.
    m_given = std::move(own);
    const bool isEntity = m_type != nullptr || HasCommonMarker(m_stored);
    std::wstring_view marker;
    for (const Group& group : m_given) {
      if (group.code == kMarkerCode)
        marker = std::get<std::wstring>(group.value);
      else if (!isEntity || !IsFixed(group.code))
        m_items.push_back({group, marker});
    }
  }

  // --- The vertices of a LWPOLYLINE ---

  bool MergeVertices(std::string& objection) {
    std::erase_if(m_items, [](const Item& item) { return item.group.code == kVertexCountCode; });
    Groups given;
    for (const Item& item : m_items)
      if (IsVertexCode(item.group.code)) given.push_back(item.group);
    if (given.empty()) return true;
    std::erase_if(m_items, [](const Item& item) { return IsVertexCode(item.group.code); });

    Vertices vertices = StoredVertices();
    if (!OverStored(vertices, given, objection)) return false;
    Groups run = JoinVertices(vertices);
    FlattenPoints(m_type->name, run);
    ReplaceRun(std::move(run), given);
    m_vertexCount = vertices.size();
    return true;
  }

  Vertices StoredVertices() const {
    Groups run;
    const size_t end = EndOfOwn(m_stored);
    for (size_t place = 0; place < end; ++place)
      if (IsVertexCode(m_stored[place].code)) run.push_back(m_stored[place]);
    return SplitVertices(run);
  }

  static bool OverStored(Vertices& vertices, const Groups& given, std::string& objection) {
    const bool hasPoints = Find(given, kVertexCode) != nullptr;
    if (!hasPoints) return SpreadOver(vertices, given, objection);
    if (given.front().code != kVertexCode) {
      objection = AboutGroup(given.front().code) + "stands before the first vertex (10)";
      return false;
    }
    Vertices over = SplitVertices(given);
    if (over.size() == vertices.size())
      OverVertices(vertices, over);
    else
      vertices = std::move(over);
    return true;
  }

  // Values without vertices: one for each vertex, or one for each that is stored.
  static bool SpreadOver(Vertices& vertices, const Groups& given, std::string& objection) {
    std::map<int, std::vector<const Group*>> byCode;
    for (const Group& group : given) byCode[group.code].push_back(&group);
    for (const auto& [code, values] : byCode) {
      std::vector<Group*> stored;
      for (Groups& vertex : vertices)
        if (Group* group = Find(vertex, code)) stored.push_back(group);
      if (stored.size() == values.size()) {
        for (size_t index = 0; index < values.size(); ++index) stored[index]->value = values[index]->value;
      } else if (vertices.size() == values.size()) {
        Vertices over(vertices.size());
        for (size_t index = 0; index < values.size(); ++index) over[index].push_back(*values[index]);
        OverVertices(vertices, over);
      } else {
        objection = AboutGroup(code) + "cannot be told to the vertices (10)";
        return false;
      }
    }
    return true;
  }

  void ReplaceRun(Groups run, const Groups& given) {
    size_t first = PlaceFor(m_type, m_stored, kVertexCode, {}).place;
    for (size_t place = EndOfOwn(m_stored); place-- > 0;) {
      if (!IsVertexCode(m_stored[place].code)) continue;
      m_dropped[place] = true;
      first = place;
    }
    Insert(first, std::move(run));
    m_merged.changed.insert(m_merged.changed.end(), given.begin(), given.end());
  }

  // --- Other groups ---

  void Classify(int code, const std::vector<const Item*>& items) {
    const auto found = m_places.find(code);
    if (found == m_places.end()) {
      for (const Item* item : items)
        if (!IsDefaultHere(item->group) && !IsUpwards(item->group)) m_new.insert(item);
    } else if (found->second.size() == items.size()) {
      for (size_t index = 0; index < items.size(); ++index)
        Replace(found->second[index], items[index]->group);
    } else {
      for (const size_t place : found->second) m_dropped[place] = true;
      m_firstRewritten = std::min(m_firstRewritten, found->second.front());
      for (const Item* item : items) m_rewritten.insert(item);
    }
  }

  // The extrusion of an entity that has none, which LISP sees of every one.
  static bool IsUpwards(const Group& group) {
    return group.code == 210 && group.value == GroupValue(Point{0.0, 0.0, 1.0, false});
  }

  // What the codes mean in types that are not described is not known.
  bool IsDefaultHere(const Group& group) const { return m_type != nullptr && IsDefault(group); }

  void Replace(size_t place, const Group& group) {
    if (IsDefaultHere(group)) {
      m_dropped[place] = true;
      return;
    }
    Group& stored = m_merged.groups[place];
    GroupValue value = InFormOf(stored.value, group.value);
    if (stored.value == value) return;
    stored.value = std::move(value);
    m_merged.changed.push_back(group);
  }

  // The items are in the order in which they were given, which is that of their addresses.
  void Rewrite() {
    Groups together;
    for (const Item* item : m_rewritten) together.push_back(item->group);
    m_merged.changed.insert(m_merged.changed.end(), together.begin(), together.end());
    if (!together.empty()) Insert(m_firstRewritten, std::move(together));
  }

  // Places are looked for once for each code.
  void InsertNew() {
    std::map<std::pair<int, std::wstring_view>, std::optional<GroupPlace>> places;
    std::map<GroupPlace, Groups> inserted;
    for (const Item* item : m_new) {
      auto& place = places[{item->group.code, item->marker}];
      if (!place) place = PlaceFor(m_type, m_stored, item->group.code, item->marker);
      inserted[*place].push_back(item->group);
      m_merged.changed.push_back(item->group);
    }
    for (auto& [place, groups] : inserted) Insert(place.place, std::move(groups));
  }

  void Insert(size_t place, Groups groups) {
    Groups& there = m_inserted[place];
    std::move(groups.begin(), groups.end(), std::back_inserter(there));
  }

  void Rebuild() {
    Groups groups;
    groups.reserve(m_stored.size());
    auto inserted = m_inserted.begin();
    for (size_t place = 0; place <= m_stored.size(); ++place) {
      if (inserted != m_inserted.end() && inserted->first == place) {
        std::move(inserted->second.begin(), inserted->second.end(), std::back_inserter(groups));
        ++inserted;
      }
      if (place < m_stored.size() && !m_dropped[place]) groups.push_back(std::move(m_merged.groups[place]));
    }
    m_merged.groups = std::move(groups);
    if (m_vertexCount != 0) SetVertexCount();
  }

  void SetVertexCount() {
    const auto count = static_cast<long long>(m_vertexCount);
    Groups& groups = m_merged.groups;
    if (Group* group = Find(groups, kVertexCountCode)) {
      group->value = count;
      return;
    }
    const size_t place = PlaceFor(m_type, groups, kVertexCountCode, {}).place;
    groups.insert(groups.begin() + static_cast<std::ptrdiff_t>(place), {kVertexCountCode, count});
  }

  const EntityType* m_type;
  const Groups& m_stored;
  Groups m_given;
  std::vector<Item> m_items;
  std::map<int, std::vector<size_t>> m_places;  // of the stored groups that can be changed, by code
  std::vector<bool> m_dropped;
  std::map<size_t, Groups> m_inserted;  // in front of the stored group at that place
  std::set<const Item*> m_rewritten;
  std::set<const Item*> m_new;
  size_t m_firstRewritten = static_cast<size_t>(-1);
  size_t m_vertexCount = 0;
  MergedGroups m_merged;
};

}  // namespace

std::optional<MergedGroups> MergeGroups(const EntityType* type, const Groups& stored, const Groups& given,
                                        std::string& objection) {
  if (!FindOwn(given, type != nullptr).areBracketsBalanced) {
    objection = AboutGroup(102) + "the brackets do not balance";
    return std::nullopt;
  }
  return Merge(type, stored, given).Run(objection);
}

}  // namespace lomlisp::embedded
