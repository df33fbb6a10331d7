#include <cstdio>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "fuzzylogic/interfaces/FuzzyInterfaces.h"
#include "fuzzylogic/interfaces/UniqueID.h"

namespace fzy {
namespace {

std::string Text(const TGuid& id) {
  char text[37];
  std::snprintf(text, sizeof text, "%08x-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x", id.D1, id.D2,
                id.D3, id.D4[0], id.D4[1], id.D4[2], id.D4[3], id.D4[4], id.D4[5], id.D4[6],
                id.D4[7]);
  return text;
}

// Other programs know the contracts by these numbers.
TEST(Interfaces, KeepTheirIdentifiers) {
  EXPECT_EQ(Text(ICloneable::Id), "2d42ccdb-d296-11d3-b9bb-00c04f8eda5f");
  EXPECT_EQ(Text(IFuzzySet::Id), "b5c057e4-fd60-4818-9641-b61a71b492cf");
  EXPECT_EQ(Text(IFuzzyVariable::Id), "f749ff55-fff4-4f92-9b6f-14568d174661");
  EXPECT_EQ(Text(IFuzzyParser::Id), "7f0ed40b-4048-46bb-8efb-dab9532f6a54");
}

TEST(UniqueID, StartsWithOneAndNeverRepeatsInTheProcess) {
  EXPECT_EQ(GetUniqueID(), 1);
  constexpr int threads = 4;
  constexpr int each = 5000;
  std::vector<int> numbers[threads];
  std::vector<std::thread> running;
  for (std::vector<int>& mine : numbers)
    running.emplace_back([&mine] {
      for (int i = 0; i < each; ++i) mine.push_back(GetUniqueID());
    });
  for (std::thread& thread : running) thread.join();
  std::set<int> all;
  for (const std::vector<int>& mine : numbers) all.insert(mine.begin(), mine.end());
  EXPECT_EQ(all.size(), std::size_t{threads * each});
  EXPECT_EQ(*all.begin(), 2);
  EXPECT_EQ(*all.rbegin(), threads * each + 1);
}

}  // namespace
}  // namespace fzy
