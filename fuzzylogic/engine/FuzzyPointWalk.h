#pragma once

#include "fuzzylogic/engine/FuzzySet.h"

namespace fzy {

// Steps for applications that walk the points of two lists side by side with cursors of their own.
// The points passed in are cursors (free points, usually), not members of the lists. Nothing in the
// engine calls these.

/// Moves on by one point: `previous` becomes `current`, `index` advances, and `current` becomes the
/// point there; behind the last point only its X becomes `x`.
void NextPoint(TFuzzySetValue* current, TFuzzySetValue* previous, int& index,
               TFuzzySetValues* values, TFzyFloat x);

/// Appends a copy of `current` to the set's points when `y1` is the winner (`flag`: y1 >= y2; else
/// y2 > y1), then moves on; where y1 equals y2 exactly, `other` becomes the point that was passed.
void AddAndIncrement(TFuzzySet* fuzzySet, TFuzzySetValue* current, TFuzzySetValue* previous,
                     TFuzzySetValue* other, int& index, TFzyFloat y1, TFzyFloat y2,
                     TFuzzySetValues* values, TFzyFloat x, bool flag);

/// `AddAndIncrement` on the first list, with `v1` current, `v3` previous and `v4` the other point,
/// then `NextPoint` on the second, with `v2` current and `v4` previous.
void Add1AndIncrement2(TFuzzySet* fuzzySet, TFuzzySetValue* v1, TFuzzySetValue* v2,
                       TFuzzySetValue* v3, TFuzzySetValue* v4, int& index1, int& index2,
                       TFzyFloat y1, TFzyFloat y2, TFuzzySetValues* values1,
                       TFuzzySetValues* values2, TFzyFloat x, bool flag);

}  // namespace fzy
