// Groups of extended data to values.
#include <tests/support/Chains.h>
#include <tests/support/SmallStack.h>

namespace lomlisp::test {
namespace {

using Element = CLOMAdsLispVar::Element;

constexpr const char* kLeftOver = "ListVar::XDataToLisp: ADS-Liste war nicht wohlgeformt\n";

resbuf Brace(const wchar_t* text) { return String(text, 1002); }
resbuf OpenBrace() { return Brace(L"{"); }
resbuf CloseBrace() { return Brace(L"}"); }

class ExtendedDataRead : public HostTest {
 protected:
  // The tree of a chain that can be read without a message.
  std::string Read(Records&& chain) {
    CLOMAdsLispVar value(short{77});
    EXPECT_TRUE(value.XDataToLisp(chain));
    EXPECT_EQ(Printed(), "");
    return Tree(value);
  }
  void CheckFails(std::initializer_list<resbuf> records, const std::string& message = "") {
    Records chain(records);
    CLOMAdsLispVar value(short{77});
    EXPECT_FALSE(value.XDataToLisp(chain));
    EXPECT_EQ(value.New(), nullptr) << "a failed conversion leaves nil";
    EXPECT_EQ(Printed(), message);
  }
  // What comes back of a value that was written.
  std::string ThereAndBack(const CLOMAdsLispVar& value) {
    ADSList groups;
    value.LispToXData(groups);
    CLOMAdsLispVar again;
    EXPECT_TRUE(again.XDataToLisp(groups));
    return Tree(again);
  }
};

// --- One group ---

TEST_F(ExtendedDataRead, NoChainIsNil) {
  CLOMAdsLispVar value(L"old");
  EXPECT_TRUE(value.XDataToLisp(nullptr));
  EXPECT_EQ(value.New(), nullptr);
  EXPECT_EQ(Printed(), "");
}

TEST_F(ExtendedDataRead, AGroupLosesItsCode) {
  EXPECT_EQ(Read({Short(-5, 1070)}), "5003:-5");
  EXPECT_EQ(Read({Long(70000, 1071)}), "5010:70000");
  EXPECT_EQ(Read({Real(2.5, 1040)}), "5001:2.5");
  EXPECT_EQ(Read({Real(2.5, 1041)}), "5001:2.5");
  EXPECT_EQ(Read({String(L"text", 1000)}), "5005:text");
  EXPECT_EQ(Read({String(L"APP", 1001)}), "5005:APP");
  EXPECT_EQ(Read({String(L"LAYER", 1003)}), "5005:LAYER");
  EXPECT_EQ(Read({String(L"2A", 1005)}), "5005:2A");
  EXPECT_EQ(Read({String(L"", 1000)}), "5005:");
  EXPECT_EQ(Read({String(nullptr, 1000)}), "5005:<null>");
}

TEST_F(ExtendedDataRead, APointIsAListOfReals) {
  for (const short code : {short{1010}, short{1011}, short{1013}})
    EXPECT_EQ(Read({Point(1.5, 2, 3, code)}), "(5001:1.5 5001:2 5001:3)");
  EXPECT_EQ(Read({Point(1.5, 2, 3)}), "(5001:1.5 5001:2 5001:3)");
  EXPECT_EQ(Read({Point(1.5, 2, 3, RTPOINT)}), "(5001:1.5 5001:2)");
}

TEST_F(ExtendedDataRead, OtherGroupsAndTypesAreAtomsToo) {
  EXPECT_EQ(Read({String(L"layer", 8)}), "5005:layer");
  EXPECT_EQ(Read({Short(7, 62)}), "5003:7");
  EXPECT_EQ(Read({Name(31, -1)}), "5006:31,32");
  EXPECT_EQ(Read({Short(-5)}), "5003:-5");
  EXPECT_EQ(Read({Long(70000)}), "5010:70000");
  EXPECT_EQ(Read({Int64(1LL << 40)}), "5031:1099511627776");
  EXPECT_EQ(Read({Real(2.5)}), "5001:2.5");
  EXPECT_EQ(Read({Real(1.5, RTANG)}), "5004:1.5");
  EXPECT_EQ(Read({String(L"text")}), "5005:text");
  EXPECT_EQ(Read({Name(7, RTPICKS)}), "5007:7,8");
  EXPECT_EQ(Read({NoValue(RTT)}), "5021");
  EXPECT_EQ(Read({NoValue(5025)}), "5025");
  EXPECT_EQ(Read({NoValue(RTLB)}), "5016");
  EXPECT_EQ(Read({String(L"{")}), "5005:{");
}

TEST_F(ExtendedDataRead, NilAndVoidAreNoNode) {
  EXPECT_EQ(Read({NoValue(RTNIL)}), "nil");
  EXPECT_EQ(Read({NoValue(RTVOID)}), "nil");
  EXPECT_EQ(Read({OpenBrace(), NoValue(RTNIL), Short(1, 1070), NoValue(RTVOID), CloseBrace()}),
            "(nil 5003:1 nil)");
  EXPECT_EQ(Read({NoValue(RTNONE)}), "()");
}

TEST_F(ExtendedDataRead, ATextIsCopied) {
  wchar_t text[] = L"abc";
  Records chain{OpenBrace(), String(text, 1000), String(text, RTDXF0), CloseBrace()};
  const CLOMAdsLispVar value = [&] {
    CLOMAdsLispVar read;
    EXPECT_TRUE(read.XDataToLisp(chain));
    return read;
  }();
  text[0] = L'x';
  EXPECT_EQ(Tree(value), "(5005:abc 5020:abc)");
}

// --- Braces ---

TEST_F(ExtendedDataRead, BracesAreAList) {
  EXPECT_EQ(Read({OpenBrace(), CloseBrace()}), "()");
  EXPECT_EQ(Read({OpenBrace(), Short(1, 1070), CloseBrace()}), "(5003:1)");
  EXPECT_EQ(Read({OpenBrace(), Short(1, 1070), Real(2.5, 1040), String(L"s", 1000), CloseBrace()}),
            "(5003:1 5001:2.5 5005:s)");
  EXPECT_EQ(Read({OpenBrace(), Point(1, 2, 3, 1010), CloseBrace()}), "((5001:1 5001:2 5001:3))");
}

TEST_F(ExtendedDataRead, BracesNest) {
  EXPECT_EQ(Read({OpenBrace(), OpenBrace(), CloseBrace(), CloseBrace()}), "(())");
  EXPECT_EQ(Read({OpenBrace(), OpenBrace(), Short(1, 1070), CloseBrace(), Short(2, 1070), OpenBrace(),
                  OpenBrace(), CloseBrace(), CloseBrace(), CloseBrace()}),
            "((5003:1) 5003:2 (()))");
}

TEST_F(ExtendedDataRead, ABraceInAnyOtherGroupIsAText) {
  EXPECT_EQ(Read({OpenBrace(), String(L"}", 1000), String(L"{", 1001), CloseBrace()}), "(5005:} 5005:{)");
}

// --- Failures ---

TEST_F(ExtendedDataRead, AnythingButAnOpeningBraceFails) {
  for (const wchar_t* text : {static_cast<const wchar_t*>(nullptr), L"", L"}", L"{x", L"{{", L"{ ", L" {",
                              L"{}", L"x", L"\uFF5B"}) {
    CheckFails({Brace(text)});
    CheckFails({Brace(text), Short(1, 1070), CloseBrace()});
    CheckFails({Brace(text), CloseBrace()});
  }
}

TEST_F(ExtendedDataRead, ForeignControlTextsWithinBracesFail) {
  for (const wchar_t* text :
       {static_cast<const wchar_t*>(nullptr), L"", L"}x", L"}}", L"} ", L" }", L"{x", L"x"}) {
    CheckFails({OpenBrace(), Brace(text)});
    CheckFails({OpenBrace(), Brace(text), CloseBrace()});
    CheckFails({OpenBrace(), Short(1, 1070), Brace(text), CloseBrace()});
    CheckFails({OpenBrace(), OpenBrace(), Brace(text), CloseBrace(), CloseBrace()});
  }
}

TEST_F(ExtendedDataRead, AChainThatEndsWithinBracesFails) {
  CheckFails({OpenBrace()});
  CheckFails({OpenBrace(), Short(1, 1070)});
  CheckFails({OpenBrace(), OpenBrace()});
  CheckFails({OpenBrace(), OpenBrace(), CloseBrace()});
  CheckFails({OpenBrace(), OpenBrace(), Short(1, 1070), CloseBrace(), String(L"a", 1000)});
}

TEST_F(ExtendedDataRead, GroupsLeftOverAreReported) {
  CheckFails({Short(1, 1070), Short(2, 1070)}, kLeftOver);
  CheckFails({String(L"APP", 1001), String(L"text", 1000), Short(2, 1070)}, kLeftOver);
  CheckFails({OpenBrace(), CloseBrace(), OpenBrace(), CloseBrace()}, kLeftOver);
  CheckFails({OpenBrace(), Short(1, 1070), CloseBrace(), CloseBrace()}, kLeftOver);
  CheckFails({Short(1, 1070), CloseBrace()}, kLeftOver);
  CheckFails({Short(1, 1070), OpenBrace()}, kLeftOver);
  CheckFails({NoValue(RTNIL), NoValue(RTNIL)}, kLeftOver);
}

TEST_F(ExtendedDataRead, FailsOnBracketsThatAreNoBraces) {
  CheckFails({Begin(), Short(1), End()}, kLeftOver);
  CheckFails({OpenBrace(), Short(1, 1070), End()});
}

// --- The value ---

TEST_F(ExtendedDataRead, ReplacesTheHandleNotTheTreeItShared) {
  CLOMAdsLispVar value = V(L"(1 2)");
  const CLOMAdsLispVar other(value);
  EXPECT_TRUE(value.XDataToLisp(Records{Short(3, 1070)}));
  EXPECT_EQ(Tree(value), "5003:3");
  EXPECT_FALSE(value.XDataToLisp(Records{OpenBrace()}));
  EXPECT_EQ(Tree(value), "nil");
  EXPECT_EQ(Tree(other), "(5003:1 5003:2)");
}

TEST_F(ExtendedDataRead, ReadsTheValuesOwnRecord) {
  CLOMAdsLispVar text(L"own");
  EXPECT_TRUE(text.XDataToLisp(&text.GetAtom()));
  EXPECT_EQ(Tree(text), "5005:own");
  CLOMAdsLispVar list = V(L"(1 \"inner\")");
  EXPECT_TRUE(list.XDataToLisp(&list.New()->children[1]->atom));
  EXPECT_EQ(Tree(list), "5005:inner");
}

TEST_F(ExtendedDataRead, TheChainStaysItsOwners) {
  ADSList groups;
  EXPECT_TRUE(V(L"(\"a\" (\"b\"))").LispToXData(groups));
  const std::string before = Types(groups);
  CLOMAdsLispVar value;
  EXPECT_TRUE(value.XDataToLisp(groups));
  EXPECT_EQ(Types(groups), before);
  groups.Clear();
  EXPECT_EQ(Tree(value), "(5005:a (5005:b))");
}

TEST_F(ExtendedDataRead, ReadsAChainOfThePlatform) {
  resbuf* const chain = acutBuildList(1002, L"{", 1000, L"a", 1070, 1, 1040, 2.5, 1002, L"}", 0);
  CLOMAdsLispVar value;
  EXPECT_TRUE(value.XDataToLisp(chain));
  EXPECT_EQ(acutRelRb(chain), RTNORM);
  EXPECT_EQ(Tree(value), "(5005:a 5003:1 5001:2.5)");
}

TEST_F(ExtendedDataRead, SurvivesEachFailedAllocationOfAText) {
  Records chain{OpenBrace(), String(L"a", 1000), OpenBrace(), String(L"b", 1000), CloseBrace(), CloseBrace()};
  FailEachAllocation([&] {
    CLOMAdsLispVar value;
    EXPECT_TRUE(value.XDataToLisp(chain));
    return Tree(value) == "(5005:a (5005:b))";
  });
}

// --- One item from a position on ---

struct Item {
  bool read;
  std::string tree;
  const resbuf* next;
};

Item ReadItem(const resbuf* chain) {
  const resbuf* position = chain;
  Element node = std::make_shared<CLOMLispElement>();
  const bool read = CLOMAdsLispVar::XDataToLisp(position, node);
  return {read, Tree(node), position};
}

TEST_F(ExtendedDataRead, NothingToReadLeavesTheNode) {
  const Item item = ReadItem(nullptr);
  EXPECT_TRUE(item.read);
  EXPECT_EQ(item.tree, "()");
  EXPECT_EQ(item.next, nullptr);
}

TEST_F(ExtendedDataRead, AnItemEndsBehindItselfSilently) {
  Records chain{Short(1, 1070), OpenBrace(),  String(L"a", 1000), CloseBrace(),
                OpenBrace(),    CloseBrace(), NoValue(RTNIL),     Point(1, 2, 3, 1010)};
  const resbuf* position = chain;
  std::string trees;
  while (position != nullptr) {
    const Item item = ReadItem(position);
    ASSERT_TRUE(item.read);
    ASSERT_NE(item.next, position);
    trees += item.tree + ' ';
    position = item.next;
  }
  EXPECT_EQ(trees, "5003:1 (5005:a) () nil (5001:1 5001:2 5001:3) ");
  EXPECT_EQ(ReadItem(chain).next, chain.At(1));
  EXPECT_EQ(ReadItem(chain.At(1)).next, chain.At(4));
  EXPECT_EQ(ReadItem(chain.At(4)).next, chain.At(6));
  EXPECT_EQ(Printed(), "");
}

TEST_F(ExtendedDataRead, AnItemFailsSilently) {
  Records open{OpenBrace(), Short(1, 1070)};
  EXPECT_FALSE(ReadItem(open).read);
  EXPECT_FALSE(ReadItem(Records{OpenBrace()}).read);
  EXPECT_FALSE(ReadItem(Records{Brace(L"{x"), CloseBrace()}).read);
  EXPECT_FALSE(ReadItem(Records{OpenBrace(), Brace(L"x"), CloseBrace()}).read);
  Records close{CloseBrace(), Short(1, 1070)};
  const Item item = ReadItem(close);
  EXPECT_FALSE(item.read);
  EXPECT_EQ(item.next, close.At(0));
  EXPECT_EQ(Printed(), "");
}

// --- There and back ---

TEST_F(ExtendedDataRead, ListsOfSupportedAtomsComeBackAsTheyWere) {
  const double point[3] = {1.5, 2, 3};
  for (const CLOMAdsLispVar& value :
       {V(L"7"), V(L"2.5"), V(L"\"text\""), CLOMAdsLispVar(70000L), ListOf({}), V(L"(1 2.5 \"s\")"),
        V(L"(1 (2 (3 \"{\")) 4)"), ListOf({ListOf({}), 70000L, L""}), CLOMAdsLispVar(point)}) {
    EXPECT_EQ(ThereAndBack(value), Tree(value));
    EXPECT_EQ(Printed(), "");
  }
}

TEST_F(ExtendedDataRead, NilComesBackAsAnEmptyList) {
  EXPECT_EQ(ThereAndBack(CLOMAdsLisp::Nil), "()");
  EXPECT_EQ(ThereAndBack(ListOf({CLOMAdsLisp::Nil, 1})), "(() 5003:1)");
}

TEST_F(ExtendedDataRead, A64BitIntegerComesBackWithItsLow16Bits) {
  EXPECT_EQ(ThereAndBack((1LL << 40) + 5), "5003:5");
  EXPECT_EQ(ThereAndBack(static_cast<__int64>(-1)), "5003:-1");
}

TEST_F(ExtendedDataRead, ADottedListComesBackAsAList) {
  EXPECT_EQ(ThereAndBack(V(L"(1 . 2)")), "(5003:1 5003:2)");
  EXPECT_EQ(ThereAndBack(Dotted({1, V(L"(2 3)")})), "(5003:1 (5003:2 5003:3))");
}

TEST_F(ExtendedDataRead, GroupsComeBackAsTheyWere) {
  Records chain{OpenBrace(), String(L"a", 1000), OpenBrace(),       CloseBrace(), Short(1, 1070),
                OpenBrace(), Real(2.5, 1040),    Long(70000, 1071), CloseBrace(), CloseBrace()};
  CLOMAdsLispVar value;
  ASSERT_TRUE(value.XDataToLisp(chain));
  ADSList groups;
  EXPECT_TRUE(value.LispToXData(groups));
  EXPECT_EQ(Types(groups), Types(chain));
}

// --- Size ---

TEST_F(ExtendedDataRead, ReadsDeepBracesOnASmallStack) {
  constexpr size_t kDepth = kLarge;
  std::vector<resbuf> records(kDepth, OpenBrace());
  records.push_back(Short(5, 1070));
  records.insert(records.end(), kDepth, CloseBrace());
  Records chain(std::move(records));
  OnSmallStack([&] {
    CLOMAdsLispVar value;
    EXPECT_TRUE(value.XDataToLisp(chain));
    size_t depth = 0;
    Element node = value.New();
    while (node != nullptr && !node->children.empty()) {
      const Element child = node->children[0];
      node = child;
      ++depth;
    }
    EXPECT_EQ(depth, kDepth);
    EXPECT_EQ(Tree(node), "5003:5");
  });
  EXPECT_EQ(Printed(), "");
}

TEST_F(ExtendedDataRead, FailsOnDeepOpenBracesOnASmallStack) {
  Records chain(std::vector<resbuf>(kLarge, OpenBrace()));
  OnSmallStack([&] {
    CLOMAdsLispVar value;
    EXPECT_FALSE(value.XDataToLisp(chain));
    EXPECT_EQ(value.New(), nullptr);
  });
  EXPECT_EQ(Printed(), "");
}

TEST_F(ExtendedDataRead, ReadsLongListsOnASmallStack) {
  std::vector<resbuf> records{OpenBrace()};
  records.insert(records.end(), kLarge, Short(5, 1070));
  records.push_back(CloseBrace());
  Records chain(std::move(records));
  OnSmallStack([&] {
    CLOMAdsLispVar value;
    EXPECT_TRUE(value.XDataToLisp(chain));
    ASSERT_NE(value.New(), nullptr);
    EXPECT_EQ(value.New()->children.size(), static_cast<size_t>(kLarge));
  });
  EXPECT_EQ(Printed(), "");
}

}  // namespace
}  // namespace lomlisp::test
