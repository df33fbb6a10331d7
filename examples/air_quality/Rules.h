#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>

#include "Days.h"

namespace air_quality {

/// When every named term matches the reading of its variable, then ozone is the concluded term, as
/// strongly as the weakest of them matches.
struct Rule {
  std::array<std::string_view, InputCount> When;  ///< a term of each input; empty: whatever it is
  std::string_view Then;                          ///< a term of ozone
  std::string_view Because;
};

std::span<const Rule> Rules();

/// "hot, breezy, bright -> high", as it was asserted on a day: "hot, breezy, (bright) -> high" when
/// there was no reading to match "bright" with.
std::string ToText(const Rule& rule, const Day& day);

}  // namespace air_quality
