#include "fuzzylogic/engine/FuzzyCurve.h"
#include "fuzzylogic/engine/FuzzySetValues.h"
#include "fuzzylogic/engine/detail/Interpolation.h"
#include "fuzzylogic/engine/detail/Resampler.h"
#include "fuzzylogic/framework/UpdateBlock.h"

// Points added to a list without changing its shape.

namespace fzy {
namespace {

bool IsGap(const TFuzzyPoint& left, const TFuzzyPoint& right) {
  return right.X - FuzzyTolerance > left.X;
}

int CountGaps(TFuzzyCurve curve) {
  int gaps = 0;
  for (std::size_t i = 1; i < curve.size(); ++i) gaps += IsGap(curve[i - 1], curve[i]) ? 1 : 0;
  return gaps;
}

}  // namespace

/// What `Expand` will make of the list; nothing when that is the list as it is.
std::optional<detail::TResampler> TFuzzySetValues::Expansion(int newCount) {
  if (newCount < 2 || GetCount() >= newCount) return std::nullopt;
  RequireAtMost(MostShapePoints, newCount, "Expand");
  int missing = newCount - GetCount();
  int gaps = CountGaps(Points());
  std::optional<detail::TResampler> sampler(*this);
  while (sampler->RestCount() > 1) {
    const TFuzzyPoint left = sampler->Here();
    const TFuzzyPoint right = sampler->Next();
    sampler->Advance();
    if (!IsGap(left, right)) continue;
    const int share = missing > 0 ? (missing + gaps - 1) / gaps : 0;
    const TFzyFloat step = detail::EvenStep(left.X, right.X, share + 1);
    --gaps;
    missing -= share;
    for (int k = 0; k < share; ++k) {
      sampler->Insert(sampler->Passed().X + step);
      sampler->Advance();
    }
  }
  sampler->Finish();
  return sampler;
}

void TFuzzySetValues::Expand(int newCount) {
  if (std::optional<detail::TResampler> expansion = Expansion(newCount)) expansion->Commit();
}

void TFuzzySetValues::ExpandSimple(int newCount) {
  if (newCount < 2 || GetCount() >= newCount || GetCount() < 2) return;
  RequireAtMost(MostShapePoints, newCount, "ExpandSimple");
  if (!(FPoints.back().X > FPoints.front().X)) return;
  const int missing = newCount - GetCount();
  const TFzyFloat step = detail::EvenStep(FPoints.front().X, FPoints.back().X, missing + 1);
  TFzyFloat x = FPoints.front().X;
  detail::TResampler sampler(*this);
  for (int k = 0; k < missing; ++k) {
    x += step;
    while (sampler.RestCount() > 1 && x > sampler.Here().X) sampler.Advance();
    while (sampler.RestCount() > 1 && FloatEquals(sampler.Here().X, x)) sampler.Advance();
    sampler.Insert(x);
  }
  sampler.Finish();
  sampler.Commit();
}

}  // namespace fzy
