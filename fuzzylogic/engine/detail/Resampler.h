#pragma once

#include <vector>

#include "fuzzylogic/engine/FuzzySetValues.h"

namespace fzy::detail {

/// Builds a list anew with points inserted, in one pass, where inserting each into the list would
/// shift all that follow. The outcome is that of adding each point at the end, setting its X,
/// moving it to its place and setting its Y by interpolation between its neighbours there: the same
/// clamping and the same record of order and duplicates. The list changes only in `Commit`, when
/// everything that takes memory is done.
class TResampler {
 public:
  explicit TResampler(TFuzzySetValues& values);

  /// The points not passed yet, the one at the present place first.
  std::size_t RestCount() const noexcept { return FRest.size(); }
  const TFuzzyPoint& Here() const noexcept { return FRest.back().Point; }
  const TFuzzyPoint& Next() const noexcept { return FRest[FRest.size() - 2].Point; }
  /// The point passed last.
  const TFuzzyPoint& Passed() const noexcept { return FPassed.back().Point; }

  void Advance();
  /// Inserts a point at the present place; it is then the one there.
  /// @throws EFzyException when a coordinate would not be finite
  void Insert(TFzyFloat x);
  /// Takes the memory that `Commit` needs; nothing can be inserted any more.
  void Finish();
  /// The degrees of all points, once finished.
  template <class Visit>
  void ForEachPoint(Visit visit) const {
    for (const TSample& sample : FPassed) visit(sample.Point);
  }
  /// Puts the points into the list inside one update block.
  void Commit();

 private:
  struct TSample {
    TFuzzyPoint Point;
    TFuzzySetValue* Handle = nullptr;
  };

  TFuzzySetValues& FValues;
  std::vector<TSample> FPassed;
  std::vector<TSample> FRest;  // in reverse, so that the place is at its end
  TFuzzyPoint FLast;
  bool FSorted;
  bool FDuplicatesRemoved;
};

}  // namespace fzy::detail
