#pragma once

#include <vector>

#include "fuzzylogic/engine/FuzzyPoint.h"
#include "fuzzylogic/engine/detail/WideFloat.h"

namespace fzy::detail {

/// Bells around the points of a curve: y / (d^exponent + 1) at the distance d from a point of
/// degree y, where distances shrink to the share that the curve has of the range.
class TApproximation {
 public:
  /// Takes the measure of a curve that has points.
  /// @throws EFzyException (`SFzyNotFinite`) when the range has no width, but the curve has
  TApproximation(TFuzzyCurve curve, TFzyFloat minimum, TFzyFloat maximum);

  /// The points of a grid under the highest of the bells of the curve's points. Where all of the
  /// grid lies so far out that the degrees would vanish, they are larger by one factor, which
  /// normalizing takes away.
  std::vector<TFuzzyPoint> Over(TFuzzyCurve grid, TFuzzyCurve curve, TFzyFloat exponent);

 private:
  TWideFloat WideDistance(TFzyFloat a, TFzyFloat b) const noexcept {
    return abs(TWideFloat(a) - b) * FWideScale;
  }
  TFzyFloat Distance(TFzyFloat a, TFzyFloat b) const noexcept;
  TFzyFloat Raise(std::vector<TFuzzyPoint>& bells, TFuzzyCurve curve, TFzyFloat exponent) const;
  bool DrawNear(TFuzzyCurve grid, TFuzzyCurve curve);

  TFzyFloat FScale;
  TWideFloat FWideScale;
  bool FIsWide;
};

}  // namespace fzy::detail
