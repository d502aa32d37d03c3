// The handle and its atoms: construction from native values, and back.

#include <lomlisp/lisp/CLOMAdsLispVar.h>
#include <lomlisp/lisp/NewNode.h>
#include <lomlisp/lisp/Node.h>
#include <lomlisp/lisp/messages.h>
#include <lomlisp/resbuf/Text.h>

#include <algorithm>
#include <utility>

using namespace lomlisp;

namespace {

template <class Value>
CLOMAdsLispVar::Element NewAtom(Value value) {
  auto element = NewNode();
  element->atom = value;
  return element;
}

// What integers become that have no record type of their own.
template <class Integer>
CLOMAdsLispVar::Element NewShort(Integer value) {
  return NewAtom(static_cast<short>(static_cast<unsigned short>(value)));
}

}  // namespace

CLOMAdsLispVar::CLOMAdsLispVar(short value) : m_element(NewAtom(value)) {}
CLOMAdsLispVar::CLOMAdsLispVar(unsigned short value) : m_element(NewShort(value)) {}
CLOMAdsLispVar::CLOMAdsLispVar(int value) : m_element(NewShort(value)) {}
CLOMAdsLispVar::CLOMAdsLispVar(unsigned int value) : m_element(NewShort(value)) {}
CLOMAdsLispVar::CLOMAdsLispVar(long value) : m_element(NewAtom(value)) {}
CLOMAdsLispVar::CLOMAdsLispVar(unsigned long value) : m_element(NewShort(value)) {}
CLOMAdsLispVar::CLOMAdsLispVar(__int64 value) : m_element(NewAtom(value)) {}
CLOMAdsLispVar::CLOMAdsLispVar(unsigned __int64 value) : m_element(NewShort(value)) {}
CLOMAdsLispVar::CLOMAdsLispVar(double value) : m_element(NewAtom(value)) {}

CLOMAdsLispVar::CLOMAdsLispVar(const wchar_t* text) {
  if (text != nullptr) m_element = NewAtom(text);
}

CLOMAdsLispVar::CLOMAdsLispVar(CString& text) : m_element(NewAtom(text.GetString())) {}
CLOMAdsLispVar::CLOMAdsLispVar(const CString& text) : m_element(NewAtom(text.GetString())) {}
CLOMAdsLispVar::CLOMAdsLispVar(const std::wstring& text) : m_element(NewAtom(text.c_str())) {}

CLOMAdsLispVar::CLOMAdsLispVar(const double point[3]) {
  if (point == nullptr) return;
  const ResBuf record(point, ADSPointType::Point3d);
  ADSToLisp(&record);
}

CLOMAdsLispVar::CLOMAdsLispVar(const __int64 name[2]) {
  if (name != nullptr) m_element = NewAtom(name);
}

CLOMAdsLispVar::CLOMAdsLispVar(resbuf* chain) { ADSToLisp(chain); }

CLOMAdsLispVar& CLOMAdsLispVar::operator=(CLOMAdsLispVar&& value) noexcept {
  Element taken = std::move(value.m_element);
  m_element = std::move(taken);
  return *this;
}

CLOMAdsLispVar& CLOMAdsLispVar::SetQ(const CLOMAdsLispVar& value) {
  Clean();
  m_element = value.m_element;
  return *this;
}

ResBuf& CLOMAdsLispVar::GetAtom() const {
  if (AtomP()) return m_element->atom;
  acutPrintf(messages::GetAtomOfList);
  PrinC(nullptr, 0);
  acutPrintf(L"\n");
  static ResBuf noAtom(static_cast<short>(0));
  return noAtom;
}

void CLOMAdsLispVar::GetName(__int64 name[2]) const {
  if (ENameP() || PickSetP()) {
    std::copy_n(m_element->atom.resval.rlname, 2, name);
  } else {
    std::fill_n(name, 2, 0);
    acutPrintf(messages::GetNameOfOther);
  }
}

void CLOMAdsLispVar::GetPoint(double point[3]) const {
  if (PointP()) {
    node::GetPoint(*m_element, point);
  } else {
    std::fill_n(point, 3, 0.0);
    acutPrintf(messages::GetPointOfOther);
  }
}

void CLOMAdsLispVar::GetPoint(const ConstElement& element, double point[3]) {
  if (isPoint(element)) node::GetPoint(*element, point);
}

void CLOMAdsLispVar::GetString(wchar_t* buffer, size_t len) const {
  if (buffer == nullptr || len == 0) {
    acutPrintf(messages::GetStringNoRoom);
    return;
  }
  buffer[0] = 0;
  if (!StringP()) {
    acutPrintf(messages::GetStringOfOther);
    return;
  }
  const wchar_t* const text = m_element->atom.resval.rstring;
  const size_t length = TextLength(text);
  if (length > len - 1) acutPrintf(messages::GetStringCut);
  const size_t copied = (std::min)(length, len - 1);
  if (copied > 0) std::copy_n(text, copied, buffer);
  buffer[copied] = 0;
}
