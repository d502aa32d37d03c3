#include <tests/resbuf/Records.h>

#include <limits>

namespace lomlisp::test::res_buf_compare {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr __int64 kMin64 = std::numeric_limits<__int64>::min();
constexpr __int64 kMax64 = std::numeric_limits<__int64>::max();
const wchar_t* const kNullText = nullptr;

constexpr short S(int value) { return static_cast<short>(value); }
constexpr __int64 I(__int64 value) { return value; }

std::vector<ResBuf> Numbers(int value) {
  return {Real(value), Angle(value), Short(value), Long(value), Int64(value)};
}

class ResBufCompare : public HostTest {
 protected:
  static std::string CannotCompare(const std::string& typeName) {
    return "Fehler bei ResBuf::operator== :Ich kann ResBufs vom Typ " + typeName + " nicht vergleichen\nName";
  }
  static std::string CannotOrder(const std::string& typeName) {
    return "Fehler bei ResBuf::operator< :Ich kann ResBufs vom Typ " + typeName + " nicht vergleichen\nName";
  }
};

// --- Equal with a native value ---

TEST_F(ResBufCompare, EveryNumericTypeEqualsEveryNativeNumber) {
  for (const ResBuf& three : Numbers(3)) {
    SCOPED_TRACE(three.Type());
    EXPECT_EQ(three.Equal(S(3), 0.0), 1);
    EXPECT_EQ(three.Equal(3L, 0.0), 1);
    EXPECT_EQ(three.Equal(I(3), 0.0), 1);
    EXPECT_EQ(three.Equal(3.0, 0.0), 1);
    EXPECT_EQ(three.Equal(S(4), 0.0), 0);
    EXPECT_EQ(three.Equal(4L, 0.0), 0);
    EXPECT_EQ(three.Equal(I(4), 0.0), 0);
    EXPECT_EQ(three.Equal(4.0, 0.0), 0);
  }
}

TEST_F(ResBufCompare, WhatIsNoNumberEqualsNoNumber) {
  for (const Sample& sample : Samples()) {
    if (IsNumeric(sample.record.Type())) continue;
    SCOPED_TRACE(sample.typeName);
    for (const int value : {-5, -1, 0, 1, 3, 7}) {
      EXPECT_EQ(sample.record.Equal(S(value), 0.0), 0);
      EXPECT_EQ(sample.record.Equal(static_cast<long>(value), 0.0), 0);
      EXPECT_EQ(sample.record.Equal(I(value), 0.0), 0);
      EXPECT_EQ(sample.record.Equal(static_cast<double>(value), 1e6), 0);
    }
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(ResBufCompare, AToleranceOfZeroMeansABillionth) {
  EXPECT_EQ(Real(3.0000000005).Equal(3.0, 0.0), 1);
  EXPECT_EQ(Real(2.9999999995).Equal(3.0, 0.0), 1);
  EXPECT_EQ(Real(3.000000002).Equal(3.0, 0.0), 0);
  EXPECT_EQ(Real(3.0000000005).Equal(3.0, -0.0), 1);
  EXPECT_EQ(Real(1e-9).Equal(0.0, 0.0), 1);
  EXPECT_EQ(Real(1.1e-9).Equal(0.0, 0.0), 0);
  EXPECT_EQ(Real(3.0000000005).Equal(3.0, 1e-10), 0);
}

TEST_F(ResBufCompare, TheToleranceIsAbsoluteAndIncludesItsBound) {
  EXPECT_EQ(Real(3.005).Equal(3.0, 0.01), 1);
  EXPECT_EQ(Real(1.5).Equal(1.0, 0.5), 1);
  EXPECT_EQ(Real(0.5).Equal(1.0, 0.5), 1);
  EXPECT_EQ(Real(1.5).Equal(1.0, 0.49), 0);
  EXPECT_EQ(Real(1e12).Equal(1e12 + 1, 0.5), 0);
  EXPECT_EQ(Angle(1.5).Equal(1.0, 0.5), 1);
}

TEST_F(ResBufCompare, ANegativeToleranceNeverMatches) {
  for (const ResBuf& three : Numbers(3)) EXPECT_EQ(three.Equal(3.0, -0.1), 0) << three.Type();
  EXPECT_EQ(Real(3.0).Equal(S(3), -0.1), 0);
  EXPECT_EQ(Point3d(1, 2, 3).Equal(Point3d(1, 2, 3), -0.1), 0);
}

TEST_F(ResBufCompare, WhatIsNoNumberOrInfiniteEqualsNothing) {
  EXPECT_EQ(Real(kNaN).Equal(kNaN, 1.0), 0);
  EXPECT_EQ(Real(kNaN).Equal(S(0), 1.0), 0);
  EXPECT_EQ(Short(0).Equal(kNaN, 1.0), 0);
  EXPECT_EQ(Real(kInfinity).Equal(kInfinity, 1.0), 0);
}

TEST_F(ResBufCompare, RealsCompareWithIntegersWithinTheTolerance) {
  EXPECT_EQ(Real(3.4).Equal(S(3), 0.5), 1);
  EXPECT_EQ(Real(3.4).Equal(3L, 0.5), 1);
  EXPECT_EQ(Angle(3.4).Equal(I(3), 0.5), 1);
  EXPECT_EQ(Real(3.4).Equal(S(3), 0.3), 0);
  EXPECT_EQ(Real(3.0000000005).Equal(S(3), 0.0), 1);
}

TEST_F(ResBufCompare, IntegersCompareExactlyWithIntegersAndByToleranceWithReals) {
  for (const ResBuf& three : {Short(3), Long(3), Int64(3)}) {
    SCOPED_TRACE(three.Type());
    EXPECT_EQ(three.Equal(S(4), 5.0), 0);
    EXPECT_EQ(three.Equal(4L, 5.0), 0);
    EXPECT_EQ(three.Equal(I(4), 5.0), 0);
    EXPECT_EQ(three.Equal(S(3), -1.0), 1);
    EXPECT_EQ(three.Equal(4.0, 1.0), 1);
    EXPECT_EQ(three.Equal(4.0, 0.5), 0);
  }
}

TEST_F(ResBufCompare, NoBitOfAnIntegerIsLostInAComparison) {
  EXPECT_EQ(Long(65539).Equal(S(3), 0.0), 0);
  EXPECT_EQ(Int64(4294967299).Equal(S(3), 0.0), 0);
  EXPECT_EQ(Int64(4294967299).Equal(3L, 0.0), 0);
  EXPECT_EQ(Short(3).Equal(65539L, 0.0), 0);
  EXPECT_EQ(Short(3).Equal(I(4294967299), 0.0), 0);
  EXPECT_EQ(Long(3).Equal(I(4294967299), 0.0), 0);
  EXPECT_EQ(Short(-1).Equal(65535L, 0.0), 0);
  EXPECT_EQ(Short(-1).Equal(I(-1), 0.0), 1);
  EXPECT_EQ(Int64(9007199254740993).Equal(I(9007199254740992), 0.0), 0);
}

TEST_F(ResBufCompare, AnIntegerIsTakenAsADoubleAgainstADouble) {
  EXPECT_EQ(Int64(9007199254740993).Equal(9007199254740992.0, 0.0), 1);
  EXPECT_EQ(Long(-70000).Equal(-70000.0, 0.0), 1);
}

TEST_F(ResBufCompare, TextsAreEqualExactly) {
  EXPECT_EQ(Str(L"ab").Equal(L"ab"), 1);
  EXPECT_EQ(Str(L"ab").Equal(L"AB"), 0);
  EXPECT_EQ(Str(L"ab").Equal(L"abc"), 0);
  EXPECT_EQ(Str(L"abc").Equal(L"ab"), 0);
  EXPECT_EQ(Str(L"").Equal(L""), 1);
  EXPECT_EQ(Str(L"\U0001F600").Equal(L"\U0001F600"), 1);
  EXPECT_EQ(Str(L"\U0001F600").Equal(L"\U0001F601"), 0);
}

TEST_F(ResBufCompare, ANullTextEqualsOnlyNull) {
  EXPECT_EQ(Str(nullptr).Equal(kNullText), 1);
  EXPECT_EQ(Str(nullptr).Equal(L""), 0);
  EXPECT_EQ(Str(L"").Equal(kNullText), 0);
  EXPECT_EQ(Str(nullptr).Equal(Str(nullptr), 0.0), 1);
  EXPECT_EQ(Str(nullptr).Equal(Str(L""), 0.0), 0);
}

TEST_F(ResBufCompare, OnlyATextRecordEqualsAText) {
  for (const Sample& sample : Samples()) {
    if (sample.record.Type() == RTSTR) continue;
    for (const wchar_t* const text : {L"0", L"LINE", L"ab", kNullText})
      EXPECT_EQ(sample.record.Equal(text), 0) << sample.typeName;
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(ResBufCompare, APointComparesAsManyCoordinatesAsTheRecordHas) {
  const double point[3] = {1.0, 2.0, 3.0};
  EXPECT_EQ(Point3d(1, 2, 3).Equal(point, 0.0), 1);
  EXPECT_EQ(Point3d(1, 2, 4).Equal(point, 0.0), 0);
  EXPECT_EQ(Point3d(1, 3, 3).Equal(point, 0.0), 0);
  EXPECT_EQ(Point3d(2, 2, 3).Equal(point, 0.0), 0);
  EXPECT_EQ(Point(1, 2).Equal(point, 0.0), 1);
  EXPECT_EQ(Point(1, 3).Equal(point, 0.0), 0);
  EXPECT_EQ(Point(2, 2).Equal(point, 0.0), 0);
}

TEST_F(ResBufCompare, EachCoordinateHasTheTolerance) {
  const double point[3] = {1.0, 2.0, 3.0};
  EXPECT_EQ(Point3d(1.5, 2.5, 2.5).Equal(point, 0.5), 1);
  EXPECT_EQ(Point3d(1.5, 2.5, 2.25).Equal(point, 0.5), 0);
  EXPECT_EQ(Point3d(1.0000000005, 2, 3).Equal(point, 0.0), 1);
  EXPECT_EQ(Point(1.0, 2.000000002).Equal(point, 0.0), 0);
}

TEST_F(ResBufCompare, OnlyAPointRecordEqualsAPoint) {
  const double point[3] = {1.0, 2.0, 3.0};
  for (const Sample& sample : Samples())
    EXPECT_EQ(sample.record.Equal(point, 0.0), IsOneOf(sample.record.Type(), {RTPOINT, RT3DPOINT}) ? 1 : 0)
        << sample.typeName;
}

TEST_F(ResBufCompare, ANameComparesBothWords) {
  const __int64 name[2] = {31, 7};
  EXPECT_EQ(Entity(31, 7).Equal(name), 1);
  EXPECT_EQ(PickSet(31, 7).Equal(name), 1);
  EXPECT_EQ(Entity(31, 8).Equal(name), 0);
  EXPECT_EQ(Entity(30, 7).Equal(name), 0);
}

TEST_F(ResBufCompare, OnlyANameRecordEqualsAName) {
  const __int64 name[2] = {31, 0};
  for (const Sample& sample : Samples())
    EXPECT_EQ(sample.record.Equal(name), IsOneOf(sample.record.Type(), {RTENAME, RTPICKS}) ? 1 : 0)
        << sample.typeName;
}

TEST_F(ResBufCompare, AnyRecordEqualsItsBareType) {
  for (const Sample& sample : Samples()) {
    const short type = sample.record.Type();
    EXPECT_EQ(sample.record.Equal(static_cast<ADSResType>(type)), 1) << sample.typeName;
    EXPECT_EQ(sample.record.Equal(static_cast<ADSResType>(type + 1)), 0) << sample.typeName;
  }
}

TEST_F(ResBufCompare, TheOperatorComparesWithTheDefaultTolerance) {
  const double point[3] = {1.0, 2.0, 3.0};
  const __int64 name[2] = {31, 7};
  const ResBuf nearThree = Real(3.0000000005);
  EXPECT_EQ(nearThree == S(3), 1);
  EXPECT_EQ(nearThree == 3L, 1);
  EXPECT_EQ(nearThree == I(3), 1);
  EXPECT_EQ(nearThree == 3.0, 1);
  EXPECT_EQ(nearThree == 3.000000002, 0);
  EXPECT_EQ(Str(L"ab") == L"ab", 1);
  EXPECT_EQ(Str(L"ab") == L"aB", 0);
  EXPECT_EQ(Point3d(1.0000000005, 2, 3) == point, 1);
  EXPECT_EQ(Entity(31, 7) == name, 1);
  EXPECT_EQ(Bare(RTLB) == static_cast<ADSResType>(RTLB), 1);
  EXPECT_EQ(nearThree == Short(3), 1);
  EXPECT_EQ(nearThree == Short(4), 0);
  const ResBuf three = Short(3);
  const resbuf& plain = three;
  EXPECT_EQ(nearThree == plain, 1);
}

// --- Equal with a record ---

TEST_F(ResBufCompare, RecordsAreEqualWithinTheirFamily) {
  struct Member {
    ResBuf record;
    int family;
  };
  std::vector<Member> members;
  for (const ResBuf& number : Numbers(3)) members.push_back({number, 0});
  members.push_back({Point(1, 2), 1});
  members.push_back({Point3d(1, 2, 0), 1});
  members.push_back({Entity(31, 7), 2});
  members.push_back({PickSet(31, 7), 2});
  members.push_back({Str(L"3"), 3});
  int family = 4;
  for (const short type : {RTNONE, RTORINT, RTVOID, RTLB, RTLE, RTDOTE, RTNIL, RTDXF0})
    members.push_back({Bare(type), family++});

  for (const Member& a : members)
    for (const Member& b : members)
      EXPECT_EQ(a.record.Equal(b.record, 0.0), a.family == b.family ? 1 : 0)
          << a.record.Type() << " and " << b.record.Type();
  EXPECT_EQ(Printed(), "");
}

TEST_F(ResBufCompare, TheToleranceReachesTheNumbersOfARecord) {
  EXPECT_EQ(Short(3).Equal(Real(3.0000000001), 0.0), 1);
  EXPECT_EQ(Short(3).Equal(Real(3.4), 0.5), 1);
  EXPECT_EQ(Real(3.4).Equal(Short(3), 0.5), 1);
  EXPECT_EQ(Short(3).Equal(Short(4), 5.0), 0);
  EXPECT_EQ(Int64(4).Equal(Long(3), 5.0), 0);
  EXPECT_EQ(Point3d(1, 2, 3.5).Equal(Point3d(1, 2, 3), 0.5), 1);
}

TEST_F(ResBufCompare, ADifferentValueIsNotEqual) {
  for (const ResBuf& a : Numbers(3))
    for (const ResBuf& b : Numbers(4)) EXPECT_EQ(a.Equal(b, 0.0), 0) << a.Type() << " and " << b.Type();
  EXPECT_EQ(Str(L"a").Equal(Str(L"b"), 0.0), 0);
  EXPECT_EQ(Entity(1).Equal(Entity(2), 0.0), 0);
}

TEST_F(ResBufCompare, TheReceiverDecidesHowManyCoordinatesCount) {
  EXPECT_EQ(Point(1, 2).Equal(Point3d(1, 2, 5), 0.0), 1);
  EXPECT_EQ(Point3d(1, 2, 5).Equal(Point(1, 2), 0.0), 0);
}

TEST_F(ResBufCompare, TypesWithoutAnOwnComparisonAreEqualByTypeAlone) {
  EXPECT_EQ(Retyped(RTORINT, Real(1.0)).Equal(Retyped(RTORINT, Real(2.0)), 0.0), 1);
  wchar_t line[] = L"LINE";
  wchar_t arc[] = L"ARC";
  EXPECT_EQ(Borrowed(RTDXF0, line).Equal(Borrowed(RTDXF0, arc), 0.0), 1);
}

TEST_F(ResBufCompare, UnderADxfCodeOrAnUnknownTypeNothingCanBeCompared) {
  for (const Sample& left : Samples()) {
    for (const short type : {S(62), S(8), S(-3), RTT, S(5025), S(80)}) {
      SCOPED_TRACE(left.typeName + " and " + std::to_string(type));
      EXPECT_EQ(left.record.Equal(Bare(type), 0.0), 0);
      EXPECT_EQ(Printed(), CannotCompare(left.typeName));
    }
  }
}

TEST_F(ResBufCompare, ADxfReceiverIsSilentlyUnequalToABaseType) {
  EXPECT_EQ(Retyped(62, Short(3)).Equal(Short(3), 0.0), 0);
  EXPECT_EQ(Retyped(40, Real(3)).Equal(Real(3), 0.0), 0);
  EXPECT_EQ(Printed(), "");
}

// --- Less with a native value ---

TEST_F(ResBufCompare, EveryNumericTypeIsOrderedWithEveryNativeNumber) {
  for (const ResBuf& three : Numbers(3)) {
    SCOPED_TRACE(three.Type());
    for (const int value : {-4, 2, 3, 4, 32000}) {
      const int expected = 3 < value ? 1 : 0;
      EXPECT_EQ(three.Less(S(value)), expected);
      EXPECT_EQ(three.Less(static_cast<long>(value)), expected);
      EXPECT_EQ(three.Less(I(value)), expected);
      EXPECT_EQ(three.Less(static_cast<double>(value)), expected);
    }
  }
}

TEST_F(ResBufCompare, OrderHasNoTolerance) {
  EXPECT_EQ(Real(1.0).Less(1.0000000001), 1);
  EXPECT_EQ(Angle(1.0).Less(1.0000000001), 1);
  EXPECT_EQ(Real(0.9999999999).Less(S(1)), 1);
  EXPECT_EQ(Real(1.0).Less(1.0), 0);
}

TEST_F(ResBufCompare, AnIntegerIsOrderedAgainstTheTruncatedDouble) {
  EXPECT_EQ(Short(3).Less(3.9), 0);
  EXPECT_EQ(Short(3).Less(4.0), 1);
  EXPECT_EQ(Long(-2).Less(-2.5), 0);
  EXPECT_EQ(Int64(-3).Less(-2.5), 1);
  EXPECT_EQ(Short(-1).Less(-0.5), 1);
}

TEST_F(ResBufCompare, ADoubleOutOfRangeIsSaturatedAgainstAnInteger) {
  EXPECT_EQ(Int64(kMax64 - 1).Less(1e300), 1);
  EXPECT_EQ(Int64(kMax64).Less(1e300), 0);
  EXPECT_EQ(Int64(kMax64 - 1).Less(9223372036854775808.0), 1);
  EXPECT_EQ(Int64(kMin64).Less(-1e300), 0);
  EXPECT_EQ(Short(32767).Less(kInfinity), 1);
  EXPECT_EQ(Short(-32768).Less(-kInfinity), 0);
}

TEST_F(ResBufCompare, NothingIsLessThanWhatIsNoNumber) {
  for (const ResBuf& number : Numbers(3)) EXPECT_EQ(number.Less(kNaN), 0) << number.Type();
  EXPECT_EQ(Int64(kMin64).Less(kNaN), 0);
  EXPECT_EQ(Real(kNaN).Less(1.0), 0);
}

TEST_F(ResBufCompare, NoBitOfAnIntegerIsLostInTheOrder) {
  EXPECT_EQ(Short(3).Less(65537L), 1);
  EXPECT_EQ(Short(3).Less(I(4294967297)), 1);
  EXPECT_EQ(Int64(4294967297).Less(S(3)), 0);
  EXPECT_EQ(Int64(9007199254740992).Less(I(9007199254740993)), 1);
  EXPECT_EQ(Int64(kMin64).Less(I(kMax64)), 1);
}

TEST_F(ResBufCompare, ARealIsOrderedAsADouble) {
  EXPECT_EQ(Real(9007199254740992.0).Less(I(9007199254740993)), 0);
  EXPECT_EQ(Real(-0.5).Less(S(0)), 1);
}

TEST_F(ResBufCompare, WhatIsNoNumberIsLessThanNoNumber) {
  for (const Sample& sample : Samples()) {
    if (IsNumeric(sample.record.Type())) continue;
    SCOPED_TRACE(sample.typeName);
    EXPECT_EQ(sample.record.Less(S(32767)), 0);
    EXPECT_EQ(sample.record.Less(2147483647L), 0);
    EXPECT_EQ(sample.record.Less(kMax64), 0);
    EXPECT_EQ(sample.record.Less(1e300), 0);
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(ResBufCompare, TextsAreOrderedByTheirCodeUnits) {
  EXPECT_EQ(Str(L"ab").Less(L"abc"), 1);
  EXPECT_EQ(Str(L"abc").Less(L"ab"), 0);
  EXPECT_EQ(Str(L"ab").Less(L"ab"), 0);
  EXPECT_EQ(Str(L"").Less(L"a"), 1);
  EXPECT_EQ(Str(L"").Less(L""), 0);
  EXPECT_EQ(Str(L"B").Less(L"a"), 1);
  EXPECT_EQ(Str(L"a").Less(L"B"), 0);
  EXPECT_EQ(Str(L"ab").Less(L"b"), 1);
  EXPECT_EQ(Str(L"a").Less(L"\uAC00"), 1);
  EXPECT_EQ(Str(L"\uAC00").Less(L"a"), 0);
}

TEST_F(ResBufCompare, CharactersBeyondTheFirstPlaneAreOrderedAsTheirSurrogates) {
  EXPECT_EQ(Str(L"\U00010000").Less(L"\uFFE6"), 1);
  EXPECT_EQ(Str(L"\uFFE6").Less(L"\U00010000"), 0);
  EXPECT_EQ(Str(L"\U00010000").Less(L"\U00010001"), 1);
  EXPECT_EQ(Str(L"\U00010001").Less(L"\U00010000"), 0);
  EXPECT_EQ(Str(L"\U0010FFFF").Less(L"\U0010FFFFa"), 1);
  EXPECT_EQ(Str(L"\uAC00").Less(L"\U00010000"), 1);
}

TEST_F(ResBufCompare, ANullTextHasNoPlaceInTheOrder) {
  EXPECT_EQ(Str(nullptr).Less(L"a"), 0);
  EXPECT_EQ(Str(L"a").Less(kNullText), 0);
  EXPECT_EQ(Str(L"").Less(kNullText), 0);
  EXPECT_EQ(Str(nullptr).Less(kNullText), 0);
  EXPECT_EQ(Str(nullptr).Less(Str(L"a")), 0);
  EXPECT_EQ(Str(L"a").Less(Str(nullptr)), 0);
  EXPECT_EQ(Printed(), "");
}

TEST_F(ResBufCompare, OnlyATextRecordIsLessThanAText) {
  for (const Sample& sample : Samples()) {
    if (sample.record.Type() == RTSTR) continue;
    EXPECT_EQ(sample.record.Less(L"zzz"), 0) << sample.typeName;
  }
  EXPECT_EQ(Printed(), "");
}

// --- Less with a record ---

TEST_F(ResBufCompare, RecordsOfOneTypeAreOrderedByValue) {
  const std::vector<ResBuf> twos = Numbers(2);
  const std::vector<ResBuf> threes = Numbers(3);
  for (size_t i = 0; i < twos.size(); ++i) {
    SCOPED_TRACE(twos[i].Type());
    EXPECT_EQ(twos[i].Less(threes[i]), 1);
    EXPECT_EQ(threes[i].Less(twos[i]), 0);
    EXPECT_EQ(twos[i].Less(twos[i]), 0);
  }
  EXPECT_EQ(Str(L"ab").Less(Str(L"abc")), 1);
  EXPECT_EQ(Str(L"abc").Less(Str(L"ab")), 0);
  EXPECT_EQ(Angle(1.0).Less(Real(2.0)), 1);
  EXPECT_EQ(Real(2.0).Less(Angle(1.0)), 0);
  EXPECT_EQ(Printed(), "");
}

TEST_F(ResBufCompare, OtherNumericTypesAreReadWithTheReceiversType) {
  EXPECT_EQ(Short(4463).Less(Long(70000)), 1);  // 70000 has 4464 in its low bits
  EXPECT_EQ(Short(4464).Less(Long(70000)), 0);
  EXPECT_EQ(Long(2).Less(Short(3)), 1);
  EXPECT_EQ(Long(65534).Less(Short(-1)), 1);  // the bits above the short are zero
  EXPECT_EQ(Long(65535).Less(Short(-1)), 0);
  EXPECT_EQ(Int64(65534).Less(Short(-1)), 1);
  EXPECT_EQ(Int64(4294967294).Less(Long(-1)), 1);
  EXPECT_EQ(Short(-1).Less(Real(6.0)), 1);  // 6.0 has zeros in its low bits
  EXPECT_EQ(Short(5).Less(Real(6.0)), 0);
  EXPECT_EQ(Real(0.5).Less(Short(7)), 0);  // 7 is next to nothing as a double
  EXPECT_EQ(Real(-0.5).Less(Short(7)), 1);
  EXPECT_EQ(Real(0.0).Less(Short(7)), 1);
  EXPECT_EQ(Printed(), "");
}

TEST_F(ResBufCompare, DifferentClassesAreSilentlyUnordered) {
  const std::vector<Sample> samples = Samples();
  for (const Sample& a : samples) {
    for (const Sample& b : samples) {
      const bool sameClass =
          a.record.Type() == b.record.Type() || (IsNumeric(a.record.Type()) && IsNumeric(b.record.Type()));
      if (sameClass) continue;
      EXPECT_EQ(a.record.Less(b.record), 0) << a.typeName << " and " << b.typeName;
    }
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(ResBufCompare, TypesWithoutAnOrderSaySo) {
  for (const Sample& sample : Samples()) {
    if (IsNumeric(sample.record.Type()) || sample.record.Type() == RTSTR) continue;
    SCOPED_TRACE(sample.typeName);
    EXPECT_EQ(sample.record.Less(sample.record), 0);
    EXPECT_EQ(Printed(), CannotOrder(sample.typeName));
    const resbuf& plain = sample.record;
    EXPECT_EQ(sample.record.Less(plain), 0);
    EXPECT_EQ(Printed(), CannotOrder(sample.typeName));
  }
}

}  // namespace
}  // namespace lomlisp::test::res_buf_compare
