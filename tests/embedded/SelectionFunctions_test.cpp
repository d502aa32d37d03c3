// acedSSGet and the functions for selection sets.
#include <lomlisp/platform/modules.h>

#include <embedded/Session.h>
#include <embedded/drawing/Entries.h>
#include <embedded/selection/SelectionMode.h>
#include <tests/support/HostTest.h>

#include <string>
#include <vector>

namespace lomlisp::test {
namespace {

using embedded::Drawing;
using embedded::Object;
using embedded::Point;
using embedded::SelectionMode;

TEST(SelectionModes, AreReadWithTheirMarksAndSuffixes) {
  struct Case {
    const wchar_t* text;
    std::optional<SelectionMode> mode;
  };
  for (const Case& one : {Case{L"", SelectionMode::User},
                          Case{L":S", SelectionMode::User},
                          Case{L"_:S:E", SelectionMode::User},
                          Case{L"_+.:E:S", SelectionMode::User},
                          Case{L":R-:U", std::nullopt},
                          Case{L":L-A", std::nullopt},
                          Case{L"X", SelectionMode::Everything},
                          Case{L"_x", SelectionMode::Everything},
                          Case{L"A", SelectionMode::Visible},
                          Case{L"l", SelectionMode::Last},
                          Case{L"P", SelectionMode::Previous},
                          Case{L"I", SelectionMode::Implied},
                          Case{L"W", SelectionMode::Window},
                          Case{L"_W:L", SelectionMode::Window},
                          Case{L"C", SelectionMode::Crossing},
                          Case{L"WP", SelectionMode::WindowPolygon},
                          Case{L"_cp", SelectionMode::CrossingPolygon},
                          Case{L"F", SelectionMode::Fence},
                          Case{L"Q", std::nullopt},
                          Case{L"XX", std::nullopt},
                          Case{L"W:", std::nullopt},
                          Case{L"W:?", std::nullopt},
                          Case{L"W S", std::nullopt},
                          Case{L"W:SS", std::nullopt}})
    EXPECT_EQ(embedded::ReadSelectionMode(one.text), one.mode) << Utf8(one.text);
}

class SelectionFunctions : public HostTest {
 protected:
  // A line on the x axis from x to x + 1.
  Object& AddLine(double x, const wchar_t* layer = L"0") {
    Drawing& drawing = host.CurrentDrawing();
    Object& line = drawing.NewObject(
        {{0, L"LINE"}, {8, layer}, {10, Point{x, 0.0, 0.0}}, {11, Point{x + 1.0, 0.0, 0.0}}});
    AddHandle(drawing, line);
    drawing.Append(drawing.Entities(), line);
    return line;
  }

  struct Set {
    ads_name name = {};
    int status = RTERROR;
  };
  Set Get(const wchar_t* mode, const void* first = nullptr, const void* second = nullptr,
          const resbuf* filter = nullptr) {
    Set set;
    set.status = acedSSGet(mode, first, second, filter, set.name);
    return set;
  }
  // The x of each line in the set, or the reason why there is none; frees the set.
  std::string Members(Set set) {
    if (set.status != RTNORM) return host.log.Last("acedSSGet")->objection.value_or("none");
    std::string text;
    int32_t length = 0;
    EXPECT_EQ(acedSSLength(set.name, &length), RTNORM);
    for (int32_t position = 0; position < length; ++position) {
      ads_name entity;
      EXPECT_EQ(acedSSName(set.name, position, entity), RTNORM);
      const Object* line = host.CurrentDrawing().FindName(entity);
      text += (text.empty() ? "" : " ") + std::to_string(static_cast<int>(PointOf(line->groups, 10).x));
    }
    EXPECT_EQ(acedSSFree(set.name), RTNORM);
    return text;
  }
};

TEST_F(SelectionFunctions, ModesSelectWhatTheySay) {
  AddLine(0);
  AddLine(10);
  Object& third = AddLine(20, L"Walls");
  Object& frozen = AddLine(30, L"Frozen");
  host.CurrentDrawing().NewEntry(L"LAYER", L"Frozen", {{70, 1LL}});
  const double left[3] = {-1.0, -1.0, 0.0};
  const double right[3] = {10.5, 1.0, 0.0};
  const double top[3] = {20.5, 0.2, 0.0};
  EXPECT_EQ(Members(Get(L"X")), "0 10 20 30");
  EXPECT_EQ(Members(Get(L"P")), "0 10 20 30");
  EXPECT_EQ(Members(Get(L"A")), "0 10 20");
  EXPECT_EQ(Members(Get(L"L")), "20");
  EXPECT_EQ(Members(Get(L"P")), "20");
  EXPECT_EQ(Members(Get(L"W", left, right)), "0");
  EXPECT_EQ(Members(Get(L"C", left, right)), "0 10");
  EXPECT_EQ(Members(Get(nullptr, left, right)), "0") << "from left to right";
  EXPECT_EQ(Members(Get(nullptr, right, left)), "0 10") << "from right to left";
  EXPECT_EQ(Members(Get(nullptr, top)), "20") << "within the pick box";
  EXPECT_EQ(Members(Get(L"W", left)), "two points are needed");
  EXPECT_EQ(Members(Get(L"I")), "nothing is selected");
  host.CurrentSession().implied = {third.handle, frozen.handle};
  EXPECT_EQ(Members(Get(L"I")), "20 30");
  EXPECT_EQ(Members(Get(L"Q")), "an unknown mode");
}

TEST_F(SelectionFunctions, PolygonsAndFencesComeAsChainsOfPoints) {
  AddLine(0);
  AddLine(10);
  const auto corners = [](std::vector<Point> points) {
    embedded::Chain chain;
    for (const Point& point : points) {
      embedded::Record& record = chain.emplace_back();
      record.type = RT3DPOINT;
      record.value.rpoint[0] = point.x;
      record.value.rpoint[1] = point.y;
      record.value.rpoint[2] = point.z;
    }
    return Materialise(chain, Host::Instance().ledger, embedded::Owner::Client);
  };
  resbuf* polygon = corners({{-1, -1}, {10.5, -1}, {10.5, 1}, {-1, 1}});
  EXPECT_EQ(Members(Get(L"WP", polygon)), "0");
  EXPECT_EQ(Members(Get(L"CP", polygon)), "0 10");
  EXPECT_EQ(host.log.Last("acedSSGet")->chains.size(), 3u);
  EXPECT_EQ(host.log.Last("acedSSGet")->chains[0].size(), 4u);
  EXPECT_EQ(Members(Get(nullptr, polygon)), "a chain where a point belongs");
  EXPECT_EQ(Members(Get(L"W", polygon, polygon)), "a chain where a point belongs");
  acutRelRb(polygon);
  resbuf* fence = corners({{10.5, -1}, {10.5, 1}});
  EXPECT_EQ(Members(Get(L"F", fence)), "10");
  acutRelRb(fence);
  EXPECT_NE(Members(Get(L"F")), "") << "no points at all";
  EXPECT_EQ(Members(Get(L"WP", TextChain(L"1 2"))), "something that is no point among the corners");
  EXPECT_EQ(Members(Get(L"CP", TextChain(L"((-1.0 -1.0 0.0) (5.0 -1.0 0.0) (5.0 1.0 0.0))"))),
            "something that is no point among the corners")
      << "points as lists";
}

TEST_F(SelectionFunctions, FiltersApplyToEveryMode) {
  AddLine(0);
  AddLine(10, L"Walls");
  AddLine(20, L"Windows");
  const auto filter = [](const wchar_t* text) {
    ADSList chain;
    CLOMAdsLispVar(V(text)).LispToDXF(chain);
    return embedded::Capture(chain);
  };
  const auto get = [&](const wchar_t* mode, const wchar_t* text) {
    resbuf* chain = Materialise(filter(text), host.ledger, embedded::Owner::Client);
    const std::string members = Members(Get(mode, nullptr, nullptr, chain));
    acutRelRb(chain);
    return members;
  };
  EXPECT_EQ(get(L"X", L"((8 . \"W*\"))"), "10 20");
  EXPECT_EQ(get(L"A", L"((0 . \"LINE\") (8 . \"walls,0\"))"), "0 10");
  EXPECT_EQ(get(L"X", L"((8 . \"none\"))"), "nothing is selected");
  EXPECT_NE(get(L"X", L"((-4 . \"<OR\") (8 . \"0\"))").find("record"), std::string::npos);
  EXPECT_EQ(get(L"X", L"(1 2)"), get(L"X", L"(\"x\")")) << "what is no filter is refused";
}

TEST_F(SelectionFunctions, TheUserSelectsAsLaidDown) {
  Object& first = AddLine(0);
  Object& second = AddLine(10);
  host.answers.Add(embedded::SelectEntities{{second.handle, first.handle, 0xFFFF, second.handle}});
  host.answers.Add(embedded::PickEntity{first.handle, {}});
  host.answers.Add(embedded::PickPoint{{10.5, 0.5}});
  host.answers.Add(embedded::PickNothing{});
  host.answers.Add(embedded::PressEnter{});
  host.answers.Add(embedded::PressCancel{});
  host.answers.Add(embedded::TypeKeyword{L"Undo"});
  EXPECT_EQ(Members(Get(nullptr)), "10 0");
  EXPECT_EQ(Members(Get(nullptr)), "0");
  EXPECT_EQ(Members(Get(L":S")), "10");
  EXPECT_EQ(Get(nullptr).status, RTERROR);
  EXPECT_EQ(Get(nullptr).status, RTERROR);
  EXPECT_EQ(Get(nullptr).status, RTCAN);
  EXPECT_EQ(Get(nullptr).status, RTKWORD);
  EXPECT_EQ(host.answers.lastKeyword, L"Undo");
  host.Define(L"SELECT", [this] { return Get(nullptr).status; });
  EXPECT_EQ(host.Call(L"SELECT", L"").errors.size(), 1u) << "nobody answers";
}

TEST_F(SelectionFunctions, SetsTakeAndLoseMembers) {
  ads_name line;
  ads_name other;
  host.CurrentDrawing().NameOf(AddLine(0).handle, line);
  host.CurrentDrawing().NameOf(AddLine(10).handle, other);
  Set set;
  ASSERT_EQ(acedSSAdd(nullptr, nullptr, set.name), RTNORM);
  int32_t length = -1;
  EXPECT_EQ(acedSSLength(set.name, &length), RTNORM);
  EXPECT_EQ(length, 0);
  ads_name result;
  for (const auto* entity : {&line, &other, &line}) EXPECT_EQ(acedSSAdd(*entity, set.name, result), RTNORM);
  EXPECT_EQ(result[0], set.name[0]);
  EXPECT_EQ(result[1], set.name[1]);
  EXPECT_EQ(acedSSMemb(line, set.name), RTNORM);
  EXPECT_EQ(acedSSDel(line, set.name), RTNORM);
  EXPECT_EQ(acedSSDel(line, set.name), RTERROR);
  EXPECT_EQ(acedSSMemb(line, set.name), RTERROR);
  ads_name member = {};
  ASSERT_EQ(acedSSName(set.name, 0, member), RTNORM);
  EXPECT_EQ(member[0], other[0]);
  for (const int32_t position : {-1, 1, 1000}) EXPECT_EQ(acedSSName(set.name, position, member), RTERROR);
  EXPECT_EQ(acedSSFree(set.name), RTNORM);
  EXPECT_EQ(acedSSFree(set.name), RTERROR);
  EXPECT_EQ(acedSSLength(set.name, &length), RTERROR);
  EXPECT_EQ(acedSSAdd(line, set.name, result), RTERROR);
  ASSERT_EQ(acedSSAdd(line, nullptr, set.name), RTNORM);
  set.status = RTNORM;
  EXPECT_EQ(Members(set), "0");
}

TEST_F(SelectionFunctions, WhatIsNoSetOrEntityIsRefused) {
  AddLine(0);
  const ads_name none = {7, -1};
  ads_name result;
  int32_t length = 0;
  EXPECT_EQ(acedSSLength(nullptr, &length), RTERROR);
  EXPECT_EQ(acedSSLength(none, &length), RTERROR);
  EXPECT_EQ(acedSSName(none, 0, result), RTERROR);
  EXPECT_EQ(acedSSAdd(none, nullptr, result), RTERROR);
  EXPECT_EQ(acedSSDel(none, none), RTERROR);
  EXPECT_EQ(acedSSMemb(none, nullptr), RTERROR);
  EXPECT_EQ(acedSSFree(none), RTERROR);
  const Set set = Get(L"X");
  EXPECT_EQ(acedSSLength(set.name, nullptr), RTERROR);
  EXPECT_EQ(acedSSName(set.name, 0, nullptr), RTERROR);
  EXPECT_EQ(acedSSAdd(nullptr, set.name, result), RTERROR);
  EXPECT_EQ(acedSSDel(none, set.name), RTERROR);
  EXPECT_EQ(acedSSGet(L"X", nullptr, nullptr, nullptr, nullptr), RTERROR);
}

TEST_F(SelectionFunctions, SetsEndWithTheirDrawingAndAreLimited) {
  AddLine(0);
  const Set set = Get(L"X");
  ASSERT_EQ(set.status, RTNORM);
  host.CloseDrawing();
  int32_t length = 0;
  EXPECT_EQ(acedSSLength(set.name, &length), RTERROR);
  AddLine(0);
  std::vector<Set> sets;
  while (sets.size() < 1000) {
    sets.push_back(Get(L"X"));
    if (sets.back().status != RTNORM) break;
  }
  EXPECT_EQ(sets.size(), embedded::SelectionSets::kLimit + 1);
  EXPECT_EQ(host.log.Last("acedSSGet")->objection, "too many selection sets");
  acedSSFree(sets.front().name);
  EXPECT_EQ(Get(L"X").status, RTNORM);
}

// A block that is defined anew, and empty, shows nothing in its inserts.
TEST_F(SelectionFunctions, WindowsSeeWhatBlocksHave) {
  const double origin[3] = {0.0, 0.0, 0.0};
  const double end[3] = {1.0, 0.0, 0.0};
  const auto make = [](const wchar_t* type, const std::vector<CLOMAdsLispVar>& groups) {
    CLOMAdsLispVar entity = CLOMAdsLisp::List(CLOMAdsLispVar(CLOMAdsLisp::Cons(0, type)));
    for (const CLOMAdsLispVar& group : groups) entity.Append(CLOMAdsLisp::List(group));
    return CLOMAdsLisp::EntMake(entity).NilP() ? RTERROR : RTNORM;
  };
  const CLOMAdsLispVar name = CLOMAdsLisp::Cons(2, L"Rod");
  const CLOMAdsLispVar at = CLOMAdsLisp::List(10, origin);
  const CLOMAdsLispVar flags = CLOMAdsLisp::Cons(70, 0);
  for (const int status : {make(L"BLOCK", {name, flags, at}), make(L"LINE", {at, CLOMAdsLisp::List(11, end)}),
                           make(L"ENDBLK", {}), make(L"INSERT", {name, at})})
    ASSERT_EQ(status, RTNORM) << host.log.Last("acdbEntMake")->objection.value_or("");
  const double lower[3] = {-1.0, -1.0, 0.0};
  const double upper[3] = {2.0, 1.0, 0.0};
  EXPECT_EQ(Get(L"W", lower, upper).status, RTNORM);
  ASSERT_EQ(make(L"BLOCK", {name, flags, at}), RTNORM);
  ASSERT_EQ(make(L"ENDBLK", {}), RTNORM);
  EXPECT_EQ(Get(L"W", lower, upper).status, RTERROR);
}

TEST_F(SelectionFunctions, SwitchesSetTheOrderAndTheNumberOfSets) {
  host.switches.newestFirst = true;
  host.switches.selectionSets = 2;
  AddLine(0);
  AddLine(10);
  AddLine(20);
  EXPECT_EQ(Members(Get(L"X")), "20 10 0");
  EXPECT_EQ(Members(Get(L"A")), "0 10 20");
  const Set first = Get(L"X");
  const Set second = Get(L"X");
  EXPECT_EQ(Get(L"X").status, RTERROR);
  EXPECT_EQ(acedSSFree(first.name), RTNORM);
  EXPECT_EQ(acedSSFree(second.name), RTNORM);
  EXPECT_EQ(Get(L"X").status, RTNORM);
}

TEST_F(SelectionFunctions, ErasedMembersStayInTheirSetsAndAreNotSelectedAgain) {
  Object& line = AddLine(0);
  AddLine(10);
  const Set set = Get(L"X");
  host.CurrentDrawing().SetErased(line, true);
  int32_t length = 0;
  acedSSLength(set.name, &length);
  EXPECT_EQ(length, 2);
  EXPECT_EQ(Members(Get(L"P")), "10");
  EXPECT_EQ(Members(Get(L"X")), "10");
}

}  // namespace
}  // namespace lomlisp::test
