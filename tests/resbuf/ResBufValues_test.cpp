#include <tests/resbuf/Records.h>

#include <cstring>
#include <cwchar>
#include <functional>
#include <type_traits>

namespace lomlisp::test {
namespace {

static_assert(sizeof(ResBuf) == sizeof(resbuf));
static_assert(std::is_standard_layout_v<ResBuf>);
static_assert(!std::is_polymorphic_v<ResBuf>);
static_assert(noexcept(ResBuf::operator new(1)));
static_assert(std::is_nothrow_move_constructible_v<ResBuf>);
static_assert(std::is_nothrow_move_assignable_v<ResBuf>);

static_assert(static_cast<short>(ADSRealType::Real) == 5001);
static_assert(static_cast<short>(ADSRealType::Angle) == 5004);
static_assert(static_cast<short>(ADSPointType::Point) == 5002);
static_assert(static_cast<short>(ADSPointType::Point3d) == 5009);
static_assert(static_cast<short>(ADSNameType::Entity) == 5006);
static_assert(static_cast<short>(ADSNameType::PickSet) == 5007);

const double kPoint[3] = {1.5, -2.5, 3.5};
const __int64 kName[2] = {31, -7};

void ExpectPoint(const ResBuf& record, short type, double x, double y, double z) {
  EXPECT_EQ(record.Type(), type);
  EXPECT_EQ(record.resval.rpoint[0], x);
  EXPECT_EQ(record.resval.rpoint[1], y);
  EXPECT_EQ(record.resval.rpoint[2], z);
}

void ExpectName(const ResBuf& record, short type, __int64 first, __int64 second) {
  EXPECT_EQ(record.Type(), type);
  EXPECT_EQ(record.resval.rlname[0], first);
  EXPECT_EQ(record.resval.rlname[1], second);
}

void ExpectText(const ResBuf& record, const wchar_t* text) {
  EXPECT_EQ(record.Type(), RTSTR);
  ASSERT_NE(record.resval.rstring, nullptr);
  EXPECT_STREQ(record.resval.rstring, text);
}

class ResBufValues : public HostTest {
 protected:
  // A text of exactly as many bytes as it needs, on the platform's heap.
  void ExpectOwnText(const ResBuf& record, const wchar_t* text) {
    ExpectText(record, text);
    EXPECT_NE(record.resval.rstring, text);
    EXPECT_EQ(host.ledger.BytesFrom(record.resval.rstring), (std::wcslen(text) + 1) * sizeof(wchar_t));
  }
};

TEST_F(ResBufValues, AFreshRecordHasNoValueAndNoNext) {
  const ResBuf record;
  ExpectPoint(record, RTNONE, 0.0, 0.0, 0.0);
  EXPECT_EQ(record.Next(), nullptr);
}

TEST_F(ResBufValues, IntegersKeepTheirWidthAndClearTheRest) {
  const ResBuf ofShort(static_cast<short>(-2));
  EXPECT_EQ(ofShort.Type(), RTSHORT);
  EXPECT_EQ(ofShort.resval.rint, -2);
  EXPECT_EQ(ofShort.resval.mnInt64, 0xFFFE);

  const ResBuf ofLong(-70000L);
  EXPECT_EQ(ofLong.Type(), RTLONG);
  EXPECT_EQ(ofLong.resval.rlong, -70000);
  EXPECT_EQ(ofLong.resval.mnInt64, 0xFFFEEE90);

  const ResBuf ofInt64(static_cast<__int64>(-5000000000));
  EXPECT_EQ(ofInt64.Type(), RTINT64);
  EXPECT_EQ(ofInt64.resval.mnInt64, -5000000000);
}

TEST_F(ResBufValues, ALongKeepsItsLow32Bits) {
  const ResBuf record(static_cast<long>(0x100000005));
  EXPECT_EQ(record.Type(), RTLONG);
  EXPECT_EQ(record.resval.mnInt64, 5);
}

TEST_F(ResBufValues, ARealIsARealOrAnAngle) {
  const ResBuf real(2.5);
  EXPECT_EQ(real.Type(), RTREAL);
  EXPECT_EQ(real.resval.rreal, 2.5);
  const ResBuf angle(-0.5, ADSRealType::Angle);
  EXPECT_EQ(angle.Type(), RTANG);
  EXPECT_EQ(angle.resval.rreal, -0.5);
}

TEST_F(ResBufValues, ATextIsCopiedToThePlatformsHeap) {
  const wchar_t* const text = L"Stra\u00DFe";
  ExpectOwnText(ResBuf(text), text);
  ExpectOwnText(ResBuf(L""), L"");
  CString string(L"abc");
  ExpectOwnText(ResBuf(string), L"abc");
  const CString constant(L"");
  ExpectOwnText(ResBuf(constant), L"");
}

TEST_F(ResBufValues, ANullTextIsATextRecordWithoutAText) {
  const ResBuf record(static_cast<const wchar_t*>(nullptr));
  EXPECT_EQ(record.Type(), RTSTR);
  EXPECT_EQ(record.resval.rstring, nullptr);
  EXPECT_EQ(static_cast<wchar_t*>(record), nullptr);
  EXPECT_EQ(record.Equal(static_cast<const wchar_t*>(nullptr)), 1);
  EXPECT_EQ(Printed(), "");
}

TEST_F(ResBufValues, APointHasTwoOrThreeCoordinates) {
  ExpectPoint(ResBuf(kPoint), RT3DPOINT, 1.5, -2.5, 3.5);
  ExpectPoint(ResBuf(kPoint, ADSPointType::Point3d), RT3DPOINT, 1.5, -2.5, 3.5);
  ExpectPoint(ResBuf(kPoint, ADSPointType::Point), RTPOINT, 1.5, -2.5, 0.0);
}

TEST_F(ResBufValues, ANameIsAnEntityOrASelectionSet) {
  ExpectName(ResBuf(kName), RTENAME, 31, -7);
  ExpectName(ResBuf(kName, ADSNameType::Entity), RTENAME, 31, -7);
  ExpectName(ResBuf(kName, ADSNameType::PickSet), RTPICKS, 31, -7);
}

TEST_F(ResBufValues, ANullPointOrNameIsNoValue) {
  const double* const noPoint = nullptr;
  const __int64* const noName = nullptr;
  EXPECT_EQ(ResBuf(noPoint).Type(), RTNONE);
  EXPECT_EQ(ResBuf(noPoint, ADSPointType::Point).Type(), RTNONE);
  EXPECT_EQ(ResBuf(noName).Type(), RTNONE);
  EXPECT_EQ(ResBuf(noName, ADSNameType::PickSet).Type(), RTNONE);
}

TEST_F(ResBufValues, ABareTypeStandsOverMinusOne) {
  for (const short type : {RTNONE, RTSHORT, RTLONG, RTVOID, RTLB, RTLE, RTDOTE, RTNIL, RTT,
                           static_cast<short>(5025), static_cast<short>(62)}) {
    const ResBuf record(static_cast<ADSResType>(type));
    EXPECT_EQ(record.Type(), type);
    EXPECT_EQ(record.resval.rlong, -1) << type;
    EXPECT_EQ(record.resval.mnInt64, 0xFFFFFFFF) << type;
  }
}

TEST_F(ResBufValues, ABareTextTypeHasANullText) {
  const ResBuf record(static_cast<ADSResType>(RTSTR));
  EXPECT_EQ(record.Type(), RTSTR);
  EXPECT_EQ(record.resval.rstring, nullptr);
  ResBuf assigned(L"old");
  assigned = static_cast<ADSResType>(RTSTR);
  EXPECT_EQ(assigned.Type(), RTSTR);
  EXPECT_EQ(assigned.resval.rstring, nullptr);
}

TEST_F(ResBufValues, ACopyTakesTheWholeRecordWithoutItsNext) {
  ResBuf next;
  for (Sample& sample : Samples()) {
    SCOPED_TRACE(sample.typeName);
    sample.record.Connect(&next);
    const ResBuf copy(sample.record);
    EXPECT_EQ(copy.Type(), sample.record.Type());
    EXPECT_EQ(copy.Next(), nullptr);
    if (copy.Type() == RTSTR)
      ExpectOwnText(copy, sample.record.resval.rstring);
    else
      EXPECT_EQ(std::memcmp(&copy.resval, &sample.record.resval, sizeof(copy.resval)), 0);
  }
}

TEST_F(ResBufValues, ACopyOfAPlatformRecordDuplicatesItsText) {
  wchar_t text[] = L"abc";
  resbuf plain{};
  plain.rbnext = &plain;
  plain.restype = RTSTR;
  plain.resval.rstring = text;
  const ResBuf copy(plain);
  EXPECT_EQ(copy.Next(), nullptr);
  ExpectText(copy, L"abc");
  EXPECT_NE(copy.resval.rstring, text);
}

TEST_F(ResBufValues, ACopyOfANullTextIsANullText) {
  const ResBuf record(static_cast<const wchar_t*>(nullptr));
  const ResBuf copy(record);
  EXPECT_EQ(copy.Type(), RTSTR);
  EXPECT_EQ(copy.resval.rstring, nullptr);
}

TEST_F(ResBufValues, ABorrowedTextUnderADxfCodeIsCopiedAsAPointerAndNeverFreed) {
  wchar_t text[] = L"layer";
  ResBuf record = Borrowed(8, text);
  ResBuf copy(record);
  EXPECT_EQ(copy.Type(), 8);
  EXPECT_EQ(copy.resval.rstring, text);
  ResBuf assigned(L"old");
  assigned = record;
  EXPECT_EQ(assigned.resval.rstring, text);
  assigned = static_cast<short>(1);
  EXPECT_STREQ(text, L"layer");
}

TEST_F(ResBufValues, AMoveTakesTheTextAndLeavesNoValue) {
  ResBuf next;
  ResBuf source(L"abc");
  source.Connect(&next);
  const wchar_t* const text = source.resval.rstring;
  const ResBuf moved(std::move(source));
  ExpectText(moved, L"abc");
  EXPECT_EQ(moved.resval.rstring, text);
  EXPECT_EQ(moved.Next(), nullptr);
  EXPECT_EQ(source.Type(), RTNONE);
}

TEST_F(ResBufValues, AMovingAssignmentTakesTheTextAndFreesTheOldOne) {
  ResBuf next;
  ResBuf target(L"old");
  target.Connect(&next);
  ResBuf source(L"abc");
  const wchar_t* const text = source.resval.rstring;
  target = std::move(source);
  ExpectText(target, L"abc");
  EXPECT_EQ(target.resval.rstring, text);
  EXPECT_EQ(target.Next(), nullptr);
}

// --- Assignment ---

TEST_F(ResBufValues, AssigningAValueFreesTheTextAndKeepsTheNext) {
  CString string(L"abc");
  const CString constant(L"def");
  struct Case {
    std::function<void(ResBuf&)> assign;
    short type;
  };
  const Case cases[] = {
      {[](ResBuf& record) { record = static_cast<short>(1); }, RTSHORT},
      {[](ResBuf& record) { record = 1L; }, RTLONG},
      {[](ResBuf& record) { record = static_cast<__int64>(1); }, RTINT64},
      {[](ResBuf& record) { record = 1.0; }, RTREAL},
      {[](ResBuf& record) { record = L"text"; }, RTSTR},
      {[](ResBuf& record) { record = static_cast<const wchar_t*>(nullptr); }, RTSTR},
      {[&](ResBuf& record) { record = string; }, RTSTR},
      {[&](ResBuf& record) { record = constant; }, RTSTR},
      {[](ResBuf& record) { record = kPoint; }, RT3DPOINT},
      {[](ResBuf& record) { record = static_cast<const double*>(nullptr); }, RTNONE},
      {[](ResBuf& record) { record = kName; }, RTENAME},
      {[](ResBuf& record) { record = static_cast<const __int64*>(nullptr); }, RTNONE},
      {[](ResBuf& record) { record = static_cast<ADSResType>(RTLB); }, RTLB},
  };
  ResBuf next;
  for (const Case& each : cases) {
    ResBuf record(L"old");
    record.Connect(&next);
    each.assign(record);
    EXPECT_EQ(record.Type(), each.type);
    EXPECT_EQ(record.Next(), &next) << each.type;
    EXPECT_EQ(host.ledger.Live().blocks, record.Type() == RTSTR && record.resval.rstring != nullptr ? 1u : 0u)
        << each.type;
  }
}

TEST_F(ResBufValues, AssigningARecordClearsTheNext) {
  ResBuf next;
  const ResBuf source(L"new");
  ResBuf record(L"old");
  record.Connect(&next);
  record = source;
  ExpectOwnText(record, L"new");
  EXPECT_EQ(record.Next(), nullptr);

  const resbuf& plain = source;
  record.Connect(&next);
  record = plain;
  ExpectOwnText(record, L"new");
  EXPECT_NE(record.resval.rstring, source.resval.rstring);
  EXPECT_EQ(record.Next(), nullptr);
}

TEST_F(ResBufValues, AssignmentStoresTheValue) {
  ResBuf record;
  record = static_cast<short>(-3);
  EXPECT_EQ(record.resval.mnInt64, 0xFFFD);
  record = -70000L;
  EXPECT_EQ(record.resval.rlong, -70000);
  record = static_cast<__int64>(5000000000);
  EXPECT_EQ(record.resval.mnInt64, 5000000000);
  record = 2.5;
  EXPECT_EQ(record.resval.rreal, 2.5);
  record = L"abc";
  ExpectOwnText(record, L"abc");
  record = kPoint;
  ExpectPoint(record, RT3DPOINT, 1.5, -2.5, 3.5);
  record = kName;
  ExpectName(record, RTENAME, 31, -7);
  record = static_cast<ADSResType>(RTNIL);
  EXPECT_EQ(record.resval.rlong, -1);
}

TEST_F(ResBufValues, AssignmentForgetsTheSpecialTypeItHadBefore) {
  ResBuf angle = Angle(1.0);
  angle = 2.0;
  EXPECT_EQ(angle.Type(), RTREAL);
  ResBuf point = Point(1, 2);
  point = kPoint;
  ExpectPoint(point, RT3DPOINT, 1.5, -2.5, 3.5);
  ResBuf set = PickSet(1);
  set = kName;
  EXPECT_EQ(set.Type(), RTENAME);
}

TEST_F(ResBufValues, AssigningARecordToItselfKeepsItsValue) {
  for (Sample& sample : Samples()) {
    SCOPED_TRACE(sample.typeName);
    const ResBuf before(sample.record);
    const ResBuf& same = sample.record;
    sample.record = same;
    EXPECT_EQ(sample.record.Type(), before.Type());
    if (before.Type() == RTSTR)
      ExpectText(sample.record, before.resval.rstring);
    else
      EXPECT_EQ(std::memcmp(&sample.record.resval, &before.resval, sizeof(before.resval)), 0);
  }
}

TEST_F(ResBufValues, ARecordTakesItsOwnTextOrAPartOfIt) {
  ResBuf record(L"abcdef");
  record = static_cast<const wchar_t*>(record.resval.rstring);
  ExpectOwnText(record, L"abcdef");
  record = static_cast<const wchar_t*>(record.resval.rstring + 2);
  ExpectOwnText(record, L"cdef");
}

TEST_F(ResBufValues, ARecordTakesItsOwnCoordinatesAndItsOwnName) {
  ResBuf point = Point(1, 2);
  point = static_cast<const double*>(point.resval.rpoint);
  ExpectPoint(point, RT3DPOINT, 1, 2, 0);
  ResBuf set = PickSet(31, -7);
  set = static_cast<const __int64*>(set.resval.rlname);
  ExpectName(set, RTENAME, 31, -7);
}

// --- Memory ---

TEST_F(ResBufValues, WithoutMemoryATextIsNull) {
  host.ledger.FailAllocation(1);
  const ResBuf record(L"abc");
  EXPECT_EQ(record.Type(), RTSTR);
  EXPECT_EQ(record.resval.rstring, nullptr);

  ResBuf assigned(L"old");
  host.ledger.FailAllocation(1);
  assigned = L"new";
  EXPECT_EQ(assigned.Type(), RTSTR);
  EXPECT_EQ(assigned.resval.rstring, nullptr);

  const ResBuf source(L"abc");
  host.ledger.FailAllocation(1);
  const ResBuf copy(source);
  EXPECT_EQ(copy.Type(), RTSTR);
  EXPECT_EQ(copy.resval.rstring, nullptr);
}

TEST_F(ResBufValues, HeapRecordsLiveOnThePlatformsHeap) {
  auto* const record = new ResBuf(L"abc");
  ASSERT_NE(record, nullptr);
  EXPECT_TRUE(host.ledger.IsLive(record));
  EXPECT_EQ(host.ledger.Live().blocks, 2u);
  delete record;
  EXPECT_EQ(host.ledger.Live().blocks, 0u);
}

TEST_F(ResBufValues, AHeapRecordIsNullWhenMemoryRunsOut) {
  host.ledger.FailAllocation(1);
  const ResBuf* const record = new ResBuf(static_cast<short>(1));
  EXPECT_EQ(record, nullptr);
}

TEST_F(ResBufValues, DeletingNullDoesNothing) {
  ResBuf::operator delete(nullptr);
  EXPECT_EQ(host.ledger.Live().blocks, 0u);
}

// --- The record ---

TEST_F(ResBufValues, ConnectSetsTheNextAndNothingElse) {
  ResBuf next(L"next");
  ResBuf record(L"abc");
  record.Connect(&next);
  EXPECT_EQ(record.Next(), &next);
  EXPECT_EQ(record.rbnext, &next);
  ExpectText(record, L"abc");
  record.Connect(nullptr);
  EXPECT_EQ(record.Next(), nullptr);
}

TEST_F(ResBufValues, ReverseTurnsBracketsAndLeavesEverythingElse) {
  for (Sample& sample : Samples()) {
    const short before = sample.record.Type();
    const short expected = before == RTLB ? RTLE : before == RTLE ? RTLB : before;
    sample.record.Reverse();
    EXPECT_EQ(sample.record.Type(), expected) << sample.typeName;
  }
}

TEST_F(ResBufValues, ARecordIsItsOwnPlatformRecord) {
  ResBuf record(static_cast<short>(1));
  resbuf* const plain = record;
  EXPECT_EQ(static_cast<void*>(plain), static_cast<void*>(&record));
}

}  // namespace
}  // namespace lomlisp::test
