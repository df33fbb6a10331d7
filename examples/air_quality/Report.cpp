#include "Report.h"

#include <array>
#include <iomanip>
#include <sstream>
#include <string_view>

#include "Rules.h"
#include "Statistics.h"
#include "fuzzylogic/framework/Format.h"

namespace air_quality {
namespace {

constexpr const char* Indent = "  ";

std::string DayLine(const Day& day, const Inference& inference) {
  const auto& [temperature, wind, solar] = day.Inputs;
  std::ostringstream line;
  line << MonthName(day.Date.month()).substr(0, 3) << std::setw(3)
       << static_cast<unsigned>(day.Date.day());
  line << std::setw(8) << Number(temperature, 0) << std::setw(7) << Number(wind, 1) << std::setw(7)
       << Number(solar, 0);
  line << std::setw(11) << Number(inference.Ozone, 1) << std::setw(10) << Number(day.Ozone, 0);
  line << Indent;
  if (inference.Strongest)
    line << ' ' << Number(inference.Strength, 2) << Indent << ToText(*inference.Strongest, day);
  else
    line << " no rule fired";
  return line.str();
}

std::string Heading(const std::vector<Variable>& variables) {
  std::string units;
  for (const Variable& variable : variables) {
    if (!units.empty()) units += ", ";
    units += variable.Name + " in " + variable.Units;
  }
  return units +
         "\nA dash is a missing reading. Brackets show the premise that it takes out of a rule.\n\n"
         "day       temp   wind  solar   inferred  measured   strongest rule\n";
}

}  // namespace

Agreement Compare(const std::vector<Day>& days, const std::vector<Inference>& inferences) {
  Agreement result;
  std::vector<double> inferred;
  std::vector<double> measured;
  std::vector<double> temperature;
  for (std::size_t i = 0; i < days.size(); ++i) {
    if (!inferences[i].Ozone) continue;
    ++result.Inferred;
    if (!days[i].IsComplete()) continue;
    inferred.push_back(*inferences[i].Ozone);
    measured.push_back(*days[i].Ozone);
    temperature.push_back(*days[i].Inputs.front());
  }
  result.Compared = static_cast<int>(measured.size());
  result.MeanError = MeanAbsoluteError(inferred, measured);
  const std::vector<double> mean(measured.size(), Mean(measured).value_or(0));
  result.MeanErrorOfMean = MeanAbsoluteError(mean, measured);
  result.Rank = RankCorrelation(inferred, measured);
  result.RankOfTemperature = RankCorrelation(temperature, measured);
  return result;
}

std::string Number(std::optional<double> value, int decimals) {
  return value ? fzy::FormatFixed(*value, decimals).Utf8() : "-";
}

std::string MonthName(std::chrono::month month) {
  constexpr std::array<std::string_view, 12> names{"January",   "February", "March",    "April",
                                                   "May",       "June",     "July",     "August",
                                                   "September", "October",  "November", "December"};
  return std::string(names[static_cast<unsigned>(month) - 1]);
}

std::string ReportText(const std::vector<Variable>& variables, const std::vector<Day>& days,
                       const std::vector<Inference>& inferences, const Agreement& agreement) {
  std::ostringstream text;
  text << Heading(variables);
  for (std::size_t i = 0; i < days.size(); ++i) text << DayLine(days[i], inferences[i]) << '\n';
  const std::string units = ' ' + variables.back().Units;
  text << '\n'
       << agreement.Inferred << " of " << days.size() << " days inferred by " << Rules().size()
       << " rules, " << agreement.Compared << " of them complete. On these:\n"
       << "mean absolute error  " << std::setw(6) << Number(agreement.MeanError, 1) << units
       << "   (" << Number(agreement.MeanErrorOfMean, 1) << units
       << " when the mean is guessed every day)\n"
       << "rank correlation     " << std::setw(6) << Number(agreement.Rank, 3)
       << std::string(units.size() + 3, ' ') << '(' << Number(agreement.RankOfTemperature, 3)
       << " for temperature alone)\n";
  return text.str();
}

std::string ShortReport(const std::vector<Variable>& variables, const Agreement& agreement) {
  return std::to_string(Rules().size()) + " rules, " + std::to_string(agreement.Compared) +
         " complete days: rank correlation " + Number(agreement.Rank, 2) +
         ", mean absolute error " + Number(agreement.MeanError, 1) + ' ' + variables.back().Units;
}

}  // namespace air_quality
