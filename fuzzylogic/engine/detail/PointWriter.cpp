#include "fuzzylogic/engine/detail/PointWriter.h"

#include "fuzzylogic/engine/FuzzyCurve.h"

namespace fzy::detail {

TFzyFloat TPointWriter::AdmitX(TFzyFloat x) {
  if (!FRange) FRange = FValues.GetRange();
  return FRange->Admit(x);
}

void TPointWriter::Add(TFzyFloat x, TFzyFloat y) {
  CheckDegree(y, "Add");
  const TFzyFloat admitted = AdmitX(x);
  const TFuzzyPoint added = FValues.NextPoint();
  FValues.AppendPoint(added, nullptr);
  const int index = FValues.Count() - 1;
  if (x != added.X) {
    FValues.StorePoint(index, {admitted, added.Y});
    FValues.Record(index, {utX});
  }
  SetY(index, y);
}

void TPointWriter::Assign(const TFuzzyPoint& point) {
  CheckDegree(point.Y, "Add");
  const TFzyFloat x = AdmitX(point.X);
  const bool hasRange = FValues.GetFuzzySet() != nullptr;
  FValues.AppendPoint({x, hasRange && point.Y < 0 ? 0 : point.Y}, nullptr);
  FValues.Record(FValues.Count() - 1, {utX, utY});
}

void TPointWriter::SetX(int index, TFzyFloat x) {
  if (TFuzzySetValue* value = FValues.Descendant(index)) return value->SetX(x);
  const TFuzzyPoint point = FValues.PointAt(index);
  if (x == point.X) return;
  FValues.StorePoint(index, {AdmitX(x), point.Y});
  FValues.Record(index, {utX});
}

void TPointWriter::SetY(int index, TFzyFloat y) {
  if (TFuzzySetValue* value = FValues.Descendant(index)) return value->SetY(y);
  const TFuzzyPoint point = FValues.PointAt(index);
  if (y == point.Y) return;
  FValues.StorePoint(index, {point.X, y < 0 ? 0 : y});
  FValues.Record(index, {utY});
}

void TPointWriter::RemoveFlatPoints() {
  const int count = FValues.GetCount();
  if (count == 0) return;
  int kept = 1;
  int run = 1;  // a run at the start counts as begun before it
  for (int i = 1; i < count; ++i) {
    const bool flat = FloatEquals(Point(kept - 1).Y, Point(i).Y);
    run = flat ? run + 1 : 0;
    if (run >= 2) --kept;
    FValues.Retain(i, kept++);
  }
  if (kept >= 2 && FloatEquals(Point(kept - 2).Y, Point(kept - 1).Y)) --kept;
  FValues.Truncate(kept);
}

}  // namespace fzy::detail
