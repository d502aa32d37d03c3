#include <tests/support/Chains.h>
#include <tests/support/SmallStack.h>

namespace lomlisp::test::dxf_runs {
namespace {

constexpr size_t kMany = kLarge;
constexpr const char* kMalformed = "ListVar::ADSToLisp: malformed ADS-Liste\n";

std::string InvalidType(int type) {
  return "LispVar::ADSToLisp : invalid type Nr. " + std::to_string(type) +
         " in resbuf\n                     as a result of the nontransparent interface\n";
}

struct Range {
  int first, last;
  short type;
};

// The group codes and the types of their values.
constexpr Range kGroups[] = {
    {-5, -5, RTENAME},    {-4, -4, RTSTR},       {-2, -1, RTENAME},     {0, 9, RTSTR},
    {10, 19, RT3DPOINT},  {20, 59, RTREAL},      {60, 79, RTSHORT},     {90, 99, RTLONG},
    {100, 102, RTSTR},    {105, 105, RTSTR},     {110, 112, RT3DPOINT}, {113, 149, RTREAL},
    {160, 169, RTINT64},  {170, 179, RTSHORT},   {210, 219, RT3DPOINT}, {220, 239, RTREAL},
    {270, 299, RTSHORT},  {300, 319, RTSTR},     {320, 369, RTENAME},   {370, 389, RTSHORT},
    {390, 399, RTENAME},  {400, 409, RTSHORT},   {410, 419, RTSTR},     {420, 429, RTLONG},
    {430, 439, RTSTR},    {440, 459, RTLONG},    {460, 469, RTREAL},    {470, 479, RTSTR},
    {480, 481, RTENAME},  {999, 1000, RTSTR},    {1002, 1009, RTSTR},   {1010, 1019, RT3DPOINT},
    {1020, 1059, RTREAL}, {1060, 1070, RTSHORT}, {1071, 1071, RTLONG}};

resbuf Group(short code, short type) {
  switch (type) {
    case RTSTR:
      return String(L"text", code);
    case RT3DPOINT:
      return Point(1, 2, 3, code);
    case RTREAL:
      return Real(1.5, code);
    case RTSHORT:
      return Short(7, code);
    case RTLONG:
      return Long(70000, code);
    case RTINT64:
      return Int64(1LL << 33, code);
    default:
      return Name(31, code);
  }
}

std::string GroupValue(short type) {
  switch (type) {
    case RTSTR:
      return "5005:text";
    case RT3DPOINT:
      return "(5001:1 5001:2 5001:3)";
    case RTREAL:
      return "5001:1.5";
    case RTSHORT:
      return "5003:7";
    case RTLONG:
      return "5010:70000";
    case RTINT64:
      return "5031:8589934592";
    default:
      return "5006:31,32";
  }
}

class DxfRuns : public HostTest {
 protected:
  static std::string Convert(Records&& chain) {
    CLOMAdsLispVar value(L"old");
    if (value.ADSToLisp(chain)) return Tree(value);
    EXPECT_EQ(value.New(), nullptr) << "a failed conversion leaves nil";
    return "false";
  }
};

TEST_F(DxfRuns, ASingleGroupIsAListOfOnePair) { EXPECT_EQ(Convert({String(L"0", 8)}), "({5003:8 5005:0})"); }

TEST_F(DxfRuns, AnEntityIsAListOfPairs) {
  EXPECT_EQ(Convert({Name(31, -1), String(L"LINE", 0), String(L"0", 8), Point(1, 2, 3, 10), Short(1, 62),
                     Real(2.5, 40), Long(70000, 90), String(L"AcDbLine", 100)}),
            "({5003:-1 5006:31,32} {5003:0 5005:LINE} {5003:8 5005:0} {5003:10 (5001:1 5001:2 5001:3)} "
            "{5003:62 5003:1} {5003:40 5001:2.5} {5003:90 5010:70000} {5003:100 5005:AcDbLine})");
  EXPECT_EQ(Printed(), "");
}

TEST_F(DxfRuns, EveryGroupCodeGivesItsValueThatType) {
  for (const Range& range : kGroups)
    for (int code = range.first; code <= range.last; ++code)
      EXPECT_EQ(Convert({Group(static_cast<short>(code), range.type)}),
                "({5003:" + std::to_string(code) + " " + GroupValue(range.type) + "})");
}

TEST_F(DxfRuns, CodesBetweenTheGroupsAreUnknown) {
  for (const int code : {-32768, -6,  80,  89,  103,  104,  106,  109,  150,  159,  180,  209,
                         240,    269, 482, 998, 1072, 4999, 5011, 5013, 5015, 5022, 5030, 5032}) {
    EXPECT_EQ(Convert({NoValue(static_cast<short>(code))}), "false");
    EXPECT_EQ(Printed(), InvalidType(code));
  }
}

TEST_F(DxfRuns, TheSameCodeMayComeTwice) {
  EXPECT_EQ(Convert({Real(1, 40), Real(2, 40)}), "({5003:40 5001:1} {5003:40 5001:2})");
}

TEST_F(DxfRuns, TextsAreCopied) {
  wchar_t layer[] = L"0", application[] = L"APP";
  Records chain{String(layer, 8), Short(0, -3), String(application, 1001)};
  const CLOMAdsLispVar value(chain);
  layer[0] = application[0] = L'x';
  EXPECT_EQ(Tree(value), "({5003:8 5005:0} 5003:-3 (5005:APP))");
}

TEST_F(DxfRuns, NullTextsStayNull) {
  EXPECT_EQ(Convert({String(nullptr, 8), Short(0, -3), String(nullptr, 1001)}),
            "({5003:8 5005:<null>} 5003:-3 (5005:<null>))");
}

// --- Where a run ends ---

TEST_F(DxfRuns, APlainRecordBehindARunIsLeftOver) {
  EXPECT_EQ(Convert({String(L"0", 8), Short(1)}), "false");
  EXPECT_EQ(Printed(), kMalformed);
  EXPECT_EQ(Convert({String(L"0", 8), String(L"LINE", RTDXF0)}), "false");
  EXPECT_EQ(Printed(), kMalformed);
}

TEST_F(DxfRuns, AnUnknownCodeBehindARunIsLeftOver) {
  EXPECT_EQ(Convert({String(L"0", 8), NoValue(80)}), "false");
  EXPECT_EQ(Printed(), kMalformed);
}

TEST_F(DxfRuns, ARunInAListIsOneMember) {
  EXPECT_EQ(Convert({Begin(), String(L"0", 8), Short(1, 62), End()}), "(({5003:8 5005:0} {5003:62 5003:1}))");
  EXPECT_EQ(Convert({Begin(), Short(5), String(L"0", 8), Short(1, 62), Short(6), End()}),
            "(5003:5 ({5003:8 5005:0} {5003:62 5003:1}) 5003:6)");
}

TEST_F(DxfRuns, APlainRecordSeparatesTwoRuns) {
  EXPECT_EQ(Convert({Begin(), String(L"a", 8), NoValue(RTNIL), String(L"b", 8), End()}),
            "(({5003:8 5005:a}) nil ({5003:8 5005:b}))");
}

TEST_F(DxfRuns, AnOpeningBracketEndsARun) {
  EXPECT_EQ(Convert({Begin(), String(L"a", 8), Begin(), End(), End()}), "(({5003:8 5005:a}) ())");
}

TEST_F(DxfRuns, AnUnknownCodeBehindARunInAListFails) {
  EXPECT_EQ(Convert({Begin(), String(L"a", 8), NoValue(80), End()}), "false");
  EXPECT_EQ(Printed(), InvalidType(80));
}

TEST_F(DxfRuns, ARunMayBeTheCarOrTheCdr) {
  EXPECT_EQ(Convert({Begin(), Short(1), Dot(), String(L"a", 8), End()}), "{5003:1 ({5003:8 5005:a})}");
  EXPECT_EQ(Convert({Begin(), String(L"a", 8), Dot(), Short(1), End()}), "{({5003:8 5005:a}) 5003:1}");
}

TEST_F(DxfRuns, TheStageStopsBehindTheRun) {
  Records chain{String(L"a", 8), Short(1, 62), End()};
  const resbuf* current = chain;
  CLOMAdsLispVar::Element node = std::make_shared<CLOMLispElement>();
  EXPECT_TRUE(CLOMAdsLispVar::ADS_DXFList_Or_Atom(current, node, true));
  EXPECT_EQ(current, chain.At(2));
  EXPECT_EQ(Tree(node), "({5003:8 5005:a} {5003:62 5003:1})");
}

// --- Extended data ---

TEST_F(DxfRuns, ExtendedDataStaysFlat) {
  EXPECT_EQ(Convert({String(L"LINE", 0), Short(0, -3), String(L"APP", 1001), String(L"x", 1000),
                     Real(2.5, 1040), Point(1, 2, 3, 1010), String(L"{", 1002), Short(7, 1070),
                     Long(70000, 1071), String(L"}", 1002)}),
            "({5003:0 5005:LINE} 5003:-3 (5005:APP) {5003:1000 5005:x} {5003:1040 5001:2.5} "
            "{5003:1010 (5001:1 5001:2 5001:3)} {5003:1002 5005:{} {5003:1070 5003:7} "
            "{5003:1071 5010:70000} {5003:1002 5005:}})");
}

TEST_F(DxfRuns, EachApplicationGetsItsOwnList) {
  EXPECT_EQ(
      Convert({Short(0, -3), String(L"A", 1001), String(L"x", 1000), String(L"B", 1001), String(L"y", 1000)}),
      "(5003:-3 (5005:A) {5003:1000 5005:x} (5005:B) {5003:1000 5005:y})");
  EXPECT_EQ(Convert({Short(0, -3), String(L"A", 1001), String(L"B", 1001)}), "(5003:-3 (5005:A) (5005:B))");
}

TEST_F(DxfRuns, TheMarkerIsAnAtomWhateverItsValue) {
  EXPECT_EQ(Convert({Short(9, -3)}), "(5003:-3)");
  EXPECT_EQ(Convert({Short(9, -3), String(L"0", 8)}), "(5003:-3 {5003:8 5005:0})");
  EXPECT_EQ(Convert({Short(0, -3), Short(0, -3), String(L"A", 1001), Short(0, -3)}),
            "(5003:-3 5003:-3 (5005:A) 5003:-3)");
}

TEST_F(DxfRuns, GroupsMayStandBetweenTheMarkerAndTheApplication) {
  EXPECT_EQ(Convert({Short(0, -3), String(L"0", 8), String(L"A", 1001)}),
            "(5003:-3 {5003:8 5005:0} (5005:A))");
}

TEST_F(DxfRuns, AnApplicationWithoutTheMarkerFailsSilently) {
  EXPECT_EQ(Convert({String(L"A", 1001)}), "false");
  EXPECT_EQ(Convert({String(L"0", 8), String(L"A", 1001)}), "false");
  EXPECT_EQ(Convert({String(L"0", 8), String(L"A", 1001), Short(0, -3)}), "false");
  EXPECT_EQ(Printed(), "");
}

TEST_F(DxfRuns, TheMarkerCountsOnlyWithinItsRun) {
  EXPECT_EQ(Convert({Begin(), Short(0, -3), Short(1), String(L"A", 1001), End()}), "false");
  EXPECT_EQ(Printed(), "");
}

// --- Size and memory ---

TEST_F(DxfRuns, AMillionGroups) {
  std::vector<resbuf> records(kMany, Short(1, 62));
  Records chain(std::move(records));
  OnSmallStack([&] {
    CLOMAdsLispVar value;
    EXPECT_TRUE(value.ADSToLisp(chain));
    EXPECT_EQ(value.Length(), kMany);
  });
}

TEST_F(DxfRuns, AMillionApplications) {
  std::vector<resbuf> records(kMany, String(nullptr, 1001));
  records.insert(records.begin(), Short(0, -3));
  Records chain(std::move(records));
  OnSmallStack([&] {
    CLOMAdsLispVar value;
    EXPECT_TRUE(value.ADSToLisp(chain));
    EXPECT_EQ(value.Length(), kMany + 1);
  });
}

TEST_F(DxfRuns, ATextForWhichMemoryRunsOutIsNull) {
  Records chain{String(L"a", 8), Short(0, -3), String(L"A", 1001), String(L"x", 1000)};
  FailEachAllocation([&] {
    CLOMAdsLispVar value;
    EXPECT_TRUE(value.ADSToLisp(chain));
    return Tree(value) == "({5003:8 5005:a} 5003:-3 (5005:A) {5003:1000 5005:x})";
  });
}

}  // namespace
}  // namespace lomlisp::test::dxf_runs
