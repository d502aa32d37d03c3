// Lists that are long enough to be sorted otherwise, and dotted lists of more than a pair.
#include <tests/listops/Values.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace lomlisp::test::long_and_dotted {
namespace {

class LongAndDotted : public HostTest {};

// Texts that begin alike, in groups that begin alike, each text several times.
TEST_F(LongAndDotted, ThousandsOfTextsAreSorted) {
  std::mt19937 random(1);
  CLOMAdsLispVar list = ListOf({});
  std::vector<std::wstring> expected;
  for (int i = 0; i < 12'000; ++i) {
    expected.push_back(L"LAYER" + std::to_wstring(10'000'000 + random() % 5'000));
    list.New()->children.push_back(CLOMAdsLispVar(expected.back()).New());
  }
  list.Sort();
  std::sort(expected.begin(), expected.end());
  ASSERT_EQ(list.Length(), expected.size());
  for (size_t i = 0; i < expected.size(); ++i)
    ASSERT_STREQ(list.New()->children[i]->atom.resval.rstring, expected[i].c_str()) << i;
}

// (1 (2 3) . 4): its Cdr is the list of the other two.
TEST_F(LongAndDotted, ADottedListOfThreeIsSearchedToItsEnd) {
  const CLOMAdsLispVar list = DottedOf({short{1}, V(L"(2 3)"), short{4}});
  EXPECT_EQ(CLOMAdsLisp::Position(V(L"(2 3)"), list), 1);
  EXPECT_EQ(CLOMAdsLisp::Position(V(L"4"), list), 2);
  EXPECT_EQ(CLOMAdsLisp::Position(V(L"3"), list), -1);
  EXPECT_EQ(Text(CLOMAdsLisp::Member(V(L"4"), list)), "(4)");
}

TEST_F(LongAndDotted, LongIntegersAreEqualToIntegersOfTheirValue) {
  EXPECT_TRUE(CLOMAdsLispVar(70'000L) == CLOMAdsLispVar(70'000L));
  EXPECT_FALSE(CLOMAdsLispVar(70'000L) == CLOMAdsLispVar(70'001L));
  EXPECT_TRUE(CLOMAdsLispVar(7L) == CLOMAdsLispVar(short{7}));
}

}  // namespace
}  // namespace lomlisp::test::long_and_dotted
