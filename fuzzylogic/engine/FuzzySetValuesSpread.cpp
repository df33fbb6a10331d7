#include <algorithm>
#include <mutex>
#include <new>
#include <typeinfo>

#include "fuzzylogic/engine/FuzzySetValues.h"
#include "fuzzylogic/engine/detail/SpreadPoints.h"

// The points of a list, wherever they stand: in the array, or in blocks while they change one by
// one. Blocks only save time: where there is no memory for them, the array serves.

namespace fzy {

using detail::TSpreadPoints;
using TFollowed = TSpreadPoints::TFollowed;

void TFuzzySetValues::ReserveRoom(std::size_t count, bool handles) {
  const auto grow = [count](auto& list) {
    if (list.capacity() < count) list.reserve(std::max(count, 2 * list.capacity()));
  };
  grow(FPoints);
  if (handles || !FItems.empty() || (FSpread && FSpread->HasItems())) grow(FItems);
}

void TFuzzySetValues::Spread(const TFuzzySetValue* changed) noexcept {
  if (FHasDescendants) return;
  const int place = changed ? changed->GetIndex() : -1;
  if (!FSpread) {
    try {
      FSpread = std::make_unique<TSpreadPoints>(FPoints, FItems);
    } catch (const std::bad_alloc&) {
      return;
    }
    FPoints.clear();
    FItems.clear();
    FAscending = false;
    FIsUnsettled.store(true, std::memory_order_release);
  }
  FChanged = changed;
  FSpread->Follow(TFollowed::Changed, place);
}

/// Several threads may ask a list that nobody changes; the first one puts the points back.
void TFuzzySetValues::PutBack() const noexcept {
  static std::mutex mutex;
  const std::lock_guard lock(mutex);
  if (!FSpread) return;
  auto* self = const_cast<TFuzzySetValues*>(this);
  FSpread->CopyTo(FPoints, FSpread->HasItems() ? &self->FItems : nullptr);
  FSpread.reset();
  self->FChanged = self->FDeleted = nullptr;
  self->NumberHandles(0, static_cast<int>(FPoints.size()));
  FAscending = fzy::IsAscending(FPoints);
  self->FIsUnsettled.store(false, std::memory_order_release);
}

/// Changes the points in their blocks; false when they stand in none, or not any more because that
/// needs more memory than there is, or would cost more than in the array.
template <class Change>
bool TFuzzySetValues::ChangeSpread(Change change) noexcept {
  if (!FSpread) return false;
  try {
    if (change(*FSpread)) return true;
  } catch (const std::bad_alloc&) {  // NOLINT(bugprone-empty-catch): the array has the room
  }
  PutBack();
  return false;
}

int TFuzzySetValues::Count() const noexcept {
  return FSpread ? FSpread->GetCount() : static_cast<int>(FPoints.size());
}

TFuzzyPoint TFuzzySetValues::PointAt(int index) const noexcept {
  return FSpread ? FSpread->At(index).Point : FPoints[static_cast<std::size_t>(index)];
}

TFuzzyPoint TFuzzySetValues::NextPoint() const noexcept {
  return {Count() > 0 ? PointAt(Count() - 1).X + 1.0 : 0, 0};
}

void TFuzzySetValues::StorePoint(int index, const TFuzzyPoint& point) noexcept {
  if (FSpread) return FSpread->SetPoint(index, point);
  FPoints[static_cast<std::size_t>(index)] = point;
  NoteOrder(index);
}

void TFuzzySetValues::AppendPoint(const TFuzzyPoint& point, TFuzzySetValue* handle) {
  const int index = Count();
  ReserveRoom(static_cast<std::size_t>(index) + 1, handle != nullptr);
  if (handle && typeid(*handle) != typeid(TFuzzySetValue)) {
    FHasDescendants = true;
    Settle();
  }
  if (!ChangeSpread([&](TSpreadPoints& points) { return points.Append({point, handle}), true; })) {
    if (handle) FItems.resize(FPoints.size());
    FPoints.push_back(point);
    if (!FItems.empty() || handle) FItems.push_back(handle);
    NoteOrder(index);
  }
  if (!handle) return;
  Adopt(handle, index);
  if (!FSpread) return;
  FChanged = handle;
  FSpread->Follow(TFollowed::Changed, index);
}

void TFuzzySetValues::ErasePoint(int index) noexcept {
  if (FSpread) return FSpread->Erase(index);
  FPoints.erase(FPoints.begin() + index);
  if (FItems.empty()) return;
  FItems.erase(FItems.begin() + index);
  NumberHandles(index, Count());
}

void TFuzzySetValues::RelocateItem(int from, int to) {
  if (!ChangeSpread([=](TSpreadPoints& points) { return points.Move(from, to), true; }))
    MoveInArray(from, to);
}

void TFuzzySetValues::MoveInArray(int from, int to) noexcept {
  const auto move = [from, to](auto& list) {
    const auto first = list.begin() + std::min(from, to);
    const auto last = list.begin() + std::max(from, to) + 1;
    std::rotate(first, from < to ? first + 1 : last - 1, last);
  };
  move(FPoints);
  if (!FItems.empty()) move(FItems);
  NumberHandles(std::min(from, to), std::max(from, to) + 1);
  NoteOrder(from);
  NoteOrder(to);
}

// What keeps the list in order

detail::TPlace TFuzzySetValues::FindPlace(int changed) const noexcept {
  return FSpread ? FSpread->FindPlace(changed) : detail::FindPlace(FPoints, IsAscending(), changed);
}

void TFuzzySetValues::PutInOrder() noexcept {
  if (ChangeSpread([](TSpreadPoints& points) { return points.Sort(); })) return;
  try {
    Reorder(detail::SortOrder(FPoints));
  } catch (const std::bad_alloc&) {
    SortInArray();
  }
}

void TFuzzySetValues::Reorder(const std::vector<int>& order) {
  std::vector<TFuzzyPoint> points(FPoints.size());
  std::vector<TCollectionItem*> items(FItems.size());
  const auto take = [&order](auto& from, auto& to) {
    for (std::size_t i = 0; i < to.size(); ++i) to[i] = from[static_cast<std::size_t>(order[i])];
    from.swap(to);
  };
  take(FPoints, points);
  take(FItems, items);
  NumberHandles(0, Count());
  FAscending = fzy::IsAscending(FPoints);
}

/// The same order without memory: each point in turn takes its place among those before it.
/// Quadratic.
void TFuzzySetValues::SortInArray() noexcept {
  for (int i = 1; i < Count(); ++i) {
    const TFzyFloat x = PointAt(i).X;
    int place = 0;
    while (place < i && !(PointAt(place).X > x + FuzzyTolerance)) ++place;
    if (place < i) MoveInArray(i, place);
  }
  FAscending = fzy::IsAscending(FPoints);
}

void TFuzzySetValues::RemoveRedundant() noexcept {
  if (FSpread) {
    return FSpread->RemoveDuplicates([this](const TSpreadPoints::TEntry& entry) {
      Release(static_cast<TFuzzySetValue*>(entry.Item), entry.Point);
    });
  }
  // Objects of descendants are compared by themselves, where there is memory for all objects.
  bool asks = FHasDescendants;
  try {
    for (int i = 0; asks && i < Count(); ++i) ItemAt(i);
  } catch (const std::bad_alloc&) {
    asks = false;
  }
  detail::TRedundancy pass;
  int kept = 0;
  for (int i = 0; i < Count(); ++i) {
    const bool isRedundant = asks && Descendant(i)
                                 ? pass.IsRedundant(PointAt(i), kept > 0 && AreEqual(i, kept - 1))
                                 : pass.IsRedundant(PointAt(i));
    if (!isRedundant) Retain(i, kept++);
  }
  Truncate(kept);
}

}  // namespace fzy
