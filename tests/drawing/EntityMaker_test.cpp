#include <tests/drawing/EntityGroups.h>

#include <cmath>
#include <limits>
#include <random>

namespace lomlisp::test {
namespace {

using embedded::Chain;
using embedded::DxfVersion;

const Groups kLine{{0, L"LINE"}, {10, Point{1, 2, 3}}, {11, Point{4, 5, 6}}};

class EntityMakerTest : public HostTest {
 protected:
  std::string Make(const Chain& chain) {
    const auto objection = maker.Make(chain, settings);
    return objection ? *objection : "";
  }
  std::string Make(const Groups& groups) { return Make(ChainOf(drawing, groups)); }

  // Makes in several calls, of which the last one's answer is given.
  std::string MakeAll(const std::vector<Groups>& pieces) {
    std::string answer;
    for (size_t index = 0; index < pieces.size(); ++index) {
      answer = Make(pieces[index]);
      EXPECT_TRUE(answer.empty() || index + 1 == pieces.size()) << index << ": " << answer;
    }
    return answer;
  }

  // What was made, or why not.
  std::string Made(const Groups& groups) {
    const std::string answer = Make(groups);
    return answer.empty() && maker.LastMade() != nullptr ? Line(*maker.LastMade()) : answer;
  }

  // Refused, with the drawing as it was before the pieces.
  void ExpectRefused(const std::vector<Groups>& pieces, const std::string& reason) {
    const std::string before = Dump(drawing);
    EXPECT_EQ(MakeAll(pieces), reason);
    EXPECT_EQ(Dump(drawing), before) << reason;
    EXPECT_FALSE(maker.IsPending());
    EXPECT_EQ(maker.LastMade(), nullptr);
  }

  void UseR12() { drawing.version = DxfVersion::R12; }

  Drawing drawing;
  EntityMaker maker{drawing};
  EntityMaker::Settings settings;
};

// --- What a file holds of an entity ---

TEST_F(EntityMakerTest, EntitiesHaveOwnerMarkersAndTheUsualOrder) {
  const struct {
    Groups groups;
    const char* made;
  } cases[] = {
      {kLine, "0:LINE 100:AcDbEntity 8:0 100:AcDbLine 10:(1 2 3) 11:(4 5 6)"},
      {{{0, L"line"}, {11, Point{4, 5, 6}}, {62, 1LL}, {10, Point{1, 2, 3}}, {8, L"0"}, {39, 2.0}},
       "0:LINE 100:AcDbEntity 8:0 62:1 100:AcDbLine 39:2 10:(1 2 3) 11:(4 5 6)"},
      {{{0, L"ARC"}, {10, Point{}}, {50, 1.0}, {51, 2.0}, {40, 3.0}},
       "0:ARC 100:AcDbEntity 8:0 100:AcDbCircle 10:(0 0 0) 40:3 100:AcDbArc 50:1 51:2"},
      {{{0, L"CIRCLE"}, {40, 3.0}, {10, Point{}}, {210, Point{0, 1, 0}}},
       "0:CIRCLE 100:AcDbEntity 8:0 100:AcDbCircle 10:(0 0 0) 40:3 210:(0 1 0)"},
      {{{0, L"ELLIPSE"}, {10, Point{}}, {11, Point{1, 0, 0}}, {40, 0.5}},
       "0:ELLIPSE 100:AcDbEntity 8:0 100:AcDbEllipse 10:(0 0 0) 11:(1 0 0) 40:0.5 41:0 42:6.283185307179586"},
      {{{0, L"POINT"}, {10, Point{}}}, "0:POINT 100:AcDbEntity 8:0 100:AcDbPoint 10:(0 0 0)"},
      {{{0, L"LWPOLYLINE"}, {10, Point{1, 2, 9}}, {42, 0.5}, {10, Point{3, 4}}, {40, 1.0}, {90, 7LL}},
       "0:LWPOLYLINE 100:AcDbEntity 8:0 100:AcDbPolyline 90:2 70:0 10:(1 2) 42:0.5 10:(3 4) 40:1"},
      {{{0, L"TEXT"}, {10, Point{}}, {40, 2.0}, {1, L"a"}, {73, 1LL}, {72, 1LL}, {11, Point{1, 1, 0}}},
       "0:TEXT 100:AcDbEntity 8:0 100:AcDbText 10:(0 0 0) 40:2 1:a 7:Standard 72:1 11:(1 1 0) 100:AcDbText "
       "73:1"},
      {{{0, L"MTEXT"}, {10, Point{}}, {3, L"a"}, {3, L"b"}, {1, L"c"}},
       "0:MTEXT 100:AcDbEntity 8:0 100:AcDbMText 10:(0 0 0) 40:2.5 3:a 3:b 1:c 7:Standard"},
      {{{0, L"SOLID"}, {10, Point{}}, {11, Point{1, 0, 0}}, {12, Point{0, 1, 0}}},
       "0:SOLID 100:AcDbEntity 8:0 100:AcDbTrace 10:(0 0 0) 11:(1 0 0) 12:(0 1 0) 13:(0 1 0)"},
      {{{0, L"TRACE"}, {10, Point{}}, {11, Point{1, 0, 0}}, {12, Point{0, 1, 0}}, {13, Point{1, 1, 0}}},
       "0:TRACE 100:AcDbEntity 8:0 100:AcDbTrace 10:(0 0 0) 11:(1 0 0) 12:(0 1 0) 13:(1 1 0)"},
      {{{0, L"3DFACE"}, {10, Point{}}, {11, Point{1, 0, 0}}, {12, Point{0, 1, 0}}, {70, 1LL}},
       "0:3DFACE 100:AcDbEntity 8:0 100:AcDbFace 10:(0 0 0) 11:(1 0 0) 12:(0 1 0) 13:(0 1 0) 70:1"},
      {{{0, L"ATTDEF"}, {10, Point{}}, {40, 1.0}, {1, L"a"}, {2, L"T"}, {3, L"p"}},
       "0:ATTDEF 100:AcDbEntity 8:0 100:AcDbText 10:(0 0 0) 40:1 1:a 7:Standard "
       "100:AcDbAttributeDefinition 3:p 2:T 70:0"},
  };
  for (const auto& [groups, made] : cases) EXPECT_EQ(Made(groups), made);
}

TEST_F(EntityMakerTest, TheOwnerIsTheSpaceAndTheHandleTheNext) {
  const uint64_t next = drawing.NextHandle();
  ASSERT_EQ(Make(kLine), "");
  const Object& line = *maker.LastMade();
  EXPECT_EQ(line.handle, next);
  EXPECT_EQ(drawing.Entities().members.back(), &line);
  EXPECT_EQ(line.groups[1], (Group{5, embedded::HandleText(next)}));
  EXPECT_EQ(line.groups[2], (Group{330, Reference{drawing.OwnerOf(drawing.Entities())}}));
  EXPECT_EQ(drawing.TakeChanges(), std::vector<Object*>{maker.LastMade()});

  Groups inPaper = kLine;
  inPaper.push_back({67, 1LL});
  ASSERT_EQ(Make(inPaper), "");
  EXPECT_EQ(ReferenceOf(maker.LastMade()->groups, 330),
            drawing.FindEntry(L"BLOCK_RECORD", L"*Paper_Space")->handle);
}

TEST_F(EntityMakerTest, OldDrawingsHaveNoMarkersOwnersAndNewTypes) {
  UseR12();
  EXPECT_EQ(Made({{0, L"TEXT"},
                  {100, L"AcDbEntity"},
                  {8, L"0"},
                  {100, L"AcDbText"},
                  {10, Point{}},
                  {40, 2.0},
                  {1, L"a"}}),
            "0:TEXT 8:0 10:(0 0 0) 40:2 1:a 7:Standard");
  EXPECT_EQ(Find(maker.LastMade()->groups, 330), nullptr);
  EXPECT_EQ(Made({{0, L"DIMENSION"}, {3, L"standard"}, {10, Point{}}}),
            "0:DIMENSION 8:0 3:standard 10:(0 0 0)");
  for (const wchar_t* type : {L"LWPOLYLINE", L"MTEXT", L"ELLIPSE", L"HATCH"})
    ExpectRefused({{{0, type}, {100, L"AcDbHatch"}, {10, Point{}}}},
                  Utf8(type) + " cannot be in a drawing of this version");
  drawing.hasHandles = false;
  ASSERT_EQ(Make(kLine), "");
  EXPECT_EQ(Find(maker.LastMade()->groups, 5), nullptr);
}

TEST_F(EntityMakerTest, GivenMarkersAreKeptAndCommonGroupsGoToTheEntity) {
  EXPECT_EQ(Made({{0, L"LWPOLYLINE"},
                  {100, L"AcDbEntity"},
                  {100, L"AcDbPolyline"},
                  {8, L"0"},
                  {62, 3LL},
                  {90, 1LL},
                  {10, Point{}}}),
            "0:LWPOLYLINE 100:AcDbEntity 8:0 62:3 100:AcDbPolyline 90:1 70:0 10:(0 0)");
  EXPECT_EQ(Made({{0, L"TEXT"}, {100, L"AcDbText"}, {10, Point{}}, {40, 1.0}, {1, L"a"}, {73, 2LL}}),
            "0:TEXT 100:AcDbEntity 8:0 100:AcDbText 10:(0 0 0) 40:1 1:a 7:Standard 100:AcDbText 73:2");
  EXPECT_EQ(Made({{0, L"POINT"}, {100, L"AcDbPoint"}, {10, Point{}}, {100, L"AcDbMine"}, {40, 1.0}}),
            "0:POINT 100:AcDbEntity 8:0 100:AcDbPoint 10:(0 0 0) 100:AcDbMine 40:1");
  EXPECT_EQ(
      Made({{0, L"SPLINE"}, {62, 1LL}, {100, L"AcDbEntity"}, {100, L"AcDbSpline"}, {71, 3LL}, {62, 5LL}}),
      "0:SPLINE 100:AcDbEntity 8:0 62:1 100:AcDbSpline 71:3 62:5");
  EXPECT_EQ(Made({{0, L"HATCH"},
                  {100, L"AcDbHatch"},
                  {10, Point{0, 0, 5}},
                  {2, L"SOLID"},
                  {91, 1LL},
                  {10, Point{1, 1, 0}},
                  {10, Point{2, 1, 0}},
                  {97, 1LL},
                  {330, Reference{1}}}),
            "0:HATCH 100:AcDbEntity 8:0 100:AcDbHatch 10:(0 0 5) 2:SOLID 91:1 10:(1 1) 10:(2 1) 97:1");
  EXPECT_EQ(maker.LastMade()->groups.back(), (Group{330, Reference{1}}));
}

TEST_F(EntityMakerTest, OtherTypesNeedMarkersAndUnknownOnesAreRefused) {
  for (const wchar_t* type : {L"HATCH", L"SPLINE", L"DIMENSION", L"LEADER", L"3DSOLID", L"XLINE"})
    for (const Groups& groups :
         {Groups{{0, type}, {10, Point{}}}, Groups{{0, type}, {100, L"AcDbEntity"}, {10, Point{}}}})
      ExpectRefused({groups}, Utf8(type) + " needs its class markers (group 100)");
  for (const wchar_t* type : {L"", L"FOO", L"DICTIONARY", L"XRECORD", L"VIEWPORT", L"BLOCK_RECORD", L"VPORT",
                              L"TABLE", L"ENDSEC", L"LAYOUT"})
    ExpectRefused({{{0, type}, {100, L"AcDbThing"}, {2, L"x"}}},
                  "entities of type \"" + Utf8(type) + "\" cannot be made");
}

TEST_F(EntityMakerTest, WhatACallerCannotSetIsIgnored) {
  const uint64_t next = drawing.NextHandle();
  EXPECT_EQ(Made({{-1, Reference{7}},
                  {330, Reference{1}},
                  {5, L"1"},
                  {0, L"POINT"},
                  {105, L"2"},
                  {102, L"{ACAD_REACTORS"},
                  {330, Reference{3}},
                  {360, Reference{4}},
                  {102, L"}"},
                  {330, Reference{5}},
                  {10, Point{}}}),
            "0:POINT 100:AcDbEntity 8:0 100:AcDbPoint 10:(0 0 0)");
  EXPECT_EQ(maker.LastMade()->handle, next);
  Drawing other;
  Chain chain = ChainOf(drawing, kLine);
  embedded::Chain named = ChainOf(other, {{-1, Reference{1}}});
  chain.insert(chain.begin(), named.begin(), named.end());
  EXPECT_EQ(Make(chain), "");
}

TEST_F(EntityMakerTest, AnEmbeddedObjectFollowsAsItIs) {
  EXPECT_EQ(Made({{0, L"MTEXT"},
                  {100, L"AcDbMText"},
                  {1, L"a"},
                  {10, Point{}},
                  {101, L"Embedded Object"},
                  {70, 1LL},
                  {10, Point{1, 0, 0}}}),
            "0:MTEXT 100:AcDbEntity 8:0 100:AcDbMText 10:(0 0 0) 40:2.5 1:a 7:Standard "
            "101:Embedded Object 70:1 10:(1 0 0)");
}

TEST_F(EntityMakerTest, DrawingsWithoutTablesGetEntitiesButNoEntries) {
  Drawing bare{Drawing::Empty()};
  bare.version = DxfVersion::R12;
  EntityMaker bareMaker(bare);
  EXPECT_EQ(bareMaker.Make(ChainOf(bare, {{0, L"LAYER"}, {2, L"A"}}), settings),
            "the drawing has no table LAYER");
  EXPECT_EQ(
      bareMaker.Make(ChainOf(bare, {{0, L"TEXT"}, {8, L"A"}, {10, Point{}}, {40, 1.0}, {1, L"a"}}), settings),
      std::nullopt);
  EXPECT_EQ(Line(*bareMaker.LastMade()), "0:TEXT 8:A 10:(0 0 0) 40:1 1:a");
  for (const Groups& piece : {Groups{{0, L"BLOCK"}, {2, L"B"}, {10, Point{}}}, Groups{{0, L"ENDBLK"}}})
    EXPECT_EQ(bareMaker.Make(ChainOf(bare, piece), settings), std::nullopt);
  bare.version = DxfVersion::R2018;
  EXPECT_EQ(bareMaker.Make(ChainOf(bare, kLine), settings), std::nullopt);
  EXPECT_EQ(Find(bareMaker.LastMade()->groups, 330), nullptr);
}

TEST_F(EntityMakerTest, DefaultsAreNotStoredAndOfRepeatedGroupsTheLastCounts) {
  EXPECT_EQ(Made({{0, L"POINT"},
                  {6, L"ByLayer"},
                  {62, 256LL},
                  {39, 0.0},
                  {48, 1.0},
                  {60, 0LL},
                  {10, Point{}},
                  {10, Point{1, 0, 0}}}),
            "0:POINT 100:AcDbEntity 8:0 100:AcDbPoint 10:(1 0 0)");
  EXPECT_EQ(Made({{0, L"POINT"}, {6, L"byblock"}, {62, 0LL}, {39, 1.0}, {48, 2.0}, {60, 1LL}, {10, Point{}}}),
            "0:POINT 100:AcDbEntity 8:0 6:byblock 62:0 48:2 60:1 100:AcDbPoint 10:(0 0 0) 39:1");
}

// --- Refusals ---

TEST_F(EntityMakerTest, RecordsThatAreNoGroupsAreRefused) {
  const Chain good = ChainOf(drawing, kLine);
  const auto with = [&](short type) {
    Chain chain = good;
    chain.emplace_back().type = type;
    return chain;
  };
  const struct {
    short type;
    const char* reason;
  } cases[] = {
      {RTLB, "a bracket or a dot among the groups"},    {RTLE, "a bracket or a dot among the groups"},
      {RTDOTE, "a bracket or a dot among the groups"},  {RTPOINT, "a point without a group code"},
      {RT3DPOINT, "a point without a group code"},      {RTNIL, "nil among the groups"},
      {RTSTR, "a record that is no group (type 5005)"}, {RTREAL, "a record that is no group (type 5001)"},
      {RTT, "a record that is no group (type 5021)"},   {-4, "group -4: belongs to filters alone"},
      {1, "a group without a text (type 1)"},           {80, "a record that is no group (type 80)"},
  };
  const std::string before = Dump(drawing);
  for (const auto& [type, reason] : cases) EXPECT_EQ(Make(with(type)), reason);
  EXPECT_EQ(Make(Chain()), "group 0, the type, must come first");
  EXPECT_EQ(Dump(drawing), before);
  Chain typed = good;
  typed[0].type = RTDXF0;
  EXPECT_EQ(Make(typed), "");
}

TEST_F(EntityMakerTest, GroupsOutOfFormAreRefused) {
  const auto with = [](const Groups& groups) {
    Groups all = kLine;
    all.insert(all.end(), groups.begin(), groups.end());
    return all;
  };
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinite = std::numeric_limits<double>::infinity();
  const struct {
    Groups groups;
    const char* reason;
  } cases[] = {
      {{{8, L"0"}, {0, L"LINE"}}, "group 0, the type, must come first"},
      {with({{0, L"LINE"}}), "group 0: given twice"},
      {with({{39, nan}}), "group 39: no finite number"},
      {with({{48, infinite}}), "group 48: no finite number"},
      {with({{210, Point{0, 0, nan}}}), "group 210: no finite number"},
      {with({{210, Point{}}}), "group 210: a direction without a length"},
      {with({{102, L"{A"}}), "group 102: the brackets do not balance"},
      {with({{102, L"}"}}), "group 102: the brackets do not balance"},
      {with({{102, L"{A"}, {102, L"{B"}, {102, L"}"}}), "group 102: the brackets do not balance"},
      {with({{310, L"ABC"}}), "group 310: no hexadecimal digits of whole bytes"},
      {with({{62, 257LL}}), "group 62: no color has the number 257"},
      {with({{62, -1LL}}), "group 62: no color has the number -1"},
      {with({{370, 17LL}}), "group 370: no line weight has the number 17"},
      {with({{1000, L"a"}}), "group 1000: stands outside of the extended data (-3)"},
      {with({{1001, L"ACAD"}}), "group 1001: stands outside of the extended data (-3)"},
      {with({{-3, 0LL}, {1000, L"a"}}), "group 1000: stands before its application (1001)"},
      {with({{-3, 0LL}, {1001, L"ACAD"}, {-3, 0LL}}), "group -3: given twice"},
      {with({{-3, 0LL}, {1001, L"ACAD"}, {1001, L"acad"}}),
       "group 1001: the application \"acad\" given twice"},
      {with({{-3, 0LL}, {1001, L"NOPE"}, {1000, L"a"}}),
       "group 1001: the application \"NOPE\" is not registered"},
      {with({{-3, 0LL}, {1001, L"ACAD"}, {1002, L"{"}}), "group 1002: the braces do not balance"},
      {with({{-3, 0LL}, {1001, L"ACAD"}, {1002, L"}"}, {1002, L"{"}}),
       "group 1002: the braces do not balance"},
      {with({{-3, 0LL}, {1001, L"ACAD"}, {1002, L"("}}), "group 1002: neither { nor }"},
      {with({{-3, 0LL}, {1001, L"ACAD"}, {1005, L"xyz"}}), "group 1005: no handle"},
      {with({{-3, 0LL}, {1001, L"ACAD"}, {1004, L"0g"}}), "group 1004: no hexadecimal digits of whole bytes"},
      {with({{-3, 0LL}, {1001, L"ACAD"}, {1040, nan}}), "group 1040: no finite number"},
      {with({{-3, 0LL}, {1001, L"ACAD"}, {1006, L"a"}}), "group 1006: no group of extended data"},
      {with({{8, L""}}), "group 8: a layer cannot have the name \"\""},
      {with({{6, L"DASHED"}}), "group 6: there is no line type \"DASHED\""},
      {{{0, L"TEXT"}, {10, Point{}}, {40, 1.0}, {1, L"a"}, {7, L"Roman"}},
       "group 7: there is no text style \"Roman\""},
      {{{0, L"INSERT"}, {10, Point{}}, {2, L"Door"}}, "group 2: there is no block \"Door\""},
      {{{0, L"INSERT"}, {10, Point{}}, {2, L"*Model_Space"}}, "group 2: a space cannot be inserted"},
      {{{0, L"DIMENSION"}, {100, L"AcDbDimension"}, {3, L"Mine"}},
       "group 3: there is no dimension style \"Mine\""},
      {{{0, L"LWPOLYLINE"}, {42, 1.0}, {10, Point{}}}, "group 42: stands before the first vertex (10)"},
      {{{0, L"ELLIPSE"}, {10, Point{}}, {11, Point{}}, {40, 1.0}}, "group 11: a direction without a length"},
  };
  for (const auto& [groups, reason] : cases) ExpectRefused({groups}, reason);
  for (const wchar_t letter : std::wstring(L"<>/\\\":;?*|,=`\n\x7F"))
    ExpectRefused({with({{8, std::wstring(L"a") + letter}})},
                  "group 8: a layer cannot have the name \"" + Utf8(std::wstring(L"a") + letter) + "\"");
}

TEST_F(EntityMakerTest, EachRequiredGroupIsMissed) {
  const Group p10{10, Point{}};
  const Group p11{11, Point{1, 0, 0}};
  const Group p12{12, Point{1, 1, 0}};
  const Groups whole[] = {
      {{0, L"LINE"}, p10, p11},
      {{0, L"ARC"}, p10, {40, 1.0}, {50, 0.0}, {51, 1.0}},
      {{0, L"CIRCLE"}, p10, {40, 1.0}},
      {{0, L"ELLIPSE"}, p10, p11, {40, 1.0}},
      {{0, L"POINT"}, p10},
      {{0, L"LWPOLYLINE"}, p10},
      {{0, L"TEXT"}, p10, {40, 1.0}, {1, L""}},
      {{0, L"MTEXT"}, p10, {1, L""}},
      {{0, L"SOLID"}, p10, p11, p12},
      {{0, L"TRACE"}, p10, p11, p12},
      {{0, L"3DFACE"}, p10, p11, p12},
      {{0, L"ATTDEF"}, p10, {40, 1.0}, {1, L""}, {2, L"T"}, {3, L""}},
      {{0, L"BLOCK"}, p10, {2, L"B"}},
      {{0, L"LAYER"}, {2, L"A"}},
  };
  for (const Groups& groups : whole) {
    const std::string type = ValueText(groups[0].value);
    for (size_t left = 1; left < groups.size(); ++left) {
      Groups some = groups;
      some.erase(some.begin() + static_cast<std::ptrdiff_t>(left));
      const std::string reason = "group " + std::to_string(groups[left].code) + ": missing";
      ExpectRefused({some}, type == "LAYER" ? reason : reason + ", " + type + " needs it");
      if (groups[left].code != 40 || type == "ARC") continue;
      some.push_back({40, 0.0});
      ExpectRefused({some}, "group 40: must be greater than zero");
    }
    EXPECT_EQ(Make(groups), "") << type;
    maker.Cancel();
  }
}

// --- Layers, extended data, entries ---

TEST_F(EntityMakerTest, TheLayerComesFromTheSettingsAndIsMade) {
  settings.layer = L"Wände";
  EXPECT_EQ(Made(kLine), Utf8(L"0:LINE 100:AcDbEntity 8:Wände 100:AcDbLine 10:(1 2 3) 11:(4 5 6)"));
  const Object* layer = drawing.FindEntry(L"LAYER", L"WÄNDE");
  ASSERT_NE(layer, nullptr);
  EXPECT_EQ(Line(*layer), Utf8(L"0:LAYER 100:AcDbSymbolTableRecord 100:AcDbLayerTableRecord 2:Wände 70:0 "
                               L"62:7 6:Continuous"));
  const size_t layers = drawing.FindTable(L"LAYER")->entries.size();
  ASSERT_EQ(Make({{0, L"POINT"}, {10, Point{}}, {8, L"wÄNDE"}}), "");
  EXPECT_EQ(drawing.FindTable(L"LAYER")->entries.size(), layers);
  // A name that no new layer can have is good for one that there is.
  drawing.NewEntry(L"LAYER", L"plan|walls", {{70, 0LL}});
  EXPECT_EQ(Make({{0, L"POINT"}, {10, Point{}}, {8, L"Plan|Walls"}}), "");
}

TEST_F(EntityMakerTest, ExtendedDataAreAttachedToRegisteredApplications) {
  ASSERT_EQ(Make({{0, L"APPID"}, {2, L"Mine"}}), "");
  EXPECT_EQ(Made({{0, L"POINT"},
                  {10, Point{}},
                  {-3, 0LL},
                  {1001, L"MINE"},
                  {1000, L"a"},
                  {1002, L"{"},
                  {1040, 1.5},
                  {1002, L"}"},
                  {1071, 70000LL},
                  {1005, L"1F"},
                  {1001, L"ACAD"},
                  {62, 1LL}}),
            "0:POINT 100:AcDbEntity 8:0 62:1 100:AcDbPoint 10:(0 0 0) | MINE 1000:a 1002:{ 1040:1.5 1002:} "
            "1071:70000 1005:1F");
}

TEST_F(EntityMakerTest, EntriesOfTablesAreMadeWithTheirDefaults) {
  const struct {
    Groups groups;
    const char* made;
  } cases[] = {
      {{{0, L"layer"}, {2, L"A"}, {62, -5LL}},
       "0:LAYER 100:AcDbSymbolTableRecord 100:AcDbLayerTableRecord 2:A 70:0 62:-5 6:Continuous"},
      {{{0, L"LTYPE"}, {100, L"AcDbSymbolTableRecord"}, {2, L"Dash"}, {73, 1LL}, {49, 1.0}, {74, 0LL}},
       "0:LTYPE 100:AcDbSymbolTableRecord 100:AcDbLinetypeTableRecord 2:Dash 70:0 3: 72:65 73:1 40:0 49:1 "
       "74:0"},
      {{{0, L"STYLE"}, {2, L"Roman"}, {3, L"romans"}},
       "0:STYLE 100:AcDbSymbolTableRecord 100:AcDbTextStyleTableRecord 2:Roman 70:0 40:0 41:1 50:0 71:0 "
       "42:2.5 3:romans 4:"},
      {{{0, L"APPID"}, {2, L"Mine"}},
       "0:APPID 100:AcDbSymbolTableRecord 100:AcDbRegAppTableRecord 2:Mine 70:0"},
      {{{0, L"UCS"}, {2, L"Side"}, {10, Point{1, 2, 3}}},
       "0:UCS 100:AcDbSymbolTableRecord 100:AcDbUCSTableRecord 2:Side 70:0 10:(1 2 3) 11:(1 0 0) 12:(0 1 0)"},
      {{{0, L"DIMSTYLE"}, {2, L"Mine"}, {105, L"1"}, {140, 3.5}},
       "0:DIMSTYLE 100:AcDbSymbolTableRecord 100:AcDbDimStyleTableRecord 2:Mine 70:0 140:3.5"},
      {{{0, L"VIEW"}, {2, L"All"}},
       "0:VIEW 100:AcDbSymbolTableRecord 100:AcDbViewTableRecord 2:All 70:0 40:1 10:(0 0) 41:1 11:(0 0 1) "
       "12:(0 0 0) 42:50 43:0 44:0 50:0 71:0"},
  };
  for (const auto& [groups, made] : cases) {
    EXPECT_EQ(Made(groups), made);
    EXPECT_EQ(drawing.FindEntry(TextOf(maker.LastMade()->groups, 0), TextOf(groups, 2)), maker.LastMade());
  }
  EXPECT_NE(Find(maker.LastMade()->groups, 5), nullptr);
  ExpectRefused({{{0, L"LAYER"}, {2, L"a"}}}, "group 2: there is an entry \"a\" of LAYER");
  ExpectRefused({{{0, L"LAYER"}, {2, L"a*"}}}, "group 2: \"a*\" is no name for an entry of LAYER");
  ExpectRefused({{{0, L"LAYER"}, {2, L"b"}, {6, L"None"}}}, "group 6: there is no line type \"None\"");
  ExpectRefused({{{0, L"LAYER"}, {2, L"b"}, {62, 256LL}}}, "group 62: no color has the number 256");
  ExpectRefused({{{0, L"LAYER"}, {2, L"b"}, {102, L"{"}}}, "group 102: the brackets do not balance");
}

// --- Several calls ---

const Groups kSeqEnd{{0, L"SEQEND"}};

Groups Vertex(double x, Groups more = {}) {
  Groups groups{{0, L"VERTEX"}, {10, Point{x, 0, 0}}};
  groups.insert(groups.end(), more.begin(), more.end());
  return groups;
}

TEST_F(EntityMakerTest, APolylineIsInTheDrawingWithItsSeqend) {
  ASSERT_EQ(MakeAll({{{0, L"POLYLINE"}, {8, L"Walls"}, {70, 1LL}}, Vertex(1, {{42, 0.5}}), Vertex(2)}), "");
  EXPECT_TRUE(maker.IsPending());
  EXPECT_EQ(maker.LastMade(), nullptr);
  EXPECT_TRUE(drawing.Entities().members.empty());
  EXPECT_EQ(drawing.FindEntry(L"LAYER", L"Walls"), nullptr);
  ASSERT_EQ(Make(kSeqEnd), "");
  EXPECT_FALSE(maker.IsPending());

  const Object& header = *maker.LastMade();
  EXPECT_EQ(drawing.Entities().members, std::vector<Object*>{maker.LastMade()});
  EXPECT_EQ(Line(header), "0:POLYLINE 100:AcDbEntity 8:Walls 100:AcDb2dPolyline 66:1 10:(0 0 0) 70:1");
  ASSERT_EQ(header.parts.size(), 3u);
  EXPECT_EQ(Line(*header.parts[0]),
            "0:VERTEX 100:AcDbEntity 8:Walls 100:AcDbVertex 100:AcDb2dVertex 10:(1 0 0) 42:0.5");
  EXPECT_EQ(Line(*header.parts[2]), "0:SEQEND 100:AcDbEntity 8:Walls");
  for (const Object* part : header.parts) {
    EXPECT_EQ(part->header, &header);
    EXPECT_EQ(part->groups[2], (Group{330, Reference{header.handle}}));
    EXPECT_GT(part->handle, header.handle);
  }
  EXPECT_NE(drawing.FindEntry(L"LAYER", L"Walls"), nullptr);
}

TEST_F(EntityMakerTest, VerticesAreOfTheClassOfTheirPolyline) {
  const struct {
    long long flags;
    Groups vertex;
    const char* header;
    const char* made;
  } cases[] = {
      {8, Vertex(1), "AcDb3dPolyline", "100:AcDbVertex 100:AcDb3dPolylineVertex 10:(1 0 0) 70:32"},
      {16, Vertex(1), "AcDbPolygonMesh", "100:AcDbVertex 100:AcDbPolygonMeshVertex 10:(1 0 0) 70:64"},
      {64, Vertex(1), "AcDbPolyFaceMesh", "100:AcDbVertex 100:AcDbPolyFaceMeshVertex 10:(1 0 0) 70:192"},
      {64,
       {{0, L"VERTEX"}, {71, 1LL}, {72, 2LL}},
       "AcDbPolyFaceMesh",
       "100:AcDbFaceRecord 10:(0 0 0) 70:128 71:1 72:2"},
      {64, Vertex(0, {{70, 128LL}, {71, -1LL}}), "AcDbPolyFaceMesh",
       "100:AcDbFaceRecord 10:(0 0 0) 70:128 71:-1"},
  };
  for (const auto& [flags, vertex, header, made] : cases) {
    ASSERT_EQ(MakeAll({{{0, L"POLYLINE"}, {70, flags}}, vertex, kSeqEnd}), "");
    EXPECT_EQ(Line(*maker.LastMade()), std::string("0:POLYLINE 100:AcDbEntity 8:0 100:") + header +
                                           " 66:1 10:(0 0 0) 70:" + std::to_string(flags));
    EXPECT_EQ(Line(*maker.LastMade()->parts[0]), std::string("0:VERTEX 100:AcDbEntity 8:0 ") + made);
  }
  UseR12();
  ASSERT_EQ(MakeAll({{{0, L"POLYLINE"}, {70, 8LL}}, Vertex(1), kSeqEnd}), "");
  EXPECT_EQ(Line(*maker.LastMade()->parts[0]), "0:VERTEX 8:0 10:(1 0 0) 70:32");
  EXPECT_EQ(Line(*maker.LastMade()), "0:POLYLINE 8:0 66:1 10:(0 0 0) 70:8");
}

Groups Block(const wchar_t* name, Groups more = {}) {
  Groups groups{{0, L"BLOCK"}, {2, name}, {10, Point{}}};
  groups.insert(groups.end(), more.begin(), more.end());
  return groups;
}
const Groups kEndBlock{{0, L"ENDBLK"}};
Groups Insert(const wchar_t* name, Groups more = {}) {
  Groups groups{{0, L"INSERT"}, {2, name}, {10, Point{}}};
  groups.insert(groups.end(), more.begin(), more.end());
  return groups;
}
const Groups kAttribute{{0, L"ATTRIB"}, {10, Point{}}, {40, 1.0}, {1, L"12"}, {2, L"NO"}};

TEST_F(EntityMakerTest, ABlockIsDefinedWithItsEndblk) {
  ASSERT_EQ(MakeAll({Block(L"Door", {{8, L"Doors"}}), kLine, {{0, L"POLYLINE"}}, Vertex(1), kSeqEnd}), "");
  EXPECT_EQ(drawing.FindBlock(L"Door"), nullptr);
  EXPECT_EQ(drawing.FindEntry(L"LAYER", L"Doors"), nullptr);
  ASSERT_EQ(Make(kEndBlock), "");
  const auto* block = drawing.FindBlock(L"DOOR");
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(maker.LastMade(), block->begin);
  const Object* record = drawing.FindEntry(L"BLOCK_RECORD", L"Door");
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(
      Line(*record),
      "0:BLOCK_RECORD 100:AcDbSymbolTableRecord 100:AcDbBlockTableRecord 2:Door 340:#0 70:0 280:1 281:0");
  EXPECT_EQ(Line(*block->begin),
            "0:BLOCK 100:AcDbEntity 8:Doors 100:AcDbBlockBegin 2:Door 70:0 10:(0 0 0) "
            "3:Door 1:");
  EXPECT_EQ(Line(*block->end), "0:ENDBLK 100:AcDbEntity 8:0 100:AcDbBlockEnd");
  ASSERT_EQ(block->content.members.size(), 2u);
  EXPECT_EQ(block->content.members[1]->parts.size(), 2u);
  for (const Object* object :
       {block->begin, block->end, block->content.members[0], block->content.members[1]})
    EXPECT_EQ(object->groups[2], (Group{330, Reference{record->handle}}));
  EXPECT_TRUE(drawing.Entities().members.empty());
}

TEST_F(EntityMakerTest, OldBlocksHaveNoRecord) {
  UseR12();
  ASSERT_EQ(MakeAll({Block(L"Door"), kLine, kEndBlock}), "");
  EXPECT_EQ(drawing.FindEntry(L"BLOCK_RECORD", L"Door"), nullptr);
  EXPECT_EQ(Line(*maker.LastMade()), "0:BLOCK 8:0 2:Door 70:0 10:(0 0 0) 3:Door 1:");
}

TEST_F(EntityMakerTest, AttributeDefinitionsAreToldInTheBlock) {
  const Groups definition{{0, L"ATTDEF"}, {10, Point{}}, {40, 1.0}, {1, L""}, {2, L"NO"}, {3, L"number"}};
  ASSERT_EQ(MakeAll({Block(L"Door"), definition, kEndBlock}), "");
  EXPECT_EQ(IntegerOf(maker.LastMade()->groups, 70), 2);
  Groups constant = definition;
  constant.push_back({70, 2LL});
  ASSERT_EQ(MakeAll({Block(L"Fixed"), constant, kEndBlock}), "");
  EXPECT_EQ(IntegerOf(maker.LastMade()->groups, 70), 0);
}

TEST_F(EntityMakerTest, AnInsertTakesAttributesWhenItSaysSo) {
  ASSERT_EQ(MakeAll({Block(L"Door"), kLine, kEndBlock}), "");
  EXPECT_EQ(Made(Insert(L"door")), "0:INSERT 100:AcDbEntity 8:0 100:AcDbBlockReference 2:door 10:(0 0 0)");
  EXPECT_EQ(Made(Insert(L"Door", {{70, 3LL}, {44, 5.0}})),
            "0:INSERT 100:AcDbEntity 8:0 100:AcDbMInsertBlock 2:Door 10:(0 0 0) 70:3 44:5");
  ASSERT_EQ(MakeAll({Insert(L"Door", {{66, 1LL}}), kAttribute, kSeqEnd}), "");
  const Object& insert = *maker.LastMade();
  EXPECT_EQ(Line(insert), "0:INSERT 100:AcDbEntity 8:0 100:AcDbBlockReference 66:1 2:Door 10:(0 0 0)");
  ASSERT_EQ(insert.parts.size(), 2u);
  EXPECT_EQ(Line(*insert.parts[0]),
            "0:ATTRIB 100:AcDbEntity 8:0 100:AcDbText 10:(0 0 0) 40:1 1:12 7:Standard "
            "100:AcDbAttribute 2:NO 70:0");
  EXPECT_EQ(drawing.Entities().members.size(), 3u);
}

TEST_F(EntityMakerTest, ARefusalInTheMiddleDropsTheWhole) {
  ASSERT_EQ(MakeAll({Block(L"Door"), kLine, kEndBlock}), "");
  const Groups polyline{{0, L"POLYLINE"}, {8, L"New"}};
  const Groups insert = Insert(L"Door", {{66, 1LL}});
  const struct {
    std::vector<Groups> pieces;
    const char* reason;
  } cases[] = {
      {{Vertex(1)}, "VERTEX without its header"},
      {{kAttribute}, "ATTRIB without its header"},
      {{kSeqEnd}, "SEQEND without its header"},
      {{kEndBlock}, "ENDBLK without its BLOCK"},
      {{polyline, kSeqEnd}, "POLYLINE needs a VERTEX"},
      {{polyline, Vertex(1), kLine}, "behind POLYLINE only VERTEX and SEQEND can follow, not LINE"},
      {{polyline, Vertex(1), kAttribute}, "behind POLYLINE only VERTEX and SEQEND can follow, not ATTRIB"},
      {{polyline, polyline}, "behind POLYLINE only VERTEX and SEQEND can follow, not POLYLINE"},
      {{polyline, Vertex(1), {{0, L"VERTEX"}}}, "group 10: missing, VERTEX needs it"},
      {{polyline, Vertex(1), {{8, L"0"}}}, "group 0, the type, must come first"},
      {{insert, Vertex(1)}, "behind INSERT only ATTRIB and SEQEND can follow, not VERTEX"},
      {{insert, kAttribute, kLine}, "behind INSERT only ATTRIB and SEQEND can follow, not LINE"},
      {{Block(L"New"), Block(L"Other")}, "BLOCK cannot be in a BLOCK"},
      {{Block(L"New"), {{0, L"LAYER"}, {2, L"A"}}}, "LAYER cannot be in a BLOCK"},
      {{Block(L"New"), Insert(L"New")}, "group 2: there is no block \"New\""},
      {{Block(L"New"), kLine, polyline, kEndBlock},
       "behind POLYLINE only VERTEX and SEQEND can follow, not "
       "ENDBLK"},
      {{Block(L"Door"), Insert(L"Door"), kEndBlock}, "the block \"Door\" would contain itself"},
      {{Block(L"*Model_Space")}, "group 2: a block cannot have the name \"*Model_Space\""},
      {{Block(L"a|b")}, "group 2: a block cannot have the name \"a|b\""},
      {{Block(L"*Ux")}, "group 2: a block cannot have the name \"*Ux\""},
      {{Block(L"*")}, "group 2: a block cannot have the name \"*\""},
  };
  for (const auto& [pieces, reason] : cases) ExpectRefused(pieces, reason);
  // What follows begins anew.
  EXPECT_EQ(Make(kLine), "");
}

TEST_F(EntityMakerTest, CancelDropsWhatIsPending) {
  const std::string before = Dump(drawing);
  ASSERT_EQ(MakeAll({Block(L"Door"), {{0, L"POLYLINE"}}, Vertex(1)}), "");
  maker.Cancel();
  EXPECT_FALSE(maker.IsPending());
  EXPECT_EQ(Dump(drawing), before);
  EXPECT_EQ(Make(kLine), "");
}

TEST_F(EntityMakerTest, ABlockOfTheSameNameIsDefinedAnew) {
  ASSERT_EQ(MakeAll({Block(L"Door"), kLine, {{0, L"POLYLINE"}}, Vertex(1), kSeqEnd, kEndBlock}), "");
  Object* const begin = maker.LastMade();
  const auto* block = drawing.FindBlock(L"Door");
  const std::vector<Object*> old = block->content.members;
  const size_t blocks = drawing.Blocks().size();
  ASSERT_EQ(MakeAll({Block(L"DOOR", {{8, L"New"}}), {{0, L"POINT"}, {10, Point{}}}, kEndBlock}), "");
  EXPECT_EQ(drawing.FindBlock(L"Door"), block);
  EXPECT_EQ(drawing.Blocks().size(), blocks);
  EXPECT_EQ(maker.LastMade(), begin);
  EXPECT_EQ(TextOf(begin->groups, 8), L"New");
  EXPECT_EQ(TextOf(begin->groups, 5), embedded::HandleText(begin->handle));
  ASSERT_EQ(block->content.members.size(), 1u);
  EXPECT_EQ(block->content.members[0]->Type(), L"POINT");
  for (const Object* entity : old) {
    EXPECT_TRUE(entity->isErased);
    EXPECT_EQ(entity->list, nullptr);
  }
}

TEST_F(EntityMakerTest, BlocksThatContainEachOtherAreRefused) {
  ASSERT_EQ(MakeAll({Block(L"A"), kLine, kEndBlock}), "");
  ASSERT_EQ(MakeAll({Block(L"B"), Insert(L"A"), kEndBlock}), "");
  ASSERT_EQ(MakeAll({Block(L"C"), Insert(L"B"), Insert(L"A"), kEndBlock}), "");
  ExpectRefused({Block(L"A"), kLine, Insert(L"C"), kEndBlock}, "the block \"A\" would contain itself");
  EXPECT_EQ(MakeAll({Block(L"C"), Insert(L"A"), kEndBlock}), "");
}

TEST_F(EntityMakerTest, AnonymousBlocksGetTheNextFreeNumber) {
  ASSERT_EQ(MakeAll({Block(L"*U"), kLine, kEndBlock}), "");
  EXPECT_EQ(TextOf(maker.LastMade()->groups, 2), L"*U1");
  EXPECT_EQ(TextOf(maker.LastMade()->groups, 3), L"*U1");
  EXPECT_EQ(IntegerOf(maker.LastMade()->groups, 70), 1);
  ASSERT_EQ(MakeAll({Block(L"*u1", {{70, 1LL}}), kEndBlock}), "");
  EXPECT_EQ(TextOf(maker.LastMade()->groups, 2), L"*U2");
  EXPECT_NE(drawing.FindEntry(L"BLOCK_RECORD", L"*U2"), nullptr);
  EXPECT_EQ(Make(Insert(L"*U1")), "");
  EXPECT_EQ(MakeAll({Block(L"*U1"), Insert(L"*U1"), kEndBlock}), "");
}

// --- Robustness ---

TEST_F(EntityMakerTest, ALongPolylineIsMadeInLinearTime) {
  Groups groups{{0, L"LWPOLYLINE"}};
  for (int index = 0; index < kLarge / 50; ++index) {
    groups.push_back({10, Point{double(index), 0, 0}});
    groups.push_back({42, 0.5});
  }
  ASSERT_EQ(Make(groups), "");
  EXPECT_EQ(IntegerOf(maker.LastMade()->groups, 90), kLarge / 50);
}

TEST_F(EntityMakerTest, RandomPiecesNeverCrashAndRefusalsChangeNothing) {
  std::mt19937 random(4711);
  const auto pick = [&](size_t count) { return static_cast<size_t>(random() % count); };
  const std::vector<Groups> pieces = {kLine,
                                      {{0, L"POLYLINE"}},
                                      Vertex(1),
                                      Vertex(2, {{70, 128LL}}),
                                      kSeqEnd,
                                      kSeqEnd,
                                      Block(L"A"),
                                      Block(L"B"),
                                      Block(L"*U"),
                                      kEndBlock,
                                      kEndBlock,
                                      Insert(L"A"),
                                      Insert(L"B"),
                                      Insert(L"A", {{66, 1LL}}),
                                      kAttribute,
                                      Vertex(3),
                                      {{0, L"LAYER"}, {2, L"L"}},
                                      {{0, L"HATCH"}, {10, Point{}}},
                                      {{0, L"POINT"}},
                                      {{0, L"LWPOLYLINE"}, {10, Point{}}, {42, 1.0}},
                                      {{0, L"TEXT"}, {10, Point{}}, {40, 1.0}, {1, L"x"}}};
  const short rubbish[] = {RTLB, RTLE, RTNIL, RTSTR, RT3DPOINT, RTPICKS, -5,   -4,   -3,    -2,    -1,
                           0,    1,    2,     5,     6,         8,       10,   19,   40,    62,    66,
                           67,   70,   90,    100,   101,       102,     105,  210,  310,   330,   360,
                           420,  999,  1000,  1001,  1002,      1005,    1010, 1071, 32767, -32768};
  const auto soil = [&](Chain& chain) {
    embedded::Record record;
    record.type = rubbish[pick(std::size(rubbish))];
    record.hasText = pick(4) != 0;
    record.text = std::wstring(pick(3), L"{}A*"[pick(4)]);
    record.value.rlname[0] = static_cast<__int64>(pick(200));
    record.value.rlname[1] = static_cast<__int64>(pick(3));
    chain.insert(chain.begin() + static_cast<std::ptrdiff_t>(pick(chain.size() + 1)), record);
  };
  size_t made = 0;
  size_t refused = 0;
  for (unsigned int round = 0; round < Rounds(10); ++round) {
    Drawing fresh;
    if (round % 2 == 0) fresh.version = DxfVersion::R12;
    EntityMaker freshMaker(fresh);
    std::string before = Dump(fresh);
    for (int call = 0; call < 100; ++call) {
      Chain chain = ChainOf(fresh, pieces[pick(pieces.size())]);
      for (size_t left = pick(4) == 0 ? pick(4) : 0; left > 0; --left) soil(chain);
      if (pick(8) == 0) chain.erase(chain.begin() + static_cast<std::ptrdiff_t>(pick(chain.size())));
      const auto objection = freshMaker.Make(chain, settings);
      if (freshMaker.LastMade() != nullptr) {
        EXPECT_EQ(objection, std::nullopt);
        EXPECT_FALSE(Read(fresh, *freshMaker.LastMade()).empty());
        before = Dump(fresh);
        ++made;
      } else {
        refused += objection ? 1 : 0;
        ASSERT_EQ(Dump(fresh), before) << round << " " << call;
      }
    }
  }
  EXPECT_GT(made, Rounds(50));
  EXPECT_GT(refused, Rounds(100));
}

}  // namespace
}  // namespace lomlisp::test
