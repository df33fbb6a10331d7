#include "fuzzylogic/interfaces/FuzzyVariableTable.h"

#include "fuzzylogic/interfaces/IFuzzyLogic.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy {
namespace {

void RequireVariable(const Ref<IFuzzyVariable>& variable) {
  if (!variable) throw EFzyException(SMissingFuzzyVariable);
}

}  // namespace

TFuzzyVariableTable::~TFuzzyVariableTable() {
  if (!FFuzzyLogic) return;
  for (const Ref<IFuzzyVariable>& variable : GetValues()) FFuzzyLogic->Unwire(*variable);
}

void TFuzzyVariableTable::Add(const Ref<IFuzzyVariable>& fuzzyVariable) {
  RequireVariable(fuzzyVariable);
  const TPin self(this);
  Put(fuzzyVariable->GetName(), fuzzyVariable);
}

Ref<IFuzzyVariable> TFuzzyVariableTable::ContainsVariable(const TString& name) const {
  Ref<IFuzzyVariable> variable;
  TryGetValue(name, variable);
  return variable;
}

void TFuzzyVariableTable::Remove(const Ref<IFuzzyVariable>& fuzzyVariable) {
  if (!fuzzyVariable) return;
  const TString name = fuzzyVariable->GetName();
  if (ContainsVariable(name) == fuzzyVariable) TTable::Remove(name);
}

void TFuzzyVariableTable::Clear() {
  const TPin self(this);
  if (FFuzzyLogic) {
    for (const Ref<IFuzzyVariable>& variable : GetValues()) FFuzzyLogic->Unwire(*variable);
  }
  TTable::Clear();
}

void TFuzzyVariableTable::Assign(TPersistent* source) {
  if (dynamic_cast<TStrings*>(source)) return TPersistent::Assign(source);
  TTable::Assign(source);
}

/// Stores a variable by `store(variable)` and tells the component.
template <class Store>
void TFuzzyVariableTable::Enter(const Ref<IFuzzyVariable>& value, Store store) {
  RequireVariable(value);
  const TPin self(this);
  const Ref<IFuzzyVariable> variable = value;
  TFirstException first;
  first.Run([&] { store(variable); });
  if (FFuzzyLogic) first.Run([&] { FFuzzyLogic->VariableAdded(variable); });
  first.Rethrow();
}

void TFuzzyVariableTable::DoAdd(std::int32_t hashCode, int index, const TString& key,
                                const Ref<IFuzzyVariable>& value) {
  Enter(value, [&](const Ref<IFuzzyVariable>& variable) {
    TTable::DoAdd(hashCode, index, key, variable);
  });
}

void TFuzzyVariableTable::DoSetValue(int index, const Ref<IFuzzyVariable>& value) {
  Enter(value, [&](const Ref<IFuzzyVariable>& variable) { TTable::DoSetValue(index, variable); });
}

Ref<IFuzzyVariable> TFuzzyVariableTable::DoRemove(const TString& key, std::int32_t hashCode,
                                                  TKeyedNotification notification) {
  const TPin self(this);
  Ref<IFuzzyVariable> removed = ContainsVariable(key);
  TFirstException first;
  first.Run([&] { TTable::DoRemove(key, hashCode, notification); });
  if (removed && FFuzzyLogic) first.Run([&] { FFuzzyLogic->VariableDeleted(removed); });
  first.Rethrow();
  return removed;
}

}  // namespace fzy
