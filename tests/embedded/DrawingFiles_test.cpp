// The host's drawing and its file: what is opened and saved beside the drawing itself.
#include <embedded/Session.h>
#include <embedded/drawing/Entries.h>
#include <tests/support/HostTest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace lomlisp::test {
namespace {

using embedded::Drawing;
using embedded::Groups;
using embedded::Object;
using embedded::Point;

class DrawingFiles : public HostTest {
 protected:
  DrawingFiles() {
    std::random_device random;
    folder = std::filesystem::temp_directory_path() / ("lomlisp-" + std::to_string(random()));
    std::filesystem::create_directories(folder);
  }
  ~DrawingFiles() override { std::filesystem::remove_all(folder); }

  void SetInteger(const wchar_t* name, short value) {
    embedded::Record record;
    record.type = RTSHORT;
    record.value.rint = value;
    EXPECT_FALSE(host.variables.Set(name, record));
  }
  void SetText(const wchar_t* name, const wchar_t* value) {
    embedded::Record record;
    record.type = RTSTR;
    record.text = value;
    record.hasText = true;
    EXPECT_FALSE(host.variables.Set(name, record));
  }
  const embedded::Record& Variable(const wchar_t* name) { return host.variables.Find(name)->value; }
  std::filesystem::path Write(const char* name, const std::string& header) {
    const std::filesystem::path path = folder / name;
    std::ofstream(path) << "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1015\n"
                        << header << "0\nENDSEC\n0\nSECTION\n2\nENTITIES\n0\nENDSEC\n0\nEOF\n";
    return path;
  }

  std::filesystem::path folder;
};

TEST_F(DrawingFiles, SavingAndOpeningGivesTheDrawingBack) {
  Drawing& drawing = host.CurrentDrawing();
  Object& line = drawing.NewObject({{0, L"LINE"}, {8, L"0"}, {10, Point{1, 2, 3}}, {11, Point{4, 5, 6}}});
  AddHandle(drawing, line);
  drawing.Append(drawing.Entities(), line);
  const uint64_t handle = line.handle;
  Object& erased = drawing.NewObject({{0, L"POINT"}, {10, Point{1, 2, 3}}});
  drawing.Append(drawing.Entities(), erased);
  drawing.SetErased(erased, true);
  const uint64_t erasedHandle = erased.handle;
  ads_name name;
  drawing.NameOf(line.handle, name);
  EXPECT_TRUE(drawing.IsModified());
  ASSERT_FALSE(host.Save(folder / "new.dxf"));
  EXPECT_FALSE(host.CurrentDrawing().IsModified());

  const auto error = host.Open(folder / "new.dxf");
  ASSERT_FALSE(error) << error->message;
  Drawing& opened = host.CurrentDrawing();
  EXPECT_EQ(opened.FindName(name), nullptr) << "names do not outlive their drawing";
  const Object* found = opened.FindHandle(handle);
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(PointOf(found->groups, 11), (Point{4, 5, 6}));
  EXPECT_EQ(opened.FindHandle(erasedHandle), nullptr);
  EXPECT_EQ(opened.Entities().members.size(), 1u);
}

TEST_F(DrawingFiles, TheFileIsKnownToTheSystemVariables) {
  ASSERT_FALSE(host.Save(folder / "plan.dxf"));
  EXPECT_EQ(Variable(L"DWGNAME").text, L"plan.dxf");
  EXPECT_EQ(std::filesystem::path(Variable(L"DWGPREFIX").text), folder / "");
  host.Reset();
  EXPECT_EQ(Variable(L"DWGNAME").text, L"Drawing1.dwg");
  ASSERT_FALSE(host.Open(folder / "plan.dxf"));
  EXPECT_EQ(Variable(L"DWGNAME").text, L"plan.dxf");
}

TEST_F(DrawingFiles, TheHeaderSetsTheSystemVariables) {
  const auto path = Write("a.dxf",
                          "9\n$CLAYER\n8\nWalls\n9\n$LUPREC\n70\n6\n9\n$LTSCALE\n40\n2.5\n"
                          "9\n$LIMMAX\n10\n100.0\n20\n50.0\n9\n$USERI1\n70\n77\n");
  ASSERT_FALSE(host.Open(path));
  EXPECT_EQ(Variable(L"CLAYER").text, L"Walls");
  EXPECT_EQ(Variable(L"LUPREC").value.rint, 6);
  EXPECT_EQ(Variable(L"LTSCALE").value.rreal, 2.5);
  EXPECT_EQ(Variable(L"LIMMAX").value.rpoint[1], 50.0);
  EXPECT_EQ(Variable(L"USERI1").value.rint, 77);
}

TEST_F(DrawingFiles, ChangedVariablesAreSavedAndWhatTheHostDoesNotTakeStays) {
  const auto path = Write("b.dxf",
                          "9\n$CLAYER\n8\nWalls\n9\n$LUPREC\n70\n99\n9\n$LTSCALE\n40\n-2.5\n"
                          "9\n$LIMMAX\n10\n100.0\n20\n50.0\n9\n$USERI1\n40\n1.5\n9\n$OSMODE\n70\n5\n");
  ASSERT_FALSE(host.Open(path));
  SetText(L"CLAYER", L"Doors");
  SetInteger(L"OSMODE", 7);
  ASSERT_FALSE(host.Save(folder / "c.dxf"));
  ASSERT_FALSE(host.Open(folder / "c.dxf"));
  Drawing& drawing = host.CurrentDrawing();
  EXPECT_EQ(drawing.HeaderVariable(L"$CLAYER"), (Groups{{8, L"Doors"}}));
  EXPECT_EQ(drawing.HeaderVariable(L"$OSMODE"), (Groups{{70, 7LL}}));
  EXPECT_EQ(drawing.HeaderVariable(L"$LUPREC"), (Groups{{70, 99LL}})) << "out of the host's range";
  EXPECT_EQ(drawing.HeaderVariable(L"$LTSCALE"), (Groups{{40, -2.5}}));
  EXPECT_EQ(drawing.HeaderVariable(L"$LIMMAX"), (Groups{{10, Point{100, 50, 0, true}}}));
  EXPECT_EQ(drawing.HeaderVariable(L"$USERI1"), (Groups{{40, 1.5}})) << "of another type";
  EXPECT_TRUE(drawing.HeaderVariable(L"$ELEVATION").empty()) << "nothing is added";
}

TEST_F(DrawingFiles, AnErrorLeavesEverythingAsItWas) {
  Drawing& drawing = host.CurrentDrawing();
  SetText(L"CLAYER", L"Walls");
  const auto bad = folder / "bad.dxf";
  std::ofstream(bad) << "0\nSECTION\n2\nHEADER\n9\n$CLAYER\n8\nDoors\n0\nENDSEC\n0\nSECTION\n2\nENTITIES\n";
  const auto error = host.Open(bad);
  ASSERT_TRUE(error);
  EXPECT_NE(error->message, "");
  EXPECT_TRUE(host.Open(folder / "none.dxf"));
  EXPECT_TRUE(host.Open(folder));
  EXPECT_EQ(&host.CurrentDrawing(), &drawing);
  EXPECT_EQ(Variable(L"CLAYER").text, L"Walls");
  EXPECT_TRUE(host.Save(folder / "no" / "such" / "folder.dxf"));
  EXPECT_EQ(Variable(L"DWGNAME").text, L"Drawing1.dwg");
}

TEST_F(DrawingFiles, BinaryAndAsciiFilesHoldTheSame) {
  Drawing& drawing = host.CurrentDrawing();
  Object& text =
      drawing.NewObject({{0, L"TEXT"}, {8, L"0"}, {10, Point{1, 2, 3}}, {40, 2.5}, {1, L"K\u00FCche"}});
  AddHandle(drawing, text);
  const uint64_t handle = text.handle;
  drawing.Append(drawing.Entities(), text);
  ASSERT_FALSE(host.Save(folder / "b.dxf", embedded::DxfForm::Binary));
  ASSERT_FALSE(host.Open(folder / "b.dxf"));
  ASSERT_FALSE(host.Save(folder / "a.dxf"));
  ASSERT_FALSE(host.Open(folder / "a.dxf"));
  EXPECT_EQ(TextOf(host.CurrentDrawing().FindHandle(handle)->groups, 1), L"K\u00FCche");
}

}  // namespace
}  // namespace lomlisp::test
