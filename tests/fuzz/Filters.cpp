// Filters of selections over a small drawing.
#include <tests/fuzz/Fuzz.h>

namespace {

using namespace lomlisp::fuzz;

void FillDrawing() {
  for (const wchar_t* const text :
       {L"((0 . \"LINE\") (8 . \"WALLS\") (10 (0.0 0.0 0.0)) (11 (4.0 3.0 0.0)) (62 . 1))",
        L"((0 . \"CIRCLE\") (8 . \"DOORS\") (10 (1.0 2.0 0.0)) (40 . 2.5))",
        L"((0 . \"TEXT\") (10 (1.0 2.0 0.0)) (40 . 2.5) (1 . \"room %s\"))"}) {
    CLOMAdsLispVar entity;
    Require(entity.Read(text), "the entity can be read");
    Require(!CLOMAdsLisp::EntMake(entity).NilP(), "the entity can be made");
  }
}

}  // namespace

void lomlisp::fuzz::Try(Input& input) {
  [[maybe_unused]] static const bool filled = (FillDrawing(), true);
  resbuf* const chain = input.ConsumeBool() ? TakeGoodChain(input, 24) : TakeChain(input, 24);
  ads_name set = {};
  if (acedSSGet(L"X", nullptr, nullptr, chain, set) == RTNORM) acedSSFree(set);
  const CLOMAdsLispVar filter(chain);
  acutRelRb(chain);
  CLOMAdsLispVar found = CLOMAdsLisp::SSGet(L"X", filter, CLOMAdsLisp::Nil, CLOMAdsLisp::Nil);
  if (found.PickSetP()) {
    found.GetName(set);
    acedSSFree(set);
  }
}
