#pragma once

#include <optional>

#include "fuzzylogic/framework/Text.h"
#include "fuzzylogic/vocabulary/FuzzyTypes.h"

namespace fzy {

/// A number of a definition text; whole when it is a 32-bit signed integer.
struct TFuzzyNumber {
  TFzyFloat Value;
  bool IsWhole;
};

/// Reads a whole word as a number: an optional sign, digits with an optional point, an optional
/// exponent; always with a point, in every locale. A number too small for a double is 0; one too
/// large is no number.
std::optional<TFuzzyNumber> ReadFuzzyNumber(std::u16string_view word);

}  // namespace fzy
