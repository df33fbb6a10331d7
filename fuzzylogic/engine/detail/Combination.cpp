#include "fuzzylogic/engine/detail/Combination.h"

#include "fuzzylogic/engine/detail/MergeWalk.h"
#include "fuzzylogic/engine/detail/PointWriter.h"
#include "fuzzylogic/vocabulary/FuzzyKeywords.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"
#include "fuzzylogic/vocabulary/FuzzyNames.h"

namespace fzy::detail {
namespace {

TCombination Supported(TFuzzyFormula formula, TFuzzyOperation operation,
                       const TFuzzyOperationKeywords& keywords) {
  if (!formula) throw EFzyException(SInvalidFuzzyOperation, {FuzzyOperationIdentifier(operation)});
  return {formula, keywords[Ordinal(operation)]};
}

template <class Visit>
bool Walk(TCurveView a, TCurveView b, Visit&& visit) {
  return MergeWalk(a.Points, a.Ascending, b.Points, b.Ascending, std::forward<Visit>(visit));
}

void ThinOut(TFuzzySetValues& result, TCurveView a, TCurveView b) {
  if (!a.Points.empty() && !b.Points.empty()) TPointWriter(result).RemoveFlatPoints();
}

TString Operand(TNamedExpression set) {
  return FormatFuzzyExpression(set.Expression.empty() ? set.Name : set.Expression);
}

}  // namespace

TCombination IntersectionBy(TFuzzyOperation operation) {
  return Supported(IntersectionFormula(operation), operation, FuzzyIntersectionKeywords);
}

TCombination UnionBy(TFuzzyOperation operation) {
  return Supported(UnionFormula(operation), operation, FuzzyUnionKeywords);
}

bool WalkCurves(TCurveView a, TCurveView b, const TFuzzyComparison& visit) {
  if (a.Points.empty() && b.Points.empty()) return true;
  return Walk(a, b, [&](TFzyFloat x1, TFzyFloat y1, TFzyFloat x2, TFzyFloat y2) {
    return visit(x1, y1, x2, y2);
  });
}

void AppendCombination(TFuzzySetValues& result, TCurveView a, TCurveView b, TFuzzyFormula formula,
                       TAddition addition) {
  TPointWriter points(result);
  points.Reserve(a.Points.size() + b.Points.size());
  Walk(a, b, [&](TFzyFloat x1, TFzyFloat y1, TFzyFloat /*x2*/, TFzyFloat y2) {
    const TFzyFloat y = formula(y1, y2);
    addition == TAddition::AtOnce ? points.Assign({x1, y}) : points.Add(x1, y);
    return false;
  });
  ThinOut(result, a, b);
}

void AppendWalk(TFuzzySetValues& result, TCurveView a, TCurveView b,
                const TFuzzyComparison& visit) {
  const bool stopped = Walk(a, b, [&](TFzyFloat x1, TFzyFloat y1, TFzyFloat x2, TFzyFloat y2) {
    return visit(x1, y1, x2, y2);
  });
  if (!stopped) ThinOut(result, a, b);
}

TString CombinedExpression(TNamedExpression a, TNamedExpression b, const TString& keyword) {
  const TString left = Operand(a);
  const TString right = Operand(b);
  TString expression;
  expression.Reserve(left.size() + keyword.size() + right.size() + 2);  // they grow long
  expression += left;
  expression += u' ';
  expression += keyword;
  expression += u' ';
  expression += right;
  return expression;
}

}  // namespace fzy::detail
