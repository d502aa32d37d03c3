// ReplaceTextW: texts that are replaced throughout a value, by table.
#include <tests/listops/Values.h>
#include <tests/support/SmallStack.h>

namespace lomlisp::test {
namespace {

CStringArray Table(std::initializer_list<const wchar_t*> texts) {
  CStringArray table;
  for (const wchar_t* text : texts) table.Add(text);
  return table;
}

// A text under a DXF code, which belongs to all the records that hold it.
CLOMAdsLispVar Group(short code, const wchar_t* text) {
  CLOMAdsLispVar atom = text;
  EXPECT_TRUE(atom.GetAtom().MakeDXF(code));
  return atom;
}

// A text that stays the test's, under any type but RTSTR.
CLOMAdsLispVar Borrowed(short type, wchar_t* text) {
  resbuf record{};
  record.restype = type;
  record.resval.rstring = text;
  CLOMAdsLispVar atom = 0;
  atom.GetAtom() = record;
  return atom;
}

CLOMAdsLispVar NullText() {
  CLOMAdsLispVar atom = 0;
  atom.GetAtom() = static_cast<const wchar_t*>(nullptr);
  return atom;
}

const wchar_t* TextIn(const CLOMAdsLispVar& atom) { return atom.GetAtom().resval.rstring; }

constexpr short kTextCodes[] = {-4, 0, 1, 8, 9, 100, 105, 300, 410, 430, 470, 999, 1000, 1005};

class TextReplacement : public HostTest {
 protected:
  // What becomes of the value, which must say that all went well.
  static std::string Replaced(CLOMAdsLispVar value, const CStringArray& from, const CStringArray& to) {
    EXPECT_TRUE(value.ReplaceTextW(from, to));
    return Text(value);
  }
  static size_t BufferSize(const CLOMAdsLispVar& atom) {
    return Host::Instance().ledger.BytesFrom(TextIn(atom)) / sizeof(wchar_t);
  }
};

// --- What is replaced ---

TEST_F(TextReplacement, ReplacesEveryTextOfTheTree) {
  EXPECT_EQ(Replaced(V(L"\"a\""), Table({L"a"}), Table({L"x"})), "\"x\"");
  EXPECT_EQ(Replaced(V(L"(\"a\" (\"b\" (\"a\")) \"c\")"), Table({L"a", L"b"}), Table({L"x", L"yy"})),
            "(\"x\" (\"yy\" (\"x\")) \"c\")");
  EXPECT_EQ(Printed(), "");
}

TEST_F(TextReplacement, LooksIntoDottedLists) {
  EXPECT_EQ(Replaced(V(L"((1 . \"a\") (\"a\" . 2))"), Table({L"a"}), Table({L"xyz"})),
            "((1 . \"xyz\") (\"xyz\" . 2))");
  EXPECT_EQ(Replaced(DottedOf({L"a", V(L"(\"a\")")}), Table({L"a"}), Table({L"x"})), "(\"x\" . (\"x\"))");
  EXPECT_EQ(Replaced(DottedOf({L"a", L"a", L"a"}), Table({L"a"}), Table({L"x"})), "(\"x\" . \"x\" \"x\")");
}

TEST_F(TextReplacement, ComparesWholeTextsAndTheirCase) {
  for (const wchar_t* text : {L"abc", L"ABCD", L"AB", L"", L" ABC", L"ABC ", L"\u00E4"}) {
    CLOMAdsLispVar value = text;
    EXPECT_TRUE(value.ReplaceTextW(Table({L"ABC", L"\u00C4"}), Table({L"x", L"y"})));
    EXPECT_STREQ(TextIn(value), text);
  }
  EXPECT_EQ(Replaced(L"ABC", Table({L"ABC"}), Table({L"x"})), "\"x\"");
  EXPECT_EQ(Replaced(L"\u00C4\u00DF", Table({L"\u00C4\u00DF"}), Table({L"\u00FC"})), "\"\xC3\xBC\"");
}

TEST_F(TextReplacement, FindsEmptyTexts) {
  EXPECT_EQ(Replaced(L"", Table({L""}), Table({L"x"})), "\"x\"");
  EXPECT_EQ(Replaced(L"x", Table({L"x"}), Table({L""})), "\"\"");
  EXPECT_EQ(Replaced(L"x", Table({L""}), Table({L"y"})), "\"x\"");
}

TEST_F(TextReplacement, TakesTheFirstEntry) {
  EXPECT_EQ(Replaced(V(L"(\"a\" \"b\")"), Table({L"b", L"a", L"a", L"b"}), Table({L"1", L"2", L"3", L"4"})),
            "(\"2\" \"1\")");
}

TEST_F(TextReplacement, SkipsEntriesWithoutAPartner) {
  EXPECT_EQ(Replaced(V(L"(\"A\" \"B\")"), Table({L"A", L"B"}), Table({L"X"})), "(\"X\" \"B\")");
  EXPECT_EQ(Replaced(V(L"(\"A\" \"B\")"), Table({L"A", L"B", L"A"}), Table({L"X", L"Y"})), "(\"X\" \"Y\")");
  EXPECT_EQ(Replaced(V(L"(\"A\" \"B\")"), Table({L"C", L"B", L"A"}), Table({L"X", L"Y"})), "(\"A\" \"Y\")");
  EXPECT_EQ(Replaced(V(L"(\"A\" \"B\")"), Table({L"A"}), Table({L"X", L"Y", L"Z"})), "(\"X\" \"B\")");
}

TEST_F(TextReplacement, EmptyTablesReplaceNothing) {
  for (const CLOMAdsLispVar& value : {V(L"(\"a\" \"\")"), ListOf({}), CLOMAdsLispVar(), NilAtom()}) {
    const std::string before = Text(value);
    EXPECT_EQ(Replaced(value, Table({}), Table({})), before);
    EXPECT_EQ(Replaced(value, Table({L"a", L""}), Table({})), before);
    EXPECT_EQ(Replaced(value, Table({}), Table({L"x"})), before);
  }
}

TEST_F(TextReplacement, ReplacesEachTextOnlyOnce) {
  EXPECT_EQ(Replaced(V(L"(\"a\" \"b\" \"c\")"), Table({L"a", L"b"}), Table({L"b", L"c"})),
            "(\"b\" \"c\" \"c\")");
  EXPECT_EQ(Replaced(V(L"(\"a\" \"b\")"), Table({L"a", L"b"}), Table({L"b", L"a"})), "(\"b\" \"a\")");
  EXPECT_EQ(Replaced(L"a", Table({L"a", L"aa"}), Table({L"aa", L"a"})), "\"aa\"");
}

TEST_F(TextReplacement, LeavesEverythingButTextsAlone) {
  CLOMAdsLispVar name = 0, point = 0;
  const __int64 words[2] = {31, 0};
  const double coordinates[3] = {1, 2, 3};
  name.GetAtom() = ResBuf(words);
  point.GetAtom() = ResBuf(coordinates);
  const CLOMAdsLispVar value = ListOf({1, 70000L, 5LL, 2.5, name, point, CLOMAdsLisp::nil(), NilAtom(),
                                       ListOf({}), DottedOf({}), NullText()});
  const std::string before = Text(value);
  EXPECT_EQ(
      Replaced(value, Table({L"1", L"nil", L"", L"70000", L"2.5"}), Table({L"x", L"x", L"x", L"x", L"x"})),
      before);
  EXPECT_EQ(TextIn(NodeHandle(Child(value, 10))), nullptr);
  EXPECT_EQ(Printed(), "");
}

TEST_F(TextReplacement, NilStaysNil) {
  CLOMAdsLispVar nil;
  EXPECT_TRUE(nil.ReplaceTextW(Table({L"a"}), Table({L"x"})));
  EXPECT_TRUE(IsEmptyHandle(nil));
  CLOMAdsLispVar nilAtom = NilAtom();
  EXPECT_TRUE(nilAtom.ReplaceTextW(Table({L"a"}), Table({L"x"})));
  EXPECT_TRUE(nilAtom.NilP());
  EXPECT_EQ(Printed(), "");
}

TEST_F(TextReplacement, TextsThatAreNoTextByTheirBaseTypeStay) {
  // A text under a code for numbers, and one under the type of group 0.
  CLOMAdsLispVar color = Group(62, L"a");
  const wchar_t* const text = TextIn(color);
  wchar_t line[] = L"a";
  CLOMAdsLispVar kind = Borrowed(RTDXF0, line);
  CLOMAdsLispVar list = ListOf({color, kind});
  EXPECT_TRUE(list.ReplaceTextW(Table({L"a"}), Table({L"x"})));
  EXPECT_EQ(TextIn(color), text);
  EXPECT_STREQ(text, L"a");
  EXPECT_EQ(TextIn(kind), line);
  EXPECT_STREQ(line, L"a");
}

// --- Where the text is kept ---

TEST_F(TextReplacement, ATextThatFitsKeepsItsBuffer) {
  for (const wchar_t* text : {L"Z", L"XYZ", L"", L"ABC"}) {
    CLOMAdsLispVar value = L"ABC";
    const wchar_t* const buffer = TextIn(value);
    const size_t size = BufferSize(value);
    EXPECT_TRUE(value.ReplaceTextW(Table({L"ABC"}), Table({text})));
    EXPECT_EQ(TextIn(value), buffer);
    EXPECT_EQ(BufferSize(value), size);
    EXPECT_STREQ(TextIn(value), text);
  }
}

TEST_F(TextReplacement, ALongerTextGetsANewBuffer) {
  CLOMAdsLispVar value = L"Z";
  const wchar_t* const buffer = TextIn(value);
  EXPECT_TRUE(value.ReplaceTextW(Table({L"Z"}), Table({L"ABC"})));
  EXPECT_FALSE(host.ledger.IsLive(buffer));
  EXPECT_STREQ(TextIn(value), L"ABC");
  EXPECT_EQ(BufferSize(value), 4U);
}

TEST_F(TextReplacement, OnlyTheLengthOfTheTextCountsForItsBuffer) {
  CLOMAdsLispVar value = L"ABCDE";
  EXPECT_TRUE(value.ReplaceTextW(Table({L"ABCDE"}), Table({L"Z"})));
  EXPECT_TRUE(value.ReplaceTextW(Table({L"Z"}), Table({L"AB"})));
  EXPECT_STREQ(TextIn(value), L"AB");
  EXPECT_EQ(BufferSize(value), 3U);
}

TEST_F(TextReplacement, ATableFromTheValuesOwnTexts) {
  CLOMAdsLispVar value = V(L"(\"a\" \"longer\")");
  CStringArray from, to;
  from.Add(TextIn(NodeHandle(Child(value, 0))));
  to.Add(TextIn(NodeHandle(Child(value, 1))));
  EXPECT_EQ(Replaced(value, from, to), "(\"longer\" \"longer\")");
  EXPECT_EQ(Replaced(value, to, to), "(\"longer\" \"longer\")");
  EXPECT_EQ(Replaced(value, to, from), "(\"a\" \"a\")");
}

// --- Sharing ---

TEST_F(TextReplacement, EverybodyWhoSharesTheNodesSeesTheNewTexts) {
  CLOMAdsLispVar value = V(L"((\"a\") \"a\")");
  const CLOMAdsLispVar other = value;
  const CLOMAdsLispVar inner = CLOMAdsLisp::Car(value);
  const CLOMAdsLispVar copy = CLOMAdsLisp::Head(-1, value);
  EXPECT_TRUE(value.ReplaceTextW(Table({L"a"}), Table({L"xyz"})));
  EXPECT_EQ(other.New(), value.New());
  EXPECT_EQ(Text(other), "((\"xyz\") \"xyz\")");
  EXPECT_EQ(Text(inner), "(\"xyz\")");
  EXPECT_EQ(Text(copy), "((\"a\") \"a\")");
}

TEST_F(TextReplacement, ANodeThatIsReachedTwiceIsReplacedOnce) {
  for (const wchar_t* second : {L"c", L"longer"}) {
    const CLOMAdsLispVar atom = L"a";
    const CLOMAdsLispVar list = ListOf({atom});
    CLOMAdsLispVar value = ListOf({atom, list, atom, DottedOf({list, atom}), list});
    EXPECT_TRUE(value.ReplaceTextW(Table({L"a", L"b"}), Table({L"b", second})));
    EXPECT_EQ(Text(value), "(\"b\" (\"b\") \"b\" ((\"b\") . \"b\") (\"b\"))");
  }
}

// Sixty levels, but 2^60 ways down to the bottom.
TEST_F(TextReplacement, SharedPartsAreVisitedOnce) {
  CLOMAdsLispVar value = ListOf({L"a"});
  const CLOMAdsLispVar bottom = value;
  for (int level = 0; level < 60; ++level) value = ListOf({value, value});
  EXPECT_TRUE(value.ReplaceTextW(Table({L"a", L"b"}), Table({L"b", L"c"})));
  EXPECT_EQ(Text(bottom), "(\"b\")");
}

// --- Texts under DXF codes ---

TEST_F(TextReplacement, ReplacesTextsUnderTextCodesAndKeepsTheCode) {
  for (const short code : kTextCodes) {
    for (const wchar_t* text : {L"x", L"new", L"much longer", L""}) {
      CLOMAdsLispVar value = ListOf({DottedOf({code, Group(code, L"old")}), L"old"});
      EXPECT_TRUE(value.ReplaceTextW(Table({L"old"}), Table({text})));
      const CLOMAdsLispVar group = NodeHandle(Child(value, 0)->children[1]);
      EXPECT_EQ(group.GetAtom().Type(), code);
      EXPECT_STREQ(TextIn(group), text);
      EXPECT_STREQ(TextIn(NodeHandle(Child(value, 1))), text);
    }
  }
  EXPECT_EQ(Printed(), "");
}

TEST_F(TextReplacement, AGroupThatDoesNotMatchKeepsItsText) {
  CLOMAdsLispVar value = Group(8, L"old");
  const wchar_t* const text = TextIn(value);
  EXPECT_TRUE(value.ReplaceTextW(Table({L"OLD"}), Table({L"x"})));
  EXPECT_EQ(TextIn(value), text);
  EXPECT_STREQ(text, L"old");
}

TEST_F(TextReplacement, RecordsThatHoldTheSameTextKeepTheOldOne) {
  for (const wchar_t* text : {L"x", L"new", L"longer"}) {
    CLOMAdsLispVar value = Group(8, L"old");
    const ResBuf other(value.GetAtom());
    const wchar_t* const old = TextIn(value);
    ASSERT_EQ(other.resval.rstring, old);
    EXPECT_TRUE(value.ReplaceTextW(Table({L"old"}), Table({text})));
    EXPECT_EQ(other.resval.rstring, old);
    EXPECT_STREQ(old, L"old");
    EXPECT_NE(TextIn(value), old);
    EXPECT_STREQ(TextIn(value), text);
  }
}

TEST_F(TextReplacement, ATextThatIsNotTheLibrarysIsLeftToItsOwner) {
  for (const wchar_t* text : {L"x", L"new", L"longer"}) {
    wchar_t old[] = L"old";
    CLOMAdsLispVar value = Borrowed(8, old);
    EXPECT_TRUE(value.ReplaceTextW(Table({L"old"}), Table({text})));
    EXPECT_STREQ(old, L"old");
    EXPECT_NE(TextIn(value), old);
    EXPECT_STREQ(TextIn(value), text);
    EXPECT_EQ(value.GetAtom().Type(), 8);
  }
}

TEST_F(TextReplacement, TheNewTextOfAGroupBelongsToTheRecordsThatHoldIt) {
  CLOMAdsLispVar value = Group(8, L"old");
  EXPECT_TRUE(value.ReplaceTextW(Table({L"old"}), Table({L"new"})));
  const ResBuf other(value.GetAtom());
  EXPECT_TRUE(value.ReplaceTextW(Table({L"new"}), Table({L"newest"})));
  EXPECT_STREQ(other.resval.rstring, L"new");
  EXPECT_STREQ(TextIn(value), L"newest");
  value.GetAtom().MakeBaseType();
  EXPECT_EQ(Text(value), "\"newest\"");
}

TEST_F(TextReplacement, AGroupWithoutATextMatchesNothing) {
  CLOMAdsLispVar value = Borrowed(8, nullptr);
  EXPECT_TRUE(value.ReplaceTextW(Table({L"", L"a"}), Table({L"x", L"y"})));
  EXPECT_EQ(TextIn(value), nullptr);
}

// --- Memory ---

TEST_F(TextReplacement, WithoutMemoryTheOldTextStays) {
  wchar_t foreign[] = L"old";
  for (CLOMAdsLispVar value : {CLOMAdsLispVar(L"old"), Group(8, L"old"), Borrowed(8, foreign)}) {
    const wchar_t* const before = TextIn(value);
    host.ledger.FailAllocation(1);
    EXPECT_TRUE(value.ReplaceTextW(Table({L"old"}), Table({L"longer"})));
    host.ledger.FailAllocation(0);
    EXPECT_EQ(TextIn(value), before);
    EXPECT_STREQ(before, L"old");
    EXPECT_TRUE(value.ReplaceTextW(Table({L"old"}), Table({L"longer"})));
    EXPECT_STREQ(TextIn(value), L"longer");
  }
  EXPECT_STREQ(foreign, L"old");
  EXPECT_EQ(Printed(), "");
}

TEST_F(TextReplacement, ATextThatFitsNeedsNoMemoryButAGroupDoes) {
  CLOMAdsLispVar text = L"old", group = Group(8, L"old");
  host.ledger.FailAllocationsFrom(1);
  EXPECT_TRUE(text.ReplaceTextW(Table({L"old"}), Table({L"new"})));
  EXPECT_TRUE(group.ReplaceTextW(Table({L"old"}), Table({L"new"})));
  host.ledger.FailAllocation(0);
  EXPECT_STREQ(TextIn(text), L"new");
  EXPECT_STREQ(TextIn(group), L"old");
}

TEST_F(TextReplacement, TheOtherTextsAreReplacedWhenOneFails) {
  const char* const results[] = {"(\"a\" (\"long\") \"long\")", "(\"long\" (\"a\") \"long\")",
                                 "(\"long\" (\"long\") \"a\")"};
  for (uint64_t failing = 1; failing <= 3; ++failing) {
    CLOMAdsLispVar value = V(L"(\"a\" (\"a\") \"a\")");
    host.ledger.FailAllocation(failing);
    EXPECT_TRUE(value.ReplaceTextW(Table({L"a"}), Table({L"long"})));
    host.ledger.FailAllocation(0);
    EXPECT_EQ(Text(value), results[failing - 1]);
  }
}

// --- Size ---

TEST_F(TextReplacement, DeepValuesNeedNoStack) {
  OnSmallStack([] {
    const CLOMAdsLispVar lists = L"a", pairs = L"a";
    CLOMAdsLispVar deepLists = lists, deepPairs = pairs;
    for (int level = 0; level < kLarge; ++level) {
      deepLists.List();
      deepPairs = DottedOf({1, deepPairs});
    }
    EXPECT_TRUE(deepLists.ReplaceTextW(Table({L"a"}), Table({L"long"})));
    EXPECT_TRUE(deepPairs.ReplaceTextW(Table({L"a"}), Table({L"long"})));
    EXPECT_STREQ(TextIn(lists), L"long");
    EXPECT_STREQ(TextIn(pairs), L"long");
  });
}

TEST_F(TextReplacement, LongValuesAndLongTablesTakeLinearTime) {
  OnSmallStack([] {
    constexpr int kMany = kLarge / 10;
    CLOMAdsLispVar value = ListOf({});
    CStringArray from, to;
    for (int n = 0; n < kMany; ++n) {
      const std::wstring text = std::to_wstring(n);
      value.New()->children.push_back(CLOMAdsLispVar(text).New());
      from.Add(text.c_str());
      to.Add((L"new " + text).c_str());
    }
    EXPECT_TRUE(value.ReplaceTextW(from, to));
    EXPECT_STREQ(TextIn(NodeHandle(Child(value, 0))), L"new 0");
    EXPECT_STREQ(TextIn(NodeHandle(Child(value, kMany - 1))), to[kMany - 1].GetString());
  });
}

TEST_F(TextReplacement, LongListsOfOneTextTakeLinearTime) {
  OnSmallStack([] {
    CLOMAdsLispVar value = ListOf({});
    const CLOMAdsLispVar text = L"a";
    for (int n = 0; n < kLarge; ++n) value.New()->children.push_back(text.New());
    EXPECT_TRUE(value.ReplaceTextW(Table({L"a"}), Table({L"longer"})));
    EXPECT_STREQ(TextIn(text), L"longer");
  });
}

}  // namespace
}  // namespace lomlisp::test
