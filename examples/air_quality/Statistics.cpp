#include "Statistics.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

namespace air_quality {
namespace {

std::vector<double> Ranks(std::span<const double> values) {
  std::vector<std::size_t> order(values.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::sort(order.begin(), order.end(),
            [&](std::size_t i, std::size_t j) { return values[i] < values[j]; });
  std::vector<double> ranks(values.size());
  for (std::size_t first = 0; first < order.size();) {
    std::size_t end = first;
    while (end < order.size() && values[order[end]] == values[order[first]]) ++end;
    for (std::size_t i = first; i < end; ++i)
      ranks[order[i]] = static_cast<double>(first + 1 + end) / 2;
    first = end;
  }
  return ranks;
}

}  // namespace

std::optional<double> Mean(std::span<const double> values) {
  if (values.empty()) return std::nullopt;
  return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

std::optional<double> MeanAbsoluteError(std::span<const double> a, std::span<const double> b) {
  std::vector<double> errors;
  for (std::size_t i = 0; i < a.size(); ++i) errors.push_back(std::abs(a[i] - b[i]));
  return Mean(errors);
}

std::optional<double> RankCorrelation(std::span<const double> a, std::span<const double> b) {
  const std::vector<double> x = Ranks(a);
  const std::vector<double> y = Ranks(b);
  const double middle = static_cast<double>(x.size() + 1) / 2;  // the mean of any ranks
  double xx = 0;
  double xy = 0;
  double yy = 0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    xx += (x[i] - middle) * (x[i] - middle);
    xy += (x[i] - middle) * (y[i] - middle);
    yy += (y[i] - middle) * (y[i] - middle);
  }
  if (xx == 0 || yy == 0) return std::nullopt;
  return xy / std::sqrt(xx * yy);
}

}  // namespace air_quality
