#include "fuzzylogic/interfaces/detail/Operand.h"

#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy::detail {

TOperand::TOperand(const Ref<IFuzzySet>& set, const char* operation) : FOwn(OwnSet(set.Get())) {
  if (!set) throw EFzyException(SFzySetMissing, {TString(operation)});
  if (FOwn) return;
  FSet = set;
  const int count = FSet->GetCount();
  for (int i = 0; i < count; ++i) FGathered.push_back({FSet->GetXValues(i), FSet->GetYValues(i)});
  FAscending = IsAscending(FGathered);
}

}  // namespace fzy::detail
