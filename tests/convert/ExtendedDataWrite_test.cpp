// Values to groups of extended data.
#include <tests/support/Chains.h>
#include <tests/support/SmallStack.h>

#include <memory>

namespace lomlisp::test {
namespace {

constexpr const char* kUnsupported = "CLOMAdsLispVar::LispToXData : Nicht unterstuetztes Atom !\n";
constexpr const char* kDotted = "LispVaribale::LispToXData : Dotted Pairs werden nicht unterstuetzt !\n";

// A chain as in "1002:{ 1070:1 1040:2.5 1000:a 1002:}".
std::string Groups(const resbuf* chain) {
  std::ostringstream groups;
  for (; chain != nullptr; chain = chain->rbnext) {
    groups << chain->restype << ':';
    switch (DxfType(chain->restype)) {
      case RTSHORT:
        groups << chain->resval.rint;
        break;
      case RTLONG:
        groups << chain->resval.rlong;
        break;
      case RTREAL:
        groups << chain->resval.rreal;
        break;
      case RTSTR:
        groups << (chain->resval.rstring != nullptr ? Utf8(chain->resval.rstring) : "<null>");
        break;
      default:
        break;
    }
    if (chain->rbnext != nullptr) groups << ' ';
  }
  return groups.str();
}

CLOMAdsLispVar Atom(const resbuf& record) {
  CLOMAdsLispVar value(short{1});
  value.GetAtom() = record;
  return value;
}

// Atoms that have no group code of their own.
std::vector<CLOMAdsLispVar> UnsupportedAtoms() {
  CLOMAdsLispVar layer(L"layer");
  layer.GetAtom().MakeDXF(8);
  return {Atom(Name(7)),
          Atom(Name(7, RTPICKS)),
          Atom(Point(1, 2, 3)),
          Atom(Point(1, 2, 0, RTPOINT)),
          Atom(Real(1, RTANG)),
          Atom(Real(1, RTORINT)),
          Atom(NoValue(RTT)),
          Atom(NoValue(RTVOID)),
          Atom(NoValue(RTLB)),
          Atom(NoValue(5025)),
          Atom(Short(7, 62)),
          Atom(Short(7, 1070)),
          Atom(Real(7, 1040)),
          CLOMAdsLispVar(Records{String(L"LINE", RTDXF0)}),
          layer};
}

class ExtendedDataWrite : public HostTest {
 protected:
  // The groups of a value that can be written without a message, by both forms.
  std::string Write(const CLOMAdsLispVar& value) {
    ADSList byMember, byStatic;
    EXPECT_TRUE(value.LispToXData(byMember));
    EXPECT_TRUE(CLOMAdsLispVar::LispToXData(value.New(), byStatic));
    EXPECT_EQ(Groups(byMember), Groups(byStatic));
    EXPECT_EQ(Printed(), "");
    return Groups(byMember);
  }
  // The groups that a value leaves in spite of its failure, and what it prints.
  void CheckFails(const CLOMAdsLispVar& value, const std::string& groups, const std::string& message) {
    ADSList byMember, byStatic;
    EXPECT_FALSE(value.LispToXData(byMember));
    EXPECT_EQ(Groups(byMember), groups);
    EXPECT_EQ(Printed(), message);
    EXPECT_FALSE(CLOMAdsLispVar::LispToXData(value.New(), byStatic));
    EXPECT_EQ(Groups(byStatic), groups);
    EXPECT_EQ(Printed(), message);
  }
};

// --- Atoms ---

TEST_F(ExtendedDataWrite, AnAtomIsOneGroup) {
  EXPECT_EQ(Write(short{5}), "1070:5");
  EXPECT_EQ(Write(short{-32768}), "1070:-32768");
  EXPECT_EQ(Write(70000L), "1071:70000");
  EXPECT_EQ(Write(-1L), "1071:-1");
  EXPECT_EQ(Write(2.5), "1040:2.5");
  EXPECT_EQ(Write(L"text"), "1000:text");
  EXPECT_EQ(Write(L""), "1000:");
  EXPECT_EQ(Write(L"\u00E4\u00DF"), "1000:\u00E4\u00DF");
  EXPECT_EQ(Write(L"{"), "1000:{");
  EXPECT_EQ(Write(L"}"), "1000:}");
}

TEST_F(ExtendedDataWrite, A64BitIntegerKeepsItsValueUnderTheCodeOfAShort) {
  const CLOMAdsLispVar value((1LL << 40) + 5);
  ADSList target;
  EXPECT_TRUE(value.LispToXData(target));
  ASSERT_FALSE(target.isNIL());
  EXPECT_EQ(target.First()->Type(), 1070);
  EXPECT_EQ(target.First()->resval.mnInt64, (1LL << 40) + 5);
  EXPECT_EQ(target.First()->Next(), nullptr);
}

TEST_F(ExtendedDataWrite, ANullTextStaysNull) {
  EXPECT_EQ(Write(CLOMAdsLispVar(Records{String(nullptr)})), "1000:<null>");
}

TEST_F(ExtendedDataWrite, RefusesAtomsOfOtherTypes) {
  for (const CLOMAdsLispVar& value : UnsupportedAtoms()) CheckFails(value, "", kUnsupported);
}

// --- Lists ---

TEST_F(ExtendedDataWrite, NilIsAPairOfBraces) {
  EXPECT_EQ(Write(CLOMAdsLisp::Nil), "1002:{ 1002:}");
  EXPECT_EQ(Write(Atom(NoValue(RTNIL))), "1002:{ 1002:}");
  EXPECT_EQ(Write(ListOf({})), "1002:{ 1002:}");
  EXPECT_EQ(Write(Atom(NoValue(RTNONE))), "1002:{ 1002:}");
}

TEST_F(ExtendedDataWrite, AListStandsInBraces) {
  EXPECT_EQ(Write(V(L"(1 2.5 \"s\")")), "1002:{ 1070:1 1040:2.5 1000:s 1002:}");
  EXPECT_EQ(Write(V(L"(1 (2 (3)) 4)")),
            "1002:{ 1070:1 1002:{ 1070:2 1002:{ 1070:3 1002:} 1002:} 1070:4 1002:}");
  EXPECT_EQ(Write(ListOf({ListOf({}), 70000L})), "1002:{ 1002:{ 1002:} 1071:70000 1002:}");
}

TEST_F(ExtendedDataWrite, NilWithinAListIsAPairOfBraces) {
  EXPECT_EQ(Write(ListOf({CLOMAdsLisp::Nil, 1, Atom(NoValue(RTNIL))})),
            "1002:{ 1002:{ 1002:} 1070:1 1002:{ 1002:} 1002:}");
}

TEST_F(ExtendedDataWrite, APointIsAListOfReals) {
  const double point[3] = {1.5, 2, 3};
  EXPECT_EQ(Write(point), "1002:{ 1040:1.5 1040:2 1040:3 1002:}");
}

TEST_F(ExtendedDataWrite, APartThatIsSharedIsWrittenEachTime) {
  const CLOMAdsLispVar part = V(L"(1 \"a\")");
  EXPECT_EQ(Write(ListOf({part, part})),
            "1002:{ 1002:{ 1070:1 1000:a 1002:} 1002:{ 1070:1 1000:a 1002:} 1002:}");
}

TEST_F(ExtendedDataWrite, AnUnsupportedMemberIsLeftOutOfItsList) {
  for (const CLOMAdsLispVar& member : UnsupportedAtoms()) {
    ADSList target;
    EXPECT_TRUE(ListOf({1, member, L"a"}).LispToXData(target));
    EXPECT_EQ(Groups(target), "1002:{ 1070:1 1000:a 1002:}");
    EXPECT_EQ(Printed(), kUnsupported);
  }
}

TEST_F(ExtendedDataWrite, EachUnsupportedMemberIsReported) {
  const CLOMAdsLispVar name = Atom(Name(7));
  ADSList target;
  EXPECT_TRUE(ListOf({name, ListOf({name, 2}), name}).LispToXData(target));
  EXPECT_EQ(Groups(target), "1002:{ 1002:{ 1070:2 1002:} 1002:}");
  EXPECT_EQ(Printed(), std::string(kUnsupported) + kUnsupported + kUnsupported);
}

// --- Dotted lists ---

TEST_F(ExtendedDataWrite, ADottedListIsWrittenAsAListAndRefused) {
  CheckFails(V(L"(1 . 2)"), "1002:{ 1070:1 1070:2 1002:}", kDotted);
  CheckFails(Dotted({1, 2, L"a"}), "1002:{ 1070:1 1070:2 1000:a 1002:}", kDotted);
  CheckFails(Dotted({1}), "1002:{ 1070:1 1002:}", kDotted);
  CheckFails(Dotted({}), "1002:{ 1002:}", kDotted);
  CheckFails(Dotted({1, V(L"(2 3)")}), "1002:{ 1070:1 1002:{ 1070:2 1070:3 1002:} 1002:}", kDotted);
  CheckFails(Dotted({CLOMAdsLisp::Nil, CLOMAdsLisp::Nil}), "1002:{ 1002:{ 1002:} 1002:{ 1002:} 1002:}",
             kDotted);
}

TEST_F(ExtendedDataWrite, ADottedMemberOnlyPrints) {
  ADSList target;
  EXPECT_TRUE(V(L"(0 (1 . 2) 3)").LispToXData(target));
  EXPECT_EQ(Groups(target), "1002:{ 1070:0 1002:{ 1070:1 1070:2 1002:} 1070:3 1002:}");
  EXPECT_EQ(Printed(), kDotted);
}

TEST_F(ExtendedDataWrite, MessagesComeInTheOrderOfTheTreeAndThatOfADottedListAfterItsMembers) {
  const CLOMAdsLispVar name = Atom(Name(7));
  CheckFails(Dotted({1, name}), "1002:{ 1070:1 1002:}", std::string(kUnsupported) + kDotted);
  CheckFails(Dotted({Dotted({1, 2}), name}), "1002:{ 1002:{ 1070:1 1070:2 1002:} 1002:}",
             std::string(kDotted) + kUnsupported + kDotted);
  ADSList target;
  EXPECT_TRUE(ListOf({Dotted({name, 1}), name, ListOf({Dotted({2, 3})})}).LispToXData(target));
  EXPECT_EQ(Groups(target), "1002:{ 1002:{ 1070:1 1002:} 1002:{ 1002:{ 1070:2 1070:3 1002:} 1002:} 1002:}");
  EXPECT_EQ(Printed(), std::string(kUnsupported) + kDotted + kUnsupported + kDotted);
}

// --- The target ---

TEST_F(ExtendedDataWrite, AppendsAtTheEndWhereverTheCursorStands) {
  for (const bool byStatic : {false, true}) {
    const auto write = [byStatic](const CLOMAdsLispVar& value, ADSList& target) {
      return byStatic ? CLOMAdsLispVar::LispToXData(value.New(), target) : value.LispToXData(target);
    };
    ADSList target(new ResBuf(short{7}), ADSCopyFlag::Adopt);
    target.Add(new ResBuf(short{8}), ADSCopyFlag::Adopt);
    target.GoStart();
    EXPECT_TRUE(write(V(L"(1 (\"a\"))"), target));
    target.GoFirst();
    EXPECT_TRUE(write(V(L"9"), target));
    target.GoStart();
    EXPECT_TRUE(write(CLOMAdsLisp::Nil, target));
    EXPECT_EQ(Types(target), "5003:7 5003:8 1002:{ 1070 1002:{ 1000:a 1002:} 1002:} 1070 1002:{ 1002:}");
  }
}

TEST_F(ExtendedDataWrite, LeavesTheCursorOnItsLastRecord) {
  ADSList target(new ResBuf(short{7}), ADSCopyFlag::Adopt);
  target.GoStart();
  EXPECT_TRUE(V(L"(1 2)").LispToXData(target));
  EXPECT_TRUE(target.atLast());
  EXPECT_EQ(Groups(&target.Curr()), "1002:}");
}

TEST_F(ExtendedDataWrite, ARefusedAtomLeavesTheTargetsRecords) {
  ADSList target(new ResBuf(short{7}), ADSCopyFlag::Adopt);
  EXPECT_FALSE(Atom(Name(7)).LispToXData(target));
  EXPECT_EQ(Types(target), "5003:7");
  EXPECT_EQ(Printed(), kUnsupported);
}

TEST_F(ExtendedDataWrite, TheRecordsAreNewAndTheValueStays) {
  const CLOMAdsLispVar value = V(L"(1 (\"a\" 2.5))");
  const std::string before = Tree(value);
  ADSList target;
  EXPECT_TRUE(value.LispToXData(target));
  EXPECT_EQ(Tree(value), before);
  EXPECT_EQ(value.New()->children[1]->children[0]->atom.Type(), RTSTR);
  target.GoFirst();
  for (int i = 0; i < 3; ++i) EXPECT_EQ(target.GoNext(), 1);
  EXPECT_STREQ(target.Curr().resval.rstring, L"a");
  EXPECT_NE(target.Curr().resval.rstring, value.New()->children[1]->children[0]->atom.resval.rstring);
}

// --- Whose the texts are ---

TEST_F(ExtendedDataWrite, TheGroupsOutliveTheValueAndTheOtherWayRound) {
  CLOMAdsLispVar value = V(L"(\"a\" (\"b\"))");
  ADSList kept;
  {
    ADSList target;
    EXPECT_TRUE(value.LispToXData(target));
    EXPECT_TRUE(value.LispToXData(kept));
  }
  EXPECT_EQ(Tree(value), "(5005:a (5005:b))");
  value.Clean();
  EXPECT_EQ(Groups(kept), "1002:{ 1000:a 1002:{ 1000:b 1002:} 1002:}");
}

TEST_F(ExtendedDataWrite, CopiesOfTheGroupsOutliveEachOther) {
  auto target = std::make_unique<ADSList>();
  EXPECT_TRUE(V(L"(\"a\" 1)").LispToXData(*target));
  auto copy = std::make_unique<ADSList>(*target);
  const ADSList second(copy->First(), ADSCopyFlag::Copy);
  target.reset();
  EXPECT_EQ(Groups(*copy), "1002:{ 1000:a 1070:1 1002:}");
  copy.reset();
  EXPECT_EQ(Groups(second), "1002:{ 1000:a 1070:1 1002:}");
}

TEST_F(ExtendedDataWrite, AClearedTargetKeepsNoText) {
  ADSList target;
  const embedded::Balance before = host.ledger.Live();
  EXPECT_TRUE(V(L"(\"a\" (\"b\") nil)").LispToXData(target));
  EXPECT_GT(host.ledger.Live().blocks, before.blocks);
  target.Clear();
  EXPECT_TRUE(host.ledger.Live() == before);
}

TEST_F(ExtendedDataWrite, ADeletedGroupTakesItsTextAlong) {
  ADSList target;
  EXPECT_TRUE(V(L"(\"a\" 1)").LispToXData(target));
  const size_t before = host.ledger.Live().blocks;
  target.GoFirst();
  target.GoNext();
  EXPECT_EQ(target.Delete(), 1);
  EXPECT_EQ(Groups(target), "1002:{ 1070:1 1002:}");
  EXPECT_EQ(host.ledger.Live().blocks, before - 2);
}

TEST_F(ExtendedDataWrite, AKeptChainBelongsToThePlatform) {
  resbuf* chain = nullptr;
  {
    ADSList target;
    EXPECT_TRUE(V(L"(\"a\" 1 (2.5 \"b\"))").LispToXData(target));
    target.DeleteMode(ADSDeleteFlag::Keep);
    chain = target;
  }
  EXPECT_EQ(Groups(chain), "1002:{ 1000:a 1070:1 1002:{ 1040:2.5 1000:b 1002:} 1002:}");
  EXPECT_EQ(acutRelRb(chain), RTNORM);
}

TEST_F(ExtendedDataWrite, AFailureLosesNoText) {
  ADSList target;
  EXPECT_FALSE(Dotted({L"a", ListOf({L"b", Atom(Name(7))})}).LispToXData(target));
  EXPECT_EQ(Groups(target), "1002:{ 1000:a 1002:{ 1000:b 1002:} 1002:}");
  target.DeleteMode(ADSDeleteFlag::Keep);
  EXPECT_EQ(acutRelRb(target), RTNORM);
  Printed();
}

TEST_F(ExtendedDataWrite, SurvivesEachFailedAllocation) {
  const CLOMAdsLispVar value = V(L"(\"a\" (1 \"b\") nil 2.5)");
  FailEachAllocation([&] {
    ADSList target;
    value.LispToXData(target);
    return Groups(target) == "1002:{ 1000:a 1002:{ 1070:1 1000:b 1002:} 1002:{ 1002:} 1040:2.5 1002:}";
  });
  FailEachAllocation([] {
    ADSList target;
    CLOMAdsLispVar(L"text").LispToXData(target);
    return Groups(target) == "1000:text";
  });
}

TEST_F(ExtendedDataWrite, SurvivesAnEmptyHeap) {
  const CLOMAdsLispVar value = V(L"(\"a\" (1 . \"b\"))");
  ADSList target;
  host.ledger.FailAllocationsFrom(1);
  value.LispToXData(target);
  host.ledger.FailAllocation(0);
  EXPECT_EQ(Groups(target), "");
  EXPECT_TRUE(V(L"7").LispToXData(target));
  EXPECT_EQ(Groups(target), "1070:7");
  Printed();
}

// --- Size ---

// A pair of braces takes four blocks of the platform's heap, whose books take their room too.
constexpr size_t kDepth = kLarge / 4;

TEST_F(ExtendedDataWrite, WritesDeepValuesOnASmallStack) {
  OnSmallStack([&] {
    ADSList target;
    EXPECT_TRUE(Nested(kDepth, short{5}).LispToXData(target));
    const resbuf* record = target;
    size_t open = 0, close = 0;
    for (; record != nullptr && record->restype == 1002; record = record->rbnext) ++open;
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->restype, 1070);
    for (record = record->rbnext; record != nullptr; record = record->rbnext) ++close;
    EXPECT_EQ(open, kDepth);
    EXPECT_EQ(close, kDepth);
  });
  EXPECT_EQ(Printed(), "");
}

TEST_F(ExtendedDataWrite, WritesDeepDottedListsOnASmallStack) {
  constexpr size_t kLists = 10'000;
  OnSmallStack([&] {
    CLOMAdsLispVar value(short{5});
    for (size_t i = 0; i < kLists; ++i) value = Dotted({value, short{1}});
    ADSList target;
    EXPECT_FALSE(value.LispToXData(target));
  });
  EXPECT_EQ(Printed().size(), kLists * std::string(kDotted).size());
}

TEST_F(ExtendedDataWrite, WritesLongListsOnASmallStack) {
  OnSmallStack([&] {
    const CLOMAdsLispVar value = ListOf({});
    const CLOMAdsLispVar member(short{5});
    for (int i = 0; i < kLarge; ++i) value.New()->children.push_back(member.New());
    ADSList target;
    EXPECT_TRUE(value.LispToXData(target));
    size_t count = 0;
    for (const resbuf* record = target; record != nullptr; record = record->rbnext) ++count;
    EXPECT_EQ(count, static_cast<size_t>(kLarge) + 2);
  });
  EXPECT_EQ(Printed(), "");
}

TEST_F(ExtendedDataWrite, WritesManyValuesBehindEachOther) {
  ADSList target;
  for (int i = 0; i < 1000; ++i) {
    target.GoStart();
    EXPECT_TRUE(CLOMAdsLispVar(short{5}).LispToXData(target));
  }
  size_t count = 0;
  for (const resbuf* record = target; record != nullptr; record = record->rbnext) ++count;
  EXPECT_EQ(count, 1000U);
}

}  // namespace
}  // namespace lomlisp::test
