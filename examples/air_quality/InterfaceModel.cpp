#include <algorithm>

#include "RuleModel.h"

namespace air_quality {
namespace {

using namespace fzy;

/// The counted objects: references, each of which keeps its object.
struct InterfaceApi {
  using Component = TIFuzzyLogic;
  using VariableRef = Ref<IFuzzyVariable>;
  using SetRef = Ref<IFuzzySet>;
  /// A set that was made on the way belongs to its variable without being among its sets. It goes
  /// with the last reference.
  using MadeSet = Ref<IFuzzySet>;

  template <class TermEvent, class VariableEvent>
  static void Listen(TKelFuzzyLogicParser& parser, TermEvent onTerm, VariableEvent onVariable) {
    parser.SetOnParseFuzzySetIntf(
        [=](const Ref<IFuzzyVariable>&, const Ref<IFuzzySet>& set) { onTerm(set->GetName()); });
    parser.SetOnParseFuzzyVariableIntf(
        [=](const Ref<IFuzzyVariable>& variable) { onVariable(variable->GetName()); });
  }

  /// A form holds the text, of which the parser has told.
  template <class TermEvent, class VariableEvent>
  static void TellLoaded(TIFuzzyLogic& /*fuzzy*/, TermEvent /*onTerm*/,
                         VariableEvent /*onVariable*/) {}

  static Ref<IFuzzyVariable> FindVariable(TIFuzzyLogic& fuzzy, const TString& name) {
    return fuzzy.GetItems()->ContainsVariable(name);
  }

  static Ref<IFuzzySet> FindSet(const Ref<IFuzzyVariable>& variable, const TString& name) {
    return variable->ContainsFuzzySet(name);
  }

  static std::vector<Ref<IFuzzySet>> Sets(const Ref<IFuzzyVariable>& variable) {
    std::vector<Ref<IFuzzySet>> sets;
    sets.reserve(static_cast<std::size_t>(variable->GetCount()));
    for (int i = 0; i < variable->GetCount(); ++i) sets.push_back(variable->GetFuzzySet(i));
    // They come in the order of a table, which is not that of the text.
    std::ranges::sort(sets, {}, [](const Ref<IFuzzySet>& set) { return set->GetIndex(); });
    return sets;
  }

  static std::vector<TFuzzyPoint> Points(const Ref<IFuzzySet>& set) {
    std::vector<TFuzzyPoint> points;
    points.reserve(static_cast<std::size_t>(set->GetCount()));
    for (int i = 0; i < set->GetCount(); ++i)
      points.push_back({set->GetXValues(i), set->GetYValues(i)});
    return points;
  }

  /// A reading as a set that is 1 there alone.
  static Ref<IFuzzySet> MakeFact(const Ref<IFuzzyVariable>& variable, double reading) {
    Ref<IFuzzySet> fact = TIFuzzySet::Create(variable);
    fact->CreateCrispValue(reading);
    return fact;
  }
};

}  // namespace

/// Counted sets ask no component for the methods, so there is nothing to choose: conclusions are
/// cut, the greatest value counts, and the centre of gravity weighs it.
std::unique_ptr<Model> ReadInterfaceModel(const std::string& file) {
  return std::make_unique<RuleModel<InterfaceApi>>(file);
}

}  // namespace air_quality
