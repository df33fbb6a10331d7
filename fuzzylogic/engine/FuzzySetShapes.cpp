#include <algorithm>
#include <vector>

#include "fuzzylogic/engine/FuzzySet.h"
#include "fuzzylogic/engine/detail/PointWriter.h"
#include "fuzzylogic/framework/FirstException.h"
#include "fuzzylogic/framework/UpdateBlock.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

// The shapes that a set's points are generated from.

namespace fzy {
namespace {

constexpr int FewestShapePoints = 3;

TFzyFloat Square(TFzyFloat value) { return value * value; }

/// The S curve over [left, right], of width w.
TFzyFloat GrowthDegree(TFzyFloat x, TFzyFloat left, TFzyFloat right, TFzyFloat w) {
  if (x <= left) return 0;
  if (x <= (left + right) / 2) return 2 * Square((x - left) / w);
  if (x <= right) return 1 - 2 * Square((x - right) / w);
  return 1;
}

TFzyFloat BetaDegree(TFzyFloat x, TFzyFloat center, TFzyFloat inflectionPoint, TFzyFloat weight) {
  // At the center the quotient is 0 for any inflection point, 0 included.
  const TFzyFloat t = x == center ? 0 : (x - center) / inflectionPoint;
  return 1 / (1 + weight * Square(t));
}

}  // namespace

/// Closes a shape's block, which makes the set user-defined, and then records what it is.
template <class List>
void TFuzzySet::CloseShape(List& block, TFuzzySetType type) {
  TFirstException first;
  first.Run([&] { block.Close(); });
  FSetType = type;
  first.Rethrow();
}

void TFuzzySet::CheckCurve(TFzyFloat left, TFzyFloat right) const {
  for (const TFzyFloat end : {left, right}) RequireFinite(end, "CreateCurveValues");
  if (left > right) throw EFzyException(SInvalidRangeArguments, {left, right});
  RequireFinite(right - left, "CreateCurveValues");
}

void TFuzzySet::CreateTriangleFunctionValues(TFzyFloat left, TFzyFloat middle, TFzyFloat right) {
  for (const TFzyFloat x : {left, middle, right}) RequireNumber(x, "CreateTriangleFunctionValues");
  if (left > right) right = left;
  if (left > middle)
    middle = left;
  else if (middle > right)
    middle = right;
  const TPin self(this);
  detail::TPointWriter points(*FValues);
  points.Reserve(FewestShapePoints);
  TUpdateBlock block(*FValues);
  points.Add(left, 0);
  points.Add(middle, 1);
  points.Add(right, 0);
  CloseShape(block, fstTriangle);
}

void TFuzzySet::CreateCurveValues(int num, TFzyFloat left, TFzyFloat right,
                                  TFzyFloat inflectionPoint, bool growth) {
  CheckCurve(left, right);
  RequireFinite(inflectionPoint, "CreateCurveValues");
  num = std::max(num, FewestShapePoints);
  const TPin self(this);
  detail::TPointWriter points(*FValues);
  points.Reserve(static_cast<std::size_t>(num));
  TUpdateBlock block(*FValues);
  const TFzyFloat w = right - left;
  const TFzyFloat step = w / (num - 1);
  TFzyFloat x = left;
  for (int i = 0; i < num; ++i) {
    const TFzyFloat y = GrowthDegree(x, left, right, w);
    points.Add(x, growth ? y : 1 - y);
    x += step;
  }
  FInflectionPoint = inflectionPoint;
  CloseShape(block, growth ? fstGrowthCurve : fstDeclineCurve);
}

void TFuzzySet::CreatePIFunctionValues(int num, TFzyFloat left, TFzyFloat right, TFzyFloat center) {
  CheckCurve(left, right);
  RequireNumber(center, "CreatePIFunctionValues");
  if (num < 0)
    throw EFzyException(SFzyInvalidArgument,
                        {TString("CreatePIFunctionValues"), std::int64_t{num}});
  center = std::clamp(center, left, right);
  const TPin self(this);
  detail::TPointWriter(*FValues).Reserve(
      2 * static_cast<std::size_t>(std::max(num / 2 + 1, FewestShapePoints)));
  TUpdateBlock block(*FValues);
  CreateCurveValues(num / 2 + 1, left, center, left + (center - left) / 2, true);
  if (num % 2 == 0) FValues->Delete(FValues->GetCount() - 1);
  CreateCurveValues(num / 2 + 1, center, right, center + (right - center) / 2, false);
  if (FValues->GetCount() > num) FValues->Delete(num / 2);
  CloseShape(block, fstPICurve);
}

void TFuzzySet::CreatePIFunctionValues(int num, TFzyFloat range, TFzyFloat center) {
  CreatePIFunctionValues(num, center - range, center + range, center);
}

void TFuzzySet::CreateBetaCurveFunctionValues(int num, TFzyFloat range, TFzyFloat center,
                                              TFzyFloat inflectionPoint, TFzyFloat weight) {
  constexpr const char* operation = "CreateBetaCurveFunctionValues";
  for (const TFzyFloat value : {range, center, inflectionPoint, weight, center - range, 2 * range})
    RequireFinite(value, operation);
  num = std::max(num, FewestShapePoints);
  std::vector<TFuzzyPoint> bell;  // computed as a whole first: a degree may be refused
  const TFzyFloat step = 2 * range / (num - 1);
  TFzyFloat x = center - range;
  for (int i = 0; i < num; ++i) {
    bell.push_back({x, BetaDegree(x, center, inflectionPoint, weight)});
    RequireFinite(bell.back().Y, operation);
    x += step;
  }
  const TPin self(this);
  detail::TPointWriter points(*FValues);
  points.Reserve(bell.size());
  TUpdateBlock block(*FValues);
  for (const TFuzzyPoint& point : bell) points.Add(point.X, point.Y);
  FInflectionPoint = inflectionPoint;
  CloseShape(block, fstBetaCurve);
}

void TFuzzySet::CreateBetaCurveFunctionValues(int num, TFzyFloat range, TFzyFloat center,
                                              TFzyFloat inflectionPoint) {
  CreateBetaCurveFunctionValues(num, range, center, inflectionPoint, 1.0);
}

void TFuzzySet::CreateCrispValue(TFzyFloat value) {
  RequireNumber(value, "CreateCrispValue");
  const TPin self(this);
  TString expression = FormatFixed(value, 4);
  detail::TPointWriter(*FValues).Reserve(FewestShapePoints);
  TUpdateBlock block(*FValues);
  FValues->Clear();
  CreateTriangleFunctionValues(value, value, value);
  TFirstException first;
  first.Run([&] { block.Close(); });
  FExpression = std::move(expression);
  first.Rethrow();
}

void TFuzzySet::SetSetType(TFuzzySetType value) {
  if (value == FSetType) return;
  const TPin self(this);
  TFirstException first;
  if (value != fstUserDefined) {
    const TFzyFloat min = GetXRange(1);
    const TFzyFloat w = GetXRange(0) - min;
    RequireFinite(w, "SetSetType");
    const TFzyFloat center = min + w / 2;
    const TFzyFloat range = ONE_THIRD * w;
    const TFzyFloat a = ONE_THIRD * w + min;
    const TFzyFloat b = TWO_THIRDS * w + min;
    const int num = FSurroundings ? FSurroundings->GetNumFunctionValues() : 7;
    TUpdateBlock block(*FValues);
    FValues->Clear();
    switch (value) {
      case fstPICurve:
        CreatePIFunctionValues(num, range, center);
        break;
      case fstBetaCurve:
        CreateBetaCurveFunctionValues(num, range, center, (w / 2 - range) / 2);
        break;
      case fstGrowthCurve:
      case fstDeclineCurve:
        CreateCurveValues(num, a, b, a + (b - a) / 2, value == fstGrowthCurve);
        break;
      default:
        CreateTriangleFunctionValues(center - range, center, center + range);
    }
    first.Run([&] { block.Close(); });
  }
  FSetType = value;
  first.Run([this] { Changed(false); });
  first.Rethrow();
}

}  // namespace fzy
