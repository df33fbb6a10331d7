#include "fuzzylogic/interfaces/IFuzzyVariable.h"

#include <algorithm>

#include "fuzzylogic/framework/Properties.h"
#include "fuzzylogic/model/detail/Conjunction.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"
#include "fuzzylogic/vocabulary/FuzzyTypeNames.h"

namespace fzy {

TIFuzzyVariableClass TIFuzzyVariable::Class() {
  static constexpr TIFuzzyVariableDescriptor descriptor{"TIFuzzyVariable",
                                                        [] { return new TIFuzzyVariable; }};
  return &descriptor;
}

Ref<TIFuzzyVariable> TIFuzzyVariable::Create(const TString& name,
                                             TIFuzzyVariableClass variableClass) {
  TIFuzzyVariable* bare = variableClass->New();
  Ref<TIFuzzyVariable> variable(bare);
  try {
    bare->FName = name;
    bare->FItems = bare->CreateItems();
  } catch (...) {
    variable.Detach();  // without a table a release ends nothing
    delete bare;
    throw;
  }
  variable->FRefCount -= IgnoreRelease;
  return variable;
}

TIFuzzyVariable::~TIFuzzyVariable() {
  if (FItems) FItems->Free();
}

HResult TIFuzzyVariable::QueryInterface(const TGuid& id, void** result) {
  *result = FindInterface(id, static_cast<IFuzzyVariable*>(this), static_cast<ICloneable*>(this),
                          static_cast<IInterface*>(this));
  if (!*result) return E_NoInterface;
  AddRef();
  return S_Ok;
}

std::int32_t TIFuzzyVariable::Release() noexcept {
  // Asked before the reference goes: after it another thread may end the variable.
  const std::int32_t sets = FItems ? FItems->GetCount() : 0;
  const std::int32_t count = --FRefCount;
  if (count >= IgnoreRelease) return count - IgnoreRelease;
  if (count > 0) {
    if (count != sets) return count;
    FRefCount += IgnoreRelease;
    try {
      FItems->Clear();
    } catch (...) {  // NOLINT(bugprone-empty-catch): who drops a reference expects no exception
    }
    if ((FRefCount -= IgnoreRelease) > 0) return count;
  }
  FreeUnheld();
  return count;
}

/// The table stays until the destructor, because operations that are still running may ask for it.
void TIFuzzyVariable::Leave() {
  TFirstException first;
  first.Run([this] { SetParser(nullptr); });
  FOnChange = nullptr;
  FOnVariableChange = nullptr;
  FOnFuzzySetChange = nullptr;
  FRefCount += IgnoreRelease;
  FItems->BeginUpdate();  // never ended: nobody is told of the end of the table
  first.Run([this] { FItems->Clear(); });
  FItems->FVariable = nullptr;
  first.Rethrow();
}

// Properties

void TIFuzzyVariable::SetName(const TString& value) {
  if (value == FName) return;
  FName = value;
  Changed();
}

void TIFuzzyVariable::SetMinimum(TFzyFloat value) {
  RequireFinite(value, "SetMinimum");
  if (value == FMinimum) return;
  const TPin self(this);
  FMinimum = value;
  TFirstException first;
  if (FMinimum > FMaximum) first.Run([this] { SetMaximum(FMinimum); });
  first.Run([this] { Changed(); });
  first.Rethrow();
}

void TIFuzzyVariable::SetMaximum(TFzyFloat value) {
  RequireFinite(value, "SetMaximum");
  if (value == FMaximum) return;
  const TPin self(this);
  FMaximum = value;
  TFirstException first;
  if (FMinimum > FMaximum) first.Run([this] { SetMinimum(FMaximum); });
  first.Run([this] { Changed(); });
  first.Rethrow();
}

void TIFuzzyVariable::SetThreshold(TFzyFloat value) {
  RequireNumber(value, "SetThreshold");
  FThreshold = std::clamp(value, 0.0, 1.0);
}

void TIFuzzyVariable::SetNumFunctionValues(int value) {
  if (value == FNumFunctionValues) return;
  FNumFunctionValues = value;
  Changed();
}

Ref<IFuzzyParser> TIFuzzyVariable::GetParser() { return Query<IFuzzyParser>(FParser.Get()); }

void TIFuzzyVariable::SetParser(const Ref<IFuzzyParser>& value) {
  const TPin self(this);
  FParser = value;
  for (const Ref<IFuzzySet>& set : FItems->GetValues()) set->SetParser(FParser);
}

void TIFuzzyVariable::DefineProperties(TFiler& filer) {
  TIFuzzyVariablePersistent::DefineProperties(filer);
  filer.DefineField("Comment", FComment);
  filer.DefineField("DefuzzificationMethod", FDefuzzificationMethod);
  filer.Define(
      "Maximum", [this] { return FMaximum; },
      [this](TFzyFloat value) {
        RequireFinite(value, "SetMaximum");
        FMaximum = value;
        FMinimum = std::min(FMinimum, value);
      });
  filer.Define(
      "Minimum", [this] { return FMinimum; },
      [this](TFzyFloat value) {
        RequireFinite(value, "SetMinimum");
        FMinimum = value;
        FMaximum = std::max(FMaximum, value);
      });
  filer.DefineField("Name", FName);
  filer.DefineField("Units", FUnits);
  filer.DefineField("NumFunctionValues", FNumFunctionValues, 7);
  if (FParser && !GetParserComponent()) {
    filer.DefineIgnored("Parser");
  } else {
    filer.DefineLink(
        "Parser", [this] { return GetParserComponent(); },
        [this](TComponent* value) { SetParserComponent(value); });
  }
  filer.DefineObject("Items", *FItems);
  filer.DefineField("Tag", FTag);
  filer.Define(
      "Threshold", [this] { return FThreshold; }, [this](TFzyFloat value) { SetThreshold(value); });
}

TComponent* TIFuzzyVariable::GetParserComponent() const {
  const Ref<IComponentReference> reference = Query<IComponentReference>(FParser.Get());
  return reference ? reference->GetComponent() : nullptr;
}

void TIFuzzyVariable::SetParserComponent(TComponent* component) {
  void* parser = nullptr;
  if (component && component->QueryInterface(IFuzzyParser::Id, &parser) != S_Ok)
    throw EIntfCastError(SIntfCastError);
  const Ref<IFuzzyParser> before = FParser;
  FParser = Ref<IFuzzyParser>::Attach(static_cast<IFuzzyParser*>(parser));
  // Sets that were given one of their own keep it.
  for (const Ref<IFuzzySet>& set : FItems->GetValues()) {
    if (set->GetParser() == before) set->SetParser(FParser);
  }
}

// The sets

void TIFuzzyVariable::SetItems(TIFuzzySets* value) {
  const TPin self(this);
  FItems->Assign(value);
}

void TIFuzzyVariable::Add(const Ref<IFuzzySet>& fuzzySet) {
  const TPin self(this);
  FItems->Add(fuzzySet);
}

Ref<IFuzzySet> TIFuzzyVariable::Add(const TString& name) {
  const TPin self(this);
  return FItems->Add(name);
}

void TIFuzzyVariable::Remove(const Ref<IFuzzySet>& fuzzySet) {
  const TPin self(this);
  FItems->Remove(fuzzySet);
}

void TIFuzzyVariable::Clear() {
  const TPin self(this);
  FItems->Clear();
}

void TIFuzzyVariable::AssignFuzzySets(const Ref<IFuzzyVariable>& source) {
  const TPin self(this);
  FItems->AssignFuzzySets(source);
}

void TIFuzzyVariable::EndUpdate() {
  const TPin self(this);
  FItems->EndUpdate();
}

// Events

void TIFuzzyVariable::Changed() {
  const TPin self(this);
  TFirstException first;
  first.Run([this] { FireEvent(FOnChange, this); });
  first.Run([this] { FireEvent(FOnVariableChange, TBorrowed<IFuzzyVariable>(this)); });
  first.Rethrow();
}

void TIFuzzyVariable::FireSetEvent(const TEvent<TIFuzzySetEvent>& event,
                                   const Ref<IFuzzySet>& fuzzySet) {
  FireEvent(event, TBorrowed<IFuzzyVariable>(this), fuzzySet);
}

void TIFuzzyVariable::NewFuzzySet(const Ref<IFuzzySet>& fuzzySet) {
  const TPin self(this);
  TFirstException first;
  first.Run([&] { FireSetEvent(FOnFuzzySetAdded, fuzzySet); });
  first.Run([this] { Changed(); });
  first.Rethrow();
}

void TIFuzzyVariable::RemoveFuzzySet(const Ref<IFuzzySet>& fuzzySet) {
  const TPin self(this);
  TFirstException first;
  first.Run([&] { FireSetEvent(FOnFuzzySetDeleted, fuzzySet); });
  first.Run([this] { Changed(); });
  first.Rethrow();
}

void TIFuzzyVariable::ClearFuzzySets() { Changed(); }

void TIFuzzyVariable::FuzzySetChanged(const Ref<IFuzzySet>& fuzzySet) {
  const TPin self(this);
  FireSetEvent(FOnFuzzySetChange, fuzzySet);
}

// The variable as a whole

void TIFuzzyVariable::TakeOver(IFuzzyVariable& source) {
  const TPin self(this);
  const TFzyFloat minimum = source.GetMinimum();
  const TFzyFloat maximum = source.GetMaximum();
  for (const TFzyFloat bound : {minimum, maximum}) RequireFinite(bound, "Assign");
  FDefuzzificationMethod = source.GetDefuzzificationMethod();
  FMinimum = minimum;
  FMaximum = std::max(minimum, maximum);
  FName = source.GetName();
  FUnits = source.GetUnits();
  FNumFunctionValues = source.GetNumFunctionValues();
  FTag = source.GetTag();
  FParser = source.GetParser();
  TFirstException first;
  first.Run([&] { FItems->AssignFuzzySets(TBorrowed<IFuzzyVariable>(&source)); });
  first.Run([this] { Changed(); });
  first.Rethrow();
}

void TIFuzzyVariable::Assign(TPersistent* source) {
  auto* variable = dynamic_cast<TIFuzzyVariable*>(source);
  if (!variable) return TIFuzzyVariablePersistent::Assign(source);
  if (variable == this) return;
  const TPin pinned(variable);
  TakeOver(*variable);
}

void TIFuzzyVariable::Assign(const Ref<IInterface>& value) {
  if (value == static_cast<IInterface*>(this)) return;
  const Ref<IFuzzyVariable> variable = Query<IFuzzyVariable>(value.Get());
  if (variable && !(variable == this)) TakeOver(*variable);
}

Ref<IInterface> TIFuzzyVariable::Clone() {
  const TPin self(this);
  Ref<TIFuzzyVariable> copy = Create(FName, GetClass());
  copy->Assign(static_cast<TPersistent*>(this));
  return copy;
}

bool TIFuzzyVariable::Equals(const Ref<IInterface>& value) {
  const Ref<IFuzzyVariable> other = Query<IFuzzyVariable>(value.Get());
  return other && FName == other->GetName() && FMaximum == other->GetMaximum() &&
         FMinimum == other->GetMinimum() && FUnits == other->GetUnits() &&
         FItems->EqualsSets(other);
}

TString TIFuzzyVariable::ToString() const {
  const Ref<IFuzzyParser> parser = Query<IFuzzyParser>(FParser.Get());
  if (!parser) return FName;
  return parser->PrettyPrint(TBorrowed<IFuzzyVariable>(const_cast<TIFuzzyVariable*>(this)));
}

// Rules

TFzyFloat TIFuzzyVariable::GetCorrelationStrength(std::span<const Ref<IFuzzySet>> premises,
                                                  std::span<const Ref<IFuzzySet>> matchings) {
  return detail::ConjunctionStrength(premises, matchings);
}

Ref<IFuzzySet> TIFuzzyVariable::AssertRule(TFzyFloat correlationStrength,
                                           const Ref<IFuzzySet>& newEvidence,
                                           const Ref<IFuzzySet>& oldEvidence) {
  RequireNumber(correlationStrength, "AssertRule");
  if (!newEvidence) throw EFzyException(SFzySetMissing, {TString("AssertRule")});
  if (correlationStrength < FThreshold) return nullptr;
  // A handler may reset the reference that was given.
  // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
  const Ref<IFuzzySet> evidence = oldEvidence;
  Ref<IFuzzySet> conclusion = Query<IFuzzySet>(newEvidence->Clone().Get());
  if (conclusion) conclusion = conclusion->Correlate(correlationStrength, fcmMinimum);
  if (!conclusion || !evidence) return conclusion;
  return evidence->Infer(conclusion, fimMinMax, false);
}

Ref<IFuzzySet> TIFuzzyVariable::AssertRule(const Ref<IFuzzySet>& premise,
                                           const Ref<IFuzzySet>& newEvidence,
                                           const Ref<IFuzzySet>& matching,
                                           const Ref<IFuzzySet>& oldEvidence) {
  if (!premise) throw EFzyException(SFzySetMissing, {TString("AssertRule")});
  return AssertRule(premise->GetCorrelationStrength(matching), newEvidence, oldEvidence);
}

Ref<IFuzzySet> TIFuzzyVariable::AssertRule(std::span<const Ref<IFuzzySet>> premises,
                                           std::span<const Ref<IFuzzySet>> matchings,
                                           const Ref<IFuzzySet>& newEvidence,
                                           const Ref<IFuzzySet>& oldEvidence) {
  return AssertRule(GetCorrelationStrength(premises, matchings), newEvidence, oldEvidence);
}

}  // namespace fzy
