#pragma once

#include <limits>

#include "fuzzylogic/vocabulary/FuzzyTypes.h"

namespace fzy::detail {

inline constexpr TFzyFloat LargestFloat = std::numeric_limits<TFzyFloat>::max();

/// A number of double precision with an exponent of its own, which has room for every product and
/// sum on the way from finite numbers to a finite one. A formula gives the same bits over this type
/// and over doubles, as long as doubles neither overflow nor vanish; so it is written once, for
/// either, and computed with these where doubles have failed. Nothing is divided by 0.
class TWideFloat {
 public:
  TWideFloat(TFzyFloat value = 0) noexcept : TWideFloat(value, 0) {}

  /// The double nearest to it; infinite when it is too large.
  TFzyFloat Narrow() const noexcept;

  friend TWideFloat operator+(TWideFloat a, TWideFloat b) noexcept;
  friend TWideFloat operator-(TWideFloat a, TWideFloat b) noexcept {
    b.FMantissa = -b.FMantissa;
    return a + b;
  }
  friend TWideFloat operator*(TWideFloat a, TWideFloat b) noexcept;
  friend TWideFloat operator/(TWideFloat a, TWideFloat b) noexcept;
  TWideFloat& operator+=(TWideFloat other) noexcept { return *this = *this + other; }

  friend bool operator<(TWideFloat a, TWideFloat b) noexcept { return (a - b).FMantissa < 0; }
  friend bool operator>(TWideFloat a, TWideFloat b) noexcept { return (a - b).FMantissa > 0; }
  friend bool operator<=(TWideFloat a, TWideFloat b) noexcept { return (a - b).FMantissa <= 0; }
  friend bool operator>=(TWideFloat a, TWideFloat b) noexcept { return (a - b).FMantissa >= 0; }
  friend bool operator==(TWideFloat a, TWideFloat b) noexcept { return (a - b).FMantissa == 0; }
  friend TWideFloat abs(TWideFloat a) noexcept {
    if (a.FMantissa < 0) a.FMantissa = -a.FMantissa;
    return a;
  }

 private:
  TWideFloat(TFzyFloat mantissa, int exponent) noexcept;

  TFzyFloat FMantissa;
  int FExponent;
};

inline TFzyFloat Narrowed(TFzyFloat value) noexcept { return value; }
inline TFzyFloat Narrowed(TWideFloat value) noexcept { return value.Narrow(); }

}  // namespace fzy::detail
