#include <embedded/selection/SpatialIndex.h>

#include <utility>

namespace lomlisp::embedded {

namespace {

double SideOf(const Box& box, size_t side) {
  switch (side) {
    case 0:
      return box.low.x;
    case 1:
      return box.low.y;
    case 2:
      return box.high.x;
    default:
      return box.high.y;
  }
}

}  // namespace

SpatialIndex::SpatialIndex(std::vector<Item> items) : m_items(std::move(items)) {
  Sort(m_items);
  size_t count = m_items.size();
  while (count > 1 || (count == 1 && m_levels.empty())) {
    std::vector<Box> nodes((count + kFan - 1) / kFan);
    for (size_t child = 0; child < count; ++child)
      nodes[child / kFan].Add(m_levels.empty() ? m_items[child].box : m_levels.back()[child]);
    count = nodes.size();
    m_levels.push_back(std::move(nodes));
  }
}

// Halves the items again and again, between nodes, by the next side each time.
void SpatialIndex::Sort(std::vector<Item>& items) {
  struct Stretch {
    size_t begin;
    size_t end;
    size_t side;
  };
  std::vector<Stretch> open{{0, items.size(), 0}};
  const auto at = [&](size_t index) { return items.begin() + static_cast<std::ptrdiff_t>(index); };
  while (!open.empty()) {
    const auto [begin, end, side] = open.back();
    open.pop_back();
    if (end - begin <= kFan) continue;
    const size_t nodes = (end - begin + kFan - 1) / kFan;
    const size_t middle = begin + nodes / 2 * kFan;
    std::nth_element(at(begin), at(middle), at(end), [side = side](const Item& a, const Item& b) {
      return SideOf(a.box, side) < SideOf(b.box, side);
    });
    open.push_back({begin, middle, (side + 1) % 4});
    open.push_back({middle, end, (side + 1) % 4});
  }
}

}  // namespace lomlisp::embedded
