#include "fuzzylogic/vocabulary/FuzzyTypeNames.h"

#include <array>

namespace fzy {
namespace {

constexpr std::array CorrelationMethods{"fcmMinimum", "fcmProduct"};
constexpr std::array InferenceMethods{"fimMinMax", "fimAdditive", "fimMean", "fimProduct",
                                      "fimBoundedSum"};
constexpr std::array DefuzzificationMethods{"dmCenterOfGravity", "dmMeanOfMaxima"};
constexpr std::array SetTypes{"fstUserDefined", "fstTriangle",  "fstDeclineCurve",
                              "fstPICurve",     "fstBetaCurve", "fstGrowthCurve"};

static_assert(CorrelationMethods.size() == Ordinal(fcmProduct) + 1);
static_assert(InferenceMethods.size() == Ordinal(fimBoundedSum) + 1);
static_assert(DefuzzificationMethods.size() == Ordinal(dmMeanOfMaxima) + 1);
static_assert(SetTypes.size() == Ordinal(fstGrowthCurve) + 1);

}  // namespace

std::span<const char* const> ValueNames(TFuzzyCorrelationMethod /*value*/) noexcept {
  return CorrelationMethods;
}
std::span<const char* const> ValueNames(TFuzzyInferenceMethod /*value*/) noexcept {
  return InferenceMethods;
}
std::span<const char* const> ValueNames(TDefuzzificationMethod /*value*/) noexcept {
  return DefuzzificationMethods;
}
std::span<const char* const> ValueNames(TFuzzySetType /*value*/) noexcept { return SetTypes; }

}  // namespace fzy
