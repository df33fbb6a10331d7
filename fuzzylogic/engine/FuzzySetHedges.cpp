#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <vector>

#include "fuzzylogic/engine/FuzzyCurve.h"
#include "fuzzylogic/engine/FuzzySet.h"
#include "fuzzylogic/engine/detail/Approximation.h"
#include "fuzzylogic/engine/detail/PointWriter.h"
#include "fuzzylogic/engine/detail/Resampler.h"
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

/// The degree that a degree becomes where the greatest becomes 1.
auto NormalizedBy(TFzyFloat greatest) {
  return [greatest, factor = 1 / greatest](TFzyFloat y) {
    return std::isfinite(factor) ? y * factor : y / greatest;
  };
}

/// @throws EFzyException when a degree of the normalized curve would leave the numbers
void CheckNormalized(TFuzzyCurve curve) {
  const TFzyFloat greatest = GreatestY(curve);
  if (greatest == 0) return;
  for (const TFuzzyPoint& point : curve)
    detail::CheckDegree(NormalizedBy(greatest)(point.Y), "normalize");
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

/// The expression of a set after an operation, made before it by `make(expression)`: the change of
/// the points clears the expression that was there, unless an update block on them is held open.
template <class Make>
class TFuzzySet::TNextExpression {
 public:
  TNextExpression(const TFuzzySet& set, bool isHeld, Make make)
      : FMake(std::move(make)),
        FBefore(isHeld || set.FValues->IsUpdating() ? set.FExpression : TString()),
        FNext(FMake(FBefore)) {}
  /// Made anew where a handler has given the set another one meanwhile.
  TString Take(const TString& present) {
    return present == FBefore ? std::move(FNext) : FMake(present);
  }

 private:
  Make FMake;
  TString FBefore;
  TString FNext;
};

/// Names the set and gives it its expression after a change.
template <class Expression>
void TFuzzySet::GiveName(const TString& name, Expression& expression) {
  TFirstException first;
  first.Run([&] { SetName(name); });
  FExpression = expression.Take(FExpression);
  first.Rethrow();
}

TFuzzySet* TFuzzySet::DoHedge(TFuzzyHedge hedgeType) {
  const TPin self(this);
  const TString newName = CreateFuzzyName(hedgeType, FName);
  TNextExpression expression(
      *this, false, [&, plain = FormatFuzzyExpression(newName)](const TString& s) {
        return s.empty() ? plain : CreateFuzzyName(hedgeType, FormatFuzzyExpression(s));
      });
  PrepareForName(newName);
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
  GiveName(newName, expression);
  return Returned();
}

/// A numeric modifier with all that it needs, taken before anything changes.
class TFuzzySet::TModification {
 public:
  /// @param points  to which the list is expanded first
  /// @param isHeld  whether an update block on the points will be open
  TModification(TFuzzySet& set, TBaseFuzzyHedge modifyType, TFzyFloat value, bool modifyY,
                int points, bool isHeld)
      : FSet(set),
        FFormula(Modifiers[Ordinal(modifyType)]),
        FOperand(Applied(modifyType, value)),
        FIsPower(modifyType == bfhPower),
        FModifiesY(modifyY),
        FName(CreateFuzzyName(set.FName, Symbol(modifyType, modifyY), FOperand)),
        FExpression(set, isHeld, {modifyType, modifyY}),
        FExpansion(set.FValues->Expansion(points)) {
    detail::TPointWriter writer(*set.FValues);
    const auto of = [this](TFzyFloat c) { return (*this)(c); };
    modifyY ? writer.CheckY(of, "Hedge") : writer.CheckX(of, "Hedge");
    set.PrepareForName(FName);
  }

  void Run() {
    TUpdateBlock block(*FSet.FValues);
    if (FExpansion) FExpansion->Commit();
    detail::TPointWriter writer(*FSet.FValues);
    const auto of = [this](TFzyFloat c) { return (*this)(c); };
    FModifiesY ? writer.TransformY(of) : writer.TransformX(of);
    block.Close();
    FSet.GiveName(FName, FExpression);
  }

 private:
  struct TMakeExpression {
    TBaseFuzzyHedge ModifyType;
    bool ModifyY;
    TString operator()(const TString& s) const { return CreateFuzzyName(ModifyType, ModifyY, s); }
  };

  static TString Symbol(TBaseFuzzyHedge modifyType, bool modifyY) {
    const TString symbol = BaseHedgeNames[Ordinal(modifyType)];
    return modifyY ? symbol : symbol + "X";
  }
  /// The coordinate that a coordinate becomes.
  TFzyFloat operator()(TFzyFloat c) const {
    const bool isKept = FIsPower && !(c > 0 && (!FModifiesY || c < 1));
    return isKept ? c : FFormula(c, FOperand);
  }

  TFuzzySet& FSet;
  TModifier FFormula;
  TFzyFloat FOperand;
  bool FIsPower;
  bool FModifiesY;
  TString FName;
  TNextExpression<TMakeExpression> FExpression;
  std::optional<detail::TResampler> FExpansion;
};

TFuzzySet* TFuzzySet::Hedge(TBaseFuzzyHedge modifyType, TFzyFloat value, bool modifyY) {
  RequireNumber(value, "Hedge");
  const TPin self(this);
  TModification(*this, modifyType, value, modifyY, 0, false).Run();
  return Returned();
}

void TFuzzySet::Intensify(int n, TFzyFloat x) {
  TModification modification(*this, bfhPower, x, true, n, true);
  TUpdateBlock block(*FValues);
  modification.Run();
  block.Close();
}

void TFuzzySet::FuzzyContrast(int n, TFzyFloat x) {
  const auto contrasted = [x](TFzyFloat y) { return Contrasted(y, x); };
  const auto check = [&](const TFuzzyPoint& point) {
    detail::CheckDegree(contrasted(point.Y), "contrast");
  };
  for (const TFuzzyPoint& point : FValues->Points()) check(point);
  std::optional<detail::TResampler> expansion = FValues->Expansion(n);
  // Points that are added lie between those there, unless the range has narrowed meanwhile.
  if (expansion) expansion->ForEachPoint(check);
  TUpdateBlock block(*FValues);
  if (expansion) expansion->Commit();
  detail::TPointWriter(*FValues).TransformY(contrasted);
  block.Close();
}

void TFuzzySet::FuzzyApproximation(int n, TFzyFloat x) {
  FValues->GetMaxValue();  // refuses a set without points
  const TFzyFloat minimum = GetXRange(1);
  const TFzyFloat maximum = GetXRange(0);
  std::optional<detail::TResampler> expansion = FValues->Expansion(n);  // which may move the points
  const TFuzzyCurve curve = FValues->Points();
  detail::TApproximation approximation(curve, minimum, maximum);
  TFuzzySetValues grid;
  grid.Add(minimum, 0);
  grid.Add(maximum, 0);
  grid.Expand(ApproximationPoints);

  std::vector<TFuzzyPoint> expanded(curve.begin(), curve.end());
  if (expansion) {
    expanded.clear();
    expansion->ForEachPoint([&](const TFuzzyPoint& point) { expanded.push_back(point); });
  }
  const std::vector<TFuzzyPoint> bells = approximation.Over(grid.Points(), expanded, x);
  CheckNormalized(bells);
  FValues->PrepareFor(bells);
  TUpdateBlock block(*FValues);
  if (expansion) expansion->Commit();
  FValues->ClearItems();
  detail::TPointWriter points(*FValues);
  for (const TFuzzyPoint& bell : bells) points.Assign(bell);
  Normalize();
  block.Close();
}

TFuzzySet* TFuzzySet::Normalize() {
  const TFzyFloat greatest = FValues->GetMaxValue();
  if (greatest == 0) return this;
  const TPin self(this);
  CheckNormalized(FValues->Points());
  TUpdateBlock block(*FValues);
  detail::TPointWriter(*FValues).TransformY(NormalizedBy(greatest));
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
