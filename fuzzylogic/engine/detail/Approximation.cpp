#include "fuzzylogic/engine/detail/Approximation.h"

#include <algorithm>
#include <cmath>

#include "fuzzylogic/vocabulary/FuzzyExceptions.h"

namespace fzy::detail {
namespace {

constexpr TFzyFloat CrispScale = 0.2;      // of a curve without width
constexpr TFzyFloat LeastDegree = 1e-200;  // below, degrees have vanished or are about to
constexpr TFzyFloat FarAway = 0x1p60;      // from there on 1 more does not change a power

}  // namespace

TApproximation::TApproximation(TFuzzyCurve curve, TFzyFloat minimum, TFzyFloat maximum) {
  const TFzyFloat first = curve.front().X;
  const TFzyFloat last = curve.back().X;
  const bool isCrisp = last == first;
  FScale = isCrisp ? CrispScale : (last - first) / (maximum - minimum);
  if (minimum == maximum) RequireFinite(FScale, "approximation");
  FIsWide =
      !std::isfinite(std::max(last, maximum) - std::min(first, minimum)) || !std::isfinite(FScale);
  FWideScale =
      isCrisp || !FIsWide ? FScale : (TWideFloat(last) - first) / (TWideFloat(maximum) - minimum);
}

TFzyFloat TApproximation::Distance(TFzyFloat a, TFzyFloat b) const noexcept {
  return FIsWide ? WideDistance(a, b).Narrow() : std::abs(a - b) * FScale;
}

/// Returns the highest degree.
TFzyFloat TApproximation::Raise(std::vector<TFuzzyPoint>& bells, TFuzzyCurve curve,
                                TFzyFloat exponent) const {
  TFzyFloat highest = 0;
  for (const TFuzzyPoint& point : curve) {
    if (!(point.Y > 0)) continue;
    for (TFuzzyPoint& bell : bells) {
      const TFzyFloat distance = Distance(bell.X, point.X);
      bell.Y = std::max(bell.Y, point.Y / (std::pow(distance, exponent) + 1));
      highest = std::max(highest, bell.Y);
    }
  }
  return highest;
}

/// Shrinks all distances so far that the least of them still counts as far; false when it does not.
bool TApproximation::DrawNear(TFuzzyCurve grid, TFuzzyCurve curve) {
  TWideFloat least = TWideFloat(LargestFloat) * LargestFloat;
  for (const TFuzzyPoint& point : curve) {
    if (!(point.Y > 0)) continue;
    for (const TFuzzyPoint& bell : grid) {
      const TWideFloat distance = WideDistance(bell.X, point.X);
      if (distance < least) least = distance;
    }
  }
  if (!(least > FarAway)) return false;
  FWideScale = FWideScale * FarAway / least;
  FIsWide = true;
  return true;
}

std::vector<TFuzzyPoint> TApproximation::Over(TFuzzyCurve grid, TFuzzyCurve curve,
                                              TFzyFloat exponent) {
  std::vector<TFuzzyPoint> bells(grid.begin(), grid.end());
  if (Raise(bells, curve, exponent) < LeastDegree && DrawNear(grid, curve)) {
    bells.assign(grid.begin(), grid.end());
    Raise(bells, curve, exponent);
  }
  return bells;
}

}  // namespace fzy::detail
