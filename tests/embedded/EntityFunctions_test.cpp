// The platform functions for entities, tables and picks on a drawing.
#include <lomlisp/platform/modules.h>

#include <embedded/Session.h>
#include <tests/support/HostTest.h>

#include <array>
#include <string>
#include <vector>

namespace lomlisp::test {
namespace {

using embedded::Drawing;
using embedded::Object;
using embedded::Point;

class EntityFunctions : public HostTest {
 protected:
  // From LISP text, as in L"((0 . \"POLYLINE\") (70 . 1))".
  int MakeStatus(const wchar_t* groups) {
    ADSList chain;
    CLOMAdsLispVar(V(groups)).LispToDXF(chain);
    return acdbEntMake(chain);
  }
  // A group of a point is a list of the code and the point: (10 (x y z)).
  int MakeAt(const wchar_t* type, double x) {
    const double at[3] = {x, 0.0, 0.0};
    ADSList chain;
    CLOMAdsLisp::List(CLOMAdsLispVar(CLOMAdsLisp::Cons(0, type)), CLOMAdsLisp::List(10, at)).LispToDXF(chain);
    return acdbEntMake(chain);
  }
  Object& MakePoint(double x) {
    EXPECT_EQ(MakeAt(L"POINT", x), RTNORM) << Reason("acdbEntMake");
    return *Drawing::Last(Entities());
  }

  Drawing& TheDrawing() { return host.CurrentDrawing(); }
  embedded::EntityList& Entities() { return TheDrawing().Entities(); }
  std::string Reason(const char* function) {
    const embedded::LoggedCall* call = host.log.Last(function);
    return call != nullptr ? call->objection.value_or("") : "no call";
  }
  short Errno() { return host.variables.Find(L"ERRNO")->value.value.rint; }

  struct Name {
    ads_name words = {};
    friend bool operator==(const Name& left, const Name& right) {
      return left.words[0] == right.words[0] && left.words[1] == right.words[1];
    }
  };
  Name NameOf(const Object& object) {
    Name name;
    TheDrawing().NameOf(object.handle, name.words);
    return name;
  }
  std::string Read(const Name& name, const resbuf* applications = nullptr) {
    resbuf* chain = acdbEntGetX(name.words, applications);
    const std::string text = chain != nullptr ? Text(chain) : "null";
    acutRelRb(chain);
    return text;
  }
};

TEST_F(EntityFunctions, ADrawingWithoutEntitiesHasNoneToGive) {
  Name name;
  EXPECT_EQ(acdbEntLast(name.words), RTERROR);
  EXPECT_EQ(Reason("acdbEntLast"), "the drawing has no entities");
  EXPECT_EQ(acdbEntNext(nullptr, name.words), RTERROR);
  EXPECT_EQ(name, Name());
}

TEST_F(EntityFunctions, NextGoesThroughAllThatIsNotErased) {
  const std::array<Name, 4> names = {NameOf(MakePoint(0)), NameOf(MakePoint(1)), NameOf(MakePoint(2)),
                                     NameOf(MakePoint(3))};
  EXPECT_EQ(acdbEntDel(names[0].words), RTNORM);
  EXPECT_EQ(acdbEntDel(names[2].words), RTNORM);
  Name next;
  ASSERT_EQ(acdbEntNext(nullptr, next.words), RTNORM);
  EXPECT_EQ(next, names[1]);
  ASSERT_EQ(acdbEntNext(next.words, next.words), RTNORM);
  EXPECT_EQ(next, names[3]);
  EXPECT_EQ(acdbEntNext(next.words, next.words), RTERROR);
  EXPECT_EQ(next, names[3]) << "a refusal leaves the caller's name alone";
  EXPECT_EQ(acdbEntNext(names[0].words, next.words), RTERROR) << "erased";
  EXPECT_EQ(acdbEntLast(next.words), RTNORM);
  EXPECT_EQ(next, names[3]);
}

TEST_F(EntityFunctions, RestoredEntitiesStandAtTheirOldPlaces) {
  const std::array<Name, 3> names = {NameOf(MakePoint(0)), NameOf(MakePoint(1)), NameOf(MakePoint(2))};
  for (const Name& name : names) EXPECT_EQ(acdbEntDel(name.words), RTNORM);
  Name found;
  EXPECT_EQ(acdbEntLast(found.words), RTERROR);
  EXPECT_EQ(acdbEntNext(nullptr, found.words), RTERROR);
  EXPECT_EQ(acdbEntDel(names[1].words), RTNORM);
  ASSERT_EQ(acdbEntLast(found.words), RTNORM);
  EXPECT_EQ(found, names[1]);
  EXPECT_EQ(acdbEntDel(names[0].words), RTNORM);
  EXPECT_EQ(acdbEntDel(names[2].words), RTNORM);
  ASSERT_EQ(acdbEntNext(nullptr, found.words), RTNORM);
  for (const Name& name : names) {
    EXPECT_EQ(found, name);
    acdbEntNext(found.words, found.words);
  }
}

TEST_F(EntityFunctions, NextGoesThroughThePartsOfAHeader) {
  for (const int status : {MakeStatus(L"((0 . \"POLYLINE\") (70 . 1))"), MakeAt(L"VERTEX", 0),
                           MakeAt(L"VERTEX", 1), MakeStatus(L"((0 . \"SEQEND\"))")})
    EXPECT_EQ(status, RTNORM) << Reason("acdbEntMake");
  const Object* header = Drawing::Last(Entities());
  ASSERT_NE(header, nullptr);
  const Name behind = NameOf(MakePoint(9));

  std::vector<std::string> types;
  Name name = NameOf(*header);
  do types.push_back(Utf8(TheDrawing().FindName(name.words)->Type()));
  while (acdbEntNext(name.words, name.words) == RTNORM);
  EXPECT_EQ(types, (std::vector<std::string>{"POLYLINE", "VERTEX", "VERTEX", "SEQEND", "POINT"}));
  EXPECT_EQ(name, behind);
  Name last;
  acdbEntDel(behind.words);
  ASSERT_EQ(acdbEntLast(last.words), RTNORM);
  EXPECT_EQ(last, NameOf(*header)) << "the header, not its SEQEND";
}

TEST_F(EntityFunctions, GetXGivesTheNameTheHandleAndTheGroups) {
  Object& point = MakePoint(1.5);
  const std::string text = Read(NameOf(point));
  const std::string handle = Utf8(embedded::HandleText(point.handle));
  EXPECT_TRUE(text.starts_with("(-1 . <Entity name: ")) << text;
  EXPECT_NE(text.find("(0 . \"POINT\") (5 . \"" + handle + "\")"), std::string::npos) << text;
  EXPECT_NE(text.find("(8 . \"0\")"), std::string::npos) << text;
  EXPECT_NE(text.find("(10 1.5 0.0 0.0)"), std::string::npos) << text;
  EXPECT_NE(text.find("(210 0.0 0.0 1.0)"), std::string::npos) << text;
  EXPECT_EQ(text.find("(62 "), std::string::npos) << text;
}

TEST_F(EntityFunctions, GetXGivesNullForWhatIsNotThere) {
  const Name point = NameOf(MakePoint(1.0));
  EXPECT_EQ(Read(Name()), "null");
  EXPECT_EQ(Reason("acdbEntGetX"), "no entity has this name, or it is erased");
  Name foreign = point;
  ++foreign.words[1];
  EXPECT_EQ(Read(foreign), "null");
  EXPECT_EQ(acdbEntGetX(nullptr, nullptr), nullptr);
  acdbEntDel(point.words);
  EXPECT_EQ(Read(point), "null");
}

TEST_F(EntityFunctions, GetXGivesExtendedDataOfTheApplicationsThatAreAskedFor) {
  Object& point = MakePoint(1.0);
  point.extended = {
      {L"FIRST", {{1000, L"a"}, {1070, 7LL}}}, {L"SECOND", {{1040, 2.5}}}, {L"OTHER", {{1000, L"z"}}}};
  const Name name = NameOf(point);
  EXPECT_EQ(Read(name).find("-3"), std::string::npos);
  struct Case {
    const wchar_t* applications;
    const char* end;
  };
  for (const Case& one :
       {Case{L"\"FIRST\"", "(-3 . 0) (1001 . \"FIRST\") (1000 . \"a\") (1070 . 7)"},
        Case{L"(\"second\")", "(-3 . 0) (1001 . \"SECOND\") (1040 . 2.5)"},
        Case{L"(\"F*\" \"OTHER\")",
             "(-3 . 0) (1001 . \"FIRST\") (1000 . \"a\") (1070 . 7) (1001 . \"OTHER\") (1000 . \"z\")"},
        Case{L"\"NONE\"", "(210 0.0 0.0 1.0)"}}) {
    const std::string text = Read(name, TextChain(one.applications));
    EXPECT_TRUE(text.ends_with(one.end)) << text;
  }
  EXPECT_EQ(Read(name, TextChain(L"5")), "null") << "no names";
  EXPECT_NE(Reason("acdbEntGetX"), "");
}

TEST_F(EntityFunctions, HandlesGiveNames) {
  Object& point = MakePoint(1.0);
  Name name;
  const std::wstring handle = embedded::HandleText(point.handle);
  ASSERT_EQ(acdbHandEnt(handle.c_str(), name.words), RTNORM);
  EXPECT_EQ(name, NameOf(point));
  for (const wchar_t* bad : {L"", L"XYZ", L"FFFFFFF"}) EXPECT_EQ(acdbHandEnt(bad, name.words), RTERROR);
  EXPECT_EQ(acdbHandEnt(nullptr, name.words), RTERROR);
  EXPECT_EQ(acdbHandEnt(handle.c_str(), nullptr), RTERROR);
  acdbEntDel(name.words);
  ASSERT_EQ(acdbHandEnt(handle.c_str(), name.words), RTNORM) << "to restore it by its handle";
  EXPECT_EQ(acdbEntDel(name.words), RTNORM);
  EXPECT_FALSE(point.isErased);
}

TEST_F(EntityFunctions, ARefusalSaysWhyInTheLogAndIsNoFaultOfTheFunction) {
  host.Define(L"MAKE", [this] {
    MakeStatus(L"((0 . \"LINE\"))");
    return RTNORM;
  });
  const auto result = host.Call(L"MAKE", L"");
  EXPECT_TRUE(result.errors.empty());
  EXPECT_EQ(host.log.Last("acdbEntMake")->status, RTERROR);
  EXPECT_NE(Reason("acdbEntMake"), "");
}

TEST_F(EntityFunctions, NewEntitiesAreOnTheCurrentLayer) {
  TheDrawing().NewEntry(L"LAYER", L"Walls", {{70, 0LL}, {62, 7LL}, {6, L"Continuous"}});
  host.variables.Find(L"CLAYER")->value.text = L"Walls";
  EXPECT_EQ(TextOf(MakePoint(1.0).groups, 8), L"Walls");
}

TEST_F(EntityFunctions, PicksAreAnsweredAsLaidDown) {
  Object& point = MakePoint(5.0);
  host.answers.Add(embedded::PickEntity{point.handle, {1.0, 2.0, 3.0}});
  host.answers.Add(embedded::PickPoint{{5.5, 0.5}});
  host.answers.Add(embedded::PickPoint{{50.0, 0.5}});
  host.answers.Add(embedded::PickNothing{});
  host.answers.Add(embedded::PressEnter{});
  host.answers.Add(embedded::PressCancel{});
  host.answers.Add(embedded::TypeKeyword{L"All"});
  Name name;
  ads_point picked;
  ASSERT_EQ(acedEntSel(L"Pick: ", name.words, picked), RTNORM);
  EXPECT_EQ(name, NameOf(point));
  EXPECT_EQ(std::vector<double>(picked, picked + 3), (std::vector<double>{1.0, 2.0, 3.0}));
  EXPECT_EQ(host.variables.Find(L"LASTPOINT")->value.value.rpoint[2], 3.0);
  name = Name();
  ASSERT_EQ(acedEntSel(nullptr, name.words, picked), RTNORM);
  EXPECT_EQ(name, NameOf(point));
  EXPECT_EQ(Errno(), 0);
  EXPECT_EQ(acedEntSel(nullptr, name.words, picked), RTERROR);
  EXPECT_EQ(Errno(), 7);
  EXPECT_EQ(acedEntSel(nullptr, name.words, picked), RTERROR);
  EXPECT_EQ(Errno(), 7);
  EXPECT_EQ(acedEntSel(nullptr, name.words, picked), RTERROR);
  EXPECT_EQ(Errno(), 52);
  EXPECT_EQ(acedEntSel(nullptr, name.words, picked), RTCAN);
  EXPECT_EQ(acedEntSel(nullptr, name.words, picked), RTKWORD);
  EXPECT_EQ(host.answers.lastKeyword, L"All");
  EXPECT_EQ(host.answers.Waiting(), 0u);
}

TEST_F(EntityFunctions, AMissingAnswerIsAnErrorAndNoWait) {
  host.Define(L"PICK", [] {
    ads_name name;
    ads_point picked;
    return acedEntSel(nullptr, name, picked);
  });
  auto result = host.Call(L"PICK", L"");
  ASSERT_EQ(result.errors.size(), 1u);
  EXPECT_EQ(result.errors[0], "acedEntSel: the user is asked, and no answer is laid down");
  EXPECT_EQ(result.status, RTERROR);
  host.answers.Add(embedded::PickEntity{0xFFFF, {}});
  EXPECT_EQ(host.Call(L"PICK", L"").errors.size(), 1u) << "an entity that is not there";
  host.answers.Add(embedded::SelectEntities{});
  EXPECT_EQ(host.Call(L"PICK", L"").errors.size(), 1u) << "a selection";
}

// --- Tables ---

std::string Taken(resbuf* chain) {
  const std::string text = chain != nullptr ? Text(chain) : "null";
  acutRelRb(chain);
  return text;
}

TEST_F(EntityFunctions, TablesAreSearchedWithoutRegardToCase) {
  EXPECT_EQ(Taken(acdbTblSearch(L"layer", L"0", 0)),
            "(0 . \"LAYER\") (2 . \"0\") (70 . 0) (62 . 7) (6 . \"Continuous\")");
  EXPECT_EQ(Taken(acdbTblSearch(L"LTYPE", L"CONTINUOUS", 0)).substr(0, 36),
            "(0 . \"LTYPE\") (2 . \"Continuous\") (70");
  EXPECT_EQ(Taken(acdbTblSearch(L"LAYER", L"1", 0)), "null");
  EXPECT_EQ(Reason("acdbTblSearch"), "the table has no such entry");
  EXPECT_EQ(Taken(acdbTblSearch(L"TABLE", L"1", 0)), "null");
  EXPECT_EQ(Reason("acdbTblSearch"), "no table has this name");
  EXPECT_EQ(acdbTblSearch(nullptr, L"0", 0), nullptr);
  EXPECT_EQ(acdbTblSearch(L"LAYER", nullptr, 0), nullptr);
}

TEST_F(EntityFunctions, NextInTableGoesOnAndRewinds) {
  TheDrawing().NewEntry(L"LAYER", L"A", {});
  TheDrawing().NewEntry(L"LAYER", L"B", {});
  EXPECT_TRUE(Taken(acdbTblNext(L"LAYER", 1)).starts_with("(0 . \"LAYER\") (2 . \"0\")"));
  EXPECT_EQ(Taken(acdbTblNext(L"layer", 0)), "(0 . \"LAYER\") (2 . \"A\")");
  EXPECT_EQ(Taken(acdbTblNext(L"LAYER", 0)), "(0 . \"LAYER\") (2 . \"B\")");
  EXPECT_EQ(acdbTblNext(L"LAYER", 0), nullptr);
  EXPECT_EQ(acdbTblNext(L"LAYER", 0), nullptr);
  EXPECT_EQ(Taken(acdbTblSearch(L"LAYER", L"A", 1)), "(0 . \"LAYER\") (2 . \"A\")");
  EXPECT_EQ(Taken(acdbTblNext(L"LAYER", 0)), "(0 . \"LAYER\") (2 . \"B\")") << "behind what was searched";
  Taken(acdbTblSearch(L"LAYER", L"0", 0));
  EXPECT_EQ(acdbTblNext(L"LAYER", 0), nullptr) << "a plain search leaves the place";
  EXPECT_EQ(acdbTblNext(nullptr, 0), nullptr);
  EXPECT_EQ(acdbTblNext(L"NONE", 0), nullptr);
}

TEST_F(EntityFunctions, BlocksAreATableWithoutTheSpaces) {
  EXPECT_EQ(acdbTblNext(L"BLOCK", 1), nullptr);
  Drawing& drawing = TheDrawing();
  Object& begin = drawing.NewObject({{0, L"BLOCK"}, {2, L"Door"}, {70, 0LL}, {10, Point{}}});
  Object& end = drawing.NewObject({{0, L"ENDBLK"}});
  embedded::BlockDefinition& block = drawing.AppendBlock(begin, end);
  EXPECT_EQ(Taken(acdbTblNext(L"BLOCK", 1)), "(0 . \"BLOCK\") (2 . \"Door\") (70 . 0) (10 0.0 0.0 0.0)");
  Object& first = drawing.NewObject({{0, L"LINE"}});
  drawing.Append(block.content, first);
  resbuf* chain = acdbTblSearch(L"BLOCK", L"DOOR", 0);
  ASSERT_NE(chain, nullptr);
  const resbuf* last = chain;
  while (last->rbnext != nullptr) last = last->rbnext;
  EXPECT_EQ(last->restype, -2);
  EXPECT_EQ(drawing.FindName(last->resval.rlname), &first);
  acutRelRb(chain);
  Name name;
  ASSERT_EQ(acdbTblObjName(L"BLOCK", L"door", name.words), RTNORM);
  EXPECT_EQ(drawing.FindName(name.words), &begin);
}

TEST_F(EntityFunctions, BlocksThatAreDefinedAnewBeginWithTheirNewContent) {
  const auto define = [&](std::vector<double> points) {
    EXPECT_EQ(MakeStatus(L"((0 . \"BLOCK\") (2 . \"Dots\") (70 . 0))"), RTERROR) << "without its point";
    const double origin[3] = {};
    ADSList block;
    CLOMAdsLisp::List(CLOMAdsLispVar(CLOMAdsLisp::Cons(0, L"BLOCK")),
                      CLOMAdsLispVar(CLOMAdsLisp::Cons(2, L"Dots")), CLOMAdsLispVar(CLOMAdsLisp::Cons(70, 0)),
                      CLOMAdsLisp::List(10, origin))
        .LispToDXF(block);
    EXPECT_EQ(acdbEntMake(block), RTNORM) << Reason("acdbEntMake");
    for (const double x : points) EXPECT_EQ(MakeAt(L"POINT", x), RTNORM);
    EXPECT_EQ(MakeStatus(L"((0 . \"ENDBLK\"))"), RTNORM) << Reason("acdbEntMake");
  };
  embedded::BlockDefinition* block = nullptr;
  for (const std::vector<double>& points : {std::vector<double>{1, 2, 3}, {4}, {}, {5, 6}}) {
    define(points);
    block = TheDrawing().FindBlock(L"DOTS");
    ASSERT_NE(block, nullptr);
    const Object* first = Drawing::First(block->content);
    ASSERT_EQ(first != nullptr, !points.empty());
    if (points.empty()) continue;
    EXPECT_EQ(PointOf(first->groups, 10).x, points.front());
    EXPECT_EQ(PointOf(Drawing::Last(block->content)->groups, 10).x, points.back());
    TheDrawing().SetErased(*block->content.members.front(), true);
    Drawing::First(block->content);
  }
}

TEST_F(EntityFunctions, EntriesHaveNames) {
  Name name;
  ASSERT_EQ(acdbTblObjName(L"LAYER", L"0", name.words), RTNORM);
  EXPECT_EQ(TheDrawing().FindName(name.words), TheDrawing().FindEntry(L"LAYER", L"0"));
  EXPECT_NE(Read(name).find("AcDbLayerTableRecord"), std::string::npos);
  EXPECT_EQ(acdbTblObjName(L"LAYER", L"none", name.words), RTERROR);
  EXPECT_EQ(acdbTblObjName(L"NONE", L"0", name.words), RTERROR);
  EXPECT_EQ(acdbTblObjName(L"LAYER", L"0", nullptr), RTERROR);
}

TEST_F(EntityFunctions, ApplicationsAreRegisteredOnce) {
  EXPECT_EQ(acdbRegApp(L"TAGS"), RTNORM);
  EXPECT_NE(TheDrawing().FindEntry(L"APPID", L"tags"), nullptr);
  EXPECT_EQ(acdbRegApp(L"Tags"), RTERROR);
  EXPECT_EQ(Reason("acdbRegApp"), "it is registered already");
  for (const wchar_t* bad : {L"", L"a*b", L"a|b"}) EXPECT_EQ(acdbRegApp(bad), RTERROR) << Utf8(bad);
  EXPECT_EQ(acdbRegApp(nullptr), RTERROR);
}

TEST_F(EntityFunctions, MemoryThatRunsOutLeavesNothingBehind) {
  Object& point = MakePoint(1.0);
  point.extended = {{L"ACAD", {{1000, L"text"}}}};
  const Name name = NameOf(point);
  const TextChain all(L"\"*\"");
  for (uint64_t n = 1; n < 40; ++n) {
    host.ledger.FailAllocation(n);
    acutRelRb(acdbEntGetX(name.words, all));
    host.ledger.FailAllocation(n);
    acutRelRb(acdbTblSearch(L"LAYER", L"0", 0));
    host.ledger.FailAllocation(0);
  }
}

}  // namespace
}  // namespace lomlisp::test
