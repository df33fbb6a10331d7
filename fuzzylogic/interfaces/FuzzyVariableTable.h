#pragma once

#include "fuzzylogic/interfaces/IFuzzyVariable.h"
#include "fuzzylogic/interfaces/MemberTable.h"

namespace fzy {

class TIFuzzyLogic;

/// The counted variables of a component, each under the name that it had when it was entered. It
/// reports every entry and removal to the component.
class TFuzzyVariableTable : public TMemberTable<IFuzzyVariable> {
 public:
  using TTable = TMemberTable<IFuzzyVariable>;
  using TTable::Add;

  /// A table that belongs to `fuzzyLogic`, or a free one.
  explicit TFuzzyVariableTable(TIFuzzyLogic* fuzzyLogic = nullptr) : FFuzzyLogic(fuzzyLogic) {}
  ~TFuzzyVariableTable() override;
  TString ClassName() const override { return "TFuzzyVariableTable"; }

  /// Enters the variable, or replaces the one stored under its name; that one is not reported and
  /// keeps its handlers.
  /// @throws EFzyException (`SMissingFuzzyVariable`) without a variable
  virtual void Add(const Ref<IFuzzyVariable>& fuzzyVariable);
  /// The variable entered under that name, or none.
  Ref<IFuzzyVariable> ContainsVariable(const TString& name) const { return Find(name); }
  /// Empties the table: one change of the table, nothing for single variables. They lose the
  /// component's handlers first.
  void Clear() override;

 protected:
  void MemberEntered(const Ref<IFuzzyVariable>& member) override;
  void MemberLeft(const Ref<IFuzzyVariable>& member) override;
  void RequireValue(const Ref<IFuzzyVariable>& value) const override;

 private:
  friend class TIFuzzyLogic;
  void UnwireAll() const;

  TIFuzzyLogic* FFuzzyLogic;
};

}  // namespace fzy
