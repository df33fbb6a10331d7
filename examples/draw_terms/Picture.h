#pragma once

#include "fuzzylogic/FuzzyLogic.h"

/// A picture with a chart for each variable: a curve for each of its terms over its range.
std::string DrawVariables(const std::vector<const fzy::TFuzzyVariable*>& variables);
