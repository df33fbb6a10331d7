#pragma once

#include <array>
#include <string_view>

#include "fuzzylogic/framework/Text.h"
#include "fuzzylogic/vocabulary/FuzzyTypes.h"

namespace fzy {

// The words of the definition language. All look-ups compare exactly and case-sensitively, take the
// first equal entry of a table, and never raise: an unknown word gives false.

using TFuzzyCorrelationMethodNames = std::array<std::u16string_view, 2>;
using TFuzzyInferenceMethodNames = std::array<std::u16string_view, 5>;
using TFuzzyHedgeNames = std::array<std::u16string_view, 20>;
using TBaseFuzzyHedgeNames = std::array<std::u16string_view, 9>;
using TFuzzyHedgeModifiers = std::array<TFzyFloat, 20>;
using TFuzzyOperationKeywords = std::array<std::u16string_view, 7>;

/// The words of the hedges ("very"), and the numeric parameter of each (0 where it takes none).
extern const TFuzzyHedgeNames HedgeNames;
extern const TFuzzyHedgeModifiers HedgeModifiers;
/// The symbols of the numeric modifiers ("<="); with "X" appended they act on X instead of Y.
extern const TBaseFuzzyHedgeNames BaseHedgeNames;
/// The names of the operator families ("mean-sqr"), and the words for the intersection
/// ("and-meansqr") and union ("or-meansqr") of each.
extern const TFuzzyOperationKeywords FuzzyOperationNames;
extern const TFuzzyOperationKeywords FuzzyIntersectionKeywords;
extern const TFuzzyOperationKeywords FuzzyUnionKeywords;
extern const TFuzzyCorrelationMethodNames FuzzyCorrelationNames;
extern const TFuzzyInferenceMethodNames FuzzyInferenceNames;

// Lists for tools that present the methods by name.
inline constexpr const char16_t* FuzzyCorrelationNameList = u"fcmMinimum, fcmProduct";
inline constexpr const char16_t* FuzzyCorrelationSuffixNameList = u"Minimum, Product";
inline constexpr const char16_t* FuzzyInferenceNameList =
    u"fimMinMax, fimAdditive, fimMean, fimProduct, fimBoundedSum";
inline constexpr const char16_t* FuzzyInferenceSuffixNameList =
    u"MinMax, Additive, Mean, Product, BoundedSum";

/// The number format of generated names and written sets: four decimals.
inline constexpr const char16_t* FuzzyFormatStr = u"%.4f";
/// The brackets of a sub-expression.
inline constexpr const char16_t* LeftFuzzyParentheses = u"[";
inline constexpr const char16_t* RightFuzzyParentheses = u"]";
/// The reserved name of a placeholder set: a set added under it is not a defined term.
inline constexpr const char16_t* SEmptyFuzzy = u"__Empty";

/// Whether a name is none, or that of the placeholder set.
bool IsEmptyFuzzyName(std::u16string_view name);

bool IsFuzzyHedge(std::u16string_view s);
/// On a match sets `hedge`; otherwise leaves it.
bool IsFuzzyHedge(std::u16string_view s, TFuzzyHedge& hedge);

bool IsFuzzyHedgeOperator(std::u16string_view s);
/// On a match sets `hedge`, and `modifyY` to true for the bare symbol, to false for the symbol with
/// "X" appended; otherwise leaves both.
bool IsFuzzyHedgeOperator(std::u16string_view s, TBaseFuzzyHedge& hedge, bool& modifyY);

bool IsFuzzyOperation(std::u16string_view s, TFuzzyOperation& operation);

/// Whether `s` combines two sets. `isUnion` is set in every case: to false for an intersection
/// word, to true for a union word and for an unknown one; `operation` is set on a match only.
bool IsFuzzyKeyword(std::u16string_view s, bool& isUnion, TFuzzyOperation& operation);

bool IsFuzzyCorrelation(std::u16string_view s, TFuzzyCorrelationMethod& method);
bool IsFuzzyInference(std::u16string_view s, TFuzzyInferenceMethod& method);

/// Whether `s` is a hedge, a hedge operator or a keyword, and so cannot name a set.
bool IsReservedFuzzyWord(std::u16string_view s);

/// The enumeration's own name of an operation, as messages show it ("foSum").
TString FuzzyOperationIdentifier(TFuzzyOperation operation);

}  // namespace fzy
