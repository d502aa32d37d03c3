// Selection sets: ordered, each entity at most once.
#pragma once

#include <embedded/drawing/Drawing.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

namespace lomlisp::embedded {

// The entities stay the drawing's; erased ones stay in the set. Every operation on one member takes the
// logarithm of their number at most, on average over many, so that a loop may delete wherever it likes.
class SelectionSet {
 public:
  SelectionSet() = default;
  // Of the same entities the first counts.
  explicit SelectionSet(const std::vector<Object*>& members);

  size_t Size() const { return m_slotOf.size(); }
  // In the order of adding; null beyond the end.
  Object* At(size_t index) const;
  bool Contains(const Object& entity) const { return m_slotOf.contains(&entity); }
  // False when it is a member already.
  bool Add(Object& entity);
  // False when it is no member. The others keep their order.
  bool Delete(const Object& entity);
  std::vector<Object*> Members() const;

 private:
  void Append(Object& entity);
  void Compact();

  std::vector<Object*> m_slots;  // null where a member was deleted
  std::unordered_map<const Object*, size_t> m_slotOf;
  // Binary indexed tree: number n, from 1, has the count of the members among as many slots up to the n-th
  // as the lowest bit of n says.
  std::vector<size_t> m_counts;
};

// The sets that are in use, under numbers.
class SelectionSets {
 public:
  static constexpr size_t kLimit = 128;
  explicit SelectionSets(size_t limit = kLimit) : m_limit(limit) {}

  // The number of a new set, never 0 and never given again; nothing when `limit` sets are in use.
  std::optional<uint64_t> Make(const std::vector<Object*>& members);
  // Null for a number that no set has, or none any more.
  SelectionSet* Find(uint64_t number);
  // False for such a number.
  bool Free(uint64_t number) { return m_sets.erase(number) != 0; }

  // What was selected last, as the host and not a set of a caller remembers it.
  void SetPrevious(std::vector<Object*> members);
  const std::vector<Object*>& Previous() const { return m_previous; }

  // Frees all and forgets the previous selection, as for another drawing. Numbers go on.
  void Clear();

 private:
  size_t m_limit;
  uint64_t m_lastNumber = 0;
  std::unordered_map<uint64_t, SelectionSet> m_sets;
  std::vector<Object*> m_previous;
};

}  // namespace lomlisp::embedded
