#include <tests/resbuf/Records.h>

#include <cstring>

namespace lomlisp::test {
namespace {

const std::string kNoTextRecord = "ResBuf::copyToAcadResBuf: can't make new resbuf (1)\nName";
const std::string kNoRecord = "ResBuf::copyToAcadResBuf: can't make new resbuf (2)\nName";
const std::string kNoText = "ResBuf::copyToAcadResBuf: can't allocate string space\nName";

class ResBufCopies : public HostTest {};

bool IsTextRecord(short type) { return type == RTDXF0 || DxfType(type) == RTSTR; }

void ExpectCopy(const resbuf* copy, const ResBuf& record) {
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(copy->restype, record.Type());
  EXPECT_EQ(copy->rbnext, nullptr);
  if (IsTextRecord(record.Type())) {
    EXPECT_NE(copy->resval.rstring, record.resval.rstring);
    EXPECT_STREQ(copy->resval.rstring, record.resval.rstring);
  } else {
    EXPECT_EQ(std::memcmp(&copy->resval, &record.resval, sizeof(record.resval)), 0);
  }
}

TEST_F(ResBufCopies, ACopyIsThePlatformsWithATextOfItsOwn) {
  ResBuf next;
  for (Sample& sample : Samples()) {
    SCOPED_TRACE(sample.typeName);
    sample.record.Connect(&next);
    const resbuf* const plain = &sample.record;
    resbuf* const ofPointer = ResBuf::copyToAcadResBuf(plain);
    ExpectCopy(ofPointer, sample.record);
    EXPECT_TRUE(host.ledger.IsLive(ofPointer));
    EXPECT_EQ(acutRelRb(ofPointer), RTNORM);

    resbuf* const ofRecord = ResBuf::copyToAcadResBuf(sample.record);
    ExpectCopy(ofRecord, sample.record);
    EXPECT_EQ(acutRelRb(ofRecord), RTNORM);
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(ResBufCopies, ACopyOfANullTextHasANullText) {
  for (const short type : {RTSTR, static_cast<short>(8)}) {
    resbuf* const copy = ResBuf::copyToAcadResBuf(Borrowed(type, nullptr));
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->restype, type);
    EXPECT_EQ(copy->resval.rstring, nullptr);
    acutRelRb(copy);
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(ResBufCopies, NothingIsCopiedFromNull) {
  EXPECT_EQ(ResBuf::copyToAcadResBuf(static_cast<const resbuf*>(nullptr)), nullptr);
  EXPECT_EQ(ResBuf::copyToAcadResBufList(nullptr), nullptr);
  EXPECT_EQ(Printed(), "");
}

TEST_F(ResBufCopies, WithoutMemoryForARecordThereIsNoCopy) {
  host.ledger.FailAllocation(1);
  EXPECT_EQ(ResBuf::copyToAcadResBuf(Short(1)), nullptr);
  EXPECT_EQ(Printed(), kNoRecord);
}

TEST_F(ResBufCopies, WithoutMemoryForATextThereIsNoCopy) {
  wchar_t text[] = L"abc";
  for (const short type : {static_cast<short>(8), static_cast<short>(1001)}) {
    host.ledger.FailAllocation(1);
    EXPECT_EQ(ResBuf::copyToAcadResBuf(Borrowed(type, text)), nullptr);
    EXPECT_EQ(Printed(), kNoTextRecord);
    host.ledger.FailAllocation(2);
    EXPECT_EQ(ResBuf::copyToAcadResBuf(Borrowed(type, text)), nullptr);
    EXPECT_EQ(Printed(), kNoText);
    EXPECT_EQ(host.ledger.Live().blocks, 0u);
  }
  resbuf record{};
  record.restype = RTSTR;
  record.resval.rstring = text;
  host.ledger.FailAllocation(1);
  EXPECT_EQ(ResBuf::copyToAcadResBuf(&record), nullptr);
  EXPECT_EQ(Printed(), kNoTextRecord);
  host.ledger.FailAllocation(2);
  EXPECT_EQ(ResBuf::copyToAcadResBuf(&record), nullptr);
  EXPECT_EQ(Printed(), kNoText);
}

TEST_F(ResBufCopies, AListIsCopiedInOrder) {
  ADSList list(HeapChain({Bare(RTLB), Short(1), Str(L"a"), Str(nullptr), Bare(RTLE)}), ADSCopyFlag::Adopt);
  resbuf* const copy = ResBuf::copyToAcadResBufList(list);
  EXPECT_EQ(Types(copy), "5016 5003:1 5005:a 5005 5017");
  EXPECT_NE(copy, static_cast<resbuf*>(list));
  EXPECT_EQ(Types(list), "5016 5003:1 5005:a 5005 5017");
  acutRelRb(copy);
  EXPECT_EQ(Printed(), "");
}

TEST_F(ResBufCopies, TheCopyOfAListStartsAtTheRecordThatIsGiven) {
  ADSList list(HeapChain({Short(1), Short(2), Short(3)}), ADSCopyFlag::Adopt);
  resbuf* const copy = ResBuf::copyToAcadResBufList(list.First()->Next());
  EXPECT_EQ(Types(copy), "5003:2 5003:3");
  acutRelRb(copy);
}

TEST_F(ResBufCopies, AListWhoseCopyFailsIsReleasedAgain) {
  ADSList list(HeapChain({Short(1), Str(L"a"), Short(2)}), ADSCopyFlag::Adopt);
  const embedded::Balance before = host.ledger.Live();
  const std::string messages[] = {kNoRecord, kNoTextRecord, kNoText, kNoRecord};
  for (uint64_t n = 1; n <= 4; ++n) {
    host.ledger.FailAllocation(n);
    EXPECT_EQ(ResBuf::copyToAcadResBufList(list), nullptr);
    EXPECT_EQ(Printed(), messages[n - 1]) << n;
    EXPECT_TRUE(host.ledger.Live() == before) << n;
  }
  host.ledger.FailAllocation(5);
  resbuf* const copy = ResBuf::copyToAcadResBufList(list);
  host.ledger.FailAllocation(0);
  EXPECT_EQ(Types(copy), "5003:1 5005:a 5003:2");
  acutRelRb(copy);
}

}  // namespace
}  // namespace lomlisp::test
