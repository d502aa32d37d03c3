#include <tests/support/Chains.h>
#include <tests/support/SmallStack.h>

namespace lomlisp::test::chain_to_value {
namespace {

using Element = CLOMAdsLispVar::Element;

constexpr size_t kMany = kLarge;
constexpr const char* kMalformed = "ListVar::ADSToLisp: malformed ADS-Liste\n";

std::string InvalidType(int type) {
  return "LispVar::ADSToLisp : invalid type Nr. " + std::to_string(type) +
         " in resbuf\n                     as a result of the nontransparent interface\n";
}

Element FreshList() { return std::make_shared<CLOMLispElement>(); }

class ChainToValue : public HostTest {
 protected:
  // The tree of a chain that converts, "false" for one that does not.
  static std::string Convert(Records&& chain) {
    CLOMAdsLispVar value(static_cast<short>(77));
    if (value.ADSToLisp(chain)) return Tree(value);
    EXPECT_EQ(value.New(), nullptr) << "a failed conversion leaves nil";
    return "false";
  }
};

// --- One item ---

TEST_F(ChainToValue, NoChainIsNil) {
  CLOMAdsLispVar value(L"old");
  EXPECT_TRUE(value.ADSToLisp(nullptr));
  EXPECT_EQ(value.New(), nullptr);
  EXPECT_EQ(Printed(), "");
}

TEST_F(ChainToValue, AnAtomKeepsItsTypeAndValue) {
  EXPECT_EQ(Convert({Short(-5)}), "5003:-5");
  EXPECT_EQ(Convert({Long(70000)}), "5010:70000");
  EXPECT_EQ(Convert({Int64(1LL << 40)}), "5031:1099511627776");
  EXPECT_EQ(Convert({Real(2.5)}), "5001:2.5");
  EXPECT_EQ(Convert({Real(1.5, RTANG)}), "5004:1.5");
  EXPECT_EQ(Convert({Real(0.25, RTORINT)}), "5008:0.25");
  EXPECT_EQ(Convert({String(L"text")}), "5005:text");
  EXPECT_EQ(Convert({String(L"")}), "5005:");
  EXPECT_EQ(Convert({String(L"LINE", RTDXF0)}), "5020:LINE");
  EXPECT_EQ(Convert({Name(31)}), "5006:31,32");
  EXPECT_EQ(Convert({Name(7, RTPICKS)}), "5007:7,8");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ChainToValue, TIsAnAtom) {
  EXPECT_EQ(Convert({NoValue(RTT)}), "5021");
  EXPECT_EQ(Convert({Begin(), NoValue(RTT), Short(1), End()}), "(5021 5003:1)");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ChainToValue, NilAndVoidAreNoNode) {
  EXPECT_EQ(Convert({NoValue(RTNIL)}), "nil");
  EXPECT_EQ(Convert({NoValue(RTVOID)}), "nil");
  EXPECT_EQ(Convert({Begin(), NoValue(RTNIL), NoValue(RTVOID), End()}), "(nil nil)");
}

TEST_F(ChainToValue, NoneIsAnEmptyList) {
  CLOMAdsLispVar value;
  ASSERT_TRUE(value.ADSToLisp(Records{NoValue(RTNONE)}));
  EXPECT_EQ(Tree(value), "()");
  EXPECT_FALSE(value.NilP());
}

TEST_F(ChainToValue, PointsAreListsOfReals) {
  EXPECT_EQ(Convert({Point(1.5, 2, 9, RTPOINT)}), "(5001:1.5 5001:2)");
  EXPECT_EQ(Convert({Point(1.5, 2, 3)}), "(5001:1.5 5001:2 5001:3)");
  EXPECT_EQ(Convert({Begin(), Point(1, 2, 3), Point(4, 5, 6, RTPOINT), End()}),
            "((5001:1 5001:2 5001:3) (5001:4 5001:5))");
}

TEST_F(ChainToValue, AClosingRecordAloneIsAnAtom) {
  EXPECT_EQ(Convert({End()}), "5017");
  EXPECT_EQ(Convert({Dot()}), "5018");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ChainToValue, ATextIsCopied) {
  wchar_t text[] = L"abc";
  Records chain{String(text)};
  const CLOMAdsLispVar value(chain);
  text[0] = L'x';
  EXPECT_EQ(Tree(value), "5005:abc");
}

TEST_F(ChainToValue, ATextUnderTheDxf0TypeOutlivesTheChain) {
  wchar_t text[] = L"LINE";
  Records chain{Begin(), String(text, RTDXF0), End()};
  CLOMAdsLispVar value(chain);
  text[0] = L'x';
  EXPECT_EQ(Tree(value), "(5020:LINE)");
}

TEST_F(ChainToValue, ANullTextStaysNull) {
  EXPECT_EQ(Convert({String(nullptr)}), "5005:<null>");
  EXPECT_EQ(Convert({String(nullptr, RTDXF0)}), "5020:<null>");
}

TEST_F(ChainToValue, ReplacesTheHandleNotTheTreeItShared) {
  CLOMAdsLispVar value = V(L"(1 2)");
  const CLOMAdsLispVar other(value);
  EXPECT_TRUE(value.ADSToLisp(Records{Short(3)}));
  EXPECT_EQ(Tree(value), "5003:3");
  EXPECT_EQ(Tree(other), "(5003:1 5003:2)");
}

TEST_F(ChainToValue, ReadsTheValuesOwnRecord) {
  CLOMAdsLispVar text(L"own");
  EXPECT_TRUE(text.ADSToLisp(&text.GetAtom()));
  EXPECT_EQ(Tree(text), "5005:own");
  CLOMAdsLispVar list = V(L"(1 \"inner\")");
  EXPECT_TRUE(list.ADSToLisp(&list.New()->children[1]->atom));
  EXPECT_EQ(Tree(list), "5005:inner");
}

TEST_F(ChainToValue, FailsOnTheValuesOwnRecordOfAnUnknownType) {
  CLOMAdsLispVar value(static_cast<short>(1));
  value.GetAtom() = static_cast<ADSResType>(5025);
  EXPECT_FALSE(value.ADSToLisp(&value.GetAtom()));
  EXPECT_EQ(value.New(), nullptr);
  EXPECT_EQ(Printed(), InvalidType(5025));
}

// --- More than one item ---

TEST_F(ChainToValue, ASecondItemIsMalformed) {
  EXPECT_EQ(Convert({Short(1), Short(2)}), "false");
  EXPECT_EQ(Printed(), kMalformed);
  EXPECT_EQ(Convert({Begin(), Short(1), End(), Short(2)}), "false");
  EXPECT_EQ(Printed(), kMalformed);
  EXPECT_EQ(Convert({NoValue(RTNIL), NoValue(RTNIL)}), "false");
  EXPECT_EQ(Printed(), kMalformed);
}

TEST_F(ChainToValue, OneBracketTooManyIsMalformed) {
  EXPECT_EQ(Convert({Begin(), Short(1), End(), End()}), "false");
  EXPECT_EQ(Printed(), kMalformed);
  EXPECT_EQ(Convert({Short(1), End()}), "false");
  EXPECT_EQ(Printed(), kMalformed);
}

// --- Lists ---

TEST_F(ChainToValue, BracketsAreAList) {
  EXPECT_EQ(Convert({Begin(), End()}), "()");
  EXPECT_EQ(Convert({Begin(), Short(1), End()}), "(5003:1)");
  EXPECT_EQ(Convert({Begin(), Short(1), String(L"a"), Real(2), End()}), "(5003:1 5005:a 5001:2)");
}

TEST_F(ChainToValue, ListsNest) {
  EXPECT_EQ(Convert({Begin(), Begin(), End(), End()}), "(())");
  EXPECT_EQ(Convert({Begin(), Short(1), Begin(), Short(2), Begin(), End(), End(), Short(3), End()}),
            "(5003:1 (5003:2 ()) 5003:3)");
}

TEST_F(ChainToValue, AnEmptyListIsNotNil) {
  const CLOMAdsLispVar value(Records{Begin(), End()});
  EXPECT_NE(value.New(), nullptr);
  EXPECT_FALSE(value.NilP());
}

TEST_F(ChainToValue, AListThatIsNotClosedFailsSilently) {
  EXPECT_EQ(Convert({Begin()}), "false");
  EXPECT_EQ(Convert({Begin(), Short(1)}), "false");
  EXPECT_EQ(Convert({Begin(), Begin(), Short(1), End()}), "false");
  EXPECT_EQ(Convert({Begin(), Short(1), Begin()}), "false");
  EXPECT_EQ(Convert({Begin(), String(L"text"), Point(1, 2, 3)}), "false");
  EXPECT_EQ(Printed(), "");
}

// --- Dotted lists ---

TEST_F(ChainToValue, TheDotBetweenTwoMembersMakesAPair) {
  EXPECT_EQ(Convert({Begin(), Short(1), Dot(), String(L"a"), End()}), "{5003:1 5005:a}");
}

TEST_F(ChainToValue, TheDotBehindTwoMembersClosesThePair) {
  EXPECT_EQ(Convert({Begin(), Short(1), Short(2), Dot()}), "{5003:1 5003:2}");
  EXPECT_EQ(Convert({Begin(), Begin(), Short(1), Short(2), Dot(), Short(3), End()}),
            "({5003:1 5003:2} 5003:3)");
}

TEST_F(ChainToValue, TheDotBehindTwoMembersIsTheEndEvenWhenMoreFollows) {
  EXPECT_EQ(Convert({Begin(), Short(1), Short(2), Dot(), Short(3), End()}), "false");
  EXPECT_EQ(Printed(), kMalformed);
}

TEST_F(ChainToValue, ALongerDottedListTakesOneMoreMember) {
  EXPECT_EQ(Convert({Begin(), Short(1), Short(2), Short(3), Dot(), Short(4), End()}),
            "{5003:1 5003:2 5003:3 5003:4}");
}

TEST_F(ChainToValue, ASecondDotClosesADottedList) {
  EXPECT_EQ(Convert({Begin(), Short(1), Dot(), Short(2), Dot()}), "{5003:1 5003:2}");
  EXPECT_EQ(Convert({Begin(), Short(1), Short(2), Short(3), Dot(), Short(4), Dot()}),
            "{5003:1 5003:2 5003:3 5003:4}");
}

TEST_F(ChainToValue, TheCdrMayBeAListAPairNilOrAPoint) {
  EXPECT_EQ(Convert({Begin(), Short(1), Dot(), Begin(), Short(2), Short(3), End(), End()}),
            "{5003:1 (5003:2 5003:3)}");
  EXPECT_EQ(Convert({Begin(), Short(1), Dot(), Begin(), Short(2), Dot(), Short(3), End(), End()}),
            "{5003:1 {5003:2 5003:3}}");
  EXPECT_EQ(Convert({Begin(), Short(1), Dot(), NoValue(RTNIL), End()}), "{5003:1 nil}");
  EXPECT_EQ(Convert({Begin(), Short(1), Dot(), Point(1, 2, 0, RTPOINT), End()}), "{5003:1 (5001:1 5001:2)}");
}

TEST_F(ChainToValue, TheCarMayBeAList) {
  EXPECT_EQ(Convert({Begin(), Begin(), Short(1), End(), Dot(), Short(2), End()}), "{(5003:1) 5003:2}");
  EXPECT_EQ(Convert({Begin(), NoValue(RTNIL), Dot(), Short(2), End()}), "{nil 5003:2}");
}

TEST_F(ChainToValue, ADotWithNothingInFrontFailsSilently) {
  EXPECT_EQ(Convert({Begin(), Dot(), Short(1), End()}), "false");
  EXPECT_EQ(Convert({Begin(), Dot()}), "false");
  EXPECT_EQ(Convert({Begin(), Short(1), Begin(), Dot(), End(), End()}), "false");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ChainToValue, ADotWithNothingBehindFailsSilently) {
  EXPECT_EQ(Convert({Begin(), Short(1), Dot()}), "false");
  EXPECT_EQ(Convert({Begin(), Short(1), Dot(), Short(2)}), "false");
  EXPECT_EQ(Convert({Begin(), Short(1), Dot(), End()}), "false");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ChainToValue, TheClosingRecordBehindADotIsTakenAsTheCdr) {
  EXPECT_EQ(Convert({Begin(), Short(1), Dot(), End(), End()}), "{5003:1 5017}");
}

TEST_F(ChainToValue, TwoMembersBehindTheDotFailSilently) {
  EXPECT_EQ(Convert({Begin(), Short(1), Dot(), Short(2), Short(3), End()}), "false");
  EXPECT_EQ(Printed(), "");
}

// --- Unknown types ---

TEST_F(ChainToValue, AnUnknownTypeFailsWithTwoLines) {
  for (const short type : {short{5011}, short{5015}, short{5025}, short{80}, short{-6}, short{-100},
                           short{1072}, short{32767}, short{-32768}}) {
    EXPECT_EQ(Convert({NoValue(type)}), "false");
    EXPECT_EQ(Printed(), InvalidType(type));
  }
}

TEST_F(ChainToValue, AnUnknownTypeAnywhereMakesTheWholeValueNil) {
  EXPECT_EQ(Convert({Begin(), String(L"a"), Begin(), NoValue(5025), End(), End()}), "false");
  EXPECT_EQ(Printed(), InvalidType(5025));
  EXPECT_EQ(Convert({Begin(), Short(1), Dot(), NoValue(5030), End()}), "false");
  EXPECT_EQ(Printed(), InvalidType(5030));
}

TEST_F(ChainToValue, TheFirstUnknownTypeIsTheOneThatIsNamed) {
  EXPECT_EQ(Convert({Begin(), NoValue(5025), NoValue(5026), End()}), "false");
  EXPECT_EQ(Printed(), InvalidType(5025));
}

// --- Constructors ---

TEST_F(ChainToValue, TheConstructorDropsTheOutcome) {
  EXPECT_EQ(Tree(CLOMAdsLispVar(Records{Begin(), Short(1), End()})), "(5003:1)");
  EXPECT_EQ(Tree(CLOMAdsLispVar(static_cast<resbuf*>(nullptr))), "nil");
  EXPECT_EQ(Tree(CLOMAdsLispVar(Records{Short(1), Short(2)})), "nil");
  EXPECT_EQ(Printed(), kMalformed);
}

TEST_F(ChainToValue, APointArgumentBecomesAListOfThreeReals) {
  const double point[3] = {1, 2.5, -3};
  EXPECT_EQ(Tree(CLOMAdsLispVar(point)), "(5001:1 5001:2.5 5001:-3)");
  EXPECT_EQ(CLOMAdsLispVar(static_cast<const double*>(nullptr)).New(), nullptr);
}

// --- The stages ---

TEST_F(ChainToValue, StageOfOneItemMovesBehindIt) {
  for (const bool flag : {false, true}) {
    Records chain{Begin(), Short(1), End(), Short(2)};
    const resbuf* current = chain;
    Element node = FreshList();
    EXPECT_TRUE(CLOMAdsLispVar::ADS_Liste(current, node, flag));
    EXPECT_EQ(current, chain.At(3));
    EXPECT_EQ(Tree(node), "(5003:1)");
    node = FreshList();
    EXPECT_TRUE(CLOMAdsLispVar::ADS_Liste(current, node, flag));
    EXPECT_EQ(current, nullptr);
    EXPECT_EQ(Tree(node), "5003:2");
  }
}

TEST_F(ChainToValue, StageOfOneItemLeavesTheNodeAtTheEndOfTheChain) {
  const resbuf* current = nullptr;
  Element node = FreshList();
  const Element before = node;
  EXPECT_TRUE(CLOMAdsLispVar::ADS_Liste(current, node, false));
  EXPECT_EQ(node, before);
  EXPECT_TRUE(CLOMAdsLispVar::ADS_DXFList_Or_Atom(current, node, false));
  EXPECT_EQ(node, before);
}

TEST_F(ChainToValue, StageOfOneItemStopsInFrontOfWhatShouldHaveClosedTheList) {
  Records chain{Begin(), Short(1), Dot(), Short(2), Short(3), End()};
  const resbuf* current = chain;
  Element node = FreshList();
  EXPECT_FALSE(CLOMAdsLispVar::ADS_Liste(current, node, false));
  EXPECT_EQ(current, chain.At(4));
}

TEST_F(ChainToValue, StageOfMembersResetsTheNodeWithoutAChain) {
  const resbuf* current = nullptr;
  Element node = FreshList();
  EXPECT_TRUE(CLOMAdsLispVar::ADS_ElementListe(current, node, true));
  EXPECT_EQ(node, nullptr);
}

TEST_F(ChainToValue, StageOfMembersReadsABareChain) {
  for (const bool flag : {false, true}) {
    Records chain{Short(1), Begin(), Short(2), End(), NoValue(RTNIL)};
    const resbuf* current = chain;
    Element node = FreshList();
    const Element list = node;
    EXPECT_TRUE(CLOMAdsLispVar::ADS_ElementListe(current, node, flag));
    EXPECT_EQ(current, nullptr);
    EXPECT_EQ(node, list) << "the node itself is filled";
    EXPECT_EQ(Tree(node), "(5003:1 (5003:2) nil)");
  }
}

TEST_F(ChainToValue, StageOfMembersLeavesTheClosingRecord) {
  Records chain{Short(1), End()};
  const resbuf* current = chain;
  Element node = FreshList();
  EXPECT_TRUE(CLOMAdsLispVar::ADS_ElementListe(current, node, false));
  EXPECT_EQ(current, chain.At(1));

  Records empty{End(), Short(1)};
  current = empty;
  node = FreshList();
  EXPECT_TRUE(CLOMAdsLispVar::ADS_ElementListe(current, node, false));
  EXPECT_EQ(current, empty.At(0));
  EXPECT_EQ(Tree(node), "()");
}

TEST_F(ChainToValue, StageOfMembersLeavesTheDotBehindTwo) {
  Records chain{Short(1), Short(2), Dot(), Short(3)};
  const resbuf* current = chain;
  Element node = FreshList();
  EXPECT_TRUE(CLOMAdsLispVar::ADS_ElementListe(current, node, false));
  EXPECT_EQ(current, chain.At(2));
  EXPECT_EQ(Tree(node), "{5003:1 5003:2}");
}

TEST_F(ChainToValue, StageOfMembersReturnsBehindTheCdr) {
  Records chain{Short(1), Dot(), Short(2), Short(3)};
  const resbuf* current = chain;
  Element node = FreshList();
  EXPECT_TRUE(CLOMAdsLispVar::ADS_ElementListe(current, node, false));
  EXPECT_EQ(current, chain.At(3));
  EXPECT_EQ(Tree(node), "{5003:1 5003:2}");
}

TEST_F(ChainToValue, StageOfMembersRefusesADotAtItsHead) {
  Records chain{Dot(), Short(2)};
  const resbuf* current = chain;
  Element node = FreshList();
  EXPECT_FALSE(CLOMAdsLispVar::ADS_ElementListe(current, node, false));
}

TEST_F(ChainToValue, StageOfAtomsTakesOneRecord) {
  Records chain{Short(1), Short(2)};
  const resbuf* current = chain;
  Element node = FreshList();
  EXPECT_TRUE(CLOMAdsLispVar::ADS_DXFList_Or_Atom(current, node, false));
  EXPECT_EQ(current, chain.At(1));
  EXPECT_EQ(Tree(node), "5003:1");
}

TEST_F(ChainToValue, StageOfOneRecordNeverFails) {
  const auto atom = [](const resbuf* record) {
    Element node = FreshList();
    EXPECT_TRUE(CLOMAdsLispVar::ADS_Atom(record, node));
    return Tree(node);
  };
  EXPECT_EQ(atom(nullptr), "nil");
  EXPECT_EQ(atom(Records{NoValue(RTNIL)}), "nil");
  EXPECT_EQ(atom(Records{NoValue(RTVOID)}), "nil");
  EXPECT_EQ(atom(Records{NoValue(RTNONE)}), "()");
  EXPECT_EQ(atom(Records{NoValue(RTT)}), "5021");
  EXPECT_EQ(atom(Records{NoValue(RTLB)}), "5016");
  EXPECT_EQ(atom(Records{NoValue(RTLE)}), "5017");
  EXPECT_EQ(atom(Records{NoValue(5025)}), "5025");
  EXPECT_EQ(atom(Records{Short(3, 62)}), "62");
  EXPECT_EQ(atom(Records{String(L"x")}), "5005:x");
  EXPECT_EQ(atom(Records{Point(1, 2, 3, RTPOINT)}), "(5001:1 5001:2)");
  EXPECT_EQ(atom(Records{Point(1, 2, 3)}), "(5001:1 5001:2 5001:3)");
  EXPECT_EQ(atom(Records{Short(1), Short(2)}), "5003:1") << "the records behind do not matter";
  EXPECT_EQ(Printed(), "");
}

TEST_F(ChainToValue, CoordinatesAreAppendedToTheNode) {
  Element node = FreshList();
  EXPECT_TRUE(CLOMAdsLispVar::ADS_Atom(Records{Point(1, 2, 3, RTPOINT)}, node));
  EXPECT_TRUE(CLOMAdsLispVar::ADS_Atom(Records{Point(4, 5, 6)}, node));
  EXPECT_EQ(Tree(node), "(5001:1 5001:2 5001:4 5001:5 5001:6)");
}

// --- Size ---

TEST_F(ChainToValue, AMillionLevelsNeedNoStack) {
  std::vector<resbuf> records(kMany, Begin());
  records.resize(2 * kMany, End());
  Records chain(std::move(records));
  OnSmallStack([&] {
    CLOMAdsLispVar value;
    EXPECT_TRUE(value.ADSToLisp(chain));
    size_t depth = 0;
    for (const CLOMLispElement* node = value.New().get(); node != nullptr; ++depth)
      node = node->children.empty() ? nullptr : node->children.front().get();
    EXPECT_EQ(depth, kMany);
  });
}

TEST_F(ChainToValue, AMillionNestedCdrsNeedNoStack) {
  std::vector<resbuf> records;
  for (size_t i = 0; i < kMany; ++i) records.insert(records.end(), {Begin(), Short(1), Dot()});
  records.push_back(Short(2));
  records.resize(records.size() + kMany, End());
  Records chain(std::move(records));
  OnSmallStack([&] {
    CLOMAdsLispVar value;
    EXPECT_TRUE(value.ADSToLisp(chain));
    EXPECT_EQ(value.New()->Kind(), CLOMLispElement::DottedList);
  });
}

TEST_F(ChainToValue, AMillionOpenListsFailWithoutStack) {
  Records chain(std::vector<resbuf>(kMany, Begin()));
  OnSmallStack([&] {
    CLOMAdsLispVar value;
    EXPECT_FALSE(value.ADSToLisp(chain));
    EXPECT_EQ(value.New(), nullptr);
  });
}

TEST_F(ChainToValue, AMillionMembers) {
  std::vector<resbuf> records(kMany, Short(1));
  records.insert(records.begin(), Begin());
  records.push_back(End());
  Records chain(std::move(records));
  OnSmallStack([&] {
    CLOMAdsLispVar value;
    EXPECT_TRUE(value.ADSToLisp(chain));
    EXPECT_EQ(value.Length(), kMany);
  });
}

// --- Memory ---

TEST_F(ChainToValue, ATextForWhichMemoryRunsOutIsNull) {
  Records chain{Begin(), String(L"a"), Begin(), String(L"b"), End(), String(L"c", RTDXF0), End()};
  FailEachAllocation([&] {
    CLOMAdsLispVar value;
    EXPECT_TRUE(value.ADSToLisp(chain));
    return Tree(value) == "(5005:a (5005:b) 5020:c)";
  });
}

}  // namespace
}  // namespace lomlisp::test::chain_to_value
