// Files on the disk: opening, saving at once or not at all, progress.
#include <embedded/dxf/Fault.h>
#include <embedded/dxf/SafeFile.h>
#include <tests/dxf/Files.h>
#include <tests/support/HostTest.h>

#include <fstream>
#include <iterator>
#include <limits>

#ifdef __unix__
#include <sys/resource.h>

#include <csignal>
#endif

namespace lomlisp::test {
namespace {

namespace fs = std::filesystem;

// An empty folder of its own for each test.
class DxfSaving : public ::testing::Test {
 protected:
  DxfSaving() {
    m_folder = fs::temp_directory_path() /
               ("lomlisp-" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
    fs::remove_all(m_folder);
    fs::create_directory(m_folder);
  }
  ~DxfSaving() override { fs::remove_all(m_folder); }

  fs::path In(const char* name) const { return m_folder / name; }
  size_t FilesInFolder() const {
    return static_cast<size_t>(std::distance(fs::directory_iterator(m_folder), fs::directory_iterator()));
  }
  static void Put(const fs::path& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
  }
  static std::string Get(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  fs::path m_folder;
};

TEST_F(DxfSaving, WhatIsSavedIsOpenedAgain) {
  for (const DxfForm form : {DxfForm::Ascii, DxfForm::Binary}) {
    Drawing drawing;
    drawing.Append(drawing.Entities(), drawing.NewObject({{0, L"LINE"}, {8, L"0"}}));
    EXPECT_TRUE(drawing.IsModified());
    ASSERT_FALSE(SaveDxf(drawing, In("a.dxf"), form));
    EXPECT_FALSE(drawing.IsModified());
    EXPECT_EQ(Get(In("a.dxf")), WriteDxf(drawing, form));
    EXPECT_EQ(FilesInFolder(), 1u);
    const embedded::DxfOpened opened = embedded::OpenDxf(In("a.dxf"));
    ASSERT_TRUE(opened.drawing);
    EXPECT_EQ(opened.drawing->Entities().members.size(), 1u);
  }
}

TEST_F(DxfSaving, WhatCannotBeReadIsSaidWithItsName) {
  Put(In("empty.dxf"), "");
  Put(In("bad.dxf"), "0\nSECTION\n2\nENTITIES\n0\nLINE\n40\nabc\n");
  fs::create_directory(In("folder.dxf"));
  const std::pair<const char*, const char*> cases[] = {{"none.dxf", "cannot be read"},
                                                       {"folder.dxf", "it is a folder"},
                                                       {"empty.dxf", "it is empty"},
                                                       {"bad.dxf", "not \"abc\" (line 8)"}};
  for (const auto& [name, message] : cases) {
    const embedded::DxfOpened opened = embedded::OpenDxf(In(name));
    EXPECT_EQ(opened.drawing, nullptr);
    ASSERT_TRUE(opened.error);
    EXPECT_NE(opened.error->message.find(name), std::string::npos);
    EXPECT_NE(opened.error->message.find(message), std::string::npos) << opened.error->message;
  }
  EXPECT_EQ(embedded::OpenDxf(In("bad.dxf")).error->line, 8u);
}

TEST_F(DxfSaving, OnErrorsTheOldFileStaysAndNothingElseIsLeft) {
  Put(In("old.dxf"), "old");
  const double kBad[] = {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()};
  for (const double bad : kBad) {
    Drawing drawing;
    drawing.Append(drawing.Entities(), drawing.NewObject({{0, L"LINE"}, {40, bad}}));
    const auto error = SaveDxf(drawing, In("old.dxf"));
    ASSERT_TRUE(error);
    EXPECT_NE(error->message.find("group 40 is infinite or no number"), std::string::npos) << error->message;
    EXPECT_TRUE(drawing.IsModified());
    EXPECT_EQ(Get(In("old.dxf")), "old");
    EXPECT_EQ(FilesInFolder(), 1u);
  }
}

TEST_F(DxfSaving, ValuesThatTheirCodeCannotHaveAreErrors) {
  const std::pair<embedded::Group, const char*> cases[] = {{{8, 1LL}, "group 8 holds no text"},
                                                           {{40, L"x"}, "group 40 holds no real"},
                                                           {{10, 1LL}, "group 10 holds no real"},
                                                           {{70, 1.0}, "group 70 holds no integer"},
                                                           {{330, L"1F"}, "group 330 holds no reference"},
                                                           {{310, L"XY"}, "group 310 holds no even number"},
                                                           {{310, L"ABC"}, "group 310 holds no even number"}};
  for (const auto& [group, message] : cases) {
    Drawing drawing;
    drawing.Append(drawing.Entities(), drawing.NewObject({{0, L"LINE"}, group}));
    const auto error = SaveDxf(drawing, In("a.dxf"));
    ASSERT_TRUE(error) << message;
    EXPECT_NE(error->message.find(message), std::string::npos) << error->message;
    EXPECT_EQ(FilesInFolder(), 0u);
  }
}

TEST_F(DxfSaving, TargetsThatCannotBeWrittenAreSaid) {
  Drawing drawing;
  Put(In("file"), "x");
  fs::create_directory(In("folder.dxf"));
  for (const fs::path& path : {In("none") / "a.dxf", In("file") / "a.dxf", In("folder.dxf"), fs::path()}) {
    const auto error = SaveDxf(drawing, path);
    ASSERT_TRUE(error) << path;
    EXPECT_NE(error->message.find("cannot be written"), std::string::npos) << error->message;
  }
  EXPECT_EQ(FilesInFolder(), 2u);
}

TEST_F(DxfSaving, NamesThatAreTakenAreLeftAlone) {
  Put(In("a.dxf.new1"), "of somebody else");
  Drawing drawing;
  ASSERT_FALSE(SaveDxf(drawing, In("a.dxf")));
  EXPECT_EQ(Get(In("a.dxf.new1")), "of somebody else");
  EXPECT_EQ(FilesInFolder(), 2u);
}

TEST_F(DxfSaving, AnUncommittedFileLeavesNothing) {
  Put(In("old.dxf"), "old");
  {
    embedded::SafeFile file(In("old.dxf"));
    file.Write("new");
    EXPECT_EQ(FilesInFolder(), 2u);
  }
  EXPECT_EQ(Get(In("old.dxf")), "old");
  EXPECT_EQ(FilesInFolder(), 1u);
}

// Windows knows neither permissions of an owner nor, but for administrators, links to files, and it has no
// limit to the size of files.
#ifdef __unix__
TEST_F(DxfSaving, LinksAndPermissionsStay) {
  Put(In("real.dxf"), "old");
  fs::permissions(In("real.dxf"), fs::perms::owner_read | fs::perms::owner_write);
  fs::create_symlink("real.dxf", In("link.dxf"));
  Drawing drawing;
  ASSERT_FALSE(SaveDxf(drawing, In("link.dxf")));
  EXPECT_TRUE(fs::is_symlink(In("link.dxf")));
  EXPECT_EQ(Get(In("real.dxf")), WriteDxf(drawing));
  EXPECT_EQ(fs::status(In("real.dxf")).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

// A limit to the size of files is met as the end of a disk is.
TEST_F(DxfSaving, AFullDiskKeepsTheOldFile) {
  Put(In("old.dxf"), "old");
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  rlimit tight = before;
  tight.rlim_cur = 3000;
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &tight), 0);
  Drawing drawing;
  const auto error = SaveDxf(drawing, In("old.dxf"));
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  ASSERT_TRUE(error);
  EXPECT_NE(error->message.find("cannot be written to its end"), std::string::npos) << error->message;
  EXPECT_EQ(Get(In("old.dxf")), "old");
  EXPECT_EQ(FilesInFolder(), 1u);
}
#endif

TEST_F(DxfSaving, ProgressRisesToTheEnd) {
  std::string lines;
  for (int line = 0; line < 2000; ++line) lines += "0 LINE|8 0|";
  const std::string file = WithSection("ENTITIES", lines + "0 LINE");
  const auto check = [](const auto& reports, uint64_t all) {
    ASSERT_FALSE(reports.empty());
    EXPECT_GE(reports.size(), 50u);
    EXPECT_LE(reports.size(), 110u);
    uint64_t last = 0;
    for (const auto& [done, of] : reports) {
      EXPECT_EQ(of, all);
      EXPECT_GT(done, last);
      last = done;
    }
    EXPECT_EQ(last, all);
  };
  std::vector<std::pair<uint64_t, uint64_t>> reports;
  const auto report = [&](uint64_t done, uint64_t all) { reports.emplace_back(done, all); };
  const auto opened = embedded::ReadDxf(file, report);
  check(reports, file.size());
  reports.clear();
  ASSERT_FALSE(SaveDxf(*opened.drawing, In("a.dxf"), DxfForm::Ascii, report));
  check(reports, 2001);
}

}  // namespace
}  // namespace lomlisp::test
