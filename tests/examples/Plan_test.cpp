// The example module that works on drawings, called as LISP calls it.
#include <embedded/Session.h>
#include <embedded/drawing/Entries.h>
#include <examples/plan/Plan.h>
#include <tests/support/HostTest.h>

#include <numbers>
#include <string>
#include <utility>
#include <vector>

namespace lomlisp::test {
namespace {

using embedded::Drawing;
using embedded::Groups;
using embedded::Object;
using embedded::Point;

class PlanModule : public HostTest {
 protected:
  PlanModule() {
    for (const LispFunction& function : plan::Functions()) host.Define(function.name, function.call);
  }

  Object& Add(const wchar_t* type, Groups groups) {
    Drawing& drawing = host.CurrentDrawing();
    groups.insert(groups.begin(), {0, type});
    Object& entity = drawing.NewObject(std::move(groups));
    AddHandle(drawing, entity);
    drawing.Append(drawing.Entities(), entity);
    return entity;
  }
  Object& AddInsert(const wchar_t* block,
                    const std::vector<std::pair<const wchar_t*, const wchar_t*>>& values) {
    Drawing& drawing = host.CurrentDrawing();
    Object& insert = Add(L"INSERT", {{8, L"0"}, {66, values.empty() ? 0LL : 1LL}, {2, block}, {10, Point{}}});
    for (const auto& [tag, value] : values)
      drawing.AppendPart(insert, drawing.NewObject({{0, L"ATTRIB"}, {8, L"0"}, {1, value}, {2, tag}}));
    if (!values.empty()) drawing.AppendPart(insert, drawing.NewObject({{0, L"SEQEND"}, {8, L"0"}}));
    return insert;
  }

  std::string Call(const wchar_t* expression) {
    const auto result = host.Evaluate(expression);
    for (const std::string& error : result.errors) ADD_FAILURE() << error;
    return Utf8(result.Text());
  }
};

TEST_F(PlanModule, CountsInsertsByNameAndAttribute) {
  EXPECT_EQ(Call(L"(BILL-OF-MATERIALS \"TYPE\")"), "nil");
  AddInsert(L"DOOR", {{L"NR", L"1"}, {L"TYPE", L"T30"}});
  AddInsert(L"CHAIR", {});
  AddInsert(L"DOOR", {{L"TYPE", L"T30"}, {L"NR", L"2"}});
  AddInsert(L"DOOR", {{L"TYPE", L"T90"}});
  Add(L"LINE", {{8, L"0"}});
  EXPECT_EQ(Call(L"(BILL-OF-MATERIALS \"TYPE\")"),
            "(((\"CHAIR\" . \"\") . 1) ((\"DOOR\" . \"T30\") . 2) ((\"DOOR\" . \"T90\") . 1))");
  EXPECT_EQ(Call(L"(BILL-OF-MATERIALS nil)"), "(((\"CHAIR\" . \"\") . 1) ((\"DOOR\" . \"\") . 3))");
}

TEST_F(PlanModule, AddsUpLengthsAndAreasByLayer) {
  EXPECT_EQ(Call(L"(LAYER-TOTALS)"), "nil");
  Add(L"LINE", {{8, L"A"}, {10, Point{0, 0, 0}}, {11, Point{2, 3, 6}}});
  // A square with a half circle on one side, 2 in diameter, that bulges outwards.
  const double pi = std::numbers::pi;
  Add(L"LWPOLYLINE", {{8, L"B"},
                      {90, 4LL},
                      {70, 1LL},
                      {10, Point{0, 0, 0, true}},
                      {10, Point{2, 0, 0, true}},
                      {42, 1.0},
                      {10, Point{2, 2, 0, true}},
                      {10, Point{0, 2, 0, true}}});
  Add(L"LWPOLYLINE", {{8, L"C"}, {70, 0LL}, {10, Point{0, 0, 0, true}}, {10, Point{3, 4, 0, true}}});
  Add(L"CIRCLE", {{8, L"D"}, {10, Point{}}, {40, 2.0}});
  Add(L"ARC", {{8, L"E"}, {10, Point{}}, {40, 2.0}, {50, 270.0}, {51, 90.0}});
  Add(L"TEXT", {{8, L"F"}, {1, L"x"}});

  const auto result = host.Evaluate(L"(LAYER-TOTALS)");
  std::vector<double> numbers;
  for (const embedded::Record& record : result.value)
    if (record.type == RTREAL) numbers.push_back(record.value.rreal);
  const std::vector<double> expected{7, 0, 6 + pi, 4 + pi / 2, 5, 0, 4 * pi, 4 * pi, 2 * pi, 0};
  ASSERT_EQ(numbers.size(), expected.size()) << Utf8(result.Text());
  for (size_t index = 0; index < expected.size(); ++index)
    EXPECT_NEAR(numbers[index], expected[index], 1e-9) << index;
}

TEST_F(PlanModule, MovesWhatMatchesToALayer) {
  Object& line = Add(L"LINE", {{8, L"0"}, {10, Point{}}, {11, Point{1, 0, 0}}});
  Object& circle = Add(L"CIRCLE", {{8, L"0"}, {10, Point{}}, {40, 1.0}});
  EXPECT_EQ(Call(L"(MOVE-TO-LAYER '((0 . \"LINE\")) \"Walls\")"), "1");
  EXPECT_EQ(TextOf(line.groups, 8), L"Walls");
  EXPECT_EQ(TextOf(circle.groups, 8), L"0");
  EXPECT_NE(host.CurrentDrawing().FindEntry(L"LAYER", L"WALLS"), nullptr);
  EXPECT_EQ(Call(L"(MOVE-TO-LAYER '((0 . \"LINE\")) \"no*layer\")"), "0");
  EXPECT_EQ(Call(L"(MOVE-TO-LAYER '((0 . \"TEXT\")) \"Walls\")"), "0");
}

TEST_F(PlanModule, ReplacesTextsAlsoInAttributes) {
  Object& text = Add(L"TEXT", {{8, L"Bad"}, {10, Point{}}, {40, 1.0}, {1, L"Bad"}});
  Object& note = Add(L"MTEXT", {{8, L"0"}, {10, Point{}}, {40, 1.0}, {1, L"Bad und Flur"}});
  Object& insert = AddInsert(L"DOOR", {{L"ROOM", L"Flur"}, {L"TYPE", L"Bad"}, {L"NR", L"7"}});
  EXPECT_EQ(Call(L"(REPLACE-TEXTS '(\"Bad\" \"Flur\") '(\"Bath\" \"Hall\"))"), "3");
  EXPECT_EQ(TextOf(text.groups, 1), L"Bath");
  EXPECT_EQ(TextOf(text.groups, 8), L"Bad") << "a layer is no text";
  EXPECT_EQ(TextOf(note.groups, 1), L"Bad und Flur") << "whole texts alone";
  EXPECT_EQ(TextOf(insert.parts[0]->groups, 1), L"Hall");
  EXPECT_EQ(TextOf(insert.parts[1]->groups, 1), L"Bath");
  EXPECT_EQ(TextOf(insert.parts[2]->groups, 1), L"7");
  EXPECT_FALSE(insert.needsRegeneration) << "the insert is updated";
  EXPECT_EQ(Call(L"(REPLACE-TEXTS '(\"Bad\") '(\"Bath\"))"), "0");
  EXPECT_EQ(Call(L"(REPLACE-TEXTS nil nil)"), "0");
}

TEST_F(PlanModule, AttachesDataAndReadsItBack) {
  Add(L"LINE", {{8, L"A"}, {10, Point{}}, {11, Point{1, 0, 0}}});
  Add(L"CIRCLE", {{8, L"B"}, {10, Point{}}, {40, 1.0}});
  EXPECT_EQ(Call(L"(READ-TAGS \"TAGS\")"), "nil");
  EXPECT_EQ(Call(L"(TAG-ENTITIES '((0 . \"LINE,CIRCLE\")) \"TAGS\" '(\"x\" 7 2.5))"), "2");
  EXPECT_EQ(Call(L"(READ-TAGS \"TAGS\")"), "((\"A\" \"x\" 7 2.5) (\"B\" \"x\" 7 2.5))");
  EXPECT_EQ(Call(L"(TAG-ENTITIES '((0 . \"LINE\")) \"TAGS\" '(\"y\"))"), "1");
  EXPECT_EQ(Call(L"(READ-TAGS \"TAGS\")"), "((\"A\" \"y\") (\"B\" \"x\" 7 2.5))");
  EXPECT_EQ(Call(L"(READ-TAGS \"OTHER\")"), "nil");
  EXPECT_EQ(Call(L"(TAG-ENTITIES '((0 . \"LINE\")) 5 '(\"y\"))"), "0");
}

TEST_F(PlanModule, SurvivesAHostThatRefusesEverything) {
  AddInsert(L"DOOR", {{L"TYPE", L"T30"}});
  Add(L"TEXT", {{8, L"0"}, {10, Point{}}, {40, 1.0}, {1, L"Bad"}});
  const std::vector<const wchar_t*> calls = {L"(BILL-OF-MATERIALS \"TYPE\")",
                                             L"(LAYER-TOTALS)",
                                             L"(MOVE-TO-LAYER '((0 . \"TEXT\")) \"A\")",
                                             L"(REPLACE-TEXTS '(\"Bad\") '(\"Bath\"))",
                                             L"(TAG-ENTITIES nil \"TAGS\" '(1))",
                                             L"(READ-TAGS \"TAGS\")"};
  for (const char* function : {"acedSSGet", "acedSSLength", "acedSSName", "acdbEntGetX", "acdbEntMod",
                               "acdbEntNext", "acdbEntUpd", "acdbRegApp"}) {
    host.log.Reset();
    host.log.AnswerAll(function, RTERROR);
    for (const wchar_t* call : calls) Call(call);
  }
}

}  // namespace
}  // namespace lomlisp::test
