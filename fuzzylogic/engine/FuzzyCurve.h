#pragma once

#include <cstddef>

#include "fuzzylogic/engine/FuzzyPoint.h"

namespace fzy {

// The mathematics of one membership curve, free of objects. Where a function names an index outside
// the curve it says so; otherwise indices must lie inside. Points are expected in ascending X,
// where X values within the tolerance count as equal. They may be any finite numbers, as far apart
// as they like: where a sum or product on the way to a result is too large for a double, it is
// computed with more room.

/// The engine's one tolerance: every decision about equal X or equal degrees uses it.
inline constexpr TFzyFloat FuzzyTolerance = 0.0001;

/// Whether A and B agree within 0.0001, bounds included.
constexpr bool FloatEquals(TFzyFloat a, TFzyFloat b) noexcept {
  return a >= b - FuzzyTolerance && b + FuzzyTolerance >= a;
}

/// 1, -1 or 0.
constexpr int Sign(TFzyFloat value) noexcept { return value > 0 ? 1 : value < 0 ? -1 : 0; }

/// Whether both coordinates agree within the tolerance.
constexpr bool SamePoint(const TFuzzyPoint& a, const TFuzzyPoint& b) noexcept {
  return FloatEquals(a.X, b.X) && FloatEquals(a.Y, b.Y);
}

/// The Y at `x` of the line through two points; `y2` when `x1` equals `x2` exactly. Finite between
/// the points.
TFzyFloat InterpolateY(TFzyFloat x1, TFzyFloat y1, TFzyFloat x2, TFzyFloat y2,
                       TFzyFloat x) noexcept;
/// The X at `y` of the line through two points; `x2` when `y1` equals `y2` exactly. Finite between
/// the points.
TFzyFloat InterpolateX(TFzyFloat x1, TFzyFloat y1, TFzyFloat x2, TFzyFloat y2,
                       TFzyFloat y) noexcept;

/// The slope from `a` to `b`; a vertical edge (equal X within the tolerance) counts as 1, -1 or 0.
TFzyFloat Slope(const TFuzzyPoint& a, const TFuzzyPoint& b) noexcept;

/// Whether X never descends, exactly: then look-ups may search instead of scan.
bool IsAscending(TFuzzyCurve curve) noexcept;

/// From `index` on, by steps of `dir` (0 counts as 1), the first index whose X (or Y) lies outside
/// the tolerance of `x` (`y`); -1 when the walk runs off either end. Starts with `index` itself.
int SkipX(TFuzzyCurve curve, int index, TFzyFloat x, int dir) noexcept;
int SkipY(TFuzzyCurve curve, int index, TFzyFloat y, int dir) noexcept;

/// Of the points from `index` on by steps of `dir` (1 or -1) that share its X within the tolerance,
/// the index of the greatest (least) Y; the first found wins ties.
int MaxYOfX(TFuzzyCurve curve, int index, int dir) noexcept;
int MinYOfX(TFuzzyCurve curve, int index, int dir) noexcept;

/// Whether all points share the first one's Y within the tolerance; the curve must have points.
bool IsFlat(TFuzzyCurve curve) noexcept;

/// The degree of membership at `x`: 0 for a curve without points; the first (last) point's Y beyond
/// the ends; the greatest Y of the same-X run at a breakpoint; else the interpolation. Logarithmic
/// when `ascending` says that X never descends, else linear. `x` must be a number.
TFzyFloat Membership(TFuzzyCurve curve, bool ascending, TFzyFloat x) noexcept;

/// Answers `Membership` for a series of X that never descends, on a curve whose X never descends
/// either, in constant time on average: it moves along instead of searching anew.
class TMembershipCursor {
 public:
  explicit TMembershipCursor(TFuzzyCurve curve) noexcept : FCurve(curve) {}
  TFzyFloat At(TFzyFloat x) noexcept;

 private:
  TFuzzyCurve FCurve;
  std::size_t FNext = 1;
};

/// The X of the centroid of the area under the curve, which goes on flat to `minimum` and `maximum`
/// (the variable's range). 0 without points; the middle of the range for a curve of fewer than two
/// points or without width; 0 for a curve without area.
TFzyFloat CenterOfGravity(TFuzzyCurve curve, TFzyFloat minimum, TFzyFloat maximum) noexcept;

/// The mean X of the points that share the greatest Y, strictly within the tolerance of the first
/// of them; 0 without points. Points are averaged, not the plateau between them.
TFzyFloat MeanOfMaxima(TFuzzyCurve curve) noexcept;

/// The mean Y of the points; the curve must have points.
TFzyFloat MeanY(TFuzzyCurve curve) noexcept;

/// Whether the curve decides nothing: no points, all exactly 0, or all exactly 1.
bool IsUndecidable(TFuzzyCurve curve) noexcept;

/// The greatest Y, where the search ends at the first point that reaches exactly 1; the curve must
/// have points.
TFzyFloat GreatestY(TFuzzyCurve curve) noexcept;

/// Whether segment 1-2 meets segment 3-4, and where. A segment that is a point within the tolerance
/// must lie on the other's line within the tolerance; of collinear segments the answer is the end
/// of smaller X among point 2 and point 4, whether or not they overlap.
bool SegmentsIntersect(const TFuzzyPoint& p1, const TFuzzyPoint& p2, const TFuzzyPoint& p3,
                       const TFuzzyPoint& p4, TFuzzyPoint& crossing) noexcept;

/// Whether two curves overlap: see `TFuzzySet::Intersects`.
bool CurvesIntersect(TFuzzyCurve a, TFuzzyCurve b) noexcept;

}  // namespace fzy
