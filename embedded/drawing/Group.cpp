#include <embedded/drawing/Group.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace lomlisp::embedded {

namespace {

struct KindRange {
  int first;
  int last;
  GroupKind kind;
};

// In ascending order, without overlaps.
constexpr KindRange kKinds[] = {
    {5, 5, GroupKind::Handle},        {10, 18, GroupKind::Point},       {19, 59, GroupKind::Real},
    {60, 79, GroupKind::Short},       {90, 99, GroupKind::Long},        {105, 105, GroupKind::Handle},
    {110, 112, GroupKind::Point},     {113, 149, GroupKind::Real},      {160, 169, GroupKind::Int64},
    {170, 179, GroupKind::Short},     {210, 219, GroupKind::Point},     {220, 239, GroupKind::Real},
    {270, 289, GroupKind::Short},     {290, 299, GroupKind::Bool},      {310, 319, GroupKind::Binary},
    {320, 369, GroupKind::Reference}, {370, 389, GroupKind::Short},     {390, 399, GroupKind::Reference},
    {400, 409, GroupKind::Short},     {420, 429, GroupKind::Long},      {440, 459, GroupKind::Long},
    {460, 469, GroupKind::Real},      {480, 481, GroupKind::Reference}, {1004, 1004, GroupKind::Binary},
    {1005, 1005, GroupKind::Handle},  {1010, 1019, GroupKind::Point},   {1020, 1059, GroupKind::Real},
    {1060, 1070, GroupKind::Short},   {1071, 1071, GroupKind::Long},
};

template <typename T>
const T* ValueOf(const Groups& groups, int code) {
  const Group* group = Find(groups, code);
  return group != nullptr ? std::get_if<T>(&group->value) : nullptr;
}

int DigitOf(wchar_t character) {
  if (character >= L'0' && character <= L'9') return character - L'0';
  if (character >= L'A' && character <= L'F') return character - L'A' + 10;
  if (character >= L'a' && character <= L'f') return character - L'a' + 10;
  return -1;
}

}  // namespace

GroupKind KindOf(int code) {
  const auto* range =
      std::lower_bound(std::begin(kKinds), std::end(kKinds), code,
                       [](const KindRange& candidate, int wanted) { return candidate.last < wanted; });
  return range != std::end(kKinds) && range->first <= code ? range->kind : GroupKind::Text;
}

const Group* Find(const Groups& groups, int code, size_t from) {
  for (size_t index = from; index < groups.size(); ++index)
    if (groups[index].code == code) return &groups[index];
  return nullptr;
}

Group* Find(Groups& groups, int code, size_t from) {
  return const_cast<Group*>(Find(std::as_const(groups), code, from));
}

std::wstring_view TextOf(const Groups& groups, int code, std::wstring_view absent) {
  const auto* text = ValueOf<std::wstring>(groups, code);
  return text != nullptr ? *text : absent;
}

long long IntegerOf(const Groups& groups, int code, long long absent) {
  const auto* integer = ValueOf<long long>(groups, code);
  return integer != nullptr ? *integer : absent;
}

double RealOf(const Groups& groups, int code, double absent) {
  const auto* real = ValueOf<double>(groups, code);
  return real != nullptr ? *real : absent;
}

Point PointOf(const Groups& groups, int code, Point absent) {
  const auto* point = ValueOf<Point>(groups, code);
  return point != nullptr ? *point : absent;
}

uint64_t ReferenceOf(const Groups& groups, int code) {
  const auto* reference = ValueOf<Reference>(groups, code);
  return reference != nullptr ? reference->handle : 0;
}

std::wstring HandleText(uint64_t handle) {
  std::wstring digits;
  do {
    digits += L"0123456789ABCDEF"[handle & 0xF];
    handle >>= 4;
  } while (handle != 0);
  std::reverse(digits.begin(), digits.end());
  return digits;
}

std::optional<uint64_t> ReadHandle(std::wstring_view text) {
  if (text.empty()) return std::nullopt;
  uint64_t handle = 0;
  for (const wchar_t character : text) {
    const int digit = DigitOf(character);
    if (digit < 0 || handle >> 60 != 0) return std::nullopt;
    handle = handle << 4 | static_cast<uint64_t>(digit);
  }
  return handle;
}

}  // namespace lomlisp::embedded
