#include <tests/resbuf/Records.h>

namespace lomlisp::test::splicesource {
namespace {

class SpliceSource : public HostTest {};

TEST_F(SpliceSource, WhatIsAddedToItAfterwardsIsItsOwn) {
  ADSList list;
  ADSList source;
  source.Add(new ResBuf(Short(1)), ADSCopyFlag::Adopt);
  list.Splice(source);
  source.Add(new ResBuf(Short(2)), ADSCopyFlag::Adopt);
  EXPECT_EQ(Text(list.First()), "1");
  EXPECT_EQ(Text(source.First()), "2");
}

}  // namespace
}  // namespace lomlisp::test::splicesource
