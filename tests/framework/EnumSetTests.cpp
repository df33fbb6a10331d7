#include <gtest/gtest.h>

#include "fuzzylogic/framework/EnumSet.h"

namespace fzy {
namespace {

TEST(EnumSet, HoldsEachOrdinalByItself) {
  enum class TFlag : unsigned char {};
  TEnumSet<TFlag> set;
  for (int i = 0; i < 32; ++i) {
    const TFlag flag{static_cast<unsigned char>(i)};
    EXPECT_FALSE(set.Contains(flag)) << i;
    set.Include(flag);
    EXPECT_EQ(set, TEnumSet<TFlag>{flag}) << i;
    set.Exclude(flag);
    set.Exclude(flag);
    EXPECT_TRUE(set.IsEmpty()) << i;
  }
}

}  // namespace
}  // namespace fzy
