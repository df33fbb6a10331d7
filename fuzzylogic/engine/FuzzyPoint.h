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

/// The most points that a shape may be made of, or a list be expanded to.
inline constexpr int MostShapePoints = 16'777'216;

/// A membership function: piecewise linear through its points in order, flat beyond the first and
/// the last.
using TFuzzyCurve = std::span<const TFuzzyPoint>;

}  // namespace fzy
