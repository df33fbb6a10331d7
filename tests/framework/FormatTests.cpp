#include <bit>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

#include <gtest/gtest.h>

#include "fuzzylogic/framework/Format.h"
#include "fuzzylogic/framework/Message.h"
#include "tests/support/Random.h"

namespace fzy {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

/// The C library's text, which is as exact: with so many decimals, or with so many in scientific
/// form.
std::string Fixed(double value, int decimals) {
  char text[700];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  return text;
}
std::string Scientific(double value, int decimals) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*e", decimals, value);
  return text;
}

double RandomFinite(test::TRandom& random) {
  for (;;) {
    const auto value = std::bit_cast<double>(random.Bits());
    if (std::isfinite(value)) return value;
  }
}

TEST(Format, FillsPlaceholdersInOrder) {
  EXPECT_EQ(FormatText("%s: %d of %.2f%%, %s", {"тёмный", -3, 0.5, ""}), "тёмный: -3 of 0.50%, ");
  EXPECT_EQ(FormatText("%d", {std::numeric_limits<std::int64_t>::min()}), "-9223372036854775808");
  EXPECT_EQ(FormatText("%f %.f %.0f", {1.5, 1.0, 2.0}), "1.500000 1 2");
  EXPECT_EQ(FormatText("%s%s", {"%d%s%", "!"}), "%d%s%!") << "an argument is not a format";
  EXPECT_EQ(FormatText("no more", {"than", "needed"}), "no more");
  EXPECT_EQ(FormatText("%.999999999999f", {1.0}).size(), 101U) << "a wild count is bounded";
}

TEST(Format, LeavesPlaceholdersWithoutTheirArgumentStanding) {
  EXPECT_EQ(FormatText("%s and %s, %d", {"one"}), "one and %s, %d");
  EXPECT_EQ(FormatText("%d %s %.4f", {"a", "b", 1}), "%d b %.4f");
  EXPECT_EQ(FormatText("%s|%f", {1.0, 2.0}), "%s|2.000000");
  EXPECT_EQ(FormatText("50% %5d %q %.4 %s %", {"x"}), "50% %5d %q %.4 x %");
  EXPECT_EQ(FormatText("", {"x"}), "");
}

TEST(Format, FixedRoundsTheExactValue) {
  const struct {
    double Value;
    int Decimals;
    const char* Text;
  } cases[] = {{0.125, 2, "0.12"},     {0.375, 2, "0.38"},     {2.5, 0, "2"},
               {-1.5, 4, "-1.5000"},   {0.00005, 4, "0.0001"}, {0.99999, 4, "1.0000"},
               {Infinity, 4, "inf"},   {-Infinity, 4, "-inf"}, {NotANumber, 4, "nan"},
               {-NotANumber, 4, "nan"}};
  for (const auto& c : cases) EXPECT_EQ(FormatFixed(c.Value, c.Decimals), c.Text);
  EXPECT_EQ(FormatShortest(-NotANumber), "nan");

  const double biggest = std::numeric_limits<double>::max();
  EXPECT_EQ(FormatFixed(-biggest, 99), Fixed(-biggest, 99));
  EXPECT_EQ(FormatFixed(biggest, 1000), FormatFixed(biggest, 99));
  EXPECT_EQ(FormatFixed(2.5, -1), "2");

  test::TRandom random;
  SCOPED_TRACE(random.Trace());
  for (int i = 0; i < 3000; ++i) {
    const double value = i % 2 ? RandomFinite(random) : (random.Unit() - 0.5) * 1000;
    ASSERT_EQ(FormatFixed(value, i % 20), Fixed(value, i % 20));
  }
}

TEST(Format, SeparatorCountsForTextsToShowOnly) {
  SetDecimalSeparator(u',');
  EXPECT_EQ(FormatText("%.1f.%s", {0.5, "1.5"}), "0,5.1.5");
  EXPECT_EQ(FormatFixed(1234.5, 2), "1234,50");
  EXPECT_EQ(FormatFixed(3, 0), "3");
  EXPECT_EQ(FormatShortest(0.5), "0.5");
  SetDecimalSeparator(u'.');
}

TEST(Format, ShortestReadsBackToTheSameBitsAndNoShorterTextDoes) {
  test::TRandom random;
  SCOPED_TRACE(random.Trace());
  for (int i = 0; i < 5000; ++i) {
    const double value = i % 2 ? RandomFinite(random) : random.Below(100'000) / 1000.0;
    const std::string text = FormatShortest(value).Utf8();
    double back = 0;
    const auto end = std::from_chars(text.data(), text.data() + text.size(), back);
    ASSERT_EQ(end.ptr, text.data() + text.size()) << text;
    ASSERT_EQ(std::bit_cast<std::uint64_t>(back), std::bit_cast<std::uint64_t>(value)) << text;
    int digits = 17;
    while (digits > 1 && std::strtod(Scientific(value, digits - 2).c_str(), nullptr) == value)
      --digits;
    ASSERT_LE(text.size(), Scientific(value, digits - 1).size()) << text;
  }
}

TEST(Message, ReplacementCountsOnTheNextUse) {
  static constinit TMessage message{u"Unknown name: \"%s\""};
  EXPECT_EQ(FormatText(message, {"cold"}), "Unknown name: \"cold\"");
  message.Set("Unbekannter Name: „%s“");
  EXPECT_EQ(FormatText(message, {"kühl"}), "Unbekannter Name: „kühl“");
  message.Set("");
  EXPECT_EQ(message.Get(), "Unknown name: \"%s\"");
}

}  // namespace
}  // namespace fzy
