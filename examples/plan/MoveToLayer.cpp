#include <examples/plan/Entities.h>
#include <examples/plan/Plan.h>

namespace plan {

int MoveToLayer() {
  CLOMAdsLispVar filter;
  CLOMAdsLispVar layer;
  CLOMAdsLisp::Parameter(filter, layer);

  int moved = 0;
  const CLOMAdsLispVar group = CLOMAdsLisp::Cons(8, layer);
  Selection(filter).ForEach([&](const CLOMAdsLispVar& name) {
    const CLOMAdsLispVar identity = CLOMAdsLisp::Cons(-1, name);
    if (!CLOMAdsLisp::EntMod(CLOMAdsLisp::List(identity, group)).NilP()) ++moved;
  });
  CLOMAdsLisp::Return(moved);
  return RTNORM;
}

}  // namespace plan
