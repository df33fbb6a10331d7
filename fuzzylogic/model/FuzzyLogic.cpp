#include "fuzzylogic/model/FuzzyLogic.h"

#include <array>
#include <new>
#include <numeric>

#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/framework/FirstException.h"
#include "fuzzylogic/framework/Properties.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy {

TComponentClass TFuzzyLogic::Class() {
  static constexpr TComponentDescriptor descriptor{
      "TFuzzyLogic", [](TComponent* owner) -> TComponent* { return new TFuzzyLogic(owner); }};
  return &descriptor;
}

TFuzzyVariablesClass TFuzzyLogic::ItemsClass() {
  static constexpr TFuzzyVariablesDescriptor descriptor{
      "TFuzzyVariables", [](TFuzzyLogic* fuzzy) { return new TFuzzyVariables(fuzzy); }};
  return &descriptor;
}

TFuzzyLogic::~TFuzzyLogic() {
  Destroying();
  Dismantle();
  if (!FItems) return;
  FItems->FFuzzy = nullptr;
  FItems->Free();
}

void TFuzzyLogic::Leave() {
  TCustomFuzzyLogic::Leave();
  Dismantle();
}

/// Detaches the handlers, then lets the model go. The collection itself stays until the destructor,
/// because operations that are still running may ask for it.
void TFuzzyLogic::Dismantle() noexcept {
  SetOnChange(nullptr);
  FOnFuzzySetChange = FOnFuzzySetAdded = FOnFuzzySetDeleted = nullptr;
  FOnVariableChange = FOnVariableAdded = FOnVariableDeleted = nullptr;
  if (!FItems) return;
  try {
    FItems->Leave();
  } catch (...) {  // NOLINT(bugprone-empty-catch): of a descendant; the model goes all the same
  }
}

TFuzzyVariables* TFuzzyLogic::CreateVariables() { return FItemsClass->New(this); }

TFuzzyVariables* TFuzzyLogic::GetItems() {
  if (!FItems) FItems = CreateVariables();
  return FItems;
}

void TFuzzyLogic::SetItems(TFuzzyVariables* value) {
  const TPin self(this);
  GetItems()->Assign(value);
}

void TFuzzyLogic::DefineProperties(TFiler& filer) {
  TCustomFuzzyLogic::DefineProperties(filer);
  filer.Define(
      "NeedsUpdate", [this] { return NeedsUpdate(); },
      [this](bool value) { SetNeedsUpdate(value); }, false);
  filer.DefineObject("Items", *GetItems());
}

/// A model that no parser can write is stored all the same: it stands in the variables.
void TFuzzyLogic::RefreshText() {
  try {
    GetStrings();
  } catch (const EException&) {  // NOLINT(bugprone-empty-catch): the text stays marked
  }
}

void TFuzzyLogic::VariablesLoaded(TFuzzyVariables* replaced) {
  const TPin self(this);
  TFirstException first;
  first.Run([&] { replaced->Free(); });
  GetItems()->TellOfEach([&](TCollectionItem* variable) {
    first.Run([&] { FireEvent(FOnVariableAdded, this, static_cast<TFuzzyVariable*>(variable)); });
  });
  first.Run([this] { FireChange(); });
  first.Rethrow();
}

void TFuzzyLogic::ThresholdChanged() {
  TCustomFuzzyLogic::ThresholdChanged();
  if (!FItems) return;
  for (TFuzzyVariable* variable : *FItems) variable->SetThreshold(GetThreshold());
}

void TFuzzyLogic::UpdateStrings() {
  TCustomFuzzyLogic::UpdateStrings();
  if (Is(csLoading)) return;
  const TPin parser(GetParser());
  Regenerate([this](TStrings& lines) {
    for (TFuzzyVariable* variable : *GetItems()) {
      RequireParser();  // it may unlink itself meanwhile
      lines.Add(GetParser()->PrettyPrint(variable));
    }
  });
}

void TFuzzyLogic::Parse() {
  if (Is(csLoading)) return;
  RequireParser();
  Rebuild([this] { GetItems()->Clear(); });
}

void TFuzzyLogic::AddAutoTerms(TFuzzyVariable* fuzzyVariable) {
  const TPin self(this);
  const TPin pinned(fuzzyVariable);
  const TFzyFloat min = fuzzyVariable->GetMinimum();
  const TFzyFloat max = fuzzyVariable->GetMaximum();
  std::array<TOwned<TFuzzySet>, 3> added;
  const auto add = [&](std::size_t index, const TString& name, auto&& shape) {
    if (fuzzyVariable->IsFreed() || fuzzyVariable->GetItems()->IndexOf(name) >= 0) return;
    TString expression = name;
    TOwned<TFuzzySet>& set = added[index];
    set = TOwned<TFuzzySet>(fuzzyVariable->GetItems()->Add(name));
    if (!set) return;
    shape(*set);
    set->SetExpression(std::move(expression));
  };
  const auto line = [&](TFzyFloat from, TFzyFloat to) {
    return [=](TFuzzySet& set) {
      set.GetValues()->Add(min, from);
      set.GetValues()->Add(max, to);
    };
  };
  TFirstException first;
  first.Run([&] { add(0, SLowFuzzyTerm, line(1, 0)); });
  first.Run([&] {
    add(1, SMediumFuzzyTerm, [=](TFuzzySet& set) {
      set.CreateTriangleFunctionValues(min, std::midpoint(min, max), max);
    });
  });
  first.Run([&] { add(2, SHighFuzzyTerm, line(0, 1)); });
  const auto keep = [&] {
    for (TOwned<TFuzzySet>& set : added) set.Release();
  };
  try {
    first.Rethrow();
  } catch (const std::bad_alloc&) {
    throw;  // they go again
  } catch (...) {
    keep();
    throw;
  }
  keep();
}

void TFuzzyLogic::NotifyVariable(TFuzzyVariable* fuzzyVariable, TCollectionNotification action) {
  const TPin self(this);
  if (action == cnExtracting) FireEvent(FOnVariableDeleted, this, fuzzyVariable);
  if (action != cnAdded) return;
  TFirstException first;
  fuzzyVariable->SetThreshold(GetThreshold());
  first.Run([&] { FireEvent(FOnVariableAdded, this, fuzzyVariable); });
  // A handler may have taken the variable out again.
  if (GetAutoTerms() && fuzzyVariable->GetFuzzy() == this) {
    first.Run([&] {
      try {
        AddAutoTerms(fuzzyVariable);
      } catch (const std::bad_alloc&) {
        fuzzyVariable->SetCollection(nullptr);  // without them it is none of this component's
        throw;
      }
    });
  }
  first.Rethrow();
}

void TFuzzyLogic::NotifyFuzzySet(TFuzzySet* fuzzySet, TCollectionNotification action) {
  const TPin self(this);
  if (action == cnAdded) FireEvent(FOnFuzzySetAdded, this, fuzzySet);
  if (action == cnExtracting) FireEvent(FOnFuzzySetDeleted, this, fuzzySet);
}

void TFuzzyLogic::UpdateVariable(TFuzzyVariable* fuzzyVariable) {
  const TPin self(this);
  SetNeedsUpdate(true);
  if (fuzzyVariable)
    FireEvent(FOnVariableChange, this, fuzzyVariable);
  else
    FireChange();
}

void TFuzzyLogic::UpdateFuzzySet(TFuzzySet* fuzzySet) {
  const TPin self(this);
  SetNeedsUpdate(true);
  FireEvent(FOnFuzzySetChange, this, fuzzySet);
}

}  // namespace fzy
