// Sequences of list operations on handles that share their trees, beside the plain model: they hold the same, and
// share the same nodes. A tree that contains itself would never die, which the balanced books show.
#include <tests/fuzz/Fuzz.h>
#include <tests/properties/SharedHandles.h>

#include <cstring>
#include <iostream>

namespace {

using namespace lomlisp::fuzz;
using namespace lomlisp::test::shared_handles;
namespace model = lomlisp::test::model;
using Lisp = CLOMAdsLisp;
using Value = CLOMAdsLispVar;

// Few different atoms, so that equal ones meet. None of them is nil, of which the model knows the null one alone.
model::Value TakeValue(Input& input, int depth) {
  switch (input.ConsumeIntegralInRange(0, depth > 0 ? 8 : 5)) {
    case 0:
      return {};
    case 1:
      return model::AtomValue(input.ConsumeBool() ? L"a" : L"b");
    case 2:
      return model::AtomValue(TakeInteger(input));
    case 3:
      return model::AtomValue(static_cast<double>(input.ConsumeIntegralInRange(-2, 2)) / 2);
    case 4:
    case 5:
      return model::AtomValue(input.ConsumeIntegralInRange<short>(-1, 3));
    default:
      break;
  }
  std::vector<model::Value> members;
  for (int left = input.ConsumeIntegralInRange(0, 4); left > 0; --left)
    members.push_back(TakeValue(input, depth - 1));
  return members.size() > 1 && input.ConsumeIntegralInRange(0, 3) == 0 ? model::DottedValue(members)
                                                                       : model::ListValue(members);
}

Step TakeStep(Input& input) {
  const auto handle = [&] { return input.ConsumeIntegralInRange<size_t>(0, kHandles - 1); };
  const auto& all = Operations();
  Step step;
  step.operation = &all[input.ConsumeIntegralInRange<size_t>(0, all.size() - 1)];
  step.d = handle();
  step.a = handle();
  step.b = handle();
  step.n = input.ConsumeIntegralInRange(-2, 5);
  if (std::strstr(step.operation->form, "$v") != nullptr) step.fresh = TakeValue(input, 2);
  return step;
}

// What looks at its arguments alone leaves them, and their sharing, as they are.
void LookAt(const Value& a, const Value& b, int n) {
  Lisp::Position(a, b);
  Lisp::Index(a, b);
  Lisp::Equal(a, b, 0.0);
  Lisp::Inherit(a, b);
  Lisp::InheritanceStatus(a, b);
  Lisp::Length(a);
  Lisp::Nth(static_cast<unsigned int>(n), Lisp::Reverse(a));
  const Value copy = Lisp::Head(-1, a);
  Require(a.GetAsDebugString() == copy.GetAsDebugString(), "a copy looks the same");
}

}  // namespace

void lomlisp::fuzz::Try(Input& input) {
  std::vector<model::Value> start;
  for (size_t i = 0; i < kHandles; ++i) start.push_back(TakeValue(input, 3));
  BothSides sides(start);
  for (int left = 60; left > 0 && input.remaining_bytes() > 0; --left) {
    const Step step = TakeStep(input);
    sides.Do(step);
    LookAt(sides.Held(step.a), sides.Held(step.b), step.n);
    if (!sides.Agree()) std::cerr << "after " << step << ':' << sides.Report() << '\n';
    Require(sides.Agree(), "the library and the model agree");
    sides.DropLargeValues();
  }
}
