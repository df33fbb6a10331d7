#pragma once

#include <optional>
#include <span>

namespace air_quality {

// Two lists that are compared have the same number of values.

/// Nothing without values.
std::optional<double> Mean(std::span<const double> values);

/// The mean of |a - b|; nothing without values.
std::optional<double> MeanAbsoluteError(std::span<const double> a, std::span<const double> b);

/// Spearman's rank correlation, -1 to 1: the correlation of the ranks, where equal values share the
/// mean of their ranks. Nothing where one side has no two different values.
std::optional<double> RankCorrelation(std::span<const double> a, std::span<const double> b);

}  // namespace air_quality
