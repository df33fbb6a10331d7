#pragma once

#include "fuzzylogic/engine/FuzzyCurve.h"
#include "fuzzylogic/engine/detail/Interpolation.h"
#include "fuzzylogic/engine/detail/Segments.h"

namespace fzy::detail {

/// Degrees on one of the two curves of a walk, at a breakpoint of the other that lies before the
/// piece from `previous` to `current` has ended.
class TPlainMembership {
 public:
  TPlainMembership(TFuzzyCurve curve, bool ascending) noexcept
      : FCurve(curve), FAscending(ascending) {}
  TFzyFloat At(TFzyFloat x, const TFuzzyPoint& /*previous*/,
               const TFuzzyPoint& /*current*/) const noexcept {
    return Membership(FCurve, FAscending, x);
  }

 private:
  TFuzzyCurve FCurve;
  bool FAscending;
};

/// The same where the X of neither curve ever descends, and the curve is narrow: mostly `x` lies
/// inside the piece, else a cursor moves along.
class TMovingMembership {
 public:
  explicit TMovingMembership(TFuzzyCurve curve) noexcept : FCursor(curve) {}
  TFzyFloat At(TFzyFloat x, const TFuzzyPoint& previous, const TFuzzyPoint& current) noexcept {
    if (previous.X < x && x < current.X) return OnLine(previous, current, x);
    return FCursor.At(x);
  }

 private:
  TMembershipCursor FCursor;
};

/// The crossing of the pieces of A and B that span the gap before the next breakpoint. A flat curve
/// is met by its level, whatever the piece; else the two segments are intersected.
inline bool CrossingInGap(bool flatA, const TFuzzyPoint& prevA, const TFuzzyPoint& curA, bool flatB,
                          const TFuzzyPoint& prevB, const TFuzzyPoint& curB,
                          TFuzzyPoint& crossing) noexcept {
  const auto between = [](TFzyFloat y, TFzyFloat from, TFzyFloat to) {
    return (from < y && y < to) || (to < y && y < from);
  };
  if (flatA && between(curA.Y, prevB.Y, curB.Y)) {
    crossing = {InterpolateX(prevB.X, prevB.Y, curB.X, curB.Y, curA.Y), curA.Y};
    return true;
  }
  if (flatB && between(curB.Y, prevA.Y, curA.Y)) {
    crossing = {InterpolateX(prevA.X, prevA.Y, curA.X, curA.Y, curB.Y), curB.Y};
    return true;
  }
  return IntersectSegments(prevA, curA, prevB, curB, crossing);
}

/// The walk of two curves that both have points. It begins behind the first `i` points of A, and
/// goes on while `goesOn(i, j)`.
template <class Membership, class Visit, class GoesOn>
bool WalkBoth(TFuzzyCurve a, std::size_t i, TFuzzyCurve b, Membership muA, Membership muB,
              Visit& visit, GoesOn goesOn) {
  const bool flatA = IsFlat(a);
  const bool flatB = IsFlat(b);
  const TFuzzyPoint* prevA = &a[i > 0 ? i - 1 : 0];
  const TFuzzyPoint* prevB = b.data();
  const TFuzzyPoint* curA = prevA;
  const TFuzzyPoint* curB = prevB;
  std::size_t j = 0;
  while (goesOn(i, j)) {
    const bool hasA = i < a.size();
    const bool hasB = j < b.size();
    // A finished curve goes on as the single point at its end.
    if (hasA) curA = &a[i];
    if (hasB) curB = &b[j];
    TFuzzyPoint p;
    if (CrossingInGap(flatA, *prevA, *curA, flatB, *prevB, *curB, p) && visit(p.X, p.Y, p.X, p.Y))
      return true;

    // Which X is less says which of the two bounds of `FloatEquals` is left to ask.
    bool stop = false;
    if (hasB && (!hasA || curB->X <= curA->X)) {
      if (hasA && curB->X + FuzzyTolerance >= curA->X) {
        stop = visit(curA->X, curA->Y, curB->X, curB->Y);
        ++i;
        prevA = curA;
      } else {
        stop = visit(curB->X, muA.At(curB->X, *prevA, *curA), curB->X, curB->Y);
      }
      ++j;
      prevB = curB;
    } else {
      if (hasB && curA->X >= curB->X - FuzzyTolerance) {
        stop = visit(curA->X, curA->Y, curB->X, curB->Y);
        ++j;
        prevB = curB;
      } else {
        stop = visit(curA->X, curA->Y, curA->X, muB.At(curA->X, *prevB, *curB));
      }
      ++i;
      prevA = curA;
    }
    if (stop) return true;
  }
  return false;
}

/// Visits every breakpoint of two curves, with the degrees of both there, and every crossing
/// between breakpoints, in order of X: `visit(x1, y1, x2, y2)` with (x1, y1) on A and (x2, y2) on
/// B, until it returns true; the result says whether it did. A curve without points counts as
/// absent: the other one's points are visited paired with themselves. Linear in the points of both
/// when both ascend and are narrow.
template <class Visit>
bool MergeWalk(TFuzzyCurve a, bool ascendingA, TFuzzyCurve b, bool ascendingB, Visit visit) {
  if (a.empty() || b.empty()) {
    for (const TFuzzyPoint& p : a.empty() ? b : a) {
      if (visit(p.X, p.Y, p.X, p.Y)) return true;
    }
    return false;
  }
  const auto goesOn = [&](std::size_t i, std::size_t j) { return i < a.size() || j < b.size(); };
  if (ascendingA && ascendingB && IsNarrow(a) && IsNarrow(b))
    return WalkBoth(a, 0, b, TMovingMembership(a), TMovingMembership(b), visit, goesOn);
  return WalkBoth(a, 0, b, TPlainMembership(a, ascendingA), TPlainMembership(b, ascendingB), visit,
                  goesOn);
}

}  // namespace fzy::detail
