#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Days.h"
#include "Model.h"

namespace air_quality {

/// How well the inferred ozone agrees with the measured one on the complete days.
struct Agreement {
  int Inferred = 0;  ///< days on which a rule fired, complete or not
  int Compared = 0;  ///< complete days among them
  std::optional<double> MeanError;
  std::optional<double> MeanErrorOfMean;  ///< when the mean is guessed every day
  std::optional<double> Rank;
  std::optional<double> RankOfTemperature;  ///< when days are ordered by temperature alone
};

Agreement Compare(const std::vector<Day>& days, const std::vector<Inference>& inferences);

/// A line a day, then the agreement.
std::string ReportText(const std::vector<Variable>& variables, const std::vector<Day>& days,
                       const std::vector<Inference>& inferences, const Agreement& agreement);

/// The agreement in one line, for the picture.
std::string ShortReport(const std::vector<Variable>& variables, const Agreement& agreement);

/// "12.3", or a dash for what there is not.
std::string Number(std::optional<double> value, int decimals);

std::string MonthName(std::chrono::month month);

}  // namespace air_quality
