#pragma once

#include <typeinfo>
#include <vector>

#include "fuzzylogic/engine/detail/Combination.h"
#include "fuzzylogic/interfaces/IFuzzySet.h"

namespace fzy::detail {

/// The set of the library's own that an interface belongs to, or nothing for a foreign one.
inline TIFuzzySet* OwnSet(IFuzzySet* set) noexcept {
  // Nearly every set is of this very class, which is found out many times faster.
  if (set && typeid(*set) == typeid(TIFuzzySet)) return static_cast<TIFuzzySet*>(set);
  return dynamic_cast<TIFuzzySet*>(set);
}

/// The other set of an operation, whoever implements it: a set of the library's own is read where
/// it stands, a foreign one through its interface, once. Who calls code from outside meanwhile
/// holds a reference to the set.
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
  IFuzzySet* FSet;
  TIFuzzySet* FOwn;
  std::vector<TFuzzyPoint> FGathered;
  TFuzzyCurve FCurve;
  bool FAscending;
};

}  // namespace fzy::detail
