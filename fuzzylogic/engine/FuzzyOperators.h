#pragma once

#include <vector>

#include "fuzzylogic/engine/FuzzyCurve.h"

namespace fzy {

/// Y of the combination of two sets at an X where their degrees are `y1` and `y2`.
using TFuzzyFormula = TFzyFloat (*)(TFzyFloat y1, TFzyFloat y2);

/// The formulas of the operator families.
namespace FuzzyFormulas {
TFzyFloat Min(TFzyFloat y1, TFzyFloat y2);                     ///< min(y1, y2)
TFzyFloat Max(TFzyFloat y1, TFzyFloat y2);                     ///< max(y1, y2)
TFzyFloat Mean(TFzyFloat y1, TFzyFloat y2);                    ///< (y1 + y2) / 2
TFzyFloat UnionMean(TFzyFloat y1, TFzyFloat y2);               ///< (2 min + 4 max) / 6
TFzyFloat MeanSqr(TFzyFloat y1, TFzyFloat y2);                 ///< ((y1 + y2) / 2) squared
TFzyFloat MeanSqrt(TFzyFloat y1, TFzyFloat y2);                ///< square root of (y1 + y2) / 2
TFzyFloat IntersectionProduct(TFzyFloat y1, TFzyFloat y2);     ///< y1 y2
TFzyFloat UnionProduct(TFzyFloat y1, TFzyFloat y2);            ///< y1 + y2 - y1 y2
TFzyFloat IntersectionBoundedSum(TFzyFloat y1, TFzyFloat y2);  ///< max(0, y1 + y2 - 1)
TFzyFloat UnionBoundedSum(TFzyFloat y1, TFzyFloat y2);         ///< min(1, y1 + y2)
TFzyFloat UnionSum(TFzyFloat y1, TFzyFloat y2);                ///< y1 + y2, not bounded
}  // namespace FuzzyFormulas

/// The formula of an operation's intersection or union, or nothing when it has none (the
/// intersection of `foSum`, and any value outside the enumeration).
TFuzzyFormula IntersectionFormula(TFuzzyOperation operation) noexcept;
TFuzzyFormula UnionFormula(TFuzzyOperation operation) noexcept;

/// The operation by which an inference method merges evidence.
/// @throws std::out_of_range for a value outside the enumeration
TFuzzyOperation InferenceOperation(TFuzzyInferenceMethod method);

/// Combines two curves by a formula: `result` becomes one point for every breakpoint of either
/// curve and every crossing between breakpoints, in order of X. It is not cleaned up: see
/// `TFuzzySet::Operator` for what a set makes of it. Linear in the points of both when their X
/// never descends. Where one curve has no points the other is combined with itself.
void CombineCurves(TFuzzyCurve a, TFuzzyCurve b, TFuzzyFormula formula,
                   std::vector<TFuzzyPoint>& result);

/// The greatest value of the smaller degree over all breakpoints and crossings of two curves, at
/// least 0: the height of their intersection. Allocates nothing.
TFzyFloat HeightOfIntersection(TFuzzyCurve a, bool ascendingA, TFuzzyCurve b,
                               bool ascendingB) noexcept;

}  // namespace fzy
