// Files cut off anywhere and with bytes changed: an error, or a drawing that can be saved and opened again.
#include <tests/dxf/Files.h>
#include <tests/support/HostTest.h>

#include <random>

namespace lomlisp::test {
namespace {

std::string Sample(DxfForm form, const char* version) {
  return Resaved(
      Lines("0 SECTION|2 HEADER|9 $ACADVER|1 " + std::string(version) +
            "|9 $DWGCODEPAGE|3 ANSI_1252|9 $HANDSEED|5 FF|0 ENDSEC|"
            "0 SECTION|2 CLASSES|0 CLASS|1 WIPEOUT|90 127|0 ENDSEC|"
            "0 SECTION|2 TABLES|0 TABLE|2 LAYER|5 2|70 1|0 LAYER|5 10|2 W\xE4nde|62 7|0 ENDTAB|0 ENDSEC|"
            "0 SECTION|2 BLOCKS|0 BLOCK|5 20|2 Door|0 LINE|5 21|8 0|0 ENDBLK|5 22|0 ENDSEC|"
            "0 SECTION|2 ENTITIES|0 POLYLINE|5 30|66 1|0 VERTEX|5 31|10 1|20 2|30 3|0 SEQEND|5 33|"
            "0 INSERT|5 34|66 1|2 Door|0 ATTRIB|5 35|1 \\U+4E2D^Jx|0 SEQEND|5 36|"
            "0 LINE|5 37|10 1.5|20 2.5|11 3e10|21 -4|40 0.1|1001 A|1070 1|1004 FFAA|1010 1|1020 2|1030 3|0 "
            "ENDSEC|"
            "0 SECTION|2 OBJECTS|0 XRECORD|5 41|290 1|310 0102|330 41|160 -5|0 ENDSEC|0 EOF"),
      form);
}

// Whether it can be read; then what is written for it must be read as the same.
bool IsRead(const std::string& file) {
  const embedded::DxfOpened first = embedded::ReadDxf(file);
  EXPECT_NE(first.drawing != nullptr, first.error.has_value());
  if (!first.drawing) return false;
  const std::string written = embedded::WriteDxf(*first.drawing);
  const embedded::DxfOpened second = embedded::ReadDxf(written);
  if (!second.drawing) {
    ADD_FAILURE() << second.error->message << "\n" << written;
    return true;
  }
  const auto same = [](const std::vector<Object*>& a, const std::vector<Object*>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const Object* one, const Object* other) {
      return one->groups == other->groups && one->extended == other->extended &&
             one->parts.size() == other->parts.size();
    });
  };
  EXPECT_TRUE(same(first.drawing->Entities().members, second.drawing->Entities().members)) << written;
  EXPECT_TRUE(same(first.drawing->Objects(), second.drawing->Objects())) << written;
  return true;
}

class DxfMutations : public ::testing::TestWithParam<std::pair<DxfForm, const char*>> {
 protected:
  const std::string m_file = Sample(GetParam().first, GetParam().second);
};

TEST_P(DxfMutations, CutOffAnywhereIsAnError) {
  ASSERT_TRUE(IsRead(m_file));
  // Only the end of the last line may be missing.
  const size_t whole = GetParam().first == DxfForm::Ascii ? m_file.size() - 1 : m_file.size();
  for (size_t size = 0; size < whole; ++size)
    EXPECT_FALSE(IsRead(m_file.substr(0, size))) << size << m_file.substr(size);
}

TEST_P(DxfMutations, ChangedBytesDoNoHarm) {
  std::mt19937 random(7);
  constexpr std::string_view kLikely("0159-. \nABEF^\\U+\0\xFF", 19);
  unsigned read = 0;
  for (unsigned round = 0; round < Rounds(10'000); ++round) {
    std::string file = m_file;
    for (auto change = random() % 3; change < 3; ++change) {
      const size_t at = random() % file.size();
      const char byte =
          random() % 2 == 0 ? static_cast<char>(random() % 256) : kLikely[random() % kLikely.size()];
      switch (random() % 4) {
        case 0:
          file.erase(at, 1 + random() % 20);
          break;
        case 1:
          file.insert(at, 1, byte);
          break;
        default:
          file[at] = byte;
      }
    }
    read += IsRead(file);
  }
  EXPECT_GT(read, 0u);
}

INSTANTIATE_TEST_SUITE_P(Forms, DxfMutations,
                         ::testing::Values(std::pair(DxfForm::Ascii, "AC1009"),
                                           std::pair(DxfForm::Ascii, "AC1032"),
                                           std::pair(DxfForm::Binary, "AC1009"),
                                           std::pair(DxfForm::Binary, "AC1015")));

TEST(DxfLargeFiles, ALongLineAndManyEntitiesTakeLinearTime) {
  const std::string text(kLarge, 'x');
  const auto drawing = Read(WithSection("ENTITIES", "0 TEXT|1 " + text));
  EXPECT_EQ(TextOf(drawing->Entities().members[0]->groups, 1).size(), text.size());

  constexpr int kMany = kLarge / 4;
  std::string file = Lines("0 SECTION|2 ENTITIES");
  for (int count = 0; count < kMany; ++count) file += "0\nVERTEX\n8\n0\n";
  file += Lines("0 POLYLINE");
  for (int count = 0; count < kMany; ++count) file += "0\nVERTEX\n8\n0\n";
  file += Lines("0 ENDSEC|0 EOF");
  const auto many = Read(file);
  EXPECT_EQ(many->Entities().members.size(), static_cast<size_t>(kMany) + 1);
  EXPECT_EQ(many->Entities().members.back()->parts.size(), static_cast<size_t>(kMany));
  EXPECT_EQ(Read(embedded::WriteDxf(*many))->Entities().members.size(), static_cast<size_t>(kMany) + 1);
}

TEST(DxfLargeFiles, ManySectionsTablesAndApplicationsTakeLinearTime) {
  constexpr int kMany = kLarge / 10;
  const auto repeated = [](std::string_view lines) {
    std::string file;
    for (int count = 0; count < kMany; ++count) file += lines;
    return file;
  };
  const auto sections = Read(repeated("0\nSECTION\n2\nMINE\n0\nENDSEC\n") + Lines("0 EOF"));
  EXPECT_EQ(sections->Sections().size(), static_cast<size_t>(kMany));
  const std::string tables = repeated("0\nTABLE\n2\nLAYER\n0\nLAYER\n2\n0\n0\nENDTAB\n");
  EXPECT_EQ(Read(Lines("0 SECTION|2 TABLES") + tables + Lines("0 ENDSEC|0 EOF"))->Tables().size(),
            static_cast<size_t>(kMany));
  const std::string data = repeated("1001\nA\n1070\n1\n");
  const auto extended = Read(Lines("0 SECTION|2 ENTITIES|0 LINE") + data + Lines("0 ENDSEC|0 EOF"));
  EXPECT_EQ(extended->Entities().members[0]->extended.size(), static_cast<size_t>(kMany));
}

}  // namespace
}  // namespace lomlisp::test
