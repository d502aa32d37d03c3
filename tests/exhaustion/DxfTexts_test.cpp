// Texts under DXF codes when there is no memory for the books about them: the text is freed or not shared,
// and nothing throws. The fixture looks at the heap's books after every test.
#include <tests/exhaustion/ExhaustedHeap.h>
#include <tests/support/HostTest.h>

namespace lomlisp::test::exhaustion {
namespace {

constexpr short kLayer = 8;

ResBuf Group(const wchar_t* text) {
  ResBuf record(text);
  record.MakeDXF(kLayer);
  return record;
}

class ExhaustedDxfTexts : public HostTest {
 protected:
  size_t LiveBlocks() const { return host.ledger.Live().blocks; }
};

// Before any other test here: it is about the first text of all.
TEST_F(ExhaustedDxfTexts, TheFirstTextIsFreed) {
  ResBuf record(L"layer");
  {
    const ExhaustedHeap exhausted;
    record.MakeDXF(kLayer);
  }
  EXPECT_EQ(record.Type(), kLayer);
  EXPECT_EQ(record.resval.rstring, nullptr);
  EXPECT_EQ(LiveBlocks(), 0U);
}

TEST_F(ExhaustedDxfTexts, ACopyGetsNoText) {
  const ResBuf record = Group(L"layer");
  const ResBuf copy = [&] {
    const ExhaustedHeap exhausted;
    return record;
  }();
  EXPECT_EQ(copy.Type(), kLayer);
  EXPECT_EQ(copy.resval.rstring, nullptr);
  EXPECT_STREQ(record.resval.rstring, L"layer");
}

TEST_F(ExhaustedDxfTexts, AnAdoptedRecordOverATextOfAnotherOneGetsNoText) {
  const ResBuf record = Group(L"layer");
  ADSList list;
  resbuf* const adopted = acutNewRb(kLayer);
  adopted->resval.rstring = record.resval.rstring;
  {
    const ExhaustedHeap exhausted;
    list.Add(adopted, ADSCopyFlag::Adopt);
  }
  EXPECT_EQ(list.First(), adopted);
  EXPECT_EQ(adopted->resval.rstring, nullptr);
  EXPECT_STREQ(record.resval.rstring, L"layer");
}

}  // namespace
}  // namespace lomlisp::test::exhaustion
