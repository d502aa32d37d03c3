#include <embedded/Format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <string_view>
#include <type_traits>
#include <utility>

namespace lomlisp::embedded {

namespace {

// As many digits as a text of a double can have before its decimal point, with room for the rest.
constexpr size_t kMostIntegerDigits = 350;
constexpr int kDefaultPrecision = 6;
// Keeps a width or precision that was written by mistake from taking all memory.
constexpr int kGreatestNumber = 100'000'000;

enum class Size { Default, Char, Short, Long, LongLong, Pointer };

struct Directive {
  bool left = false;
  bool plus = false;
  bool blank = false;
  bool alternate = false;
  bool zero = false;
  int width = 0;
  int precision = -1;  // negative: none
  Size size = Size::Default;
  wchar_t conversion = 0;
};

// A va_list may be an array type, which a function cannot take by reference.
struct Arguments {
  std::va_list list;
};

class Formatter {
 public:
  Formatter(std::wstring& out, Arguments& arguments) : m_out(out), m_arguments(arguments) {}

  void Run(std::wstring_view format) {
    size_t position = 0;
    while (position < format.size()) {
      const size_t percent = std::min(format.find(L'%', position), format.size());
      m_out.append(format, position, percent - position);
      if (percent == format.size()) return;
      m_rest = format.substr(percent + 1);
      const Directive directive = Parse();
      position = format.size() - m_rest.size();
      if (!Print(directive)) m_out.append(format, percent, position - percent);
    }
  }

 private:
  bool Accept(std::wstring_view prefix) {
    if (!m_rest.starts_with(prefix)) return false;
    m_rest.remove_prefix(prefix.size());
    return true;
  }

  Directive Parse() {
    Directive directive;
    ParseFlags(directive);
    directive.width = ParseNumber();
    if (directive.width < 0) {
      directive.left = true;
      directive.width = -directive.width;
    }
    if (Accept(L".")) directive.precision = ParseNumber();
    directive.size = ParseSize();
    if (!m_rest.empty()) {
      directive.conversion = m_rest.front();
      m_rest.remove_prefix(1);
    }
    return directive;
  }

  void ParseFlags(Directive& directive) {
    for (;;) {
      if (Accept(L"-"))
        directive.left = true;
      else if (Accept(L"+"))
        directive.plus = true;
      else if (Accept(L" "))
        directive.blank = true;
      else if (Accept(L"#"))
        directive.alternate = true;
      else if (Accept(L"0"))
        directive.zero = true;
      else
        return;
    }
  }

  int ParseNumber() {
    if (Accept(L"*")) return std::clamp(va_arg(m_arguments.list, int), -kGreatestNumber, kGreatestNumber);
    int number = 0;
    while (!m_rest.empty() && m_rest.front() >= L'0' && m_rest.front() <= L'9') {
      number = std::min(number * 10 + static_cast<int>(m_rest.front() - L'0'), kGreatestNumber);
      m_rest.remove_prefix(1);
    }
    return number;
  }

  Size ParseSize() {
    if (Accept(L"I64") || Accept(L"ll") || Accept(L"j")) return Size::LongLong;
    if (Accept(L"I32")) return Size::Default;
    if (Accept(L"hh")) return Size::Char;
    if (Accept(L"h")) return Size::Short;
    if (Accept(L"l")) return Size::Long;
    if (Accept(L"I") || Accept(L"z") || Accept(L"t")) return Size::Pointer;
    return Size::Default;
  }

  // False when the directive is unknown.
  bool Print(const Directive& directive) {
    switch (directive.conversion) {
      case L'%':
        m_out += L'%';
        return true;
      case L'c':
        Pad(directive, std::wstring(1, static_cast<wchar_t>(va_arg(m_arguments.list, int))));
        return true;
      case L's':
        if (directive.size == Size::Short)
          PrintText(directive, va_arg(m_arguments.list, const char*));
        else
          PrintText(directive, va_arg(m_arguments.list, const wchar_t*));
        return true;
      case L'S':
        PrintText(directive, va_arg(m_arguments.list, const char*));
        return true;
      case L'd':
      case L'i':
        PrintSigned(directive);
        return true;
      case L'u':
      case L'x':
      case L'X':
      case L'o':
        PrintUnsigned(directive);
        return true;
      case L'f':
      case L'F':
      case L'e':
      case L'E':
      case L'g':
      case L'G':
        PrintReal(directive, va_arg(m_arguments.list, double));
        return true;
      case L'p':
        PrintPointer(directive, va_arg(m_arguments.list, const void*));
        return true;
      default:
        return false;
    }
  }

  void Pad(const Directive& directive, std::wstring_view text) { PadNumber(directive, L"", text, false); }

  // The sign or the base in front, and zeroes, where they are wanted, behind it.
  void PadNumber(const Directive& directive, std::wstring_view prefix, std::wstring_view digits,
                 bool zeroes) {
    const size_t length = prefix.size() + digits.size();
    const auto width = static_cast<size_t>(directive.width);
    const size_t missing = width > length ? width - length : 0;
    if (!directive.left && !zeroes) m_out.append(missing, L' ');
    m_out += prefix;
    if (!directive.left && zeroes) m_out.append(missing, L'0');
    m_out += digits;
    if (directive.left) m_out.append(missing, L' ');
  }

  // A text with a precision need not be terminated.
  template <typename Character>
  void PrintText(const Directive& directive, const Character* text) {
    static constexpr Character kNull[] = {'(', 'n', 'u', 'l', 'l', ')', 0};
    if (text == nullptr) text = kNull;
    const size_t most = directive.precision < 0 ? std::numeric_limits<size_t>::max()
                                                : static_cast<size_t>(directive.precision);
    std::wstring copy;
    if constexpr (std::is_same_v<Character, wchar_t>) {
      size_t length = 0;
      while (length < most && text[length] != 0) ++length;
      return Pad(directive, std::wstring_view(text, length));
    } else {
      for (size_t index = 0; index < most && text[index] != 0; ++index)
        copy += static_cast<wchar_t>(static_cast<unsigned char>(text[index]));
      Pad(directive, copy);
    }
  }

  int64_t TakeSigned(Size size) {
    switch (size) {
      case Size::Char:
        return static_cast<signed char>(va_arg(m_arguments.list, int));
      case Size::Short:
        return static_cast<short>(va_arg(m_arguments.list, int));
      case Size::Long:  // 32 bits also where `long` has 64
        return static_cast<int32_t>(va_arg(m_arguments.list, long));
      case Size::LongLong:
        return va_arg(m_arguments.list, long long);
      case Size::Pointer:
        return va_arg(m_arguments.list, std::ptrdiff_t);
      case Size::Default:
        break;
    }
    return va_arg(m_arguments.list, int);
  }

  uint64_t TakeUnsigned(Size size) {
    const auto bits = static_cast<uint64_t>(TakeSigned(size));
    switch (size) {
      case Size::Char:
        return static_cast<unsigned char>(bits);
      case Size::Short:
        return static_cast<unsigned short>(bits);
      case Size::LongLong:
        return bits;
      case Size::Pointer:
        return static_cast<size_t>(bits);
      default:
        return static_cast<uint32_t>(bits);
    }
  }

  static std::wstring_view Sign(const Directive& directive, bool negative) {
    if (negative) return L"-";
    if (directive.plus) return L"+";
    return directive.blank ? L" " : L"";
  }

  // At least as many digits as the precision says; none for a zero with precision 0.
  static std::wstring Digits(uint64_t number, int base, const Directive& directive) {
    char buffer[64];
    const char* end = std::to_chars(buffer, std::end(buffer), number, base).ptr;
    std::wstring digits(std::cbegin(buffer), end);
    if (number == 0 && directive.precision == 0) digits.clear();
    const auto least = static_cast<size_t>(std::max(directive.precision, 0));
    if (digits.size() < least) digits.insert(0, least - digits.size(), L'0');
    return digits;
  }

  void PrintSigned(const Directive& directive) {
    const int64_t number = TakeSigned(directive.size);
    const auto bits = static_cast<uint64_t>(number);
    const std::wstring digits = Digits(number < 0 ? 0 - bits : bits, 10, directive);
    PadNumber(directive, Sign(directive, number < 0), digits, directive.zero && directive.precision < 0);
  }

  void PrintUnsigned(const Directive& directive) {
    const uint64_t number = TakeUnsigned(directive.size);
    const wchar_t conversion = directive.conversion;
    std::wstring digits = Digits(number, conversion == L'u' ? 10 : conversion == L'o' ? 8 : 16, directive);
    std::wstring_view prefix;
    if (directive.alternate && conversion == L'o' && !digits.starts_with(L'0')) digits.insert(0, 1, L'0');
    if (directive.alternate && number != 0 && conversion == L'x') prefix = L"0x";
    if (directive.alternate && number != 0 && conversion == L'X') prefix = L"0X";
    if (conversion == L'X') ToUpper(digits);
    PadNumber(directive, prefix, digits, directive.zero && directive.precision < 0);
  }

  void PrintPointer(Directive directive, const void* pointer) {
    directive.precision = 2 * static_cast<int>(sizeof pointer);
    std::wstring digits = Digits(reinterpret_cast<uintptr_t>(pointer), 16, directive);
    ToUpper(digits);
    Pad(directive, digits);
  }

  void PrintReal(const Directive& directive, double number) {
    const bool finite = std::isfinite(number);
    std::wstring digits = finite               ? RealDigits(directive, std::fabs(number))
                          : std::isnan(number) ? L"nan"
                                               : L"inf";
    if (directive.conversion < L'a') ToUpper(digits);
    PadNumber(directive, Sign(directive, std::signbit(number)), digits, directive.zero && finite);
  }

  static std::wstring RealDigits(const Directive& directive, double number) {
    const int precision = directive.precision < 0 ? kDefaultPrecision : directive.precision;
    switch (directive.conversion) {
      case L'f':
      case L'F':
        return Point(Convert(number, std::chars_format::fixed, precision), directive);
      case L'e':
      case L'E':
        return Point(Convert(number, std::chars_format::scientific, precision), directive);
      default:
        return directive.alternate ? General(number, std::max(precision, 1), directive)
                                   : Convert(number, std::chars_format::general, precision);
    }
  }

  static std::wstring Convert(double number, std::chars_format format, int precision) {
    std::string buffer(static_cast<size_t>(precision) + kMostIntegerDigits, '\0');
    const char* end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, format, precision).ptr;
    return std::wstring(std::as_const(buffer).data(), end);
  }

  // With '#' there is a point even when no digit follows.
  static std::wstring Point(std::wstring digits, const Directive& directive) {
    if (directive.alternate && digits.find(L'.') == std::wstring::npos)
      digits.insert(std::min(digits.find(L'e'), digits.size()), 1, L'.');
    return digits;
  }

  // %g that keeps its trailing zeroes, which to_chars has no form for.
  static std::wstring General(double number, int precision, const Directive& directive) {
    const std::wstring scientific = Convert(number, std::chars_format::scientific, precision - 1);
    const int exponent = std::stoi(scientific.substr(scientific.find(L'e') + 1));
    if (exponent < -4 || exponent >= precision) return Point(scientific, directive);
    return Point(Convert(number, std::chars_format::fixed, precision - 1 - exponent), directive);
  }

  static void ToUpper(std::wstring& text) {
    for (wchar_t& letter : text)
      if (letter >= L'a' && letter <= L'z') letter = static_cast<wchar_t>(letter - (L'a' - L'A'));
  }

  std::wstring& m_out;
  Arguments& m_arguments;
  std::wstring_view m_rest;
};

}  // namespace

void AppendFormatted(std::wstring& out, const wchar_t* format, std::va_list arguments) {
  if (format == nullptr) return;
  Arguments copy;
  va_copy(copy.list, arguments);
  Formatter(out, copy).Run(format);
  va_end(copy.list);
}

}  // namespace lomlisp::embedded
