#include <embedded/selection/SelectionSets.h>

#include <algorithm>
#include <bit>
#include <iterator>
#include <utility>

namespace lomlisp::embedded {

namespace {

size_t LowestBit(size_t number) { return number & (~number + 1); }

}  // namespace

SelectionSet::SelectionSet(const std::vector<Object*>& members) {
  for (Object* member : members) Add(*member);
}

// Goes down the tree: skips the greatest stretches of slots that hold too few members.
Object* SelectionSet::At(size_t index) const {
  if (index >= Size()) return nullptr;
  size_t slot = 0;
  for (size_t stretch = std::bit_floor(m_counts.size()); stretch != 0; stretch /= 2) {
    const size_t next = slot + stretch;
    if (next > m_counts.size() || m_counts[next - 1] > index) continue;
    index -= m_counts[next - 1];
    slot = next;
  }
  return m_slots[slot];
}

bool SelectionSet::Add(Object& entity) {
  if (!m_slotOf.emplace(&entity, m_slots.size()).second) return false;
  Append(entity);
  return true;
}

// The count of the new number is the sum of the stretches that its own one spans.
void SelectionSet::Append(Object& entity) {
  m_slots.push_back(&entity);
  const size_t number = m_slots.size();
  const size_t first = number - LowestBit(number);
  size_t count = 1;
  for (size_t part = number - 1; part > first; part -= LowestBit(part)) count += m_counts[part - 1];
  m_counts.push_back(count);
}

bool SelectionSet::Delete(const Object& entity) {
  const auto found = m_slotOf.find(&entity);
  if (found == m_slotOf.end()) return false;
  m_slots[found->second] = nullptr;
  for (size_t number = found->second + 1; number <= m_counts.size(); number += LowestBit(number))
    --m_counts[number - 1];
  m_slotOf.erase(found);
  if (m_slots.size() > 2 * Size()) Compact();
  return true;
}

// Costs no more than the deletions that left the empty slots.
void SelectionSet::Compact() {
  const std::vector<Object*> members = Members();
  m_slots.clear();
  m_counts.clear();
  for (Object* member : members) {
    m_slotOf[member] = m_slots.size();
    Append(*member);
  }
}

std::vector<Object*> SelectionSet::Members() const {
  std::vector<Object*> members;
  members.reserve(Size());
  std::copy_if(m_slots.begin(), m_slots.end(), std::back_inserter(members),
               [](const Object* slot) { return slot != nullptr; });
  return members;
}

std::optional<uint64_t> SelectionSets::Make(const std::vector<Object*>& members) {
  if (m_sets.size() >= m_limit) return std::nullopt;
  m_sets.emplace(++m_lastNumber, members);
  return m_lastNumber;
}

SelectionSet* SelectionSets::Find(uint64_t number) {
  const auto found = m_sets.find(number);
  return found != m_sets.end() ? &found->second : nullptr;
}

void SelectionSets::SetPrevious(std::vector<Object*> members) { m_previous = std::move(members); }

void SelectionSets::Clear() {
  m_sets.clear();
  m_previous.clear();
}

}  // namespace lomlisp::embedded
