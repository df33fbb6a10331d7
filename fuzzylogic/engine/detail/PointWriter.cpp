#include "fuzzylogic/engine/detail/PointWriter.h"

#include "fuzzylogic/engine/FuzzyCurve.h"

namespace fzy::detail {

TFzyFloat TPointWriter::AdmitX(TFzyFloat x) {
  if (!FRange) FRange = FValues.GetRange();
  return FRange->Admit(x);
}

void TPointWriter::Append() {
  auto& points = FValues.FPoints;
  points.push_back({points.empty() ? 0 : points.back().X + 1.0, 0});
  if (!FValues.FItems.empty()) FValues.FItems.push_back(nullptr);
}

void TPointWriter::Add(TFzyFloat x, TFzyFloat y) {
  CheckDegree(y, "Add");
  const TFzyFloat admitted = AdmitX(x);
  Append();
  const int index = FValues.GetCount() - 1;
  if (x != Point(index).X) {
    FValues.StoreX(index, admitted);
    FValues.Record(index, {utX});
  }
  SetY(index, y);
}

void TPointWriter::Assign(const TFuzzyPoint& point) {
  CheckDegree(point.Y, "Add");
  const TFzyFloat x = AdmitX(point.X);
  Append();
  const int index = FValues.GetCount() - 1;
  const bool hasRange = FValues.GetFuzzySet() != nullptr;
  FValues.FPoints.back().Y = hasRange && point.Y < 0 ? 0 : point.Y;
  FValues.StoreX(index, x);
  FValues.Record(index, {utX, utY});
}

void TPointWriter::SetX(int index, TFzyFloat x) {
  if (TFuzzySetValue* value = FValues.Descendant(index)) return value->SetX(x);
  if (x == Point(index).X) return;
  FValues.StoreX(index, AdmitX(x));
  FValues.Record(index, {utX});
}

void TPointWriter::SetY(int index, TFzyFloat y) {
  if (TFuzzySetValue* value = FValues.Descendant(index)) return value->SetY(y);
  if (y == Point(index).Y) return;
  FValues.FPoints[static_cast<std::size_t>(index)].Y = y < 0 ? 0 : y;
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
