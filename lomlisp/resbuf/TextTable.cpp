#include <lomlisp/resbuf/TextTable.h>

#include <cstdint>

namespace lomlisp {

namespace {

constexpr size_t kFewestSlots = 64;
constexpr size_t kSlotsToKeep = size_t{32} * 1024;  // in an empty table

}  // namespace

// The upper bits of a product with 2^64 by the golden ratio: addresses side by side come far apart.
size_t TextTable::HomeOf(const void* address) const {
  const uint64_t product = reinterpret_cast<uintptr_t>(address) * uint64_t{0x9E3779B97F4A7C15};
  return static_cast<size_t>(product >> 32) & (m_slots.size() - 1);
}

// Where the address stands, or else the free slot where it belongs.
size_t TextTable::SlotFor(const void* address) const {
  size_t slot = HomeOf(address);
  while (m_slots[slot].address != nullptr && m_slots[slot].address != address) slot = Behind(slot);
  return slot;
}

HeldText* TextTable::Find(const void* address) {
  if (m_count == 0 || address == nullptr) return nullptr;
  HeldText& entry = m_slots[SlotFor(address)];
  return entry.address != nullptr ? &entry : nullptr;
}

HeldText& TextTable::FindOrAdd(const void* address) {
  if ((m_count + 1) * 2 > m_slots.size()) Grow();
  HeldText& entry = m_slots[SlotFor(address)];
  if (entry.address == nullptr) {
    entry.address = address;
    ++m_count;
  }
  return entry;
}

// Entries behind the gap move up, each unless its home lies behind the gap, so that no search ends too early.
void TextTable::Remove(HeldText& entry) {
  auto gap = static_cast<size_t>(&entry - m_slots.data());
  for (size_t slot = Behind(gap); m_slots[slot].address != nullptr; slot = Behind(slot)) {
    const size_t mask = m_slots.size() - 1;
    const size_t fromHome = (slot - HomeOf(m_slots[slot].address)) & mask;
    if (fromHome < ((slot - gap) & mask)) continue;
    m_slots[gap] = m_slots[slot];
    gap = slot;
  }
  m_slots[gap] = {};
  if (--m_count == 0 && m_slots.size() > kSlotsToKeep) m_slots = {};
}

void TextTable::Grow() {
  TextTable grown;
  grown.m_slots.resize(m_slots.empty() ? kFewestSlots : m_slots.size() * 2);
  for (const HeldText& entry : m_slots)
    if (entry.address != nullptr) grown.m_slots[grown.SlotFor(entry.address)] = entry;
  grown.m_count = m_count;
  *this = std::move(grown);
}

}  // namespace lomlisp
