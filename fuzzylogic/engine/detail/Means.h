#pragma once

#include "fuzzylogic/engine/FuzzyCurve.h"

// Means over the points of a curve that has some, summed up in numbers of a given type.

namespace fzy::detail {

template <class Number>
Number MeanOfMaximaIn(TFuzzyCurve curve) noexcept {
  Number sum = curve[0].X;
  TFzyFloat highest = curve[0].Y;
  int count = 1;
  for (const TFuzzyPoint& point : curve.subspan(1)) {
    if (highest - FuzzyTolerance < point.Y && point.Y < highest + FuzzyTolerance) {
      sum += point.X;
      ++count;
    } else if (point.Y > highest) {
      sum = point.X;
      highest = point.Y;
      count = 1;
    }
  }
  return sum / count;
}

template <class Number>
Number MeanYIn(TFuzzyCurve curve) noexcept {
  Number sum = 0;
  for (const TFuzzyPoint& point : curve) sum += point.Y;
  return sum / static_cast<int>(curve.size());
}

}  // namespace fzy::detail
