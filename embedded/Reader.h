// Reads LISP text into records.
#pragma once

#include <embedded/Chain.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace lomlisp::embedded {

// The number that the whole of the text is, if it is one.
std::optional<Record> ReadNumber(std::wstring_view text);

class Reader {
 public:
  enum class Token { End, Open, Close, Dot, Quote, Atom, Symbol, Error };

  explicit Reader(std::wstring_view text) : m_text(text) {}

  // Reads the next token; the ones below are about it.
  Token Next();
  const Record& Atom() const { return m_atom; }
  const std::wstring& Symbol() const { return m_symbol; }
  // Where it is at fault and why, after Error.
  const std::string& Error() const { return m_error; }
  // Gives Error, for a reason of the caller's.
  Token Fail(std::string_view reason);

  // Appends one item that begins with the token last read. No symbols but T and nil. False after
  // an error.
  bool ReadItem(Token token, Chain& chain);

 private:
  void SkipBlanks();
  Token ReadString();
  Token ReadName();
  Token ReadWord();
  bool ReadEscape(std::wstring& text);
  bool Accept(std::wstring_view text);

  std::wstring_view m_text;
  size_t m_position = 0;
  size_t m_tokenBegin = 0;
  Record m_atom;
  std::wstring m_symbol;
  std::string m_error;
};

}  // namespace lomlisp::embedded
