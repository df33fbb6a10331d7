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
  const TPin self(this);
  const TOperand other(fuzzySet, "Iterate");
  const detail::TCurveCopy a(ViewOf(*GetValues()));
  const detail::TCurveCopy b(other.Curve());
  return detail::WalkCurves(a, b, fuzzyOperator);
}

/// Makes a set of this one's class for the same variable, fills its points by `fill(result)` inside
/// one update block, and names it.
template <class Fill>
Ref<IFuzzySet> TIFuzzySet::Combine(const Ref<IFuzzySet>& set, const char* operation,
                                   const TString& keyword, Fill fill) {
  const TPin self(this);
  // A handler may reset the reference that was given.
  // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
  const Ref<IFuzzySet> held = set;
  const TOperand other(held, operation);
  Ref<TIFuzzySet> result = Create(
      FVariable.Get(), CreateFuzzyName(TFuzzySet::GetName(), other.Name(), keyword), GetClass());
  result->StoreInflectionPoint(TFuzzySet::GetInflectionPoint());
  result->FParser = FParser;
  TUpdateBlock block(*result->GetValues());
  fill(*result, other);
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
  return Combine(fuzzySet, "Operator", operatorKeyword,
                 [&](TIFuzzySet& result, const TOperand& other) {
                   const detail::TCurveCopy a(ViewOf(*GetValues()));
                   const detail::TCurveCopy b(other.Curve());
                   detail::AppendWalk(*result.GetValues(), a, b,
                                      std::bind_front(fuzzyOperator, Ref<IFuzzySet>(&result)));
                 });
}

Ref<IFuzzySet> TIFuzzySet::CombineBy(const Ref<IFuzzySet>& fuzzySet, const char* operation,
                                     const detail::TCombination& combination) {
  return Combine(
      fuzzySet, operation, combination.Keyword, [&](TIFuzzySet& result, const TOperand& other) {
        const auto append = [&](detail::TCurveView a, detail::TCurveView b) {
          detail::AppendCombination(*result.GetValues(), a, b, combination.Formula,
                                    detail::TAddition::AtOnce);
        };
        // A foreign variable is asked for its range on the way, and may do anything.
        if (HoldForeignVariable())
          append(detail::TCurveCopy(ViewOf(*GetValues())), detail::TCurveCopy(other.Curve()));
        else
          append(ViewOf(*GetValues()), other.Curve());
      });
}

Ref<IFuzzySet> TIFuzzySet::Intersection(const Ref<IFuzzySet>& fuzzySet,
                                        TFuzzyOperation intersectionType) {
  return CombineBy(fuzzySet, "Intersection", detail::IntersectionBy(intersectionType));
}

Ref<IFuzzySet> TIFuzzySet::Union(const Ref<IFuzzySet>& fuzzySet, TFuzzyOperation unionType) {
  return CombineBy(fuzzySet, "Union", detail::UnionBy(unionType));
}

bool TIFuzzySet::Intersects(const Ref<IFuzzySet>& fuzzySet) {
  const TPin self(this);
  const TOperand other(fuzzySet, "Intersects");
  return CurvesIntersect(GetValues()->Points(), other.Curve().Points);
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
  const TPin self(this);
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
  const TPin self(this);
  return Returned(TFuzzySet::Hedge(hedgeType));
}

Ref<IFuzzySet> TIFuzzySet::Hedge(TBaseFuzzyHedge modifyType, TFzyFloat value, bool modifyY) {
  const TPin self(this);
  return Returned(TFuzzySet::Hedge(modifyType, value, modifyY));
}

Ref<IFuzzySet> TIFuzzySet::Normalize() {
  const TPin self(this);
  return Returned(TFuzzySet::Normalize());
}

/// Runs an operation of the engine whose intermediate sets know this one's range.
template <class Operation>
auto TIFuzzySet::Lending(Operation operation) {
  const TPin self(this);
  const bool lends = std::exchange(FLends, true);
  struct TEnd {
    bool& Lends;
    bool Before;
    ~TEnd() { Lends = Before; }
  } const end{FLends, lends};
  return operation();
}

TFuzzySet* TIFuzzySet::DoHedge(TFuzzyHedge hedgeType) {
  if (hedgeType != fhSlightly) return TFuzzySet::DoHedge(hedgeType);
  return Lending([&] { return TFuzzySet::DoHedge(hedgeType); });
}

Ref<IFuzzySet> TIFuzzySet::AlphaCutoff(TFzyFloat cutOff, bool strongCutoff) {
  const TPin self(this);
  const Ref<TIFuzzySet> result =
      Made(Lending([&] { return TFuzzySet::AlphaCutoff(cutOff, strongCutoff); }));
  result->SetName(result->GetName() + " (alpha=" + FormatFixed(cutOff, 4) + ")");
  result->SetVariable(FVariable.Get());
  return result;
}

Ref<IFuzzySet> TIFuzzySet::Cutoff(TFzyFloat cutOff, bool cutValuesBelow) {
  return Made(Lending([&] { return TFuzzySet::Cutoff(cutOff, cutValuesBelow); }));
}

Ref<IFuzzySet> TIFuzzySet::Correlate(TFzyFloat correlationStrength,
                                     TFuzzyCorrelationMethod correlationMethod) {
  const TPin self(this);
  return Returned(TFuzzySet::Correlate(correlationStrength, correlationMethod));
}

Ref<IFuzzySet> TIFuzzySet::Infer(const Ref<IFuzzySet>& newEvidence,
                                 TFuzzyInferenceMethod inferenceMethod, bool unconditional) {
  const TFuzzyOperation operation = InferenceOperation(inferenceMethod);
  return unconditional ? Intersection(newEvidence, operation) : Union(newEvidence, operation);
}

}  // namespace fzy
