#include "fuzzylogic/engine/detail/Resampler.h"

#include "fuzzylogic/engine/FuzzyCurve.h"
#include "fuzzylogic/framework/UpdateBlock.h"

namespace fzy::detail {

TResampler::TResampler(TFuzzySetValues& values)
    : FValues(values),
      FLast(values.Points().empty() ? TFuzzyPoint{} : values.FPoints.back()),
      FSorted(values.FSorted),
      FDuplicatesRemoved(values.FDuplicatesRemoved) {
  FRest.reserve(values.FPoints.size());
  for (int i = values.GetCount(); i-- > 0;)
    FRest.push_back({values.FPoints[static_cast<std::size_t>(i)], values.Handle(i)});
}

void TResampler::Advance() {
  FPassed.push_back(FRest.back());
  FRest.pop_back();
}

void TResampler::Insert(TFzyFloat x) {
  const TFzyFloat admitted = FValues.AdmitX(x);
  TFuzzyPoint point{FLast.X + 1.0, 0};
  if (x != point.X) {
    point.X = admitted;
    FSorted = FSorted && point.X >= FLast.X - FuzzyTolerance;
  }
  const TFuzzyPoint& left = FPassed.back().Point;
  const TFuzzyPoint& right = FRest.back().Point;
  const TFzyFloat y = InterpolateY(left.X, left.Y, right.X, right.Y, point.X);
  RequireFinite(y, "Expand");
  point.Y = y > 0 ? y : 0;
  FDuplicatesRemoved = FDuplicatesRemoved && FSorted &&
                       (y == 0 || (!SamePoint(point, left) && !SamePoint(point, right)));
  FRest.push_back({point, nullptr});
}

void TResampler::Finish() {
  while (!FRest.empty()) Advance();
  FValues.ReserveRoom(FPassed.size());
}

void TResampler::Commit() {
  TUpdateBlock block(FValues);
  const bool hasHandles = !FValues.FItems.empty();
  FValues.FPoints.clear();
  FValues.FItems.clear();
  for (const TSample& sample : FPassed) {
    FValues.FPoints.push_back(sample.Point);
    if (hasHandles) FValues.FItems.push_back(sample.Handle);
  }
  FValues.NumberHandles(0, FValues.Count());
  FValues.FAscending = IsAscending(FValues.FPoints);
  FValues.FSorted = FSorted;
  FValues.FDuplicatesRemoved = FDuplicatesRemoved;
  block.Close();
}

}  // namespace fzy::detail
