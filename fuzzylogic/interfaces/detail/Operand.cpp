#include "fuzzylogic/interfaces/detail/Operand.h"

#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy::detail {

TOperand::TOperand(const Ref<IFuzzySet>& set, const char* operation)
    : FSet(set.Get()), FOwn(OwnSet(set.Get())) {
  if (!set) throw EFzyException(SFzySetMissing, {TString(operation)});
  if (FOwn) {
    FCurve = FOwn->GetValues()->Points();
    FAscending = FOwn->GetValues()->IsAscending();
    return;
  }
  const int count = set->GetCount();
  for (int i = 0; i < count; ++i) FGathered.push_back({set->GetXValues(i), set->GetYValues(i)});
  FCurve = FGathered;
  FAscending = IsAscending(FCurve);
}

}  // namespace fzy::detail
