#pragma once

#include <vector>

#include "fuzzylogic/engine/detail/Combination.h"
#include "fuzzylogic/interfaces/IFuzzySet.h"

namespace fzy::detail {

/// The set of the library's own that an interface belongs to, or nothing for a foreign one.
inline TIFuzzySet* OwnSet(IFuzzySet* set) noexcept { return dynamic_cast<TIFuzzySet*>(set); }

/// The other set of an operation, whoever implements it: a set of the library's own is read where
/// it stands, a foreign one through its interface, once.
class TOperand {
 public:
  /// @throws EFzyException (`SFzySetMissing`) without a set
  TOperand(const Ref<IFuzzySet>& set, const char* operation);

  TCurveView Curve() const noexcept { return {FCurve, FAscending}; }
  TString Name() const { return FOwn ? FOwn->TFuzzySet::GetName() : FSet->GetName(); }
  TString Expression() const {
    return FOwn ? FOwn->TFuzzySet::GetExpression() : FSet->GetExpression();
  }

 private:
  Ref<IFuzzySet> FSet;
  TIFuzzySet* FOwn;
  std::vector<TFuzzyPoint> FGathered;
  TFuzzyCurve FCurve;
  bool FAscending;
};

}  // namespace fzy::detail
