// List: new lists of one to eleven values.
#include <tests/listops/Values.h>

#include <utility>

namespace lomlisp::test {

using ListTest = HostTest;

namespace {

template <size_t... Positions>
CLOMAdsLispVar ListOfFirst(const std::vector<CLOMAdsLispVar>& values, std::index_sequence<Positions...>) {
  return CLOMAdsLisp::List(values[Positions]...);
}

template <size_t Count>
void ExpectListOf(const std::vector<CLOMAdsLispVar>& values) {
  const CLOMAdsLispVar list = ListOfFirst(values, std::make_index_sequence<Count>());
  ASSERT_EQ(ChildCount(list), Count);
  EXPECT_FALSE(IsDotted(list));
  EXPECT_EQ(list.New().use_count(), 2) << "somebody else owns the new list";
  for (size_t n = 0; n < Count; ++n) EXPECT_EQ(Child(list, n), values[n].New()) << n << " of " << Count;
}

template <size_t... Counts>
void ExpectListsOfOneTo(const std::vector<CLOMAdsLispVar>& values, std::index_sequence<Counts...>) {
  (ExpectListOf<Counts + 1>(values), ...);
}

}  // namespace

TEST_F(ListTest, HoldsOneToElevenValuesThemselvesInOrder) {
  std::vector<CLOMAdsLispVar> values;
  for (int n = 0; n < 11; ++n) values.emplace_back(n);
  ExpectListsOfOneTo(values, std::make_index_sequence<11>());
  EXPECT_EQ(Text(ListOfFirst(values, std::make_index_sequence<11>())), "(0 1 2 3 4 5 6 7 8 9 10)");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ListTest, HoldsValuesOfEveryKindThemselves) {
  const std::vector<CLOMAdsLispVar> values = {
      CLOMAdsLispVar(),    V(L"(1 2)"),         ListOf({}),  DottedOf({1, 2}),   NilAtom(), V(L"\"text\""),
      DottedOf({1, 2, 3}), CLOMAdsLispVar(2.5), V(L"(nil)"), CLOMAdsLispVar(7L), V(L"()")};
  ExpectListsOfOneTo(values, std::make_index_sequence<11>());
  EXPECT_EQ(Printed(), "");
}

TEST_F(ListTest, OfNilHasOneNullMember) {
  const CLOMAdsLispVar list = CLOMAdsLisp::List(CLOMAdsLisp::Nil);
  ASSERT_EQ(ChildCount(list), 1U);
  EXPECT_EQ(Child(list, 0), nullptr);
  EXPECT_EQ(Text(list), "(nil)");
  EXPECT_EQ(Text(CLOMAdsLisp::List(CLOMAdsLisp::Nil, CLOMAdsLisp::Nil)), "(nil nil)");
}

TEST_F(ListTest, HoldsTheSameValueTwice) {
  const CLOMAdsLispVar value = V(L"(1)");
  const CLOMAdsLispVar list = CLOMAdsLisp::List(value, value);
  EXPECT_EQ(Child(list, 0), value.New());
  EXPECT_EQ(Child(list, 1), value.New());
}

TEST_F(ListTest, LeavesItsValuesAlone) {
  const CLOMAdsLispVar first = V(L"(1)");
  const CLOMAdsLispVar second = V(L"(2)");
  const CLOMAdsLispVar list = CLOMAdsLisp::List(first, second);
  EXPECT_EQ(Text(list), "((1) (2))");
  EXPECT_EQ(Text(first), "(1)");
  EXPECT_EQ(Text(second), "(2)");
}

TEST_F(ListTest, MemberWrapsTheValueItself) {
  CLOMAdsLispVar value = V(L"(1 2)");
  const CLOMAdsLispVar old = value;
  EXPECT_EQ(&value.List(), &value);
  EXPECT_EQ(Text(value), "((1 2))");
  EXPECT_EQ(Child(value, 0), old.New());
  EXPECT_EQ(Text(old), "(1 2)");
}

TEST_F(ListTest, MemberWrapsEveryKindOfValue) {
  const std::pair<CLOMAdsLispVar, std::string> cases[] = {{CLOMAdsLispVar(), "(nil)"},
                                                          {NilAtom(), "(nil)"},
                                                          {V(L"1"), "(1)"},
                                                          {ListOf({}), "(())"},
                                                          {DottedOf({1, 2}), "((1 . 2))"}};
  for (const auto& [value, text] : cases) {
    CLOMAdsLispVar list = value;
    list.List();
    EXPECT_EQ(Text(list), text);
    EXPECT_EQ(Child(list, 0), value.New());
  }
  EXPECT_EQ(Printed(), "");
}

}  // namespace lomlisp::test
