// Assoc, Member, Position, Index.

#include <lomlisp/lisp/Equality.h>
#include <lomlisp/lisp/NewNode.h>
#include <lomlisp/listops/CLOMAdsLisp.h>
#include <lomlisp/listops/Echo.h>
#include <lomlisp/listops/Members.h>
#include <lomlisp/listops/messages.h>

#include <utility>

using namespace lomlisp;

namespace {

using Element = CLOMAdsLispVar::Element;

bool AreEqual(const Element& a, const Element& b) { return node::AreEqual(a.get(), b.get(), 0.0); }

// Where a value was found on the way down a list by Cdr.
struct Place {
  Element list;         // the list or, behind the dot of (a . (b c)), its cdr; null: nowhere
  size_t position = 0;  // in that list
  int steps = 0;        // of Cdr up to there
};

// The list is not nil. An empty list has nil as its first member here, because its Car is nil.
Place Find(const Element& value, Element list) {
  int steps = 0;
  for (;;) {
    const ChildSeq& members = list->children;
    if (members.empty()) return AreEqual(value, nullptr) ? Place{list, 0, steps} : Place{};
    const bool goesOnInCdr = list->dotted == 1 && members.size() == 2;
    const size_t count = goesOnInCdr ? 1 : members.size();
    for (size_t i = 0; i < count; ++i, ++steps)
      if (AreEqual(value, members[i])) return {list, i, steps};
    if (!goesOnInCdr) return {};
    list = Element(members[1]);
  }
}

// The list from a position on: itself, or a new list with the rest of the members.
CLOMAdsLispVar Tail(const Element& list, size_t position) {
  if (position == 0) return ValueOf(list);
  auto rest = NewNode();
  const ChildSeq& members = list->children;
  rest->children.insert(rest->children.end(), members.begin() + position, members.end());
  return ValueOf(std::move(rest));
}

}  // namespace

CLOMAdsLispVar CLOMAdsLisp::Assoc(const CLOMAdsLispVar& key, CLOMAdsLispVar alist) {
  if (!AssocListP(alist)) {
    Report(messages::AssocOfOther, alist);
    return Nil;
  }
  if (NilP(alist)) return Nil;
  const Element wanted = key.New();
  const Element list = alist.New();
  for (const Element& pair : list->children)
    if (pair != nullptr && !pair->children.empty() && AreEqual(pair->children.front(), wanted))
      return ValueOf(pair);
  return Nil;
}

CLOMAdsLispVar CLOMAdsLisp::Member(const CLOMAdsLispVar& value, CLOMAdsLispVar list) {
  if (!RealListP(list)) {
    acutPrintf(messages::MemberOfOther);
    return Nil;
  }
  if (NilP(list)) return Nil;
  const Place place = Find(value.New(), list.New());
  return place.list != nullptr ? Tail(place.list, place.position) : Nil;
}

int CLOMAdsLisp::Position(const CLOMAdsLispVar& value, CLOMAdsLispVar list) {
  if (!RealListP(list)) {
    acutPrintf(messages::PositionOfOther);
    return -1;
  }
  if (NilP(list)) return -1;
  const Place place = Find(value.New(), list.New());
  return place.list != nullptr ? place.steps : -1;
}

int CLOMAdsLisp::Index(CLOMAdsLispVar key, CLOMAdsLispVar alist) {
  if (!AssocListP(alist)) {
    acutPrintf(messages::IndexOfOther, L"CLOMAdsLisp::Index");
    PrintLine(alist);
    return -1;
  }
  if (NilP(alist)) return -1;
  const Element list = alist.New();
  const ChildSeq& pairs = list->children;
  int position = 0;
  // An empty list has nil as its first member here, because its Car is nil.
  if (pairs.empty()) return Equal(Car(Nil), key, 0.0) ? position : -1;
  for (const Element& pair : pairs) {
    if (Equal(Car(ValueOf(pair)), key, 0.0)) return position;
    ++position;
  }
  return -1;
}
