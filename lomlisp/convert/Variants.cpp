// OLE variants to atoms, and back.

#include <lomlisp/lisp/CLOMAdsLispVar.h>
#include <lomlisp/lisp/NewNode.h>
#include <lomlisp/resbuf/Text.h>

#include <utility>

using namespace lomlisp;

CLOMAdsLispVar::CLOMAdsLispVar(COleVariant variant) : m_element(NewNode()) {
  m_element->atom = ResBuf(std::move(variant));
}

COleVariant CLOMAdsLispVar::LispToOleVariant() const {
  COleVariant variant;
  if (RealP()) {
    variant = static_cast<double>(m_element->atom);
  } else if (IntP()) {
    variant = static_cast<long>(m_element->atom);
  } else if (StringP()) {
    variant = TextOrEmpty(m_element->atom);
  }
  return variant;
}
