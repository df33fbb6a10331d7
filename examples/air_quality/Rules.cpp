#include "Rules.h"

namespace air_quality {
namespace {

// Nobody emits ozone: sunlight makes it from exhaust fumes, the faster the warmer it is, and wind
// carries it away. The rules go from cool to hot, and from wind to calm.
constexpr auto Table = std::to_array<Rule>({
    // temperature, wind, solar, ozone
    {{"cool", "", "dull"}, "trace", "neither warmth nor light to make it"},
    {{"cool", "", "bright"}, "low", "light alone makes little"},
    {{"mild", "", "dull"}, "trace", "neither warmth nor light to make it"},
    {{"mild", "windy", "bright"}, "low", "light alone makes little, and that blows away"},
    {{"mild", "breezy", "bright"}, "low", "light alone makes little"},
    {{"mild", "calm", "bright"}, "moderate", "still air keeps what the light makes"},
    {{"warm", "windy", "dull"}, "trace", "little is made, and that blows away"},
    {{"warm", "breezy", "dull"}, "low", "warmth alone makes little"},
    {{"warm", "calm", "dull"}, "elevated", "warmth alone makes little, but all of it stays"},
    {{"warm", "windy", "bright"}, "moderate", "made, and mostly blown away"},
    {{"warm", "breezy", "bright"}, "moderate", "made, and partly blown away"},
    {{"warm", "calm", "bright"}, "high", "made, and kept"},
    {{"hot", "windy", ""}, "elevated", "made fast, and mostly blown away"},
    {{"hot", "breezy", "dull"}, "elevated", "made fast for so little light"},
    {{"hot", "breezy", "bright"}, "high", "made fast, and partly blown away"},
    {{"hot", "calm", ""}, "extreme", "made fast, and kept"},
});

}  // namespace

std::span<const Rule> Rules() { return Table; }

std::string ToText(const Rule& rule, const Day& day) {
  std::string text;
  for (std::size_t i = 0; i < InputCount; ++i) {
    if (rule.When[i].empty()) continue;
    if (!text.empty()) text += ", ";
    const std::string term(rule.When[i]);
    text += day.Inputs[i] ? term : '(' + term + ')';
  }
  return text.append(" -> ").append(rule.Then);
}

}  // namespace air_quality
