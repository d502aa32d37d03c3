#include <embedded/drawing/EntryMaker.h>

#include <embedded/Text.h>
#include <embedded/drawing/EntityTypes.h>
#include <embedded/drawing/GroupChecks.h>
#include <embedded/drawing/GroupOrder.h>

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace lomlisp::embedded {

namespace {

using Objection = std::optional<std::string>;

// What an entry of a table holds behind its name, in order.
struct EntryKind {
  std::wstring_view table;
  Groups defaults;
};

const EntryKind* FindEntryKind(std::wstring_view table) {
  static const std::vector<EntryKind> kinds = {
      {L"APPID", {{70, 0LL}}},
      {L"DIMSTYLE", {{70, 0LL}}},
      {L"LAYER", {{70, 0LL}, {62, 7LL}, {6, L"Continuous"}}},
      {L"LTYPE", {{70, 0LL}, {3, L""}, {72, 65LL}, {73, 0LL}, {40, 0.0}}},
      {L"STYLE", {{70, 0LL}, {40, 0.0}, {41, 1.0}, {50, 0.0}, {71, 0LL}, {42, 2.5}, {3, L"txt"}, {4, L""}}},
      {L"UCS", {{70, 0LL}, {10, Point{}}, {11, Point{1, 0, 0, false}}, {12, Point{0, 1, 0, false}}}},
      {L"VIEW",
       {{70, 0LL},
        {40, 1.0},
        {10, Point{}},
        {41, 1.0},
        {11, Point{0, 0, 1, false}},
        {12, Point{}},
        {42, 50.0},
        {43, 0.0},
        {44, 0.0},
        {50, 0.0},
        {71, 0LL}}},
  };
  const auto found =
      std::find_if(kinds.begin(), kinds.end(), [&](const EntryKind& kind) { return kind.table == table; });
  return found != kinds.end() ? &*found : nullptr;
}

// The default groups with the given values, then the other given ones. Of a code with a default the last
// given one counts.
Groups OverDefaults(Groups groups, const Groups& given) {
  const size_t defaults = groups.size();
  for (const Group& group : given) {
    if (group.code == kNameCode || group.code == kMarkerCode) continue;
    const auto end = groups.begin() + static_cast<std::ptrdiff_t>(defaults);
    const auto found =
        std::find_if(groups.begin(), end, [&](const Group& one) { return one.code == group.code; });
    if (found != end)
      found->value = group.value;
    else
      groups.push_back(group);
  }
  return groups;
}

Objection CheckNewName(Drawing& drawing, std::wstring_view table, std::wstring_view name) {
  if (!IsLegalName(name))
    return AboutGroup(kNameCode) + "\"" + Utf8(name) + "\" is no name for an entry of " + Utf8(table);
  if (drawing.FindEntry(table, name) == nullptr) return std::nullopt;
  return AboutGroup(kNameCode) + "there is an entry \"" + Utf8(name) + "\" of " + Utf8(table);
}

// --- Renaming ---

// How entries of a table are named by other objects.
struct NamedBy {
  std::wstring_view table;
  int code;
  std::wstring_view variable;                 // of the header, whose value has the same code
  std::vector<std::wstring_view> types;       // of the objects that name it; empty: all entities
  std::vector<std::wstring_view> protected_;  // entries that keep their names
};

const NamedBy* FindNamedBy(std::wstring_view table) {
  static const std::vector<NamedBy> tables = {
      {L"LAYER", 8, L"$CLAYER", {}, {L"0"}},
      {L"LTYPE", 6, L"$CELTYPE", {}, {L"BYLAYER", L"BYBLOCK", L"CONTINUOUS"}},
      {L"STYLE", 7, L"$TEXTSTYLE", {L"TEXT", L"MTEXT", L"ATTRIB", L"ATTDEF"}, {L"STANDARD"}},
      {L"DIMSTYLE", 3, L"$DIMSTYLE", {L"DIMENSION", L"LEADER", L"TOLERANCE"}, {L"STANDARD"}},
      {L"UCS", 0, L"", {}, {}},
      {L"VIEW", 0, L"", {}, {}},
  };
  const auto found =
      std::find_if(tables.begin(), tables.end(), [&](const NamedBy& one) { return one.table == table; });
  return found != tables.end() ? &*found : nullptr;
}

bool Contains(const std::vector<std::wstring_view>& names, std::wstring_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

class Following {
 public:
  Following(Drawing& drawing, const NamedBy& named, std::wstring_view oldName, std::wstring_view newName)
      : m_drawing(drawing), m_named(named), m_oldName(Folded(oldName)), m_newName(newName) {}

  void InAll() {
    InList(m_drawing.Entities());
    for (BlockDefinition& block : m_drawing.Blocks()) {
      InEntity(*block.begin);
      InList(block.content);
      InEntity(*block.end);
    }
    if (m_named.table == L"LTYPE") InLayers();
    InVariable();
  }

 private:
  void InList(EntityList& list) {
    for (Object* entity : list.members) {
      InEntity(*entity);
      for (Object* part : entity->parts) InEntity(*part);
    }
  }

  void InEntity(Object& entity) {
    if (!m_named.types.empty() && !Contains(m_named.types, entity.Type())) return;
    // Beginnings and ends of blocks are in no list, and no entities to who asks for changes.
    if (InGroups(entity.groups) && entity.list != nullptr) m_drawing.NoteChange(entity);
  }

  void InLayers() {
    Table* layers = m_drawing.FindTable(L"LAYER");
    if (layers == nullptr) return;
    for (Object* layer : layers->entries) InGroups(layer->groups);
  }

  void InVariable() {
    Groups values = m_drawing.HeaderVariable(m_named.variable);
    if (InGroups(values)) m_drawing.SetHeaderVariable(m_named.variable, std::move(values));
  }

  bool InGroups(Groups& groups) {
    Group* group = Find(groups, m_named.code);
    auto* name = group != nullptr ? std::get_if<std::wstring>(&group->value) : nullptr;
    if (name == nullptr || Folded(*name) != m_oldName) return false;
    *name = m_newName;
    return true;
  }

  Drawing& m_drawing;
  const NamedBy& m_named;
  std::wstring m_oldName;
  std::wstring m_newName;
};

}  // namespace

bool IsEntryType(std::wstring_view type) { return FindEntryKind(type) != nullptr; }

Objection MakeEntry(Drawing& drawing, std::wstring_view table, GivenGroups given, Object*& made) {
  if (drawing.FindTable(table) == nullptr) return "the drawing has no table " + Utf8(table);
  if (Find(given.groups, kNameCode) == nullptr) return AboutGroup(kNameCode) + "missing";
  const std::wstring name(TextOf(given.groups, kNameCode));
  if (auto objection = CheckNewName(drawing, table, name)) return objection;
  const OwnGroups own = FindOwn(given.groups, true);
  if (!own.areBracketsBalanced) return AboutGroup(102) + "the brackets do not balance";
  Groups groups;
  for (const size_t place : own.places) groups.push_back(given.groups[place]);
  groups = OverDefaults(FindEntryKind(table)->defaults, groups);
  FlattenPoints(table, groups);
  for (const Group& group : groups)
    if (auto objection = CheckGroup(drawing, table, group)) return objection;
  for (const ExtendedData& data : given.extended)
    if (auto objection = CheckApplication(drawing, data)) return objection;
  made = &drawing.NewEntry(table, name, std::move(groups));
  std::copy_if(given.extended.begin(), given.extended.end(), std::back_inserter(made->extended),
               [](const ExtendedData& data) { return !data.groups.empty(); });
  return std::nullopt;
}

Objection CheckRename(Drawing& drawing, const Object& entry, std::wstring_view name) {
  const std::wstring oldName(TextOf(entry.groups, kNameCode));
  if (oldName == name) return std::nullopt;
  const std::wstring_view table = entry.table->Name();
  const NamedBy* named = FindNamedBy(table);
  if (named == nullptr || Contains(named->protected_, Folded(oldName)))
    return AboutGroup(kNameCode) + "the entry \"" + Utf8(oldName) + "\" of " + Utf8(table) +
           " keeps its name";
  if (Folded(oldName) == Folded(name)) return std::nullopt;
  return CheckNewName(drawing, table, name);
}

void FollowRename(Drawing& drawing, Object& entry, const std::wstring& oldName) {
  drawing.NoteRename(entry, oldName);
  const NamedBy* named = FindNamedBy(entry.table->Name());
  if (named == nullptr || named->variable.empty()) return;
  Following(drawing, *named, oldName, TextOf(entry.groups, kNameCode)).InAll();
}

}  // namespace lomlisp::embedded
