// Format: text with values in the place of directives.

#include <lomlisp/lisp/CLOMAdsLispVar.h>
#include <lomlisp/resbuf/Characters.h>
#include <lomlisp/resbuf/NumberText.h>
#include <lomlisp/resbuf/Text.h>

#include <algorithm>
#include <cmath>
#include <cwchar>
#include <string>

using namespace lomlisp;

namespace {

// What stands between the percent sign and the letter.
struct Directive {
  bool left = false;
  bool plus = false;
  bool blank = false;
  bool zero = false;
  bool dot = false;
  int32_t width = -1;      // -1: none
  int32_t precision = -1;  // -1: none
};

// A longer piece is cut.
constexpr size_t kLongestPiece = 2047;

// --- Numbers, as the C standard prints them ---

// A number's sign and digits.
struct Number {
  std::wstring prefix;
  std::wstring digits;
  size_t digitsLeftOut = 0;  // behind those, beyond the longest piece
  bool takesZeros = true;    // in the place of blanks in front
};

std::wstring Piece(const Number& number, const Directive& directive) {
  const size_t length = number.prefix.size() + number.digits.size() + number.digitsLeftOut;
  const size_t width = directive.width > 0 ? static_cast<size_t>(directive.width) : 0;
  const size_t missing = (std::min)(width - (std::min)(width, length), kLongestPiece);
  std::wstring piece;
  if (directive.left)
    piece = number.prefix + number.digits + std::wstring(missing, L' ');
  else if (directive.zero && number.takesZeros)
    piece = number.prefix + std::wstring(missing, L'0') + number.digits;
  else
    piece = std::wstring(missing, L' ') + number.prefix + number.digits;
  return piece.substr(0, kLongestPiece);
}

const wchar_t* SignOf(bool negative, const Directive& directive) {
  if (negative) return L"-";
  if (directive.plus) return L"+";
  return directive.blank ? L" " : L"";
}

std::wstring IntegerPiece(int32_t value, wchar_t letter, const Directive& directive) {
  const bool isSigned = letter == L'd' || letter == L'i';
  const bool negative = isSigned && value < 0;
  const auto bits = static_cast<uint32_t>(value);
  const int base = letter == L'x' ? 16 : letter == L'o' ? 8 : 10;
  char digits[32];
  char* const end = std::to_chars(digits, std::end(digits), negative ? 0 - bits : bits, base).ptr;
  const Number number{isSigned ? SignOf(negative, directive) : L"", std::wstring(digits, end)};
  return Piece(number, directive);
}

std::wstring RealPiece(double value, wchar_t letter, const Directive& directive) {
  constexpr int32_t kStandardPrecision = 6;
  const int32_t precision = directive.precision < 0 ? kStandardPrecision : directive.precision;
  const int32_t written = (std::min)(precision, static_cast<int32_t>(kLongestPiece));
  Number number{SignOf(std::signbit(value), directive), L""};
  number.takesZeros = std::isfinite(value);
  if (number.takesZeros) number.digitsLeftOut = static_cast<size_t>(precision - written);
  const auto format = letter == L'e' ? std::chars_format::scientific : std::chars_format::fixed;
  AppendReal(number.digits, std::fabs(value), format, written);
  return Piece(number, directive);
}

// --- Directives ---

std::wstring FirstCharacter(const wchar_t* text) {
  const wchar_t first = *TextOrEmpty(text);
  return std::wstring(first != 0 ? 1 : 0, first);
}

// What a directive makes of a value.
std::wstring FormatValue(const CLOMAdsLispVar& value, wchar_t letter, const Directive& directive) {
  switch (letter) {
    case L'c':
      return FirstCharacter(value.MakeString().GetAtom());
    case L's':
      return directive.width < 0 ? TextOrEmpty(value.MakeString().GetAtom()) : L"";
    case L'e':
    case L'f':
      return RealPiece(static_cast<double>(value.MakeFloat().GetAtom()), letter, directive);
    default:
      return IntegerPiece(static_cast<int>(value.MakeInt().GetAtom()), letter, directive);
  }
}

// The letter that ends a directive, in lower case; 0 for any other character, which is not 0 itself.
wchar_t ConversionLetter(wchar_t c) {
  const wchar_t lower = c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
  return std::wcschr(L"cdiouxefs", lower) != nullptr ? lower : wchar_t{0};
}

void ReadNumber(const wchar_t*& cursor, Directive& directive) {
  int32_t& number = directive.dot ? directive.precision : directive.width;
  if (number < 0) number = ScanInteger(cursor);
  cursor = SkipDigits(cursor);
}

// Reads a directive behind its percent sign and moves behind it. Gives its letter, or 0 when the
// format ends first. Characters that mean nothing are skipped.
wchar_t ReadDirective(const wchar_t*& cursor, Directive& directive) {
  while (*cursor != 0) {
    if (*cursor >= L'1' && *cursor <= L'9') {
      ReadNumber(cursor, directive);
      continue;
    }
    const wchar_t c = *cursor++;
    if (const wchar_t letter = ConversionLetter(c)) return letter;
    if (c == L' ') directive.blank = true;
    if (c == L'+') directive.plus = true;
    if (c == L'-') directive.left = true;
    if (c == L'0') directive.zero = true;
    if (c == L'.') directive.dot = true;
  }
  return 0;
}

}  // namespace

int CLOMAdsLispVar::Format(CLOMAdsLispVar& result, const wchar_t* format,
                           const CArray<CLOMAdsLispVar, CLOMAdsLispVar>& args) {
  if (format == nullptr || *format == 0) {
    if (args.GetSize() == 0) return 0;
    // A copy, because `result` may be that very value.
    result.SetQ(CLOMAdsLispVar(args[0]));
    return 1;
  }
  std::wstring text;
  int count = 0;
  const wchar_t* cursor = format;
  while (*cursor != 0) {
    const wchar_t c = *cursor++;
    if (c != L'%') {
      text += c;
    } else if (*cursor == L'%') {
      text += *cursor++;
    } else {
      Directive directive;
      const wchar_t letter = ReadDirective(cursor, directive);
      if (letter == 0) break;
      if (count < args.GetSize()) text += FormatValue(args[count], letter, directive);
      ++count;
    }
  }
  result.SetQ(CLOMAdsLispVar(text));
  return count;
}
