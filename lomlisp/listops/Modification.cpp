// RplaCa and RplaCd: changes in place.

#include <lomlisp/listops/CLOMAdsLisp.h>
#include <lomlisp/listops/messages.h>

using namespace lomlisp;

CLOMAdsLispVar& CLOMAdsLispVar::RplaCa(const CLOMAdsLispVar& value) {
  if (NilP() || !ListP()) {
    acutPrintf(messages::RplaCaOfOther);
    return *this;
  }
  const CLOMAdsLispVar copy = CLOMAdsLisp::Head(-1, value);
  ChildSeq& children = m_element->children;
  if (!children.empty()) children.pop_front();
  if (copy.m_element != nullptr)
    children.insert(children.begin(), copy.m_element->children.begin(), copy.m_element->children.end());
  return *this;
}

CLOMAdsLispVar& CLOMAdsLispVar::RplaCd(const CLOMAdsLispVar& value) {
  if (NilP() || !ListP()) {
    acutPrintf(messages::RplaCdOfOther);
    return *this;
  }
  const CLOMAdsLispVar copy = CLOMAdsLisp::Head(-1, value);
  ChildSeq& children = m_element->children;
  if (!children.empty()) children.pop_back();
  if (m_element->dotted == 1)
    children.push_back(copy.m_element);
  else if (copy.m_element != nullptr)
    children.insert(children.end(), copy.m_element->children.begin(), copy.m_element->children.end());
  return *this;
}
