#include "fuzzylogic/engine/FuzzyPointWalk.h"

namespace fzy {

void NextPoint(TFuzzySetValue* current, TFuzzySetValue* previous, int& index,
               TFuzzySetValues* values, TFzyFloat x) {
  previous->Assign(current);
  ++index;
  if (index < values->GetCount())
    current->Assign(values->GetItem(index));
  else
    current->SetX(x);
}

void AddAndIncrement(TFuzzySet* fuzzySet, TFuzzySetValue* current, TFuzzySetValue* previous,
                     TFuzzySetValue* other, int& index, TFzyFloat y1, TFzyFloat y2,
                     TFuzzySetValues* values, TFzyFloat x, bool flag) {
  if (flag ? y1 >= y2 : y2 > y1) {
    if (TFuzzySetValue* copy = fuzzySet->GetValues()->Add()) copy->Assign(current);
  }
  NextPoint(current, previous, index, values, x);
  if (y1 == y2) other->Assign(previous);
}

void Add1AndIncrement2(TFuzzySet* fuzzySet, TFuzzySetValue* v1, TFuzzySetValue* v2,
                       TFuzzySetValue* v3, TFuzzySetValue* v4, int& index1, int& index2,
                       TFzyFloat y1, TFzyFloat y2, TFuzzySetValues* values1,
                       TFuzzySetValues* values2, TFzyFloat x, bool flag) {
  AddAndIncrement(fuzzySet, v1, v3, v4, index1, y1, y2, values1, x, flag);
  NextPoint(v2, v4, index2, values2, x);
}

}  // namespace fzy
