#pragma once

#include "fuzzylogic/FuzzyLogic.h"

namespace stored_form {

/// How much a house is heated at a temperature outside: a component with two variables, and the
/// parser that writes its text.
class Heating {
 public:
  /// Gives the two components the names that a form tells them apart by, and nothing else: links,
  /// settings and variables come from `Build` or from a form.
  Heating();

  /// Makes the model by calls.
  void Build();

  /// The heating power in percent at a temperature in degrees Celsius.
  /// @throws EFzyException when the model lacks a variable or a term that the rules name
  double PowerAt(double temperature);

  fzy::TFuzzyLogic Fuzzy;
  fzy::TKelFuzzyLogicParser Parser;

 private:
  fzy::TFuzzyVariable* AddVariable(const char* name, double minimum, double maximum,
                                   const char* units);
};

}  // namespace stored_form
