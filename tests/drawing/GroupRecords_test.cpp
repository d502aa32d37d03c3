#include <embedded/drawing/GroupRecords.h>
#include <tests/support/HostTest.h>

#include <numbers>
#include <string>

namespace lomlisp::test {
namespace {

using embedded::Chain;
using embedded::Drawing;
using embedded::Group;
using embedded::Point;
using embedded::Record;
using embedded::Reference;
using GroupRecords = HostTest;

std::optional<Group> ThereAndBack(const Group& group, const Drawing& drawing) {
  Chain chain;
  AppendRecord(chain, group, drawing);
  std::string objection;
  return chain.size() == 1 ? ReadRecord(chain.front(), drawing, objection) : std::nullopt;
}

TEST_F(GroupRecords, GroupsOfEveryKindComeBack) {
  const Drawing drawing;
  for (const Group& group : {Group{0, L"LINE"},
                             Group{5, L"1F"},
                             Group{8, L""},
                             Group{10, Point{1, 2, 3}},
                             Group{40, 2.5},
                             Group{50, 30.0},
                             Group{62, -7LL},
                             Group{90, 100000LL},
                             Group{100, L"AcDbLine"},
                             Group{160, 1LL << 40},
                             Group{210, Point{0, 0, -1}},
                             Group{290, 1LL},
                             Group{310, L"0FF0"},
                             Group{330, Reference{0x1F}},
                             Group{340, Reference{0}},
                             Group{420, 255LL},
                             Group{1000, L"text"},
                             Group{1005, L"2A"},
                             Group{1010, Point{4, 5, 6}},
                             Group{1040, 0.5},
                             Group{1070, 3LL},
                             Group{1071, 70000LL}})
    EXPECT_EQ(ThereAndBack(group, drawing), group) << group.code;
}

TEST_F(GroupRecords, AnglesAreRadiansOutsideAndKeepTheirDegrees) {
  const Drawing drawing;
  Chain chain;
  AppendRecord(chain, {50, 180.0}, drawing);
  AppendRecord(chain, {58, 90.0}, drawing);
  AppendRecord(chain, {49, 90.0}, drawing);
  AppendRecord(chain, {59, 90.0}, drawing);
  EXPECT_DOUBLE_EQ(chain[0].value.rreal, std::numbers::pi);
  EXPECT_DOUBLE_EQ(chain[1].value.rreal, std::numbers::pi / 2);
  EXPECT_EQ(chain[2].value.rreal, 90.0);
  EXPECT_EQ(chain[3].value.rreal, 90.0);
  for (int tenths = -7200; tenths <= 7200; ++tenths) {
    const Group angle{51, tenths / 10.0};
    EXPECT_EQ(ThereAndBack(angle, drawing), angle) << tenths;
  }
  const auto odd = ThereAndBack({50, 123.456789012345678}, drawing);
  ASSERT_TRUE(odd);
  EXPECT_NEAR(std::get<double>(odd->value), 123.456789012345678, 1e-12);
}

TEST_F(GroupRecords, WhatIsStoredOddlyIsGivenAsItsRecordCanHoldIt) {
  const Drawing drawing;
  EXPECT_EQ(ThereAndBack({10, 4.5}, drawing), (Group{10, Point{4.5, 0, 0}})) << "an x alone";
  EXPECT_EQ(ThereAndBack({10, Point{1, 2, 0, true}}, drawing), (Group{10, Point{1, 2, 0}}));
  EXPECT_EQ(ThereAndBack({70, 65535LL}, drawing), (Group{70, -1LL})) << "the low 16 bits";
  EXPECT_EQ(ThereAndBack({40, 1LL}, drawing), (Group{40, 0.0})) << "a value of another kind";
  for (const int code : {85, 155, 1072, 70000, -6})
    EXPECT_EQ(ThereAndBack({code, L"x"}, drawing), std::nullopt) << code;
}

TEST_F(GroupRecords, RecordsThatAreNoGroupsAreRefused) {
  const Drawing drawing;
  const Drawing other;
  const auto objection = [&](const Record& record) {
    std::string why;
    EXPECT_FALSE(ReadRecord(record, drawing, why)) << record.type;
    return why;
  };
  for (const short type : {RTNONE, RTREAL, RTPOINT, RTSHORT, RTSTR, RTENAME, RT3DPOINT, RTLONG, RTLB, RTLE,
                           RTDOTE, RTNIL, RTT, RTVOID, RTINT64, short{80}})
    EXPECT_EQ(objection(Record{type, {}, {}, false}),
              "a record that is no group (type " + std::to_string(type) + ")");
  EXPECT_EQ(objection(Record{8, {}, {}, false}), "a group without a text (type 8)");
  Record name{330, {}, {}, false};
  other.NameOf(0x1F, name.value.rlname);
  EXPECT_EQ(objection(name), "the name of no object of this drawing (type 330)");
  std::string why;
  EXPECT_EQ(ReadRecord(Record{RTDXF0, {}, L"LINE", true}, drawing, why), (Group{0, L"LINE"}));
}

}  // namespace
}  // namespace lomlisp::test
