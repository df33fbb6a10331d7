#pragma once

#include <vector>

#include "fuzzylogic/engine/FuzzyPoint.h"

namespace fzy::detail {

/// The order into which a point list sorts: result[i] is the present index of the point that comes
/// to index i. Defined by a selection that, for each place in turn, brings forward every later
/// point whose X lies below the place's present one by more than the tolerance.
std::vector<int> SortOrder(TFuzzyCurve curve);

/// The same by the definition; quadratic.
std::vector<int> SelectionOrder(TFuzzyCurve curve);

}  // namespace fzy::detail
