// Chains that are no lists, and lists that are no groups.
#include <tests/support/Chains.h>

namespace lomlisp::test::failed_lists {
namespace {

class FailedLists : public HostTest {};

TEST_F(FailedLists, AnInnerListWithoutAnEndIsRefused) {
  CLOMAdsLispVar value(L"old");
  EXPECT_FALSE(value.ADSToLisp(Records{Begin(), Begin(), Short(1)}));
  EXPECT_EQ(Tree(value), "nil");
}

TEST_F(FailedLists, OnlyTheEndOfTheListComesBehindTheItemBehindTheDot) {
  CLOMAdsLispVar value(L"old");
  EXPECT_FALSE(value.ADSToLisp(Records{Begin(), Begin(), Short(1), Dot(), Short(2), Short(3), End(), End()}));
  EXPECT_EQ(Tree(value), "nil");
}

// Both entities hold the same list in their extended data, which is none of groups.
TEST_F(FailedLists, ASharedListThatHoldsNoGroupsIsWrittenInBracketsEachTime) {
  const CLOMAdsLispVar shared = V(L"((8 . \"layer\") 5)");
  const auto entity = [&] { return ListOf({ListOf({short{-3}, ListOf({L"APP", shared})})}); };
  const CLOMAdsLispVar value = ListOf({entity(), entity()});
  ADSList asGroups;
  ADSList inBrackets;
  EXPECT_EQ(Types(value.LispToDXF(asGroups)), Types(value.LispToADS(inBrackets)));
}

}  // namespace
}  // namespace lomlisp::test::failed_lists
