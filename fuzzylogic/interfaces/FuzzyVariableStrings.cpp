#include "fuzzylogic/interfaces/FuzzyVariableStrings.h"

#include "fuzzylogic/framework/Messages.h"

namespace fzy {

Ref<IFuzzyVariable> TFuzzyVariableStrings::GetData(int index) const {
  const Ref<IInterface> data = DoGetData(index);
  Ref<IFuzzyVariable> variable = Query<IFuzzyVariable>(data.Get());
  if (data && !variable) throw EIntfCastError(SIntfCastError);
  return variable;
}

void TFuzzyVariableStrings::DoPutData(int index, Ref<IInterface> value) {
  const TPin self(this);
  const auto variableAt = [&] { return Query<IFuzzyVariable>(DoGetData(index).Get()); };
  TFirstException first;
  if (const Ref<IFuzzyVariable> old = variableAt(); old && FFuzzyLogic)
    first.Run([&] { FFuzzyLogic->VariableDeleted(old); });
  first.Run([&] { TStringList<IInterface>::DoPutData(index, std::move(value)); });
  if (index < GetCount()) {
    if (const Ref<IFuzzyVariable> added = variableAt(); added && FFuzzyLogic)
      first.Run([&] { FFuzzyLogic->VariableAdded(added); });
  }
  first.Rethrow();
}

}  // namespace fzy
