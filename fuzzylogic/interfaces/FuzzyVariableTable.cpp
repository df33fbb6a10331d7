#include "fuzzylogic/interfaces/FuzzyVariableTable.h"

#include "fuzzylogic/interfaces/IFuzzyLogic.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy {

TFuzzyVariableTable::~TFuzzyVariableTable() {
  try {
    UnwireAll();
  } catch (...) {  // NOLINT(bugprone-empty-catch): of a foreign variable
  }
}

void TFuzzyVariableTable::Add(const Ref<IFuzzyVariable>& fuzzyVariable) {
  RequireValue(fuzzyVariable);
  const TPin self(this);
  Put(fuzzyVariable->GetName(), fuzzyVariable);
}

void TFuzzyVariableTable::Clear() {
  const TPin self(this);
  TFirstException first;
  first.Run([this] { UnwireAll(); });
  first.Run([this] { TTable::Clear(); });
  first.Rethrow();
}

void TFuzzyVariableTable::UnwireAll() const {
  if (!FFuzzyLogic) return;
  TFirstException first;
  for (const Ref<IFuzzyVariable>& variable : GetValues())
    first.Run([&] { FFuzzyLogic->Unwire(*variable); });
  first.Rethrow();
}

void TFuzzyVariableTable::MemberEntered(const Ref<IFuzzyVariable>& member) {
  if (FFuzzyLogic) FFuzzyLogic->VariableAdded(member);
}

void TFuzzyVariableTable::MemberLeft(const Ref<IFuzzyVariable>& member) {
  if (FFuzzyLogic) FFuzzyLogic->VariableDeleted(member);
}

void TFuzzyVariableTable::RequireValue(const Ref<IFuzzyVariable>& value) const {
  if (!value) throw EFzyException(SMissingFuzzyVariable);
}

}  // namespace fzy
