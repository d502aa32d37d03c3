#include <lomlisp/lisp/ChildSeq.h>

#include <lomlisp/lisp/SlabHeap.h>

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <vector>

namespace lomlisp {

namespace {

using Child = ChildSeq::value_type;

// Room for the members of a short list that come one by one. Whoever knows how many come reserves it.
constexpr size_t kSmallest = 4;

// Moves `count` children to other slots, which may overlap the ones where they are.
void MoveChildren(Child* from, size_t count, Child* to) {
  if (to < from) {
    for (size_t i = 0; i < count; ++i) {
      new (to + i) Child(std::move(from[i]));
      from[i].~Child();
    }
  } else {
    for (size_t i = count; i-- > 0;) {
      new (to + i) Child(std::move(from[i]));
      from[i].~Child();
    }
  }
}

}  // namespace

ChildSeq::Block* ChildSeq::Allocate(size_type capacity) {
  if (capacity > (std::numeric_limits<uint32_t>::max)()) throw std::length_error("ChildSeq");
  const size_t bytes = BytesFor(capacity);
  void* const memory = bytes <= slabheap::kLargest ? slabheap::Allocate(bytes) : ::operator new(bytes);
  return new (memory) Block{nullptr, static_cast<uint32_t>(capacity), 0, 0};
}

void ChildSeq::Free(Block* block) noexcept {
  const size_t bytes = BytesFor(block->capacity);
  if (bytes <= slabheap::kLargest)
    slabheap::Free(block, bytes);
  else
    ::operator delete(block);
}

// The last release of a child frees a node, whose own children come here again: they only queue
// their block, and the call that found nobody at work works the queue off.
void ChildSeq::ReleaseAll(Block* block) noexcept {
  static Block* released = nullptr;
  static bool atWork = false;

  block->nextReleased = released;
  released = block;
  if (atWork) return;
  atWork = true;
  while (released != nullptr) {
    Block* const current = released;
    released = current->nextReleased;
    std::destroy_n(First(current), current->count);
    Free(current);
  }
  atWork = false;
}

void ChildSeq::reserve(size_type count) {
  if (m_block == nullptr && count > 0)
    Relocate(count, 0);
  else if (count > size())
    MakeRoomBehind(count - size());
}

void ChildSeq::pop_back() {
  back().~Child();
  --m_block->count;
}

void ChildSeq::pop_front() {
  front().~Child();
  ++m_block->first;
  --m_block->count;
}

ChildSeq::iterator ChildSeq::insert(const_iterator position, const_iterator first, const_iterator last) {
  const auto index = static_cast<size_type>(position - begin());
  if (first == last) return begin() + index;
  if (m_block != nullptr && !std::less<>()(first, cbegin()) && std::less<>()(first, cend())) {
    const std::vector<value_type> copies(first, last);
    return insert(position, copies.data(), copies.data() + copies.size());
  }
  const iterator gap = OpenGap(index, static_cast<size_type>(last - first));
  std::uninitialized_copy(first, last, gap);
  return gap;
}

ChildSeq::iterator ChildSeq::insert(const_iterator position, value_type child) {
  return new (OpenGap(static_cast<size_type>(position - begin()), 1)) value_type(std::move(child));
}

ChildSeq::iterator ChildSeq::erase(const_iterator first, const_iterator last) {
  const auto index = static_cast<size_type>(first - begin());
  const auto width = static_cast<size_type>(last - first);
  if (width == 0) return begin() + index;
  // Released only when the sequence is whole again.
  ChildSeq erased;
  erased.reserve(width);
  for (iterator child = begin() + index; child != begin() + index + width; ++child)
    erased.push_back(std::move(*child));
  std::destroy_n(begin() + index, width);
  const size_type behind = size() - index - width;
  if (index < behind) {
    MoveChildren(begin(), index, begin() + width);
    m_block->first += static_cast<uint32_t>(width);
  } else {
    MoveChildren(begin() + index + width, behind, begin() + index);
  }
  m_block->count -= static_cast<uint32_t>(width);
  return begin() + index;
}

void ChildSeq::clear() noexcept {
  if (m_block != nullptr) ReleaseAll(std::exchange(m_block, nullptr));
}

// A block that is at most half full slides its children instead of growing, which is paid for by
// the room that this gives. A block that grows doubles on the side that ran out; the other side
// keeps its room, so that growing at both ends in turn is paid for as well.
void ChildSeq::MakeRoomBehind(size_type room) {
  if (RoomBehind() >= room) return;
  const size_type needed = size() + room;
  if (m_block != nullptr && needed * 2 <= m_block->capacity) {
    Relocate(m_block->capacity, (m_block->capacity - needed) / 2);
  } else {
    const size_type inFront = (std::min)(RoomInFront(), size());
    Relocate(inFront + (std::max)({needed, size() * 2, kSmallest}), inFront);
  }
}

void ChildSeq::MakeRoomInFront(size_type room) {
  if (RoomInFront() >= room) return;
  const size_type needed = size() + room;
  if (m_block != nullptr && needed * 2 <= m_block->capacity) {
    Relocate(m_block->capacity, room + (m_block->capacity - needed) / 2);
  } else {
    const size_type behind = (std::min)(RoomBehind(), size());
    const size_type filled = (std::max)({needed, size() * 2, kSmallest});
    Relocate(filled + behind, filled - size());
  }
}

// Puts the children at slot `first` of a block of that capacity, which is this one when it fits.
void ChildSeq::Relocate(size_type capacity, size_type first) {
  if (m_block != nullptr && m_block->capacity == capacity) {
    MoveChildren(begin(), size(), Slots(m_block) + first);
    m_block->first = static_cast<uint32_t>(first);
    return;
  }
  Block* const grown = Allocate(capacity);
  grown->first = static_cast<uint32_t>(first);
  grown->count = static_cast<uint32_t>(size());
  if (m_block != nullptr) {
    MoveChildren(begin(), size(), First(grown));
    Free(m_block);
  }
  m_block = grown;
}

// Makes room for `width` children at `position`, which are to be constructed there. Moves the
// shorter side.
ChildSeq::iterator ChildSeq::OpenGap(size_type position, size_type width) {
  const size_type behind = size() - position;
  if (position < behind) {
    MakeRoomInFront(width);
    MoveChildren(begin(), position, begin() - width);
    m_block->first -= static_cast<uint32_t>(width);
  } else {
    MakeRoomBehind(width);
    MoveChildren(begin() + position, behind, begin() + position + width);
  }
  m_block->count += static_cast<uint32_t>(width);
  return begin() + position;
}

}  // namespace lomlisp
