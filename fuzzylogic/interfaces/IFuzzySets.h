#pragma once

#include <optional>

#include "fuzzylogic/interfaces/IFuzzySet.h"
#include "fuzzylogic/interfaces/MemberTable.h"

namespace fzy {

class TIFuzzyVariable;

/// The terms of a counted variable: its sets, each under the name that it had when it was entered.
/// It reports every entry and removal to the variable, and numbers the sets in the order in which
/// they were entered (`IFuzzySet::GetIndex`): they are visited in the order of the table, which is
/// another one.
///
/// `Clear` fires the table's `OnChange` and the variable's `ClearFuzzySets`, nothing for single
/// sets, and starts the numbers anew.
class TIFuzzySets : public TMemberTable<IFuzzySet> {
 public:
  using TTable = TMemberTable<IFuzzySet>;
  using TTable::Add;
  using TTable::Assign;
  using TTable::Remove;

  /// A table that belongs to `variable`, or a free one.
  explicit TIFuzzySets(TIFuzzyVariable* variable = nullptr) : FVariable(variable) {}
  TString ClassName() const override { return "TIFuzzySets"; }
  /// The text of the variable.
  TString ToString() const override;
  TIFuzzyVariable* GetVariable() const noexcept { return FVariable; }

  /// Enters a set of this table's variable when it is defined. A set of another variable, or none,
  /// leaves that one's table, comes to belong to this variable, and is entered in any case. A set
  /// stored under the same name makes room without being reported; it still belongs to its
  /// variable. A variable that only its sets hold takes in none.
  /// @throws EFzyException (`SFzySetMissing`) without a set
  virtual void Add(const Ref<IFuzzySet>& fuzzySet);
  /// A new set of the variable's set class, defined and entered; under the name "__Empty" neither.
  /// @throws EFzyException (`SInvalidFuzzySetName`) for a reserved word; nothing is added
  Ref<IFuzzySet> Add(const TString& name);
  /// Removes the set when the table holds it; else nothing happens.
  void Remove(const Ref<IFuzzySet>& fuzzySet);
  /// The set of that name, or none.
  Ref<IFuzzySet> ContainsFuzzySet(const TString& name) const { return Find(name); }
  /// Copies of the defined sets of another variable, by name and points, in place of those here.
  void AssignFuzzySets(const Ref<IFuzzyVariable>& source);
  /// From a variable: `AssignFuzzySets`. Other objects change nothing.
  void Assign(const Ref<IInterface>& value);
  /// From the table of another variable: `AssignFuzzySets`. From another table of sets: its
  /// entries. A string list is refused, because names alone are no sets.
  void Assign(TPersistent* source) override;
  /// Its entries are the sets, in the order of their numbers. One that is not of the library's own
  /// class is stored as a copy of it.
  void DefineProperties(TFiler& filer) override;
  /// Whether the variable has, for every set that is defined here, one of its name that is equal to
  /// it (`IFuzzySet::Equals`, asked of that one). Sets that only the other has are not looked at.
  bool EqualsSets(const Ref<IFuzzyVariable>& fuzzyVariable) const;
  /// The next number of definition.
  int NewIndex() noexcept { return FNewIndex++; }
  void Clear() override;

 protected:
  void MemberEntered(const Ref<IFuzzySet>& member) override;
  void MemberLeft(const Ref<IFuzzySet>& member) override;
  void RequireValue(const Ref<IFuzzySet>& value) const override;
  void ValueNotify(const Ref<IFuzzySet>& value, TKeyedNotification action) override;

 private:
  friend class TIFuzzySet;
  friend class TIFuzzyVariable;
  bool IsOfVariable(IFuzzySet& set) const;
  std::optional<TString> OtherKeyOf(const Ref<IFuzzySet>& set) const;
  void Enter(const Ref<IFuzzySet>& set);
  TIFuzzySetClass GetSetClass() const noexcept;
  class TStaged;
  static Ref<TIFuzzySet> OwnOrCopy(const Ref<IFuzzySet>& set);
  std::vector<Ref<TIFuzzySet>> InOrder() const;
  void ExchangeSets(TIFuzzySets& other) noexcept;
  void TellLoaded();

  std::int32_t FNewIndex = 0;
  TIFuzzyVariable* FVariable;
};

}  // namespace fzy
