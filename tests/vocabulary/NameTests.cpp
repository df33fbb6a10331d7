#include <gtest/gtest.h>

#include "fuzzylogic/framework/Format.h"
#include "fuzzylogic/vocabulary/FuzzyNames.h"

namespace fzy {
namespace {

TEST(Names, EncloseNamesWithBlanksAndNoOthers) {
  const std::pair<TString, const char*> cases[] = {
      {CreateFuzzyName(fhVery, "tall"), "very tall"},
      {CreateFuzzyName(fhVery, "very tall"), "very [very tall]"},
      {CreateFuzzyName(fhMoreOrLess, "[a b]"), "moreorless [[a b]]"},
      {CreateFuzzyName(fhNot, "a\tb"), "not a\tb"},
      {CreateFuzzyName(fhGenerally, ""), "generally "},
      {CreateFuzzyName(bfhAdd, true, "tall"), "+ tall"},
      {CreateFuzzyName(bfhAdd, false, "tall"), "+X tall"},
      {CreateFuzzyName(bfhCutGreaterEq, false, " "), ">=X [ ]"},
      {CreateFuzzyName("hot", "very humid", "and-mean"), "hot and-mean [very humid]"},
      {CreateFuzzyName("a b", "c d", "is or"), "[a b] is or [c d]"},
      {CreateFuzzyName("a b", "c d", 1.5), "[a b] c d 1.5000"},
      {CreateFuzzyName("+", "tall", -0.00005), "+ tall -0.0001"}};
  for (const auto& [name, expected] : cases) EXPECT_EQ(name, expected);

  SetDecimalSeparator(u',');
  const TString name = CreateFuzzyName("+", "tall", 0.5);
  SetDecimalSeparator(u'.');
  EXPECT_EQ(name, "+ tall 0,5000");
}

/// Whether each bracket has its partner.
bool Balanced(const TString& text) {
  int depth = 0;
  for (const char16_t unit : text) {
    depth += unit == u'[' ? 1 : unit == u']' ? -1 : 0;
    if (depth < 0) return false;
  }
  return depth == 0;
}

TEST(Expression, IsEnclosedOnceWhenItIsCompound) {
  const std::pair<const char*, const char*> cases[] = {{"  x  ", "x"},
                                                       {"[x]", "[x]"},
                                                       {"", ""},
                                                       {" ", ""},
                                                       {"a or b", "[a or b]"},
                                                       {"[a b]", "[a b]"},
                                                       {" [a b]\n", "[a b]"},
                                                       {" a b ", "[ a b ]"},
                                                       {"[a] or [b]", "[[a] or [b]]"},
                                                       {"[[a] or [b]]", "[[a] or [b]]"},
                                                       // Brackets without a partner.
                                                       {"[] []", "[[] []]"},
                                                       {"[a b", "[[a b]"},
                                                       {"[[a b]", "[[a b]"},
                                                       {"[a ]]b]", "[[a ]]b]]"}};
  for (const auto& [text, expected] : cases) EXPECT_EQ(FormatFuzzyExpression(text), expected);

  // Every text of up to eight of these characters whose brackets match.
  constexpr std::u16string_view alphabet = u"a []";
  for (std::size_t length = 0; length <= 8; ++length) {
    for (std::size_t code = 0; code >> (2 * length) == 0; ++code) {
      TString text;
      for (std::size_t i = 0; i < length; ++i) text += alphabet[code >> (2 * i) & 3];
      if (!Balanced(text)) continue;
      const TString trimmed = text.Trim();
      const bool enclosed = trimmed.size() > 2 && trimmed[0] == u'[' &&
                            Balanced(trimmed.Slice(1, trimmed.size() - 2));
      const TString once = FormatFuzzyExpression(text);
      ASSERT_EQ(once, trimmed.Contains(u' ') && !enclosed ? "[" + text + "]" : trimmed);
      ASSERT_EQ(FormatFuzzyExpression(once), once);
    }
  }
}

}  // namespace
}  // namespace fzy
