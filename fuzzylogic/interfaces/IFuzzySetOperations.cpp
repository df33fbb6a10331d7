#include "fuzzylogic/engine/FuzzyCurve.h"
#include "fuzzylogic/framework/FirstException.h"
#include "fuzzylogic/framework/UpdateBlock.h"
#include "fuzzylogic/interfaces/detail/Operand.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"
#include "fuzzylogic/vocabulary/FuzzyNames.h"

// What a counted set does with other sets, and the forms in which it returns what the engine makes.

namespace fzy {

using detail::TOperand;
using detail::ViewOf;

bool TIFuzzySet::Iterate(const Ref<IFuzzySet>& fuzzySet, const TIFuzzyComparison& fuzzyOperator) {
  const TOperand other(fuzzySet, "Iterate");
  const detail::TCurveCopy a(ViewOf(*GetValues()));
  const detail::TCurveCopy b(other.Curve());
  return detail::WalkCurves(a, b, fuzzyOperator);
}

/// Makes a set of this one's class for the same variable, fills its points by `fill(result)` inside
/// one update block, and names it.
template <class Fill>
Ref<IFuzzySet> TIFuzzySet::Combine(const Ref<IFuzzySet>& set, const TOperand& other,
                                   const TString& keyword, Fill fill) {
  const TPin self(this);
  const Ref<IFuzzySet> held = set;
  Ref<TIFuzzySet> result =
      Create(FVariable, CreateFuzzyName(TFuzzySet::GetName(), other.Name(), keyword), GetClass());
  result->StoreInflectionPoint(TFuzzySet::GetInflectionPoint());
  result->FParser = FParser;
  TUpdateBlock block(*result->GetValues());
  fill(*result);
  TFirstException first;
  first.Run([&] { block.Close(); });
  result->SetExpression(
      detail::CombinedExpression({TFuzzySet::GetName(), TFuzzySet::GetExpression()},
                                 {other.Name(), other.Expression()}, keyword));
  first.Rethrow();
  return result;
}

Ref<IFuzzySet> TIFuzzySet::Operator(const Ref<IFuzzySet>& fuzzySet, const TString& operatorKeyword,
                                    const TIFuzzyOperator& fuzzyOperator) {
  const TOperand other(fuzzySet, "Operator");
  return Combine(fuzzySet, other, operatorKeyword, [&](TIFuzzySet& result) {
    const detail::TCurveCopy a(ViewOf(*GetValues()));
    const detail::TCurveCopy b(other.Curve());
    detail::AppendWalk(*result.GetValues(), a, b,
                       std::bind_front(fuzzyOperator, Ref<IFuzzySet>(&result)));
  });
}

Ref<IFuzzySet> TIFuzzySet::CombineBy(const Ref<IFuzzySet>& fuzzySet, const TOperand& other,
                                     const detail::TCombination& combination) {
  return Combine(fuzzySet, other, combination.Keyword, [&](TIFuzzySet& result) {
    detail::AppendCombination(*result.GetValues(), ViewOf(*GetValues()), other.Curve(),
                              combination.Formula, detail::TAddition::AtOnce);
  });
}

Ref<IFuzzySet> TIFuzzySet::Intersection(const Ref<IFuzzySet>& fuzzySet,
                                        TFuzzyOperation intersectionType) {
  return CombineBy(fuzzySet, {fuzzySet, "Intersection"}, detail::IntersectionBy(intersectionType));
}

Ref<IFuzzySet> TIFuzzySet::Union(const Ref<IFuzzySet>& fuzzySet, TFuzzyOperation unionType) {
  return CombineBy(fuzzySet, {fuzzySet, "Union"}, detail::UnionBy(unionType));
}

bool TIFuzzySet::Intersects(const Ref<IFuzzySet>& fuzzySet) {
  return CurvesIntersect(GetValues()->Points(), TOperand(fuzzySet, "Intersects").Curve().Points);
}

int TIFuzzySet::GetMaxYValueOfX(const Ref<IFuzzySet>& fuzzySet, int index, int dir) const {
  const TOperand other(fuzzySet, "GetMaxYValueOfX");
  RequireRun(other.Curve().Points, index, dir, "GetMaxYValueOfX");
  return MaxYOfX(other.Curve().Points, index, dir);
}

bool TIFuzzySet::Equals(const Ref<IInterface>& value) {
  const Ref<IFuzzySet> set = Query<IFuzzySet>(value.Get());
  if (!set) return false;
  const TPin self(this);
  return Iterate(set, std::bind_front(&TFuzzySet::FuzzyOperatorMinThreshold, this));
}

TFzyFloat TIFuzzySet::GetCorrelationStrength(const Ref<IFuzzySet>& match) {
  const TOperand other(match, "GetCorrelationStrength");
  const auto [points, ascending] = other.Curve();
  FMax = HeightOfIntersection(GetValues()->Points(), GetValues()->IsAscending(), points, ascending);
  return FMax;
}

float TIFuzzySet::FuzzyEquals(const Ref<IInterface>& value) {
  const Ref<IFuzzySet> set = Query<IFuzzySet>(value.Get());
  return set ? static_cast<float>(GetCorrelationStrength(set)) : 0;
}

// Callbacks

namespace {

bool AppendPoint(const Ref<IFuzzySet>& result, TFzyFloat x, TFzyFloat y) {
  result->Add(x, y);
  return false;
}

}  // namespace

bool TIFuzzySet::FuzzyOperatorMin(const Ref<IFuzzySet>& r, TFzyFloat x1, TFzyFloat y1,
                                  TFzyFloat /*x2*/, TFzyFloat y2) {
  return AppendPoint(r, x1, FuzzyFormulas::Min(y1, y2));
}

bool TIFuzzySet::FuzzyOperatorMax(const Ref<IFuzzySet>& r, TFzyFloat x1, TFzyFloat y1,
                                  TFzyFloat /*x2*/, TFzyFloat y2) {
  return AppendPoint(r, x1, FuzzyFormulas::Max(y1, y2));
}

bool TIFuzzySet::FuzzyOperatorMean(const Ref<IFuzzySet>& r, TFzyFloat x1, TFzyFloat y1,
                                   TFzyFloat /*x2*/, TFzyFloat y2) {
  return AppendPoint(r, x1, FuzzyFormulas::Mean(y1, y2));
}

bool TIFuzzySet::FuzzyOperatorUnionMean(const Ref<IFuzzySet>& r, TFzyFloat x1, TFzyFloat y1,
                                        TFzyFloat /*x2*/, TFzyFloat y2) {
  return AppendPoint(r, x1, FuzzyFormulas::UnionMean(y1, y2));
}

bool TIFuzzySet::FuzzyOperatorMeanSqr(const Ref<IFuzzySet>& r, TFzyFloat x1, TFzyFloat y1,
                                      TFzyFloat /*x2*/, TFzyFloat y2) {
  return AppendPoint(r, x1, FuzzyFormulas::MeanSqr(y1, y2));
}

bool TIFuzzySet::FuzzyOperatorMeanSqrt(const Ref<IFuzzySet>& r, TFzyFloat x1, TFzyFloat y1,
                                       TFzyFloat /*x2*/, TFzyFloat y2) {
  return AppendPoint(r, x1, FuzzyFormulas::MeanSqrt(y1, y2));
}

bool TIFuzzySet::FuzzyOperatorIntersectionProduct(const Ref<IFuzzySet>& r, TFzyFloat x1,
                                                  TFzyFloat y1, TFzyFloat /*x2*/, TFzyFloat y2) {
  return AppendPoint(r, x1, FuzzyFormulas::IntersectionProduct(y1, y2));
}

bool TIFuzzySet::FuzzyOperatorUnionProduct(const Ref<IFuzzySet>& r, TFzyFloat x1, TFzyFloat y1,
                                           TFzyFloat /*x2*/, TFzyFloat y2) {
  return AppendPoint(r, x1, FuzzyFormulas::UnionProduct(y1, y2));
}

bool TIFuzzySet::FuzzyOperatorIntersectionBoundedSum(const Ref<IFuzzySet>& r, TFzyFloat x1,
                                                     TFzyFloat y1, TFzyFloat /*x2*/, TFzyFloat y2) {
  return AppendPoint(r, x1, FuzzyFormulas::IntersectionBoundedSum(y1, y2));
}

bool TIFuzzySet::FuzzyOperatorUnionBoundedSum(const Ref<IFuzzySet>& r, TFzyFloat x1, TFzyFloat y1,
                                              TFzyFloat /*x2*/, TFzyFloat y2) {
  return AppendPoint(r, x1, FuzzyFormulas::UnionBoundedSum(y1, y2));
}

bool TIFuzzySet::FuzzyOperatorUnionSum(const Ref<IFuzzySet>& r, TFzyFloat x1, TFzyFloat y1,
                                       TFzyFloat /*x2*/, TFzyFloat y2) {
  return AppendPoint(r, x1, FuzzyFormulas::UnionSum(y1, y2));
}

// Hedges, cuts, correlation and inference

Ref<IFuzzySet> TIFuzzySet::Hedge(TFuzzyHedge hedgeType) {
  return Returned(TFuzzySet::Hedge(hedgeType));
}

Ref<IFuzzySet> TIFuzzySet::Hedge(TBaseFuzzyHedge modifyType, TFzyFloat value, bool modifyY) {
  return Returned(TFuzzySet::Hedge(modifyType, value, modifyY));
}

Ref<IFuzzySet> TIFuzzySet::Normalize() { return Returned(TFuzzySet::Normalize()); }

Ref<IFuzzySet> TIFuzzySet::AlphaCutoff(TFzyFloat cutOff, bool strongCutoff) {
  const TPin self(this);
  Ref<TIFuzzySet> result = Made(TFuzzySet::AlphaCutoff(cutOff, strongCutoff));
  result->SetName(result->GetName() + " (alpha=" + FormatFixed(cutOff, 4) + ")");
  result->SetVariable(FVariable);
  return result;
}

Ref<IFuzzySet> TIFuzzySet::Cutoff(TFzyFloat cutOff, bool cutValuesBelow) {
  return Made(TFuzzySet::Cutoff(cutOff, cutValuesBelow));
}

Ref<IFuzzySet> TIFuzzySet::Correlate(TFzyFloat correlationStrength,
                                     TFuzzyCorrelationMethod correlationMethod) {
  return Returned(TFuzzySet::Correlate(correlationStrength, correlationMethod));
}

Ref<IFuzzySet> TIFuzzySet::Infer(const Ref<IFuzzySet>& newEvidence,
                                 TFuzzyInferenceMethod inferenceMethod, bool unconditional) {
  const TFuzzyOperation operation = InferenceOperation(inferenceMethod);
  return unconditional ? Intersection(newEvidence, operation) : Union(newEvidence, operation);
}

}  // namespace fzy
