// Sort: lists of atoms, and association lists by their keys.

#include <lomlisp/lisp/Node.h>
#include <lomlisp/listops/CLOMAdsLisp.h>
#include <lomlisp/listops/messages.h>
#include <lomlisp/resbuf/Text.h>

#include <algorithm>
#include <utility>
#include <vector>

using namespace lomlisp;

namespace {

using Element = CLOMAdsLispVar::Element;

// What a member is sorted by; null for an entry of an association list without members, which has
// no key.
using Key = const ResBuf*;

Key AtomKey(const Element& atom) { return &atom->atom; }

Key PairKey(const Element& pair) {
  if (pair == nullptr || pair->children.empty()) return nullptr;
  static const ResBuf none;
  const Element& key = pair->children.front();
  return key != nullptr ? &key->atom : &none;
}

// An entry without a key comes before every other one, and every other one before it.
bool ComesBefore(Key a, Key b) { return a == nullptr || b == nullptr || a->Less(*b) != 0; }

template <class Value>
struct Entry {
  Value key;
  Element member;
};

// Merges runs of members, from single ones up. The standard's sorts must be given an order that is
// consistent; here one that is not costs nothing but the order of the result.
template <class Value, class Before>
void MergeRuns(std::vector<Entry<Value>>& entries, Before before) {
  const size_t size = entries.size();
  std::vector<Entry<Value>> merged(size);
  for (size_t width = 1; width < size; width *= 2) {
    for (size_t begin = 0; begin < size; begin += 2 * width) {
      const size_t middle = (std::min)(begin + width, size);
      const size_t end = (std::min)(middle + width, size);
      size_t left = begin;
      size_t right = middle;
      for (size_t target = begin; target < end; ++target) {
        const bool takeRight =
            right < end && (left == middle || before(entries[right].key, entries[left].key));
        merged[target] = std::move(entries[takeRight ? right++ : left++]);
      }
    }
    entries.swap(merged);
  }
}

// `valueOf` gives the value of a key, which is taken out of each member once.
template <class Value, class KeyOf, class ValueOf, class Before>
void SortBy(ChildSeq& members, KeyOf keyOf, ValueOf valueOf, Before before) {
  std::vector<Entry<Value>> entries;
  entries.reserve(members.size());
  for (const Element& member : members) entries.push_back({valueOf(keyOf(member)), member});
  MergeRuns(entries, before);
  for (size_t i = 0; i < entries.size(); ++i) members[i] = std::move(entries[i].member);
}

// The type that all keys have; RTNONE when they differ, when one is missing, or a text is null.
template <class KeyOf>
short CommonType(const ChildSeq& members, KeyOf keyOf) {
  short common = RTNONE;
  for (const Element& member : members) {
    const Key key = keyOf(member);
    const short type = key != nullptr ? key->Type() : RTNONE;
    if (type == RTNONE || (common != RTNONE && type != common)) return RTNONE;
    if (type == RTSTR && key->resval.rstring == nullptr) return RTNONE;
    common = type;
  }
  return common;
}

template <class KeyOf>
void SortMembers(ChildSeq& members, KeyOf keyOf) {
  switch (CommonType(members, keyOf)) {
    case RTREAL:
    case RTANG:
      SortBy<double>(
          members, keyOf, [](Key key) { return key->resval.rreal; }, std::less());
      break;
    case RTSHORT:
    case RTLONG:
    case RTINT64:
      SortBy<__int64>(
          members, keyOf, [](Key key) { return static_cast<__int64>(*key); }, std::less());
      break;
    case RTSTR:
      SortBy<const wchar_t*>(
          members, keyOf, [](Key key) { return key->resval.rstring; },
          [](const wchar_t* a, const wchar_t* b) { return CompareText(a, b) < 0; });
      break;
    default:
      SortBy<Key>(
          members, keyOf, [](Key key) { return key; }, ComesBefore);
      break;
  }
}

}  // namespace

CLOMAdsLispVar& CLOMAdsLispVar::Sort() {
  if (NilP()) return *this;
  if (AtomListP())
    SortMembers(m_element->children, AtomKey);
  else if (AssocListP())
    SortMembers(m_element->children, PairKey);
  else
    acutPrintf(messages::SortOfOther);
  return *this;
}

CLOMAdsLispVar CLOMAdsLisp::Sort(const CLOMAdsLispVar& list) { return CLOMAdsLispVar(list).Sort(); }
