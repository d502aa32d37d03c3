#include <shell/functions/Arguments.h>
#include <shell/functions/Functions.h>

namespace lomlisp::shell {

namespace {

using embedded::Chain;

}  // namespace

void DefineInputFunctions(Input& input) {
  Interpreter::Instance().Define("read-line", [&input](const Arguments&) {
    const auto line = input.ReadLine(L"");
    return line ? TextItem(*line) : Nil();
  });
}

}  // namespace lomlisp::shell
