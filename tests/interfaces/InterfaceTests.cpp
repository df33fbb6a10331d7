#include <set>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "fuzzylogic/interfaces/FuzzyInterfaces.h"
#include "fuzzylogic/interfaces/UniqueID.h"

namespace fzy {
namespace {

// Other programs know the contracts by these numbers.
TEST(Interfaces, KeepTheirIdentifiers) {
  // clang-format off
  const std::pair<TGuid, TGuid> ids[] = {
      {ICloneable::Id, {0x2d42ccdb, 0xd296, 0x11d3, {0xb9, 0xbb, 0, 0xc0, 0x4f, 0x8e, 0xda, 0x5f}}},
      {IFuzzySet::Id, {0xb5c057e4, 0xfd60, 0x4818, {0x96, 0x41, 0xb6, 0x1a, 0x71, 0xb4, 0x92, 0xcf}}},
      {IFuzzyVariable::Id, {0xf749ff55, 0xfff4, 0x4f92, {0x9b, 0x6f, 0x14, 0x56, 0x8d, 0x17, 0x46, 0x61}}},
      {IFuzzyParser::Id, {0x7f0ed40b, 0x4048, 0x46bb, {0x8e, 0xfb, 0xda, 0xb9, 0x53, 0x2f, 0x6a, 0x54}}},
  };
  // clang-format on
  for (const auto& [actual, expected] : ids) EXPECT_TRUE(actual == expected);
}

TEST(UniqueID, StartsWithOneAndNeverRepeatsInTheProcess) {
  EXPECT_EQ(GetUniqueID(), 1);
  std::vector<int> numbers[4];
  std::vector<std::thread> running;
  for (std::vector<int>& mine : numbers)
    running.emplace_back([&mine] {
      for (int i = 0; i < 5000; ++i) mine.push_back(GetUniqueID());
    });
  for (std::thread& thread : running) thread.join();
  std::set<int> all;
  for (const std::vector<int>& mine : numbers) all.insert(mine.begin(), mine.end());
  EXPECT_TRUE(all.size() == 20'000U && *all.begin() == 2 && *all.rbegin() == 20'001);
}

}  // namespace
}  // namespace fzy
