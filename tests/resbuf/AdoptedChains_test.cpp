// Lists that keep what they adopt for somebody else, have no memory, or are given what is theirs.
#include <tests/resbuf/Records.h>

namespace lomlisp::test::adopted_chains {
namespace {

class AdoptedChains : public HostTest {
 protected:
  // Takes the chain out of a list that keeps it, and releases it by its types.
  void ReleaseKept(ADSList& list) {
    resbuf* const chain = list;
    list.Clear();
    EXPECT_EQ(acutRelRb(chain), RTNORM);
  }
};

TEST_F(AdoptedChains, AListThatKeepsPreparesTheTextsOfItsRecords) {
  ADSList list;
  list.DeleteMode(ADSDeleteFlag::Keep);
  ResBuf layer(L"layer");
  layer.MakeDXF(8);
  list.Add(HeapChain({layer}), ADSCopyFlag::Adopt);
  EXPECT_EQ(Types(list), "8:layer");
  EXPECT_NE(list.First()->resval.rstring, layer.resval.rstring);
  ReleaseKept(list);
}

TEST_F(AdoptedChains, AListThatKeepsLeavesThePlatformsTextsAsTheyAre) {
  ADSList list;
  list.DeleteMode(ADSDeleteFlag::Keep);
  list.Add(acutBuildList(8, L"layer", 0), ADSCopyFlag::Adopt);
  EXPECT_EQ(Types(list), "8:layer");
  ReleaseKept(list);
}

TEST_F(AdoptedChains, TheListsOwnChainIsNotPutIntoBracketsInIt) {
  ADSList list(acutBuildList(RTSHORT, 1, RTSHORT, 2, 0), ADSCopyFlag::Adopt);
  list.AddAsList(static_cast<resbuf*>(list), ADSCopyFlag::Adopt);
  EXPECT_EQ(Types(list), "5003:1 5003:2");
}

TEST_F(AdoptedChains, NoRecordsAreAnEmptyListInBrackets) {
  ADSList list;
  list.AddAsList(static_cast<resbuf*>(nullptr), ADSCopyFlag::Adopt);
  list.AddAsList(acutBuildList(RTSHORT, 1, 0), ADSCopyFlag::Adopt);
  EXPECT_EQ(Types(list), "5016 5017 5016 5003:1 5017");
}

TEST_F(AdoptedChains, AListSplicedIntoItselfStaysAsItIs) {
  ADSList list(acutBuildList(RTSHORT, 1, RTSHORT, 2, 0), ADSCopyFlag::Adopt);
  list.Splice(list);
  EXPECT_EQ(Types(list), "5003:1 5003:2");
}

TEST_F(AdoptedChains, ARecordThatIsCutOffIsNotDeleted) {
  ADSList list(acutBuildList(RTSHORT, 1, RTSHORT, 2, 0), ADSCopyFlag::Adopt);
  ResBuf* const cutOff = list.Last();
  list.First()->Connect(nullptr);
  EXPECT_EQ(list.Delete(), 0);
  EXPECT_EQ(&list.Curr(), cutOff);
  delete cutOff;
}

TEST_F(AdoptedChains, AListWithoutMemoryThatKeepsLeavesTheChainToItsOwner) {
  host.ledger.FailAllocation(1);
  ADSList list;
  host.ledger.FailAllocation(0);
  EXPECT_EQ(list.Curr().Type(), RTNONE);
  list.DeleteMode(ADSDeleteFlag::Keep);
  resbuf* const chain = acutBuildList(RTSHORT, 1, 0);
  list.Add(chain, ADSCopyFlag::Adopt);
  EXPECT_TRUE(list.isNIL());
  EXPECT_EQ(acutRelRb(chain), RTNORM);
}

}  // namespace
}  // namespace lomlisp::test::adopted_chains
