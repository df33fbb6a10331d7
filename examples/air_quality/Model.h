#pragma once

#include <array>
#include <string>
#include <vector>

#include "Rules.h"
#include "fuzzylogic/FuzzyLogic.h"

namespace air_quality {

/// A rule with its terms looked up.
struct BoundRule {
  const Rule* Text;
  std::array<fzy::TFuzzySet*, InputCount> When;  ///< nothing where the rule does not look
  fzy::TFuzzySet* Then;
};

/// The variables and terms of the definition text, the settings they are reasoned with, and the
/// rules about them.
class Model {
 public:
  /// @throws InputError when the text has a fault or lacks something that the rules name
  explicit Model(const std::string& file);

  fzy::TFuzzyVariable& Input(std::size_t index) const { return *FInputs[index]; }
  fzy::TFuzzyVariable& Ozone() const { return *FOzone; }
  const std::vector<BoundRule>& Rules() const { return FRules; }

  /// Inputs first, ozone last.
  std::vector<fzy::TFuzzyVariable*> Variables() const;
  /// The definition text of the model, as it reads back.
  std::string Text();
  /// Every set of every variable, by name and points: the terms, unless an intermediate set was
  /// left behind.
  std::vector<fzy::TString> Sets() const;

 private:
  class Reading;

  fzy::TFuzzyLogic FFuzzy;
  std::array<fzy::TFuzzyVariable*, InputCount> FInputs{};
  fzy::TFuzzyVariable* FOzone = nullptr;
  std::vector<BoundRule> FRules;
};

/// Refuses a reading that its variable does not cover: it would be taken for the nearest end.
/// @throws InputError with the line of the first
void CheckRanges(const Model& model, const std::vector<Day>& days, const std::string& file);

}  // namespace air_quality
