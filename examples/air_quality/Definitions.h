#pragma once

#include <set>
#include <string>
#include <vector>

#include "fuzzylogic/FuzzyLogic.h"

namespace air_quality {

/// What a definition text defines, in the order of the text, and the places that error messages
/// name.
class Definitions {
 public:
  /// Reads the file, which the component that is to hold the model parses afterwards.
  /// @throws InputError when it cannot be read
  explicit Definitions(const std::string& file);

  const std::string& Text() const { return FText; }
  /// The names of the variables.
  const std::vector<fzy::TString>& Variables() const { return FVariables; }

  // Told by the parser. A name that comes twice would be two sets (or variables) in one object
  // model, and the later one alone in the other.
  /// @throws EFzyException for a second one of its name
  void AddTerm(const fzy::TString& name);
  void AddVariable(const fzy::TString& name, int line);

  [[noreturn]] void FailAt(int line, const std::string& message) const;
  [[noreturn]] void FailAt(const fzy::TReadingFault& fault, const std::string& message) const;
  /// Where the text ends.
  [[noreturn]] void FailWithout(const std::string& variable) const;
  /// Where the definition of the variable ends.
  [[noreturn]] void FailIn(const fzy::TString& variable, const std::string& what) const;

 private:
  std::string FFile;
  std::string FText;
  std::vector<fzy::TString> FVariables;
  std::vector<int> FEnds;         // of the variables, each as a line
  std::set<fzy::TString> FTerms;  // of the variable that is being read
};

}  // namespace air_quality
