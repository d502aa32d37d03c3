#include <lomlisp/platform/suite.h>

#include <embedded/Chain.h>
#include <embedded/Nesting.h>
#include <embedded/Reader.h>
#include <embedded/Text.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <utility>

namespace lomlisp::embedded {

namespace {

constexpr std::wstring_view kEntityName = L"<Entity name: ";
constexpr std::wstring_view kSelectionSet = L"<Selection set: ";

constexpr bool IsDigit(wchar_t character) { return character >= L'0' && character <= L'9'; }
constexpr bool IsOctal(wchar_t character) { return character >= L'0' && character <= L'7'; }
constexpr bool IsBlank(wchar_t character) { return character <= L' '; }
constexpr bool EndsWord(wchar_t character) {
  return IsBlank(character) || character == L'(' || character == L')' || character == L'"' ||
         character == L'\'' || character == L';';
}

// --- Text from records ---

template <typename Number>
void AppendInteger(std::wstring& out, Number number, int base = 10) {
  char buffer[24];
  const char* end = std::to_chars(buffer, std::end(buffer), number, base).ptr;
  out.append(std::cbegin(buffer), end);
}

// The shortest text that reads back as the same real, always recognisable as a real.
void AppendReal(std::wstring& out, double number) {
  char buffer[32];
  const char* end = std::to_chars(buffer, std::end(buffer), number).ptr;
  const std::wstring digits(std::cbegin(buffer), end);
  out += digits;
  if (digits.find_first_of(L".en") == std::wstring::npos) out += L".0";
}

void AppendPoint(std::wstring& out, const double* point, size_t coordinates) {
  for (size_t axis = 0; axis < coordinates; ++axis) {
    if (axis > 0) out += L' ';
    AppendReal(out, point[axis]);
  }
}

void AppendEscaped(std::wstring& out, wchar_t character) {
  static constexpr std::wstring_view kPlain = L"\"\\\n\t\r\x1B";
  static constexpr std::wstring_view kLetters = L"\"\\ntre";
  if (const size_t index = kPlain.find(character); index != std::wstring_view::npos) {
    out += L'\\';
    out += kLetters[index];
  } else if (static_cast<char32_t>(character) < U' ') {
    out += L"\\0";
    out += static_cast<wchar_t>(L'0' + character / 8);
    out += static_cast<wchar_t>(L'0' + character % 8);
  } else {
    out += character;
  }
}

void AppendQuoted(std::wstring& out, const Record& record) {
  out += L'"';
  for (const wchar_t character : record.text) AppendEscaped(out, character);
  out += L'"';
}

void AppendName(std::wstring& out, std::wstring_view kind, const Record& record) {
  out += kind;
  AppendInteger(out, static_cast<uint64_t>(record.value.rlname[0]), 16);
  out += L'>';
}

void AppendValue(std::wstring& out, const Record& record, short type) {
  switch (type) {
    case RTREAL:
    case RTANG:
    case RTORINT:
      return AppendReal(out, record.value.rreal);
    case RTPOINT:
      return AppendPoint(out, record.value.rpoint, 2);
    case RT3DPOINT:
      return AppendPoint(out, record.value.rpoint, 3);
    case RTSHORT:
      return AppendInteger(out, record.value.rint);
    case RTLONG:
      return AppendInteger(out, record.value.rlong);
    case RTINT64:
      return AppendInteger(out, record.value.mnInt64);
    case RTSTR:
    case RTDXF0:
      return AppendQuoted(out, record);
    case RTENAME:
      return AppendName(out, kEntityName, record);
    case RTPICKS:
      return AppendName(out, kSelectionSet, record);
    case RTNONE:
    case RTVOID:
    case RTNIL:
      out += L"nil";
      return;
    case RTT:
      out += L'T';
      return;
    case RTLB:
      out += L'(';
      return;
    case RTLE:
      out += L')';
      return;
    case RTDOTE:
      out += L'.';
      return;
    default:
      out += L"<type ";
      AppendInteger(out, type);
      out += L'>';
  }
}

void AppendRecord(std::wstring& out, const Record& record) {
  const short type = DxfType(record.type);
  const bool isPoint = type == RTPOINT || type == RT3DPOINT;
  const bool isGroup = type != record.type;
  if (isPoint || isGroup) out += L'(';
  if (isGroup) {
    AppendInteger(out, record.type);
    out += isPoint ? L" " : L" . ";
  }
  AppendValue(out, record, type);
  if (isPoint || isGroup) out += L')';
}

// --- Records from text ---

Record IntegerRecord(int64_t number) {
  Record record = Mark(RTLONG);
  if (std::in_range<short>(number)) {
    record.type = RTSHORT;
    record.value.rint = static_cast<short>(number);
  } else {
    record.value.rlong = static_cast<int32_t>(number);
  }
  return record;
}

// Digits with an optional sign, point and exponent; at least one digit before the exponent.
bool LooksLikeNumber(std::wstring_view text, bool& isInteger) {
  size_t position = 0;
  const auto digits = [&] {
    const size_t begin = position;
    while (position < text.size() && IsDigit(text[position])) ++position;
    return position - begin;
  };
  const auto sign = [&] {
    if (position < text.size() && (text[position] == L'+' || text[position] == L'-')) ++position;
  };
  sign();
  size_t count = digits();
  isInteger = position == text.size();
  if (position < text.size() && text[position] == L'.') {
    ++position;
    count += digits();
  }
  if (count == 0) return false;
  if (position < text.size() && (text[position] == L'e' || text[position] == L'E')) {
    ++position;
    sign();
    if (digits() == 0) return false;
  }
  return position == text.size();
}

std::optional<uint64_t> ReadHexadecimal(std::wstring_view digits) {
  const std::string narrow = Utf8(digits);
  uint64_t number = 0;
  const auto [end, error] = std::from_chars(narrow.data(), narrow.data() + narrow.size(), number, 16);
  const bool isWhole = error == std::errc() && end == narrow.data() + narrow.size();
  return isWhole ? std::optional(number) : std::nullopt;
}

}  // namespace

std::wstring ToText(const Chain& chain) {
  std::wstring text;
  short previous = RTLB;
  for (const Record& record : WithDotsBeforeLast(chain)) {
    if (previous != RTLB && record.type != RTLE) text += L' ';
    AppendRecord(text, record);
    previous = record.type;
  }
  return text;
}

std::optional<Chain> FromText(std::wstring_view text, std::string& error) {
  Reader reader(text);
  Chain chain;
  for (;;) {
    const Reader::Token token = reader.Next();
    if (token == Reader::Token::End) return chain;
    if (reader.ReadItem(token, chain)) continue;
    error = reader.Error();
    return std::nullopt;
  }
}

std::optional<Record> ReadNumber(std::wstring_view text) {
  bool isInteger = false;
  if (!LooksLikeNumber(text, isInteger)) return std::nullopt;
  std::string narrow = Utf8(text);
  if (narrow.front() == '+') narrow.erase(0, 1);
  const char* end = narrow.data() + narrow.size();
  int64_t integer = 0;
  const bool fits = isInteger && std::from_chars(narrow.data(), end, integer).ec == std::errc();
  if (fits && std::in_range<int32_t>(integer)) return IntegerRecord(integer);
  Record record = Mark(RTREAL);
  const auto result = std::from_chars(narrow.data(), end, record.value.rreal);
  if (result.ec == std::errc::result_out_of_range)
    record.value.rreal = std::numeric_limits<double>::infinity();
  return record;
}

Reader::Token Reader::Next() {
  SkipBlanks();
  m_tokenBegin = m_position;
  if (m_position == m_text.size()) return Token::End;
  switch (m_text[m_position]) {
    case L'(':
      ++m_position;
      return Token::Open;
    case L')':
      ++m_position;
      return Token::Close;
    case L'\'':
      ++m_position;
      return Token::Quote;
    case L'"':
      ++m_position;
      return ReadString();
    case L'<':
      return ReadName();
    default:
      return ReadWord();
  }
}

Reader::Token Reader::Fail(std::string_view reason) {
  m_error = std::string(reason) + " (at character " + std::to_string(m_tokenBegin + 1) + ")";
  return Token::Error;
}

void Reader::SkipBlanks() {
  for (; m_position < m_text.size(); ++m_position) {
    if (m_text[m_position] == L';')
      m_position = std::min(m_text.find(L'\n', m_position), m_text.size() - 1);
    else if (!IsBlank(m_text[m_position]))
      return;
  }
}

bool Reader::Accept(std::wstring_view text) {
  if (!m_text.substr(m_position).starts_with(text)) return false;
  m_position += text.size();
  return true;
}

Reader::Token Reader::ReadString() {
  m_atom = Mark(RTSTR);
  m_atom.hasText = true;
  while (m_position < m_text.size()) {
    const wchar_t character = m_text[m_position++];
    if (character == L'"') return Token::Atom;
    if (character != L'\\')
      m_atom.text += character;
    else if (!ReadEscape(m_atom.text))
      return Fail("an unknown escape in a text");
  }
  return Fail("a text that does not end");
}

bool Reader::ReadEscape(std::wstring& text) {
  if (m_position < m_text.size() && IsOctal(m_text[m_position])) {
    int code = 0;
    for (int count = 0; count < 3 && m_position < m_text.size() && IsOctal(m_text[m_position]); ++count)
      code = code * 8 + static_cast<int>(m_text[m_position++] - L'0');
    // A zero would end the text on its way through a record.
    if (code == 0) return false;
    text += static_cast<wchar_t>(code);
    return true;
  }
  static constexpr std::wstring_view kLetters = L"\"\\ntre";
  static constexpr std::wstring_view kPlain = L"\"\\\n\t\r\x1B";
  const size_t index =
      m_position < m_text.size() ? kLetters.find(m_text[m_position]) : std::wstring_view::npos;
  if (index == std::wstring_view::npos) return false;
  ++m_position;
  text += kPlain[index];
  return true;
}

Reader::Token Reader::ReadName() {
  const bool isEntity = Accept(kEntityName);
  if (!isEntity && !Accept(kSelectionSet)) return ReadWord();
  const size_t end = std::min(m_text.find(L'>', m_position), m_text.size());
  const auto number = ReadHexadecimal(m_text.substr(m_position, end - m_position));
  if (!number || end == m_text.size()) return Fail("a name that is not written in full");
  m_position = end + 1;
  m_atom = Mark(isEntity ? RTENAME : RTPICKS);
  m_atom.value.rlname[0] = static_cast<long long>(*number);
  m_atom.value.rlname[1] = 0;
  return Token::Atom;
}

Reader::Token Reader::ReadWord() {
  while (m_position < m_text.size() && !EndsWord(m_text[m_position])) ++m_position;
  const std::wstring_view word = m_text.substr(m_tokenBegin, m_position - m_tokenBegin);
  if (word == L".") return Token::Dot;
  if (const auto number = ReadNumber(word)) {
    if (number->type == RTREAL && !std::isfinite(number->value.rreal)) return Fail("a number out of range");
    m_atom = *number;
    return Token::Atom;
  }
  m_symbol = Folded(word);
  if (m_symbol != L"T" && m_symbol != L"NIL") return Token::Symbol;
  m_atom = Mark(m_symbol == L"T" ? RTT : RTNIL);
  return Token::Atom;
}

bool Reader::ReadItem(Token token, Chain& chain) {
  const size_t begin = chain.size();
  Nesting nesting(Place::Items, false);
  bool isQuoted = false;
  const auto append = [&](const Record& record) {
    const bool isItem = record.type != RTLE && record.type != RTDOTE;
    if (isItem && nesting.HasItemBehindDot()) {
      Fail("a second item behind a dot");
      return false;
    }
    const bool isMisplaced = nesting.Take(record.type, chain.size() - begin) == Nesting::Role::Misplaced;
    if (isMisplaced) Fail(nesting.Objection());
    chain.push_back(record);
    return !isMisplaced;
  };
  for (;; token = Next()) {
    bool isGood = true;
    switch (token) {
      case Token::End:
        Fail(isQuoted ? "a quote with nothing behind it" : "a list that does not end");
        return false;
      case Token::Error:
        return false;
      case Token::Symbol:
        Fail("the symbol " + Utf8(m_symbol) + " is no value");
        return false;
      case Token::Quote:
        isQuoted = true;
        continue;
      case Token::Atom:
        isGood = append(m_atom);
        break;
      case Token::Open:
        isGood = append(Mark(RTLB));
        break;
      case Token::Close:
      case Token::Dot:
        if (isQuoted) {
          Fail("a quote with nothing behind it");
          return false;
        }
        isGood = append(Mark(token == Token::Close ? RTLE : RTDOTE));
        break;
    }
    isQuoted = false;
    if (!isGood) return false;
    if (nesting.IsOutside()) return true;
  }
}

}  // namespace lomlisp::embedded
