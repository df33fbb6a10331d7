#include "Heating.h"

namespace stored_form {

using namespace fzy;

Heating::Heating() {
  Fuzzy.SetName("heating");
  Parser.SetName("parser");
}

TFuzzyVariable* Heating::AddVariable(const char* name, double minimum, double maximum,
                                     const char* units) {
  TFuzzyVariable* variable = Fuzzy.GetItems()->Add(name);
  variable->SetMinimum(minimum);
  variable->SetMaximum(maximum);
  variable->SetUnits(units);
  return variable;
}

void Heating::Build() {
  Fuzzy.SetParser(&Parser);
  Parser.SetFuzzyLogic(&Fuzzy);
  Fuzzy.SetAutoTerms(false);
  Fuzzy.SetThreshold(0.05);
  Fuzzy.SetCorrelationMethod(fcmProduct);

  TFuzzyVariable* outside = AddVariable("outside", -20, 40, "\u00B0C");
  outside->GetItems()->Add("cold")->CreateCurveValues(9, -10, 12, 1, false);
  outside->GetItems()->Add("cool")->CreateTriangleFunctionValues(3, 11, 19);
  TFuzzySet* warm = outside->GetItems()->Add("warm");
  warm->CreateCurveValues(9, 12, 22, 17, true);
  warm->SetComment("no heating \u2013 open a window");

  TFuzzyVariable* power = AddVariable("power", 0, 100, "%");
  power->GetItems()->Add("off")->CreateTriangleFunctionValues(0, 0, 20);
  power->GetItems()->Add("half")->CreatePIFunctionValues(11, 100.0 / 3, 50);
  power->GetItems()->Add("full")->CreateTriangleFunctionValues(70, 100, 100);
  power->SetThreshold(0.02);  // weaker rules count here than elsewhere
}

double Heating::PowerAt(double temperature) {
  TFuzzyVariable* outside = Fuzzy.GetItems()->GetItemByName("outside");
  TFuzzyVariable* power = Fuzzy.GetItems()->GetItemByName("power");
  TOwned<TFuzzySet> fact(TFuzzySet::Create(outside->GetItems()));
  fact->CreateCrispValue(temperature);

  struct Rule {
    const char* When;
    const char* Then;
  };
  TOwned<TFuzzySet> evidence;
  for (const Rule& rule : {Rule{"cold", "full"}, {"cool", "half"}, {"warm", "off"}}) {
    TFuzzySet* premise = outside->GetItems()->GetItemByName(rule.When);
    TFuzzySet* conclusion = power->GetItems()->GetItemByName(rule.Then);
    TOwned<TFuzzySet> merged(power->AssertRule(premise, conclusion, fact.Get(), evidence.Get()));
    if (merged) evidence = std::move(merged);
  }
  return evidence ? evidence->Defuzzify() : 0;
}

}  // namespace stored_form
