#include "Model.h"

#include "InputFile.h"
#include "fuzzylogic/FuzzyLogic.h"

namespace air_quality {

void CheckRanges(const std::vector<Variable>& variables, const std::vector<Day>& days,
                 const std::string& file) {
  const auto check = [&](const Day& day, const Variable& variable, std::optional<double> x) {
    if (!x || (*x >= variable.Minimum && *x <= variable.Maximum)) return;
    throw InputError(file, day.Line,
                     "the reading lies outside the range of " + variable.Name + ": " +
                         fzy::FormatFixed(*x, 1).Utf8());
  };
  for (const Day& day : days) {
    for (std::size_t i = 0; i < InputCount; ++i) check(day, variables[i], day.Inputs[i]);
    check(day, variables.back(), day.Ozone);
  }
}

}  // namespace air_quality
