// The children of a list node.
#pragma once

#include <lomlisp/platform/api.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <new>
#include <utility>

class CLOMLispElement;

namespace lomlisp {

// A sequence of shared node pointers with the interface and the complexity of std::deque:
// constant time at both ends (amortised) and for access by position.
//
// It exists because a std::deque allocates two blocks (about 580 bytes) even when it is empty,
// which made a node ten times as large. A ChildSeq is one pointer, null when there are no
// children, else to one block with the children in a row and room in front and behind.
//
// Unlike a deque's, references and iterators end when the sequence grows. Destroying children
// never recurses, however deep the trees below them are, and never allocates: what has to be freed
// is queued, and the outermost release works the queue off.
class LOMLISP_API ChildSeq {
 public:
  using value_type = std::shared_ptr<CLOMLispElement>;
  using size_type = size_t;
  using difference_type = std::ptrdiff_t;
  using reference = value_type&;
  using const_reference = const value_type&;
  using iterator = value_type*;
  using const_iterator = const value_type*;

  ChildSeq() = default;
  ChildSeq(std::initializer_list<value_type> children) { insert(end(), children.begin(), children.end()); }
  ChildSeq(const ChildSeq& other) { insert(end(), other.begin(), other.end()); }
  ChildSeq(ChildSeq&& other) noexcept : m_block(other.m_block) { other.m_block = nullptr; }
  ~ChildSeq() { clear(); }
  ChildSeq& operator=(ChildSeq other) noexcept {
    swap(other);
    return *this;
  }
  void swap(ChildSeq& other) noexcept { std::swap(m_block, other.m_block); }

  bool empty() const { return size() == 0; }
  size_type size() const { return m_block != nullptr ? m_block->count : 0; }

  iterator begin() { return m_block != nullptr ? First(m_block) : nullptr; }
  iterator end() { return begin() + size(); }
  const_iterator begin() const { return m_block != nullptr ? First(m_block) : nullptr; }
  const_iterator cbegin() const { return begin(); }
  const_iterator end() const { return begin() + size(); }
  const_iterator cend() const { return end(); }

  reference operator[](size_type position) { return begin()[position]; }
  const_reference operator[](size_type position) const { return begin()[position]; }
  reference front() { return *begin(); }
  const_reference front() const { return *begin(); }
  reference back() { return end()[-1]; }
  const_reference back() const { return end()[-1]; }

  // Makes room behind, so that the sequence can grow to `count` children without moving.
  void reserve(size_type count);

  void push_back(value_type child) {
    if (RoomBehind() == 0) MakeRoomBehind(1);
    new (end()) value_type(std::move(child));
    ++m_block->count;
  }
  void push_front(value_type child) {
    if (RoomInFront() == 0) MakeRoomInFront(1);
    new (begin() - 1) value_type(std::move(child));
    --m_block->first;
    ++m_block->count;
  }
  void pop_back();
  void pop_front();

  // Inserts copies of the pointers in [first, last), which may lie in this very sequence. Linear
  // in their number and in the shorter of the two sides of `position`.
  iterator insert(const_iterator position, const_iterator first, const_iterator last);
  iterator insert(const_iterator position, value_type child);
  iterator erase(const_iterator first, const_iterator last);
  iterator erase(const_iterator position) { return erase(position, position + 1); }
  void clear() noexcept;

 private:
  // The head of a block; the slots follow.
  struct Block {
    Block* nextReleased;  // while the block waits for its children to be released
    uint32_t capacity;
    uint32_t first;  // the slot of the first child
    uint32_t count;
  };

  static value_type* Slots(Block* block) { return reinterpret_cast<value_type*>(block + 1); }
  static value_type* First(Block* block) { return Slots(block) + block->first; }
  static size_type BytesFor(size_type capacity) { return sizeof(Block) + capacity * sizeof(value_type); }
  static Block* Allocate(size_type capacity);
  static void Free(Block* block) noexcept;
  static void ReleaseAll(Block* block) noexcept;

  size_type RoomInFront() const { return m_block != nullptr ? m_block->first : 0; }
  size_type RoomBehind() const {
    return m_block != nullptr ? m_block->capacity - m_block->first - m_block->count : 0;
  }
  void MakeRoomBehind(size_type room);
  void MakeRoomInFront(size_type room);
  void Relocate(size_type capacity, size_type first);
  iterator OpenGap(size_type position, size_type width);

  Block* m_block = nullptr;
};

}  // namespace lomlisp
