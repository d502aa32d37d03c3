#include <embedded/selection/SelectionSets.h>
#include <tests/support/HostTest.h>

#include <algorithm>
#include <deque>
#include <random>

namespace lomlisp::test {
namespace {

using embedded::Object;
using embedded::SelectionSet;
using embedded::SelectionSets;
using Members = std::vector<Object*>;

// Sets look at no more than the address of an entity.
class Entities {
 public:
  explicit Entities(int count) : m_objects(static_cast<size_t>(count)) {}
  Object& operator[](int index) { return m_objects[static_cast<size_t>(index)]; }
  Members All() {
    Members all;
    for (Object& object : m_objects) all.push_back(&object);
    return all;
  }

 private:
  std::deque<Object> m_objects;
};

Members ByIndex(const SelectionSet& set) {
  Members members;
  for (size_t index = 0; index < set.Size(); ++index) members.push_back(set.At(index));
  return members;
}

TEST(SelectionSetMembers, KeepTheirOrderAndStandOnceEach) {
  Entities e(3);
  const SelectionSet set({&e[2], &e[0], &e[2], &e[1], &e[0]});
  EXPECT_EQ(set.Size(), 3u);
  EXPECT_EQ(set.Members(), (Members{&e[2], &e[0], &e[1]}));
  EXPECT_EQ(ByIndex(set), set.Members());
  EXPECT_EQ(set.At(3), nullptr);
  EXPECT_EQ(set.At(~size_t{0}), nullptr);
}

TEST(SelectionSetMembers, AreAddedAtTheEndUnlessThere) {
  Entities e(2);
  SelectionSet set;
  EXPECT_EQ(set.At(0), nullptr);
  EXPECT_FALSE(set.Contains(e[0]));
  EXPECT_TRUE(set.Add(e[0]));
  EXPECT_TRUE(set.Add(e[1]));
  EXPECT_FALSE(set.Add(e[0]));
  EXPECT_TRUE(set.Contains(e[0]));
  EXPECT_EQ(set.Members(), (Members{&e[0], &e[1]}));
}

TEST(SelectionSetMembers, LeaveTheOrderOfTheOthersWhenDeletedAndComeBackAtTheEnd) {
  Entities e(4);
  SelectionSet set(e.All());
  EXPECT_TRUE(set.Delete(e[1]));
  EXPECT_FALSE(set.Delete(e[1]));
  EXPECT_FALSE(set.Contains(e[1]));
  EXPECT_EQ(ByIndex(set), (Members{&e[0], &e[2], &e[3]}));
  EXPECT_EQ(set.At(3), nullptr);
  EXPECT_TRUE(set.Add(e[1]));
  EXPECT_EQ(ByIndex(set), (Members{&e[0], &e[2], &e[3], &e[1]}));
}

TEST(SelectionSetMembers, AreThoseOfAPlainListAfterRandomChanges) {
  Entities e(40);
  SelectionSet set;
  Members model;
  std::mt19937 random{7};
  for (unsigned int round = 0; round < Rounds(20'000); ++round) {
    Object& entity = e[static_cast<int>(random() % 40)];
    const auto place = std::find(model.begin(), model.end(), &entity);
    // Longer and shorter by turns, so that the set is emptied and filled.
    if ((random() % 8 < 5) == (round / 200 % 2 == 0)) {
      ASSERT_EQ(set.Add(entity), place == model.end());
      if (place == model.end()) model.push_back(&entity);
    } else {
      ASSERT_EQ(set.Delete(entity), place != model.end());
      if (place != model.end()) model.erase(place);
    }
    ASSERT_EQ(set.Contains(entity), std::find(model.begin(), model.end(), &entity) != model.end());
    ASSERT_EQ(ByIndex(set), model);
    ASSERT_EQ(set.Members(), model);
  }
}

// The time limit of the run is what fails here.
TEST(SelectionSetMembers, CanBeDeletedFromAnyPlaceOfALargeSet) {
  Entities e(kLarge / 4);
  const int count = kLarge / 4;
  SelectionSet front(e.All());
  for (int index = 0; index < count; ++index) {
    ASSERT_EQ(front.At(0), &e[index]);
    front.Delete(e[index]);
  }
  EXPECT_EQ(front.Size(), 0u);
  SelectionSet back(e.All());
  for (int index = count; index-- > 0;) {
    ASSERT_EQ(back.At(back.Size() - 1), &e[index]);
    back.Delete(e[index]);
  }
  EXPECT_EQ(back.Size(), 0u);
  SelectionSet half(e.All());
  for (int index = 0; index < count / 2; ++index) half.Delete(*half.At(static_cast<size_t>(index)));
  EXPECT_EQ(half.At(0), &e[1]);
  EXPECT_EQ(half.At(static_cast<size_t>(count / 2 - 1)), &e[count - 1]);
}

TEST(SelectionSetMembers, CostNothingAfterTheyWereDeleted) {
  Entities e(2);
  SelectionSet set({&e[0]});
  for (int round = 0; round < kLarge; ++round) {
    set.Add(e[1]);
    set.Delete(e[1]);
    ASSERT_EQ(set.Members().size(), 1u);
  }
}

TEST(SelectionSetNumbers, AreNeverZeroAndNeverGivenAgain) {
  Entities e(1);
  SelectionSets sets;
  const auto first = sets.Make({&e[0]});
  const auto second = sets.Make({});
  ASSERT_TRUE(first && second);
  EXPECT_NE(*first, 0u);
  EXPECT_NE(*first, *second);
  EXPECT_EQ(sets.Find(*first)->Members(), Members{&e[0]});
  EXPECT_EQ(sets.Find(*second)->Size(), 0u);
  EXPECT_TRUE(sets.Free(*first));
  const auto third = sets.Make({});
  EXPECT_GT(*third, *second);
  sets.Clear();
  EXPECT_GT(*sets.Make({}), *third);
}

TEST(SelectionSetNumbers, ThatNoSetHasAreRefused) {
  SelectionSets sets;
  const uint64_t number = *sets.Make({});
  EXPECT_EQ(sets.Find(0), nullptr);
  EXPECT_EQ(sets.Find(number + 1), nullptr);
  EXPECT_FALSE(sets.Free(0));
  EXPECT_TRUE(sets.Free(number));
  EXPECT_FALSE(sets.Free(number));
  EXPECT_EQ(sets.Find(number), nullptr);
}

TEST(SelectionSetNumbers, AreLimitedAndFreeSetsMakeRoom) {
  SelectionSets sets(2);
  const auto first = sets.Make({});
  EXPECT_TRUE(first.has_value());
  EXPECT_TRUE(sets.Make({}).has_value());
  EXPECT_EQ(sets.Make({}), std::nullopt);
  EXPECT_TRUE(sets.Free(*first));
  EXPECT_TRUE(sets.Make({}).has_value());
  EXPECT_EQ(sets.Make({}), std::nullopt);
  sets.Clear();
  EXPECT_TRUE(sets.Make({}).has_value());
  SelectionSets usual;
  for (size_t count = 0; count < SelectionSets::kLimit; ++count) EXPECT_TRUE(usual.Make({}).has_value());
  EXPECT_EQ(usual.Make({}), std::nullopt);
}

TEST(SelectionSetNumbers, LeaveThePreviousSelectionAlone) {
  Entities e(2);
  SelectionSets sets;
  EXPECT_TRUE(sets.Previous().empty());
  sets.SetPrevious({&e[1], &e[0]});
  sets.Free(*sets.Make({&e[0]}));
  EXPECT_EQ(sets.Previous(), (Members{&e[1], &e[0]}));
  sets.SetPrevious({&e[0]});
  EXPECT_EQ(sets.Previous(), Members{&e[0]});
  sets.Clear();
  EXPECT_TRUE(sets.Previous().empty());
}

}  // namespace
}  // namespace lomlisp::test
