#include <functional>
#include <set>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "fuzzylogic/interfaces/UniqueID.h"
#include "tests/interfaces/Tallied.h"

// What several threads may do at once. The thread sanitizer sees what goes wrong only now and then.

namespace fzy::test {
namespace {

/// Runs all deeds at once, each on a thread of its own.
void Race(const std::vector<std::function<void()>>& deeds) {
  std::atomic<std::size_t> ready{0};
  std::vector<std::thread> running;
  for (const auto& deed : deeds)
    running.emplace_back([&ready, &deed, all = deeds.size()] {
      for (++ready; ready < all;) std::this_thread::yield();
      deed();
    });
  for (std::thread& thread : running) thread.join();
}

TEST(Race, UniqueIDsStartWithOneAndNeverRepeat) {
  EXPECT_EQ(GetUniqueID(), 1);
  std::vector<int> numbers[4];
  std::vector<std::function<void()>> deeds;
  for (std::vector<int>& mine : numbers)
    deeds.push_back([&mine] {
      for (int i = 0; i < 5000; ++i) mine.push_back(GetUniqueID());
    });
  Race(deeds);
  std::set<int> all;
  for (const std::vector<int>& mine : numbers) all.insert(mine.begin(), mine.end());
  EXPECT_TRUE(all.size() == 20'000U && *all.begin() == 2 && *all.rbegin() == 20'001);
}

TEST(Race, ReferencesAreCopiedAndDroppedOnAnyThreadTheLastOnesToo) {
  for (int round = 0; round < 1000; ++round) {
    Ref<IFuzzyVariable> variable = TIFuzzyVariable::Create("t", TTalliedVariable::Class());
    int cleared = 0;
    Ref<IFuzzySet> held = variable->Add("a");
    for (const char* name : {"b", "c"}) variable->Add(name);
    Ref<IFuzzySet> unlisted = round % 2 == 0 ? nullptr : held->Clone(variable);
    Ref<IFuzzyVariable> another = round % 4 < 2 ? nullptr : variable;
    variable->SetOnChange([&cleared](TObject*) { ++cleared; });
    const auto use = [](auto& reference) {
      return [&reference] {
        for (int i = 0; i < 20; ++i) std::vector(2, reference);
        reference = nullptr;
      };
    };
    Race({use(variable), use(another), use(held), use(unlisted)});
    ASSERT_EQ(Living(), 0) << "round " << round;
    EXPECT_EQ(cleared, 1);
  }
}

}  // namespace
}  // namespace fzy::test
