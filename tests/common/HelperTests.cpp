#include <limits>

#include <gtest/gtest.h>

#include "fuzzylogic/common/HelperFunctions.h"

namespace fzy {
namespace {

TEST(InCircularRange, IsTheWalkFromAfterLowToHigh) {
  constexpr int ring = 6;
  for (int low = 0; low < ring; ++low) {
    for (int high = 0; high < ring; ++high) {
      bool reached[ring] = {};
      int at = low;
      do reached[at = (at + 1) % ring] = true;
      while (at != high);
      for (int item = 0; item < ring; ++item)
        EXPECT_EQ(InCircularRange(low, item, high), reached[item])
            << low << ' ' << item << ' ' << high;
    }
  }
}

TEST(FloatEquals, CountsBothBoundsInAndNoNumberOut) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  for (const double sign : {1.0, -1.0}) {
    EXPECT_TRUE(FloatEquals(sign, sign * 1.5, 0.5));
    EXPECT_FALSE(FloatEquals(sign, sign * 1.5, 0.4999));
    EXPECT_TRUE(FloatEquals(sign * infinity, sign * infinity, 1));
    EXPECT_FALSE(FloatEquals(sign * infinity, -sign * infinity, 1));
    EXPECT_FALSE(FloatEquals(nan, sign, infinity));
  }
  EXPECT_FALSE(FloatEquals(nan, nan, 1));
}

}  // namespace
}  // namespace fzy
