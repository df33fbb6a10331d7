#pragma once

#include <span>

#include "fuzzylogic/vocabulary/FuzzyTypes.h"

namespace fzy {

/// One point of a membership function: a crisp X, in the variable's units, and the degree Y there.
struct TFuzzyPoint {
  TFzyFloat X = 0;
  TFzyFloat Y = 0;

  friend bool operator==(const TFuzzyPoint&, const TFuzzyPoint&) = default;
};

/// A membership function: piecewise linear through its points in order, flat beyond the first and
/// the last.
using TFuzzyCurve = std::span<const TFuzzyPoint>;

}  // namespace fzy
