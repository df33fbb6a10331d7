#include <algorithm>

#include "fuzzylogic/engine/FuzzyCurve.h"
#include "fuzzylogic/engine/FuzzySet.h"
#include "fuzzylogic/engine/FuzzySetValues.h"
#include "fuzzylogic/engine/detail/SortOrder.h"
#include "fuzzylogic/framework/FirstException.h"
#include "fuzzylogic/framework/UpdateBlock.h"

// How a point list keeps itself in order after changes.

namespace fzy {
namespace {

/// Where a changed point belongs among the points of its X, and which of them is one too many.
struct TPlace {
  int Position;
  int Excess;  // -1 when there is none
};

/// The first index whose X reaches `x` less the tolerance, in a curve that ascends and has it at
/// `from`.
int RunStart(TFuzzyCurve curve, int from, TFzyFloat x) {
  const auto below = [x](const TFuzzyPoint& point) { return point.X < x - FuzzyTolerance; };
  constexpr int near = 4;  // runs of one X are short
  for (int i = from; i > std::max(0, from - near); --i) {
    if (below(curve[static_cast<std::size_t>(i) - 1])) return i;
  }
  const auto last = curve.begin() + std::max(0, from - near);
  return static_cast<int>(std::partition_point(curve.begin(), last, below) - curve.begin());
}

/// Counts the other points of the changed point's X, in order, up to the third: that is one too
/// many, and the second gives way. In a curve that ascends the count may start at the first of
/// them.
TPlace FindPlace(TFuzzyCurve curve, bool ascending, int changed) {
  const TFzyFloat x = curve[static_cast<std::size_t>(changed)].X;
  const int start = ascending ? RunStart(curve, changed, x) : 0;
  int position = std::max(0, start - 1);
  int second = -1;
  int others = 0;
  for (int i = start; i < static_cast<int>(curve.size()); ++i) {
    const TFzyFloat other = curve[static_cast<std::size_t>(i)].X;
    if (i != changed) {
      if (other > x + FuzzyTolerance) break;
      if (FloatEquals(other, x) && ++others == 3)
        return {position, position == changed ? second : position};
      if (others == 2 && second < 0) second = i;
    }
    position = i;
  }
  return {position, -1};
}

}  // namespace

TFuzzySetValues::TXRange TFuzzySetValues::GetRange() const {
  if (!FFuzzySet) return {false, 0, 0};
  return {true, FFuzzySet->GetXRange(1), FFuzzySet->GetXRange(0)};
}

TFzyFloat TFuzzySetValues::TXRange::Admit(TFzyFloat x) const {
  if (!IsBound) {
    RequireFinite(x, "SetX");
    return x;
  }
  RequireNumber(x, "SetX");
  return x < Minimum ? Minimum : x > Maximum ? Maximum : x;
}

void TFuzzySetValues::StoreX(int index, TFzyFloat x) noexcept {
  FPoints[static_cast<std::size_t>(index)].X = x;
  NoteOrder(index);
}

bool TFuzzySetValues::AreEqual(int index, int other) const {
  if (const TFuzzySetValue* value = Descendant(index)) return value->Equals(*GetItem(other));
  return SamePoint(FPoints[static_cast<std::size_t>(index)],
                   FPoints[static_cast<std::size_t>(other)]);
}

bool TFuzzySetValues::EqualsNeighbour(int index) const {
  return (index > 0 && AreEqual(index, index - 1)) ||
         (index + 1 < GetCount() && AreEqual(index, index + 1));
}

/// Lowers the flags when the changed point stands out of order, or beside one that equals it.
void TFuzzySetValues::Record(int index, TXYUpdateTypes updateType) {
  const auto i = static_cast<std::size_t>(index);
  if (FSorted && updateType.Contains(utX) && FPoints.size() > 1) {
    const TFzyFloat x = FPoints[i].X;
    const TFzyFloat previous = i > 0 ? FPoints[i - 1].X : x;
    const TFzyFloat next = i + 1 < FPoints.size() ? FPoints[i + 1].X : x;
    FSorted = x >= previous - FuzzyTolerance && next + FuzzyTolerance >= x;
  }
  FDuplicatesRemoved = FDuplicatesRemoved && FSorted;
  if (FDuplicatesRemoved && updateType.Contains(utY)) FDuplicatesRemoved = !EqualsNeighbour(index);
}

void TFuzzySetValues::UpdateValue(TFuzzySetValue* value, TXYUpdateTypes updateType) {
  if (!Holds(value)) return;
  Record(value->GetIndex(), updateType);
  if (IsUpdating()) return;
  const TPin self(this);
  const TPin pinned(value);
  // Each step may tell the set, and a handler may take the point away: it is looked for anew.
  TFirstException first;
  first.Run([&] { Sort(); });
  if (updateType.Contains(utX)) first.Run([&] { TrimSameX(value); });
  first.Run([&] { CleanGroup(value); });
  first.Rethrow();
}

void TFuzzySetValues::TrimSameX(TFuzzySetValue* value) {
  if (GetCount() < 2 || !Holds(value)) return;
  const TPlace place = FindPlace(FPoints, IsAscending(), value->GetIndex());
  TFirstException first;
  if (place.Excess >= 0) first.Run([&] { Delete(place.Excess); });
  if (Holds(value)) first.Run([&] { value->SetIndex(std::min(place.Position, GetCount() - 1)); });
  first.Rethrow();
}

void TFuzzySetValues::CleanGroup(TFuzzySetValue* value) {
  if (GetCount() < 2 || !Holds(value)) return;
  const TFzyFloat x = value->GetX();
  const auto start = [&] { return SkipX(value->GetIndex(), x, -1) + 1; };
  const auto inGroup = [&](int i) {
    return i < GetCount() && FloatEquals(FPoints[static_cast<std::size_t>(i)].X, x);
  };
  TFirstException first;
  int i = start() + 1;
  while (inGroup(i)) {
    if (!AreEqual(i, i - 1)) {
      ++i;
      continue;
    }
    first.Run([&] { Delete(value->GetIndex() == i - 1 ? i : i - 1); });
    if (!Holds(value) || value->GetX() != x) return first.Rethrow();
  }
  // Counted anew: the list may have been cleaned up as a whole when it told of a deletion.
  const int index = value->GetIndex();
  int end = index;
  while (inGroup(end)) ++end;
  if (end - start() > 3) {
    // The point before the changed one gives way; where that is another X's, the one after it.
    first.Run([&] { Delete(index > start() ? index - 1 : index + 1); });
  }
  first.Rethrow();
}

void TFuzzySetValues::Sort() {
  if (FSorted) return;
  TUpdateBlock block(*this);
  Reorder(detail::SortOrder(FPoints));
  FSorted = true;  // before the block closes: its clean-up must find nothing left to sort
  block.Close();
}

void TFuzzySetValues::RemoveDuplicates() {
  if (FDuplicatesRemoved) return;
  TUpdateBlock block(*this);
  int kept = 0;
  int run = 0;
  for (int i = 0; i < GetCount(); ++i) {
    const TFuzzyPoint& point = FPoints[static_cast<std::size_t>(i)];
    if (i > 0) {
      const TFuzzyPoint& last = FPoints[static_cast<std::size_t>(kept) - 1];
      if (AreEqual(i, kept - 1)) continue;
      run = FloatEquals(point.X, last.X) ? run + 1 : 0;
      if (run == 4) {
        run = 0;
        continue;
      }
    }
    Retain(i, kept++);
  }
  Truncate(kept);
  FDuplicatesRemoved = true;  // as in `Sort`
  block.Close();
}

void TFuzzySetValues::CleanupValues() {
  if (FSorted && FDuplicatesRemoved) return;
  TUpdateBlock block(*this);
  Sort();
  RemoveDuplicates();
  block.Close();
}

void TFuzzySetValues::Update(TCollectionItem* item) {
  const TPin self(this);
  TGCollection::Update(item);
  if (GetCount() < 2) FSorted = FDuplicatesRemoved = true;
  TFirstException first;
  if (!item) first.Run([this] { CleanupValues(); });
  if (FFuzzySet) {
    first.Run([&] {
      if (item)
        FFuzzySet->UpdateFuzzySetValue(static_cast<TFuzzySetValue*>(item));
      else
        FFuzzySet->UpdateFuzzySetValues();
    });
  }
  first.Rethrow();
}

}  // namespace fzy
