// Values to OLE variants and back.
#include <tests/fuzz/Fuzz.h>

void lomlisp::fuzz::Try(Input& input) {
  resbuf* const chain = TakeGoodChain(input, 20);
  CLOMAdsLispVar value(chain);
  acutRelRb(chain);
  while (value.ListP() && !value.NilP() && value.RealListP() && value.Length() > 0) {
    CLOMAdsLispVar first = value;
    first.Car();
    const COleVariant variant = first.LispToOleVariant();
    const CLOMAdsLispVar back(variant);
    Require(first.StringP() ? back.StringP() : true, "a text comes back as a text");
    value.Cdr(input.ConsumeBool());
  }
}
