#include <shell/functions/Groups.h>

#include <shell/Values.h>

#include <lomlisp/platform/suite.h>

#include <embedded/Nesting.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>

namespace lomlisp::shell {

namespace {

using embedded::Chain;
using embedded::Mark;
using embedded::Record;

constexpr short kExtendedData = -3;
constexpr short kApplication = 1001;
constexpr short kVertex = 10;

std::optional<double> AsReal(const Record& record) {
  switch (record.type) {
    case RTREAL:
      return record.value.rreal;
    case RTSHORT:
      return record.value.rint;
    case RTLONG:
      return record.value.rlong;
    default:
      return std::nullopt;
  }
}

std::optional<int64_t> AsInteger(const Record& record) {
  if (record.type == RTSHORT) return record.value.rint;
  if (record.type == RTLONG) return record.value.rlong;
  return std::nullopt;
}

// Reads the items of a list of groups one by one.
class GroupReader {
 public:
  explicit GroupReader(const Chain& list) : m_list(list) {}

  Chain Read() {
    if (m_list.size() == 1 && m_list.front().type == RTNIL) return {};
    Expect(RTLB);
    while (!Accept(RTLE)) ReadGroup();
    return std::move(m_groups);
  }

 private:
  [[noreturn]] void Fail() const {
    Chain group;
    size_t depth = 0;
    for (size_t index = m_groupBegin; index < m_list.size(); ++index) {
      group.push_back(m_list[index]);
      if (m_list[index].type == RTLB) ++depth;
      if (m_list[index].type == RTLE) --depth;
      if (depth == 0) break;
    }
    throw LispError(L"bad DXF group: " + embedded::ToText(group));
  }

  const Record& Next() const {
    if (m_position == m_list.size()) Fail();
    return m_list[m_position];
  }
  bool Accept(short type) {
    const bool isNext = Next().type == type;
    if (isNext) ++m_position;
    return isNext;
  }
  void Expect(short type) {
    if (!Accept(type)) Fail();
  }
  Record Take() {
    const Record& record = Next();
    if (record.type == RTLB || record.type == RTLE || record.type == RTDOTE) Fail();
    ++m_position;
    return record;
  }

  short ReadCode() {
    const auto code = AsInteger(Take());
    if (!code || !std::in_range<short>(*code)) Fail();
    return static_cast<short>(*code);
  }

  void ReadGroup() {
    m_groupBegin = m_position;
    Expect(RTLB);
    const short code = ReadCode();
    if (code == kExtendedData) return ReadApplications();
    ReadValue(code);
  }

  void ReadValue(short code) {
    Record group = Mark(code);
    if (Accept(RTDOTE)) {
      SetValue(group, Take());
    } else {
      SetPoint(group);
    }
    Expect(RTLE);
    m_groups.push_back(std::move(group));
  }

  // (-3 ("APP" (1000 . "x") ...) ...)
  void ReadApplications() {
    m_groups.push_back(Mark(kExtendedData));
    while (!Accept(RTLE)) {
      Expect(RTLB);
      Record application = Mark(kApplication);
      SetValue(application, Take());
      m_groups.push_back(std::move(application));
      while (!Accept(RTLE)) {
        Expect(RTLB);
        ReadValue(ReadCode());
      }
    }
  }

  void SetPoint(Record& group) {
    if (DxfType(group.type) != RT3DPOINT) Fail();
    size_t axis = 0;
    for (; axis < 3 && Next().type != RTLE; ++axis) group.value.rpoint[axis] = Coordinate();
    if (axis < 2) Fail();
  }

  double Coordinate() {
    const auto real = AsReal(Take());
    if (!real) Fail();
    return *real;
  }

  void SetValue(Record& group, const Record& value) {
    switch (DxfType(group.type)) {
      case RTSTR:
        if (!value.hasText) Fail();
        group.text = value.text;
        group.hasText = true;
        return;
      case RTREAL: {
        const auto real = AsReal(value);
        if (!real) Fail();
        group.value.rreal = *real;
        return;
      }
      case RTENAME:
        return SetName(group, value);
      default:
        return SetInteger(group, value);
    }
  }

  void SetName(Record& group, const Record& value) {
    if (value.type != RTENAME) Fail();
    group.value.rlname[0] = value.value.rlname[0];
    group.value.rlname[1] = value.value.rlname[1];
  }

  void SetInteger(Record& group, const Record& value) {
    const auto integer = AsInteger(value);
    if (!integer) Fail();
    switch (DxfType(group.type)) {
      case RTSHORT:
        if (!std::in_range<short>(*integer)) Fail();
        group.value.rint = static_cast<short>(*integer);
        return;
      case RTLONG:
        group.value.rlong = static_cast<int32_t>(*integer);
        return;
      case RTINT64:
        group.value.mnInt64 = *integer;
        return;
      default:
        Fail();
    }
  }

  const Chain& m_list;
  size_t m_position = 0;
  size_t m_groupBegin = 0;
  Chain m_groups;
};

Record CodeItem(short code) {
  Record record = Mark(RTSHORT);
  record.value.rint = code;
  return record;
}

// The vertices of these are plane, and LISP sees them so.
bool HasPlaneVertices(const Chain& groups) {
  return std::any_of(groups.begin(), groups.end(), [](const Record& group) {
    return group.type == 0 && group.hasText && group.text == L"LWPOLYLINE";
  });
}

void AppendPlaneVertex(Chain& list, const Record& group) {
  list.push_back(Mark(RTLB));
  list.push_back(CodeItem(group.type));
  for (size_t axis = 0; axis < 2; ++axis)
    list.emplace_back(Mark(RTREAL)).value.rreal = group.value.rpoint[axis];
  list.push_back(Mark(RTLE));
}

Record GroupText(const Record& group) {
  Record record = group;
  record.type = RTSTR;
  return record;
}

}  // namespace

Chain GroupsOf(const Chain& list) { return GroupReader(list).Read(); }

Chain ListOf(const Chain& groups) {
  Chain list = {Mark(RTLB)};
  bool isInData = false;
  bool isInApplication = false;
  const bool isPlane = HasPlaneVertices(groups);
  for (const Record& group : groups) {
    if (group.type == kExtendedData) {
      list.push_back(Mark(RTLB));
      list.push_back(CodeItem(kExtendedData));
      isInData = true;
    } else if (group.type == kApplication && isInData) {
      if (isInApplication) list.push_back(Mark(RTLE));
      list.push_back(Mark(RTLB));
      list.push_back(GroupText(group));
      isInApplication = true;
    } else if (group.type == kVertex && isPlane) {
      AppendPlaneVertex(list, group);
    } else {
      list.push_back(group);
    }
  }
  if (isInApplication) list.push_back(Mark(RTLE));
  if (isInData) list.push_back(Mark(RTLE));
  list.push_back(Mark(RTLE));
  return list;
}

}  // namespace lomlisp::shell
