// What equality, order, sorting, inheritance, search and formatting have to do with each other and
// with the standard library.
#include <tests/properties/Generators.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <iterator>
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace lomlisp::test {

using RelationsOfEquality = PropertyTest;
using RelationsOfOrder = PropertyTest;
using RelationsOfSort = PropertyTest;
using RelationsOfInheritance = PropertyTest;
using RelationsOfSearch = PropertyTest;
using RelationsOfFormat = PropertyTest;

namespace {

std::vector<Element> ChildrenOf(const CLOMAdsLispVar& list) {
  if (list.New() == nullptr) return {};
  return {list.New()->children.begin(), list.New()->children.end()};
}

// --- Equality ---

// The same value, but integers have become reals that are equal within the tolerance.
model::Value Retyped(const model::Value& value) {
  const model::Value copy{model::DeepCopy(value.node)};
  if (copy.node == nullptr) return copy;
  if (const auto* integer = std::get_if<short>(&copy.node->atom)) copy.node->atom = *integer + 2e-10;
  for (model::Link& member : copy.node->members) member = Retyped({member}).node;
  return copy;
}

// --- Order ---

template <class T>
Gen<std::pair<T, T>> TwoOf(Gen<T> data) {
  return rc::gen::oneOf(rc::gen::pair(data, data),
                        rc::gen::map(data, [](const T& value) { return std::pair(value, value); }));
}

template <class T>
void ExpectOrderOf(const std::pair<T, T>& data) {
  const auto& [a, b] = data;
  const CLOMAdsLispVar x = model::AtomToLibrary(a), y = model::AtomToLibrary(b);
  RC_ASSERT((x < y) == (a < b));
  RC_ASSERT((x <= y) == (a <= b));
  RC_ASSERT((x > y) == (a > b));
  RC_ASSERT((x >= y) == (a >= b));
  RC_ASSERT((x == y) == (a == b));
  RC_ASSERT((x != y) == (a != b));
}

// --- Sorting ---

// Sorts the list in one of the two forms, and gives the members as another handle on it sees them,
// which must be those that it had.
std::vector<Element> Sorted(const model::Value& source, bool byMember) {
  CLOMAdsLispVar list = model::ToLibrary(source);
  const CLOMAdsLispVar other = list;
  std::vector<Element> before = ChildrenOf(list);
  const CLOMAdsLispVar given = byMember ? list.Sort() : CLOMAdsLisp::Sort(list);
  ExpectSameNodes({given.New(), list.New()}, {other.New(), other.New()});
  std::vector<Element> after = ChildrenOf(other);
  std::ranges::sort(before);
  std::ranges::sort(after);
  ExpectSameNodes(after, before);
  return ChildrenOf(other);
}

template <class Key>
Key KeyOf(const Element& entry) {
  const Element& key = entry->children.empty() ? entry : entry->children.front();
  return std::get<Key>(model::AtomFromLibrary(key->atom));
}

template <class Key>
void ExpectSortOf(const ValueGen& keys) {
  const ValueGen entries = Pairs(keys, Atoms(AnyNumber<short>()));
  const auto source = *rc::gen::oneOf(Lists(keys, 60), Lists(entries, 60)).as("list to sort");
  const std::vector<Element> members = Sorted(source, *rc::gen::arbitrary<bool>().as("by the member"));
  if (!std::ranges::is_sorted(members, {}, KeyOf<Key>)) RC_FAIL("not ascending:" + NodesText(members));
}

// --- Inheritance ---

// An association list without entries may also be nil.
template <class Key>
ValueGen Associations(Gen<Key> keys) {
  return rc::gen::weightedOneOf<model::Value>(
      {{5, SortedAssociations(std::move(keys))}, {1, rc::gen::just(model::Value())}});
}

template <class Key>
std::map<Key, Element> EntriesOf(const CLOMAdsLispVar& associations) {
  std::map<Key, Element> entries;
  for (const Element& entry : ChildrenOf(associations)) entries.emplace(KeyOf<Key>(entry), entry);
  return entries;
}

template <class Key>
void ExpectInheritance(const Gen<Key>& keys) {
  const CLOMAdsLispVar own = model::ToLibrary(*Associations(keys).as("own"));
  const CLOMAdsLispVar inherited = model::ToLibrary(*Associations(keys).as("inherited"));
  std::map<Key, Element> merged = EntriesOf<Key>(own);
  merged.merge(EntriesOf<Key>(inherited));
  std::vector<Element> expected;
  for (const auto& [key, entry] : merged) expected.push_back(entry);

  const CLOMAdsLispVar result = CLOMAdsLisp::Inherit(own, inherited);
  ExpectSameNodes(ChildrenOf(result), expected);
  if (ChildrenOf(own).empty())
    ExpectSameNodes({result.New()}, {inherited.New()});
  else if (ChildrenOf(inherited).empty())
    ExpectSameNodes({result.New()}, {own.New()});
}

template <class Key>
void ExpectInheritanceStatus(const Gen<Key>& keys) {
  const CLOMAdsLispVar own = model::ToLibrary(*Associations(keys).as("own"));
  const CLOMAdsLispVar inherited = model::ToLibrary(*Associations(keys).as("inherited"));
  std::map<Key, short> status;
  for (const auto& [key, entry] : EntriesOf<Key>(inherited)) status[key] = 0;
  for (const auto& [key, entry] : EntriesOf<Key>(own)) status[key] = status.contains(key) ? 1 : 2;
  std::vector<model::Value> expected;
  for (const auto& [key, number] : status)
    expected.push_back(model::DottedValue({model::AtomValue(key), model::AtomValue(number)}));

  const model::Value result = model::FromLibrary(CLOMAdsLisp::InheritanceStatus(own, inherited));
  ExpectSame(result, expected.empty() ? model::Value() : model::ListValue(expected));
}

// --- Search ---

// The position of the first member that meets the condition, or -1.
template <class Condition>
int Find(const model::Value& list, Condition condition) {
  const std::vector<model::Link>& members = list.node->members;
  const auto found = std::ranges::find_if(members, condition);
  return found != members.end() ? static_cast<int>(found - members.begin()) : -1;
}

bool HasMembers(const model::Link& node) { return node != nullptr && !node->members.empty(); }

// What a search looks for: any value, or something that the list holds as a member or as a key.
ValueGen Wanted(const model::Value& list) {
  std::vector<model::Value> held = {model::AtomValue(short{1})};
  for (const model::Link& member : list.node->members) {
    held.push_back({member});
    if (HasMembers(member)) held.push_back({member->members.front()});
  }
  return rc::gen::oneOf(SimilarValues(1), rc::gen::elementOf(std::move(held)));
}

// An empty list has no members, but nil as its first one.
bool IsNilInEmpty(const model::Value& wanted, const model::Value& list) {
  return wanted.node == nullptr && list.node->members.empty();
}

// --- Formatting ---

// A piece of a format: text, and behind it a directive with its value.
struct Piece {
  std::wstring literal;
  std::string flags;
  int width = 0;      // 0: none
  int precision = 0;  // 0: none
  char conversion = 'd';
  model::Value value{};

  std::string Directive() const {
    std::string text = "%" + flags;
    if (width != 0) text += std::to_string(width);
    if (precision != 0) text += "." + std::to_string(precision);
    return text + conversion;
  }
};

std::wstring Widened(const std::string& text) { return {text.begin(), text.end()}; }

// The literal with each percent sign doubled, and the directive.
std::wstring FormatOf(const Piece& piece) {
  std::wstring format;
  for (const wchar_t character : piece.literal) format += character == L'%' ? L"%%" : std::wstring{character};
  return format + Widened(piece.Directive());
}

std::ostream& operator<<(std::ostream& out, const Piece& piece) {
  return out << '"' << Utf8(FormatOf(piece)) << "\" of " << piece.value;
}

template <class T>
std::string Formatted(const std::string& directive, T value) {
  std::vector<char> text(2048);
  const int length = std::snprintf(text.data(), text.size(), directive.c_str(), value);
  return std::string(text.data(), static_cast<size_t>(length));
}

std::wstring ExpectedText(const Piece& piece) {
  const model::Scalar& value = piece.value.node->atom;
  if (const auto* text = std::get_if<std::wstring>(&value)) return piece.literal + *text;
  const std::string directive = piece.Directive();
  if (const auto* real = std::get_if<double>(&value))
    return piece.literal + Widened(Formatted(directive, *real));
  const int number = static_cast<int>(*model::AsInteger(value));
  if (piece.conversion == 'd' || piece.conversion == 'i')
    return piece.literal + Widened(Formatted(directive, number));
  return piece.literal + Widened(Formatted(directive, static_cast<unsigned int>(number)));
}

Gen<std::string> Flags(const std::string& flags) {
  return rc::gen::resize(4, rc::gen::container<std::string>(rc::gen::elementOf(flags)));
}

Gen<std::wstring> Literals() {
  return rc::gen::resize(
      6, rc::gen::container<std::wstring>(rc::gen::elementOf(std::wstring(L"ad5 -.%\u00FC"))));
}

Gen<int> NoneOr(int last) { return rc::gen::oneOf(rc::gen::just(0), InRange(1, last)); }

Gen<Piece> Directives(const std::string& conversions, const std::string& flags, Gen<int> width,
                      Gen<int> precision, ValueGen values) {
  return rc::gen::build<Piece>(
      rc::gen::set(&Piece::literal, Literals()), rc::gen::set(&Piece::flags, Flags(flags)),
      rc::gen::set(&Piece::width, std::move(width)), rc::gen::set(&Piece::precision, std::move(precision)),
      rc::gen::set(&Piece::conversion, rc::gen::elementOf(conversions)),
      rc::gen::set(&Piece::value, std::move(values)));
}

// Integers of 16 bits, and of 32 bits in an atom that holds them.
ValueGen Integers() {
  return rc::gen::oneOf(
      Atoms(AnyNumber<short>()),
      Atoms(rc::gen::map(AnyNumber<int32_t>(), [](int32_t value) { return static_cast<__int64>(value); })));
}

// The directives that mean the same in C: there, integers and texts may also have a precision, and
// texts a width.
Gen<Piece> Pieces() {
  const Gen<int> none = rc::gen::just(0);
  return rc::gen::oneOf(Directives("di", "-+ 0", NoneOr(60), none, Integers()),
                        Directives("uxo", "-0", NoneOr(60), none, Integers()),
                        Directives("fe", "-+ 0", NoneOr(60), NoneOr(20), Atoms(AnyReal())),
                        Directives("s", "-", none, none, Atoms(AnyText(20))));
}

}  // namespace

RC_GTEST_FIXTURE_PROP(RelationsOfEquality, AgreesWithAPlainComparison, ()) {
  const auto a = *SimilarValues(2).as("a");
  const auto b = *rc::gen::oneOf(SimilarValues(2), rc::gen::just(Retyped(a))).as("b");
  const auto tolerance = *rc::gen::element(0.0, 1e-3, 0.6).as("tolerance");
  const CLOMAdsLispVar x = model::ToLibrary(a), y = model::ToLibrary(b);
  const bool areEqual = model::Equal(a.node, b.node, tolerance);
  RC_ASSERT(x.Equal(y, tolerance) == areEqual);
  RC_ASSERT(y.Equal(x, tolerance) == areEqual);
  RC_ASSERT(CLOMAdsLisp::Equal(x, y, tolerance) == areEqual);
  RC_ASSERT(CLOMAdsLispVar::isEqual(x.New(), y.New(), tolerance) == areEqual);
  RC_ASSERT((x == y) == model::Equal(a.node, b.node));
  RC_ASSERT((x != y) == !model::Equal(a.node, b.node));
  RC_ASSERT(Printed() == "");
}

RC_GTEST_FIXTURE_PROP(RelationsOfEquality, IsReflexive, ()) {
  const auto a = *Values(NilOr(ChainAtoms()), DottedLists::AnyLength, 3);
  const CLOMAdsLispVar value = model::ToLibrary(a);
  RC_ASSERT(value == value);
  RC_ASSERT(value == model::ToLibrary(a));
  RC_ASSERT(value.Eq(value));
  RC_ASSERT(Printed() == "");
}

RC_GTEST_FIXTURE_PROP(RelationsOfOrder, OfAtomsIsThatOfTheirValues, ()) {
  ExpectOrderOf(*TwoOf(AnyNumber<short>()));
  ExpectOrderOf(*TwoOf(InRange<short>(-2, 2)));
  ExpectOrderOf(*TwoOf(AnyNumber<int32_t>()));
  ExpectOrderOf(*TwoOf(AnyNumber<__int64>()));
  ExpectOrderOf(*TwoOf(TextKeys()));
  ExpectOrderOf(*TwoOf(AnyText(20)));
  RC_ASSERT(Printed() == "");
}

RC_GTEST_FIXTURE_PROP(RelationsOfSort, OfOneKindOfKeysAscends, ()) {
  ExpectSortOf<short>(Atoms(InRange<short>(-20, 20)));
  ExpectSortOf<short>(Atoms(AnyNumber<short>()));
  ExpectSortOf<__int64>(Atoms(AnyNumber<__int64>()));
  ExpectSortOf<double>(Atoms(AnyReal()));
  ExpectSortOf<std::wstring>(Atoms(AnyText(5)));
  RC_ASSERT(Printed() == "");
}

RC_GTEST_FIXTURE_PROP(RelationsOfSort, OfAnythingIsAPermutation, ()) {
  const auto source = *Lists(SimilarValues(2), 40).as("list");
  Sorted(source, true);
  Sorted(source, false);
}

RC_GTEST_FIXTURE_PROP(RelationsOfInheritance, IsTheUnionInWhichTheOwnEntriesWin, ()) {
  ExpectInheritance(ShortKeys());
  ExpectInheritance(TextKeys());
  RC_ASSERT(Printed() == "");
}

RC_GTEST_FIXTURE_PROP(RelationsOfInheritance, StatusTellsWhichListsHoldTheKey, ()) {
  ExpectInheritanceStatus(ShortKeys());
  ExpectInheritanceStatus(TextKeys());
  RC_ASSERT(Printed() == "");
}

RC_GTEST_FIXTURE_PROP(RelationsOfSearch, OfMembersFindsTheFirstEqualOne, ()) {
  const auto source = *Lists(SimilarValues(1), 8).as("list");
  const auto wanted = *Wanted(source).as("wanted");
  if (IsNilInEmpty(wanted, source)) return;
  const int expected =
      Find(source, [&](const model::Link& member) { return model::Equal(wanted.node, member); });
  const CLOMAdsLispVar list = model::ToLibrary(source);
  const CLOMAdsLispVar value = model::ToLibrary(wanted);
  RC_ASSERT(CLOMAdsLisp::Position(value, list) == expected);

  const CLOMAdsLispVar tail = CLOMAdsLisp::Member(value, list);
  const std::vector<Element> members = ChildrenOf(list);
  const std::ptrdiff_t start = expected < 0 ? std::ssize(members) : expected;
  ExpectSameNodes(ChildrenOf(tail), {members.begin() + start, members.end()});
  RC_ASSERT((tail.New() == nullptr) == (expected < 0));
  RC_ASSERT((tail.New() == list.New()) == (expected == 0));
  ExpectSame(list, source);
  RC_ASSERT(Printed() == "");
}

RC_GTEST_FIXTURE_PROP(RelationsOfSearch, OfKeysFindsTheFirstEqualOne, ()) {
  const auto source = *Lists(SimilarValues(2), 8).as("list");
  const auto wanted = *Wanted(source).as("wanted");
  if (IsNilInEmpty(wanted, source)) return;
  const CLOMAdsLispVar list = model::ToLibrary(source);
  const CLOMAdsLispVar key = model::ToLibrary(wanted);

  const int ofPair = Find(source, [&](const model::Link& member) {
    return HasMembers(member) && model::Equal(member->members.front(), wanted.node);
  });
  const CLOMAdsLispVar pair = CLOMAdsLisp::Assoc(key, list);
  RC_ASSERT(Printed() == "");
  ExpectSameNodes({pair.New()}, {ofPair < 0 ? nullptr : ChildrenOf(list)[static_cast<size_t>(ofPair)]});

  // What has no first member has nil as its key.
  const int ofKey = Find(source, [&](const model::Link& member) {
    return model::Equal(HasMembers(member) ? member->members.front() : nullptr, wanted.node);
  });
  RC_ASSERT(CLOMAdsLisp::Index(key, list) == ofKey);
  ExpectSame(list, source);
}

RC_GTEST_FIXTURE_PROP(RelationsOfFormat, AgreesWithTheStandardLibrary, ()) {
  const auto pieces = *rc::gen::resize(8, rc::gen::container<std::vector<Piece>>(Pieces())).as("format");
  std::wstring format, expected;
  CArray<CLOMAdsLispVar, CLOMAdsLispVar> values;
  for (const Piece& piece : pieces) {
    format += FormatOf(piece);
    expected += ExpectedText(piece);
    values.Add(model::ToLibrary(piece.value));
  }
  CLOMAdsLispVar result(L"");
  RC_ASSERT(CLOMAdsLispVar::Format(result, format.c_str(), values) == static_cast<int>(pieces.size()));
  RC_ASSERT(result.StringP());
  RC_ASSERT(Utf8(result.GetAtom().resval.rstring) == Utf8(expected));
  RC_ASSERT(Printed() == "");
}

}  // namespace lomlisp::test
