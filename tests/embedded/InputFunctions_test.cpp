// The functions that ask the user.
#include <lomlisp/platform/modules.h>

#include <embedded/Keywords.h>
#include <embedded/Questions.h>
#include <embedded/drawing/Entries.h>
#include <tests/support/HostTest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>
#include <string>
#include <vector>

namespace lomlisp::test {
namespace {

using embedded::Object;
using embedded::Point;
using embedded::TypeText;
using embedded::UserAnswer;

constexpr double kPi = std::numbers::pi;

// --- Keywords ---

TEST(Keywords, AreKnownByTheirRequiredPart) {
  struct Case {
    const wchar_t* list;
    const wchar_t* typed;
    const wchar_t* keyword;  // null: none
  };
  for (const Case& one : {Case{L"Yes No", L"Y", L"Yes"},
                          Case{L"Yes No", L"y", L"Yes"},
                          Case{L"Yes No", L"ye", L"Yes"},
                          Case{L"Yes No", L"YES", L"Yes"},
                          Case{L"Yes No", L"no", L"No"},
                          Case{L"Yes No", L"yesterday", nullptr},
                          Case{L"Yes No", L"es", nullptr},
                          Case{L"Yes No", L"x", nullptr},
                          Case{L"LTYPE,LT", L"lt", L"LTYPE"},
                          Case{L"LTYPE,LT", L"ltyp", L"LTYPE"},
                          Case{L"LTYPE,LT", L"ltype", L"LTYPE"},
                          Case{L"LTYPE,LT", L"l", nullptr},
                          Case{L"LTYPE,LT", L"ltypes", nullptr},
                          Case{L"LType", L"lt", L"LType"},
                          Case{L"LType", L"l", nullptr},
                          Case{L"Layer LType", L"L", L"Layer"},
                          Case{L"Layer LType", L"Lt", L"LType"},
                          Case{L"eXit", L"x", L"eXit"},
                          Case{L"eXit", L"xi", L"eXit"},
                          Case{L"eXit", L"exit", L"eXit"},
                          Case{L"eXit", L"e", nullptr},
                          Case{L"ALL", L"al", nullptr},
                          Case{L"ALL", L"all", L"ALL"},
                          Case{L"none", L"non", nullptr},
                          Case{L"none", L"NONE", L"none"},
                          Case{L"2point 3Point", L"2", L"2point"},
                          Case{L"2point 3Point", L"3p", L"3Point"},
                          Case{L"HIDE,Q", L"q", L"HIDE"},
                          Case{L"HIDE,Q", L"hide", L"HIDE"},
                          Case{L"HIDE,", L"hide", L"HIDE"},
                          Case{L"  Yes\t No\n", L"n", L"No"},
                          Case{L"Yes No", L"_y", L"Yes"},
                          Case{L"Ja Nein _Yes No", L"j", L"Yes"},
                          Case{L"Ja Nein _Yes No", L"nein", L"No"},
                          Case{L"Ja Nein _Yes No", L"_n", L"No"},
                          Case{L"Ja Nein _Yes No", L"y", nullptr},
                          Case{L"Ja Nein _Yes", L"nein", L"Nein"},
                          Case{L"_Yes No", L"n", L"No"},
                          Case{L"_Yes No", L"_yes", L"Yes"},
                          Case{L"\x00C4ndern", L"\x00E4", L"\x00C4ndern"},
                          Case{L"", L"x", nullptr},
                          Case{L"_", L"_", nullptr},
                          Case{L", ,A", L"a", nullptr},
                          Case{L"Yes", L"_", nullptr}}) {
    const auto match = embedded::Keywords(one.list).Match(one.typed);
    EXPECT_EQ(match, one.keyword != nullptr ? std::optional<std::wstring>(one.keyword) : std::nullopt)
        << Utf8(one.list) << " / " << Utf8(one.typed);
  }
  EXPECT_TRUE(embedded::Keywords(L" , ").IsEmpty());
  EXPECT_FALSE(embedded::Keywords(L"a").IsEmpty());
}

// --- Functions ---

class InputFunctions : public HostTest {
 protected:
  void Type(std::initializer_list<const wchar_t*> lines) {
    for (const wchar_t* line : lines) host.answers.Add(TypeText{line});
  }
  template <typename Number>
  static std::string Described(int status, Number number) {
    switch (status) {
      case RTNORM:
        return std::to_string(number);
      case RTNONE:
        return "none";
      case RTKWORD:
        return "keyword " + Input();
      case RTCAN:
        return "cancel";
      default:
        return status == RTERROR ? "error" : std::to_string(status);
    }
  }
  static std::string Input() {
    wchar_t text[133];
    EXPECT_EQ(acedGetInput(text), RTNORM);
    return Utf8(text);
  }
  // What came of the question: its value, or what else.
  std::string Integer(const wchar_t* prompt = L"") {
    int number = -7;
    const int status = acedGetInt(prompt, &number);
    EXPECT_TRUE(status == RTNORM || number == -7);
    return Described(status, number);
  }
  static std::string Real() {
    double number = -7.0;
    const int status = acedGetReal(L"", &number);
    EXPECT_TRUE(status == RTNORM || number == -7.0);
    return Described(status, number);
  }
  static std::string Distance(const double* base = nullptr, const wchar_t* prompt = L"") {
    double number = -7.0;
    const int status = acedGetDist(base, prompt, &number);
    EXPECT_TRUE(status == RTNORM || number == -7.0);
    return Described(status, number);
  }
  // In degrees.
  static std::string Angle(const double* base = nullptr) {
    double number = -7.0;
    const int status = acedGetAngle(base, L"", &number);
    EXPECT_TRUE(status == RTNORM || number == -7.0);
    return Described(status, number / kPi * 180.0);
  }
  static std::string PointText(int status, const double* point) {
    if (status != RTNORM) return Described(status, 0);
    std::string text;
    for (size_t axis = 0; axis < 3; ++axis)
      text += (axis > 0 ? "," : "") + std::to_string(std::lround(point[axis] * 1000.0));
    return text;
  }
  // In thousandths.
  static std::string GotPoint(const double* base = nullptr) {
    ads_point point = {-7.0, -7.0, -7.0};
    const int status = acedGetPoint(base, L"", point);
    EXPECT_TRUE(status == RTNORM || point[0] == -7.0);
    return PointText(status, point);
  }
  static std::string Corner() {
    const ads_point base = {};
    ads_point point = {};
    const int status = acedGetCorner(base, L"", point);
    return PointText(status, point);
  }
  std::string LastPoint() { return PointText(RTNORM, host.variables.Find(L"LASTPOINT")->value.value.rpoint); }
  static std::string String(bool allowBlanks = true) {
    wchar_t text[133] = L"untouched";
    const int status = acedGetString(allowBlanks ? 1 : 0, L"", text);
    EXPECT_TRUE(status == RTNORM || text == std::wstring(L"untouched"));
    return status == RTNORM ? "'" + Utf8(text) + "'" : Described(status, 0);
  }
  static std::string Keyword() {
    wchar_t text[133] = L"untouched";
    const int status = acedGetKword(L"", text);
    EXPECT_TRUE(status == RTNORM || text == std::wstring(L"untouched"));
    return status == RTNORM ? "'" + Utf8(text) + "'" : Described(status, 0);
  }
  // Each function with a place for the answer, by its name.
  struct Asking {
    const char* function;
    std::function<int()> ask;
  };
  std::vector<Asking> AllFunctions() {
    return {{"acedGetString", [this] { return acedGetString(1, L"?", m_text); }},
            {"acedGetKword", [this] { return acedGetKword(L"?", m_text); }},
            {"acedGetInt", [this] { return acedGetInt(L"?", &m_integer); }},
            {"acedGetReal", [this] { return acedGetReal(L"?", &m_real); }},
            {"acedGetDist", [this] { return acedGetDist(m_point, L"?", &m_real); }},
            {"acedGetAngle", [this] { return acedGetAngle(m_point, L"?", &m_real); }},
            {"acedGetPoint", [this] { return acedGetPoint(m_point, L"?", m_point); }},
            {"acedGetCorner", [this] { return acedGetCorner(m_point, L"?", m_point); }}};
  }

 private:
  wchar_t m_text[133] = {};
  int m_integer = 0;
  double m_real = 0.0;
  ads_point m_point = {};
};

TEST_F(InputFunctions, IntegersHaveSixteenBits) {
  Type({L"5", L" -32768 ", L"32767", L"+3"});
  EXPECT_EQ(Integer(), "5");
  EXPECT_EQ(Integer(), "-32768");
  EXPECT_EQ(Integer(), "32767");
  EXPECT_EQ(Integer(), "3");
  const std::vector<const wchar_t*> refused = {
      L"2.5",  L"five", L"32768",  L"-32769", L"99999999999999999999",
      L"1 2",  L"1,2",  L"-",      L"5.",     L"1e2",
      L"0x10", L"@",    L"\x0665", L"<",      L"(+ 1 2)"};
  for (const wchar_t* line : refused) Type({line});
  host.answers.Add(embedded::PickPoint{{1.0, 2.0}});
  host.answers.Add(embedded::PickNothing{});
  host.answers.Add(embedded::SelectEntities{});
  Type({L"1"});
  host.console.Take();
  EXPECT_EQ(Integer(L"How many: "), "1");
  const std::string printed = Printed();
  EXPECT_TRUE(printed.starts_with("How many: 2.5\nRequires an integer value.\nHow many: five\n")) << printed;
  size_t count = 0;
  for (size_t at = 0; (at = printed.find("Requires an integer value.\n", at)) != printed.npos; ++at) ++count;
  EXPECT_EQ(count, refused.size() + 3) << printed;
  EXPECT_TRUE(printed.ends_with("How many: 1\n")) << printed;
}

TEST_F(InputFunctions, RealsAreTypedAsTheyStand) {
  Type({L"2.5", L"1e3", L"-.5", L"7", L"40000", L"1.", L"3/4", L"1e999", L"nan", L"inf", L"two", L"0"});
  EXPECT_EQ(Real(), "2.500000");
  EXPECT_EQ(Real(), "1000.000000");
  EXPECT_EQ(Real(), "-0.500000");
  EXPECT_EQ(Real(), "7.000000");
  EXPECT_EQ(Real(), "40000.000000");
  EXPECT_EQ(Real(), "1.000000");
  host.console.Take();
  EXPECT_EQ(Real(), "0.000000");
  EXPECT_EQ(Printed(),
            "3/4\nRequires numeric value.\n1e999\nRequires numeric value.\nnan\nRequires numeric value.\n"
            "inf\nRequires numeric value.\ntwo\nRequires numeric value.\n0\n");
}

TEST_F(InputFunctions, DistancesAreTypedOrShown) {
  const ads_point base = {1.0, 1.0, 1.0};
  Type({L"2.5", L"4,5,1", L"2.5", L"1,1", L"4,5", L"1,1"});
  EXPECT_EQ(Distance(), "2.500000");
  EXPECT_EQ(Distance(base), "5.000000");
  EXPECT_EQ(LastPoint(), "4000,5000,1000");
  EXPECT_EQ(Distance(base), "2.500000");
  host.console.Take();
  EXPECT_EQ(Distance(nullptr, L"How far: "), "5.000000");
  EXPECT_EQ(Printed(), "How far: 1,1\nSpecify second point: 4,5\n");
  EXPECT_EQ(Distance(base), "1.000000") << "in space, the elevation being 0";
  Type({L"0,0", L"@3,4", L"0,0", L"far", L"7"});
  EXPECT_EQ(Distance(), "5.000000") << "from the first point";
  host.console.Take();
  EXPECT_EQ(Distance(), "7.000000");
  EXPECT_EQ(Printed(),
            "0,0\nSpecify second point: far\nRequires numeric distance or two points.\n"
            "Specify second point: 7\n");
  host.answers.Add(embedded::PickPoint{{0.0, 0.0}});
  host.answers.Add(embedded::PickEntity{5, {0.0, 2.0}});
  EXPECT_EQ(Distance(), "2.000000");
  Type({L"0,0"});
  host.answers.Add(embedded::PressCancel{});
  EXPECT_EQ(Distance(), "cancel") << "at the second point";
  Type({L"0,0", L""});
  EXPECT_EQ(Distance(), "none") << "at the second point";
  Type({L"-1e308,-1e308", L"1e308,1e308", L"1,1e309", L"3"});
  EXPECT_EQ(Distance(), "3.000000") << "what has no length that is a number is refused";
}

TEST_F(InputFunctions, AnglesAreDegreesAndGiveRadians) {
  const ads_point base = {1.0, 1.0, 0.0};
  Type({L"45", L"360", L"-90", L"720.5", L"-1e-20", L"-0"});
  EXPECT_EQ(Angle(), "45.000000");
  EXPECT_EQ(Angle(), "0.000000");
  EXPECT_EQ(Angle(), "270.000000");
  EXPECT_EQ(Angle(), "0.500000");
  EXPECT_EQ(Angle(), "0.000000");
  EXPECT_EQ(Angle(), "0.000000") << "without a sign";
  Type({L"1,5", L"0,1", L"1,0,9", L"@1,-1e-300"});
  EXPECT_EQ(Angle(base), "90.000000");
  EXPECT_EQ(Angle(base), "180.000000");
  EXPECT_EQ(Angle(base), "270.000000") << "in plan view";
  host.answers.Add(embedded::PickPoint{{2.0, 1.0, 0.0}});
  Type({L"2,2", L"3,3", L"north", L"1"});
  EXPECT_EQ(Angle(base), "315.000000") << "@ from 1,0,9";
  EXPECT_EQ(Angle(base), "0.000000");
  EXPECT_EQ(Angle(), "45.000000") << "from the first point to the second";
  host.console.Take();
  EXPECT_EQ(Angle(), "1.000000");
  EXPECT_EQ(Printed(), "north\nRequires valid numeric angle or two points.\n1\n");
}

TEST_F(InputFunctions, PointsAreTypedInEveryWay) {
  host.variables.Find(L"ELEVATION")->value.value.rreal = 2.0;
  const struct {
    const wchar_t* typed;
    const char* point;
  } cases[] = {{L"1,2", "1000,2000,2000"},  {L"1,2,3", "1000,2000,3000"},  {L" 1,2 ", "1000,2000,2000"},
               {L"@1,2", "2000,4000,2000"}, {L"@", "2000,4000,2000"},      {L"@0,0,1", "2000,4000,3000"},
               {L"5<30", "4330,2500,2000"}, {L"@5<180", "-670,2500,2000"}, {L"-1e2,.5", "-100000,500,2000"},
               {L"2<-90", "0,-2000,2000"},  {L"0,0,0", "0,0,0"},           {L"@10<0", "10000,0,0"}};
  for (const auto& one : cases) {
    Type({one.typed});
    EXPECT_EQ(GotPoint(), one.point) << Utf8(one.typed);
    EXPECT_EQ(LastPoint(), one.point) << Utf8(one.typed);
  }
  host.answers.Add(embedded::PickPoint{{7.0, 8.0, 9.0}});
  host.answers.Add(embedded::PickEntity{1, {4.0, 5.0, 6.0}});
  const ads_point base = {100.0, 100.0, 100.0};
  EXPECT_EQ(GotPoint(base), "7000,8000,9000");
  EXPECT_EQ(GotPoint(base), "4000,5000,6000");
  Type({L"@1,1"});
  EXPECT_EQ(GotPoint(base), "5000,6000,6000") << "from the last point, not from the base";
}

TEST_F(InputFunctions, WhatIsNoPointIsRefused) {
  const std::vector<const wchar_t*> refused = {
      L"1",   L"1,",    L",2",    L"1,2,3,4",     L"1, 2", L"a,b",    L"@1", L"@@1,2", L"1<",
      L"<30", L"1<2<3", L"1,2<3", L"1e308,1e309", L"@,",   L"\x201C", L"()", L",,",    L"1,2,"};
  for (const wchar_t* line : refused) {
    Type({line, L"0,0"});
    EXPECT_EQ(GotPoint(), "0,0,0");
    EXPECT_EQ(Printed(), Utf8(line) + "\nInvalid point.\n0,0\n");
  }
  host.answers.Add(embedded::PickPoint{{std::nan(""), 0.0}});
  host.answers.Add(embedded::PickPoint{{0.0, HUGE_VAL}});
  ads_point remote;
  Type({L"4,4", L"1e308,0", L"@1e308,0", L"3,3"});
  EXPECT_EQ(GotPoint(), "4000,4000,0");
  EXPECT_EQ(acedGetPoint(nullptr, nullptr, remote), RTNORM);
  EXPECT_EQ(remote[0], 1e308);
  EXPECT_EQ(GotPoint(), "3000,3000,0") << "beyond the numbers";
}

TEST_F(InputFunctions, CornersAreInThePlaneOfTheElevation) {
  host.variables.Find(L"ELEVATION")->value.value.rreal = 2.0;
  Type({L"5,6,7", L"@1,1", L"corner", L"0,0"});
  EXPECT_EQ(Corner(), "5000,6000,2000");
  EXPECT_EQ(LastPoint(), "5000,6000,2000");
  EXPECT_EQ(Corner(), "6000,7000,2000");
  host.console.Take();
  EXPECT_EQ(Corner(), "0,0,2000");
  EXPECT_EQ(Printed(), "corner\nInvalid point.\n0,0\n");
  host.Define(L"CORNER", [] {
    ads_point point;
    return acedGetCorner(nullptr, nullptr, point);
  });
  EXPECT_EQ(host.Call(L"CORNER", L"").errors, std::vector<std::string>{"acedGetCorner: no base point"});
}

TEST_F(InputFunctions, StringsTakeBlanksWhereTheyMay) {
  Type({L"two words", L" two words ", L"", L"  ", L"two words", L"  two\twords", L"", L"Yes"});
  EXPECT_EQ(String(), "'two words'");
  EXPECT_EQ(String(), "' two words '");
  EXPECT_EQ(String(), "''");
  EXPECT_EQ(String(), "'  '");
  EXPECT_EQ(String(false), "'two'");
  EXPECT_EQ(String(false), "'two'");
  EXPECT_EQ(String(false), "''");
  acedInitGet(1 | 128, L"Yes");
  EXPECT_EQ(String(), "'Yes'") << "keywords mean nothing here";
  host.answers.Add(embedded::PressEnter{});
  host.answers.Add(embedded::PressCancel{});
  host.answers.Add(embedded::TypeKeyword{L"Undo"});
  host.answers.Add(embedded::PickPoint{{1.5, 2.0, 0.0}});
  EXPECT_EQ(String(), "''");
  EXPECT_EQ(String(), "cancel");
  EXPECT_EQ(host.log.Last("acedGetString")->objection, "the user cancelled");
  EXPECT_EQ(String(), "'Undo'");
  EXPECT_EQ(String(), "'1.5,2,0'");
  host.answers.Add(embedded::SelectEntities{});
  EXPECT_EQ(String(), "error");
}

TEST_F(InputFunctions, TextsAreCutBehind132Characters) {
  const std::wstring longest(132, L'x');
  wchar_t text[134];
  for (const std::wstring& typed : {longest, longest + L'y', std::wstring(100'000, L'x')}) {
    std::fill(std::begin(text), std::end(text), L'#');
    host.answers.Add(TypeText{typed});
    ASSERT_EQ(acedGetString(1, nullptr, text), RTNORM);
    EXPECT_EQ(std::wstring(text), longest);
    EXPECT_EQ(text[133], L'#');
  }
  acedInitGet(128, nullptr);
  host.answers.Add(TypeText{longest + L"yz"});
  EXPECT_EQ(Real(), "keyword " + Utf8(longest));
  EXPECT_EQ(host.answers.lastKeyword, longest + L"yz") << "for LISP nothing is cut";
  acedInitGet(128, nullptr);
  host.answers.Add(TypeText{longest + L"yz"});
  EXPECT_EQ(Keyword(), "'" + Utf8(longest) + "'");
  host.answers.Add(TypeText{longest + L"yz"});
  EXPECT_EQ(AskText(host, L"", true).value, longest + L"yz");
}

TEST_F(InputFunctions, GetKwordGivesTheWholeKeyword) {
  acedInitGet(0, L"Yes No LTYPE,LT");
  Type({L"lt"});
  EXPECT_EQ(Keyword(), "'LTYPE'");
  EXPECT_EQ(Input(), "LTYPE");
  acedInitGet(0, L"Yes No");
  Type({L""});
  EXPECT_EQ(Keyword(), "none");
  acedInitGet(1, L"Yes No");
  Type({L"", L"maybe", L"1,2", L"n"});
  host.console.Take();
  EXPECT_EQ(Keyword(), "'No'");
  EXPECT_EQ(Printed(),
            "\nInvalid option keyword.\nmaybe\nInvalid option keyword.\n1,2\nInvalid option keyword.\n"
            "n\n");
  acedInitGet(128, L"Yes No");
  Type({L" per haps "});
  EXPECT_EQ(Keyword(), "'per haps'");
  acedInitGet(128, nullptr);
  Type({L"anything"});
  EXPECT_EQ(Keyword(), "'anything'");
  Type({L"Yes"});
  EXPECT_EQ(Keyword(), "error") << "acedInitGet holds for one question";
  EXPECT_EQ(host.log.Last("acedGetKword")->objection, "no keywords are laid down");
  EXPECT_EQ(host.answers.Waiting(), 1u) << "nobody was asked";
}

TEST_F(InputFunctions, KeywordsAreTakenInPlaceOfValues) {
  const struct {
    const char* name;
    std::function<std::string()> ask;
    const wchar_t* value;
  } questions[] = {{"int", [this] { return Integer(); }, L"1"},  {"real", [] { return Real(); }, L"1"},
                   {"dist", [] { return Distance(); }, L"1"},    {"angle", [] { return Angle(); }, L"1"},
                   {"point", [] { return GotPoint(); }, L"1,1"}, {"corner", [] { return Corner(); }, L"1,1"}};
  for (const auto& question : questions) {
    SCOPED_TRACE(question.name);
    acedInitGet(0, L"Yes No 3P");
    Type({L"n"});
    EXPECT_EQ(question.ask(), "keyword No");
    Type({L"n", question.value});
    host.console.Take();
    EXPECT_EQ(question.ask().find("keyword"), std::string::npos) << "only once";
    EXPECT_TRUE(Printed().starts_with("n\n")) << "refused";
    acedInitGet(0, L"1 1,1");
    Type({L"1"});
    EXPECT_EQ(question.ask(), "keyword 1") << "before values";
    host.answers.Add(embedded::TypeKeyword{L"Undo"});
    EXPECT_EQ(question.ask(), "keyword Undo") << "laid down as one";
    acedInitGet(128, L"Yes No");
    Type({L" some text "});
    EXPECT_EQ(question.ask(), "keyword some text");
    acedInitGet(128, nullptr);
    Type({question.value});
    EXPECT_EQ(question.ask().find("keyword"), std::string::npos) << "a value first";
    acedInitGet(128, nullptr);
    Type({L""});
    EXPECT_EQ(question.ask(), "none");
    acedInitGet(129, nullptr);
    Type({L""});
    EXPECT_EQ(question.ask(), "keyword ") << "an empty text";
  }
}

TEST_F(InputFunctions, EnterAndCancelEndAQuestion) {
  for (const Asking& one : AllFunctions()) {
    SCOPED_TRACE(one.function);
    const bool isText = one.function == std::string("acedGetString");
    for (const UserAnswer& enter :
         {UserAnswer(embedded::PressEnter{}), UserAnswer(TypeText{L""}), UserAnswer(TypeText{L" \t"})}) {
      acedInitGet(0, L"Yes");
      host.answers.Add(enter);
      EXPECT_EQ(one.ask(), isText ? RTNORM : RTNONE);
      EXPECT_EQ(host.log.Last(one.function)->objection, std::nullopt);
    }
    acedInitGet(1, L"Yes");
    host.answers.Add(embedded::PressCancel{});
    host.console.Take();
    EXPECT_EQ(one.ask(), RTCAN);
    EXPECT_EQ(Printed(), "?*Cancel*\n");
    EXPECT_EQ(host.log.Last(one.function)->objection, "the user cancelled");
    EXPECT_EQ(host.log.Last(one.function)->status, RTCAN);
    EXPECT_EQ(host.log.Last(one.function)->name, L"?");
  }
}

TEST_F(InputFunctions, EnterIsRefusedWhereItIsNotAllowed) {
  for (const Asking& one : AllFunctions()) {
    if (one.function == std::string("acedGetString")) continue;
    SCOPED_TRACE(one.function);
    acedInitGet(1, L"Yes");
    host.answers.Add(embedded::PressEnter{});
    Type({L"", L"y"});
    EXPECT_EQ(one.ask(), one.function == std::string("acedGetKword") ? RTNORM : RTKWORD);
    EXPECT_EQ(host.answers.Waiting(), 0u);
  }
}

TEST_F(InputFunctions, ZeroAndNegativeNumbersAreRefusedOnDemand) {
  const ads_point base = {1.0, 1.0, 0.0};
  const struct {
    const char* name;
    std::function<std::string()> ask;
  } questions[] = {{"int", [this] { return Integer(); }},
                   {"real", [] { return Real(); }},
                   {"dist", [] { return Distance(); }}};
  for (const auto& question : questions) {
    SCOPED_TRACE(question.name);
    const auto refusals = [&](int flags) {
      acedInitGet(flags, nullptr);
      Type({L"0", L"-1", L"1"});
      host.console.Take();
      EXPECT_NE(question.ask(), "error");
      host.answers = {};
      return Printed();
    };
    EXPECT_EQ(refusals(0), "0\n");
    EXPECT_EQ(refusals(2), "0\nValue must be nonzero.\n-1\n");
    EXPECT_EQ(refusals(4), "0\n");
    EXPECT_EQ(refusals(6),
              "0\nValue must be positive and nonzero.\n-1\nValue must be positive and nonzero.\n1\n");
    EXPECT_EQ(refusals(8 | 32 | 64), "0\n");
    acedInitGet(4 | 128, nullptr);
    Type({L"-1", L"text"});
    EXPECT_EQ(question.ask(), "keyword text") << "a number that is not allowed is no text";
    EXPECT_EQ(Printed(), "-1\nValue must be positive.\ntext\n");
  }
  acedInitGet(2, nullptr);
  Type({L"1,1", L"1,2"});
  EXPECT_EQ(Distance(base), "1.000000");
  EXPECT_EQ(Printed(), "1,1\nValue must be nonzero.\n1,2\n");
  acedInitGet(2 | 4, nullptr);
  Type({L"360", L"-90"});
  EXPECT_EQ(Angle(), "270.000000");
  EXPECT_EQ(Printed(), "360\nValue must be nonzero.\n-90\n");
  acedInitGet(2 | 4, nullptr);
  Type({L"0,0"});
  EXPECT_EQ(GotPoint(), "0,0,0");
}

TEST_F(InputFunctions, RulesHoldForTheNextQuestionAlone) {
  acedInitGet(1, L"Yes");
  Type({L"Yes", L""});
  EXPECT_EQ(Integer(), "keyword Yes");
  EXPECT_EQ(Integer(), "none");
  acedInitGet(1, L"Yes");
  acedInitGet(0, nullptr);
  Type({L"", L"text", L""});
  EXPECT_EQ(Real(), "none") << "the later call counts alone";
  acedInitGet(1, L"Yes");
  EXPECT_EQ(String(), "'text'");
  EXPECT_EQ(Real(), "none") << "a text ends them";
  EXPECT_EQ(acedInitGet(-1, L""), RTNORM);
  EXPECT_EQ(host.log.Last("acedInitGet")->name, L"");
}

TEST_F(InputFunctions, WithoutAnAnswerTheCallHasAnError) {
  for (const Asking& one : AllFunctions()) {
    SCOPED_TRACE(one.function);
    const std::string error = one.function + std::string(": the user is asked, and no answer is laid down");
    host.Define(L"ASK", one.ask);
    acedInitGet(0, L"Yes");
    auto result = host.Call(L"ASK", L"");
    EXPECT_EQ(result.errors, std::vector<std::string>{error});
    EXPECT_EQ(result.status, RTERROR);
    host.answers.source = [](const std::wstring&) { return std::nullopt; };
    acedInitGet(0, L"Yes");
    EXPECT_EQ(host.Call(L"ASK", L"").errors, std::vector<std::string>{error}) << "the end of input";
    host.answers.source = nullptr;
  }
  EXPECT_EQ(Printed(), "");
  Type({L"five"});
  EXPECT_EQ(Integer(), "error") << "behind one that is refused";
}

TEST_F(InputFunctions, OrdersAreAnsweredBeforeAnythingIsAsked) {
  Type({L"5"});
  acedInitGet(0, L"Yes");
  for (const Asking& one : AllFunctions()) {
    SCOPED_TRACE(one.function);
    for (const int status : {RTCAN, RTERROR, RTREJ, RTKWORD}) {
      host.log.Answer(one.function, status, 1);
      EXPECT_EQ(one.ask(), status);
      EXPECT_TRUE(host.log.Last(one.function)->forced);
    }
  }
  host.log.AnswerAll("acedGetInt", RTCAN);
  EXPECT_EQ(Integer(), "cancel");
  EXPECT_EQ(Integer(), "cancel");
  host.log.AnswerAll("acedInitGet", RTERROR);
  EXPECT_EQ(acedInitGet(0, L"No"), RTERROR);
  host.log.AnswerAll("acedGetInput", RTERROR);
  wchar_t text[133] = L"untouched";
  EXPECT_EQ(acedGetInput(text), RTERROR);
  EXPECT_STREQ(text, L"untouched");
  EXPECT_EQ(host.answers.Waiting(), 1u);
  EXPECT_EQ(host.answers.rules.keywords.Match(L"y"), L"Yes");
  EXPECT_EQ(Printed(), "");
}

TEST_F(InputFunctions, WithoutAPlaceNobodyIsAsked) {
  const ads_point base = {};
  Type({L"1"});
  EXPECT_EQ(acedGetString(1, L"?", nullptr), RTERROR);
  EXPECT_EQ(acedGetKword(L"?", nullptr), RTERROR);
  EXPECT_EQ(acedGetInt(L"?", nullptr), RTERROR);
  EXPECT_EQ(acedGetReal(L"?", nullptr), RTERROR);
  EXPECT_EQ(acedGetDist(base, L"?", nullptr), RTERROR);
  EXPECT_EQ(acedGetAngle(base, L"?", nullptr), RTERROR);
  EXPECT_EQ(acedGetPoint(base, L"?", nullptr), RTERROR);
  EXPECT_EQ(acedGetCorner(base, L"?", nullptr), RTERROR);
  EXPECT_EQ(host.log.Last("acedGetCorner")->objection, "no place for the answer");
  EXPECT_EQ(host.log.Last("acedGetCorner")->chains.size(), 1u) << "the base";
  EXPECT_EQ(acedGetInput(nullptr), RTERROR);
  EXPECT_EQ(acedInitGet(0, nullptr), RTNORM);
  EXPECT_EQ(host.answers.Waiting(), 1u);
  EXPECT_EQ(Printed(), "");
  int number = 0;
  EXPECT_EQ(acedGetInt(nullptr, &number), RTNORM) << "a prompt may be null";
  EXPECT_EQ(Printed(), "1\n");
}

TEST_F(InputFunctions, ASourceIsAskedBehindTheQueueAndShowsPromptsItself) {
  std::vector<std::wstring> prompts;
  std::vector<UserAnswer> given = {embedded::PressCancel{}, TypeText{L"2"}, TypeText{L"no number"}};
  host.answers.source = [&](const std::wstring& prompt) -> std::optional<UserAnswer> {
    prompts.push_back(prompt);
    if (given.empty()) return std::nullopt;
    UserAnswer answer = given.back();
    given.pop_back();
    return answer;
  };
  Type({L"1"});
  EXPECT_EQ(Integer(L"First: "), "1");
  EXPECT_TRUE(prompts.empty());
  EXPECT_EQ(Printed(), "First: 1\n");
  EXPECT_EQ(Integer(L"Then: "), "2");
  EXPECT_EQ(prompts, (std::vector<std::wstring>{L"Then: ", L"Then: "}));
  EXPECT_EQ(Printed(), "Requires an integer value.\n") << "refusals are on the console";
  EXPECT_EQ(Integer(), "cancel");
  EXPECT_EQ(Integer(), "error");
  host.answers.Clear();
  EXPECT_FALSE(host.answers.source);
}

TEST_F(InputFunctions, ASourceMayReplaceItself) {
  host.answers.source = [this, kept = std::wstring(100, L'x')](const std::wstring&) {
    host.answers.source = nullptr;
    return UserAnswer(TypeText{kept});
  };
  EXPECT_EQ(String(), "'" + std::string(100, 'x') + "'");
  EXPECT_EQ(String(), "error");
}

TEST_F(InputFunctions, WithoutAPlatformCallQuestionsAreTheSame) {
  Type({L"7", L"1.5", L"3,4", L"90", L"1,2", L"3,4", L"y", L"text"});
  host.answers.rules = {0, embedded::Keywords(L"Yes")};
  EXPECT_EQ(AskInteger(host, L"").value, 7);
  EXPECT_EQ(AskReal(host, L"").value, 1.5);
  EXPECT_EQ(AskDistance(host, L"", Point{}).value, 5.0);
  EXPECT_EQ(AskAngle(host, L"", std::nullopt).value, 90.0 * (kPi / 180.0));
  EXPECT_EQ(AskPoint(host, L"").value, (Point{1.0, 2.0, 0.0, false}));
  EXPECT_EQ(AskCorner(host, L"").value, (Point{3.0, 4.0, 0.0, false}));
  host.answers.rules = {0, embedded::Keywords(L"Yes")};
  const auto keyword = AskKeyword(host, L"");
  EXPECT_EQ(keyword.status, RTNORM);
  EXPECT_EQ(keyword.value, L"Yes");
  EXPECT_EQ(AskText(host, L"", false).value, L"text");
  const auto nobody = AskText(host, L"", false);
  EXPECT_EQ(nobody.status, RTERROR);
  EXPECT_TRUE(nobody.isMistake);
  EXPECT_TRUE(host.log.Calls().empty());
}

// --- Entities ---

class TypedSelections : public HostTest {
 protected:
  // A line on the x axis from x to x + 1.
  Object& AddLine(double x) {
    embedded::Drawing& drawing = host.CurrentDrawing();
    Object& line = drawing.NewObject(
        {{0, L"LINE"}, {8, L"0"}, {10, Point{x, 0.0, 0.0}}, {11, Point{x + 1.0, 0.0, 0.0}}});
    AddHandle(drawing, line);
    drawing.Append(drawing.Entities(), line);
    return line;
  }
  void Type(std::initializer_list<const wchar_t*> lines) {
    for (const wchar_t* line : lines) host.answers.Add(TypeText{line});
  }
  // The x of what the user selects, or the status of the call.
  std::string Selected(const wchar_t* mode = nullptr) {
    ads_name set;
    const int status = acedSSGet(mode, nullptr, nullptr, nullptr, set);
    if (status != RTNORM) return std::to_string(status);
    std::string text;
    int32_t length = 0;
    EXPECT_EQ(acedSSLength(set, &length), RTNORM);
    for (int32_t position = 0; position < length; ++position) {
      ads_name entity;
      EXPECT_EQ(acedSSName(set, position, entity), RTNORM);
      const Object* line = host.CurrentDrawing().FindName(entity);
      text += (text.empty() ? "" : " ") + std::to_string(static_cast<int>(PointOf(line->groups, 10).x));
    }
    EXPECT_EQ(acedSSFree(set), RTNORM);
    return text;
  }
};

TEST_F(TypedSelections, EntSelTakesAPointAKeywordOrEnter) {
  Object& line = AddLine(5.0);
  ads_name expected;
  host.CurrentDrawing().NameOf(line.handle, expected);
  ads_name name = {};
  ads_point picked = {};
  Type({L"what?", L"5.5,0.5", L"@", L"50,50", L"", L"y"});
  ASSERT_EQ(acedEntSel(nullptr, name, picked), RTNORM);
  EXPECT_EQ(name[0], expected[0]);
  EXPECT_EQ(picked[0], 5.5);
  EXPECT_EQ(Printed(), "Select object: what?\nInvalid selection.\nSelect object: 5.5,0.5\n");
  ASSERT_EQ(acedEntSel(L"Which: ", name, picked), RTNORM) << "the last point";
  EXPECT_EQ(Printed(), "Which: @\n");
  EXPECT_EQ(acedEntSel(nullptr, name, picked), RTERROR);
  EXPECT_EQ(host.variables.Find(L"ERRNO")->value.value.rint, 7);
  acedInitGet(1, nullptr);
  EXPECT_EQ(acedEntSel(nullptr, name, picked), RTERROR) << "acedInitGet's flags do not count";
  EXPECT_EQ(host.variables.Find(L"ERRNO")->value.value.rint, 52);
  acedInitGet(0, L"Yes No");
  EXPECT_EQ(acedEntSel(nullptr, name, picked), RTKWORD);
  EXPECT_EQ(host.answers.lastKeyword, L"Yes");
  Type({L"y", L""});
  EXPECT_EQ(acedEntSel(nullptr, name, picked), RTERROR) << "the keywords held once";
  EXPECT_EQ(host.answers.Waiting(), 0u);
}

TEST_F(TypedSelections, SSGetAddsUntilEnter) {
  AddLine(0.0);
  AddLine(10.0);
  AddLine(20.0);
  Type({L"10.5,0.5", L"50,50", L"0.5,0", L"10.5,0", L""});
  EXPECT_EQ(Selected(), "10 0");
  EXPECT_EQ(Printed(),
            "Select objects: 10.5,0.5\n1 found\nSelect objects: 50,50\n0 found, 1 total\n"
            "Select objects: 0.5,0\n1 found, 2 total\n"
            "Select objects: 10.5,0\n1 found (1 duplicate), 2 total\nSelect objects: \n");
  Type({L"previous", L"l", L""});
  EXPECT_EQ(Selected(), "10 0 20");
  Type({L"ALL", L"p", L""});
  host.console.Take();
  EXPECT_EQ(Selected(), "0 10 20");
  EXPECT_EQ(Printed(),
            "Select objects: ALL\n3 found\nSelect objects: p\n3 found (3 duplicates), 3 total\n"
            "Select objects: \n");
  Type({L"-1,-1 10.5,1", L""});
  EXPECT_EQ(Selected(), "0") << "a window";
  Type({L"10.5,1  -1,-1", L""});
  EXPECT_EQ(Selected(), "0 10") << "a crossing box";
  Type({L"9,-1 @3,2", L""});
  EXPECT_EQ(Selected(), "10") << "from the first corner";
  Type({L""});
  EXPECT_EQ(Selected(), "-5001");
  EXPECT_EQ(host.log.Last("acedSSGet")->objection, "the user selected nothing");
}

TEST_F(TypedSelections, SSGetRefusesWhatItDoesNotKnow) {
  AddLine(0.0);
  for (const wchar_t* line : {L"what?", L"1", L"0,0 what?", L"0,0 1,1 2,2", L"al", L"@1", L"<>"}) {
    Type({line, L"0,0", L""});
    host.console.Take();
    EXPECT_EQ(Selected(), "0");
    EXPECT_EQ(Printed(), "Select objects: " + Utf8(line) +
                             "\n*Invalid selection*\nSelect objects: 0,0\n1 found\n"
                             "Select objects: \n");
  }
}

TEST_F(TypedSelections, OtherAnswersAreTheLast) {
  Object& first = AddLine(0.0);
  Object& second = AddLine(10.0);
  Type({L"10.5,0"});
  host.answers.Add(embedded::SelectEntities{{first.handle, second.handle}});
  EXPECT_EQ(Selected(), "10 0");
  Type({L"10.5,0"});
  host.answers.Add(embedded::PickEntity{first.handle, {}});
  EXPECT_EQ(Selected(), "10 0");
  Type({L"10.5,0"});
  host.answers.Add(embedded::PickPoint{{50.0, 0.0}});
  EXPECT_EQ(Selected(), "10");
  Type({L"10.5,0"});
  host.answers.Add(embedded::PressCancel{});
  EXPECT_EQ(Selected(), "-5002");
  Type({L"10.5,0", L"0.5,0"});
  EXPECT_EQ(Selected(L":S"), "10") << "once";
  EXPECT_EQ(Selected(L"_:S-E"), "0") << "once";
  acedInitGet(0, L"Undo");
  Type({L"10.5,0", L"u"});
  EXPECT_EQ(Selected(), "-5005");
  EXPECT_EQ(host.answers.lastKeyword, L"Undo");
  Type({L"all"});
  host.Define(L"SELECT", [this] { return Selected() == "-5001" ? RTNORM : RTERROR; });
  const auto result = host.Call(L"SELECT", L"");
  EXPECT_EQ(result.status, RTNORM);
  EXPECT_EQ(result.errors,
            std::vector<std::string>{"acedSSGet: the user is asked, and no answer is laid down"});
}

}  // namespace
}  // namespace lomlisp::test
