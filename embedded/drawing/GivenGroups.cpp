#include <embedded/drawing/GivenGroups.h>

#include <embedded/Text.h>
#include <embedded/drawing/GroupRecords.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <unordered_set>
#include <utility>

namespace lomlisp::embedded {

namespace {

using Objection = std::optional<std::string>;

constexpr short kNameOfHeader = -2;
constexpr short kOperator = -4;
constexpr short kReactors = -5;
constexpr int kBraceCode = 1002;
constexpr int kCommentCode = 999;

constexpr int kExtendedCodes[] = {1000, 1002, 1003, 1004, 1005, 1010, 1011,
                                  1012, 1013, 1040, 1041, 1042, 1070, 1071};

Objection WhyNoGroup(short type) {
  switch (type) {
    case RTLB:
    case RTLE:
    case RTDOTE:
      return "a bracket or a dot among the groups";
    case RTPOINT:
    case RT3DPOINT:
      return "a point without a group code";
    case RTNIL:
      return "nil among the groups";
    case kOperator:
      return AboutGroup(type) + "belongs to filters alone";
    default:
      return std::nullopt;
  }
}

bool IsFinite(const GroupValue& value) {
  if (const auto* real = std::get_if<double>(&value)) return std::isfinite(*real);
  if (const auto* point = std::get_if<Point>(&value))
    return std::isfinite(point->x) && std::isfinite(point->y) && std::isfinite(point->z);
  return true;
}

// A code between those of points and of reals: records hold a point for it, files a real.
void MakeReal(Group& group) {
  const auto* point = std::get_if<Point>(&group.value);
  if (point != nullptr && KindOf(group.code) == GroupKind::Real) group.value = double{point->x};
}

bool IsChunk(const std::wstring& digits) {
  return digits.size() % 2 == 0 && std::all_of(digits.begin(), digits.end(), [](wchar_t digit) {
           return ReadHandle(std::wstring_view(&digit, 1)).has_value();
         });
}

class Reading {
 public:
  explicit Reading(const Drawing& drawing) : m_drawing(drawing) {}

  Objection Take(const Record& record) {
    if (auto objection = WhyNoGroup(record.type)) return objection;
    switch (record.type) {
      case kNameOfObject:
        if (!given.name) given.name = record;
        return std::nullopt;
      case kNameOfHeader:
      case kReactors:
        return std::nullopt;
      case kExtendedData:
        return BeginExtended();
      default:
        return TakeGroup(record);
    }
  }

  Objection Finish() {
    if (m_depth == 0) return std::nullopt;
    return AboutGroup(kBraceCode) + "the braces do not balance";
  }

  GivenGroups given;

 private:
  Objection BeginExtended() {
    if (std::exchange(m_hasExtended, true)) return AboutGroup(kExtendedData) + "given twice";
    m_isInExtended = true;
    return std::nullopt;
  }

  Objection TakeGroup(const Record& record) {
    std::string objection;
    auto group = ReadRecord(record, m_drawing, objection);
    if (!group) return objection;
    MakeReal(*group);
    if (!IsFinite(group->value)) return AboutGroup(group->code) + "no finite number";
    if (group->code >= kFirstExtendedCode) return TakeExtended(std::move(*group));
    m_isInExtended = false;
    return TakeOwn(std::move(*group));
  }

  Objection TakeOwn(Group group) {
    if (group.code == kHandleCode || group.code == kDimStyleHandleCode || group.code == kCommentCode)
      return std::nullopt;
    if (group.code == kTypeCode && std::exchange(m_hasType, true))
      return AboutGroup(kTypeCode) + "given twice";
    if (auto objection = CheckText(group)) return objection;
    given.groups.push_back(std::move(group));
    return std::nullopt;
  }

  Objection TakeExtended(Group group) {
    if (!m_isInExtended) return AboutGroup(group.code) + "stands outside of the extended data (-3)";
    if (group.code == kApplicationCode) return BeginApplication(std::get<std::wstring>(group.value));
    if (given.extended.empty()) return AboutGroup(group.code) + "stands before its application (1001)";
    if (!std::binary_search(std::begin(kExtendedCodes), std::end(kExtendedCodes), group.code))
      return AboutGroup(group.code) + "no group of extended data";
    if (auto objection = CheckText(group)) return objection;
    given.extended.back().groups.push_back(std::move(group));
    return std::nullopt;
  }

  Objection BeginApplication(const std::wstring& name) {
    if (auto objection = Finish()) return objection;
    if (!m_applications.insert(Folded(name)).second)
      return AboutGroup(kApplicationCode) + "the application \"" + Utf8(name) + "\" given twice";
    given.extended.push_back({name, {}});
    return std::nullopt;
  }

  Objection CheckText(const Group& group) {
    const auto* text = std::get_if<std::wstring>(&group.value);
    if (text == nullptr) return std::nullopt;
    if (group.code == kBraceCode) return TakeBrace(*text);
    if (KindOf(group.code) == GroupKind::Binary && !IsChunk(*text))
      return AboutGroup(group.code) + "no hexadecimal digits of whole bytes";
    if (KindOf(group.code) == GroupKind::Handle && !ReadHandle(*text))
      return AboutGroup(group.code) + "no handle";
    return std::nullopt;
  }

  Objection TakeBrace(const std::wstring& brace) {
    if (brace != L"{" && brace != L"}") return AboutGroup(kBraceCode) + "neither { nor }";
    if (brace == L"}" && m_depth == 0) return AboutGroup(kBraceCode) + "the braces do not balance";
    m_depth = brace == L"{" ? m_depth + 1 : m_depth - 1;
    return std::nullopt;
  }

  const Drawing& m_drawing;
  std::unordered_set<std::wstring> m_applications;
  size_t m_depth = 0;
  bool m_hasType = false;
  bool m_hasExtended = false;
  bool m_isInExtended = false;
};

}  // namespace

std::string AboutGroup(int code) { return "group " + std::to_string(code) + ": "; }

std::optional<GivenGroups> ReadGiven(const Chain& chain, const Drawing& drawing, std::string& objection) {
  Reading reading(drawing);
  for (const Record& record : chain) {
    if (auto found = reading.Take(record)) {
      objection = std::move(*found);
      return std::nullopt;
    }
  }
  if (auto found = reading.Finish()) {
    objection = std::move(*found);
    return std::nullopt;
  }
  return std::move(reading.given);
}

}  // namespace lomlisp::embedded
