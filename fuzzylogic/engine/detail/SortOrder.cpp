#include "fuzzylogic/engine/detail/SortOrder.h"

#include <algorithm>
#include <numeric>

#include "fuzzylogic/engine/FuzzyCurve.h"

namespace fzy::detail {
namespace {

std::vector<int> Identity(std::size_t count) {
  std::vector<int> order(count);
  std::iota(order.begin(), order.end(), 0);
  return order;
}

}  // namespace

std::vector<int> SelectionOrder(TFuzzyCurve curve) {
  const auto x = [&](int index) { return curve[static_cast<std::size_t>(index)].X; };
  std::vector<int> order = Identity(curve.size());
  std::vector<int> chosen;
  std::vector<int> rest;
  for (std::size_t i = 0; i < order.size(); ++i) {
    // Each point brought forward pushes those before it up by one, so the chosen end reversed.
    chosen.assign(1, order[i]);
    rest.clear();
    for (std::size_t j = i + 1; j < order.size(); ++j)
      (x(chosen.back()) > x(order[j]) + FuzzyTolerance ? chosen : rest).push_back(order[j]);
    const auto next = std::copy(chosen.rbegin(), chosen.rend(), order.begin() + std::ptrdiff_t(i));
    std::copy(rest.begin(), rest.end(), next);
  }
  return order;
}

std::vector<int> SortOrder(TFuzzyCurve curve) {
  const auto x = [&](int index) { return curve[static_cast<std::size_t>(index)].X; };
  std::vector<int> order = Identity(curve.size());
  std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return x(a) < x(b); });

  // Where the points fall into clusters that each lie within the tolerance and are all further
  // apart from one another, the selection is a stable sort by cluster. Chains of points that are
  // only pairwise within the tolerance have no such order.
  for (auto first = order.begin(); first != order.end();) {
    const auto last =
        std::find_if(first, order.end(), [&](int i) { return x(i) > x(*first) + FuzzyTolerance; });
    if (last != order.end() && !(x(*last) > x(*(last - 1)) + FuzzyTolerance))
      return SelectionOrder(curve);
    std::sort(first, last);
    first = last;
  }
  return order;
}

}  // namespace fzy::detail
