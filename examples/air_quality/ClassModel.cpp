#include "RuleModel.h"

namespace air_quality {
namespace {

using namespace fzy;

/// The owned objects: plain pointers, valid as long as the component is there.
struct ClassApi {
  using Component = TFuzzyLogic;
  using VariableRef = TFuzzyVariable*;
  using SetRef = TFuzzySet*;
  /// A set that was made on the way is one more among the sets of its variable. The handle frees
  /// it.
  using MadeSet = TOwned<TFuzzySet>;

  template <class TermEvent, class VariableEvent>
  static void Listen(TKelFuzzyLogicParser& parser, TermEvent onTerm, VariableEvent onVariable) {
    parser.SetOnParseFuzzySet([=](TObject*, TFuzzySet* set) { onTerm(set->GetName()); });
    parser.SetOnParseFuzzyVariable(
        [=](TObject*, TFuzzyVariable* variable) { onVariable(variable->GetName()); });
  }

  /// What a form holds is there without having been parsed.
  template <class TermEvent, class VariableEvent>
  static void TellLoaded(TFuzzyLogic& fuzzy, TermEvent onTerm, VariableEvent onVariable) {
    for (TFuzzyVariable* variable : *fuzzy.GetItems()) {
      for (TFuzzySet* set : *variable->GetItems())
        if (set->GetDefined()) onTerm(set->GetName());
      onVariable(variable->GetName());
    }
  }

  static TFuzzyVariable* FindVariable(TFuzzyLogic& fuzzy, const TString& name) {
    const int index = fuzzy.GetItems()->IndexOf(name);
    return index < 0 ? nullptr : fuzzy.GetItems()->GetItem(index);
  }

  static TFuzzySet* FindSet(TFuzzyVariable* variable, const TString& name) {
    const int index = variable->GetItems()->IndexOf(name);
    return index < 0 ? nullptr : variable->GetItems()->GetItem(index);
  }

  static const TFuzzySets& Sets(TFuzzyVariable* variable) { return *variable->GetItems(); }

  static std::vector<TFuzzyPoint> Points(TFuzzySet* set) {
    const TFuzzyCurve curve = set->GetValues()->Points();
    return {curve.begin(), curve.end()};
  }

  /// A reading as a set that is 1 there alone.
  static MadeSet MakeFact(TFuzzyVariable* variable, double reading) {
    MadeSet fact(TFuzzySet::Create(variable->GetItems()));
    fact->CreateCrispValue(reading);
    return fact;
  }
};

/// Sets ask the component for the methods.
class ClassModel final : public RuleModel<ClassApi> {
 public:
  ClassModel(const std::string& file, Methods methods) : RuleModel(file) {
    Fuzzy().SetDefuzzificationMethod(dmCenterOfGravity);
    if (methods == Methods::MinMax) {
      Fuzzy().SetCorrelationMethod(fcmMinimum);
      Fuzzy().SetInferenceMethod(fimMinMax);
      return;
    }
    // Several rules speak about each day and each shall be heard. So a conclusion is scaled by the
    // strength of its rule, what the rules conclude is added up, and the centre of gravity weighs
    // it. With cutting and the greatest value, a rule does not count beneath another.
    Fuzzy().SetCorrelationMethod(fcmProduct);
    Fuzzy().SetInferenceMethod(fimAdditive);
  }
};

}  // namespace

std::unique_ptr<Model> ReadClassModel(const std::string& file, Methods methods) {
  return std::make_unique<ClassModel>(file, methods);
}

}  // namespace air_quality
