#include <embedded/drawing/Entries.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace lomlisp::embedded {

namespace {

struct EntryClass {
  std::wstring_view table;
  std::wstring_view marker;
};

constexpr EntryClass kEntryClasses[] = {
    {L"APPID", L"AcDbRegAppTableRecord"},      {L"BLOCK_RECORD", L"AcDbBlockTableRecord"},
    {L"DIMSTYLE", L"AcDbDimStyleTableRecord"}, {L"LAYER", L"AcDbLayerTableRecord"},
    {L"LTYPE", L"AcDbLinetypeTableRecord"},    {L"STYLE", L"AcDbTextStyleTableRecord"},
    {L"UCS", L"AcDbUCSTableRecord"},           {L"VIEW", L"AcDbViewTableRecord"},
    {L"VPORT", L"AcDbViewportTableRecord"},
};

}  // namespace

std::wstring_view EntryMarker(std::wstring_view table) {
  const auto* found = std::find_if(std::begin(kEntryClasses), std::end(kEntryClasses),
                                   [&](const EntryClass& one) { return one.table == table; });
  return found != std::end(kEntryClasses) ? found->marker : std::wstring_view();
}

Groups EntryGroups(const Drawing& drawing, const Table& table, std::wstring_view name, Groups groups) {
  Groups entry{{kTypeCode, std::wstring(table.Name())}};
  if (drawing.version > DxfVersion::R12) {
    entry.push_back({kOwnerCode, Reference{table.head->handle}});
    entry.push_back({kMarkerCode, L"AcDbSymbolTableRecord"});
    if (const auto marker = EntryMarker(table.Name()); !marker.empty())
      entry.push_back({kMarkerCode, std::wstring(marker)});
  }
  entry.push_back({kNameCode, std::wstring(name)});
  std::move(groups.begin(), groups.end(), std::back_inserter(entry));
  return entry;
}

void AddHandle(const Drawing& drawing, Object& object) {
  if (!drawing.hasHandles) return;
  const int code = object.Type() == L"DIMSTYLE" ? kDimStyleHandleCode : kHandleCode;
  const int place = object.Type() == L"TABLE" ? 2 : 1;
  object.groups.insert(object.groups.begin() + place, Group{code, HandleText(object.handle)});
}

}  // namespace lomlisp::embedded
