#include <tests/support/HostTest.h>
#include <tests/support/SmallStack.h>

#include <algorithm>
#include <deque>
#include <functional>
#include <random>
#include <stdexcept>
#include <type_traits>
#include <vector>

namespace lomlisp::test {
namespace {

using Node = std::shared_ptr<CLOMLispElement>;
using Deque = std::deque<Node>;

static_assert(sizeof(ChildSeq) == sizeof(void*));
static_assert(std::is_nothrow_move_constructible_v<ChildSeq>);
static_assert(std::is_same_v<ChildSeq::iterator, Node*>);
static_assert(std::is_same_v<ChildSeq::const_iterator, const Node*>);
static_assert(std::is_same_v<ChildSeq::value_type, Node>);

Node NewNode() { return std::make_shared<CLOMLispElement>(); }

Deque NewNodes(size_t count) {
  Deque nodes;
  while (nodes.size() < count) nodes.push_back(NewNode());
  return nodes;
}

void Fill(ChildSeq& sequence, const Deque& nodes) {
  for (const Node& node : nodes) sequence.push_back(node);
}

bool Same(const ChildSeq& sequence, const Deque& nodes) {
  return sequence.size() == nodes.size() &&
         std::equal(sequence.begin(), sequence.end(), nodes.begin(), nodes.end());
}

class ChildSequence : public HostTest {};

TEST_F(ChildSequence, IsEmptyAtFirst) {
  ChildSeq sequence;
  const ChildSeq& constant = sequence;
  EXPECT_TRUE(sequence.empty());
  EXPECT_EQ(sequence.size(), 0u);
  EXPECT_EQ(sequence.begin(), sequence.end());
  EXPECT_EQ(constant.begin(), constant.end());
  EXPECT_EQ(constant.cbegin(), constant.cend());
  sequence.clear();
  EXPECT_TRUE(sequence.empty());
}

TEST_F(ChildSequence, GivesItsElementsByPositionAndAtBothEnds) {
  const Deque nodes = NewNodes(3);
  ChildSeq sequence{nodes[0], nodes[1], nodes[2]};
  const ChildSeq& constant = sequence;
  for (size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(sequence[i], nodes[i]);
    EXPECT_EQ(constant[i], nodes[i]);
  }
  EXPECT_EQ(sequence.front(), nodes[0]);
  EXPECT_EQ(constant.front(), nodes[0]);
  EXPECT_EQ(sequence.back(), nodes[2]);
  EXPECT_EQ(constant.back(), nodes[2]);
  sequence[1] = nodes[0];
  EXPECT_EQ(constant[1], nodes[0]);
  std::reverse(sequence.begin(), sequence.end());
  EXPECT_TRUE(Same(sequence, {nodes[2], nodes[0], nodes[0]}));
}

TEST_F(ChildSequence, HoldsNullPointers) {
  ChildSeq sequence{nullptr, NewNode(), nullptr};
  sequence.push_front(nullptr);
  EXPECT_EQ(sequence.size(), 4u);
  EXPECT_EQ(sequence.front(), nullptr);
  EXPECT_EQ(sequence.back(), nullptr);
}

TEST_F(ChildSequence, CopiesShareTheElements) {
  const Deque nodes = NewNodes(5);
  ChildSeq sequence;
  Fill(sequence, nodes);
  ChildSeq copy(sequence);
  EXPECT_TRUE(Same(copy, nodes));
  EXPECT_EQ(nodes[0].use_count(), 3);
  copy.pop_back();
  EXPECT_TRUE(Same(sequence, nodes));
  copy = sequence;
  EXPECT_TRUE(Same(copy, nodes));
  const ChildSeq& same = copy;
  copy = same;
  EXPECT_TRUE(Same(copy, nodes));
  copy = ChildSeq();
  EXPECT_TRUE(copy.empty());
  EXPECT_EQ(nodes[0].use_count(), 2);
}

TEST_F(ChildSequence, MovesLeaveAnEmptySequence) {
  const Deque nodes = NewNodes(5);
  ChildSeq sequence;
  Fill(sequence, nodes);
  ChildSeq moved(std::move(sequence));
  EXPECT_TRUE(Same(moved, nodes));
  EXPECT_TRUE(sequence.empty());
  sequence.push_back(nodes[0]);
  sequence = std::move(moved);
  EXPECT_TRUE(Same(sequence, nodes));
  EXPECT_EQ(nodes[0].use_count(), 2);
}

TEST_F(ChildSequence, SwapsWithAnother) {
  const Deque nodes = NewNodes(2);
  ChildSeq first{nodes[0], nodes[1]};
  ChildSeq second;
  first.swap(second);
  EXPECT_TRUE(first.empty());
  EXPECT_TRUE(Same(second, nodes));
}

TEST_F(ChildSequence, GrowsBehindInAmortisedConstantTime) {
  const Deque nodes = NewNodes(100000);
  ChildSeq sequence;
  int moves = 0;
  const Node* before = nullptr;
  for (const Node& node : nodes) {
    sequence.push_back(node);
    if (sequence.begin() != before) ++moves;
    before = sequence.begin();
  }
  EXPECT_TRUE(Same(sequence, nodes));
  EXPECT_LE(moves, 64);
}

TEST_F(ChildSequence, GrowsInFrontInAmortisedConstantTime) {
  Deque nodes = NewNodes(100000);
  ChildSeq sequence;
  int moves = 0;
  const Node* before = nullptr;
  for (const Node& node : nodes) {
    sequence.push_front(node);
    if (sequence.end() != before) ++moves;
    before = sequence.end();
  }
  std::reverse(nodes.begin(), nodes.end());
  EXPECT_TRUE(Same(sequence, nodes));
  EXPECT_LE(moves, 64);
}

TEST_F(ChildSequence, GrowsAtBothEndsInTurn) {
  const Deque nodes = NewNodes(20001);
  ChildSeq sequence{nodes[10000]};
  int moves = 0;
  const Node* middle = sequence.begin();
  for (size_t i = 1; i <= 10000; ++i) {
    sequence.push_front(nodes[10000 - i]);
    sequence.push_back(nodes[10000 + i]);
    if (&sequence[i] != middle) ++moves;
    middle = &sequence[i];
  }
  EXPECT_TRUE(Same(sequence, nodes));
  EXPECT_LE(moves, 128);
}

TEST_F(ChildSequence, ServesAsAQueueInBothDirections) {
  const Deque nodes = NewNodes(8);
  ChildSeq sequence;
  Fill(sequence, nodes);
  for (size_t i = 0; i < 200000; ++i) {
    sequence.push_back(sequence.front());
    sequence.pop_front();
  }
  EXPECT_TRUE(Same(sequence, nodes));
  for (size_t i = 0; i < 200000; ++i) {
    sequence.push_front(sequence.back());
    sequence.pop_back();
  }
  EXPECT_TRUE(Same(sequence, nodes));
}

TEST_F(ChildSequence, StaysInPlaceWithinWhatIsReserved) {
  const Deque nodes = NewNodes(100);
  for (const size_t already : {size_t{0}, size_t{3}}) {
    ChildSeq sequence;
    for (size_t i = 0; i < already; ++i) sequence.push_back(nodes[i]);
    sequence.reserve(100);
    EXPECT_EQ(sequence.size(), already);
    for (size_t i = already; i < 4; ++i) sequence.push_back(nodes[i]);
    const Node* const begin = sequence.begin();
    for (size_t i = 4; i < 100; ++i) sequence.push_back(nodes[i]);
    EXPECT_EQ(sequence.begin(), begin);
    EXPECT_TRUE(Same(sequence, nodes));
    sequence.reserve(1);
    EXPECT_TRUE(Same(sequence, nodes));
  }
}

TEST_F(ChildSequence, TakesItsOwnElementsWhileItGrows) {
  const Deque nodes = NewNodes(1);
  ChildSeq behind{nodes[0]};
  ChildSeq front{nodes[0]};
  ChildSeq middle{nodes[0]};
  for (int i = 0; i < 100; ++i) {
    behind.push_back(behind.front());
    front.push_front(front.back());
    middle.insert(middle.begin() + i / 2, middle.back());
  }
  for (const ChildSeq* const sequence : {&behind, &front, &middle}) {
    EXPECT_EQ(sequence->size(), 101u);
    EXPECT_TRUE(
        std::all_of(sequence->begin(), sequence->end(), [&](const Node& node) { return node == nodes[0]; }));
  }
}

TEST_F(ChildSequence, TakesEveryRangeOfItsOwnAtEveryPosition) {
  const Deque nodes = NewNodes(6);
  for (size_t position = 0; position <= 6; ++position) {
    for (size_t first = 0; first <= 6; ++first) {
      for (size_t last = first; last <= 6; ++last) {
        ChildSeq sequence;
        Fill(sequence, nodes);
        const ChildSeq::iterator inserted =
            sequence.insert(sequence.begin() + position, sequence.begin() + first, sequence.begin() + last);
        Deque expected = nodes;
        expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(position),
                        nodes.begin() + static_cast<std::ptrdiff_t>(first),
                        nodes.begin() + static_cast<std::ptrdiff_t>(last));
        EXPECT_TRUE(Same(sequence, expected)) << position << ", " << first << " to " << last;
        EXPECT_EQ(inserted, sequence.begin() + position);
      }
    }
  }
  for (const Node& node : nodes) EXPECT_EQ(node.use_count(), 1);
}

TEST_F(ChildSequence, InsertsAndErasesAtEveryPosition) {
  const Deque nodes = NewNodes(6);
  const Node extra = NewNode();
  for (size_t position = 0; position <= 6; ++position) {
    ChildSeq sequence;
    Fill(sequence, nodes);
    ChildSeq::iterator at = sequence.insert(sequence.begin() + position, extra);
    EXPECT_EQ(at, sequence.begin() + position);
    EXPECT_EQ(*at, extra);
    EXPECT_EQ(sequence.size(), 7u);
    at = sequence.erase(at);
    EXPECT_EQ(at, sequence.begin() + position);
    EXPECT_TRUE(Same(sequence, nodes));
    for (size_t last = position; last <= 6; ++last) {
      ChildSeq shortened(sequence);
      at = shortened.erase(shortened.begin() + position, shortened.begin() + last);
      EXPECT_EQ(at, shortened.begin() + position);
      EXPECT_EQ(shortened.size(), 6 - (last - position));
      EXPECT_TRUE(std::equal(shortened.begin(), at, nodes.begin()));
      EXPECT_TRUE(std::equal(at, shortened.end(), nodes.begin() + static_cast<std::ptrdiff_t>(last)));
    }
  }
}

TEST_F(ChildSequence, AnEmptyRangeInsertsNothing) {
  ChildSeq empty;
  EXPECT_EQ(empty.insert(empty.end(), empty.begin(), empty.end()), empty.begin());
  EXPECT_TRUE(empty.empty());
  ChildSeq sequence{NewNode()};
  EXPECT_EQ(sequence.insert(sequence.end(), empty.begin(), empty.end()), sequence.end());
  EXPECT_EQ(sequence.size(), 1u);
}

// Random operations on a sequence and, in the same way, on a deque.
class Twin {
 public:
  explicit Twin(unsigned seed) : m_random(seed), m_pool(NewNodes(16)) {}

  void Step() {
    switch (Below(12)) {
      case 0:
      case 1:
        PushBack();
        break;
      case 2:
      case 3:
        PushFront();
        break;
      case 4:
        PopBack();
        break;
      case 5:
        PopFront();
        break;
      case 6:
        InsertOne();
        break;
      case 7:
        InsertForeign();
        break;
      case 8:
        InsertOwn();
        break;
      case 9:
        Erase();
        break;
      case 10:
        Overwrite();
        break;
      default:
        Whole();
        break;
    }
  }
  bool Agree() const {
    if (!Same(m_sequence, m_deque)) return false;
    for (const Node& node : m_pool) {
      const auto held = std::count(m_deque.begin(), m_deque.end(), node);
      if (node.use_count() != 1 + 2 * held) return false;
    }
    return m_deque.empty() || (m_sequence.front() == m_deque.front() && m_sequence.back() == m_deque.back());
  }

 private:
  size_t Below(size_t bound) { return m_random() % bound; }
  const Node& Any() { return m_pool[Below(m_pool.size())]; }
  size_t Position() { return Below(m_deque.size() + 1); }
  Deque::iterator InDeque(size_t position) { return m_deque.begin() + static_cast<std::ptrdiff_t>(position); }

  void PushBack() {
    const Node& node = Any();
    m_sequence.push_back(node);
    m_deque.push_back(node);
  }
  void PushFront() {
    const Node& node = Any();
    m_sequence.push_front(node);
    m_deque.push_front(node);
  }
  void PopBack() {
    if (m_deque.empty()) return;
    m_sequence.pop_back();
    m_deque.pop_back();
  }
  void PopFront() {
    if (m_deque.empty()) return;
    m_sequence.pop_front();
    m_deque.pop_front();
  }
  void InsertOne() {
    const Node& node = Any();
    const size_t position = Position();
    m_sequence.insert(m_sequence.begin() + position, node);
    m_deque.insert(InDeque(position), node);
  }
  void InsertForeign() {
    std::vector<Node> nodes(Below(6));
    for (Node& node : nodes) node = Any();
    const size_t position = Position();
    m_sequence.insert(m_sequence.begin() + position, nodes.data(), nodes.data() + nodes.size());
    m_deque.insert(InDeque(position), nodes.begin(), nodes.end());
  }
  void InsertOwn() {
    if (m_deque.size() > 200) return;
    const size_t first = Position();
    const size_t last = first + Below(m_deque.size() - first + 1);
    const size_t position = Position();
    const Deque nodes(InDeque(first), InDeque(last));
    m_sequence.insert(m_sequence.begin() + position, m_sequence.begin() + first, m_sequence.begin() + last);
    m_deque.insert(InDeque(position), nodes.begin(), nodes.end());
  }
  void Erase() {
    const size_t first = Position();
    const size_t last = first + Below(std::min<size_t>(m_deque.size() - first, 8) + 1);
    m_sequence.erase(m_sequence.begin() + first, m_sequence.begin() + last);
    m_deque.erase(InDeque(first), InDeque(last));
  }
  void Overwrite() {
    if (m_deque.empty()) return;
    const Node& node = Any();
    const size_t position = Below(m_deque.size());
    m_sequence[position] = node;
    m_deque[position] = node;
  }
  void Whole() {
    switch (Below(10)) {
      case 0:
        m_sequence.clear();
        m_deque.clear();
        break;
      case 1:
        m_sequence = ChildSeq(m_sequence);
        break;
      case 2:
        m_sequence = ChildSeq(std::move(m_sequence));
        break;
      default:
        m_sequence.reserve(m_deque.size() + Below(10));
        break;
    }
  }

  std::mt19937 m_random;
  Deque m_pool;
  ChildSeq m_sequence;
  Deque m_deque;
};

TEST_F(ChildSequence, BehavesLikeADeque) {
  for (unsigned seed = 1; seed <= Rounds(20); ++seed) {
    Twin twin(seed);
    for (int step = 0; step < 2000; ++step) {
      twin.Step();
      ASSERT_TRUE(twin.Agree()) << "seed " << seed << ", step " << step;
    }
  }
}

// --- Releasing ---

// A list in a list in a list; `sentry` is the innermost.
Node DeepTree(size_t levels, const Node& sentry) {
  Node node = sentry;
  for (size_t i = 0; i < levels; ++i) {
    const Node parent = NewNode();
    parent->children.push_back(std::move(node));
    node = parent;
  }
  return node;
}

constexpr size_t kDeep = kLarge;

TEST_F(ChildSequence, AMillionLevelsAreReleasedOnASmallStack) {
  const Node sentry = NewNode();
  Node root = DeepTree(kDeep, sentry);
  EXPECT_EQ(sentry.use_count(), 2);
  OnSmallStack([&] { root.reset(); });
  EXPECT_EQ(sentry.use_count(), 1);
}

TEST_F(ChildSequence, EveryWayToLoseADeepTreeIsSafe) {
  const std::vector<std::function<void(ChildSeq&)>> ways = {
      [](ChildSeq& sequence) { sequence.clear(); },
      [](ChildSeq& sequence) { sequence.pop_back(); },
      [](ChildSeq& sequence) { sequence.pop_front(); },
      [](ChildSeq& sequence) { sequence.erase(sequence.begin()); },
      [](ChildSeq& sequence) { sequence[0].reset(); },
      [](ChildSeq& sequence) { sequence[0] = NewNode(); },
      [](ChildSeq& sequence) { sequence = ChildSeq(); },
      [](ChildSeq& sequence) { ChildSeq().swap(sequence); },
      [](ChildSeq& sequence) { const ChildSeq taken(std::move(sequence)); },
      [](ChildSeq& sequence) { const Node taken = std::move(sequence.front()); },
  };
  const Node sentry = NewNode();
  for (size_t i = 0; i < ways.size(); ++i) {
    ChildSeq sequence{DeepTree(kLarge / 10, sentry)};
    ASSERT_EQ(sentry.use_count(), 2) << "way " << i;
    OnSmallStack([&] { ways[i](sequence); });
    EXPECT_EQ(sentry.use_count(), 1) << "way " << i;
  }
}

TEST_F(ChildSequence, DeepTreesSideBySideAreReleased) {
  const Node sentry = NewNode();
  Node root = sentry;
  for (size_t i = 0; i < 200000; ++i) {
    const Node parent = NewNode();
    parent->children.push_back(NewNode());
    parent->children.push_back(root);
    parent->children.push_back(sentry);
    root = parent;
  }
  EXPECT_EQ(sentry.use_count(), 200002);
  OnSmallStack([&] { root.reset(); });
  EXPECT_EQ(sentry.use_count(), 1);
}

TEST_F(ChildSequence, AMillionElementsAreReleased) {
  const Node sentry = NewNode();
  Node root = NewNode();
  for (size_t i = 0; i < kDeep; ++i) root->children.push_back(i % 2 == 0 ? sentry : NewNode());
  OnSmallStack([&] { root.reset(); });
  EXPECT_EQ(sentry.use_count(), 1);
}

TEST_F(ChildSequence, WhatOthersShareSurvives) {
  const Node sentry = NewNode();
  const Node shared = DeepTree(1000, sentry);
  Node first = NewNode();
  first->children.push_back(shared);
  Node second = DeepTree(1000, shared);
  first.reset();
  EXPECT_EQ(sentry.use_count(), 2);
  second.reset();
  EXPECT_EQ(sentry.use_count(), 2);
  EXPECT_EQ(shared.use_count(), 1);
  EXPECT_EQ(shared->children.size(), 1u);
}

TEST_F(ChildSequence, ReleasedNodesFreeTheirTexts) {
  Node root = NewNode();
  for (int i = 0; i < 100; ++i) {
    const Node parent = NewNode();
    const Node text = NewNode();
    text->atom = L"text";
    parent->children.push_back(text);
    parent->children.push_back(root);
    root = parent;
  }
  EXPECT_EQ(host.ledger.Live().blocks, 100u);
  root.reset();
  EXPECT_EQ(host.ledger.Live().blocks, 0u);
}

TEST_F(ChildSequence, AReleasedSequenceCanBeUsedAgain) {
  const Deque nodes = NewNodes(3);
  ChildSeq sequence;
  for (int i = 0; i < 3; ++i) {
    Fill(sequence, nodes);
    EXPECT_TRUE(Same(sequence, nodes));
    sequence.clear();
    EXPECT_TRUE(sequence.empty());
    EXPECT_EQ(sequence.begin(), sequence.end());
  }
}

TEST_F(ChildSequence, ATreeCanBeReleasedWhileAnotherIsBuilt) {
  const Node sentry = NewNode();
  for (int i = 0; i < 100; ++i) {
    Node root = DeepTree(50, sentry);
    root->children.push_back(DeepTree(50, sentry));
    root->children.pop_front();
    root->children.push_front(DeepTree(10, sentry));
  }
  EXPECT_EQ(sentry.use_count(), 1);
}

TEST_F(ChildSequence, HasNoRoomForMoreThan32BitsCount) {
  ChildSeq sequence;
  EXPECT_THROW(sequence.reserve(size_t{1} << 32), std::length_error);
  EXPECT_TRUE(sequence.empty());
}

}  // namespace
}  // namespace lomlisp::test
