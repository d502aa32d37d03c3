// Sequences of list operations on handles that share their trees. No operation may make a tree that contains
// itself, which the balanced books show: such a tree would never die.
#include <tests/fuzz/Fuzz.h>

#include <array>

namespace {

using namespace lomlisp::fuzz;
using Value = CLOMAdsLispVar;
using Lisp = CLOMAdsLisp;

// Larger trees are dropped: an operation that copies doubles what is shared in them.
constexpr size_t kMostNodes = 2'000;

size_t CountNodes(const CLOMLispElement* node, size_t depth = 0) {
  if (node == nullptr) return 1;
  if (depth > 60) return kMostNodes + 1;
  size_t count = 1;
  for (const auto& child : node->children) {
    count += CountNodes(child.get(), depth + 1);
    if (count > kMostNodes) break;
  }
  return count;
}

Value TakeAtom(Input& input) {
  switch (input.ConsumeIntegralInRange(0, 4)) {
    case 0:
      return static_cast<short>(input.ConsumeIntegralInRange(-3, 3));
    case 1:
      return TakeReal(input);
    case 2:
      return TakeText(input, 4).c_str();
    case 3:
      return {};
    default:
      return static_cast<__int64>(TakeInteger(input));
  }
}

void Operate(Input& input, Value& a, Value& b, Value& c) {
  const int n = input.ConsumeIntegralInRange(-2, 9);
  switch (input.ConsumeIntegralInRange(0, 37)) {
    case 0: a = TakeAtom(input); break;
    case 1: Lisp::SetQ(a, b); break;
    case 2: Lisp::SetQ(a, Lisp::Car(b)); break;
    case 3: Lisp::SetQ(a, Lisp::Cdr(b)); break;
    case 4: Lisp::SetQ(a, Lisp::Cons(b, c)); break;
    case 5: Lisp::SetQ(a, Lisp::Cons(b, a)); break;
    case 6: Lisp::SetQ(a, Lisp::Cdr(a)); break;
    case 7: Lisp::SetQ(a, Lisp::Reverse(b)); break;
    case 8: Lisp::SetQ(a, Lisp::List(b, c)); break;
    case 9: Lisp::SetQ(a, Lisp::Append(b, c)); break;
    case 10: a.Append(b); break;
    case 11: a.NConc(b); break;
    case 12: a.Reverse(input.ConsumeBool()); break;
    case 13: a.RplaCa(b); break;
    case 14: a.RplaCd(b); break;
    case 15: a.Sort(); break;
    case 16: Lisp::SetQ(a, Lisp::Nth(static_cast<unsigned int>(n), b)); break;
    case 17: Lisp::SetQ(a, Lisp::Last(b)); break;
    case 18: Lisp::SetQ(a, Lisp::Head(n, b)); break;
    case 19: Lisp::SetQ(a, Lisp::Assoc(b, c)); break;
    case 20: Lisp::SetQ(a, Lisp::Member(b, c)); break;
    case 21: Lisp::Position(b, c); break;
    case 22: Lisp::SetQ(a, Lisp::Subst(a, b, c)); break;
    case 23: Lisp::SetQ(a, Lisp::Delete(b, c)); break;
    case 24: Lisp::SetQ(a, Lisp::AddNth(n, b, c)); break;
    case 25: Lisp::SetQ(a, Lisp::DeleteNth(n, b)); break;
    case 26: Lisp::SetQ(a, Lisp::SubstNth(n, b, c)); break;
    case 27: Lisp::SetQ(a, Lisp::Insert(b, c, n)); break;
    case 28: Lisp::SetQ(a, Lisp::Inherit(b, c)); break;
    case 29: Lisp::SetQ(a, Lisp::InheritanceStatus(b, c)); break;
    case 30: Lisp::Index(b, c); break;
    case 31: a = std::move(b); break;
    case 32: a.Cons(std::move(b)); break;
    case 33: a.Cons(b); break;
    case 34: a.List(); break;
    case 35: a.Nth(static_cast<unsigned int>(n)); break;
    case 36: Lisp::Equal(a, b, 0.0); break;
    default: a.Clean(); break;
  }
}

}  // namespace

void lomlisp::fuzz::Try(Input& input) {
  std::array<Value, 6> values;
  const auto take = [&]() -> Value& { return values[input.ConsumeIntegralInRange<size_t>(0, values.size() - 1)]; };
  for (int left = 200; left > 0 && input.remaining_bytes() > 0; --left) {
    Value& a = take();
    Value& b = take();
    Value& c = take();
    Operate(input, a, b, c);
    if (CountNodes(a.New().get()) > kMostNodes) a.Clean();
  }
  for (const Value& value : values) {
    Value copy = Lisp::Head(-1, value);
    Require(value.GetAsDebugString() == copy.GetAsDebugString(), "a copy looks the same");
  }
}
