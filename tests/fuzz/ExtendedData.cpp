// Extended data to values and back.
#include <tests/fuzz/Fuzz.h>

void lomlisp::fuzz::Try(Input& input) {
  resbuf* const chain = input.ConsumeBool() ? TakeGoodChain(input, 40) : TakeChain(input, 40);
  CLOMAdsLispVar value;
  value.ADSToLisp(chain);
  ADSList groups;
  value.LispToXData(groups);
  CLOMAdsLispVar again;
  again.XDataToLisp(groups);
  CLOMAdsLispVar direct;
  direct.XDataToLisp(chain);
  acutRelRb(chain);
  ADSList third;
  direct.LispToXData(third);
}
