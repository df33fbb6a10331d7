#pragma once

#include "fuzzylogic/engine/FuzzyPoint.h"

// Results of the mathematics of curves where doubles overflow on the way. They stand apart from the
// plain ones, which nearly always suffice: so these cost nothing where they are not needed.

namespace fzy::detail {

/// See `Interpolate`.
TFzyFloat InterpolateWide(TFzyFloat x1, TFzyFloat y1, TFzyFloat x2, TFzyFloat y2,
                          TFzyFloat x) noexcept;
/// See `SegmentsIntersect`; neither segment is a point off the other's line.
bool IntersectWide(const TFuzzyPoint& p1, const TFuzzyPoint& p2, const TFuzzyPoint& p3,
                   const TFuzzyPoint& p4, TFuzzyPoint& crossing) noexcept;
TFzyFloat MeanOfMaximaWide(TFuzzyCurve curve) noexcept;
TFzyFloat MeanYWide(TFuzzyCurve curve) noexcept;

}  // namespace fzy::detail
