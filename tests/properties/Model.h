// A plain model of LISP values and of the list operations, against which the library is held.
//
// Its nodes are shared, copied and changed in place exactly as the library's are, but everything is
// done in the simplest way: by recursion, on vectors, without a thought for the cost. It is meant
// for small values.
#pragma once

#include <tests/listops/Values.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace lomlisp::test::model {

// --- Nodes ---

struct NilAtom {
  friend bool operator==(const NilAtom&, const NilAtom&) = default;
};
struct EntityName {
  __int64 words[2] = {0, 0};
  friend bool operator==(const EntityName&, const EntityName&) = default;
};

// What an atom holds: RTNIL, RTSHORT, RTLONG, RTINT64, RTREAL, RTSTR, RTENAME.
using Scalar = std::variant<NilAtom, short, int32_t, __int64, double, std::wstring, EntityName>;

enum class Kind { List, Atom, Dotted };

struct Node;
using Link = std::shared_ptr<Node>;  // null is nil

struct Node {
  Kind kind = Kind::List;
  std::vector<Link> members{};
  Scalar atom{};
};

inline Link MakeList(std::vector<Link> members) {
  return std::make_shared<Node>(Node{Kind::List, std::move(members), {}});
}
inline Link MakeDotted(std::vector<Link> members) {
  return std::make_shared<Node>(Node{Kind::Dotted, std::move(members), {}});
}
inline Link MakeAtom(Scalar atom) { return std::make_shared<Node>(Node{Kind::Atom, {}, std::move(atom)}); }

inline bool IsKind(const Link& node, Kind kind) { return node != nullptr && node->kind == kind; }

// A node that occurs twice is copied twice.
inline Link DeepCopy(const Link& node) {
  if (node == nullptr) return nullptr;
  auto copy = std::make_shared<Node>(*node);
  for (Link& member : copy->members) member = DeepCopy(member);
  return copy;
}

inline bool Reaches(const Link& from, const Link& node) {
  if (from == nullptr || node == nullptr) return false;
  return from == node ||
         std::ranges::any_of(from->members, [&](const Link& member) { return Reaches(member, node); });
}

// How many nodes there are, one that occurs twice counted twice.
inline size_t Size(const Link& node) {
  if (node == nullptr) return 1;
  size_t size = 1;
  for (const Link& member : node->members) size += Size(member);
  return size;
}

// nil, a list, or a dotted list like (a . (b c)).
inline bool IsProperList(const Link& node) {
  if (node == nullptr || node->kind == Kind::List) return true;
  return node->kind == Kind::Dotted && node->members.size() >= 2 && IsKind(node->members[1], Kind::List);
}

// The members of a proper list as LISP reads it: (a . (b c)) has three.
inline std::vector<Link> MembersOf(const Link& list) {
  if (list == nullptr) return {};
  if (list->kind == Kind::List) return list->members;
  std::vector<Link> members = list->members[1]->members;
  members.insert(members.begin(), list->members[0]);
  return members;
}

// --- Equality ---

inline std::optional<__int64> AsInteger(const Scalar& atom) {
  return std::visit(
      [](const auto& value) -> std::optional<__int64> {
        if constexpr (std::is_integral_v<std::decay_t<decltype(value)>>)
          return value;
        else
          return std::nullopt;
      },
      atom);
}

inline std::optional<double> AsReal(const Scalar& atom) {
  if (const double* real = std::get_if<double>(&atom)) return *real;
  const std::optional<__int64> integer = AsInteger(atom);
  return integer ? std::optional(static_cast<double>(*integer)) : std::nullopt;
}

// Integers are equal exactly, other numbers within the tolerance, of which 0.0 means 1e-9.
inline bool EqualAtoms(const Scalar& a, const Scalar& b, double tolerance) {
  if (AsInteger(a) && AsInteger(b)) return *AsInteger(a) == *AsInteger(b);
  if (AsReal(a) && AsReal(b))
    return std::fabs(*AsReal(a) - *AsReal(b)) <= (tolerance == 0.0 ? 1e-9 : tolerance);
  return a == b;
}

inline bool Equal(const Link& a, const Link& b, double tolerance = 0.0) {
  if (a == nullptr || b == nullptr) return a == b;
  if (a->kind != b->kind) return false;
  if (a->kind == Kind::Atom) return EqualAtoms(a->atom, b->atom, tolerance);
  return std::ranges::equal(a->members, b->members,
                            [&](const Link& x, const Link& y) { return Equal(x, y, tolerance); });
}

// The same shape with the same atoms, types included.
inline bool Same(const Link& a, const Link& b) {
  if (a == nullptr || b == nullptr) return a == b;
  return a->kind == b->kind && a->atom == b->atom && std::ranges::equal(a->members, b->members, Same);
}

// --- Text, in which a failing case is shown ---

inline std::string RealText(double value) {
  char digits[32];
  std::string text(digits, std::to_chars(digits, std::end(digits), value).ptr);
  return text.find_first_of(".en") == std::string::npos ? text + ".0" : text;
}

inline std::string AtomText(const Scalar& atom) {
  struct Writer {
    std::string operator()(NilAtom) const { return "RTNIL"; }
    std::string operator()(short value) const { return std::to_string(value); }
    std::string operator()(int32_t value) const { return std::to_string(value) + "L"; }
    std::string operator()(__int64 value) const { return std::to_string(value) + "I64"; }
    std::string operator()(double value) const { return RealText(value); }
    std::string operator()(const std::wstring& value) const { return '"' + Utf8(value) + '"'; }
    std::string operator()(const EntityName& value) const {
      return "<" + std::to_string(value.words[0]) + "," + std::to_string(value.words[1]) + ">";
    }
  };
  return std::visit(Writer{}, atom);
}

// Braces are a dotted list.
inline std::string NodeText(const Link& node) {
  if (node == nullptr) return "nil";
  if (node->kind == Kind::Atom) return AtomText(node->atom);
  std::string text;
  for (const Link& member : node->members) text += (text.empty() ? "" : " ") + NodeText(member);
  return node->kind == Kind::Dotted ? "{" + text + "}" : "(" + text + ")";
}

// --- The handle, with the members that change it ---

struct Value {
  Link node{};

  Value& Car() {
    if (!IsListOfMembers()) return *this;
    return Become(node->members.empty() ? nullptr : node->members.front());
  }
  Value& Cdr(bool forceCopy) {
    if (!IsListOfMembers()) return *this;
    std::vector<Link>& members = node->members;
    if (node->kind == Kind::Dotted && members.size() == 2) return Become(members.back());
    if (members.size() < 2) return Become(nullptr);
    if (forceCopy || node.use_count() != 1) return Become(MakeList({members.begin() + 1, members.end()}));
    members.erase(members.begin());
    return *this;
  }
  Value& Nth(unsigned int n) {
    if (!IsProperList(node)) return *this;
    const std::vector<Link> members = MembersOf(node);
    if (n > members.size()) return *this;
    return Become(n == members.size() ? nullptr : members[n]);
  }
  Value& Last() {
    if (node == nullptr || !IsProperList(node) || node->members.size() < 2) return *this;
    return Become(node->members.back());
  }
  Value& Head(int n) {
    if (n == 0 || node == nullptr) return Become(nullptr);
    Link copy = DeepCopy(node);
    const size_t count = static_cast<size_t>(n) + 1;
    if (n > 0 && count < copy->members.size()) copy->members.resize(count);
    return Become(std::move(copy));
  }

  Value& Cons(const Value& second) {
    if (IsKind(second.node, Kind::Atom)) return Become(MakeDotted({node, second.node}));
    if (IsKind(second.node, Kind::Dotted)) return Become(MakeList({node, second.node}));
    std::vector<Link> members = second.node != nullptr ? second.node->members : std::vector<Link>();
    members.insert(members.begin(), node);
    return Become(MakeList(std::move(members)));
  }
  // A list takes this value into its own node.
  Value& Cons(Value&& second) {
    if (!IsKind(second.node, Kind::List)) return Cons(second);
    const Link first = Reaches(node, second.node) ? DeepCopy(node) : node;
    second.node->members.insert(second.node->members.begin(), first);
    return Become(second.node);
  }
  Value& List() { return Become(MakeList({node})); }
  Value& Append(const Value& b) {
    if (!IsProperList(node) || !IsProperList(b.node) || b.node == nullptr) return *this;
    if (node == nullptr) return Become(b.node);
    const bool isSoleOwner = node.use_count() == 1;
    std::vector<Link> added = b.node->members;
    if (added.empty()) added = {&b == this ? MakeList({}) : b.node};
    if (!isSoleOwner) node = DeepCopy(node);
    node->members.insert(node->members.end(), added.begin(), added.end());
    return *this;
  }
  Value& NConc(const Value& b) { return Append(b); }
  Value& Reverse(bool forceCopy) {
    if (node == nullptr || !IsProperList(node)) return *this;
    if (forceCopy) node = DeepCopy(node);
    std::ranges::reverse(node->members);
    return *this;
  }

  // The members of a copy of the value, which an atom has none of, take the place of the first
  // member, or of the last one; but a dotted list takes the copy itself as its cdr.
  Value& RplaCa(const Value& value) {
    if (!IsListOfMembers()) return *this;
    const Link copy = DeepCopy(value.node);
    std::vector<Link>& members = node->members;
    if (!members.empty()) members.erase(members.begin());
    if (copy != nullptr) members.insert(members.begin(), copy->members.begin(), copy->members.end());
    return *this;
  }
  Value& RplaCd(const Value& value) {
    if (!IsListOfMembers()) return *this;
    const Link copy = DeepCopy(value.node);
    std::vector<Link>& members = node->members;
    if (!members.empty()) members.pop_back();
    if (node->kind == Kind::Dotted)
      members.push_back(copy);
    else if (copy != nullptr)
      members.insert(members.end(), copy->members.begin(), copy->members.end());
    return *this;
  }
  // Only for lists of short integers; everything else stays.
  Value& Sort() {
    if (IsKind(node, Kind::List))
      std::ranges::sort(node->members, {}, [](const Link& member) { return std::get<short>(member->atom); });
    return *this;
  }

  friend std::ostream& operator<<(std::ostream& out, const Value& value) {
    return out << NodeText(value.node);
  }

 private:
  bool IsListOfMembers() const { return node != nullptr && node->kind != Kind::Atom; }
  Value& Become(Link other) {
    node = std::move(other);
    return *this;
  }
};

inline Value AtomValue(Scalar atom) { return {MakeAtom(std::move(atom))}; }

inline std::vector<Link> LinksOf(const std::vector<Value>& values) {
  std::vector<Link> links;
  for (const Value& value : values) links.push_back(value.node);
  return links;
}
inline Value ListValue(const std::vector<Value>& members) { return {MakeList(LinksOf(members))}; }
inline Value DottedValue(const std::vector<Value>& members) { return {MakeDotted(LinksOf(members))}; }

// --- The functions on values ---

struct Lisp {
  static Value Car(Value list) { return IsKind(list.node, Kind::Atom) ? Value() : list.Car(); }
  static Value Cdr(Value list) { return IsKind(list.node, Kind::Atom) ? Value() : list.Cdr(true); }
  static Value Nth(unsigned int n, Value list) { return IsRefused(list) ? Value() : list.Nth(n); }
  // The position wraps behind the first member.
  static Value NthReversed(unsigned int n, const Value& list) {
    if (IsRefused(list)) return {};
    return Nth(static_cast<unsigned int>(MembersOf(list.node).size()) - 1 - n, list);
  }
  static Value Last(Value list) { return IsRefused(list) ? Value() : list.Last(); }
  static Value Head(int n, Value list) { return list.Head(n); }

  static Value Cons(Value first, const Value& second) { return first.Cons(second); }
  template <class... Values>
  static Value List(const Values&... values) {
    return {MakeList({values.node...})};
  }
  static Value Append(Value a, const Value& b) {
    return IsProperList(a.node) && IsProperList(b.node) ? a.Append(b) : Value();
  }
  static Value NConc(Value& a, const Value& b) { return a.NConc(b); }
  static Value Reverse(Value list) { return IsRefused(list) ? Value() : list.Reverse(true); }

  static Value RplaCa(Value& list, const Value& value) { return list.RplaCa(value); }
  static Value RplaCd(Value& list, const Value& value) { return list.RplaCd(value); }
  static Value Sort(Value list) { return list.Sort(); }

  static void SetQ(Value& target, const Value& value) { target.node = value.node; }
  // Assignments of what Cdr, Cons and Reverse give, in place when the target is their own list.
  static void SetQCdr(Value& target, const Value& list) {
    if (&target == &list && !IsKind(list.node, Kind::Atom))
      target.Cdr(false);
    else
      target = Cdr(list);
  }
  static void SetQCons(Value& target, Value first, const Value& second) {
    if (&target == &second)
      target = first.Cons(Value(second));
    else
      target = first.Cons(second);
  }
  static void SetQReverse(Value& target, const Value& list) {
    if (&target == &list && IsProperList(list.node))
      target.Reverse(false);
    else
      target = Reverse(list);
  }

  // Copies of the members, and the value itself.
  static Value AddNth(int n, const Value& value, const Value& list) {
    if (!IsProperList(list.node)) return {};
    std::vector<Link> members = CopiesOfMembers(list);
    if (n > static_cast<int>(members.size())) return {};
    members.insert(members.begin() + std::max(n, 0), value.node);
    return ListOrNil(std::move(members));
  }
  static Value DeleteNth(int n, const Value& list) {
    if (!IsProperList(list.node)) return {};
    std::vector<Link> members = CopiesOfMembers(list);
    if (n >= static_cast<int>(members.size())) return {};
    if (n >= 0) members.erase(members.begin() + n);
    return ListOrNil(std::move(members));
  }
  static Value SubstNth(int n, const Value& value, const Value& list) {
    if (n < 0) return AddNth(n, value, list);
    if (!IsProperList(list.node)) return {};
    std::vector<Link> members = CopiesOfMembers(list);
    if (n >= static_cast<int>(members.size())) return {};
    members[static_cast<size_t>(n)] = value.node;
    return ListOrNil(std::move(members));
  }
  static Value Subst(const Value& newValue, const Value& oldValue, const Value& list) {
    if (!IsProperList(list.node)) return {};
    std::vector<Link> members = MembersOf(list.node);
    for (Link& member : members) member = Equal(member, oldValue.node) ? newValue.node : DeepCopy(member);
    return ListOrNil(std::move(members));
  }
  // The members themselves.
  static Value Insert(const Value& list, const Value& children, int n) {
    if (!IsProperList(list.node) || !IsProperList(children.node)) return {};
    std::vector<Link> members = MembersOf(list.node);
    const std::vector<Link> inserted = MembersOf(children.node);
    const int position = std::clamp(n, 0, static_cast<int>(members.size()));
    members.insert(members.begin() + position, inserted.begin(), inserted.end());
    return {MakeList(std::move(members))};
  }
  static Value Delete(const Value& value, const Value& list) {
    if (!IsProperList(list.node) || list.node == nullptr || list.node->members.empty()) return {};
    std::vector<Link> members = list.node->members;
    std::erase_if(members, [&](const Link& member) { return Equal(member, value.node); });
    return {MakeList(std::move(members))};
  }

  static Value Assoc(const Value& key, const Value& list) {
    if (!IsKind(list.node, Kind::List)) return {};
    for (const Link& pair : list.node->members)
      if (pair != nullptr && !pair->members.empty() && Equal(pair->members.front(), key.node)) return {pair};
    return {};
  }
  static Value Member(const Value& value, Value list) {
    if (!IsProperList(list.node)) return {};
    while (list.node != nullptr && !Equal(value.node, Car(list).node)) list.Cdr(false);
    return list;
  }

 private:
  static bool IsRefused(const Value& list) { return list.node == nullptr || !IsProperList(list.node); }
  static std::vector<Link> CopiesOfMembers(const Value& list) {
    std::vector<Link> members = MembersOf(list.node);
    for (Link& member : members) member = DeepCopy(member);
    return members;
  }
  static Value ListOrNil(std::vector<Link> members) {
    return members.empty() ? Value() : Value{MakeList(std::move(members))};
  }
};

// --- To the library and back ---

inline CLOMAdsLispVar AtomToLibrary(const Scalar& atom) {
  struct Maker {
    CLOMAdsLispVar operator()(NilAtom) const { return test::NilAtom(); }
    CLOMAdsLispVar operator()(short value) const { return value; }
    CLOMAdsLispVar operator()(int32_t value) const { return static_cast<long>(value); }
    CLOMAdsLispVar operator()(__int64 value) const { return value; }
    CLOMAdsLispVar operator()(double value) const { return value; }
    CLOMAdsLispVar operator()(const std::wstring& value) const { return value; }
    CLOMAdsLispVar operator()(const EntityName& value) const { return value.words; }
  };
  return std::visit(Maker{}, atom);
}

// A new tree, in which nothing is shared.
inline CLOMAdsLispVar ToLibrary(const Link& node) {
  if (node == nullptr) return {};
  if (node->kind == Kind::Atom) return AtomToLibrary(node->atom);
  auto element = std::make_shared<CLOMLispElement>();
  element->dotted = node->kind == Kind::Dotted ? 1 : 0;
  for (const Link& member : node->members) element->children.push_back(ToLibrary(member).New());
  return NodeHandle(std::move(element));
}
inline CLOMAdsLispVar ToLibrary(const Value& value) { return ToLibrary(value.node); }

// A type that the model does not know becomes a text that names it.
inline Scalar AtomFromLibrary(const ResBuf& atom) {
  switch (atom.Type()) {
    case RTNIL:
      return NilAtom{};
    case RTSHORT:
      return atom.resval.rint;
    case RTLONG:
      return atom.resval.rlong;
    case RTINT64:
      return atom.resval.mnInt64;
    case RTREAL:
      return atom.resval.rreal;
    case RTSTR:
      return std::wstring(atom.resval.rstring != nullptr ? atom.resval.rstring : L"<null>");
    case RTENAME:
      return EntityName{{atom.resval.rlname[0], atom.resval.rlname[1]}};
    default:
      return L"<type " + std::to_wstring(atom.Type()) + L">";
  }
}

// A node within itself, which no value may have, becomes a text that says so.
inline Link FromLibrary(const Element& element, std::vector<const CLOMLispElement*> around = {}) {
  if (element == nullptr) return nullptr;
  if (element->Kind() == CLOMLispElement::Atom) return MakeAtom(AtomFromLibrary(element->atom));
  if (std::ranges::find(around, element.get()) != around.end()) return MakeAtom(std::wstring(L"<cycle>"));
  around.push_back(element.get());
  std::vector<Link> members;
  for (const Element& child : element->children) members.push_back(FromLibrary(child, around));
  const bool isDotted = element->Kind() == CLOMLispElement::DottedList;
  return isDotted ? MakeDotted(std::move(members)) : MakeList(std::move(members));
}
inline Value FromLibrary(const CLOMAdsLispVar& value) { return {FromLibrary(value.New())}; }

}  // namespace lomlisp::test::model
