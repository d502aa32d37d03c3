// Records that the tests of this folder need again and again.
#pragma once

#include <tests/support/HostTest.h>

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace lomlisp::test {

inline ResBuf Short(int value) { return ResBuf(static_cast<short>(value)); }
inline ResBuf Long(int32_t value) { return ResBuf(static_cast<long>(value)); }
inline ResBuf Int64(__int64 value) { return ResBuf(value); }
inline ResBuf Real(double value) { return ResBuf(value); }
inline ResBuf Angle(double value) { return ResBuf(value, ADSRealType::Angle); }
inline ResBuf Str(const wchar_t* text) { return ResBuf(text); }
inline ResBuf Point(double x, double y) {
  const double point[3] = {x, y, 0.0};
  return ResBuf(point, ADSPointType::Point);
}
inline ResBuf Point3d(double x, double y, double z) {
  const double point[3] = {x, y, z};
  return ResBuf(point);
}
inline ResBuf Entity(__int64 first, __int64 second = 0) {
  const __int64 name[2] = {first, second};
  return ResBuf(name);
}
inline ResBuf PickSet(__int64 first, __int64 second = 0) {
  const __int64 name[2] = {first, second};
  return ResBuf(name, ADSNameType::PickSet);
}
inline ResBuf Bare(short type) { return ResBuf(static_cast<ADSResType>(type)); }

// A record without a text under another type.
inline ResBuf Retyped(short type, ResBuf record) {
  record.restype = type;
  return record;
}

// A record over a text that stays the test's.
inline ResBuf Borrowed(short type, wchar_t* text) {
  ResBuf record;
  record.restype = type;
  record.resval.rstring = text;
  return record;
}

// One record of each type, with how it names and prints itself.
struct Sample {
  ResBuf record;
  std::string typeName;
  std::string printed;
  std::string debug;
  unsigned long estimate;
};

inline std::vector<Sample> Samples() {
  static wchar_t line[] = L"LINE";
  static wchar_t layer[] = L"0";
  const std::string point = "( 1.000000 2.000000 3.000000 )";
  return {
      {Bare(RTNONE), "RTNONE", "RTNONE", "RTNONE", 6},
      {Real(2.5), "RTREAL", "2.500000", "2.500000", 48},
      {Point(1, 2), "RTPOINT", "( 1.000000 2.000000 )", "( 1.000000 2.000000 )", 102},
      {Short(-5), "RTSHORT", "-5", "-5", 12},
      {Angle(0.5), "RTANG", "0.500000", "0.500000", 48},
      {Str(L"ab"), "RTSTR", "\"ab\"", "\"ab\"", 4},
      {Entity(31), "RTENAME", "<Entity name: 1f>", "<Ename: 1f>", 17},
      {PickSet(31), "RTPICKS", "<Selection set: 1f>", "<Selset: 1f>", 18},
      {Bare(RTORINT), "RTORINT", "RTORINT", "RTORINT", 7},
      {Point3d(1, 2, 3), "RT3DPOINT", point, point, 150},
      {Long(70000), "RTLONG", "70000", "70000", 12},
      {Bare(RTVOID), "RTVOID", "RTVOID", "RTVOID", 6},
      {Bare(RTLB), "RTLB", "(", "(", 1},
      {Bare(RTLE), "RTLE", ")", ")", 1},
      {Bare(RTDOTE), "RTDOTE", "RTDOTE)", "RTDOTE)", 7},
      {Bare(RTNIL), "RTNIL", "RTNIL", "RTNIL", 5},
      {Borrowed(RTDXF0, line), "RTDXF0", "RTDXF0", "RTDXF0", 6},
      {Int64(5000000000), "RTINT64", "5000000000", "5000000000", 24},
      {Bare(RTT), "<5021>", "<5021>", "<5021>", 6},
      {Bare(5025), "<5025>", "<5025>", "<5025>", 6},
      {Bare(80), "<80>", "<80>", "<80>", 4},
      {Retyped(-3, Short(7)), "<-3>", "7", "7", 12},
      {Borrowed(8, layer), "<8>", "\"0\"", "\"0\"", 3},
      {Retyped(10, Point3d(1, 2, 3)), "<10>", point, point, 150},
      {Retyped(40, Real(2.5)), "<40>", "2.500000", "2.500000", 48},
      {Retyped(62, Short(3)), "<62>", "3", "3", 12},
      {Retyped(90, Long(70000)), "<90>", "70000", "70000", 12},
      {Retyped(160, Int64(5000000000)), "<160>", "5000000000", "5000000000", 24},
      {Retyped(330, Entity(31)), "<330>", "<Entity name: 1f>", "<Ename: 1f>", 17},
  };
}

inline bool IsOneOf(short type, std::initializer_list<short> types) {
  for (const short other : types)
    if (type == other) return true;
  return false;
}

inline bool IsNumeric(short type) { return IsOneOf(type, {RTREAL, RTSHORT, RTANG, RTLONG, RTINT64}); }

// Records on the platform's heap, linked in that order.
inline ResBuf* HeapChain(const std::vector<ResBuf>& records) {
  ResBuf* first = nullptr;
  for (auto record = records.rbegin(); record != records.rend(); ++record) {
    auto* const link = new ResBuf(*record);
    link->Connect(first);
    first = link;
  }
  return first;
}

}  // namespace lomlisp::test
