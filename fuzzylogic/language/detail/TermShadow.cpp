#include "fuzzylogic/interfaces/IFuzzyVariable.h"
#include "fuzzylogic/language/KelFuzzyLogicParser.h"
#include "fuzzylogic/language/detail/TermWriter.h"

// The variables into which a writer reads back what it writes, and the sets that it writes.

namespace fzy::detail {
namespace {

template <class Set>
TSetContent Content(Set& set, const TString& definition, std::vector<TFuzzyPoint> points) {
  return {set.GetName(),    set.GetComment(),         set.GetExpression(), definition,
          set.GetSetType(), set.GetInflectionPoint(), std::move(points)};
}

/// The shadow of a variable, which is of one model, with its range as it will be read.
template <class Variable, class Source>
class TShadow : public ITermShadow {
 protected:
  TShadow(Variable variable, Source& source, TCustomFuzzyLogic* fuzzy, TNumberStyle number)
      : FVariable(std::move(variable)) {
    FParser.SetFuzzyLogic(fuzzy);
    FParser.SetDiagnostics(false);  // what fails here is only a try
    FVariable->SetMinimum(number.ReadBack(source.GetMinimum()));
    FVariable->SetMaximum(number.ReadBack(source.GetMaximum()));
  }

  TKelFuzzyLogicParser FParser;
  Variable FVariable;
};

class TClassShadow final : public TShadow<TOwned<TFuzzyVariable>, const TFuzzyVariable> {
 public:
  TClassShadow(const TFuzzyVariable& variable, TCustomFuzzyLogic* fuzzy, TNumberStyle number)
      : TShadow(TOwned(TFuzzyVariable::Create(nullptr, variable.GetItems()->GetSetClass())),
                variable, fuzzy, number) {}

  TSetContent Read(const TString& term) override {
    return ContentOf(*FParser.ParseFuzzySet(FVariable.Get(), term, nullptr));
  }
  void Keep() override {
    TFuzzySets& sets = *FVariable->GetItems();
    for (int i = sets.GetCount() - 2; i >= FKept; --i) sets.Delete(i);
    sets[FKept++]->SetDefined(true);
  }
  void Forget() override {
    TFuzzySets& sets = *FVariable->GetItems();
    while (sets.GetCount() > FKept) sets.Delete(sets.GetCount() - 1);
  }

 private:
  int FKept = 0;
};

class TInterfaceShadow final : public TShadow<Ref<TIFuzzyVariable>, IFuzzyVariable> {
 public:
  TInterfaceShadow(IFuzzyVariable& variable, TCustomFuzzyLogic* fuzzy, TNumberStyle number)
      : TShadow(TIFuzzyVariable::Create(), variable, fuzzy, number) {
    FVariable->SetOnFuzzySetAdded(
        [this](const Ref<IFuzzyVariable>&, const Ref<IFuzzySet>& set) { FAdded.push_back(set); });
  }

  TSetContent Read(const TString& term) override {
    FRead = FParser.ParseFuzzySet(FVariable, term, nullptr);
    return ContentOf(*FRead);
  }
  void Keep() override {
    const Ref<IFuzzySet> kept = FRead;
    Forget();
    kept->SetDefined(true);
    FVariable->Add(kept);
    FAdded.clear();
  }
  void Forget() override {
    for (const Ref<IFuzzySet>& set : std::exchange(FAdded, {})) FVariable->Remove(set);
    FRead = nullptr;
  }

 private:
  std::vector<Ref<IFuzzySet>> FAdded;  // since a term was kept
  Ref<IFuzzySet> FRead;
};

}  // namespace

std::unique_ptr<ITermShadow> ShadowOf(const TFuzzyVariable& variable, TCustomFuzzyLogic* fuzzy,
                                      TNumberStyle number) {
  return std::make_unique<TClassShadow>(variable, fuzzy, number);
}

std::unique_ptr<ITermShadow> ShadowOf(IFuzzyVariable& variable, TCustomFuzzyLogic* fuzzy,
                                      TNumberStyle number) {
  return std::make_unique<TInterfaceShadow>(variable, fuzzy, number);
}

TSetContent ContentOf(const TFuzzySet& set) {
  const TFuzzyCurve points = set.GetValues()->Points();
  return Content(set, set.GetDefinition(), {points.begin(), points.end()});
}

TSetContent ContentOf(IFuzzySet& set) {
  if (const auto* own = dynamic_cast<const TFuzzySet*>(&set)) return ContentOf(*own);
  std::vector<TFuzzyPoint> points;
  const int count = set.GetCount();
  for (int i = 0; i < count; ++i) points.push_back({set.GetXValues(i), set.GetYValues(i)});
  return Content(set, TString(), std::move(points));
}

}  // namespace fzy::detail
