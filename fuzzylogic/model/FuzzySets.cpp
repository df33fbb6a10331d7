#include "fuzzylogic/model/FuzzySets.h"

#include <algorithm>

#include "fuzzylogic/model/FuzzyVariable.h"
#include "fuzzylogic/vocabulary/FuzzyKeywords.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy {

TPersistent* TFuzzySets::GetOwner() const { return FVariable; }

TFuzzySurroundings* TFuzzySets::GetSurroundings() const { return FVariable; }

TCollectionItem* TFuzzySets::AddItem() { return TFuzzySet::Create(this, FSetClass); }

TFuzzySet* TFuzzySets::Add() {
  const TPin self(this);
  TFuzzySet* set = TFuzzySet::Create(this, FSetClass);
  // A handler may have filed the set elsewhere.
  if (set && FVariable && set->GetCollection() == this) FVariable->FItemIndex = set->GetIndex();
  return set;
}

TFuzzySet* TFuzzySets::Add(const TString& name) {
  if (IsReservedFuzzyWord(name)) throw EFzyException(SInvalidFuzzySetName, {name});
  const TPin self(this);
  TFuzzySet* set = Add();
  if (!set) return nullptr;
  const TPin pinned(set);
  set->SetDefined(!IsEmptyFuzzyName(name));
  set->SetName(name);
  return set->IsFreed() ? nullptr : set;
}

TFuzzySet* TFuzzySets::Insert(int index) {
  if (index < 0 || index > GetCount()) FailIndex(index);
  const TPin self(this);
  TFuzzySet* set = TFuzzySet::Create(this, FSetClass);
  if (!set) return nullptr;
  const TPin pinned(set);
  if (set->GetCollection() == this) set->SetIndex(std::min(index, GetCount() - 1));
  return set->IsFreed() ? nullptr : set;
}

TFuzzySet* TFuzzySets::GetItem(int index) const {
  RequireIndex(index);
  return static_cast<TFuzzySet*>(ItemAt(index));
}

void TFuzzySets::SetItem(int index, TFuzzySet* value) { GetItem(index)->Assign(value); }

int TFuzzySets::RequireName(const TString& name) const {
  const int index = IndexOf(name);
  if (index < 0) throw EFzyException(SUnknownFuzzySetName, {name});
  return index;
}

TFuzzySet* TFuzzySets::GetItemByName(const TString& name) const {
  return GetItem(RequireName(name));
}

void TFuzzySets::SetItemByName(const TString& name, TFuzzySet* value) {
  SetItem(RequireName(name), value);
}

void TFuzzySets::Notify(TCollectionItem* item, TCollectionNotification action) {
  const TPin self(this);
  TFuzzySetCollection::Notify(item, action);
  if (FVariable) FVariable->Notify(static_cast<TFuzzySet*>(item), action);
}

void TFuzzySets::Update(TCollectionItem* item) {
  const TPin self(this);
  TFuzzySetCollection::Update(item);
  if (FVariable) FVariable->Update(static_cast<TFuzzySet*>(item));
}

}  // namespace fzy
