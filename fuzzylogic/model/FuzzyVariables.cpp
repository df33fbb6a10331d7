#include "fuzzylogic/model/FuzzyVariables.h"

#include <algorithm>

#include "fuzzylogic/model/FuzzyLogic.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy {

TPersistent* TFuzzyVariables::GetOwner() const { return FFuzzy; }

TFuzzyVariable* TFuzzyVariables::Add() {
  const TPin self(this);
  return TFuzzyVariable::Create(this, FSetClass, FVariableClass);
}

TFuzzyVariable* TFuzzyVariables::Add(const TString& name) {
  const TPin self(this);
  TFuzzyVariable* variable = TFuzzyVariable::Create(this, FSetClass, FVariableClass, name.size());
  if (!variable) return nullptr;
  const TPin pinned(variable);
  variable->SetName(name);
  return variable->IsFreed() ? nullptr : variable;
}

TFuzzyVariable* TFuzzyVariables::Insert(int index) {
  if (index < 0 || index > GetCount()) FailIndex(index);
  const TPin self(this);
  TFuzzyVariable* variable = Add();
  if (!variable) return nullptr;
  const TPin pinned(variable);
  if (variable->GetCollection() == this) variable->SetIndex(std::min(index, GetCount() - 1));
  return variable->IsFreed() ? nullptr : variable;
}

TFuzzyVariable* TFuzzyVariables::GetItem(int index) const {
  RequireIndex(index);
  return static_cast<TFuzzyVariable*>(ItemAt(index));
}

void TFuzzyVariables::SetItem(int index, TFuzzyVariable* value) { GetItem(index)->Assign(value); }

int TFuzzyVariables::RequireName(const TString& name) const {
  const int index = IndexOf(name);
  if (index < 0) throw EFzyException(SUnknownFuzzyVarName, {name});
  return index;
}

TFuzzyVariable* TFuzzyVariables::GetItemByName(const TString& name) const {
  return GetItem(RequireName(name));
}

void TFuzzyVariables::SetItemByName(const TString& name, TFuzzyVariable* value) {
  SetItem(RequireName(name), value);
}

void TFuzzyVariables::Notify(TCollectionItem* item, TCollectionNotification action) {
  const TPin self(this);
  TGCollection::Notify(item, action);
  if (FFuzzy) FFuzzy->NotifyVariable(static_cast<TFuzzyVariable*>(item), action);
}

void TFuzzyVariables::Update(TCollectionItem* item) {
  const TPin self(this);
  TGCollection::Update(item);
  auto* variable = static_cast<TFuzzyVariable*>(item);
  if (variable) variable->PullItemIndexBack();
  if (FFuzzy) FFuzzy->UpdateVariable(variable);
}

void TFuzzyVariables::PrepareToLoad() {
  if (FFuzzy) FReplaced = std::make_unique<TFuzzyVariables>(FFuzzy);
}

void TFuzzyVariables::ExchangeItems(std::vector<TCollectionItem*>& items) noexcept {
  FIsLoadedAlone = FFuzzy && !FFuzzy->Is(csLoading);
  TGCollection::ExchangeItems(items);
}

/// The variables that were replaced end in a list of their own, which tells the component.
void TFuzzyVariables::ItemsLoaded(std::vector<TCollectionItem*>& replaced) {
  if (!FFuzzy) return;
  TFuzzyVariables* gone = FReplaced.release();
  gone->ExchangeItems(replaced);
  if (FIsLoadedAlone) FFuzzy->SetNeedsUpdate(true);
  FFuzzy->VariablesLoaded(gone);
}

void TFuzzyVariables::UpdateFuzzySet(TFuzzySet* fuzzySet) {
  const TPin self(this);
  if (FFuzzy) FFuzzy->UpdateFuzzySet(fuzzySet);
}

void TFuzzyVariables::NotifyFuzzySet(TFuzzySet* fuzzySet, TCollectionNotification action) {
  const TPin self(this);
  if (FFuzzy) FFuzzy->NotifyFuzzySet(fuzzySet, action);
}

}  // namespace fzy
