#include "fuzzylogic/engine/FuzzySetValues.h"

#include <algorithm>
#include <typeinfo>

#include "fuzzylogic/engine/FuzzyCurve.h"
#include "fuzzylogic/engine/FuzzySet.h"
#include "fuzzylogic/engine/detail/PointWriter.h"
#include "fuzzylogic/engine/detail/SpreadPoints.h"
#include "fuzzylogic/framework/FirstException.h"
#include "fuzzylogic/framework/UpdateBlock.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy {

TFuzzySetValues::TFuzzySetValues(TFuzzySet* fuzzySet) noexcept : FFuzzySet(fuzzySet) {}

TFuzzySetValues::~TFuzzySetValues() { TFuzzySetValues::ClearItems(); }

TPersistent* TFuzzySetValues::GetOwner() const { return FFuzzySet; }

bool TFuzzySetValues::IsAscending() const noexcept {
  if (!FAscending) FAscending = fzy::IsAscending(Points());
  return FAscending;
}

TFuzzySetValue* TFuzzySetValues::GetItem(int index) const {
  RequireIndex(index);
  return static_cast<TFuzzySetValue*>(ItemAt(index));
}

void TFuzzySetValues::SetItem(int index, TFuzzySetValue* value) { GetItem(index)->Assign(value); }

TFuzzySetValue* TFuzzySetValues::Add() { return Join(NewHandle()); }

TOwned<TFuzzySetValue> TFuzzySetValues::NewHandle() {
  return TOwned<TFuzzySetValue>(new TFuzzySetValue);
}

TFuzzySetValue* TFuzzySetValues::Join(TOwned<TFuzzySetValue> value) {
  const TPin self(this);
  const TPin pinned(&*value);
  ReserveRoom(static_cast<std::size_t>(Count()) + 1, true);
  TFuzzySetValue* joined = value.Release();
  joined->FPoint = NextPoint();
  InsertItem(joined);
  return joined->IsFreed() ? nullptr : joined;
}

TFuzzySetValue* TFuzzySetValues::Add(TFzyFloat x, TFzyFloat y) {
  const TPin self(this);
  detail::CheckDegree(y, "Add");
  AdmitX(x);
  TFuzzySetValue* value = Add();
  if (!value) return nullptr;
  const TPin pinned(value);
  TFirstException first;
  first.Run([&] { value->SetX(x); });
  first.Run([&] { value->SetY(y); });
  first.Rethrow();
  return value->IsFreed() ? nullptr : value;
}

TFuzzySetValue* TFuzzySetValues::Insert(int index) { return Insert(index, NewHandle()); }

TFuzzySetValue* TFuzzySetValues::Insert(int index, TOwned<TFuzzySetValue> point) {
  if (index < 0 || index > GetCount()) FailIndex(index);
  const TPin self(this);
  TFuzzySetValue* value = Join(std::move(point));
  if (!value) return nullptr;
  const TPin pinned(value);
  if (Holds(value)) value->SetIndex(std::min(index, GetCount() - 1));
  return value->IsFreed() ? nullptr : value;
}

void TFuzzySetValues::Append(TFuzzySetValues* source, int index, int count) {
  if (!source) throw EFzyException(SFzySetMissing, {TString("Append")});
  const TPin self(this);
  const TPin pinned(source);
  const int first = std::clamp(index, 0, std::max(0, source->GetCount() - 1));
  const int last = first + std::min(count, source->GetCount() - first);
  if (last <= first) return;
  const auto added = static_cast<std::size_t>(last - first);
  std::vector<TOwned<TFuzzySetValue>> values(added);
  for (TOwned<TFuzzySetValue>& value : values) value = NewHandle();
  ReserveRoom(static_cast<std::size_t>(Count()) + added, true);
  // Each point is told for itself, and a handler may shorten the source meanwhile.
  for (int i = first; i < last && i < source->Count(); ++i) {
    const TFuzzyPoint point = source->PointAt(i);
    TFuzzySetValue* value = Join(std::move(values[static_cast<std::size_t>(i - first)]));
    if (value) value->SetValue(point.X, point.Y);
  }
}

void TFuzzySetValues::Append(TFuzzySetValues* source) {
  Append(source, 0, source ? source->GetCount() : 0);
}

void TFuzzySetValues::Assign(TPersistent* source) {
  const auto* list = dynamic_cast<const TFuzzySetValues*>(source);
  if (!list) return TGCollection::Assign(source);
  if (list == this) return;
  const TFuzzyCurve points = list->Points();
  PrepareFor(points);
  TUpdateBlock block(*this);
  ClearItems();
  detail::TPointWriter writer(*this);
  for (const TFuzzyPoint& point : points) writer.Assign(point);
  block.Close();
}

void TFuzzySetValues::PrepareFor(TFuzzyCurve points) {
  detail::TPointWriter writer(*this);
  for (const TFuzzyPoint& point : points) writer.Check(point);
  ReserveRoom(points.size());
}

void TFuzzySetValues::PutBack(std::vector<TFuzzyPoint>& points) noexcept {
  Truncate(0);
  FPoints.swap(points);
  FAscending = fzy::IsAscending(FPoints);
}

// The array, and the objects of its points

bool TFuzzySetValues::Holds(const TFuzzySetValue* value) const noexcept {
  return value->GetCollection() == this;
}

TFuzzySetValue* TFuzzySetValues::Handle(int index) const noexcept {
  if (FSpread) return static_cast<TFuzzySetValue*>(FSpread->At(index).Item);
  return FItems.empty() ? nullptr
                        : static_cast<TFuzzySetValue*>(FItems[static_cast<std::size_t>(index)]);
}

TFuzzySetValue* TFuzzySetValues::FindDescendant(int index) const noexcept {
  TFuzzySetValue* value = Handle(index);
  return value && typeid(*value) != typeid(TFuzzySetValue) ? value : nullptr;
}

TCollectionItem* TFuzzySetValues::ItemAt(int index) const {
  if (TFuzzySetValue* handle = Handle(index)) return handle;
  // Making the object for a point does not change the list.
  auto* self = const_cast<TFuzzySetValues*>(this);
  TOwned<TFuzzySetValue> handle = NewHandle();
  Settle();
  self->ReserveRoom(FPoints.size(), true);
  self->FItems.resize(FPoints.size());
  self->Adopt(&*handle, index);
  self->FItems[static_cast<std::size_t>(index)] = &*handle;
  return handle.Release();
}

void TFuzzySetValues::StoreItem(TCollectionItem* item) {
  auto* value = static_cast<TFuzzySetValue*>(item);
  AppendPoint(value->FPoint, value);
}

void TFuzzySetValues::DropItem(int index) {
  TFuzzySetValue* value = Handle(index);
  value->FPoint = PointAt(index);
  Disown(value);
  ErasePoint(index);
}

void TFuzzySetValues::DeleteItem(int index) {
  const TPin self(this);
  if (const TFuzzySetValue* handle = Handle(index)) {
    if (FSpread) FSpread->Follow(detail::TSpreadPoints::TFollowed::Deleted, index);
    FDeleted = handle;
    return TGCollection::DeleteItem(index);
  }
  ErasePoint(index);
  Changed();
}

void TFuzzySetValues::ClearItems() { Truncate(0); }

int TFuzzySetValues::PositionOf(const TCollectionItem& item) const noexcept {
  using TFollowed = detail::TSpreadPoints::TFollowed;
  for (const auto& [followed, which] :
       {std::pair(FChanged, TFollowed::Changed), std::pair(FDeleted, TFollowed::Deleted)}) {
    if (FSpread && &item == followed && FSpread->PlaceOf(which) >= 0)
      return FSpread->PlaceOf(which);
  }
  Settle();
  return TGCollection::PositionOf(item);
}

/// Lets an object go whose point goes; it tells nobody, as it stands in no list any more.
void TFuzzySetValues::Release(TFuzzySetValue* value, const TFuzzyPoint& point) noexcept {
  value->FPoint = point;
  Disown(value);
  value->Free();
}

void TFuzzySetValues::DropHandle(int index) noexcept {
  TFuzzySetValue* value = Handle(index);
  if (!value) return;
  FItems[static_cast<std::size_t>(index)] = nullptr;
  Release(value, FPoints[static_cast<std::size_t>(index)]);
}

void TFuzzySetValues::NumberHandles(int first, int last) noexcept {
  if (FItems.empty()) return;
  for (int i = first; i < last; ++i) {
    if (TFuzzySetValue* value = Handle(i)) Adopt(value, i);
  }
}

/// Moves a point down over another that is given up; for passes that thin the list out.
void TFuzzySetValues::Retain(int from, int to) noexcept {
  if (from == to) return;
  DropHandle(to);
  FPoints[static_cast<std::size_t>(to)] = FPoints[static_cast<std::size_t>(from)];
  if (FItems.empty()) return;
  std::swap(FItems[static_cast<std::size_t>(to)], FItems[static_cast<std::size_t>(from)]);
  NumberHandles(to, to + 1);
}

void TFuzzySetValues::Truncate(int count) noexcept {
  Settle();
  if (!FItems.empty()) {
    for (int i = count; i < Count(); ++i) DropHandle(i);
    FItems.resize(static_cast<std::size_t>(count));
  }
  FPoints.resize(static_cast<std::size_t>(count));
  if (count < 2) FAscending = true;
  FHasDescendants = FHasDescendants && count > 0;
}

void TFuzzySetValues::NoteOrder(int index) noexcept {
  if (!FAscending.load(std::memory_order_relaxed)) return;
  const auto i = static_cast<std::size_t>(index);
  FAscending.store((i == 0 || FPoints[i - 1].X <= FPoints[i].X) &&
                       (i + 1 >= FPoints.size() || FPoints[i].X <= FPoints[i + 1].X),
                   std::memory_order_relaxed);
}

// Look-ups and statistics

int TFuzzySetValues::SkipX(int index, TFzyFloat x, int dir) const noexcept {
  return fzy::SkipX(Points(), index, x, dir);
}

int TFuzzySetValues::SkipY(int index, TFzyFloat y, int dir) const noexcept {
  return fzy::SkipY(Points(), index, y, dir);
}

int TFuzzySetValues::GetXCount(TFzyFloat x) const noexcept {
  return static_cast<int>(std::ranges::count(Points(), x, &TFuzzyPoint::X));
}

void TFuzzySetValues::RequirePoints(const char* operation) const {
  if (Points().empty()) throw EFzyException(SFuzzySetEmpty, {TString(operation)});
}

TFzyFloat TFuzzySetValues::GetMinValue() const {
  RequirePoints("Get Minimum Y Value");
  TFzyFloat least = FPoints.front().Y;
  for (std::size_t i = 1; i < FPoints.size() && least != 0; ++i)
    least = std::min(least, FPoints[i].Y);
  return least;
}

TFzyFloat TFuzzySetValues::GetMaxValue() const {
  RequirePoints("Get Maximum Y Value");
  return GreatestY(FPoints);
}

TFzyFloat TFuzzySetValues::GetAvgValue() const {
  RequirePoints("Get Average Y Value");
  return MeanY(FPoints);
}

void TFuzzySetValues::GetStatValues(TFzyFloat& avgY, TFzyFloat& maxY, TFzyFloat& minY) const {
  RequirePoints("Get Statistics Values");
  avgY = MeanY(FPoints);
  maxY = 0;
  minY = 1;
  for (const TFuzzyPoint& point : FPoints) {
    maxY = std::max(maxY, point.Y);
    minY = std::min(minY, point.Y);
  }
}

}  // namespace fzy
