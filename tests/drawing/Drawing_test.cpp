#include <embedded/drawing/Drawing.h>
#include <tests/support/HostTest.h>

#include <algorithm>
#include <chrono>

namespace lomlisp::test {
namespace {

using embedded::Drawing;
using embedded::EntityList;
using embedded::Groups;
using embedded::Object;
using DrawingTest = HostTest;

Object& AddLine(Drawing& drawing) {
  Object& line = drawing.NewObject({{0, L"LINE"}, {8, L"0"}});
  drawing.Append(drawing.Entities(), line);
  return line;
}

TEST_F(DrawingTest, NewDrawingHasTheEntriesThatEveryDrawingHas) {
  Drawing drawing;
  for (const auto& [table, name] : {std::pair(L"LAYER", L"0"),
                                    {L"LTYPE", L"bylayer"},
                                    {L"STYLE", L"STANDARD"},
                                    {L"APPID", L"acad"},
                                    {L"BLOCK_RECORD", L"*model_space"}})
    EXPECT_NE(drawing.FindEntry(table, name), nullptr) << Utf8(name);
  EXPECT_EQ(drawing.FindEntry(L"LAYER", L"1"), nullptr);
  EXPECT_EQ(drawing.FindEntry(L"LAYERS", L"0"), nullptr);
  EXPECT_TRUE(drawing.Entities().members.empty());
  EXPECT_FALSE(drawing.IsModified());
  EXPECT_EQ(drawing.OwnerOf(drawing.Entities()), drawing.FindEntry(L"BLOCK_RECORD", L"*Model_Space")->handle);
}

double SecondsFor(uint64_t distanceOfHandles) {
  Drawing drawing;
  constexpr uint64_t kObjects = 60'000;
  const auto begin = std::chrono::steady_clock::now();
  for (uint64_t n = 1; n <= kObjects; ++n) drawing.NewObject({}, 0x100000 + n * distanceOfHandles);
  for (uint64_t n = 1; n <= kObjects; ++n) EXPECT_NE(drawing.FindHandle(0x100000 + n * distanceOfHandles), nullptr);
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

// 85229 is a number of buckets of the standard library that is reached then.
TEST_F(DrawingTest, HandlesThatWereMadeToMeetTakeNoLonger) {
  double ratio = 1e9;
  for (int attempt = 0; attempt < 3 && ratio > 4; ++attempt) ratio = std::min(ratio, SecondsFor(85229) / SecondsFor(1));
  EXPECT_LT(ratio, 10);
}

TEST_F(DrawingTest, HandlesRiseAndNamesAreNeverThoseOfAnotherDrawing) {
  Drawing first;
  Drawing second;
  Object& one = AddLine(first);
  Object& other = AddLine(second);
  EXPECT_EQ(one.handle, other.handle);
  EXPECT_GT(AddLine(first).handle, one.handle);

  ads_name name;
  first.NameOf(one.handle, name);
  EXPECT_NE(name[0], 0);
  EXPECT_NE(name[1], 0);
  EXPECT_EQ(first.FindName(name), &one);
  EXPECT_EQ(second.FindName(name), nullptr);
  EXPECT_EQ(second.HandleOf(name), std::nullopt);
  const ads_name none = {0, 0};
  EXPECT_EQ(first.HandleOf(none), 0u);
  EXPECT_EQ(first.FindName(none), nullptr);
  EXPECT_EQ(first.FindName(nullptr), nullptr);
}

TEST_F(DrawingTest, GivenHandlesAreKeptAndNeverGivenAgain) {
  Drawing drawing;
  EXPECT_TRUE(drawing.IsFree(0xABC));
  drawing.NewObject({{0, L"LINE"}}, 0xABC);
  EXPECT_FALSE(drawing.IsFree(0xABC));
  EXPECT_EQ(drawing.NewObject({{0, L"LINE"}}).handle, 0xABDu);
  // The greatest of all: the next ones come from the free ones below.
  drawing.NewObject({{0, L"LINE"}}, ~uint64_t{0});
  const uint64_t next = drawing.NewObject({{0, L"LINE"}}).handle;
  EXPECT_NE(next, 0u);
  EXPECT_TRUE(drawing.IsFree(drawing.NextHandle()));
  drawing.RaiseNextHandle(0xABC);
  EXPECT_TRUE(drawing.IsFree(drawing.NextHandle()));
  EXPECT_EQ(drawing.NewObject({{0, L"LINE"}}).handle, 0xABEu);
}

TEST_F(DrawingTest, ChangesAreGivenOnceEachAndPartsCountAsTheirHeader) {
  Drawing drawing;
  Object& header = AddLine(drawing);
  Object& part = drawing.NewObject({{0, L"ATTRIB"}});
  drawing.AppendPart(header, part);
  drawing.NoteChange(part);
  EXPECT_EQ(drawing.TakeChanges(), std::vector<Object*>{&header});
  EXPECT_TRUE(drawing.TakeChanges().empty());
  drawing.SetErased(header, true);
  EXPECT_TRUE(part.isErased);
  EXPECT_EQ(drawing.TakeChanges(), std::vector<Object*>{&header});
  EXPECT_TRUE(drawing.IsModified());
}

TEST_F(DrawingTest, HeaderVariablesAreReadReplacedAndAdded) {
  Drawing drawing;
  EXPECT_EQ(drawing.HeaderVariable(L"$CLAYER"), (Groups{{8, L"0"}}));
  EXPECT_TRUE(drawing.HeaderVariable(L"$NONE").empty());
  drawing.SetHeaderVariable(L"$CLAYER", {{8, L"Walls"}});
  EXPECT_EQ(drawing.HeaderVariable(L"$CLAYER"), (Groups{{8, L"Walls"}}));
  drawing.SetHeaderVariable(L"$NONE", {{40, 1.5}, {70, 2LL}});
  EXPECT_EQ(drawing.HeaderVariable(L"$NONE"), (Groups{{40, 1.5}, {70, 2LL}}));
  drawing.SetHeaderVariable(L"$NONE", {{40, 2.5}});
  EXPECT_EQ(drawing.HeaderVariable(L"$NONE"), (Groups{{40, 2.5}}));
  drawing.SetHeaderVariable(L"$EMPTY", {});
  drawing.SetHeaderVariable(L"$EMPTY", {{40, 3.5}});
  EXPECT_EQ(drawing.HeaderVariable(L"$EMPTY"), (Groups{{40, 3.5}}));
  EXPECT_EQ(drawing.HeaderVariable(L"$MEASUREMENT"), (Groups{{70, 1LL}}));
}

TEST_F(DrawingTest, EntriesAreFoundUnderTheirNewNames) {
  Drawing drawing;
  Object& layer = drawing.NewEntry(L"LAYER", L"Walls", {{70, 0LL}});
  EXPECT_EQ(drawing.FindEntry(L"layer", L"WALLS"), &layer);
  EXPECT_EQ(layer.groups.front(), (embedded::Group{0, L"LAYER"}));
  EXPECT_EQ(TextOf(layer.groups, 5), embedded::HandleText(layer.handle));
  Find(layer.groups, 2)->value = L"Doors";
  drawing.NoteRename(layer, L"Walls");
  EXPECT_EQ(drawing.FindEntry(L"LAYER", L"Walls"), nullptr);
  EXPECT_EQ(drawing.FindEntry(L"LAYER", L"doors"), &layer);
}

TEST_F(DrawingTest, HandlesAreHexadecimalTexts) {
  EXPECT_EQ(embedded::HandleText(0), L"0");
  EXPECT_EQ(embedded::HandleText(0x1F), L"1F");
  EXPECT_EQ(embedded::HandleText(~uint64_t{0}), L"FFFFFFFFFFFFFFFF");
  EXPECT_EQ(embedded::ReadHandle(L"1f"), 0x1Fu);
  EXPECT_EQ(embedded::ReadHandle(L"0"), 0u);
  EXPECT_EQ(embedded::ReadHandle(L"FFFFFFFFFFFFFFFF"), ~uint64_t{0});
  for (const wchar_t* text : {L"", L"G", L"-1", L" 1", L"10000000000000000"})
    EXPECT_EQ(embedded::ReadHandle(text), std::nullopt) << Utf8(text);
}

}  // namespace
}  // namespace lomlisp::test
