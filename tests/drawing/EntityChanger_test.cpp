#include <embedded/drawing/EntityChanger.h>
#include <tests/drawing/EntityGroups.h>

#include <limits>
#include <random>

namespace lomlisp::test {
namespace {

using embedded::Chain;
using embedded::DxfVersion;

class EntityChangerTest : public HostTest {
 protected:
  Object& Make(const Groups& groups) {
    const auto objection = maker.Make(ChainOf(drawing, groups), {});
    EXPECT_EQ(objection, std::nullopt) << objection.value_or("");
    return maker.LastMade() != nullptr ? *maker.LastMade() : *drawing.FindEntry(L"LAYER", L"0");
  }

  std::string Modify(const Chain& chain) { return embedded::ModifyEntity(drawing, chain).value_or(""); }
  std::string Modify(const Object& object, const Groups& groups) {
    return Modify(ChainOf(drawing, object, groups));
  }
  // The object as it is then, or why not.
  std::string Modified(const Object& object, const Groups& groups) {
    const std::string answer = Modify(object, groups);
    return answer.empty() ? Line(object) : answer;
  }
  void ExpectRefused(const Object& object, const Groups& groups, const std::string& reason) {
    const std::string before = Dump(drawing);
    EXPECT_EQ(Modify(object, groups), reason);
    EXPECT_EQ(Dump(drawing), before) << reason;
  }

  using Change = std::optional<std::string> (*)(Drawing&, const ads_name);
  std::string Apply(Change change, const Object& object) {
    ads_name name;
    drawing.NameOf(object.handle, name);
    return change(drawing, name).value_or("");
  }
  std::string Delete(const Object& object) { return Apply(embedded::DeleteEntity, object); }
  std::string Update(const Object& object) { return Apply(embedded::UpdateEntity, object); }

  Object& MakeLine() { return Make({{0, L"LINE"}, {10, Point{1, 2, 3}}, {11, Point{4, 5, 6}}}); }
  Object& MakePolyline(int vertices = 2) {
    maker.Make(ChainOf(drawing, {{0, L"POLYLINE"}}), {});
    for (int index = 0; index < vertices; ++index)
      maker.Make(ChainOf(drawing, {{0, L"VERTEX"}, {10, Point{double(index), 0, 0}}}), {});
    return Make({{0, L"SEQEND"}});
  }
  Object& MakeBlock(const wchar_t* name, const Groups& content) {
    maker.Make(ChainOf(drawing, {{0, L"BLOCK"}, {2, name}, {10, Point{}}}), {});
    maker.Make(ChainOf(drawing, content), {});
    return Make({{0, L"ENDBLK"}});
  }

  Drawing drawing;
  EntityMaker maker{drawing};
};

// --- Modify ---

TEST_F(EntityChangerTest, GivenGroupsReplaceAndOthersStay) {
  Object& line = MakeLine();
  drawing.TakeChanges();
  EXPECT_EQ(Modified(line, {{11, Point{7, 8, 9}}}),
            "0:LINE 100:AcDbEntity 8:0 100:AcDbLine 10:(1 2 3) 11:(7 8 9)");
  EXPECT_EQ(drawing.TakeChanges(), std::vector<Object*>{&line});
  EXPECT_EQ(drawing.regenerations, 1u);
  EXPECT_EQ(Modified(line, {{0, L"line"}, {5, L"1"}, {330, Reference{1}}, {100, L"AcDbEntity"}, {67, 1LL}}),
            "0:LINE 100:AcDbEntity 8:0 100:AcDbLine 10:(1 2 3) 11:(7 8 9)");
  EXPECT_EQ(TextOf(line.groups, 5), embedded::HandleText(line.handle));
  // The name may stand anywhere; of a code twice the last counts.
  EXPECT_EQ(Modify(ChainOf(drawing, {{10, Point{}}, {10, Point{1, 1, 1}}, {-1, Reference{line.handle}}})),
            "");
  EXPECT_EQ(PointOf(line.groups, 10), (Point{1, 1, 1}));
  EXPECT_EQ(Modify(Read(drawing, line)), "");
}

TEST_F(EntityChangerTest, NewGroupsStandUnderTheirMarkersAndDefaultsGo) {
  Object& line = MakeLine();
  EXPECT_EQ(Modified(line, {{39, 2.0}, {62, 1LL}, {6, L"ByBlock"}, {210, Point{0, 1, 0}}, {370, 25LL}}),
            "0:LINE 100:AcDbEntity 8:0 6:ByBlock 62:1 370:25 100:AcDbLine 39:2 10:(1 2 3) 11:(4 5 6) "
            "210:(0 1 0)");
  EXPECT_EQ(Modified(line, {{39, 0.0}, {62, 256LL}, {6, L"bylayer"}, {48, 1.0}, {60, 0LL}}),
            "0:LINE 100:AcDbEntity 8:0 370:25 100:AcDbLine 10:(1 2 3) 11:(4 5 6) 210:(0 1 0)");
  Object& text = Make({{0, L"TEXT"}, {10, Point{}}, {40, 1.0}, {1, L"a"}});
  EXPECT_EQ(Modified(text, {{73, 1LL}, {72, 2LL}}),
            "0:TEXT 100:AcDbEntity 8:0 100:AcDbText 10:(0 0 0) 40:1 1:a 7:Standard 72:2 100:AcDbText 73:1");
  drawing.version = DxfVersion::R12;
  EXPECT_EQ(Modified(MakeLine(), {{62, 1LL}}), "0:LINE 8:0 10:(1 2 3) 11:(4 5 6) 62:1");
  Object& dimension = drawing.NewObject({{0, L"DIMENSION"},
                                         {100, L"AcDbEntity"},
                                         {8, L"0"},
                                         {100, L"AcDbDimension"},
                                         {10, Point{}},
                                         {100, L"AcDbAlignedDimension"},
                                         {13, Point{}}});
  drawing.Append(drawing.Entities(), dimension);
  EXPECT_EQ(Modified(dimension, {{62, 1LL}, {100, L"AcDbDimension"}, {1, L"<>"}, {14, Point{}}}),
            "0:DIMENSION 100:AcDbEntity 8:0 62:1 100:AcDbDimension 10:(0 0 0) 1:<> 14:(0 0 0) "
            "100:AcDbAlignedDimension 13:(0 0 0)");
}

TEST_F(EntityChangerTest, RepeatedGroupsAreReplacedInOrderOrAsAWhole) {
  Object& spline = Make({{0, L"SPLINE"},
                         {100, L"AcDbSpline"},
                         {40, 1.0},
                         {40, 2.0},
                         {10, Point{1, 0, 0}},
                         {10, Point{2, 0, 0}}});
  EXPECT_EQ(Modified(spline, {{40, 3.0}, {40, 4.0}}),
            "0:SPLINE 100:AcDbEntity 8:0 100:AcDbSpline 40:3 40:4 10:(1 0 0) 10:(2 0 0)");
  EXPECT_EQ(Modified(spline, {{40, 5.0}, {10, Point{3, 0, 0}}, {40, 6.0}, {40, 7.0}}),
            "0:SPLINE 100:AcDbEntity 8:0 100:AcDbSpline 40:5 10:(3 0 0) 40:6 40:7");
  Object& text = Make({{0, L"MTEXT"}, {10, Point{}}, {3, L"a"}, {3, L"b"}, {1, L"c"}});
  EXPECT_EQ(Modified(text, {{3, L"d"}, {1, L"e"}}),
            "0:MTEXT 100:AcDbEntity 8:0 100:AcDbMText 10:(0 0 0) 40:2.5 3:d 1:e 7:Standard");
}

TEST_F(EntityChangerTest, VerticesOfALightPolylineAreReplaced) {
  const auto stored = [&](const Groups& groups) -> Object& {
    Groups all{{0, L"LWPOLYLINE"}};
    all.insert(all.end(), groups.begin(), groups.end());
    return Make(all);
  };
  const Group a{10, Point{1, 1, 0}};
  const Group b{10, Point{2, 2, 0}};
  const Group c{10, Point{3, 3, 0}};
  const struct {
    Groups stored;
    Groups given;
    const char* vertices;
  } cases[] = {
      {{a, b}, {c, a}, "90:2 70:0 10:(3 3) 10:(1 1)"},
      {{a, {42, 1.0}, b}, {c, c}, "90:2 70:0 10:(3 3) 42:1 10:(3 3)"},
      {{a, {42, 1.0}, b}, {c, c, {42, 2.0}}, "90:2 70:0 10:(3 3) 10:(3 3) 42:2"},
      {{a, {40, 1.0}, b}, {c, {42, 2.0}, c}, "90:2 70:0 10:(3 3) 40:1 42:2 10:(3 3)"},
      {{a, {42, 1.0}, b}, {a, b, {42, 3.0}, c, {90, 9LL}}, "90:3 70:0 10:(1 1) 10:(2 2) 42:3 10:(3 3)"},
      {{a, {42, 1.0}, b}, {c}, "90:1 70:0 10:(3 3)"},
      {{a, {42, 1.0}, b}, {{42, 5.0}}, "90:2 70:0 10:(1 1) 42:5 10:(2 2)"},
      {{a, b}, {{42, 5.0}, {42, 6.0}}, "90:2 70:0 10:(1 1) 42:5 10:(2 2) 42:6"},
      {{a, b}, {{90, 5LL}, {70, 1LL}, {43, 2.0}}, "90:2 70:1 43:2 10:(1 1) 10:(2 2)"},
      {{a, b}, {{42, 5.0}}, nullptr},
      {{a, b}, {{42, 5.0}, c, c}, nullptr},
  };
  for (const auto& [before, given, vertices] : cases) {
    const Object& polyline = stored(before);
    if (vertices != nullptr)
      EXPECT_EQ(Modified(polyline, given),
                std::string("0:LWPOLYLINE 100:AcDbEntity 8:0 100:AcDbPolyline ") + vertices);
    else if (given.size() == 1)
      ExpectRefused(polyline, given, "group 42: cannot be told to the vertices (10)");
    else
      ExpectRefused(polyline, given, "group 42: stands before the first vertex (10)");
  }
}

TEST_F(EntityChangerTest, BracketsAndEmbeddedObjectsStay) {
  Object& text = drawing.NewObject({{0, L"MTEXT"},
                                    {102, L"{ACAD_XDICTIONARY"},
                                    {360, Reference{5}},
                                    {102, L"}"},
                                    {100, L"AcDbEntity"},
                                    {8, L"0"},
                                    {100, L"AcDbMText"},
                                    {10, Point{1, 1, 1}},
                                    {1, L"a"},
                                    {101, L"Embedded Object"},
                                    {10, Point{2, 2, 2}}});
  drawing.Append(drawing.Entities(), text);
  const std::string before = Line(text);
  EXPECT_EQ(Modified(text, {{1, L"a"}, {101, L"Embedded Object"}, {10, Point{5, 5, 5}}}), before);
  EXPECT_EQ(Modified(text, {{10, Point{3, 3, 3}}, {102, L"{X"}, {360, Reference{6}}, {102, L"}"}, {50, 1.0}}),
            "0:MTEXT 102:{ACAD_XDICTIONARY 360:#5 102:} 100:AcDbEntity 8:0 100:AcDbMText 10:(3 3 3) 1:a 50:1 "
            "101:Embedded Object 10:(2 2 2)");
}

TEST_F(EntityChangerTest, ExtendedDataAreReplacedPerApplication) {
  Make({{0, L"APPID"}, {2, L"Mine"}});
  Object& line = MakeLine();
  const std::string own = Line(line);
  EXPECT_EQ(Modified(line, {{-3, 0LL}, {1001, L"ACAD"}, {1000, L"a"}, {1001, L"Mine"}, {1000, L"b"}}),
            own + " | ACAD 1000:a | Mine 1000:b");
  EXPECT_EQ(Modified(line, {{-3, 0LL}, {1001, L"acad"}, {1070, 1LL}}), own + " | ACAD 1070:1 | Mine 1000:b");
  EXPECT_EQ(Modified(line, {{62, 1LL}}).substr(0, 34), "0:LINE 100:AcDbEntity 8:0 62:1 100");
  EXPECT_EQ(Modified(line, {{62, 256LL}, {-3, 0LL}, {1001, L"ACAD"}}), own + " | Mine 1000:b");
  EXPECT_EQ(Modified(line, {{-3, 0LL}}), own + " | Mine 1000:b");
  ExpectRefused(line, {{-3, 0LL}, {1001, L"Mine"}, {1001, L"Nope"}, {1000, L"a"}},
                "group 1001: the application \"Nope\" is not registered");
}

TEST_F(EntityChangerTest, LayersAreMadeAndOtherEntriesMustExist) {
  Object& line = MakeLine();
  EXPECT_EQ(Modify(line, {{8, L"New"}}), "");
  EXPECT_NE(drawing.FindEntry(L"LAYER", L"New"), nullptr);
  ExpectRefused(line, {{8, L"Newer"}, {6, L"Dashed"}}, "group 6: there is no line type \"Dashed\"");
  ExpectRefused(line, {{8, L"a*b"}}, "group 8: a layer cannot have the name \"a*b\"");
  ExpectRefused(line, {{62, 300LL}}, "group 62: no color has the number 300");
  ExpectRefused(line, {{39, std::numeric_limits<double>::infinity()}}, "group 39: no finite number");
  Object& text = Make({{0, L"TEXT"}, {10, Point{}}, {40, 1.0}, {1, L"a"}});
  ExpectRefused(text, {{7, L"Roman"}}, "group 7: there is no text style \"Roman\"");
  ExpectRefused(text, {{40, 0.0}}, "group 40: must be greater than zero");
  // What a drawing holds already is not looked at again.
  Find(text.groups, 7)->value = L"Lost";
  Find(text.groups, 8)->value = L"lost*";
  EXPECT_EQ(Modify(Read(drawing, text)), "");
}

TEST_F(EntityChangerTest, WhatCannotBeChangedIsRefused) {
  Object& line = MakeLine();
  const std::string before = Dump(drawing);
  EXPECT_EQ(Modify(ChainOf(drawing, {{0, L"LINE"}, {8, L"A"}})), "the name of the entity (-1) is missing");
  EXPECT_EQ(Modify(Chain()), "the name of the entity (-1) is missing");
  EXPECT_EQ(Modify(ChainOf(drawing, {{-1, Reference{0xFFFF}}})), "group -1: there is no object of that name");
  EXPECT_EQ(Modify(ChainOf(drawing, {{-1, Reference{}}})), "group -1: there is no object of that name");
  Drawing other;
  EXPECT_EQ(Modify(ChainOf(other, {{-1, Reference{line.handle}}})),
            "group -1: there is no object of that name");
  Chain brackets = ChainOf(drawing, line, {});
  brackets.emplace_back().type = RTLB;
  EXPECT_EQ(Modify(brackets), "a bracket or a dot among the groups");
  EXPECT_EQ(Dump(drawing), before);
  ExpectRefused(line, {{0, L"ARC"}}, "group 0: the type is LINE and stays so");
  ExpectRefused(line, {{102, L"{"}}, "group 102: the brackets do not balance");
  const auto* space = drawing.FindBlock(L"*Model_Space");
  ExpectRefused(*space->begin, {{8, L"A"}}, "BLOCK cannot be changed");
  ExpectRefused(*space->end, {{8, L"A"}}, "ENDBLK cannot be changed");
  ExpectRefused(*drawing.Objects().front(), {{281, 0LL}}, "DICTIONARY cannot be changed");
  ExpectRefused(*drawing.FindTable(L"LAYER")->head, {{2, L"A"}}, "TABLE cannot be changed");
  drawing.SetErased(line, true);
  ExpectRefused(line, {{8, L"A"}}, "group -1: there is no object of that name");
}

TEST_F(EntityChangerTest, APolylineStaysOfItsKind) {
  Object& polyline = MakePolyline();
  ExpectRefused(polyline, {{70, 8LL}}, "group 70: would make it another kind of POLYLINE");
  EXPECT_EQ(Modified(polyline, {{70, 1LL}, {66, 0LL}}),
            "0:POLYLINE 100:AcDbEntity 8:0 100:AcDb2dPolyline 66:1 10:(0 0 0) 70:1");
}

TEST_F(EntityChangerTest, ABlockNeverComesToContainItself) {
  MakeBlock(L"A", {{0, L"POINT"}, {10, Point{}}});
  MakeBlock(L"B", {{0, L"INSERT"}, {2, L"A"}, {10, Point{}}});
  Object& insert = *drawing.FindBlock(L"B")->content.members[0];
  MakeBlock(L"C", {{0, L"INSERT"}, {2, L"B"}, {10, Point{}}});
  ExpectRefused(insert, {{2, L"C"}}, "the block \"B\" would contain itself");
  ExpectRefused(insert, {{2, L"b"}}, "the block \"B\" would contain itself");
  ExpectRefused(insert, {{2, L"D"}}, "group 2: there is no block \"D\"");
  EXPECT_EQ(Modify(insert, {{2, L"A"}, {41, 2.0}}), "");
  EXPECT_EQ(drawing.regenerations, 0u);
}

TEST_F(EntityChangerTest, XrecordsCanBeChanged) {
  Object& record = drawing.NewObject({{0, L"XRECORD"},
                                      {5, L"AA"},
                                      {330, Reference{1}},
                                      {100, L"AcDbXrecord"},
                                      {280, 1LL},
                                      {1, L"a"},
                                      {330, Reference{2}}});
  drawing.Objects().push_back(&record);
  EXPECT_EQ(
      Modify(record, {{330, Reference{9}}, {100, L"AcDbXrecord"}, {330, Reference{7}}, {1, L"b"}, {40, 1.0}}),
      "");
  EXPECT_EQ(Line(record.groups, true), "0:XRECORD 5:AA 330:#1 100:AcDbXrecord 280:1 1:b 330:#7 40:1");
}

TEST_F(EntityChangerTest, ValuesKeepTheFormOfTheStoredOnes) {
  Object& record =
      drawing.NewObject({{0, L"XRECORD"}, {67, 1LL}, {19, 1.5}, {10, 2.5}, {11, Point{1, 2, 0, true}}});
  drawing.Objects().push_back(&record);
  EXPECT_EQ(Modify(Read(drawing, record)), "");
  EXPECT_EQ(Line(record.groups), "0:XRECORD 67:1 19:1.5 10:2.5 11:(1 2)");
  EXPECT_EQ(Modify(record, {{67, 2LL}, {19, Point{3, 0, 0}}, {10, Point{4, 0, 0}}, {11, Point{5, 6, 7}}}),
            "");
  EXPECT_EQ(Line(record.groups), "0:XRECORD 67:2 19:3 10:4 11:(5 6)");
}

TEST_F(EntityChangerTest, EntriesOfTablesAreChangedAndRenamed) {
  Object& line = MakeLine();
  Object& inBlock =
      *drawing.FindBlock(TextOf(MakeBlock(L"B", {{0, L"POINT"}, {10, Point{}}, {8, L"walls"}}).groups, 2))
           ->content.members[0];
  Modify(line, {{8, L"WALLS"}});
  drawing.SetHeaderVariable(L"$CLAYER", {{8, L"Walls"}});
  Object& layer = *drawing.FindEntry(L"LAYER", L"Walls");
  EXPECT_EQ(Modify(layer, {{62, -1LL}}), "");
  EXPECT_EQ(IntegerOf(layer.groups, 62), -1);
  ExpectRefused(layer, {{62, 0LL}}, "group 62: no color has the number 0");
  EXPECT_EQ(Modify(layer, {{2, L"Doors"}}), "");
  EXPECT_EQ(drawing.FindEntry(L"LAYER", L"Walls"), nullptr);
  EXPECT_EQ(drawing.FindEntry(L"LAYER", L"Doors"), &layer);
  EXPECT_EQ(TextOf(line.groups, 8), L"Doors");
  EXPECT_EQ(TextOf(inBlock.groups, 8), L"Doors");
  EXPECT_EQ(drawing.HeaderVariable(L"$CLAYER"), (Groups{{8, L"Doors"}}));
  EXPECT_EQ(Modify(layer, {{2, L"DOORS"}}), "");
  EXPECT_EQ(drawing.FindEntry(L"LAYER", L"doors"), &layer);

  ExpectRefused(layer, {{2, L"0"}}, "group 2: there is an entry \"0\" of LAYER");
  ExpectRefused(layer, {{2, L"a|b"}}, "group 2: \"a|b\" is no name for an entry of LAYER");
  const struct {
    const wchar_t* table;
    const wchar_t* name;
  } kept[] = {{L"LAYER", L"0"},          {L"LTYPE", L"ByLayer"},  {L"LTYPE", L"ByBlock"},
              {L"LTYPE", L"Continuous"}, {L"STYLE", L"Standard"}, {L"DIMSTYLE", L"Standard"},
              {L"APPID", L"ACAD"},       {L"BLOCK_RECORD", L"B"}, {L"VPORT", L"*Active"}};
  for (const auto& [table, name] : kept)
    ExpectRefused(*drawing.FindEntry(table, name), {{2, L"Other"}},
                  "group 2: the entry \"" + Utf8(name) + "\" of " + Utf8(table) + " keeps its name");
}

TEST_F(EntityChangerTest, LineTypesAndStylesAreNamedStillAfterARename) {
  Object& lineType = Make({{0, L"LTYPE"}, {2, L"Dash"}});
  Object& style = Make({{0, L"STYLE"}, {2, L"Roman"}});
  Object& layer = Make({{0, L"LAYER"}, {2, L"A"}, {6, L"DASH"}});
  Object& text = Make({{0, L"TEXT"}, {10, Point{}}, {40, 1.0}, {1, L"a"}, {7, L"roman"}, {6, L"dash"}});
  EXPECT_EQ(Modify(lineType, {{2, L"Dot"}}), "");
  EXPECT_EQ(Modify(style, {{2, L"Greek"}}), "");
  EXPECT_EQ(TextOf(layer.groups, 6), L"Dot");
  EXPECT_EQ(TextOf(text.groups, 6), L"Dot");
  EXPECT_EQ(TextOf(text.groups, 7), L"Greek");
}

// --- Regeneration ---

TEST_F(EntityChangerTest, PartsAreRegeneratedByUpdateOnly) {
  Object& polyline = MakePolyline();
  drawing.TakeChanges();
  EXPECT_EQ(Modify(*polyline.parts[0], {{10, Point{9, 9, 9}}}), "");
  EXPECT_TRUE(polyline.needsRegeneration);
  EXPECT_EQ(drawing.regenerations, 0u);
  EXPECT_EQ(drawing.TakeChanges(), std::vector<Object*>{&polyline});
  EXPECT_EQ(Update(polyline), "");
  EXPECT_FALSE(polyline.needsRegeneration);
  EXPECT_EQ(drawing.regenerations, 1u);
  EXPECT_EQ(Modify(*polyline.parts[1], {{42, 1.0}}), "");
  EXPECT_EQ(Update(*polyline.parts[0]), "");
  EXPECT_FALSE(polyline.needsRegeneration);
  EXPECT_EQ(drawing.regenerations, 2u);
}

TEST_F(EntityChangerTest, WhatIsNotDrawnIsNotUpdated) {
  Object& line = MakeLine();
  EXPECT_EQ(Update(*drawing.FindEntry(L"LAYER", L"0")), "LAYER is not drawn");
  EXPECT_EQ(embedded::UpdateEntity(drawing, nullptr), "there is no object of that name");
  Delete(line);
  EXPECT_EQ(Update(line), "there is no object of that name");
  EXPECT_EQ(drawing.regenerations, 0u);
}

// --- Delete ---

TEST_F(EntityChangerTest, DeleteErasesAndRestoresWithTheParts) {
  MakeLine();
  Object& polyline = MakePolyline();
  MakeLine();
  const auto members = drawing.Entities().members;
  drawing.TakeChanges();
  EXPECT_EQ(Delete(polyline), "");
  EXPECT_TRUE(polyline.isErased);
  for (const Object* part : polyline.parts) EXPECT_TRUE(part->isErased);
  EXPECT_EQ(drawing.TakeChanges(), std::vector<Object*>{&polyline});
  EXPECT_EQ(Delete(polyline), "");
  EXPECT_FALSE(polyline.isErased);
  for (const Object* part : polyline.parts) EXPECT_FALSE(part->isErased);
  EXPECT_EQ(drawing.Entities().members, members);
}

TEST_F(EntityChangerTest, WhatCannotBeErasedIsRefused) {
  Object& polyline = MakePolyline();
  Object& begin = MakeBlock(L"B", {{0, L"POINT"}, {10, Point{}}});
  const auto* block = drawing.FindBlock(L"B");
  Object& point = *block->content.members[0];
  EXPECT_EQ(Delete(point), "");
  EXPECT_EQ(Delete(point), "");
  const std::string before = Dump(drawing);
  EXPECT_EQ(Delete(*polyline.parts[0]), "VERTEX cannot be erased without its POLYLINE");
  EXPECT_EQ(Delete(*polyline.parts[2]), "SEQEND cannot be erased without its POLYLINE");
  EXPECT_EQ(Delete(begin), "BLOCK cannot be erased");
  EXPECT_EQ(Delete(*block->end), "ENDBLK cannot be erased");
  EXPECT_EQ(Delete(*drawing.FindEntry(L"LAYER", L"0")), "LAYER cannot be erased");
  EXPECT_EQ(Delete(*drawing.Objects().front()), "DICTIONARY cannot be erased");
  EXPECT_EQ(embedded::DeleteEntity(drawing, nullptr), "there is no object of that name");
  EXPECT_EQ(Dump(drawing), before);
  MakeBlock(L"B", {{0, L"POINT"}, {10, Point{}}});
  EXPECT_EQ(Delete(point), "what was in a block before it was defined anew cannot be restored");
}

// --- Robustness ---

TEST_F(EntityChangerTest, ManyVerticesAreReplacedInLinearTime) {
  Groups groups{{0, L"LWPOLYLINE"}};
  for (int index = 0; index < kLarge / 50; ++index) groups.push_back({10, Point{double(index), 0, 0}});
  Object& polyline = Make(groups);
  EXPECT_EQ(Modify(Read(drawing, polyline)), "");
  groups.push_back({10, Point{}});
  EXPECT_EQ(Modify(polyline, groups), "");
  EXPECT_EQ(IntegerOf(polyline.groups, 90), kLarge / 50 + 1);
  Object& spline = Make({{0, L"SPLINE"}, {100, L"AcDbSpline"}});
  Groups knots;
  for (int index = 0; index < kLarge / 50; ++index) knots.push_back({index % 2 == 0 ? 40 : 41, 1.0});
  EXPECT_EQ(Modify(spline, knots), "");
  EXPECT_EQ(Modify(spline, knots), "");
}

TEST_F(EntityChangerTest, RandomChangesNeverCrashAndRefusalsChangeNothing) {
  std::mt19937 random(815);
  const auto pick = [&](size_t count) { return static_cast<size_t>(random() % count); };
  MakeBlock(L"A", {{0, L"POINT"}, {10, Point{}}});
  MakeBlock(L"B", {{0, L"INSERT"}, {2, L"A"}, {10, Point{}}});
  MakeLine();
  MakePolyline();
  Make({{0, L"LWPOLYLINE"}, {10, Point{}}, {10, Point{1, 0, 0}}, {42, 1.0}});
  Make({{0, L"HATCH"}, {100, L"AcDbHatch"}, {10, Point{}}, {91, 1LL}, {10, Point{}}, {330, Reference{1}}});
  const Groups pieces = {{8, L"0"},           {8, L"new"},
                         {62, 256LL},         {62, 5LL},
                         {10, Point{}},       {10, Point{1, 1, 1}},
                         {42, 0.5},           {42, 1.5},
                         {40, 2.0},           {70, 1LL},
                         {70, 64LL},          {2, L"A"},
                         {2, L"B"},           {2, L"x"},
                         {0, L"LINE"},        {6, L"Dashed"},
                         {7, L"Standard"},    {100, L"AcDbLine"},
                         {102, L"{"},         {102, L"}"},
                         {330, Reference{3}}, {90, 1LL},
                         {-3, 0LL},           {1001, L"ACAD"},
                         {1000, L"a"},        {1002, L"{"},
                         {101, L"e"},         {210, Point{0, 1, 0}},
                         {66, 1LL},           {310, L"FF"}};
  const size_t handles = drawing.NextHandle();
  std::string before = Dump(drawing);
  size_t changed = 0;
  for (unsigned int round = 0; round < Rounds(800); ++round) {
    Groups groups{{-1, Reference{pick(handles + 1)}}};
    for (size_t left = pick(5); left > 0; --left) groups.push_back(pieces[pick(pieces.size())]);
    Chain chain = ChainOf(drawing, groups);
    if (pick(16) == 0) chain.emplace_back().type = static_cast<short>(pick(65536));
    const bool wasChanged = Modify(chain).empty();
    changed += wasChanged ? 1 : 0;
    const std::string after = Dump(drawing);
    if (!wasChanged) {
      ASSERT_EQ(after, before) << round;
    }
    before = after;
    if (pick(64) == 0) {
      ads_name name = {static_cast<__int64>(pick(handles)), static_cast<__int64>(pick(2))};
      drawing.NameOf(pick(handles + 1), name);
      static_cast<void>(embedded::DeleteEntity(drawing, name));
      before = Dump(drawing);
    }
  }
  EXPECT_GT(changed, Rounds(800) / 10);
}

}  // namespace
}  // namespace lomlisp::test
