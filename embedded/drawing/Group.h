// DXF groups: a code and a value.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace lomlisp::embedded {

// Two or three coordinates; the third is 0 where there are two.
struct Point {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
  bool isFlat = false;
  friend bool operator==(const Point&, const Point&) = default;
};

// Another object of the drawing, by its handle; 0 is none.
struct Reference {
  uint64_t handle = 0;
  friend bool operator==(const Reference&, const Reference&) = default;
};

// Binary chunks are texts of hexadecimal digits, and so are handles that are no references (5, 105, 1005).
using GroupValue = std::variant<long long, double, Point, std::wstring, Reference>;

struct Group {
  int code = 0;
  GroupValue value;
  friend bool operator==(const Group&, const Group&) = default;
};

using Groups = std::vector<Group>;

// What a code's value is, by the numbering of DXF.
enum class GroupKind { Text, Binary, Handle, Real, Point, Short, Long, Int64, Bool, Reference };

// Codes without a meaning of their own hold texts. For a code of which the x coordinate is written
// under the code itself, y 10 and z 20 above it, the kind is Point.
GroupKind KindOf(int code);

// Whether a real of that code is an angle: in degrees in files and in the groups of objects, in radians
// in the records that LISP and modules see.
constexpr bool IsAngle(int code) { return code >= 50 && code <= 58; }

// What a group begins that stands for itself in every object.
inline constexpr int kTypeCode = 0;
inline constexpr int kNameCode = 2;
inline constexpr int kHandleCode = 5;
inline constexpr int kStyleCode = 7;
inline constexpr int kDimStyleHandleCode = 105;
inline constexpr int kLayerCode = 8;
inline constexpr int kOwnerCode = 330;
inline constexpr int kMarkerCode = 100;
inline constexpr int kExtrusionCode = 210;
inline constexpr int kFirstExtendedCode = 1000;
inline constexpr int kApplicationCode = 1001;

// The first group of that code at or behind `from`; null when there is none.
const Group* Find(const Groups& groups, int code, size_t from = 0);
Group* Find(Groups& groups, int code, size_t from = 0);
// The value of the first group of that code, where it has that kind; otherwise the default. The text stays
// the group's own.
std::wstring_view TextOf(const Groups& groups, int code, std::wstring_view absent = {});
long long IntegerOf(const Groups& groups, int code, long long absent = 0);
double RealOf(const Groups& groups, int code, double absent = 0.0);
Point PointOf(const Groups& groups, int code, Point absent = {});
uint64_t ReferenceOf(const Groups& groups, int code);  // 0 when there is none

// Upper-case hexadecimal digits without leading zeros, and back. Nothing for what is no number of 64 bits.
std::wstring HandleText(uint64_t handle);
std::optional<uint64_t> ReadHandle(std::wstring_view text);

}  // namespace lomlisp::embedded
