#include "fuzzylogic/interfaces/FuzzyVariableTable.h"

#include "fuzzylogic/interfaces/IFuzzyLogic.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy {

TFuzzyVariableTable::~TFuzzyVariableTable() { UnwireAll(); }

void TFuzzyVariableTable::Add(const Ref<IFuzzyVariable>& fuzzyVariable) {
  RequireMember(fuzzyVariable);
  const TPin self(this);
  Put(fuzzyVariable->GetName(), fuzzyVariable);
}

void TFuzzyVariableTable::Clear() {
  UnwireAll();
  TTable::Clear();
}

void TFuzzyVariableTable::UnwireAll() const {
  if (!FFuzzyLogic) return;
  for (const Ref<IFuzzyVariable>& variable : GetValues()) FFuzzyLogic->Unwire(*variable);
}

void TFuzzyVariableTable::MemberEntered(const Ref<IFuzzyVariable>& member) {
  if (FFuzzyLogic) FFuzzyLogic->VariableAdded(member);
}

void TFuzzyVariableTable::MemberLeft(const Ref<IFuzzyVariable>& member) {
  if (FFuzzyLogic) FFuzzyLogic->VariableDeleted(member);
}

void TFuzzyVariableTable::RequireMember(const Ref<IFuzzyVariable>& member) const {
  if (!member) throw EFzyException(SMissingFuzzyVariable);
}

}  // namespace fzy
