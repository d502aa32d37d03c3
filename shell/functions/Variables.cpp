#include <shell/functions/Arguments.h>
#include <shell/functions/Functions.h>

#include <shell/Values.h>

#include <lomlisp/platform/ads.h>

#include <embedded/Host.h>
#include <embedded/Shape.h>

namespace lomlisp::shell {

namespace {

using embedded::Chain;

Chain GetVar(const Arguments& arguments) {
  resbuf record{};
  if (acedGetVar(TextIn(arguments[0]).c_str(), &record) != RTNORM) return Nil();
  Chain value = embedded::Capture(&record);
  if (record.restype == RTSTR) acad_free(record.resval.rstring);
  return value;
}

// A list of two or three reals is a point.
Chain SetVar(const Arguments& arguments) {
  embedded::Switches pointsAsRecords;
  const HeapChain value(embedded::Shaped(arguments[1], pointsAsRecords));
  const std::wstring& name = TextIn(arguments[0]);
  if (acedSetVar(name.c_str(), value.Get()) != RTNORM)
    throw LispError(L"system variable rejected: \"" + name + L"\" " + embedded::ToText(arguments[1]));
  return Nil();
}

}  // namespace

void DefineVariableFunctions() {
  DefineHostFunction("getvar", GetVar);
  DefineHostFunction("setvar", SetVar);
}

}  // namespace lomlisp::shell
