#include <gtest/gtest.h>

#include "tests/language/Definitions.h"
#include "tests/language/SmallStack.h"

namespace fzy {
namespace {

using test::Dump;
using test::Failure;
using test::OnSmallStack;
using test::ParseFailure;
using test::TScene;

// Instrumented code is slow, and what it looks for shows at a fifth of the size.
#ifdef __SANITIZE_ADDRESS__
constexpr int Million = 200'000;
#else
constexpr int Million = 1'000'000;
#endif

std::string Repeat(const std::string& part, int times) {
  std::string text;
  text.reserve(part.size() * static_cast<std::size_t>(times));
  for (int i = 0; i < times; ++i) text += part;
  return text;
}

/// The failure of reading a text on a small stack; the parser must be fit for the next text.
std::string SmallStackFailure(const std::string& text) {
  std::string failure;
  OnSmallStack([&] {
    TScene scene;
    failure = Failure([&] { scene.Parser.Parse(text, nullptr); });
    scene.Fuzzy.GetItems()->Clear();
    scene.Parser.Parse("(deffuzzy a)", nullptr);
    EXPECT_EQ(Dump(scene.Fuzzy), "a 0..1 {}");
  });
  return failure;
}

TEST(HostileInput, OfParenthesesWithoutEnd) {
  EXPECT_EQ(SmallStackFailure(Repeat("(", Million)),
            ParseFailure("Expected \"( deffuzzy\"", "ParseFuzzyVariable", 1, " ( ( "));
  EXPECT_EQ(SmallStackFailure(Repeat(")", Million)),
            ParseFailure("Unexpected token: \")\"", "ParseFuzzyLogic", 1, ") "));
  EXPECT_EQ(SmallStackFailure(Repeat("(", Million) + Repeat(")", Million)),
            ParseFailure("Expected \"( deffuzzy\"", "ParseFuzzyVariable", 1, " ( ( "));
}

TEST(HostileInput, OfGroupsNestedInACall) {
  const std::string call = "(deffuzzy a (values (term b (tri ";
  // Where the text ends within the call, its end is a construct of its own, with an echo of its
  // own.
  const std::pair<std::string, std::string> ends[] = {
      {Repeat(")", Million) + "))))", " ( deffuzzy a ( values ( term b ( tri ( ( "}, {"", " \""}};
  for (const auto& [end, echo] : ends) {
    const std::string failure = SmallStackFailure(call + Repeat("(", Million) + end);
    EXPECT_EQ(failure.find("line 1: Parsing Error, Data Types of arguments for function, tri, "
                           "incorrect.  Expected numeric in CalcFuzzyFunction at line 1: \"" +
                           echo),
              0U)
        << failure;
  }
  const std::string expression =
      SmallStackFailure("(deffuzzy a (values (term b very " + Repeat("(", Million));
  EXPECT_NE(expression.find(" in EvalFuzzyExpression at line 1: "), std::string::npos);
}

TEST(HostileInput, OfCommentsAndBlankLines) {
  const std::string lines = Repeat(";(\n", Million) + Repeat("\r", Million);
  OnSmallStack([&] {
    TScene scene;
    scene.Parser.Parse(lines + "(deffuzzy a" + lines + ")" + lines, nullptr);
    EXPECT_EQ(Dump(scene.Fuzzy), "a 0..1 {}");
  });
  EXPECT_EQ(SmallStackFailure(lines + "5"),
            ParseFailure("Unexpected token: \"5\"", "ParseFuzzyLogic", 2 * Million + 1, "5 "));
}

TEST(HostileInput, OfTokensWithoutEnd) {
  const std::string huge(static_cast<std::size_t>(100 * Million), 'x');
  EXPECT_EQ(SmallStackFailure("\n\"" + huge),
            "line 2: Unbalanced string: the closing quote is missing");
  const std::string word = SmallStackFailure("(" + huge);
  EXPECT_EQ(word,
            ParseFailure("Expected \"( deffuzzy\"", "ParseFuzzyVariable", 1,
                         " ( " + huge.substr(0, 125) + "... \r\n" + huge.substr(0, 127) + ' '));
}

TEST(HostileInput, OfATermOfManyPoints) {
  std::string text = "(deffuzzy a (range 0 " + std::to_string(Million) + ") (values (term x (";
  for (int i = 0; i < Million; ++i) text += '(' + std::to_string(i) + (i % 2 ? " 1)" : " 0)");
  OnSmallStack([&] {
    TScene scene;
    scene.Parser.Parse(text + "))))", nullptr);
    const TFuzzySet* set = scene.Fuzzy.GetItems()->GetItem(0)->GetItems()->GetItem(0);
    ASSERT_EQ(set->GetValues()->GetCount(), Million);
    EXPECT_EQ(set->GetValues()->Points()[Million - 1].X, Million - 1);
    EXPECT_EQ(set->DegreeOfMembership(Million / 2 + 0.25), 0.25);
  });
}

}  // namespace
}  // namespace fzy
