// The stand-in for RapidCheck: a property that does not hold must fail, and show the case.
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

using rc::detail::FirstFailure;
using Numbers = std::vector<int>;

// As many values as ought to show each that there is.
template <class T>
std::vector<T> Many(const rc::Gen<T>& gen, int size = rc::kNominalSize) {
  rc::Random random(1);
  std::vector<T> values;
  while (values.size() < 2000) values.push_back(gen(random, size));
  return values;
}

template <class T>
std::set<T> Different(const rc::Gen<T>& gen, int size = rc::kNominalSize) {
  const std::vector<T> values = Many(gen, size);
  return {values.begin(), values.end()};
}

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

// --- Properties ---

void NumbersAreSmall() {
  const int number = *rc::gen::inRange(0, 10).as("number");
  RC_ASSERT(number < 9);
}

TEST(StandIn, AFalsePropertyFailsAndShowsItsCase) {
  const std::string failure = FirstFailure(NumbersAreSmall, {7, 300});
  EXPECT_TRUE(Contains(failure, " with RC_PARAMS=\"seed=7 max_success=300\"")) << failure;
  EXPECT_TRUE(Contains(failure, "\nnumber: 9\n")) << failure;
  EXPECT_TRUE(Contains(failure, "StandIn_test.cpp:")) << failure;
  EXPECT_TRUE(Contains(failure, "RC_ASSERT(number < 9)")) << failure;
  EXPECT_EQ(failure, FirstFailure(NumbersAreSmall, {7, 300}));
}

TEST(StandIn, AFalsePropertyFailsItsTest) {
  EXPECT_FATAL_FAILURE(rc::detail::ExpectProperty(NumbersAreSmall), "\nnumber: 9\n");
}

TEST(StandIn, AFailureHasAText) {
  const auto property = [] {
    if (*rc::gen::just(1) == 1) RC_FAIL("out of " + std::string("paper"));
  };
  const std::string failure = FirstFailure(property, {});
  EXPECT_TRUE(failure.starts_with("case 1 with ")) << failure;
  EXPECT_TRUE(Contains(failure, "\na value: 1\n")) << failure;
  EXPECT_TRUE(failure.ends_with(": out of paper")) << failure;
}

TEST(StandIn, ATruePropertyHasAsManyCasesAsAreWanted) {
  int cases = 0;
  std::set<size_t> lengths;
  const auto property = [&] {
    ++cases;
    lengths.insert((*rc::gen::container<Numbers>(rc::gen::just(1))).size());
  };
  EXPECT_EQ(FirstFailure(property, {1, 300}), "");
  EXPECT_EQ(cases, 300);
  EXPECT_LE(*lengths.begin(), 1U);
  EXPECT_GT(*lengths.rbegin(), 70U);
  EXPECT_LE(*lengths.rbegin(), 100U);
}

TEST(StandIn, CasesDifferAndSeedsToo) {
  std::set<int> numbers;
  const auto property = [&] { numbers.insert(*rc::gen::arbitrary<int>()); };
  EXPECT_EQ(FirstFailure(property, {1, 50}), "");
  EXPECT_EQ(FirstFailure(property, {2, 50}), "");
  EXPECT_EQ(numbers.size(), 100U);
}

TEST(StandIn, ParametersComeFromAText) {
  const auto parameters = rc::detail::ParametersFrom("seed=7 max_success=300");
  EXPECT_EQ(parameters.seed, 7U);
  EXPECT_EQ(parameters.cases, 300U);
  EXPECT_EQ(rc::detail::ParametersFrom("").cases, 100U);
  EXPECT_THROW(rc::detail::ParametersFrom("max_sucess=300"), std::invalid_argument);
}

class Fixtures : public ::testing::Test {
 protected:
  void SetUp() override { m_steps += 's'; }
  void TearDown() override { RC_ASSERT(m_steps == "sb"); }
  std::string m_steps;
};

RC_GTEST_FIXTURE_PROP(Fixtures, AreMadeAnewForEachCase, ()) { m_steps += 'b'; }

// --- Generators ---

TEST(StandIn, RangesGiveEachOfTheirNumbers) {
  EXPECT_EQ(Different(rc::gen::inRange(-2, 3)), (std::set<int>{-2, -1, 0, 1, 2}));
  EXPECT_EQ(Different(rc::gen::arbitrary<bool>()), (std::set<bool>{false, true}));
  const std::set<short> shorts = Different(rc::gen::arbitrary<short>());
  EXPECT_LT(*shorts.begin(), -32000);
  EXPECT_GT(*shorts.rbegin(), 32000);
}

TEST(StandIn, RealsAreFinite) {
  const std::set<double> reals = Different(rc::gen::arbitrary<double>());
  EXPECT_LT(*reals.begin(), -1e200);
  EXPECT_GT(*reals.rbegin(), 1e200);
  EXPECT_TRUE(std::ranges::all_of(reals, [](double real) { return std::isfinite(real); }));
}

TEST(StandIn, ElementsAndChoicesAllOccur) {
  EXPECT_EQ(Different(rc::gen::element(1, 2, 3)), (std::set<int>{1, 2, 3}));
  EXPECT_EQ(Different(rc::gen::elementOf(std::string("abc"))), (std::set<char>{'a', 'b', 'c'}));
  EXPECT_EQ(Different(rc::gen::oneOf(rc::gen::just(1), rc::gen::just(2))), (std::set<int>{1, 2}));
}

TEST(StandIn, ChoicesOccurAsOftenAsTheyWeigh) {
  const auto choice = rc::gen::weightedOneOf<int>({{1, rc::gen::just(1)}, {9, rc::gen::just(2)}});
  EXPECT_NEAR(static_cast<double>(std::ranges::count(Many(choice), 1)), 200, 60);
}

TEST(StandIn, MadeOfOthers) {
  const auto digit = rc::gen::inRange(0, 10);
  EXPECT_EQ(*Different(rc::gen::map(digit, [](int value) { return value * 2; })).rbegin(), 18);
  EXPECT_EQ(*Different(rc::gen::apply([](int a, int b) { return a + b; }, digit, digit)).rbegin(), 18);
  EXPECT_EQ(Different(rc::gen::pair(digit, digit)).size(), 100U);
  EXPECT_EQ(*Different(rc::gen::suchThat(digit, [](int value) { return value < 5; })).rbegin(), 4);
  const auto upTo = [](int last) {
    return rc::gen::pair(rc::gen::just(last), rc::gen::inRange(0, last + 1));
  };
  for (const auto& [last, number] : Many(rc::gen::mapcat(digit, upTo))) ASSERT_LE(number, last);
}

TEST(StandIn, AConditionThatNothingMeetsIsAnError) {
  rc::Random random(1);
  const auto none = rc::gen::suchThat(rc::gen::inRange(0, 10), [](int value) { return value > 10; });
  EXPECT_THROW(none(random, rc::kNominalSize), std::runtime_error);
}

TEST(StandIn, ContainersAreAsLongAsTheSizeAtMost) {
  const auto lengths = [](const rc::Gen<std::string>& texts) {
    return Different(rc::gen::map(texts, [](const std::string& text) { return text.size(); }), 5);
  };
  const auto texts = rc::gen::container<std::string>(rc::gen::element('a', 'b'));
  EXPECT_EQ(lengths(texts), (std::set<size_t>{0, 1, 2, 3, 4, 5}));
  EXPECT_EQ(lengths(rc::gen::resize(2, texts)), (std::set<size_t>{0, 1, 2}));
  EXPECT_EQ(lengths(rc::gen::scale(0.4, texts)), (std::set<size_t>{0, 1, 2}));
  EXPECT_EQ(lengths(rc::gen::container<std::string>(3, rc::gen::just('a'))), (std::set<size_t>{3}));
}

TEST(StandIn, KeysAndUniqueMembersAreDistinct) {
  const auto digit = rc::gen::inRange(0, 10);
  std::set<size_t> lengths;
  for (const Numbers& numbers : Many(rc::gen::unique<Numbers>(digit), 10)) {
    lengths.insert(numbers.size());
    ASSERT_EQ(std::set<int>(numbers.begin(), numbers.end()).size(), numbers.size());
  }
  EXPECT_EQ(lengths.size(), 11U);
  lengths.clear();
  using Map = std::map<int, int>;
  for (const Map& entries : Many(rc::gen::container<Map>(digit, digit), 10)) lengths.insert(entries.size());
  EXPECT_EQ(lengths.size(), 11U);
}

TEST(StandIn, StructuresAreBuiltOfTheirMembers) {
  struct Part {
    int number = 0;
    std::string name{};
  };
  rc::Random random(1);
  const auto part =
      rc::gen::build<Part>(rc::gen::set(&Part::number, rc::gen::just(7)),
                           rc::gen::set(&Part::name, rc::gen::just(std::string("nut"))))(random, 1);
  EXPECT_EQ(part.number, 7);
  EXPECT_EQ(part.name, "nut");
}

// --- Texts ---

TEST(StandIn, ValuesAreShown) {
  EXPECT_EQ(rc::toString(Numbers{1, 2}), "[1, 2]");
  EXPECT_EQ(rc::toString(std::pair(true, 0.1)), "(true, 0.10000000000000001)");
  EXPECT_EQ(rc::toString(std::wstring(L"a\u20AC\n")), "\"a<20ac><a>\"");
}

// The values below are those of every compiler and system.
TEST(StandIn, ASeedGivesTheSameValuesEverywhere) {
  const auto property = [] {
    const auto digit = rc::gen::inRange(0, 10);
    *rc::gen::pair(rc::gen::arbitrary<short>(), rc::gen::arbitrary<double>()).as("numbers");
    *rc::gen::container<std::map<int, std::pair<int, int>>>(digit, rc::gen::pair(digit, digit)).as("map");
    RC_FAIL("to see them");
  };
  const std::string failure = FirstFailure(property, {1, 20});
  EXPECT_TRUE(Contains(failure, "\nnumbers: (-14969, -1.6897848625062547e-217)\nmap: [(2, (7, 0))]\n"))
      << failure;
}

}  // namespace
