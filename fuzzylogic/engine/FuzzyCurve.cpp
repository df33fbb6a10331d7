#include "fuzzylogic/engine/FuzzyCurve.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "fuzzylogic/engine/detail/Interpolation.h"
#include "fuzzylogic/engine/detail/Means.h"

namespace fzy {
namespace {

int Count(TFuzzyCurve curve) noexcept { return static_cast<int>(curve.size()); }

const TFuzzyPoint& At(TFuzzyCurve curve, int index) noexcept {
  return curve[static_cast<std::size_t>(index)];
}

/// Walks from `index` by `dir` while `coordinate` stays within the tolerance of `value`.
int Skip(TFuzzyCurve curve, int index, TFzyFloat value, int dir,
         TFzyFloat TFuzzyPoint::*coordinate) noexcept {
  const std::ptrdiff_t count = std::ssize(curve);
  const std::ptrdiff_t step = dir == 0 ? 1 : dir;
  std::ptrdiff_t i = index;
  while (i >= 0 && i < count && FloatEquals(curve[static_cast<std::size_t>(i)].*coordinate, value))
    i += step;
  return i >= 0 && i < count ? static_cast<int>(i) : -1;
}

template <class Better>
int BestYOfX(TFuzzyCurve curve, int index, int dir, Better better) noexcept {
  const TFzyFloat x = At(curve, index).X;
  int best = index;
  for (int i = index + dir; i >= 0 && i < Count(curve) && FloatEquals(At(curve, i).X, x);
       i += dir) {
    if (better(At(curve, i).Y, At(curve, best).Y)) best = i;
  }
  return best;
}

TFzyFloat HighestOfRun(TFuzzyCurve curve, int index, int dir) noexcept {
  return At(curve, MaxYOfX(curve, index, dir)).Y;
}

/// The degree at `x`, where `next` is the first index above 0 whose X is at least `x`.
TFzyFloat MembershipBefore(TFuzzyCurve curve, std::size_t next, TFzyFloat x) noexcept {
  const TFuzzyPoint& right = curve[next];
  if (x == right.X) return HighestOfRun(curve, static_cast<int>(next), 1);
  const TFuzzyPoint& left = curve[next - 1];
  // Degrees are not negative: only the width may be infinite.
  return right.X - left.X <= detail::LargestFloat
             ? detail::OnLine(left, right, x)
             : detail::InterpolateWide(left.X, left.Y, right.X, right.Y, x);
}

/// The degree at an `x` that lies at or beyond an end of the curve; false when it lies inside.
bool MembershipAtEnds(TFuzzyCurve curve, TFzyFloat x, TFzyFloat& degree) noexcept {
  if (x < curve.front().X)
    degree = curve.front().Y;
  else if (x == curve.front().X)
    degree = HighestOfRun(curve, 0, 1);
  else if (x > curve.back().X)
    degree = curve.back().Y;
  else if (x == curve.back().X)
    degree = HighestOfRun(curve, Count(curve) - 1, -1);
  else
    return false;
  return true;
}

}  // namespace

TFzyFloat InterpolateY(TFzyFloat x1, TFzyFloat y1, TFzyFloat x2, TFzyFloat y2,
                       TFzyFloat x) noexcept {
  return x2 == x1 ? y2 : detail::Interpolate(x1, y1, x2, y2, x);
}

TFzyFloat InterpolateX(TFzyFloat x1, TFzyFloat y1, TFzyFloat x2, TFzyFloat y2,
                       TFzyFloat y) noexcept {
  return y2 == y1 ? x2 : detail::Interpolate(y1, x1, y2, x2, y);
}

TFzyFloat Slope(const TFuzzyPoint& a, const TFuzzyPoint& b) noexcept {
  if (FloatEquals(a.X, b.X)) return Sign(b.Y - a.Y);
  const TFzyFloat dx = b.X - a.X;
  const TFzyFloat dy = b.Y - a.Y;
  if (std::isfinite(dx) && std::isfinite(dy)) return dy / dx;
  return (b.Y / 2 - a.Y / 2) / (b.X / 2 - a.X / 2);
}

bool IsAscending(TFuzzyCurve curve) noexcept {
  return std::is_sorted(curve.begin(), curve.end(),
                        [](const TFuzzyPoint& a, const TFuzzyPoint& b) { return a.X < b.X; });
}

int SkipX(TFuzzyCurve curve, int index, TFzyFloat x, int dir) noexcept {
  return Skip(curve, index, x, dir, &TFuzzyPoint::X);
}

int SkipY(TFuzzyCurve curve, int index, TFzyFloat y, int dir) noexcept {
  return Skip(curve, index, y, dir, &TFuzzyPoint::Y);
}

int MaxYOfX(TFuzzyCurve curve, int index, int dir) noexcept {
  return BestYOfX(curve, index, dir, [](TFzyFloat a, TFzyFloat b) { return a > b; });
}

int MinYOfX(TFuzzyCurve curve, int index, int dir) noexcept {
  return BestYOfX(curve, index, dir, [](TFzyFloat a, TFzyFloat b) { return a < b; });
}

bool IsFlat(TFuzzyCurve curve) noexcept { return SkipY(curve, 0, curve.front().Y, 1) < 0; }

TFzyFloat Membership(TFuzzyCurve curve, bool ascending, TFzyFloat x) noexcept {
  if (curve.empty()) return 0;
  TFzyFloat degree = 0;
  if (MembershipAtEnds(curve, x, degree)) return degree;
  const auto reaches = [x](const TFuzzyPoint& point) { return !(point.X < x); };
  const auto from = curve.begin() + 1;
  const auto next = ascending
                        ? std::partition_point(from, curve.end(),
                                               [&](const TFuzzyPoint& p) { return !reaches(p); })
                        : std::find_if(from, curve.end(), reaches);
  return MembershipBefore(curve, static_cast<std::size_t>(next - curve.begin()), x);
}

TFzyFloat TMembershipCursor::At(TFzyFloat x) noexcept {
  TFzyFloat degree = 0;
  if (MembershipAtEnds(FCurve, x, degree)) return degree;
  while (FCurve[FNext].X < x) ++FNext;
  return MembershipBefore(FCurve, FNext, x);
}

TFzyFloat MeanOfMaxima(TFuzzyCurve curve) noexcept {
  if (curve.empty()) return 0;
  const TFzyFloat mean = detail::MeanOfMaximaIn<TFzyFloat>(curve);
  return std::isfinite(mean) ? mean : detail::MeanOfMaximaWide(curve);
}

TFzyFloat MeanY(TFuzzyCurve curve) noexcept {
  const TFzyFloat mean = detail::MeanYIn<TFzyFloat>(curve);
  return std::isfinite(mean) ? mean : detail::MeanYWide(curve);
}

bool IsUndecidable(TFuzzyCurve curve) noexcept {
  if (curve.empty()) return true;
  const TFzyFloat y = curve.front().Y;
  return (y == 0 || y == 1) && std::all_of(curve.begin(), curve.end(),
                                           [y](const TFuzzyPoint& point) { return point.Y == y; });
}

TFzyFloat GreatestY(TFuzzyCurve curve) noexcept {
  TFzyFloat greatest = curve.front().Y;
  for (std::size_t i = 1; i < curve.size() && greatest != 1.0; ++i)
    greatest = std::max(greatest, curve[i].Y);
  return greatest;
}

bool CurvesIntersect(TFuzzyCurve a, TFuzzyCurve b) noexcept {
  if (a.empty() || b.empty()) return false;
  const auto zero = [](TFzyFloat y) { return y < FuzzyTolerance; };
  const auto nought = [&](TFuzzyCurve curve) { return zero(curve.front().Y) && IsFlat(curve); };
  if (nought(a) && !nought(b)) return false;

  const auto apart = [&](TFuzzyCurve left, TFuzzyCurve right) {
    return left.back().X < right.front().X - FuzzyTolerance && zero(left.back().Y) &&
           zero(right.front().Y);
  };
  if (apart(a, b) || apart(b, a)) return false;

  const auto touch = [](TFuzzyCurve left, TFuzzyCurve right) {
    return FloatEquals(left.back().X, right.front().X) &&
           (HighestOfRun(left, Count(left) - 1, -1) > FuzzyTolerance ||
            HighestOfRun(right, 0, 1) > FuzzyTolerance);
  };
  if (touch(a, b) || touch(b, a)) return true;
  return a.back().X > b.front().X + FuzzyTolerance && a.front().X < b.back().X - FuzzyTolerance;
}

}  // namespace fzy
