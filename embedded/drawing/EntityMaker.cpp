#include <embedded/drawing/EntityMaker.h>

#include <embedded/Text.h>
#include <embedded/drawing/Entries.h>
#include <embedded/drawing/EntryMaker.h>
#include <embedded/drawing/GroupChecks.h>
#include <embedded/drawing/GroupOrder.h>

#include <algorithm>
#include <iterator>
#include <numbers>
#include <utility>

namespace lomlisp::embedded {

namespace {

using Objection = std::optional<std::string>;

constexpr int kFlagsCode = 70;
constexpr int kFollowCode = 66;
constexpr int kPointCode = 10;

bool BeginsParts(std::wstring_view type, const Groups& groups) {
  return type == L"POLYLINE" || (type == L"INSERT" && IntegerOf(groups, kFollowCode) == 1);
}

// Sets the value of a group that is missing.
void Default(Groups& groups, int code, GroupValue value) {
  if (Find(groups, code) == nullptr) groups.push_back({code, std::move(value)});
}

void Set(Groups& groups, int code, GroupValue value) {
  if (Group* group = Find(groups, code))
    group->value = std::move(value);
  else
    groups.push_back({code, std::move(value)});
}

void AddFlags(Groups& groups, long long flags) {
  const long long old = IntegerOf(groups, kFlagsCode);
  if ((old | flags) != old) Set(groups, kFlagsCode, old | flags);
}

void DefaultStyle(Drawing& drawing, Groups& groups) {
  if (Find(groups, kStyleCode) != nullptr) return;
  // Where the style is not in the table, its name goes without saying.
  if (const Object* style = drawing.FindEntry(L"STYLE", L"STANDARD"))
    groups.push_back({kStyleCode, std::wstring(TextOf(style->groups, kNameCode))});
}

void CompleteVertex(Groups& groups, int kind) {
  constexpr long long kBits[] = {0, 32, 64, 192, 128};
  AddFlags(groups, kBits[kind]);
  Default(groups, kPointCode, Point{});
}

void CompletePolyline(Groups& groups) {
  Set(groups, kFollowCode, 1LL);
  Default(groups, kPointCode, Point{});
  Default(groups, kFlagsCode, 0LL);
}

void CompleteLightPolyline(Groups& groups) {
  Set(groups, 90, std::count_if(groups.begin(), groups.end(), [](const Group& group) {
        return group.code == kPointCode;
      }));
  Default(groups, kFlagsCode, 0LL);
}

void CompleteBlock(Groups& groups) {
  Default(groups, kFlagsCode, 0LL);
  Set(groups, 3, std::wstring(TextOf(groups, kNameCode)));
  Default(groups, 1, std::wstring());
}

// Adds what may be left out.
void Complete(Drawing& drawing, const EntityType& type, Groups& groups) {
  const std::wstring_view name = type.name;
  if (name == L"POLYLINE") return CompletePolyline(groups);
  if (name == L"VERTEX") return CompleteVertex(groups, type.kind);
  if (name == L"BLOCK") return CompleteBlock(groups);
  if (name == L"LWPOLYLINE") return CompleteLightPolyline(groups);
  if (name == L"SOLID" || name == L"TRACE" || name == L"3DFACE")
    return Default(groups, 13, PointOf(groups, 12));
  if (name == L"ELLIPSE") {
    Default(groups, 41, 0.0);
    Default(groups, 42, 2.0 * std::numbers::pi);
  }
  if (name == L"TEXT" || name == L"MTEXT" || name == L"ATTRIB" || name == L"ATTDEF")
    DefaultStyle(drawing, groups);
  if (name == L"MTEXT") Default(groups, 40, RealOf(drawing.HeaderVariable(L"$TEXTSIZE"), 40, 2.5));
  if (name == L"ATTRIB" || name == L"ATTDEF") Default(groups, kFlagsCode, 0LL);
}

std::string NotInThisVersion() { return " cannot be in a drawing of this version"; }

// Why a type that is not described cannot be made.
Objection CheckOtherType(const Drawing& drawing, std::wstring_view type, const Groups& own) {
  const std::string name = Utf8(type);
  if (!IsOtherGraphicType(type)) return "entities of type \"" + name + "\" cannot be made";
  if (drawing.version == DxfVersion::R12) {
    if (IsOtherTypeInR12(type)) return std::nullopt;
    return name + NotInThisVersion();
  }
  const bool hasMarker = std::any_of(own.begin(), own.end(), [](const Group& group) {
    return group.code == kMarkerCode && group.value != GroupValue(std::wstring(kCommonMarker));
  });
  if (hasMarker) return std::nullopt;
  return name + " needs its class markers (group 100)";
}

Objection CheckType(const Drawing& drawing, std::wstring_view type, const EntityType* described,
                    const Groups& own) {
  if (described == nullptr) return CheckOtherType(drawing, type, own);
  if (described->isInR12 || drawing.version != DxfVersion::R12) return std::nullopt;
  return Utf8(type) + NotInThisVersion();
}

// The letter in "*U12" and "*U", or 0 for other names.
wchar_t AnonymousLetter(std::wstring_view name) {
  if (name.size() < 2 || name[0] != L'*') return 0;
  const wchar_t letter = Folded(name.substr(1, 1))[0];
  const bool isNumbered = name.find_first_not_of(L"0123456789", 2) == std::wstring_view::npos;
  return isNumbered && std::wstring_view(L"DETUX").find(letter) != std::wstring_view::npos ? letter : L'\0';
}

Objection CheckBlockName(std::wstring_view name) {
  if (IsLegalName(name) || AnonymousLetter(name) != 0) return std::nullopt;
  return AboutGroup(kNameCode) + "a block cannot have the name \"" + Utf8(name) + "\"";
}

// Widths and bulges stand behind their vertices.
Objection CheckVertices(const EntityType& type, const Groups& own) {
  const auto first = std::find_if(own.begin(), own.end(), [&](const Group& group) {
    return group.code != kMarkerCode && type.Lists(group.code) && type.Repeats(group.code);
  });
  if (first->code == kPointCode) return std::nullopt;
  return AboutGroup(first->code) + "stands before the first vertex (10)";
}

uint64_t SpaceOf(Drawing& drawing, const Groups& groups) {
  if (IntegerOf(groups, 67) != 1) return drawing.OwnerOf(drawing.Entities());
  const Object* paper = drawing.FindEntry(L"BLOCK_RECORD", L"*Paper_Space");
  return paper != nullptr ? paper->handle : 0;
}

// Erases what is in a block for good: what is in no list cannot be restored.
void ClearContent(Drawing& drawing, BlockDefinition& block) {
  EntityList& content = block.content;
  content.begin = content.end = 0;
  for (Object* entity : std::exchange(content.members, {})) {
    drawing.SetErased(*entity, true);
    entity->list = nullptr;
    for (Object* part : entity->parts) part->list = nullptr;
  }
}

Groups RecordGroups(DxfVersion version) {
  Groups groups;
  if (version >= DxfVersion::R2000) groups.push_back({340, Reference{}});
  if (version < DxfVersion::R2007) return groups;
  groups.push_back({kFlagsCode, 0LL});
  groups.push_back({280, 1LL});
  groups.push_back({281, 0LL});
  return groups;
}

}  // namespace

void EntityMaker::Cancel() {
  m_header.reset();
  m_block.reset();
}

Objection EntityMaker::Make(const Chain& chain, const Settings& settings) {
  m_last = nullptr;
  std::string unreadable;
  auto given = ReadGiven(chain, m_drawing, unreadable);
  Objection objection = given ? Take(std::move(*given), settings) : std::move(unreadable);
  if (objection) Cancel();
  return objection;
}

Objection EntityMaker::Take(GivenGroups given, const Settings& settings) {
  const auto first = std::find_if(given.groups.begin(), given.groups.end(),
                                  [](const Group& group) { return group.code != kOwnerCode; });
  if (first == given.groups.end() || first->code != kTypeCode) return "group 0, the type, must come first";
  const std::wstring type = Folded(std::get<std::wstring>(first->value));
  if (auto objection = CheckPlace(type)) return objection;
  if (IsEntryType(type)) return MakeEntry(m_drawing, type, std::move(given), m_last);
  Draft draft;
  if (auto objection = Draw(type, std::move(given), settings, draft)) return objection;
  return Put(std::move(draft));
}

Objection EntityMaker::CheckPlace(std::wstring_view type) const {
  const std::string name = Utf8(type);
  if (m_header) return CheckPartPlace(type);
  if (type == L"VERTEX" || type == L"ATTRIB" || type == L"SEQEND") return name + " without its header";
  if (type == L"ENDBLK" && !m_block) return "ENDBLK without its BLOCK";
  if (m_block && (type == L"BLOCK" || IsEntryType(type))) return name + " cannot be in a BLOCK";
  return std::nullopt;
}

Objection EntityMaker::CheckPartPlace(std::wstring_view type) const {
  const std::wstring_view header = m_header->Type();
  const std::wstring_view part = header == L"POLYLINE" ? L"VERTEX" : L"ATTRIB";
  if (type == L"SEQEND" && header == L"POLYLINE" && m_header->parts.empty()) return "POLYLINE needs a VERTEX";
  if (type == part || type == L"SEQEND") return std::nullopt;
  return "behind " + Utf8(header) + " only " + Utf8(part) + " and SEQEND can follow, not " + Utf8(type);
}

Objection EntityMaker::CheckValues(const EntityType* type, std::wstring_view name, const Groups& own) const {
  if (type != nullptr)
    for (const int code : type->required)
      if (Find(own, code) == nullptr) return AboutGroup(code) + "missing, " + Utf8(name) + " needs it";
  for (const Group& group : own)
    if (auto objection = CheckGroup(m_drawing, name, group)) return objection;
  if (name == L"BLOCK") return CheckBlockName(TextOf(own, kNameCode));
  return name == L"LWPOLYLINE" ? CheckVertices(*type, own) : std::nullopt;
}

Objection EntityMaker::Draw(const std::wstring& type, GivenGroups given, const Settings& settings,
                            Draft& draft) const {
  const OwnGroups own = FindOwn(given.groups, FindEntityType(type) != nullptr);
  if (!own.areBracketsBalanced) return AboutGroup(102) + "the brackets do not balance";
  Groups groups;
  for (const size_t place : own.places) groups.push_back(std::move(given.groups[place]));
  const EntityType* described = FindEntityType(type, groups, m_header ? &m_header->groups : nullptr);
  if (auto objection = CheckType(m_drawing, type, described, groups)) return objection;
  groups = KeepLast(described, std::move(groups));
  AddLayer(groups, settings);
  if (auto objection = CheckValues(described, type, groups)) return objection;
  for (const ExtendedData& data : given.extended)
    if (auto objection = CheckApplication(m_drawing, data)) return objection;

  draft.groups = Finished(type, described, std::move(groups));
  // An embedded object follows as it is.
  std::move(given.groups.begin() + static_cast<std::ptrdiff_t>(EndOfOwn(given.groups)), given.groups.end(),
            std::back_inserter(draft.groups));
  std::erase_if(given.extended, [](const ExtendedData& data) { return data.groups.empty(); });
  draft.extended = std::move(given.extended);
  return std::nullopt;
}

void EntityMaker::AddLayer(Groups& groups, const Settings& settings) const {
  if (Find(groups, kLayerCode) != nullptr) return;
  const auto layer = m_header ? TextOf(m_header->groups, kLayerCode) : std::wstring_view(settings.layer);
  groups.insert(groups.begin(), {kLayerCode, std::wstring(layer)});
}

// The groups as they are stored, but for handle and owner.
Groups EntityMaker::Finished(const std::wstring& type, const EntityType* described, Groups groups) const {
  if (described != nullptr) {
    Complete(m_drawing, *described, groups);
    std::erase_if(groups, IsDefault);
  }
  FlattenPoints(type, groups);
  groups = m_drawing.version == DxfVersion::R12 ? ArrangeWithoutMarkers(described, groups)
                                                : Arrange(described, groups);
  groups.insert(groups.begin(), {kTypeCode, type});
  return groups;
}

// --- Drafts ---

Objection EntityMaker::Put(Draft draft) {
  const std::wstring_view type = draft.Type();
  if (m_header) {
    PutPart(std::move(draft));
  } else if (type == L"BLOCK") {
    m_block.emplace(BlockDraft{std::move(draft), {}});
  } else if (type == L"ENDBLK") {
    return PutBlock(std::move(draft));
  } else if (BeginsParts(type, draft.groups)) {
    m_header = std::move(draft);
  } else {
    PutWhole(std::move(draft));
  }
  return std::nullopt;
}

void EntityMaker::PutPart(Draft part) {
  const bool isLast = part.Type() == L"SEQEND";
  m_header->parts.push_back(std::move(part));
  if (isLast) PutWhole(*std::exchange(m_header, std::nullopt));
}

void EntityMaker::PutWhole(Draft whole) {
  if (m_block)
    m_block->content.push_back(std::move(whole));
  else
    NewEntity(std::move(whole), m_drawing.Entities());
}

Objection EntityMaker::PutBlock(Draft end) {
  const std::wstring name(TextOf(m_block->begin.groups, kNameCode));
  if (AnonymousLetter(name) == 0 && m_drawing.FindBlock(name) != nullptr) {
    std::vector<std::wstring> inserted;
    for (const Draft& draft : m_block->content)
      if (draft.Type() == L"INSERT") inserted.emplace_back(TextOf(draft.groups, kNameCode));
    if (ContainBlock(m_drawing, std::move(inserted), name))
      return "the block \"" + Utf8(name) + "\" would contain itself";
  }
  BlockDraft draft = *std::exchange(m_block, std::nullopt);
  const bool hasAttributes = std::any_of(draft.content.begin(), draft.content.end(), [](const Draft& one) {
    constexpr long long kConstant = 2;
    return one.Type() == L"ATTDEF" && (IntegerOf(one.groups, kFlagsCode) & kConstant) == 0;
  });
  if (hasAttributes) AddFlags(draft.begin.groups, 2);
  BlockDefinition& block = DefineBlock(std::move(draft.begin), std::move(end));
  for (Draft& one : draft.content) NewEntity(std::move(one), block.content);
  m_last = block.begin;
  return std::nullopt;
}

// --- What is made of them ---

Object& EntityMaker::NewObject(Draft draft, uint64_t owner) {
  Object& object = m_drawing.NewObject({});
  Renew(object, std::move(draft), owner);
  return object;
}

void EntityMaker::Renew(Object& object, Draft draft, uint64_t owner) {
  NeedLayer(m_drawing, TextOf(draft.groups, kLayerCode));
  object.groups = std::move(draft.groups);
  object.extended = std::move(draft.extended);
  if (m_drawing.version > DxfVersion::R12 && owner != 0)
    object.groups.insert(object.groups.begin() + 1, {kOwnerCode, Reference{owner}});
  AddHandle(m_drawing, object);
}

void EntityMaker::NewEntity(Draft draft, EntityList& list) {
  std::vector<Draft> parts = std::exchange(draft.parts, {});
  const uint64_t owner = list.block != nullptr ? m_drawing.OwnerOf(list) : SpaceOf(m_drawing, draft.groups);
  Object& entity = NewObject(std::move(draft), owner);
  m_drawing.Append(list, entity);
  for (Draft& part : parts) m_drawing.AppendPart(entity, NewObject(std::move(part), entity.handle));
  m_last = &entity;
}

// Makes the block, or clears the one of that name and gives it new groups.
BlockDefinition& EntityMaker::DefineBlock(Draft begin, Draft end) {
  std::wstring name(TextOf(begin.groups, kNameCode));
  if (const wchar_t letter = AnonymousLetter(name); letter != 0) {
    name = NextAnonymous(letter);
    Set(begin.groups, kNameCode, name);
    Set(begin.groups, 3, name);
    AddFlags(begin.groups, 1);
  }
  const bool hasRecords = m_drawing.FindTable(L"BLOCK_RECORD") != nullptr;
  const Object* record = m_drawing.FindEntry(L"BLOCK_RECORD", name);
  if (record == nullptr && hasRecords && m_drawing.version > DxfVersion::R12)
    record = &m_drawing.NewEntry(L"BLOCK_RECORD", name, RecordGroups(m_drawing.version));
  const uint64_t owner = record != nullptr ? record->handle : 0;
  BlockDefinition* old = m_drawing.FindBlock(name);
  if (old == nullptr) {
    Object& beginning = NewObject(std::move(begin), owner);
    return m_drawing.AppendBlock(beginning, NewObject(std::move(end), owner));
  }
  ClearContent(m_drawing, *old);
  Renew(*old->begin, std::move(begin), owner);
  Renew(*old->end, std::move(end), owner);
  m_drawing.NoteChange(*old->begin);
  return *old;
}

std::wstring EntityMaker::NextAnonymous(wchar_t letter) {
  std::wstring name;
  do name = std::wstring(L"*") + letter + std::to_wstring(++m_lastAnonymous);
  while (m_drawing.FindBlock(name) != nullptr);
  return name;
}

}  // namespace lomlisp::embedded
