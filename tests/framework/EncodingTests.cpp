#include <gtest/gtest.h>

#include "fuzzylogic/framework/Encoding.h"
#include "tests/support/Random.h"

namespace fzy {
namespace {

struct TCase {
  const char* Name;
  const TEncoding* Encoding;
  std::u16string Sample;
  std::string Bytes;
};

const TCase Cases[] = {
    // The codes at each change of a sequence's length and around the surrogates.
    {"UTF-8", TEncoding::UTF8(),
     u"A\u007F\u0080\u07FF\u0800\u20AC\uD7FF\uE000\uFFFF\U00010000\U0001F600\U0010FFFF",
     "A\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xE2\x82\xAC\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF"
     "\xF0\x90\x80\x80\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF"},
    {"UTF-16LE", TEncoding::UTF16LittleEndian(), u"A\u20AC\U0001F600",
     std::string("A\0\xAC\x20\x3D\xD8\x00\xDE", 8)},
    {"UTF-16BE", TEncoding::UTF16BigEndian(), u"A\u20AC\U0001F600",
     std::string("\0A\x20\xAC\xD8\x3D\xDE\x00", 8)},
    {"ASCII", TEncoding::ASCII(), std::u16string(u"\0A\x7F", 3), std::string("\0A\x7F", 3)},
    {"Latin-1", TEncoding::Latin1(), u"A\u0080\u00FF", "A\x80\xFF"},
};

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

TEST(Encoding, WritesAndReadsTheBytesOfTheStandard) {
  for (const TCase& c : Cases) {
    SCOPED_TRACE(c.Name);
    EXPECT_EQ(Encode(*c.Encoding, c.Sample), c.Bytes);
    EXPECT_EQ(Decode(*c.Encoding, c.Bytes), c.Sample);
  }
}

TEST(Encoding, ReplacesWhatAnEncodingCannotHold) {
  // Unpaired surrogates: high at the end, high before a letter, low before high.
  EXPECT_EQ(TString(u"a\xD83D").Utf8(), "a\xEF\xBF\xBD");
  EXPECT_EQ(TString(u"\xD83Dz").Utf8(), "\xEF\xBF\xBDz");
  EXPECT_EQ(TString(u"\xDE00\xD83D").Utf8(), "\xEF\xBF\xBD\xEF\xBF\xBD");
  EXPECT_EQ(Encode(*TEncoding::ASCII(), u"a\u00E9\U0001F600\xDE00z"), "a???z");
  EXPECT_EQ(Encode(*TEncoding::Latin1(), u"a\u00E9\u0100z"), "a\xE9?z");
  EXPECT_EQ(Decode(*TEncoding::ASCII(), "a\x80z"), u"a\uFFFDz");
  EXPECT_EQ(Decode(*TEncoding::UTF16BigEndian(), std::string_view("\0a\0", 3)), u"a\uFFFD");
}

// The examples of the Unicode Standard for the replacement of maximal subparts, with a letter
// wherever good text goes on and "?" for each replacement.
TEST(Encoding, MalformedUtf8GivesOneReplacementForEachFaultySequence) {
  const std::pair<const char*, std::u16string> cases[] = {
      {"a\xF1\x80\x80\xE1\x80\xC2"
       "b\x80"
       "c\x80\xBF"
       "d",
       u"a???b?c??d"},
      {"\xC0\xAF\xE0\x80\xBF\xF0\x81\x82z", u"????????z"},
      {"\xED\xA0\x80\xED\xBF\xBF\xED\xAFz", u"????????z"},
      {"\xF4\x91\x92\x93\xFFz\x80\xBFz", u"?????z??z"},
      {"\xE1\x80\xE2\xF0\x91\x92\xF1\xBFz", u"????z"},
      {"z\xF0\x9F\x98", u"z?"}};
  for (auto [bytes, text] : cases) {
    for (char16_t& unit : text) unit = unit == u'?' ? u'\uFFFD' : unit;
    EXPECT_EQ(Decode(*TEncoding::UTF8(), bytes), text) << text.size();
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
    for (const TCase& c : Cases) {
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

TEST(Text, FoldsCaseForTheLettersItKnowsAndForNothingElse) {
  const std::pair<const char*, const char*> same[] = {{"Very TALL_9", "vERY tall_9"},
                                                      {"ÀÖØÞ", "àöøþ"},
                                                      {"ĀĶĹŇŊŶŸŹŽ", "āķĺňŋŷÿźž"},
                                                      {"ΑΣΩ", "ασω"},
                                                      {"ЀЏАЯЁ", "ѐџаяё"}};
  for (const auto& [left, right] : same) {
    EXPECT_TRUE(SameText(TString(left), TString(right))) << left;
    EXPECT_NE(TString(left), TString(right)) << left;
  }
  const std::pair<const char*, const char*> different[] = {
      {"a", "ab"}, {"×", "÷"}, {"@", "`"}, {"[", "{"}, {"İ", "ı"}, {"ß", "ÿ"}, {"é", "e"}};
  for (const auto& [left, right] : different)
    EXPECT_FALSE(SameText(TString(left), TString(right))) << left;
}

TEST(Text, SlicesTrimsAndOrdersByUnit) {
  const TString text = u" \t\U0001F600 b\u00A0\n";
  EXPECT_EQ(text.size(), 8U);
  EXPECT_EQ(text.Trim(), TString(u"\U0001F600 b\u00A0"));
  EXPECT_EQ(TString(" \r\n ").Trim(), "");
  EXPECT_EQ(text.Slice(5, 100), TString(u"b\u00A0\n"));
  EXPECT_EQ(text.Slice(8), "");
  EXPECT_EQ(text.Slice(9), "");
  EXPECT_LT(TString(u"\U0001F600"), TString(u"\uFFFD")) << "units, not code points";
}

}  // namespace
}  // namespace fzy
