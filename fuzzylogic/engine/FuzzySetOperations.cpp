#include <algorithm>
#include <functional>
#include <vector>

#include "fuzzylogic/engine/FuzzyOperators.h"
#include "fuzzylogic/engine/FuzzySet.h"
#include "fuzzylogic/engine/detail/MergeWalk.h"
#include "fuzzylogic/engine/detail/PointWriter.h"
#include "fuzzylogic/framework/FirstException.h"
#include "fuzzylogic/framework/UpdateBlock.h"
#include "fuzzylogic/vocabulary/FuzzyKeywords.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"
#include "fuzzylogic/vocabulary/FuzzyNames.h"

// Two sets walked side by side, and what is made of the walk.

namespace fzy {
namespace {

void RequireSet(const TFuzzySet* set, const char* operation) {
  if (!set) throw EFzyException(SFzySetMissing, {TString(operation)});
}

/// A set's part of a combined expression.
TString Operand(const TFuzzySet& set) {
  return FormatFuzzyExpression(set.GetExpression().empty() ? set.GetName() : set.GetExpression());
}

TFuzzyFormula Supported(TFuzzyFormula formula, TFuzzyOperation operation) {
  if (!formula) throw EFzyException(SInvalidFuzzyOperation, {FuzzyOperationIdentifier(operation)});
  return formula;
}

TString Keyword(const TFuzzyOperationKeywords& keywords, TFuzzyOperation operation) {
  return keywords[Ordinal(operation)];
}

/// A curve of its own, for walks that call code from outside.
struct TCurveCopy {
  explicit TCurveCopy(const TFuzzySetValues& values)
      : Points(values.Points().begin(), values.Points().end()), Ascending(values.IsAscending()) {}

  std::vector<TFuzzyPoint> Points;
  bool Ascending;
};

bool AppendResult(TFuzzySetValues& result, TFzyFloat x, TFzyFloat y) {
  result.Add(x, y);
  return false;
}

}  // namespace

bool TFuzzySet::Iterate(TFuzzySet* fuzzySet, const TFuzzyComparison& fuzzyOperator) {
  RequireSet(fuzzySet, "Iterate");
  const TPin self(this);
  const TCurveCopy a(*FValues);
  const TCurveCopy b(*fuzzySet->FValues);
  if (a.Points.empty() && b.Points.empty()) return true;
  return detail::MergeWalk(a.Points, a.Ascending, b.Points, b.Ascending,
                           [&](TFzyFloat x1, TFzyFloat y1, TFzyFloat x2, TFzyFloat y2) {
                             return fuzzyOperator(x1, y1, x2, y2);
                           });
}

/// Makes a set of this one's class beside it, fills its points by `fill(values)` inside one update
/// block, and names it. `fill` says whether the walk went to its end.
template <class Fill>
TFuzzySet* TFuzzySet::Combine(TFuzzySet* other, const TString& keyword, Fill fill) {
  const TPin self(this);
  const TPin pinned(other);
  TOwned<TFuzzySet> result = NewInstance();
  result->SetName(CreateFuzzyName(FName, other->FName, keyword));
  TUpdateBlock block(*result->FValues);
  const bool bothHavePoints = FValues->GetCount() > 0 && other->FValues->GetCount() > 0;
  if (fill(*result->FValues) && bothHavePoints)
    detail::TPointWriter(*result->FValues).RemoveFlatPoints();
  TFirstException first;
  first.Run([&] { block.Close(); });
  const TString left = Operand(*this);
  const TString right = Operand(*other);
  TString expression;
  expression.Reserve(left.size() + keyword.size() + right.size() + 2);  // they grow long
  expression += left;
  expression += u' ';
  expression += keyword;
  expression += u' ';
  expression += right;
  result->FExpression = std::move(expression);
  first.Rethrow();
  return result.Release();
}

TFuzzySet* TFuzzySet::Operator(TFuzzySet* fuzzySet, const TString& operatorKeyword,
                               const TFuzzyOperator& fuzzyOperator) {
  RequireSet(fuzzySet, "Operator");
  return Combine(fuzzySet, operatorKeyword, [&](TFuzzySetValues& values) {
    const TCurveCopy a(*FValues);
    const TCurveCopy b(*fuzzySet->FValues);
    return !detail::MergeWalk(a.Points, a.Ascending, b.Points, b.Ascending,
                              [&](TFzyFloat x1, TFzyFloat y1, TFzyFloat x2, TFzyFloat y2) {
                                return fuzzyOperator(values, x1, y1, x2, y2);
                              });
  });
}

TFuzzySet* TFuzzySet::CombineBy(TFuzzySet* other, const TString& keyword,
                                TFzyFloat (*formula)(TFzyFloat, TFzyFloat)) {
  return Combine(other, keyword, [&](TFuzzySetValues& values) {
    detail::TPointWriter points(values);
    const TFuzzySetValues& a = *FValues;
    const TFuzzySetValues& b = *other->FValues;
    points.Reserve(a.Points().size() + b.Points().size());
    return !detail::MergeWalk(a.Points(), a.IsAscending(), b.Points(), b.IsAscending(),
                              [&](TFzyFloat x1, TFzyFloat y1, TFzyFloat /*x2*/, TFzyFloat y2) {
                                points.Add(x1, formula(y1, y2));
                                return false;
                              });
  });
}

TFuzzySet* TFuzzySet::Intersection(TFuzzySet* fuzzySet, TFuzzyOperation intersectionType) {
  RequireSet(fuzzySet, "Intersection");
  const TFuzzyFormula formula = Supported(IntersectionFormula(intersectionType), intersectionType);
  return CombineBy(fuzzySet, Keyword(FuzzyIntersectionKeywords, intersectionType), formula);
}

TFuzzySet* TFuzzySet::Union(TFuzzySet* fuzzySet, TFuzzyOperation unionType) {
  RequireSet(fuzzySet, "Union");
  const TFuzzyFormula formula = Supported(UnionFormula(unionType), unionType);
  return CombineBy(fuzzySet, Keyword(FuzzyUnionKeywords, unionType), formula);
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

bool TFuzzySet::FuzzyOperatorMaxOfMin(TFzyFloat /*x1*/, TFzyFloat y1, TFzyFloat /*x2*/,
                                      TFzyFloat y2) {
  FMax = std::max(FMax, std::min(y1, y2));
  return false;
}

bool TFuzzySet::FuzzyOperatorMinThreshold(TFzyFloat /*x1*/, TFzyFloat y1, TFzyFloat /*x2*/,
                                          TFzyFloat y2) {
  return std::min(y1, y2) >= (FSurroundings ? FSurroundings->GetThreshold() : 0);
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
