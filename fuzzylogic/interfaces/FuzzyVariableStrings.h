#pragma once

#include "fuzzylogic/interfaces/IFuzzyLogic.h"
#include "fuzzylogic/interfaces/StringList.h"

namespace fzy {

/// A string list whose entries carry variables, for callers that keep theirs in one. A variable
/// that takes another's place in an entry is announced to the component as added, the other one as
/// deleted; other changes of the list announce nothing.
class TFuzzyVariableStrings : public TStringList<IInterface> {
 public:
  /// An empty list for the component, which must outlive it, or for none.
  explicit TFuzzyVariableStrings(TIFuzzyLogic* fuzzyLogic = nullptr) : FFuzzyLogic(fuzzyLogic) {}
  TString ClassName() const override { return "TFuzzyVariableStrings"; }

  /// The variable of an entry, or none.
  /// @throws EIntfCastError (`SIntfCastError`) when the entry carries something else; EListError
  /// for
  ///   an index outside the list
  Ref<IFuzzyVariable> GetData(int index) const;
  /// @throws EListError likewise; nothing changes then
  void PutData(int index, const Ref<IFuzzyVariable>& value) {
    TStringList<IInterface>::PutData(index, value);
  }

 protected:
  void DoPutData(int index, Ref<IInterface> value) override;

 private:
  TIFuzzyLogic* FFuzzyLogic;
};

}  // namespace fzy
