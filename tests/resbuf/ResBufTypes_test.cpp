#include <tests/resbuf/Records.h>

#include <limits>
#include <map>

namespace lomlisp::test {
namespace {

constexpr int kFirstShort = std::numeric_limits<short>::min();
constexpr int kLastShort = std::numeric_limits<short>::max();

// The group codes and the type of their values.
std::map<int, short> GroupTypes() {
  struct Range {
    int first;
    int last;
    short type;
  };
  const Range ranges[] = {
      {-1, -1, RTENAME},     {-2, -2, RTENAME},       {-5, -5, RTENAME},    {-3, -3, RTSHORT},
      {-4, -4, RTSTR},       {0, 9, RTSTR},           {10, 19, RT3DPOINT},  {20, 59, RTREAL},
      {60, 79, RTSHORT},     {90, 99, RTLONG},        {100, 102, RTSTR},    {105, 105, RTSTR},
      {110, 112, RT3DPOINT}, {113, 149, RTREAL},      {160, 169, RTINT64},  {170, 179, RTSHORT},
      {210, 219, RT3DPOINT}, {220, 239, RTREAL},      {270, 299, RTSHORT},  {300, 319, RTSTR},
      {320, 369, RTENAME},   {370, 389, RTSHORT},     {390, 399, RTENAME},  {400, 409, RTSHORT},
      {410, 419, RTSTR},     {420, 429, RTLONG},      {430, 439, RTSTR},    {440, 459, RTLONG},
      {460, 469, RTREAL},    {470, 479, RTSTR},       {480, 481, RTENAME},  {999, 999, RTSTR},
      {1000, 1009, RTSTR},   {1010, 1019, RT3DPOINT}, {1020, 1059, RTREAL}, {1060, 1070, RTSHORT},
      {1071, 1071, RTLONG},
  };
  std::map<int, short> types;
  for (const Range& range : ranges)
    for (int code = range.first; code <= range.last; ++code) types[code] = range.type;
  return types;
}

// Opens what only derived classes may ask.
class OpenResBuf : public ResBuf {
 public:
  using ResBuf::ResBuf;
  using ResBuf::TypeName;
};

class ResBufTypes : public HostTest {
 protected:
  static std::string NoDxfCode(short type) {
    return Utf8(L"ResBuf::MakeDXF : \u00DCbergebener Typ ") + std::to_string(type) +
           " ist kein DXF-Code !\nName";
  }
};

TEST_F(ResBufTypes, TheCodesAreThoseOfThePlatform) {
  const std::vector<std::pair<short, int>> codes = {
      {RTNONE, 5000}, {RTREAL, 5001},  {RTPOINT, 5002}, {RTSHORT, 5003}, {RTANG, 5004},
      {RTSTR, 5005},  {RTENAME, 5006}, {RTPICKS, 5007}, {RTORINT, 5008}, {RT3DPOINT, 5009},
      {RTLONG, 5010}, {RTVOID, 5014},  {RTLB, 5016},    {RTLE, 5017},    {RTDOTE, 5018},
      {RTNIL, 5019},  {RTDXF0, 5020},  {RTT, 5021},     {RTINT64, 5031},
  };
  for (const auto& [code, number] : codes) EXPECT_EQ(code, number);
}

TEST_F(ResBufTypes, EveryTypeHasItsName) {
  for (const Sample& sample : Samples()) EXPECT_EQ(Utf8(sample.record.TypeName()), sample.typeName);
}

TEST_F(ResBufTypes, UnknownTypesAreNamedByNumberInOneSharedBuffer) {
  const ResBuf first = Bare(5025);
  const ResBuf second = Bare(-7);
  const wchar_t* const name = first.TypeName();
  EXPECT_STREQ(name, L"<5025>");
  EXPECT_EQ(second.TypeName(), name);
  EXPECT_STREQ(name, L"<-7>");
  EXPECT_STREQ(Bare(-32768).TypeName(), L"<-32768>");
}

TEST_F(ResBufTypes, TheNameOfAnotherUnknownTypeShowsTheRecordsOwnNumber) {
  const OpenResBuf text(L"abc");
  EXPECT_STREQ(text.TypeName(5025), L"<5005>");
  EXPECT_STREQ(text.TypeName(62), L"<5005>");
  EXPECT_STREQ(text.TypeName(RTREAL), L"RTREAL");
  EXPECT_STREQ(text.TypeName(), L"RTSTR");
}

TEST_F(ResBufTypes, TheBaseTypeHasAName) {
  const std::vector<std::pair<short, std::string>> names = {
      {8, "RTSTR"},     {10, "RT3DPOINT"}, {40, "RTREAL"},  {62, "RTSHORT"},  {90, "RTLONG"},
      {160, "RTINT64"}, {330, "RTENAME"},  {-3, "RTSHORT"}, {RTANG, "RTANG"}, {RTLB, "RTLB"},
      {5025, "<5025>"}, {80, "<80>"},      {RTT, "<5021>"},
  };
  for (const auto& [type, name] : names) EXPECT_EQ(Utf8(Bare(type).BaseTypeName()), name);
}

TEST_F(ResBufTypes, EveryGroupCodeHasItsTypeAndNoOtherNumberChanges) {
  const std::map<int, short> types = GroupTypes();
  for (int code = kFirstShort; code <= kLastShort; ++code) {
    const auto entry = types.find(code);
    const short expected = entry != types.end() ? entry->second : static_cast<short>(code);
    ASSERT_EQ(DxfType(static_cast<short>(code)), expected) << code;
  }
}

TEST_F(ResBufTypes, BaseTypesAreTheKnownCodes) {
  for (int code = kFirstShort; code <= kLastShort; ++code) {
    const bool expected =
        (code >= 5000 && code <= 5010) || code == 5014 || (code >= 5016 && code <= 5020) || code == 5031;
    ASSERT_EQ(ResBuf::isBaseType(static_cast<short>(code)), expected) << code;
  }
}

TEST_F(ResBufTypes, DxfCodesAreTheGroupCodes) {
  const std::map<int, short> types = GroupTypes();
  for (int code = kFirstShort; code <= kLastShort; ++code)
    ASSERT_EQ(ResBuf::isDXF(static_cast<short>(code)), types.count(code) != 0) << code;
}

TEST_F(ResBufTypes, TheBaseTypeOfARecordIsThatOfItsCode) {
  const std::map<int, short> types = GroupTypes();
  for (int code = kFirstShort; code <= kLastShort; ++code) {
    const auto entry = types.find(code);
    const short expected = entry != types.end() ? entry->second : static_cast<short>(code);
    ASSERT_EQ(Bare(static_cast<short>(code)).BaseType(), expected) << code;
  }
}

TEST_F(ResBufTypes, MakeBaseTypeKeepsTheValue) {
  ResBuf colour = Retyped(62, Short(3));
  colour.MakeBaseType();
  EXPECT_EQ(colour.Type(), RTSHORT);
  EXPECT_EQ(colour.resval.mnInt64, 3);

  ResBuf point = Retyped(10, Point3d(1, 2, 3));
  point.MakeBaseType();
  EXPECT_EQ(point.Type(), RT3DPOINT);
  EXPECT_EQ(point.resval.rpoint[2], 3.0);
}

TEST_F(ResBufTypes, MakeBaseTypeLeavesEverythingElse) {
  for (const short type : {RTNONE, RTLB, RTT, static_cast<short>(5025), static_cast<short>(80)}) {
    ResBuf record = Bare(type);
    record.MakeBaseType();
    EXPECT_EQ(record.Type(), type);
    EXPECT_EQ(record.resval.rlong, -1);
  }
}

TEST_F(ResBufTypes, MakeDXFKeepsTheValueAndTheNext) {
  ResBuf next;
  ResBuf record = Short(3);
  record.Connect(&next);
  EXPECT_TRUE(record.MakeDXF(62));
  EXPECT_EQ(record.Type(), 62);
  EXPECT_EQ(record.resval.mnInt64, 3);
  EXPECT_EQ(record.Next(), &next);
  EXPECT_TRUE(record.MakeDXF(-3));
  EXPECT_EQ(record.Type(), -3);
  EXPECT_EQ(record.resval.mnInt64, 3);
  EXPECT_EQ(Printed(), "");
}

TEST_F(ResBufTypes, MakeDXFDoesNotAskWhetherTheValueSuitsTheCode) {
  ResBuf record = Short(5);
  EXPECT_TRUE(record.MakeDXF(40));
  EXPECT_EQ(record.Type(), 40);
  EXPECT_EQ(record.resval.mnInt64, 5);
  EXPECT_TRUE(record.MakeDXF(8));
  EXPECT_EQ(record.Type(), 8);
  EXPECT_EQ(record.resval.rstring, nullptr);
}

TEST_F(ResBufTypes, MakeDXFRefusesWhatIsNoGroupCode) {
  for (const int code :
       {5005, 5000, 5021, 5025, 80, 89, 103, 104, 106, 150, 482, 998, 1072, -6, 32767, -32768}) {
    const auto type = static_cast<short>(code);
    ResBuf record(L"abc");
    EXPECT_FALSE(record.MakeDXF(type));
    EXPECT_EQ(record.Type(), RTSTR);
    EXPECT_STREQ(record.resval.rstring, L"abc");
    EXPECT_EQ(Printed(), NoDxfCode(type));
  }
}

}  // namespace
}  // namespace lomlisp::test
