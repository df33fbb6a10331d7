#include "support/Chart.h"

#include <algorithm>
#include <cmath>

#include "fuzzylogic/FuzzyLogic.h"

namespace support {
namespace {

/// The step of an axis, 1, 2 or 5 times a power of ten, with at most `most` steps in the width.
double AxisStep(double width, double most) {
  const double power = std::pow(10, std::floor(std::log10(width / most)));
  for (const double factor : {1.0, 2.0, 5.0})
    if (width / (factor * power) <= most) return factor * power;
  return 10 * power;
}

/// Calls `draw(value, text)` for the marks of an axis.
template <class Draw>
void ForTicks(double least, double greatest, double most, Draw draw) {
  const double step = AxisStep(greatest - least, most);
  const int decimals = std::max(0, static_cast<int>(-std::floor(std::log10(step))));
  const double first = std::ceil(least / step);
  // Counted, not added up: sums of decimals drift.
  for (int i = 0; (first + i) * step <= greatest + step * 1e-9; ++i)
    draw((first + i) * step, fzy::FormatFixed((first + i) * step, decimals).Utf8());
}

}  // namespace

void DrawAxes(Svg& svg, const Frame& frame, double mostX, double mostY) {
  ForTicks(frame.Least.Y, frame.Greatest.Y, mostY, [&](double y, const std::string& text) {
    const Point at = frame.At(frame.Least.X, y);
    svg.Line(at, {frame.Opposite.X, at.Y}, "grid");
    svg.Text({at.X - 8, at.Y + 4}, text, "right");
  });
  if (mostX > 0) {
    ForTicks(frame.Least.X, frame.Greatest.X, mostX, [&](double x, const std::string& text) {
      const Point at = frame.At(x, frame.Least.Y);
      svg.Line(at, {at.X, at.Y + 5}, "axis");
      svg.Text({at.X, at.Y + 19}, text, "middle");
    });
  }
  svg.Line({frame.Corner.X, frame.Opposite.Y}, frame.Opposite, "axis");
}

}  // namespace support
