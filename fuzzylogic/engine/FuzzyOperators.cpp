#include "fuzzylogic/engine/FuzzyOperators.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "fuzzylogic/engine/detail/MergeWalk.h"

namespace fzy {

namespace FuzzyFormulas {

TFzyFloat Min(TFzyFloat y1, TFzyFloat y2) { return std::min(y1, y2); }
TFzyFloat Max(TFzyFloat y1, TFzyFloat y2) { return std::max(y1, y2); }
TFzyFloat Mean(TFzyFloat y1, TFzyFloat y2) { return (y1 + y2) / 2; }
TFzyFloat UnionMean(TFzyFloat y1, TFzyFloat y2) {
  return (2 * std::min(y1, y2) + 4 * std::max(y1, y2)) / 6;
}
TFzyFloat MeanSqr(TFzyFloat y1, TFzyFloat y2) {
  const TFzyFloat mean = (y1 + y2) / 2;
  return mean * mean;
}
TFzyFloat MeanSqrt(TFzyFloat y1, TFzyFloat y2) { return std::sqrt((y1 + y2) / 2); }
TFzyFloat IntersectionProduct(TFzyFloat y1, TFzyFloat y2) { return y1 * y2; }
TFzyFloat UnionProduct(TFzyFloat y1, TFzyFloat y2) { return y1 + y2 - y1 * y2; }
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
  detail::MergeWalk(a, IsAscending(a), b, IsAscending(b),
                    [&](TFzyFloat x1, TFzyFloat y1, TFzyFloat /*x2*/, TFzyFloat y2) {
                      result.push_back({x1, formula(y1, y2)});
                      return false;
                    });
}

TFzyFloat HeightOfIntersection(TFuzzyCurve a, bool ascendingA, TFuzzyCurve b,
                               bool ascendingB) noexcept {
  TFzyFloat height = 0;
  detail::MergeWalk(a, ascendingA, b, ascendingB,
                    [&](TFzyFloat /*x1*/, TFzyFloat y1, TFzyFloat /*x2*/, TFzyFloat y2) {
                      height = std::max(height, std::min(y1, y2));
                      return false;
                    });
  return height;
}

}  // namespace fzy
