#pragma once

#include <memory>

#include "fuzzylogic/model/FuzzyVariable.h"

namespace fzy {

/// The linguistic variables of a component: an ordered list, found by name. It owns the variables
/// and reports every addition, removal and change, theirs and their sets', to the component.
class TFuzzyVariables : public TGCollection {
 public:
  /// A list owned by `fuzzy`, or a free one, of variables of the given class, which create sets of
  /// the given class.
  explicit TFuzzyVariables(TFuzzyLogic* fuzzy = nullptr,
                           TFuzzyVariableClass variableClass = TFuzzyVariable::Class(),
                           TFuzzySetClass setClass = TFuzzySet::Class()) noexcept
      : FFuzzy(fuzzy), FVariableClass(variableClass), FSetClass(setClass) {}
  TString ClassName() const override { return "TFuzzyVariables"; }

  TPersistent* GetOwner() const override;
  TFuzzyLogic* GetFuzzy() const noexcept { return FFuzzy; }

  /// Appends a new variable. Nothing is returned when a handler freed it at once.
  TFuzzyVariable* Add();
  TFuzzyVariable* Add(const TString& name);
  /// Appends a new variable and moves it to `index`.
  /// @throws EFzyException for an index outside the list (the end included)
  TFuzzyVariable* Insert(int index);

  /// @throws EFzyException for an index outside the list
  TFuzzyVariable* GetItem(int index) const;
  TFuzzyVariable* operator[](int index) const { return GetItem(index); }
  /// Assigns the content of `value` to the variable at `index`.
  void SetItem(int index, TFuzzyVariable* value);
  /// The first variable of that name (case-sensitive).
  /// @throws EFzyException (`SUnknownFuzzyVarName`) when there is none
  TFuzzyVariable* GetItemByName(const TString& name) const;
  /// Assigns the content of `value` to that variable; raises likewise.
  void SetItemByName(const TString& name, TFuzzyVariable* value);
  TListIterator<TFuzzyVariables> begin() const { return {*this, 0}; }
  TListIterator<TFuzzyVariables> end() const { return {*this, GetCount()}; }

  /// Told by the variables of their sets; handed to the component.
  virtual void UpdateFuzzySet(TFuzzySet* fuzzySet);
  virtual void NotifyFuzzySet(TFuzzySet* fuzzySet, TCollectionNotification action);

 protected:
  TCollectionItem* AddItem() override { return Add(); }
  TCollectionItem* NewItem() override {
    return TFuzzyVariable::Create(nullptr, FSetClass, FVariableClass);
  }
  void PrepareToLoad() override;
  void ExchangeItems(std::vector<TCollectionItem*>& items) noexcept override;
  void ItemsLoaded(std::vector<TCollectionItem*>& replaced) override;
  void Notify(TCollectionItem* item, TCollectionNotification action) override;
  void Update(TCollectionItem* item) override;
  [[noreturn]] void FailIndex(int index) const override { RaiseFuzzyIndex(index); }

 private:
  friend class TFuzzyLogic;
  int RequireName(const TString& name) const;

  TFuzzyLogic* FFuzzy;
  bool FIsLoadedAlone = false;                 // not as a part of the component
  std::unique_ptr<TFuzzyVariables> FReplaced;  // for the variables that loading will replace
  TFuzzyVariableClass FVariableClass;
  TFuzzySetClass FSetClass;
};

}  // namespace fzy
