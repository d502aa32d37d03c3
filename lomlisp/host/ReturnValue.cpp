// The result of the LISP function that is being called.

#include <lomlisp/listops/CLOMAdsLisp.h>
#include <lomlisp/resbuf/ADSList.h>

namespace {

bool IsProperListNotNil(const CLOMAdsLispVar& value) { return !value.NilP() && value.RealListP(); }

// LISP unwraps a result that is a list with a list as its only member, so that one more list
// around it is needed.
CLOMAdsLispVar WrapAgainstUnwrapping(const CLOMAdsLispVar& value) {
  if (!IsProperListNotNil(value) || value.Length() != 1) return value;
  CLOMAdsLispVar member = value;
  member.Car();
  if (!IsProperListNotNil(member)) return value;
  return CLOMAdsLisp::List(value);
}

// A list goes to LISP as its members, without the brackets around it.
int HandOver(ADSList& chain) {
  chain.GoFirst();
  if (chain.Type() != RTLB) return acedRetVal(chain);
  chain.Delete();
  chain.GoLast();
  chain.Delete();
  chain.GoFirst();
  return acedRetList(chain);
}

}  // namespace

bool CLOMAdsLispVar::ads_return() const {
  ADSList chain;
  CLOMAdsLispVar asItIs;
  asItIs.GetSym(L"LOM_RETURNFLAG");
  if (asItIs.NilP())
    WrapAgainstUnwrapping(*this).LispToADS(chain);
  else
    LispToADS(chain);
  return HandOver(chain) == RTNORM;
}

CLOMAdsLispVar CLOMAdsLisp::Return(const CLOMAdsLispVar& value) {
  value.ads_return();
  return value;
}
