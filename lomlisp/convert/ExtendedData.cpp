// Values to extended data and back, in the form in which atoms have no group codes of their own and
// braces stand for lists.

#include <lomlisp/convert/DxfGroup.h>
#include <lomlisp/convert/messages.h>
#include <lomlisp/lisp/CLOMAdsLispVar.h>
#include <lomlisp/lisp/NewNode.h>
#include <lomlisp/lisp/TreeWalk.h>
#include <lomlisp/resbuf/ADSList.h>

#include <cwchar>
#include <utility>

using namespace lomlisp;

namespace {

constexpr short kText = 1000;
constexpr short kControl = 1002;
constexpr short kReal = 1040;
constexpr short kShort = 1070;
constexpr short kLong = 1071;

// 0 for an atom that has no group.
short GroupCode(node::Node atom) {
  if (node::IsInt(atom)) return kShort;
  if (node::IsLong(atom)) return kLong;
  if (node::IsReal(atom)) return kReal;
  return node::IsString(atom) ? kText : 0;
}

class ExtendedDataWriter {
 public:
  explicit ExtendedDataWriter(ADSList& target) : m_target(target) {}

  // Whether the outermost value could be written. What goes wrong below it is only reported.
  bool IsGood() const { return m_good; }

  void Leaf(node::Node node) {
    if (node::IsNull(node)) {
      Append(L"{", kControl);
      Append(L"}", kControl);
    } else if (const short code = GroupCode(node)) {
      Append(node->atom, code);
    } else {
      Fail(messages::UnsupportedAtom);
    }
  }

  bool Enter(const CLOMLispElement&) {
    Append(L"{", kControl);
    ++m_depth;
    return true;
  }

  void BeforeChild(const CLOMLispElement&, size_t) {}
  void AfterChild(const CLOMLispElement&, size_t) {}

  void Leave(const CLOMLispElement& list) {
    --m_depth;
    Append(L"}", kControl);
    if (list.dotted == 1) Fail(messages::DottedPair);
  }

 private:
  void Append(const ResBuf& value, short code) { m_target.Add(NewDxfGroup(value, code), ADSCopyFlag::Adopt); }

  void Fail(const wchar_t* message) {
    acutPrintf(message);
    if (m_depth == 0) m_good = false;
  }

  ADSList& m_target;
  size_t m_depth = 0;
  bool m_good = true;
};

bool IsBrace(const resbuf& record, const wchar_t* brace) {
  const wchar_t* const text = record.resval.rstring;
  return record.restype == kControl && text != nullptr && std::wcscmp(text, brace) == 0;
}

// Reads the group at `cur` into a fresh node.
void ReadGroup(const resbuf*& cur, CLOMAdsLispVar::Element& node) {
  ReadGroupValue(*cur, node);
  cur = cur->rbnext;
}

}  // namespace

bool CLOMAdsLispVar::LispToXData(ADSList& target) const { return LispToXData(m_element, target); }

bool CLOMAdsLispVar::LispToXData(const ConstElement& element, ADSList& target) {
  target.GoLast();
  ExtendedDataWriter writer(target);
  WalkTree(element.get(), writer);
  return writer.IsGood();
}

bool CLOMAdsLispVar::XDataToLisp(const resbuf*& cur, Element& node) {
  if (cur == nullptr) return true;
  WalkStack<CLOMLispElement*> open;
  Element* item = &node;
  for (;;) {
    if (IsBrace(*cur, L"{")) {
      open.push(item->get());
      cur = cur->rbnext;
    } else if (cur->restype != kControl) {
      ReadGroup(cur, *item);
    } else {
      return false;
    }
    for (; !open.empty() && cur != nullptr && IsBrace(*cur, L"}"); cur = cur->rbnext) open.pop();
    if (open.empty()) return true;
    if (cur == nullptr) return false;
    item = &AppendNode(*open.top());
  }
}

bool CLOMAdsLispVar::XDataToLisp(const resbuf* chain) {
  // The chain may be the value's own record, so the old tree goes last.
  const Element old = std::exchange(m_element, nullptr);
  if (chain == nullptr) return true;
  Element root = NewNode();
  const resbuf* cur = chain;
  if (!XDataToLisp(cur, root)) return false;
  if (cur != nullptr) {
    acutPrintf(messages::GroupsLeftOver);
    return false;
  }
  m_element = std::move(root);
  return true;
}
