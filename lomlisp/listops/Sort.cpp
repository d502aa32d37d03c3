// Sort: lists of atoms, and association lists by their keys.

#include <lomlisp/lisp/Node.h>
#include <lomlisp/listops/CLOMAdsLisp.h>
#include <lomlisp/listops/messages.h>
#include <lomlisp/resbuf/Text.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <type_traits>
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

// The key of a member, and where the member stands.
template <class Value>
struct Entry {
  Value key;
  size_t position;
};

// Merges runs of entries, from single ones up. The standard's sorts must be given an order that is
// consistent; here one that is not costs nothing but the order of the result.
void SortInAnyOrder(std::vector<Entry<Key>>& entries) {
  const size_t size = entries.size();
  std::vector<Entry<Key>> merged(size);
  for (size_t width = 1; width < size; width *= 2) {
    for (size_t begin = 0; begin < size; begin += 2 * width) {
      const size_t middle = (std::min)(begin + width, size);
      const size_t end = (std::min)(middle + width, size);
      size_t left = begin;
      size_t right = middle;
      for (size_t target = begin; target < end; ++target) {
        const bool takeRight =
            right < end && (left == middle || ComesBefore(entries[right].key, entries[left].key));
        merged[target] = entries[takeRight ? right++ : left++];
      }
    }
    entries.swap(merged);
  }
}

// Sorts by the bits of keys, stable, the least significant byte first: each pass moves the entries into the
// order of one byte. Bytes in which all keys agree need none.
template <class Value, class BitsOf>
void RadixSort(std::vector<Entry<Value>>& entries, BitsOf bitsOf) {
  const auto byteOf = [](uint64_t bits, size_t index) { return static_cast<size_t>(bits >> (index * 8)) & 0xFF; };
  std::array<std::array<size_t, 256>, sizeof(uint64_t)> counts{};
  for (const Entry<Value>& entry : entries)
    for (size_t i = 0; i < counts.size(); ++i) ++counts[i][byteOf(bitsOf(entry.key), i)];

  std::vector<Entry<Value>> moved(entries.size());
  for (size_t i = 0; i < counts.size(); ++i) {
    std::array<size_t, 256>& places = counts[i];
    if (places[byteOf(bitsOf(entries.front().key), i)] == entries.size()) continue;
    size_t next = 0;
    for (size_t& place : places) next += std::exchange(place, next);
    for (const Entry<Value>& entry : entries) moved[places[byteOf(bitsOf(entry.key), i)]++] = entry;
    entries.swap(moved);
  }
}

// With fewer, comparing is faster than counting bytes. The first characters of texts take more of these than
// most numbers do, and larger entries.
constexpr size_t kFewestNumbers = 128;
constexpr size_t kFewestTexts = 10'000;

void SortByBits(std::vector<Entry<uint64_t>>& entries) {
  if (entries.size() >= kFewestNumbers) return RadixSort(entries, [](uint64_t bits) { return bits; });
  std::stable_sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) { return a.key < b.key; });
}

constexpr uint64_t kSign = uint64_t{1} << 63;

// Numbers as bits in the same order.
uint64_t OrderedBits(__int64 number) { return static_cast<uint64_t>(number) ^ kSign; }
uint64_t OrderedBits(double number) {
  const auto bits = std::bit_cast<uint64_t>(number + 0.0);  // -0.0 is 0.0
  return (bits & kSign) != 0 ? ~bits : bits | kSign;
}

// `valueOf` gives the value of a key, which is taken out of each member once.
template <class KeyOf, class ValueOf, class SortEntries>
void SortBy(ChildSeq& members, KeyOf keyOf, ValueOf valueOf, SortEntries sortEntries) {
  std::vector<Entry<std::invoke_result_t<ValueOf, Key>>> entries;
  entries.reserve(members.size());
  for (const Element& member : members) entries.push_back({valueOf(keyOf(member)), entries.size()});
  sortEntries(entries);
  std::vector<Element> sorted;
  sorted.reserve(members.size());
  for (const auto& entry : entries) sorted.push_back(std::move(members[entry.position]));
  std::move(sorted.begin(), sorted.end(), members.begin());
}

// --- Texts: names often begin alike, and what comes then is told apart by a few characters ---

struct TextKey {
  uint64_t beginning;
  const wchar_t* text;

  bool operator<(const TextKey& other) const {
    if (beginning != other.beginning) return beginning < other.beginning;
    return CompareText(text, other.text) < 0;
  }
};

void SortByText(std::vector<Entry<TextKey>>& entries) {
  const auto less = [](const auto& a, const auto& b) { return a.key < b.key; };
  if (entries.size() < kFewestTexts) return std::stable_sort(entries.begin(), entries.end(), less);
  RadixSort(entries, [](const TextKey& key) { return key.beginning; });
  for (auto begin = entries.begin(); begin != entries.end();) {
    const auto end = std::find_if(begin, entries.end(), [&](const auto& entry) {
      return entry.key.beginning != begin->key.beginning;
    });
    std::stable_sort(begin, end, less);
    begin = end;
  }
}

// `a` has at least `most` characters.
size_t CommonLength(const wchar_t* a, const wchar_t* b, size_t most) {
  size_t length = 0;
  while (length < most && a[length] == b[length]) ++length;
  return length;
}

// How many characters all texts begin with.
template <class KeyOf>
size_t CommonBeginning(const ChildSeq& members, KeyOf keyOf) {
  const wchar_t* const first = keyOf(members.front())->resval.rstring;
  size_t length = TextLength(first);
  for (const Element& member : members) length = CommonLength(first, keyOf(member)->resval.rstring, length);
  return length;
}

template <class KeyOf>
void SortByTexts(ChildSeq& members, KeyOf keyOf) {
  const auto textKey = [skipped = CommonBeginning(members, keyOf)](Key key) {
    const wchar_t* const text = key->resval.rstring + skipped;
    return TextKey{FirstUnits(text), text};
  };
  SortBy(members, keyOf, textKey, SortByText);
}

// Whether the value has no place in an order.
bool IsUnordered(const ResBuf& key) {
  if (key.Type() == RTSTR) return key.resval.rstring == nullptr;
  return (key.Type() == RTREAL || key.Type() == RTANG) && std::isnan(key.resval.rreal);
}

// The type that all keys have; RTNONE when they differ, when one is missing, a text is null, or a real is
// none.
template <class KeyOf>
short CommonType(const ChildSeq& members, KeyOf keyOf) {
  short common = RTNONE;
  for (const Element& member : members) {
    const Key key = keyOf(member);
    const short type = key != nullptr ? key->Type() : RTNONE;
    if (type == RTNONE || (common != RTNONE && type != common)) return RTNONE;
    if (IsUnordered(*key)) return RTNONE;
    common = type;
  }
  return common;
}

template <class KeyOf>
void SortMembers(ChildSeq& members, KeyOf keyOf) {
  switch (CommonType(members, keyOf)) {
    case RTREAL:
    case RTANG:
      SortBy(
          members, keyOf, [](Key key) { return OrderedBits(key->resval.rreal); }, SortByBits);
      break;
    case RTSHORT:
    case RTLONG:
    case RTINT64:
      SortBy(
          members, keyOf, [](Key key) { return OrderedBits(static_cast<__int64>(*key)); }, SortByBits);
      break;
    case RTSTR:
      SortByTexts(members, keyOf);
      break;
    default:
      SortBy(
          members, keyOf, [](Key key) { return key; }, SortInAnyOrder);
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
