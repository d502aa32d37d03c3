#include <embedded/drawing/GroupRecords.h>
#include <embedded/selection/Filter.h>
#include <tests/support/HostTest.h>

#include <limits>
#include <random>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace lomlisp::test {
namespace {

using embedded::Chain;
using embedded::Drawing;
using embedded::Filter;
using embedded::Group;
using embedded::Groups;
using embedded::Object;
using embedded::Point;
using embedded::Record;
using embedded::Reference;

Group Operator(const wchar_t* name) { return {-4, std::wstring(name)}; }
Group Extended() { return {-3, 0LL}; }
Group Application(const wchar_t* name) { return {1001, std::wstring(name)}; }
const Group kYes{0, L"LINE"};
const Group kNo{0, L"ARC"};

class FilterTest : public HostTest {
 protected:
  Object& Add(Groups groups) { return drawing.NewObject(std::move(groups)); }

  Chain ChainOf(const Groups& groups) {
    Chain chain;
    for (const Group& group : groups) {
      const size_t before = chain.size();
      AppendRecord(chain, group, drawing);
      EXPECT_EQ(chain.size(), before + 1) << group.code;
    }
    return chain;
  }

  std::string ObjectionTo(const Chain& chain) {
    std::string objection;
    const bool isGood = Filter::Compile(chain, drawing, objection).has_value();
    EXPECT_EQ(isGood, objection.empty());
    return objection;
  }
  std::string ObjectionTo(const Groups& groups) { return ObjectionTo(ChainOf(groups)); }

  bool Takes(const Groups& filter, const Object& entity) {
    std::string objection;
    const auto compiled = Filter::Compile(ChainOf(filter), drawing, objection);
    EXPECT_TRUE(compiled.has_value()) << objection;
    return compiled && compiled->Matches(entity);
  }

  // The truth of an expression about a LINE.
  bool IsTrue(const Groups& filter) { return Takes(filter, line); }

  Drawing drawing;
  Object& line = Add({{0, L"LINE"}, {8, L"Walls"}});
};

// --- Values ---

TEST_F(FilterTest, AnEmptyFilterTakesAll) {
  EXPECT_TRUE(Takes({}, line));
  EXPECT_TRUE(Takes({}, Add({})));
}

TEST_F(FilterTest, AllGroupsMustMatch) {
  EXPECT_TRUE(Takes({{0, L"LINE"}, {8, L"Walls"}}, line));
  EXPECT_FALSE(Takes({{0, L"LINE"}, {8, L"Doors"}}, line));
  EXPECT_FALSE(Takes({{0, L"ARC"}, {8, L"Walls"}}, line));
  EXPECT_FALSE(Takes({{8, L"Walls"}, {8, L"Doors"}}, line));
}

TEST_F(FilterTest, TextsArePatterns) {
  EXPECT_TRUE(Takes({{0, L"*line,arc"}}, line));
  EXPECT_TRUE(Takes({{8, L"~D*"}}, line));
  EXPECT_FALSE(Takes({{8, L"W"}}, line));
  const Object& insert = Add({{0, L"INSERT"}, {2, L"*U12"}, {3, L""}});
  EXPECT_TRUE(Takes({{2, L"`*U##"}}, insert));
  EXPECT_TRUE(Takes({{3, L""}}, insert));
  EXPECT_FALSE(Takes({{1, L"*"}}, insert));
}

TEST_F(FilterTest, TheTypeMayComeAsARecordOfItsOwn) {
  Chain chain = ChainOf({{0, L"L*"}});
  chain.front().type = RTDXF0;
  std::string objection;
  const auto filter = Filter::Compile(chain, drawing, objection);
  ASSERT_TRUE(filter.has_value()) << objection;
  EXPECT_TRUE(filter->Matches(line));
  EXPECT_FALSE(filter->Matches(Add({{0, L"ARC"}})));
}

TEST_F(FilterTest, IntegersAreComparedExactly) {
  const Object& entity = Add({{70, 5LL}, {90, 70000LL}, {160, 1LL << 40}, {290, 1LL}});
  for (const Group& group : {Group{70, 5LL}, {90, 70000LL}, {160, 1LL << 40}, {290, 1LL}}) {
    EXPECT_TRUE(Takes({group}, entity)) << group.code;
    const long long next = std::get<long long>(group.value) - 1;
    EXPECT_FALSE(Takes({{group.code, next}}, entity)) << group.code;
  }
}

TEST_F(FilterTest, RealsAndPointsAreComparedWithinTheFuzz) {
  const Object& entity = Add({{40, 2.5}, {10, Point{1, 2, 3}}});
  for (const double offset : {0.0, 0.9e-6, -0.9e-6}) {
    EXPECT_TRUE(Takes({{40, 2.5 + offset}}, entity)) << offset;
    EXPECT_TRUE(Takes({{10, Point{1 + offset, 2 - offset, 3 + offset}}}, entity)) << offset;
  }
  for (const double offset : {1.1e-6, -1.1e-6}) {
    EXPECT_FALSE(Takes({{40, 2.5 + offset}}, entity)) << offset;
    EXPECT_FALSE(Takes({{10, Point{1 + offset, 2, 3}}}, entity)) << offset;
    EXPECT_FALSE(Takes({{10, Point{1, 2 + offset, 3}}}, entity)) << offset;
    EXPECT_FALSE(Takes({{10, Point{1, 2, 3 + offset}}}, entity)) << offset;
  }
}

TEST_F(FilterTest, InfinityEqualsItselfAndWhatIsNoNumberNothing) {
  const double infinity = std::numeric_limits<double>::infinity();
  const double noNumber = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(Takes({{40, infinity}}, Add({{40, infinity}})));
  EXPECT_FALSE(Takes({{40, -infinity}}, Add({{40, infinity}})));
  for (const wchar_t* relation : {L"=", L"<", L"<=", L">", L">="})
    EXPECT_FALSE(Takes({Operator(relation), {40, 1.0}}, Add({{40, noNumber}}))) << Utf8(relation);
  EXPECT_TRUE(Takes({Operator(L"!="), {40, 1.0}}, Add({{40, noNumber}})));
}

TEST_F(FilterTest, APointWithoutAThirdCoordinateHasZeroThere) {
  const Object& flat = Add({{10, Point{1, 2, 0, true}}, {11, 4.0}});
  EXPECT_TRUE(Takes({{10, Point{1, 2, 0}}}, flat));
  EXPECT_FALSE(Takes({{10, Point{1, 2, 1}}}, flat));
  EXPECT_TRUE(Takes({{11, Point{4, 0, 0}}}, flat));
  EXPECT_FALSE(Takes({{11, Point{4, 1, 0}}}, flat));
}

TEST_F(FilterTest, ValuesOfAnotherKindNeverMatch) {
  const Object& odd = Add({{62, 1.0}, {40, 1LL}, {8, 1LL}, {10, 1LL}, {330, L"1"}});
  for (const Group& group : {Group{62, 1LL}, {40, 1.0}, {8, L"*"}, {10, Point{1, 0, 0}}, {330, Reference{1}}})
    EXPECT_FALSE(Takes({group}, odd)) << group.code;
}

TEST_F(FilterTest, OneOfSeveralGroupsOfACodeIsEnough) {
  const Object& polyline = Add({{10, Point{0, 0}}, {42, 0.0}, {10, Point{5, 0}}, {42, 1.0}, {62, 1LL}});
  EXPECT_TRUE(Takes({{10, Point{5, 0}}}, polyline));
  EXPECT_TRUE(Takes({{10, Point{0, 0}}, {10, Point{5, 0}}}, polyline));
  EXPECT_FALSE(Takes({{10, Point{5, 5}}}, polyline));
  EXPECT_TRUE(Takes({Operator(L"!="), {42, 0.0}}, polyline));
  EXPECT_TRUE(Takes({Operator(L"="), {42, 0.0}}, polyline));
}

TEST_F(FilterTest, NamesOfObjectsMustBeTheSame) {
  Object& owner = Add({{0, L"DICTIONARY"}});
  const Object& entity = Add({{0, L"LINE"}, {330, Reference{owner.handle}}, {360, Reference{line.handle}}});
  EXPECT_TRUE(Takes({{-1, Reference{entity.handle}}}, entity));
  EXPECT_FALSE(Takes({{-1, Reference{entity.handle}}}, line));
  EXPECT_TRUE(Takes({{330, Reference{owner.handle}}}, entity));
  EXPECT_FALSE(Takes({{330, Reference{line.handle}}}, entity));
  EXPECT_TRUE(Takes({{360, Reference{line.handle}}}, entity));
  EXPECT_TRUE(Takes({Operator(L"/="), {330, Reference{line.handle}}}, entity));
  EXPECT_TRUE(Takes({Operator(L"*"), {330, Reference{line.handle}}}, entity));
  EXPECT_FALSE(Takes({Operator(L"*"), {330, Reference{line.handle}}}, line));
}

TEST_F(FilterTest, HandlesAreTexts) {
  const Object& entity = Add({{0, L"LINE"}, {5, L"1F"}});
  EXPECT_TRUE(Takes({{5, L"1f"}}, entity));
  EXPECT_FALSE(Takes({{5, L"1"}}, entity));
}

// --- What an entity leaves out ---

TEST_F(FilterTest, WhatIsLeftOutAtItsDefaultCountsAsThere) {
  const std::pair<Group, Group> cases[] = {
      {{6, L"ByLayer"}, {6, L"BYBLOCK"}},
      {{8, L"0"}, {8, L"1"}},
      {{39, 0.0}, {39, 1.0}},
      {{48, 1.0}, {48, 0.0}},
      {{60, 0LL}, {60, 1LL}},
      {{62, 256LL}, {62, 0LL}},
      {{67, 0LL}, {67, 1LL}},
      {{210, Point{0, 0, 1}}, {210, Point{0, 0, -1}}},
      {{370, -1LL}, {370, -2LL}},
      {{410, L"MODEL"}, {410, L"Layout1"}},
  };
  const Object& bare = Add({{0, L"LINE"}});
  for (const auto& [common, other] : cases) {
    EXPECT_TRUE(Takes({common}, bare)) << common.code;
    EXPECT_FALSE(Takes({other}, bare)) << common.code;
    EXPECT_TRUE(Takes({Operator(L"!="), other}, bare)) << common.code;
    EXPECT_FALSE(Takes({Operator(L"!="), common}, bare)) << common.code;
    EXPECT_TRUE(Takes({Operator(L"*"), other}, bare)) << common.code;
    const Object& explicitly = Add({other});
    EXPECT_TRUE(Takes({other}, explicitly)) << common.code;
    EXPECT_FALSE(Takes({common}, explicitly)) << common.code;
    EXPECT_TRUE(Takes({common}, Add({common}))) << common.code;
  }
}

TEST_F(FilterTest, OtherGroupsThatAreLeftOutFailEveryTest) {
  for (const wchar_t* relation : {L"=", L"!=", L"<", L"<=", L">", L">=", L"*"})
    for (const Group& group : {Group{40, 0.0}, {70, 0LL}, {10, Point{}}})
      EXPECT_FALSE(Takes({Operator(relation), group}, line)) << group.code << Utf8(relation);
  for (const wchar_t* relation : {L"&", L"&="})
    EXPECT_FALSE(Takes({Operator(relation), {70, 0LL}}, line)) << Utf8(relation);
  EXPECT_FALSE(Takes({{1, L"*"}}, line));
}

TEST_F(FilterTest, TheLayoutOfPaperSpaceIsKnownByTheGroupOnly) {
  const Object& unknown = Add({{67, 1LL}});
  EXPECT_FALSE(Takes({{410, L"Model"}}, unknown));
  EXPECT_FALSE(Takes({{410, L"*"}}, unknown));
  const Object& known = Add({{67, 1LL}, {410, L"Plan"}});
  EXPECT_TRUE(Takes({{410, L"plan"}}, known));
  EXPECT_FALSE(Takes({{410, L"Model"}}, known));
  EXPECT_TRUE(Takes({{410, L"Model"}}, Add({{67, 0LL}})));
}

// --- Relations ---

TEST_F(FilterTest, NumbersAreRelatedAsWritten) {
  struct Case {
    const wchar_t* relation;
    bool less, equal, greater;  // of an entity with 1, 2 and 3 to a filter with 2
  };
  for (const Case& one : {Case{L"=", false, true, false},
                          {L"!=", true, false, true},
                          {L"/=", true, false, true},
                          {L"<>", true, false, true},
                          {L"<", true, false, false},
                          {L"<=", true, true, false},
                          {L">", false, false, true},
                          {L">=", false, true, true},
                          {L"*", true, true, true}}) {
    const bool expected[] = {one.less, one.equal, one.greater};
    for (int given = 1; given <= 3; ++given) {
      const Object& entity = Add({{70, static_cast<long long>(given)}, {40, static_cast<double>(given)}});
      EXPECT_EQ(Takes({Operator(one.relation), {70, 2LL}}, entity), expected[given - 1])
          << Utf8(one.relation) << given;
      EXPECT_EQ(Takes({Operator(one.relation), {40, 2.0}}, entity), expected[given - 1])
          << Utf8(one.relation) << given;
    }
    // Within the fuzz is equal, for every relation.
    for (const double given : {2 - 1e-7, 2 + 1e-7})
      EXPECT_EQ(Takes({Operator(one.relation), {40, 2.0}}, Add({{40, given}})), one.equal)
          << Utf8(one.relation) << given;
  }
}

TEST_F(FilterTest, BitsAreComparedInCommonOrAll) {
  const Object& entity = Add({{70, 6LL}});
  for (const auto& [wanted, common, all] : {std::tuple(1LL, false, false),
                                            {2LL, true, true},
                                            {6LL, true, true},
                                            {3LL, true, false},
                                            {0LL, false, true},
                                            {8LL, false, false}}) {
    EXPECT_EQ(Takes({Operator(L"&"), {70, wanted}}, entity), common) << wanted;
    EXPECT_EQ(Takes({Operator(L"&="), {70, wanted}}, entity), all) << wanted;
  }
}

TEST_F(FilterTest, TextsAreEqualOrNotOrAny) {
  EXPECT_TRUE(Takes({Operator(L"="), {8, L"W*"}}, line));
  EXPECT_FALSE(Takes({Operator(L"="), {8, L"D*"}}, line));
  EXPECT_FALSE(Takes({Operator(L"<>"), {8, L"W*"}}, line));
  EXPECT_TRUE(Takes({Operator(L"<>"), {8, L"D*"}}, line));
  EXPECT_TRUE(Takes({Operator(L"*"), {8, L"D"}}, line));
}

TEST_F(FilterTest, PointsTakeARelationForEachCoordinate) {
  const Object& entity = Add({{10, Point{5, 5, 5}}});
  struct Case {
    const wchar_t* relations;
    Point wanted;
    bool isTaken;
  };
  for (const Case& one : {Case{L">,>,*", {4, 4, 9}, true},
                          {L">,>,*", {4, 5, 9}, false},
                          {L">,>,*", {5, 4, 9}, false},
                          {L"*,*,<", {9, 9, 6}, true},
                          {L"*,*,<", {0, 0, 5}, false},
                          {L"=,!=,>=", {5, 4, 5}, true},
                          {L"=,!=,>=", {5, 5, 5}, false},
                          {L"=,!=,>=", {4, 4, 5}, false},
                          // What is left out is any.
                          {L"<,<", {6, 6, 0}, true},
                          {L"<,<", {6, 5, 0}, false},
                          // One for all of them.
                          {L"<", {6, 6, 6}, true},
                          {L"<", {6, 6, 5}, false},
                          {L"<", {5, 6, 6}, false},
                          {L">=", {5, 4, 5}, true},
                          {L">=", {5, 6, 5}, false},
                          {L"=", {5, 5, 5}, true},
                          {L"=", {5, 5, 4}, false},
                          {L"!=", {5, 5, 5}, false},
                          {L"!=", {5, 5, 4}, true},
                          {L"/=", {4, 5, 5}, true},
                          {L"*", {1, 2, 3}, true}})
    EXPECT_EQ(Takes({Operator(one.relations), {10, one.wanted}}, entity), one.isTaken)
        << Utf8(one.relations) << one.wanted.x << one.wanted.y << one.wanted.z;
}

TEST_F(FilterTest, ARelationIsForTheNextGroupAlone) {
  const Object& entity = Add({{40, 5.0}, {41, 5.0}});
  EXPECT_TRUE(Takes({Operator(L">"), {40, 4.0}, {41, 5.0}}, entity));
  EXPECT_FALSE(Takes({Operator(L">"), {40, 4.0}, {41, 4.0}}, entity));
  EXPECT_TRUE(Takes({{41, 5.0}, Operator(L"<"), {40, 6.0}}, entity));
}

// --- Connectives ---

TEST_F(FilterTest, ConnectivesCombineTheirOperands) {
  for (const bool first : {false, true})
    for (const bool second : {false, true}) {
      const Group one = first ? kYes : kNo;
      const Group other = second ? kYes : kNo;
      EXPECT_EQ(IsTrue({Operator(L"<AND"), one, other, Operator(L"AND>")}), first && second);
      EXPECT_EQ(IsTrue({Operator(L"<OR"), one, other, Operator(L"OR>")}), first || second);
      EXPECT_EQ(IsTrue({Operator(L"<XOR"), one, other, Operator(L"XOR>")}), first != second);
      EXPECT_EQ(IsTrue({Operator(L"<not"), one, Operator(L"Not>"), other}), !first && second);
      EXPECT_EQ(IsTrue({other, Operator(L"<Or"), one, Operator(L"oR>")}), first && second);
      EXPECT_EQ(IsTrue({Operator(L"<AND"), one, Operator(L"AND>"), other}), first && second);
    }
}

TEST_F(FilterTest, MoreThanTwoOperandsCombineToo) {
  EXPECT_TRUE(IsTrue({Operator(L"<OR"), kNo, kNo, kYes, kNo, Operator(L"OR>")}));
  EXPECT_FALSE(IsTrue({Operator(L"<OR"), kNo, kNo, kNo, Operator(L"OR>")}));
  EXPECT_TRUE(IsTrue({Operator(L"<AND"), kYes, kYes, kYes, Operator(L"AND>")}));
  EXPECT_FALSE(IsTrue({Operator(L"<AND"), kYes, kNo, kYes, Operator(L"AND>")}));
}

// Expressions in prefix form for chains and their truth, side by side.
class RandomExpressions {
 public:
  bool Append(Groups& filter, int depth) {
    switch (depth > 0 ? Below(6) : 0) {
      case 2:
        return AppendMany(filter, depth, L"<AND", L"AND>", true);
      case 3:
        return AppendMany(filter, depth, L"<OR", L"OR>", false);
      case 4: {
        filter.push_back(Operator(L"<XOR"));
        const bool first = Append(filter, depth - 1);
        const bool second = Append(filter, depth - 1);
        filter.push_back(Operator(L"XOR>"));
        return first != second;
      }
      case 5: {
        filter.push_back(Operator(L"<NOT"));
        const bool operand = Append(filter, depth - 1);
        filter.push_back(Operator(L"NOT>"));
        return !operand;
      }
      default: {
        const bool truth = Below(2) == 0;
        filter.push_back(truth ? kYes : kNo);
        return truth;
      }
    }
  }
  size_t Below(size_t end) { return m_random() % end; }

 private:
  bool AppendMany(Groups& filter, int depth, const wchar_t* open, const wchar_t* close, bool isAnd) {
    filter.push_back(Operator(open));
    bool truth = isAnd;
    for (size_t operands = 1 + Below(3); operands > 0; --operands) {
      const bool operand = Append(filter, depth - 1);
      truth = isAnd ? truth && operand : truth || operand;
    }
    filter.push_back(Operator(close));
    return truth;
  }

  std::mt19937 m_random{4711};
};

TEST_F(FilterTest, NestedConnectivesGiveTheTruthOfTheExpression) {
  RandomExpressions random;
  for (unsigned int round = 0; round < Rounds(5'000); ++round) {
    Groups filter;
    bool isExpected = true;
    for (size_t operands = 1 + random.Below(2); operands > 0; --operands)
      isExpected = random.Append(filter, 6) && isExpected;
    ASSERT_EQ(IsTrue(filter), isExpected) << Utf8(ToText(ChainOf(filter)));
  }
}

TEST_F(FilterTest, NestingMayBeDeep) {
  for (const auto& [open, close, isExpected] :
       {std::tuple(L"<NOT", L"NOT>", true), {L"<AND", L"AND>", true}, {L"<OR", L"OR>", true}}) {
    Groups filter(static_cast<size_t>(kLarge / 5), Operator(open));
    filter.push_back(kYes);
    filter.insert(filter.end(), static_cast<size_t>(kLarge / 5), Operator(close));
    EXPECT_EQ(IsTrue(filter), isExpected) << Utf8(open);
  }
  const int count = kLarge / 10 + 1;
  const bool isOdd = count % 2 == 1;
  Groups filter;
  for (int depth = 0; depth < count; ++depth) {
    filter.push_back(Operator(L"<XOR"));
    filter.push_back(kYes);
  }
  filter.push_back(kNo);
  filter.insert(filter.end(), static_cast<size_t>(count), Operator(L"XOR>"));
  EXPECT_EQ(IsTrue(filter), isOdd);
  // A flat one behind the deep one.
  for (const Group& group : {Operator(L"<XOR"), kYes, kNo, Operator(L"XOR>")}) filter.push_back(group);
  EXPECT_EQ(IsTrue(filter), isOdd);
}

// --- Extended data ---

TEST_F(FilterTest, ExtendedDataIsAskedForByApplication) {
  Object& entity = Add({{0, L"LINE"}});
  entity.extended = {{L"TAGS", {{1000, L"a"}}}, {L"COSTS", {}}};
  EXPECT_TRUE(Takes({Extended(), Application(L"tags")}, entity));
  EXPECT_TRUE(Takes({Extended(), Application(L"C*,X*")}, entity));
  EXPECT_FALSE(Takes({Extended(), Application(L"TAG")}, entity));
  EXPECT_TRUE(Takes({Extended(), Application(L"*")}, entity));
  EXPECT_FALSE(Takes({Extended(), Application(L"*")}, line));
}

TEST_F(FilterTest, OfSeveralApplicationsEachMustBeThere) {
  Object& entity = Add({{0, L"LINE"}});
  entity.extended = {{L"TAGS", {}}, {L"COSTS", {}}};
  EXPECT_TRUE(Takes({Extended(), Application(L"COSTS"), Application(L"TAGS")}, entity));
  EXPECT_FALSE(Takes({Extended(), Application(L"COSTS"), Application(L"OTHER")}, entity));
  EXPECT_FALSE(Takes({Extended(), Application(L"OTHER"), Application(L"TAGS")}, entity));
  EXPECT_FALSE(Takes({Extended(), Application(L"TAGS"), Extended(), Application(L"OTHER")}, entity));
}

TEST_F(FilterTest, ApplicationsAreOneOperandAndGroupsMayFollow) {
  Object& entity = Add({{0, L"LINE"}});
  entity.extended = {{L"TAGS", {}}, {L"COSTS", {}}};
  EXPECT_FALSE(
      Takes({Operator(L"<NOT"), Extended(), Application(L"TAGS"), Application(L"COSTS"), Operator(L"NOT>")},
            entity));
  EXPECT_TRUE(
      Takes({Operator(L"<XOR"), Extended(), Application(L"TAGS"), kNo, Operator(L"XOR>"), kYes}, entity));
  EXPECT_FALSE(Takes({Extended(), Application(L"TAGS"), kNo}, entity));
}

// --- Malformed filters ---

TEST_F(FilterTest, MalformedOperatorsAreRefusedWithTheirPlace) {
  const std::pair<Groups, const char*> cases[] = {
      {{kYes, Operator(L"<OR"), kYes}, "record 2: \"<OR\" is not closed"},
      {{Operator(L"<OR")}, "record 1: \"<OR\" is not closed"},
      {{kYes, Operator(L"AND>")}, "record 2: nothing is open that this closes"},
      {{Operator(L"<OR"), kYes, Operator(L"AND>")}, "record 3: this does not close the \"<OR\" of record 1"},
      {{Operator(L"<AND"), Operator(L"AND>")}, "record 2: \"<AND\" has too few operands"},
      {{Operator(L"<OR"), Operator(L"OR>")}, "record 2: \"<OR\" has too few operands"},
      {{Operator(L"<NOT"), Operator(L"NOT>")}, "record 2: \"<NOT\" has too few operands"},
      {{Operator(L"<NOT"), kYes, kYes, Operator(L"NOT>")}, "record 3: \"<NOT\" has too many operands"},
      {{Operator(L"<XOR"), kYes, Operator(L"XOR>")}, "record 3: \"<XOR\" has too few operands"},
      {{Operator(L"<XOR"), kYes, kYes, kYes, Operator(L"XOR>")}, "record 4: \"<XOR\" has too many operands"},
      {{Operator(L"<XOR"), Operator(L"<OR"), kYes, kYes, Operator(L"OR>"), Operator(L"XOR>")},
       "record 6: \"<XOR\" has too few operands"},
      {{Operator(L"=="), kYes}, "record 1: the operator \"==\" is unknown"},
      {{Operator(L""), kYes}, "record 1: the operator \"\" is unknown"},
      {{Operator(L"<NAND"), kYes}, "record 1: the operator \"<NAND\" is unknown"},
      {{Operator(L"AND"), kYes}, "record 1: the operator \"AND\" is unknown"},
      {{Operator(L">,,*"), {10, Point{}}}, "record 1: the operator \">,,*\" is unknown"},
      {{Operator(L">,"), {10, Point{}}}, "record 1: the operator \">,\" is unknown"},
      {{Operator(L"> ,>"), {10, Point{}}}, "record 1: the operator \"> ,>\" is unknown"},
      {{Operator(L"*,*,*,*"), {10, Point{}}}, "record 1: more than three relations"},
  };
  for (const auto& [filter, objection] : cases) EXPECT_EQ(ObjectionTo(filter), objection);
}

TEST_F(FilterTest, MisplacedRelationsAreRefusedWithTheirPlace) {
  const std::string alone = "record 2: a relation without a group behind it";
  EXPECT_EQ(ObjectionTo({kYes, Operator(L"=")}), alone);
  EXPECT_EQ(ObjectionTo({kYes, Operator(L"="), Operator(L"<"), {40, 1.0}}), alone);
  EXPECT_EQ(ObjectionTo({kYes, Operator(L"="), Operator(L"<AND"), kYes, Operator(L"AND>")}), alone);
  EXPECT_EQ(ObjectionTo({Operator(L"<AND"), Operator(L"="), Operator(L"AND>")}), alone);
  EXPECT_EQ(ObjectionTo({kYes, Operator(L"="), Extended(), Application(L"A")}), alone);
}

TEST_F(FilterTest, RelationsThatAValueCannotHaveAreRefused) {
  const std::string several = "record 2: several relations for a value that is no point";
  const std::string bits = "record 2: bits of a value that is no integer";
  const std::string order = "record 2: less or greater than a value that is no number";
  EXPECT_EQ(ObjectionTo({kYes, Operator(L">,>"), {40, 1.0}}), several);
  EXPECT_EQ(ObjectionTo({kYes, Operator(L"=,="), {8, L"0"}}), several);
  for (const wchar_t* relation : {L"&", L"&="})
    for (const Group& group : {Group{8, L"0"}, {40, 1.0}, {10, Point{}}, {330, Reference{}}})
      EXPECT_EQ(ObjectionTo({kYes, Operator(relation), group}), bits) << group.code;
  EXPECT_EQ(ObjectionTo({kYes, Operator(L"*,*,&"), {10, Point{}}}), bits);
  for (const wchar_t* relation : {L"<", L"<=", L">", L">="})
    for (const Group& group : {Group{8, L"0"}, {330, Reference{}}})
      EXPECT_EQ(ObjectionTo({kYes, Operator(relation), group}), order) << group.code;
}

TEST_F(FilterTest, MalformedExtendedDataIsRefused) {
  const std::string bare = "of extended data, only the names of applications behind a -3 can be asked for";
  EXPECT_EQ(ObjectionTo({kYes, Extended()}), "record 2: a -3 without a 1001 behind it");
  EXPECT_EQ(ObjectionTo({Extended(), kYes}), "record 1: a -3 without a 1001 behind it");
  EXPECT_EQ(ObjectionTo({Application(L"A")}), "record 1: " + bare);
  EXPECT_EQ(ObjectionTo({Extended(), Application(L"A"), {1000, L"x"}}), "record 3: " + bare);
  Chain chain = ChainOf({Extended(), Application(L"A"), Application(L"B")});
  chain.back().hasText = false;
  EXPECT_EQ(ObjectionTo(chain), "record 3: a group without a text (type 1001)");
}

TEST_F(FilterTest, RecordsThatAreNoGroupsAreRefused) {
  for (const short type :
       {RTLB, RTLE, RTDOTE, RTNIL, RTT, RTSTR, RTSHORT, RTREAL, RT3DPOINT, RTENAME, short{-6}, short{80}}) {
    Chain chain = ChainOf({kYes});
    chain.push_back(Record{type, {}, L"x", true});
    EXPECT_EQ(ObjectionTo(chain), "record 2: a record that is no group (type " + std::to_string(type) + ")");
  }
}

TEST_F(FilterTest, TextsThatAreMissingAndNamesOfOtherDrawingsAreRefused) {
  for (const short type : {short{8}, short{-4}}) {
    const Chain chain{Record{type, {}, {}, false}};
    EXPECT_EQ(ObjectionTo(chain), "record 1: a group without a text (type " + std::to_string(type) + ")");
  }
  EXPECT_EQ(ObjectionTo(Chain{Record{RTDXF0, {}, {}, false}}), "record 1: a group without a text (type 0)");
  Drawing other;
  Chain chain;
  AppendRecord(chain, {330, Reference{other.NewObject({}).handle}}, other);
  EXPECT_EQ(ObjectionTo(chain), "record 1: the name of no object of this drawing (type 330)");
}

}  // namespace
}  // namespace lomlisp::test
