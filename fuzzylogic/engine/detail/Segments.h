#pragma once

#include <cmath>
#include <type_traits>

#include "fuzzylogic/engine/FuzzyCurve.h"
#include "fuzzylogic/engine/detail/WideCurve.h"
#include "fuzzylogic/engine/detail/WideFloat.h"

namespace fzy::detail {

/// Whether point `p` lies on the line through `a` and `b`, within the tolerance in Y.
inline bool LiesOnLine(const TFuzzyPoint& p, const TFuzzyPoint& a, const TFuzzyPoint& b) noexcept {
  return FloatEquals(InterpolateY(a.X, a.Y, b.X, b.Y, p.X), p.Y);
}

inline bool IsShort(TFzyFloat dx, TFzyFloat dy) noexcept {
  return std::abs(dy) < FuzzyTolerance && std::abs(dx) < FuzzyTolerance;
}

/// What becomes of two segments of which neither is a point off the other's line, in numbers of the
/// given type.
template <class Number>
inline bool IntersectIn(const TFuzzyPoint& p1, const TFuzzyPoint& p2, const TFuzzyPoint& p3,
                        const TFuzzyPoint& p4, TFuzzyPoint& crossing) noexcept {
  using std::abs;
  const Number dx1 = Number(p2.X) - p1.X;
  const Number dy1 = Number(p2.Y) - p1.Y;
  const Number dx2 = Number(p4.X) - p3.X;
  const Number dy2 = Number(p4.Y) - p3.Y;
  const Number d = dx1 * dy2 - dy1 * dx2;
  const auto across = [&](const Number& dx, const Number& dy) {
    return (Number(p1.Y) - p3.Y) * dx - (Number(p1.X) - p3.X) * dy;
  };
  const Number nt = across(dx2, dy2);
  const Number ns = across(dx1, dy1);
  if constexpr (std::is_same_v<Number, TFzyFloat>) {
    // Where one of the three is infinite or no number, so is their sum.
    if (!std::isfinite(d + nt + ns)) return IntersectWide(p1, p2, p3, p4, crossing);
  }
  if (abs(d) < FuzzyTolerance) {
    if (nt != 0) return false;
    crossing = p4.X <= p2.X ? p4 : p2;
    return true;
  }
  // Both parameters lie in [0, 1]; nt / d is t, the first segment's, and ns / d the second's, which
  // is never divided. Most gaps hold no crossing: one branch on all bounds, by comparing with d,
  // saves them the division. Where t is so small that dividing may round it to 0, that decides.
  const Number sign = d < 0 ? -1 : 1;
  const Number whole = sign * d;
  constexpr TFzyFloat negligible = 1e-300;
  if (static_cast<int>(sign * ns < 0) | static_cast<int>(sign * ns > whole) |
      static_cast<int>(sign * nt < whole * -negligible) | static_cast<int>(sign * nt > whole))
    return false;
  const Number t = nt / d;
  if (!(t >= 0 && t <= 1)) return false;
  crossing.X = dx1 == 0 ? p1.X : dx2 == 0 ? p3.X : Narrowed(p1.X + t * dx1);
  crossing.Y = p3.Y == p4.Y ? p3.Y : p1.Y == p2.Y ? p1.Y : Narrowed(p1.Y + t * dy1);
  return true;
}

/// See `SegmentsIntersect`. Inline for the walk, which asks it once a gap; only the library's own
/// sources include it, and they are all built without contraction of products and sums.
inline bool IntersectSegments(const TFuzzyPoint& p1, const TFuzzyPoint& p2, const TFuzzyPoint& p3,
                              const TFuzzyPoint& p4, TFuzzyPoint& crossing) noexcept {
  if (IsShort(p2.X - p1.X, p2.Y - p1.Y) && !LiesOnLine(p2, p3, p4)) return false;
  if (IsShort(p4.X - p3.X, p4.Y - p3.Y) && !LiesOnLine(p4, p1, p2)) return false;
  return IntersectIn<TFzyFloat>(p1, p2, p3, p4, crossing);
}

}  // namespace fzy::detail
