#include <embedded/drawing/GroupRecords.h>

#include <lomlisp/platform/suite.h>

#include <cmath>
#include <numbers>
#include <utility>

namespace lomlisp::embedded {

namespace {

// The coordinates of a real that stands under the code of a point are (x 0 0).
void SetPoint(ads_u_val& value, const GroupValue& from) {
  Point point;
  if (const auto* whole = std::get_if<Point>(&from)) point = *whole;
  if (const auto* x = std::get_if<double>(&from)) point.x = *x;
  value.rpoint[0] = point.x;
  value.rpoint[1] = point.y;
  value.rpoint[2] = point.z;
}

template <typename Integer>
Integer IntegerIn(const GroupValue& value) {
  const auto* integer = std::get_if<long long>(&value);
  return integer != nullptr ? static_cast<Integer>(*integer) : Integer();
}

double RealIn(const GroupValue& value) {
  const auto* real = std::get_if<double>(&value);
  return real != nullptr ? *real : 0.0;
}

constexpr double kRadians = std::numbers::pi / 180.0;

// The angle that a user would write: of the numbers that give just these radians the one with few digits.
double Degrees(double radians) {
  constexpr double kDigits = 1e10;
  const double exact = radians / kRadians;
  const double rounded = std::round(exact * kDigits) / kDigits;
  return rounded * kRadians == radians ? rounded : exact;
}

void SetText(Record& record, const GroupValue& value) {
  const auto* text = std::get_if<std::wstring>(&value);
  record.hasText = text != nullptr;
  if (text != nullptr) record.text = *text;
}

}  // namespace

void AppendRecord(Chain& chain, const Group& group, const Drawing& drawing) {
  const auto code = static_cast<short>(group.code);
  const short type = DxfType(code);
  if (!std::in_range<short>(group.code) || type == code) return;
  Record& record = chain.emplace_back();
  record.type = code;
  switch (type) {
    case RTSTR:
      return SetText(record, group.value);
    case RT3DPOINT:
      return SetPoint(record.value, group.value);
    case RTREAL:
      record.value.rreal = RealIn(group.value) * (IsAngle(group.code) ? kRadians : 1.0);
      return;
    case RTSHORT:
      record.value.rint = IntegerIn<short>(group.value);
      return;
    case RTLONG:
      record.value.rlong = IntegerIn<int32_t>(group.value);
      return;
    case RTINT64:
      record.value.mnInt64 = IntegerIn<long long>(group.value);
      return;
    case RTENAME: {
      const auto* reference = std::get_if<Reference>(&group.value);
      drawing.NameOf(reference != nullptr ? reference->handle : 0, record.value.rlname);
      return;
    }
    default:
      chain.pop_back();
  }
}

std::optional<Group> ReadRecord(const Record& record, const Drawing& drawing, std::string& objection) {
  const short code = record.type == RTDXF0 ? static_cast<short>(kTypeCode) : record.type;
  const auto fail = [&](const char* why) {
    objection = std::string(why) + " (type " + std::to_string(code) + ")";
    return std::nullopt;
  };
  const short type = DxfType(code);
  if (type == code) return fail("a record that is no group");
  const ads_u_val& value = record.value;
  switch (type) {
    case RTSTR:
      if (!record.hasText) return fail("a group without a text");
      return Group{code, record.text};
    case RT3DPOINT:
      return Group{code, Point{value.rpoint[0], value.rpoint[1], value.rpoint[2], false}};
    case RTREAL:
      return Group{code, IsAngle(code) ? Degrees(value.rreal) : value.rreal};
    case RTSHORT:
      return Group{code, static_cast<long long>(value.rint)};
    case RTLONG:
      return Group{code, static_cast<long long>(value.rlong)};
    case RTINT64:
      return Group{code, static_cast<long long>(value.mnInt64)};
    case RTENAME: {
      const auto handle = drawing.HandleOf(value.rlname);
      if (!handle) return fail("the name of no object of this drawing");
      return Group{code, Reference{*handle}};
    }
    default:
      return fail("a record that is no group");
  }
}

}  // namespace lomlisp::embedded
