// What a file becomes in the drawing, and that it comes back as it was.
#include <tests/dxf/Files.h>
#include <tests/support/HostTest.h>

#include <algorithm>

namespace lomlisp::test {
namespace {

using embedded::DxfVersion;
using embedded::Point;
using embedded::Reference;

// The groups of the first entity.
Groups FirstEntity(const std::string& parts) {
  const auto drawing = Read(WithSection("ENTITIES", parts));
  const auto& members = drawing->Entities().members;
  return members.empty() ? Groups() : members.front()->groups;
}

std::vector<std::string> TypesOf(const std::vector<Object*>& objects) {
  std::vector<std::string> types;
  for (const Object* object : objects) types.push_back(Utf8(object->Type()));
  return types;
}
using Types = std::vector<std::string>;

TEST(DxfReader, CoordinatesThatFollowEachOtherAreOnePoint) {
  struct Case {
    const char* tags;
    Groups groups;
  };
  const Case cases[] = {
      {"10 1|20 2|30 3", {{10, Point{1, 2, 3, false}}}},
      {"10 1|20 2", {{10, Point{1, 2, 0, true}}}},
      {"10 1|20 2|40 3", {{10, Point{1, 2, 0, true}}, {40, 3.0}}},
      {"10 1", {{10, 1.0}}},
      {"10 1|30 3", {{10, 1.0}, {30, 3.0}}},
      {"10 1|21 2", {{10, 1.0}, {21, 2.0}}},
      {"20 2|30 3", {{20, 2.0}, {30, 3.0}}},
      {"10 1|10 2|20 3", {{10, 1.0}, {10, Point{2, 3, 0, true}}}},
      {"10 1|20 2|30 3|30 4", {{10, Point{1, 2, 3, false}}, {30, 4.0}}},
      {"18 1|28 2|38 3", {{18, Point{1, 2, 0, true}}, {38, 3.0}}},
      {"19 1|29 2", {{19, 1.0}, {29, 2.0}}},
      {"110 1|120 2|130 3", {{110, Point{1, 2, 3, false}}}},
      {"112 1|122 2|132 3", {{112, Point{1, 2, 3, false}}}},
      {"113 1|123 2", {{113, 1.0}, {123, 2.0}}},
      {"210 0|220 0|230 1", {{210, Point{0, 0, 1, false}}}},
      {"1010 1|1020 2|1030 3", {{1010, Point{1, 2, 3, false}}}},
  };
  for (const Case& one : cases) {
    Groups groups{{0, L"X"}};
    groups.insert(groups.end(), one.groups.begin(), one.groups.end());
    const std::string file = WithSection("ENTITIES", "0 X|" + std::string(one.tags));
    EXPECT_EQ(Read(file)->Entities().members[0]->groups, groups) << one.tags;
    // Binary and back, so that the texts of the numbers are those of ours.
    EXPECT_EQ(Resaved(Resaved(file, DxfForm::Binary)), Resaved(file)) << one.tags;
  }
}

TEST(DxfReader, ValuesAreOfTheKindOfTheirCodes) {
  EXPECT_EQ(
      FirstEntity("0 X|5 1f|8  a b |62 256|70  65535 |90 -2147483648|160 9223372036854775807|290 1|40 2.5|"
                  "310 0aFF|330 1F|1 "),
      (Groups{{0, L"X"},
              {5, L"1f"},
              {8, L" a b "},
              {62, 256LL},
              {70, 65535LL},
              {90, -2147483648LL},
              {160, 9223372036854775807LL},
              {290, 1LL},
              {40, 2.5},
              {310, L"0AFF"},
              {330, Reference{0x1F}},
              {1, L""}}));
}

TEST(DxfReader, NumbersAreReadAsProgramsWriteThem) {
  const std::pair<const char*, double> reals[] = {{"1", 1.0},
                                                  {"1.", 1.0},
                                                  {".5", 0.5},
                                                  {"-0.0", -0.0},
                                                  {"+1.5", 1.5},
                                                  {"1e5", 1e5},
                                                  {"1E+05", 1e5},
                                                  {"-2.5e-3", -2.5e-3},
                                                  {"  7  ", 7.0},
                                                  {"\t8", 8.0},
                                                  {"5e-324", 5e-324},
                                                  {"0.1", 0.1},
                                                  {"1.7976931348623157e308", 1.7976931348623157e308}};
  for (const auto& [text, real] : reals)
    EXPECT_EQ(FirstEntity("0 X|40 " + std::string(text)), (Groups{{0, L"X"}, {40, real}})) << text;
  const std::pair<const char*, long long> integers[] = {
      {"0", 0}, {"+3", 3}, {" -7 ", -7}, {"3.0", 3}, {"1e3", 1000}, {"-9223372036854775808", INT64_MIN}};
  for (const auto& [text, integer] : integers)
    EXPECT_EQ(FirstEntity("0 X|70 " + std::string(text)), (Groups{{0, L"X"}, {70, integer}})) << text;
}

TEST(DxfReader, RealsAreWrittenShortAndAsReals) {
  const std::pair<const char*, const char*> reals[] = {{"1", "1.0"},
                                                       {"-0", "-0.0"},
                                                       {"0.10000000000000001", "0.1"},
                                                       {"1e20", "1e+20"},
                                                       {"1234567", "1234567.0"}};
  for (const auto& [text, written] : reals)
    EXPECT_EQ(
        Resaved(WithSection("ENTITIES", "0 X|40 " + std::string(text))),
        "  0\nSECTION\n  2\nENTITIES\n  0\nX\n 40\n" + std::string(written) + "\n  0\nENDSEC\n  0\nEOF\n");
}

TEST(DxfReader, LinesEndInEachWayAndCodesMayBePadded) {
  const std::string file = WithSection("ENTITIES", "0 LINE|8 0|999 a comment|10 1.0|20 2.0");
  const std::string expected = Resaved(file);
  for (const char* end : {"\r\n", "\r"}) {
    std::string other;
    for (const char character : file) other += character == '\n' ? end : std::string(1, character);
    EXPECT_EQ(Resaved(other), expected);
  }
  EXPECT_EQ(Resaved("\xEF\xBB\xBF" + file), expected);
  EXPECT_EQ(Resaved("999\nfirst\n" + file), expected);
  EXPECT_EQ(Resaved(file.substr(0, file.size() - 1)), expected) << "the last line may have no end";
  EXPECT_EQ(Resaved(file + "\n \x1A" + std::string(3, '\0')), expected);
  std::string padded;
  for (size_t begin = 0; begin < file.size();) {
    const size_t code = file.find('\n', begin);
    const size_t value = file.find('\n', code + 1);
    padded += "   " + file.substr(begin, code - begin) + " \n" + file.substr(code + 1, value - code);
    begin = value + 1;
  }
  EXPECT_EQ(Resaved(padded), expected);
  EXPECT_EQ(expected.find("999"), std::string::npos);
}

TEST(DxfReader, AFileIsWrittenAsItWasRead) {
  const std::string file = Lines(
      "0 SECTION|2 HEADER|9 $ACADVER|1 AC1015|9 $EXTMIN|10 1.5|20 2.5|30 0.0|9 $HANDSEED|5 FF|0 ENDSEC|"
      "0 SECTION|2 CLASSES|0 CLASS|1 WIPEOUT|90 127|280 0|0 ENDSEC|"
      "0 SECTION|2 TABLES|0 TABLE|2 LAYER|5 2|70 1|0 LAYER|5 10|2 Walls|62 7|6 CONTINUOUS|0 ENDTAB|"
      "0 TABLE|2 DIMSTYLE|5 3|0 DIMSTYLE|105 11|5 arrow|2 Standard|0 ENDTAB|0 ENDSEC|"
      "0 SECTION|2 BLOCKS|0 BLOCK|5 20|2 Door|0 LINE|5 21|8 0|0 ENDBLK|5 22|0 ENDSEC|"
      "0 SECTION|2 ENTITIES|0 POLYLINE|5 30|66 1|0 VERTEX|5 31|0 VERTEX|5 32|0 SEQEND|5 33|"
      "0 INSERT|5 34|66 1|2 Door|0 ATTRIB|5 35|0 SEQEND|5 36|1001 A|1070 1|1001 B|1000 text|"
      "0 NEVERHEARDOF|5 37|1071 5|0 ENDSEC|"
      "0 SECTION|2 OBJECTS|0 DICTIONARY|5 40|3 KEY|350 41|0 XRECORD|5 41|100 AcDbXrecord|5 10|0 ENDSEC|"
      "0 SECTION|2 MINE|0 THING|70 1|10 1.0|20 2.0|0 ENDTAB|0 ENDSEC|0 EOF");
  std::string written = Resaved(file);
  std::string unpadded;
  for (size_t begin = 0; begin < written.size();) {
    const size_t end = written.find('\n', begin);
    const size_t text = written.find_first_not_of(' ', begin);
    unpadded += written.substr(text, end + 1 - text);
    begin = end + 1;
  }
  EXPECT_EQ(unpadded, file);
  EXPECT_EQ(Resaved(written), written);
  EXPECT_EQ(Resaved(Resaved(file, DxfForm::Binary)), written);
}

TEST(DxfReader, TablesBlocksAndObjectsAreInTheirPlaces) {
  const auto drawing =
      Read(Lines("0 SECTION|2 TABLES|0 TABLE|2 LAYER|0 LAYER|2 Walls|0 LAYER|2 Doors|0 ENDTAB|0 ENDSEC|"
                 "0 SECTION|2 BLOCKS|0 BLOCK|2 Door|0 LINE|0 INSERT|66 1|0 ATTRIB|0 SEQEND|0 ENDBLK|0 ENDSEC|"
                 "0 SECTION|2 OBJECTS|0 DICTIONARY|0 XRECORD|0 ENDSEC|0 EOF"));
  EXPECT_EQ(TypesOf(drawing->FindTable(L"LAYER")->entries), (Types{"LAYER", "LAYER"}));
  EXPECT_NE(drawing->FindEntry(L"layer", L"WALLS"), nullptr);
  embedded::BlockDefinition* block = drawing->FindBlock(L"DOOR");
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(TypesOf(block->content.members), (Types{"LINE", "INSERT"}));
  EXPECT_EQ(TypesOf(block->content.members[1]->parts), (Types{"ATTRIB", "SEQEND"}));
  EXPECT_EQ(block->content.members[1]->parts[0]->list, &block->content);
  EXPECT_EQ(TypesOf(drawing->Objects()), (Types{"DICTIONARY", "XRECORD"}));
  EXPECT_TRUE(drawing->Entities().members.empty());
  EXPECT_FALSE(drawing->IsModified());
  EXPECT_TRUE(drawing->TakeChanges().empty());
}

TEST(DxfReader, PartsBelongToTheirHeadersAndStrayOnesStayMembers) {
  struct Case {
    const char* entities;
    Types members;
    Types partsOfFirst;
  };
  const Case cases[] = {
      {"0 POLYLINE|0 VERTEX|0 VERTEX|0 SEQEND|0 LINE", {"POLYLINE", "LINE"}, {"VERTEX", "VERTEX", "SEQEND"}},
      {"0 POLYLINE|0 VERTEX|0 SEQEND|0 VERTEX|0 SEQEND",
       {"POLYLINE", "VERTEX", "SEQEND"},
       {"VERTEX", "SEQEND"}},
      {"0 POLYLINE|0 VERTEX", {"POLYLINE"}, {"VERTEX"}},
      {"0 POLYLINE|0 VERTEX|0 LINE|0 VERTEX", {"POLYLINE", "LINE", "VERTEX"}, {"VERTEX"}},
      {"0 POLYLINE|0 ATTRIB", {"POLYLINE", "ATTRIB"}, {}},
      {"0 INSERT|66 1|0 ATTRIB|0 SEQEND", {"INSERT"}, {"ATTRIB", "SEQEND"}},
      {"0 INSERT|66 1|0 VERTEX", {"INSERT", "VERTEX"}, {}},
      {"0 INSERT|66 0|0 ATTRIB|0 SEQEND", {"INSERT", "ATTRIB", "SEQEND"}, {}},
      {"0 INSERT|0 ATTRIB", {"INSERT", "ATTRIB"}, {}},
      {"0 VERTEX", {"VERTEX"}, {}},
  };
  for (const Case& one : cases) {
    const std::string file = WithSection("ENTITIES", one.entities);
    const auto drawing = Read(file);
    const auto& members = drawing->Entities().members;
    EXPECT_EQ(TypesOf(members), one.members) << one.entities;
    EXPECT_EQ(TypesOf(members[0]->parts), one.partsOfFirst) << one.entities;
    for (const Object* part : members[0]->parts) EXPECT_EQ(part->header, members[0]);
    EXPECT_EQ(Resaved(Resaved(file)), Resaved(file));
  }
}

TEST(DxfReader, ExtendedDataIsSplitOffByApplicationWhereItIsTheTail) {
  const auto clean =
      Read(WithSection("ENTITIES", "0 X|40 1|1001 A|1070 1|1010 1|1020 2|1030 3|1001 B|1001 A|1000 t"));
  const Object& object = *clean->Entities().members[0];
  EXPECT_EQ(object.groups, (Groups{{0, L"X"}, {40, 1.0}}));
  EXPECT_EQ(object.extended,
            (std::vector<embedded::ExtendedData>{
                {L"A", {{1070, 1LL}, {1010, Point{1, 2, 3, false}}}}, {L"B", {}}, {L"A", {{1000, L"t"}}}}));
  // With anything behind it the order is kept by leaving it where it is.
  const std::string mixed = WithSection("ENTITIES", "0 X|1001 A|1070 1|40 1");
  EXPECT_TRUE(Read(mixed)->Entities().members[0]->extended.empty());
  EXPECT_EQ(FirstEntity("0 X|1001 A|1070 1|40 1"), (Groups{{0, L"X"}, {1001, L"A"}, {1070, 1LL}, {40, 1.0}}));
  // Without an application it is nobody's.
  EXPECT_EQ(FirstEntity("0 X|1070 1"), (Groups{{0, L"X"}, {1070, 1LL}}));
}

TEST(DxfReader, HandlesComeFromTheFile) {
  const auto drawing =
      Read(Lines("0 SECTION|2 TABLES|0 TABLE|2 DIMSTYLE|5 1|0 DIMSTYLE|5 arrow|105 2A|0 ENDTAB|0 ENDSEC|"
                 "0 SECTION|2 ENTITIES|0 LINE|5 1f|0 LINE|8 0|5 20|0 LINE|100 AcDbEntity|5 21|0 LINE|5 0|"
                 "0 ENDSEC|0 EOF"));
  EXPECT_EQ(drawing->FindHandle(0x2A)->Type(), L"DIMSTYLE");
  const auto& lines = drawing->Entities().members;
  EXPECT_EQ(lines[0]->handle, 0x1Fu);
  EXPECT_EQ(lines[1]->handle, 0x20u);
  EXPECT_EQ(drawing->FindHandle(0x21), nullptr) << "behind a marker it is data";
  EXPECT_EQ(lines[2]->handle, 0x2Bu);
  EXPECT_EQ(lines[3]->handle, 0x2Cu) << "0 is none";
}

TEST(DxfReader, ObjectsWithoutHandlesGetOthersThanThoseOfTheFile) {
  const std::string file = WithSection("ENTITIES", "0 LINE|0 LINE|5 1|0 LINE|5 2|0 LINE|8 0");
  const auto drawing = Read(file);
  EXPECT_TRUE(drawing->hasHandles);
  const auto& lines = drawing->Entities().members;
  EXPECT_EQ(lines[1]->handle, 1u);
  EXPECT_EQ(lines[2]->handle, 2u);
  EXPECT_EQ(lines[0]->handle, 3u);
  EXPECT_EQ(lines[3]->handle, 4u);
  EXPECT_EQ(lines[0]->groups, (Groups{{0, L"LINE"}}));
  for (const Object* line : lines) EXPECT_EQ(drawing->FindHandle(line->handle), line);
  // The greatest handle of all leaves none above it.
  const auto full = Read(WithSection("ENTITIES", "0 LINE|0 LINE|5 FFFFFFFFFFFFFFFF|0 LINE|5 1"));
  EXPECT_EQ(full->Entities().members[0]->handle, 2u);
}

TEST(DxfReader, OldFilesMayHoldNoHandles) {
  const std::string file = WithVersion("AC1009", "0 LINE|8 0");
  const auto drawing = Read(file);
  EXPECT_FALSE(drawing->hasHandles);
  EXPECT_NE(drawing->Entities().members[0]->handle, 0u);
  EXPECT_EQ(embedded::WriteDxf(*drawing).find("  5\n"), std::string::npos);
  EXPECT_TRUE(Read(WithVersion("AC1009", "0 LINE|5 1"))->hasHandles);
  EXPECT_TRUE(Read(WithVersion("AC1015", "0 LINE"))->hasHandles);
}

TEST(DxfReader, TheNextHandleIsAboveThatOfTheHeaderAndIsWrittenThere) {
  const auto withSeed = [](const std::string& seed, const std::string& line) {
    return Lines("0 SECTION|2 HEADER|9 $HANDSEED|5 " + seed + "|0 ENDSEC|0 SECTION|2 ENTITIES|" + line +
                 "|0 ENDSEC|0 EOF");
  };
  const auto seedOf = [](Drawing& drawing) {
    return Utf8(TextOf(Read(embedded::WriteDxf(drawing))->HeaderVariable(L"$HANDSEED"), 5));
  };
  const auto high = Read(withSeed("ABC", "0 LINE|5 1"));
  EXPECT_EQ(high->NextHandle(), 0xABCu);
  EXPECT_EQ(seedOf(*high), "ABC");
  high->Append(high->Entities(), high->NewObject({{0, L"LINE"}, {5, L"ABC"}}));
  EXPECT_EQ(seedOf(*high), "ABD");
  EXPECT_EQ(seedOf(*Read(withSeed("2", "0 LINE|5 1F"))), "20");
  // Where no handles are written, nothing is said of them.
  EXPECT_EQ(seedOf(*Read(withSeed("7", "0 LINE"))), "7");
  const auto none = Read(WithSection("ENTITIES", "0 LINE|5 1F"));
  EXPECT_TRUE(Read(embedded::WriteDxf(*none))->HeaderVariable(L"$HANDSEED").empty());
}

TEST(DxfReader, TheVersionIsThatOfTheHeaderAndItsTextStays) {
  const std::pair<const char*, DxfVersion> versions[] = {
      {"AC1009", DxfVersion::R12},   {"AC1012", DxfVersion::R13},   {"AC1014", DxfVersion::R14},
      {"AC1015", DxfVersion::R2000}, {"AC1018", DxfVersion::R2004}, {"AC1021", DxfVersion::R2007},
      {"AC1024", DxfVersion::R2010}, {"AC1027", DxfVersion::R2013}, {"AC1032", DxfVersion::R2018},
      {"AC1006", DxfVersion::R12},   {"AC2.10", DxfVersion::R12},   {"AC1099", DxfVersion::R2018},
      {"AC1016", DxfVersion::R2000}, {"", DxfVersion::R12},         {"what", DxfVersion::R12}};
  for (const auto& [text, version] : versions) {
    const auto drawing = Read(WithVersion(text, "0 LINE|8 0"));
    EXPECT_EQ(drawing->version, version) << text;
    EXPECT_EQ(Utf8(TextOf(Read(embedded::WriteDxf(*drawing))->HeaderVariable(L"$ACADVER"), 1)), text);
  }
  EXPECT_EQ(Read(WithSection("ENTITIES", ""))->version, DxfVersion::R12);
}

TEST(DxfReader, GroupsInUnusualPlacesAreKept) {
  for (const char* file :
       {"0 SECTION|2 TABLES|70 1|0 TABLE|2 LAYER|1001 A|0 ENDTAB|5 1F|1001 A|1070 1|0 ENDSEC|0 EOF",
        "0 SECTION|2 ENTITIES|70 1|0 ENDSEC|0 EOF",
        "0 SECTION|2 MINE|0 ENDSEC|0 SECTION|2 MINE|70 1|0 ENDSEC|0 EOF",
        "0 SECTION|2 TABLES|0 TABLE|70 1|0 LAYER|0 ENDTAB|0 TABLE|2 LAYER|0 ENDTAB|0 ENDSEC|0 EOF",
        "0 SECTION|2 OBJECTS|0 LAYOUT|0 ENDSEC|0 SECTION|2 HEADER|9 $X|70 1|0 ENDSEC|0 EOF", "0 EOF"}) {
    std::string written = Resaved(Lines(file));
    written.erase(std::remove(written.begin(), written.end(), ' '), written.end());
    EXPECT_EQ(written, Lines(file));
  }
}

TEST(DxfReader, SectionsThatAFileDidNotHaveAreAddedForWhatIsInThem) {
  const auto drawing = Read(Lines("0 EOF"));
  drawing->Append(drawing->Entities(), drawing->NewObject({{0, L"LINE"}}));
  EXPECT_EQ(embedded::WriteDxf(*drawing), "  0\nSECTION\n  2\nENTITIES\n  0\nLINE\n  0\nENDSEC\n  0\nEOF\n");
}

TEST(DxfReader, ErasedEntitiesAreNotWritten) {
  const auto drawing = Read(WithSection("ENTITIES", "0 LINE|0 POLYLINE|0 VERTEX|0 SEQEND|0 CIRCLE"));
  drawing->SetErased(*drawing->Entities().members[1], true);
  EXPECT_EQ(TypesOf(Read(embedded::WriteDxf(*drawing))->Entities().members), (Types{"LINE", "CIRCLE"}));
}

TEST(DxfReader, ANewDrawingComesBackAsItIs) {
  for (const DxfForm form : {DxfForm::Ascii, DxfForm::Binary}) {
    Drawing drawing;
    const auto again = Read(embedded::WriteDxf(drawing, form));
    EXPECT_EQ(again->version, DxfVersion::R2018);
    EXPECT_NE(again->FindEntry(L"LAYER", L"0"), nullptr);
    EXPECT_EQ(embedded::WriteDxf(*again), embedded::WriteDxf(drawing));
  }
}

}  // namespace
}  // namespace lomlisp::test
