#include <gtest/gtest.h>

#include "fuzzylogic/common/PostFix.h"
#include "tests/support/Random.h"

namespace fzy {
namespace {

// A little language of one character an item: letters are operands, "!" is a prefix operator, "^"
// groups from the right, "*" and "/", then "+" and "-" from the left.
struct TRules {
  bool IsOpenParen(char item) const { return item == '['; }
  bool IsCloseParen(char item) const { return item == ']'; }
  bool IsOperand(char item) const { return item >= 'a' && item <= 'z'; }
  int InStackPriority(char item) const {
    return item == '['                  ? 100
           : item == '!'                ? 1
           : item == '^'                ? 3
           : item == '*' || item == '/' ? 4
                                        : 5;
  }
  int IncomingPriority(char item) const {
    return item == '[' || item == '!' ? 0 : item == '^' ? 2 : InStackPriority(item);
  }
};

std::string Convert(const std::string& infix) {
  const std::vector<char> output = PostFix(std::vector<char>(infix.begin(), infix.end()), TRules());
  return {output.begin(), output.end()};
}

/// A random expression, written as infix with the brackets that it needs and some that it does not,
/// and as postfix, both by plain recursion.
struct TExpression {
  std::string Infix;
  std::string Postfix;
  int Level;  // 0 for what needs no brackets, else that of the operator: a higher one binds looser
};

TExpression Make(test::TRandom& random, int depth) {
  const auto enclosed = [&](TExpression e, bool needed) {
    while (needed || random.OneIn(8)) {
      e.Infix = '[' + e.Infix + ']';
      needed = false;
    }
    return e;
  };
  const int kind = depth == 0 ? 0 : random.Below(8);
  if (kind < 2) {
    const std::string operand(1, static_cast<char>('a' + random.Below(26)));
    return {operand, operand, 0};
  }
  if (kind == 2) {
    TExpression e = Make(random, depth - 1);
    e = enclosed(e, e.Level > 1);
    return {'!' + e.Infix, e.Postfix + '!', 1};
  }
  const char sign = "^*/+-"[random.Below(5)];
  const int level = sign == '^' ? 2 : sign == '*' || sign == '/' ? 3 : 4;
  TExpression left = Make(random, depth - 1);
  TExpression right = Make(random, depth - 1);
  left = enclosed(left, sign == '^' ? left.Level >= level : left.Level > level);
  right = enclosed(right, sign == '^' ? right.Level > level : right.Level >= level);
  return {left.Infix + sign + right.Infix, left.Postfix + right.Postfix + sign, level};
}

TEST(PostFix, GivesThePostfixFormOfAnyExpression) {
  test::TRandom random;
  SCOPED_TRACE(random.Trace());
  for (int i = 0; i < 3000; ++i) {
    const TExpression e = Make(random, random.Below(8));
    ASSERT_EQ(Convert(e.Infix), e.Postfix) << e.Infix;
  }
  EXPECT_EQ(Convert(""), "");
}

TEST(PostFix, NamesTheBracketWithoutAPartner) {
  const std::pair<const char*, std::size_t> cases[] = {
      {"]", 0}, {"[", 0}, {"a+b]*c", 3}, {"[a]]", 3}, {"[[a]", 0}, {"a*[b+[c", 5}, {"][", 0}};
  for (const auto& [infix, index] : cases) {
    try {
      Convert(infix);
      ADD_FAILURE() << infix;
    } catch (const EUnmatchedBracket& error) {
      EXPECT_EQ(error.GetIndex(), index) << infix;
      EXPECT_EQ(error.GetMessage(), "Unmatched bracket");
    }
  }
}

TEST(PostFix, NestsAsDeepAsThereIsMemory) {
  constexpr std::size_t deep = 1'000'000;
  EXPECT_EQ(Convert(std::string(deep, '[') + "a" + std::string(deep, ']')), "a");
  EXPECT_TRUE(Convert(std::string(deep, '!') + "a") == "a" + std::string(deep, '!'));
}

}  // namespace
}  // namespace fzy
