// List operations on handles that share nodes, beside the plain model: after each step both must hold the same
// values, and share the same nodes.
#pragma once

#include <tests/properties/Model.h>

#include <algorithm>
#include <array>
#include <map>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace lomlisp::test::shared_handles {

inline constexpr size_t kHandles = 5;
// Values that have grown beyond this are dropped, since some operations double them.
inline constexpr size_t kMaxSize = 150;

// --- The operations, each written once for both sides ---

// The library's functions, with a name of its own for each use of a proxy.
struct Library : CLOMAdsLisp {
  using Value = CLOMAdsLispVar;

  static Value NthReversed(unsigned int n, const Value& list) { return Nth(n, Reverse(list)); }
  static void SetQCdr(Value& target, const Value& list) { SetQ(target, Cdr(list)); }
  static void SetQCons(Value& target, const Value& first, const Value& second) {
    SetQ(target, Cons(first, second));
  }
  static void SetQReverse(Value& target, const Value& list) { SetQ(target, Reverse(list)); }
};

// What a step works on: three handles, which may be the same, a value of its own, and a number.
template <class Value>
struct Operands {
  Value& d;
  Value& a;
  Value& b;
  const Value& fresh;
  int n;

  unsigned int Position() const { return static_cast<unsigned int>(n); }
};
using ModelOperands = Operands<model::Value>;

struct Operation {
  const char* form;  // with $d, $a, $b, $v and $n for the operands
  void (*onLibrary)(Library, Operands<CLOMAdsLispVar>);
  void (*onModel)(model::Lisp, ModelOperands);
  bool (*isDefined)(const ModelOperands&);
};

// --- When the result of an operation is defined ---

inline bool Always(const ModelOperands& /*operands*/) { return true; }

// A dotted list with more than one member in front of its cdr is no list to count in, even where its
// second member is a list.
inline bool OfCountable(const ModelOperands& operands) {
  const model::Link& list = operands.a.node;
  return !model::IsKind(list, model::Kind::Dotted) || list->members.size() <= 2 || !model::IsProperList(list);
}

inline bool OfUndotted(const ModelOperands& operands) {
  return !model::IsKind(operands.a.node, model::Kind::Dotted) || !model::IsProperList(operands.a.node);
}

// Members that are equal may change places.
inline bool OfDistinctIntegers(const ModelOperands& operands) {
  if (!model::IsKind(operands.a.node, model::Kind::List)) return true;
  std::map<short, model::Link> known;
  return std::ranges::all_of(operands.a.node->members, [&](const model::Link& member) {
    const short* key = member != nullptr ? std::get_if<short>(&member->atom) : nullptr;
    return key != nullptr && known.emplace(*key, member).first->second == member;
  });
}

// What a shared empty list takes from itself may be that list or a new one.
inline bool UnlessEmptyByItself(const ModelOperands& operands) {
  const model::Link& list = operands.a.node;
  return &operands.a != &operands.b || !model::IsKind(list, model::Kind::List) || !list->members.empty() ||
         list.use_count() == 1;
}

inline bool HasMembers(const model::Value& value) {
  return model::IsKind(value.node, model::Kind::List) && !value.node->members.empty();
}
inline bool OfMembers(const ModelOperands& operands) {
  const bool isRefused = !model::IsProperList(operands.a.node) || !model::IsProperList(operands.b.node);
  return isRefused || (HasMembers(operands.a) && HasMembers(operands.b));
}

template <class Form>
Operation Op(const char* text, bool (*isDefined)(const ModelOperands&), Form form) {
  return {text, form, form, isDefined};
}
template <class Form>
Operation Op(const char* text, Form form) {
  return Op(text, Always, form);
}

inline const Operation kFresh = Op("$d = $v", [](auto, auto o) { o.d = o.fresh; });

inline const std::vector<Operation>& Operations() {
  static const std::vector<Operation> operations = {
      kFresh,
      Op("SetQ($d, $a)", [](auto l, auto o) { l.SetQ(o.d, o.a); }),

      Op("$a.Car()", [](auto, auto o) { o.a.Car(); }),
      Op("$d = Car($a)", [](auto l, auto o) { o.d = l.Car(o.a); }),
      Op("$a.Cdr(false)", [](auto, auto o) { o.a.Cdr(false); }),
      Op("$a.Cdr(true)", [](auto, auto o) { o.a.Cdr(true); }),
      Op("$d = Cdr($a)", [](auto l, auto o) { o.d = l.Cdr(o.a); }),
      Op("SetQ($d, Cdr($a))", [](auto l, auto o) { l.SetQCdr(o.d, o.a); }),
      Op("SetQ($a, Cdr($a))", [](auto l, auto o) { l.SetQCdr(o.a, o.a); }),
      Op("$a.Nth($n)", OfCountable, [](auto, auto o) { o.a.Nth(o.Position()); }),
      Op("$d = Nth($n, $a)", OfCountable, [](auto l, auto o) { o.d = l.Nth(o.Position(), o.a); }),
      Op("$d = Nth($n, Reverse($a))", OfCountable,
         [](auto l, auto o) { o.d = l.NthReversed(o.Position(), o.a); }),
      Op("$a.Last()", [](auto, auto o) { o.a.Last(); }),
      Op("$d = Last($a)", [](auto l, auto o) { o.d = l.Last(o.a); }),
      Op("$a.Head($n)", [](auto, auto o) { o.a.Head(o.n); }),
      Op("$d = Head($n, $a)", [](auto l, auto o) { o.d = l.Head(o.n, o.a); }),

      Op("$a.Cons($b)", [](auto, auto o) { o.a.Cons(o.b); }),
      Op("$a.Cons(move(copy of $b))",
         [](auto, auto o) {
           auto second = o.b;
           o.a.Cons(std::move(second));
         }),
      Op("$d = Cons($a, $b)", [](auto l, auto o) { o.d = l.Cons(o.a, o.b); }),
      Op("SetQ($d, Cons($a, $b))", [](auto l, auto o) { l.SetQCons(o.d, o.a, o.b); }),
      Op("SetQ($d, Cons($a, $d))", [](auto l, auto o) { l.SetQCons(o.d, o.a, o.d); }),
      Op("SetQ($d, Cons($d, $b))", [](auto l, auto o) { l.SetQCons(o.d, o.d, o.b); }),
      Op("$a.List()", [](auto, auto o) { o.a.List(); }),
      Op("$d = List($a)", [](auto l, auto o) { o.d = l.List(o.a); }),
      Op("$d = List($a, $b)", [](auto l, auto o) { o.d = l.List(o.a, o.b); }),
      Op("$d = List($a, $b, $a, $d)", [](auto l, auto o) { o.d = l.List(o.a, o.b, o.a, o.d); }),
      Op("$a.Append($b)", UnlessEmptyByItself, [](auto, auto o) { o.a.Append(o.b); }),
      Op("$d = Append($a, $b)", [](auto l, auto o) { o.d = l.Append(o.a, o.b); }),
      Op("$a.NConc($b)", UnlessEmptyByItself, [](auto, auto o) { o.a.NConc(o.b); }),
      Op("$d = NConc($a, $b)", UnlessEmptyByItself, [](auto l, auto o) { o.d = l.NConc(o.a, o.b); }),
      Op("$a.Reverse(false)", [](auto, auto o) { o.a.Reverse(false); }),
      Op("$a.Reverse(true)", [](auto, auto o) { o.a.Reverse(true); }),
      Op("$d = Reverse($a)", [](auto l, auto o) { o.d = l.Reverse(o.a); }),
      Op("SetQ($d, Reverse($a))", [](auto l, auto o) { l.SetQReverse(o.d, o.a); }),
      Op("SetQ($a, Reverse($a))", [](auto l, auto o) { l.SetQReverse(o.a, o.a); }),

      Op("$a.RplaCa($b)", [](auto, auto o) { o.a.RplaCa(o.b); }),
      Op("$d = RplaCa($a, $b)", [](auto l, auto o) { o.d = l.RplaCa(o.a, o.b); }),
      Op("$a.RplaCd($b)", [](auto, auto o) { o.a.RplaCd(o.b); }),
      Op("$d = RplaCd($a, $b)", [](auto l, auto o) { o.d = l.RplaCd(o.a, o.b); }),
      Op("$a.Sort()", OfDistinctIntegers, [](auto, auto o) { o.a.Sort(); }),
      Op("$d = Sort($a)", OfDistinctIntegers, [](auto l, auto o) { o.d = l.Sort(o.a); }),

      Op("$d = AddNth($n, $b, $a)", OfCountable, [](auto l, auto o) { o.d = l.AddNth(o.n, o.b, o.a); }),
      Op("$d = DeleteNth($n, $a)", OfCountable, [](auto l, auto o) { o.d = l.DeleteNth(o.n, o.a); }),
      Op("$d = SubstNth($n, $b, $a)", OfCountable, [](auto l, auto o) { o.d = l.SubstNth(o.n, o.b, o.a); }),
      Op("$d = Insert($a, $b, $n)", OfMembers, [](auto l, auto o) { o.d = l.Insert(o.a, o.b, o.n); }),
      Op("$d = Subst($d, $b, $a)", OfCountable, [](auto l, auto o) { o.d = l.Subst(o.d, o.b, o.a); }),
      Op("$d = Subst($d, $v, $a)", OfCountable, [](auto l, auto o) { o.d = l.Subst(o.d, o.fresh, o.a); }),
      Op("$d = Delete($b, $a)", OfUndotted, [](auto l, auto o) { o.d = l.Delete(o.b, o.a); }),
      Op("$d = Delete($v, $a)", OfUndotted, [](auto l, auto o) { o.d = l.Delete(o.fresh, o.a); }),

      Op("$d = Assoc($b, $a)", [](auto l, auto o) { o.d = l.Assoc(o.b, o.a); }),
      Op("$d = Assoc($v, $a)", [](auto l, auto o) { o.d = l.Assoc(o.fresh, o.a); }),
      Op("$d = Member($b, $a)", OfCountable, [](auto l, auto o) { o.d = l.Member(o.b, o.a); }),
      Op("$d = Member($v, $a)", OfCountable, [](auto l, auto o) { o.d = l.Member(o.fresh, o.a); })};
  return operations;
}

// --- Steps ---

struct Step {
  const Operation* operation = &kFresh;
  size_t d = 0, a = 0, b = 0;  // which handles
  model::Value fresh{};
  int n = 0;
};

inline std::ostream& operator<<(std::ostream& out, const Step& step) {
  for (const char* form = step.operation->form; *form != 0; ++form) {
    if (*form != '$') {
      out << *form;
      continue;
    }
    ++form;
    if (*form == 'v')
      out << step.fresh;
    else if (*form == 'n')
      out << step.n;
    else
      out << 'h' << (*form == 'd' ? step.d : *form == 'a' ? step.a : step.b);
  }
  return out;
}

// --- Comparison ---

// Finds out whether two sets of values are the same graph: every node of one side belongs to exactly
// one node of the other.
class Correspondence {
 public:
  bool Holds(const Element& element, const model::Link& node) {
    if (element == nullptr || node == nullptr) return element == nullptr && node == nullptr;
    const auto [toNode, isNewElement] = m_nodes.try_emplace(element.get(), node.get());
    const auto [toElement, isNewNode] = m_elements.try_emplace(node.get(), element.get());
    if (!isNewElement || !isNewNode)
      return toNode->second == node.get() && toElement->second == element.get();
    return HaveSameContent(*element, *node);
  }

 private:
  static model::Kind KindOf(const CLOMLispElement& element) {
    if (element.Kind() == CLOMLispElement::Atom) return model::Kind::Atom;
    return element.Kind() == CLOMLispElement::DottedList ? model::Kind::Dotted : model::Kind::List;
  }

  bool HaveSameContent(const CLOMLispElement& element, const model::Node& node) {
    if (KindOf(element) != node.kind) return false;
    if (node.kind == model::Kind::Atom) return model::AtomFromLibrary(element.atom) == node.atom;
    if (element.children.size() != node.members.size()) return false;
    for (size_t i = 0; i < node.members.size(); ++i)
      if (!Holds(element.children[i], node.members[i])) return false;
    return true;
  }

  std::map<const CLOMLispElement*, const model::Node*> m_nodes;
  std::map<const model::Node*, const CLOMLispElement*> m_elements;
};

// --- Both sides of a run ---

class BothSides {
 public:
  explicit BothSides(const std::vector<model::Value>& start) {
    for (size_t i = 0; i < kHandles; ++i) {
      m_models[i] = {model::DeepCopy(start[i].node)};
      m_values[i] = model::ToLibrary(start[i]);
    }
  }

  // Gives false for a step that was left out.
  bool Do(const Step& step) {
    const model::Value freshModel{model::DeepCopy(step.fresh.node)};
    const ModelOperands operands{m_models[step.d], m_models[step.a], m_models[step.b], freshModel, step.n};
    if (!step.operation->isDefined(operands)) return false;
    const CLOMAdsLispVar fresh = model::ToLibrary(step.fresh);
    step.operation->onLibrary({}, {m_values[step.d], m_values[step.a], m_values[step.b], fresh, step.n});
    step.operation->onModel({}, operands);
    return true;
  }

  void DropLargeValues() {
    for (size_t i = 0; i < kHandles; ++i) {
      if (model::Size(m_models[i].node) <= kMaxSize) continue;
      m_models[i] = {};
      m_values[i].Clean();
    }
  }

  bool Agree() const {
    Correspondence same;
    for (size_t i = 0; i < kHandles; ++i)
      if (!same.Holds(m_values[i].New(), m_models[i].node)) return false;
    return true;
  }

  const CLOMAdsLispVar& Held(size_t handle) const { return m_values[handle]; }

  // What the handles hold, and what they should hold.
  std::string Report() const {
    std::ostringstream out;
    bool haveSameContent = true;
    for (size_t i = 0; i < kHandles; ++i) {
      const model::Value value = model::FromLibrary(m_values[i]);
      const bool isExpected = model::Same(value.node, m_models[i].node);
      haveSameContent = haveSameContent && isExpected;
      out << "\nh" << i << ": " << value;
      if (!isExpected) out << "   expected: " << m_models[i];
    }
    if (haveSameContent) out << "\nNodes are shared that should not be, or the other way round.";
    return out.str();
  }

 private:
  std::array<CLOMAdsLispVar, kHandles> m_values;
  std::array<model::Value, kHandles> m_models;
};

}  // namespace lomlisp::test::shared_handles
