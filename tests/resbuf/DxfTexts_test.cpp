// Texts under DXF codes: whatever happens to their records, each is freed exactly once. The
// fixture looks at the heap's books after every test.
#include <tests/resbuf/Records.h>

#include <memory>
#include <random>
#include <set>

namespace lomlisp::test {
namespace {

ResBuf Group(short code, const wchar_t* text) {
  ResBuf record(text);
  record.MakeDXF(code);
  return record;
}

ResBuf* HeapGroup(short code, const wchar_t* text) { return HeapChain({Group(code, text)}); }

class DxfTexts : public HostTest {
 protected:
  size_t LiveBlocks() const { return host.ledger.Live().blocks; }
  // Releases a chain by the types of its records, as the platform does.
  void ReleaseAsThePlatform(resbuf* chain) {
    EXPECT_EQ(acutRelRb(chain), RTNORM);
    EXPECT_EQ(host.ledger.TakeFaults(), std::vector<std::string>());
  }
  static resbuf* PlatformGroups() {
    return acutBuildList(RTDXF0, L"LINE", 8, L"layer", 62, 3, 1001, L"APP", 0);
  }
  static constexpr const char* kPlatformGroups = "5020:LINE 8:layer 62 1001:APP";
};

// --- Single records ---

TEST_F(DxfTexts, MakeDXFKeepsTheTextWhereItIs) {
  ResBuf record(L"layer");
  const wchar_t* const text = record.resval.rstring;
  EXPECT_TRUE(record.MakeDXF(8));
  EXPECT_EQ(record.resval.rstring, text);
  EXPECT_STREQ(record.resval.rstring, L"layer");
  EXPECT_EQ(LiveBlocks(), 1u);
}

TEST_F(DxfTexts, ATextSurvivesEveryChangeOfCode) {
  ResBuf record(L"layer");
  for (const int code : {8, 1, 62, 40, 10, -3, 330, 1001})
    EXPECT_TRUE(record.MakeDXF(static_cast<short>(code)));
  EXPECT_STREQ(record.resval.rstring, L"layer");
  EXPECT_EQ(LiveBlocks(), 1u);
}

TEST_F(DxfTexts, AnEmptyAndANullTextCanStandUnderACode) {
  EXPECT_STREQ(Group(8, L"").resval.rstring, L"");
  EXPECT_EQ(Group(8, nullptr).resval.rstring, nullptr);
  EXPECT_EQ(Group(62, nullptr).resval.rstring, nullptr);
}

TEST_F(DxfTexts, AFailedMakeDXFLeavesATextRecord) {
  ResBuf record(L"layer");
  EXPECT_FALSE(record.MakeDXF(5005));
  EXPECT_EQ(record.Type(), RTSTR);
  record = static_cast<short>(1);
  EXPECT_EQ(LiveBlocks(), 0u);
}

TEST_F(DxfTexts, AnotherValueFreesTheText) {
  for (const short code : {static_cast<short>(8), static_cast<short>(62)}) {
    ResBuf record = Group(code, L"layer");
    record = static_cast<short>(1);
    EXPECT_EQ(LiveBlocks(), 0u);
    record = Group(code, L"other");
    record = Group(code, L"third");
    EXPECT_EQ(LiveBlocks(), 1u);
  }
}

TEST_F(DxfTexts, CopiesKeepTheTextUntilTheLastOneDies) {
  for (const short code : {static_cast<short>(8), static_cast<short>(62)}) {
    auto first = std::make_unique<ResBuf>(Group(code, L"layer"));
    auto second = std::make_unique<ResBuf>(*first);
    auto third = std::make_unique<ResBuf>();
    *third = *second;
    EXPECT_EQ(second->resval.rstring, first->resval.rstring);
    EXPECT_EQ(LiveBlocks(), 4u);  // three records and one text
    first.reset();
    EXPECT_STREQ(second->resval.rstring, L"layer");
    *second = 2.5;
    EXPECT_STREQ(third->resval.rstring, L"layer");
    third.reset();
    EXPECT_EQ(LiveBlocks(), 1u);
  }
}

TEST_F(DxfTexts, AMovedRecordTakesItsTextAlong) {
  ResBuf source = Group(8, L"layer");
  ResBuf moved(std::move(source));
  ResBuf assigned = Group(1, L"old");
  assigned = std::move(moved);
  EXPECT_EQ(assigned.Type(), 8);
  EXPECT_STREQ(assigned.resval.rstring, L"layer");
}

TEST_F(DxfTexts, ARecordAssignedToItselfKeepsItsText) {
  ResBuf record = Group(8, L"layer");
  const ResBuf& same = record;
  record = same;
  EXPECT_STREQ(record.resval.rstring, L"layer");
  record = static_cast<const wchar_t*>(record.resval.rstring);
  EXPECT_EQ(record.Type(), RTSTR);
  EXPECT_STREQ(record.resval.rstring, L"layer");
}

TEST_F(DxfTexts, OneCopyCanChangeItsCodeWithoutTheOthers) {
  ResBuf first = Group(8, L"layer");
  ResBuf second(first);
  EXPECT_TRUE(second.MakeDXF(62));
  EXPECT_EQ(first.Type(), 8);
  first = static_cast<short>(1);
  EXPECT_STREQ(second.resval.rstring, L"layer");
}

TEST_F(DxfTexts, MakeBaseTypeGivesTheTextBackToItsOnlyRecord) {
  ResBuf record = Group(8, L"layer");
  const wchar_t* const text = record.resval.rstring;
  record.MakeBaseType();
  EXPECT_EQ(record.Type(), RTSTR);
  EXPECT_EQ(record.resval.rstring, text);
  EXPECT_STREQ(static_cast<wchar_t*>(record), L"layer");
}

TEST_F(DxfTexts, MakeBaseTypeCopiesATextThatOthersHold) {
  ResBuf first = Group(8, L"layer");
  ResBuf second(first);
  second.MakeBaseType();
  EXPECT_EQ(second.Type(), RTSTR);
  EXPECT_STREQ(second.resval.rstring, L"layer");
  EXPECT_NE(second.resval.rstring, first.resval.rstring);
  first = static_cast<short>(1);
  EXPECT_STREQ(second.resval.rstring, L"layer");
}

TEST_F(DxfTexts, MakeBaseTypeWithoutMemoryLeavesANullText) {
  const ResBuf first = Group(8, L"layer");
  ResBuf second(first);
  host.ledger.FailAllocation(1);
  second.MakeBaseType();
  EXPECT_EQ(second.Type(), RTSTR);
  EXPECT_EQ(second.resval.rstring, nullptr);
  EXPECT_STREQ(first.resval.rstring, L"layer");
}

TEST_F(DxfTexts, ATextUnderANumbersCodeIsNotLostWithTheCode) {
  ResBuf record = Group(62, L"x");
  record.MakeBaseType();
  EXPECT_EQ(record.Type(), RTSHORT);
}

TEST_F(DxfTexts, ANumberIsNoTextUnderATextsCode) {
  ResBuf record = Short(5);
  EXPECT_TRUE(record.MakeDXF(8));
  const ResBuf copy(record);
  EXPECT_EQ(copy.Type(), 8);
  EXPECT_EQ(copy.resval.rstring, nullptr);
  ADSList list(HeapChain({copy}), ADSCopyFlag::Adopt);
  const ADSList second(list);
  list.GoFirst();
  list.Curr() = static_cast<short>(1);
  EXPECT_TRUE(record.MakeDXF(62));
  EXPECT_EQ(record.resval.mnInt64, 0);
}

TEST_F(DxfTexts, ACodeOfTextsAloneHasANullText) {
  for (const short code : {short{8}, short{-4}, short{1000}, RTDXF0}) {
    const ResBuf record{ADSResType(code)};
    EXPECT_EQ(record.resval.mnInt64, 0) << code;
    record.Print(nullptr, 10);
  }
  host.console.Take();
}

TEST_F(DxfTexts, ANumberThatBecameATextCanBePrintedAndFreed) {
  ResBuf record = Short(5);
  EXPECT_TRUE(record.MakeDXF(8));
  wchar_t text[10];
  record.Print(text, std::size(text));
  EXPECT_STREQ(text, L"\"\"");
  record.MakeBaseType();
  EXPECT_EQ(record.Type(), RTSTR);
  EXPECT_EQ(static_cast<wchar_t*>(record), nullptr);
}

TEST_F(DxfTexts, ABorrowedTextStaysItsOwners) {
  wchar_t text[] = L"mine";
  ResBuf record = Borrowed(8, text);
  EXPECT_TRUE(record.MakeDXF(1));
  EXPECT_EQ(record.resval.rstring, text);
  EXPECT_TRUE(record.MakeDXF(62));
  EXPECT_EQ(record.resval.rstring, text);
  ADSList list(HeapChain({Borrowed(8, text)}), ADSCopyFlag::Adopt);
  const ADSList copy(list);
  EXPECT_EQ(copy.First()->resval.rstring, text);
  list.Clear();
  EXPECT_STREQ(text, L"mine");
}

// --- Lists ---

TEST_F(DxfTexts, AListFreesTheTextsOfItsGroups) {
  ADSList list;
  list.Add(HeapGroup(8, L"layer"), ADSCopyFlag::Adopt);
  list.Add(HeapGroup(62, L"x"), ADSCopyFlag::Adopt);
  EXPECT_EQ(Types(list.First()), "8:layer 62");
  EXPECT_EQ(LiveBlocks(), 5u);
  list.Clear();
  EXPECT_EQ(LiveBlocks(), 1u);
}

TEST_F(DxfTexts, DeletingARecordFreesItsText) {
  ADSList list;
  list.Add(HeapGroup(8, L"layer"), ADSCopyFlag::Adopt);
  EXPECT_EQ(list.Delete(), 1);
  EXPECT_EQ(LiveBlocks(), 1u);
}

TEST_F(DxfTexts, CopiesOfAListOutliveEachOther) {
  auto first = std::make_unique<ADSList>();
  first->Add(HeapGroup(8, L"layer"), ADSCopyFlag::Adopt);
  first->Add(HeapGroup(62, L"x"), ADSCopyFlag::Adopt);
  auto second = std::make_unique<ADSList>(*first);
  ADSList third(second->First(), ADSCopyFlag::Copy);
  first.reset();
  EXPECT_EQ(Types(second->First()), "8:layer 62");
  EXPECT_STREQ(second->Last()->resval.rstring, L"x");
  second.reset();
  EXPECT_EQ(Types(third.First()), "8:layer 62");
  EXPECT_STREQ(third.Last()->resval.rstring, L"x");
}

TEST_F(DxfTexts, ARecordTakenFromAListOutlivesIt) {
  auto list = std::make_unique<ADSList>(PlatformGroups(), ADSCopyFlag::Adopt);
  list->GoFirst();
  list->GoNext();
  const ResBuf layer(list->Curr());
  list.reset();
  EXPECT_EQ(layer.Type(), 8);
  EXPECT_STREQ(layer.resval.rstring, L"layer");
}

TEST_F(DxfTexts, SplicedGroupsBelongToTheirNewList) {
  ADSList target;
  {
    ADSList trial(PlatformGroups(), ADSCopyFlag::Adopt);
    target.Splice(trial);
  }
  EXPECT_EQ(Types(target.First()), kPlatformGroups);
}

TEST_F(DxfTexts, ADiscardedListLosesNothing) {
  const ResBuf layer = Group(8, L"layer");
  {
    const ADSList trial(HeapChain({layer, Group(1, L"text")}), ADSCopyFlag::Adopt);
    EXPECT_EQ(Types(trial.First()), "8:layer 1:text");
  }
  EXPECT_EQ(LiveBlocks(), 1u);
  EXPECT_STREQ(layer.resval.rstring, L"layer");
}

// --- Chains of the platform ---

TEST_F(DxfTexts, AnAdoptedChainIsFreedWithItsTexts) {
  {
    ADSList list(PlatformGroups(), ADSCopyFlag::Adopt);
    EXPECT_EQ(Types(list.First()), kPlatformGroups);
    list.AddAsList(PlatformGroups(), ADSCopyFlag::Adopt);
  }
  EXPECT_EQ(LiveBlocks(), 0u);
}

TEST_F(DxfTexts, AnAdoptedChainCanBeCopied) {
  auto list = std::make_unique<ADSList>(PlatformGroups(), ADSCopyFlag::Adopt);
  const ADSList copy(*list);
  list.reset();
  EXPECT_EQ(Types(copy.First()), kPlatformGroups);
}

TEST_F(DxfTexts, ACopiedChainStaysThePlatforms) {
  resbuf* const chain = PlatformGroups();
  {
    const ADSList copy(chain, ADSCopyFlag::Copy);
    EXPECT_EQ(Types(copy.First()), kPlatformGroups);
  }
  EXPECT_EQ(Types(chain), kPlatformGroups);
  ReleaseAsThePlatform(chain);
}

TEST_F(DxfTexts, ACopyMayOutliveAChainOfThePlatform) {
  resbuf* const chain = PlatformGroups();
  const ADSList copy(chain, ADSCopyFlag::Copy);
  ReleaseAsThePlatform(chain);
}

TEST_F(DxfTexts, ACopyThatWasMadeBeforeTheChainWasAdoptedFreesNothing) {
  resbuf* const chain = PlatformGroups();
  ADSList copy(chain, ADSCopyFlag::Copy);
  ADSList owner(chain, ADSCopyFlag::Adopt);
  copy.Clear();
  EXPECT_EQ(Types(owner.First()), kPlatformGroups);
}

TEST_F(DxfTexts, ATextRecordOfThePlatformIsFreedOnce) {
  ADSList list(acutBuildList(RTSTR, L"text", RTDXF0, L"LINE", 0), ADSCopyFlag::Adopt);
  const ADSList copy(list);
  list.Clear();
  EXPECT_EQ(Types(copy.First()), "5005:text 5020:LINE");
}

TEST_F(DxfTexts, AGroupOfThePlatformCanGetAnotherValue) {
  ADSList list(PlatformGroups(), ADSCopyFlag::Adopt);
  list.GoFirst();
  list.GoNext();
  const size_t before = LiveBlocks();
  list.Curr() = static_cast<short>(7);
  EXPECT_EQ(LiveBlocks(), before - 1);
}

TEST_F(DxfTexts, AGroupOfThePlatformCanBecomeAText) {
  ADSList list(PlatformGroups(), ADSCopyFlag::Adopt);
  list.GoLast();
  list.Curr().MakeBaseType();
  EXPECT_EQ(list.Type(), RTSTR);
  EXPECT_STREQ(static_cast<wchar_t*>(list.Curr()), L"APP");
}

// --- Handing a chain over ---

TEST_F(DxfTexts, AKeptChainIsReleasedByItsTypes) {
  resbuf* chain = nullptr;
  {
    ADSList list;
    list.Add(HeapGroup(8, L"layer"), ADSCopyFlag::Adopt);
    list.Add(HeapChain({Str(L"text"), Short(1)}), ADSCopyFlag::Adopt);
    list.DeleteMode(ADSDeleteFlag::Keep);
    chain = list;
  }
  EXPECT_EQ(Types(chain), "8:layer 5005:text 5003:1");
  ReleaseAsThePlatform(chain);
  EXPECT_EQ(LiveBlocks(), 0u);
}

TEST_F(DxfTexts, AKeptChainOfThePlatformIsReleasedByItsTypes) {
  resbuf* chain = nullptr;
  {
    ADSList list(PlatformGroups(), ADSCopyFlag::Adopt);
    list.DeleteMode(ADSDeleteFlag::Keep);
    chain = list;
  }
  EXPECT_EQ(Types(chain), kPlatformGroups);
  ReleaseAsThePlatform(chain);
}

TEST_F(DxfTexts, AKeptChainSharesNoTextWithTheListsThatRemain) {
  ADSList remaining;
  remaining.Add(HeapGroup(8, L"layer"), ADSCopyFlag::Adopt);
  ADSList given(remaining);
  given.DeleteMode(ADSDeleteFlag::Keep);
  EXPECT_NE(given.First()->resval.rstring, remaining.First()->resval.rstring);
  EXPECT_EQ(Types(given.First()), "8:layer");
  ReleaseAsThePlatform(given);
  EXPECT_EQ(Types(remaining.First()), "8:layer");
}

TEST_F(DxfTexts, AKeptTextUnderANumbersCodeIsFreedAndCleared) {
  ADSList list;
  list.Add(HeapGroup(62, L"x"), ADSCopyFlag::Adopt);
  list.DeleteMode(ADSDeleteFlag::Keep);
  EXPECT_EQ(list.First()->Type(), 62);
  EXPECT_EQ(list.First()->resval.mnInt64, 0);
  EXPECT_EQ(LiveBlocks(), 2u);
  ReleaseAsThePlatform(list);
}

TEST_F(DxfTexts, AKeptTextUnderANumbersCodeStaysWithTheOthersThatHoldIt) {
  ADSList remaining;
  remaining.Add(HeapGroup(62, L"x"), ADSCopyFlag::Adopt);
  ADSList given(remaining);
  given.DeleteMode(ADSDeleteFlag::Keep);
  ReleaseAsThePlatform(given);
  EXPECT_STREQ(remaining.First()->resval.rstring, L"x");
}

TEST_F(DxfTexts, AKeptTextCodeWithoutATextOfOursHasANullText) {
  wchar_t text[] = L"mine";
  ResBuf number = Short(5);
  number.MakeDXF(8);
  ADSList list(HeapChain({number, Borrowed(1, text)}), ADSCopyFlag::Adopt);
  list.DeleteMode(ADSDeleteFlag::Keep);
  EXPECT_EQ(list.First()->resval.rstring, nullptr);
  EXPECT_EQ(list.Last()->resval.rstring, nullptr);
  ReleaseAsThePlatform(list);
  EXPECT_STREQ(text, L"mine");
}

TEST_F(DxfTexts, AKeptTextThatCannotBeCopiedIsNull) {
  ADSList remaining;
  remaining.Add(HeapGroup(8, L"layer"), ADSCopyFlag::Adopt);
  ADSList given(remaining);
  host.ledger.FailAllocation(1);
  given.DeleteMode(ADSDeleteFlag::Keep);
  EXPECT_EQ(given.First()->resval.rstring, nullptr);
  ReleaseAsThePlatform(given);
  EXPECT_EQ(Types(remaining.First()), "8:layer");
}

TEST_F(DxfTexts, KeepingTwiceIsKeepingOnce) {
  ADSList list(PlatformGroups(), ADSCopyFlag::Adopt);
  list.DeleteMode(ADSDeleteFlag::Keep);
  list.DeleteMode(ADSDeleteFlag::Keep);
  EXPECT_EQ(Types(list.First()), kPlatformGroups);
  ReleaseAsThePlatform(list);
}

TEST_F(DxfTexts, AskingForTheModeChangesNoText) {
  ADSList list;
  list.Add(HeapGroup(62, L"x"), ADSCopyFlag::Adopt);
  list.DeleteMode(ADSDeleteFlag::Ask);
  list.DeleteMode(ADSDeleteFlag::Release);
  EXPECT_STREQ(list.First()->resval.rstring, L"x");
}

TEST_F(DxfTexts, AChainTakenBackIsFreedWithItsTexts) {
  {
    ADSList list(PlatformGroups(), ADSCopyFlag::Adopt);
    list.DeleteMode(ADSDeleteFlag::Keep);
    list.DeleteMode(ADSDeleteFlag::Release);
    EXPECT_EQ(Types(list.First()), kPlatformGroups);
  }
  EXPECT_EQ(LiveBlocks(), 0u);
}

TEST_F(DxfTexts, ARecordDeletedFromAKeptChainTakesItsTextAlong) {
  ADSList list(PlatformGroups(), ADSCopyFlag::Adopt);
  list.DeleteMode(ADSDeleteFlag::Keep);
  list.GoFirst();
  list.GoNext();
  EXPECT_EQ(list.Delete(), 1);
  EXPECT_EQ(Types(list.First()), "5020:LINE 62 1001:APP");
  ReleaseAsThePlatform(list);
  EXPECT_EQ(LiveBlocks(), 1u);
}

TEST_F(DxfTexts, ClearAfterKeepLeavesTheChainToItsNewOwner) {
  ADSList list(PlatformGroups(), ADSCopyFlag::Adopt);
  list.DeleteMode(ADSDeleteFlag::Keep);
  resbuf* const chain = list;
  list.Clear();
  EXPECT_EQ(Types(chain), kPlatformGroups);
  ReleaseAsThePlatform(chain);
}

TEST_F(DxfTexts, AChainCanGoToThePlatformAndComeBack) {
  ADSList list(PlatformGroups(), ADSCopyFlag::Adopt);
  list.DeleteMode(ADSDeleteFlag::Keep);
  resbuf* const chain = list;
  list.Clear();
  list.Add(chain, ADSCopyFlag::Adopt);
  const ADSList copy(list);
  list.Clear();
  EXPECT_EQ(Types(copy.First()), kPlatformGroups);
}

TEST_F(DxfTexts, ACopyForThePlatformHasATextOfItsOwn) {
  ADSList list(PlatformGroups(), ADSCopyFlag::Adopt);
  resbuf* const copy = ResBuf::copyToAcadResBufList(list);
  list.Clear();
  EXPECT_EQ(Types(copy), kPlatformGroups);
  ReleaseAsThePlatform(copy);
}

// --- Atoms of values ---

TEST_F(DxfTexts, AnAtomKeepsTheTextOfItsGroup) {
  CLOMAdsLispVar atom(0);
  {
    ADSList list(PlatformGroups(), ADSCopyFlag::Adopt);
    list.GoFirst();
    list.GoNext();
    atom.GetAtom() = list.Curr();
  }
  const CLOMAdsLispVar shared(atom);
  atom.Clean();
  EXPECT_EQ(shared.GetAtom().Type(), 8);
  EXPECT_STREQ(shared.GetAtom().resval.rstring, L"layer");
}

// --- Many at once ---

// A record, and what it holds: the text as a number, shared with the records that hold the same.
struct Held {
  ResBuf record;
  std::shared_ptr<int> text;
};

size_t DifferentTexts(const std::vector<Held>& all) {
  std::set<const int*> different;
  for (const Held& held : all)
    if (held.text != nullptr) different.insert(held.text.get());
  return different.size();
}

bool IsTextCode(short type) { return DxfType(type) == RTSTR; }

TEST_F(DxfTexts, AnyNumberOfTextsIsKeptWhateverHappensToTheirRecords) {
  constexpr short kCodes[] = {0, 1, 8, 10, 40, 62, 330, 1001, 1070};
  std::mt19937 random(1);
  const auto below = [&](size_t end) { return std::uniform_int_distribution<size_t>(0, end - 1)(random); };
  int made = 0;
  std::vector<Held> all(600);

  const auto make = [&](Held& held) {
    held.text = std::make_shared<int>(made++);
    held.record = Group(kCodes[below(std::size(kCodes))], std::to_wstring(*held.text).c_str());
  };
  const auto copy = [&](Held& target, const Held& source) {
    target.record = source.record;
    const bool ownCopy = source.record.Type() == RTSTR && source.text != nullptr;
    target.text = ownCopy ? std::make_shared<int>(*source.text) : source.text;
  };
  const auto makeBaseType = [&](Held& held) {
    const bool staysText = IsTextCode(held.record.Type());
    held.record.MakeBaseType();
    if (!staysText)
      held.text = nullptr;
    else if (held.text.use_count() > 1)
      held.text = std::make_shared<int>(*held.text);
  };
  // From few to many and back.
  for (const size_t fewer : {1u, 6u, 1u, 9u}) {
    for (int i = 0; i < 2'000; ++i) {
      Held& held = all[below(all.size())];
      Held& other = all[below(all.size())];
      switch (below(4 + fewer)) {
        case 0:
          make(held);
          break;
        case 1:
          if (&held != &other) copy(held, other);
          break;
        case 2:
          if (held.text != nullptr) held.record.MakeDXF(kCodes[below(std::size(kCodes))]);
          break;
        case 3:
          if (held.text != nullptr) makeBaseType(held);
          break;
        case 4:
          if (&held == &other) break;
          held.record = std::move(other.record);
          held.text = std::move(other.text);
          break;
        default:
          held = {};
          break;
      }
      ASSERT_EQ(LiveBlocks(), DifferentTexts(all)) << i;
    }
    for (const Held& held : all) {
      if (held.text == nullptr) continue;
      ASSERT_EQ(held.record.resval.rstring, std::to_wstring(*held.text)) << held.record.Type();
    }
  }
  all.clear();
  EXPECT_EQ(LiveBlocks(), 0u);
}

}  // namespace
}  // namespace lomlisp::test
