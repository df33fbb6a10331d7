#include <limits>
#include <map>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "fuzzylogic/vocabulary/FuzzyExceptions.h"
#include "fuzzylogic/vocabulary/FuzzyKeywords.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"
#include "fuzzylogic/vocabulary/FuzzyNames.h"

namespace fzy {
namespace {

/// The words of a look-up with its answer to each.
struct TAnswers : std::map<TString, std::string> {
  /// Enters the words of a table, given once more as one text: texts are kept in these words.
  TAnswers(const auto& table, const char* words, const char* more = "") {
    std::istringstream stream(words);
    std::size_t index = 0;
    for (std::string word; stream >> word; ++index) {
      EXPECT_EQ(TString(table.at(index)), word);
      emplace(word, std::to_string(index) + more);
    }
    EXPECT_EQ(index, table.size());
  }
  std::string operator()(const TString& word) const { return contains(word) ? at(word) : ""; }
};

/// The ordinal that a look-up finds, or nothing, and then it must leave its result.
template <class Enum>
std::string Ask(auto lookUp, const TString& s) {
  constexpr Enum untouched{99};
  Enum value = untouched;
  const bool found = lookUp(s, value);
  EXPECT_EQ(value == untouched, !found);
  return found ? std::to_string(Ordinal(value)) : "";
}

TEST(Keywords, EachLookUpKnowsItsOwnWordsAndNoOther) {
  // clang-format off
  const TAnswers hedges(HedgeNames,
      "not somewhat moreorless greatly plus very extremely above below slightly normalize about "
      "vicinity close near neighboring positively absolutely definitely generally");
  const TAnswers onY(BaseHedgeNames, "+ - * / ^ < <= > >=", " on Y");
  const TAnswers operations(FuzzyOperationNames, "zadeh mean mean-sqr mean-sqrt product bounded-sum sum");
  TAnswers keywords(FuzzyIntersectionKeywords,
      "and and-mean and-meansqr and-meansqrt and-product and-boundedsum and-sum", " and");
  keywords.merge(TAnswers(FuzzyUnionKeywords,
      "or or-mean or-meansqr or-meansqrt or-product or-boundedsum or-sum", " or"));
  const TAnswers correlations(FuzzyCorrelationNames, "minimum product");
  const TAnswers inferences(FuzzyInferenceNames, "min-max sum mean product bounded-sum");
  // clang-format on
  TAnswers baseHedges = onY;
  for (const auto& [symbol, answer] : onY) baseHedges[symbol + "X"] = answer.substr(0, 5) + "X";

  // Every word of every table, and what comes near to one.
  std::set<TString> words = {"", "X", "XX", "=", "=X", "+XX", "xor", "more or less", "boundedsum"};
  for (const TAnswers& answers : {hedges, baseHedges, keywords, operations, inferences}) {
    for (const auto& [word, answer] : answers) {
      const TString capital = TString(1, char16_t(word[0] & ~0x20)) + word.Slice(1);
      words.insert({word, capital, word + " ", " " + word, word + "X", word.Slice(1),
                    word.Slice(0, word.size() - 1)});
    }
  }
  for (const TString& s : words) {
    SCOPED_TRACE(s);
    const auto hedge = [](const TString& t, auto& value) { return IsFuzzyHedge(t, value); };
    EXPECT_EQ(Ask<TFuzzyHedge>(hedge, s), hedges(s));
    EXPECT_EQ(IsFuzzyHedge(s), hedges.contains(s));
    EXPECT_EQ(Ask<TFuzzyOperation>(IsFuzzyOperation, s), operations(s));
    EXPECT_EQ(Ask<TFuzzyCorrelationMethod>(IsFuzzyCorrelation, s), correlations(s));
    EXPECT_EQ(Ask<TFuzzyInferenceMethod>(IsFuzzyInference, s), inferences(s));
    for (const bool before : {false, true}) {
      bool flag = before;
      std::string answer = Ask<TFuzzyOperation>(
          [&](const TString& t, auto& value) { return IsFuzzyKeyword(t, flag, value); }, s);
      EXPECT_EQ(answer + (flag ? " or" : " and"), keywords.contains(s) ? keywords(s) : " or");
      flag = before;
      answer = Ask<TBaseFuzzyHedge>(
          [&](const TString& t, auto& value) { return IsFuzzyHedgeOperator(t, value, flag); }, s);
      EXPECT_EQ(answer.empty() ? "" : answer + (flag ? " on Y" : " on X"), baseHedges(s));
      EXPECT_TRUE(!answer.empty() || flag == before);
    }
    EXPECT_EQ(IsFuzzyHedgeOperator(s), baseHedges.contains(s));
    EXPECT_EQ(IsReservedFuzzyWord(s),
              hedges.contains(s) || baseHedges.contains(s) || keywords.contains(s));
  }
}

TEST(Keywords, ModifiersAndEnumerationsGoByTheSameOrder) {
  const TFuzzyHedgeModifiers modifiers = {0, ONE_THIRD, 0.5, 0.7, 1.25, 2,   3, 0, 0, 0,
                                          0, 2,         4,   1.2, 1.2,  1.2, 2, 2, 2, 0.5};
  EXPECT_EQ(HedgeModifiers, modifiers);
  TString identifiers;
  for (const TFuzzyOperation operation :
       {foZadeh, foMean, foMeanSqr, foMeanSqrt, foProduct, foBoundedSum, foSum})
    identifiers += FuzzyOperationIdentifier(operation) + " ";
  EXPECT_EQ(identifiers, "foZadeh foMean foMeanSqr foMeanSqrt foProduct foBoundedSum foSum ");

  TFuzzyStreamTokenTypes kinds = {fstAtom, fstFuzzySet};
  kinds.Include(fstList);
  kinds.Exclude(fstAtom);
  for (int i = 0; i <= 10; ++i)
    EXPECT_EQ(kinds.Contains(TFuzzyStreamTokenType(i)), i == 7 || i == 10) << i;
}

// Programs show these texts and some compare them. The others stand in the tests of what shows
// them.
TEST(Messages, ThatTheLibraryItselfDoesNotShowHaveTheirTexts) {
  const std::pair<const TMessage*, const char*> cases[] = {
      {&SInvalidFuzzyVarName, "Invalid fuzzy variable name, \"%s\""},
      {&SMissingFuzzyVariable, "Missing fuzzy linguistic variable"},
      {&SMax3XValues, "Invalid x value.  Maximum of 3 values with same X value: %.4f"},
      {&SFzyArgMinNumWrong,
       "Minimum number of arguments for function, %s, incorrect.  Expected %d or more"},
      {&SFuzzyLogicNotTIFuzzyLogic,
       "FuzzyLogic property must be of type TIFuzzyLogic or descendant"}};
  for (const auto& [message, text] : cases) EXPECT_EQ(message->Get(), text);
}

TEST(Exceptions, CarryTheFinalTextAndTheLine) {
  try {
    throw EFzyParseException(SFzyParseError, {"reading", "größe", "7", "("}, 7);
  } catch (const EFzyException& error) {
    EXPECT_STREQ(error.what(), "Parsing Error, reading in größe at line 7: \"(\"");
    EXPECT_EQ(dynamic_cast<const EFzyParseException&>(error).GetLineNumber(), 7);
  }
  EXPECT_EQ(EFzyParseException("100%s").GetMessage(), "100%s") << "a plain message is no format";

  constexpr double infinity = std::numeric_limits<double>::infinity();
  RequireNumber(-infinity, "x");
  RequireFinite(1e308, "x");
  EXPECT_THROW(RequireNumber(infinity - infinity, "x"), EFzyException);
  for (const double value : {infinity, -infinity, infinity - infinity})
    EXPECT_THROW(RequireFinite(value, "x"), EFzyException);
}

// Every other form stands in the names of the engine's results.
TEST(Names, EncloseNamesWithBlanksAndNoOthers) {
  EXPECT_EQ(CreateFuzzyName(fhMoreOrLess, "[a b]"), "moreorless [[a b]]");
  EXPECT_EQ(CreateFuzzyName(fhNot, "a\tb"), "not a\tb");
  EXPECT_EQ(CreateFuzzyName(bfhCutGreaterEq, false, " "), ">=X [ ]");
  EXPECT_EQ(CreateFuzzyName("+", "tall", -0.00005), "+ tall -0.0001");
}

TEST(Expression, IsEnclosedOnceWhenItIsCompound) {
  // clang-format off
  const std::pair<const char*, const char*> cases[] = {
      {"  x  ", "x"}, {"[x]", "[x]"}, {"", ""}, {" ", ""}, {"[]", "[]"}, {"a or b", "[a or b]"},
      {" [a b]\n", "[a b]"}, {" a b ", "[ a b ]"}, {"[a] or [b]", "[[a] or [b]]"}, {"a [b]", "[a [b]]"},
      {"[[a] or [b]]", "[[a] or [b]]"}, {"[[a b]]", "[[a b]]"}, {"[a] b", "[[a] b]"},
      // Brackets without a partner.
      {"[] []", "[[] []]"}, {"[a b", "[[a b]"}, {"[[a b]", "[[a b]"}, {"[a ]]b]", "[[a ]]b]]"}};
  // clang-format on
  for (const auto& [text, expected] : cases) EXPECT_EQ(FormatFuzzyExpression(text), expected);
}

}  // namespace
}  // namespace fzy
