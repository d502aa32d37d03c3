// From the sections of a file to a drawing.
#include <embedded/Text.h>
#include <embedded/dxf/Dxf.h>
#include <embedded/dxf/Fault.h>
#include <embedded/dxf/SafeFile.h>
#include <embedded/dxf/Sections.h>
#include <embedded/dxf/Tags.h>
#include <embedded/dxf/Version.h>

#include <fstream>
#include <ios>
#include <new>
#include <system_error>
#include <utility>

namespace lomlisp::embedded {

namespace {

// --- The header ---

struct FileFacts {
  DxfVersion version = DxfVersion::R12;
  std::wstring codePage{kUsualCodePage};
};

std::wstring_view VariableText(const Groups& header, std::wstring_view name) {
  for (size_t index = 0; index + 1 < header.size(); ++index) {
    if (header[index] != Group{kVariableCode, std::wstring(name)}) continue;
    const auto* text = std::get_if<std::wstring>(&header[index + 1].value);
    return text != nullptr ? *text : std::wstring_view();
  }
  return {};
}

FileFacts FactsIn(const Groups& header) {
  FileFacts facts;
  facts.version = VersionOf(VariableText(header, kVersionVariable));
  if (const auto page = VariableText(header, kCodePageVariable); !page.empty()) facts.codePage = page;
  return facts;
}

// How texts are coded stands among them, so the header is read twice. What is wrong in it is said the
// second time.
FileFacts FindFacts(std::string_view bytes) {
  const TextCoding coding = TextCoding::Utf8();
  const auto source = MakeTagSource(bytes, coding);
  try {
    return FactsIn(ReadHeader(*source));
  } catch (const Fault&) {
    return {};
  }
}

// --- Objects ---

struct Placing {
  std::wstring_view type;
  std::wstring_view section;
};

// What stands in one section alone.
constexpr Placing kPlacings[] = {
    {L"TABLE", L"TABLES"}, {L"ENDTAB", L"TABLES"}, {L"BLOCK", L"BLOCKS"}, {L"ENDBLK", L"BLOCKS"}};

void CheckPlacing(const FileSection& section, const FileObject& object) {
  for (const Placing& one : kPlacings)
    if (one.type == object.Type() && one.section != section.name)
      throw Fault(Utf8(one.type) + " stands outside of the section " + Utf8(one.section), object.place);
}

// Puts entities into a list, what belongs to a POLYLINE or INSERT to its header. Such a part without a
// header is an entity like others, and a header may lack its SEQEND: both come back as they are.
class EntityAppender {
 public:
  EntityAppender(Drawing& drawing, EntityList& list) : m_drawing(drawing), m_list(list) {}

  void Append(Object& entity) {
    const std::wstring_view type = entity.Type();
    if (m_header != nullptr && (type == m_partType || type == L"SEQEND")) {
      m_drawing.AppendPart(*m_header, entity);
      if (type != m_partType) m_header = nullptr;
      return;
    }
    m_drawing.Append(m_list, entity);
    m_partType = PartTypeOf(entity);
    m_header = m_partType.empty() ? nullptr : &entity;
  }

 private:
  static std::wstring_view PartTypeOf(const Object& entity) {
    constexpr int kPartsFollowCode = 66;
    if (entity.Type() == L"POLYLINE") return L"VERTEX";
    if (entity.Type() == L"INSERT" && IntegerOf(entity.groups, kPartsFollowCode) == 1) return L"ATTRIB";
    return {};
  }

  Drawing& m_drawing;
  EntityList& m_list;
  Object* m_header = nullptr;
  std::wstring_view m_partType;
};

class Assembler {
 public:
  explicit Assembler(Drawing& drawing) : m_drawing(drawing) {}

  void Run(std::vector<FileSection> sections) {
    MakeObjects(sections);
    for (FileSection& section : sections) {
      Relate(section);
      m_drawing.Sections().push_back({std::move(section.name), std::move(section.groups)});
    }
    const Groups next = m_drawing.HeaderVariable(kNextHandleVariable);
    if (const auto handle = ReadHandle(TextOf(next, kHandleCode))) m_drawing.RaiseNextHandle(*handle);
  }

 private:
  // First those with handles, so that the others get free ones.
  void MakeObjects(std::vector<FileSection>& sections) {
    bool anyHandle = false;
    ForEach(sections, [&](FileObject& object) {
      if (object.handle == 0) return;
      anyHandle = true;
      if (!m_drawing.IsFree(object.handle))
        throw Fault("the handle " + Utf8(HandleText(object.handle)) + " is in use already", object.place);
      Make(object);
    });
    m_drawing.hasHandles = anyHandle || m_drawing.version > DxfVersion::R12;
    ForEach(sections, [&](FileObject& object) {
      const bool isBareEnd =
          object.Type() == L"ENDTAB" && object.groups.size() == 1 && object.extended.empty();
      if (object.object == nullptr && !isBareEnd) Make(object);
    });
  }

  template <typename Action>
  static void ForEach(std::vector<FileSection>& sections, Action action) {
    for (FileSection& section : sections)
      for (FileObject& object : section.objects) action(object);
  }

  void Make(FileObject& object) {
    object.object = &m_drawing.NewObject(std::move(object.groups), object.handle);
    object.object->extended = std::move(object.extended);
  }

  void Relate(const FileSection& section) {
    for (const FileObject& object : section.objects) CheckPlacing(section, object);
    if (section.name == L"TABLES") return RelateTables(section);
    if (section.name == L"BLOCKS") return RelateBlocks(section);
    EntityAppender entities(m_drawing, m_drawing.Entities());
    for (const FileObject& object : section.objects) {
      if (section.name == L"ENTITIES") {
        entities.Append(*object.object);
      } else {
        m_drawing.Objects().push_back(object.object);
      }
    }
  }

  void RelateTables(const FileSection& section) {
    Table* table = nullptr;
    for (const FileObject& object : section.objects) {
      const std::wstring_view type = object.Type();
      const bool isBegin = type == L"TABLE";
      if (isBegin && table != nullptr)
        throw Fault("a table begins before the ENDTAB of another", object.place);
      if (!isBegin && table == nullptr)
        throw Fault(Utf8(type) + " stands outside of all tables", object.place);
      if (isBegin) {
        table = &m_drawing.AppendTable(*object.object);
      } else if (type == L"ENDTAB") {
        std::exchange(table, nullptr)->end = object.object;
      } else {
        m_drawing.AppendEntry(*table, *object.object);
      }
    }
    if (table != nullptr) throw Fault("the last table has no ENDTAB", section.objects.back().place);
  }

  void RelateBlocks(const FileSection& section) {
    const FileObject* begin = nullptr;
    for (const FileObject& object : section.objects) {
      const std::wstring_view type = object.Type();
      const bool isBegin = type == L"BLOCK";
      if (isBegin && begin != nullptr)
        throw Fault("a block begins before the ENDBLK of another", object.place);
      if (!isBegin && begin == nullptr)
        throw Fault(Utf8(type) + " stands outside of all blocks", object.place);
      if (isBegin) {
        begin = &object;
      } else if (type == L"ENDBLK") {
        FillBlock(std::exchange(begin, nullptr), &object);
      }
    }
    if (begin != nullptr) throw Fault("the last block has no ENDBLK", begin->place);
  }

  // The objects between BLOCK and ENDBLK.
  void FillBlock(const FileObject* begin, const FileObject* end) {
    BlockDefinition& block = m_drawing.AppendBlock(*begin->object, *end->object);
    EntityAppender content(m_drawing, block.content);
    for (const FileObject* object = begin + 1; object != end; ++object) content.Append(*object->object);
  }

  Drawing& m_drawing;
};

// --- Files ---

std::unique_ptr<Drawing> ReadDrawing(std::string_view bytes, const DxfProgress& progress) {
  if (bytes.empty()) throw Fault("this is no DXF file: it is empty");
  const FileFacts facts = FindFacts(bytes);
  const TextCoding coding(facts.version, facts.codePage);
  const auto source = MakeTagSource(bytes, coding);
  auto drawing = std::make_unique<Drawing>(Drawing::Empty());
  drawing->version = facts.version;
  Assembler(*drawing).Run(ReadSections(*source, bytes.size(), progress));
  drawing->TakeChanges();
  drawing->SetModified(false);
  return drawing;
}

DxfError ErrorOf(const Fault& fault, std::string_view unit) {
  if (fault.place == 0) return {fault.message, 0};
  return {fault.message + " (" + std::string(unit) + " " + std::to_string(fault.place) + ")", fault.place};
}

std::string ReadFile(const std::filesystem::path& path) {
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) throw Fault("cannot be read: it is a folder");
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  if (!file) throw Fault("cannot be read: it is not there, or not for us");
  const std::streamoff size = file.tellg();
  if (size < 0) throw Fault("cannot be read: it has no size");
  std::string bytes(static_cast<size_t>(size), '\0');
  file.seekg(0);
  if (!file.read(bytes.data(), static_cast<std::streamsize>(bytes.size())))
    throw Fault("cannot be read to its end");
  return bytes;
}

}  // namespace

DxfOpened ReadDxf(std::string_view bytes, const DxfProgress& progress) {
  // So that the first line of a file with a byte order mark is a group code.
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
  try {
    return {ReadDrawing(bytes, progress), std::nullopt};
  } catch (const Fault& fault) {
    return {nullptr, ErrorOf(fault, IsBinary(bytes) ? "byte" : "line")};
  } catch (const std::bad_alloc&) {
    return {nullptr, DxfError{"the memory does not suffice", 0}};
  }
}

DxfOpened OpenDxf(const std::filesystem::path& path, const DxfProgress& progress) {
  DxfOpened opened;
  try {
    opened = ReadDxf(ReadFile(path), progress);
  } catch (const Fault& fault) {
    opened.error = ErrorOf(fault, {});
  } catch (const std::bad_alloc&) {
    opened.error = DxfError{"the memory does not suffice", 0};
  }
  if (opened.error) opened.error->message = PathText(path) + ": " + opened.error->message;
  return opened;
}

}  // namespace lomlisp::embedded
