#include <tests/selection/Selections.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace lomlisp::test {
namespace {

using RegionsTest = HostTest;
using Points = std::vector<Point>;

// What a polygon does with a line, as of Relation; '!' for an objection.
char PolygonRelation(Drawing& drawing, const Points& corners) {
  Picker picker(drawing);
  std::vector<Object*> inside;
  std::vector<Object*> crossing;
  if (picker.Polygon(corners, false, inside) || picker.Polygon(corners, true, crossing)) return '!';
  if (!inside.empty()) return crossing == inside ? 'W' : '?';
  return crossing.empty() ? '-' : 'C';
}

bool IsMetByFence(Drawing& drawing, const Points& points) {
  Picker picker(drawing);
  std::vector<Object*> found;
  EXPECT_EQ(picker.Fence(points, found), std::nullopt);
  return !found.empty();
}

// An L: a square of side 4 without its upper right quarter.
const Points kCorner{{0, 0}, {4, 0}, {4, 2}, {2, 2}, {2, 4}, {0, 4}};

Points Reversed(Points points) {
  std::reverse(points.begin(), points.end());
  return points;
}

TEST_F(RegionsTest, PolygonsAndLines) {
  struct Case {
    const char* name;
    double line[4];
    char expected;
  };
  for (const auto& [name, line, expected] : {Case{"inside", {1, 1, 3, 1}, 'W'},
                                             {"over the notch, ends inside", {1, 3, 3, 1}, 'W'},
                                             {"through the notch's corner", {0, 4, 4, 0}, 'W'},
                                             {"through the notch, ends on the border", {2, 4, 4, 2}, 'C'},
                                             {"through the notch, ends inside", {1, 3.5, 3.5, 1}, 'C'},
                                             {"along a side", {0, 0, 4, 0}, 'W'},
                                             {"along a part of a side", {1, 0, 3, 0}, 'W'},
                                             {"along a side and beyond", {1, 0, 5, 0}, 'C'},
                                             {"along the notch and on inside", {0, 2, 4, 2}, 'W'},
                                             {"along the notch's side, from without", {2, 5, 2, 0}, 'C'},
                                             {"along a side's line, apart", {5, 0, 6, 0}, '-'},
                                             {"in the notch", {3, 3, 4, 4}, '-'},
                                             {"in the notch, to its corner", {3, 3, 2, 2}, 'C'},
                                             {"touches a corner in passing", {3, 4, 5, 0}, 'C'},
                                             {"passes a corner", {3, 4.1, 5, 0.1}, '-'},
                                             {"ends on a side from without", {-1, 1, 0, 1}, 'C'},
                                             {"through everything", {-1, 1, 9, 1}, 'C'},
                                             {"a point inside", {1, 1, 1, 1}, 'W'},
                                             {"a point on a side", {4, 1, 4, 1}, 'W'},
                                             {"a point on a corner", {2, 2, 2, 2}, 'W'},
                                             {"a point in the notch", {3, 3, 3, 3}, '-'},
                                             {"level with corners", {-2, 4, -1, 4}, '-'}}) {
    Drawing drawing;
    DrawLine(drawing, line[0], line[1], line[2], line[3]);
    EXPECT_EQ(PolygonRelation(drawing, kCorner), expected) << name;
    EXPECT_EQ(PolygonRelation(drawing, Reversed(kCorner)), expected) << name << ", clockwise";
    Points closed = kCorner;
    closed.push_back(closed.front());
    EXPECT_EQ(PolygonRelation(drawing, closed), expected) << name << ", closed";
    Drawing turned;
    DrawLine(turned, line[2], line[3], line[0], line[1]);
    EXPECT_EQ(PolygonRelation(turned, kCorner), expected) << name << ", from the other end";
  }
}

TEST_F(RegionsTest, PolygonsWithSlantingSidesTouchWhatRoundingLeavesOnThem) {
  const Points triangle{{0, 0}, {3, 1}, {0, 1}};
  Drawing along;
  DrawLine(along, 0.3, 0.1, 2.1, 0.7);
  EXPECT_EQ(PolygonRelation(along, triangle), 'W');
  Drawing beside;
  DrawLine(beside, 0.3, 0.1 - 1e-12, 2.1, 0.7 - 1e-12);
  EXPECT_EQ(PolygonRelation(beside, triangle), '-');
  const Points distant{{5e6, 5e6}, {5e6 + 3, 5e6 + 1}, {5e6, 5e6 + 1}};
  Drawing remote;
  DrawLine(remote, 5e6 + 0.3, 5e6 + 0.1, 5e6 + 2.1, 5e6 + 0.7);
  EXPECT_EQ(PolygonRelation(remote, distant), 'W');
}

TEST_F(RegionsTest, PolygonsAndCurves) {
  struct Case {
    const char* name;
    double center[2];
    double radius;
    char expected;
  };
  for (const auto& [name, center, radius, expected] :
       {Case{"inside", {1, 1}, 0.5, 'W'},
        {"touches two sides", {1, 1}, 1, 'W'},
        {"touches the notch's corner", {1, 1}, std::sqrt(2.0), 'C'},
        {"inside up to the notch's corner", {1.5, 1.5}, std::sqrt(0.5), 'W'},
        {"into the notch", {1.5, 1.5}, 0.75, 'C'},
        {"around everything", {2, 2}, 9, '-'},
        {"around, through the corners", {2, 2}, std::sqrt(8.0), 'C'},
        {"in the notch", {3.5, 3.5}, 1, '-'},
        {"in the notch, touches two sides", {3, 3}, 1, 'C'},
        {"outside, touches a side", {2, -1}, 1, 'C'},
        {"outside, near a side", {2, -1}, 0.999999999, '-'}}) {
    Drawing drawing;
    Draw(drawing, L"CIRCLE", {At(10, center[0], center[1]), {40, radius}});
    EXPECT_EQ(PolygonRelation(drawing, kCorner), expected) << name;
  }
  // A half circle that bulges through the notch's side, with its ends inside.
  Drawing drawing;
  Draw(drawing, L"ARC", {At(10, 1.8, 3), {40, 0.5}, {50, 270.0}, {51, 90.0}});
  EXPECT_EQ(PolygonRelation(drawing, kCorner), 'C');
  Drawing other;
  Draw(other, L"ARC", {At(10, 1.8, 3), {40, 0.5}, {50, 90.0}, {51, 270.0}});
  EXPECT_EQ(PolygonRelation(other, kCorner), 'W');
}

TEST_F(RegionsTest, PolygonsWithinAreasAreCrossed) {
  Drawing drawing;
  Draw(drawing, L"SOLID", {At(10, -9, -9), At(11, 9, -9), At(12, -9, 9), At(13, 9, 9)});
  EXPECT_EQ(PolygonRelation(drawing, kCorner), 'C');
  Drawing beside;
  Draw(beside, L"SOLID", {At(10, 2.5, 2.5), At(11, 9, 2.5), At(12, 2.5, 9), At(13, 9, 9)});
  EXPECT_EQ(PolygonRelation(beside, kCorner), '-');
  // An area whose corners are all inside, but which spans the notch.
  Drawing spanning;
  Draw(spanning, L"SOLID", {At(10, 1, 3.8), At(11, 3.8, 1), At(12, 0, 0)});
  EXPECT_EQ(PolygonRelation(spanning, kCorner), 'C');
}

TEST_F(RegionsTest, PolygonsThatAreNone) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  Drawing drawing;
  DrawLine(drawing, 0, 0, 1, 1);
  Picker picker(drawing);
  struct Case {
    const char* objection;
    Points corners;
  };
  const char* few = "a polygon needs three different points";
  const char* crossing = "the polygon crosses or touches itself";
  const char* bad = "a coordinate is no number or too large";
  for (const auto& [objection, corners] : {Case{few, {}},
                                           {few, {{1, 1}}},
                                           {few, {{0, 0}, {1, 1}}},
                                           {few, {{0, 0}, {1, 1}, {0, 0}}},
                                           {few, {{0, 0}, {0, 0}, {1, 1}, {1, 1}}},
                                           {few, {{0, 0, 1}, {0, 0, 2}, {0, 0, 3}}},
                                           {crossing, {{0, 0}, {1, 1}, {0, 0}, {1, 1}}},
                                           {crossing, {{0, 0}, {2, 2}, {2, 0}, {0, 2}}},
                                           {crossing, {{0, 0}, {4, 0}, {2, 0}}},
                                           {crossing, {{0, 0}, {1, 0}, {2, 0}}},
                                           {crossing, {{0, 0}, {4, 0}, {4, 4}, {2, 0}, {0, 4}}},
                                           {crossing, {{0, 0}, {4, 0}, {4, 4}, {4, -1}, {0, -1}}},
                                           {bad, {{0, 0}, {1, 0}, {nan, 1}}},
                                           {bad, {{0, 0}, {1, 0}, {0, 1e200}}}}) {
    std::vector<Object*> found{drawing.Entities().members.front()};
    EXPECT_EQ(picker.Polygon(corners, true, found), objection) << corners.size();
    EXPECT_TRUE(found.empty());
  }
}

TEST_F(RegionsTest, Fences) {
  struct Case {
    const char* name;
    Points points;
    bool isMet;
  };
  Drawing drawing;
  DrawLine(drawing, 0, 0, 4, 2);
  for (const auto& [name, points, isMet] :
       {Case{"crosses", {{2, 0}, {2, 4}}, true},
        {"touches with its end", {{2, 1}, {2, 4}}, true},
        {"stops short", {{2, 1.000001}, {2, 4}}, false},
        {"touches the line's end", {{4, 2}, {9, 9}}, true},
        {"runs along", {{2, 1}, {6, 3}}, true},
        {"runs along apart", {{6, 3}, {8, 4}}, false},
        {"parallel", {{0, 1}, {4, 3}}, false},
        {"is not closed", {{1, -1}, {9, -1}, {9, 9}, {1, 9}}, false},
        {"encloses", {{-1, -1}, {9, -1}, {9, 9}, {-1, 9}, {-1, -1}}, false},
        {"its second piece crosses", {{9, 0}, {2, 0}, {2, 4}}, true},
        {"crosses itself", {{-2, 2}, {-4, 4}, {-4, 2}, {-2, 4}, {2, 0}}, true},
        {"a point on the line", {{2, 1}, {2, 1}}, true},
        {"a point beside it", {{2, 1.1}, {2, 1.1}}, false}}) {
    EXPECT_EQ(IsMetByFence(drawing, points), isMet) << name;
    EXPECT_EQ(IsMetByFence(drawing, Reversed(points)), isMet) << name << ", from its other end";
  }
}

TEST_F(RegionsTest, FencesAndCurvesAndAreas) {
  Drawing circle;
  Draw(circle, L"CIRCLE", {At(10, 0, 0), {40, 5.0}});
  EXPECT_TRUE(IsMetByFence(circle, {{0, 0}, {9, 0}}));
  EXPECT_TRUE(IsMetByFence(circle, {{5, -9}, {5, 9}}));
  EXPECT_TRUE(IsMetByFence(circle, {{3, 4}, {3, 4}}));
  EXPECT_FALSE(IsMetByFence(circle, {{5.0000001, -9}, {5.0000001, 9}}));
  EXPECT_FALSE(IsMetByFence(circle, {{-3, 0}, {3, 0}}));
  EXPECT_FALSE(IsMetByFence(circle, {{0, 0}, {0, 0}}));
  Drawing arc;
  Draw(arc, L"ARC", {At(10, 0, 0), {40, 5.0}, {50, 0.0}, {51, 180.0}});
  EXPECT_TRUE(IsMetByFence(arc, {{0, 0}, {0, 9}}));
  EXPECT_FALSE(IsMetByFence(arc, {{0, 0}, {0, -9}}));
  EXPECT_TRUE(IsMetByFence(arc, {{5, 0}, {9, -9}}));
  Drawing area;
  Draw(area, L"SOLID", {At(10, 0, 0), At(11, 4, 0), At(12, 0, 4), At(13, 4, 4)});
  EXPECT_TRUE(IsMetByFence(area, {{1, 1}, {2, 1}}));
  EXPECT_FALSE(IsMetByFence(area, {{5, 1}, {6, 1}}));
}

TEST_F(RegionsTest, FencesThatGoOnFromTheEndOfAnArcTouchIt) {
  for (int degrees = 5; degrees < 360; degrees += 7) {
    const double angle = degrees * std::acos(-1.0) / 180;
    const Point end{0.1 + 0.7 * std::cos(angle), 0.3 + 0.7 * std::sin(angle)};
    const Point ahead{end.x - std::sin(angle), end.y + std::cos(angle)};
    Drawing drawing;
    Draw(drawing, L"ARC", {At(10, 0.1, 0.3), {40, 0.7}, {50, 0.0}, {51, static_cast<double>(degrees)}});
    EXPECT_TRUE(IsMetByFence(drawing, {end, ahead})) << degrees;
    Drawing mirrored;
    Draw(mirrored, L"ARC", {At(10, 0.1, 0.3), {40, 0.7}, {50, static_cast<double>(degrees)}, {51, 0.0}});
    const Point back{end.x + std::sin(angle), end.y - std::cos(angle)};
    EXPECT_TRUE(IsMetByFence(mirrored, {end, back})) << degrees;
  }
}

TEST_F(RegionsTest, FencesThatAreNone) {
  Drawing drawing;
  Object& line = DrawLine(drawing, 0, 0, 1, 1);
  Picker picker(drawing);
  std::vector<Object*> found{&line};
  EXPECT_EQ(picker.Fence({}, found), "a fence needs two points");
  EXPECT_TRUE(found.empty());
  EXPECT_EQ(picker.Fence({{0, 0}}, found), "a fence needs two points");
  EXPECT_EQ(picker.Fence({{0, 0}, {0, std::numeric_limits<double>::infinity()}}, found),
            "a coordinate is no number or too large");
}

TEST_F(RegionsTest, PicksTheLastDrawnThatMeetsThePickBox) {
  Drawing drawing;
  Object& line = DrawLine(drawing, 0, 0, 10, 0);
  Object& circle = Draw(drawing, L"CIRCLE", {At(10, 5, 5), {40, 5.0}});
  Object& text = Draw(drawing, L"TEXT", {At(10, 20, 20), {40, 10.0}, {1, L"text"}});
  Draw(drawing, L"HATCH", {At(10, 5, 5)});
  Picker picker(drawing);
  EXPECT_EQ(picker.At({9, 0.5}, 0.5), &line);
  EXPECT_EQ(picker.At({9, 0.6}, 0.5), nullptr);
  EXPECT_EQ(picker.At({5, 0}, 0.5), &circle);
  EXPECT_EQ(picker.At({5, 5}, 0.5), nullptr);
  EXPECT_EQ(picker.At({30, 25}, 0), &text);
  EXPECT_EQ(picker.At({8, 0}, 0), &line);
  EXPECT_EQ(picker.At({8, 1}, -1.5), &circle);
  EXPECT_EQ(picker.At({8, 0}, std::numeric_limits<double>::quiet_NaN()), nullptr);
  EXPECT_EQ(picker.At({std::numeric_limits<double>::infinity(), 0}, 1), nullptr);
  drawing.SetErased(circle, true);
  EXPECT_EQ(picker.At({5, 0}, 0.5), &line);
}

TEST_F(RegionsTest, WindowsOfNoNumbersFindNothing) {
  Drawing drawing;
  DrawLine(drawing, 0, 0, 1, 1);
  Picker picker(drawing);
  for (const double bad : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()})
    EXPECT_TRUE(Crossing(picker, -1, -1, bad, 2).empty());
  EXPECT_EQ(Crossing(picker, -1e100, -1e100, 1e100, 1e100).size(), 1u);
}

TEST_F(RegionsTest, PolygonOfManyCornersIsQuick) {
  Drawing drawing;
  Object& inside = DrawLine(drawing, 100, -2, 101, -1);
  Object& through = DrawLine(drawing, -5, 0.5, kLarge + 5.0, 0.5);
  // A comb with its teeth upwards.
  Points corners{{0, -10}, {kLarge / 10.0, -10}};
  for (int x = kLarge / 10; x >= 0; --x) corners.push_back({static_cast<double>(x), x % 2 == 0 ? 0.0 : 1.0});
  Picker picker(drawing);
  std::vector<Object*> found;
  ASSERT_EQ(picker.Polygon(corners, false, found), std::nullopt);
  EXPECT_EQ(found, std::vector<Object*>{&inside});
  ASSERT_EQ(picker.Polygon(corners, true, found), std::nullopt);
  EXPECT_EQ(found, (std::vector<Object*>{&inside, &through}));
}

}  // namespace
}  // namespace lomlisp::test
