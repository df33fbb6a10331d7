#pragma once

#include "fuzzylogic/interfaces/FuzzyVariableTable.h"
#include "fuzzylogic/model/CustomFuzzyLogic.h"

namespace fzy {

/// The fuzzy-logic component of the counted model: holds the linguistic variables by counted
/// reference in a keyed table, gives them its threshold and automatic terms, keeps the model as
/// definition text through a linked parser, and tells the application of changes.
///
/// A variable that enters gets the threshold, then the automatic terms (when `AutoTerms` is true),
/// then this component's handlers in place of its own for sets that are added, deleted or changed;
/// then `OnVariableAdded` fires. So the automatic terms are told by the variable only. One that
/// leaves loses these handlers, then `OnVariableDeleted` fires. Neither fires when the table is
/// cleared or the component goes; the variables lose the handlers all the same. Set events have the
/// variable as sender. A variable's own `OnChange` and `OnVariableChange` are its own affair:
/// `UpdateVariable` reports such a change here.
///
/// A variable keeps the key that it was entered under when its name changes. Correlation, inference
/// and defuzzification of counted sets do not ask for the component's methods.
class TIFuzzyLogic : public TCustomFuzzyLogic {
 public:
  static TComponentClass Class();
  explicit TIFuzzyLogic(TComponent* owner = nullptr) : TCustomFuzzyLogic(owner) {}
  /// Clears the event handlers first.
  ~TIFuzzyLogic() override;
  TString ClassName() const override { return "TIFuzzyLogic"; }

  /// The variables; the table is made on first use, by `CreateVariables`.
  TFuzzyVariableTable* GetItems();
  /// Enters the variables of another table in place of those here.
  void SetItems(TFuzzyVariableTable* value);
  /// A new variable of the component's variable class, which is not entered.
  Ref<TIFuzzyVariable> NewVariable(const TString& name) const {
    return TIFuzzyVariable::Create(name, FItemClass);
  }

  const TIFuzzySetEvent& GetOnFuzzySetChange() const noexcept { return FOnFuzzySetChange; }
  void SetOnFuzzySetChange(TIFuzzySetEvent value) { FOnFuzzySetChange = std::move(value); }
  const TIFuzzySetEvent& GetOnFuzzySetAdded() const noexcept { return FOnFuzzySetAdded; }
  void SetOnFuzzySetAdded(TIFuzzySetEvent value) { FOnFuzzySetAdded = std::move(value); }
  const TIFuzzySetEvent& GetOnFuzzySetDeleted() const noexcept { return FOnFuzzySetDeleted; }
  void SetOnFuzzySetDeleted(TIFuzzySetEvent value) { FOnFuzzySetDeleted = std::move(value); }
  const TIFuzzyVariableEvent& GetOnVariableChange() const noexcept { return FOnVariableChange; }
  void SetOnVariableChange(TIFuzzyVariableEvent value) { FOnVariableChange = std::move(value); }
  const TIFuzzyVariableEvent& GetOnVariableAdded() const noexcept { return FOnVariableAdded; }
  void SetOnVariableAdded(TIFuzzyVariableEvent value) { FOnVariableAdded = std::move(value); }
  const TIFuzzyVariableEvent& GetOnVariableDeleted() const noexcept { return FOnVariableDeleted; }
  void SetOnVariableDeleted(TIFuzzyVariableEvent value) { FOnVariableDeleted = std::move(value); }

  /// The model is stored as its text, and parsed again on loading. Before it is stored the text is
  /// regenerated if it no longer shows the model, whatever has changed; that needs a linked parser,
  /// which also writes variables that have none. The text does not show thresholds of single
  /// variables: they get the component's on loading. Loading needs a linked parser, for an empty
  /// text too. `OnVariableAdded` and the parser's events fire while the form may still turn out not
  /// to load, and what their handlers raise is taken for a fault of it; then the variables of
  /// before come back, and nobody is told that the new ones go. When all is loaded, those of before
  /// go as if the table were cleared; `OnChange` does not fire.
  void DefineProperties(TFiler& filer) override;

  /// Ends the loading state and parses the text that was read.
  /// @throws as `Parse`
  void Loaded() override;
  /// Regenerates the text: one entry a variable, in the order of the table, as the variable's own
  /// parser writes it, or its name when it has none.
  void UpdateStrings() override;
  /// Clears the table and lets the parser rebuild it from the text that was assigned. After a
  /// reading error the table holds the variables that were complete before it.
  void Parse() override;

  /// Adds "low" (1 at the minimum, falling to 0 at the maximum), "medium" (a triangle over the
  /// range) and "high" (rising), each unless the variable has a set of that name, and each with its
  /// name as expression.
  virtual void AddAutoTerms(const Ref<IFuzzyVariable>& fuzzyVariable);

  // Told by the table and, through the handlers, by the variables; they fire the events.

  virtual void FuzzySetAdded(const Ref<IFuzzyVariable>& sender, const Ref<IFuzzySet>& fuzzySet);
  virtual void FuzzySetDeleted(const Ref<IFuzzyVariable>& sender, const Ref<IFuzzySet>& fuzzySet);
  virtual void VariableAdded(const Ref<IFuzzyVariable>& fuzzyVariable);
  virtual void VariableDeleted(const Ref<IFuzzyVariable>& fuzzyVariable);
  /// Without a variable: `OnChange`.
  virtual void UpdateVariable(const Ref<IFuzzyVariable>& fuzzyVariable);
  virtual void UpdateFuzzySet(const Ref<IFuzzyVariable>& sender, const Ref<IFuzzySet>& fuzzySet);

 protected:
  void ThresholdChanged() override;
  void Leave() override;
  void RefreshText() override;
  /// A new table, owned by this component.
  virtual TFuzzyVariableTable* CreateVariables() { return new TFuzzyVariableTable(this); }

  TIFuzzyVariableClass FItemClass = TIFuzzyVariable::Class();

 private:
  friend class TFuzzyVariableTable;
  struct TSetHandler;
  class TReplacedModel;
  void Unwire(IFuzzyVariable& variable) const;
  template <class Print>
  void WriteText(Print print);
  std::uint64_t Fingerprint();
  void Dismantle() noexcept;

  TEvent<TIFuzzySetEvent> FOnFuzzySetChange;
  TEvent<TIFuzzyVariableEvent> FOnVariableChange;
  TFuzzyVariableTable* FItems = nullptr;
  TEvent<TIFuzzySetEvent> FOnFuzzySetDeleted;
  TEvent<TIFuzzySetEvent> FOnFuzzySetAdded;
  TEvent<TIFuzzyVariableEvent> FOnVariableDeleted;
  TEvent<TIFuzzyVariableEvent> FOnVariableAdded;
  std::uint64_t FFingerprint = 0;  // of the model when its text was parsed or regenerated
  // Where the handlers in variables find the component; empty once it has gone, because a variable
  // that was replaced in the table keeps them.
  std::shared_ptr<TIFuzzyLogic*> FLink = std::make_shared<TIFuzzyLogic*>(this);
};

}  // namespace fzy
