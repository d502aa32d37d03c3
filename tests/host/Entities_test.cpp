#include <embedded/drawing/Drawing.h>
#include <embedded/drawing/Entries.h>

#include <string>
#include <utility>
#include <vector>

#include <tests/host/Logged.h>

namespace lomlisp::test {
namespace {

using Values = std::vector<CLOMAdsLispVar>;

class ValueEntities : public HostTest {
 protected:
  embedded::Object& Add(embedded::Groups groups) {
    embedded::Object& entity = drawing.NewObject(std::move(groups));
    AddHandle(drawing, entity);
    drawing.Append(drawing.Entities(), entity);
    return entity;
  }
  embedded::Object& AddLine() {
    return Add({{0, L"LINE"},
                {8, L"0"},
                {10, embedded::Point{1, 2, 3}},
                {11, embedded::Point{4, 5.5, -6}},
                {210, embedded::Point{0, 0, 1}}});
  }

  CLOMAdsLispVar NameOfHandle(uint64_t handle) const {
    ads_name name;
    drawing.NameOf(handle, name);
    return CLOMAdsLispVar(name);
  }
  CLOMAdsLispVar NameOf(const embedded::Object& entity) const { return NameOfHandle(entity.handle); }
  // A name that no entity has.
  CLOMAdsLispVar UnknownName() const { return NameOfHandle(0x7654321); }

  // The groups of a line as EntGet gives them, without the bracket behind them.
  std::string LineTree(const embedded::Object& line) const {
    return "({5003:-1 " + Tree(NameOf(line)) +
           "} {5003:0 5005:LINE} {5003:5 5005:" + Utf8(embedded::HandleText(line.handle)) +
           "} {5003:8 5005:0} {5003:10 (5001:1 5001:2 5001:3)} {5003:11 (5001:4 5001:5.5 5001:-6)} "
           "{5003:210 (5001:0 5001:0 5001:1)}";
  }

  // What is no entity name.
  Values WrongNames() const {
    const CLOMAdsLispVar name = UnknownName();
    return {CLOMAdsLisp::Nil,
            AtomOfNil(),
            5,
            70000L,
            1LL << 40,
            2.5,
            L"text",
            L"",
            PickSet(),
            V(L"T"),
            Coded(UnknownName(), -1),
            ListOf({name}),
            ListOf({}),
            ListOf({CLOMAdsLisp::Nil}),
            ListOf({1.0, 2.0, 3.0}),
            Dotted({name, name})};
  }

  embedded::Drawing& drawing = host.CurrentDrawing();
};

// The functions whose argument is an entity name.
struct NameFunction {
  const char* platform;
  CLOMAdsLispVar (*call)(const CLOMAdsLispVar& name);
  const char* message;
};

const NameFunction kNameFunctions[] = {
    {"acdbEntDel", [](const CLOMAdsLispVar& name) { return CLOMAdsLisp::EntDel(name); },
     "CLOMAdsLisp::EntDel : Parameter ist kein Entity-Name!\n"},
    {"acdbEntGetX", [](const CLOMAdsLispVar& name) { return CLOMAdsLisp::EntGet(name); },
     "CLOMAdsLisp::EntGet : Parameter ist kein Entity-Name!\n"},
    {"acdbEntGetX",
     [](const CLOMAdsLispVar& name) {
       return CLOMAdsLisp::EntGet(name, ListOf({L"APP", L"B"}));
     },
     "CLOMAdsLisp::EntGet : Parameter ist kein Entity-Name!\n"},
    {"acdbEntNext", [](const CLOMAdsLispVar& name) { return CLOMAdsLisp::EntNext(name); },
     "CLOMAdsLisp::EntNext : Parameter ist kein Entity-Name!\n"},
    {"acdbEntUpd", [](const CLOMAdsLispVar& name) { return CLOMAdsLisp::EntUpd(name); },
     "CLOMAdsLisp::EntUpd : Parameter ist kein Entity-Name!\n"}};

// The functions whose argument is a list of groups.
struct GroupsFunction {
  const char* platform;
  CLOMAdsLispVar (*call)(const CLOMAdsLispVar& groups);
};

const GroupsFunction kGroupsFunctions[] = {{"acdbEntMake", CLOMAdsLisp::EntMake},
                                           {"acdbEntMod", CLOMAdsLisp::EntMod}};

// --- Functions on a name ---

TEST_F(ValueEntities, WhatIsNoNameIsNamedAndThePlatformIsNotAsked) {
  AddLine();
  for (const NameFunction& function : kNameFunctions) {
    for (const CLOMAdsLispVar& value : WrongNames()) {
      SCOPED_TRACE(std::string(function.platform) + " " + Tree(value));
      EXPECT_EQ(function.call(value).New(), nullptr);
      EXPECT_EQ(Printed(), function.message);
    }
  }
  EXPECT_TRUE(host.log.Calls().empty());
}

TEST_F(ValueEntities, TheNameIsHandedOnAsItIs) {
  const CLOMAdsLispVar name(Records{Name((1LL << 40) + 3)});
  for (const NameFunction& function : kNameFunctions) {
    SCOPED_TRACE(function.platform);
    host.log.Clear();
    host.log.Answer(function.platform, RTERROR, 1);
    function.call(name);
    EXPECT_EQ(Given(function.platform), "5006:1099511627779,1099511627780");
    EXPECT_EQ(host.log.Calls().size(), 1U);
    EXPECT_EQ(Tree(name), "5006:1099511627779,1099511627780");
  }
}

TEST_F(ValueEntities, ARefusalIsNilWithoutAMessage) {
  AddLine();
  const CLOMAdsLispVar name = NameOf(AddLine());
  for (const NameFunction& function : kNameFunctions) {
    for (const int status : kRefusals) {
      SCOPED_TRACE(std::string(function.platform) + " " + std::to_string(status));
      host.log.Clear();
      host.log.Answer(function.platform, status, 1);
      EXPECT_EQ(function.call(name).New(), nullptr);
      EXPECT_EQ(host.log.Count(function.platform), 1U);
    }
    EXPECT_EQ(function.call(UnknownName()).New(), nullptr) << function.platform;
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueEntities, EntDelAndEntUpdGiveTheNameItself) {
  const CLOMAdsLispVar name = NameOf(AddLine());
  EXPECT_EQ(CLOMAdsLisp::EntDel(name).New(), name.New());
  EXPECT_EQ(CLOMAdsLisp::EntDel(name).New(), name.New());
  EXPECT_EQ(CLOMAdsLisp::EntUpd(name).New(), name.New());
  // The platform's word counts, not whether there is such an entity.
  const CLOMAdsLispVar unknown = UnknownName();
  host.log.Answer("acdbEntDel", RTNORM, 1);
  EXPECT_EQ(CLOMAdsLisp::EntDel(unknown).New(), unknown.New());
  host.log.Answer("acdbEntUpd", RTNORM, 1);
  EXPECT_EQ(CLOMAdsLisp::EntUpd(unknown).New(), unknown.New());
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueEntities, EntDelErasesAndRestores) {
  const embedded::Object& other = AddLine();
  const embedded::Object& line = AddLine();
  CLOMAdsLisp::EntDel(NameOf(line));
  EXPECT_TRUE(line.isErased);
  EXPECT_FALSE(other.isErased);
  EXPECT_EQ(CLOMAdsLisp::EntGet(NameOf(line)).New(), nullptr);
  CLOMAdsLisp::EntDel(NameOf(line));
  EXPECT_FALSE(line.isErased);
  EXPECT_EQ(Tree(CLOMAdsLisp::EntGet(NameOf(line))), LineTree(line) + ")");
  EXPECT_EQ(Printed(), "");
}

// --- EntLast, EntNext ---

TEST_F(ValueEntities, EntLastGivesTheNameOfTheLastEntity) {
  AddLine();
  const embedded::Object& last = AddLine();
  EXPECT_EQ(Tree(CLOMAdsLisp::EntLast()), Tree(NameOf(last)));
  EXPECT_TRUE(CLOMAdsLisp::EntLast().ENameP());
  EXPECT_EQ(host.log.Count("acdbEntLast"), 2U);
  EXPECT_EQ(host.log.Calls().size(), 2U);
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueEntities, EntLastIsNilWithAMessageWhenThePlatformRefuses) {
  constexpr const char* kMessage = "CLOMAdsLisp::EntLast : ads_entlast meldet Fehler !\n";
  EXPECT_EQ(CLOMAdsLisp::EntLast().New(), nullptr) << "an empty drawing";
  EXPECT_EQ(Printed(), kMessage);
  AddLine();
  for (const int status : kRefusals) {
    host.log.Answer("acdbEntLast", status, 1);
    EXPECT_EQ(CLOMAdsLisp::EntLast().New(), nullptr) << status;
    EXPECT_EQ(Printed(), kMessage) << status;
  }
}

TEST_F(ValueEntities, EntNextGoesThroughTheDrawingAndEndsWithNil) {
  const CLOMAdsLispVar first = NameOf(AddLine());
  const CLOMAdsLispVar second = NameOf(AddLine());
  const CLOMAdsLispVar third = NameOf(AddLine());
  const std::string before = Tree(first);
  EXPECT_EQ(Tree(CLOMAdsLisp::EntNext(first)), Tree(second));
  EXPECT_TRUE(CLOMAdsLisp::EntNext(first).ENameP());
  EXPECT_EQ(Tree(first), before) << "the argument stays";
  EXPECT_EQ(Tree(CLOMAdsLisp::EntNext(second)), Tree(third));
  EXPECT_EQ(CLOMAdsLisp::EntNext(third).New(), nullptr);
  EXPECT_EQ(Given("acdbEntNext"), Tree(third));
  CLOMAdsLisp::EntDel(second);
  EXPECT_EQ(Tree(CLOMAdsLisp::EntNext(first)), Tree(third));
  EXPECT_EQ(Printed(), "");
}

// --- EntGet ---

TEST_F(ValueEntities, EntGetGivesPairsOfCodeAndValue) {
  const embedded::Object& line = AddLine();
  const CLOMAdsLispVar name = NameOf(line);
  const CLOMAdsLispVar groups = CLOMAdsLisp::EntGet(name);
  EXPECT_EQ(Tree(groups), LineTree(line) + ")");
  EXPECT_EQ(Tree(CLOMAdsLisp::EntGet(name, CLOMAdsLisp::Nil)), Tree(groups));
  EXPECT_EQ(Tree(CLOMAdsLisp::Assoc(0, groups)), "{5003:0 5005:LINE}");
  EXPECT_NE(CLOMAdsLisp::EntGet(name).New(), groups.New());
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueEntities, EntGetGivesExtendedDataOnTheSameLevel) {
  embedded::Object& line = AddLine();
  drawing.NewEntry(L"APPID", L"APP", {{70, 0}});
  drawing.NewEntry(L"APPID", L"OTHER", {{70, 0}});
  line.extended = {{L"APP", {{1000, L"x"}, {1070, 7}, {1040, 2.5}}}, {L"OTHER", {{1000, L"y"}}}};
  const CLOMAdsLispVar name = NameOf(line);
  const std::string app = " (5005:APP) {5003:1000 5005:x} {5003:1070 5003:7} {5003:1040 5001:2.5}";
  const std::string other = " (5005:OTHER) {5003:1000 5005:y}";
  const std::pair<CLOMAdsLispVar, std::string> cases[] = {
      {CLOMAdsLisp::Nil, ""},
      {AtomOfNil(), ""},
      {ListOf({}), ""},
      {ListOf({L"APP"}), " 5003:-3" + app},
      {ListOf({L"OTHER"}), " 5003:-3" + other},
      {ListOf({L"APP", L"OTHER"}), " 5003:-3" + app + other},
      {ListOf({L"*"}), " 5003:-3" + app + other},
      {L"APP", " 5003:-3" + app}};
  for (const auto& [applications, extended] : cases) {
    SCOPED_TRACE(Tree(applications));
    EXPECT_EQ(Tree(CLOMAdsLisp::EntGet(name, applications)), LineTree(line) + extended + ")");
  }
  EXPECT_EQ(Tree(CLOMAdsLisp::EntGet(name)), LineTree(line) + ")");
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueEntities, EntGetHandsTheApplicationsOnAsAListOfGroupsOrInBrackets) {
  const CLOMAdsLispVar name(Records{Name(31)});
  const std::pair<CLOMAdsLispVar, const char*> cases[] = {
      {CLOMAdsLisp::Nil, ""},
      {AtomOfNil(), ""},
      {ListOf({}), ""},
      {ListOf({L"APP"}), "5016 5005:APP 5017"},
      {ListOf({L"A", L"B*"}), "5016 5005:A 5005:B* 5017"},
      {ListOf({L"A", CLOMAdsLisp::Nil}), "5016 5005:A 5019 5017"},
      {ListOf({ListOf({L"A"})}), "5016 5016 5005:A 5017 5017"},
      {Dotted({L"A", L"B"}), "5016 5005:A 5018 5005:B 5017"},
      {ListOf({Group(8, L"x")}), "8:x"},
      {L"APP", "5005:APP"},
      {5, "5003:5"},
      {name, "5006:31,32"}};
  for (const auto& [applications, records] : cases) {
    SCOPED_TRACE(Tree(applications));
    const std::string before = Tree(applications);
    host.log.Clear();
    host.log.Answer("acdbEntGetX", RTERROR, 1);
    EXPECT_EQ(CLOMAdsLisp::EntGet(name, applications).New(), nullptr);
    EXPECT_EQ(Given("acdbEntGetX", 0), "5006:31,32");
    EXPECT_EQ(Given("acdbEntGetX", 1), records);
    EXPECT_EQ(host.log.Calls().size(), 1U);
    EXPECT_EQ(Tree(applications), before);
  }
  host.log.Answer("acdbEntGetX", RTERROR, 1);
  CLOMAdsLisp::EntGet(name);
  EXPECT_EQ(Given("acdbEntGetX", 1), "");
  EXPECT_EQ(Printed(), "");
}

// --- EntMake, EntMod ---

TEST_F(ValueEntities, GroupsAreHandedOnBareAndAnythingElseInBrackets) {
  const CLOMAdsLispVar line = Group(0, L"LINE");
  const CLOMAdsLispVar name(Records{Name(31)});
  const CLOMAdsLispVar point = ListOf({1.0, 2.5, 3.0});
  const CLOMAdsLispVar pair = Group(1000, L"x");
  const std::string lineInBrackets = "5016 5003:0 5018 5005:LINE 5017";
  const std::pair<CLOMAdsLispVar, std::string> cases[] = {
      {ListOf({line, Group(8, L"0"), Group(62, 1)}), "0:LINE 8:0 62:1"},
      {ListOf({Group(-1, name), line}), "-1:31,32 0:LINE"},
      {ListOf({Group(10, point), Group(40, 2.5)}), "10:1,2.5,3 40:2.5"},
      {ListOf({Group(10, ListOf({1.0, 2.5}))}), "10:1,2.5,0"},
      {ListOf({ListOf({10, point})}), "10:1,2.5,3"},
      {ListOf({ListOf({0, L"LINE"})}), "0:LINE"},
      {Dotted({line, Group(8, L"0")}), "0:LINE 8:0"},
      {ListOf({line, ListOf({-3, ListOf({L"APP", ListOf({pair, Group(1070, 7)})})})}),
       "0:LINE -3:0 1001:APP 1000:x 1070:7"},
      // A plain list of numbers is a point before it is a group.
      {ListOf({ListOf({62, 1})}), "5009:62,1,0"},
      {ListOf({point}), "5009:1,2.5,3"},
      // No lists of groups.
      {ListOf({line, ListOf({10, 1.0, 2.0, 3.0})}),
       "5016 " + lineInBrackets + " 5016 5003:10 5001:1 5001:2 5001:3 5017 5017"},
      {ListOf({line, CLOMAdsLisp::Nil}), "5016 " + lineInBrackets + " 5019 5017"},
      {ListOf({line, 5}), "5016 " + lineInBrackets + " 5003:5 5017"},
      {ListOf({ListOf({8})}), "5016 5016 5003:8 5017 5017"},
      {ListOf({Group(5500, 1)}), "5016 5016 5003:5500 5018 5003:1 5017 5017"},
      {ListOf({line, ListOf({-3, ListOf({L"APP", pair})})}),
       "5016 " + lineInBrackets +
           " 5016 5003:-3 5016 5005:APP 5016 5003:1000 5018 5005:x 5017 5017 5017 5017"},
      {ListOf({ListOf({line})}), "5016 0:LINE 5017"},
      {line, lineInBrackets},
      {point, "5016 5001:1 5001:2.5 5001:3 5017"},
      {ListOf({}), ""},
      {CLOMAdsLisp::Nil, "5019"},
      {AtomOfNil(), "5019"},
      {5, "5003:5"},
      {L"LINE", "5005:LINE"},
      {name, "5006:31,32"},
      {PickSet(), "5007:7,8"}};
  for (const GroupsFunction& function : kGroupsFunctions) {
    for (const auto& [groups, records] : cases) {
      const std::string before = Tree(groups);
      SCOPED_TRACE(std::string(function.platform) + " " + before);
      host.log.Clear();
      host.log.Answer(function.platform, RTERROR, 1);
      EXPECT_EQ(function.call(groups).New(), nullptr);
      EXPECT_EQ(Given(function.platform), records);
      EXPECT_EQ(host.log.Calls().size(), 1U);
      host.log.Answer(function.platform, RTNORM, 1);
      EXPECT_EQ(function.call(groups).New(), groups.New()) << "the argument itself";
      EXPECT_EQ(Tree(groups), before);
    }
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueEntities, RefusedGroupsAreNilWithoutAMessage) {
  const CLOMAdsLispVar groups =
      ListOf({Group(-1, NameOf(AddLine())), Group(0, L"LINE"), Group(10, ListOf({1.0, 2.0, 3.0})),
              Group(11, ListOf({4.0, 5.0, 6.0}))});
  for (const GroupsFunction& function : kGroupsFunctions) {
    for (const int status : kRefusals) {
      SCOPED_TRACE(std::string(function.platform) + " " + std::to_string(status));
      host.log.Answer(function.platform, status, 1);
      EXPECT_EQ(function.call(groups).New(), nullptr);
    }
    // The platform's own refusals.
    for (const CLOMAdsLispVar& bad : {ListOf({Group(8, L"0")}), ListOf({Group(0, L"LINE"), 5}), ListOf({}),
                                      CLOMAdsLisp::Nil, CLOMAdsLispVar(5)}) {
      SCOPED_TRACE(std::string(function.platform) + " " + Tree(bad));
      EXPECT_EQ(function.call(bad).New(), nullptr);
    }
  }
  EXPECT_EQ(drawing.Entities().members.size(), 1U);
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueEntities, EntMakeMakesAnEntity) {
  const CLOMAdsLispVar groups = ListOf({Group(0, L"LINE"), Group(8, L"0"), Group(10, ListOf({1.0, 2.0, 3.0})),
                                        Group(11, ListOf({4.0, 5.5, -6.0}))});
  EXPECT_EQ(CLOMAdsLisp::EntMake(groups).New(), groups.New());
  ASSERT_EQ(drawing.Entities().members.size(), 1U);
  const embedded::Object& made = *drawing.Entities().members[0];
  EXPECT_EQ(made.Type(), L"LINE");
  EXPECT_EQ(embedded::PointOf(made.groups, 11), (embedded::Point{4, 5.5, -6}));
  EXPECT_EQ(Tree(CLOMAdsLisp::EntLast()), Tree(NameOf(made)));
  EXPECT_EQ(host.log.Count("acdbEntMod"), 0U);
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueEntities, EntModChangesAnEntity) {
  const embedded::Object& line = AddLine();
  const CLOMAdsLispVar groups = ListOf({Group(-1, NameOf(line)), Group(0, L"LINE"), Group(62, 3)});
  EXPECT_EQ(CLOMAdsLisp::EntMod(groups).New(), groups.New());
  EXPECT_EQ(embedded::IntegerOf(line.groups, 62), 3);
  EXPECT_EQ(embedded::PointOf(line.groups, 11), (embedded::Point{4, 5.5, -6}));
  EXPECT_EQ(host.log.Count("acdbEntMake"), 0U);
  EXPECT_EQ(Printed(), "");
}

TEST_F(ValueEntities, EntModTakesWhatEntGetGives) {
  const embedded::Object& line = AddLine();
  const CLOMAdsLispVar groups = CLOMAdsLisp::EntGet(NameOf(line));
  EXPECT_EQ(CLOMAdsLisp::EntMod(groups).New(), groups.New());
  EXPECT_EQ(Given("acdbEntMod"), "-1:" + Tree(NameOf(line)).substr(5) +
                                     " 0:LINE 5:" + Utf8(embedded::HandleText(line.handle)) +
                                     " 8:0 10:1,2,3 11:4,5.5,-6 210:0,0,1");
  EXPECT_EQ(Tree(CLOMAdsLisp::EntGet(NameOf(line))), Tree(groups));
  EXPECT_EQ(Printed(), "");
}

// --- EntSel ---

TEST_F(ValueEntities, EntSelGivesTheNameAndThePoint) {
  const embedded::Object& line = AddLine();
  host.answers.Add(embedded::PickEntity{line.handle, {1.5, -2, 0}});
  const CLOMAdsLispVar picked = CLOMAdsLisp::EntSel(L"\nPick %d: ");
  EXPECT_EQ(Tree(picked), "(" + Tree(NameOf(line)) + " (5001:1.5 5001:-2 5001:0))");
  EXPECT_EQ(host.log.Count("acedEntSel"), 1U);
  EXPECT_EQ(host.log.Last("acedEntSel")->name, L"\nPick %d: ");
  EXPECT_EQ(host.answers.Waiting(), 0U);
}

TEST_F(ValueEntities, EntSelWithoutAPromptLeavesItToThePlatform) {
  const embedded::Object& line = AddLine();
  for (const CLOMAdsLispVar& prompt : {CLOMAdsLisp::Nil, AtomOfNil(), NullText(), CLOMAdsLispVar(L"")}) {
    SCOPED_TRACE(Tree(prompt));
    host.answers.Add(embedded::PickEntity{line.handle, {1.5, -2, 0}});
    EXPECT_EQ(Tree(CLOMAdsLisp::EntSel(prompt)), "(" + Tree(NameOf(line)) + " (5001:1.5 5001:-2 5001:0))");
    EXPECT_EQ(host.log.Last("acedEntSel")->name, L"");
  }
  EXPECT_EQ(host.log.Count("acedEntSel"), 4U);
}

TEST_F(ValueEntities, APromptThatIsNoTextIsNamedAndThePlatformIsNotAsked) {
  const embedded::Object& line = AddLine();
  host.answers.Add(embedded::PickEntity{line.handle, {1.5, -2, 0}});
  const CLOMAdsLispVar prompts[] = {5,
                                    70000L,
                                    1LL << 40,
                                    2.5,
                                    NameOf(line),
                                    PickSet(),
                                    V(L"T"),
                                    Coded(L"Pick: ", 1),
                                    ListOf({L"Pick: "}),
                                    ListOf({}),
                                    ListOf({CLOMAdsLisp::Nil}),
                                    Dotted({L"a", L"b"})};
  for (const CLOMAdsLispVar& prompt : prompts) {
    SCOPED_TRACE(Tree(prompt));
    EXPECT_EQ(CLOMAdsLisp::EntSel(prompt).New(), nullptr);
    EXPECT_EQ(Printed(), "CLOMAdsLisp::EntSel : Parameter ist kein String !\n");
  }
  EXPECT_TRUE(host.log.Calls().empty());
  EXPECT_EQ(host.answers.Waiting(), 1U);
}

TEST_F(ValueEntities, EntSelIsNilWithoutAMessageWhenNothingIsPicked) {
  const embedded::Object& line = AddLine();
  const embedded::UserAnswer answers[] = {embedded::PickNothing{}, embedded::PressEnter{},
                                          embedded::PressCancel{}, embedded::TypeKeyword{L"Last"}};
  for (const embedded::UserAnswer& answer : answers) {
    SCOPED_TRACE(answer.index());
    host.answers.Add(answer);
    EXPECT_EQ(CLOMAdsLisp::EntSel(CLOMAdsLisp::Nil).New(), nullptr);
  }
  for (const int status : kRefusals) {
    SCOPED_TRACE(status);
    host.answers.Add(embedded::PickEntity{line.handle, {1.5, -2, 0}});
    host.log.Answer("acedEntSel", status, 1);
    EXPECT_EQ(CLOMAdsLisp::EntSel(L"Pick: ").New(), nullptr);
  }
  EXPECT_EQ(Printed(), "Select object: \nSelect object: \nSelect object: *Cancel*\nSelect object: Last\n")
      << "the dialogue alone";
}

// --- Memory ---

TEST_F(ValueEntities, EntGetLeaksNothingWhenMemoryRunsOut) {
  embedded::Object& line = AddLine();
  drawing.NewEntry(L"APPID", L"APP", {{70, 0}});
  line.extended = {{L"APP", {{1000, L"x"}}}};
  const CLOMAdsLispVar name = NameOf(line), applications = ListOf({L"APP"});
  const std::string all = LineTree(line) + " 5003:-3 (5005:APP) {5003:1000 5005:x})";
  FailEachAllocation([&] { return Tree(CLOMAdsLisp::EntGet(name, applications)) == all; });
  FailEachAllocation([&] { return Tree(CLOMAdsLisp::EntGet(name)) == LineTree(line) + ")"; });
}

TEST_F(ValueEntities, EntMakeAndEntModLeakNothingWhenMemoryRunsOut) {
  const CLOMAdsLispVar name = NameOf(AddLine());
  const CLOMAdsLispVar made = ListOf({Group(0, L"LINE"), Group(8, L"0"), Group(10, ListOf({1.0, 2.0, 3.0})),
                                      Group(11, ListOf({4.0, 5.0, 6.0}))});
  FailEachAllocation([&] { return CLOMAdsLisp::EntMake(made).New() == made.New(); });
  const CLOMAdsLispVar changed = ListOf({Group(-1, name), Group(0, L"LINE"), Group(8, L"0")});
  FailEachAllocation([&] { return CLOMAdsLisp::EntMod(changed).New() == changed.New(); });
  // The fallback to brackets.
  const CLOMAdsLispVar bad = ListOf({Group(0, L"LINE"), Group(8, L"0"), 5});
  SurviveEachAllocation([&] { CLOMAdsLisp::EntMod(bad); });
}

TEST_F(ValueEntities, TheOthersLeakNothingWhenMemoryRunsOut) {
  const embedded::Object& line = AddLine();
  const CLOMAdsLispVar name = NameOf(line);
  const auto isNameOrNil = [&](const CLOMAdsLispVar& value) {
    EXPECT_TRUE(value.NilP() || Tree(value) == Tree(name)) << Tree(value);
  };
  SurviveEachAllocation([&] { isNameOrNil(CLOMAdsLisp::EntDel(name)); });
  if (line.isErased) CLOMAdsLisp::EntDel(name);
  SurviveEachAllocation([&] { isNameOrNil(CLOMAdsLisp::EntUpd(name)); });
  SurviveEachAllocation([&] { isNameOrNil(CLOMAdsLisp::EntLast()); });
  SurviveEachAllocation([&] { EXPECT_EQ(CLOMAdsLisp::EntNext(name).New(), nullptr); });
  const CLOMAdsLispVar prompt(L"Pick: ");
  SurviveEachAllocation([&] {
    host.answers.Add(embedded::PickEntity{line.handle, {1.5, -2, 0}});
    const CLOMAdsLispVar picked = CLOMAdsLisp::EntSel(prompt);
    if (!picked.NilP()) isNameOrNil(CLOMAdsLisp::Car(picked));
    host.answers.Clear();
  });
}

}  // namespace
}  // namespace lomlisp::test
