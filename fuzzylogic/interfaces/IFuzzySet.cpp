#include "fuzzylogic/interfaces/IFuzzySet.h"

#include "fuzzylogic/engine/detail/PointWriter.h"
#include "fuzzylogic/framework/FirstException.h"
#include "fuzzylogic/framework/UpdateBlock.h"
#include "fuzzylogic/interfaces/IFuzzyVariable.h"
#include "fuzzylogic/interfaces/detail/Operand.h"
#include "fuzzylogic/vocabulary/FuzzyKeywords.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

// Life, properties, notification and assignment of a counted set. What it does with other sets
// stands in a file of its own.

namespace fzy {

TIFuzzySetClass TIFuzzySet::Class() {
  static constexpr TIFuzzySetDescriptor descriptor{
      {"TIFuzzySet", []() -> TFuzzySet* { return new TIFuzzySet; }}};
  return &descriptor;
}

Ref<TIFuzzySet> TIFuzzySet::Create(const Ref<IFuzzyVariable>& variable, const TString& name,
                                   TIFuzzySetClass setClass) {
  TOwned<TFuzzySet> bare(setClass->New());
  static_cast<TIFuzzySet&>(*bare).Build(nullptr);
  Ref<TIFuzzySet> set = Ref<TIFuzzySet>::Attach(static_cast<TIFuzzySet*>(bare.Release()));
  set->SetName(name);
  set->SetVariable(variable);
  return set;
}

void TIFuzzySet::Build(TFuzzySetCollection* collection) {
  AddRef();
  TFuzzySet::Build(collection);
}

HResult TIFuzzySet::QueryInterface(const TGuid& id, void** result) {
  *result = FindInterface(id, static_cast<IFuzzySet*>(this), static_cast<ICloneable*>(&FCloneable),
                          static_cast<IInterface*>(this));
  if (!*result) return E_NoInterface;
  AddRef();
  return S_Ok;
}

std::int32_t TIFuzzySet::Release() noexcept {
  const std::int32_t count = --FRefCount;
  if (count == 0) FreeUnheld();
  return count;
}

// The variable

namespace {

TIFuzzyVariable* OwnVariable(IFuzzyVariable* variable) noexcept {
  if (variable && typeid(*variable) == typeid(TIFuzzyVariable))  // which is faster than the cast
    return static_cast<TIFuzzyVariable*>(variable);
  return dynamic_cast<TIFuzzyVariable*>(variable);
}

}  // namespace

void TIFuzzySet::TVariableLink::Set(Ref<IFuzzyVariable> variable) noexcept {
  TIFuzzyVariable* own = OwnVariable(variable.Get());
  if (own) ++own->FSetReferences;
  std::swap(FVariable, variable);
  std::swap(FOwn, own);
  if (std::exchange(FBorrowed, false))
    variable.Detach();
  else if (own)
    --own->FSetReferences;  // before the reference goes, with which the variable may end
}

void TIFuzzySet::TVariableLink::Borrow(const TVariableLink& other) noexcept {
  Set(nullptr);
  FVariable = Ref<IFuzzyVariable>::Attach(other.FVariable.Get());
  FOwn = other.FOwn;
  FBorrowed = true;
}

TOwned<TFuzzySet> TIFuzzySet::NewInstance() const {
  TOwned<TFuzzySet> set = TFuzzySet::NewInstance();
  if (FLends || FVariable.IsBorrowed()) static_cast<TIFuzzySet&>(*set).FVariable.Borrow(FVariable);
  return set;
}

Ref<TIFuzzySet> TIFuzzySet::Made(TFuzzySet* set) noexcept {
  auto* made = static_cast<TIFuzzySet*>(set);
  made->FVariable.Set(nullptr);
  return Ref<TIFuzzySet>::Attach(made);
}

Ref<IFuzzyVariable> TIFuzzySet::HoldForeignVariable() const {
  return FVariable.IsForeign() ? FVariable.Get() : nullptr;
}

// Properties

void TIFuzzySet::SetName(const TString& value) {
  if (value == TFuzzySet::GetName()) return;
  if (IsReservedFuzzyWord(value)) throw EFzyException(SInvalidFuzzySetName, {value});
  PrepareForName(value);
  Refile([&] { TFuzzySet::SetName(value); });
}

void TIFuzzySet::PrepareForName(const TString& name) {
  TFuzzySet::PrepareForName(name);
  if (TIFuzzyVariable* variable = FVariable.Own()) variable->FItems->PrepareEntry(name);
}

/// Changes the name by `rename()`. The set is held while it is between two entries, which may be
/// all that hold it.
template <class Rename>
void TIFuzzySet::Refile(Rename rename) {
  if (FVariable.IsBorrowed()) return rename();
  const Ref<IFuzzySet> self(this);
  const Ref<IFuzzyVariable> held = HoldForeignVariable();
  TFirstException first;
  if (FVariable) first.Run([&] { FVariable->Remove(self); });
  first.Run(rename);
  if (FVariable) first.Run([&] { FVariable->Add(self); });
  first.Rethrow();
}

void TIFuzzySet::SetVariable(const Ref<IFuzzyVariable>& value) {
  if (value == FVariable.Get()) return;
  TIFuzzyVariable* ownNext = OwnVariable(value.Get());
  if (ownNext && TFuzzySet::GetDefined()) ownNext->FItems->PrepareToAdd(TFuzzySet::GetName());
  const Ref<IFuzzySet> self(this);
  Ref<IFuzzyVariable> next(value);
  const Ref<IFuzzyVariable> held = HoldForeignVariable();
  TFirstException first;
  if (FVariable) {
    first.Run([&] {
      if (FEntries > 0 || FVariable->ContainsFuzzySet(TFuzzySet::GetName()) == self)
        FVariable->Remove(self);
    });
  }
  FVariable.Set(std::move(next));  // which may be the end of the old variable
  const Ref<IFuzzyVariable> heldNext = HoldForeignVariable();
  if (FVariable && TFuzzySet::GetDefined()) first.Run([&] { FVariable->Add(self); });
  if (FVariable) FParser = FVariable->GetParser();
  first.Rethrow();
}

Ref<IFuzzyParser> TIFuzzySet::GetParser() { return Query<IFuzzyParser>(FParser.Get()); }

TFzyFloat TIFuzzySet::GetXMaximum() {
  const TFuzzyCurve points = GetValues()->Points();
  return FVariable || points.empty() ? GetXRange(0) : points.back().X;
}

TFzyFloat TIFuzzySet::GetXMinimum() {
  const TFuzzyCurve points = GetValues()->Points();
  return FVariable || points.empty() ? GetXRange(1) : points.front().X;
}

TFzyFloat TIFuzzySet::GetXRange(int index) const {
  if (!FVariable || (index != 0 && index != 1)) return TFuzzySet::GetXRange(index);
  const Ref<IFuzzyVariable> held = HoldForeignVariable();
  return index == 0 ? FVariable->GetMaximum() : FVariable->GetMinimum();
}

TFzyFloat TIFuzzySet::EqualityThreshold() const {
  const Ref<IFuzzyVariable> held = HoldForeignVariable();
  return FVariable ? FVariable->GetThreshold() : 0;
}

namespace {

const TFuzzyPoint& PointOf(const TFuzzySetValues& values, int index) {
  if (index < 0 || index >= values.GetCount()) RaiseFuzzyIndex(index);
  return values.Points()[static_cast<std::size_t>(index)];
}

}  // namespace

TFzyFloat TIFuzzySet::GetXValues(int index) { return PointOf(*GetValues(), index).X; }

TFzyFloat TIFuzzySet::GetYValues(int index) { return PointOf(*GetValues(), index).Y; }

void TIFuzzySet::SetXValues(int index, TFzyFloat value) {
  GetValues()->GetItem(index)->SetX(value);
}

void TIFuzzySet::SetYValues(int index, TFzyFloat value) {
  GetValues()->GetItem(index)->SetY(value);
}

TString TIFuzzySet::ToString() const {
  const Ref<IFuzzyParser> parser = Query<IFuzzyParser>(FParser.Get());
  if (!parser) return TFuzzySet::ToString();
  const TBorrowed<IFuzzySet> self(const_cast<TIFuzzySet*>(this));
  return parser->PrettyPrint(self, false);
}

// Notification

void TIFuzzySet::UpdateFuzzySetValue(TFuzzySetValue* value) {
  ChangePoints([&] { TFuzzySet::UpdateFuzzySetValue(value); });
}

void TIFuzzySet::UpdateFuzzySetValues() {
  ChangePoints([&] { TFuzzySet::UpdateFuzzySetValues(); });
}

void TIFuzzySet::PointsLoaded() {
  const TPin self(this);
  TFirstException first;
  if (FEntries > 0 && FVariable && !(FVariable->ContainsFuzzySet(TFuzzySet::GetName()) == this))
    first.Run([this] { Refile([] {}); });
  first.Run([this] { ChangePoints([this] { TFuzzySet::PointsLoaded(); }); });
  first.Rethrow();
}

template <class Change>
void TIFuzzySet::ChangePoints(Change change) {
  const TPin self(this);
  TFirstException first;
  first.Run(change);
  if (FVariable && !FVariable.IsBorrowed()) {
    const Ref<IFuzzyVariable> held = HoldForeignVariable();
    first.Run([this] { FVariable->FuzzySetChanged(TBorrowed<IFuzzySet>(this)); });
  }
  first.Rethrow();
}

// Assignment and copies

void TIFuzzySet::Assign(const Ref<IInterface>& value) {
  const TPin self(this);
  const Ref<IFuzzySet> set = Query<IFuzzySet>(value.Get());
  if (!set || set == this) return;
  const detail::TOperand source(set, "Assign");
  detail::TPointWriter points(*GetValues());
  for (const TFuzzyPoint& point : source.Curve().Points) points.Check(point);
  TIFuzzySet* own = detail::OwnSet(set.Get());
  TFirstException first;
  first.Run([&] { own ? SetVariable(own->FVariable.Get()) : SetVariable(set->GetVariable()); });
  first.Run([&] { SetSetType(set->GetSetType()); });
  StoreInflectionPoint(set->GetInflectionPoint());
  first.Run([&] { GetValues()->AssignValues(set); });
  SetExpression(set->GetExpression());
  FParser = own ? own->FParser : set->GetParser();
  first.Rethrow();
}

void TIFuzzySet::DoAssign(TFuzzySet* source) {
  TFirstException first;
  if (auto* own = dynamic_cast<TIFuzzySet*>(source)) {
    first.Run([&] { SetVariable(own->FVariable.Get()); });
    FParser = own->FParser;
  }
  const TFuzzySet& other = *source;
  const auto assign = [&] { TFuzzySet::DoAssign(source); };
  first.Run([&] { other.GetName() == TFuzzySet::GetName() ? assign() : Refile(assign); });
  first.Rethrow();
}

Ref<IInterface> TIFuzzySet::Clone() {
  const TPin self(this);
  Ref<TIFuzzySet> copy = Create(FVariable.Get(), TFuzzySet::GetName(), GetClass());
  copy->Assign(this);
  return copy;
}

Ref<IFuzzySet> TIFuzzySet::Clone(const Ref<IFuzzyVariable>& variable) {
  const TPin self(this);
  Ref<TIFuzzySet> copy = Create(variable, TFuzzySet::GetName(), GetClass());
  copy->AssignValues(TBorrowed<IFuzzySet>(this));
  return copy;
}

}  // namespace fzy
