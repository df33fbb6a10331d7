#include <bit>
#include <cstdlib>
#include <limits>
#include <locale>
#include <tuple>

#include <gtest/gtest.h>

#include "fuzzylogic/framework/Encoding.h"
#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/framework/Format.h"
#include "fuzzylogic/framework/Message.h"
#include "fuzzylogic/framework/Strings.h"
#include "tests/support/Random.h"

namespace fzy {
namespace {

// clang-format off
const struct {
  const char* Name;
  const TEncoding* Encoding;
  std::u16string Sample;
  std::string Bytes;
} Encodings[] = {
    // The codes at each change of a sequence's length and around the surrogates.
    {"UTF-8", TEncoding::UTF8(),
     u"A\u007F\u0080\u07FF\u0800\u20AC\uD7FF\uE000\uFFFF\U00010000\U0001F600\U0010FFFF",
     "A\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xE2\x82\xAC\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF"
     "\xF0\x90\x80\x80\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF"},
    {"UTF-16LE", TEncoding::UTF16LittleEndian(), u"A\u20AC\U0001F600", {"A\0\xAC\x20\x3D\xD8\0\xDE", 8}},
    {"UTF-16BE", TEncoding::UTF16BigEndian(), u"A\u20AC\U0001F600", {"\0A\x20\xAC\xD8\x3D\xDE\0", 8}},
    {"ASCII", TEncoding::ASCII(), {u"\0A\x7F", 3}, {"\0A\x7F", 3}},
    {"Latin-1", TEncoding::Latin1(), u"A\u0080\u00FF", "A\x80\xFF"},
};
// clang-format on

std::u16string Decode(const TEncoding& encoding, std::string_view bytes) {
  std::u16string text;
  EXPECT_EQ(encoding.Decode(bytes, true, text), bytes.size());
  return text;
}

std::string Encode(const TEncoding& encoding, std::u16string_view text) {
  std::string bytes;
  encoding.Encode(text, bytes);
  return bytes;
}

TEST(Encoding, WritesAndReadsItsBytesAndReplacesTheRest) {
  for (const auto& c : Encodings) {
    EXPECT_EQ(Encode(*c.Encoding, c.Sample), c.Bytes) << c.Name;
    EXPECT_EQ(Decode(*c.Encoding, c.Bytes), c.Sample) << c.Name;
  }
  // Unpaired surrogates: high at the end, high before a letter, low before high.
  EXPECT_EQ(TString(u"a\xD83D").Utf8(), "a\xEF\xBF\xBD");
  EXPECT_EQ(TString(u"\xD83Dz").Utf8(), "\xEF\xBF\xBDz");
  EXPECT_EQ(TString(u"\xDE00\xD83D").Utf8(), "\xEF\xBF\xBD\xEF\xBF\xBD");
  EXPECT_EQ(Encode(*TEncoding::ASCII(), u"a\u00E9\U0001F600\xDE00z"), "a???z");
  EXPECT_EQ(Encode(*TEncoding::Latin1(), u"a\u00E9\u0100z"), "a\xE9?z");
  EXPECT_EQ(Decode(*TEncoding::ASCII(), "a\x80z"), u"a\uFFFDz");
  EXPECT_EQ(Decode(*TEncoding::UTF16BigEndian(), std::string_view("\0a\0", 3)), u"a\uFFFD");
}

// One replacement, here "?", for each maximal part of a sequence.
TEST(Encoding, MalformedUtf8GivesOneReplacementForEachFaultySequence) {
  const std::pair<std::string, std::u16string> cases[] = {
      {std::string("a\xF1\x80\x80\xE1\x80\xC2") + "b\x80" + "c\x80\xBF" + "d", u"a???b?c??d"},
      {"\xC0\xAF\xE0\x80\xBF\xF0\x81\x82z", u"????????z"},
      {"\xED\xA0\x80\xED\xBF\xBF\xED\xAFz", u"????????z"},
      {"\xF4\x91\x92\x93\xFFz\x80\xBFz", u"?????z??z"},
      {"\xE1\x80\xE2\xF0\x91\x92\xF1\xBFz", u"????z"},
      {"z\xF0\x9F\x98", u"z?"}};
  for (auto [bytes, text] : cases) {
    for (char16_t& unit : text) unit = unit == u'?' ? u'\uFFFD' : unit;
    EXPECT_EQ(Decode(*TEncoding::UTF8(), bytes), text);
  }
}

TEST(Encoding, TextReadInPiecesIsTheTextReadAsAWhole) {
  test::TRandom random;
  SCOPED_TRACE(random.Trace());
  // Bytes around every border that the shape of a sequence knows.
  constexpr std::string_view pool =
      "a\x7F\x80\x8F\x90\x9F\xA0\xBF\xC1\xC2\xDF\xE0\xE1\xED\xEF\xF0\xF1\xF4\xF5\xFF\xD8\xDC";
  for (int round = 0; round < 2000; ++round) {
    std::string bytes;
    for (int i = random.Below(12); i > 0; --i)
      bytes += pool[static_cast<std::size_t>(random.Below(static_cast<int>(pool.size())))];
    for (const auto& c : Encodings) {
      const std::u16string whole = Decode(*c.Encoding, bytes);
      for (std::size_t split = 0; split <= bytes.size(); ++split) {
        std::u16string pieces;
        const std::size_t used = c.Encoding->Decode(bytes.substr(0, split), false, pieces);
        ASSERT_LE(used, split);
        ASSERT_LT(split - used, 4U) << "no more than an unfinished character is left over";
        c.Encoding->Decode(bytes.substr(used), true, pieces);
        ASSERT_EQ(pieces, whole) << c.Name << ", split at " << split << ", round " << round;
      }
    }
  }
}

TEST(Text, FoldsTheLettersItKnowsAndSlicesByUnit) {
  // clang-format off
  const std::tuple<const char*, const char*, bool> cases[] = {
      {"Very TALL_9", "vERY tall_9", true}, {"ÀÖØÞĀĶĹŇŊŶŸŹŽ", "àöøþāķĺňŋŷÿźž", true},
      {"ΑΣΩЀЏАЯЁ", "ασωѐџаяё", true}, {"a", "ab", false}, {"×", "÷", false}, {"@[", "`{", false},
      {"İ", "ı", false}, {"ß", "ÿ", false}, {"é", "e", false}};
  // clang-format on
  for (const auto& [left, right, same] : cases)
    EXPECT_EQ(SameText(TString(left), TString(right)), same) << left;
  EXPECT_NE(TString("a"), "A");
  const TString text = u" \t\U0001F600 b\u00A0\n";
  EXPECT_EQ(text.Trim(), TString(u"\U0001F600 b\u00A0"));
  EXPECT_EQ(TString(" \r\n ").Trim() + text.Slice(8) + text.Slice(9), "");
  EXPECT_EQ(text.Slice(5, 100), TString(u"b\u00A0\n"));
  EXPECT_LT(TString(u"\U0001F600"), TString(u"\uFFFD")) << "units, not code points";
}

TEST(Format, FillsPlaceholdersAndLeavesThoseWithoutTheirArgument) {
  const std::pair<TString, const char*> cases[] = {
      {FormatText("%s: %d of %.2f%%, %s", {"тёмный", -3, 0.5, ""}), "тёмный: -3 of 0.50%, "},
      {FormatText("%d", {std::numeric_limits<std::int64_t>::min()}), "-9223372036854775808"},
      {FormatText("%f %.f %.0f", {1.5, 1.0, 2.0}), "1.500000 1 2"},
      {FormatText("%s%s", {"%d%s%", "!"}), "%d%s%!"},
      {FormatText("%s and %s, %d", {"one"}), "one and %s, %d"},
      {FormatText("%d %s %.4f", {"a", "b", 1}), "%d b %.4f"},
      {FormatText("%s|%f", {1.0, 2.0}), "%s|2.000000"},
      {FormatText("50% %5d %q %.4 %s %", {"x"}), "50% %5d %q %.4 x %"}};
  for (const auto& [text, expected] : cases) EXPECT_EQ(text, expected);
  EXPECT_EQ(FormatText("%.999999999999f", {1.0}).size(), 101U) << "a wild count is bounded";

  SetDecimalSeparator(u',');
  EXPECT_EQ(FormatText("%.1f.%s", {0.5, "1.5"}), "0,5.1.5");
  EXPECT_EQ(FormatFixed(3, 0), "3");
  EXPECT_EQ(FormatShortest(0.5), "0.5") << "a text that programs read";
  SetDecimalSeparator(u'.');
}

TEST(Format, NumbersAreExact) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  // clang-format off
  const std::tuple<double, int, const char*> cases[] = {
      {0.125, 2, "0.12"}, {0.375, 2, "0.38"}, {2.5, -1, "2"}, {-1.5, 4, "-1.5000"}, {0.1, 99,
      "0.100000000000000005551115123125782702118158340454101562500000000000000000000000000000000000000000000"},
      {0.00005, 4, "0.0001"}, {-infinity, 4, "-inf"}, {-nan, 4, "nan"}};
  // clang-format on
  for (const auto& [value, decimals, text] : cases) EXPECT_EQ(FormatFixed(value, decimals), text);
  EXPECT_EQ(FormatFixed(-std::numeric_limits<double>::max(), 1000).size(), 410U);
  EXPECT_EQ(FormatShortest(-nan), "nan");

  test::TRandom random;
  SCOPED_TRACE(random.Trace());
  for (int i = 0; i < 5000; ++i) {
    const auto value = std::bit_cast<double>(random.Bits());
    const std::string text = FormatShortest(value).Utf8();
    ASSERT_LE(text.size(), 24U);
    ASSERT_TRUE(value != value || std::strtod(text.c_str(), nullptr) == value) << text;
  }
}

TEST(Message, ReplacementCountsOnTheNextUse) {
  static TMessage message{u"old"};
  for (const char* text : {"neu \u201E%s\u201C", ""}) {
    message.Set(text);
    EXPECT_EQ(message.Get(), *text ? text : "old");
  }
}

TEST(Text, IsOrderedByTheGlobalLocale) {
  struct TBackwards : std::collate<wchar_t> {
    using T = const wchar_t*;
    int do_compare(T a, T b, T c, T d) const override {
      return std::collate<wchar_t>::do_compare(c, d, a, b);
    }
  };
  const TString upper = "\xC3\x84pfel", lower = "\xC3\xA4pfel", face = u"\U0001F600",
                last = u"\uFFFD";
  EXPECT_TRUE(CompareText(upper, lower, true) < 0 && CompareText(upper, lower, false) == 0);
  EXPECT_EQ(CompareText(last, face, true) < 0, sizeof(wchar_t) > 2);
  const std::locale before = std::locale::global({std::locale(), new TBackwards});
  EXPECT_TRUE(CompareText(upper, lower, true) > 0 && CompareText(upper, lower, false) == 0);
  std::locale::global(before);
}

TEST(StringList, SplitsTextAtEveryKindOfLineEndAndKeepsIt) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},       {"a", "a;"},      {"a\rb\r\nc\nd", "a;b;c;d;"},
      {"\n\n", ";;"}, {"\r\r\n", ";;"}, {" a \n\r\n\tb\n", " a ;;\tb;"}};
  for (const auto& [text, expected] : cases) {
    TStrings list;
    list.Add("old");
    list.SetText(text);
    std::string lines;
    for (int i = 0; i < list.GetCount(); ++i) lines += list[i].Utf8() + ';';
    EXPECT_EQ(lines, expected);
    const std::string whole = list.GetText().Utf8();
    EXPECT_TRUE(whole == text || whole == text + std::string("\n"));
  }
}

TEST(StringList, FindsByItsCaseRuleAndKeepsObjectsWithTheirLines) {
  TStrings list, copy;
  list.SetText("plain\nName=Cold\n=none\nname=a=b\nName=again");
  EXPECT_EQ(list.IndexOfName("plain"), -1);
  EXPECT_EQ(list.IndexOf("name=cold"), -1);
  EXPECT_EQ(list.GetValue("name") + list.GetValue("") + list.GetValue("missing"), "a=bnone");
  list.SetCaseSensitive(false);
  EXPECT_EQ(list.IndexOf("name=cold"), 1);
  list.AddObject("a=1", &copy);
  for (const char* name : {"NAME", "A", "new"}) list.SetValue(name, "2");
  list.Delete(4);
  copy.Assign(&list);
  copy.Assign(&copy);
  EXPECT_EQ(copy.GetText(), "plain\nNAME=2\n=none\nname=a=b\nA=2\nnew=2\n");
  EXPECT_EQ(copy.GetObject(4), &copy);
  EXPECT_THROW(copy.GetString(-1), EListError);
  EXPECT_THROW(copy.Delete(6), EListError);
}

}  // namespace
}  // namespace fzy
