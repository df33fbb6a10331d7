#pragma once

#include <optional>

#include "Days.h"
#include "Model.h"

namespace air_quality {

/// What the rules say about one day.
struct Inference {
  std::optional<double> Ozone;      ///< nothing when no rule fired
  const Rule* Strongest = nullptr;  ///< the rule that fired hardest, the first of equals
  double Strength = 0;              ///< its strength, 0 to 1
};

/// Leaves the model as it was.
Inference InferOzone(const Model& model, const Day& day);

}  // namespace air_quality
