#include <embedded/drawing/Drawing.h>
#include <embedded/drawing/Entries.h>
#include <lomlisp/platform/modules.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include <tests/host/Logged.h>

namespace lomlisp::test {
namespace {

const CLOMAdsLispVar& kNil = CLOMAdsLisp::Nil;

// Four arguments, and what the platform is given for them. An empty mode or chain may be a null one.
struct Case {
  std::array<CLOMAdsLispVar, 4> values;
  const wchar_t* mode;
  std::string first;
  std::string second;
  std::string filter;
};

class ValueSelectionSets : public HostTest {
 protected:
  embedded::Object& Add(const wchar_t* type) {
    embedded::Object& entity = drawing.NewObject({{0, type},
                                                  {8, L"0"},
                                                  {10, embedded::Point{1, 2, 0}},
                                                  {11, embedded::Point{4, 5, 0}},
                                                  {40, 1.5},
                                                  {210, embedded::Point{0, 0, 1}}});
    AddHandle(drawing, entity);
    drawing.Append(drawing.Entities(), entity);
    return entity;
  }

  static CLOMAdsLispVar SSGet(const std::array<CLOMAdsLispVar, 4>& values) {
    return CLOMAdsLisp::SSGet(values[0], values[1], values[2], values[3]);
  }

  // The handles of the entities in a set, which is freed, in rising order.
  std::vector<uint64_t> Freed(const CLOMAdsLispVar& set) const {
    std::vector<uint64_t> handles;
    EXPECT_TRUE(set.PickSetP()) << Tree(set);
    if (!set.PickSetP()) return handles;
    ads_name name;
    set.GetName(name);
    int32_t length = 0;
    EXPECT_EQ(acedSSLength(name, &length), RTNORM);
    for (int32_t i = 0; i < length; ++i) {
      ads_name entity;
      EXPECT_EQ(acedSSName(name, i, entity), RTNORM);
      handles.push_back(drawing.HandleOf(entity).value_or(0));
    }
    EXPECT_EQ(acedSSFree(name), RTNORM);
    std::sort(handles.begin(), handles.end());
    return handles;
  }

  // The text of the filter would count as a leak.
  void TearDown() override {
    filter.Clean();
    HostTest::TearDown();
  }

  // The platform refuses, and what it was given is looked at.
  void Check(const std::vector<Case>& cases) {
    host.log.AnswerAll("acedSSGet", RTERROR);
    for (const Case& c : cases) {
      std::array<std::string, 4> before;
      std::transform(c.values.begin(), c.values.end(), before.begin(),
                     [](const CLOMAdsLispVar& value) { return Tree(value); });
      SCOPED_TRACE(before[0] + ", " + before[1] + ", " + before[2] + ", " + before[3]);
      host.log.Clear();
      EXPECT_EQ(SSGet(c.values).New(), nullptr);
      ASSERT_EQ(host.log.Calls().size(), 1U);
      ASSERT_EQ(host.log.Count("acedSSGet"), 1U);
      EXPECT_EQ(Utf8(host.log.Last("acedSSGet")->name), Utf8(c.mode));
      EXPECT_EQ(host.log.Last("acedSSGet")->objection.value_or(""), "");
      EXPECT_EQ(Given("acedSSGet", 0), c.first);
      EXPECT_EQ(Given("acedSSGet", 1), c.second);
      EXPECT_EQ(Given("acedSSGet", 2), c.filter);
      for (size_t i = 0; i < before.size(); ++i) EXPECT_EQ(Tree(c.values[i]), before[i]) << "changed";
    }
    EXPECT_EQ(Printed(), "");
  }

  embedded::Drawing& drawing = host.CurrentDrawing();

  const CLOMAdsLispVar p1 = ListOf({1.0, 2.5, -3.0});
  const CLOMAdsLispVar p2 = ListOf({4, 5});
  const CLOMAdsLispVar p3 = ListOf({6L, 7LL, 8});
  const CLOMAdsLispVar list = ListOf({p1, p2, p3});
  CLOMAdsLispVar filter = ListOf({Group(0, L"LINE"), Group(62, 1)});

  const std::string p1Record = "5009:1,2.5,-3";
  const std::string p2Record = "5009:4,5,0";
  const std::string p3Record = "5009:6,7,8";
  const std::string listRecords = p1Record + " " + p2Record + " " + p3Record;
  const std::string filterRecords = "0:LINE 62:1";
  // Points where a filter is read: lists of atoms are no groups.
  const std::string p1InBrackets = "5016 5001:1 5001:2.5 5001:-3 5017";
  const std::string p2InBrackets = "5016 5003:4 5003:5 5017";
};

// --- What is read from which position ---

TEST_F(ValueSelectionSets, TheModeIsATextInFront) {
  Check({{{kNil, kNil, kNil, kNil}, L"", "", "", ""},
         {{L"X", kNil, kNil, kNil}, L"X", "", "", ""},
         {{L"_:S+.", kNil, kNil, kNil}, L"_:S+.", "", "", ""},
         {{L"", p1, kNil, kNil}, L"", p1Record, "", ""},
         {{NullText(), p1, kNil, kNil}, L"", p1Record, "", ""},
         {{L"", filter, kNil, kNil}, L"", "", "", filterRecords},
         {{L"X", filter, kNil, kNil}, L"X", "", "", filterRecords},
         // Only one; a second text is the filter.
         {{L"X", L"P", kNil, kNil}, L"X", "", "", "5005:P"},
         {{L"X", L"P", filter, kNil}, L"X", "", "", "5005:P"},
         // Only in front.
         {{p1, L"X", kNil, kNil}, L"", p1Record, "", "5005:X"},
         {{5, L"X", kNil, kNil}, L"", "", "", "5003:5"},
         // Only an RTSTR.
         {{Coded(L"X", 8), kNil, kNil, kNil}, L"", "", "", "8:X"},
         {{ListOf({L"X"}), kNil, kNil, kNil}, L"", "", "", "5016 5005:X 5017"}});
}

TEST_F(ValueSelectionSets, OneOrTwoPointsFollow) {
  Check({{{p1, kNil, kNil, kNil}, L"", p1Record, "", ""},
         {{p1, p2, kNil, kNil}, L"", p1Record, p2Record, ""},
         {{p2, p1, kNil, kNil}, L"", p2Record, p1Record, ""},
         {{p2, p3, filter, kNil}, L"", p2Record, p3Record, filterRecords},
         {{p1, filter, kNil, kNil}, L"", p1Record, "", filterRecords},
         {{L"C", p1, kNil, kNil}, L"C", p1Record, "", ""},
         {{L"C", p1, p2, kNil}, L"C", p1Record, p2Record, ""},
         {{L"W", p3, p2, filter}, L"W", p3Record, p2Record, filterRecords},
         {{L"W", p1, filter, kNil}, L"W", p1Record, "", filterRecords},
         // A third point is the filter.
         {{p2, p3, p1, kNil}, L"", p2Record, p3Record, p1InBrackets},
         {{L"W", p1, p3, p2}, L"W", p1Record, p3Record, p2InBrackets},
         {{p2, p3, p1, filter}, L"", p2Record, p3Record, p1InBrackets}});
}

TEST_F(ValueSelectionSets, WhatIsNoPointIsTheFilter) {
  CLOMAdsLispVar pointAtom(short{1});
  pointAtom.GetAtom() = ResBuf(std::array<double, 3>{1, 2, 3}.data());
  Check({{{pointAtom, kNil, kNil, kNil}, L"", "", "", "5009:1,2,3"},
         {{p1, pointAtom, kNil, kNil}, L"", p1Record, "", "5009:1,2,3"},
         {{ListOf({1}), kNil, kNil, kNil}, L"", "", "", "5016 5003:1 5017"},
         {{ListOf({1, 2, 3, 4}), kNil, kNil, kNil}, L"", "", "", "5016 5003:1 5003:2 5003:3 5003:4 5017"},
         {{Dotted({1, 2}), kNil, kNil, kNil}, L"", "", "", "5016 5003:1 5018 5003:2 5017"},
         {{ListOf({1, L"a"}), p1, kNil, kNil}, L"", "", "", "5016 5003:1 5005:a 5017"},
         {{L"C", p1, ListOf({1, kNil}), p2}, L"C", p1Record, "", "5016 5003:1 5019 5017"}});
}

TEST_F(ValueSelectionSets, AListThatBeginsWithAPointStandsInThePlaceOfTheFirstPoint) {
  Check({{{L"WP", list, filter, kNil}, L"WP", listRecords, "", filterRecords},
         {{L"F", list, kNil, kNil}, L"F", listRecords, "", ""},
         {{list, kNil, kNil, kNil}, L"", listRecords, "", ""},
         {{list, filter, kNil, kNil}, L"", listRecords, "", filterRecords},
         {{L"CP", ListOf({p2}), filter, kNil}, L"CP", p2Record, "", filterRecords},
         {{L"CP", Dotted({p2, p1}), filter, kNil}, L"CP", p2Record + " " + p1Record, "", filterRecords},
         // No points behind it.
         {{list, p1, p2, filter}, L"", listRecords, "", p1InBrackets},
         {{L"WP", list, p2, filter}, L"WP", listRecords, "", p2InBrackets},
         {{L"WP", list, list, kNil}, L"WP", listRecords, "", listRecords},
         // Behind points it takes the place of the first one.
         {{p2, list, kNil, kNil}, L"", listRecords, "", ""},
         {{p2, list, filter, kNil}, L"", listRecords, "", filterRecords},
         {{L"WP", p2, list, filter}, L"WP", listRecords, "", filterRecords},
         {{p3, p2, list, kNil}, L"", listRecords, p2Record, ""},
         {{p3, p2, list, filter}, L"", listRecords, p2Record, filterRecords},
         // All four positions are read; no place is left for a filter.
         {{L"WP", p3, p2, list}, L"WP", listRecords, p2Record, ""}});
}

TEST_F(ValueSelectionSets, TheFirstMemberAloneMakesAListOfPoints) {
  // The rest need not be points; what is no list of groups gets brackets.
  Check(
      {{{L"WP", ListOf({p2, L"a"}), filter, kNil},
        L"WP",
        "5016 " + p2InBrackets + " 5005:a 5017",
        "",
        filterRecords},
       {{L"WP", ListOf({p2, kNil}), kNil, kNil}, L"WP", "5016 " + p2InBrackets + " 5019 5017", "", ""},
       {{L"WP", ListOf({p2, Group(8, L"0")}), kNil, kNil}, L"WP", p2Record + " 8:0", "", ""},
       // A group that is written as a plain list of numbers is a point.
       {{L"X", ListOf({ListOf({62, 1})}), kNil, kNil}, L"X", "5009:62,1,0", "", ""},
       {{L"X", ListOf({Group(0, L"LINE"), ListOf({62, 1})}), kNil, kNil}, L"X", "", "", "0:LINE 5009:62,1,0"},
       {{L"X", ListOf({kNil, p2}), kNil, kNil}, L"X", "", "", "5016 5019 " + p2InBrackets + " 5017"},
       {{L"X", ListOf({list}), kNil, kNil}, L"X", "", "", "5016 " + listRecords + " 5017"}});
}

TEST_F(ValueSelectionSets, NilHoldsNoPlaceButTheFilters) {
  Check({{{kNil, p1, p2, filter}, L"", "", "", ""},
         {{kNil, kNil, kNil, filter}, L"", "", "", ""},
         {{kNil, filter, kNil, kNil}, L"", "", "", ""},
         {{kNil, L"X", kNil, kNil}, L"", "", "", ""},
         {{kNil, list, kNil, kNil}, L"", "", "", ""},
         {{L"X", kNil, filter, kNil}, L"X", "", "", ""},
         {{L"X", kNil, kNil, filter}, L"X", "", "", ""},
         {{L"W", kNil, p1, p2}, L"W", "", "", ""},
         {{L"WP", kNil, list, filter}, L"WP", "", "", ""},
         {{p1, kNil, p2, kNil}, L"", p1Record, "", ""},
         {{p1, kNil, list, kNil}, L"", p1Record, "", ""},
         {{L"C", p1, kNil, filter}, L"C", p1Record, "", ""},
         {{p1, p2, kNil, filter}, L"", p1Record, p2Record, ""},
         {{L"WP", list, kNil, filter}, L"WP", listRecords, "", ""},
         // The other shape of nil.
         {{AtomOfNil(), AtomOfNil(), AtomOfNil(), AtomOfNil()}, L"", "", "", ""},
         {{AtomOfNil(), p1, p2, filter}, L"", "", "", ""},
         {{L"X", AtomOfNil(), filter, kNil}, L"X", "", "", ""},
         {{p1, AtomOfNil(), p2, kNil}, L"", p1Record, "", ""}});
}

TEST_F(ValueSelectionSets, EverythingButNilIsAFilter) {
  const CLOMAdsLispVar name(Records{Name(31)});
  Check({{{filter, kNil, kNil, kNil}, L"", "", "", filterRecords},
         {{filter, p1, p2, kNil}, L"", "", "", filterRecords},
         {{filter, filter, list, L"X"}, L"", "", "", filterRecords},
         {{L"X", ListOf({Group(8, L"0")}), filter, kNil}, L"X", "", "", "8:0"},
         {{L"X", ListOf({Group(10, p1), Group(40, 2.5)}), kNil, kNil}, L"X", "", "", "10:1,2.5,-3 40:2.5"},
         {{L"X", ListOf({Group(-4, L"<NOT"), Group(0, L"LINE"), Group(-4, L"NOT>")}), kNil, kNil},
          L"X",
          "",
          "",
          "-4:<NOT 0:LINE -4:NOT>"},
         {{L"X", ListOf({Group(0, L"LINE"), ListOf({-3, ListOf({L"APP"})})}), kNil, kNil},
          L"X",
          "",
          "",
          "0:LINE -3:0 1001:APP"},
         // No lists of groups.
         {{L"X", 5, kNil, kNil}, L"X", "", "", "5003:5"},
         {{L"X", 2.5, filter, kNil}, L"X", "", "", "5001:2.5"},
         {{name, kNil, kNil, kNil}, L"", "", "", "5006:31,32"},
         {{L"X", PickSet(), kNil, kNil}, L"X", "", "", "5007:7,8"},
         {{L"X", V(L"T"), kNil, kNil}, L"X", "", "", "5021"},
         {{L"X", Group(0, L"LINE"), kNil, kNil}, L"X", "", "", "5016 5003:0 5018 5005:LINE 5017"},
         {{L"X", ListOf({Group(0, L"LINE"), 5}), kNil, kNil},
          L"X",
          "",
          "",
          "5016 5016 5003:0 5018 5005:LINE 5017 5003:5 5017"},
         {{L"X", ListOf({filter}), kNil, kNil}, L"X", "", "", "5016 " + filterRecords + " 5017"},
         {{L"X", ListOf({kNil}), kNil, kNil}, L"X", "", "", "5016 5019 5017"},
         // An empty list is a filter without groups, and what follows it is ignored.
         {{ListOf({}), kNil, kNil, kNil}, L"", "", "", ""},
         {{L"X", ListOf({}), filter, kNil}, L"X", "", "", ""},
         {{p1, ListOf({}), p2, filter}, L"", p1Record, "", ""}});
}

// --- Results ---

TEST_F(ValueSelectionSets, SSGetGivesASelectionSet) {
  const uint64_t line = Add(L"LINE").handle, circle = Add(L"CIRCLE").handle, other = Add(L"LINE").handle;
  const CLOMAdsLispVar all = CLOMAdsLisp::SSGet(L"X", kNil, kNil, kNil);
  EXPECT_EQ(Tree(all).substr(0, 5), "5007:");
  EXPECT_FALSE(all.ENameP());
  EXPECT_EQ(Freed(all), (std::vector<uint64_t>{line, circle, other}));
  const CLOMAdsLispVar lines = ListOf({Group(0, L"LINE")});
  EXPECT_EQ(Freed(CLOMAdsLisp::SSGet(L"X", lines, kNil, kNil)), (std::vector<uint64_t>{line, other}));
  EXPECT_EQ(Freed(CLOMAdsLisp::SSGet(L"X", ListOf({Group(0, L"CIRCLE")}), lines, kNil)),
            (std::vector<uint64_t>{circle}));
  EXPECT_EQ(Freed(CLOMAdsLisp::SSGet(L"X", kNil, lines, kNil)), (std::vector<uint64_t>{line, circle, other}));
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueSelectionSets, TheUserSelectsWithoutAMode) {
  Add(L"LINE");
  const uint64_t circle = Add(L"CIRCLE").handle;
  host.answers.Add(embedded::SelectEntities{{circle}});
  EXPECT_EQ(Freed(CLOMAdsLisp::SSGet(kNil, kNil, kNil, kNil)), (std::vector<uint64_t>{circle}));
  EXPECT_EQ(host.answers.Waiting(), 0U);
}

TEST_F(ValueSelectionSets, EachSetHasItsName) {
  Add(L"LINE");
  const CLOMAdsLispVar first = CLOMAdsLisp::SSGet(L"X", kNil, kNil, kNil);
  const std::string before = Tree(first);
  const CLOMAdsLispVar second = CLOMAdsLisp::SSGet(L"X", kNil, kNil, kNil);
  EXPECT_NE(Tree(first), Tree(second));
  EXPECT_EQ(Tree(first), before);
  EXPECT_EQ(Freed(first).size(), 1U);
  EXPECT_EQ(Freed(second).size(), 1U);
}

TEST_F(ValueSelectionSets, ARefusalIsNilWithoutAMessage) {
  EXPECT_EQ(CLOMAdsLisp::SSGet(L"X", kNil, kNil, kNil).New(), nullptr) << "an empty drawing";
  Add(L"LINE");
  EXPECT_EQ(CLOMAdsLisp::SSGet(L"X", ListOf({Group(0, L"CIRCLE")}), kNil, kNil).New(), nullptr);
  EXPECT_EQ(CLOMAdsLisp::SSGet(L"X", 5, kNil, kNil).New(), nullptr) << "what is no filter";
  host.answers.Add(embedded::PressCancel{});
  EXPECT_EQ(CLOMAdsLisp::SSGet(kNil, kNil, kNil, kNil).New(), nullptr);
  for (const int status : kRefusals) {
    host.log.Answer("acedSSGet", status, 1);
    EXPECT_EQ(CLOMAdsLisp::SSGet(L"X", kNil, kNil, kNil).New(), nullptr) << status;
    host.log.Answer("acedSSGet", status, 1);
    EXPECT_EQ(CLOMAdsLisp::SSGet(L"WP", list, filter, kNil).New(), nullptr) << status;
  }
  EXPECT_EQ(Printed(), "Select objects: *Cancel*\n") << "the dialogue alone";
}

// --- Memory ---

TEST_F(ValueSelectionSets, NothingLeaksWhenMemoryRunsOut) {
  const uint64_t line = Add(L"LINE").handle;
  Add(L"CIRCLE");
  const CLOMAdsLispVar lines = ListOf({Group(0, L"LINE"), Group(8, L"0")});
  FailEachAllocation([&] {
    const CLOMAdsLispVar set = CLOMAdsLisp::SSGet(L"X", lines, kNil, kNil);
    return !set.NilP() && Freed(set) == std::vector<uint64_t>{line};
  });
  host.log.AnswerAll("acedSSGet", RTERROR);
  FailEachAllocation([&] {
    host.log.Clear();
    EXPECT_EQ(CLOMAdsLisp::SSGet(L"WP", list, filter, kNil).New(), nullptr);
    return Given("acedSSGet", 0) == listRecords && Given("acedSSGet", 2) == filterRecords;
  });
  // The fallback to brackets.
  const CLOMAdsLispVar bad = ListOf({p1, L"a", Group(8, L"0")});
  SurviveEachAllocation([&] { EXPECT_EQ(CLOMAdsLisp::SSGet(L"WP", p1, bad, bad).New(), nullptr); });
}

}  // namespace
}  // namespace lomlisp::test
