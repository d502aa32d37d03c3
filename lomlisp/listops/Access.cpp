// Car, Cdr, Nth, Last, Length: the parts of a list.

#include <lomlisp/lisp/NewNode.h>
#include <lomlisp/lisp/Node.h>
#include <lomlisp/listops/CLOMAdsLisp.h>
#include <lomlisp/listops/Echo.h>
#include <lomlisp/listops/Members.h>
#include <lomlisp/listops/messages.h>

#include <utility>

using namespace lomlisp;

// --- Car ---

CLOMAdsLispVar& CLOMAdsLispVar::Car() {
  if (node::IsNull(m_element.get())) {
    acutPrintf(messages::MemberCarOfNil);
  } else if (node::IsAtom(m_element.get())) {
    acutPrintf(messages::MemberCarOfAtom);
  } else {
    Element first = m_element->children.empty() ? nullptr : m_element->children.front();
    m_element = std::move(first);
  }
  return *this;
}

CLOMAdsLispVar CLOMAdsLisp::Car(const CLOMAdsLispVar& list) {
  if (!ListP(list)) {
    Report(messages::CarOfAtom, list);
    return Nil;
  }
  if (NilP(list)) {
    acutPrintf(messages::CarOfNil);
    return Nil;
  }
  CLOMAdsLispVar first = list;
  first.Car();
  return first;
}

// --- Cdr ---

CLOMAdsLispVar& CLOMAdsLispVar::Cdr(bool forceCopy) {
  if (node::IsNull(m_element.get())) return *this;
  if (node::IsAtom(m_element.get())) {
    acutPrintf(messages::MemberCdrOfAtom);
    return *this;
  }
  ChildSeq& children = m_element->children;
  Element rest;
  if (m_element->dotted == 1 && children.size() == 2) {
    rest = children[1];
  } else if (children.size() >= 2) {
    if (!forceCopy && m_element.use_count() == 1) {
      children.pop_front();
      return *this;
    }
    rest = NewNode();
    rest->children.insert(rest->children.end(), children.begin() + 1, children.end());
  }
  m_element = std::move(rest);
  return *this;
}

CLOMCdrProxy CLOMAdsLisp::Cdr(const CLOMAdsLispVar& list) {
  if (ListP(list)) return CLOMCdrProxy(list);
  Report(messages::CdrOfAtom, list);
  return CLOMCdrProxy(Nil);
}

CLOMAdsLispVar::CLOMAdsLispVar(const CLOMCdrProxy& rest) : CLOMAdsLispVar(rest.GetList()) { Cdr(true); }

// --- Nth ---

CLOMAdsLispVar& CLOMAdsLispVar::Nth(unsigned int n) {
  if (!RealListP()) {
    Report(messages::MemberNthOfOther, *this);
    return *this;
  }
  const unsigned __int64 length = Length();
  if (n > length) {
    acutPrintf(messages::MemberNthBehindEnd, static_cast<int>(n), static_cast<int>(length));
    PrintLine(*this);
    return *this;
  }
  Element member;
  if (n < length) member = Members(m_element.get())[n];
  m_element = std::move(member);
  return *this;
}

CLOMAdsLispVar CLOMAdsLisp::Nth(unsigned int n, const CLOMAdsLispVar& list) {
  if (RealListP(list) && !NilP(list)) return CLOMAdsLispVar(list).Nth(n);
  Report(messages::NthOfOther, list);
  return Nil;
}

CLOMAdsLispVar CLOMAdsLisp::Nth(unsigned int n, const CLOMReverseProxy& reversed) {
  const auto length = static_cast<unsigned int>(Length(reversed.GetList()));
  // Wraps for a position at or behind the end, which Nth then reports.
  return Nth(length - 1 - n, reversed.GetList());
}

// --- Last ---

CLOMAdsLispVar& CLOMAdsLispVar::Last() {
  if (NilP()) {
    acutPrintf(messages::MemberLastOfNil);
  } else if (!RealListP()) {
    acutPrintf(messages::MemberLastOfOther);
  } else if (m_element->children.size() >= 2) {
    Element last = m_element->children.back();
    m_element = std::move(last);
  }
  return *this;
}

CLOMAdsLispVar CLOMAdsLisp::Last(const CLOMAdsLispVar& list) {
  if (RealListP(list) && !NilP(list)) return CLOMAdsLispVar(list).Last();
  Report(messages::LastOfOther, list);
  return Nil;
}

// --- Length ---

unsigned __int64 CLOMAdsLispVar::Length() const {
  if (!RealListP()) {
    acutPrintf(messages::MemberLengthOfOther, L"CLOMAdsLispVar::Length");
    return 0;
  }
  return Members(m_element.get()).size();
}

unsigned __int64 CLOMAdsLisp::Length(const CLOMAdsLispVar& list) {
  if (RealListP(list)) return list.Length();
  Report(messages::LengthOfOther, list);
  return 0;
}
