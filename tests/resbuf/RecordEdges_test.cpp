// Records compared with nothing, moved to themselves, and of binary groups, which the embedded host does not
// have.
#include <lomlisp/platform/binary.h>
#include <tests/resbuf/Records.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace lomlisp::test::record_edges {
namespace {

class RecordEdges : public HostTest {};

TEST_F(RecordEdges, NoPointAndNoNameEqualNothing) {
  const double* const noPoint = nullptr;
  const __int64* const noName = nullptr;
  EXPECT_EQ(Point(0, 0).Equal(noPoint, 1.0), 0);
  EXPECT_EQ(Point3d(0, 0, 0).Equal(noPoint, 1.0), 0);
  EXPECT_EQ(Entity(0).Equal(noName), 0);
  EXPECT_EQ(PickSet(0).Equal(noName), 0);
}

TEST_F(RecordEdges, ARecordMovedToItselfStaysAsItIs) {
  ResBuf record(L"text");
  ResBuf& same = record;
  record = std::move(same);
  EXPECT_STREQ(record.resval.rstring, L"text");
}

// Two characters where wchar_t has 32 bits, though they are no text of that system.
TEST_F(RecordEdges, ASurrogatePairIsItsCharacter) {
  const ResBuf pair(L"a\xD83D\xDE00");
  const ResBuf character(L"a\U0001F600");
  EXPECT_EQ(pair.Equal(character, 0.0), 1);
  EXPECT_EQ(pair.Less(character), 0);
  EXPECT_EQ(character.Less(pair), 0);
}

// While some text stands under a number's code, copies of such records are looked at.
TEST_F(RecordEdges, ANumberThatLooksLikeTheAddressOfATextHoldsNone) {
  ResBuf layer(L"layer");
  layer.MakeDXF(8);
  ResBuf foreign(L"text");
  foreign.MakeDXF(62);
  { const ResBuf copy = Borrowed(40, layer.resval.rstring); }
  EXPECT_STREQ(layer.resval.rstring, L"layer");
}

TEST_F(RecordEdges, NoGroupHoldsBytes) {
  const std::vector<short> codes = {310, 319, 1004};
  EXPECT_TRUE(std::none_of(codes.begin(), codes.end(), IsBinary));
  ResBuf record(L"0A");
  record.MakeDXF(310);
  EXPECT_EQ(BufferOf(record), nullptr);
  EXPECT_TRUE(BytesOf(record).empty());
  char byte = 'x';
  SetBuffer(record, &byte, 1);
  EXPECT_STREQ(record.resval.rstring, L"0A");
}

}  // namespace
}  // namespace lomlisp::test::record_edges
