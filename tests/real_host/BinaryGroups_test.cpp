// Binary groups of a host whose records hold bytes and no text. The sanitizers see what is read, freed and
// left.
#include <gtest/gtest.h>

#include <lomlisp/lomlisp.h>
#include <tests/real_host/Platform.h>

#include <string>

namespace {

const std::string kBytes("\x00\xFF\x41\x00\x9C", 5);
constexpr const wchar_t* kDigits = L"00FF41009C";
const __int64 kName[2] = {31, 7};

std::wstring Text(const CLOMAdsLispVar& value) { return value.GetAsDebugString().GetString(); }

std::wstring Printed(const resbuf& record) {
  wchar_t text[2048];
  ResBuf(record).Print(text, std::size(text));
  return text;
}

CLOMAdsLispVar Entity(resbuf* chain) {
  SetEntity(chain);
  return CLOMAdsLisp::EntGet(kName);
}

std::string BytesOf(const resbuf& record) {
  return {record.resval.rbinary.buf, static_cast<size_t>(record.resval.rbinary.clen)};
}

TEST(BinaryGroups, AreTextsOfDigitsInValues) {
  const CLOMAdsLispVar entity = Entity(TextGroup(0, L"IMAGE", BinaryGroup(310, kBytes, TextGroup(8, L"0"))));
  ASSERT_EQ(entity.Length(), 3);
  const CLOMAdsLispVar digits = CLOMAdsLisp::Cdr(CLOMAdsLisp::Assoc(310, entity));
  ASSERT_TRUE(digits.StringP());
  EXPECT_STREQ(static_cast<wchar_t*>(digits.GetAtom()), kDigits);
}

TEST(BinaryGroups, AreAllOfTheirCodesAndNoOthers) {
  for (const short code : std::initializer_list<short>{310, 311, 319, 1004}) {
    const CLOMAdsLispVar entity = Entity(TextGroup(0, L"X", BinaryGroup(code, kBytes)));
    EXPECT_STREQ(
        static_cast<wchar_t*>(CLOMAdsLispVar(CLOMAdsLisp::Cdr(CLOMAdsLisp::Assoc(code, entity))).GetAtom()),
        kDigits);
  }
  for (const short code : std::initializer_list<short>{309, 1003}) {
    const CLOMAdsLispVar entity = Entity(TextGroup(0, L"X", TextGroup(code, L"text")));
    EXPECT_STREQ(
        static_cast<wchar_t*>(CLOMAdsLispVar(CLOMAdsLisp::Cdr(CLOMAdsLisp::Assoc(code, entity))).GetAtom()),
        L"text");
  }
}

TEST(BinaryGroups, GoBackAsBytes) {
  const CLOMAdsLispVar entity = Entity(TextGroup(0, L"IMAGE", BinaryGroup(310, kBytes)));
  EXPECT_FALSE(CLOMAdsLisp::EntMod(entity).NilP());
  EXPECT_EQ(Modified(), "0 'IMAGE', 310 [00FF41009C]");
  EXPECT_FALSE(CLOMAdsLisp::EntMod(CLOMAdsLisp::List(CLOMAdsLisp::Cons(1004, L"0aBc"))).NilP());
  EXPECT_EQ(Modified(), "1004 [0ABC]");
  EXPECT_FALSE(CLOMAdsLisp::EntMod(CLOMAdsLisp::List(CLOMAdsLisp::Cons(310, L""))).NilP());
  EXPECT_EQ(Modified(), "310 []");
}

TEST(BinaryGroups, OfWhatIsNotBytesAreNoGroups) {
  const std::wstring tooLong(2 * 32768, L'0');
  for (const wchar_t* text : {L"0", L"0G", L"text", L"0 ", tooLong.c_str()}) {
    const CLOMAdsLispVar entity = CLOMAdsLisp::List(CLOMAdsLisp::Cons(310, text));
    ADSList chain;
    entity.LispToDXF(chain);
    EXPECT_EQ(chain.First()->Type(), RTLB) << "a list in brackets, which is no run of groups";
  }
  ADSList chain;
  CLOMAdsLispVar(CLOMAdsLisp::List(CLOMAdsLisp::Cons(310, 5))).LispToDXF(chain);
  EXPECT_EQ(chain.First()->Type(), RTLB);
}

TEST(BinaryGroups, InExtendedData) {
  resbuf* const begin = acutNewRb(-3);
  begin->rbnext = TextGroup(1001, L"APP", BinaryGroup(1004, kBytes));
  const CLOMAdsLispVar entity = Entity(TextGroup(0, L"LINE", begin));
  EXPECT_NE(Text(entity).find(kDigits), std::wstring::npos) << "shown";

  ADSList data;
  data.Add(BinaryGroup(1004, kBytes), ADSCopyFlag::Adopt);
  CLOMAdsLispVar value;
  EXPECT_TRUE(value.XDataToLisp(data));
  EXPECT_STREQ(static_cast<wchar_t*>(value.GetAtom()), kDigits);
}

TEST(BinaryGroups, ArePrintedAsDigitsAndReadNoFurther) {
  resbuf* const record = BinaryGroup(310, kBytes);
  EXPECT_EQ(Printed(*record), L"\"00FF41009C\"");
  wchar_t text[100];
  wchar_t* cursor = text;
  unsigned long room = 100;
  EXPECT_EQ(ResBuf(*record).DebugPrint(0, cursor, room), 12u);
  EXPECT_EQ(cursor, text + 12);

  const short length = record->resval.rbinary.clen;
  record->resval.rbinary.clen = -1;
  EXPECT_EQ(Printed(*record), L"\"\"") << "a length that is none";
  record->resval.rbinary.clen = length;
  acutRelRb(record);
}

TEST(BinaryGroups, AreCutWhereTheyAreTooLongToPrint) {
  resbuf* const record = BinaryGroup(310, std::string(32767, '\x55'));
  EXPECT_EQ(Printed(*record).size(), 1002u);
  ResBuf digits(*record);
  digits.MakeBaseType();
  EXPECT_EQ(std::wcslen(static_cast<wchar_t*>(digits)), 2u * 32767);
  acutRelRb(record);
}

TEST(BinaryGroups, ThatSomebodyElseOwnsStayHis) {
  resbuf* const record = BinaryGroup(310, kBytes);
  {
    ResBuf copy(*record);
    ADSList list(record, ADSCopyFlag::Copy);
    const CLOMAdsLispVar value(record);
    EXPECT_EQ(copy.resval.rbinary.buf, record->resval.rbinary.buf);
  }
  EXPECT_EQ(BytesOf(*record), kBytes);
  acutRelRb(record);
}

TEST(BinaryGroups, AreSharedByTheRecordsOfAList) {
  auto* const list = new ADSList;
  list->Add(BinaryGroup(310, kBytes, BinaryGroup(1004, "second")), ADSCopyFlag::Adopt);
  const ResBuf kept(*list->First());
  ADSList other(*list);
  delete list;
  EXPECT_EQ(BytesOf(kept), kBytes);
  EXPECT_EQ(BytesOf(*other.Last()), "second");
}

TEST(BinaryGroups, AreCopiedForThePlatform) {
  resbuf* const copies = [] {
    ADSList list;
    list.Add(TextGroup(8, L"0", BinaryGroup(310, kBytes)), ADSCopyFlag::Adopt);
    return ResBuf::copyToAcadResBufList(list);
  }();
  EXPECT_EQ(BytesOf(*copies->rbnext), kBytes);
  acutRelRb(copies);
}

TEST(BinaryGroups, LeaveAListThatKeepsNothing) {
  resbuf* left = nullptr;
  {
    ADSList list;
    list.Add(BinaryGroup(310, kBytes, BinaryGroup(1004, "second")), ADSCopyFlag::Adopt);
    const ADSList sharing(list);
    list.DeleteMode(ADSDeleteFlag::Keep);
    left = list;
  }
  EXPECT_EQ(BytesOf(*left), kBytes);
  EXPECT_EQ(BytesOf(*left->rbnext), "second");
  acutRelRb(left);
}

TEST(BinaryGroups, ThatAreNobodysLeaveAListEmpty) {
  resbuf* const foreign = BinaryGroup(310, kBytes);
  ADSList list;
  list.DeleteMode(ADSDeleteFlag::Keep);
  list.Add(new ResBuf(*foreign), ADSCopyFlag::Adopt);
  EXPECT_EQ(list.First()->resval.rbinary.buf, nullptr);
  EXPECT_EQ(list.First()->resval.rbinary.clen, 0);
  acutRelRb(list);
  acutRelRb(foreign);
}

TEST(BinaryGroups, ChangeTheirType) {
  ResBuf record(kDigits);
  ASSERT_TRUE(record.MakeDXF(310));
  EXPECT_EQ(BytesOf(record), kBytes);
  const ResBuf copy(record);
  ASSERT_TRUE(record.MakeDXF(1004));
  EXPECT_EQ(BytesOf(record), kBytes);
  ASSERT_TRUE(record.MakeDXF(1000));
  EXPECT_STREQ(record.resval.rstring, kDigits);
  ASSERT_TRUE(record.MakeDXF(62));
  ASSERT_TRUE(record.MakeDXF(310)) << "a text of ours under a code that is not for texts";
  EXPECT_EQ(BytesOf(record), kBytes);
  record.MakeBaseType();
  EXPECT_EQ(record.Type(), RTSTR);
  EXPECT_STREQ(static_cast<wchar_t*>(record), kDigits);
  EXPECT_EQ(BytesOf(copy), kBytes);

  EXPECT_FALSE(ResBuf(L"no digits").MakeDXF(310));
  const double point[3] = {1.0, 2.0, 3.0};
  ResBuf number(point);
  EXPECT_TRUE(number.MakeDXF(310));
  EXPECT_EQ(number.resval.rbinary.buf, nullptr) << "what is no text gives no bytes";
  ResBuf empty(ADSResType(310));
  EXPECT_EQ(Printed(empty), L"\"\"");
}

TEST(BinaryGroups, AreNoTextsToBeReplaced) {
  resbuf* const record = BinaryGroup(310, kBytes);
  CLOMAdsLispVar value(L"text");
  value.GetAtom() = *record;
  CStringArray from;
  CStringArray to;
  from.Add(kDigits);
  to.Add(L"other");
  value.ReplaceTextW(from, to);
  EXPECT_EQ(value.GetAtom().resval.rbinary.buf, record->resval.rbinary.buf);
  acutRelRb(record);
}

TEST(Mfc, ArraysTakeTheArguments) {
  resbuf* const arguments =
      TextGroup(RTSTR, L"first", TextGroup(RTSTR, L"second", TextGroup(RTSTR, L"third")));
  SetArguments(arguments);
  CArray<CLOMAdsLispVar, CLOMAdsLispVar&> parameters;
  CLOMAdsLisp::Parameter(parameters);
  ASSERT_EQ(parameters.GetSize(), 3);
  CString text;
  CLOMAdsLisp::SetQ(text, parameters[2]);
  EXPECT_STREQ(text.GetString(), L"third");
  SetArguments(nullptr);
  acutRelRb(arguments);
}

TEST(Mfc, VariantsGiveAndTakeValues) {
  EXPECT_STREQ(static_cast<wchar_t*>(CLOMAdsLispVar(COleVariant(L"text", VT_BSTR)).GetAtom()), L"text");
  EXPECT_EQ(CLOMAdsLispVar(COleVariant(2.5)).LispToOleVariant().dblVal, 2.5);
  const COleVariant text = CLOMAdsLispVar(CString(L"text")).LispToOleVariant();
  ASSERT_EQ(text.vt, VT_BSTR);
  EXPECT_STREQ(text.bstrVal, L"text");
}

}  // namespace
