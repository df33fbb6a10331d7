#include "fuzzylogic/interfaces/IFuzzySets.h"

#include <algorithm>

#include "fuzzylogic/framework/Properties.h"
#include "fuzzylogic/interfaces/IFuzzyVariable.h"
#include "fuzzylogic/interfaces/detail/Operand.h"
#include "fuzzylogic/vocabulary/FuzzyKeywords.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy {

TString TIFuzzySets::ToString() const {
  return FVariable ? std::as_const(*FVariable).ToString() : TTable::ToString();
}

bool TIFuzzySets::IsOfVariable(IFuzzySet& set) const {
  const TIFuzzySet* own = detail::OwnSet(&set);
  return (own ? own->PeekVariable() : set.GetVariable().Get()) == FVariable;
}

void TIFuzzySets::Add(const Ref<IFuzzySet>& fuzzySet) {
  RequireValue(fuzzySet);
  const bool isOfVariable = IsOfVariable(*fuzzySet);
  if (isOfVariable && !fuzzySet->GetDefined()) return;
  const TPin self(this);
  const Ref<IFuzzySet> set = fuzzySet;
  if (isOfVariable) {
    Enter(set);
    return;
  }
  TFirstException first;
  first.Run([&] { set->SetVariable(TBorrowed<IFuzzyVariable>(FVariable)); });
  // A handler may have sent it elsewhere.
  if (!set->GetDefined() && IsOfVariable(*set)) first.Run([&] { Enter(set); });
  first.Rethrow();
}

Ref<IFuzzySet> TIFuzzySets::Add(const TString& name) {
  const TPin self(this);
  const TBorrowed<IFuzzyVariable> variable(FVariable);
  Ref<IFuzzySet> set = TIFuzzySet::Create(variable, name, GetSetClass());
  set->SetDefined(name != SEmptyFuzzy);
  Add(set);
  return set;
}

TIFuzzySetClass TIFuzzySets::GetSetClass() const noexcept {
  return FVariable && FVariable->FFuzzySetClass ? FVariable->FFuzzySetClass : TIFuzzySet::Class();
}

namespace {

/// The name of a set: where it stands, when that is one of the library's own; else put into `copy`.
const TString& NameOf(IFuzzySet& set, TString& copy) {
  if (const TIFuzzySet* own = detail::OwnSet(&set)) return own->TFuzzySet::GetName();
  return copy = set.GetName();
}

}  // namespace

/// The key of a set that the table does not hold under its name: it was renamed behind the table's
/// back, or stands in another one.
std::optional<TString> TIFuzzySets::OtherKeyOf(const Ref<IFuzzySet>& set) const {
  if (!detail::OwnSet(set.Get())) return {};
  for (int slot = DoNext(-1); slot >= 0; slot = DoNext(slot)) {
    if (ValueAt(slot) == set) return KeyAt(slot);
  }
  return {};
}

/// Puts a set under its name, and never under two names at once: the table would then have more
/// entries than references to the variable go with them. Not in a table that goes with its sets
/// only: they would keep each other for ever.
void TIFuzzySets::Enter(const Ref<IFuzzySet>& set) {
  if (FVariable && !FVariable->IsHeldOutside()) return;
  const TIFuzzySet* own = detail::OwnSet(set.Get());
  const bool isEntered = !own || own->FEntries > 0;  // most results of operations are in no table
  TString copy;
  const TString& name = NameOf(*set, copy);
  if (isEntered && Find(name) == set) return;
  TFirstException first;
  if (isEntered) {
    if (const std::optional<TString> key = OtherKeyOf(set))
      first.Run([&] { TTable::Remove(*key); });
  }
  first.Run([&] { Put(name, set); });
  first.Rethrow();
}

void TIFuzzySets::Remove(const Ref<IFuzzySet>& fuzzySet) {
  if (!fuzzySet) return;
  const TIFuzzySet* own = detail::OwnSet(fuzzySet.Get());
  if (own && own->FEntries == 0) return;
  TString copy;
  const TString& name = NameOf(*fuzzySet, copy);
  if (Find(name) == fuzzySet) {
    TTable::Remove(name);
  } else if (const std::optional<TString> key = OtherKeyOf(fuzzySet)) {
    TTable::Remove(*key);
  }
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

// Storing and loading

/// Sets that are loaded: in a table of no variable until they join the variable as a whole.
class TIFuzzySets::TStaged final : public TStagedItems {
 public:
  explicit TStaged(TIFuzzySets& sets) : FPin(&sets), FSets(sets) {}
  ~TStaged() override { FTable.Clear(); }
  TPersistent& Begin() override {
    FSet = TIFuzzySet::Create(nullptr, TString(), FSets.GetSetClass());
    return *FSet;
  }
  void Complete() override {
    const Ref<IFuzzySet> set(FSet);
    FTable.Add(set->GetName(), set);
  }
  void Exchange() noexcept override { FSets.ExchangeSets(FTable); }
  void Tell() override { FSets.TellLoaded(); }

 private:
  TPin FPin;
  TIFuzzySets& FSets;
  TIFuzzySets FTable;
  Ref<TIFuzzySet> FSet;
};

/// A set of the library's own: the very set, or a copy of what a foreign one tells of itself.
Ref<TIFuzzySet> TIFuzzySets::OwnOrCopy(const Ref<IFuzzySet>& set) {
  if (TIFuzzySet* own = detail::OwnSet(set.Get())) return own;
  Ref<TIFuzzySet> copy = TIFuzzySet::Create(nullptr, set->GetName());
  copy->AssignValues(set);
  copy->SetComment(set->GetComment());
  copy->SetExpression(set->GetExpression());
  copy->SetDefined(set->GetDefined());
  copy->SetTag(set->GetTag());
  copy->SetIndex(set->GetIndex());
  const TFiler description(*copy);  // which sets the type without making points for it
  description.Find("SetType")->Set(static_cast<std::int64_t>(set->GetSetType()));
  description.Find("InflectionPoint")->Set(set->GetInflectionPoint());
  return copy;
}

std::vector<Ref<TIFuzzySet>> TIFuzzySets::InOrder() const {
  std::vector<Ref<TIFuzzySet>> sets;
  sets.reserve(static_cast<std::size_t>(GetCount()));
  for (const Ref<IFuzzySet>& set : GetValues()) sets.push_back(OwnOrCopy(set));
  std::ranges::stable_sort(sets, {}, [](const Ref<TIFuzzySet>& set) { return set->GetIndex(); });
  return sets;
}

void TIFuzzySets::DefineProperties(TFiler& filer) {
  TTable::DefineProperties(filer);
  const auto sets = std::make_shared<const std::vector<Ref<TIFuzzySet>>>(InOrder());
  filer.DefineEntries(TItemEntries{
      [sets] { return static_cast<int>(sets->size()); },
      [sets](int index) -> TPersistent& { return *(*sets)[static_cast<std::size_t>(index)]; },
      [this] { return std::make_unique<TStaged>(*this); }});
}

void TIFuzzySets::ExchangeSets(TIFuzzySets& other) noexcept {
  Exchange(other);
  std::swap(FNewIndex, other.FNewIndex);
  for (int slot = DoNext(-1); slot >= 0; slot = DoNext(slot)) {
    TIFuzzySet* own = detail::OwnSet(ValueAt(slot).Get());
    if (!FVariable || !own || own->FVariable) continue;
    own->FVariable.Set(FVariable);
    own->FParser = FVariable->FParser;
  }
}

/// As of sets that are assigned: of the old ones together, of each new one.
void TIFuzzySets::TellLoaded() {
  if (!FVariable) return;
  const TPin variable(FVariable);
  TFirstException first;
  first.Run([this] { FVariable->ClearFuzzySets(); });
  for (const Ref<TIFuzzySet>& set : InOrder()) first.Run([&] { FVariable->NewFuzzySet(set); });
  first.Rethrow();
}

void TIFuzzySets::MemberEntered(const Ref<IFuzzySet>& member) {
  member->SetIndex(NewIndex());
  if (FVariable) FVariable->NewFuzzySet(member);
}

void TIFuzzySets::MemberLeft(const Ref<IFuzzySet>& member) {
  if (FVariable) FVariable->RemoveFuzzySet(member);
}

void TIFuzzySets::RequireValue(const Ref<IFuzzySet>& value) const {
  if (!value) throw EFzyException(SFzySetMissing, {TString("Add")});
}

void TIFuzzySets::ValueNotify(const Ref<IFuzzySet>& value, TKeyedNotification action) {
  if (TIFuzzySet* own = detail::OwnSet(value.Get())) own->FEntries += action == knAdded ? 1 : -1;
  TTable::ValueNotify(value, action);
}

}  // namespace fzy
