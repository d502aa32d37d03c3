// Values as LISP text, in a buffer or on the command line.

#include <lomlisp/lisp/CLOMAdsLispVar.h>
#include <lomlisp/lisp/TreeWalk.h>
#include <lomlisp/text/BoundedText.h>
#include <lomlisp/text/Separator.h>

#include <string_view>

using namespace lomlisp;
using namespace std::string_view_literals;

namespace {

class CommandLine {
 public:
  void Put(std::wstring_view piece) { acutPrintf(piece.data()); }
  void PutAtom(const ResBuf& atom) { atom.Print(nullptr, 0); }
};

class Buffer {
 public:
  Buffer(wchar_t* buffer, size_t size) : m_text(buffer, size) {}
  void Put(std::wstring_view piece) { m_text.Append(piece); }
  void PutAtom(const ResBuf& atom) { m_text.Append(AtomText(atom, NameForm::Long)); }

 private:
  BoundedText m_text;
};

template <class Output>
class Printer {
 public:
  explicit Printer(Output output) : m_output(output) {}

  void Leaf(node::Node node) {
    if (node::IsNull(node))
      m_output.Put(L"nil"sv);
    else
      m_output.PutAtom(node->atom);
  }
  bool Enter(const CLOMLispElement&) {
    m_output.Put(L"("sv);
    return true;
  }
  void BeforeChild(const CLOMLispElement&, size_t) {}
  void AfterChild(const CLOMLispElement& list, size_t index) {
    if (const std::wstring_view separator = Separator(list, index); !separator.empty())
      m_output.Put(separator);
  }
  void Leave(const CLOMLispElement&) { m_output.Put(L")"sv); }

 private:
  Output m_output;
};

template <class Output>
void PrintTree(node::Node root, Output output) {
  Printer<Output> printer(output);
  WalkTree(root, printer);
}

}  // namespace

void CLOMAdsLispVar::PrinC(wchar_t* buffer, size_t size) const {
  if (buffer != nullptr && size > 0) buffer[0] = 0;
  Print(m_element, buffer, size);
}

void CLOMAdsLispVar::Print(const ConstElement& element, wchar_t* buffer, size_t size) const {
  if (buffer != nullptr)
    PrintTree(element.get(), Buffer(buffer, size));
  else
    PrintTree(element.get(), CommandLine());
}
