#include "fuzzylogic/model/FuzzySets.h"

#include <algorithm>

#include "fuzzylogic/framework/FirstException.h"
#include "fuzzylogic/framework/UpdateBlock.h"
#include "fuzzylogic/model/FuzzyVariable.h"
#include "fuzzylogic/vocabulary/FuzzyKeywords.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy {

TPersistent* TFuzzySets::GetOwner() const { return FVariable; }

TFuzzySurroundings* TFuzzySets::GetSurroundings() const { return FVariable; }

TCollectionItem* TFuzzySets::AddItem() { return TFuzzySet::Create(this, FSetClass); }

TFuzzySet* TFuzzySets::Add() { return AddWithRoom(0); }

TFuzzySet* TFuzzySets::AddWithRoom(std::size_t room) {
  const TPin self(this);
  TFuzzySet* set = TFuzzySet::Create(this, FSetClass, room);
  // A handler may have filed the set elsewhere.
  if (set && FVariable && set->GetCollection() == this) FVariable->FItemIndex = set->GetIndex();
  return set;
}

TFuzzySet* TFuzzySets::Add(const TString& name) {
  if (IsReservedFuzzyWord(name)) throw EFzyException(SInvalidFuzzySetName, {name});
  const TPin self(this);
  TFuzzySet* set = AddWithRoom(name.size());
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

void TFuzzySets::Assign(TPersistent* source) {
  auto* sets = dynamic_cast<TFuzzySets*>(source);
  if (!sets || sets == this) return TFuzzySetCollection::Assign(source);
  const TPin self(this);
  const TPin pinned(sets);
  Replace(*sets, RoomFor(*sets));
}

/// Sets with the room for the content of those of a list, so that none here goes when memory fails.
TFuzzySets::TRoom TFuzzySets::RoomFor(TFuzzySets& source) {
  TRoom room;
  room.reserve(static_cast<std::size_t>(source.GetCount()));
  for (TFuzzySet* set : source)
    room.emplace_back(TFuzzySet::Create(nullptr, FSetClass))->PrepareFor(*set);
  MakeRoom(source.GetCount());
  return room;
}

/// As for any collection, each set joins as a new one and then becomes a copy.
void TFuzzySets::Replace(TFuzzySets& source, TRoom room) {
  TUpdateBlock block(*this);
  Clear();
  for (int i = 0; i < std::ssize(room) && i < source.GetCount(); ++i) {
    TFuzzySet* set = room[static_cast<std::size_t>(i)].Release();
    const TPin pinned(set);
    TFirstException first;
    first.Run([&] { InsertItem(set); });
    if (FVariable && FVariable->IsDesigning()) set->SetDefined(true);
    first.Rethrow();
    if (!set->IsFreed() && i < source.GetCount()) set->Assign(source.GetItem(i));
  }
  block.Close();
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
