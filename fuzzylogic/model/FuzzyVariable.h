#pragma once

#include <initializer_list>
#include <span>

#include "fuzzylogic/model/FuzzySets.h"

namespace fzy {

class TFuzzyLogic;
class TFuzzyTextParser;
class TFuzzyVariable;
class TFuzzyVariables;

/// A class of variables, as a component is given it for the variables that it creates.
struct TFuzzyVariableDescriptor {
  const char* Name;
  /// Makes a bare object of the class; `TFuzzyVariable::Create` builds it.
  TFuzzyVariable* (*New)();
};
using TFuzzyVariableClass = const TFuzzyVariableDescriptor*;

/// A linguistic variable: a named quantity over a numeric range, in some units, whose terms are
/// fuzzy sets. Rules are asserted on the variable that they conclude about.
///
/// Ownership: a variable owns its sets, and belongs to its collection (the component's) or to the
/// caller, who ends it with `Free()`. When it ends, it lets its sets go first, then leaves.
///
/// Invariants: minimum <= maximum, both finite (a setter pushes the other bound along); a threshold
/// from 0 to 1; after every change of the set list the current index lies below the number of sets.
/// Points already set are not moved when the range changes. One thread at a time.
class TFuzzyVariable : public TGCollectionItem, public TFuzzySurroundings {
 public:
  static TFuzzyVariableClass Class();
  /// A variable of the given class with defaults (range 0 to 1, threshold 0, no sets), which then
  /// joins `collection`, or none. The sets it creates are of `setClass`.
  static TFuzzyVariable* Create(TFuzzyVariables* collection = nullptr,
                                TFuzzySetClass setClass = TFuzzySet::Class(),
                                TFuzzyVariableClass variableClass = Class());

  virtual TFuzzyVariableClass GetClass() const { return Class(); }
  TString ClassName() const override { return GetClass()->Name; }

  // Properties. Setters ignore the value a property has, and report any other as a change.

  const TString& GetName() const noexcept { return FName; }
  /// Any name; reserved words are not checked here.
  void SetName(const TString& value);
  const TString& GetUnits() const noexcept { return FUnits; }
  void SetUnits(const TString& value);
  const TString& GetComment() const noexcept { return FComment; }
  void SetComment(const TString& value);
  TFzyFloat GetMinimum() const override { return FMinimum; }
  /// @throws EFzyException when the value is not finite, as does `SetMaximum`
  void SetMinimum(TFzyFloat value);
  TFzyFloat GetMaximum() const override { return FMaximum; }
  void SetMaximum(TFzyFloat value);
  /// The least strength with which a rule fires; clamped to [0, 1]. No change is reported.
  TFzyFloat GetThreshold() const override { return FThreshold; }
  /// @throws EFzyException when the value is not a number
  void SetThreshold(TFzyFloat value);
  /// The current set, -1 for none; negative values are accepted.
  int GetItemIndex() const noexcept { return FItemIndex; }
  /// @throws EFzyException with the list-index message for a value beyond the last set
  void SetItemIndex(int value);
  TFuzzySets* GetItems() const noexcept { return FItems; }
  /// Copies the sets of another list.
  void SetItems(TFuzzySets* value);

  TFuzzyVariables* GetCollection() const noexcept { return FVariables; }
  void SetCollection(TFuzzyVariables* value);
  /// The component that owns the variable's collection, or nothing.
  TFuzzyLogic* GetFuzzy() const noexcept;
  const TString& GetItemName() const override { return FName; }
  /// The name, or the class name when that is empty.
  TString GetDisplayName() const override;
  /// The definition text, as the component's parser writes it; without a parser the display name.
  /// @throws EFzyException as the parser does
  TString ToString() const override;

  /// From another variable: its properties and copies of its sets. Other sources are refused.
  void Assign(TPersistent* source) override;
  /// To a string list: one line a set, its name with the set attached.
  void AssignTo(TPersistent* dest) override;
  void DefineProperties(TFiler& filer) override;

  // Rules.

  /// The strength of a conjunction: the least correlation strength of each premise with its
  /// matching fact, at most 1; 1 without premises.
  /// @throws EFzyException (`SFzyMatchingsMissing`) when there are fewer matchings than premises;
  ///   (`SFzySetMissing`) when one of them is nothing
  TFzyFloat GetCorrelationStrength(std::span<TFuzzySet* const> premises,
                                   std::span<TFuzzySet* const> matchings) const;

  /// Fires one rule that concludes `newEvidence` with the given strength. A strength below the
  /// threshold does not fire: the result is nothing, and the old evidence stays. Otherwise a copy
  /// of the conclusion is correlated with the strength (by the component's method) and merged into
  /// the old evidence (by its inference method). The new evidence is returned, in the old
  /// evidence's list of sets (without old evidence in the conclusion's); the caller owns it, and
  /// the old evidence stays the caller's too. Nothing is returned when a handler freed it.
  /// @throws EFzyException when the strength is not a number or there is no conclusion
  virtual TFuzzySet* AssertRule(std::span<TFuzzySet* const> premises,
                                std::span<TFuzzySet* const> matchings, TFuzzySet* newEvidence,
                                TFuzzySet* oldEvidence);
  virtual TFuzzySet* AssertRule(TFzyFloat correlationStrength, TFuzzySet* newEvidence,
                                TFuzzySet* oldEvidence);
  virtual TFuzzySet* AssertRule(TFuzzySet* premise, TFuzzySet* newEvidence, TFuzzySet* matching,
                                TFuzzySet* oldEvidence);
  TFuzzySet* AssertRule(std::initializer_list<TFuzzySet*> premises,
                        std::initializer_list<TFuzzySet*> matchings, TFuzzySet* newEvidence,
                        TFuzzySet* oldEvidence);

  // Told by the list of sets.

  /// A set has joined or is leaving: handed to the collection, or reported as a change of the
  /// variable.
  virtual void Notify(TFuzzySet* fuzzySet, TCollectionNotification action);
  /// A set (or, with nothing, the list) changed: pulls the current index back, then likewise.
  virtual void Update(TFuzzySet* fuzzySet);

  TFuzzyCorrelationMethod GetCorrelationMethod() const override;
  TFuzzyInferenceMethod GetInferenceMethod() const override;
  TDefuzzificationMethod GetDefuzzificationMethod() const override;
  int GetNumFunctionValues() const override;
  bool IsDesigning() const override;
  std::optional<TString> Show(const TFuzzySet& fuzzySet) const override;
  TFuzzyVariable* AsVariable() override { return this; }

 protected:
  TFuzzyVariable() = default;
  ~TFuzzyVariable() override;

  /// Builds a bare object: makes the list of sets, then joins the collection.
  virtual void Build(TFuzzyVariables* collection, TFuzzySetClass setClass);
  /// The variable's list of sets, owned by it.
  virtual TFuzzySets* CreateItems() { return new TFuzzySets(this, FSetClass); }
  void CollectionChanged() override;
  void Leave() override;

  TFuzzySetClass FSetClass = nullptr;  ///< of the sets that the list is to create

 private:
  friend class TFuzzySets;
  friend class TFuzzyVariables;
  static TFuzzyVariable* Create(TFuzzyVariables* collection, TFuzzySetClass setClass,
                                TFuzzyVariableClass variableClass, std::size_t room);
  void SetText(TString TFuzzyVariable::*property, const TString& value);
  void StoreMinimum(TFzyFloat value);
  void StoreMaximum(TFzyFloat value);
  void RequireItemIndex(int value) const;
  void PullItemIndexBack() noexcept;
  TFuzzyTextParser* GetParser() const noexcept;

  TFuzzyVariables* FVariables = nullptr;
  TFzyFloat FMaximum = 1.0;
  TString FName;
  TFzyFloat FMinimum = 0;
  int FItemIndex = -1;
  TString FUnits;
  TFuzzySets* FItems = nullptr;
  TString FComment;
  TFzyFloat FThreshold = 0;
};

}  // namespace fzy
