#include <embedded/drawing/EntityReader.h>

#include <embedded/drawing/EntityTypes.h>
#include <embedded/drawing/GroupOrder.h>
#include <embedded/drawing/GroupRecords.h>

#include <span>

namespace lomlisp::embedded {

namespace {

// The classes of types that are not described may use these codes otherwise than AcDbEntity does.
bool BeginsClass(const Group& group) {
  return group.code == kMarkerCode && group.value != GroupValue(std::wstring(kCommonMarker));
}

class ObjectReading {
 public:
  ObjectReading(const Drawing& drawing, const Object& object)
      : m_drawing(drawing),
        m_object(object),
        m_isEntity(object.list != nullptr),
        m_type(m_isEntity ? FindEntityType(object.Type()) : nullptr) {}

  Chain Run(const std::function<bool(std::wstring_view)>& isWanted) {
    Append({kNameOfObject, Reference{m_object.handle}});
    AppendOwn();
    if (m_type != nullptr && m_type->hasExtrusion && Find(m_object.groups, kExtrusionCode) == nullptr)
      Append({kExtrusionCode, Point{0.0, 0.0, 1.0, false}});
    if (isWanted) AppendExtended(isWanted);
    return std::move(m_chain);
  }

 private:
  void Append(const Group& group) { AppendRecord(m_chain, group, m_drawing); }

  void AppendOwn() {
    bool isInClass = false;
    for (const Group& group : m_object.groups) {
      isInClass = isInClass || BeginsClass(group);
      const bool isCommon = m_type != nullptr || (!isInClass && group.code != 39);
      if (m_isEntity && isCommon && IsDefault(group)) continue;
      Append(group);
      if (&group == m_object.groups.data()) AppendMissingHandle();
    }
  }

  void AppendMissingHandle() {
    const int code = m_object.Type() == L"DIMSTYLE" ? kDimStyleHandleCode : kHandleCode;
    if (Find(m_object.groups, code) == nullptr) Append({code, HandleText(m_object.handle)});
  }

  void AppendExtended(const std::function<bool(std::wstring_view)>& isWanted) {
    bool isFirst = true;
    for (const ExtendedData& data : m_object.extended) {
      if (!isWanted(data.application)) continue;
      if (isFirst) Append({kExtendedData, 0LL});
      isFirst = false;
      Append({kApplicationCode, data.application});
      for (const Group& group : data.groups) Append(group);
    }
  }

  const Drawing& m_drawing;
  const Object& m_object;
  bool m_isEntity;
  const EntityType* m_type;
  Chain m_chain;
};

}  // namespace

Chain EntityGroups(const Drawing& drawing, const Object& object,
                   const std::function<bool(std::wstring_view)>& isWanted) {
  return ObjectReading(drawing, object).Run(isWanted);
}

std::optional<std::vector<std::wstring>> ApplicationNames(const Chain& chain, std::string& objection) {
  std::span<const Record> names = chain;
  if (names.size() >= 2 && names.front().type == RTLB && names.back().type == RTLE)
    names = names.subspan(1, names.size() - 2);
  std::vector<std::wstring> applications;
  for (const Record& record : names) {
    if (record.type != RTSTR || !record.hasText) {
      objection = "an application must be a text, not a record of type " + std::to_string(record.type);
      return std::nullopt;
    }
    applications.push_back(record.text);
  }
  return applications;
}

}  // namespace lomlisp::embedded
