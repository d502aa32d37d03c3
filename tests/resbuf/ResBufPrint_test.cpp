#include <tests/resbuf/Records.h>

#include <cwchar>
#include <limits>

namespace lomlisp::test {
namespace {

constexpr wchar_t kUntouched = L'#';

class ResBufPrint : public HostTest {
 protected:
  // What a record prints, the same into a buffer and on the command line.
  std::string PrintOf(const ResBuf& record) {
    std::vector<wchar_t> buffer(4096, kUntouched);
    record.Print(buffer.data(), buffer.size());
    const std::string text = Utf8(buffer.data());
    EXPECT_EQ(Printed(), "");
    record.Print(nullptr, 0);
    EXPECT_EQ(Printed(), text);
    return text;
  }
};

// A DebugPrint into a buffer with that much room.
struct DebugText {
  DebugText(const ResBuf& record, unsigned long room, int measureOnly = 0)
      : buffer(4096, kUntouched), cursor(buffer.data()), remaining(room) {
    estimate = record.DebugPrint(measureOnly, cursor, remaining);
  }
  size_t Written() const { return static_cast<size_t>(cursor - buffer.data()); }
  std::string Text() const { return Utf8(std::wstring_view(buffer.data(), Written())); }

  std::vector<wchar_t> buffer;
  wchar_t* cursor;
  unsigned long remaining;
  unsigned long estimate = 0;
};

TEST_F(ResBufPrint, EveryTypePrintsByItsBaseType) {
  for (const Sample& sample : Samples()) {
    SCOPED_TRACE(sample.typeName);
    EXPECT_EQ(PrintOf(sample.record), sample.printed);
  }
}

TEST_F(ResBufPrint, RealsHaveSixDigitsBehindThePoint) {
  const std::vector<std::pair<double, std::string>> cases = {
      {0.0, "0.000000"},
      {-0.0, "-0.000000"},
      {1.0 / 3.0, "0.333333"},
      {2.0 / 3.0, "0.666667"},
      {-1.5, "-1.500000"},
      {0.0000004, "0.000000"},
      {0.0000006, "0.000001"},
      {0.9999999, "1.000000"},
      {1e22, "10000000000000000000000.000000"},
      {123456789.125, "123456789.125000"},
      {std::numeric_limits<double>::infinity(), "inf"},
      {-std::numeric_limits<double>::infinity(), "-inf"},
      {std::numeric_limits<double>::quiet_NaN(), "nan"},
  };
  for (const auto& [value, text] : cases) {
    EXPECT_EQ(PrintOf(Real(value)), text);
    EXPECT_EQ(PrintOf(Angle(value)), text);
  }
}

TEST_F(ResBufPrint, TheGreatestRealsPrintWhole) {
  const double greatest = std::numeric_limits<double>::max();
  EXPECT_EQ(PrintOf(Real(greatest)).size(), 316u);
  EXPECT_EQ(PrintOf(Real(greatest)).substr(0, 20), "17976931348623157081");
  EXPECT_EQ(PrintOf(Point3d(-greatest, -greatest, -greatest)).size(), 2u + 3u * 317u + 2u + 2u);
}

TEST_F(ResBufPrint, IntegersPrintWithTheirSign) {
  EXPECT_EQ(PrintOf(Short(-32768)), "-32768");
  EXPECT_EQ(PrintOf(Short(32767)), "32767");
  EXPECT_EQ(PrintOf(Long(std::numeric_limits<int32_t>::min())), "-2147483648");
  EXPECT_EQ(PrintOf(Long(std::numeric_limits<int32_t>::max())), "2147483647");
  EXPECT_EQ(PrintOf(Int64(std::numeric_limits<__int64>::min())), "-9223372036854775808");
  EXPECT_EQ(PrintOf(Int64(std::numeric_limits<__int64>::max())), "9223372036854775807");
}

TEST_F(ResBufPrint, NamesPrint32BitsOfTheirFirstWord) {
  EXPECT_EQ(PrintOf(Entity(0x123456789, 5)), "<Entity name: 23456789>");
  EXPECT_EQ(PrintOf(Entity(-1)), "<Entity name: ffffffff>");
  EXPECT_EQ(PrintOf(PickSet(0)), "<Selection set: 0>");
}

TEST_F(ResBufPrint, TextsPrintInQuotesAsTheyAre) {
  EXPECT_EQ(PrintOf(Str(L"")), "\"\"");
  EXPECT_EQ(PrintOf(Str(L"a\"b\\n%d%s")), "\"a\"b\\n%d%s\"");
  EXPECT_EQ(PrintOf(Str(L"Stra\u00DFe")), Utf8(L"\"Stra\u00DFe\""));
}

TEST_F(ResBufPrint, ANullTextPrintsAsTwoQuotes) {
  EXPECT_EQ(PrintOf(Str(nullptr)), "\"\"");
  EXPECT_EQ(PrintOf(Borrowed(8, nullptr)), "\"\"");
  const DebugText debug(Str(nullptr), 100);
  EXPECT_EQ(debug.Text(), "\"\"");
  EXPECT_EQ(debug.estimate, 2u);
}

TEST_F(ResBufPrint, LongTextsAreCutAt2047Characters) {
  const auto printed = [this](size_t length) { return PrintOf(Str(std::wstring(length, L'x').c_str())); };
  EXPECT_EQ(printed(2045), "\"" + std::string(2045, 'x') + "\"");
  EXPECT_EQ(printed(2046), "\"" + std::string(2046, 'x'));
  EXPECT_EQ(printed(2047), "\"" + std::string(2046, 'x'));
  EXPECT_EQ(printed(100000), "\"" + std::string(2046, 'x'));
}

TEST_F(ResBufPrint, ABufferIsFilledUpToItsLastPlaceAndTerminated) {
  const ResBuf record(L"abc");
  for (size_t room = 1; room <= 8; ++room) {
    std::wstring buffer(10, kUntouched);
    record.Print(buffer.data(), room);
    EXPECT_EQ(Utf8(buffer.c_str()), std::string("\"abc\"").substr(0, room - 1));
    EXPECT_EQ(buffer[room], kUntouched) << "written behind the end";
  }
}

TEST_F(ResBufPrint, ABufferWithoutRoomIsNotTouched) {
  wchar_t buffer[2] = {kUntouched, kUntouched};
  Short(5).Print(buffer, 0);
  EXPECT_EQ(buffer[0], kUntouched);
  EXPECT_EQ(Printed(), "");
}

TEST_F(ResBufPrint, PrintingIntoAnOwnTextIsSafe) {
  ResBuf record(L"abcdef");
  record.Print(record.resval.rstring, 7);
  EXPECT_STREQ(record.resval.rstring, L"\"abcde");
}

// --- The debugging form ---

TEST_F(ResBufPrint, TheDebuggingFormHasItsTextAndItsEstimate) {
  for (const Sample& sample : Samples()) {
    SCOPED_TRACE(sample.typeName);
    const DebugText debug(sample.record, 1000);
    EXPECT_EQ(debug.Text(), sample.debug);
    EXPECT_EQ(debug.estimate, sample.estimate);
    EXPECT_EQ(debug.remaining, 1000 - sample.debug.size());
    EXPECT_EQ(*debug.cursor, L'\0');
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(ResBufPrint, MeasuringWritesNothing) {
  for (const Sample& sample : Samples()) {
    SCOPED_TRACE(sample.typeName);
    const DebugText debug(sample.record, 1000, 1);
    EXPECT_EQ(debug.estimate, sample.estimate);
    EXPECT_EQ(debug.Written(), 0u);
    EXPECT_EQ(debug.remaining, 1000u);
    EXPECT_EQ(debug.buffer[0], kUntouched);
  }
}

TEST_F(ResBufPrint, WithoutABufferOrRoomOnlyTheEstimateIsGiven) {
  wchar_t* cursor = nullptr;
  unsigned long remaining = 100;
  EXPECT_EQ(Short(5).DebugPrint(0, cursor, remaining), 12u);
  EXPECT_EQ(cursor, nullptr);
  EXPECT_EQ(remaining, 100u);

  const DebugText noRoom(Short(5), 0);
  EXPECT_EQ(noRoom.estimate, 12u);
  EXPECT_EQ(noRoom.Written(), 0u);
  EXPECT_EQ(noRoom.buffer[0], kUntouched);
}

TEST_F(ResBufPrint, WhatFitsExactlyIsWrittenWithoutATerminator) {
  const DebugText exact(Str(L"abc"), 5);
  EXPECT_EQ(exact.Text(), "\"abc\"");
  EXPECT_EQ(exact.remaining, 0u);
  EXPECT_EQ(exact.buffer[5], kUntouched);

  const DebugText oneMore(Str(L"abc"), 6);
  EXPECT_EQ(oneMore.Text(), "\"abc\"");
  EXPECT_EQ(oneMore.remaining, 1u);
  EXPECT_EQ(oneMore.buffer[5], L'\0');
  EXPECT_EQ(oneMore.buffer[6], kUntouched);
}

TEST_F(ResBufPrint, WhatDoesNotFitUsesAllTheRoom) {
  for (unsigned long room = 1; room < 5; ++room) {
    const DebugText cut(Str(L"abc"), room);
    EXPECT_EQ(cut.Text(), std::string("\"abc\"").substr(0, room));
    EXPECT_EQ(cut.remaining, 0u);
    EXPECT_EQ(cut.estimate, 5u);
    EXPECT_EQ(cut.buffer[room], kUntouched);
  }
  const DebugText number(Real(2.5), 3);
  EXPECT_EQ(number.Text(), "2.5");
  EXPECT_EQ(number.remaining, 0u);
}

TEST_F(ResBufPrint, TheDebuggingFormOfALongTextIsWhole) {
  const std::wstring text(3000, L'x');
  const DebugText debug(Str(text.c_str()), 4000);
  EXPECT_EQ(debug.estimate, 3002u);
  EXPECT_EQ(debug.Text(), "\"" + std::string(3000, 'x') + "\"");
}

TEST_F(ResBufPrint, SeveralRecordsFollowEachOtherInOneBuffer) {
  std::vector<wchar_t> buffer(20, kUntouched);
  wchar_t* cursor = buffer.data();
  unsigned long remaining = 8;
  Bare(RTLB).DebugPrint(0, cursor, remaining);
  Short(12).DebugPrint(0, cursor, remaining);
  Str(L"ab").DebugPrint(0, cursor, remaining);
  EXPECT_EQ(remaining, 1u);
  Bare(RTLE).DebugPrint(0, cursor, remaining);
  Bare(RTLE).DebugPrint(0, cursor, remaining);
  EXPECT_EQ(remaining, 0u);
  EXPECT_EQ(std::wstring(buffer.data(), 9), L"(12\"ab\")#");
}

}  // namespace
}  // namespace lomlisp::test
