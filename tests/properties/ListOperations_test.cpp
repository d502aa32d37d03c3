// Random sequences of list operations on handles that share nodes.
#include <tests/properties/Generators.h>
#include <tests/properties/SharedHandles.h>

#include <string>
#include <utility>
#include <vector>

namespace lomlisp::test::shared_handles {

using SharedHandles = PropertyTest;

namespace {

// Short integers and texts, few enough that equal ones meet, now and then a list to sort.
ValueGen FreshValues() {
  const ValueGen atoms =
      rc::gen::oneOf(Atoms(InRange<short>(0, 3)),
                     Atoms(rc::gen::element<std::wstring>(std::wstring(L"a"), std::wstring(L"b"))));
  const ValueGen distinct =
      rc::gen::map(rc::gen::resize(8, rc::gen::unique<std::vector<short>>(InRange<short>(0, 99))),
                   [](const std::vector<short>& numbers) {
                     std::vector<model::Value> members;
                     for (const short number : numbers) members.push_back(model::AtomValue(number));
                     return model::ListValue(members);
                   });
  return rc::gen::weightedOneOf<model::Value>(
      {{6, Values(NilOr(atoms), DottedLists::AnyLength, 2)}, {1, distinct}});
}

Gen<const Operation*> AnyOperation() {
  std::vector<const Operation*> all;
  for (const Operation& operation : Operations()) all.push_back(&operation);
  return rc::gen::weightedOneOf<const Operation*>(
      {{1, rc::gen::just(&kFresh)}, {8, rc::gen::elementOf(std::move(all))}});
}

// At most forty.
Gen<std::vector<Step>> Steps() {
  const Gen<size_t> handle = InRange<size_t>(0, kHandles - 1);
  const Gen<Step> step =
      rc::gen::build<Step>(rc::gen::set(&Step::operation, AnyOperation()), rc::gen::set(&Step::d, handle),
                           rc::gen::set(&Step::a, handle), rc::gen::set(&Step::b, handle),
                           rc::gen::set(&Step::fresh, FreshValues()), rc::gen::set(&Step::n, InRange(-2, 5)));
  return rc::gen::scale(0.4, rc::gen::container<std::vector<Step>>(step));
}

}  // namespace

RC_GTEST_FIXTURE_PROP(SharedHandles, HoldAndShareWhatTheModelSays, ()) {
  const auto start =
      *rc::gen::container<std::vector<model::Value>>(kHandles, FreshValues()).as("h0 to h4 at the start");
  const auto steps = *Steps().as("steps");
  BothSides sides(start);
  for (const Step& step : steps) {
    if (!sides.Do(step)) continue;
    if (!sides.Agree()) RC_FAIL("after " + rc::toString(step) + ":" + sides.Report());
    sides.DropLargeValues();
  }
}

}  // namespace lomlisp::test::shared_handles
