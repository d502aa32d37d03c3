#include <tests/selection/Selections.h>

namespace lomlisp::test {
namespace {

using PolylinesTest = HostTest;

struct PolylineCase {
  const char* name;
  Groups header;
  std::vector<Groups> vertices;
  double window[4];
  char expected;  // as of Relation
};

void Check(const std::vector<PolylineCase>& cases) {
  for (const PolylineCase& one : cases) {
    Drawing drawing;
    Object& header = Draw(drawing, L"POLYLINE", one.header);
    for (const Groups& vertex : one.vertices) DrawPart(drawing, header, L"VERTEX", vertex);
    DrawPart(drawing, header, L"SEQEND", {At(10, 99, 99)});
    const auto& [x1, y1, x2, y2] = one.window;
    EXPECT_EQ(Relation(drawing, x1, y1, x2, y2), one.expected) << one.name;
  }
}

TEST_F(PolylinesTest, LinesBulgesAndCurves) {
  const std::vector<Groups> corner{{At(10, 0, 0)}, {At(10, 4, 0)}, {At(10, 4, 4)}};
  const std::vector<Groups> bulge{{At(10, 0, 0), {42, -1.0}}, {At(10, 4, 0)}};
  const std::vector<Groups> fit{
      {At(10, 0, 0)}, {At(10, 2, 9), {70, 16LL}}, {At(10, 2, 1), {70, 8LL}}, {At(10, 4, 0), {70, 1LL}}};
  const Group below = At(210, 0, 0, -1);
  Check({{"open", {{70, 0LL}}, corner, {0, 0, 4, 4}, 'W'},
         {"open side", {}, corner, {1, 1.5, 2, 2.5}, '-'},
         {"closed side", {{70, 1LL}}, corner, {1, 1.5, 2, 2.5}, 'C'},
         {"bulge", {}, bulge, {0, 0, 4, 2}, 'W'},
         {"top of the bulge", {}, bulge, {1, 1.9, 3, 3}, 'C'},
         {"frame points do not count", {{70, 4LL}}, fit, {0, 0, 4, 1}, 'W'},
         {"from below", {below}, corner, {-4, 0, 0, 4}, 'W'},
         {"spatial ones stay", {{70, 8LL}, below}, corner, {0, 0, 4, 4}, 'W'},
         {"spatial ones have no bulges", {{70, 8LL}}, bulge, {0, 0, 4, 0}, 'W'},
         {"elevation", {At(10, 0, 0, 7), At(210, 1, 0, 0)}, corner, {7, 0, 7, 4}, 'W'},
         {"no vertices", {}, {}, {-9, -9, 9, 9}, '-'},
         {"vertex without a point", {}, {{}, {At(10, 1, 1)}}, {1, 1, 2, 2}, 'W'}});
}

// A grid of 3 by 4 vertices, rows upwards.
std::vector<Groups> Grid() {
  std::vector<Groups> vertices;
  for (int row = 0; row < 3; ++row)
    for (int column = 0; column < 4; ++column) vertices.push_back({At(10, column, row), {70, 64LL}});
  return vertices;
}

TEST_F(PolylinesTest, Meshes) {
  const auto mesh = [](long long flags) { return Groups{{70, flags}, {71, 3LL}, {72, 4LL}}; };
  std::vector<Groups> bent = Grid();
  bent[3] = {At(10, 3, -5)};
  std::vector<Groups> smoothed = Grid();
  smoothed.insert(smoothed.begin(), Groups{At(10, 50, 50), {70, 80LL}});
  Check(
      {{"whole", mesh(16), Grid(), {0, 0, 3, 2}, 'W'},
       {"along a row", mesh(16), Grid(), {1.4, 0.9, 1.6, 1.1}, 'C'},
       {"along a column", mesh(16), Grid(), {0.9, 1.4, 1.1, 1.6}, 'C'},
       {"in a cell", mesh(16), Grid(), {1.2, 1.2, 1.8, 1.8}, '-'},
       // The last vertex of the first row lies at (3 -5): only a closed row joins it with (0 0).
       {"open rows", mesh(16), bent, {1.4, -2.6, 1.6, -2.4}, '-'},
       {"closed rows", mesh(16 + 32), bent, {1.4, -2.6, 1.6, -2.4}, 'C'},
       {"open columns", mesh(16), bent, {3, -1.6, 3, -1.5}, 'C'},
       {"smoothed: other numbers, no control points",
        {{70, 20LL}, {71, 9LL}, {72, 9LL}, {73, 3LL}, {74, 4LL}, {75, 5LL}},
        smoothed,
        {0, 0, 3, 2},
        'W'},
       {"smoothed, in a cell",
        {{70, 20LL}, {71, 9LL}, {72, 9LL}, {73, 3LL}, {74, 4LL}, {75, 5LL}},
        smoothed,
        {1.2, 1.2, 1.8, 1.8},
        '-'},
       {"fewer vertices than numbers", {{70, 16LL}, {71, 30000LL}, {72, 30000LL}}, Grid(), {0, 0, 3, 2}, 'W'},
       {"numbers below zero", {{70, 16LL}, {71, -3LL}, {72, -4LL}}, Grid(), {0, 0, 3, 2}, 'W'},
       {"no vertices", mesh(16 + 32 + 1), {}, {-9, -9, 9, 9}, '-'}});
}

TEST_F(PolylinesTest, ClosedColumnsJoinTheLastRowWithTheFirst) {
  // Three rows of one line: only a closed mesh joins (0 4) with (0 0), past (2 2).
  const std::vector<Groups> rows{{At(10, 0, 0)}, {At(10, 9, 0)}, {At(10, 2, 2)},
                                 {At(10, 9, 2)}, {At(10, 0, 4)}, {At(10, 9, 4)}};
  const auto mesh = [](long long flags) { return Groups{{70, flags}, {71, 3LL}, {72, 2LL}}; };
  Check(
      {{"open", mesh(16), rows, {-1, 1.9, 1, 2.1}, '-'}, {"closed", mesh(17), rows, {-1, 1.9, 1, 2.1}, 'C'}});
}

TEST_F(PolylinesTest, PolyfaceMeshes) {
  const auto vertex = [](double x, double y) { return Groups{At(10, x, y), {70, 192LL}}; };
  const auto face = [](std::vector<long long> numbers) {
    Groups groups{At(10, 0, 0), {70, 128LL}};
    for (size_t index = 0; index < numbers.size(); ++index)
      groups.push_back({71 + static_cast<int>(index), numbers[index]});
    return groups;
  };
  const Groups header{{70, 64LL}, {71, 4LL}, {72, 1LL}};
  const std::vector<Groups> square{vertex(1, 1), vertex(5, 1), vertex(5, 5), vertex(1, 5)};
  const auto with = [&](const Groups& record) {
    std::vector<Groups> all = square;
    all.push_back(record);
    return all;
  };
  Check({{"four corners", header, with(face({1, 2, 3, 4})), {1, 1, 5, 5}, 'W'},
         {"invisible edges count", header, with(face({1, -2, 3, 4})), {4, 2, 6, 3}, 'C'},
         {"no diagonal", header, with(face({1, 2, 3, 4})), {2, 2, 4, 4}, '-'},
         {"three corners", header, with(face({1, 2, 3, 0})), {2, 2, 4, 4}, 'C'},
         {"an edge alone", header, with(face({1, 2})), {1, 1, 5, 1}, 'W'},
         {"vertices beyond", header, with(face({1, 2, 99, -9223372036854775807 - 1})), {1, 1, 5, 1}, 'W'},
         {"no faces", header, square, {-9, -9, 9, 9}, '-'}});
}

TEST_F(PolylinesTest, IsOneWithItsVertices) {
  Drawing drawing;
  Object& header = Draw(drawing, L"POLYLINE", {{66, 1LL}});
  Object& vertex = DrawPart(drawing, header, L"VERTEX", {At(10, 0, 0)});
  DrawPart(drawing, header, L"VERTEX", {At(10, 4, 0)});
  Picker picker(drawing);
  EXPECT_EQ(Inside(picker, 0, 0, 4, 0), std::vector<Object*>{&header});
  EXPECT_EQ(picker.All(), std::vector<Object*>{&header});
  Find(vertex.groups, 10)->value = Point{0, 3};
  drawing.NoteChange(vertex);
  EXPECT_TRUE(Inside(picker, 0, 0, 4, 0).empty());
  EXPECT_EQ(Inside(picker, 0, 0, 4, 3), std::vector<Object*>{&header});
}

}  // namespace
}  // namespace lomlisp::test
