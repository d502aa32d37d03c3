// Texts of a file as texts of the drawing, and back.
#pragma once

#include <embedded/drawing/Drawing.h>

#include <string>
#include <string_view>

namespace lomlisp::embedded {

// From R2007 on texts are UTF-8, before in a code page; in both
//   ^I ^J ^M   stand for the control characters,
//   \U+XXXX    for a character by four hexadecimal digits, for one beyond them by a pair of surrogates,
// and a byte that stands for nothing becomes a lone surrogate, U+DC80 to U+DCFF, so that it comes back.
// Encoding writes so what the file cannot hold otherwise, and \U+005E or \U+005C for a caret or backslash
// that would be read as something else: whatever characters a text has, decoding gives them again.
//
// Of code pages with characters of two bytes there are no tables here. Their bytes pass through as such,
// the lower half of the second ones as ASCII; so they do for names of unknown code pages.
class TextCoding {
 public:
  TextCoding(DxfVersion version, std::wstring_view codePage);
  static TextCoding Utf8() { return TextCoding(DxfVersion::R2018, {}); }

  // Appends the text that the bytes stand for, or the bytes that stand for the text.
  void Decode(std::string_view bytes, std::wstring& text) const;
  void Encode(std::wstring_view text, std::string& bytes) const;

 private:
  size_t DecodeCharacter(std::string_view bytes, size_t at, std::wstring& text) const;
  size_t DecodeByte(std::string_view bytes, size_t at, std::wstring& text) const;
  size_t EncodeCharacter(std::wstring_view text, size_t at, std::string& bytes) const;
  void EncodeInPage(char32_t character, std::string& bytes) const;
  unsigned char ByteInPage(char32_t character) const;

  enum class Form { Utf8, SingleByte, DoubleByte };
  Form m_form;
  std::u16string_view m_page;  // for SingleByte
};

}  // namespace lomlisp::embedded
