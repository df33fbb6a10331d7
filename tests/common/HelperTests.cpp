#include <limits>

#include <gtest/gtest.h>

#include "fuzzylogic/common/HelperFunctions.h"
#include "fuzzylogic/common/KelException.h"

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

TEST(NumberCharacters, AreTheSignsThePointAndTheDigits) {
  const std::u16string_view symbols = u"+-.";
  const std::u16string_view digits = u"0123456789";
  for (int code = 0; code <= 0xFFFF; ++code) {
    const auto ch = static_cast<char16_t>(code);
    const bool symbol = symbols.find(ch) != std::u16string_view::npos;
    EXPECT_EQ(IsNumberSymbol(ch), symbol) << code;
    EXPECT_EQ(IsNumberChar(ch), symbol || digits.find(ch) != std::u16string_view::npos) << code;
  }
}

TEST(FloatEquals, CountsBothBoundsInAndNoNumberOut) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  const struct {
    double A, B, Tolerance;
    bool Equal;
  } cases[] = {
      {1, 1.5, 0.5, true},       {1, 1.5, 0.4999, false},       {-1, 1, 2, true},
      {3, 3, 0, true},           {3, 3.0000001, 0, false},      {nan, nan, 1, false},
      {nan, 1, infinity, false}, {infinity, infinity, 1, true}, {infinity, -infinity, 1, false}};
  for (const auto& c : cases) {
    EXPECT_EQ(FloatEquals(c.A, c.B, c.Tolerance), c.Equal) << c.A << ' ' << c.B;
    EXPECT_EQ(FloatEquals(c.B, c.A, c.Tolerance), c.Equal) << c.B << ' ' << c.A;
  }
}

}  // namespace
}  // namespace fzy
