#include <algorithm>

#include "fuzzylogic/engine/FuzzyCurve.h"
#include "fuzzylogic/engine/FuzzySet.h"
#include "fuzzylogic/engine/FuzzySetValues.h"
#include "fuzzylogic/engine/detail/PointOrder.h"
#include "fuzzylogic/framework/FirstException.h"
#include "fuzzylogic/framework/UpdateBlock.h"

// How a point list keeps itself in order after changes.

namespace fzy {
namespace {

// Shorter lists are moved and searched as quickly as blocks are looked through.
constexpr int ShortList = 64;
// With more changes to a point the whole list is put in order at once.
constexpr int PointsOfAChange = 16;

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

bool TFuzzySetValues::AreEqual(int index, int other) const {
  if (const TFuzzySetValue* value = Descendant(index)) return value->Equals(*GetItem(other));
  return SamePoint(PointAt(index), PointAt(other));
}

bool TFuzzySetValues::EqualsNeighbour(int index) const {
  return (index > 0 && AreEqual(index, index - 1)) ||
         (index + 1 < Count() && AreEqual(index, index + 1));
}

/// Lowers the flags when the changed point stands out of order, or beside one that equals it.
void TFuzzySetValues::Record(int index, TXYUpdateTypes updateType) {
  ++FChanges;
  if (FSorted && updateType.Contains(utX) && Count() > 1) {
    const TFzyFloat x = PointAt(index).X;
    const TFzyFloat previous = index > 0 ? PointAt(index - 1).X : x;
    const TFzyFloat next = index + 1 < Count() ? PointAt(index + 1).X : x;
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
  const bool isSearched = updateType.Contains(utX) && !FAscending;
  if ((isSearched || !FSorted || !FDuplicatesRemoved) && Count() > ShortList) Spread(value);
  // Each step may tell the set, and a handler may take the point away: it is looked for anew.
  TFirstException first;
  first.Run([&] { Sort(); });
  if (updateType.Contains(utX)) first.Run([&] { TrimSameX(value); });
  first.Run([&] { CleanGroup(value); });
  first.Rethrow();
}

void TFuzzySetValues::TrimSameX(TFuzzySetValue* value) {
  if (Count() < 2 || !Holds(value)) return;
  const detail::TPlace place = FindPlace(value->GetIndex());
  TFirstException first;
  if (place.Excess >= 0) first.Run([&] { DeleteItem(place.Excess); });
  if (Holds(value))
    first.Run([&] { MoveItem(value->GetIndex(), std::min(place.Position, Count() - 1)); });
  first.Rethrow();
}

void TFuzzySetValues::CleanGroup(TFuzzySetValue* value) {
  if (Count() < 2 || !Holds(value)) return;
  const TFzyFloat x = value->GetX();
  const auto inGroup = [&](int i) { return i >= 0 && i < Count() && FloatEquals(PointAt(i).X, x); };
  const auto start = [&] {
    int i = value->GetIndex();
    while (inGroup(i - 1)) --i;
    return i;
  };
  TFirstException first;
  int i = start() + 1;
  while (inGroup(i)) {
    if (!AreEqual(i, i - 1)) {
      ++i;
      continue;
    }
    first.Run([&] { DeleteItem(value->GetIndex() == i - 1 ? i : i - 1); });
    if (!Holds(value) || value->GetX() != x) return first.Rethrow();
  }
  // Counted anew: the list may have been cleaned up as a whole when it told of a deletion.
  const int index = value->GetIndex();
  int end = index;
  while (inGroup(end)) ++end;
  if (end - start() > 3) {
    // The point before the changed one gives way; where that is another X's, the one after it.
    first.Run([&] { DeleteItem(index > start() ? index - 1 : index + 1); });
  }
  first.Rethrow();
}

/// After a few changes to a long list its points take their places one by one.
void TFuzzySetValues::SpreadForFew() noexcept {
  if (!FSpread && Count() > ShortList && FChanges * PointsOfAChange < Count()) Spread(nullptr);
}

void TFuzzySetValues::Sort() {
  if (FSorted) return;
  TUpdateBlock block(*this);
  SpreadForFew();
  PutInOrder();
  FSorted = true;  // before the block closes: its clean-up must find nothing left to sort
  block.Close();
}

void TFuzzySetValues::RemoveDuplicates() {
  if (FDuplicatesRemoved) return;
  TUpdateBlock block(*this);
  SpreadForFew();
  RemoveRedundant();
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
  if (Count() < 2) FSorted = FDuplicatesRemoved = true;
  TFirstException first;
  if (!item) first.Run([this] { CleanupValues(); });
  FChanges = 0;
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
