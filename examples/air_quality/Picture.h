#pragma once

#include <string>
#include <vector>

#include "Model.h"

namespace air_quality {

/// A scalable picture: the terms of the four variables, and beneath them the inferred and the
/// measured ozone over the season.
std::string DrawPicture(const std::vector<Variable>& variables, const std::vector<Day>& days,
                        const std::vector<Inference>& inferences, const std::string& summary);

}  // namespace air_quality
