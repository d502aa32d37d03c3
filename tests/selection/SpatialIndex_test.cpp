#include <embedded/selection/SpatialIndex.h>
#include <tests/support/HostTest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace lomlisp::test::spatial_index {
namespace {

using embedded::Box;
using embedded::SpatialIndex;
using SpatialIndexTest = HostTest;
using Items = std::vector<SpatialIndex::Item>;

std::vector<size_t> Found(const SpatialIndex& index, const Box& box) {
  std::vector<size_t> found;
  index.Search(box, [&](const SpatialIndex::Item& item) {
    found.push_back(item.number);
    return true;
  });
  std::sort(found.begin(), found.end());
  return found;
}

TEST_F(SpatialIndexTest, FindsWhatAScanFindsForEveryNumberOfItems) {
  std::mt19937 engine(4711);
  const auto roll = [&](unsigned sides) { return static_cast<double>(engine() % sides); };
  const auto box = [&](unsigned largest) {
    const double x = roll(100);
    const double y = roll(100);
    return Box{{x, y}, {x + roll(largest), y + roll(largest)}};
  };
  for (const size_t count : {0u, 1u, 15u, 16u, 17u, 255u, 256u, 257u, 300u, 5000u}) {
    Items items;
    for (size_t number = 0; number < count; ++number)
      items.push_back({box(number % 7 == 0 ? 100 : 4), number});
    const SpatialIndex index(items);
    for (int question = 0; question < 20; ++question) {
      const Box wanted = box(20);
      std::vector<size_t> expected;
      for (const SpatialIndex::Item& item : items)
        if (item.box.Overlaps(wanted)) expected.push_back(item.number);
      ASSERT_EQ(Found(index, wanted), expected) << count;
    }
  }
}

TEST_F(SpatialIndexTest, TouchingIsOverlapping) {
  const SpatialIndex index({{Box{{0, 0}, {1, 1}}, 7}});
  EXPECT_EQ(Found(index, {{1, 1}, {2, 2}}), std::vector<size_t>{7});
  EXPECT_EQ(Found(index, {{-1, 0.5}, {0, 0.5}}), std::vector<size_t>{7});
  EXPECT_TRUE(Found(index, {{1.01, 0}, {2, 2}}).empty());
}

TEST_F(SpatialIndexTest, StopsWhenToldToAndCountsWhatItLookedAt) {
  Items items;
  for (size_t number = 0; number < 10'000; ++number) items.push_back({Box{{0, 0}, {1, 1}}, number});
  const SpatialIndex index(items);
  int visits = 0;
  const size_t examined =
      index.Search({{0, 0}, {1, 1}}, [&](const SpatialIndex::Item&) { return ++visits < 3; });
  EXPECT_EQ(visits, 3);
  EXPECT_LT(examined, 200u);
  EXPECT_EQ(index.Search({{5, 5}, {6, 6}}, [](const SpatialIndex::Item&) { return true; }), 1u);
  EXPECT_EQ(SpatialIndex().Search({{5, 5}, {6, 6}}, [](const SpatialIndex::Item&) { return true; }), 0u);
}

// Long thin boxes crosswise and small ones between: a search for a small place must not go through the long
// ones, which all overlap each other.
TEST_F(SpatialIndexTest, LongBoxesDoNotSpoilTheSearchForSmallOnes) {
  Items items;
  for (size_t number = 0; number < 20'000; ++number) {
    const auto place = static_cast<double>(number % 10'000);
    const bool isLevel = number < 10'000;
    items.push_back({isLevel ? Box{{0, place}, {10'000, place}} : Box{{place, 0}, {place, 10'000}}, number});
  }
  const SpatialIndex index(items);
  EXPECT_EQ(Found(index, {{500, 500}, {501, 501}}).size(), 4u);
  EXPECT_LT(index.Search({{500, 500}, {501, 501}}, [](const SpatialIndex::Item&) { return true; }), 2000u);
}

}  // namespace
}  // namespace lomlisp::test::spatial_index
