#include "fuzzylogic/model/FuzzyVariable.h"

#include <algorithm>

#include "fuzzylogic/framework/FirstException.h"
#include "fuzzylogic/framework/Properties.h"
#include "fuzzylogic/framework/Strings.h"
#include "fuzzylogic/framework/UpdateBlock.h"
#include "fuzzylogic/model/FuzzyLogic.h"
#include "fuzzylogic/model/detail/Conjunction.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy {

TFuzzyVariableClass TFuzzyVariable::Class() {
  static constexpr TFuzzyVariableDescriptor descriptor{"TFuzzyVariable",
                                                       [] { return new TFuzzyVariable; }};
  return &descriptor;
}

TFuzzyVariable* TFuzzyVariable::Create(TFuzzyVariables* collection, TFuzzySetClass setClass,
                                       TFuzzyVariableClass variableClass) {
  return Create(collection, setClass, variableClass, 0);
}

/// @param room  characters that the name will take, so that naming the variable takes no memory
TFuzzyVariable* TFuzzyVariable::Create(TFuzzyVariables* collection, TFuzzySetClass setClass,
                                       TFuzzyVariableClass variableClass, std::size_t room) {
  TFuzzyVariable* variable = variableClass->New();
  const TPin pinned(variable);
  try {
    variable->FName.Reserve(room);
    variable->Build(collection, setClass);
  } catch (...) {
    // One that has joined stays: it was a handler that threw.
    if (!variable->FVariables) variable->Free();
    throw;
  }
  return variable->IsFreed() ? nullptr : variable;
}

void TFuzzyVariable::Build(TFuzzyVariables* collection, TFuzzySetClass setClass) {
  FSetClass = setClass;
  FItems = CreateItems();
  SetCollection(collection);
}

TFuzzyVariable::~TFuzzyVariable() {
  if (!FItems) return;
  FItems->FVariable = nullptr;
  FItems->Free();
}

void TFuzzyVariable::Leave() {
  TFirstException first;
  if (FItems) first.Run([this] { FItems->Leave(); });
  first.Run([this] { TGCollectionItem::Leave(); });
  first.Rethrow();
}

void TFuzzyVariable::SetCollection(TFuzzyVariables* value) {
  TCollectionItem::SetCollection(value);
}

void TFuzzyVariable::CollectionChanged() {
  FVariables = static_cast<TFuzzyVariables*>(TCollectionItem::GetCollection());
}

TFuzzyLogic* TFuzzyVariable::GetFuzzy() const noexcept {
  return FVariables ? FVariables->GetFuzzy() : nullptr;
}

TString TFuzzyVariable::GetDisplayName() const {
  return FName.empty() ? TGCollectionItem::GetDisplayName() : FName;
}

void TFuzzyVariable::SetText(TString TFuzzyVariable::*property, const TString& value) {
  if (this->*property == value) return;
  this->*property = value;
  Changed(false);
}

void TFuzzyVariable::SetName(const TString& value) {
  if (value == FName) return;
  ChangeKey([&] { FName = value; });
  Changed(false);
}

void TFuzzyVariable::SetUnits(const TString& value) { SetText(&TFuzzyVariable::FUnits, value); }

void TFuzzyVariable::SetComment(const TString& value) { SetText(&TFuzzyVariable::FComment, value); }

void TFuzzyVariable::StoreMinimum(TFzyFloat value) {
  RequireFinite(value, "SetMinimum");
  FMinimum = value;
  FMaximum = std::max(FMaximum, value);
}

void TFuzzyVariable::StoreMaximum(TFzyFloat value) {
  RequireFinite(value, "SetMaximum");
  FMaximum = value;
  FMinimum = std::min(FMinimum, value);
}

void TFuzzyVariable::SetMinimum(TFzyFloat value) {
  if (value == FMinimum) return;
  StoreMinimum(value);
  Changed(false);
}

void TFuzzyVariable::SetMaximum(TFzyFloat value) {
  if (value == FMaximum) return;
  StoreMaximum(value);
  Changed(false);
}

void TFuzzyVariable::SetThreshold(TFzyFloat value) {
  RequireNumber(value, "SetThreshold");
  FThreshold = std::clamp(value, 0.0, 1.0);
}

void TFuzzyVariable::SetItemIndex(int value) {
  if (value == FItemIndex) return;
  RequireItemIndex(value);
  FItemIndex = value;
  Changed(false);
}

void TFuzzyVariable::RequireItemIndex(int value) const {
  if (value >= FItems->GetCount()) RaiseFuzzyIndex(value);
}

void TFuzzyVariable::SetItems(TFuzzySets* value) {
  const TPin self(this);
  FItems->Assign(value);
}

void TFuzzyVariable::Assign(TPersistent* source) {
  auto* variable = dynamic_cast<TFuzzyVariable*>(source);
  if (!variable) return TGCollectionItem::Assign(source);
  if (variable == this) return;
  const TPin self(this);
  const TPin pinned(variable);
  TFuzzySets::TRoom room = FItems->RoomFor(*variable->FItems);
  CopyValues(*variable, *this);
  FItemIndex = variable->FItemIndex;
  FItems->Replace(*variable->FItems, std::move(room));
}

void TFuzzyVariable::DefineProperties(TFiler& filer) {
  TGCollectionItem::DefineProperties(filer);
  filer
      .Define(
          "ItemIndex", [this] { return FItemIndex; },
          [this](int value) {
            RequireItemIndex(value);
            FItemIndex = value;
          })
      .IsLate = true;
  filer.Define(
      "Maximum", [this] { return FMaximum; }, [this](TFzyFloat value) { StoreMaximum(value); });
  filer.Define(
      "Minimum", [this] { return FMinimum; }, [this](TFzyFloat value) { StoreMinimum(value); });
  filer.DefineObject("Items", *FItems);
  filer.Define(
      "Name", [this] { return FName; },
      [this](TString value) { StoreKey(FName, std::move(value)); });
  filer.DefineField("Units", FUnits);
  filer.DefineField("Comment", FComment);
  filer.Define(
      "Threshold", [this] { return FThreshold; }, [this](TFzyFloat value) { SetThreshold(value); });
}

void TFuzzyVariable::AssignTo(TPersistent* dest) {
  auto* list = dynamic_cast<TStrings*>(dest);
  if (!list) return TGCollectionItem::AssignTo(dest);
  TUpdateBlock block(*list);
  list->Clear();
  for (TFuzzySet* set : *FItems) list->AddObject(set->GetName(), set);
  block.Close();
}

void TFuzzyVariable::PullItemIndexBack() noexcept {
  FItemIndex = std::min(FItemIndex, FItems->GetCount() - 1);
}

void TFuzzyVariable::Notify(TFuzzySet* fuzzySet, TCollectionNotification action) {
  const TPin self(this);
  if (FVariables)
    FVariables->NotifyFuzzySet(fuzzySet, action);
  else
    Changed(false);
}

void TFuzzyVariable::Update(TFuzzySet* fuzzySet) {
  const TPin self(this);
  PullItemIndexBack();
  if (fuzzySet && FVariables)
    FVariables->UpdateFuzzySet(fuzzySet);
  else
    Changed(false);
}

// Rules

TFzyFloat TFuzzyVariable::GetCorrelationStrength(std::span<TFuzzySet* const> premises,
                                                 std::span<TFuzzySet* const> matchings) const {
  return detail::ConjunctionStrength(premises, matchings);
}

TFuzzySet* TFuzzyVariable::AssertRule(TFzyFloat correlationStrength, TFuzzySet* newEvidence,
                                      TFuzzySet* oldEvidence) {
  RequireNumber(correlationStrength, "AssertRule");
  if (!newEvidence) throw EFzyException(SFzySetMissing, {TString("AssertRule")});
  if (correlationStrength < FThreshold) return nullptr;
  const TPin self(this);
  const TPin pinned(oldEvidence);
  TOwned<TFuzzySet> conclusion(newEvidence->Clone());
  if (conclusion) conclusion->Correlate(correlationStrength);
  if (!conclusion || !oldEvidence) return conclusion.Release();
  TOwned<TFuzzySet> evidence(oldEvidence->Infer(conclusion.Get(), false));
  if (conclusion) conclusion->Free();
  return evidence.Release();
}

TFuzzySet* TFuzzyVariable::AssertRule(TFuzzySet* premise, TFuzzySet* newEvidence,
                                      TFuzzySet* matching, TFuzzySet* oldEvidence) {
  if (!premise) throw EFzyException(SFzySetMissing, {TString("AssertRule")});
  return AssertRule(premise->GetCorrelationStrength(matching), newEvidence, oldEvidence);
}

TFuzzySet* TFuzzyVariable::AssertRule(std::span<TFuzzySet* const> premises,
                                      std::span<TFuzzySet* const> matchings, TFuzzySet* newEvidence,
                                      TFuzzySet* oldEvidence) {
  return AssertRule(GetCorrelationStrength(premises, matchings), newEvidence, oldEvidence);
}

TFuzzySet* TFuzzyVariable::AssertRule(std::initializer_list<TFuzzySet*> premises,
                                      std::initializer_list<TFuzzySet*> matchings,
                                      TFuzzySet* newEvidence, TFuzzySet* oldEvidence) {
  return AssertRule(std::span(premises.begin(), premises.size()),
                    std::span(matchings.begin(), matchings.size()), newEvidence, oldEvidence);
}

// What sets ask

TFuzzyCorrelationMethod TFuzzyVariable::GetCorrelationMethod() const {
  return GetFuzzy() ? GetFuzzy()->GetCorrelationMethod() : fcmMinimum;
}

TFuzzyInferenceMethod TFuzzyVariable::GetInferenceMethod() const {
  return GetFuzzy() ? GetFuzzy()->GetInferenceMethod() : fimMinMax;
}

TDefuzzificationMethod TFuzzyVariable::GetDefuzzificationMethod() const {
  return GetFuzzy() ? GetFuzzy()->GetDefuzzificationMethod() : dmCenterOfGravity;
}

int TFuzzyVariable::GetNumFunctionValues() const {
  return GetFuzzy() ? GetFuzzy()->GetNumFunctionValues() : 7;
}

bool TFuzzyVariable::IsDesigning() const { return GetFuzzy() && GetFuzzy()->Is(csDesigning); }

std::optional<TString> TFuzzyVariable::Show(const TFuzzySet& fuzzySet) const {
  const TPin parser(GetParser());
  return GetParser() ? std::optional(GetParser()->PrettyPrint(&fuzzySet, false)) : std::nullopt;
}

TString TFuzzyVariable::ToString() const {
  const TPin parser(GetParser());
  return GetParser() ? GetParser()->PrettyPrint(this) : GetDisplayName();
}

TFuzzyTextParser* TFuzzyVariable::GetParser() const noexcept {
  return GetFuzzy() ? GetFuzzy()->GetParser() : nullptr;
}

}  // namespace fzy
