#pragma once

#include <vector>

#include "fuzzylogic/engine/FuzzyCurve.h"

// How the points of a list are put in order, and which of them are redundant.

namespace fzy::detail {

/// How many other points of its X a changed point may find, and a pass may leave.
inline constexpr int MostOthersOfX = 2;
inline constexpr int MostNeighboursOfX = 3;

/// The order into which a point list sorts: result[i] is the present index of the point that comes
/// to index i. Each point in turn goes before the first of those sorted already whose X exceeds its
/// own by more than the tolerance; so points within the tolerance of each other keep their order,
/// unless one between them takes its place before both. n log n.
std::vector<int> SortOrder(TFuzzyCurve curve);

/// Where a changed point belongs among the points of its X, and which of them is one too many.
struct TPlace {
  int Position;
  int Excess;  // -1 when there is none
};

/// Looks for that place, point by point in order.
class TPlaceSearch {
 public:
  TPlaceSearch(TFzyFloat x, int changed, int start) noexcept
      : FX(x), FChanged(changed), FPlace{start > 0 ? start - 1 : 0, -1} {}

  /// Goes past the point at `index`; false when the place is found.
  bool Pass(int index, TFzyFloat x) noexcept;
  /// Whether points of these X need no look: none ends the search or shares the X.
  bool MayPassOver(TFzyFloat greatest) const noexcept { return greatest < FX - FuzzyTolerance; }
  void PassOver(int last) noexcept { FPlace.Position = last; }
  TPlace Result() const noexcept { return FPlace; }

 private:
  TFzyFloat FX;
  int FChanged;
  TPlace FPlace;
  int FSecond = -1;
  int FOthers = 0;
};

/// The place of the point at `changed`. In a curve that ascends the search may start at the first
/// point of its X; else it starts at the first of all.
TPlace FindPlace(TFuzzyCurve curve, bool ascending, int changed) noexcept;

/// One pass over the points of a list in order, which finds the redundant ones: of equal neighbours
/// the later, and of a run of one X the fifth, counting afresh after it.
class TRedundancy {
 public:
  bool IsRedundant(const TFuzzyPoint& point) noexcept {
    return IsRedundant(point, HasLast && SamePoint(point, Last));
  }
  /// The same where it is known whether the point equals the one kept last.
  bool IsRedundant(const TFuzzyPoint& point, bool isSame) noexcept {
    if (isSame) return true;
    if (HasLast) {
      Run = FloatEquals(point.X, Last.X) ? Run + 1 : 0;
      if (Run > MostNeighboursOfX) {
        Run = 0;
        return true;
      }
    }
    Last = point;
    HasLast = true;
    return false;
  }

  TFuzzyPoint Last;  // the one kept last
  bool HasLast = false;
  int Run = 0;  // how many before it share its X
};

}  // namespace fzy::detail
