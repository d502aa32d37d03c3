// RplaCa and RplaCd: changes in place.

#include <lomlisp/listops/CLOMAdsLisp.h>
#include <lomlisp/listops/messages.h>

#include <cstddef>

using namespace lomlisp;

// What is replaced goes last: when memory runs out, the list is as it was.

CLOMAdsLispVar& CLOMAdsLispVar::RplaCa(const CLOMAdsLispVar& value) {
  if (NilP() || !ListP()) {
    acutPrintf(messages::RplaCaOfOther);
    return *this;
  }
  const CLOMAdsLispVar copy = CLOMAdsLisp::Head(-1, value);
  ChildSeq& children = m_element->children;
  const size_t replaced = children.empty() ? 0 : 1;
  if (copy.m_element != nullptr) {
    const ChildSeq& members = copy.m_element->children;
    children.insert(children.begin() + replaced, members.begin(), members.end());
  }
  if (replaced > 0) children.pop_front();
  return *this;
}

CLOMAdsLispVar& CLOMAdsLispVar::RplaCd(const CLOMAdsLispVar& value) {
  if (NilP() || !ListP()) {
    acutPrintf(messages::RplaCdOfOther);
    return *this;
  }
  const CLOMAdsLispVar copy = CLOMAdsLisp::Head(-1, value);
  ChildSeq& children = m_element->children;
  const size_t replaced = children.empty() ? 0 : 1;
  if (m_element->dotted == 1) {
    children.insert(children.end() - replaced, copy.m_element);
  } else if (copy.m_element != nullptr) {
    const ChildSeq& members = copy.m_element->children;
    children.insert(children.end() - replaced, members.begin(), members.end());
  }
  if (replaced > 0) children.pop_back();
  return *this;
}
