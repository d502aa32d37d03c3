#include <tests/resbuf/Records.h>

#include <sstream>
#include <type_traits>

namespace lomlisp::test {
namespace {

static_assert(std::is_same_v<std::underlying_type_t<ADSCopyFlag>, int>);
static_assert(std::is_same_v<std::underlying_type_t<ADSDeleteFlag>, int>);
static_assert(static_cast<int>(ADSCopyFlag::Adopt) == 0 && static_cast<int>(ADSCopyFlag::Copy) == 1);
static_assert(static_cast<int>(ADSDeleteFlag::Release) == 1 && static_cast<int>(ADSDeleteFlag::Keep) == 2);
static_assert(!std::is_copy_assignable_v<ADSBaseList> && !std::is_copy_assignable_v<ADSList>);
static_assert(std::is_copy_constructible_v<ADSList>);

// Records from "1 ( 2 abc ) 3": numbers, brackets, texts.
ResBuf* Records(const std::string& text) {
  std::vector<ResBuf> records;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    if (word == "(")
      records.push_back(Bare(RTLB));
    else if (word == ")")
      records.push_back(Bare(RTLE));
    else if (word[0] >= '0' && word[0] <= '9')
      records.push_back(Short(std::stoi(word)));
    else
      records.push_back(Str(std::wstring(word.begin(), word.end()).c_str()));
  }
  return HeapChain(records);
}

std::string Word(const resbuf& record) {
  if (record.restype == RTLB) return "(";
  if (record.restype == RTLE) return ")";
  if (record.restype == RTSHORT) return std::to_string(record.resval.rint);
  if (record.restype == RTSTR) return Utf8(record.resval.rstring);
  return "<" + std::to_string(record.restype) + ">";
}

// The other way round. A ring is cut, so that a broken list fails instead of hanging.
std::string Show(const resbuf* chain) {
  std::string text;
  for (int i = 0; chain != nullptr; chain = chain->rbnext) {
    if (++i > 1000) return text + " ...";
    text += (text.empty() ? "" : " ") + Word(*chain);
  }
  return text;
}

// The word under the cursor; "start" for the sentinel.
std::string At(const ADSBaseList& list) { return list.atStart() ? "start" : Word(list.Curr()); }

// A list whose cursor stands on the sentinel.
class Listed : public ADSList {
 public:
  explicit Listed(const std::string& text) : ADSList(Records(text), ADSCopyFlag::Adopt) { GoStart(); }
  using ADSList::Copy;

  ResBuf* Record(const std::string& word) const {
    for (ResBuf* record = First(); record != nullptr; record = record->Next())
      if (Word(*record) == word) return record;
    return nullptr;
  }
  // Moves the cursor, and gives whether that word is there.
  bool Find(const std::string& word) { return Go(Record(word)) == 1; }
};

class AListOfRecords : public HostTest {
 protected:
  static void ExpectEmpty(ADSBaseList& list) {
    EXPECT_TRUE(list.isNIL());
    EXPECT_TRUE(list.atStart());
    // Without a sentinel the cursor is null, as the first record is.
    EXPECT_EQ(list.atFirst(), list.Start() == nullptr);
    EXPECT_TRUE(list.atLast());
    EXPECT_EQ(list.First(), nullptr);
    EXPECT_EQ(list.Last(), nullptr);
    EXPECT_EQ(list.Type(), RTNONE);
    EXPECT_EQ(static_cast<resbuf*>(list), nullptr);
    EXPECT_EQ(list.GoFirst(), 0);
    EXPECT_EQ(list.GoLast(), 0);
    EXPECT_EQ(list.GoNext(), 0);
    EXPECT_EQ(list.GoPrevious(), 0);
    EXPECT_EQ(list.GoNextElement(), 0);
    EXPECT_EQ(list.GoPreviousElement(), 0);
    EXPECT_TRUE(list.atStart());
  }
};

// --- The cursor ---

TEST_F(AListOfRecords, IsEmptyAtFirst) {
  ADSBaseList base;
  ExpectEmpty(base);
  EXPECT_EQ(base.GoStart(), 1);
  EXPECT_EQ(base.Start()->Type(), RTNONE);
  EXPECT_EQ(&base.Curr(), base.Start());
  EXPECT_TRUE(host.ledger.IsLive(base.Start()));

  ADSList list;
  ExpectEmpty(list);
  EXPECT_EQ(list.Delete(), 0);
}

TEST_F(AListOfRecords, KnowsItsEnds) {
  Listed list("1 2 3");
  EXPECT_FALSE(list.isNIL());
  EXPECT_EQ(list.First(), list.Record("1"));
  EXPECT_EQ(list.Last(), list.Record("3"));
  EXPECT_EQ(list.Start()->Next(), list.First());
  EXPECT_EQ(static_cast<resbuf*>(list), list.First());
}

TEST_F(AListOfRecords, StepsForwardAndStopsAtTheEnd) {
  Listed list("1 2");
  EXPECT_EQ(list.GoNext(), 1);
  EXPECT_EQ(At(list), "1");
  EXPECT_TRUE(list.atFirst());
  EXPECT_FALSE(list.atLast());
  EXPECT_EQ(list.GoNext(), 1);
  EXPECT_EQ(At(list), "2");
  EXPECT_TRUE(list.atLast());
  EXPECT_EQ(list.GoNext(), 0);
  EXPECT_EQ(At(list), "2");
}

TEST_F(AListOfRecords, StepsBackToTheSentinelAndStopsThere) {
  Listed list("1 2");
  EXPECT_EQ(list.GoLast(), 1);
  EXPECT_EQ(At(list), "2");
  EXPECT_EQ(list.GoPrevious(), 1);
  EXPECT_EQ(At(list), "1");
  EXPECT_EQ(list.GoPrevious(), 1);
  EXPECT_EQ(At(list), "start");
  EXPECT_EQ(list.GoPrevious(), 0);
  EXPECT_EQ(At(list), "start");
  EXPECT_EQ(list.GoFirst(), 1);
  EXPECT_EQ(At(list), "1");
  EXPECT_EQ(list.GoStart(), 1);
  EXPECT_EQ(At(list), "start");
}

TEST_F(AListOfRecords, TheNeighboursOfARecordAreThoseInTheChain) {
  Listed list("1 2");
  const ResBuf stranger;
  EXPECT_EQ(list.Next(nullptr), nullptr);
  EXPECT_EQ(list.Next(list.Start()), list.First());
  EXPECT_EQ(list.Next(list.Last()), nullptr);
  EXPECT_EQ(list.Previous(list.Last()), list.First());
  EXPECT_EQ(list.Previous(list.First()), list.Start());
  EXPECT_EQ(list.Previous(list.Start()), nullptr);
  EXPECT_EQ(list.Previous(nullptr), nullptr);
  EXPECT_EQ(list.Previous(&stranger), nullptr);
}

TEST_F(AListOfRecords, TheTypeIsThatUnderTheCursor) {
  Listed list("( a");
  EXPECT_EQ(list.Type(), RTNONE);
  list.GoFirst();
  EXPECT_EQ(list.Type(), RTLB);
  list.GoNext();
  EXPECT_EQ(list.Type(), RTSTR);
}

TEST_F(AListOfRecords, ANestedListIsOneElementGoingForward) {
  struct Case {
    std::string chain;
    std::string from;
    std::string to;  // "" for nowhere
  };
  const Case cases[] = {
      {"1 ( 2 3 ) 4", "1", "("}, {"1 ( 2 3 ) 4", "(", "4"},
      {"1 ( 2 3 ) 4", "2", "3"}, {"1 ( 2 3 ) 4", "3", ")"},
      {"1 ( 2 3 ) 4", ")", "4"}, {"1 ( 2 3 ) 4", "4", ""},
      {"1 ( 2 )", "(", ""},      {"( ( 1 ) ( ( 2 ) 3 ) ) 4", "(", "4"},
      {"( ) 4", "(", "4"},       {"( 1 2", "(", ""},
      {"( ( 1 ) 2", "(", ""},    {"(", "(", ""},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.chain + " from " + each.from);
    Listed list(each.chain);
    ASSERT_TRUE(list.Find(each.from));
    ResBuf* const target = list.Record(each.to);
    EXPECT_EQ(list.NextElement(&list.Curr()), target);
    EXPECT_EQ(list.GoNextElement(), target != nullptr ? 1 : 0);
    EXPECT_EQ(At(list), target != nullptr ? each.to : each.from);
  }
}

TEST_F(AListOfRecords, ANestedListIsOneElementGoingBack) {
  struct Case {
    std::string chain;
    std::string from;
    int to;  // position in the chain from 1; 0 the sentinel, -1 nowhere
  };
  const Case cases[] = {
      {"1 ( 2 3 ) 4", "4", 2},   {"1 ( 2 3 ) 4", "(", 1},         {"1 ( 2 3 ) 4", ")", 4},
      {"1 ( 2 3 ) 4", "3", 3},   {"1 ( 2 3 ) 4", "1", 0},         {"( 2 ) 4", "4", -1},
      {"( 2 ) 4", "(", 0},       {"1 ( ( 2 ) ( 3 ) ) 4", "4", 2}, {"1 ( ) 4", "4", 2},
      {"( 1 ) ( 2 ) 4", "4", 4},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.chain + " from " + each.from);
    Listed list(each.chain);
    ASSERT_TRUE(list.Find(each.from));
    const ResBuf* target = each.to < 0 ? nullptr : list.Start();
    for (int i = 0; i < each.to; ++i) target = target->Next();
    const ResBuf* const from = &list.Curr();
    EXPECT_EQ(list.PreviousElement(from), target);
    EXPECT_EQ(&list.Curr(), from);
    EXPECT_EQ(list.GoPreviousElement(), target != nullptr ? 1 : 0);
    EXPECT_EQ(&list.Curr(), target != nullptr ? target : from);
    EXPECT_EQ(Show(list), each.chain);
  }
}

TEST_F(AListOfRecords, ThereIsNoElementBesideNullOrInFrontOfTheSentinel) {
  Listed list("1 ( 2 )");
  EXPECT_EQ(list.NextElement(nullptr), nullptr);
  EXPECT_EQ(list.NextElement(list.Start()), list.First());
  EXPECT_EQ(list.PreviousElement(nullptr), nullptr);
  EXPECT_EQ(list.PreviousElement(list.Start()), nullptr);
  EXPECT_EQ(list.GoPreviousElement(), 0);
}

// --- Reversing and printing ---

TEST_F(AListOfRecords, ReversesWithItsBrackets) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", ""},
      {"1", "1"},
      {"1 2 3", "3 2 1"},
      {"( 1 2 )", "( 2 1 )"},
      {"1 ( 2 ( 3 4 ) ) 5", "5 ( ( 4 3 ) 2 ) 1"},
      {"( 1", "1 )"},
  };
  for (const auto& [before, after] : cases) {
    Listed list(before);
    list.Reverse();
    EXPECT_EQ(Show(list), after);
    EXPECT_TRUE(list.atStart());
    list.Reverse();
    EXPECT_EQ(Show(list), before);
  }
}

TEST_F(AListOfRecords, TheCursorStaysOnItsRecordWhenReversed) {
  Listed list("1 2 3");
  list.GoFirst();
  const ResBuf* const record = &list.Curr();
  list.Reverse();
  EXPECT_EQ(&list.Curr(), record);
  EXPECT_EQ(At(list), "1");
  EXPECT_TRUE(list.atLast());
  EXPECT_EQ(list.Start()->Next(), list.First());
}

TEST_F(AListOfRecords, PrintsItsRecordsInAngleBrackets) {
  const Listed list("1 ( ab 2 )");
  list.Print();
  EXPECT_EQ(Printed(), "< 1 ( \"ab\" 2 ) >\n");
  ADSList().Print();
  EXPECT_EQ(Printed(), "< >\n");
}

TEST_F(AListOfRecords, ATextWithPercentSignsIsPrintedAsItIs) {
  const ADSList list(HeapChain({Str(L"%d%s")}), ADSCopyFlag::Adopt);
  list.Print();
  EXPECT_EQ(Printed(), "< \"%d%s\" >\n");
}

// --- Adding ---

TEST_F(AListOfRecords, AddsBehindTheCursorAndGoesToTheLastRecordAdded) {
  ADSList list;
  list.Add(Records("1 2"), ADSCopyFlag::Adopt);
  EXPECT_EQ(At(list), "2");
  list.Add(Records("3"), ADSCopyFlag::Adopt);
  EXPECT_EQ(Show(list), "1 2 3");
  EXPECT_EQ(At(list), "3");
  list.GoFirst();
  list.Add(Records("8 9"), ADSCopyFlag::Adopt);
  EXPECT_EQ(Show(list), "1 8 9 2 3");
  EXPECT_EQ(At(list), "9");
  list.GoStart();
  list.Add(Records("0"), ADSCopyFlag::Adopt);
  EXPECT_EQ(Show(list), "0 1 8 9 2 3");
  EXPECT_EQ(At(list), "0");
}

TEST_F(AListOfRecords, AdoptsTheVeryRecords) {
  for (const ADSCopyFlag flag :
       {ADSCopyFlag::Adopt, static_cast<ADSCopyFlag>(2), static_cast<ADSCopyFlag>(-1)}) {
    ResBuf* const chain = Records("a b");
    ADSList list;
    list.Add(chain, flag);
    EXPECT_EQ(list.First(), chain);
    EXPECT_EQ(list.Last(), chain->Next());

    resbuf* const plain = Records("c");
    list.Add(plain, flag);
    EXPECT_EQ(list.Last(), plain);
  }
}

TEST_F(AListOfRecords, CopiesAreDeepAndLeaveTheGivenChain) {
  const Listed source("a ( 1 )");
  ADSList list;
  list.Add(source.First(), ADSCopyFlag::Copy);
  EXPECT_EQ(At(list), ")");
  list.Add(static_cast<resbuf*>(source), ADSCopyFlag::Copy);
  EXPECT_EQ(Show(list), "a ( 1 ) a ( 1 )");
  EXPECT_EQ(Show(source), "a ( 1 )");
  EXPECT_NE(list.First(), source.First());
  EXPECT_NE(list.First()->resval.rstring, source.First()->resval.rstring);
}

TEST_F(AListOfRecords, AddsACopyOfAnotherList) {
  const Listed source("a 1");
  Listed list("8 9");
  list.GoFirst();
  list.Add(source);
  EXPECT_EQ(Show(list), "8 a 1 9");
  EXPECT_EQ(At(list), "1");
  EXPECT_EQ(Show(source), "a 1");
  list.Add(ADSList());
  EXPECT_EQ(Show(list), "8 a 1 9");
  EXPECT_EQ(At(list), "1");
}

TEST_F(AListOfRecords, AddsACopyOfItself) {
  Listed list("1 a");
  list.GoFirst();
  list.Add(list);
  EXPECT_EQ(Show(list), "1 1 a a");
  list.GoLast();
  list.Add(list.First(), ADSCopyFlag::Copy);
  EXPECT_EQ(Show(list), "1 1 a a 1 1 a a");
}

TEST_F(AListOfRecords, RefusesToAdoptItsOwnRecords) {
  Listed list("1 2 3");
  list.GoFirst();
  list.Add(list.First(), ADSCopyFlag::Adopt);
  list.Add(list.First()->Next(), ADSCopyFlag::Adopt);
  list.Add(static_cast<resbuf*>(list), ADSCopyFlag::Adopt);
  list.AddAsList(list.First(), ADSCopyFlag::Adopt);
  EXPECT_EQ(Show(list), "1 2 3");
  EXPECT_EQ(At(list), "1");
}

TEST_F(AListOfRecords, AddingNullDoesNothing) {
  Listed list("1 2");
  list.GoFirst();
  for (const ADSCopyFlag flag : {ADSCopyFlag::Adopt, ADSCopyFlag::Copy}) {
    list.Add(static_cast<ResBuf*>(nullptr), flag);
    list.Add(static_cast<resbuf*>(nullptr), flag);
  }
  EXPECT_EQ(Show(list), "1 2");
  EXPECT_EQ(At(list), "1");
}

TEST_F(AListOfRecords, AddsAsANestedList) {
  ADSList list;
  list.AddAsList(Records("1 2"), ADSCopyFlag::Adopt);
  EXPECT_EQ(Show(list), "( 1 2 )");
  EXPECT_EQ(At(list), ")");
  list.AddAsList(static_cast<resbuf*>(Records("a")), ADSCopyFlag::Adopt);
  const Listed source("3");
  list.AddAsList(source);
  list.AddAsList(source.First(), ADSCopyFlag::Copy);
  list.AddAsList(static_cast<resbuf*>(source), ADSCopyFlag::Copy);
  EXPECT_EQ(Show(list), "( 1 2 ) ( a ) ( 3 ) ( 3 ) ( 3 )");
  EXPECT_EQ(Show(source), "3");
}

TEST_F(AListOfRecords, AddsNothingAsAnEmptyNestedList) {
  ADSList list;
  list.AddAsList(static_cast<ResBuf*>(nullptr), ADSCopyFlag::Adopt);
  list.AddAsList(static_cast<resbuf*>(nullptr), ADSCopyFlag::Copy);
  list.AddAsList(ADSList());
  EXPECT_EQ(Show(list), "( ) ( ) ( )");
}

TEST_F(AListOfRecords, AddsANestedListBehindTheCursor) {
  Listed list("1 2");
  list.GoFirst();
  list.AddAsList(Records("a"), ADSCopyFlag::Adopt);
  EXPECT_EQ(Show(list), "1 ( a ) 2");
  EXPECT_EQ(At(list), ")");
}

TEST_F(AListOfRecords, IsConstructedFromAChainOrAnotherList) {
  const Listed source("1 ( a )");
  const ADSBaseList& base = source;
  const ADSList ofBase(base);
  const ADSList ofList(source);
  const ADSList ofCopy(source.First(), ADSCopyFlag::Copy);
  const ADSList ofPlainCopy(static_cast<resbuf*>(source), ADSCopyFlag::Copy);
  for (const ADSList* const list : {&ofBase, &ofList, &ofCopy, &ofPlainCopy}) {
    EXPECT_EQ(Show(*list), "1 ( a )");
    EXPECT_NE(list->First(), source.First());
    EXPECT_NE(list->Start(), source.Start());
    EXPECT_TRUE(list->atLast());
  }
  resbuf* const chain = Records("1 a");
  const ADSList adopted(chain, ADSCopyFlag::Adopt);
  EXPECT_EQ(adopted.First(), chain);
}

TEST_F(AListOfRecords, ACopyDoesNotTakeOverTheDeleteMode) {
  ADSList source(Records("1 a"), ADSCopyFlag::Adopt);
  source.DeleteMode(ADSDeleteFlag::Keep);
  resbuf* const chain = source;
  {
    ADSList copy(source);
    EXPECT_EQ(copy.DeleteMode(ADSDeleteFlag::Ask), ADSDeleteFlag::Release);
  }
  acutRelRb(chain);
}

TEST_F(AListOfRecords, ACopiedChainIsNullForNull) {
  const Listed list("1 2");
  EXPECT_EQ(list.Copy(nullptr), nullptr);
  ResBuf* const copy = list.Copy(list.Last());
  EXPECT_EQ(Show(copy), "2");
  const ADSList owner(copy, ADSCopyFlag::Adopt);
}

TEST_F(AListOfRecords, SplicesTheRecordsOfAnotherListIn) {
  Listed list("1 2");
  list.GoFirst();
  Listed other("a b");
  const ResBuf* const record = other.First();
  list.Splice(other);
  EXPECT_EQ(Show(list), "1 a b 2");
  EXPECT_EQ(At(list), "b");
  EXPECT_EQ(list.First()->Next(), record);
  ExpectEmpty(other);
  list.Splice(other);
  EXPECT_EQ(Show(list), "1 a b 2");
  EXPECT_EQ(At(list), "b");
  other.Add(Records("7"), ADSCopyFlag::Adopt);
  EXPECT_EQ(Show(other), "7");
}

// --- Deleting ---

TEST_F(AListOfRecords, DeletesTheRecordUnderTheCursor) {
  struct Case {
    std::string chain;
    std::string deleted;
    std::string rest;
    std::string cursor;
  };
  const Case cases[] = {
      {"1 a 3", "a", "1 3", "3"}, {"a 2 3", "a", "2 3", "2"}, {"1 2 a", "a", "1 2", "2"},
      {"a", "a", "", "start"},    {"( 1 )", "(", "1 )", "1"}, {"( 1 )", ")", "( 1", "1"},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.chain);
    Listed list(each.chain);
    ASSERT_TRUE(list.Find(each.deleted));
    EXPECT_EQ(list.Delete(), 1);
    EXPECT_EQ(Show(list), each.rest);
    EXPECT_EQ(At(list), each.cursor);
  }
}

TEST_F(AListOfRecords, DeletesNothingOnTheSentinel) {
  Listed list("1 2");
  EXPECT_EQ(list.Delete(), 0);
  EXPECT_EQ(Show(list), "1 2");
}

TEST_F(AListOfRecords, IsEmptyWhenEverythingIsDeleted) {
  Listed list("1 a 3");
  list.GoFirst();
  EXPECT_EQ(list.Delete(), 1);
  EXPECT_EQ(list.Delete(), 1);
  EXPECT_EQ(list.Delete(), 1);
  ExpectEmpty(list);
  EXPECT_EQ(list.Delete(), 0);
  list.Add(Records("5"), ADSCopyFlag::Adopt);
  EXPECT_EQ(Show(list), "5");
}

TEST_F(AListOfRecords, TheDeleteModeIsGivenAndSet) {
  ADSList list;
  EXPECT_EQ(list.DeleteMode(ADSDeleteFlag::Ask), ADSDeleteFlag::Release);
  EXPECT_EQ(list.DeleteMode(ADSDeleteFlag::Ask), ADSDeleteFlag::Release);
  EXPECT_EQ(list.DeleteMode(ADSDeleteFlag::Keep), ADSDeleteFlag::Release);
  EXPECT_EQ(list.DeleteMode(ADSDeleteFlag::Ask), ADSDeleteFlag::Keep);
  EXPECT_EQ(list.DeleteMode(ADSDeleteFlag::Release), ADSDeleteFlag::Keep);
  EXPECT_EQ(list.DeleteMode(ADSDeleteFlag::Ask), ADSDeleteFlag::Release);
}

TEST_F(AListOfRecords, KeptRecordsOutliveTheList) {
  resbuf* chain = nullptr;
  {
    Listed list("1 a ( b )");
    list.DeleteMode(ADSDeleteFlag::Keep);
    chain = list;
  }
  EXPECT_EQ(host.ledger.Live().blocks, 7u);
  EXPECT_EQ(Show(chain), "1 a ( b )");
  EXPECT_EQ(acutRelRb(chain), RTNORM);
}

TEST_F(AListOfRecords, ARecordIsDeletedWhateverTheDeleteMode) {
  Listed list("1 a 2");
  list.DeleteMode(ADSDeleteFlag::Keep);
  ASSERT_TRUE(list.Find("a"));
  EXPECT_EQ(list.Delete(), 1);
  EXPECT_EQ(host.ledger.Live().blocks, 3u);
  acutRelRb(list);
}

TEST_F(AListOfRecords, AListCanTakeItsRecordsBack) {
  Listed list("1 a 2");
  list.DeleteMode(ADSDeleteFlag::Keep);
  list.DeleteMode(ADSDeleteFlag::Release);
  EXPECT_EQ(Show(list), "1 a 2");
}

TEST_F(AListOfRecords, ClearReleasesTheRecordsAndLeavesAnEmptyList) {
  Listed list("1 a ( 2 )");
  list.GoLast();
  list.Clear();
  ExpectEmpty(list);
  EXPECT_EQ(list.Start()->Next(), nullptr);
  EXPECT_EQ(host.ledger.Live().blocks, 1u);
  list.Clear();
  ExpectEmpty(list);
  list.Add(Records("b"), ADSCopyFlag::Adopt);
  EXPECT_EQ(Show(list), "b");
}

TEST_F(AListOfRecords, ClearLeavesKeptRecordsAloneAndReleasesAgainAfterwards) {
  Listed list("1 a");
  list.DeleteMode(ADSDeleteFlag::Keep);
  resbuf* const chain = list;
  list.Clear();
  ExpectEmpty(list);
  EXPECT_EQ(list.DeleteMode(ADSDeleteFlag::Ask), ADSDeleteFlag::Release);
  EXPECT_EQ(Show(chain), "1 a");
  acutRelRb(chain);
}

TEST_F(AListOfRecords, OwnsAChainOfThePlatform) {
  resbuf* const chain = acutBuildList(RTSHORT, 1, RTLB, RTSTR, L"a", RTLE, 0);
  const ADSList list(chain, ADSCopyFlag::Adopt);
  EXPECT_EQ(Show(list), "1 ( a )");
}

// --- Memory ---

TEST_F(AListOfRecords, WithoutMemoryForItsSentinelItIsEmpty) {
  host.ledger.FailAllocation(1);
  ADSList list;
  EXPECT_EQ(list.Start(), nullptr);
  ExpectEmpty(list);
  EXPECT_EQ(list.Delete(), 0);
  list.Reverse();
  list.Print();
  EXPECT_EQ(Printed(), "< >\n");
  list.Clear();
}

TEST_F(AListOfRecords, WithoutMemoryForItsSentinelItLosesNothingThatItIsGiven) {
  host.ledger.FailAllocation(1);
  ADSList list;
  list.Add(Records("1 a"), ADSCopyFlag::Adopt);
  list.AddAsList(Records("2"), ADSCopyFlag::Adopt);
  list.Add(Listed("b"));
  Listed other("c");
  list.Splice(other);
}

TEST_F(AListOfRecords, ABracketWithoutMemoryIsLeftOut) {
  const std::string expected[] = {"1 )", "( 1"};
  for (uint64_t n = 1; n <= 2; ++n) {
    ResBuf* const chain = Records("1");
    ADSList list;
    host.ledger.FailAllocation(n);
    list.AddAsList(chain, ADSCopyFlag::Adopt);
    host.ledger.FailAllocation(0);
    EXPECT_EQ(Show(list), expected[n - 1]);
  }
}

TEST_F(AListOfRecords, ACopyEndsWhereMemoryRunsOut) {
  const Listed source("1 2 3");
  const std::string expected[] = {"", "1", "1 2", "1 2 3"};
  for (uint64_t n = 1; n <= 4; ++n) {
    ADSList list;
    host.ledger.FailAllocationsFrom(n);
    list.Add(source);
    host.ledger.FailAllocation(0);
    EXPECT_EQ(Show(list), expected[n - 1]);
    list.Add(Records("9"), ADSCopyFlag::Adopt);
    EXPECT_TRUE(list.atLast());
  }
}

TEST_F(AListOfRecords, TakesAHundredThousandRecordsWithoutTrouble) {
  ADSList list;
  for (int i = 0; i < 100000; ++i) list.AddAsList(static_cast<ResBuf*>(nullptr), ADSCopyFlag::Adopt);
  list.GoFirst();
  int elements = 1;
  while (list.GoNextElement() == 1) ++elements;
  EXPECT_EQ(elements, 100000);
  list.Reverse();
  const ADSList copy(list);
  EXPECT_EQ(copy.First()->Type(), RTLB);
  EXPECT_EQ(copy.Last()->Type(), RTLE);
}

}  // namespace
}  // namespace lomlisp::test
