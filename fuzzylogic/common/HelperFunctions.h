#pragma once

namespace fzy {

/// Whether a number may begin with the character: a digit, a sign or a point.
constexpr bool IsNumberChar(char16_t ch) noexcept {
  return (ch >= u'0' && ch <= u'9') || ch == u'+' || ch == u'-' || ch == u'.';
}

/// Whether a number may begin with the character although alone it is none: a sign or a point.
constexpr bool IsNumberSymbol(char16_t ch) noexcept {
  return ch == u'+' || ch == u'-' || ch == u'.';
}

/// Whether A and B differ by at most `tolerance`, bounds included; false when either is not a
/// number.
constexpr bool FloatEquals(double a, double b, double tolerance) noexcept {
  return a >= b - tolerance && b + tolerance >= a;
}

/// Whether `item` lies in the cyclic range from just after `low` up to and including `high`; when
/// `low` equals `high` the range is the whole circle.
constexpr bool InCircularRange(int low, int item, int high) noexcept {
  return low < high ? low < item && item <= high : low < item || item <= high;
}

}  // namespace fzy
