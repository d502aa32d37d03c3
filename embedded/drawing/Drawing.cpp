#include <embedded/drawing/Drawing.h>

#include <embedded/Text.h>
#include <embedded/drawing/Entries.h>
#include <embedded/drawing/NewDrawing.h>

#include <algorithm>
#include <utility>

namespace lomlisp::embedded {

namespace {

uint64_t NextSerial() {
  static uint64_t serial = 0;
  return ++serial;
}

std::wstring EntryKey(std::wstring_view table, std::wstring_view name) {
  return Folded(table) + L'\0' + Folded(name);
}

}  // namespace

Drawing::Drawing(Empty) : m_serial(NextSerial()) {}

Drawing::Drawing() : Drawing(Empty()) {
  FillNewDrawing(*this);
  m_isModified = false;
}

Drawing::~Drawing() = default;

// --- Objects and their names ---

Object& Drawing::NewObject(Groups groups, uint64_t handle) {
  Object& object = m_all.emplace_back();
  object.handle = handle != 0 ? handle : m_nextHandle;
  object.groups = std::move(groups);
  m_byHandle.emplace(object.handle, &object);
  if (object.handle >= m_nextHandle) m_nextHandle = object.handle + 1;
  SkipUsedHandles();
  return object;
}

// The greatest handle of all leaves no room above it: then the free ones below are taken.
void Drawing::SkipUsedHandles() {
  while (!IsFree(m_nextHandle)) ++m_nextHandle;
}

void Drawing::RaiseNextHandle(uint64_t handle) {
  m_nextHandle = std::max(m_nextHandle, handle);
  SkipUsedHandles();
}

bool Drawing::IsFree(uint64_t handle) const { return handle != 0 && !m_byHandle.contains(handle); }

Object* Drawing::FindHandle(uint64_t handle) const {
  const auto found = m_byHandle.find(handle);
  return found != m_byHandle.end() ? found->second : nullptr;
}

Object* Drawing::FindName(const ads_name name) const {
  const auto handle = HandleOf(name);
  return handle ? FindHandle(*handle) : nullptr;
}

Object* Drawing::FindLive(const ads_name name) const {
  Object* object = FindName(name);
  return object != nullptr && !object->isErased ? object : nullptr;
}

void Drawing::NameOf(uint64_t handle, ads_name name) const {
  name[0] = static_cast<__int64>(handle);
  name[1] = handle != 0 ? static_cast<__int64>(m_serial) : 0;
}

std::optional<uint64_t> Drawing::HandleOf(const ads_name name) const {
  if (name == nullptr) return std::nullopt;
  if (name[0] == 0 && name[1] == 0) return 0;
  if (name[0] == 0 || name[1] != static_cast<__int64>(m_serial)) return std::nullopt;
  return static_cast<uint64_t>(name[0]);
}

// --- Entities ---

void Drawing::Append(EntityList& list, Object& entity) {
  entity.list = &list;
  entity.position = list.members.size();
  list.members.push_back(&entity);
  list.end = list.members.size();
  NoteChange(entity);
}

void Drawing::AppendPart(Object& header, Object& part) {
  part.header = &header;
  part.list = header.list;
  part.position = header.parts.size();
  header.parts.push_back(&part);
  NoteChange(header);
}

void Drawing::SetErased(Object& entity, bool isErased) {
  entity.isErased = isErased;
  for (Object* part : entity.parts) part->isErased = isErased;
  if (EntityList* list = entity.list; list != nullptr && !isErased && entity.header == nullptr) {
    list->begin = std::min(list->begin, entity.position);
    list->end = std::max(list->end, entity.position + 1);
  }
  NoteChange(entity);
}

Object* Drawing::First(EntityList& list) {
  while (list.begin < list.end && list.members[list.begin]->isErased) ++list.begin;
  return list.begin < list.end ? list.members[list.begin] : nullptr;
}

Object* Drawing::Last(EntityList& list) {
  while (list.end > list.begin && list.members[list.end - 1]->isErased) --list.end;
  return list.end > list.begin ? list.members[list.end - 1] : nullptr;
}

Object* Drawing::Next(const Object& entity) {
  const auto firstLive = [](const std::vector<Object*>& objects, size_t from) {
    const auto found = std::find_if(objects.begin() + static_cast<std::ptrdiff_t>(from), objects.end(),
                                    [](const Object* object) { return !object->isErased; });
    return found != objects.end() ? *found : nullptr;
  };
  const Object& member = entity.header != nullptr ? *entity.header : entity;
  const size_t nextPart = entity.header != nullptr ? entity.position + 1 : 0;
  if (Object* part = firstLive(member.parts, nextPart)) return part;
  return member.list != nullptr ? firstLive(member.list->members, member.position + 1) : nullptr;
}

// --- Tables, blocks, objects, sections ---

Table* Drawing::FindTable(std::wstring_view name) {
  const auto found = m_tablesByName.find(Folded(name));
  return found != m_tablesByName.end() ? found->second : nullptr;
}

Object* Drawing::FindEntry(std::wstring_view table, std::wstring_view name) {
  const auto found = m_entries.find(EntryKey(table, name));
  return found != m_entries.end() && !found->second->isErased ? found->second : nullptr;
}

Table& Drawing::AppendTable(Object& head) {
  Table& table = m_tables.emplace_back();
  table.head = &head;
  m_tablesByName.emplace(Folded(table.Name()), &table);
  m_isModified = true;
  return table;
}

void Drawing::AppendEntry(Table& table, Object& entry) {
  entry.table = &table;
  entry.position = table.entries.size();
  table.entries.push_back(&entry);
  m_entries.emplace(EntryKey(table.Name(), TextOf(entry.groups, kNameCode)), &entry);
  m_isModified = true;
}

Object& Drawing::NewEntry(std::wstring_view table, std::wstring_view name, Groups groups) {
  Table& owner = *FindTable(table);
  Object& entry = NewObject(EntryGroups(*this, owner, name, std::move(groups)));
  AddHandle(*this, entry);
  AppendEntry(owner, entry);
  return entry;
}

void Drawing::NoteRename(Object& entry, std::wstring_view oldName) {
  const std::wstring_view table = entry.table->Name();
  m_entries.erase(EntryKey(table, oldName));
  m_entries.emplace(EntryKey(table, TextOf(entry.groups, kNameCode)), &entry);
  m_isModified = true;
}

BlockDefinition* Drawing::FindBlock(std::wstring_view name) {
  const auto found = m_blocksByName.find(Folded(name));
  return found != m_blocksByName.end() ? found->second : nullptr;
}

BlockDefinition& Drawing::AppendBlock(Object& begin, Object& end) {
  BlockDefinition& block = m_blocks.emplace_back();
  block.position = m_blocks.size() - 1;
  block.begin = &begin;
  block.end = &end;
  block.content.block = &block;
  m_blocksByName.insert_or_assign(Folded(block.Name()), &block);
  m_isModified = true;
  return block;
}

Section* Drawing::FindSection(std::wstring_view name) {
  const auto found =
      std::find_if(m_sections.begin(), m_sections.end(), [&](const Section& s) { return s.name == name; });
  return found != m_sections.end() ? &*found : nullptr;
}

uint64_t Drawing::OwnerOf(const EntityList& list) {
  const std::wstring_view name = list.block != nullptr ? list.block->Name() : L"*Model_Space";
  const Object* record = FindEntry(L"BLOCK_RECORD", name);
  return record != nullptr ? record->handle : 0;
}

// --- The header ---

namespace {

constexpr int kVariableCode = 9;

struct Extent {
  size_t begin;
  size_t end;
};

// The values of a variable, behind its name.
std::optional<Extent> FindVariable(const Groups& header, std::wstring_view name) {
  const auto isVariable = [](const Group& group) { return group.code == kVariableCode; };
  const auto found = std::find_if(header.begin(), header.end(), [&](const Group& group) {
    return isVariable(group) && std::get<std::wstring>(group.value) == name;
  });
  if (found == header.end()) return std::nullopt;
  const auto end = std::find_if(found + 1, header.end(), isVariable);
  return Extent{static_cast<size_t>(found + 1 - header.begin()), static_cast<size_t>(end - header.begin())};
}

}  // namespace

Groups Drawing::HeaderVariable(std::wstring_view name) {
  const Section* header = FindSection(L"HEADER");
  const auto values = header != nullptr ? FindVariable(header->groups, name) : std::nullopt;
  if (!values) return {};
  const auto first = header->groups.begin();
  return Groups(first + static_cast<std::ptrdiff_t>(values->begin),
                first + static_cast<std::ptrdiff_t>(values->end));
}

void Drawing::SetHeaderVariable(std::wstring_view name, Groups values) {
  Section* header = FindSection(L"HEADER");
  if (header == nullptr) header = &*m_sections.insert(m_sections.begin(), Section{L"HEADER", {}});
  Groups& groups = header->groups;
  auto old = FindVariable(groups, name);
  if (!old) {
    groups.push_back({kVariableCode, std::wstring(name)});
    old = Extent{groups.size(), groups.size()};
  }
  const auto place = groups.erase(groups.begin() + static_cast<std::ptrdiff_t>(old->begin),
                                  groups.begin() + static_cast<std::ptrdiff_t>(old->end));
  groups.insert(place, std::make_move_iterator(values.begin()), std::make_move_iterator(values.end()));
}

// --- Changes ---

void Drawing::NoteChange(Object& entity) {
  Object& noted = entity.header != nullptr ? *entity.header : entity;
  m_isModified = true;
  if (std::exchange(noted.isNoted, true)) return;
  m_changes.push_back(&noted);
}

std::vector<Object*> Drawing::TakeChanges() {
  for (Object* entity : m_changes) entity->isNoted = false;
  return std::exchange(m_changes, {});
}

}  // namespace lomlisp::embedded
