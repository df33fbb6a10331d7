#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "fuzzylogic/engine/FuzzyCurve.h"
#include "fuzzylogic/engine/FuzzySet.h"
#include "fuzzylogic/engine/detail/Approximation.h"
#include "fuzzylogic/engine/detail/PointWriter.h"
#include "fuzzylogic/framework/FirstException.h"
#include "fuzzylogic/framework/UpdateBlock.h"
#include "fuzzylogic/vocabulary/FuzzyKeywords.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"
#include "fuzzylogic/vocabulary/FuzzyNames.h"

// Modifiers that turn a set's membership function into another, in place.

namespace fzy {
namespace {

constexpr int HedgePoints = 7;  // what the shape hedges expand to, whatever the component says
constexpr int ApproximationPoints = 50;  // the grid of the approximation hedges
constexpr TFzyFloat Pivot = 0.5;         // the degree on which contrast turns

/// What the linguistic hedges are built from.
enum class TTransformation : std::uint8_t {
  Complement,
  Power,
  Above,
  Below,
  Slightly,
  Normalize,
  Approximation,
  Contrast
};

using enum TTransformation;
constexpr std::array<TTransformation, 20> Transformations = {
    Complement,    Power,         Power,    Power,     Power,         Power,         Power,
    Above,         Below,         Slightly, Normalize, Approximation, Approximation, Approximation,
    Approximation, Approximation, Contrast, Contrast,  Contrast,      Contrast};

/// A coordinate under a numeric modifier; `v` is the operand as applied.
using TModifier = TFzyFloat (*)(TFzyFloat c, TFzyFloat v);

constexpr std::array<TModifier, 9> Modifiers = {
    [](TFzyFloat c, TFzyFloat v) { return c + v; },            // bfhAdd
    [](TFzyFloat c, TFzyFloat v) { return c + v; },            // bfhSubtract: v is negated
    [](TFzyFloat c, TFzyFloat v) { return c * v; },            // bfhMultiply
    [](TFzyFloat c, TFzyFloat v) { return c * v; },            // bfhDivide: v is the reciprocal
    [](TFzyFloat c, TFzyFloat v) { return std::pow(c, v); },   // bfhPower
    [](TFzyFloat c, TFzyFloat v) { return c < v ? v : c; },    // bfhCutLess
    [](TFzyFloat c, TFzyFloat v) { return c <= v ? v : c; },   // bfgCutLessEq
    [](TFzyFloat c, TFzyFloat v) { return c > v ? v : c; },    // bfhCutGreater
    [](TFzyFloat c, TFzyFloat v) { return c >= v ? v : c; }};  // bfhCutGreaterEq

/// The operand as it is applied and printed.
TFzyFloat Applied(TBaseFuzzyHedge modifyType, TFzyFloat value) {
  if (modifyType == bfhSubtract) return 0 - value;
  if (modifyType != bfhDivide) return value;
  RequireFinite(1 / value, "/");
  return 1 / value;
}

TFzyFloat Contrasted(TFzyFloat y, TFzyFloat x) {
  if (x < 1 && y <= 0) return y;
  if (y >= Pivot) {
    const TFzyFloat raised = 1 - x * std::pow(1 - y, x);
    return raised < 0 ? 0 : raised;
  }
  const TFzyFloat lowered = x * std::pow(y, x);
  return lowered > 1 ? 1 : lowered;
}

/// The peak of a curve scanned from one end: the first point of exactly 1, else the last of those
/// that attain the maximum.
template <class Iterator>
Iterator FindPeak(Iterator first, Iterator last) {
  Iterator peak = last;
  TFzyFloat highest = 0;
  for (; first != last; ++first) {
    if (first->Y < highest) continue;
    peak = first;
    highest = first->Y;
    if (highest == 1) break;
  }
  return peak;
}

}  // namespace

TFuzzySet* TFuzzySet::DoHedge(TFuzzyHedge hedgeType) {
  const TPin self(this);
  const TString newName = CreateFuzzyName(hedgeType, FName);
  const TFzyFloat modifier = HedgeModifiers[Ordinal(hedgeType)];
  switch (Transformations[Ordinal(hedgeType)]) {
    case Complement: {
      TUpdateBlock block(*FValues);
      detail::TPointWriter(*FValues).TransformY([](TFzyFloat y) { return 1 - y; });
      block.Close();
      break;
    }
    case TTransformation::Power:
      Intensify(HedgePoints, modifier);
      break;
    case Above:
    case Below:
      ComplementBeyond(hedgeType == fhAbove);
      break;
    case Slightly:
      if (!ApplySlightly()) return nullptr;
      break;
    case TTransformation::Normalize:
      Normalize();
      break;
    case Approximation:
      FuzzyApproximation(HedgePoints, modifier);
      break;
    case Contrast:
      FuzzyContrast(HedgePoints, modifier);
      break;
  }
  TFirstException first;
  first.Run([&] { SetName(newName); });
  FExpression = FExpression.empty()
                    ? FormatFuzzyExpression(FName)
                    : CreateFuzzyName(hedgeType, FormatFuzzyExpression(FExpression));
  first.Rethrow();
  return Returned();
}

TFuzzySet* TFuzzySet::Hedge(TBaseFuzzyHedge modifyType, TFzyFloat value, bool modifyY) {
  const TString symbol = BaseHedgeNames[Ordinal(modifyType)];
  RequireNumber(value, "Hedge");
  const TFzyFloat v = Applied(modifyType, value);
  const TModifier modifier = Modifiers[Ordinal(modifyType)];
  const bool power = modifyType == bfhPower;
  const TPin self(this);
  const auto ofY = [&](TFzyFloat y) { return power && !(y > 0 && y < 1) ? y : modifier(y, v); };
  const auto ofX = [&](TFzyFloat x) { return power && !(x > 0) ? x : modifier(x, v); };
  detail::TPointWriter points(*FValues);
  modifyY ? points.CheckY(ofY, "Hedge") : points.CheckX(ofX, "Hedge");
  TUpdateBlock block(*FValues);
  modifyY ? points.TransformY(ofY) : points.TransformX(ofX);
  block.Close();
  TFirstException first;
  first.Run([&] { SetName(CreateFuzzyName(FName, modifyY ? symbol : symbol + "X", v)); });
  FExpression = CreateFuzzyName(modifyType, modifyY, FExpression);
  first.Rethrow();
  return Returned();
}

void TFuzzySet::Intensify(int n, TFzyFloat x) {
  TUpdateBlock block(*FValues);
  FValues->Expand(n);
  Hedge(bfhPower, x, true);
  block.Close();
}

void TFuzzySet::FuzzyContrast(int n, TFzyFloat x) {
  const auto contrasted = [x](TFzyFloat y) { return Contrasted(y, x); };
  detail::TPointWriter points(*FValues);
  points.CheckY(contrasted, "contrast");
  TUpdateBlock block(*FValues);
  FValues->Expand(n);
  // Points that `Expand` adds lie between those there, unless the range has narrowed meanwhile.
  points.CheckY(contrasted, "contrast");
  points.TransformY(contrasted);
  block.Close();
}

void TFuzzySet::FuzzyApproximation(int n, TFzyFloat x) {
  FValues->GetMaxValue();  // refuses a set without points
  const TFzyFloat minimum = GetXRange(1);
  const TFzyFloat maximum = GetXRange(0);
  detail::TApproximation approximation(FValues->Points(), minimum, maximum);
  TFuzzySetValues grid;
  grid.Add(minimum, 0);
  grid.Add(maximum, 0);
  grid.Expand(ApproximationPoints);

  TUpdateBlock block(*FValues);
  FValues->Expand(n);
  const std::vector<TFuzzyPoint> bells = approximation.Over(grid.Points(), FValues->Points(), x);
  FValues->Clear();
  detail::TPointWriter points(*FValues);
  for (const TFuzzyPoint& bell : bells) points.Assign(bell);
  Normalize();
  block.Close();
}

TFuzzySet* TFuzzySet::Normalize() {
  const TFzyFloat greatest = FValues->GetMaxValue();
  if (greatest == 0) return this;
  const TPin self(this);
  const TFzyFloat factor = 1 / greatest;
  const auto scaled = [=](TFzyFloat y) {
    return std::isfinite(factor) ? y * factor : y / greatest;
  };
  detail::TPointWriter points(*FValues);
  points.CheckY(scaled, "normalize");
  TUpdateBlock block(*FValues);
  points.TransformY(scaled);
  block.Close();
  return Returned();
}

/// 1 - Y on the far side of the peak, seen in the direction of `above`, and 0 on the near side.
void TFuzzySet::ComplementBeyond(bool above) {
  TUpdateBlock block(*FValues);
  const TFuzzyCurve curve = FValues->Points();
  const int count = FValues->GetCount();
  const int peak =
      above ? static_cast<int>(FindPeak(curve.begin(), curve.end()) - curve.begin())
            : count - 1 - static_cast<int>(FindPeak(curve.rbegin(), curve.rend()) - curve.rbegin());
  detail::TPointWriter points(*FValues);
  for (int i = 0; i < count; ++i) {
    const bool beyond = above ? i > peak : i < peak;
    points.SetY(i, beyond ? 1 - FValues->Points()[static_cast<std::size_t>(i)].Y : 0);
  }
  block.Close();
}

/// False when a handler freed the combination at once; the set is unchanged then. Temporary sets
/// that were freed are kept by their handles and serve all the same.
bool TFuzzySet::ApplySlightly() {
  if (FValues->GetCount() == 0)
    FValues->GetMaxValue();  // as `Normalize` would, before sets are made
  TFuzzySetCollection* siblings = Siblings();
  const TPin pinned(siblings);
  if (siblings) siblings->BeginUpdate();
  bool applied = false;
  TFirstException first;
  first.Run([&] {
    TOwned<TFuzzySet> a = NewInstance();
    a->FValues->BeginUpdate();  // never ended: what happens to the points of A and B is not told
    TOwned<TFuzzySet> b = NewInstance();
    b->FValues->BeginUpdate();
    a->Assign(this);
    a->Hedge(fhVery);
    a->Hedge(fhNot);
    b->Assign(this);
    b->Hedge(fhPlus);
    TOwned<TFuzzySet> c(b->Intersection(&*a));
    applied = static_cast<bool>(c);
    if (!applied) return;
    c->Hedge(fhNormalize);
    c->Hedge(fhPositively);
    first.Run([&] { FValues->Assign(c->FValues); });
    for (TOwned<TFuzzySet>* temporary : {&c, &a, &b}) {
      if (*temporary) first.Run([&] { temporary->Get()->Free(); });
    }
  });
  if (siblings) first.Run([&] { siblings->EndUpdate(); });
  first.Rethrow();
  return applied;
}

}  // namespace fzy
