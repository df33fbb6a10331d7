#pragma once

#include <array>
#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace air_quality {

/// What the rules look at: the columns of `Day::Inputs` and `Rule::When`. The definition text has a
/// variable of each name.
inline constexpr std::size_t InputCount = 3;
inline constexpr std::array<const char*, InputCount> InputNames{"temperature", "wind", "solar"};
/// The variable that the rules conclude about.
inline constexpr const char* OzoneName = "ozone";

/// The readings of one day; nothing where one is missing.
struct Day {
  std::chrono::year_month_day Date{};
  std::array<std::optional<double>, InputCount> Inputs;
  std::optional<double> Ozone;
  int Line = 0;  ///< where it stands in the file

  /// Whether all inputs and the ozone were measured.
  bool IsComplete() const;
};

/// Reads the days of a season in ascending order from comma-separated text with the columns
/// ozone, solar.r, wind, temp, month and day, NA for a missing reading.
/// @throws InputError with the first faulty line
std::vector<Day> ReadDays(const std::string& file);

}  // namespace air_quality
