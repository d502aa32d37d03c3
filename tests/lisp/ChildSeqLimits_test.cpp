#include <tests/support/HostTest.h>

#include <stdexcept>

namespace lomlisp::test::childseqlimits {
namespace {

class ChildSequenceLimits : public HostTest {};

TEST_F(ChildSequenceLimits, MoreChildrenThanABlockCountsAreRefused) {
  ChildSeq sequence{nullptr};
  EXPECT_THROW(sequence.reserve(size_t{1} << 32), std::length_error);
  EXPECT_EQ(sequence.size(), 1u);
}

}  // namespace
}  // namespace lomlisp::test::childseqlimits
