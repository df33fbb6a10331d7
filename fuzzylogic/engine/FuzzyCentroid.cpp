#include <cmath>

#include "fuzzylogic/engine/FuzzyCurve.h"

namespace fzy {
namespace {

/// Sums areas and their moments.
class TCentroid {
 public:
  void Add(TFzyFloat area, TFzyFloat center) noexcept {
    FMoment += center * area;
    FArea += area;
  }
  TFzyFloat Center() const noexcept { return FArea == 0 ? 0 : FMoment / FArea; }

 private:
  TFzyFloat FMoment = 0;
  TFzyFloat FArea = 0;
};

void AddSegment(const TFuzzyPoint& p, const TFuzzyPoint& q, TCentroid& sum) noexcept {
  const TFzyFloat d = q.X - p.X;
  const bool pZero = FloatEquals(p.Y, 0);
  const bool qZero = FloatEquals(q.Y, 0);
  if (FloatEquals(p.X, q.X) || (pZero && qZero)) {
    sum.Add(0, 0);
  } else if (FloatEquals(p.Y, q.Y)) {
    sum.Add(d * p.Y, (p.X + q.X) * 0.5);
  } else if (pZero || qZero) {
    sum.Add(d * 0.5 * std::abs(q.Y - p.Y), p.X + (pZero ? TWO_THIRDS : ONE_THIRD) * d);
  } else {
    sum.Add(d * 0.5 * (p.Y + q.Y), p.X + TWO_THIRDS * d * (q.Y + 0.5 * p.Y) / (p.Y + q.Y));
  }
}

}  // namespace

TFzyFloat CenterOfGravity(TFuzzyCurve curve, TFzyFloat minimum, TFzyFloat maximum) noexcept {
  if (curve.empty()) return 0;
  const TFuzzyPoint& first = curve.front();
  const TFuzzyPoint& last = curve.back();
  if (curve.size() < 2 || FloatEquals(first.X, last.X)) return (maximum - minimum) * 0.5 + minimum;

  TCentroid sum;
  if (first.Y > 0 && !FloatEquals(first.X, minimum))
    sum.Add((first.X - minimum) * first.Y, (first.X + minimum) * 0.5);
  for (std::size_t i = 1; i < curve.size(); ++i) AddSegment(curve[i - 1], curve[i], sum);
  if (last.Y > 0 && !FloatEquals(last.X, maximum))
    sum.Add((maximum - last.X) * last.Y, (last.X + maximum) * 0.5);
  return sum.Center();
}

}  // namespace fzy
