#pragma once

#include <limits>
#include <optional>

#include "fuzzylogic/engine/FuzzySetValues.h"

namespace fzy::detail {

/// @throws EFzyException when a degree is not a number or infinite above; below counts as 0
inline void CheckDegree(TFzyFloat y, const char* operation) {
  if (!(y < std::numeric_limits<TFzyFloat>::infinity())) RequireFinite(y, operation);
}

/// Changes many points of a list inside an open update block, without making an object for each:
/// the same values, the same clamping and the same record of order and duplicates as the point
/// setters, in constant time a point. A point of a descendant class is set by its own setters.
class TPointWriter {
 public:
  explicit TPointWriter(TFuzzySetValues& values) noexcept : FValues(values) {}

  /// Makes room for that many points more.
  void Reserve(std::size_t count) { FValues.ReserveRoom(FValues.Points().size() + count); }

  /// @throws EFzyException when the list will not take the point
  void Check(const TFuzzyPoint& point) {
    CheckDegree(point.Y, "Add");
    AdmitX(point.X);
  }
  /// As `Add`, `SetX(x)`, `SetY(y)`.
  void Add(TFzyFloat x, TFzyFloat y);
  /// As `Add`, `SetValue(x, y)`.
  void Assign(const TFuzzyPoint& point);
  void SetX(int index, TFzyFloat x);
  void SetY(int index, TFzyFloat y);

  /// @throws EFzyException when `formula` of some Y (X) leaves the numbers. Asked before the block
  /// opens, so that a refusal tells nobody.
  template <class Formula>
  void CheckY(Formula formula, const char* operation) const {
    for (const TFuzzyPoint& point : FValues.Points()) CheckDegree(formula(point.Y), operation);
  }
  template <class Formula>
  void CheckX(Formula formula, const char* operation) const {
    for (const TFuzzyPoint& point : FValues.Points()) RequireNumber(formula(point.X), operation);
  }
  /// Every Y (X) becomes `formula` of it, which must pass the check.
  template <class Formula>
  void TransformY(Formula formula) {
    for (int i = 0; i < FValues.GetCount(); ++i) SetY(i, formula(Point(i).Y));
  }
  template <class Formula>
  void TransformX(Formula formula) {
    for (int i = 0; i < FValues.GetCount(); ++i) SetX(i, formula(Point(i).X));
  }

  /// Thins flat runs out: one at the start keeps its last point, one inside its first and last, one
  /// at the end its first.
  void RemoveFlatPoints();

 private:
  const TFuzzyPoint& Point(int index) const noexcept {
    return FValues.FPoints[static_cast<std::size_t>(index)];
  }
  TFzyFloat AdmitX(TFzyFloat x);

  TFuzzySetValues& FValues;
  // Asked for once: nobody is told, and so nobody changes it, while the block is open.
  std::optional<TFuzzySetValues::TXRange> FRange;
};

}  // namespace fzy::detail
