#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

#include "fuzzylogic/engine/FuzzySet.h"
#include "fuzzylogic/engine/detail/Interpolation.h"
#include "fuzzylogic/engine/detail/PointWriter.h"
#include "fuzzylogic/framework/FirstException.h"
#include "fuzzylogic/framework/UpdateBlock.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

// The shapes that a set's points are generated from.

namespace fzy {
namespace {

constexpr int FewestShapePoints = 3;

TFzyFloat Square(TFzyFloat value) { return value * value; }

/// By what numbers are multiplied so that their sum and their difference are finite; nearly always
/// by 1, which leaves every bit.
TFzyFloat ScaleFor(TFzyFloat a, TFzyFloat b) {
  return std::isfinite(b - a) && std::isfinite(a + b) ? 1 : 0.5;
}

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
  const TFzyFloat square = Square(t);
  return 1 / (1 + (std::isfinite(square) ? weight * square : weight * t * t));
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
  RequireAtMost(MostShapePoints, num, "CreateCurveValues");
  CheckCurve(left, right);
  RequireFinite(inflectionPoint, "CreateCurveValues");
  num = std::max(num, FewestShapePoints);
  const TPin self(this);
  detail::TPointWriter points(*FValues);
  points.Reserve(static_cast<std::size_t>(num));
  TUpdateBlock block(*FValues);
  const TFzyFloat scale = ScaleFor(left, right);
  const TFzyFloat l = left * scale;
  const TFzyFloat r = right * scale;
  const TFzyFloat step = detail::EvenStep(left, right, num - 1);
  TFzyFloat x = left;
  for (int i = 0; i < num; ++i) {
    const TFzyFloat y = GrowthDegree(x * scale, l, r, r - l);
    points.Add(x, growth ? y : 1 - y);
    x += step;
  }
  FInflectionPoint = inflectionPoint;
  CloseShape(block, growth ? fstGrowthCurve : fstDeclineCurve);
}

void TFuzzySet::CreatePIFunctionValues(int num, TFzyFloat left, TFzyFloat right, TFzyFloat center) {
  CheckCurve(left, right);
  RequireNumber(center, "CreatePIFunctionValues");
  RequireAtMost(MostShapePoints, num, "CreatePIFunctionValues");
  if (num < 0)
    throw EFzyException(SFzyInvalidArgument,
                        {TString("CreatePIFunctionValues"), std::int64_t{num}});
  center = std::clamp(center, left, right);
  const TPin self(this);
  detail::TPointWriter(*FValues).Reserve(
      2 * static_cast<std::size_t>(std::max(num / 2 + 1, FewestShapePoints)));
  TUpdateBlock block(*FValues);
  const auto middle = [](TFzyFloat from, TFzyFloat to) {
    const TFzyFloat width = to - from;
    return std::isfinite(width) ? from + width / 2 : std::midpoint(from, to);
  };
  CreateCurveValues(num / 2 + 1, left, center, middle(left, center), true);
  if (num % 2 == 0) FValues->Delete(FValues->GetCount() - 1);
  CreateCurveValues(num / 2 + 1, center, right, middle(center, right), false);
  if (FValues->GetCount() > num) FValues->Delete(num / 2);
  CloseShape(block, fstPICurve);
}

void TFuzzySet::CreatePIFunctionValues(int num, TFzyFloat range, TFzyFloat center) {
  CreatePIFunctionValues(num, center - range, center + range, center);
}

void TFuzzySet::CreateBetaCurveFunctionValues(int num, TFzyFloat range, TFzyFloat center,
                                              TFzyFloat inflectionPoint, TFzyFloat weight) {
  constexpr const char* operation = "CreateBetaCurveFunctionValues";
  RequireAtMost(MostShapePoints, num, operation);
  for (const TFzyFloat value :
       {range, center, inflectionPoint, weight, center - range, center + range})
    RequireFinite(value, operation);
  num = std::max(num, FewestShapePoints);
  std::vector<TFuzzyPoint> bell;  // computed as a whole first: a degree may be refused
  const bool isWide = std::isinf(2 * range);
  const TFzyFloat step = isWide ? range / (num - 1) * 2 : 2 * range / (num - 1);
  TFzyFloat x = center - range;
  for (int i = 0; i < num; ++i) {
    bell.push_back({x, BetaDegree(x, center, inflectionPoint, weight)});
    RequireFinite(bell.back().Y, operation);
    x = std::clamp(x + step, -detail::LargestFloat, detail::LargestFloat);
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

/// What a set was before its points are made anew: it comes back when making them is refused, or
/// memory fails. It stands before the update block, whose telling makes the set user-defined.
class TFuzzySet::TShapeUndo {
 public:
  explicit TShapeUndo(TFuzzySet& set)
      : FSet(set),
        FPoints(set.FValues->Points().begin(), set.FValues->Points().end()),
        FExpression(set.FExpression),
        FType(set.FSetType) {
    FDefinition.Set(set.FDefinition.Get());
  }
  TShapeUndo(const TShapeUndo&) = delete;
  TShapeUndo& operator=(const TShapeUndo&) = delete;
  ~TShapeUndo() {
    if (FIsDropped) return;
    FSet.FValues->PutBack(FPoints);
    FSet.FExpression = std::move(FExpression);
    FSet.FDefinition.Swap(FDefinition);
    FSet.FSetType = FType;
  }
  void Drop() noexcept { FIsDropped = true; }

 private:
  TFuzzySet& FSet;
  std::vector<TFuzzyPoint> FPoints;
  TString FExpression;
  TSparseText FDefinition;
  TFuzzySetType FType;
  bool FIsDropped = false;
};

void TFuzzySet::SetSetType(TFuzzySetType value) {
  if (value == FSetType) return;
  const TPin self(this);
  TFirstException first;
  if (value != fstUserDefined) {
    const TFzyFloat minimum = GetXRange(1);
    const TFzyFloat maximum = GetXRange(0);
    const TFzyFloat scale = ScaleFor(minimum, maximum);
    const TFzyFloat min = minimum * scale;
    const TFzyFloat w = maximum * scale - min;
    const TFzyFloat center = (min + w / 2) / scale;
    const TFzyFloat range = ONE_THIRD * w / scale;
    const TFzyFloat a = (ONE_THIRD * w + min) / scale;
    const TFzyFloat b = (TWO_THIRDS * w + min) / scale;
    const int num = FSurroundings ? FSurroundings->GetNumFunctionValues() : 7;
    RequireAtMost(MostShapePoints, num, "SetSetType");
    TShapeUndo undo(*this);
    TUpdateBlock block(*FValues);
    FValues->Clear();
    switch (value) {
      case fstPICurve:
        CreatePIFunctionValues(num, range, center);
        break;
      case fstBetaCurve:
        CreateBetaCurveFunctionValues(num, range, center, (w / 2 - range * scale) / 2 / scale);
        break;
      case fstGrowthCurve:
      case fstDeclineCurve:
        CreateCurveValues(num, a, b, a + (b - a) / 2, value == fstGrowthCurve);
        break;
      default:
        CreateTriangleFunctionValues(center - range, center, center + range);
    }
    undo.Drop();
    first.Run([&] { block.Close(); });
  }
  FSetType = value;
  first.Run([this] { Changed(false); });
  first.Rethrow();
}

}  // namespace fzy
