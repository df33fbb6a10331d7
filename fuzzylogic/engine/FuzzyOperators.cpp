#include "fuzzylogic/engine/FuzzyOperators.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

#include "fuzzylogic/engine/detail/MergeWalk.h"

namespace fzy {

namespace FuzzyFormulas {

TFzyFloat Min(TFzyFloat y1, TFzyFloat y2) { return std::min(y1, y2); }
TFzyFloat Max(TFzyFloat y1, TFzyFloat y2) { return std::max(y1, y2); }
TFzyFloat Mean(TFzyFloat y1, TFzyFloat y2) { return std::midpoint(y1, y2); }
TFzyFloat UnionMean(TFzyFloat y1, TFzyFloat y2) {
  const TFzyFloat mean = (2 * std::min(y1, y2) + 4 * std::max(y1, y2)) / 6;
  return std::isfinite(mean) ? mean : (std::min(y1, y2) / 4 + std::max(y1, y2) / 2) / 6 * 8;
}
TFzyFloat MeanSqr(TFzyFloat y1, TFzyFloat y2) {
  const TFzyFloat mean = Mean(y1, y2);
  return mean * mean;
}
TFzyFloat MeanSqrt(TFzyFloat y1, TFzyFloat y2) { return std::sqrt(Mean(y1, y2)); }
TFzyFloat IntersectionProduct(TFzyFloat y1, TFzyFloat y2) { return y1 * y2; }
TFzyFloat UnionProduct(TFzyFloat y1, TFzyFloat y2) {
  const TFzyFloat product = y1 * y2;
  // A product that is too large outweighs the sum, even one that is too large itself.
  return std::isinf(product) ? -product : y1 + y2 - product;
}
TFzyFloat IntersectionBoundedSum(TFzyFloat y1, TFzyFloat y2) { return std::max(0.0, y1 + y2 - 1); }
TFzyFloat UnionBoundedSum(TFzyFloat y1, TFzyFloat y2) { return std::min(1.0, y1 + y2); }
TFzyFloat UnionSum(TFzyFloat y1, TFzyFloat y2) { return y1 + y2; }

}  // namespace FuzzyFormulas

namespace {

struct TOperation {
  TFuzzyFormula Intersection;
  TFuzzyFormula Union;
};

constexpr std::array<TOperation, 7> Operations = {{
    {FuzzyFormulas::Min, FuzzyFormulas::Max},                                 // foZadeh
    {FuzzyFormulas::Mean, FuzzyFormulas::UnionMean},                          // foMean
    {FuzzyFormulas::MeanSqr, FuzzyFormulas::MeanSqr},                         // foMeanSqr
    {FuzzyFormulas::MeanSqrt, FuzzyFormulas::MeanSqrt},                       // foMeanSqrt
    {FuzzyFormulas::IntersectionProduct, FuzzyFormulas::UnionProduct},        // foProduct
    {FuzzyFormulas::IntersectionBoundedSum, FuzzyFormulas::UnionBoundedSum},  // foBoundedSum
    {nullptr, FuzzyFormulas::UnionSum},                                       // foSum
}};

TOperation Find(TFuzzyOperation operation) noexcept {
  return Ordinal(operation) < Operations.size() ? Operations[Ordinal(operation)] : TOperation{};
}

}  // namespace

TFuzzyOperation InferenceOperation(TFuzzyInferenceMethod method) {
  static constexpr std::array<TFuzzyOperation, 5> operations = {
      foZadeh,       // fimMinMax
      foSum,         // fimAdditive
      foMean,        // fimMean
      foProduct,     // fimProduct
      foBoundedSum,  // fimBoundedSum
  };
  return operations.at(Ordinal(method));
}

TFuzzyFormula IntersectionFormula(TFuzzyOperation operation) noexcept {
  return Find(operation).Intersection;
}
TFuzzyFormula UnionFormula(TFuzzyOperation operation) noexcept { return Find(operation).Union; }

bool SegmentsIntersect(const TFuzzyPoint& p1, const TFuzzyPoint& p2, const TFuzzyPoint& p3,
                       const TFuzzyPoint& p4, TFuzzyPoint& crossing) noexcept {
  return detail::IntersectSegments(p1, p2, p3, p4, crossing);
}

void CombineCurves(TFuzzyCurve a, TFuzzyCurve b, TFuzzyFormula formula,
                   std::vector<TFuzzyPoint>& result) {
  result.clear();
  result.reserve(2 * (a.size() + b.size()));  // a crossing before each breakpoint at the most
  const auto combine = [&](auto degree) {
    detail::MergeWalk(a, IsAscending(a), b, IsAscending(b),
                      [&](TFzyFloat x1, TFzyFloat y1, TFzyFloat /*x2*/, TFzyFloat y2) {
                        result.push_back({x1, degree(y1, y2)});
                        return false;
                      });
  };
  // Evidence is gathered by the maximum, mostly; named here, it is not called through a pointer.
  if (formula == FuzzyFormulas::Max)
    combine([](TFzyFloat y1, TFzyFloat y2) { return FuzzyFormulas::Max(y1, y2); });
  else
    combine(formula);
}

namespace {

/// Whether a set is one crisp number, as `TFuzzySet::CreateCrispValue` makes it.
bool IsCrisp(TFuzzyCurve curve) noexcept {
  return curve.size() == 3 && curve[0].X == curve[1].X && curve[1].X == curve[2].X &&
         curve[0].Y == 0 && curve[1].Y == 1 && curve[2].Y == 0;
}

/// The height that the walk finds where the crisp number lies inside one piece of A, apart from
/// both of its ends: the degree there, and the crossings with the number's two edges.
TFzyFloat HeightInPiece(const TFuzzyPoint& left, const TFuzzyPoint& right, bool flat,
                        TFuzzyCurve crisp) noexcept {
  TFzyFloat height = std::min(InterpolateY(left.X, left.Y, right.X, right.Y, crisp[0].X), 1.0);
  TFuzzyPoint crossing;
  // Both edges are met at the same height, if at all.
  if (detail::CrossingInGap(flat, left, right, false, crisp[0], crisp[1], crossing) ||
      detail::CrossingInGap(flat, left, right, false, crisp[1], crisp[2], crossing))
    height = std::max(height, crossing.Y);
  return height;
}

/// The height of the intersection with a crisp number, by those positions of the walk that can
/// raise it. Before the number's X the walk meets its foot (x, 0) only, and a piece of A whose line
/// leads there counts with its end; behind it, the foot counts as a crossing of degree 0 at most.
TFzyFloat HeightAtCrisp(TFuzzyCurve a, TFuzzyCurve crisp) noexcept {
  const TFuzzyPoint& foot = crisp.front();
  TFzyFloat height = 0;
  std::size_t i = 0;
  for (; i < a.size() && a[i].X < foot.X && !FloatEquals(a[i].X, foot.X); ++i) {
    const TFuzzyPoint& previous = a[i > 0 ? i - 1 : 0];
    // A piece that does not fall, and ends well above 0, only leads further up.
    const bool mayFallToFoot = a[i].Y < previous.Y || a[i].Y < 4 * FuzzyTolerance;
    TFuzzyPoint crossing;
    if (a[i].Y > height && mayFallToFoot &&
        detail::IntersectSegments(previous, a[i], foot, foot, crossing))
      height = a[i].Y;
  }
  // Beyond an end where A is 0 the walk finds nothing but that end.
  const bool before = i == 0 && a[0].Y == 0 && !FloatEquals(a[0].X, foot.X);
  if (before || (i == a.size() && a.back().Y == 0)) return height;
  if (i > 0 && i < a.size() && !FloatEquals(a[i].X, foot.X))
    return std::max(height, HeightInPiece(a[i - 1], a[i], IsFlat(a), crisp));
  const auto visit = [&](TFzyFloat /*x1*/, TFzyFloat y1, TFzyFloat /*x2*/, TFzyFloat y2) {
    height = std::max(height, std::min(y1, y2));
    return false;
  };
  detail::WalkBoth(a, i, crisp, detail::TMovingMembership(a), detail::TMovingMembership(crisp),
                   visit, [&](std::size_t k, std::size_t j) {
                     return j < crisp.size() || (k < a.size() && a[k].X <= foot.X);
                   });
  return height;
}

}  // namespace

TFzyFloat HeightOfIntersection(TFuzzyCurve a, bool ascendingA, TFuzzyCurve b,
                               bool ascendingB) noexcept {
  if (ascendingA && !a.empty() && detail::IsNarrow(a) && IsCrisp(b)) return HeightAtCrisp(a, b);
  TFzyFloat height = 0;
  detail::MergeWalk(a, ascendingA, b, ascendingB,
                    [&](TFzyFloat /*x1*/, TFzyFloat y1, TFzyFloat /*x2*/, TFzyFloat y2) {
                      height = std::max(height, std::min(y1, y2));
                      return false;
                    });
  return height;
}

}  // namespace fzy
