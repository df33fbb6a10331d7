#include "fuzzylogic/engine/detail/WideCurve.h"

#include <algorithm>
#include <cmath>

#include "fuzzylogic/engine/detail/Means.h"
#include "fuzzylogic/engine/detail/Segments.h"

namespace fzy::detail {

TFzyFloat InterpolateWide(TFzyFloat x1, TFzyFloat y1, TFzyFloat x2, TFzyFloat y2,
                          TFzyFloat x) noexcept {
  const TWideFloat t = (TWideFloat(x) - x1) / (TWideFloat(x2) - x1);
  const TFzyFloat y = (t * (TWideFloat(y2) - y1) + y1).Narrow();
  const bool isInside = std::min(x1, x2) <= x && x <= std::max(x1, x2);
  // The last rounding may lead beyond the largest number.
  return isInside && std::isinf(y) ? std::clamp(y, std::min(y1, y2), std::max(y1, y2)) : y;
}

bool IntersectWide(const TFuzzyPoint& p1, const TFuzzyPoint& p2, const TFuzzyPoint& p3,
                   const TFuzzyPoint& p4, TFuzzyPoint& crossing) noexcept {
  return IntersectIn<TWideFloat>(p1, p2, p3, p4, crossing);
}

TFzyFloat MeanOfMaximaWide(TFuzzyCurve curve) noexcept {
  return MeanOfMaximaIn<TWideFloat>(curve).Narrow();
}

TFzyFloat MeanYWide(TFuzzyCurve curve) noexcept { return MeanYIn<TWideFloat>(curve).Narrow(); }

}  // namespace fzy::detail
