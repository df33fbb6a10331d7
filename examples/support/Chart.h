#pragma once

#include "support/Svg.h"

namespace support {

/// A rectangle of a picture that stands for a part of the plane.
struct Frame {
  Point Corner;    ///< upper left
  Point Opposite;  ///< lower right
  Point Least;     ///< what the lower left stands for
  Point Greatest;

  Point At(double x, double y) const {
    return {Corner.X + (x - Least.X) / (Greatest.X - Least.X) * (Opposite.X - Corner.X),
            Opposite.Y - (y - Least.Y) / (Greatest.Y - Least.Y) * (Opposite.Y - Corner.Y)};
  }
};

/// Marks an axis in steps of 1, 2 or 5 times a power of ten, with at most `mostX` or `mostY` steps;
/// none along X for 0. Uses the classes "grid", "axis", "middle" and "right" of the style sheet.
void DrawAxes(Svg& svg, const Frame& frame, double mostX, double mostY);

}  // namespace support
