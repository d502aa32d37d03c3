#include <tests/selection/Selections.h>

#include <memory>
#include <random>

namespace lomlisp::test {
namespace {

using PickerTest = HostTest;
using embedded::BlockDefinition;
using Found = std::vector<Object*>;

void MoveTo(Drawing& drawing, Object& point, double x, double y) {
  Find(point.groups, 10)->value = Point{x, y};
  drawing.NoteChange(point);
}

TEST_F(PickerTest, OnlyVisibleEntitiesOfModelSpaceInDrawingOrder) {
  Drawing drawing;
  drawing.NewEntry(L"LAYER", L"Off", {{70, 0LL}, {62, -7LL}});
  drawing.NewEntry(L"LAYER", L"Frozen", {{70, 5LL}, {62, 7LL}});
  drawing.NewEntry(L"LAYER", L"Locked", {{70, 4LL}, {62, 7LL}});
  Object& first = Draw(drawing, L"POINT", {At(10, 9, 0)});
  for (const wchar_t* layer : {L"OFF", L"frozen", L"Locked", L"None"})
    drawing.Append(drawing.Entities(), drawing.NewObject({{0, L"POINT"}, {8, layer}, At(10, 1, 0)}));
  Draw(drawing, L"POINT", {At(10, 1, 0), {60, 1LL}});
  Draw(drawing, L"POINT", {At(10, 1, 0), {67, 1LL}});
  drawing.SetErased(Draw(drawing, L"POINT", {At(10, 1, 0)}), true);
  Object& hatch = Draw(drawing, L"HATCH", {At(10, 1, 0)});
  Object& last = Draw(drawing, L"POINT", {At(10, 0, 0), {60, 0LL}, {67, 0LL}});
  const auto& members = drawing.Entities().members;
  Picker picker(drawing);
  EXPECT_EQ(picker.All(), (Found{&first, members[3], members[4], &hatch, &last}));
  EXPECT_EQ(Inside(picker, 0, 0, 9, 9), (Found{&first, members[3], members[4], &last}));
  EXPECT_EQ(picker.At({1, 0}, 0), members[4]);
}

TEST_F(PickerTest, LayersAreAskedAnewEachTime) {
  Drawing drawing;
  Object& layer = drawing.NewEntry(L"LAYER", L"Walls", {{70, 0LL}, {62, 7LL}});
  drawing.Append(drawing.Entities(), drawing.NewObject({{0, L"POINT"}, {8, L"Walls"}, At(10, 0, 0)}));
  Picker picker(drawing);
  EXPECT_EQ(Inside(picker, 0, 0, 1, 1).size(), 1u);
  Find(layer.groups, 62)->value = -7LL;
  EXPECT_TRUE(Inside(picker, 0, 0, 1, 1).empty());
  EXPECT_TRUE(picker.All().empty());
  EXPECT_EQ(picker.At({0, 0}, 1), nullptr);
}

TEST_F(PickerTest, FollowsWhatIsMadeMovedErasedAndRestored) {
  Drawing drawing;
  Object& first = Draw(drawing, L"POINT", {At(10, 1, 1)});
  Picker picker(drawing);
  EXPECT_EQ(Inside(picker, 0, 0, 2, 2), Found{&first});
  Object& second = Draw(drawing, L"POINT", {At(10, 2, 2)});
  EXPECT_EQ(Inside(picker, 0, 0, 2, 2), (Found{&first, &second}));
  MoveTo(drawing, first, 5, 5);
  EXPECT_EQ(Inside(picker, 0, 0, 2, 2), Found{&second});
  EXPECT_EQ(Inside(picker, 4, 4, 6, 6), Found{&first});
  drawing.SetErased(second, true);
  EXPECT_TRUE(Inside(picker, 0, 0, 2, 2).empty());
  MoveTo(drawing, first, 2, 1);
  drawing.SetErased(second, false);
  EXPECT_EQ(Inside(picker, 0, 0, 2, 2), (Found{&first, &second}));
  EXPECT_EQ(Inside(picker, 0, 0, 2, 2), (Found{&first, &second}));
}

TEST_F(PickerTest, FollowsChangesInBlocks) {
  Drawing drawing;
  BlockDefinition& block = DefineBlock(drawing, L"B");
  Object& inner = DrawIn(drawing, block, L"POINT", {At(10, 0, 0)});
  Object& insert = Draw(drawing, L"INSERT", {{2, L"B"}, At(10, 10, 10)});
  Picker picker(drawing);
  EXPECT_EQ(Inside(picker, 10, 10, 10, 10), Found{&insert});
  MoveTo(drawing, inner, 5, 0);
  EXPECT_TRUE(Inside(picker, 10, 10, 10, 10).empty());
  EXPECT_EQ(Inside(picker, 15, 10, 15, 10), Found{&insert});
  drawing.SetErased(inner, true);
  EXPECT_TRUE(Inside(picker, 0, 0, 99, 99).empty());
  EXPECT_EQ(picker.All(), Found{&insert});
  DrawIn(drawing, block, L"POINT", {At(10, 7, 0)});
  EXPECT_EQ(Inside(picker, 17, 10, 17, 10), Found{&insert});
  Find(block.begin->groups, 10)->value = Point{7, 0};
  drawing.NoteChange(*block.begin);
  EXPECT_EQ(Inside(picker, 10, 10, 10, 10), Found{&insert});
}

// A thousand points a row, one unit apart.
void DrawGrid(Drawing& drawing, int rows) {
  for (int row = 0; row < rows; ++row)
    for (int column = 0; column < 1000; ++column) Draw(drawing, L"POINT", {At(10, column, row)});
}

TEST_F(PickerTest, SmallWindowsExamineFew) {
  Drawing drawing;
  DrawGrid(drawing, 100);
  // Lines across everything, which must not spoil the rest.
  for (int row = 0; row < 50; ++row) DrawLine(drawing, -1, row, 1000, row + 50);
  Picker picker(drawing);
  EXPECT_EQ(Inside(picker, 100, 10, 149, 29).size(), 1000u);
  EXPECT_LT(picker.Examined(), 3000u);
  EXPECT_EQ(Inside(picker, 500, 50, 501, 51).size(), 4u);
  EXPECT_LT(picker.Examined(), 500u);
  EXPECT_TRUE(Inside(picker, 2000, 0, 3000, 99).empty());
  EXPECT_LT(picker.Examined(), 10u);
  // A fence across everything looks along itself: at a hundred points and all lines.
  Found found;
  EXPECT_EQ(picker.Fence({{0, 99}, {990, 0}}, found), std::nullopt);
  EXPECT_EQ(found.size(), 150u);
  EXPECT_LT(picker.Examined(), 10000u);
  // After a change the others are not looked at again.
  MoveTo(drawing, *drawing.Entities().members[0], 500.5, 50.5);
  EXPECT_EQ(Inside(picker, 500, 50, 501, 51).size(), 5u);
  EXPECT_LT(picker.Examined(), 500u);
}

TEST_F(PickerTest, ManyChangesBetweenQuestionsAreFollowed) {
  Drawing drawing;
  Picker picker(drawing);
  EXPECT_TRUE(Inside(picker, 0, 0, 1, 1).empty());
  const int count = kLarge / 20;
  for (int x = 0; x < count; ++x) {
    Object& point = Draw(drawing, L"POINT", {At(10, x, 0)});
    ASSERT_EQ(Inside(picker, x, 0, x, 0), Found{&point});
  }
  for (Object* point : drawing.Entities().members) MoveTo(drawing, *point, -1, -1);
  EXPECT_EQ(Inside(picker, -1, -1, -1, -1).size(), drawing.Entities().members.size());
}

TEST_F(PickerTest, EntitiesAllInOnePlaceAndFarApart) {
  Drawing drawing;
  const size_t count = kLarge / 10;
  for (size_t index = 0; index < count; ++index) Draw(drawing, L"POINT", {At(10, 1, 1)});
  for (double x = 1; x < 1e99; x *= 10) Draw(drawing, L"POINT", {At(10, x, -x)});
  Picker picker(drawing);
  EXPECT_EQ(Inside(picker, 1, 1, 1, 1).size(), count);
  EXPECT_EQ(Inside(picker, 1e50, -1.1e50, 1.1e50, -1e50).size(), 1u);
  EXPECT_LT(picker.Examined(), 100u);
}

// --- Against a scan of all entities ---

class Dice {
 public:
  // Whole numbers, so that much touches; the distribution is our own, to be the same everywhere.
  int Roll(int sides) { return static_cast<int>(m_engine() % static_cast<unsigned>(sides)); }
  double Real() { return Roll(41) - 20; }
  Group Position(int code) { return At(code, Real(), Real(), Real()); }

 private:
  std::mt19937 m_engine{20240607};
};

Object& DrawAny(Drawing& drawing, Dice& dice) {
  switch (dice.Roll(8)) {
    case 0:
      return Draw(drawing, L"LINE", {dice.Position(10), dice.Position(11)});
    case 1:
      return Draw(drawing, L"CIRCLE", {dice.Position(10), {40, 1.0 + dice.Roll(9)}});
    case 2:
      return Draw(drawing, L"ARC",
                  {dice.Position(10),
                   {40, 1.0 + dice.Roll(9)},
                   {50, 15.0 * dice.Roll(24)},
                   {51, 15.0 * dice.Roll(24)}});
    case 3:
      return Draw(drawing, L"SOLID",
                  {dice.Position(10), dice.Position(11), dice.Position(12), dice.Position(13)});
    case 4:
      return Draw(drawing, L"LWPOLYLINE",
                  {{70, static_cast<long long>(dice.Roll(2))},
                   dice.Position(10),
                   {42, dice.Roll(5) - 2.0},
                   dice.Position(10),
                   dice.Position(10)});
    case 5:
      return Draw(drawing, L"TEXT",
                  {dice.Position(10), {40, 1.0 + dice.Roll(3)}, {1, L"text"}, {50, 15.0 * dice.Roll(24)}});
    case 6:
      return Draw(drawing, L"INSERT",
                  {{2, L"B"},
                   dice.Position(10),
                   {41, dice.Roll(5) - 2.0},
                   {50, 15.0 * dice.Roll(24)},
                   dice.Position(210)});
    default:
      return Draw(drawing, L"POINT", {dice.Position(10)});
  }
}

// A drawing with that entity alone answers without an index worth the name.
struct Lone {
  explicit Lone(const Object& entity) {
    BlockDefinition& block = DefineBlock(drawing, L"B");
    DrawIn(drawing, block, L"LINE", {At(10, 0, 0), At(11, 3, 0)});
    DrawIn(drawing, block, L"CIRCLE", {At(10, 3, 0), {40, 2.0}});
    drawing.Append(drawing.Entities(), drawing.NewObject(entity.groups));
    drawing.Entities().members.front()->isErased = entity.isErased;
  }
  Drawing drawing;
  Picker picker{drawing};
};

TEST_F(PickerTest, TheIndexFindsWhatAScanFinds) {
  Dice dice;
  Drawing drawing;
  BlockDefinition& block = DefineBlock(drawing, L"B");
  DrawIn(drawing, block, L"LINE", {At(10, 0, 0), At(11, 3, 0)});
  DrawIn(drawing, block, L"CIRCLE", {At(10, 3, 0), {40, 2.0}});
  Picker picker(drawing);
  const unsigned rounds = Rounds(12);
  for (unsigned round = 0; round < rounds; ++round) {
    for (int made = 0; made < 20; ++made) DrawAny(drawing, dice);
    for (int changed = 0; changed < 5; ++changed) {
      auto& members = drawing.Entities().members;
      Object& entity = *members[static_cast<size_t>(dice.Roll(static_cast<int>(members.size())))];
      if (dice.Roll(2) == 0) {
        drawing.SetErased(entity, !entity.isErased);
      } else {
        *Find(entity.groups, 10) = dice.Position(10);
        drawing.NoteChange(entity);
      }
    }
    std::vector<std::unique_ptr<Lone>> alone;
    for (const Object* entity : drawing.Entities().members) alone.push_back(std::make_unique<Lone>(*entity));
    const auto scan = [&](auto isFound) {
      Found found;
      for (size_t index = 0; index < alone.size(); ++index)
        if (isFound(alone[index]->picker)) found.push_back(drawing.Entities().members[index]);
      return found;
    };
    for (int question = 0; question < 8; ++question) {
      const Point a{dice.Real(), dice.Real()};
      const Point b{dice.Real(), dice.Real()};
      const Point c{dice.Real(), dice.Real()};
      const bool isCrossing = dice.Roll(2) == 0;
      EXPECT_EQ(picker.Window(a, b, isCrossing),
                scan([&](Picker& lone) { return !lone.Window(a, b, isCrossing).empty(); }));
      Found found;
      Found one;
      const auto objection = picker.Polygon({a, b, c}, isCrossing, found);
      EXPECT_EQ(found, scan([&](Picker& lone) {
                  EXPECT_EQ(lone.Polygon({a, b, c}, isCrossing, one), objection);
                  return !one.empty();
                }));
      EXPECT_EQ(picker.Fence({a, b, c}, found), std::nullopt);
      EXPECT_EQ(found, scan([&](Picker& lone) { return !lone.Fence({a, b, c}, one) && !one.empty(); }));
      const Found picked = scan([&](Picker& lone) { return lone.At(a, 1) != nullptr; });
      EXPECT_EQ(picker.At(a, 1), picked.empty() ? nullptr : picked.back());
    }
  }
}

// A window drawn as a polygon, turned or not, finds what the window finds.
TEST_F(PickerTest, WindowsAndPolygonsAgree) {
  Dice dice;
  Drawing drawing;
  for (int made = 0; made < 300; ++made) DrawAny(drawing, dice);
  Picker picker(drawing);
  for (unsigned question = 0; question < Rounds(200); ++question) {
    const Point a{dice.Real(), dice.Real()};
    const Point b{a.x + 1 + dice.Roll(20), a.y + 1 + dice.Roll(20)};
    for (const bool isCrossing : {false, true}) {
      const std::vector<Point> corners{a, {a.x, b.y}, b, {b.x, a.y}};
      Found found;
      EXPECT_EQ(picker.Polygon(corners, isCrossing, found), std::nullopt);
      EXPECT_EQ(found, picker.Window(a, b, isCrossing)) << a.x << ' ' << a.y << ' ' << b.x << ' ' << b.y;
    }
  }
}

}  // namespace
}  // namespace lomlisp::test
