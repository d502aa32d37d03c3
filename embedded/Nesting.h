// The brackets of a chain, followed record by record.
#pragma once

#include <embedded/Chain.h>

#include <cstddef>
#include <vector>

namespace lomlisp::embedded {

// Counts the brackets of a chain beforehand. A dot comes before the last item, RTLB a RTDOTE b RTLE,
// or closes a list of two, RTLB a b RTDOTE. In RTLB a b RTDOTE ... only the chain as a whole tells
// which: where each RTLB has its RTLE, no dot closes.
class BracketCount {
 public:
  explicit BracketCount(Place place) : m_open(place == Place::InsideOfList ? 1 : 0) {}
  void Add(short type) {
    if (type == RTLB) ++m_open;
    if (type == RTLE) ++m_closed;
    m_last = type;
  }
  bool DotsClose(Place place) const {
    const bool endCloses = place == Place::InsideOfList && m_last != RTDOTE;
    return m_open != m_closed + (endCloses ? 1 : 0);
  }

 private:
  size_t m_open;
  size_t m_closed = 0;
  short m_last = RTNONE;
};

class Nesting {
 public:
  enum class Role { Item, Open, Close, Dot, ClosingDot, Misplaced };

  Nesting(Place place, bool dotsClose)
      : m_levels(1), m_isOuterList(place == Place::InsideOfList), m_dotsClose(dotsClose) {}

  Role Take(short type, size_t index);
  // Whether the chain may end here.
  bool End();
  // Whether the last record taken, number `index`, is the dot of the outer list.
  bool EndsWithOuterDot(size_t index) const { return m_levels.size() == 1 && m_levels.front().dot == index; }
  // What is wrong, after Misplaced or a false End.
  const char* Objection() const { return m_objection; }

  bool HasItemBehindDot() const {
    const Level& level = m_levels.back();
    return level.dot != kNone && level.items > level.itemsBeforeDot;
  }
  bool IsOutside() const { return m_levels.size() == 1; }
  // The items so far of the list that we are in, or of the chain.
  size_t Items() const { return m_levels.back().items; }
  // Where the last item began of the list that we are in, or that the last record closed.
  size_t LastItem() const { return m_lastItem; }
  // Where the dot is of the list that the last record closed, if it is a pair; otherwise kNone.
  size_t PairDot() const { return m_pairDot; }
  static constexpr size_t kNone = static_cast<size_t>(-1);

 private:
  struct Level {
    size_t items = 0;
    size_t lastItem = kNone;
    size_t dot = kNone;
    size_t itemsBeforeDot = 0;
  };

  void BeginItem(size_t index);
  Role TakeDot(size_t index);
  Role TakeClose();
  Role Object(const char* objection);

  std::vector<Level> m_levels;
  bool m_isOuterList;
  bool m_dotsClose;
  size_t m_lastItem = kNone;
  size_t m_pairDot = kNone;
  const char* m_objection = nullptr;
};

// The same chain with each dot before the last item, and nil for an empty list. A chain whose
// brackets do not balance is given back as it is.
Chain WithDotsBeforeLast(Chain chain);
Chain WithNilForEmpty(Chain chain);
// The list whose inside is given, with its brackets.
Chain Bracketed(Chain inside);

// Whether it is one atom, one list, or one run of DXF groups.
bool IsOneItem(const Chain& chain);
// Whether it is one bracketed list without a dot of its own. Dots stand before the last items.
bool IsOneProperList(const Chain& chain);

// A record that has no value.
inline Record Mark(short type) { return Record{type, {}, {}, false}; }

}  // namespace lomlisp::embedded
