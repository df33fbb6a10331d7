#include "fuzzylogic/engine/detail/WideFloat.h"

#include <cmath>
#include <utility>

namespace fzy::detail {
namespace {

constexpr int ExponentOfZero = -100'000;  // so that 0 is the smaller one in any sum

}  // namespace

TWideFloat::TWideFloat(TFzyFloat mantissa, int exponent) noexcept {
  int shift = 0;
  FMantissa = std::frexp(mantissa, &shift);
  FExponent = FMantissa == 0 ? ExponentOfZero : exponent + shift;
}

TFzyFloat TWideFloat::Narrow() const noexcept { return std::ldexp(FMantissa, FExponent); }

TWideFloat operator+(TWideFloat a, TWideFloat b) noexcept {
  if (a.FExponent < b.FExponent) std::swap(a, b);
  // What falls off the smaller one is far below the last bit of the sum.
  return {a.FMantissa + std::ldexp(b.FMantissa, b.FExponent - a.FExponent), a.FExponent};
}

TWideFloat operator*(TWideFloat a, TWideFloat b) noexcept {
  return {a.FMantissa * b.FMantissa, a.FExponent + b.FExponent};
}

TWideFloat operator/(TWideFloat a, TWideFloat b) noexcept {
  return {a.FMantissa / b.FMantissa, a.FExponent - b.FExponent};
}

}  // namespace fzy::detail
