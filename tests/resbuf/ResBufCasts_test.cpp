#include <tests/resbuf/Records.h>

#include <functional>
#include <limits>

namespace lomlisp::test {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr __int64 kMin64 = std::numeric_limits<__int64>::min();
constexpr __int64 kMax64 = std::numeric_limits<__int64>::max();
constexpr int32_t kMin32 = std::numeric_limits<int32_t>::min();
constexpr int32_t kMax32 = std::numeric_limits<int32_t>::max();

template <class Native>
struct Case {
  ResBuf record;
  Native expected;
};

class ResBufCasts : public HostTest {
 protected:
  template <class Native>
  void ExpectCasts(const std::vector<Case<Native>>& cases) {
    for (size_t i = 0; i < cases.size(); ++i)
      EXPECT_EQ(static_cast<Native>(cases[i].record), cases[i].expected) << "case " << i;
    EXPECT_EQ(Printed(), "");
  }

  // Every type that is not accepted gives the failure value and the three pieces of the message.
  template <class Native>
  void ExpectRejected(const std::string& target, std::initializer_list<short> accepted,
                      const std::function<void(Native)>& expectFailureValue) {
    for (const Sample& sample : Samples()) {
      if (IsOneOf(sample.record.Type(), accepted)) continue;
      SCOPED_TRACE(sample.typeName);
      expectFailureValue(static_cast<Native>(sample.record));
      EXPECT_EQ(Printed(), "Fehler bei Cast von ResBuf auf " + target + ": ResBuf ist vom Typ " +
                               sample.typeName + "\nName" + "Value= " + sample.printed + "\nName");
    }
  }

  template <class Native>
  void ExpectOnlyNumbers(const std::string& target) {
    ExpectRejected<Native>(target, {RTREAL, RTSHORT, RTANG, RTLONG, RTINT64},
                           [](Native value) { EXPECT_EQ(value, Native{}); });
  }
};

TEST_F(ResBufCasts, ShortTakesTheLow16BitsOfIntegersAndTruncatesReals) {
  ExpectCasts<short>({
      {Short(-5), -5},
      {Long(70000), 4464},
      {Long(-1), -1},
      {Long(0x8000), -32768},
      {Int64(0x1FFFF), -1},
      {Int64(0x1234567800010007), 7},
      {Real(2.9), 2},
      {Real(-2.7), -2},
      {Angle(3.99), 3},
      {Real(32767.9), 32767},
      {Real(32768.0), -32768},
      {Real(-32768.9), -32768},
      {Real(-32769.0), -32768},
      {Real(70000.0), -32768},
      {Real(1e300), -32768},
      {Real(kInfinity), -32768},
      {Real(-kInfinity), -32768},
      {Real(kNaN), -32768},
      {Angle(kNaN), -32768},
  });
}

TEST_F(ResBufCasts, IntTakesTheLow32BitsOfIntegersAndTruncatesReals) {
  ExpectCasts<int>({
      {Short(-5), -5},
      {Long(-70000), -70000},
      {Long(kMin32), kMin32},
      {Int64(0x100000005), 5},
      {Int64(0xFFFFFFFF), -1},
      {Real(-2.7), -2},
      {Angle(2.7), 2},
      {Real(2147483647.9), kMax32},
      {Real(2147483648.0), kMin32},
      {Real(-2147483648.9), kMin32},
      {Real(-1e300), kMin32},
      {Real(kInfinity), kMin32},
      {Real(kNaN), kMin32},
  });
}

TEST_F(ResBufCasts, UnsignedIntTakesRealsThroughA64BitInteger) {
  ExpectCasts<unsigned int>({
      {Short(-1), 0xFFFFFFFF},
      {Short(7), 7},
      {Long(-1), 0xFFFFFFFF},
      {Int64(0x180000000), 0x80000000},
      {Real(-1.5), 0xFFFFFFFF},
      {Angle(2.9), 2},
      {Real(4294967295.9), 0xFFFFFFFF},
      {Real(4294967301.0), 5},
      {Real(1e300), 0},
      {Real(kNaN), 0},
  });
}

TEST_F(ResBufCasts, LongHas32BitsOnEverySystem) {
  ExpectCasts<long>({
      {Short(-5), -5},
      {Long(-70000), -70000},
      {Int64(0x100000005), 5},
      {Int64(0xFFFFFFFF), -1},
      {Real(-2.7), -2},
      {Angle(2.7), 2},
      {Real(2147483647.9), kMax32},
      {Real(3e9), kMin32},
      {Real(-3e9), kMin32},
      {Real(kNaN), kMin32},
  });
}

TEST_F(ResBufCasts, Int64ExtendsIntegersAndTruncatesReals) {
  ExpectCasts<__int64>({
      {Short(-5), -5},
      {Long(-70000), -70000},
      {Int64(kMin64), kMin64},
      {Int64(kMax64), kMax64},
      {Real(-2.7), -2},
      {Angle(2.7), 2},
      {Real(3e9), 3000000000},
      {Real(9223372036854774784.0), 9223372036854774784},
      {Real(9223372036854775808.0), kMin64},
      {Real(-9223372036854775808.0), kMin64},
      {Real(1e300), kMin64},
      {Real(kNaN), kMin64},
  });
}

TEST_F(ResBufCasts, DoubleConvertsIntegersAndGivesRealsAsTheyAre) {
  ExpectCasts<double>({
      {Short(-5), -5.0},
      {Long(-70000), -70000.0},
      {Int64(5000000000), 5000000000.0},
      {Int64(9007199254740993), 9007199254740992.0},
      {Real(0.1), 0.1},
      {Real(kInfinity), kInfinity},
      {Angle(-0.25), -0.25},
  });
}

TEST_F(ResBufCasts, TextIsTheRecordsOwn) {
  const ResBuf record(L"abc");
  EXPECT_EQ(static_cast<wchar_t*>(record), record.resval.rstring);
  EXPECT_EQ(static_cast<wchar_t*>(Bare(RTSTR)), nullptr);
  EXPECT_EQ(Printed(), "");
}

TEST_F(ResBufCasts, PointIsTheRecordsOwnCoordinates) {
  const ResBuf point = Point(1, 2);
  const ResBuf point3d = Point3d(1, 2, 3);
  EXPECT_EQ(static_cast<double*>(point), point.resval.rpoint);
  EXPECT_EQ(static_cast<double*>(point3d), point3d.resval.rpoint);
  EXPECT_EQ(Printed(), "");
}

TEST_F(ResBufCasts, NameIsTheRecordsOwnWords) {
  const ResBuf entity = Entity(31, 7);
  const ResBuf set = PickSet(31, 7);
  EXPECT_EQ(static_cast<__int64*>(entity), entity.resval.rlname);
  EXPECT_EQ(static_cast<__int64*>(set), set.resval.rlname);
  EXPECT_EQ(Printed(), "");
}

TEST_F(ResBufCasts, ShortRejectsWhatIsNoNumber) { ExpectOnlyNumbers<short>("short"); }
TEST_F(ResBufCasts, IntRejectsWhatIsNoNumber) { ExpectOnlyNumbers<int>("int"); }
TEST_F(ResBufCasts, UnsignedIntRejectsWithTheMessageOfInt) { ExpectOnlyNumbers<unsigned int>("int"); }
TEST_F(ResBufCasts, LongRejectsWhatIsNoNumber) { ExpectOnlyNumbers<long>("long"); }
TEST_F(ResBufCasts, Int64RejectsWhatIsNoNumber) { ExpectOnlyNumbers<__int64>("__int64"); }
TEST_F(ResBufCasts, DoubleRejectsWhatIsNoNumber) { ExpectOnlyNumbers<double>("double"); }

TEST_F(ResBufCasts, TextRejectsEverythingButTexts) {
  ExpectRejected<wchar_t*>("TCHAR* ", {RTSTR}, [](wchar_t* text) { EXPECT_EQ(text, nullptr); });
}

TEST_F(ResBufCasts, PointRejectsWithOneSharedZeroPoint) {
  const double* const zero = static_cast<double*>(ResBuf());
  Printed();
  ExpectRejected<double*>("ads_point", {RTPOINT, RT3DPOINT}, [zero](const double* point) {
    EXPECT_EQ(point, zero);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(point[i], 0.0);
  });
}

TEST_F(ResBufCasts, NameRejectsWithOneSharedZeroName) {
  const __int64* const zero = static_cast<__int64*>(ResBuf());
  Printed();
  ExpectRejected<__int64*>("ads_name", {RTENAME, RTPICKS}, [zero](const __int64* name) {
    EXPECT_EQ(name, zero);
    EXPECT_EQ(name[0], 0);
    EXPECT_EQ(name[1], 0);
  });
}

TEST_F(ResBufCasts, TheValueInAMessageIsNotTakenForAFormat) {
  EXPECT_EQ(static_cast<int>(Str(L"100%d %s")), 0);
  EXPECT_EQ(Printed(),
            "Fehler bei Cast von ResBuf auf int: ResBuf ist vom Typ RTSTR\nName"
            "Value= \"100%d %s\"\nName");
}

}  // namespace
}  // namespace lomlisp::test
