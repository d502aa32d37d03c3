// Formats and their values: whatever they are, the result is a text.
#include <tests/fuzz/Fuzz.h>

void lomlisp::fuzz::Try(Input& input) {
  CArray<CLOMAdsLispVar, CLOMAdsLispVar> args;
  for (int count = input.ConsumeIntegralInRange(1, 6); count > 0; --count) {
    switch (input.ConsumeIntegralInRange(0, 5)) {
      case 0:
        args.Add(CLOMAdsLispVar(static_cast<short>(TakeInteger(input))));
        break;
      case 1:
        args.Add(CLOMAdsLispVar(static_cast<__int64>(TakeInteger(input))));
        break;
      case 2:
        args.Add(CLOMAdsLispVar(TakeReal(input)));
        break;
      case 3:
        args.Add(CLOMAdsLispVar(TakeText(input, 30).c_str()));
        break;
      case 4:
        args.Add(CLOMAdsLispVar());
        break;
      default: {
        resbuf* const chain = TakeGoodChain(input, 6);
        args.Add(CLOMAdsLispVar(chain));
        acutRelRb(chain);
        break;
      }
    }
  }
  const std::wstring format = TakeRest(input);
  CLOMAdsLispVar result;
  const int directives = CLOMAdsLispVar::Format(result, format.c_str(), args);
  Require(directives >= 0, "there are no fewer than no directives");
  Require(format.empty() || result.StringP(), "a format gives a text");
}
