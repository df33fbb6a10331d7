#pragma once

#include <cmath>

#include "fuzzylogic/engine/FuzzyCurve.h"

namespace fzy::detail {

/// Whether point `p` lies on the line through `a` and `b`, within the tolerance in Y.
inline bool LiesOnLine(const TFuzzyPoint& p, const TFuzzyPoint& a, const TFuzzyPoint& b) noexcept {
  return FloatEquals(InterpolateY(a.X, a.Y, b.X, b.Y, p.X), p.Y);
}

inline bool IsShort(TFzyFloat dx, TFzyFloat dy) noexcept {
  return std::abs(dy) < FuzzyTolerance && std::abs(dx) < FuzzyTolerance;
}

/// See `SegmentsIntersect`. Inline for the walk, which asks it once a gap; only the library's own
/// sources include it, and they are all built without contraction of products and sums.
inline bool IntersectSegments(const TFuzzyPoint& p1, const TFuzzyPoint& p2, const TFuzzyPoint& p3,
                              const TFuzzyPoint& p4, TFuzzyPoint& crossing) noexcept {
  const TFzyFloat dx1 = p2.X - p1.X;
  const TFzyFloat dy1 = p2.Y - p1.Y;
  const TFzyFloat dx2 = p4.X - p3.X;
  const TFzyFloat dy2 = p4.Y - p3.Y;
  if (IsShort(dx1, dy1) && !LiesOnLine(p2, p3, p4)) return false;
  if (IsShort(dx2, dy2) && !LiesOnLine(p4, p1, p2)) return false;

  const TFzyFloat d = dx1 * dy2 - dy1 * dx2;
  const TFzyFloat nt = (p1.Y - p3.Y) * dx2 - (p1.X - p3.X) * dy2;
  if (std::abs(d) < FuzzyTolerance) {
    if (nt != 0) return false;
    crossing = p4.X <= p2.X ? p4 : p2;
    return true;
  }
  // Both parameters lie in [0, 1]; nt / d is t, the first segment's, and ns / d the second's, which
  // is never divided. Most gaps hold no crossing: one branch on all bounds, by comparing with d,
  // saves them the division. Where t is so small that dividing may round it to 0, that decides.
  const TFzyFloat ns = (p1.Y - p3.Y) * dx1 - (p1.X - p3.X) * dy1;
  const TFzyFloat sign = d < 0 ? -1 : 1;
  const TFzyFloat whole = sign * d;
  constexpr TFzyFloat negligible = 1e-300;
  if (static_cast<int>(sign * ns < 0) | static_cast<int>(sign * ns > whole) |
      static_cast<int>(sign * nt < -negligible * whole) | static_cast<int>(sign * nt > whole))
    return false;
  const TFzyFloat t = nt / d;
  if (!(t >= 0 && t <= 1)) return false;
  crossing.X = dx1 == 0 ? p1.X : dx2 == 0 ? p3.X : p1.X + t * dx1;
  crossing.Y = p3.Y == p4.Y ? p3.Y : p1.Y == p2.Y ? p1.Y : p1.Y + t * dy1;
  return true;
}

}  // namespace fzy::detail
