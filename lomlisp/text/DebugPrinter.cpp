// The debugging form of values. What each piece is counted as is the room for all, so that the text is cut
// where numbers have more digits than are counted.

#include <lomlisp/lisp/CLOMAdsLispVar.h>
#include <lomlisp/lisp/TreeWalk.h>
#include <lomlisp/resbuf/AtomText.h>
#include <lomlisp/text/DebugLayout.h>
#include <lomlisp/text/Separator.h>

#include <algorithm>
#include <cwchar>
#include <iterator>
#include <string>
#include <string_view>

using namespace lomlisp;
using namespace std::string_view_literals;

unsigned long lomlisp::debugIndentation = 0;
unsigned long lomlisp::debugNumbering = 0;

namespace {

constexpr size_t kIndexWidth = 14;

class DebugPrinter {
 public:
  // The text, cut to the count.
  CString Text() const {
    return CString(m_text.c_str(), static_cast<int>((std::min)(m_text.size(), m_count)));
  }

  void Leaf(node::Node node) {
    Indent();
    if (node::IsNull(node)) {
      Put(L"nil"sv);
    } else {
      const AtomText text(node->atom, NameForm::Short);
      m_count += text.Estimate();
      text.AppendTo(m_text);
    }
  }
  bool Enter(const CLOMLispElement&) {
    Put(L"("sv);
    ++m_depth;
    return true;
  }
  void BeforeChild(const CLOMLispElement&, size_t index) {
    BreakLine();
    PutIndex(index);
  }
  void AfterChild(const CLOMLispElement& list, size_t index) { Put(Separator(list, index)); }
  void Leave(const CLOMLispElement&) {
    Put(L")"sv);
    BreakLine();
    --m_depth;
  }

 private:
  void Put(std::wstring_view piece) {
    m_count += piece.size();
    if (piece.size() == 1)  // brackets and blanks, half of all pieces
      m_text += piece.front();
    else
      m_text += piece;
  }

  void Indent() {
    for (unsigned long blanks = m_depth * debugIndentation; blanks > 0; --blanks) Put(L" "sv);
  }

  void BreakLine() {
    if (debugIndentation > 0) Put(L"\r\n"sv);
  }

  // The count reserves the greatest width; less may be written.
  void PutIndex(size_t index) {
    if (debugIndentation == 0 || debugNumbering == 0) return;
    m_count += kIndexWidth;
    wchar_t text[kIndexWidth + 10];
    static_cast<void>(std::swprintf(text, std::size(text), L"%lu: ", static_cast<unsigned long>(index)));
    m_text += std::wstring_view(text).substr(0, kIndexWidth);
  }

  std::wstring m_text;
  size_t m_count = 0;
  unsigned long m_depth = 0;
};

}  // namespace

CString CLOMAdsLispVar::GetAsDebugString() const {
  DebugPrinter printer;
  WalkTree(m_element.get(), printer);
  return printer.Text();
}
