#pragma once

#include <cmath>

#include "fuzzylogic/engine/detail/WideCurve.h"
#include "fuzzylogic/engine/detail/WideFloat.h"

// Formulas over two numbers that may lie further apart than the largest double. Only the library's
// own sources include them, all built without contraction of products and sums. The plain formula
// runs first, and its result stands wherever no difference on the way was infinite.

namespace fzy::detail {

/// Whether any two X of a curve, which must never descend, have a finite difference.
inline bool IsNarrow(TFuzzyCurve curve) noexcept {
  return curve.back().X - curve.front().X <= LargestFloat;
}

/// The plain formula: the Y at `x` of the line through two points of different X.
inline TFzyFloat OnLine(const TFuzzyPoint& a, const TFuzzyPoint& b, TFzyFloat x) noexcept {
  return (x - a.X) / (b.X - a.X) * (b.Y - a.Y) + a.Y;
}

/// The same for any finite numbers; with X and Y exchanged also the X at a degree. Between the
/// points it is finite.
inline TFzyFloat Interpolate(TFzyFloat x1, TFzyFloat y1, TFzyFloat x2, TFzyFloat y2,
                             TFzyFloat x) noexcept {
  const TFzyFloat y = OnLine({x1, y1}, {x2, y2}, x);
  // One comparison for both: an infinite width may leave a finite result, but a wrong one.
  return std::abs(x2 - x1) + std::abs(y) <= LargestFloat ? y : InterpolateWide(x1, y1, x2, y2, x);
}

/// The way from one of `parts` + 1 evenly spaced numbers to the next; finite from two parts on.
inline TFzyFloat EvenStep(TFzyFloat from, TFzyFloat to, int parts) noexcept {
  const TFzyFloat width = to - from;
  return std::isfinite(width) ? width / parts : (to / 2 - from / 2) / parts * 2;
}

}  // namespace fzy::detail
