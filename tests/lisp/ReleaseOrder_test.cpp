#include <tests/support/HostTest.h>

#include <memory>

namespace lomlisp::test::releaseorder {
namespace {

// A node that looks at a sequence when it goes.
class Witness : public CLOMLispElement {
 public:
  Witness(const ChildSeq& sequence, size_t& seen) : m_sequence(sequence), m_seen(seen) {}
  ~Witness() override { m_seen = m_sequence.size(); }

 private:
  const ChildSeq& m_sequence;
  size_t& m_seen;
};

class ReleaseOrder : public HostTest {};

TEST_F(ReleaseOrder, AnErasedChildGoesWhenTheSequenceIsWholeAgain) {
  for (size_t position = 0; position < 5; ++position) {
    size_t seen = 0;
    ChildSeq sequence;
    for (size_t i = 0; i < 5; ++i)
      sequence.push_back(i == position ? std::make_shared<Witness>(sequence, seen) : nullptr);
    sequence.erase(sequence.begin() + static_cast<std::ptrdiff_t>(position));
    EXPECT_EQ(seen, 4u) << position;
  }
}

}  // namespace
}  // namespace lomlisp::test::releaseorder
