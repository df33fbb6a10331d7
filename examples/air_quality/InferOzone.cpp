#include "InferOzone.h"

#include <array>
#include <vector>

namespace air_quality {
namespace {

using namespace fzy;

/// A crisp set for each reading, among the sets of its variable; nothing for a missing one. The
/// handles take them out again.
using Facts = std::array<TOwned<TFuzzySet>, InputCount>;

Facts MakeFacts(const Model& model, const Day& day) {
  Facts facts;
  for (std::size_t i = 0; i < InputCount; ++i) {
    if (!day.Inputs[i]) continue;
    facts[i] = TOwned<TFuzzySet>(TFuzzySet::Create(model.Input(i).GetItems()));
    facts[i]->CreateCrispValue(*day.Inputs[i]);
  }
  return facts;
}

/// The premises of a rule that can be matched on a day, side by side with the facts.
struct Premises {
  std::vector<TFuzzySet*> Terms;
  std::vector<TFuzzySet*> Facts;
};

/// A missing reading takes its premise out of the rule: an empty set in its place would count as a
/// perfect match.
Premises MatchablePremises(const BoundRule& rule, const Facts& facts) {
  Premises premises;
  for (std::size_t i = 0; i < InputCount; ++i) {
    if (!rule.When[i] || !facts[i]) continue;
    premises.Terms.push_back(rule.When[i]);
    premises.Facts.push_back(facts[i].Get());
  }
  return premises;
}

}  // namespace

Inference InferOzone(const Model& model, const Day& day) {
  const Facts facts = MakeFacts(model, day);
  TFuzzyVariable& ozone = model.Ozone();
  Inference result;
  TOwned<TFuzzySet> evidence;
  for (const BoundRule& rule : model.Rules()) {
    const auto [terms, matching] = MatchablePremises(rule, facts);
    if (terms.empty()) continue;  // no premise at all would count as a perfect match too
    TFuzzySet* merged = ozone.AssertRule(terms, matching, rule.Then, evidence.Get());
    if (!merged) continue;                 // too weak to fire: the evidence stays as it is
    evidence = TOwned<TFuzzySet>(merged);  // frees the evidence that it was merged from
    const double strength = ozone.GetCorrelationStrength(terms, matching);
    if (strength > result.Strength) {
      result.Strength = strength;
      result.Strongest = rule.Text;
    }
  }
  if (evidence) result.Ozone = evidence->Defuzzify();
  return result;
}

}  // namespace air_quality
