#include "fuzzylogic/vocabulary/FuzzyTypeNames.h"

namespace fzy {
namespace {

constexpr const char* CorrelationMethods[] = {"fcmMinimum", "fcmProduct"};
constexpr const char* InferenceMethods[] = {"fimMinMax", "fimAdditive", "fimMean", "fimProduct",
                                            "fimBoundedSum"};
constexpr const char* DefuzzificationMethods[] = {"dmCenterOfGravity", "dmMeanOfMaxima"};
constexpr const char* SetTypes[] = {"fstUserDefined", "fstTriangle",  "fstDeclineCurve",
                                    "fstPICurve",     "fstBetaCurve", "fstGrowthCurve"};

static_assert(std::size(CorrelationMethods) == Ordinal(fcmProduct) + 1);
static_assert(std::size(InferenceMethods) == Ordinal(fimBoundedSum) + 1);
static_assert(std::size(DefuzzificationMethods) == Ordinal(dmMeanOfMaxima) + 1);
static_assert(std::size(SetTypes) == Ordinal(fstGrowthCurve) + 1);

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
