#include <algorithm>
#include <functional>

#include "fuzzylogic/engine/FuzzyOperators.h"
#include "fuzzylogic/engine/FuzzySet.h"
#include "fuzzylogic/engine/detail/Combination.h"
#include "fuzzylogic/framework/FirstException.h"
#include "fuzzylogic/framework/UpdateBlock.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"
#include "fuzzylogic/vocabulary/FuzzyNames.h"

// Two sets walked side by side, and what is made of the walk.

namespace fzy {
namespace {

void RequireSet(const TFuzzySet* set, const char* operation) {
  if (!set) throw EFzyException(SFzySetMissing, {TString(operation)});
}

bool AppendResult(TFuzzySetValues& result, TFzyFloat x, TFzyFloat y) {
  result.Add(x, y);
  return false;
}

}  // namespace

bool TFuzzySet::Iterate(TFuzzySet* fuzzySet, const TFuzzyComparison& fuzzyOperator) {
  RequireSet(fuzzySet, "Iterate");
  const TPin self(this);
  const detail::TCurveCopy a(detail::ViewOf(*FValues));
  const detail::TCurveCopy b(detail::ViewOf(*fuzzySet->FValues));
  return detail::WalkCurves(a, b, fuzzyOperator);
}

/// Makes a set of this one's class beside it, fills its points by `fill(values)` inside one update
/// block, and names it.
template <class Fill>
TFuzzySet* TFuzzySet::Combine(TFuzzySet* other, const TString& keyword, Fill fill) {
  const TPin self(this);
  const TPin pinned(other);
  TOwned<TFuzzySet> result = NewInstance();
  result->SetName(CreateFuzzyName(FName, other->FName, keyword));
  TUpdateBlock block(*result->FValues);
  fill(*result->FValues);
  TFirstException first;
  first.Run([&] { block.Close(); });
  result->FExpression =
      detail::CombinedExpression({FName, FExpression}, {other->FName, other->FExpression}, keyword);
  first.Rethrow();
  return result.Release();
}

TFuzzySet* TFuzzySet::Operator(TFuzzySet* fuzzySet, const TString& operatorKeyword,
                               const TFuzzyOperator& fuzzyOperator) {
  RequireSet(fuzzySet, "Operator");
  return Combine(fuzzySet, operatorKeyword, [&](TFuzzySetValues& values) {
    const detail::TCurveCopy a(detail::ViewOf(*FValues));
    const detail::TCurveCopy b(detail::ViewOf(*fuzzySet->FValues));
    detail::AppendWalk(values, a, b, std::bind_front(fuzzyOperator, std::ref(values)));
  });
}

TFuzzySet* TFuzzySet::CombineBy(TFuzzySet* other, const detail::TCombination& combination) {
  return Combine(other, combination.Keyword, [&](TFuzzySetValues& values) {
    detail::AppendCombination(values, detail::ViewOf(*FValues), detail::ViewOf(*other->FValues),
                              combination.Formula, detail::TAddition::ByCoordinate);
  });
}

TFuzzySet* TFuzzySet::Intersection(TFuzzySet* fuzzySet, TFuzzyOperation intersectionType) {
  RequireSet(fuzzySet, "Intersection");
  return CombineBy(fuzzySet, detail::IntersectionBy(intersectionType));
}

TFuzzySet* TFuzzySet::Union(TFuzzySet* fuzzySet, TFuzzyOperation unionType) {
  RequireSet(fuzzySet, "Union");
  return CombineBy(fuzzySet, detail::UnionBy(unionType));
}

bool TFuzzySet::Intersects(const TFuzzySet* fuzzySet) const {
  RequireSet(fuzzySet, "Intersects");
  return CurvesIntersect(FValues->Points(), fuzzySet->FValues->Points());
}

bool TFuzzySet::LineSegmentIntersects(TFzyFloat x1, TFzyFloat y1, TFzyFloat x2, TFzyFloat y2,
                                      TFzyFloat x3, TFzyFloat y3, TFzyFloat x4, TFzyFloat y4,
                                      TFzyFloat& x, TFzyFloat& y) const {
  TFuzzyPoint crossing;
  if (!SegmentsIntersect({x1, y1}, {x2, y2}, {x3, y3}, {x4, y4}, crossing)) return false;
  x = crossing.X;
  y = crossing.Y;
  return true;
}

TFuzzySetValue* TFuzzySet::LineSegmentIntersects(const TFuzzySetValue* p1, const TFuzzySetValue* p2,
                                                 const TFuzzySetValue* p3,
                                                 const TFuzzySetValue* p4) const {
  for (const TFuzzySetValue* point : {p1, p2, p3, p4}) {
    if (!point) throw EFzyException(SFzySetMissing, {TString("LineSegmentIntersects")});
  }
  TFuzzyPoint crossing;
  if (!SegmentsIntersect(p1->GetPoint(), p2->GetPoint(), p3->GetPoint(), p4->GetPoint(), crossing))
    return nullptr;
  return new TFuzzySetValue(crossing);
}

TFzyFloat TFuzzySet::GetCorrelationStrength(TFuzzySet* match) {
  RequireSet(match, "GetCorrelationStrength");
  const TFuzzySetValues& a = *FValues;
  const TFuzzySetValues& b = *match->FValues;
  FMax = HeightOfIntersection(a.Points(), a.IsAscending(), b.Points(), b.IsAscending());
  return FMax;
}

bool TFuzzySet::DoEquals(TFuzzySet* fuzzySet) {
  return Iterate(fuzzySet, std::bind_front(&TFuzzySet::FuzzyOperatorMinThreshold, this));
}

TFzyFloat TFuzzySet::DoFuzzyEquals(TFuzzySet* fuzzySet) { return GetCorrelationStrength(fuzzySet); }

TFzyFloat TFuzzySet::EqualityThreshold() const {
  return FSurroundings ? FSurroundings->GetThreshold() : 0;
}

bool TFuzzySet::FuzzyOperatorMaxOfMin(TFzyFloat /*x1*/, TFzyFloat y1, TFzyFloat /*x2*/,
                                      TFzyFloat y2) {
  FMax = std::max(FMax, std::min(y1, y2));
  return false;
}

bool TFuzzySet::FuzzyOperatorMinThreshold(TFzyFloat /*x1*/, TFzyFloat y1, TFzyFloat /*x2*/,
                                          TFzyFloat y2) {
  return std::min(y1, y2) >= EqualityThreshold();
}

bool TFuzzySet::FuzzyOperatorMin(TFuzzySetValues& r, TFzyFloat x1, TFzyFloat y1, TFzyFloat /*x2*/,
                                 TFzyFloat y2) {
  return AppendResult(r, x1, FuzzyFormulas::Min(y1, y2));
}

bool TFuzzySet::FuzzyOperatorMax(TFuzzySetValues& r, TFzyFloat x1, TFzyFloat y1, TFzyFloat /*x2*/,
                                 TFzyFloat y2) {
  return AppendResult(r, x1, FuzzyFormulas::Max(y1, y2));
}

bool TFuzzySet::FuzzyOperatorMean(TFuzzySetValues& r, TFzyFloat x1, TFzyFloat y1, TFzyFloat /*x2*/,
                                  TFzyFloat y2) {
  return AppendResult(r, x1, FuzzyFormulas::Mean(y1, y2));
}

bool TFuzzySet::FuzzyOperatorUnionMean(TFuzzySetValues& r, TFzyFloat x1, TFzyFloat y1,
                                       TFzyFloat /*x2*/, TFzyFloat y2) {
  return AppendResult(r, x1, FuzzyFormulas::UnionMean(y1, y2));
}

bool TFuzzySet::FuzzyOperatorMeanSqr(TFuzzySetValues& r, TFzyFloat x1, TFzyFloat y1,
                                     TFzyFloat /*x2*/, TFzyFloat y2) {
  return AppendResult(r, x1, FuzzyFormulas::MeanSqr(y1, y2));
}

bool TFuzzySet::FuzzyOperatorMeanSqrt(TFuzzySetValues& r, TFzyFloat x1, TFzyFloat y1,
                                      TFzyFloat /*x2*/, TFzyFloat y2) {
  return AppendResult(r, x1, FuzzyFormulas::MeanSqrt(y1, y2));
}

bool TFuzzySet::FuzzyOperatorIntersectionProduct(TFuzzySetValues& r, TFzyFloat x1, TFzyFloat y1,
                                                 TFzyFloat /*x2*/, TFzyFloat y2) {
  return AppendResult(r, x1, FuzzyFormulas::IntersectionProduct(y1, y2));
}

bool TFuzzySet::FuzzyOperatorUnionProduct(TFuzzySetValues& r, TFzyFloat x1, TFzyFloat y1,
                                          TFzyFloat /*x2*/, TFzyFloat y2) {
  return AppendResult(r, x1, FuzzyFormulas::UnionProduct(y1, y2));
}

bool TFuzzySet::FuzzyOperatorIntersectionBoundedSum(TFuzzySetValues& r, TFzyFloat x1, TFzyFloat y1,
                                                    TFzyFloat /*x2*/, TFzyFloat y2) {
  return AppendResult(r, x1, FuzzyFormulas::IntersectionBoundedSum(y1, y2));
}

bool TFuzzySet::FuzzyOperatorUnionBoundedSum(TFuzzySetValues& r, TFzyFloat x1, TFzyFloat y1,
                                             TFzyFloat /*x2*/, TFzyFloat y2) {
  return AppendResult(r, x1, FuzzyFormulas::UnionBoundedSum(y1, y2));
}

bool TFuzzySet::FuzzyOperatorUnionSum(TFuzzySetValues& r, TFzyFloat x1, TFzyFloat y1,
                                      TFzyFloat /*x2*/, TFzyFloat y2) {
  return AppendResult(r, x1, FuzzyFormulas::UnionSum(y1, y2));
}

}  // namespace fzy
