// Boxes that are found by where they are.
#pragma once

#include <embedded/selection/PlaneGeometry.h>

#include <cstddef>
#include <vector>

namespace lomlisp::embedded {

// A packed tree of boxes, sixteen in a node. Building takes n log n; a search looks at few boxes besides
// those found, whatever their sizes and wherever they lie: the nodes are split in turn by all four
// sides of the boxes, so that large ones share nodes with large ones.
class SpatialIndex {
 public:
  struct Item {
    Box box;  // not empty
    size_t number = 0;
  };

  SpatialIndex() = default;
  explicit SpatialIndex(std::vector<Item> items);

  // Calls `visit(item)` for each item whose box is one that `isWanted(box)`, in no order, until it gives
  // false. What is wanted of a box must be wanted of every larger one. Gives the number of boxes that were
  // looked at.
  template <typename IsWanted, typename Visit>
  size_t SearchIf(IsWanted isWanted, Visit visit) const;
  // The same for the items whose boxes overlap that one.
  template <typename Visit>
  size_t Search(const Box& box, Visit visit) const {
    return SearchIf([&](const Box& candidate) { return candidate.Overlaps(box); }, visit);
  }

 private:
  static constexpr size_t kFan = 16;

  static void Sort(std::vector<Item>& items);

  std::vector<Item> m_items;
  std::vector<std::vector<Box>> m_levels;  // of the nodes, the lowest ones first; the last has one node
};

template <typename IsWanted, typename Visit>
size_t SpatialIndex::SearchIf(IsWanted isWanted, Visit visit) const {
  struct Node {
    size_t level;
    size_t number;
  };
  size_t examined = 0;
  std::vector<Node> open;
  if (!m_levels.empty()) open.push_back({m_levels.size() - 1, 0});
  while (!open.empty()) {
    const Node node = open.back();
    open.pop_back();
    ++examined;
    if (!isWanted(m_levels[node.level][node.number])) continue;
    const size_t begin = node.number * kFan;
    const size_t count = node.level > 0 ? m_levels[node.level - 1].size() : m_items.size();
    for (size_t child = begin; child < std::min(begin + kFan, count); ++child) {
      if (node.level > 0) {
        open.push_back({node.level - 1, child});
        continue;
      }
      ++examined;
      if (isWanted(m_items[child].box) && !visit(m_items[child])) return examined;
    }
  }
  return examined;
}

}  // namespace lomlisp::embedded
