#include <tests/drawing/EntityGroups.h>

namespace lomlisp::test {
namespace {

using embedded::ApplicationNames;
using embedded::Chain;
using EntityReaderTest = HostTest;

// The chain's groups, as in "-1:#2A 0:LINE 5:2A"; -3 stands with a 0.
std::string Text(const Drawing& drawing, const Chain& chain) {
  Groups groups;
  for (const embedded::Record& record : chain) {
    std::string objection;
    const auto group = embedded::ReadRecord(record, drawing, objection);
    if (group) groups.push_back(*group);
    EXPECT_TRUE(group) << objection;
  }
  return Line(groups, true);
}

Object& Add(Drawing& drawing, Groups groups, uint64_t handle) {
  Object& object = drawing.NewObject(std::move(groups), handle);
  drawing.Append(drawing.Entities(), object);
  return object;
}

TEST_F(EntityReaderTest, StoredGroupsComeInOrderBehindTheName) {
  Drawing drawing;
  const Object& line = Add(drawing,
                           {{0, L"LINE"},
                            {5, L"ABC"},
                            {102, L"{ACAD_REACTORS"},
                            {330, Reference{0x1F}},
                            {102, L"}"},
                            {330, Reference{0x20}},
                            {100, L"AcDbEntity"},
                            {8, L"0"},
                            {11, Point{1, 2, 3}},
                            {10, Point{4, 5, 0, true}},
                            {210, Point{0, 1, 0}}},
                           0xABC);
  EXPECT_EQ(Text(drawing, EntityGroups(drawing, line)),
            "-1:#ABC 0:LINE 5:ABC 102:{ACAD_REACTORS 330:#1F 102:} 330:#20 100:AcDbEntity 8:0 11:(1 2 3) "
            "10:(4 5 0) 210:(0 1 0)");
}

TEST_F(EntityReaderTest, DefaultsAreLeftOutAndMissingOnesGiven) {
  Drawing drawing;
  const struct {
    Groups groups;
    const char* text;
  } cases[] = {
      {{{0, L"LINE"}, {6, L"bylayer"}, {62, 256LL}, {39, 0.0}, {48, 1.0}, {60, 0LL}, {8, L"0"}},
       "0:LINE 5:ABC 8:0 210:(0 0 1)"},
      {{{0, L"LINE"}, {6, L"BYBLOCK"}, {62, 0LL}, {39, 1.0}, {48, 0.5}, {60, 1LL}},
       "0:LINE 5:ABC 6:BYBLOCK 62:0 39:1 48:0.5 60:1 210:(0 0 1)"},
      {{{0, L"3DFACE"}, {8, L"0"}}, "0:3DFACE 5:ABC 8:0"},
      // The same codes mean something else in the classes of types that are not described.
      {{{0, L"TABLEAU"}, {62, 256LL}, {100, L"AcDbTableau"}, {62, 256LL}, {60, 0LL}, {39, 0.0}},
       "0:TABLEAU 5:ABC 100:AcDbTableau 62:256 60:0 39:0"},
  };
  for (const auto& [groups, text] : cases) {
    Drawing fresh;
    EXPECT_EQ(Text(fresh, EntityGroups(fresh, Add(fresh, groups, 0xABC))), std::string("-1:#ABC ") + text);
  }
  for (const wchar_t* type : {L"LINE", L"ARC", L"CIRCLE", L"ELLIPSE", L"POINT", L"LWPOLYLINE", L"POLYLINE",
                              L"TEXT", L"MTEXT", L"SOLID", L"TRACE", L"INSERT", L"ATTRIB", L"ATTDEF"})
    EXPECT_EQ(EntityGroups(drawing, Add(drawing, {{0, type}}, 0)).back().type, 210) << Utf8(type);
  for (const wchar_t* type : {L"VERTEX", L"SEQEND", L"3DFACE", L"HATCH", L"SPLINE"})
    EXPECT_EQ(EntityGroups(drawing, Add(drawing, {{0, type}}, 0)).back().type, 5) << Utf8(type);
}

TEST_F(EntityReaderTest, EveryObjectCanBeRead) {
  Drawing drawing;
  Object& layer = *drawing.FindEntry(L"LAYER", L"0");
  EXPECT_NE(Text(drawing, EntityGroups(drawing, layer)).find("62:7 6:Continuous"), std::string::npos);
  const Object& style = *drawing.FindEntry(L"DIMSTYLE", L"Standard");
  EXPECT_NE(Text(drawing, EntityGroups(drawing, style)).find(" 105:"), std::string::npos);
  EXPECT_EQ(Text(drawing, EntityGroups(drawing, style)).find(" 5:"), std::string::npos);
  // Of an entry nothing is a default: 48 of a dimension style is a tolerance.
  const Object& other = drawing.NewEntry(L"DIMSTYLE", L"Other", {{48, 1.0}, {60, 0LL}});
  EXPECT_NE(Text(drawing, EntityGroups(drawing, other)).find("48:1 60:0"), std::string::npos);
  for (const Object* object : drawing.Objects()) EXPECT_GT(EntityGroups(drawing, *object).size(), 3u);
  for (const auto& block : drawing.Blocks())
    EXPECT_NE(Text(drawing, EntityGroups(drawing, *block.begin)).find("0:BLOCK"), std::string::npos);
}

TEST_F(EntityReaderTest, ExtendedDataComePerWantedApplication) {
  Drawing drawing;
  Object& point = Add(drawing, {{0, L"POINT"}, {5, L"ABC"}}, 0xABC);
  point.extended = {{L"ACAD", {{1000, L"a"}}}, {L"Mine", {{1070, 1LL}, {1010, Point{1, 2, 3}}}}};
  const std::string own = "-1:#ABC 0:POINT 5:ABC 210:(0 0 1)";
  const auto text = [&](const std::function<bool(std::wstring_view)>& isWanted) {
    return Text(drawing, EntityGroups(drawing, point, isWanted));
  };
  EXPECT_EQ(text({}), own);
  EXPECT_EQ(text([](std::wstring_view) { return false; }), own);
  EXPECT_EQ(text([](std::wstring_view name) { return name == L"Mine"; }),
            own + " -3:0 1001:Mine 1070:1 1010:(1 2 3)");
  EXPECT_EQ(text([](std::wstring_view) { return true; }),
            own + " -3:0 1001:ACAD 1000:a 1001:Mine 1070:1 1010:(1 2 3)");
}

TEST_F(EntityReaderTest, ApplicationsAreNamedBareOrWithinBrackets) {
  const auto names = [](std::vector<std::pair<short, const wchar_t*>> records) -> std::string {
    Chain chain;
    for (const auto& [type, text] : records) {
      embedded::Record record;
      record.type = type;
      record.hasText = text != nullptr;
      if (text != nullptr) record.text = text;
      chain.push_back(record);
    }
    std::string objection;
    const auto applications = ApplicationNames(chain, objection);
    if (!applications) return "refused: " + objection;
    std::string all;
    for (const std::wstring& name : *applications) all += Utf8(name) + ";";
    return all;
  };
  EXPECT_EQ(names({}), "");
  EXPECT_EQ(names({{RTSTR, L"A"}, {RTSTR, L"B*"}}), "A;B*;");
  EXPECT_EQ(names({{RTLB, nullptr}, {RTSTR, L"A"}, {RTSTR, L"B"}, {RTLE, nullptr}}), "A;B;");
  EXPECT_EQ(names({{RTLB, nullptr}, {RTLE, nullptr}}), "");
  const std::string reason = "refused: an application must be a text, not a record of type ";
  EXPECT_EQ(names({{RTNIL, nullptr}}), reason + "5019");
  EXPECT_EQ(names({{RTSTR, nullptr}}), reason + "5005");
  EXPECT_EQ(names({{RTLB, nullptr}}), reason + "5016");
  EXPECT_EQ(names({{RTLE, nullptr}, {RTLB, nullptr}}), reason + "5017");
  EXPECT_EQ(names({{RTLB, nullptr}, {RTLB, nullptr}, {RTLE, nullptr}, {RTLE, nullptr}}), reason + "5016");
  EXPECT_EQ(names({{RTSTR, L"A"}, {RTSHORT, nullptr}}), reason + "5003");
  EXPECT_EQ(names({{1001, L"A"}}), reason + "1001");
}

TEST_F(EntityReaderTest, WhatIsReadCanBeMadeAgain) {
  Drawing drawing;
  EntityMaker maker(drawing);
  const EntityMaker::Settings settings;
  const Groups cases[] = {
      {{0, L"LWPOLYLINE"}, {10, Point{1, 2, 0}}, {42, 0.5}, {10, Point{3, 4, 0}}, {62, 3LL}},
      {{0, L"TEXT"},
       {10, Point{}},
       {40, 1.0},
       {1, L"a"},
       {73, 2LL},
       {-3, 0LL},
       {1001, L"ACAD"},
       {1000, L"x"}},
      {{0, L"MTEXT"}, {10, Point{}}, {3, L"a"}, {1, L"b"}},
  };
  for (const Groups& groups : cases) {
    ASSERT_EQ(maker.Make(ChainOf(drawing, groups), settings), std::nullopt);
    const Object& first = *maker.LastMade();
    ASSERT_EQ(maker.Make(Read(drawing, first), settings), std::nullopt);
    // The copy holds the extrusion that was given for the absent one.
    EXPECT_EQ(Text(drawing, Read(drawing, *maker.LastMade())).size(),
              Text(drawing, Read(drawing, first)).size());
  }
}

}  // namespace
}  // namespace lomlisp::test
