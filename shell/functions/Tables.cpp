#include <shell/functions/Arguments.h>
#include <shell/functions/Functions.h>
#include <shell/functions/Groups.h>

#include <lomlisp/platform/modules.h>

namespace lomlisp::shell {

namespace {

using embedded::Chain;

Chain EntryOf(resbuf* given) {
  const HeapChain groups(given);
  return given != nullptr ? ListOf(embedded::Capture(given)) : Nil();
}

Chain TblSearch(const Arguments& arguments) {
  return EntryOf(
      acdbTblSearch(TextIn(arguments[0]).c_str(), TextIn(arguments[1]).c_str(), IsNil(arguments[2]) ? 0 : 1));
}

Chain TblNext(const Arguments& arguments) {
  return EntryOf(acdbTblNext(TextIn(arguments[0]).c_str(), IsNil(arguments[1]) ? 0 : 1));
}

Chain TblObjName(const Arguments& arguments) {
  Name object;
  const int status = acdbTblObjName(TextIn(arguments[0]).c_str(), TextIn(arguments[1]).c_str(), object.words);
  return status == RTNORM ? NameItem(object) : Nil();
}

}  // namespace

void DefineTableFunctions() {
  DefineHostFunction("tblsearch", TblSearch);
  DefineHostFunction("tblnext", TblNext);
  DefineHostFunction("tblobjname", TblObjName);
}

}  // namespace lomlisp::shell
