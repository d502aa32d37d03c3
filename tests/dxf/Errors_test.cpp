// Damaged files: what is said, and where.
#include <tests/dxf/Files.h>
#include <tests/support/HostTest.h>

namespace lomlisp::test {
namespace {

struct Damage {
  std::string file;
  uint64_t line;
  const char* message;  // a part of it
};

void ExpectErrors(const std::vector<Damage>& cases, const char* unit) {
  for (const Damage& one : cases) {
    const embedded::DxfOpened opened = embedded::ReadDxf(one.file);
    ASSERT_TRUE(opened.error) << one.file;
    EXPECT_EQ(opened.drawing, nullptr);
    EXPECT_EQ(opened.error->line, one.line) << one.file << opened.error->message;
    const std::string place = one.line == 0 ? "" : std::string(unit) + std::to_string(one.line) + ")";
    EXPECT_NE(opened.error->message.find(one.message), std::string::npos) << opened.error->message;
    EXPECT_TRUE(opened.error->message.ends_with(place)) << opened.error->message;
  }
}

TEST(DxfErrors, FilesThatAreNoneAreRefused) {
  ExpectErrors({{"", 0, "no DXF file"},
                {"\n\n", 0, "no DXF file"},
                {"hello\nworld\n", 1, "a group code belongs here, not \"hello\""},
                {"1\nhello\n", 1, "no DXF file"},
                {"0\nLINE\n0\nEOF\n", 1, "no DXF file"},
                {std::string("\x7F\0ELF", 5), 1, "a group code belongs here, not \"??ELF\""}},
               " (line ");
}

TEST(DxfErrors, BadTagsAreSaidWithTheirLines) {
  const auto entity = [](const std::string& tags) {
    return "0\nSECTION\n2\nENTITIES\n0\nLINE\n" + tags + "0\nENDSEC\n0\nEOF\n";
  };
  ExpectErrors({{entity("abc\n1\n"), 7, "a group code belongs here, not \"abc\""},
                {entity("\n1\n"), 7, "a group code belongs here"},
                {entity("1.0\n1\n"), 7, "a group code belongs here"},
                {entity("-1\n1\n"), 7, "the group code -1 is out of range"},
                {entity("1072\n1\n"), 7, "the group code 1072 is out of range"},
                {entity("99999999999\n1\n"), 7, "a group code belongs here"},
                {entity("8\n0\n40\nabc\n"), 10, "a number belongs to group 40, not \"abc\""},
                {entity("10\n\n"), 8, "a number belongs to group 10, not \"\""},
                {entity("40\nnan\n"), 8, "a number"},
                {entity("40\n-inf\n"), 8, "a number"},
                {entity("40\n1e999\n"), 8, "a number"},
                {entity("40\n1,5\n"), 8, "a number"},
                {entity("40\n1 2\n"), 8, "a number"},
                {entity("40\n+-1\n"), 8, "a number"},
                {entity("70\nx\n"), 8, "an integer belongs to group 70, not \"x\""},
                {entity("70\n1.5\n"), 8, "an integer"},
                {entity("160\n9223372036854775808\n"), 8, "an integer"},
                {entity("290\n\n"), 8, "an integer"},
                {entity("330\nXYZ\n"), 8, "a handle belongs to group 330, not \"XYZ\""},
                {entity("330\n-1\n"), 8, "a handle"},
                {entity("330\n10000000000000000\n"), 8, "a handle"},
                {entity("310\nABC\n"), 8, "an even number of hexadecimal digits"},
                {entity("310\nXY\n"), 8, "hexadecimal digits"},
                {entity("70\n" + std::string(100, 'x') + "\n"), 8,
                 "\""
                 "xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx"
                 "...\""},
                {entity("5\nXYZ\n"), 5, "the handle of an object is no hexadecimal number"}},
               " (line ");
}

TEST(DxfErrors, TruncatedFilesAreRefused) {
  ExpectErrors({{"0\nSECTION\n2\nENTITIES\n0\nLINE\n8\n0\n", 7, "the file ends without EOF"},
                {"0\nSECTION\n2\nENTITIES\n0\nLINE\n8\n", 7, "the file ends behind a group code"},
                {"0\nSECTION\n2\nENTITIES\n0\nENDSEC\n", 5, "the file ends without EOF"},
                {"0\nSECTION\n2\nENTITIES\n0\nENDSEC\n0\nEO", 7, "outside of all sections"},
                {"0\nSECTION\n", 1, "the file ends without EOF"}},
               " (line ");
}

TEST(DxfErrors, WrongNestingIsRefused) {
  const auto in = [](const char* section, const char* parts) { return WithSection(section, parts); };
  ExpectErrors({{Lines("0 SECTION|2 ENTITIES|0 LINE|0 SECTION|2 OBJECTS|0 ENDSEC|0 EOF"), 7,
                 "the section ENTITIES has no ENDSEC"},
                {Lines("0 SECTION|2 MINE|1 x|0 EOF"), 7, "the section MINE has no ENDSEC"},
                {Lines("0 SECTION|2 ENTITIES|0 LINE|0 EOF"), 7, "the section ENTITIES has no ENDSEC"},
                {Lines("0 SECTION|0 ENDSEC|0 EOF"), 3, "the name of a section"},
                {Lines("0 SECTION|2 A|0 ENDSEC|8 0|0 EOF"), 7, "outside of all sections"},
                {Lines("0 SECTION|2 A|0 ENDSEC|0 LINE|0 EOF"), 7, "outside of all sections"},
                {Lines("0 SECTION|2 A|0 ENDSEC|0 EOF|0 LINE"), 7, "something follows the end of the file"},
                {Lines("0 SECTION|2 ENTITIES|0 ENDSEC|0 SECTION|2 ENTITIES|0 ENDSEC|0 EOF"), 9,
                 "there is a section ENTITIES already"},
                {in("TABLES", "0 TABLE|2 LAYER|0 LAYER"), 9, "the last table has no ENDTAB"},
                {in("TABLES", "0 TABLE|2 LAYER|0 TABLE|2 STYLE|0 ENDTAB"), 9, "before the ENDTAB of another"},
                {in("TABLES", "0 LAYER|2 0"), 5, "LAYER stands outside of all tables"},
                {in("TABLES", "0 ENDTAB"), 5, "ENDTAB stands outside of all tables"},
                {in("TABLES", "0 TABLE|0 ENDTAB|0 ENDTAB"), 9, "ENDTAB stands outside of all tables"},
                {in("BLOCKS", "0 BLOCK|2 A|0 LINE"), 5, "the last block has no ENDBLK"},
                {in("BLOCKS", "0 BLOCK|0 LINE|0 BLOCK|0 ENDBLK"), 9, "before the ENDBLK of another"},
                {in("BLOCKS", "0 ENDBLK"), 5, "ENDBLK stands outside of all blocks"},
                {in("BLOCKS", "0 BLOCK|0 ENDBLK|0 LINE"), 9, "LINE stands outside of all blocks"},
                {in("ENTITIES", "0 LINE|0 ENDBLK"), 7, "ENDBLK stands outside of the section BLOCKS"},
                {in("ENTITIES", "0 BLOCK"), 5, "BLOCK stands outside of the section BLOCKS"},
                {in("OBJECTS", "0 ENDTAB"), 5, "ENDTAB stands outside of the section TABLES"},
                {in("BLOCKS", "0 BLOCK|0 TABLE|0 ENDBLK"), 7, "TABLE stands outside of the section TABLES"}},
               " (line ");
}

TEST(DxfErrors, HandlesThatTwoObjectsHaveAreRefused) {
  ExpectErrors(
      {{WithSection("ENTITIES", "0 LINE|5 1F|0 LINE|5 1f"), 9, "the handle 1F is in use already"},
       {Lines("0 SECTION|2 TABLES|0 TABLE|5 1|0 ENDTAB|0 ENDSEC|0 SECTION|2 OBJECTS|0 X|5 01|0 ENDSEC|0 EOF"),
        17, "the handle 1 is in use already"}},
      " (line ");
}

std::string Sentinel() {
  const std::string file = Resaved(Lines("0 EOF"), DxfForm::Binary);
  return file.substr(0, file.size() - 5);  // 0 and EOF with its end
}

TEST(DxfErrors, InBinaryFilesTheByteIsSaid) {
  using namespace std::string_literals;
  const std::string entities = Sentinel() +
                               "\0SECTION\0\x02"
                               "ENTITIES\0\0LINE\0"s;  // 47 bytes
  ASSERT_EQ(entities.size(), 47u);
  ExpectErrors({{Sentinel(), 0, "there is nothing in it"},
                {entities, 41, "the file ends without EOF"},
                {entities + "\x08", 47, "a text without an end"},
                {entities + "\x08"
                            "Wall",
                 47, "a text without an end"},
                {entities + "\x0A\1\2\3"s, 47, "the file ends within a group"},
                {entities + "\xFF\1"s, 47, "the file ends within a group"},
                {entities + "\xFF\x30\x04"s, 47, "the group code 1072 is out of range"},
                {entities + "\xFF\xFF\xFF"s, 47, "the group code -1 is out of range"},
                {entities + "\xFF\x36\x01\xFF\1\2"s, 47, "the file ends within a group"},
                {entities + "\x28\0\0\0\0\0\0\xF0\x7F"s, 47, "infinite"},
                {entities + "\xFF\x4A\1XY\0"s, 47, "a handle that is none"},
                {entities + "\0EOF\0"s, 47, "the section ENTITIES has no ENDSEC"},
                {entities + "\0ENDSEC\0\0EOF\0x"s, 55, "something follows the end of the file"}},
               " (byte ");
}

}  // namespace
}  // namespace lomlisp::test
