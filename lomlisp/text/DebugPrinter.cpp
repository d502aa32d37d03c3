// The debugging form of values: counted first, then written into a buffer of just that size.

#include <lomlisp/lisp/CLOMAdsLispVar.h>
#include <lomlisp/lisp/TreeWalk.h>
#include <lomlisp/text/DebugLayout.h>
#include <lomlisp/text/Separator.h>

#include <algorithm>
#include <cwchar>
#include <memory>
#include <string_view>

using namespace lomlisp;

unsigned long lomlisp::debugIndentation = 0;
unsigned long lomlisp::debugNumbering = 0;

namespace {

constexpr size_t kIndexWidth = 14;

class DebugPrinter {
 public:
  // Counts only.
  DebugPrinter() = default;
  DebugPrinter(wchar_t* buffer, unsigned long room) : m_cursor(buffer), m_room(room) {}

  unsigned long Count() const { return m_count; }
  wchar_t* End() const { return m_cursor; }

  void Leaf(node::Node node) {
    Indent();
    if (node::IsNull(node))
      Put(L"nil");
    else
      m_count += node->atom.DebugPrint(Counting(), m_cursor, m_room);
  }
  bool Enter(const CLOMLispElement&) {
    Put(L"(");
    ++m_depth;
    return true;
  }
  void BeforeChild(const CLOMLispElement&, size_t index) {
    BreakLine();
    PutIndex(index);
  }
  void AfterChild(const CLOMLispElement& list, size_t index) { Put(Separator(list, index)); }
  void Leave(const CLOMLispElement&) {
    Put(L")");
    BreakLine();
    --m_depth;
  }

 private:
  int Counting() const { return m_cursor == nullptr; }

  void Put(std::wstring_view piece) {
    m_count += static_cast<unsigned long>(piece.size());
    Write(piece);
  }

  void Write(std::wstring_view piece) {
    if (m_cursor == nullptr) return;
    const size_t written = piece.copy(m_cursor, m_room);
    m_cursor += written;
    m_room -= static_cast<unsigned long>(written);
  }

  void Indent() {
    for (unsigned long blanks = m_depth * debugIndentation; blanks > 0; --blanks) Put(L" ");
  }

  void BreakLine() {
    if (debugIndentation > 0) Put(L"\r\n");
  }

  // The count reserves the greatest width; less may be written.
  void PutIndex(size_t index) {
    if (debugIndentation == 0 || debugNumbering == 0) return;
    m_count += kIndexWidth;
    wchar_t text[kIndexWidth + 10];
    std::swprintf(text, std::size(text), L"%lu: ", static_cast<unsigned long>(index));
    Write(std::wstring_view(text).substr(0, kIndexWidth));
  }

  wchar_t* m_cursor = nullptr;
  unsigned long m_room = 0;
  unsigned long m_count = 0;
  unsigned long m_depth = 0;
};

}  // namespace

CString CLOMAdsLispVar::GetAsDebugString() const {
  DebugPrinter counter;
  WalkTree(m_element.get(), counter);
  const unsigned long count = counter.Count();
  if (count == 0) return CString();
  const std::unique_ptr<wchar_t[]> buffer(new wchar_t[count + 1]);
  DebugPrinter writer(buffer.get(), count);
  WalkTree(m_element.get(), writer);
  *writer.End() = 0;
  return buffer.get();
}
