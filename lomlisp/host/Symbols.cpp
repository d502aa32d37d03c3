// LISP symbols.

#include <lomlisp/host/messages.h>
#include <lomlisp/listops/CLOMAdsLisp.h>
#include <lomlisp/resbuf/ADSList.h>

#include <utility>

using namespace lomlisp;

bool CLOMAdsLispVar::GetSym(const wchar_t* name) {
  // The name may be a text of the old value, which therefore goes last.
  const Element old = std::exchange(m_element, nullptr);
  resbuf* chain = nullptr;
  if (acedGetSym(name, &chain) != RTNORM) return false;
  const bool hasValue = chain != nullptr;
  const ADSList owner(chain, ADSCopyFlag::Adopt);
  if (hasValue && owner.isNIL()) return false;
  ADSToLisp(owner);
  return true;
}

bool CLOMAdsLispVar::PutSym(const wchar_t* name) const {
  ADSList chain;
  LispToADS(chain);
  const bool stored = acedPutSym(name, chain) == RTNORM;
  if (!stored) acutPrintf(messages::PutSymRefused, name);
  return stored;
}

CLOMAdsLispVar CLOMAdsLisp::GetSym(const CLOMAdsLispVar& name) {
  if (!StringP(name)) {
    acutPrintf(messages::GetSymNoName);
    return Nil;
  }
  CLOMAdsLispVar value;
  value.GetSym(static_cast<wchar_t*>(name.GetAtom()));
  return value;
}

CLOMAdsLispVar CLOMAdsLisp::PutSym(const CLOMAdsLispVar& name, const CLOMAdsLispVar& value) {
  if (!StringP(name)) {
    acutPrintf(messages::PutSymNoName);
    return Nil;
  }
  return value.PutSym(static_cast<wchar_t*>(name.GetAtom())) ? value : Nil;
}
