#include <tests/support/HostTest.h>

#include <climits>
#include <cstring>

namespace lomlisp::test {
namespace {

using embedded::Balance;
using embedded::Ledger;
using embedded::Owner;

// Writes where nothing may be written, which a sanitizer would report at once.
#if defined(__GNUC__)
__attribute__((no_sanitize("address")))
#endif
void WriteByte(void* memory, std::ptrdiff_t offset) {
  volatile unsigned char* bytes = static_cast<unsigned char*>(memory);
  bytes[offset] = 0x11;
}

class LedgerTest : public ::testing::Test {
 protected:
  void TearDown() override {
    EXPECT_TRUE(ledger.TakeFaults().empty()) << "a fault that the test did not expect";
  }

  void* Take(size_t bytes = 24, Owner owner = Owner::Client) { return ledger.Allocate(bytes, owner); }

  // The one fault since the last look; empty when there is not exactly one.
  std::string Fault() {
    const auto faults = ledger.TakeFaults();
    EXPECT_EQ(faults.size(), 1U);
    return faults.size() == 1 ? faults.front() : std::string();
  }

  Ledger ledger;
};

TEST_F(LedgerTest, CountsBlocksAndBytes) {
  EXPECT_EQ(ledger.Live(), (Balance{0, 0}));
  void* first = Take(10);
  void* second = Take(1000);
  EXPECT_EQ(ledger.Live(), (Balance{2, 1010}));
  ledger.Free(first);
  EXPECT_EQ(ledger.Live(), (Balance{1, 1000}));
  ledger.Free(second);
  EXPECT_EQ(ledger.Live(), (Balance{0, 0}));
}

TEST_F(LedgerTest, KeepsTheHostApart) {
  void* block = Take(10, Owner::Host);
  EXPECT_EQ(ledger.Live(), (Balance{0, 0}));
  EXPECT_EQ(ledger.Live(Owner::Host), (Balance{1, 10}));
  EXPECT_TRUE(ledger.LeaksSince(0).empty());
  ledger.Free(block);
  EXPECT_NE(Fault().find("freed a block that is the host's"), std::string::npos);
  EXPECT_TRUE(ledger.IsLive(block));
  ledger.Free(block, Owner::Host);
  EXPECT_EQ(ledger.Live(Owner::Host), (Balance{0, 0}));
}

TEST_F(LedgerTest, GivesDistinctAlignedBlocksAlsoOfNoBytes) {
  void* first = Take(0);
  void* second = Take(0);
  ASSERT_NE(first, nullptr);
  EXPECT_NE(first, second);
  EXPECT_EQ(reinterpret_cast<uintptr_t>(first) % alignof(std::max_align_t), 0U);
  EXPECT_EQ(ledger.BytesFrom(first), 0U);
  ledger.Free(first);
  ledger.Free(second);
}

TEST_F(LedgerTest, RefusesWhatNoMachineHas) {
  EXPECT_EQ(Take(SIZE_MAX), nullptr);
  EXPECT_EQ(Take(SIZE_MAX / 2), nullptr);
  EXPECT_EQ(ledger.Live(), (Balance{0, 0}));
}

TEST_F(LedgerTest, IgnoresTheFreeOfNull) { ledger.Free(nullptr); }

TEST_F(LedgerTest, NotesADoubleFreeAndGoesOn) {
  void* block = ledger.Allocate(24, Owner::Client, 5005);
  ledger.Free(block);
  EXPECT_FALSE(ledger.IsLive(block));
  EXPECT_TRUE(ledger.IsFreed(block));
  ledger.Free(block);
  EXPECT_TRUE(Fault().starts_with("freed twice: record of type 5005, 24 bytes, allocation 1"));
  EXPECT_EQ(ledger.Live(), (Balance{0, 0}));
}

TEST_F(LedgerTest, NotesForeignPointersAndGoesOn) {
  int local = 0;
  char* block = static_cast<char*>(Take(64));
  for (void* foreign :
       {reinterpret_cast<void*>(0x5), static_cast<void*>(&local), reinterpret_cast<void*>(UINTPTR_MAX),
        static_cast<void*>(block + 16), static_cast<void*>(block + 1)}) {
    EXPECT_FALSE(ledger.IsLive(foreign));
    ledger.Free(foreign);
    EXPECT_TRUE(Fault().starts_with("freed a pointer that is no block of this heap: 0x"));
  }
  EXPECT_EQ(ledger.Live(), (Balance{1, 64}));
  ledger.Free(block);
}

TEST_F(LedgerTest, NamesTheForeignPointer) {
  ledger.Free(reinterpret_cast<void*>(0x5));
  EXPECT_EQ(Fault(), "freed a pointer that is no block of this heap: 0x5");
}

TEST_F(LedgerTest, FindsAWriteOutsideTheBlockWhenItIsFreed) {
  for (const std::ptrdiff_t offset : {-1, -16, 24, 39}) {
    void* block = Take(24);
    WriteByte(block, offset);
    ledger.Free(block);
    EXPECT_TRUE(Fault().starts_with("written outside the block: memory, 24 bytes")) << offset;
  }
}

TEST_F(LedgerTest, FindsAWriteOutsideTheBlockOnceWhenTheGuardsAreChecked) {
  void* block = Take(3);
  ledger.CheckGuards();
  EXPECT_TRUE(ledger.TakeFaults().empty());
  WriteByte(block, 3);
  ledger.CheckGuards();
  EXPECT_TRUE(Fault().starts_with("written outside the block: memory, 3 bytes"));
  ledger.CheckGuards();
  ledger.Free(block);
}

TEST_F(LedgerTest, SurvivesAWriteIntoItsBooks) {
  Ledger other;
  void* block = other.Allocate(24, Owner::Client);
  for (std::ptrdiff_t offset = -64; offset < -16; ++offset) WriteByte(block, offset);
  other.CheckGuards();
  other.Free(block);
  const auto faults = other.TakeFaults();
  ASSERT_EQ(faults.size(), 2U);
  EXPECT_NE(faults[0].find("were written over"), std::string::npos);
  EXPECT_EQ(faults[0], faults[1]);
}

TEST_F(LedgerTest, FindsAWriteAfterTheFree) {
  void* block = Take(24);
  ledger.Free(block);
  ledger.CheckGuards();
  EXPECT_TRUE(ledger.TakeFaults().empty());
  WriteByte(block, 7);
  ledger.CheckGuards();
  EXPECT_TRUE(Fault().starts_with("written after the free: memory, 24 bytes"));
}

TEST_F(LedgerTest, FindsAWriteAfterTheFreeWhenTheBlockIsLetGo) {
  void* block = Take(24);
  ledger.Free(block);
  WriteByte(block, 0);
  ledger.Free(Take(8U << 20));
  EXPECT_TRUE(Fault().starts_with("written after the free: memory, 24 bytes"));
}

// A write to a freed block is found when the block is let go.
TEST_F(LedgerTest, HoldsBackABoundedAmount) {
  void* first = Take(1U << 20);
  ledger.Free(first);
  WriteByte(first, 0);
  for (int count = 0; count < 3; ++count) ledger.Free(Take(1U << 19));
  EXPECT_TRUE(ledger.IsFreed(first));
  EXPECT_TRUE(ledger.TakeFaults().empty());
  for (int count = 0; count < 8; ++count) ledger.Free(Take(1U << 19));
  EXPECT_TRUE(Fault().starts_with("written after the free: memory, 1048576 bytes"));
}

TEST_F(LedgerTest, KnowsTheRoomBehindAPointer) {
  for (const size_t bytes : {size_t{1}, size_t{100}, size_t{4096}, size_t{100'000}}) {
    auto* block = static_cast<char*>(Take(bytes));
    EXPECT_EQ(ledger.BytesFrom(block), bytes);
    EXPECT_EQ(ledger.BytesFrom(block + bytes / 2), bytes - bytes / 2);
    EXPECT_EQ(ledger.BytesFrom(block + bytes - 1), 1U);
    EXPECT_EQ(ledger.BytesFrom(block + bytes), 0U);
    EXPECT_EQ(ledger.BytesFrom(block - 1), 0U);
    ledger.Free(block);
    EXPECT_EQ(ledger.BytesFrom(block), 0U);
    EXPECT_EQ(ledger.BytesFrom(block + bytes / 2), 0U);
  }
  EXPECT_EQ(ledger.BytesFrom(reinterpret_cast<void*>(0x5)), 0U);
}

TEST_F(LedgerTest, ListsLeaksSinceAMarkInTheirOrder) {
  void* before = Take(1);
  const uint64_t mark = ledger.Mark();
  void* plain = ledger.Allocate(2, Owner::Client);
  ledger.SetFunction("SUM");
  void* record = ledger.Allocate(3, Owner::Client, -4);
  ledger.SetFunction("");
  void* last = ledger.Allocate(4, Owner::Client, 0);
  const auto leaks = ledger.LeaksSince(mark);
  ASSERT_EQ(leaks.size(), 3U);
  EXPECT_EQ(leaks[0].number, mark + 1);
  EXPECT_EQ(leaks[0].kind, "memory");
  EXPECT_EQ(leaks[0].function, "");
  EXPECT_EQ(leaks[1].bytes, 3U);
  EXPECT_EQ(leaks[1].kind, "record of type -4");
  EXPECT_EQ(leaks[1].function, "SUM");
  EXPECT_EQ(leaks[2].kind, "record of type 0");
  EXPECT_EQ(leaks[2].function, "");
  for (void* block : {before, plain, record, last}) ledger.Free(block);
  EXPECT_TRUE(ledger.LeaksSince(0).empty());
}

TEST_F(LedgerTest, NamesTheCallersPlace) {
  EXPECT_EQ(ledger.LeaksSince(0).size(), 0U);
  void* nowhere = Take();
  void* somewhere =
      ledger.Allocate(8, Owner::Client, Ledger::kPlainMemory, reinterpret_cast<void*>(&std::strlen));
  void* wrong = ledger.Allocate(8, Owner::Client, Ledger::kPlainMemory, reinterpret_cast<void*>(0x1F));
  const auto leaks = ledger.LeaksSince(0);
  EXPECT_EQ(leaks[0].place, "");
  EXPECT_FALSE(leaks[1].place.empty());
  EXPECT_EQ(leaks[2].place, "0x1f");
  for (void* block : {nowhere, somewhere, wrong}) ledger.Free(block);
}

TEST_F(LedgerTest, FailsTheOrderedAllocationOnly) {
  ledger.FailAllocation(2);
  void* hosts = Take(8, Owner::Host);
  void* first = Take();
  EXPECT_NE(hosts, nullptr);
  EXPECT_NE(first, nullptr);
  EXPECT_EQ(Take(), nullptr);
  void* third = Take();
  EXPECT_NE(third, nullptr);
  ledger.FailAllocation(1);
  ledger.FailAllocation(0);
  void* fourth = Take();
  EXPECT_NE(fourth, nullptr);
  for (void* block : {first, third, fourth}) ledger.Free(block);
  ledger.Free(hosts, Owner::Host);
}

TEST_F(LedgerTest, FailsAllAllocationsFromTheOrderedOne) {
  ledger.FailAllocationsFrom(2);
  void* first = Take();
  EXPECT_NE(first, nullptr);
  EXPECT_EQ(Take(), nullptr);
  EXPECT_EQ(Take(), nullptr);
  void* hosts = Take(8, Owner::Host);
  EXPECT_NE(hosts, nullptr);
  ledger.FailAllocation(0);
  void* last = Take();
  EXPECT_NE(last, nullptr);
  ledger.Free(first);
  ledger.Free(last);
  ledger.Free(hosts, Owner::Host);
}

TEST_F(LedgerTest, ForgetsTheClientsBlocks) {
  void* old = Take(10);
  void* hosts = Take(8, Owner::Host);
  ledger.FailAllocation(1);
  ledger.Fault("something");
  ledger.Reset();
  EXPECT_EQ(ledger.Live(), (Balance{0, 0}));
  EXPECT_EQ(ledger.Live(Owner::Host), (Balance{1, 8}));
  EXPECT_TRUE(ledger.LeaksSince(0).empty());
  void* fresh = Take(20);
  ASSERT_NE(fresh, nullptr);
  ledger.Free(old);
  EXPECT_EQ(ledger.Live(), (Balance{1, 20}));
  ledger.Free(old);
  EXPECT_TRUE(Fault().starts_with("freed twice"));
  ledger.Free(fresh);
  ledger.Free(hosts, Owner::Host);
  EXPECT_EQ(ledger.Live(Owner::Host), (Balance{0, 0}));
}

TEST_F(LedgerTest, StandsManyBlocks) {
  std::vector<void*> blocks;
  for (size_t count = 0; count < 400'000; ++count) blocks.push_back(Take(count % 100));
  EXPECT_EQ(ledger.Live().blocks, blocks.size());
  EXPECT_EQ(ledger.LeaksSince(ledger.Mark() - 10).size(), 10U);
  ledger.CheckGuards();
  for (void* block : blocks) ledger.Free(block);
  EXPECT_EQ(ledger.Live(), (Balance{0, 0}));
}

// --- The functions of the platform ---

class HeapTest : public HostTest {};

TEST_F(HeapTest, RecordsAreClearedAndNamedByTheirType) {
  for (const int type : {int{RTSTR}, int{RT3DPOINT}, 0, -4, 1071, SHRT_MAX, SHRT_MIN}) {
    resbuf* record = acutNewRb(type);
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->restype, type);
    EXPECT_EQ(record->rbnext, nullptr);
    for (const double coordinate : record->resval.rpoint) EXPECT_EQ(coordinate, 0.0);
    ASSERT_EQ(host.ledger.LeaksSince(0).size(), 1U);
    EXPECT_EQ(host.ledger.LeaksSince(0)[0].kind, "record of type " + std::to_string(type));
    EXPECT_FALSE(host.ledger.LeaksSince(0)[0].place.empty());
    EXPECT_EQ(acutRelRb(record), RTNORM);
  }
  EXPECT_EQ(acutNewRb(SHRT_MAX + 1), nullptr);
}

TEST_F(HeapTest, ALeakNamesTheFunctionThatWasBeingCalled) {
  std::vector<void*> blocks;
  host.Define(L"Inner", [&] {
    blocks.push_back(acad_malloc(2));
    return RTNORM;
  });
  host.Define(L"Outer", [&] {
    blocks.push_back(acad_malloc(1));
    host.Call(L"INNER", L"");
    blocks.push_back(acad_malloc(3));
    return RTNORM;
  });
  host.Call(L"OUTER", L"");
  blocks.push_back(acad_malloc(4));
  const auto leaks = host.ledger.LeaksSince(0);
  ASSERT_EQ(leaks.size(), 4U);
  EXPECT_EQ(leaks[0].function, "OUTER");
  EXPECT_EQ(leaks[1].function, "INNER");
  EXPECT_EQ(leaks[2].function, "OUTER");
  EXPECT_EQ(leaks[3].function, "");
  for (void* block : blocks) acad_free(block);
}

TEST_F(HeapTest, ReleasingNullIsFine) {
  EXPECT_EQ(acutRelRb(nullptr), RTNORM);
  acad_free(nullptr);
}

TEST_F(HeapTest, ReleasingARingIsAFault) {
  resbuf* first = acutBuildList(RTSHORT, 1, RTSHORT, 2, 0);
  first->rbnext->rbnext = first;
  EXPECT_EQ(acutRelRb(first), RTNORM);
  const auto faults = host.ledger.TakeFaults();
  ASSERT_EQ(faults.size(), 1U);
  EXPECT_TRUE(faults[0].starts_with("freed twice"));
}

TEST_F(HeapTest, ReleasingANumberUnderATextCodeIsAFault) {
  resbuf* record = acutNewRb(8);
  record->resval.rint = 5;
  EXPECT_EQ(acutRelRb(record), RTNORM);
  const auto faults = host.ledger.TakeFaults();
  ASSERT_EQ(faults.size(), 1U);
  EXPECT_EQ(faults[0], "freed a pointer that is no block of this heap: 0x5");
}

TEST_F(HeapTest, ReleasingTheClientsOwnRecordIsAFault) {
  resbuf record{};
  record.restype = RTSHORT;
  EXPECT_EQ(acutRelRb(&record), RTNORM);
  EXPECT_EQ(host.ledger.TakeFaults().size(), 1U);
}

}  // namespace
}  // namespace lomlisp::test
