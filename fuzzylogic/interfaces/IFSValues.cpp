#include "fuzzylogic/interfaces/IFSValues.h"

#include <algorithm>
#include <limits>

#include "fuzzylogic/engine/FuzzyCurve.h"
#include "fuzzylogic/engine/detail/PointWriter.h"
#include "fuzzylogic/framework/UpdateBlock.h"
#include "fuzzylogic/interfaces/detail/Operand.h"

namespace fzy {
namespace {

/// Points that do not change while they are copied, whatever handlers do to the set they are from.
std::vector<TFuzzyPoint> PointsOf(const Ref<IFuzzySet>& source, const char* operation) {
  const detail::TOperand operand(source, operation);
  const TFuzzyCurve points = operand.Curve().Points;
  return {points.begin(), points.end()};
}

}  // namespace

TIFSValues::TIFSValues(TIFuzzySet* fuzzySet) noexcept : TFuzzySetValues(fuzzySet), FSet(fuzzySet) {}

TString TIFSValues::ToString() const {
  return GetFuzzySet() ? GetFuzzySet()->ToString() : TFuzzySetValues::ToString();
}

int TIFSValues::Add(TFzyFloat x, TFzyFloat y) {
  detail::TPointWriter points(*this);
  points.Check({x, y});
  const int index = Count();
  ReserveRoom(static_cast<std::size_t>(index) + 1);
  TUpdateBlock block(*this);
  points.Assign({x, y});
  block.Close();
  return index;
}

int TIFSValues::Insert(int index, TFzyFloat x, TFzyFloat y) {
  if (index < 0 || index > GetCount()) FailIndex(index);
  detail::TPointWriter(*this).Check({x, y});
  TOwned<TFuzzySetValue> handle = NewHandle();
  ReserveRoom(static_cast<std::size_t>(Count()) + 1, true);
  TUpdateBlock block(*this);
  TFuzzySetValue* value = TFuzzySetValues::Insert(index, std::move(handle));
  const int inserted = value->GetIndex();
  value->SetValue(x, y);
  block.Close();
  return inserted;
}

void TIFSValues::Append(const Ref<IFuzzySet>& source, int index, int count) {
  const TPin self(this);
  const TPin set(GetFuzzySet());
  const std::vector<TFuzzyPoint> points = PointsOf(source, "Append");
  const int size = static_cast<int>(points.size());
  const int first = std::clamp(index, 0, std::max(0, size - 1));
  const std::span added = std::span(points).subspan(
      static_cast<std::size_t>(first),
      static_cast<std::size_t>(std::max(0, std::min(count, size - first))));
  detail::TPointWriter writer(*this);
  for (const TFuzzyPoint& point : added) writer.Check(point);
  ReserveRoom(static_cast<std::size_t>(Count()) + added.size());
  for (const TFuzzyPoint& point : added) Add(point.X, point.Y);
}

void TIFSValues::Append(const Ref<IFuzzySet>& source) {
  Append(source, 0, std::numeric_limits<int>::max());
}

void TIFSValues::AssignValues(const Ref<IFuzzySet>& source) {
  const TPin self(this);
  const TPin set(GetFuzzySet());
  const std::vector<TFuzzyPoint> added = PointsOf(source, "AssignValues");
  detail::TPointWriter points(*this);
  PrepareFor(added);
  TUpdateBlock block(*this);
  Clear();
  for (const TFuzzyPoint& point : added) points.Assign(point);
  block.Close();
}

bool TIFSValues::EqualsValues(const Ref<IFuzzySet>& fuzzySet) {
  const TPin self(this);
  const detail::TOperand other(fuzzySet, "EqualsValues");
  const TFuzzyCurve a = Points();
  const TFuzzyCurve b = other.Curve().Points;
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), SamePoint);
}

void TIFSValues::Assign(const Ref<IInterface>& value) {
  if (FSet && GetFuzzySet()) FSet->Assign(value);
}

}  // namespace fzy
