#include "fuzzylogic/vocabulary/FuzzyKeywords.h"

#include <algorithm>
#include <string>

namespace fzy {

const TFuzzyHedgeNames HedgeNames = {u"not",        u"somewhat",   u"moreorless", u"greatly",
                                     u"plus",       u"very",       u"extremely",  u"above",
                                     u"below",      u"slightly",   u"normalize",  u"about",
                                     u"vicinity",   u"close",      u"near",       u"neighboring",
                                     u"positively", u"absolutely", u"definitely", u"generally"};

const TFuzzyHedgeModifiers HedgeModifiers = {0, ONE_THIRD, 0.5, 0.7, 1.25, 2,   3, 0, 0, 0,
                                             0, 2,         4,   1.2, 1.2,  1.2, 2, 2, 2, 0.5};

const TBaseFuzzyHedgeNames BaseHedgeNames = {u"+", u"-",  u"*", u"/", u"^",
                                             u"<", u"<=", u">", u">="};

const TFuzzyOperationKeywords FuzzyOperationNames = {
    u"zadeh", u"mean", u"mean-sqr", u"mean-sqrt", u"product", u"bounded-sum", u"sum"};

const TFuzzyOperationKeywords FuzzyIntersectionKeywords = {
    u"and",         u"and-mean",       u"and-meansqr", u"and-meansqrt",
    u"and-product", u"and-boundedsum", u"and-sum"};

const TFuzzyOperationKeywords FuzzyUnionKeywords = {
    u"or", u"or-mean", u"or-meansqr", u"or-meansqrt", u"or-product", u"or-boundedsum", u"or-sum"};

const TFuzzyCorrelationMethodNames FuzzyCorrelationNames = {u"minimum", u"product"};

const TFuzzyInferenceMethodNames FuzzyInferenceNames = {u"min-max", u"sum", u"mean", u"product",
                                                        u"bounded-sum"};

namespace {

constexpr TFuzzyOperationKeywords OperationIdentifiers = {
    u"foZadeh", u"foMean", u"foMeanSqr", u"foMeanSqrt", u"foProduct", u"foBoundedSum", u"foSum"};

/// Sets `value` to the index of the first entry equal to `s`.
template <class Table, class Enum>
bool Find(const Table& table, std::u16string_view s, Enum& value) {
  const auto found = std::find(table.begin(), table.end(), s);
  if (found == table.end()) return false;
  value = static_cast<Enum>(found - table.begin());
  return true;
}

}  // namespace

bool IsEmptyFuzzyName(std::u16string_view name) { return name.empty() || name == SEmptyFuzzy; }

bool IsFuzzyHedge(std::u16string_view s) {
  TFuzzyHedge hedge{};
  return IsFuzzyHedge(s, hedge);
}

bool IsFuzzyHedge(std::u16string_view s, TFuzzyHedge& hedge) { return Find(HedgeNames, s, hedge); }

bool IsFuzzyHedgeOperator(std::u16string_view s) {
  TBaseFuzzyHedge hedge{};
  bool modifyY = false;
  return IsFuzzyHedgeOperator(s, hedge, modifyY);
}

bool IsFuzzyHedgeOperator(std::u16string_view s, TBaseFuzzyHedge& hedge, bool& modifyY) {
  // No symbol holds an X, so the bare word and the word without its X never match both.
  const bool actsOnX = s.size() > 1 && s.back() == u'X';
  if (!Find(BaseHedgeNames, actsOnX ? s.substr(0, s.size() - 1) : s, hedge)) return false;
  modifyY = !actsOnX;
  return true;
}

bool IsFuzzyOperation(std::u16string_view s, TFuzzyOperation& operation) {
  return Find(FuzzyOperationNames, s, operation);
}

bool IsFuzzyKeyword(std::u16string_view s, bool& isUnion, TFuzzyOperation& operation) {
  // No word stands in both tables, so their order does not matter.
  isUnion = !Find(FuzzyIntersectionKeywords, s, operation);
  return !isUnion || Find(FuzzyUnionKeywords, s, operation);
}

bool IsFuzzyCorrelation(std::u16string_view s, TFuzzyCorrelationMethod& method) {
  return Find(FuzzyCorrelationNames, s, method);
}

bool IsFuzzyInference(std::u16string_view s, TFuzzyInferenceMethod& method) {
  return Find(FuzzyInferenceNames, s, method);
}

bool IsReservedFuzzyWord(std::u16string_view s) {
  constexpr std::size_t longest = 14;  // "and-boundedsum"; names of derived sets are mostly longer
  bool isUnion = false;
  TFuzzyOperation operation{};
  return s.size() <= longest &&
         (IsFuzzyKeyword(s, isUnion, operation) || IsFuzzyHedgeOperator(s) || IsFuzzyHedge(s));
}

TString FuzzyOperationIdentifier(TFuzzyOperation operation) {
  return Ordinal(operation) < OperationIdentifiers.size()
             ? TString(OperationIdentifiers[Ordinal(operation)])
             : TString(std::to_string(Ordinal(operation)));
}

}  // namespace fzy
