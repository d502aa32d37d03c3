#include <embedded/drawing/GroupOrder.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <optional>
#include <span>
#include <unordered_map>
#include <utility>

namespace lomlisp::embedded {

namespace {

constexpr int kBracketCode = 102;

std::wstring_view TextIn(const Group& group) {
  const auto* text = std::get_if<std::wstring>(&group.value);
  return text != nullptr ? std::wstring_view(*text) : std::wstring_view();
}

bool IsHandle(int code) { return code == kHandleCode || code == kDimStyleHandleCode; }

// What stands behind one marker. The order is null where the given one is kept.
struct Stretch {
  std::wstring_view marker;
  const ClassSection* section = nullptr;
  Groups groups;
};

std::vector<std::wstring_view> ClassMarkers(const Groups& own) {
  std::vector<std::wstring_view> markers;
  for (const Group& group : own)
    if (group.code == kMarkerCode && TextIn(group) != kCommonMarker) markers.push_back(TextIn(group));
  return markers;
}

// Whether the markers are some of the type's, in their order.
bool AreOf(const EntityType& type, const std::vector<std::wstring_view>& markers) {
  auto next = markers.begin();
  for (const ClassSection& section : type.sections)
    if (next != markers.end() && *next == section.marker) ++next;
  return next == markers.end();
}

class Arrangement {
 public:
  Arrangement(const EntityType* type, const Groups& own) {
    m_stretches.push_back({kCommonMarker, &CommonSection(), {}});
    const auto markers = ClassMarkers(own);
    m_isDescribed = type != nullptr && AreOf(*type, markers);
    if (m_isDescribed) {
      for (const ClassSection& section : type->sections)
        m_stretches.push_back({section.marker, &section, {}});
    } else {
      for (const std::wstring_view marker : markers) m_stretches.push_back({marker, nullptr, {}});
    }
    for (const Group& group : own) Take(group);
    for (Stretch& stretch : m_stretches) Sort(stretch);
  }

  Groups Result(bool withMarkers) {
    Groups result;
    for (Stretch& stretch : m_stretches) {
      if (withMarkers) result.push_back({kMarkerCode, std::wstring(stretch.marker)});
      std::move(stretch.groups.begin(), stretch.groups.end(), std::back_inserter(result));
    }
    return result;
  }

 private:
  void Take(const Group& group) {
    if (group.code == kMarkerCode) return Advance(TextIn(group));
    m_stretches[StretchOf(group.code)].groups.push_back(group);
  }

  // The markers were found to come in the order of the stretches.
  void Advance(std::wstring_view marker) {
    if (marker == kCommonMarker) {
      m_current = 0;
      return;
    }
    do ++m_lastClass;
    while (m_stretches[m_lastClass].marker != marker);
    m_current = m_lastClass;
  }

  bool Lists(size_t stretch, int code) const {
    const ClassSection* section = m_stretches[stretch].section;
    return section != nullptr && section->Lists(code);
  }

  size_t StretchOf(int code) const {
    if (!m_isDescribed) {
      const bool isFirstLayer = code == kLayerCode && Find(m_stretches[0].groups, code) == nullptr;
      return isFirstLayer ? 0 : m_current.value_or(0);
    }
    if (m_current && Lists(*m_current, code)) return *m_current;
    for (size_t stretch = 0; stretch < m_stretches.size(); ++stretch)
      if (Lists(stretch, code)) return stretch;
    return m_current.value_or(m_stretches.size() - 1);
  }

  static void Sort(Stretch& stretch) {
    if (stretch.section == nullptr) return;
    std::stable_sort(stretch.groups.begin(), stretch.groups.end(), [&](const Group& a, const Group& b) {
      return stretch.section->RankOf(a.code) < stretch.section->RankOf(b.code);
    });
  }

  std::vector<Stretch> m_stretches;
  std::optional<size_t> m_current;
  size_t m_lastClass = 0;
  bool m_isDescribed = false;
};

// The groups behind a marker, up to the next one.
struct Range {
  size_t begin;
  size_t end;
};

// Behind the n-th marker of that name; where there is none, the empty range at the end.
Range FindStretch(const Groups& stored, std::wstring_view marker, size_t occurrence) {
  const size_t last = EndOfOwn(stored);
  size_t begin = last;
  for (size_t place = 0; place < last; ++place) {
    if (stored[place].code != kMarkerCode) continue;
    if (begin != last) return {begin, place};
    if (TextIn(stored[place]) == marker && occurrence-- == 0) begin = place + 1;
  }
  return {begin, last};
}

GroupPlace PlaceIn(const ClassSection& section, const Groups& stored, Range range, int code) {
  const auto rank = section.RankOf(code);
  for (size_t place = range.begin; place < range.end; ++place)
    if (section.Lists(stored[place].code) && section.RankOf(stored[place].code) > rank) return {place, rank};
  return {range.end, rank};
}

}  // namespace

size_t EndOfOwn(const Groups& groups) {
  const Group* embedded = Find(groups, kEmbeddedObjectCode);
  return embedded != nullptr ? static_cast<size_t>(embedded - groups.data()) : groups.size();
}

OwnGroups FindOwn(const Groups& groups, bool isDescribed) {
  OwnGroups own;
  bool isInBrackets = false;
  bool isFree = false;
  for (size_t place = 0; place < groups.size() && groups[place].code != kEmbeddedObjectCode; ++place) {
    const int code = groups[place].code;
    const std::wstring_view text = TextIn(groups[place]);
    if (code == kMarkerCode && text != kCommonMarker && !isDescribed) isFree = true;
    if (!isFree && code == kBracketCode) {
      const bool opens = !text.empty() && text.front() == L'{';
      if (opens == isInBrackets) own.areBracketsBalanced = false;
      isInBrackets = opens;
    } else if (!isInBrackets && code != kTypeCode && !IsHandle(code) && (isFree || code != kOwnerCode)) {
      own.places.push_back(place);
    }
  }
  if (isInBrackets) own.areBracketsBalanced = false;
  return own;
}

Groups KeepLast(const EntityType* type, Groups groups) {
  if (type == nullptr) return groups;
  std::unordered_map<int, size_t> places;
  Groups kept;
  for (Group& group : groups) {
    const bool isSingle = group.code != kMarkerCode && !type->Repeats(group.code);
    const auto [found, isNew] =
        isSingle ? places.try_emplace(group.code, kept.size()) : std::pair(places.end(), true);
    if (isNew)
      kept.push_back(std::move(group));
    else
      kept[found->second] = std::move(group);
  }
  return kept;
}

Groups Arrange(const EntityType* type, const Groups& own) { return Arrangement(type, own).Result(true); }

Groups ArrangeWithoutMarkers(const EntityType* type, const Groups& own) {
  return Arrangement(type, own).Result(false);
}

GroupPlace PlaceFor(const EntityType* type, const Groups& stored, int code, std::wstring_view marker) {
  const std::span<const ClassSection> sections =
      type != nullptr ? type->sections : std::span<const ClassSection>();
  std::wstring_view last;
  size_t twins = 0;
  for (const ClassSection& section : sections) {
    twins = section.marker == last ? twins + 1 : 0;
    last = section.marker;
    if (section.Lists(code))
      return PlaceIn(section, stored, FindStretch(stored, section.marker, twins), code);
  }
  const Range common = FindStretch(stored, kCommonMarker, 0);
  const bool hasCommon = common.begin < EndOfOwn(stored);
  const bool isCommon = type != nullptr || marker.empty() || marker == kCommonMarker;
  if (hasCommon && isCommon && CommonSection().Lists(code))
    return PlaceIn(CommonSection(), stored, common, code);
  return {FindStretch(stored, marker, 0).end, std::numeric_limits<size_t>::max()};
}

}  // namespace lomlisp::embedded
