// From a drawing to the tags of a file.
#include <embedded/Text.h>
#include <embedded/dxf/Dxf.h>
#include <embedded/dxf/Fault.h>
#include <embedded/dxf/SafeFile.h>
#include <embedded/dxf/TagWriter.h>
#include <embedded/dxf/TextCoding.h>
#include <embedded/dxf/Version.h>

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

namespace lomlisp::embedded {

namespace {

using Sink = std::function<void(std::string_view)>;

std::wstring CodePageOf(Drawing& drawing) {
  constexpr int kCodePageCode = 3;
  const Groups values = drawing.HeaderVariable(kCodePageVariable);
  return std::wstring(TextOf(values, kCodePageCode, kUsualCodePage));
}

class Writer {
 public:
  Writer(Drawing& drawing, DxfForm form, Sink sink, const DxfProgress& progress)
      : m_drawing(drawing),
        m_coding(drawing.version, CodePageOf(drawing)),
        m_tags(MakeTagWriter(form, drawing.version)),
        m_sink(std::move(sink)),
        m_progress(progress),
        m_all(CountObjects()) {
    constexpr uint64_t kParts = 100;
    m_step = std::max<uint64_t>(m_all / kParts, 1);
  }

  void Run() {
    for (const Section& section : m_drawing.Sections()) WriteSection(section);
    for (const wchar_t* name : {L"TABLES", L"BLOCKS", L"ENTITIES", L"OBJECTS"})
      if (m_drawing.FindSection(name) == nullptr && HasContent(name)) WriteSection({name, {}});
    WriteMark(L"EOF");
    Flush();
    if (m_progress) m_progress(m_all, m_all);
  }

 private:
  // --- Groups ---

  void WriteMark(std::wstring_view mark) { WriteText(kTypeCode, mark); }

  void WriteText(int code, std::wstring_view text) {
    m_text.clear();
    m_coding.Encode(text, m_text);
    m_tags->Text(code, m_text);
  }

  void WriteReal(int code, double real) {
    if (!std::isfinite(real))
      throw Fault("group " + std::to_string(code) + " is infinite or no number at all");
    m_tags->Real(code, real);
  }

  void WritePoint(int code, const Point& point) {
    WriteReal(code, point.x);
    WriteReal(code + 10, point.y);
    if (!point.isFlat) WriteReal(code + 20, point.z);
  }

  template <typename T>
  static const T& Expect(const Group& group, const char* expected) {
    const auto* value = std::get_if<T>(&group.value);
    if (value == nullptr) throw Fault("group " + std::to_string(group.code) + " holds no " + expected);
    return *value;
  }

  void WriteBinary(const Group& group) {
    const auto& digits = Expect<std::wstring>(group, "text of digits");
    const bool isHex = std::all_of(digits.begin(), digits.end(), [](wchar_t digit) {
      return ReadHandle(std::wstring_view(&digit, 1)).has_value();
    });
    if (digits.size() % 2 != 0 || !isHex)
      throw Fault("group " + std::to_string(group.code) + " holds no even number of hexadecimal digits");
    m_tags->Binary(group.code, std::string(digits.begin(), digits.end()));
  }

  void WriteGroup(const Group& group) {
    switch (KindOf(group.code)) {
      case GroupKind::Text:
      case GroupKind::Handle:
        return WriteText(group.code, Expect<std::wstring>(group, "text"));
      case GroupKind::Binary:
        return WriteBinary(group);
      case GroupKind::Real:
      case GroupKind::Point:
        if (const auto* point = std::get_if<Point>(&group.value)) return WritePoint(group.code, *point);
        return WriteReal(group.code, Expect<double>(group, "real"));
      case GroupKind::Short:
      case GroupKind::Long:
      case GroupKind::Int64:
      case GroupKind::Bool:
        return m_tags->Integer(group.code, Expect<long long>(group, "integer"));
      case GroupKind::Reference:
        return WriteText(group.code, HandleText(Expect<Reference>(group, "reference").handle));
    }
  }

  void WriteGroups(const Groups& groups) {
    for (const Group& group : groups) WriteGroup(group);
  }

  // --- Objects ---

  void WriteObject(const Object& object) {
    try {
      WriteGroups(object.groups);
      for (const ExtendedData& extended : object.extended) {
        WriteText(kApplicationCode, extended.application);
        WriteGroups(extended.groups);
      }
    } catch (const Fault& fault) {
      throw Fault(Utf8(object.Type()) + " with handle " + Utf8(HandleText(object.handle)) + ": " +
                  fault.message);
    }
    CountDone();
  }

  void WriteObjects(const std::vector<Object*>& objects) {
    for (const Object* object : objects) {
      if (object->isErased) continue;
      WriteObject(*object);
      WriteObjects(object->parts);
    }
  }

  void WriteTables() {
    for (const Table& table : m_drawing.Tables()) {
      WriteObject(*table.head);
      WriteObjects(table.entries);
      if (table.end != nullptr) {
        WriteObject(*table.end);
      } else {
        WriteMark(L"ENDTAB");
      }
    }
  }

  void WriteBlocks() {
    for (const BlockDefinition& block : m_drawing.Blocks()) {
      if (block.begin->isErased) continue;
      WriteObject(*block.begin);
      WriteObjects(block.content.members);
      WriteObject(*block.end);
    }
  }

  // --- Sections ---

  bool HasContent(std::wstring_view name) {
    return (name == L"TABLES" && !m_drawing.Tables().empty()) ||
           (name == L"BLOCKS" && !m_drawing.Blocks().empty()) ||
           (name == L"ENTITIES" && !m_drawing.Entities().members.empty()) ||
           (name == L"OBJECTS" && !m_drawing.Objects().empty());
  }

  void WriteHeader(const Groups& header) {
    bool isNextHandle = false;
    for (const Group& group : header) {
      const bool isNext = std::exchange(isNextHandle, IsNextHandle(group)) && group.code == kHandleCode;
      WriteGroup(isNext ? Group{kHandleCode, HandleText(m_drawing.NextHandle())} : group);
    }
  }

  // Whether the value behind that group is to be the next handle.
  bool IsNextHandle(const Group& group) const {
    const auto* name = std::get_if<std::wstring>(&group.value);
    return m_drawing.hasHandles && group.code == kVariableCode && name != nullptr &&
           *name == kNextHandleVariable;
  }

  void WriteSection(const Section& section) {
    WriteMark(L"SECTION");
    WriteText(kNameCode, section.name);
    if (section.name == L"HEADER") {
      WriteHeader(section.groups);
    } else {
      WriteGroups(section.groups);
    }
    if (section.name == L"TABLES") WriteTables();
    if (section.name == L"BLOCKS") WriteBlocks();
    if (section.name == L"ENTITIES") WriteObjects(m_drawing.Entities().members);
    if (section.name == L"OBJECTS") WriteObjects(m_drawing.Objects());
    WriteMark(L"ENDSEC");
  }

  // --- Progress and the way out ---

  uint64_t CountObjects() {
    uint64_t count = m_drawing.Entities().members.size() + m_drawing.Objects().size();
    for (const Table& table : m_drawing.Tables()) count += table.entries.size();
    for (const BlockDefinition& block : m_drawing.Blocks()) count += block.content.members.size();
    return count;
  }

  void CountDone() {
    constexpr size_t kEnough = 1'000'000;
    if (m_tags->Bytes().size() > kEnough) Flush();
    if (++m_done % m_step == 0 && m_progress && m_done < m_all) m_progress(m_done, m_all);
  }

  void Flush() {
    m_sink(m_tags->Bytes());
    m_tags->Bytes().clear();
  }

  Drawing& m_drawing;
  TextCoding m_coding;
  std::unique_ptr<TagWriter> m_tags;
  Sink m_sink;
  const DxfProgress& m_progress;
  uint64_t m_all;
  uint64_t m_step;
  uint64_t m_done = 0;
  std::string m_text;  // the bytes of one text
};

}  // namespace

std::optional<DxfError> SaveDxf(Drawing& drawing, const std::filesystem::path& path, DxfForm form,
                                const DxfProgress& progress) {
  try {
    SafeFile file(path);
    Writer(
        drawing, form, [&](std::string_view bytes) { file.Write(bytes); }, progress)
        .Run();
    file.Commit();
  } catch (const Fault& fault) {
    return DxfError{PathText(path) + ": " + fault.message, 0};
  } catch (const std::bad_alloc&) {
    return DxfError{PathText(path) + ": the memory does not suffice", 0};
  }
  drawing.SetModified(false);
  return std::nullopt;
}

std::string WriteDxf(Drawing& drawing, DxfForm form) {
  std::string file;
  try {
    Writer(drawing, form, [&](std::string_view bytes) { file += bytes; }, {}).Run();
  } catch (const Fault&) {
    file.clear();
  }
  return file;
}

}  // namespace lomlisp::embedded
