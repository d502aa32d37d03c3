// What stands beside a file while it is written anew.
#include <embedded/dxf/SafeFile.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace lomlisp::test {
namespace {

namespace fs = std::filesystem;
using embedded::SafeFile;

class SafeFileTest : public ::testing::Test {
 protected:
  SafeFileTest() {
    fs::remove_all(m_folder);
    fs::create_directory(m_folder);
  }
  ~SafeFileTest() override { fs::remove_all(m_folder); }

  fs::path In(const char* name) const { return m_folder / name; }
  static void Put(const fs::path& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
  }
  static std::string Get(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

 private:
  fs::path m_folder =
      fs::temp_directory_path() /
      ("lomlisp-" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
};

TEST_F(SafeFileTest, TwoWritersOfOneTargetDoNotMeet) {
  SafeFile first(In("a.dxf"));
  SafeFile second(In("a.dxf"));
  first.Write("first");
  second.Write("second");
  first.Commit();
  EXPECT_EQ(Get(In("a.dxf")), "first");
  second.Commit();
  EXPECT_EQ(Get(In("a.dxf")), "second");
  EXPECT_EQ(std::distance(fs::directory_iterator(In("")), fs::directory_iterator()), 1);
}

TEST_F(SafeFileTest, BytesStayAsTheyAre) {
  const std::string bytes("a\r\nb\n\0\x1A\xFF", 8);
  SafeFile file(In("a.dxf"));
  file.Write(bytes);
  file.Write({});
  file.Write(bytes);
  file.Commit();
  EXPECT_EQ(Get(In("a.dxf")), bytes + bytes);
}

// Windows knows neither links for everybody nor the permissions of an owner.
#ifndef _WIN32
TEST_F(SafeFileTest, ALinkInItsPlaceIsNotFollowed) {
  fs::create_symlink("victim", In("a.dxf.new1"));
  SafeFile file(In("a.dxf"));
  file.Write("new");
  file.Commit();
  EXPECT_FALSE(fs::exists(In("victim")));
  EXPECT_TRUE(fs::is_symlink(In("a.dxf.new1")));
  EXPECT_EQ(Get(In("a.dxf")), "new");
}

TEST_F(SafeFileTest, WhatIsForOneAloneIsSoWhileItIsWritten) {
  constexpr fs::perms kOwnerAlone = fs::perms::owner_read | fs::perms::owner_write;
  Put(In("a.dxf"), "old");
  fs::permissions(In("a.dxf"), kOwnerAlone);
  SafeFile file(In("a.dxf"));
  file.Write("new");
  EXPECT_EQ(fs::status(In("a.dxf.new1")).permissions(), kOwnerAlone);
  file.Commit();
  EXPECT_EQ(fs::status(In("a.dxf")).permissions(), kOwnerAlone);
}
#endif

}  // namespace
}  // namespace lomlisp::test
