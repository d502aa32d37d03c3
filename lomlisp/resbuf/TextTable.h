// The texts that records hold under DXF codes, by address.
#pragma once

#include <lomlisp/platform/ads.h>

#include <cstddef>
#include <vector>

namespace lomlisp {

struct HeldText {
  const void* address;  // null where a slot is free
  // The record that holds it, as long as there has never been a second one; null from then on.
  const resbuf* onlyHolder;
  size_t holders : 63;
  // It stands under a code that is not for texts.
  size_t underForeignCode : 1;
};

// A hash table with open addressing: whoever writes or drops an entity list enters or strikes a text for
// every other group, and a node for each would cost more than all that is done with the group. Entries end
// when others are added or removed. Constant time.
class TextTable {
 public:
  bool IsEmpty() const { return m_count == 0; }
  // Null when it is not there.
  HeldText* Find(const void* address);
  // The entry; a new one without holders when it is not there. The address must not be null. When memory
  // runs out, std::bad_alloc, and nothing has changed.
  HeldText& FindOrAdd(const void* address);
  void Remove(HeldText& entry);

 private:
  size_t HomeOf(const void* address) const;
  size_t SlotFor(const void* address) const;
  size_t Behind(size_t slot) const { return (slot + 1) & (m_slots.size() - 1); }
  void Grow();

  std::vector<HeldText> m_slots;  // none, or a power of two; at most half of them are taken
  size_t m_count = 0;
};

}  // namespace lomlisp
