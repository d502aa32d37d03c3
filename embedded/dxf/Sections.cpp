#include <embedded/dxf/Sections.h>

#include <embedded/Text.h>
#include <embedded/dxf/Fault.h>

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

namespace lomlisp::embedded {

namespace {

constexpr std::wstring_view kSectionBegin = L"SECTION";
constexpr std::wstring_view kSectionEnd = L"ENDSEC";
constexpr std::wstring_view kFileEnd = L"EOF";
constexpr std::wstring_view kHeader = L"HEADER";

// --- Groups ---

// How far above the code of x those of y and z are.
constexpr int kNextCoordinate = 10;

// Puts y behind an x, or z behind a flat point, that was read directly before it. Under 38 there never is
// a z, so a point 18 stays flat.
bool Fold(Groups& groups, const Tag& tag) {
  constexpr int kElevationCode = 38;
  const auto* coordinate = std::get_if<double>(&tag.value);
  if (coordinate == nullptr || groups.empty()) return false;
  Group& last = groups.back();
  if (KindOf(last.code) != GroupKind::Point) return false;
  if (const auto* x = std::get_if<double>(&last.value)) {
    if (tag.code != last.code + kNextCoordinate) return false;
    last.value = Point{*x, *coordinate, 0.0, true};
    return true;
  }
  auto& point = std::get<Point>(last.value);
  if (!point.isFlat || tag.code != last.code + 2 * kNextCoordinate || tag.code == kElevationCode)
    return false;
  point.z = *coordinate;
  point.isFlat = false;
  return true;
}

void AddTag(Groups& groups, Tag& tag) {
  if (!Fold(groups, tag)) groups.push_back({tag.code, std::move(tag.value)});
}

bool IsExtended(const Group& group) { return group.code >= kFirstExtendedCode; }

// Splits the extended data off when nothing else follows it.
std::vector<ExtendedData> TakeExtended(Groups& groups) {
  const auto isApplication = [](const Group& group) { return group.code == kApplicationCode; };
  const auto first = std::find_if(groups.begin(), groups.end(), isApplication);
  if (!std::all_of(first, groups.end(), IsExtended)) return {};
  std::vector<ExtendedData> extended;
  for (auto group = first; group != groups.end();) {
    const auto next = std::find_if(group + 1, groups.end(), isApplication);
    extended.push_back({std::get<std::wstring>(std::move(group->value)),
                        Groups(std::make_move_iterator(group + 1), std::make_move_iterator(next))});
    group = next;
  }
  groups.erase(first, groups.end());
  return extended;
}

// An object's own handle stands before its first marker; behind it a 5 is data.
const Group* FindHandle(const Groups& groups, std::wstring_view type) {
  const int code = type == L"DIMSTYLE" ? kDimStyleHandleCode : kHandleCode;
  for (const Group& group : groups) {
    if (group.code == code) return &group;
    if (group.code == kMarkerCode) break;
  }
  return nullptr;
}

uint64_t HandleIn(const Groups& groups, std::wstring_view type, uint64_t place) {
  const Group* group = FindHandle(groups, type);
  if (group == nullptr) return 0;
  const auto handle = ReadHandle(std::get<std::wstring>(group->value));
  if (!handle) throw Fault("the handle of an object is no hexadecimal number", place);
  return *handle;
}

// --- Sections ---

class SectionReader {
 public:
  SectionReader(TagSource& source, uint64_t size, const DxfProgress& progress)
      : m_source(source), m_size(size), m_progress(progress) {
    constexpr uint64_t kParts = 100;
    constexpr uint64_t kFarthest = 4'000'000;
    m_step = std::clamp<uint64_t>(size / kParts, 1, kFarthest);
    m_nextReport = m_step;
  }

  std::vector<FileSection> ReadFile() {
    std::vector<FileSection> sections;
    Begin();
    for (; !Is(kFileEnd); Next()) sections.push_back(ReadSection(sections));
    if (!m_source.IsRestBlank()) throw Fault("something follows the end of the file", m_tag.place);
    if (m_progress) m_progress(m_size, m_size);
    return sections;
  }

  Groups ReadHeader() {
    std::vector<FileSection> none;
    Begin();
    for (; !Is(kFileEnd); Next())
      if (FileSection section = ReadSection(none); section.name == kHeader) return std::move(section.groups);
    return {};
  }

 private:
  bool Is(std::wstring_view mark) const {
    return m_tag.code == kTypeCode && std::get<std::wstring>(m_tag.value) == mark;
  }
  Fault FaultHere(std::string message) const { return Fault(std::move(message), m_tag.place); }

  void Begin() {
    if (!m_source.Next(m_tag)) throw FaultHere("this is no DXF file: there is nothing in it");
    if (!Is(kSectionBegin) && !Is(kFileEnd)) throw FaultHere("this is no DXF file: no section begins here");
  }

  void Next() {
    if (!m_source.Next(m_tag)) throw FaultHere("the file ends without EOF behind this");
    if (!m_progress || m_source.Position() < m_nextReport) return;
    m_progress(m_source.Position(), m_size);
    m_nextReport = m_source.Position() + m_step;
  }

  // The tag behind one that stays within a section.
  void NextWithin(const FileSection& section) {
    Next();
    if (Is(kSectionBegin) || Is(kFileEnd))
      throw FaultHere("the section " + Utf8(section.name) + " has no ENDSEC before this");
  }

  FileSection ReadSection(const std::vector<FileSection>& before) {
    FileSection section;
    section.place = m_tag.place;
    if (!Is(kSectionBegin)) throw FaultHere("this stands outside of all sections");
    Next();
    if (m_tag.code != kNameCode) throw FaultHere("the name of a section belongs here");
    section.name = std::get<std::wstring>(std::move(m_tag.value));
    const auto isSame = [&](const FileSection& one) { return one.name == section.name; };
    // Asked only for names that cannot come twice, so that many sections take no longer than large ones.
    if (HasObjects(section.name) && std::any_of(before.begin(), before.end(), isSame))
      throw FaultHere("there is a section " + Utf8(section.name) + " already");
    NextWithin(section);
    ReadContent(section);
    return section;
  }

  void ReadContent(FileSection& section) {
    const bool hasObjects = HasObjects(section.name);
    for (; !Is(kSectionEnd) && !(hasObjects && m_tag.code == kTypeCode); NextWithin(section))
      AddTag(section.groups, m_tag);
    while (!Is(kSectionEnd)) section.objects.push_back(ReadObject(section));
  }

  FileObject ReadObject(const FileSection& section) {
    FileObject object;
    object.place = m_tag.place;
    do {
      AddTag(m_groups, m_tag);
      NextWithin(section);
    } while (m_tag.code != kTypeCode);
    object.extended = TakeExtended(m_groups);
    object.groups.assign(std::make_move_iterator(m_groups.begin()), std::make_move_iterator(m_groups.end()));
    m_groups.clear();
    object.handle = HandleIn(object.groups, object.Type(), object.place);
    return object;
  }

  TagSource& m_source;
  uint64_t m_size;
  const DxfProgress& m_progress;
  uint64_t m_step;
  uint64_t m_nextReport;
  Tag m_tag;
  Groups m_groups;  // of the object that is being read; here, so that it grows once for all of them
};

}  // namespace

bool HasObjects(std::wstring_view section) {
  return section == L"TABLES" || section == L"BLOCKS" || section == L"ENTITIES" || section == L"OBJECTS";
}

std::vector<FileSection> ReadSections(TagSource& source, uint64_t size, const DxfProgress& progress) {
  return SectionReader(source, size, progress).ReadFile();
}

Groups ReadHeader(TagSource& source) { return SectionReader(source, 0, {}).ReadHeader(); }

}  // namespace lomlisp::embedded
