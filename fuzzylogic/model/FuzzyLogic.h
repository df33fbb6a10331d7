#pragma once

#include "fuzzylogic/model/CustomFuzzyLogic.h"
#include "fuzzylogic/model/FuzzyVariables.h"

namespace fzy {

/// A class of variable collections, as a component is given it.
struct TFuzzyVariablesDescriptor {
  const char* Name;
  /// Makes a collection owned by the component.
  TFuzzyVariables* (*New)(TFuzzyLogic* fuzzy);
};
using TFuzzyVariablesClass = const TFuzzyVariablesDescriptor*;

/// The fuzzy-logic component: owns the linguistic variables, holds their settings, keeps the model
/// as definition text through a linked parser, and tells the application of every change.
///
/// Events, all with the component as sender; additions and removals are told even while an update
/// block is open, changes once it closes:
/// - a variable joins: its threshold is set, `OnVariableAdded` fires, then the automatic terms are
///   added (when `AutoTerms` is true), then `OnChange` for the list; a variable leaves:
///   `OnVariableDeleted` while it is still there, `OnChange` afterwards;
/// - a set joins or leaves a variable: `OnFuzzySetAdded` or `OnFuzzySetDeleted`, then
///   `OnVariableChange`;
/// - a variable or its list of sets changes: `OnVariableChange`; a set changes: `OnFuzzySetChange`.
///
/// A handler may read and change the model, replace handlers, free any object (the component by
/// `Free()` when it lives on the heap), parse again, or throw: the change stays made, the next
/// notification still arrives, and the exception goes on to the caller of the operation.
class TFuzzyLogic : public TCustomFuzzyLogic {
 public:
  static TComponentClass Class();
  static TFuzzyVariablesClass ItemsClass();

  explicit TFuzzyLogic(TComponent* owner = nullptr) : TCustomFuzzyLogic(owner) {}
  /// Clears the event handlers first, so that freeing the model fires no events.
  ~TFuzzyLogic() override;
  TString ClassName() const override { return "TFuzzyLogic"; }

  /// The variables; the collection is made on first use, by `CreateVariables`.
  TFuzzyVariables* GetItems();
  /// Copies the variables of another list.
  void SetItems(TFuzzyVariables* value);

  const TFuzzySetEvent& GetOnFuzzySetChange() const noexcept { return FOnFuzzySetChange; }
  void SetOnFuzzySetChange(TFuzzySetEvent value) { FOnFuzzySetChange = std::move(value); }
  const TFuzzySetEvent& GetOnFuzzySetAdded() const noexcept { return FOnFuzzySetAdded; }
  void SetOnFuzzySetAdded(TFuzzySetEvent value) { FOnFuzzySetAdded = std::move(value); }
  const TFuzzySetEvent& GetOnFuzzySetDeleted() const noexcept { return FOnFuzzySetDeleted; }
  void SetOnFuzzySetDeleted(TFuzzySetEvent value) { FOnFuzzySetDeleted = std::move(value); }
  const TFuzzyVariableEvent& GetOnVariableChange() const noexcept { return FOnVariableChange; }
  void SetOnVariableChange(TFuzzyVariableEvent value) { FOnVariableChange = std::move(value); }
  const TFuzzyVariableEvent& GetOnVariableAdded() const noexcept { return FOnVariableAdded; }
  void SetOnVariableAdded(TFuzzyVariableEvent value) { FOnVariableAdded = std::move(value); }
  const TFuzzyVariableEvent& GetOnVariableDeleted() const noexcept { return FOnVariableDeleted; }
  void SetOnVariableDeleted(TFuzzyVariableEvent value) { FOnVariableDeleted = std::move(value); }

  /// The variables are stored with all that is in them, and the text beside them as it stands; it
  /// is brought up to date before, where a linked parser can do that, else a mark says that it is
  /// not. Loading parses nothing, adds no automatic terms and gives nobody the threshold. It ends
  /// with `OnFuzzySetDeleted` and `OnVariableDeleted` for the model that was replaced (which has
  /// left the component already), `OnVariableAdded` for each new variable, and `OnChange`.
  void DefineProperties(TFiler& filer) override;

  /// Regenerates the text: one entry a variable, in order, as the parser prints it.
  void UpdateStrings() override;
  /// Frees all variables and lets the parser rebuild them from the text that was assigned (whatever
  /// handlers do to `Strings` while the old variables go). After a reading error the model holds
  /// what was built before it.
  void Parse() override;

  /// Adds "low" (1 at the minimum, falling to 0 at the maximum), "medium" (a triangle over the
  /// range) and "high" (rising), each unless the variable has a set of that name.
  virtual void AddAutoTerms(TFuzzyVariable* fuzzyVariable);

  // Told by the collections; they fire the events.

  virtual void NotifyFuzzySet(TFuzzySet* fuzzySet, TCollectionNotification action);
  virtual void NotifyVariable(TFuzzyVariable* fuzzyVariable, TCollectionNotification action);
  /// With nothing: the whole list of variables.
  virtual void UpdateVariable(TFuzzyVariable* fuzzyVariable);
  virtual void UpdateFuzzySet(TFuzzySet* fuzzySet);

 protected:
  void ThresholdChanged() override;
  void Leave() override;
  void RefreshText() override;
  /// A new collection of the class `FItemsClass`, owned by this component.
  virtual TFuzzyVariables* CreateVariables();

  TFuzzyVariablesClass FItemsClass = ItemsClass();

 private:
  friend class TFuzzyVariables;
  void Dismantle() noexcept;
  void VariablesLoaded(TFuzzyVariables* replaced);

  TEvent<TFuzzySetEvent> FOnFuzzySetChange;
  TEvent<TFuzzyVariableEvent> FOnVariableChange;
  TFuzzyVariables* FItems = nullptr;
  TEvent<TFuzzyVariableEvent> FOnVariableDeleted;
  TEvent<TFuzzyVariableEvent> FOnVariableAdded;
  TEvent<TFuzzySetEvent> FOnFuzzySetDeleted;
  TEvent<TFuzzySetEvent> FOnFuzzySetAdded;
};

}  // namespace fzy
