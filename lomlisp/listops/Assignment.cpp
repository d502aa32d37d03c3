// The SetQ family, and the shared nil.

#include <lomlisp/listops/CLOMAdsLisp.h>

#include <lomlisp/lisp/Node.h>
#include <lomlisp/resbuf/Text.h>

#include <utility>

using namespace lomlisp;

constinit const CLOMAdsLispVar CLOMAdsLisp::Nil;

namespace {

template <class Target>
CLOMAdsLispVar AssignAtom(Target& target, const CLOMAdsLispVar& value) {
  target = static_cast<Target>(value.GetAtom());
  return value;
}

}  // namespace

CLOMAdsLispVar CLOMAdsLisp::SetQ(short& target, const CLOMAdsLispVar& value) {
  return AssignAtom(target, value);
}
CLOMAdsLispVar CLOMAdsLisp::SetQ(int& target, const CLOMAdsLispVar& value) {
  return AssignAtom(target, value);
}
CLOMAdsLispVar CLOMAdsLisp::SetQ(unsigned int& target, const CLOMAdsLispVar& value) {
  return AssignAtom(target, value);
}
CLOMAdsLispVar CLOMAdsLisp::SetQ(long& target, const CLOMAdsLispVar& value) {
  return AssignAtom(target, value);
}
CLOMAdsLispVar CLOMAdsLisp::SetQ(double& target, const CLOMAdsLispVar& value) {
  return AssignAtom(target, value);
}
CLOMAdsLispVar CLOMAdsLisp::SetQ(__int64& target, const CLOMAdsLispVar& value) {
  return AssignAtom(target, value);
}

CLOMAdsLispVar CLOMAdsLisp::SetQ(const wchar_t*& target, const CLOMAdsLispVar& value) {
  target = static_cast<wchar_t*>(value.GetAtom());
  return value;
}

CLOMAdsLispVar CLOMAdsLisp::SetQ(CString& target, const CLOMAdsLispVar& value) {
  target = TextOrEmpty(value.GetAtom());
  return value;
}

CLOMAdsLispVar CLOMAdsLisp::SetQ(std::wstring& target, const CLOMAdsLispVar& value) {
  target = TextOrEmpty(value.GetAtom());
  return value;
}

CLOMAdsLispVar CLOMAdsLisp::SetQ(bool& target, const CLOMAdsLispVar& value) {
  if (StringP(value))
    target = *TextOrEmpty(value.GetAtom()) != 0;
  else if (IntP(value))
    target = static_cast<__int64>(value.GetAtom()) != 0;
  return value;
}

CLOMAdsLispVar CLOMAdsLisp::SetQ(wchar_t* buffer, unsigned __int64 size, const CLOMAdsLispVar& value) {
  value.GetString(buffer, static_cast<size_t>(size));
  return value;
}

CLOMAdsLispVar CLOMAdsLisp::SetQ(double target[3], const CLOMAdsLispVar& value) {
  value.GetPoint(target);
  return value;
}

CLOMAdsLispVar CLOMAdsLisp::SetQ(__int64 target[2], const CLOMAdsLispVar& value) {
  value.GetName(target);
  return value;
}

CLOMAdsLispVar CLOMAdsLisp::SetQ(CLOMAdsLispVar& target, const CLOMAdsLispVar& value) {
  if (&target != &value) target.SetQ(value);
  return value;
}

CLOMAdsLispVar CLOMAdsLisp::SetQ(CLOMAdsLispVar& target, const CLOMCdrProxy& rest) {
  if (&target == &rest.GetList()) return target.Cdr(false);
  return target = CLOMAdsLispVar(rest);
}

CLOMAdsLispVar CLOMAdsLisp::SetQ(CLOMAdsLispVar& target, const CLOMConsProxy& pair) {
  if (&target != &pair.GetSecond()) return target = CLOMAdsLispVar(pair);
  CLOMAdsLispVar list = pair.GetFirst();
  list.Cons(std::move(target));
  return target = std::move(list);
}

CLOMAdsLispVar CLOMAdsLisp::SetQ(CLOMAdsLispVar& target, const CLOMReverseProxy& reversed) {
  if (&target == &reversed.GetList()) return target.Reverse(false);
  return target = CLOMAdsLispVar(reversed);
}
