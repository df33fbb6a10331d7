#include "Model.h"

#include <algorithm>
#include <map>

#include "InputFile.h"
#include "support/LineParser.h"

namespace air_quality {
namespace {

using namespace fzy;

/// A term that matches less than this is the far tail of a bell and says nothing.
constexpr double LeastStrength = 0.05;
/// Points of a curved term: odd, so that a bell has one at its peak.
constexpr int PointsPerCurve = 15;

void Configure(TFuzzyLogic& fuzzy) {
  // Only what the text defines: no "low", "medium" and "high" added to each variable.
  fuzzy.SetAutoTerms(false);
  fuzzy.SetThreshold(LeastStrength);
  fuzzy.SetNumFunctionValues(PointsPerCurve);
  // Several rules speak about each day and each shall be heard. So a conclusion is scaled by the
  // strength of its rule, what the rules conclude is added up, and the centre of gravity weighs it.
  // With cutting and the greater value, a rule would no longer count beneath another.
  fuzzy.SetCorrelationMethod(fcmProduct);
  fuzzy.SetInferenceMethod(fimAdditive);
  fuzzy.SetDefuzzificationMethod(dmCenterOfGravity);
}

}  // namespace

/// Reads the text and keeps the places that error messages name.
class Model::Reading {
 public:
  Reading(const std::string& file, TFuzzyLogic& fuzzy) : FFile(file), FFuzzy(fuzzy) {
    const std::string text = ReadFile(file);
    FLastLine = 1 + static_cast<int>(std::count(text.begin(), text.end(), '\n'));
    FParser.SetFuzzyLogic(&fuzzy);
    fuzzy.SetParser(&FParser);
    FParser.SetOnParseFuzzyVariable(
        [this](auto*, TFuzzyVariable* variable) { FEnds[variable] = FParser.GetLineNumber(); });
    try {
      fuzzy.SetStrings(TString(text));
    } catch (const EFzyParseException& error) {
      throw InputError(file, error.GetLineNumber(), error.what());
    }
  }

  /// @throws InputError when there is none that a chart and the rules could use
  TFuzzyVariable* Variable(const TString& name) const {
    TFuzzyVariables& variables = *FFuzzy.GetItems();
    const int index = variables.IndexOf(name);
    if (index < 0)
      throw InputError(FFile, FLastLine, "the text ends without the variable " + name.Utf8());
    TFuzzyVariable* variable = variables[index];
    if (!(variable->GetMinimum() < variable->GetMaximum())) Fail(*variable, "has an empty range");
    return variable;
  }

  /// @throws likewise
  TFuzzySet* Term(const TFuzzyVariable& variable, std::string_view name) const {
    TFuzzySets& terms = *variable.GetItems();
    const int index = terms.IndexOf(TString(name));
    if (index < 0) Fail(variable, "lacks the term " + std::string(name) + ", which the rules name");
    return terms[index];
  }

 private:
  [[noreturn]] void Fail(const TFuzzyVariable& variable, const std::string& what) const {
    throw InputError(FFile, FEnds.at(&variable),
                     "the variable " + variable.GetName().Utf8() + ", which ends here, " + what);
  }

  const std::string& FFile;
  TFuzzyLogic& FFuzzy;
  support::LineParser FParser;
  std::map<const TFuzzyVariable*, int> FEnds;
  int FLastLine = 0;
};

Model::Model(const std::string& file) {
  Configure(FFuzzy);
  const Reading text(file, FFuzzy);
  for (std::size_t i = 0; i < InputCount; ++i) FInputs[i] = text.Variable(InputNames[i]);
  FOzone = text.Variable(OzoneName);
  for (const Rule& rule : air_quality::Rules()) {
    BoundRule bound{&rule, {}, text.Term(*FOzone, rule.Then)};
    for (std::size_t i = 0; i < InputCount; ++i)
      if (!rule.When[i].empty()) bound.When[i] = text.Term(*FInputs[i], rule.When[i]);
    FRules.push_back(bound);
  }
}

std::vector<TFuzzyVariable*> Model::Variables() const {
  std::vector<TFuzzyVariable*> variables(FInputs.begin(), FInputs.end());
  variables.push_back(FOzone);
  return variables;
}

std::string Model::Text() {
  TKelFuzzyLogicParser writer;
  std::string text;
  writer.SetFuzzyLogic(&FFuzzy);
  for (const TFuzzyVariable* variable : *FFuzzy.GetItems())
    text += writer.PrettyPrint(variable).Utf8() + '\n';
  return text;
}

std::vector<TString> Model::Sets() const {
  std::vector<TString> sets;
  for (const TFuzzyVariable* variable : Variables())
    for (const TFuzzySet* set : *variable->GetItems())
      sets.push_back(variable->GetName() + " " + set->GetName() + " " + set->GetValuesToString());
  return sets;
}

void CheckRanges(const Model& model, const std::vector<Day>& days, const std::string& file) {
  const auto check = [&](const Day& day, const TFuzzyVariable& variable, std::optional<double> x) {
    if (!x || (*x >= variable.GetMinimum() && *x <= variable.GetMaximum())) return;
    throw InputError(file, day.Line,
                     "the reading lies outside the range of " + variable.GetName().Utf8() + ": " +
                         fzy::FormatFixed(*x, 1).Utf8());
  };
  for (const Day& day : days) {
    for (std::size_t i = 0; i < InputCount; ++i) check(day, model.Input(i), day.Inputs[i]);
    check(day, model.Ozone(), day.Ozone);
  }
}

}  // namespace air_quality
