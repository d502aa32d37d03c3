#include <tests/support/HostTest.h>

#include <lomlisp/platform/suite.h>

#include <cmath>
#include <cstring>

namespace lomlisp::test {
namespace {

using embedded::Chain;
using embedded::Check;
using embedded::Owner;
using embedded::Place;

class ChainTest : public HostTest {
 protected:
  // A chain of records without values; they live as long as the test.
  resbuf* Of(std::initializer_list<int> types) {
    resbuf* first = nullptr;
    resbuf** link = &first;
    for (const int type : types) {
      *link = m_records.emplace_back(std::make_unique<resbuf>()).get();
      (*link)->restype = static_cast<short>(type);
      link = &(*link)->rbnext;
    }
    return first;
  }

  std::string ObjectionTo(const resbuf* chain, Place place = Place::Items) {
    return Check(chain, host.ledger, place).value_or("");
  }
  std::string ObjectionTo(std::initializer_list<int> types, Place place = Place::Items) {
    return ObjectionTo(Of(types), place);
  }

 private:
  std::vector<std::unique_ptr<resbuf>> m_records;
};

constexpr int kShort = RTSHORT;
constexpr int kOpen = RTLB;
constexpr int kClose = RTLE;
constexpr int kDot = RTDOTE;

TEST_F(ChainTest, GoodChainsAreAccepted) {
  EXPECT_EQ(ObjectionTo(nullptr), "");
  EXPECT_EQ(ObjectionTo({kShort}), "");
  EXPECT_EQ(ObjectionTo({kShort, RTREAL, RTNIL, RTT, RTVOID, RTNONE, RTINT64}), "");
  EXPECT_EQ(ObjectionTo({kOpen, kClose}), "");
  EXPECT_EQ(ObjectionTo({kOpen, kOpen, kShort, kClose, kClose, kShort}), "");
  EXPECT_EQ(ObjectionTo({-1, 0, 8, 10, 62, -3, 1001, 1071}), "");
}

TEST_F(ChainTest, BothFormsOfDottedPairsAreAccepted) {
  EXPECT_EQ(ObjectionTo({kOpen, kShort, kDot, kShort, kClose}), "");
  EXPECT_EQ(ObjectionTo({kOpen, kShort, kShort, kDot}), "");
  EXPECT_EQ(ObjectionTo({kOpen, kOpen, kShort, kShort, kDot, kShort, kClose}), "");
  EXPECT_EQ(ObjectionTo({kOpen, kOpen, kShort, kShort, kDot, kOpen, kShort, kShort, kDot, kDot}), "");
  EXPECT_EQ(ObjectionTo({kOpen, kOpen, kShort, kShort, kDot, kOpen, kShort, kDot, kShort, kClose, kClose}),
            "");
}

TEST_F(ChainTest, LongerDottedListsAreAccepted) {
  EXPECT_EQ(ObjectionTo({kOpen, kShort, kShort, kDot, kShort, kClose}), "");
  EXPECT_EQ(ObjectionTo({kOpen, kShort, kShort, kShort, kDot, kShort, kClose}), "");
  EXPECT_EQ(ObjectionTo({kOpen, kShort, kDot, kShort, kShort, kShort, kClose}), "");
}

TEST_F(ChainTest, MisplacedBracketsAreObjectedTo) {
  EXPECT_EQ(ObjectionTo({kClose}), "an end of a list without its beginning (record 1)");
  EXPECT_EQ(ObjectionTo({kOpen, kClose, kClose}), "an end of a list without its beginning (record 3)");
  EXPECT_EQ(ObjectionTo({kOpen}), "a list that does not end");
  EXPECT_EQ(ObjectionTo({kOpen, kOpen, kShort, kClose}), "a list that does not end");
}

TEST_F(ChainTest, MisplacedDotsAreObjectedTo) {
  EXPECT_EQ(ObjectionTo({kDot}), "a dot outside a list (record 1)");
  EXPECT_EQ(ObjectionTo({kShort, kDot, kShort}), "a dot outside a list (record 2)");
  EXPECT_EQ(ObjectionTo({kOpen, kDot, kShort, kClose}), "a dot with nothing before it (record 2)");
  EXPECT_EQ(ObjectionTo({kOpen, kShort, kDot, kClose}), "a dot with nothing behind it (record 4)");
  EXPECT_EQ(ObjectionTo({kOpen, kShort, kShort, kDot, kClose}), "a dot with nothing behind it (record 5)");
  EXPECT_EQ(ObjectionTo({kOpen, kShort, kDot, kShort, kDot, kShort, kClose}),
            "a second dot in a list (record 5)");
  EXPECT_EQ(ObjectionTo({kOpen, kShort, kDot}), "a list that does not end");
}

TEST_F(ChainTest, TheInsideOfAListMayHaveADot) {
  EXPECT_EQ(ObjectionTo(nullptr, Place::InsideOfList), "");
  EXPECT_EQ(ObjectionTo({kShort, kDot, kShort}, Place::InsideOfList), "");
  EXPECT_EQ(ObjectionTo({kShort, kShort, kDot}, Place::InsideOfList), "");
  EXPECT_EQ(ObjectionTo({kOpen, kShort, kShort, kDot}, Place::InsideOfList), "");
  EXPECT_EQ(ObjectionTo({kOpen, kShort, kShort, kDot, kShort}, Place::InsideOfList), "");
  EXPECT_EQ(ObjectionTo({kDot, kShort}, Place::InsideOfList), "a dot with nothing before it (record 1)");
  EXPECT_EQ(ObjectionTo({kShort, kDot}, Place::InsideOfList), "a dot with nothing behind it");
  EXPECT_EQ(ObjectionTo({kShort, kClose}, Place::InsideOfList),
            "an end of a list without its beginning (record 2)");
  EXPECT_EQ(ObjectionTo({kOpen, kShort}, Place::InsideOfList), "a list that does not end");
}

TEST_F(ChainTest, UnknownTypesAreObjectedTo) {
  for (const int type : {5011, 5013, 5015, 5022, 5030, 5032, 4999, -6, 80, 1072, 32767, -32768})
    EXPECT_EQ(ObjectionTo({kShort, type}), "unknown type " + std::to_string(type) + " (record 2)");
}

TEST_F(ChainTest, EveryKnownTypeIsKnown) {
  for (int type = -10; type < 6000; ++type) {
    const auto code = static_cast<short>(type);
    const bool isResultType =
        (type >= 5000 && type <= 5010) || type == 5014 || (type >= 5016 && type <= 5021) || type == 5031;
    EXPECT_EQ(embedded::IsKnown(code), isResultType || DxfType(code) != code) << type;
    EXPECT_EQ(embedded::HoldsText(code), type == 5005 || type == 5020 || DxfType(code) == RTSTR) << type;
  }
}

TEST_F(ChainTest, RingsAreObjectedToWhereverTheyClose) {
  for (const size_t length : {1U, 2U, 7U, 1000U})
    for (const size_t target : {size_t{0}, length / 2, length - 1}) {
      std::vector<resbuf> records(length);
      for (size_t index = 0; index < length; ++index) {
        records[index].restype = RTSHORT;
        records[index].rbnext = &records[index + 1 < length ? index + 1 : target];
      }
      EXPECT_EQ(ObjectionTo(records.data()), "the chain is a ring");
    }
}

TEST_F(ChainTest, NumbersUnderATextCodeAreObjectedTo) {
  for (const int type : {int{RTSTR}, int{RTDXF0}, 8, 1000}) {
    resbuf* chain = Of({type});
    EXPECT_EQ(ObjectionTo(chain), "");
    for (const uint64_t number : {uint64_t{1}, uint64_t{5}, uint64_t{0xFFFC}, uint64_t{1} << 47,
                                  uint64_t{0x10001}, ~uint64_t{0}, uint64_t{0x4004000000000000}}) {
      std::memcpy(&chain->resval.rstring, &number, sizeof chain->resval.rstring);
      EXPECT_EQ(ObjectionTo(chain), "a text pointer that cannot be one (record 1)") << number;
    }
  }
}

TEST_F(ChainTest, TextsMustEndWithinTheirBlock) {
  auto* text = static_cast<wchar_t*>(acad_malloc(4 * sizeof(wchar_t)));
  std::wmemset(text, L'a', 4);
  resbuf* chain = Of({kShort, 1});
  chain->rbnext->resval.rstring = text;
  EXPECT_EQ(ObjectionTo(chain), "a text that does not end within its block (record 2)");
  chain->rbnext->resval.rstring = text + 2;
  EXPECT_EQ(ObjectionTo(chain), "a text that does not end within its block (record 2)");
  text[3] = 0;
  EXPECT_EQ(ObjectionTo(chain), "");
  acad_free(text);
  chain->rbnext->resval.rstring = text;
  EXPECT_EQ(ObjectionTo(chain), "a text that was freed (record 2)");
}

TEST_F(ChainTest, TheClientsOwnTextsAreAccepted) {
  wchar_t text[] = L"local";
  resbuf* chain = Of({RTSTR});
  chain->resval.rstring = text;
  EXPECT_EQ(ObjectionTo(chain), "");
}

TEST_F(ChainTest, FreedRecordsAndWrongLinksAreObjectedTo) {
  resbuf* chain = acutBuildList(RTSHORT, 1, RTSHORT, 2, 0);
  resbuf* second = chain->rbnext;
  acutRelRb(second);
  EXPECT_EQ(ObjectionTo(chain), "a record that was freed (record 2)");
  chain->rbnext = reinterpret_cast<resbuf*>(0x8);
  EXPECT_EQ(ObjectionTo(chain), "a link that cannot be one (record 2)");
  chain->rbnext = nullptr;
  acutRelRb(chain);
}

TEST_F(ChainTest, ADeepChainIsChecked) {
  constexpr size_t kDepth = kLarge;
  std::vector<resbuf> records(2 * kDepth);
  for (size_t index = 0; index < records.size(); ++index) {
    records[index].restype = index < kDepth ? RTLB : RTLE;
    records[index].rbnext = index + 1 < records.size() ? &records[index + 1] : nullptr;
  }
  EXPECT_EQ(ObjectionTo(records.data()), "");
  records.back().restype = RTSHORT;
  EXPECT_EQ(ObjectionTo(records.data()), "a list that does not end");
}

// --- Copies ---

// One record of each kind of value.
resbuf* EveryKind() {
  const ads_point point = {1.5, -2.5, 3.5};
  const ads_name name = {0x1F, 7};
  return acutBuildList(RTSTR, L"text", RTSTR, nullptr, RTSHORT, -7, RTLONG, 70000, RTINT64, 1LL << 40, RTREAL,
                       0.5, RTANG, 1.5, RTORINT, 2.5, RTPOINT, point, RT3DPOINT, point, RTENAME, name,
                       RTPICKS, name, RTDXF0, L"LINE", 8, L"layer", 10, point, 62, 3, 90, 100000, 160, 5LL,
                       40, 4.5, -1, name, RTLB, RTT, RTDOTE, RTNIL, RTLE, RTVOID, RTNONE, 0);
}

TEST_F(ChainTest, ACopyMatchesWhatItWasMadeOf) {
  resbuf* chain = EveryKind();
  ASSERT_NE(chain, nullptr);
  const Chain copy = embedded::Capture(chain);
  EXPECT_TRUE(embedded::Matches(chain, copy));
  resbuf* second = embedded::Materialise(copy, host.ledger, Owner::Client);
  EXPECT_TRUE(embedded::Matches(second, copy));
  EXPECT_NE(second->resval.rstring, chain->resval.rstring);
  EXPECT_EQ(second->rbnext->resval.rstring, nullptr);
  acutRelRb(chain);
  EXPECT_STREQ(second->resval.rstring, L"text");
  embedded::ReleaseChain(second, host.ledger);
}

TEST_F(ChainTest, EveryChangeOfAValueIsSeen) {
  resbuf* chain = EveryKind();
  const Chain copy = embedded::Capture(chain);
  for (resbuf* record = chain; record != nullptr; record = record->rbnext) {
    const resbuf original = *record;
    const short type = DxfType(record->restype);
    record->restype = RTPICKS == type ? RTENAME : RTPICKS;
    EXPECT_FALSE(embedded::Matches(chain, copy)) << original.restype;
    *record = original;
    const bool hasValue = type < RTVOID || type == RTINT64 || type == RTDXF0;
    if (!hasValue || type == RTNONE) continue;
    wchar_t other[] = L"textual";
    if (embedded::HoldsText(type))
      record->resval.rstring = other;
    else
      reinterpret_cast<unsigned char&>(record->resval) ^= 1;
    EXPECT_FALSE(embedded::Matches(chain, copy)) << original.restype;
    *record = original;
    EXPECT_TRUE(embedded::Matches(chain, copy)) << original.restype;
  }
  acutRelRb(chain);
}

TEST_F(ChainTest, AShorterOrLongerChainDoesNotMatch) {
  TextChain chain(L"1 2");
  const Chain copy = embedded::Capture(chain);
  EXPECT_FALSE(embedded::Matches(TextChain(L"1"), copy));
  EXPECT_FALSE(embedded::Matches(TextChain(L"1 2 3"), copy));
  EXPECT_FALSE(embedded::Matches(nullptr, copy));
  EXPECT_TRUE(embedded::Matches(nullptr, Chain()));
}

TEST_F(ChainTest, NotANumberMatchesItself) {
  resbuf* chain = acutBuildList(RTREAL, std::nan(""), 0);
  EXPECT_TRUE(embedded::Matches(chain, embedded::Capture(chain)));
  acutRelRb(chain);
}

TEST_F(ChainTest, AnEmptyChainIsNull) {
  EXPECT_EQ(embedded::Materialise({}, host.ledger, Owner::Client), nullptr);
  EXPECT_TRUE(embedded::Capture(nullptr).empty());
}

TEST_F(ChainTest, NothingIsLeftWhenMemoryRunsOut) {
  resbuf* source = EveryKind();
  const Chain copy = embedded::Capture(source);
  acutRelRb(source);
  const auto before = host.ledger.Live();
  uint64_t n = 1;
  for (;; ++n) {
    host.ledger.FailAllocation(n);
    resbuf* chain = embedded::Materialise(copy, host.ledger, Owner::Client);
    if (chain != nullptr) {
      embedded::ReleaseChain(chain, host.ledger);
      break;
    }
    EXPECT_TRUE(host.ledger.Live() == before);
  }
  host.ledger.FailAllocation(0);
  EXPECT_GT(n, copy.size());
}

// --- The list builder ---

TEST_F(ChainTest, TheBuilderTakesAValueByItsType) {
  resbuf* chain = EveryKind();
  EXPECT_EQ(Text(chain),
            "\"text\" \"\" -7 70000 1099511627776 0.5 1.5 2.5 (1.5 -2.5) (1.5 -2.5 3.5) <Entity name: 1f> "
            "<Selection set: 1f> \"LINE\" (8 . \"layer\") (10 1.5 -2.5 3.5) (62 . 3) (90 . 100000) (160 . 5) "
            "(40 . 4.5) (-1 . <Entity name: 1f>) (T . nil) nil nil");
  acutRelRb(chain);
}

TEST_F(ChainTest, TheBuilderClearsTheThirdCoordinateOfAFlatPoint) {
  const ads_point point = {1.0, 2.0, 3.0};
  resbuf* chain = acutBuildList(RTPOINT, point, 0);
  EXPECT_EQ(chain->resval.rpoint[1], 2.0);
  EXPECT_EQ(chain->resval.rpoint[2], 0.0);
  acutRelRb(chain);
}

TEST_F(ChainTest, TheBuilderTakesAGroupZeroFirst) {
  resbuf* chain = acutBuildList(0, L"LINE", 8, L"0", 0);
  EXPECT_EQ(Text(chain), "(0 . \"LINE\") (8 . \"0\")");
  acutRelRb(chain);
}

TEST_F(ChainTest, TheBuilderRefusesUnknownTypesAndNullArrays) {
  const double* noPoint = nullptr;
  const __int64* noName = nullptr;
  EXPECT_EQ(acutBuildList(5025, 0), nullptr);
  EXPECT_EQ(acutBuildList(RTSTR, L"text", 99999, 0), nullptr);
  EXPECT_EQ(acutBuildList(RTSTR, L"text", RT3DPOINT, noPoint, 0), nullptr);
  EXPECT_EQ(acutBuildList(RTSTR, L"text", RTENAME, noName, 0), nullptr);
}

TEST_F(ChainTest, TheBuilderLeavesNothingWhenMemoryRunsOut) {
  for (uint64_t n = 1; n <= 4; ++n) {
    host.ledger.FailAllocation(n);
    EXPECT_EQ(acutBuildList(RTSTR, L"one", 8, L"two", 0), nullptr);
  }
  resbuf* chain = acutBuildList(RTSTR, L"one", 8, L"two", 0);
  EXPECT_NE(chain, nullptr);
  acutRelRb(chain);
}

}  // namespace
}  // namespace lomlisp::test
