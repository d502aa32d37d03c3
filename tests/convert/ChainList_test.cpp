#include <tests/support/Chains.h>
#include <tests/support/SmallStack.h>

namespace lomlisp::test {
namespace {

constexpr size_t kMany = kLarge;

class ChainList : public HostTest {
 protected:
  static std::string List(Records&& chain) { return Tree(CLOMAdsLisp::List(static_cast<resbuf*>(chain))); }
};

TEST_F(ChainList, TheItemsOfAChainAreTheMembers) {
  EXPECT_EQ(List({Short(1), Short(2)}), "(5003:1 5003:2)");
  EXPECT_EQ(List({Short(1)}), "(5003:1)");
  EXPECT_EQ(List({NoValue(RTNIL)}), "(nil)");
  EXPECT_EQ(List({Begin(), Short(1), End(), String(L"a")}), "((5003:1) 5005:a)");
  EXPECT_EQ(List({Point(1, 2, 3)}), "((5001:1 5001:2 5001:3))");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ChainList, NoChainIsAnEmptyList) {
  const CLOMAdsLispVar list = CLOMAdsLisp::List(static_cast<resbuf*>(nullptr));
  EXPECT_EQ(Tree(list), "()");
  EXPECT_FALSE(list.NilP());
}

TEST_F(ChainList, ARunOfGroupsIsOneMember) {
  EXPECT_EQ(List({String(L"0", 8), Short(1, 62)}), "(({5003:8 5005:0} {5003:62 5003:1}))");
}

TEST_F(ChainList, ADotMakesItDotted) {
  EXPECT_EQ(List({Short(1), Dot(), Short(2)}), "{5003:1 5003:2}");
  EXPECT_EQ(List({Short(1), Short(2), Short(3), Dot(), Short(4)}), "{5003:1 5003:2 5003:3 5003:4}");
}

TEST_F(ChainList, WhatCannotBeConvertedIsNil) {
  EXPECT_EQ(List({Dot(), Short(1)}), "nil");
  EXPECT_EQ(List({Begin(), Short(1)}), "nil");
  EXPECT_EQ(Printed(), "");
  EXPECT_EQ(List({Short(1), End()}), "nil");
  EXPECT_EQ(Printed(), "ListVar::ADSToLisp: malformed ADS-Liste\n");
  EXPECT_EQ(List({Short(1), Short(2), Dot()}), "nil") << "the dot closes, the bracket behind is left over";
  EXPECT_EQ(Printed(), "ListVar::ADSToLisp: malformed ADS-Liste\n");
  EXPECT_EQ(List({NoValue(5025)}), "nil");
  EXPECT_EQ(Printed(),
            "LispVar::ADSToLisp : invalid type Nr. 5025 in resbuf\n"
            "                     as a result of the nontransparent interface\n");
}

TEST_F(ChainList, SurvivesWhenNoBracketCanBeBuilt) {
  Records chain{Short(1), String(L"a")};
  FailEachAllocation([&] { return Tree(CLOMAdsLisp::List(chain)) == "(5003:1 5005:a)"; });
  FailEachAllocation([&] { return Tree(CLOMAdsLisp::List(static_cast<resbuf*>(nullptr))) == "()"; });
}

TEST_F(ChainList, AMillionItems) {
  Records chain(std::vector<resbuf>(kMany, Short(1)));
  OnSmallStack([&] { EXPECT_EQ(CLOMAdsLisp::List(chain).Length(), kMany); });
}

TEST_F(ChainList, AMillionLevels) {
  std::vector<resbuf> records(kMany, Begin());
  records.resize(2 * kMany, End());
  Records chain(std::move(records));
  OnSmallStack([&] { EXPECT_EQ(CLOMAdsLisp::List(chain).Length(), 1U); });
}

}  // namespace
}  // namespace lomlisp::test
