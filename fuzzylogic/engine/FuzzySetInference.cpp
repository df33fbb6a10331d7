#include <algorithm>

#include "fuzzylogic/engine/FuzzyCurve.h"
#include "fuzzylogic/engine/FuzzyOperators.h"
#include "fuzzylogic/engine/FuzzySet.h"
#include "fuzzylogic/engine/detail/PointWriter.h"
#include "fuzzylogic/framework/FirstException.h"
#include "fuzzylogic/framework/UpdateBlock.h"
#include "fuzzylogic/vocabulary/FuzzyKeywords.h"
#include "fuzzylogic/vocabulary/FuzzyNames.h"

// What fires fuzzy rules and reads their outcome: cuts, correlation, inference, defuzzification.

namespace fzy {
namespace {

void AppendAlphaCut(TFuzzyCurve curve, TFzyFloat alpha, bool strong, detail::TPointWriter& result) {
  const auto passes = [=](TFzyFloat y) { return strong ? y > alpha : y >= alpha; };
  if (curve.empty()) return;
  result.Assign(passes(curve[0].Y) ? curve[0] : TFuzzyPoint{curve[0].X, 0});
  for (std::size_t i = 1; i < curve.size(); ++i) {
    const TFuzzyPoint& p = curve[i - 1];
    const TFuzzyPoint& q = curve[i];
    if (passes(p.Y) != passes(q.Y)) {
      const TFzyFloat x = InterpolateX(p.X, p.Y, q.X, q.Y, alpha);
      const bool rises = passes(q.Y);
      result.Assign({x, rises ? 0 : alpha});
      result.Assign({x, rises ? alpha : 0});
    }
    if (passes(q.Y)) result.Assign(q);
  }
}

void AppendCut(TFuzzyCurve curve, TFzyFloat level, bool below, detail::TPointWriter& result) {
  const auto kept = [=](TFzyFloat y) { return below ? y >= level : y <= level; };
  for (std::size_t i = 0; i < curve.size(); ++i) {
    const TFuzzyPoint& q = curve[i];
    if (i > 0) {
      const TFuzzyPoint& p = curve[i - 1];
      if ((p.Y < level && level < q.Y) || (q.Y < level && level < p.Y))
        result.Assign({InterpolateX(p.X, p.Y, q.X, q.Y, level), level});
    }
    if (kept(q.Y)) result.Assign(q);
  }
}

}  // namespace

TFuzzySet* TFuzzySet::AlphaCutoff(TFzyFloat cutOff, bool strongCutoff) {
  RequireNumber(cutOff, "AlphaCutoff");
  const TFzyFloat alpha = std::clamp(cutOff, 0.0, 1.0);
  const TPin self(this);
  TOwned<TFuzzySet> result = NewInstance();
  result->SetName(FName);
  TUpdateBlock block(*result->FValues);
  detail::TPointWriter points(*result->FValues);
  if (strongCutoff && alpha == 0)
    result->FValues->Assign(FValues);
  else if (strongCutoff && alpha == 1)
    points.Add(0, 0);
  else
    AppendAlphaCut(FValues->Points(), alpha, strongCutoff, points);
  block.Close();
  return result.Release();
}

TFuzzySet* TFuzzySet::Cutoff(TFzyFloat cutOff, bool cutValuesBelow) {
  RequireNumber(cutOff, "Cutoff");
  const TFzyFloat level = std::clamp(cutOff, 0.0, 1.0);
  const TString keyword = (cutValuesBelow ? FuzzyUnionKeywords : FuzzyIntersectionKeywords)[0];
  const TPin self(this);
  TOwned<TFuzzySet> result = NewInstance();
  result->SetName(CreateFuzzyName(FName, keyword, cutOff));
  TUpdateBlock block(*result->FValues);
  detail::TPointWriter points(*result->FValues);
  if (level == (cutValuesBelow ? 0 : 1))
    result->FValues->Assign(FValues);
  else if (level == (cutValuesBelow ? 1 : 0))
    points.Add(0, level);
  else
    AppendCut(FValues->Points(), level, cutValuesBelow, points);
  TFirstException first;
  first.Run([&] { block.Close(); });
  if (!FExpression.empty())
    result->FExpression = FExpression + " " + keyword + " " + FormatFixed(level, 4);
  first.Rethrow();
  return result.Release();
}

TFuzzySet* TFuzzySet::Correlate(TFzyFloat correlationStrength,
                                TFuzzyCorrelationMethod correlationMethod) {
  return Hedge(correlationMethod == fcmProduct ? bfhMultiply : bfhCutGreater, correlationStrength,
               true);
}

TFuzzySet* TFuzzySet::Correlate(TFzyFloat correlationStrength) {
  return Correlate(correlationStrength,
                   FSurroundings ? FSurroundings->GetCorrelationMethod() : fcmMinimum);
}

TFuzzySet* TFuzzySet::Infer(TFuzzySet* newEvidence, TFuzzyInferenceMethod inferenceMethod,
                            bool unconditional) {
  const TFuzzyOperation operation = InferenceOperation(inferenceMethod);
  return unconditional ? Intersection(newEvidence, operation) : Union(newEvidence, operation);
}

TFuzzySet* TFuzzySet::Infer(TFuzzySet* newEvidence, bool unconditional) {
  return Infer(newEvidence, FSurroundings ? FSurroundings->GetInferenceMethod() : fimMinMax,
               unconditional);
}

TFzyFloat TFuzzySet::CenterOfGravity() const {
  return fzy::CenterOfGravity(FValues->Points(), GetXRange(1), GetXRange(0));
}

TFzyFloat TFuzzySet::MeanOfMaxima() const { return fzy::MeanOfMaxima(FValues->Points()); }

TFzyFloat TFuzzySet::Defuzzify() const {
  const bool maxima = FSurroundings && FSurroundings->GetDefuzzificationMethod() == dmMeanOfMaxima;
  return maxima ? MeanOfMaxima() : CenterOfGravity();
}

bool TFuzzySet::IsUndecidable() const noexcept { return fzy::IsUndecidable(FValues->Points()); }

TFzyFloat TFuzzySet::GetCompatibilityIndex() const {
  return FValues->GetCount() == 0 ? 0 : FValues->GetMaxValue();
}

}  // namespace fzy
