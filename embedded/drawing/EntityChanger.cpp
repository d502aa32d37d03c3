#include <embedded/drawing/EntityChanger.h>

#include <embedded/Text.h>
#include <embedded/drawing/EntityTypes.h>
#include <embedded/drawing/EntryMaker.h>
#include <embedded/drawing/GivenGroups.h>
#include <embedded/drawing/GroupChecks.h>
#include <embedded/drawing/GroupMerge.h>

#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace lomlisp::embedded {

namespace {

using Objection = std::optional<std::string>;

bool IsEntity(const Object& object) { return object.list != nullptr; }

const EntityType* TypeOf(const Object& object) {
  return IsEntity(object)
             ? FindEntityType(object.Type(), object.groups, object.header ? &object.header->groups : nullptr)
             : nullptr;
}

Objection CheckObject(const Object& object) {
  if (IsEntity(object) || object.table != nullptr || object.Type() == L"XRECORD") return std::nullopt;
  return Utf8(object.Type()) + " cannot be changed";
}

Objection CheckType(const Object& object, const Groups& given) {
  const Group* type = Find(given, kTypeCode);
  if (type == nullptr || Folded(std::get<std::wstring>(type->value)) == Folded(object.Type()))
    return std::nullopt;
  return AboutGroup(kTypeCode) + "the type is " + Utf8(object.Type()) + " and stays so";
}

// The class of a polyline is that of its vertices too.
Objection CheckKind(const Object& object, const Groups& merged) {
  const EntityType* type = TypeOf(object);
  if (type == nullptr || (type->name != L"POLYLINE" && type->name != L"VERTEX")) return std::nullopt;
  const Groups* header = object.header != nullptr ? &object.header->groups : nullptr;
  if (FindEntityType(type->name, merged, header) == type) return std::nullopt;
  return AboutGroup(70) + "would make it another kind of " + Utf8(type->name);
}

Objection CheckNesting(Drawing& drawing, const Object& object, const Group& group) {
  if (group.code != kNameCode || object.Type() != L"INSERT" || object.list->block == nullptr)
    return std::nullopt;
  const std::wstring_view block = object.list->block->Name();
  if (!ContainBlock(drawing, {std::get<std::wstring>(group.value)}, block)) return std::nullopt;
  return "the block \"" + Utf8(block) + "\" would contain itself";
}

// Only what changes is looked at: a drawing may hold what could not be made here.
Objection CheckChanges(Drawing& drawing, const Object& object, const Groups& changed) {
  for (const Group& group : changed) {
    if (auto objection = CheckGroup(drawing, object.Type(), group)) return objection;
    if (!IsEntity(object)) continue;
    if (auto objection = CheckNesting(drawing, object, group)) return objection;
  }
  return std::nullopt;
}

Objection MergeExtended(Drawing& drawing, std::vector<ExtendedData>& stored,
                        std::vector<ExtendedData> given) {
  std::unordered_map<std::wstring, size_t> places;
  for (size_t place = 0; place < stored.size(); ++place)
    places.emplace(Folded(stored[place].application), place);
  std::unordered_set<std::wstring> removed;
  for (ExtendedData& data : given) {
    std::wstring name = Folded(data.application);
    const auto old = places.find(name);
    if (old == places.end()) {
      if (auto objection = CheckApplication(drawing, data)) return objection;
      if (!data.groups.empty()) stored.push_back(std::move(data));
    } else if (data.groups.empty()) {
      removed.insert(std::move(name));
    } else {
      stored[old->second].groups = std::move(data.groups);
    }
  }
  std::erase_if(stored, [&](const ExtendedData& data) { return removed.contains(Folded(data.application)); });
  return std::nullopt;
}

void Note(Drawing& drawing, Object& object) {
  if (!IsEntity(object)) return drawing.SetModified(true);
  drawing.NoteChange(object);
  if (object.header != nullptr)
    object.header->needsRegeneration = true;
  else if (object.list->block == nullptr)
    ++drawing.regenerations;
}

void Store(Drawing& drawing, Object& object, Groups groups, std::vector<ExtendedData> extended) {
  const std::wstring oldName(TextOf(object.groups, kNameCode));
  if (IsEntity(object) && Find(groups, kLayerCode) != nullptr) NeedLayer(drawing, TextOf(groups, kLayerCode));
  object.groups = std::move(groups);
  object.extended = std::move(extended);
  if (object.table != nullptr && TextOf(object.groups, kNameCode) != oldName)
    FollowRename(drawing, object, oldName);
  Note(drawing, object);
}

}  // namespace

Objection ModifyEntity(Drawing& drawing, const Chain& chain) {
  std::string unreadable;
  auto given = ReadGiven(chain, drawing, unreadable);
  if (!given) return unreadable;
  if (!given->name) return "the name of the entity (-1) is missing";
  Object* object = drawing.FindLive(given->name->value.rlname);
  if (object == nullptr) return "group -1: there is no object of that name";
  if (auto objection = CheckObject(*object)) return objection;
  if (auto objection = CheckType(*object, given->groups)) return objection;

  const EntityType* type = TypeOf(*object);
  auto merged = MergeGroups(type, object->groups, given->groups, unreadable);
  if (!merged) return unreadable;
  if (auto objection = CheckKind(*object, merged->groups)) return objection;
  if (auto objection = CheckChanges(drawing, *object, merged->changed)) return objection;
  if (object->table != nullptr)
    if (auto objection = CheckRename(drawing, *object, TextOf(merged->groups, kNameCode))) return objection;
  auto extended = object->extended;
  if (auto objection = MergeExtended(drawing, extended, std::move(given->extended))) return objection;

  Store(drawing, *object, std::move(merged->groups), std::move(extended));
  return std::nullopt;
}

Objection DeleteEntity(Drawing& drawing, const ads_name name) {
  Object* object = drawing.FindName(name);
  if (object == nullptr) return "there is no object of that name";
  if (object->header != nullptr)
    return Utf8(object->Type()) + " cannot be erased without its " + Utf8(object->header->Type());
  if (!IsEntity(*object)) {
    if (object->isErased) return "what was in a block before it was defined anew cannot be restored";
    return Utf8(object->Type()) + " cannot be erased";
  }
  drawing.SetErased(*object, !object->isErased);
  return std::nullopt;
}

Objection UpdateEntity(Drawing& drawing, const ads_name name) {
  Object* object = drawing.FindLive(name);
  if (object == nullptr) return "there is no object of that name";
  if (!IsEntity(*object)) return Utf8(object->Type()) + " is not drawn";
  Object& whole = object->header != nullptr ? *object->header : *object;
  whole.needsRegeneration = false;
  ++drawing.regenerations;
  return std::nullopt;
}

}  // namespace lomlisp::embedded
