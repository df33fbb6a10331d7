#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#include "fuzzylogic/framework/EnumSet.h"

namespace fzy {

/// The type of every X, membership degree, range bound, threshold and modifier: IEEE 754 double.
using TFzyFloat = double;

inline constexpr TFzyFloat ONE_THIRD = 1.0 / 3.0;
inline constexpr TFzyFloat TWO_THIRDS = 2.0 / 3.0;
static_assert(std::bit_cast<std::uint64_t>(ONE_THIRD) == 0x3FD5555555555555);
static_assert(std::bit_cast<std::uint64_t>(TWO_THIRDS) == 0x3FE5555555555555);

// The ordinals count from 0 in the order given; tables are indexed by them.

/// How a conclusion is fitted to the strength of its rule: cut at it, or scaled by it.
enum class TFuzzyCorrelationMethod : std::uint8_t { fcmMinimum, fcmProduct };
using enum TFuzzyCorrelationMethod;

/// How new evidence is merged into the evidence so far.
enum class TFuzzyInferenceMethod : std::uint8_t {
  fimMinMax,
  fimAdditive,
  fimMean,
  fimProduct,
  fimBoundedSum
};
using enum TFuzzyInferenceMethod;

/// The numeric modifiers of a set: arithmetic, power, and cuts that raise low or lower high values.
enum class TBaseFuzzyHedge : std::uint8_t {
  bfhAdd,
  bfhSubtract,
  bfhMultiply,
  bfhDivide,
  bfhPower,
  bfhCutLess,
  bfgCutLessEq,
  bfhCutGreater,
  bfhCutGreaterEq
};
using enum TBaseFuzzyHedge;

enum class TDefuzzificationMethod : std::uint8_t { dmCenterOfGravity, dmMeanOfMaxima };
using enum TDefuzzificationMethod;

/// How the points of a set were produced.
enum class TFuzzySetType : std::uint8_t {
  fstUserDefined,
  fstTriangle,
  fstDeclineCurve,
  fstPICurve,
  fstBetaCurve,
  fstGrowthCurve
};
using enum TFuzzySetType;

/// The linguistic hedges.
enum class TFuzzyHedge : std::uint8_t {
  fhNot,
  fhSomewhat,
  fhMoreOrLess,
  fhGreatly,
  fhPlus,
  fhVery,
  fhExtremely,
  fhAbove,
  fhBelow,
  fhSlightly,
  fhNormalize,
  fhAbout,
  fhVicinity,
  fhClose,
  fhNear,
  fhNeighboring,
  fhPositively,
  fhAbsolutely,
  fhDefinitely,
  fhGenerally
};
using enum TFuzzyHedge;

/// The operator families of union and intersection.
enum class TFuzzyOperation : std::uint8_t {
  foZadeh,
  foMean,
  foMeanSqr,
  foMeanSqrt,
  foProduct,
  foBoundedSum,
  foSum
};
using enum TFuzzyOperation;

/// Which coordinate of a membership point changed.
enum class TXYUpdateType : std::uint8_t { utX, utY };
using enum TXYUpdateType;

/// The kinds of token of the definition language.
enum class TFuzzyStreamTokenType : std::uint8_t {
  fstNone,
  fstAtom,
  fstString,
  fstInteger,
  fstFloat,
  fstVariable,
  fstInterface,
  fstList,
  fstIFuzzySet,
  fstObject,
  fstFuzzySet
};
using enum TFuzzyStreamTokenType;

using TFuzzyCorrelationMethods = TEnumSet<TFuzzyCorrelationMethod>;
using TFuzzyInferenceMethods = TEnumSet<TFuzzyInferenceMethod>;
using TXYUpdateTypes = TEnumSet<TXYUpdateType>;
using TFuzzyStreamTokenTypes = TEnumSet<TFuzzyStreamTokenType>;

/// The position of an enumeration's value in its tables.
template <class Enum>
constexpr std::size_t Ordinal(Enum value) {
  return static_cast<std::size_t>(value);
}

}  // namespace fzy
