// The memory of nodes, through what values take and give back.
#include <tests/support/HostTest.h>

#include <cstdint>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace lomlisp::test {
namespace {

using Element = CLOMAdsLispVar::Element;

class SlabHeap : public HostTest {
 protected:
  static Element Node(int number) { return CLOMAdsLispVar(number).New(); }
};

TEST_F(SlabHeap, NodesDoNotOverlapAndAreAligned) {
  std::vector<Element> nodes;
  std::set<uintptr_t> places;
  for (int i = 0; i < 20'000; ++i) {
    nodes.push_back(Node(i % 10'000));
    places.insert(reinterpret_cast<uintptr_t>(nodes.back().get()));
  }
  uintptr_t last = 0;
  for (const uintptr_t place : places) {
    EXPECT_EQ(place % alignof(CLOMLispElement), 0U);
    EXPECT_GE(place - last, sizeof(CLOMLispElement));
    last = place;
  }
  EXPECT_EQ(places.size(), nodes.size());
  for (size_t i = 0; i < nodes.size(); ++i)
    ASSERT_EQ(nodes[i]->atom.resval.rint, static_cast<int>(i) % 10'000);
}

// Nodes, and the short sequences of children of each length, in any order.
TEST_F(SlabHeap, WhatIsGivenBackInAnyOrderIsTakenAgain) {
  std::mt19937 random(1);
  std::vector<CLOMAdsLispVar> values(5'000);
  std::vector<size_t> lengths(values.size(), 0);
  for (unsigned int round = 0; round < Rounds(300'000); ++round) {
    const size_t place = random() % values.size();
    ASSERT_EQ(values[place].Length(), lengths[place]);
    lengths[place] = random() % 12;
    CLOMAdsLispVar list;
    for (size_t i = 0; i < lengths[place]; ++i)
      CLOMAdsLisp::SetQ(list, CLOMAdsLisp::Cons(static_cast<int>(i), list));
    values[place] = list;
  }
}

TEST_F(SlabHeap, WavesOfValues) {
  for (int wave = 0; wave < 5; ++wave) {
    std::vector<Element> nodes;
    for (int i = 0; i < kLarge / 10; ++i) nodes.push_back(Node(wave));
    // Every second one, then the rest from the end.
    for (size_t i = 0; i < nodes.size(); i += 2) nodes[i].reset();
    while (!nodes.empty()) {
      if (nodes.back() != nullptr) {
        ASSERT_EQ(nodes.back()->atom.resval.rint, wave);
      }
      nodes.pop_back();
    }
  }
}

}  // namespace
}  // namespace lomlisp::test
