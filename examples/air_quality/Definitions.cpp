#include "Definitions.h"

#include <algorithm>

#include "InputFile.h"

namespace air_quality {
namespace {

[[noreturn]] void FailTwice(const char* what, const fzy::TString& name) {
  throw fzy::EFzyException(fzy::TString("the ") + what + " " + name + " is defined twice");
}

}  // namespace

Definitions::Definitions(const std::string& file) : FFile(file), FText(ReadFile(file)) {}

void Definitions::AddTerm(const fzy::TString& name) {
  if (!FTerms.insert(name).second) FailTwice("term", name);
}

void Definitions::AddVariable(const fzy::TString& name, int line) {
  if (std::ranges::find(FVariables, name) != FVariables.end()) FailTwice("variable", name);
  FVariables.push_back(name);
  FEnds.push_back(line);
  FTerms.clear();
}

void Definitions::FailAt(int line, const std::string& message) const {
  throw InputError(FFile, line, message);
}

void Definitions::FailAt(const fzy::TReadingFault& fault, const std::string& message) const {
  throw InputError(FFile, fault, message);
}

void Definitions::FailWithout(const std::string& variable) const {
  const auto lines = 1 + std::count(FText.begin(), FText.end(), '\n');
  FailAt(static_cast<int>(lines), "the text ends without the variable " + variable);
}

void Definitions::FailIn(const fzy::TString& variable, const std::string& what) const {
  const auto index = std::ranges::find(FVariables, variable) - FVariables.begin();
  FailAt(FEnds.at(static_cast<std::size_t>(index)),
         "the variable " + variable.Utf8() + ", which ends here, " + what);
}

}  // namespace air_quality
