#pragma once

#include <span>

#include "fuzzylogic/vocabulary/FuzzyTypes.h"

namespace fzy {

// The names of the values of those enumerations that properties are published with, by ordinal.
// They are what a form stores, so they never change.

std::span<const char* const> ValueNames(TFuzzyCorrelationMethod value) noexcept;
std::span<const char* const> ValueNames(TFuzzyInferenceMethod value) noexcept;
std::span<const char* const> ValueNames(TDefuzzificationMethod value) noexcept;
std::span<const char* const> ValueNames(TFuzzySetType value) noexcept;

}  // namespace fzy
