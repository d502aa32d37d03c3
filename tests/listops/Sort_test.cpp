// Sort: members in ascending order, in place, and no harm from lists that have no order.
#include <tests/listops/Values.h>
#include <tests/support/SmallStack.h>

#include <initializer_list>
#include <limits>
#include <numeric>
#include <random>

namespace lomlisp::test::sort {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

const std::string kRefused = "CLOMAdsLispVar::Sort : Keine Liste aus Atomen oder Assoziativ-Liste!\n";

std::string CannotOrder(const std::string& typeName) {
  return "Fehler bei ResBuf::operator< :Ich kann ResBufs vom Typ " + typeName + " nicht vergleichen\nName";
}

CLOMAdsLispVar Atom(const ResBuf& record) {
  CLOMAdsLispVar atom = 0;
  atom.GetAtom() = record;
  return atom;
}
CLOMAdsLispVar Angle(double value) { return Atom(ResBuf(value, ADSRealType::Angle)); }
CLOMAdsLispVar Bare(short type) { return Atom(ResBuf(ADSResType(type))); }
CLOMAdsLispVar NullText() { return Atom(ResBuf(static_cast<const wchar_t*>(nullptr))); }
CLOMAdsLispVar Point(ADSPointType type) {
  const double point[3] = {1, 2, 3};
  return Atom(ResBuf(point, type));
}
CLOMAdsLispVar Name(__int64 word, ADSNameType type) {
  const __int64 name[2] = {word, 0};
  return Atom(ResBuf(name, type));
}
CLOMAdsLispVar Layer() {
  CLOMAdsLispVar atom = L"wall";
  EXPECT_TRUE(atom.GetAtom().MakeDXF(8));
  return atom;
}

using Values = std::vector<CLOMAdsLispVar>;

CLOMAdsLispVar ListFrom(const Values& members) {
  CLOMAdsLispVar list = ListOf({});
  for (const CLOMAdsLispVar& member : members) list.New()->children.push_back(member.New());
  return list;
}

std::vector<const CLOMLispElement*> NodesIn(const CLOMAdsLispVar& list) {
  std::vector<const CLOMLispElement*> nodes;
  for (const Element& child : list.New()->children) nodes.push_back(child.get());
  return nodes;
}

// Sorts and expects the same nodes, in whatever order, in the same list.
void ExpectAPermutation(const Values& members) {
  CLOMAdsLispVar list = ListFrom(members);
  const Element node = list.New();
  std::vector<const CLOMLispElement*> before = NodesIn(list);
  list.Sort();
  std::vector<const CLOMLispElement*> after = NodesIn(list);
  std::ranges::sort(before, std::less<>());
  std::ranges::sort(after, std::less<>());
  EXPECT_EQ(after, before);
  EXPECT_EQ(list.New(), node);
}

// Members that are given in ascending order must come back in it from every order.
void ExpectEveryOrderSorted(const Values& ascending) {
  const std::vector<const CLOMLispElement*> expected = NodesIn(ListFrom(ascending));
  std::vector<size_t> order(ascending.size());
  std::iota(order.begin(), order.end(), size_t{0});
  do {
    Values members;
    for (const size_t position : order) members.push_back(ascending[position]);
    CLOMAdsLispVar list = ListFrom(members);
    list.Sort();
    ASSERT_EQ(NodesIn(list), expected) << Text(ListFrom(members));
  } while (std::ranges::next_permutation(order).found);
}

// The ascending values of every type that has an order.
std::vector<Values> OrderedValues() {
  constexpr short kShortest = std::numeric_limits<short>::min();
  constexpr short kLongest = std::numeric_limits<short>::max();
  constexpr __int64 kLeast = std::numeric_limits<long long>::min();
  constexpr __int64 kMost = std::numeric_limits<long long>::max();
  return {{kShortest, -1, 0, 2, 10, kLongest},
          {-2147483647L, -70000L, -1L, 0L, 70000L, 2147483647L},
          {kLeast, -5000000000LL, 0LL, 1LL, 5000000000LL, kMost},
          {-kInfinity, -1e300, -0.5, 0.0, 1e-12, kInfinity},
          {Angle(-3.0), Angle(-0.5), Angle(0.0), Angle(1e-12), Angle(2.5), Angle(1e300)},
          {L"", L"A", L"B", L"a", L"ab", L"abc"},
          {L"Z", L"z", L"\u00C4", L"\u00DF", L"\U00010000", L"\uFF5E"}};
}

// Whether `text` is nothing but one or more of `part`.
bool Repeats(const std::string& text, const std::string& part) {
  size_t position = 0;
  while (text.compare(position, part.size(), part) == 0) position += part.size();
  return position > 0 && position == text.size();
}

class SortTest : public HostTest {};

// --- Lists of atoms ---

TEST_F(SortTest, OrdersAtomsOfOneType) {
  for (const Values& ascending : OrderedValues()) ExpectEveryOrderSorted(ascending);
  EXPECT_EQ(Printed(), "");
}

TEST_F(SortTest, OrdersSmallIntegersOfDifferentTypes) {
  ExpectEveryOrderSorted({1, 2L, 3LL, 4, 5L, 6LL});
  EXPECT_EQ(Printed(), "");
}

TEST_F(SortTest, OrdersRealsWithAnglesAmongThem) {
  ExpectEveryOrderSorted({-1.5, Angle(-1.0), 0.0, Angle(0.5), 2.0});
  EXPECT_EQ(Printed(), "");
}

TEST_F(SortTest, KeepsEqualAtoms) {
  for (const wchar_t* text : {L"(2 1 2 1 2)", L"(1 1 1)", L"(\"b\" \"a\" \"b\")", L"(1.5 0.5 1.5)"}) {
    CLOMAdsLispVar list = V(text);
    list.Sort();
    const std::vector<const CLOMLispElement*> nodes = NodesIn(list);
    for (size_t i = 1; i < nodes.size(); ++i) EXPECT_EQ(nodes[i]->atom.Less(nodes[i - 1]->atom), 0) << text;
  }
  EXPECT_EQ(Text(V(L"(2 1 2 1 2)").Sort()), "(1 1 2 2 2)");
  EXPECT_EQ(Printed(), "");
}

TEST_F(SortTest, KeepsAMemberThatIsThereTwice) {
  const CLOMAdsLispVar one = 1, two = 2;
  CLOMAdsLispVar list = ListOf({two, one, two, one, one});
  list.Sort();
  for (size_t i = 0; i < 5; ++i) EXPECT_EQ(Child(list, i), i < 3 ? one.New() : two.New());
}

TEST_F(SortTest, LeavesShortListsAsTheyAre) {
  for (const CLOMAdsLispVar& list :
       {ListOf({}), ListOf({1}), ListOf({CLOMAdsLisp::nil()}), ListOf({ListOf({})}), ListOf({Bare(RTLB)}),
        ListOf({NilAtom()}), ListOf({Point(ADSPointType::Point)})}) {
    const std::string before = Text(list);
    const std::vector<const CLOMLispElement*> nodes = NodesIn(list);
    EXPECT_EQ(CLOMAdsLisp::Sort(list).New(), list.New());
    EXPECT_EQ(NodesIn(list), nodes);
    EXPECT_EQ(Text(list), before);
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(SortTest, SortsPointsAsListsOfNumbers) {
  CLOMAdsLispVar point = V(L"(3.5 1.0 2.0)");
  point.Sort();
  EXPECT_EQ(Text(point), "(1.000000 2.000000 3.500000)");
}

// --- Association lists ---

TEST_F(SortTest, OrdersPairsByTheirKeys) {
  CLOMAdsLispVar list = V(L"((\"b\" . 2) (\"a\" . 1))");
  list.Sort();
  EXPECT_EQ(Text(list), "((\"a\" . 1) (\"b\" . 2))");
  EXPECT_EQ(Text(V(L"((3 9) (1 8 7) (2 . 6) (0))").Sort()), "((0) (1 8 7) (2 . 6) (3 9))");
  EXPECT_EQ(Printed(), "");
}

TEST_F(SortTest, OrdersPairsWithKeysOfEachType) {
  for (const Values& keys : OrderedValues()) {
    Values pairs;
    for (const CLOMAdsLispVar& key : keys) pairs.push_back(DottedOf({key, 1}));
    ExpectEveryOrderSorted(pairs);
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(SortTest, OrdersTheTopLevelOnly) {
  const CLOMAdsLispVar list = V(L"((3 2 1) (1 (9 8 7)) (2 5 4))");
  CLOMAdsLisp::Sort(list);
  EXPECT_EQ(Text(list), "((1 (9 8 7)) (2 5 4) (3 2 1))");
}

TEST_F(SortTest, OrdersPairsWithTheSameKeyInEitherOrder) {
  const Values pairs = {V(L"(2 . 1)"), V(L"(1 . 2)"), V(L"(2 . 3)"), V(L"(1 . 4)"), V(L"(2 . 5)")};
  ExpectAPermutation(pairs);
  CLOMAdsLispVar list = ListFrom(pairs);
  list.Sort();
  for (size_t i = 0; i < 5; ++i) {
    const short key = Child(list, i)->children[0]->atom;
    EXPECT_EQ(key, i < 2 ? 1 : 2);
  }
}

// --- What cannot be sorted ---

TEST_F(SortTest, LeavesNilAloneSilently) {
  CLOMAdsLispVar nil;
  EXPECT_EQ(&nil.Sort(), &nil);
  EXPECT_TRUE(IsEmptyHandle(nil));
  EXPECT_TRUE(IsEmptyHandle(CLOMAdsLisp::Sort(nil)));
  CLOMAdsLispVar nilAtom = NilAtom();
  const Element node = nilAtom.New();
  nilAtom.Sort();
  EXPECT_EQ(nilAtom.New(), node);
  EXPECT_EQ(CLOMAdsLisp::Sort(nilAtom).New(), node);
  EXPECT_EQ(Printed(), "");
}

TEST_F(SortTest, RefusesAtomsAndDottedLists) {
  for (const CLOMAdsLispVar& value : {V(L"5"), V(L"\"a\""), DottedOf({2, 1}), DottedOf({3, 2, 1}),
                                      DottedOf({3, V(L"(2 1)")}), DottedOf({})}) {
    const std::string before = Text(value);
    CLOMAdsLispVar list = value;
    EXPECT_EQ(&list.Sort(), &list);
    EXPECT_EQ(list.New(), value.New());
    EXPECT_EQ(Printed(), kRefused);
    EXPECT_EQ(CLOMAdsLisp::Sort(value).New(), value.New());
    EXPECT_EQ(Printed(), kRefused);
    EXPECT_EQ(Text(value), before);
  }
}

// --- Sharing ---

TEST_F(SortTest, TheMemberSortsForEverybodyWhoSharesTheList) {
  CLOMAdsLispVar list = V(L"(3 1 2)");
  const CLOMAdsLispVar other = list;
  const CLOMAdsLispVar parent = ListOf({list});
  EXPECT_EQ(&list.Sort(), &list);
  EXPECT_EQ(Text(list), "(1 2 3)");
  EXPECT_EQ(other.New(), list.New());
  EXPECT_EQ(Text(other), "(1 2 3)");
  EXPECT_EQ(Text(parent), "((1 2 3))");
}

TEST_F(SortTest, TheStaticFormSortsTheCallersListToo) {
  const CLOMAdsLispVar list = V(L"(3 1 2)");
  const CLOMAdsLispVar sorted = CLOMAdsLisp::Sort(list);
  EXPECT_EQ(sorted.New(), list.New());
  EXPECT_EQ(Text(list), "(1 2 3)");
}

// --- Lists without an order ---

TEST_F(SortTest, SaysWhichTypesItCannotOrder) {
  const CLOMAdsLispVar color = [] {
    CLOMAdsLispVar atom = 3;
    EXPECT_TRUE(atom.GetAtom().MakeDXF(62));
    return atom;
  }();
  const struct {
    const char* typeName;
    Values members;
  } cases[] = {
      {"RTPOINT", Values(3, Point(ADSPointType::Point))},
      {"RT3DPOINT", Values(3, Point(ADSPointType::Point3d))},
      {"RTENAME", {Name(3, ADSNameType::Entity), Name(1, ADSNameType::Entity), Name(2, ADSNameType::Entity)}},
      {"RTPICKS", {Name(2, ADSNameType::PickSet), Name(1, ADSNameType::PickSet)}},
      {"RTORINT", {Bare(RTORINT), Bare(RTORINT)}},
      {"RTVOID", {Bare(RTVOID), Bare(RTVOID)}},
      {"RTLB", {Bare(RTLB), Bare(RTLB), Bare(RTLB)}},
      {"RTLE", {Bare(RTLE), Bare(RTLE)}},
      {"RTDOTE", {Bare(RTDOTE), Bare(RTDOTE)}},
      {"RTNIL", {NilAtom(), NilAtom(), NilAtom()}},
      {"<5021>", {Bare(RTT), Bare(RTT)}},
      {"<5025>", {Bare(5025), Bare(5025)}},
      {"<8>", {Layer(), Layer()}},
      {"<62>", {color, color}},
  };
  for (const auto& [typeName, members] : cases) {
    SCOPED_TRACE(typeName);
    ExpectAPermutation(members);
    const std::string printed = Printed();
    EXPECT_TRUE(Repeats(printed, CannotOrder(typeName))) << printed;

    Values pairs;
    for (const CLOMAdsLispVar& key : members) pairs.push_back(DottedOf({key, 1}));
    ExpectAPermutation(pairs);
    const std::string printedForPairs = Printed();
    EXPECT_TRUE(Repeats(printedForPairs, CannotOrder(typeName))) << printedForPairs;
  }
}

TEST_F(SortTest, PairsWithListsAsKeysHaveNoOrder) {
  ExpectAPermutation({V(L"((2) . 1)"), V(L"((1) . 2)"), V(L"((3 4))")});
  EXPECT_TRUE(Repeats(Printed(), CannotOrder("RTNONE")));
}

TEST_F(SortTest, KindsWithoutAnOrderBetweenThemStaySilent) {
  ExpectAPermutation({L"a", 1});
  ExpectAPermutation({1, L"a", 2.5});
  ExpectAPermutation({L"b", 3, L"a", 2L, 1LL, Layer(), Bare(RTT), Bare(RTLB)});
  ExpectAPermutation({V(L"(\"a\" . 1)"), V(L"(1 . 2)"), V(L"((1) . 3)")});
  EXPECT_EQ(Printed(), "");
}

TEST_F(SortTest, EndsWithNaNs) {
  ExpectAPermutation(Values(20, kNaN));
  ExpectAPermutation({3.0, kNaN, 1.0, kNaN, 2.0});
  std::mt19937 random(1);
  for (int round = 0; round < 200; ++round) {
    Values atoms, pairs;
    for (auto i = random() % 100; i > 0; --i) {
      const double number = random() % 3 == 0 ? kNaN : static_cast<double>(random() % 50);
      atoms.emplace_back(number);
      pairs.push_back(DottedOf({number, 1}));
    }
    ExpectAPermutation(atoms);
    ExpectAPermutation(pairs);
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(SortTest, EndsWithNullTexts) {
  ExpectAPermutation({NullText(), NullText(), NullText()});
  ExpectAPermutation({L"b", NullText(), L"a", L"", NullText(), L"c"});
  ExpectAPermutation({DottedOf({L"b", 1}), DottedOf({NullText(), 2}), DottedOf({L"a", 3})});
  EXPECT_EQ(Printed(), "");
}

TEST_F(SortTest, EndsWithMembersWithoutAKey) {
  ExpectAPermutation({CLOMAdsLispVar(), CLOMAdsLispVar(), CLOMAdsLispVar()});
  ExpectAPermutation({ListOf({}), ListOf({}), DottedOf({}), 1, NilAtom()});
  ExpectAPermutation({V(L"(2 . 1)"), 7, V(L"(1 . 2)"), ListOf({}), CLOMAdsLispVar(), L"a", V(L"(0)")});
  ExpectAPermutation({DottedOf({CLOMAdsLispVar(), 1}), DottedOf({2, 3}), DottedOf({CLOMAdsLispVar(), 4})});
}

TEST_F(SortTest, EndsWithAnyMixtureOfAtoms) {
  const Values kinds = {0,    1,          2L,    3LL,        1.5,     kNaN,         Angle(0.5),
                        L"a", L"b",       L"",   NullText(), Layer(), NilAtom(),    Bare(RTLB),
                        -1,   -kInfinity, 1e300, Bare(5025), -70000L, -5000000000LL};
  std::mt19937 random(2);
  for (int round = 0; round < 300; ++round) {
    Values members;
    for (auto i = random() % 120; i > 0; --i) members.push_back(kinds[random() % kinds.size()]);
    ExpectAPermutation(members);
    Printed();
  }
}

TEST_F(SortTest, EndsWithAnyMixtureOfMembers) {
  const Values kinds = {1,
                        L"a",
                        CLOMAdsLispVar(),
                        NilAtom(),
                        ListOf({}),
                        V(L"(1 . 2)"),
                        V(L"(2 3)"),
                        V(L"(\"b\" . 1)"),
                        V(L"(\"a\" 1)"),
                        V(L"((1) 2)"),
                        DottedOf({kNaN, 1}),
                        DottedOf({0.5, 1}),
                        DottedOf({CLOMAdsLispVar(), 1}),
                        DottedOf({NilAtom(), 1}),
                        DottedOf({70000L})};
  std::mt19937 random(3);
  for (int round = 0; round < 300; ++round) {
    Values members;
    for (auto i = random() % 120; i > 0; --i) members.push_back(kinds[random() % kinds.size()]);
    ExpectAPermutation(members);
    Printed();
  }
}

// --- Random lists with an order ---

TEST_F(SortTest, SortsListsOfEveryLength) {
  std::mt19937 random(4);
  for (int length = 0; length <= 130; ++length) {
    Values atoms, pairs;
    std::vector<int> expected;
    for (int i = 0; i < length; ++i) {
      const int number = static_cast<int>(random() % 60);
      expected.push_back(number);
      atoms.emplace_back(number);
      pairs.push_back(DottedOf({number, 0}));
    }
    std::ranges::sort(expected);
    const CLOMAdsLispVar sorted = CLOMAdsLisp::Sort(ListFrom(atoms));
    const CLOMAdsLispVar sortedPairs = CLOMAdsLisp::Sort(ListFrom(pairs));
    std::vector<int> numbers, keys;
    for (const Element& atom : sorted.New()->children) numbers.push_back(atom->atom);
    for (const Element& pair : sortedPairs.New()->children) keys.push_back(pair->children[0]->atom);
    EXPECT_EQ(numbers, expected);
    EXPECT_EQ(keys, expected);
  }
  EXPECT_EQ(Printed(), "");
}

// --- Size ---

TEST_F(SortTest, SortsLongListsInAnyOrder) {
  OnSmallStack([] {
    Values ascending;
    for (long n = 0; n < kLarge; ++n) ascending.emplace_back(n);
    const std::vector<const CLOMLispElement*> expected = NodesIn(ListFrom(ascending));
    const auto expectSorted = [&](const Values& members) {
      CLOMAdsLispVar list = ListFrom(members);
      list.Sort();
      EXPECT_TRUE(NodesIn(list) == expected);
    };
    expectSorted(ascending);
    expectSorted(Values(ascending.rbegin(), ascending.rend()));
    Values members = ascending;
    std::rotate(members.begin(), members.begin() + kLarge / 2, members.end());
    expectSorted(members);
    std::shuffle(members.begin(), members.end(), std::mt19937(5));
    expectSorted(members);
  });
}

TEST_F(SortTest, SortsLongListsOfEqualAtoms) {
  OnSmallStack([] {
    constexpr int kMany = kLarge / 5;
    const CLOMAdsLispVar same = 1L;
    ExpectAPermutation(Values(kMany, same));
    Values equal;
    for (int n = 0; n < kMany; ++n) equal.emplace_back(n % 2);
    CLOMAdsLispVar list = ListFrom(equal);
    list.Sort();
    EXPECT_EQ(static_cast<short>(Child(list, kMany / 2 - 1)->atom), 0);
    EXPECT_EQ(static_cast<short>(Child(list, kMany / 2)->atom), 1);
  });
}

TEST_F(SortTest, SortsLongListsOfPairsAndTexts) {
  OnSmallStack([] {
    constexpr int kMany = kLarge / 4;
    Values texts, pairs;
    for (int n = 0; n < kMany; ++n) {
      texts.emplace_back(std::to_wstring(kLarge + n));
      pairs.push_back(DottedOf({texts.back(), 1}));
    }
    for (Values* values : {&texts, &pairs}) {
      const std::vector<const CLOMLispElement*> expected = NodesIn(ListFrom(*values));
      std::shuffle(values->begin(), values->end(), std::mt19937(6));
      CLOMAdsLispVar list = ListFrom(*values);
      list.Sort();
      EXPECT_TRUE(NodesIn(list) == expected);
    }
  });
}

// Texts that begin alike for a while, with the characters at the ends of the ranges of UTF-16.
TEST_F(SortTest, OrdersTextsByTheirUnitsAndKeepsEqualOnes) {
  const std::wstring characters = L"ab\x1\xD7FF\xE000\xFFFE\xFFFF\U00010000\U0010FFFF";
  std::mt19937 random(9);
  for (unsigned int round = 0; round < Rounds(2'000); ++round) {
    const std::wstring beginning = std::wstring(round % 6, L'a') + (round % 4 == 0 ? L"\U00010000" : L"");
    Values texts;
    for (size_t count = random() % 30; count > 0; --count) {
      std::wstring text = beginning;
      for (size_t length = random() % 7; length > 0; --length)
        text += characters[random() % characters.size()];
      texts.emplace_back(text);
    }
    CLOMAdsLispVar list = ListFrom(texts);
    std::stable_sort(texts.begin(), texts.end(), [](const CLOMAdsLispVar& a, const CLOMAdsLispVar& b) {
      return a.GetAtom().Less(b.GetAtom()) != 0;
    });
    list.Sort();
    ASSERT_TRUE(NodesIn(list) == NodesIn(ListFrom(texts))) << "round " << round;
  }
}

// Numbers that are no characters come behind all that are.
TEST_F(SortTest, OrdersTextsThatHoldNoCharacters) {
  if constexpr (sizeof(wchar_t) > 2) {
    const auto text = [](std::initializer_list<uint32_t> codes) {
      std::wstring characters;
      for (const uint32_t code : codes) characters += static_cast<wchar_t>(code);
      return CLOMAdsLispVar(characters);
    };
    const Values expected = {text({'a', 0x10FFFF}), text({'a', 0xFFFF}),        text({'a', 0xFFFF, 'b'}),
                             text({'a', 0x110000}), text({'a', 0x110000, 'a'}), text({'a', 0x7FFFFFFF})};
    Values shuffled = expected;
    std::mt19937 random(10);
    for (int round = 0; round < 100; ++round) {
      std::shuffle(shuffled.begin(), shuffled.end(), random);
      CLOMAdsLispVar list = ListFrom(shuffled);
      list.Sort();
      ASSERT_TRUE(NodesIn(list) == NodesIn(ListFrom(expected))) << "round " << round;
    }
  }
}

TEST_F(SortTest, EndsWithLongListsWithoutAnOrder) {
  OnSmallStack([] {
    constexpr int kMany = kLarge / 5;
    std::mt19937 random(7);
    Values numbers, entries(kMany, CLOMAdsLispVar());
    entries.push_back(V(L"(1 . 2)"));
    for (int n = 0; n < kMany; ++n)
      numbers.emplace_back(random() % 2 == 0 ? kNaN : static_cast<double>(random() % 1000));
    ExpectAPermutation(numbers);
    ExpectAPermutation(entries);
  });
}

TEST_F(SortTest, DeepMembersNeedNoStack) {
  OnSmallStack([] {
    CLOMAdsLispVar deep = 1;
    for (int level = 0; level < kLarge; ++level) deep.List();
    const CLOMAdsLispVar first = ListOf({1, deep}), second = ListOf({2, deep});
    const CLOMAdsLispVar list = ListOf({second, first});
    CLOMAdsLisp::Sort(list);
    EXPECT_EQ(Child(list, 0), first.New());
    EXPECT_EQ(Child(list, 1), second.New());
  });
}

}  // namespace
}  // namespace lomlisp::test::sort
