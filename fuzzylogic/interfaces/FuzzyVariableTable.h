#pragma once

#include "fuzzylogic/interfaces/IFuzzyVariable.h"

namespace fzy {

class TIFuzzyLogic;

/// The counted variables of a component, each under the name that it had when it was entered. It
/// reports every entry and removal to the component.
class TFuzzyVariableTable : public TKelStringHashTable<IFuzzyVariable> {
 public:
  using TTable = TKelStringHashTable<IFuzzyVariable>;
  using TTable::Add;
  using TTable::Remove;

  /// A table that belongs to `fuzzyLogic`, or a free one.
  explicit TFuzzyVariableTable(TIFuzzyLogic* fuzzyLogic = nullptr) noexcept
      : FFuzzyLogic(fuzzyLogic) {}
  ~TFuzzyVariableTable() override;
  TString ClassName() const override { return "TFuzzyVariableTable"; }

  /// Enters the variable, or replaces the one stored under its name; that one is not reported and
  /// keeps its handlers.
  /// @throws EFzyException (`SMissingFuzzyVariable`) without a variable
  virtual void Add(const Ref<IFuzzyVariable>& fuzzyVariable);
  /// The variable entered under that name, or none.
  Ref<IFuzzyVariable> ContainsVariable(const TString& name) const;
  /// Removes the variable when it is the one stored under its name; else nothing happens.
  void Remove(const Ref<IFuzzyVariable>& fuzzyVariable);
  /// Empties the table: one change of the table, nothing for single variables. They lose the
  /// component's handlers first.
  void Clear() override;
  /// From another table: its entries. A string list is refused, because names alone are no
  /// variables.
  void Assign(TPersistent* source) override;

 protected:
  void DoAdd(std::int32_t hashCode, int index, const TString& key,
             const Ref<IFuzzyVariable>& value) override;
  void DoSetValue(int index, const Ref<IFuzzyVariable>& value) override;
  Ref<IFuzzyVariable> DoRemove(const TString& key, std::int32_t hashCode,
                               TKeyedNotification notification) override;

 private:
  friend class TIFuzzyLogic;
  template <class Store>
  void Enter(const Ref<IFuzzyVariable>& value, Store store);

  TIFuzzyLogic* FFuzzyLogic;
};

}  // namespace fzy
