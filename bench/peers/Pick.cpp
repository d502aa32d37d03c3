#include <bench/peers/Pick.h>

#include <bench/peers/Records.h>
#include <lomlisp/lomlisp.h>

#include <cwchar>

void PickWithLibrary() {
  CLOMAdsLispVar a;
  CLOMAdsLispVar b;
  CLOMAdsLispVar c;
  CLOMAdsLispVar d;
  CLOMAdsLispVar e;
  CLOMAdsLisp::Parameter(a, b, c, d, e);
  CLOMAdsLisp::Return(CLOMAdsLisp::List(a, c, e));
}

namespace {

const resbuf* BehindItem(const resbuf* item) {
  int open = 0;
  do {
    if (item->restype == RTLB) ++open;
    if (item->restype == RTLE) --open;
    item = item->rbnext;
  } while (open > 0);
  return item;
}

void AppendCopy(const resbuf& record, ChainBuilder& chain) {
  resbuf& copy = chain.Append(record.restype);
  copy.resval = record.resval;
  if (record.restype == RTSTR)
    copy.resval.rstring = CopyOfText(record.resval.rstring, std::wcslen(record.resval.rstring));
}

}  // namespace

void PickByHand() {
  ChainBuilder result;
  const resbuf* item = acedGetArgs();
  for (int position = 0; item != nullptr; item = BehindItem(item), ++position)
    if (position % 2 == 0) AppendCopy(*item, result);
  acedRetList(result.Take().get());
}
