#pragma once

#include <algorithm>
#include <cstdint>

#include "fuzzylogic/vocabulary/FuzzyExceptions.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy::detail {

/// The strength of a conjunction of premises, sets of either model: the least correlation strength
/// of each with its matching fact, at most 1.
/// @throws EFzyException (`SFzyMatchingsMissing`, `SFzySetMissing`)
template <class Sets>
TFzyFloat ConjunctionStrength(Sets premises, Sets matchings) {
  constexpr const char* operation = "GetCorrelationStrength";
  if (matchings.size() < premises.size()) {
    throw EFzyException(SFzyMatchingsMissing,
                        {TString(operation), static_cast<std::int64_t>(premises.size()),
                         static_cast<std::int64_t>(matchings.size())});
  }
  TFzyFloat strength = 1.0;
  for (std::size_t i = 0; i < premises.size(); ++i) {
    if (!premises[i]) throw EFzyException(SFzySetMissing, {TString(operation)});
    strength = std::min(strength, premises[i]->GetCorrelationStrength(matchings[i]));
  }
  return strength;
}

}  // namespace fzy::detail
