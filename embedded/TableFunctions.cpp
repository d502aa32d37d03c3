// The platform functions for the drawing's tables.
#include <lomlisp/platform/modules.h>

#include <embedded/Caller.h>
#include <embedded/Nesting.h>
#include <embedded/PlatformCall.h>
#include <embedded/Session.h>
#include <embedded/Text.h>
#include <embedded/drawing/GroupChecks.h>
#include <embedded/drawing/GroupRecords.h>

#include <optional>
#include <string>
#include <vector>

using namespace lomlisp::embedded;

namespace {

// One entry of a table: an object, of a block its BLOCK.
struct Entry {
  const Object* object = nullptr;
  BlockDefinition* block = nullptr;
};

bool IsSpace(const BlockDefinition& block) {
  const std::wstring name = Folded(block.Name());
  return name.starts_with(L"*MODEL_SPACE") || name.starts_with(L"*PAPER_SPACE");
}

// The entries of a table as a row; blocks are kept apart in a drawing.
class Row {
 public:
  Row(Drawing& drawing, std::wstring_view table)
      : m_blocks(Folded(table) == L"BLOCK" ? &drawing.Blocks() : nullptr),
        m_table(m_blocks == nullptr ? drawing.FindTable(table) : nullptr) {}

  bool IsKnown() const { return m_blocks != nullptr || m_table != nullptr; }

  // The entry at a position or the next one behind it that LISP sees; its position is `position` then.
  std::optional<Entry> From(size_t& position) const {
    for (; position < Size(); ++position)
      if (const auto entry = At(position)) return entry;
    return std::nullopt;
  }

  std::optional<Entry> Find(Drawing& drawing, std::wstring_view name, size_t& position) const {
    if (m_blocks != nullptr) {
      BlockDefinition* block = drawing.FindBlock(name);
      if (block == nullptr) return std::nullopt;
      position = block->position;
      return Entry{block->begin, block};
    }
    const Object* object = m_table != nullptr ? drawing.FindEntry(m_table->Name(), name) : nullptr;
    if (object == nullptr) return std::nullopt;
    position = object->position;
    return Entry{object, nullptr};
  }

 private:
  size_t Size() const {
    if (m_blocks != nullptr) return m_blocks->size();
    return m_table != nullptr ? m_table->entries.size() : 0;
  }

  std::optional<Entry> At(size_t position) const {
    if (m_blocks == nullptr) {
      const Object* object = m_table->entries[position];
      return object->isErased ? std::nullopt : std::optional(Entry{object, nullptr});
    }
    BlockDefinition& block = (*m_blocks)[position];
    return IsSpace(block) ? std::nullopt : std::optional(Entry{block.begin, &block});
  }

  std::deque<BlockDefinition>* m_blocks;
  Table* m_table;
};

// Of a layer LISP sees what it always had: name, flags, color, line type.
bool IsNewInLayers(const Group& group, const Object& entry) {
  return group.code >= kMarkerCode && entry.Type() == L"LAYER";
}

// What LISP sees of an entry: no handles, owners, classes, nor what is in braces.
Chain VisibleGroups(const Drawing& drawing, const Entry& entry) {
  Chain chain;
  bool isInBraces = false;
  for (const Group& group : entry.object->groups) {
    const GroupKind kind = KindOf(group.code);
    const bool isControl = group.code == 102;
    const bool isHidden = kind == GroupKind::Handle || kind == GroupKind::Reference ||
                          group.code == kMarkerCode || isControl || isInBraces ||
                          IsNewInLayers(group, *entry.object);
    if (isControl) isInBraces = std::get<std::wstring>(group.value).starts_with(L'{');
    if (!isHidden) AppendRecord(chain, group, drawing);
  }
  if (entry.block == nullptr) return chain;
  if (const Object* first = Drawing::First(entry.block->content)) {
    Record& name = chain.emplace_back(Mark(-2));
    drawing.NameOf(first->handle, name.value.rlname);
  }
  return chain;
}

resbuf* GiveEntry(PlatformCall& call, const std::optional<Entry>& entry, const char* objection,
                  const void* caller) {
  Host& host = Host::Instance();
  if (!entry) {
    call.Refuse(objection);
    return nullptr;
  }
  return Materialise(VisibleGroups(host.CurrentDrawing(), *entry), host.ledger, Owner::Client, caller);
}

const char* const kNoTable = "no table has this name";
const char* const kNoEntry = "the table has no such entry";

resbuf* SearchTable(PlatformCall& call, const ACHAR* table, const ACHAR* name, bool setNext,
                    const void* caller) {
  Session& session = Host::Instance().CurrentSession();
  if (table == nullptr || name == nullptr) return GiveEntry(call, std::nullopt, "no name", caller);
  const Row row(*session.drawing, table);
  size_t position = 0;
  const auto entry = row.Find(*session.drawing, name, position);
  resbuf* const groups = GiveEntry(call, entry, row.IsKnown() ? kNoEntry : kNoTable, caller);
  if (groups != nullptr && setNext) session.tableCursors[Folded(table)] = position + 1;
  return groups;
}

resbuf* NextInTable(PlatformCall& call, const ACHAR* table, bool rewind, const void* caller) {
  Session& session = Host::Instance().CurrentSession();
  if (table == nullptr) return GiveEntry(call, std::nullopt, "no name", caller);
  const Row row(*session.drawing, table);
  if (!row.IsKnown()) return GiveEntry(call, std::nullopt, kNoTable, caller);
  size_t& cursor = session.tableCursors[Folded(table)];
  if (rewind) cursor = 0;
  const auto entry = row.From(cursor);
  resbuf* const groups = GiveEntry(call, entry, "the end of the table", caller);
  if (groups != nullptr) ++cursor;
  return groups;
}

int NameOfEntry(PlatformCall& call, const ACHAR* table, const ACHAR* name, ads_name object) {
  Drawing& drawing = Host::Instance().CurrentDrawing();
  if (table == nullptr || name == nullptr || object == nullptr) return call.Refuse("no name");
  const Row row(drawing, table);
  size_t position = 0;
  const auto entry = row.Find(drawing, name, position);
  if (!entry) return call.Refuse(row.IsKnown() ? kNoEntry : kNoTable);
  drawing.NameOf(entry->object->handle, object);
  call.GivesName(object);
  return RTNORM;
}

int RegisterApplication(PlatformCall& call, const ACHAR* application) {
  Drawing& drawing = Host::Instance().CurrentDrawing();
  if (application == nullptr || !IsLegalName(application)) return call.Refuse("not a legal name");
  if (drawing.FindEntry(L"APPID", application) != nullptr) return call.Refuse("it is registered already");
  if (drawing.FindTable(L"APPID") == nullptr) return call.Refuse("the drawing has no table APPID");
  drawing.NewEntry(L"APPID", application, {{70, 0LL}});
  return RTNORM;
}

}  // namespace

resbuf* acdbTblSearch(const ACHAR* table, const ACHAR* name, int setNext) {
  const void* caller = LOMLISP_CALLER;
  PlatformCall call("acdbTblSearch", name);
  call.TakesText(table);
  return call.Run([&] { return SearchTable(call, table, name, setNext != 0, caller); });
}

resbuf* acdbTblNext(const ACHAR* table, int rewind) {
  const void* caller = LOMLISP_CALLER;
  PlatformCall call("acdbTblNext", table);
  return call.Run([&] { return NextInTable(call, table, rewind != 0, caller); });
}

int acdbTblObjName(const ACHAR* table, const ACHAR* name, ads_name object) {
  PlatformCall call("acdbTblObjName", name);
  call.TakesText(table);
  return call.Run([&] { return NameOfEntry(call, table, name, object); });
}

int acdbRegApp(const ACHAR* application) {
  PlatformCall call("acdbRegApp", application);
  return call.Run([&] { return RegisterApplication(call, application); });
}
