#include <bit>
#include <map>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "fuzzylogic/vocabulary/FuzzyKeywords.h"

namespace fzy {
namespace {

/// The words of a look-up with its answer to each.
using TAnswers = std::map<TString, std::string>;

/// What a look-up answers: the ordinal that it finds, or nothing, and then it must leave its
/// result.
template <class Enum, class LookUp>
std::string Ask(LookUp lookUp) {
  constexpr Enum untouched{99};
  Enum value = untouched;
  const bool found = lookUp(value);
  EXPECT_EQ(value == untouched, !found);
  return found ? std::to_string(Ordinal(value)) : "";
}

std::string AskBaseHedge(const TString& s, bool before) {
  bool modifyY = before;
  const std::string answer =
      Ask<TBaseFuzzyHedge>([&](auto& hedge) { return IsFuzzyHedgeOperator(s, hedge, modifyY); });
  EXPECT_EQ(IsFuzzyHedgeOperator(s), !answer.empty());
  if (answer.empty()) return modifyY == before ? "" : "touched";
  return answer + (modifyY ? " on Y" : " on X");
}

std::string AskKeyword(const TString& s) {
  bool isUnion = false;
  const std::string answer =
      Ask<TFuzzyOperation>([&](auto& operation) { return IsFuzzyKeyword(s, isUnion, operation); });
  if (answer.empty()) return isUnion ? "" : "not told as a union";
  return answer + (isUnion ? " or" : " and");
}

/// Enters the words of a table, given once more as one text: texts are kept in these words, so none
/// may change unnoticed.
void Enter(TAnswers& answers, const auto& table, const char* words, const char* more = "") {
  std::istringstream stream(words);
  std::size_t index = 0;
  for (std::string word; stream >> word; ++index) {
    EXPECT_EQ(TString(table.at(index)), word);
    answers[word] = std::to_string(index) + more;
  }
  EXPECT_EQ(index, table.size());
}

TEST(Keywords, EachLookUpKnowsItsOwnWordsAndNoOther) {
  TAnswers hedges, baseHedges, keywords, operations, correlations, inferences;
  Enter(hedges, HedgeNames,
        "not somewhat moreorless greatly plus very extremely above below slightly normalize about "
        "vicinity close near neighboring positively absolutely definitely generally");
  Enter(baseHedges, BaseHedgeNames, "+ - * / ^ < <= > >=", " on Y");
  const TAnswers onY = baseHedges;
  for (const auto& [symbol, answer] : onY)
    baseHedges[symbol + "X"] = answer.substr(0, answer.size() - 1) + "X";
  Enter(operations, FuzzyOperationNames, "zadeh mean mean-sqr mean-sqrt product bounded-sum sum");
  Enter(keywords, FuzzyIntersectionKeywords,
        "and and-mean and-meansqr and-meansqrt and-product and-boundedsum and-sum", " and");
  Enter(keywords, FuzzyUnionKeywords,
        "or or-mean or-meansqr or-meansqrt or-product or-boundedsum or-sum", " or");
  Enter(correlations, FuzzyCorrelationNames, "minimum product");
  Enter(inferences, FuzzyInferenceNames, "min-max sum mean product bounded-sum");

  // Every word of every table, and what comes near to one.
  std::set<TString> words = {"", "X", "XX", "=", "=X", "+XX", "xor", "more or less", "boundedsum"};
  for (const TAnswers* answers :
       {&hedges, &baseHedges, &keywords, &operations, &correlations, &inferences}) {
    for (const auto& [word, answer] : *answers) {
      const TString capital = TString(1, char16_t(word[0] & ~0x20)) + word.Slice(1);
      words.insert({word, capital, word + " ", " " + word, word + "X", word.Slice(1),
                    word.Slice(0, word.size() - 1)});
    }
  }
  const auto answer = [](const TAnswers& answers, const TString& word) {
    const auto found = answers.find(word);
    return found == answers.end() ? "" : found->second;
  };
  for (const TString& s : words) {
    SCOPED_TRACE(s);
    EXPECT_EQ(Ask<TFuzzyHedge>([&](auto& hedge) { return IsFuzzyHedge(s, hedge); }),
              answer(hedges, s));
    EXPECT_EQ(IsFuzzyHedge(s), hedges.contains(s));
    for (const bool before : {false, true})
      EXPECT_EQ(AskBaseHedge(s, before), answer(baseHedges, s));
    EXPECT_EQ(AskKeyword(s), answer(keywords, s));
    EXPECT_EQ(Ask<TFuzzyOperation>([&](auto& value) { return IsFuzzyOperation(s, value); }),
              answer(operations, s));
    EXPECT_EQ(
        Ask<TFuzzyCorrelationMethod>([&](auto& value) { return IsFuzzyCorrelation(s, value); }),
        answer(correlations, s));
    EXPECT_EQ(Ask<TFuzzyInferenceMethod>([&](auto& value) { return IsFuzzyInference(s, value); }),
              answer(inferences, s));
    EXPECT_EQ(IsReservedFuzzyWord(s),
              hedges.contains(s) || baseHedges.contains(s) || keywords.contains(s));
  }
}

TEST(Keywords, ListsAndModifiersGoByTheSameOrder) {
  constexpr auto third = std::bit_cast<double>(0x3FD5555555555555);
  const TFuzzyHedgeModifiers modifiers = {0, third, 0.5, 0.7, 1.25, 2,   3, 0, 0, 0,
                                          0, 2,     4,   1.2, 1.2,  1.2, 2, 2, 2, 0.5};
  EXPECT_EQ(HedgeModifiers, modifiers);
  EXPECT_EQ(TString(FuzzyCorrelationNameList), "fcmMinimum, fcmProduct");
  EXPECT_EQ(TString(FuzzyCorrelationSuffixNameList), "Minimum, Product");
  EXPECT_EQ(TString(FuzzyInferenceNameList),
            "fimMinMax, fimAdditive, fimMean, fimProduct, fimBoundedSum");
  EXPECT_EQ(TString(FuzzyInferenceSuffixNameList), "MinMax, Additive, Mean, Product, BoundedSum");
  EXPECT_EQ(TString(SEmptyFuzzy) + FuzzyFormatStr, "__Empty%.4f");
  TString identifiers;
  for (int i = 0; i < 7; ++i) identifiers += FuzzyOperationIdentifier(TFuzzyOperation(i)) + " ";
  EXPECT_EQ(identifiers, "foZadeh foMean foMeanSqr foMeanSqrt foProduct foBoundedSum foSum ");
}

// Tables, stored state and tokens rest on these orders.
TEST(Enumerations, CountInTheirOrder) {
  const auto ordinals = [](auto... values) {
    std::size_t next = 0;
    return ((Ordinal(values) == next++) && ...);
  };
  EXPECT_TRUE(ordinals(fhNot, fhSomewhat, fhMoreOrLess, fhGreatly, fhPlus, fhVery, fhExtremely,
                       fhAbove, fhBelow, fhSlightly, fhNormalize, fhAbout, fhVicinity, fhClose,
                       fhNear, fhNeighboring, fhPositively, fhAbsolutely, fhDefinitely,
                       fhGenerally));
  EXPECT_TRUE(ordinals(bfhAdd, bfhSubtract, bfhMultiply, bfhDivide, bfhPower, bfhCutLess,
                       bfgCutLessEq, bfhCutGreater, bfhCutGreaterEq));
  EXPECT_TRUE(ordinals(foZadeh, foMean, foMeanSqr, foMeanSqrt, foProduct, foBoundedSum, foSum));
  EXPECT_TRUE(ordinals(fcmMinimum, fcmProduct));
  EXPECT_TRUE(ordinals(fimMinMax, fimAdditive, fimMean, fimProduct, fimBoundedSum));
  EXPECT_TRUE(ordinals(dmCenterOfGravity, dmMeanOfMaxima));
  EXPECT_TRUE(ordinals(fstUserDefined, fstTriangle, fstDeclineCurve, fstPICurve, fstBetaCurve,
                       fstGrowthCurve));
  EXPECT_TRUE(ordinals(utX, utY));
  EXPECT_TRUE(ordinals(fstNone, fstAtom, fstString, fstInteger, fstFloat, fstVariable, fstInterface,
                       fstList, fstIFuzzySet, fstObject, fstFuzzySet));
}

TEST(EnumSet, HoldsEachValueByItself) {
  TFuzzyStreamTokenTypes kinds = {fstAtom, fstFuzzySet};
  kinds.Include(fstList);
  kinds.Exclude(fstAtom);
  kinds.Exclude(fstNone);
  EXPECT_EQ(kinds, (TFuzzyStreamTokenTypes{fstFuzzySet, fstList, fstList}));
  for (int i = 0; i <= 10; ++i)
    EXPECT_EQ(kinds.Contains(TFuzzyStreamTokenType(i)), i == 7 || i == 10) << i;
  EXPECT_TRUE(TFuzzyStreamTokenTypes().IsEmpty());
  EXPECT_FALSE(kinds.IsEmpty());
}

}  // namespace
}  // namespace fzy
