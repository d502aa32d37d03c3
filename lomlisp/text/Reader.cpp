// LISP text to values:
//
//   item     : ( elements )                  a list
//            | integer | real | string | nil
//   elements : item* [. atom]                the dot makes the list a dotted one
//
// A dot in front of the first item is skipped, so that ( . ) is the empty list. There are no
// symbols, quotes, comments or escapes.

#include <lomlisp/lisp/CLOMAdsLispVar.h>
#include <lomlisp/lisp/NewNode.h>
#include <lomlisp/lisp/TreeWalk.h>
#include <lomlisp/resbuf/Characters.h>
#include <lomlisp/resbuf/NumberText.h>
#include <lomlisp/resbuf/Text.h>
#include <lomlisp/text/messages.h>

#include <algorithm>
#include <cstddef>
#include <cwchar>
#include <type_traits>

using namespace lomlisp;

namespace {

using Element = CLOMAdsLispVar::Element;
using Token = CLOMAdsLispVar::Token;

constexpr std::ptrdiff_t kTooLong = std::extent_v<decltype(Token::text)>;

bool IsAlphanumeric(wchar_t c) { return IsDigit(c) || IsLetter(c); }

bool BeginsNumber(const wchar_t* text) {
  return IsDigit(text[0]) || ((text[0] == L'+' || text[0] == L'-') && IsDigit(text[1]));
}

bool BeginsNil(const wchar_t* text) {
  const auto is = [](wchar_t c, wchar_t lower, wchar_t upper) { return c == lower || c == upper; };
  return is(text[0], L'n', L'N') && is(text[1], L'i', L'I') && is(text[2], L'l', L'L');
}

// The functions below find out what token begins at `text` and give the position behind it.

const wchar_t* MeasureNumber(const wchar_t* text, Token::Kind& kind) {
  kind = Token::Integer;
  const wchar_t* end = SkipDigits(text + 1);
  if (*end == L'.') {
    kind = Token::Real;
    end = SkipDigits(end + 1);
  }
  if (!IsAlphanumeric(*end)) return end;
  kind = Token::Error;
  return text;
}

const wchar_t* MeasureString(const wchar_t* text, Token::Kind& kind) {
  const wchar_t* const quote = std::wcschr(text + 1, L'"');
  kind = quote != nullptr && !IsAlphanumeric(quote[1]) ? Token::String : Token::Error;
  return kind == Token::String ? quote + 1 : text;
}

const wchar_t* MeasureToken(const wchar_t* text, Token::Kind& kind) {
  if (BeginsNumber(text)) return MeasureNumber(text, kind);
  switch (*text) {
    case L'"':
      return MeasureString(text, kind);
    case L'(':
      kind = Token::Open;
      return text + 1;
    case L')':
      kind = Token::Close;
      return text + 1;
    case L'.':
      kind = Token::Dot;
      return text + 1;
    case 0:
      kind = Token::End;
      return text;
    default:
      kind = BeginsNil(text) ? Token::Nil : Token::Error;
      return kind == Token::Nil ? text + 3 : text;
  }
}

void SetTokenValue(Token& token, const wchar_t* begin, const wchar_t* end) {
  switch (token.kind) {
    case Token::Integer:
      token.integer = ScanInteger(begin);
      break;
    case Token::Real:
      token.real = ScanReal(begin);
      break;
    case Token::String:
      *std::copy(begin + 1, end - 1, token.text) = 0;
      break;
    default:
      break;
  }
}

// Reads the elements of a list and of all lists within it, with the lists that are open on a stack
// of its own.
class ElementReader {
 public:
  explicit ElementReader(Token& token) : m_token(token) {}

  // Into the outermost list. Its closing bracket, or what stands in its place, is left to the
  // caller.
  bool Read(CLOMLispElement& list) {
    m_open.push(&list);
    for (;;) {
      const bool atDot = m_token.kind == Token::Dot;
      if (atDot && !ReadDot(*m_open.top())) return false;
      if (atDot || m_token.kind == Token::Close || m_token.kind == Token::End) {
        if (m_open.size() == 1) return true;
        if (!CloseList()) return false;
      } else if (!ReadMember(*m_open.top())) {
        return false;
      }
    }
  }

 private:
  bool ReadMember(CLOMLispElement& list) {
    Element& member = AppendNode(list);
    if (m_token.kind != Token::Open) return CLOMAdsLispVar::String_Atom(m_token, member);
    m_open.push(member.get());
    CLOMAdsLispVar::getToken(m_token);
    return true;
  }

  // What follows can only be the closing bracket.
  bool ReadDot(CLOMLispElement& list) {
    CLOMAdsLispVar::getToken(m_token);
    if (list.children.empty()) return true;
    list.dotted = 1;
    return CLOMAdsLispVar::String_Atom(m_token, AppendNode(list));
  }

  bool CloseList() {
    if (m_token.kind != Token::Close) return false;
    m_open.pop();
    CLOMAdsLispVar::getToken(m_token);
    return true;
  }

  Token& m_token;
  WalkStack<CLOMLispElement*> m_open;
};

}  // namespace

constinit const wchar_t* CLOMAdsLispVar::s_pszNextChar = L"";

void CLOMAdsLispVar::getToken(Token& token) {
  while (IsBlank(*s_pszNextChar)) ++s_pszNextChar;
  const wchar_t* const begin = s_pszNextChar;
  s_pszNextChar = MeasureToken(begin, token.kind);
  if (s_pszNextChar - begin < kTooLong) {
    SetTokenValue(token, begin, s_pszNextChar);
  } else {
    acutPrintf(messages::TokenTooLong);
    token.kind = Token::Error;
  }
}

bool CLOMAdsLispVar::String_Liste(Token& token, Element& node) {
  if (token.kind == Token::End) return true;
  if (token.kind != Token::Open) return String_Atom(token, node);
  getToken(token);
  if (!String_ElementListe(token, node) || token.kind != Token::Close) return false;
  getToken(token);
  return true;
}

bool CLOMAdsLispVar::String_ElementListe(Token& token, Element& node) {
  return ElementReader(token).Read(*node);
}

bool CLOMAdsLispVar::String_Atom(Token& token, Element& node) {
  switch (token.kind) {
    case Token::End:
      return true;
    case Token::Integer:
      node->atom = static_cast<short>(token.integer);
      break;
    case Token::Real:
      node->atom = token.real;
      break;
    case Token::String:
      node->atom = static_cast<const wchar_t*>(token.text);
      break;
    case Token::Nil:
      break;
    default:
      return false;
  }
  getToken(token);
  return true;
}

bool CLOMAdsLispVar::Read(const wchar_t* text) {
  s_pszNextChar = TextOrEmpty(text);
  Element root = NewNode();
  Token token;
  getToken(token);
  const bool good = String_Liste(token, root) && token.kind == Token::End;
  if (!good) {
    // Tokens that are too long are reported also behind the fault.
    String_Liste(token, root);
    acutPrintf(messages::TextMalformed, TextOrEmpty(text));
  }
  // The text may be the value's own, so the old tree goes last.
  if (good) m_element.swap(root);
  return good;
}
