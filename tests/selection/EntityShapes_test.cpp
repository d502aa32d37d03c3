#include <tests/selection/Selections.h>

#include <cmath>
#include <limits>
#include <ostream>

namespace lomlisp::test {
namespace {

using EntityShapesTest = HostTest;

struct WindowCase {
  const char* name;
  const wchar_t* type;
  Groups geometry;
  double window[4];
  char expected;  // as of Relation
};

void Check(const std::vector<WindowCase>& cases) {
  for (const WindowCase& one : cases) {
    Drawing drawing;
    Draw(drawing, one.type, one.geometry);
    const auto& [x1, y1, x2, y2] = one.window;
    EXPECT_EQ(Relation(drawing, x1, y1, x2, y2), one.expected) << one.name;
    EXPECT_EQ(Relation(drawing, x2, y2, x1, y1), one.expected) << one.name << ", from the other corner";
  }
}

TEST_F(EntityShapesTest, LinesAndPoints) {
  const Groups line{At(10, 1, 1, 50), At(11, 5, 3, -7)};
  Check({{"inside", L"LINE", line, {0, 0, 6, 4}, 'W'},
         {"on the border", L"LINE", line, {1, 1, 5, 3}, 'W'},
         {"one end out", L"LINE", line, {0, 0, 4, 4}, 'C'},
         {"through", L"LINE", line, {2, 0, 3, 4}, 'C'},
         {"touches a corner", L"LINE", line, {3, 0, 9, 2}, 'C'},
         {"touches with its end", L"LINE", line, {5, 3, 9, 9}, 'C'},
         {"box overlaps, line does not", L"LINE", line, {1, 2.5, 2, 3}, '-'},
         {"outside", L"LINE", line, {5.5, 0, 9, 9}, '-'},
         {"window without area on it", L"LINE", line, {3, 2, 3, 2}, 'C'},
         {"window without area beside", L"LINE", line, {3, 2.5, 3, 2.5}, '-'},
         {"level, on the border", L"LINE", {At(10, 0, 0), At(11, 4, 0)}, {1, 0, 2, 1}, 'C'},
         {"level, inside a flat window", L"LINE", {At(10, 0, 0), At(11, 4, 0)}, {0, 0, 4, 0}, 'W'},
         {"no length", L"LINE", {At(10, 2, 2), At(11, 2, 2)}, {2, 2, 3, 3}, 'W'},
         {"no end", L"LINE", {At(10, 2, 2)}, {-9, -9, 9, 9}, '-'},
         {"point inside", L"POINT", {At(10, 2, 2, 9)}, {1, 1, 3, 3}, 'W'},
         {"point on a corner", L"POINT", {At(10, 2, 2)}, {2, 2, 3, 3}, 'W'},
         {"point outside", L"POINT", {At(10, 2, 2)}, {2.5, 1, 3, 3}, '-'}});
}

TEST_F(EntityShapesTest, CirclesAndArcsExactlyAtTheirTurningPoints) {
  const Groups circle{At(10, 5, 5), {40, 2.0}};
  const Groups upper{At(10, 0, 0), {40, 2.0}, {50, 0.0}, {51, 180.0}};
  const Groups right{At(10, 0, 0), {40, 2.0}, {50, 270.0}, {51, 90.0}};
  const Groups top{At(10, 0, 0), {40, 10.0}, {50, 30.0}, {51, 150.0}};
  const double cos30 = 10 * std::cos(std::acos(-1.0) / 6);
  Check({{"circle on the border", L"CIRCLE", circle, {3, 3, 7, 7}, 'W'},
         {"circle a little out", L"CIRCLE", circle, {3, 3, 7, 6.9999999}, 'C'},
         {"within the circle", L"CIRCLE", circle, {4, 4, 6, 6}, '-'},
         {"in the box's corner", L"CIRCLE", circle, {3, 3, 3.5, 3.5}, '-'},
         {"touches on the right", L"CIRCLE", circle, {7, 4, 9, 6}, 'C'},
         {"just beside", L"CIRCLE", circle, {7.0000001, 4, 9, 6}, '-'},
         {"corner on the circle", L"CIRCLE", {At(10, 0, 0), {40, 5.0}}, {3, 4, 9, 9}, 'C'},
         {"corner just beside", L"CIRCLE", {At(10, 0, 0), {40, 5.0}}, {3.0000001, 4, 9, 9}, '-'},
         {"no radius", L"CIRCLE", {At(10, 1, 1)}, {1, 1, 2, 2}, 'W'},
         {"radius below zero", L"CIRCLE", {At(10, 0, 0), {40, -2.0}}, {-2, -2, 2, 2}, 'W'},
         {"upper half", L"ARC", upper, {-2, 0, 2, 2}, 'W'},
         {"below the upper half", L"ARC", upper, {-2, -2, 2, -0.001}, '-'},
         {"under the upper half", L"ARC", upper, {-1, -1, 1, 1}, '-'},
         {"right half over zero", L"ARC", right, {0, -2, 2, 2}, 'W'},
         {"left of the right half", L"ARC", right, {-2, -2, -0.5, 2}, '-'},
         {"turning point within", L"ARC", top, {-cos30 - 0.001, 4.99, cos30 + 0.001, 10}, 'W'},
         {"turning point cut off", L"ARC", top, {-9, 4.99, 9, 9.999}, 'C'},
         {"above the turning point", L"ARC", top, {-9, 10.001, 9, 11}, '-'},
         {"no angles", L"ARC", {At(10, 0, 0), {40, 1.0}}, {-1, -1, 1, 1}, 'W'},
         {"angles beyond a turn",
          L"ARC",
          {At(10, 0, 0), {40, 1.0}, {50, 720.0}, {51, 810.0}},
          {0, 0, 1, 1},
          'W'}});
}

TEST_F(EntityShapesTest, Ellipses) {
  const double pi = std::acos(-1.0);
  const Groups flat{At(10, 1, 1), At(11, 4, 0), {40, 0.5}, {41, 0.0}, {42, 2 * pi}};
  const Groups half{At(10, 0, 0), At(11, 4, 0), {40, 0.5}, {41, 0.0}, {42, pi}};
  const Groups mirrored{At(10, 0, 0), At(11, 4, 0), {40, 0.5}, {41, 0.0}, {42, pi}, At(210, 0, 0, -1)};
  // x = 3 cos t, y = 3 cos t with half axes along (1 1) and (-1 1): it reaches as far as sqrt(9 + 2.25).
  const double reach = std::sqrt(9 + 2.25);
  const Groups slanting{At(10, 0, 0), At(11, 3, 3), {40, 0.5}};
  Check({{"whole", L"ELLIPSE", flat, {-3, -1, 5, 3}, 'W'},
         {"cut", L"ELLIPSE", flat, {-3, -1, 5, 2.9}, 'C'},
         {"in the box's corner", L"ELLIPSE", flat, {4.5, 2.5, 5, 3}, '-'},
         {"within", L"ELLIPSE", flat, {0, 0, 2, 2}, '-'},
         {"upper half", L"ELLIPSE", half, {-4, 0, 4, 2}, 'W'},
         {"below the upper half", L"ELLIPSE", half, {-4, -2, 4, -0.1}, '-'},
         {"mirrored half", L"ELLIPSE", mirrored, {-4, -2, 4, 0}, 'W'},
         {"end with nine digits",
          L"ELLIPSE",
          {At(10, 0, 0), At(11, 4, 0), {40, 0.5}, {41, 0.0}, {42, 6.283185308}},
          {-4, 1, 0, 2},
          'C'},
         {"slanting", L"ELLIPSE", slanting, {-reach, -reach, reach + 1e-12, reach + 1e-12}, 'W'},
         {"slanting, cut", L"ELLIPSE", slanting, {-4, -4, 4, reach - 1e-9}, 'C'},
         {"no axis", L"ELLIPSE", {At(10, 0, 0), {40, 0.5}}, {-9, -9, 9, 9}, '-'}});
}

TEST_F(EntityShapesTest, LightweightPolylines) {
  const Groups open{Flat(10, 0, 0), Flat(10, 4, 0), Flat(10, 4, 4)};
  Groups closed{{70, 1LL}};
  closed.insert(closed.end(), open.begin(), open.end());
  // A half circle about (2 0): below for a positive bulge from left to right, above for a negative one.
  const Groups below{Flat(10, 0, 0), {42, 1.0}, Flat(10, 4, 0)};
  const Groups above{Flat(10, 0, 0), {42, -1.0}, Flat(10, 4, 0)};
  const double quarter = std::tan(std::acos(-1.0) / 8);
  const Groups flatter{Flat(10, 2, 0), {42, quarter}, Flat(10, 0, 2)};
  const Groups larger{Flat(10, 2, 0), {42, -1 / quarter}, Flat(10, 0, 2)};
  const Groups closing{{70, 1LL}, Flat(10, 0, 0), Flat(10, 4, 0), {42, -1.0}};
  Check({{"inside", L"LWPOLYLINE", open, {0, 0, 4, 4}, 'W'},
         {"cut", L"LWPOLYLINE", open, {0, 0, 4, 3}, 'C'},
         {"open side", L"LWPOLYLINE", open, {1, 1.5, 2, 2.5}, '-'},
         {"closing side", L"LWPOLYLINE", closed, {1, 1.5, 2, 2.5}, 'C'},
         {"positive bulge", L"LWPOLYLINE", below, {0, -2, 4, 0}, 'W'},
         {"above a positive bulge", L"LWPOLYLINE", below, {0, 0.1, 4, 2}, '-'},
         {"negative bulge", L"LWPOLYLINE", above, {0, 0, 4, 2}, 'W'},
         {"chord of a bulge", L"LWPOLYLINE", above, {1, -0.5, 3, 0.5}, '-'},
         {"top of a bulge", L"LWPOLYLINE", above, {1, 2, 3, 3}, 'C'},
         {"quarter about the origin", L"LWPOLYLINE", flatter, {1.4, 1.4, 1.42, 1.42}, 'C'},
         {"quarter, inside", L"LWPOLYLINE", flatter, {0, 0, 2, 2}, 'W'},
         {"three quarters", L"LWPOLYLINE", larger, {-2, -2, 2, 2}, 'W'},
         {"three quarters, left", L"LWPOLYLINE", larger, {-3, -0.5, -1.9, 0.5}, 'C'},
         {"three quarters, open side", L"LWPOLYLINE", larger, {1, 1, 2, 2}, '-'},
         {"bulge of the closing side", L"LWPOLYLINE", closing, {1, -2.1, 3, -1.9}, 'C'},
         {"and its other side", L"LWPOLYLINE", closing, {1, 1.9, 3, 2.1}, '-'},
         {"bulge of the first side only", L"LWPOLYLINE", closing, {1, -0.1, 3, 0.1}, 'C'},
         {"one vertex", L"LWPOLYLINE", {Flat(10, 1, 1)}, {1, 1, 2, 2}, 'W'},
         {"flat bulge", L"LWPOLYLINE", {Flat(10, 0, 0), {42, 1e-300}, Flat(10, 4, 0)}, {0, 0, 4, 0}, 'W'},
         {"huge bulge", L"LWPOLYLINE", {Flat(10, 0, 0), {42, 1e300}, Flat(10, 4, 0)}, {0, 0, 4, 0}, 'W'},
         {"bulge between equal vertices",
          L"LWPOLYLINE",
          {Flat(10, 1, 1), {42, 1.0}, Flat(10, 1, 1)},
          {1, 1, 2, 2},
          'W'},
         {"elevation seen from below",
          L"LWPOLYLINE",
          {{38, 5.0}, Flat(10, 1, 0), Flat(10, 2, 0), At(210, 0, 0, -1)},
          {-2, 0, -1, 0},
          'W'},
         {"elevation along x",
          L"LWPOLYLINE",
          {{38, 5.0}, Flat(10, 1, 2), Flat(10, 3, 2), At(210, 1, 0, 0)},
          {5, 1, 5, 3},
          'W'}});
}

TEST_F(EntityShapesTest, AreasFacesAndSplines) {
  // A square: the third and fourth corners of a solid stand crosswise.
  const Groups square{At(10, 0, 0), At(11, 4, 0), At(12, 0, 4), At(13, 4, 4)};
  const Groups triangle{At(10, 0, 0), At(11, 4, 0), At(12, 4, 4)};
  const Groups around{At(10, 0, 0), At(11, 4, 0), At(12, 4, 4), At(13, 0, 4)};
  const Groups control{{71, 3LL}, At(10, 0, 0), At(10, 2, 4), At(10, 4, 0)};
  const Groups fit{{71, 3LL}, At(10, 9, 9), At(11, 0, 0), At(11, 2, 4), At(11, 4, 0)};
  Check({{"solid inside", L"SOLID", square, {0, 0, 4, 4}, 'W'},
         {"window inside the solid", L"SOLID", square, {1, 1.5, 1.5, 2}, 'C'},
         {"window inside a trace", L"TRACE", square, {1, 1.5, 1.5, 2}, 'C'},
         {"outside", L"SOLID", square, {5, 0, 6, 4}, '-'},
         {"bow tie, between its wings", L"SOLID", around, {1.9, 0.5, 2.1, 0.7}, 'C'},
         {"bow tie, beside", L"SOLID", around, {0.1, 1.9, 0.3, 2.1}, '-'},
         {"three corners", L"SOLID", triangle, {3, 1, 3.5, 1.5}, 'C'},
         {"three corners, beside", L"SOLID", triangle, {0.5, 3, 1, 3.5}, '-'},
         {"two corners", L"SOLID", {At(10, 0, 0), At(11, 4, 0)}, {-9, -9, 9, 9}, '-'},
         {"solid seen from below",
          L"SOLID",
          {At(10, 1, 0), At(11, 2, 0), At(12, 1, 1), At(210, 0, 0, -1)},
          {-2, 0, -1, 1},
          'W'},
         {"inside a face", L"3DFACE", around, {1, 1.5, 1.5, 2}, '-'},
         {"an edge of a face", L"3DFACE", around, {-1, 1, 1, 2}, 'C'},
         {"a diagonal of a face", L"3DFACE", around, {1.9, 1.9, 2.1, 2.1}, '-'},
         {"a face", L"3DFACE", around, {0, 0, 4, 4}, 'W'},
         {"control polygon", L"SPLINE", control, {0.9, 1.9, 1.1, 2.1}, 'C'},
         {"fit points", L"SPLINE", fit, {0, 0, 4, 4}, 'W'},
         {"open", L"SPLINE", control, {1, -0.5, 3, 0.5}, '-'},
         {"closed", L"SPLINE", {{70, 1LL}, At(10, 0, 0), At(10, 2, 4), At(10, 4, 0)}, {1, -0.5, 3, 0.5}, 'C'},
         {"unknown type", L"HATCH", square, {-9, -9, 9, 9}, '-'}});
}

TEST_F(EntityShapesTest, ExtrusionTurnsObjectCoordinates) {
  const Group below = At(210, 0, 0, -1);
  // The plane of (1 1 1): its x axis is (-1 1 0) / sqrt 2, its y axis (-1 -1 2) / sqrt 6.
  const Group oblique = At(210, 5, 5, 5);
  const double x = 10 / std::sqrt(2.0);
  const double y = 10 / std::sqrt(6.0);
  const double e = 1e-9;
  // Near the z axis, the world's y axis is the helper: its x axis is then nearly the world's own.
  const Group upright = At(210, 0.01, 0.01, 1);
  Check({{"circle from below", L"CIRCLE", {At(10, 5, 0), {40, 1.0}, below}, {-6, -1, -4, 1}, 'W'},
         {"arc from below",
          L"ARC",
          {At(10, 0, 0), {40, 1.0}, {50, 0.0}, {51, 90.0}, below},
          {-1, 0, 0, 1},
          'W'},
         {"oblique circle about (10 0)",
          L"CIRCLE",
          {At(10, 10, 0), {40, 0.0}, oblique},
          {-x - e, x - e, -x + e, x + e},
          'W'},
         {"oblique circle about (0 10)",
          L"CIRCLE",
          {At(10, 0, 10), {40, 0.0}, oblique},
          {-y - e, -y - e, -y + e, -y + e},
          'W'},
         {"an oblique circle reaches r sqrt 2/3",
          L"CIRCLE",
          {At(10, 0, 0), {40, 1.0}, oblique},
          {-0.8165, -0.8165, 0.8165, 0.8165},
          'W'},
         {"and no less",
          L"CIRCLE",
          {At(10, 0, 0), {40, 1.0}, oblique},
          {-0.8164, -0.8165, 0.8165, 0.8165},
          'C'},
         {"near the z axis", L"CIRCLE", {At(10, 10, 0), {40, 0.0}, upright}, {9.99, -0.01, 10, 0.01}, 'W'},
         {"seen from its edge", L"CIRCLE", {At(10, 0, 0), {40, 3.0}, At(210, 0, 1, 0)}, {-3, 0, 3, 0}, 'W'},
         {"half seen from its edge",
          L"ARC",
          {At(10, 0, 0), {40, 3.0}, {50, 90.0}, {51, 270.0}, At(210, 0, -1, 0)},
          {-3, 0, 0, 0},
          'W'},
         {"damaged extrusion", L"CIRCLE", {At(10, 5, 0), {40, 1.0}, At(210, 0, 0, 0)}, {4, -1, 6, 1}, 'W'},
         {"lines stay", L"LINE", {At(10, 5, 0), At(11, 6, 0), below}, {5, 0, 6, 0}, 'W'},
         {"points stay", L"POINT", {At(10, 5, 0), below}, {5, 0, 6, 0}, 'W'}});
}

TEST_F(EntityShapesTest, Texts) {
  // Four characters of height 10 are 36 wide.
  const auto text = [](Groups more) {
    Groups groups{{1, L"text"}, {40, 10.0}, At(10, 0, 0)};
    groups.insert(groups.end(), more.begin(), more.end());
    return groups;
  };
  Check({{"on the base line", L"TEXT", text({}), {0, 0, 36, 10}, 'W'},
         {"no larger", L"TEXT", text({}), {0, 0, 35.9, 9.9}, 'C'},
         {"window inside", L"TEXT", text({}), {15, 4, 16, 5}, 'C'},
         {"twice as wide", L"TEXT", text({{41, 2.0}}), {36.1, 0, 72, 10}, 'C'},
         {"upright", L"TEXT", text({{50, 90.0}}), {-10, 0, 0, 36}, 'W'},
         {"centred", L"TEXT", text({{72, 1LL}, At(11, 100, 0)}), {82, 0, 118, 10}, 'W'},
         {"to the right", L"TEXT", text({{72, 2LL}, At(11, 100, 0)}), {64, 0, 100, 10}, 'W'},
         {"middle", L"TEXT", text({{72, 4LL}, At(11, 100, 0)}), {82, -5, 118, 5}, 'W'},
         {"top left", L"TEXT", text({{73, 3LL}, At(11, 100, 0)}), {100, -10, 136, 0}, 'W'},
         {"middle right", L"TEXT", text({{72, 2LL}, {73, 2LL}, At(11, 100, 0)}), {64, -5, 100, 5}, 'W'},
         {"bottom", L"TEXT", text({{73, 1LL}, At(11, 100, 0)}), {100, 0, 136, 10}, 'W'},
         {"second point without alignment", L"TEXT", text({At(11, 100, 0)}), {0, 0, 36, 10}, 'W'},
         {"aligned", L"TEXT", text({{72, 3LL}, At(11, 0, 50)}), {-10, 0, 0, 50}, 'W'},
         {"fitted in", L"TEXT", text({{72, 5LL}, At(11, 100, 0)}), {0, 0, 100, 10}, 'W'},
         {"no larger than fitted", L"TEXT", text({{72, 5LL}, At(11, 100, 0)}), {99.9, 0, 101, 10}, 'C'},
         {"from below", L"TEXT", text({At(210, 0, 0, -1)}), {-36, 0, 0, 10}, 'W'},
         {"no point", L"TEXT", {{1, L"text"}, {40, 10.0}}, {-99, -99, 99, 99}, '-'},
         {"no text", L"TEXT", {{40, 10.0}, At(10, 0, 0)}, {0, 0, 0, 10}, 'W'},
         {"attribute", L"ATTRIB", text({{2, L"TAG"}, {74, 3LL}, At(11, 100, 0)}), {100, -10, 136, 0}, 'W'},
         {"field width is no alignment", L"ATTRIB", text({{73, 3LL}, At(11, 100, 0)}), {0, 0, 36, 10}, 'W'},
         {"a definition shows its tag", L"ATTDEF", text({{2, L"TAGTAG"}}), {0, 0, 54, 10}, 'W'},
         {"and not its default", L"ATTDEF", text({{2, L"TAGTAG"}}), {0, 0, 53, 10}, 'C'}});
}

TEST_F(EntityShapesTest, ParagraphTexts) {
  const auto text = [](const wchar_t* content, Groups more) {
    Groups groups{At(10, 0, 0), {40, 6.0}, {1, content}};
    groups.insert(groups.end(), more.begin(), more.end());
    return groups;
  };
  // Of height 6: a character is 5.4 wide, the next line 10 below.
  Check({{"one line, top left", L"MTEXT", text(L"ab", {}), {0, -6, 10.8, 0}, 'W'},
         {"no larger", L"MTEXT", text(L"ab", {}), {0, -5.9, 10.7, 0}, 'C'},
         {"two lines", L"MTEXT", text(L"a\\Pabc", {}), {0, -16, 16.2001, 0}, 'W'},
         {"two lines, not one", L"MTEXT", text(L"a\\Pabc", {}), {0, -15.9, 17, 0}, 'C'},
         {"codes show nothing", L"MTEXT", text(L"{\\fArial|b0;\\La\\l\\\\}", {}), {0, -6, 10.8, 0}, 'W'},
         {"a code without end", L"MTEXT", text(L"ab\\fArial", {}), {0, -6, 10.8, 0}, 'W'},
         {"broken into three lines", L"MTEXT", text(L"aaaaaaaa", {{41, 17.0}}), {0, -26, 16.2001, 0}, 'W'},
         {"three lines, not two", L"MTEXT", text(L"aaaaaaaa", {{41, 17.0}}), {0, -25, 17, 0}, 'C'},
         {"frame narrower than a character", L"MTEXT", text(L"aa", {{41, 1.0}}), {0, -16, 5.4, 0}, 'W'},
         {"in pieces", L"MTEXT", {{3, L"ab"}, {1, L"c"}, At(10, 0, 0), {40, 6.0}}, {10.9, -6, 12, 0}, 'C'},
         {"bottom right", L"MTEXT", text(L"ab", {{71, 9LL}}), {-10.8, 0, 0, 6}, 'W'},
         {"middle centre", L"MTEXT", text(L"ab", {{71, 5LL}}), {-5.4, -3, 5.4, 3}, 'W'},
         {"bottom left", L"MTEXT", text(L"ab", {{71, 7LL}}), {0, 0, 10.8, 6}, 'W'},
         {"top right", L"MTEXT", text(L"ab", {{71, 3LL}}), {-10.8, -6, 0, 0}, 'W'},
         {"wrong attachment", L"MTEXT", text(L"ab", {{71, 99LL}}), {-10.8, 0, 0, 6}, 'W'},
         {"upright", L"MTEXT", text(L"ab", {{50, 90.0}}), {0, 0, 6, 10.8}, 'W'},
         {"direction goes before angle",
          L"MTEXT",
          text(L"ab", {{50, 45.0}, At(11, 0, 7)}),
          {0, 0, 6, 10.8},
          'W'},
         {"its point is the world's",
          L"MTEXT",
          {At(10, 50, 0), {40, 6.0}, {1, L"ab"}, At(11, 1, 0), At(210, 0, 0, -1)},
          {50, 0, 60.8, 6},
          'W'}});
}

TEST_F(EntityShapesTest, DamagedGroupsShowNothing) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  const double all[] = {nan, inf, -inf, 1e308, -1e308};
  Drawing drawing;
  for (const double bad : all) {
    DrawLine(drawing, bad, 0, 1, 1);
    Draw(drawing, L"POINT", {At(10, 0, bad)});
    Draw(drawing, L"CIRCLE", {At(10, 0, 0), {40, bad}});
    Draw(drawing, L"ARC", {At(10, bad, 0), {40, 1.0}, {50, 0.0}, {51, 90.0}});
    Draw(drawing, L"ELLIPSE", {At(10, 0, 0), At(11, bad, 0), {40, 1.0}});
    Draw(drawing, L"TEXT", {At(10, 0, 0), {40, bad}, {1, L"a"}});
    Draw(drawing, L"MTEXT", {At(10, 0, 0), {40, bad}, {1, L"a"}, {41, bad}});
    Draw(drawing, L"SOLID", {At(10, bad, 0), At(11, 1, 0), At(12, 0, 1)});
    Draw(drawing, L"LWPOLYLINE", {Flat(10, bad, 0)});
  }
  for (const wchar_t* type : {L"LINE", L"POINT", L"CIRCLE", L"ARC", L"ELLIPSE", L"TEXT", L"MTEXT", L"SOLID",
                              L"3DFACE", L"LWPOLYLINE", L"POLYLINE", L"SPLINE", L"INSERT", L"ATTRIB"}) {
    Draw(drawing, type, {});
    Draw(drawing, type, {{10, 1.0}, {11, L"text"}, {12, 3LL}, {40, L"text"}, {70, 1.5}, {2, 7LL}});
  }
  Picker picker(drawing);
  EXPECT_TRUE(Crossing(picker, -1e99, -1e99, 1e99, 1e99).empty());
  EXPECT_TRUE(Inside(picker, -1e99, -1e99, 1e99, 1e99).empty());
  EXPECT_EQ(picker.All().size(), drawing.Entities().members.size());
}

TEST_F(EntityShapesTest, DamagedAnglesAndFactorsDoNotHang) {
  Drawing drawing;
  for (const double bad :
       {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 1e308}) {
    Draw(drawing, L"ARC", {At(10, 0, 0), {40, 1.0}, {50, bad}, {51, -bad}});
    Draw(drawing, L"ELLIPSE", {At(10, 0, 0), At(11, 1, 0), {40, bad}, {41, bad}, {42, bad}});
    Draw(drawing, L"CIRCLE", {At(10, 0, 0), {40, 1.0}, At(210, bad, bad, bad)});
    Draw(drawing, L"LWPOLYLINE", {Flat(10, 0, 0), {42, bad}, Flat(10, 1, 0)});
    Draw(drawing, L"TEXT", {At(10, 0, 0), {40, 1.0}, {1, L"a"}, {41, bad}, {50, bad}});
  }
  Picker picker(drawing);
  // What is left is seen: circles count as lying in the plan, damaged bulges as none.
  for (const Object* entity : Inside(picker, -2, -2, 2, 2)) EXPECT_NE(entity->Type(), L"TEXT");
  EXPECT_GE(Inside(picker, -2, -2, 2, 2).size(), 6u);
}

}  // namespace
}  // namespace lomlisp::test
