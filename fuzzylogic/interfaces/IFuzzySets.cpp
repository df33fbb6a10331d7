#include "fuzzylogic/interfaces/IFuzzySets.h"

#include "fuzzylogic/interfaces/IFuzzyVariable.h"
#include "fuzzylogic/interfaces/detail/Operand.h"
#include "fuzzylogic/vocabulary/FuzzyKeywords.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy {
namespace {

void RequireSet(const Ref<IFuzzySet>& set, const char* operation) {
  if (!set) throw EFzyException(SFzySetMissing, {TString(operation)});
}

}  // namespace

TString TIFuzzySets::ToString() const {
  return FVariable ? std::as_const(*FVariable).ToString() : TTable::ToString();
}

/// A set of the library's own is not asked: that would count the variable up and down.
bool TIFuzzySets::IsOfVariable(IFuzzySet& set) const {
  const TIFuzzySet* own = detail::OwnSet(&set);
  return (own ? own->FVariable.Get() : set.GetVariable().Get()) == FVariable;
}

void TIFuzzySets::Add(const Ref<IFuzzySet>& fuzzySet) {
  RequireSet(fuzzySet, "Add");
  const bool isOfVariable = IsOfVariable(*fuzzySet);
  if (isOfVariable && !fuzzySet->GetDefined()) return;
  const TPin self(this);
  const Ref<IFuzzySet> set = fuzzySet;
  if (isOfVariable) {
    Put(set->GetName(), set);
    return;
  }
  TFirstException first;
  first.Run([&] { set->SetVariable(TBorrowed<IFuzzyVariable>(FVariable)); });
  // A handler may have sent it elsewhere.
  if (!set->GetDefined() && IsOfVariable(*set)) first.Run([&] { Put(set->GetName(), set); });
  first.Rethrow();
}

Ref<IFuzzySet> TIFuzzySets::Add(const TString& name) {
  const TPin self(this);
  const TBorrowed<IFuzzyVariable> variable(FVariable);
  const Ref<IFuzzySet> set = TIFuzzySet::Create(
      variable, name, FVariable ? FVariable->FFuzzySetClass : TIFuzzySet::Class());
  set->SetDefined(name != SEmptyFuzzy);
  Add(set);
  return set;
}

void TIFuzzySets::Remove(const Ref<IFuzzySet>& fuzzySet) {
  if (!fuzzySet) return;
  const TIFuzzySet* own = detail::OwnSet(fuzzySet.Get());
  if (own && own->FEntries == 0) return;  // most results of operations come here, and in no table
  const Ref<IFuzzySet> set = fuzzySet;
  const TString name = set->GetName();
  if (ContainsFuzzySet(name) == set) TTable::Remove(name);
}

Ref<IFuzzySet> TIFuzzySets::ContainsFuzzySet(const TString& name) const {
  Ref<IFuzzySet> set;
  TryGetValue(name, set);
  return set;
}

void TIFuzzySets::AssignFuzzySets(const Ref<IFuzzyVariable>& source) {
  if (!source) throw EFzyException(SMissingFuzzyVariable);
  if (source == FVariable) return;
  TUpdateBlock block(*this);
  TFirstException first;
  first.Run([&] { Clear(); });
  const TBorrowed<IFuzzyVariable> variable(FVariable);
  for (int i = 0; i < source->GetCount(); ++i) {
    first.Run([&] {
      const Ref<IFuzzySet> original = source->GetFuzzySet(i);
      const Ref<IFuzzySet> copy = original->Clone(variable);
      copy->SetDefined(original->GetDefined());
      Add(copy);
    });
  }
  first.Run([&] { block.Close(); });
  first.Rethrow();
}

void TIFuzzySets::Assign(const Ref<IInterface>& value) {
  if (const Ref<IFuzzyVariable> variable = Query<IFuzzyVariable>(value.Get()))
    AssignFuzzySets(variable);
}

void TIFuzzySets::Assign(TPersistent* source) {
  if (dynamic_cast<TStrings*>(source)) return TPersistent::Assign(source);
  auto* sets = dynamic_cast<TIFuzzySets*>(source);
  if (!sets || !sets->FVariable) return TTable::Assign(source);
  AssignFuzzySets(TBorrowed<IFuzzyVariable>(sets->FVariable));
}

bool TIFuzzySets::EqualsSets(const Ref<IFuzzyVariable>& fuzzyVariable) const {
  for (const Ref<IFuzzySet>& set : GetValues()) {
    if (!set->GetDefined()) continue;
    const Ref<IFuzzySet> other = fuzzyVariable->ContainsFuzzySet(set->GetName());
    if (!other || !other->Equals(set)) return false;
  }
  return true;
}

void TIFuzzySets::Clear() {
  const TPin self(this);
  TFirstException first;
  first.Run([&] { TTable::Clear(); });
  FNewIndex = 0;
  if (FVariable) first.Run([&] { FVariable->ClearFuzzySets(); });
  first.Rethrow();
}

/// Enters a set by `store(set)`, numbers it and tells the variable.
template <class Store>
void TIFuzzySets::Enter(const Ref<IFuzzySet>& value, Store store) {
  RequireSet(value, "Add");
  const TPin self(this);
  const Ref<IFuzzySet> set = value;
  TFirstException first;
  first.Run([&] { store(set); });
  set->SetIndex(NewIndex());
  if (FVariable) first.Run([&] { FVariable->NewFuzzySet(set); });
  first.Rethrow();
}

void TIFuzzySets::DoAdd(std::int32_t hashCode, int index, const TString& key,
                        const Ref<IFuzzySet>& value) {
  Enter(value, [&](const Ref<IFuzzySet>& set) { TTable::DoAdd(hashCode, index, key, set); });
}

void TIFuzzySets::DoSetValue(int index, const Ref<IFuzzySet>& value) {
  Enter(value, [&](const Ref<IFuzzySet>& set) { TTable::DoSetValue(index, set); });
}

void TIFuzzySets::ValueNotify(const Ref<IFuzzySet>& value, TKeyedNotification action) {
  if (TIFuzzySet* own = detail::OwnSet(value.Get())) own->FEntries += action == knAdded ? 1 : -1;
  TTable::ValueNotify(value, action);
}

Ref<IFuzzySet> TIFuzzySets::DoRemove(const TString& key, std::int32_t hashCode,
                                     TKeyedNotification notification) {
  const TPin self(this);
  const Ref<IFuzzySet> removed = ContainsFuzzySet(key);
  TFirstException first;
  first.Run([&] { TTable::DoRemove(key, hashCode, notification); });
  if (removed && FVariable) first.Run([&] { FVariable->RemoveFuzzySet(removed); });
  first.Rethrow();
  return removed;
}

}  // namespace fzy
