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
/// it stands, at the moment of asking; a foreign one through its interface, once. Making one calls
/// code from outside, so an operation pins its own set first; who calls such code later holds a
/// reference to an operand of the library's own, too.
class TOperand {
 public:
  /// @throws EFzyException (`SFzySetMissing`) without a set
  TOperand(const Ref<IFuzzySet>& set, const char* operation);

  TCurveView Curve() const noexcept {
    return FOwn ? ViewOf(*FOwn->GetValues()) : TCurveView{FGathered, FAscending};
  }
  TString Name() const { return FOwn ? FOwn->TFuzzySet::GetName() : FSet->GetName(); }
  TString Expression() const {
    return FOwn ? FOwn->TFuzzySet::GetExpression() : FSet->GetExpression();
  }

 private:
  TIFuzzySet* FOwn;
  Ref<IFuzzySet> FSet;  // a foreign one
  std::vector<TFuzzyPoint> FGathered;
  bool FAscending = true;
};

}  // namespace fzy::detail
