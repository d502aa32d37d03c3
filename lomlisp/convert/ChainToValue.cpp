// From chains of records to values. The chain is the token stream of a small grammar:
//
//   item     : RTLB elements (RTLE | RTDOTE)   a list
//            | a run of DXF groups             a list of (code . value) pairs
//            | any other record                an atom
//   elements : item* [RTDOTE item]             the dot makes the list a dotted one
//
// With exactly two members in front of it, an RTDOTE closes the list itself.

#include <lomlisp/convert/DxfGroup.h>
#include <lomlisp/convert/messages.h>
#include <lomlisp/lisp/CLOMAdsLispVar.h>
#include <lomlisp/lisp/NewNode.h>
#include <lomlisp/lisp/TreeWalk.h>
#include <lomlisp/resbuf/DxfTexts.h>
#include <lomlisp/resbuf/Text.h>

#include <utility>

using namespace lomlisp;

namespace {

using Element = CLOMAdsLispVar::Element;

template <class Value>
Element AtomOf(const Value& value) {
  Element element = NewNode();
  element->atom = value;
  return element;
}

bool Closes(const resbuf& record) { return record.restype == RTLE || record.restype == RTDOTE; }

// Reads the elements of a list and of all lists within it, with the lists that are open on a stack
// of its own.
class ChainReader {
 public:
  explicit ChainReader(const resbuf*& cur) : m_cur(cur) {}

  // Into the outermost list, which no bracket closes here.
  bool Read(CLOMLispElement& list) {
    m_open.push({&list, false});
    while (!m_open.empty()) {
      const Next next = NextStep();
      if (next == Next::Fail) return false;
      if (next == Next::Item && !ReadItem()) return false;
      if (next == Next::Close && !Close()) return false;
    }
    return true;
  }

 private:
  enum class Next { Item, Close, Fail };

  struct OpenList {
    CLOMLispElement* list;
    bool complete;  // the item behind the dot was the last one
  };

  Next NextStep() {
    OpenList& open = m_open.top();
    if (open.complete || m_cur == nullptr || m_cur->restype == RTLE) return Next::Close;
    if (m_cur->restype != RTDOTE) return Next::Item;
    if (open.list->children.empty()) return Next::Fail;
    open.list->dotted = 1;
    if (open.list->children.size() == 2) return Next::Close;
    m_cur = m_cur->rbnext;
    open.complete = true;
    return Next::Item;
  }

  bool ReadItem() {
    CLOMLispElement& list = *m_open.top().list;
    Element item = NewNode();
    if (m_cur != nullptr && m_cur->restype == RTLB) {
      m_cur = m_cur->rbnext;
      m_open.push({item.get(), false});
    } else if (!CLOMAdsLispVar::ADS_DXFList_Or_Atom(m_cur, item, false)) {
      return false;
    }
    list.children.push_back(std::move(item));
    return true;
  }

  bool Close() {
    m_open.pop();
    if (m_open.empty()) return true;
    if (m_cur == nullptr || !Closes(*m_cur)) return false;
    m_cur = m_cur->rbnext;
    return true;
  }

  const resbuf*& m_cur;
  WalkStack<OpenList> m_open;
};

// Reads a run of DXF groups into a flat list of pairs. -3 becomes an atom, and each application
// name behind it (1001) a list of its own.
class RunReader {
 public:
  RunReader(const resbuf*& cur, CLOMLispElement& list) : m_cur(cur), m_list(list) {}

  bool Read() {
    do {
      if (!ReadGroup()) return false;
      m_cur = m_cur->rbnext;
    } while (m_cur != nullptr && DxfType(m_cur->restype) != m_cur->restype);
    return true;
  }

 private:
  bool ReadGroup() {
    const short code = m_cur->restype;
    if (code == 1001 && !m_inExtendedData) return false;
    CLOMLispElement& group = *AppendNode(m_list);
    if (code == -3) {
      group.atom = code;
      m_inExtendedData = true;
    } else if (code == 1001) {
      AppendValue(group);
    } else {
      group.dotted = 1;
      group.children.reserve(2);
      group.children.push_back(AtomOf(code));
      AppendValue(group);
    }
    return true;
  }

  void AppendValue(CLOMLispElement& group) {
    Element value = NewNode();
    ReadGroupValue(*m_cur, value);
    group.children.push_back(std::move(value));
  }

  const resbuf*& m_cur;
  CLOMLispElement& m_list;
  bool m_inExtendedData = false;
};

}  // namespace

bool CLOMAdsLispVar::ADSToLisp(const resbuf* chain) {
  // The chain may be the value's own record, so the old tree goes last.
  const Element old = std::exchange(m_element, nullptr);
  if (chain == nullptr) return true;
  Element root = NewNode();
  const resbuf* cur = chain;
  if (!ADS_Liste(cur, root, false)) return false;
  if (cur != nullptr) {
    acutPrintf(messages::RecordsLeftOver);
    return false;
  }
  m_element = std::move(root);
  return true;
}

bool CLOMAdsLispVar::ADS_Liste(const resbuf*& cur, Element& node, bool flag) {
  if (cur == nullptr) return true;
  if (cur->restype != RTLB) return ADS_DXFList_Or_Atom(cur, node, flag);
  cur = cur->rbnext;
  if (!ADS_ElementListe(cur, node, flag)) return false;
  if (cur == nullptr || !Closes(*cur)) return false;
  cur = cur->rbnext;
  return true;
}

bool CLOMAdsLispVar::ADS_ElementListe(const resbuf*& cur, Element& node, bool) {
  if (cur == nullptr) {
    node.reset();
    return true;
  }
  return ChainReader(cur).Read(*node);
}

bool CLOMAdsLispVar::ADS_DXFList_Or_Atom(const resbuf*& cur, Element& node, bool) {
  if (cur == nullptr) return true;
  const short type = DxfType(cur->restype);
  // T is no base type, but a plain atom all the same.
  if (!ResBuf::isBaseType(type) && type != RTT) {
    acutPrintf(messages::InvalidType, static_cast<int>(type));
    acutPrintf(messages::InvalidTypeReason);
    return false;
  }
  if (type != cur->restype) return RunReader(cur, *node).Read();
  const bool read = ADS_Atom(cur, node);
  cur = cur->rbnext;
  return read;
}

bool CLOMAdsLispVar::ADS_Atom(const resbuf* record, Element& node) {
  if (record == nullptr) {
    node.reset();
    return true;
  }
  switch (record->restype) {
    case RTPOINT:
    case RT3DPOINT: {
      const size_t dimensions = record->restype == RTPOINT ? 2 : 3;
      node->children.reserve(dimensions);
      for (size_t i = 0; i < dimensions; ++i) node->children.push_back(AtomOf(record->resval.rpoint[i]));
      break;
    }
    case RTVOID:
    case RTNIL:
      node.reset();
      break;
    case RTDXF0: {
      // A text of its own, since the chain's will go with the chain.
      resbuf copy = *record;
      copy.resval.rstring = CopyText(record->resval.rstring);
      dxftexts::Own(copy, RTDXF0);
      node->atom = copy;
      dxftexts::Drop(copy);
      break;
    }
    default:
      node->atom = *record;
      break;
  }
  return true;
}
