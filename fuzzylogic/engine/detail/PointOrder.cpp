#include "fuzzylogic/engine/detail/PointOrder.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <numeric>

namespace fzy::detail {
namespace {

/// Finds, among the points that were not taken yet, the next one that lies below another: a tree in
/// which each node holds the least X under it.
class TLeastX {
 public:
  explicit TLeastX(TFuzzyCurve curve)
      : FSize(std::bit_ceil(curve.size())), FLeast(2 * FSize, Taken) {
    for (std::size_t i = 0; i < curve.size(); ++i) FLeast[FSize + i] = curve[i].X;
    for (std::size_t i = FSize; i-- > 1;) FLeast[i] = std::min(FLeast[2 * i], FLeast[2 * i + 1]);
  }

  void Take(int index) noexcept {
    std::size_t i = FSize + static_cast<std::size_t>(index);
    FLeast[i] = Taken;
    for (i /= 2; i > 0; i /= 2) FLeast[i] = std::min(FLeast[2 * i], FLeast[2 * i + 1]);
  }

  /// The first index from `from` on whose X lies below `x` by more than the tolerance, or -1.
  int FirstBelow(int from, TFzyFloat x) const noexcept {
    const auto isBelow = [&](std::size_t node) { return x > FLeast[node] + FuzzyTolerance; };
    std::size_t i = FSize + static_cast<std::size_t>(from);
    if (i == FLeast.size()) return -1;
    while (!isBelow(i)) {
      while (i % 2 == 1) i /= 2;  // what lies below the parent has been looked at
      if (i == 0) return -1;
      ++i;
    }
    while (i < FSize) i = isBelow(2 * i) ? 2 * i : 2 * i + 1;
    return static_cast<int>(i - FSize);
  }

 private:
  static constexpr TFzyFloat Taken = std::numeric_limits<TFzyFloat>::infinity();

  std::size_t FSize;
  std::vector<TFzyFloat> FLeast;
};

/// The order where points chain up within the tolerance. Seen from the first place on, the point
/// there gives way to the next one below it, that one to the next below itself, and so on; when
/// none is left below, the point has its place, and the one that gave way to it looks on.
std::vector<int> ChainedOrder(TFuzzyCurve curve) {
  struct TWaiting {
    int Index;
    int Next;  // where it looks on
  };
  TLeastX rest(curve);
  std::vector<int> order;
  std::vector<TWaiting> waiting;
  std::vector<bool> taken(curve.size());
  order.reserve(curve.size());
  const auto take = [&](int index) {
    taken[static_cast<std::size_t>(index)] = true;
    rest.Take(index);
    waiting.push_back({index, index + 1});
  };
  for (std::size_t first = 0; first < curve.size(); ++first) {
    if (!taken[first]) take(static_cast<int>(first));
    while (!waiting.empty()) {
      TWaiting& point = waiting.back();
      const TFzyFloat x = curve[static_cast<std::size_t>(point.Index)].X;
      const int below = rest.FirstBelow(point.Next, x);
      if (below < 0) {
        order.push_back(point.Index);
        waiting.pop_back();
      } else {
        point.Next = below + 1;
        take(below);
      }
    }
  }
  return order;
}

/// The first index whose X reaches `x` less the tolerance, in a curve that ascends and has it at
/// `from`.
int RunStart(TFuzzyCurve curve, int from, TFzyFloat x) noexcept {
  const auto below = [x](const TFuzzyPoint& point) { return point.X < x - FuzzyTolerance; };
  constexpr int near = 4;  // runs of one X are short
  for (int i = from; i > std::max(0, from - near); --i) {
    if (below(curve[static_cast<std::size_t>(i) - 1])) return i;
  }
  const auto last = curve.begin() + std::max(0, from - near);
  return static_cast<int>(std::partition_point(curve.begin(), last, below) - curve.begin());
}

}  // namespace

std::vector<int> SortOrder(TFuzzyCurve curve) {
  const auto x = [&](int index) { return curve[static_cast<std::size_t>(index)].X; };
  std::vector<int> order(curve.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return x(a) < x(b); });

  // Where the points fall into clusters that each lie within the tolerance and are all further
  // apart from one another, a stable sort by cluster is the order.
  for (auto first = order.begin(); first != order.end();) {
    const auto last =
        std::find_if(first, order.end(), [&](int i) { return x(i) > x(*first) + FuzzyTolerance; });
    if (last != order.end() && !(x(*last) > x(*(last - 1)) + FuzzyTolerance))
      return ChainedOrder(curve);
    std::sort(first, last);
    first = last;
  }
  return order;
}

/// Counts the other points of the changed point's X, up to the third: that is one too many, and the
/// second gives way.
bool TPlaceSearch::Pass(int index, TFzyFloat x) noexcept {
  if (index != FChanged) {
    if (x > FX + FuzzyTolerance) return false;
    if (FloatEquals(x, FX) && ++FOthers > MostOthersOfX) {
      FPlace.Excess = FPlace.Position == FChanged ? FSecond : FPlace.Position;
      return false;
    }
    if (FOthers == MostOthersOfX && FSecond < 0) FSecond = index;
  }
  FPlace.Position = index;
  return true;
}

TPlace FindPlace(TFuzzyCurve curve, bool ascending, int changed) noexcept {
  const TFzyFloat x = curve[static_cast<std::size_t>(changed)].X;
  const int start = ascending ? RunStart(curve, changed, x) : 0;
  TPlaceSearch search(x, changed, start);
  for (int i = start; i < static_cast<int>(curve.size()); ++i) {
    if (!search.Pass(i, curve[static_cast<std::size_t>(i)].X)) break;
  }
  return search.Result();
}

}  // namespace fzy::detail
