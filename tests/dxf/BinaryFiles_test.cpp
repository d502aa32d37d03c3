// Binary files byte by byte.
#include <tests/dxf/Files.h>
#include <tests/support/HostTest.h>

namespace lomlisp::test {
namespace {

using namespace std::string_literals;

// The bytes of the tags of one entity, without what stands around them.
std::string BytesOf(const std::string& version, const std::string& tags) {
  const std::string with = Resaved(WithVersion(version, "0 X|" + tags), DxfForm::Binary);
  const std::string without = Resaved(WithVersion(version, "0 X"), DxfForm::Binary);
  size_t tail = 0;
  while (with[with.size() - 1 - tail] == without[without.size() - 1 - tail] && tail < 22) ++tail;
  const size_t end = version == "AC1009" ? 13u : 15u;  // ENDSEC and EOF with their codes
  return with.substr(without.size() - end, with.size() - without.size());
}

TEST(DxfBinary, TagsHaveTheWidthOfTheirCodes) {
  const std::pair<const char*, std::string> cases[] = {
      {"8 Wall", "\x08\0Wall\0"s},
      {"5 1F", "\x05\0"s + "1F\0"s},
      {"70 -2", "\x46\0\xFE\xFF"s},
      {"70 65535", "\x46\0\xFF\xFF"s},
      {"90 100000", "\x5A\0\xA0\x86\x01\0"s},
      {"160 -1", "\xA0\0\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s},
      {"290 1", "\x22\x01\x01"s},
      {"280 1", "\x18\x01\x01\0"s},
      {"40 1.0", "\x28\0\0\0\0\0\0\0\xF0\x3F"s},
      {"10 1|20 -2", "\x0A\0\0\0\0\0\0\0\xF0\x3F\x14\0\0\0\0\0\0\0\0\xC0"s},
      {"310 00FFa1", "\x36\x01\x03\0\xFF\xA1"s},
      {"330 1f", "\x4A\x01"s + "1F\0"s},
      {"1004 0A", "\xEC\x03\x01\x0A"s},
      {"1071 1", "\x2F\x04\x01\0\0\0"s},
  };
  for (const auto& [tags, bytes] : cases) EXPECT_EQ(BytesOf("AC1015", tags), bytes) << tags;
}

TEST(DxfBinary, UpToR12CodesHaveOneByte) {
  EXPECT_EQ(BytesOf("AC1009", "8 Wall"), "\x08Wall\0"s);
  EXPECT_EQ(BytesOf("AC1009", "70 1"), "\x46\x01\0"s);
  EXPECT_EQ(BytesOf("AC1009", "254 x"), "\xFEx\0"s);
  EXPECT_EQ(BytesOf("AC1009", "255 x"), "\xFF\xFF\0x\0"s);
  EXPECT_EQ(BytesOf("AC1009", "1070 1"), "\xFF\x2E\x04\x01\0"s);
  EXPECT_EQ(BytesOf("AC1012", "8 Wall"), "\x08\0Wall\0"s);
}

TEST(DxfBinary, TheWidthOfCodesIsSeenInTheFile) {
  for (const char* version : {"AC1009", "AC1015", "AC1032"}) {
    const std::string file =
        Resaved(WithVersion(version, "0 X|8 0|70 1|10 1|20 2|1001 A|1004 FF|1070 1|1071 2"), DxfForm::Binary);
    EXPECT_EQ(Resaved(file, DxfForm::Binary), file);
    // A comment before the first section.
    const bool isOld = version == "AC1009"s;
    const std::string comment = (isOld ? "\xFF"s : ""s) +
                                "\xE7\x03"
                                "comment\0"s;
    EXPECT_EQ(Resaved(file.substr(0, 22) + comment + file.substr(22), DxfForm::Binary), file);
  }
}

TEST(DxfBinary, WhatDoesNotFitIsAnErrorAndNotChanged) {
  const auto path = std::filesystem::temp_directory_path() / "lomlisp-does-not-fit.dxf";
  std::filesystem::remove(path);
  for (const std::string& tags :
       {"70 65536"s, "70 -32769"s, "90 4294967296"s, "290 256"s, "310 "s + std::string(512, 'A')}) {
    const auto drawing = Read(WithVersion("AC1015", "0 X|5 1F|" + tags));
    const auto error = embedded::SaveDxf(*drawing, path, DxfForm::Binary);
    ASSERT_TRUE(error) << tags;
    EXPECT_NE(error->message.find("X with handle 1F"), std::string::npos) << error->message;
    EXPECT_EQ(embedded::WriteDxf(*drawing, DxfForm::Binary), "");
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_NE(embedded::WriteDxf(*drawing), "") << "as text it fits";
  }
}

}  // namespace
}  // namespace lomlisp::test
