#pragma once

#include <atomic>

#include "fuzzylogic/interfaces/IFuzzySets.h"

namespace fzy {

class TIFuzzyVariable;

/// A class of counted variables, as a component is given it for those that it creates.
struct TIFuzzyVariableDescriptor {
  const char* Name;
  /// Makes a bare object of the class; `TIFuzzyVariable::Create` builds it.
  TIFuzzyVariable* (*New)();
};
using TIFuzzyVariableClass = const TIFuzzyVariableDescriptor*;

/// The persistent object that a counted variable is.
class TIFuzzyVariablePersistent : public TPersistent {};

/// The counted linguistic variable: a named quantity over a numeric range, in some units, whose
/// terms are counted fuzzy sets in a keyed table.
///
/// Life: the variable counts its references, and so do its sets, which each hold one to it. When a
/// release brings its count down to the number of sets in its table (and that is above 0), nobody
/// but those sets is taken to hold it: the table is cleared, which fires `OnChange` and
/// `OnVariableChange` once, and when that lets the last reference go the variable ends. The counts
/// alone are compared, not who holds what. A set that is held elsewhere outlives the clearing,
/// keeps its variable and keeps it alive; so does a set that belongs to the variable without being
/// in the table. A variable that only its sets hold enters none of them in the table (they would
/// keep each other for ever): adding one, renaming it or moving it there tells of no addition then.
/// Exceptions of handlers are dropped while a release lasts.
///
/// Events, fired by every entry, removal and change whether or not the table's update block is open
/// (that holds back only what the table itself tells): `OnFuzzySetAdded` for each entry and each
/// replacement, `OnFuzzySetDeleted` for each single removal, `OnFuzzySetChange` when the points of
/// a set that belongs to the variable change, in the table or not. `OnChange` and then
/// `OnVariableChange` follow the first two, and fire for a changed name, bound (twice when the
/// other bound has to follow) or number of points, for clearing and for assignment. Units,
/// threshold, comment, method and parser change silently. A handler may read and change the model,
/// replace handlers, drop references, or throw: the change stays made, what else had to be told is
/// told, and the first exception goes on to the caller.
///
/// Invariants: minimum <= maximum, both finite; 0 <= threshold <= 1. Points already set are not
/// moved when the range changes. References may be copied and dropped on any thread; all else is
/// for one thread at a time.
class TIFuzzyVariable : public TIFuzzyVariablePersistent, public IFuzzyVariable {
 public:
  static TIFuzzyVariableClass Class();
  /// A variable of the given class with range 0 to 1, threshold 0, 7 points for generated shapes,
  /// and no sets.
  static Ref<TIFuzzyVariable> Create(const TString& name = TString(),
                                     TIFuzzyVariableClass variableClass = Class());
  virtual TIFuzzyVariableClass GetClass() const { return Class(); }
  TString ClassName() const override { return GetClass()->Name; }

  HResult QueryInterface(const TGuid& id, void** result) override;
  std::int32_t AddRef() noexcept override { return ++FRefCount & (IgnoreRelease - 1); }
  /// See the class comment.
  std::int32_t Release() noexcept override;

  // Properties.

  TString GetName() override { return FName; }
  /// The key under which a component holds the variable stays.
  void SetName(const TString& value) override;
  TString GetUnits() override { return FUnits; }
  void SetUnits(const TString& value) override { FUnits = value; }
  TString GetComment() override { return FComment; }
  void SetComment(const TString& value) override { FComment = value; }
  TFzyFloat GetMinimum() override { return FMinimum; }
  /// A minimum above the maximum takes the maximum along, and conversely.
  /// @throws EFzyException when the value is not finite, as does `SetMaximum`
  void SetMinimum(TFzyFloat value) override;
  TFzyFloat GetMaximum() override { return FMaximum; }
  void SetMaximum(TFzyFloat value) override;
  /// The least strength with which a rule fires; clamped to [0, 1].
  TFzyFloat GetThreshold() override { return FThreshold; }
  /// @throws EFzyException when the value is not a number
  void SetThreshold(TFzyFloat value) override;
  /// Stored and copied; the sets' `Defuzzify` does not ask for it.
  TDefuzzificationMethod GetDefuzzificationMethod() override { return FDefuzzificationMethod; }
  void SetDefuzzificationMethod(TDefuzzificationMethod value) override {
    FDefuzzificationMethod = value;
  }
  /// Stored and copied; sets make their own shapes of 7 points.
  int GetNumFunctionValues() override { return FNumFunctionValues; }
  void SetNumFunctionValues(int value) override;
  /// The parser, or none when its component has gone.
  Ref<IFuzzyParser> GetParser() override;
  /// Also sets the parser of every set in the table.
  void SetParser(const Ref<IFuzzyParser>& value) override;
  std::intptr_t GetTag() override { return FTag; }
  void SetTag(std::intptr_t value) override { FTag = value; }

  TNotifyEvent GetOnChange() override { return FOnChange; }
  void SetOnChange(const TNotifyEvent& value) override { FOnChange = value; }
  TIFuzzyVariableEvent GetOnVariableChange() override { return FOnVariableChange; }
  void SetOnVariableChange(const TIFuzzyVariableEvent& value) override {
    FOnVariableChange = value;
  }
  TIFuzzySetEvent GetOnFuzzySetChange() override { return FOnFuzzySetChange; }
  void SetOnFuzzySetChange(const TIFuzzySetEvent& value) override { FOnFuzzySetChange = value; }
  TIFuzzySetEvent GetOnFuzzySetAdded() override { return FOnFuzzySetAdded; }
  void SetOnFuzzySetAdded(const TIFuzzySetEvent& value) override { FOnFuzzySetAdded = value; }
  TIFuzzySetEvent GetOnFuzzySetDeleted() override { return FOnFuzzySetDeleted; }
  void SetOnFuzzySetDeleted(const TIFuzzySetEvent& value) override { FOnFuzzySetDeleted = value; }

  // The sets: the operations of the table.

  TIFuzzySets* GetItems() const noexcept { return FItems; }
  /// Copies the sets of another table (`TIFuzzySets::Assign`).
  void SetItems(TIFuzzySets* value);
  int GetCount() override { return FItems->GetCount(); }
  /// The set at a position of the table; a walk over all positions is one pass.
  /// @throws EListError (`SListIndexError`)
  Ref<IFuzzySet> GetFuzzySet(int index) override { return FItems->GetItemByIndex(index); }
  /// @throws EListError (`SItemNotFound`) when there is none of that name
  Ref<IFuzzySet> GetFuzzySetByName(const TString& index) override { return FItems->Get(index); }
  Ref<IFuzzySet> ContainsFuzzySet(const TString& name) override {
    return FItems->ContainsFuzzySet(name);
  }
  void Add(const Ref<IFuzzySet>& fuzzySet) override;
  Ref<IFuzzySet> Add(const TString& name) override;
  void Remove(const Ref<IFuzzySet>& fuzzySet) override;
  void Clear() override;
  void AssignFuzzySets(const Ref<IFuzzyVariable>& source) override;
  void BeginUpdate() override { FItems->BeginUpdate(); }
  void EndUpdate() override;

  // The variable as a whole.

  /// From another variable: method, range, name, units, number of points, tag, parser, and copies
  /// of its defined sets; not threshold, comment and events. A persistent object that is no
  /// variable is refused, an interface that is none changes nothing.
  void Assign(TPersistent* source) override;
  void Assign(const Ref<IInterface>& value) override;
  void AssignTo(TPersistent* dest) override { TIFuzzyVariablePersistent::AssignTo(dest); }
  /// A parser that is no component is not stored, and kept whatever a form says. Loading ends with
  /// `OnChange` and `OnVariableChange`, then `OnFuzzySetAdded` and these two for each set.
  void DefineProperties(TFiler& filer) override;
  /// A copy of the variable's own class.
  Ref<IInterface> Clone() override;
  /// Whether names, ranges and units are the same and the sets are equal
  /// (`TIFuzzySets::EqualsSets`).
  bool Equals(const Ref<IInterface>& value) override;
  /// The definition text, as the variable's parser writes it; without one the name.
  TString ToString() const override;
  TString ToString() override { return std::as_const(*this).ToString(); }

  // Rules. The methods are minimum correlation and min-max inference, always.

  using IFuzzyVariable::AssertRule;
  using IFuzzyVariable::GetCorrelationStrength;
  /// The strength of a conjunction: the least correlation strength of each premise with its
  /// matching fact, at most 1; 1 without premises.
  /// @throws EFzyException (`SFzyMatchingsMissing`) when there are fewer matchings than premises;
  ///   (`SFzySetMissing`) when one of them is none
  TFzyFloat GetCorrelationStrength(std::span<const Ref<IFuzzySet>> premises,
                                   std::span<const Ref<IFuzzySet>> matchings) override;
  /// Fires one rule that concludes `newEvidence` with the given strength; none below the threshold.
  /// The result is a copy of the conclusion capped at the strength or, with old evidence, the union
  /// of both: a new set that belongs to the variable of the conclusion (of the old evidence) and
  /// stands in no table.
  /// @throws EFzyException when the strength is not a number or there is no conclusion
  Ref<IFuzzySet> AssertRule(TFzyFloat correlationStrength, const Ref<IFuzzySet>& newEvidence,
                            const Ref<IFuzzySet>& oldEvidence) override;
  Ref<IFuzzySet> AssertRule(std::span<const Ref<IFuzzySet>> premises,
                            std::span<const Ref<IFuzzySet>> matchings,
                            const Ref<IFuzzySet>& newEvidence,
                            const Ref<IFuzzySet>& oldEvidence) override;
  Ref<IFuzzySet> AssertRule(const Ref<IFuzzySet>& premise, const Ref<IFuzzySet>& newEvidence,
                            const Ref<IFuzzySet>& matching,
                            const Ref<IFuzzySet>& oldEvidence) override;

  // Told by the table and by the sets; they fire the events.

  virtual void NewFuzzySet(const Ref<IFuzzySet>& fuzzySet);
  virtual void RemoveFuzzySet(const Ref<IFuzzySet>& fuzzySet);
  virtual void ClearFuzzySets();
  void FuzzySetChanged(const Ref<IFuzzySet>& fuzzySet) override;

 protected:
  TIFuzzyVariable() = default;
  ~TIFuzzyVariable() override;

  /// The variable's table, owned by it.
  virtual TIFuzzySets* CreateItems() { return new TIFuzzySets(this); }
  /// Tells that the variable changed.
  virtual void Changed();
  void Leave() override;
  bool IsUnheld() const noexcept override { return (FRefCount & (IgnoreRelease - 1)) == 0; }

  TIFuzzySetClass FFuzzySetClass = TIFuzzySet::Class();

 private:
  friend class TIFuzzySet;
  friend class TIFuzzySets;
  friend class TIFuzzyLogic;
  /// Whether anybody but its own sets holds the variable. A reference that another thread drops
  /// meanwhile may count as held; dropping it then compares the counts.
  bool IsHeldOutside() const noexcept {
    const std::int32_t references = FRefCount & (IgnoreRelease - 1);
    return references > FSetReferences;  // read last, as a set takes its own off it first
  }
  void TakeOver(IFuzzyVariable& source);
  TComponent* GetParserComponent() const;
  void SetParserComponent(TComponent* component);
  void FireSetEvent(const TEvent<TIFuzzySetEvent>& event, const Ref<IFuzzySet>& fuzzySet);

  // Added to the count while releases do nothing but count: until there is a table, while a release
  // clears it, and from the end on. One number for both, so that of the threads that drop the last
  // references just one ends the variable.
  static constexpr std::int32_t IgnoreRelease = 1 << 30;

  std::atomic<std::int32_t> FRefCount{IgnoreRelease};
  std::atomic<std::int32_t> FSetReferences{0};  // how many of these are links of sets
  TIFuzzySets* FItems = nullptr;
  std::int32_t FNumFunctionValues = 7;
  TString FUnits;
  TString FName;
  TDefuzzificationMethod FDefuzzificationMethod = dmCenterOfGravity;
  TFzyFloat FMinimum = 0.0;
  TFzyFloat FMaximum = 1.0;
  TEvent<TIFuzzySetEvent> FOnFuzzySetChange;
  TEvent<TIFuzzyVariableEvent> FOnVariableChange;
  TEvent<TNotifyEvent> FOnChange;
  std::intptr_t FTag = 0;
  Ref<IFuzzyParser> FParser;
  TFzyFloat FThreshold = 0.0;
  TString FComment;
  TEvent<TIFuzzySetEvent> FOnFuzzySetDeleted;
  TEvent<TIFuzzySetEvent> FOnFuzzySetAdded;
};

}  // namespace fzy
