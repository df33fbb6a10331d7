#include <algorithm>
#include <cmath>
#include <numeric>

#include "fuzzylogic/engine/FuzzyCurve.h"
#include "fuzzylogic/engine/detail/WideFloat.h"

namespace fzy {
namespace {

/// Sums areas and their moments, in numbers of the given type.
template <class Number>
struct TCentroid {
  void Add(Number area, Number center) noexcept {
    Moment += center * area;
    Area += area;
  }

  Number Moment = 0;
  Number Area = 0;
};

template <class Number>
void AddSegment(const TFuzzyPoint& p, const TFuzzyPoint& q, TCentroid<Number>& sum) noexcept {
  using std::abs;
  const Number d = Number(q.X) - p.X;
  const bool pZero = FloatEquals(p.Y, 0);
  const bool qZero = FloatEquals(q.Y, 0);
  if (FloatEquals(p.X, q.X) || (pZero && qZero)) {
    sum.Add(0, 0);
  } else if (FloatEquals(p.Y, q.Y)) {
    sum.Add(d * p.Y, (Number(p.X) + q.X) * 0.5);
  } else if (pZero || qZero) {
    sum.Add(d * 0.5 * abs(Number(q.Y) - p.Y), p.X + (pZero ? TWO_THIRDS : ONE_THIRD) * d);
  } else {
    const Number sides = Number(p.Y) + q.Y;
    sum.Add(d * 0.5 * sides, p.X + TWO_THIRDS * d * (q.Y + Number(0.5) * p.Y) / sides);
  }
}

template <class Number>
TCentroid<Number> Sum(TFuzzyCurve curve, TFzyFloat minimum, TFzyFloat maximum) noexcept {
  const TFuzzyPoint& first = curve.front();
  const TFuzzyPoint& last = curve.back();
  TCentroid<Number> sum;
  if (first.Y > 0 && !FloatEquals(first.X, minimum))
    sum.Add((Number(first.X) - minimum) * first.Y, (Number(first.X) + minimum) * 0.5);
  for (std::size_t i = 1; i < curve.size(); ++i) AddSegment(curve[i - 1], curve[i], sum);
  if (last.Y > 0 && !FloatEquals(last.X, maximum))
    sum.Add((Number(maximum) - last.X) * last.Y, (Number(last.X) + maximum) * 0.5);
  return sum;
}

/// The center where doubles overflowed or nearly vanished.
TFzyFloat CenterInWide(TFuzzyCurve curve, TFzyFloat minimum, TFzyFloat maximum) noexcept {
  const TCentroid<detail::TWideFloat> sum = Sum<detail::TWideFloat>(curve, minimum, maximum);
  if (sum.Area == 0) return 0;
  // The last rounding may lead beyond the largest number, but the center does not lie there.
  const TFzyFloat center = (sum.Moment / sum.Area).Narrow();
  return std::clamp(center, -detail::LargestFloat, detail::LargestFloat);
}

}  // namespace

TFzyFloat CenterOfGravity(TFuzzyCurve curve, TFzyFloat minimum, TFzyFloat maximum) noexcept {
  if (curve.empty()) return 0;
  const TFuzzyPoint& first = curve.front();
  const TFuzzyPoint& last = curve.back();
  if (curve.size() < 2 || FloatEquals(first.X, last.X)) {
    const TFzyFloat width = maximum - minimum;
    return std::isfinite(width) ? width * 0.5 + minimum : std::midpoint(minimum, maximum);
  }
  const TCentroid<TFzyFloat> sum = Sum<TFzyFloat>(curve, minimum, maximum);
  constexpr TFzyFloat leastArea = 1e-270;  // below, products lose bits; only tails can be so low
  if (sum.Area >= leastArea && sum.Area + std::abs(sum.Moment) <= detail::LargestFloat)
    return sum.Moment / sum.Area;
  if (sum.Area == 0 && first.Y <= 0 && last.Y <= 0) return 0;
  return CenterInWide(curve, minimum, maximum);
}

}  // namespace fzy
