#include <bit>
#include <map>
#include <set>

#include <gtest/gtest.h>

#include "fuzzylogic/vocabulary/FuzzyKeywords.h"

namespace fzy {
namespace {

// Every word with the value it names, in the order of the ordinals. Texts are kept in these words,
// so none may change unnoticed.
const struct {
  TFuzzyHedge Hedge;
  const char* Word;
  double Modifier;
} Hedges[] = {{fhNot, "not", 0},
              {fhSomewhat, "somewhat", std::bit_cast<double>(0x3FD5555555555555)},
              {fhMoreOrLess, "moreorless", 0.5},
              {fhGreatly, "greatly", 0.7},
              {fhPlus, "plus", 1.25},
              {fhVery, "very", 2},
              {fhExtremely, "extremely", 3},
              {fhAbove, "above", 0},
              {fhBelow, "below", 0},
              {fhSlightly, "slightly", 0},
              {fhNormalize, "normalize", 0},
              {fhAbout, "about", 2},
              {fhVicinity, "vicinity", 4},
              {fhClose, "close", 1.2},
              {fhNear, "near", 1.2},
              {fhNeighboring, "neighboring", 1.2},
              {fhPositively, "positively", 2},
              {fhAbsolutely, "absolutely", 2},
              {fhDefinitely, "definitely", 2},
              {fhGenerally, "generally", 0.5}};

const std::pair<TBaseFuzzyHedge, const char*> BaseHedges[] = {
    {bfhAdd, "+"},        {bfhSubtract, "-"},   {bfhMultiply, "*"},
    {bfhDivide, "/"},     {bfhPower, "^"},      {bfhCutLess, "<"},
    {bfgCutLessEq, "<="}, {bfhCutGreater, ">"}, {bfhCutGreaterEq, ">="}};

const struct {
  TFuzzyOperation Operation;
  const char *Identifier, *Name, *Intersection, *Union;
} Operations[] = {{foZadeh, "foZadeh", "zadeh", "and", "or"},
                  {foMean, "foMean", "mean", "and-mean", "or-mean"},
                  {foMeanSqr, "foMeanSqr", "mean-sqr", "and-meansqr", "or-meansqr"},
                  {foMeanSqrt, "foMeanSqrt", "mean-sqrt", "and-meansqrt", "or-meansqrt"},
                  {foProduct, "foProduct", "product", "and-product", "or-product"},
                  {foBoundedSum, "foBoundedSum", "bounded-sum", "and-boundedsum", "or-boundedsum"},
                  {foSum, "foSum", "sum", "and-sum", "or-sum"}};

const std::pair<TFuzzyCorrelationMethod, const char*> Correlations[] = {{fcmMinimum, "minimum"},
                                                                        {fcmProduct, "product"}};
const std::pair<TFuzzyInferenceMethod, const char*> Inferences[] = {{fimMinMax, "min-max"},
                                                                    {fimAdditive, "sum"},
                                                                    {fimMean, "mean"},
                                                                    {fimProduct, "product"},
                                                                    {fimBoundedSum, "bounded-sum"}};

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

TEST(Keywords, EachLookUpKnowsItsOwnWordsAndNoOther) {
  TAnswers hedges, baseHedges, keywords, operations, correlations, inferences;
  const auto enter = [](TAnswers& answers, auto value, std::size_t index, const auto& table,
                        const TString& word, const char* more = "") {
    EXPECT_EQ(Ordinal(value), index) << word;
    EXPECT_EQ(TString(table.at(index)), word);
    answers[word] = std::to_string(index) + more;
  };
  for (std::size_t i = 0; i < HedgeNames.size(); ++i) {
    enter(hedges, Hedges[i].Hedge, i, HedgeNames, Hedges[i].Word);
    EXPECT_EQ(HedgeModifiers[i], Hedges[i].Modifier) << Hedges[i].Word;
  }
  for (std::size_t i = 0; i < BaseHedgeNames.size(); ++i) {
    enter(baseHedges, BaseHedges[i].first, i, BaseHedgeNames, BaseHedges[i].second, " on Y");
    baseHedges[TString(BaseHedges[i].second) + "X"] = std::to_string(i) + " on X";
  }
  for (std::size_t i = 0; i < FuzzyOperationNames.size(); ++i) {
    const auto& [operation, identifier, name, intersection, unionWord] = Operations[i];
    enter(operations, operation, i, FuzzyOperationNames, name);
    enter(keywords, operation, i, FuzzyIntersectionKeywords, intersection, " and");
    enter(keywords, operation, i, FuzzyUnionKeywords, unionWord, " or");
    EXPECT_EQ(FuzzyOperationIdentifier(operation), identifier);
  }
  for (std::size_t i = 0; i < FuzzyCorrelationNames.size(); ++i)
    enter(correlations, Correlations[i].first, i, FuzzyCorrelationNames, Correlations[i].second);
  for (std::size_t i = 0; i < FuzzyInferenceNames.size(); ++i)
    enter(inferences, Inferences[i].first, i, FuzzyInferenceNames, Inferences[i].second);

  // Every word of every table, and what comes near to one.
  std::set<TString> words = {"", "X", "XX", "=", "=X", "+XX", "xor", "more or less", "boundedsum"};
  for (const TAnswers* answers :
       {&hedges, &baseHedges, &keywords, &operations, &correlations, &inferences}) {
    for (const auto& [word, answer] : *answers) {
      TString capital = word.Slice(1);
      capital = TString(1, static_cast<char16_t>(word[0] & ~0x20)) + capital;
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

TEST(Keywords, ListsNameTheValuesInOrder) {
  EXPECT_EQ(TString(FuzzyCorrelationNameList), "fcmMinimum, fcmProduct");
  EXPECT_EQ(TString(FuzzyCorrelationSuffixNameList), "Minimum, Product");
  EXPECT_EQ(TString(FuzzyInferenceNameList),
            "fimMinMax, fimAdditive, fimMean, fimProduct, fimBoundedSum");
  EXPECT_EQ(TString(FuzzyInferenceSuffixNameList), "MinMax, Additive, Mean, Product, BoundedSum");
  EXPECT_EQ(TString(SEmptyFuzzy), "__Empty");
  EXPECT_EQ(TString(FuzzyFormatStr), "%.4f");
}

// Orders that no table of words shows. Stored state and tokens rest on them.
TEST(Enumerations, CountInTheirOrder) {
  const auto ordinals = [](auto... values) {
    std::size_t next = 0;
    return ((Ordinal(values) == next++) && ...);
  };
  EXPECT_TRUE(ordinals(dmCenterOfGravity, dmMeanOfMaxima));
  EXPECT_TRUE(ordinals(fstUserDefined, fstTriangle, fstDeclineCurve, fstPICurve, fstBetaCurve,
                       fstGrowthCurve));
  EXPECT_TRUE(ordinals(utX, utY));
  EXPECT_TRUE(ordinals(fstNone, fstAtom, fstString, fstInteger, fstFloat, fstVariable, fstInterface,
                       fstList, fstIFuzzySet, fstObject, fstFuzzySet));

  TFuzzyStreamTokenTypes kinds = {fstAtom, fstFuzzySet};
  kinds.Include(fstList);
  kinds.Exclude(fstAtom);
  kinds.Exclude(fstNone);
  EXPECT_EQ(kinds, (TFuzzyStreamTokenTypes{fstFuzzySet, fstList, fstList}));
  for (int i = 0; i <= 10; ++i)
    EXPECT_EQ(kinds.Contains(TFuzzyStreamTokenType(i)), i == 7 || i == 10) << i;
  kinds = {};
  EXPECT_TRUE(kinds.IsEmpty());
}

}  // namespace
}  // namespace fzy
