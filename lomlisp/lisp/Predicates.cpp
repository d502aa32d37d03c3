#include <lomlisp/lisp/CLOMAdsLispVar.h>
#include <lomlisp/lisp/Node.h>
#include <lomlisp/lisp/messages.h>

using namespace lomlisp;

bool CLOMAdsLispVar::isNull(const ConstElement& element) { return node::IsNull(element.get()); }
bool CLOMAdsLispVar::isAtom(const ConstElement& element) { return node::IsAtom(element.get()); }
bool CLOMAdsLispVar::isList(const ConstElement& element) { return node::IsList(element.get()); }
bool CLOMAdsLispVar::isInt(const ConstElement& element) { return node::IsInt(element.get()); }
bool CLOMAdsLispVar::isLong(const ConstElement& element) { return node::IsLong(element.get()); }
bool CLOMAdsLispVar::isInt64(const ConstElement& element) { return node::IsInt64(element.get()); }
bool CLOMAdsLispVar::isReal(const ConstElement& element) { return node::IsReal(element.get()); }
bool CLOMAdsLispVar::isNumber(const ConstElement& element) { return node::IsNumber(element.get()); }
bool CLOMAdsLispVar::isString(const ConstElement& element) { return node::IsString(element.get()); }
bool CLOMAdsLispVar::isEName(const ConstElement& element) { return node::IsEName(element.get()); }
bool CLOMAdsLispVar::isPickSet(const ConstElement& element) { return node::IsPickSet(element.get()); }
bool CLOMAdsLispVar::isAtomList(const ConstElement& element) { return node::IsAtomList(element.get()); }
bool CLOMAdsLispVar::isPoint(const ConstElement& element) { return node::IsPoint(element.get()); }
bool CLOMAdsLispVar::isAssocList(const ConstElement& element) { return node::IsAssocList(element.get()); }
bool CLOMAdsLispVar::isRealList(const ConstElement& element) { return node::IsRealList(element.get()); }

bool CLOMAdsLispVar::ListP() const { return node::IsList(m_element.get()); }
bool CLOMAdsLispVar::AtomP() const { return node::IsAtom(m_element.get()); }
bool CLOMAdsLispVar::NilP() const { return node::IsNull(m_element.get()); }
bool CLOMAdsLispVar::NumberP() const { return node::IsNumber(m_element.get()); }
bool CLOMAdsLispVar::IntP() const { return node::IsInt(m_element.get()); }
bool CLOMAdsLispVar::LongP() const { return node::IsLong(m_element.get()); }
bool CLOMAdsLispVar::Int64P() const { return node::IsInt64(m_element.get()); }
bool CLOMAdsLispVar::RealP() const { return node::IsReal(m_element.get()); }
bool CLOMAdsLispVar::StringP() const { return node::IsString(m_element.get()); }
bool CLOMAdsLispVar::ENameP() const { return node::IsEName(m_element.get()); }
bool CLOMAdsLispVar::PickSetP() const { return node::IsPickSet(m_element.get()); }
bool CLOMAdsLispVar::PointP() const { return node::IsPoint(m_element.get()); }
bool CLOMAdsLispVar::AtomListP() const { return node::IsAtomList(m_element.get()); }
bool CLOMAdsLispVar::RealListP() const { return node::IsRealList(m_element.get()); }
bool CLOMAdsLispVar::AssocListP() const { return node::IsAssocList(m_element.get()); }

bool CLOMAdsLispVar::ZeroP() const {
  if (NumberP()) return m_element->atom.Equal(0.0, 0.0) != 0;
  acutPrintf(messages::ZeroPOfOther);
  return false;
}

datatype_t CLOMAdsLispVar::Type() const {
  if (RealP()) return dtReal;
  if (IntP()) return dtInt;
  if (StringP()) return dtString;
  if (ListP()) return dtList;
  if (PickSetP()) return dtPickSet;
  if (ENameP()) return dtEName;
  acutPrintf(messages::TypeUnknown);
  return dtUnknown;
}
