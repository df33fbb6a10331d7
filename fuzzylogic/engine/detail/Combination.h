#pragma once

#include <vector>

#include "fuzzylogic/engine/FuzzyOperators.h"
#include "fuzzylogic/engine/FuzzySet.h"

// What makes one set of two, whatever objects they are.

namespace fzy::detail {

/// A curve, and whether X never descends in it, exactly.
struct TCurveView {
  TFuzzyCurve Points;
  bool Ascending;
};

inline TCurveView ViewOf(const TFuzzySetValues& values) noexcept {
  return {values.Points(), values.IsAscending()};
}

/// A curve of its own, for walks that call code from outside.
class TCurveCopy {
 public:
  explicit TCurveCopy(TCurveView curve)
      : FPoints(curve.Points.begin(), curve.Points.end()), FAscending(curve.Ascending) {}
  operator TCurveView() const noexcept { return {FPoints, FAscending}; }

 private:
  std::vector<TFuzzyPoint> FPoints;
  bool FAscending;
};

/// A combination of degrees and the word for it.
struct TCombination {
  TFuzzyFormula Formula = nullptr;
  TString Keyword;
};

/// @throws EFzyException (`SInvalidFuzzyOperation`)
TCombination IntersectionBy(TFuzzyOperation operation);
TCombination UnionBy(TFuzzyOperation operation);

/// Visits both curves side by side; true when both are empty, or the callback was true somewhere.
bool WalkCurves(TCurveView a, TCurveView b, const TFuzzyComparison& visit);

/// How a point is added: one coordinate set after the other, where setting the one that a new point
/// has is no change, or both at once.
enum class TAddition : bool { ByCoordinate, AtOnce };

/// Appends (x, formula of both degrees) for every position of the walk of two curves, and thins the
/// list out.
void AppendCombination(TFuzzySetValues& result, TCurveView a, TCurveView b, TFuzzyFormula formula,
                       TAddition addition);

/// The same with a callback that appends for itself, and may stop the walk: then nothing is thinned
/// out.
void AppendWalk(TFuzzySetValues& result, TCurveView a, TCurveView b, const TFuzzyComparison& visit);

/// "F(A) keyword F(B)", where F is a set's expression, or else its name, bracketed when compound.
struct TNamedExpression {
  const TString& Name;
  const TString& Expression;
};
TString CombinedExpression(TNamedExpression a, TNamedExpression b, const TString& keyword);

}  // namespace fzy::detail
