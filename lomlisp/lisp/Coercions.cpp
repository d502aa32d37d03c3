// MakeBool, MakeInt, MakeFloat, MakeString, MakeMaximum, MakeMinimum: from one atom type to another.

#include <lomlisp/lisp/CLOMAdsLispVar.h>
#include <lomlisp/lisp/Node.h>
#include <lomlisp/resbuf/Integer.h>
#include <lomlisp/resbuf/NumberText.h>
#include <lomlisp/resbuf/Text.h>

#include <cwchar>
#include <functional>
#include <string>

using namespace lomlisp;

namespace {

CString PointText(const CLOMLispElement& point) {
  double coordinates[3];
  node::GetPoint(point, coordinates);
  std::wstring text = L"(";
  for (const double coordinate : coordinates) {
    if (text.size() > 1) text += L' ';
    AppendReal(text, coordinate, std::chars_format::fixed, 6);
  }
  return (text + L')').c_str();
}

int32_t Integer(const CLOMAdsLispVar& value) { return static_cast<int>(value.MakeInt().GetAtom()); }
double Real(const CLOMAdsLispVar& value) { return static_cast<double>(value.MakeFloat().GetAtom()); }
size_t LengthOf(const CLOMAdsLispVar& text) { return TextLength(text.GetAtom()); }

// The one of two values, in their common type, that is better. When neither is, it is `b` of two
// numbers, which does not show unless one is NaN, and `a` of two texts.
template <class Better>
CLOMAdsLispVar Choose(const CLOMAdsLispVar& a, const CLOMAdsLispVar& b, Better better) {
  if (a.RealP() || b.RealP()) return better(Real(a), Real(b)) ? Real(a) : Real(b);
  if (a.IntP() || b.IntP()) return better(Integer(a), Integer(b)) ? Integer(a) : Integer(b);
  if (!a.StringP() && !b.StringP()) return a;
  const CLOMAdsLispVar textOfA = a.MakeString();
  const CLOMAdsLispVar textOfB = b.MakeString();
  return better(LengthOf(textOfB), LengthOf(textOfA)) ? textOfB : textOfA;
}

}  // namespace

CLOMAdsLispVar CLOMAdsLispVar::MakeBool() const {
  bool isTrue = false;
  if (StringP()) {
    const wchar_t first = *TextOrEmpty(m_element->atom);
    isTrue = first != 0 && std::wcschr(L"yYtTxXjJ1", first) != nullptr;
  } else if (IntP()) {
    isTrue = static_cast<__int64>(m_element->atom) != 0;
  } else if (NumberP()) {
    isTrue = static_cast<double>(m_element->atom) != 0.0;
  }
  return isTrue ? 1 : 0;
}

CLOMAdsLispVar CLOMAdsLispVar::MakeInt() const {
  if (StringP()) {
    const wchar_t* const text = TextOrEmpty(m_element->atom);
    const bool isReal = std::wcspbrk(text, L".,") != nullptr;
    return isReal ? Truncate<int32_t>(ScanReal(text)) : ScanInteger(text);
  }
  if (IntP()) return *this;
  if (NumberP()) return Truncate<int32_t>(static_cast<double>(m_element->atom));
  return 0;
}

CLOMAdsLispVar CLOMAdsLispVar::MakeFloat() const {
  if (StringP()) return ScanReal(m_element->atom);
  if (RealP()) return *this;
  if (NumberP()) return static_cast<double>(m_element->atom);
  return 0.0;
}

CLOMAdsLispVar CLOMAdsLispVar::MakeString() const {
  if (StringP()) return *this;
  if (IntP()) return std::to_wstring(static_cast<int>(m_element->atom));
  if (NumberP()) return lom_string_utils::FormatShortestDouble(static_cast<double>(m_element->atom));
  if (PointP()) return PointText(*m_element);
  // Only a number could be zero, and those are gone by here.
  return L"";
}

CLOMAdsLispVar CLOMAdsLispVar::MakeMaximum(const CLOMAdsLispVar& other) const {
  return Choose(*this, other, std::greater());
}

CLOMAdsLispVar CLOMAdsLispVar::MakeMinimum(const CLOMAdsLispVar& other) const {
  return Choose(*this, other, std::less());
}
