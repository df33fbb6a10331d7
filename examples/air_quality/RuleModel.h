#pragma once

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "Definitions.h"
#include "Model.h"
#include "fuzzylogic/FuzzyLogic.h"

namespace air_quality {

/// A term that matches less than this is the far tail of a bell and says nothing.
inline constexpr double LeastStrength = 0.05;
/// Points of a curved term: odd, so that a bell has one at its peak.
inline constexpr int PointsPerCurve = 15;

/// What the two object models have in common: how a text is read, rules find their terms, and a day
/// is inferred. `Api` is one of them:
/// - its component, how it refers to a variable and to a set, and what holds a set that was made on
///   the way (`Component`, `VariableRef`, `SetRef`, `MadeSet`);
/// - static functions for what has another form in the other.
template <class Api>
class RuleModel : public Model {
 public:
  explicit RuleModel(const std::string& file);

  std::vector<Variable> Variables() const override;
  Inference Infer(const Day& day) const override;
  std::string Text() override;
  std::string Form() override;
  std::vector<std::string> Sets() const override;

 protected:
  typename Api::Component& Fuzzy() { return FFuzzy; }

 private:
  using VariableRef = typename Api::VariableRef;
  using SetRef = typename Api::SetRef;
  using MadeSet = typename Api::MadeSet;

  /// A rule with its terms looked up.
  struct BoundRule {
    const Rule* Text;
    std::array<SetRef, InputCount> When;  ///< nothing where the rule does not look
    SetRef Then;
  };

  void Read();
  VariableRef FindVariable(const std::string& name);
  SetRef FindTerm(const VariableRef& variable, std::string_view name) const;

  Definitions FDefinitions;
  typename Api::Component FFuzzy;
  fzy::TKelFuzzyLogicParser FParser;
  std::vector<VariableRef> FVariables;  // inputs first, ozone last
  std::vector<BoundRule> FRules;
};

template <class Api>
RuleModel<Api>::RuleModel(const std::string& file) : FDefinitions(file) {
  FFuzzy.SetAutoTerms(false);  // only what the text defines, no "low", "medium" and "high"
  FFuzzy.SetThreshold(LeastStrength);
  FFuzzy.SetNumFunctionValues(PointsPerCurve);
  Read();
  for (const char* name : InputNames) FVariables.push_back(FindVariable(name));
  FVariables.push_back(FindVariable(OzoneName));
  for (const Rule& rule : Rules()) {
    BoundRule bound{&rule, {}, FindTerm(FVariables.back(), rule.Then)};
    for (std::size_t i = 0; i < InputCount; ++i)
      if (!rule.When[i].empty()) bound.When[i] = FindTerm(FVariables[i], rule.When[i]);
    FRules.push_back(std::move(bound));
  }
}

template <class Api>
void RuleModel<Api>::Read() {
  FFuzzy.SetName("air_quality");
  FParser.SetName("parser");
  FParser.SetFuzzyLogic(&FFuzzy);
  FFuzzy.SetParser(&FParser);
  const bool isForm = FDefinitions.Text().starts_with(FFuzzy.ClassName().Utf8());
  const auto onTerm = [this](const fzy::TString& name) { FDefinitions.AddTerm(name); };
  const auto onVariable = [this, isForm](const fzy::TString& name) {
    // The parser counts the lines of the text, which are not those of a form that it stands in.
    FDefinitions.AddVariable(name, isForm ? 0 : FParser.GetLineNumber());
  };
  Api::Listen(FParser, onTerm, onVariable);
  try {
    if (isForm) {
      fzy::TMemoryStream stream(FDefinitions.Text());
      fzy::LoadForm(stream, {&FFuzzy, &FParser});
      Api::TellLoaded(FFuzzy, onTerm, onVariable);
    } else {
      FFuzzy.SetStrings(fzy::TString(FDefinitions.Text()));
    }
  } catch (const fzy::EStoredFormError& error) {
    FDefinitions.FailAt(error.GetLine(), error.what());
  } catch (const fzy::EFzyException& error) {
    if (FParser.GetFault()) FDefinitions.FailAt(*FParser.GetFault(), error.what());
    FDefinitions.FailAt(0, error.what());  // what a form says twice stands nowhere in a text
  }
}

/// @throws InputError when there is none that a chart and the rules could use
template <class Api>
auto RuleModel<Api>::FindVariable(const std::string& name) -> VariableRef {
  VariableRef variable = Api::FindVariable(FFuzzy, name);
  if (!variable) FDefinitions.FailWithout(name);
  if (!(variable->GetMinimum() < variable->GetMaximum()))
    FDefinitions.FailIn(name, "has an empty range");
  return variable;
}

/// @throws likewise
template <class Api>
auto RuleModel<Api>::FindTerm(const VariableRef& variable, std::string_view name) const -> SetRef {
  SetRef term = Api::FindSet(variable, name);
  if (!term)
    FDefinitions.FailIn(variable->GetName(),
                        "lacks the term " + std::string(name) + ", which the rules name");
  return term;
}

template <class Api>
std::vector<Variable> RuleModel<Api>::Variables() const {
  std::vector<Variable> variables;
  for (const VariableRef& variable : FVariables) {
    std::vector<Term> terms;
    for (const SetRef& set : Api::Sets(variable))
      if (set->GetDefined()) terms.push_back({set->GetName().Utf8(), Api::Points(set)});
    variables.push_back({variable->GetName().Utf8(), variable->GetUnits().Utf8(),
                         variable->GetMinimum(), variable->GetMaximum(), std::move(terms)});
  }
  return variables;
}

template <class Api>
Inference RuleModel<Api>::Infer(const Day& day) const {
  std::array<MadeSet, InputCount> facts;
  for (std::size_t i = 0; i < InputCount; ++i)
    if (day.Inputs[i]) facts[i] = Api::MakeFact(FVariables[i], *day.Inputs[i]);

  const VariableRef& ozone = FVariables.back();
  Inference result;
  MadeSet evidence;
  for (const BoundRule& rule : FRules) {
    // A missing reading takes its premise out of the rule: an empty set in its place would count as
    // a perfect match. No premise at all would count as one too.
    std::vector<SetRef> premises;
    std::vector<SetRef> matchings;
    for (std::size_t i = 0; i < InputCount; ++i) {
      if (!rule.When[i] || !facts[i]) continue;
      premises.push_back(rule.When[i]);
      matchings.push_back(facts[i].Get());
    }
    if (premises.empty()) continue;
    MadeSet merged(ozone->AssertRule(premises, matchings, rule.Then, evidence.Get()));
    if (!merged) continue;  // too weak to fire: the evidence stays as it is
    evidence = std::move(merged);
    const double strength = ozone->GetCorrelationStrength(premises, matchings);
    if (strength > result.Strength) {
      result.Strength = strength;
      result.Strongest = rule.Text;
    }
  }
  if (evidence) result.Ozone = evidence->Defuzzify();
  return result;
}

template <class Api>
std::string RuleModel<Api>::Text() {
  std::string text;
  for (const fzy::TString& name : FDefinitions.Variables())
    text += FParser.PrettyPrint(Api::FindVariable(FFuzzy, name)).Utf8() + '\n';
  return text;
}

template <class Api>
std::string RuleModel<Api>::Form() {
  fzy::TMemoryStream stream;
  fzy::StoreForm(stream, {&FFuzzy, &FParser});
  return stream.GetBytes();
}

template <class Api>
std::vector<std::string> RuleModel<Api>::Sets() const {
  std::vector<std::string> sets;
  for (const VariableRef& variable : FVariables)
    for (const SetRef& set : Api::Sets(variable))
      sets.push_back(
          (variable->GetName() + " " + set->GetName() + " " + set->GetValuesToString()).Utf8());
  return sets;
}

}  // namespace air_quality
