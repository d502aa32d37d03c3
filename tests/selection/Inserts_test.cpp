#include <tests/selection/Selections.h>

#include <cmath>
#include <string>

namespace lomlisp::test {
namespace {

using InsertsTest = HostTest;
using embedded::BlockDefinition;

struct InsertCase {
  const char* name;
  Groups insert;
  double window[4];
  char expected;  // as of Relation
};

void Check(Drawing& drawing, const std::vector<InsertCase>& cases) {
  for (const InsertCase& one : cases) {
    Groups geometry{{2, L"B"}};
    geometry.insert(geometry.end(), one.insert.begin(), one.insert.end());
    geometry.push_back(At(10, 0, 0));  // where the case gives no other one
    Object& insert = Draw(drawing, L"INSERT", geometry);
    const auto& [x1, y1, x2, y2] = one.window;
    EXPECT_EQ(Relation(drawing, x1, y1, x2, y2), one.expected) << one.name;
    drawing.SetErased(insert, true);
  }
}

// A flag about its base point (1 1): a line of length 4 to the right, one of length 2 up at its end.
void DefineFlag(Drawing& drawing) {
  BlockDefinition& block = DefineBlock(drawing, L"B", {1, 1});
  DrawIn(drawing, block, L"LINE", {At(10, 1, 1), At(11, 5, 1)});
  DrawIn(drawing, block, L"LINE", {At(10, 5, 1), At(11, 5, 3)});
}

TEST_F(InsertsTest, ContentIsPlacedTurnedScaledAndMirrored) {
  Drawing drawing;
  DefineFlag(drawing);
  const Group at = At(10, 10, 10);
  Check(drawing, {{"in place", {at}, {10, 10, 14, 12}, 'W'},
                  {"no larger", {at}, {10, 10, 14, 11.9}, 'C'},
                  {"between its lines", {at}, {10, 11, 13, 12}, '-'},
                  {"at the origin", {}, {0, 0, 4, 2}, 'W'},
                  {"scaled", {at, {41, 2.0}, {42, 3.0}}, {10, 10, 18, 16}, 'W'},
                  {"scaled, the far line", {at, {41, 2.0}, {42, 3.0}}, {17, 15, 19, 17}, 'C'},
                  {"mirrored", {at, {41, -1.0}}, {6, 10, 10, 12}, 'W'},
                  {"mirrored, its upright line", {at, {41, -1.0}}, {5, 11, 7, 12}, 'C'},
                  {"turned", {at, {50, 90.0}}, {8, 10, 10, 14}, 'W'},
                  {"scaled, then turned", {at, {41, 2.0}, {50, 90.0}}, {8, 10, 10, 18}, 'W'},
                  {"from below", {at, At(210, 0, 0, -1)}, {-14, 10, -10, 12}, 'W'},
                  {"from below, turned", {at, {50, 90.0}, At(210, 0, 0, -1)}, {-10, 10, -8, 14}, 'W'},
                  {"scaled to nothing", {at, {41, 0.0}, {42, 0.0}}, {10, 10, 10, 10}, 'W'}});
  Draw(drawing, L"INSERT", {{2, L"NONE"}, At(10, 0, 0)});
  Draw(drawing, L"INSERT", {{2, L"B"}});
  Draw(drawing, L"INSERT", {{2, L"B"}, {10, 1.0}});
  EXPECT_EQ(Relation(drawing, -9, -9, 99, 99), '-');
}

TEST_F(InsertsTest, CirclesBecomeEllipsesExactly) {
  Drawing drawing;
  BlockDefinition& block = DefineBlock(drawing, L"B");
  DrawIn(drawing, block, L"CIRCLE", {At(10, 0, 0), {40, 1.0}});
  Check(drawing, {{"wide", {{41, 3.0}, {42, 2.0}}, {-3, -2, 3, 2}, 'W'},
                  {"in the box's corner", {{41, 3.0}, {42, 2.0}}, {2.5, 1.5, 3, 2}, '-'},
                  {"touched", {{41, 3.0}, {42, 2.0}}, {3, -1, 9, 1}, 'C'},
                  {"squeezed to a line", {{41, 3.0}, {42, 0.0}}, {-3, 0, 3, 0}, 'W'},
                  // Its top is at sqrt((9 + 1) / 2).
                  {"turned", {{41, 3.0}, {50, 45.0}}, {-2.2361, -2.2361, 2.2361, 2.2361}, 'W'},
                  {"turned, cut", {{41, 3.0}, {50, 45.0}}, {-2.236, -2.236, 2.236, 2.236}, 'C'}});
}

TEST_F(InsertsTest, ArraysTurnWithTheInsertAndAreNotScaled) {
  Drawing drawing;
  DefineFlag(drawing);
  const Groups array{{41, 0.25}, {42, 0.5}, {70, 3LL}, {71, 2LL}, {44, 10.0}, {45, 20.0}};
  Groups turned = array;
  turned.push_back({50, 90.0});
  Groups backwards{{70, 3LL}, {44, -10.0}};
  Check(drawing, {{"all of it", array, {0, 0, 21, 21}, 'W'},
                  {"without the last column", array, {0, 0, 20.9, 21}, 'C'},
                  {"a middle copy", array, {9, 19, 12, 22}, 'C'},
                  {"between copies", array, {12, 0, 19, 21}, '-'},
                  {"turned", turned, {-21, 0, 0, 21}, 'W'},
                  {"turned, a copy", turned, {-21, 19, -19, 22}, 'C'},
                  {"backwards", backwards, {-20, 0, 4, 2}, 'W'},
                  {"no columns", {{70, 0LL}, {71, -5LL}, {44, 10.0}}, {0, 0, 4, 2}, 'W'},
                  {"more than there can be",
                   {{70, 32767LL}, {71, 99999999LL}, {44, 1.0}, {45, 1.0}},
                   {0, 0, 32770, 32768},
                   'W'}});
}

TEST_F(InsertsTest, NestedInserts) {
  Drawing drawing;
  DefineFlag(drawing);
  BlockDefinition& outer = DefineBlock(drawing, L"OUTER", {100, 0});
  DrawIn(drawing, outer, L"INSERT", {{2, L"B"}, At(10, 110, 0), {50, 90.0}});
  Draw(drawing, L"INSERT", {{2, L"outer"}, At(10, 0, 0), {41, 2.0}, {42, -1.0}});
  // The flag's turned by a quarter at (10 0): up to (10 4), left to (8 4); then twice as wide and mirrored.
  EXPECT_EQ(Relation(drawing, 16, -4, 20, 0), 'W');
  EXPECT_EQ(Relation(drawing, 16, -5, 17, -3), 'C');
  EXPECT_EQ(Relation(drawing, 16, -3, 19, 0), '-');
}

TEST_F(InsertsTest, BlocksThatContainThemselvesEnd) {
  Drawing drawing;
  BlockDefinition& first = DefineBlock(drawing, L"FIRST");
  BlockDefinition& second = DefineBlock(drawing, L"SECOND");
  DrawIn(drawing, first, L"LINE", {At(10, 0, 0), At(11, 1, 0)});
  DrawIn(drawing, first, L"INSERT", {{2, L"FIRST"}, At(10, 50, 0)});
  DrawIn(drawing, first, L"INSERT", {{2, L"SECOND"}, At(10, 10, 0)});
  DrawIn(drawing, second, L"INSERT", {{2, L"FIRST"}, At(10, 50, 0)});
  DrawIn(drawing, second, L"LINE", {At(10, 0, 0), At(11, 1, 0)});
  Draw(drawing, L"INSERT", {{2, L"FIRST"}, At(10, 0, 0)});
  EXPECT_EQ(Relation(drawing, 0, 0, 11, 0), 'W');
  EXPECT_EQ(Relation(drawing, 10, 0, 11, 0), 'C');
}

TEST_F(InsertsTest, BlocksAreInsertedAsOftenAsTheyStand) {
  Drawing drawing;
  DefineFlag(drawing);
  BlockDefinition& outer = DefineBlock(drawing, L"OUTER");
  DrawIn(drawing, outer, L"INSERT", {{2, L"B"}, At(10, 0, 0)});
  DrawIn(drawing, outer, L"INSERT", {{2, L"B"}, At(10, 100, 0), {70, 2LL}, {44, 50.0}});
  Draw(drawing, L"INSERT", {{2, L"OUTER"}, At(10, 0, 0), {71, 2LL}, {45, 20.0}});
  for (const double x : {0, 100, 150})
    for (const double y : {0, 20}) EXPECT_EQ(Relation(drawing, x, y, x + 4, y + 2), 'C') << x << ' ' << y;
  EXPECT_EQ(Relation(drawing, 0, 0, 154, 22), 'W');
}

// Inserts block `name` n times in block `into`.
void Nest(Drawing& drawing, BlockDefinition& into, const std::wstring& name, int times) {
  for (int i = 0; i < times; ++i) DrawIn(drawing, into, L"INSERT", {{2, name}, At(10, 1, 0)});
}

TEST_F(InsertsTest, DepthCostsNoStackAndGrowthEnds) {
  for (const auto& [levels, times] : {std::pair(kLarge / 10, 1), {64, 2}, {20, 30}}) {
    Drawing drawing;
    for (int level = 0; level < levels; ++level)
      Nest(drawing, DefineBlock(drawing, std::to_wstring(level).c_str()), std::to_wstring(level + 1), times);
    DrawIn(drawing, DefineBlock(drawing, std::to_wstring(levels).c_str()), L"POINT", {At(10, 0, 0)});
    Draw(drawing, L"INSERT", {{2, L"0"}, At(10, 0, 0)});
    Picker picker(drawing);
    EXPECT_EQ(Inside(picker, levels, 0, levels, 0).size(), 1u) << levels;
  }
}

TEST_F(InsertsTest, AttributesBelongToTheirInsert) {
  Drawing drawing;
  DefineFlag(drawing);
  Object& insert = Draw(drawing, L"INSERT", {{2, L"B"}, At(10, 0, 0), {66, 1LL}});
  DrawPart(drawing, insert, L"ATTRIB", {At(10, 100, 0), {40, 10.0}, {1, L"text"}, {2, L"TAG"}, {70, 0LL}});
  DrawPart(drawing, insert, L"ATTRIB", {At(10, 500, 0), {40, 10.0}, {1, L"text"}, {2, L"TAG"}, {70, 1LL}});
  DrawPart(drawing, insert, L"SEQEND", {});
  EXPECT_EQ(Relation(drawing, 110, 4, 111, 5), 'C');
  EXPECT_EQ(Relation(drawing, 0, 0, 136, 10), 'W');
  EXPECT_EQ(Relation(drawing, 0, 0, 4, 2), 'C');
  EXPECT_EQ(Relation(drawing, 500, 0, 536, 10), '-');
}

TEST_F(InsertsTest, OnlyWhatShowsInABlockCounts) {
  Drawing drawing;
  BlockDefinition& block = DefineBlock(drawing, L"B");
  const Groups text{At(10, 100, 0), {40, 1.0}, {1, L"a"}, {2, L"TAG"}};
  DrawIn(drawing, block, L"POINT", {At(10, 0, 0)});
  DrawIn(drawing, block, L"POINT", {At(10, 100, 0), {60, 1LL}});
  DrawIn(drawing, block, L"ATTDEF", text);
  drawing.SetErased(DrawIn(drawing, block, L"POINT", {At(10, 100, 0)}), true);
  Draw(drawing, L"INSERT", {{2, L"B"}, At(10, 0, 0)});
  EXPECT_EQ(Relation(drawing, 0, 0, 0, 0), 'W');
  Groups constant = text;
  constant.push_back({70, 2LL});
  DrawIn(drawing, block, L"ATTDEF", constant);
  EXPECT_EQ(Relation(drawing, 0, 0, 0, 0), 'C');
}

}  // namespace
}  // namespace lomlisp::test
