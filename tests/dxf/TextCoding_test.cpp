#include <embedded/dxf/CodePages.h>
#include <embedded/dxf/TextCoding.h>
#include <tests/dxf/Files.h>
#include <tests/support/HostTest.h>

#include <random>

namespace lomlisp::test {
namespace {

using embedded::DxfVersion;
using embedded::TextCoding;

std::wstring Decoded(const TextCoding& coding, std::string_view bytes) {
  std::wstring text;
  coding.Decode(bytes, text);
  return text;
}

std::string Encoded(const TextCoding& coding, std::wstring_view text) {
  std::string bytes;
  coding.Encode(text, bytes);
  return bytes;
}

TextCoding Page(std::wstring_view name) { return TextCoding(DxfVersion::R2000, name); }

struct Pair {
  std::string bytes;
  std::wstring text;
};

void ExpectBothWays(const TextCoding& coding, const std::vector<Pair>& pairs) {
  for (const Pair& pair : pairs) {
    EXPECT_EQ(Decoded(coding, pair.bytes), pair.text) << pair.bytes;
    EXPECT_EQ(Encoded(coding, pair.text), pair.bytes) << pair.bytes;
  }
}

TEST(DxfTexts, CodePagesHaveTheirCharacters) {
  const std::tuple<const wchar_t*, const char*, const wchar_t*> cases[] = {
      {L"ANSI_1250", "\xE8\x8A", L"\u010D\u0160"},
      {L"ANSI_1251", "\xC6\xE6", L"\u0416\u0436"},
      {L"ANSI_1252", "\x80\xFC\xDF", L"\u20ACüß"},
      {L"ansi_1252", "\xE4", L"ä"},
      {L"ANSI_1253", "\xE1\xD9", L"\u03B1\u03A9"},
      {L"ANSI_1254", "\xFE\xDD", L"\u015F\u0130"},
      {L"ANSI_1255", "\xE0\xFA", L"\u05D0\u05EA"},
      {L"ANSI_1256", "\xC7\xED", L"\u0627\u064A"},
      {L"ANSI_1257", "\xE0\xFE", L"\u0105\u017E"},
      {L"ANSI_1258", "\xFE\xD0", L"\u20AB\u0110"},
      {L"ANSI_874", "\xA1\xFB", L"\u0E01\u0E5B"},
      {L"ISO8859-1", "\x80\xE4", L"\u0080ä"},
      {L"ISO8859-2", "\xE8\x9F", L"\u010D\u009F"},
      {L"ISO8859-3", "\xE5", L"\u010B"},
      {L"ISO8859-4", "\xE6", L"æ"},
      {L"ISO8859-5", "\xB6", L"\u0416"},
      {L"ISO8859-6", "\xC7", L"\u0627"},
      {L"ISO8859-7", "\xE1", L"\u03B1"},
      {L"ISO8859-8", "\xE0", L"\u05D0"},
      {L"ISO8859-9", "\xFE", L"\u015F"},
      {L"ISO8859-15", "\xA4", L"\u20AC"},
      {L"DOS437", "\x84\xE1\xC9", L"äß\u2554"},
      {L"dos850", "\x84\xD5", L"ä\u0131"},
      {L"DOS852", "\x9F", L"\u010D"},
      {L"DOS855", "\xE9", L"\u0436"},
      {L"DOS857", "\x9F", L"\u015F"},
      {L"DOS860", "\x84", L"ã"},
      {L"DOS861", "\x8C", L"ð"},
      {L"DOS863", "\x84", L"Â"},
      {L"DOS865", "\x9D", L"Ø"},
      {L"DOS866", "\x86\xF1", L"\u0416\u0451"}};
  for (const auto& [name, bytes, text] : cases) ExpectBothWays(Page(name), {{bytes, text}});
}

TEST(DxfTexts, EveryByteOfEveryCodePageComesBack) {
  for (const wchar_t* name :
       {L"ANSI_874",  L"ANSI_1250",  L"ANSI_1251", L"ANSI_1252", L"ANSI_1253", L"ANSI_1254",   L"ANSI_1255",
        L"ANSI_1256", L"ANSI_1257",  L"ANSI_1258", L"DOS437",    L"DOS850",    L"DOS852",      L"DOS855",
        L"DOS857",    L"DOS860",     L"DOS861",    L"DOS863",    L"DOS865",    L"DOS866",      L"ISO8859-1",
        L"ISO8859-2", L"ISO8859-3",  L"ISO8859-4", L"ISO8859-5", L"ISO8859-6", L"ISO8859-7",   L"ISO8859-8",
        L"ISO8859-9", L"ISO8859-15", L"UTF-8",     L"ANSI_932",  L"ANSI_936",  L"NEVERHEARDOF"}) {
    std::string bytes;
    for (int byte = ' '; byte <= 0xFF; ++byte) bytes += static_cast<char>(byte);
    EXPECT_EQ(Encoded(Page(name), Decoded(Page(name), bytes)), bytes) << Utf8(name);
  }
  EXPECT_TRUE(embedded::FindCodePage(L"NEVERHEARDOF").empty());
  EXPECT_EQ(embedded::FindCodePage(L"ANSI_1252").size(), 128u);
}

TEST(DxfTexts, FromR2007OnTheyAreUtf8WhateverTheCodePage) {
  const TextCoding coding(DxfVersion::R2007, L"ANSI_1252");
  ExpectBothWays(coding, {{"\xC3\xA4\xE2\x82\xAC", L"ä\u20AC"}, {"\xF0\x9F\x98\x80", L"\U0001F600"}});
  EXPECT_EQ(Decoded(TextCoding(DxfVersion::R2004, L"ANSI_1252"), "\xC3\xA4"), L"Ã¤");
}

TEST(DxfTexts, BytesThatStandForNothingPassThrough) {
  const auto lone = [](int byte) { return std::wstring(1, static_cast<wchar_t>(0xDC00 + byte)); };
  ExpectBothWays(Page(L"ANSI_1252"), {{"a\x81z", L"a" + lone(0x81) + L"z"}});
  ExpectBothWays(Page(L"NEVERHEARDOF"), {{"\xE4", lone(0xE4)}});
  ExpectBothWays(TextCoding::Utf8(), {{"\xE4z", lone(0xE4) + L"z"},
                                      {"\xC3", lone(0xC3)},
                                      {"\xC0\x80", lone(0xC0) + lone(0x80)},
                                      {"\xE0\x80\x80", lone(0xE0) + lone(0x80) + lone(0x80)},
                                      {"\xED\xA0\x80", lone(0xED) + lone(0xA0) + lone(0x80)},
                                      {"\xF4\x90\x80\x80", lone(0xF4) + lone(0x90) + lone(0x80) + lone(0x80)},
                                      {"\xF8", lone(0xF8)},
                                      {"\xC3\xC3\xA4", lone(0xC3) + L"ä"}});
}

TEST(DxfTexts, CharactersOfTwoBytesPassThroughWholeAndOthersAreEscaped) {
  const TextCoding coding = Page(L"ANSI_932");
  // The second byte of the first is a backslash, that of the last a caret.
  for (const char* bytes :
       {"\x83\x5CU+0041", "\x93\xFA\x96\x7B", "\x83\x5EJ", "\x81", "\x81\x20", "a\x83\x5C"})
    EXPECT_EQ(Encoded(coding, Decoded(coding, bytes)), bytes) << bytes;
  EXPECT_EQ(Decoded(coding, "\x83\x5CU+0041").substr(1), L"\\U+0041");
  EXPECT_EQ(Encoded(coding, L"\u65E5ä"), "\\U+65E5\\U+00E4");
}

TEST(DxfTexts, FourDigitsAreACharacter) {
  const TextCoding coding = Page(L"ANSI_1252");
  ExpectBothWays(coding, {{"\\U+0416", L"\u0416"},
                          {"a\\U+4E2Db", L"a\u4E2Db"},
                          {"\\U+D83D\\U+DE00", L"\U0001F600"},
                          {"\\U+FFFD", L"\uFFFD"}});
  EXPECT_EQ(Decoded(coding, "\\U+00e4\\U+0041"), L"äA");
  EXPECT_EQ(Decoded(TextCoding::Utf8(), "\\U+00E4"), L"ä");
  // What is not exactly that stays, surrogates without a partner too.
  for (const wchar_t* text :
       {L"\\U+00E", L"\\U+00G4", L"\\u+00E4", L"\\U00E4", L"\\U+", L"\\", L"\\P\\U", L"\\U+DC80", L"\\U+D83D",
        L"\\U+D83Dx", L"\\U+D83D\\U+0041", L"\\U+DE00\\U+D83D"})
    EXPECT_EQ(Decoded(coding, Utf8(text)).front(), L'\\') << Utf8(text);
}

TEST(DxfTexts, CaretsStandForControlCharacters) {
  const TextCoding coding = Page(L"ANSI_1252");
  ExpectBothWays(coding, {{"a^Jb^Mc^Id", L"a\nb\rc\td"},
                          {"^", L"^"},
                          {"^ ^A^j^", L"^ ^A^j^"},
                          {"^^J", L"^\n"},
                          {"\\U+0001\\U+001A", L"\x01\x1A"},
                          {std::string("\\U+0000"), std::wstring(1, L'\0')}});
}

TEST(DxfTexts, TextsThatLookLikeSomethingElseComeBack) {
  for (const TextCoding& coding : {Page(L"ANSI_1252"), Page(L"ANSI_932"), TextCoding::Utf8()})
    for (const wchar_t* text :
         {L"^J", L"x^M^^I", L"\\U+00E4", L"\\\\U+0041", L"\\U+D83D\\U+DE00", L"\\U+005C^J", L"\\U+005CU+0041",
          L"line\nline\r\t\x7F", L"\x01\x1F", L"\uFFFD\u0080"})
      EXPECT_EQ(Decoded(coding, Encoded(coding, text)), text) << Encoded(coding, text);
}

// Any bytes come back as what they stood for, though perhaps written otherwise.
TEST(DxfTexts, RandomBytesStandForTheSameAfterBeingWritten) {
  std::mt19937 random(1);
  constexpr std::string_view kLikely =
      "\\U+00E4^JIM\x81\x5C\x5E\xC3\xA4\xF0"
      "D8";
  for (const TextCoding& coding :
       {Page(L"ANSI_1252"), Page(L"ANSI_932"), Page(L"NEVERHEARDOF"), Page(L"ISO8859-2"), TextCoding::Utf8()})
    for (unsigned round = 0; round < Rounds(20'000); ++round) {
      std::string bytes;
      for (size_t length = random() % 30; length > 0; --length)
        bytes += random() % 4 == 0 ? static_cast<char>(random() % 256) : kLikely[random() % kLikely.size()];
      // What ends a text in one form of the file or the other is in none.
      std::erase_if(bytes, [](char byte) { return byte == '\n' || byte == '\r' || byte == '\0'; });
      const std::wstring text = Decoded(coding, bytes);
      const std::string written = Encoded(coding, text);
      ASSERT_EQ(Decoded(coding, written), text);
      ASSERT_EQ(written.find_first_of(std::string_view("\n\r\0", 3)), std::string::npos);
    }
}

TEST(DxfTexts, TheHeaderTellsTheCodePage) {
  const auto text = [](const std::string& version, const std::string& page, const std::string& bytes) {
    return std::wstring(
        TextOf(Read(WithVersion(version, "0 TEXT|1 " + bytes, page))->Entities().members[0]->groups, 1));
  };
  EXPECT_EQ(text("AC1009", "ANSI_1251", "\xC6"), L"\u0416");
  EXPECT_EQ(text("AC1015", "ANSI_1250", "\xE8"), L"\u010D");
  EXPECT_EQ(text("AC1018", "DOS850", "\x84"), L"ä");
  EXPECT_EQ(text("AC1021", "ANSI_1252", "\xC3\xA4"), L"ä");
  // Without a header it is the usual one; one that stands behind counts as well.
  const auto first = [](const std::string& file) {
    return std::wstring(TextOf(Read(file)->Entities().members[0]->groups, 1));
  };
  EXPECT_EQ(first(WithSection("ENTITIES", "0 TEXT|1 \xE4")), L"ä");
  EXPECT_EQ(
      first(Lines("0 SECTION|2 ENTITIES|0 TEXT|1 \xC6|0 ENDSEC|0 SECTION|2 HEADER|9 $DWGCODEPAGE|3 ANSI_1251|"
                  "0 ENDSEC|0 EOF")),
      L"\u0416");
}

TEST(DxfTexts, AreWrittenInTheCodePageOfTheHeader) {
  for (const DxfForm form : {DxfForm::Ascii, DxfForm::Binary}) {
    const auto drawing = Read(WithVersion("AC1015", "0 TEXT|1 x"));
    Find(drawing->Entities().members[0]->groups, 1)->value = L"ä\u0416\n";
    const std::string file = embedded::WriteDxf(*drawing, form);
    EXPECT_NE(file.find("\xE4\\U+0416^J"), std::string::npos);
    EXPECT_EQ(TextOf(Read(file)->Entities().members[0]->groups, 1), L"ä\u0416\n");
  }
}

}  // namespace
}  // namespace lomlisp::test
