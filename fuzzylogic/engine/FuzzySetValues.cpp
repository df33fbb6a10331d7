#include "fuzzylogic/engine/FuzzySetValues.h"

#include <algorithm>

#include "fuzzylogic/engine/FuzzyCurve.h"
#include "fuzzylogic/engine/FuzzySet.h"
#include "fuzzylogic/engine/detail/PointWriter.h"
#include "fuzzylogic/framework/FirstException.h"
#include "fuzzylogic/framework/UpdateBlock.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy {

TFuzzySetValues::~TFuzzySetValues() { TFuzzySetValues::ClearItems(); }

TPersistent* TFuzzySetValues::GetOwner() const { return FFuzzySet; }

bool TFuzzySetValues::IsAscending() const noexcept {
  if (!FAscending) FAscending = fzy::IsAscending(FPoints);
  return FAscending;
}

TFuzzySetValue* TFuzzySetValues::GetItem(int index) const {
  RequireIndex(index);
  return static_cast<TFuzzySetValue*>(ItemAt(index));
}

void TFuzzySetValues::SetItem(int index, TFuzzySetValue* value) { GetItem(index)->Assign(value); }

TFuzzySetValue* TFuzzySetValues::Add() { return TFuzzySetValue::Create(this); }

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

TFuzzySetValue* TFuzzySetValues::Insert(int index) {
  if (index < 0 || index > GetCount()) FailIndex(index);
  const TPin self(this);
  TFuzzySetValue* value = Add();
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
  // Each point is told for itself, and a handler may shorten the source meanwhile.
  for (int i = first; i < last && i < source->GetCount(); ++i) {
    const TFuzzyPoint point = source->FPoints[static_cast<std::size_t>(i)];
    TFuzzySetValue* value = Add();
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
  TUpdateBlock block(*this);
  ClearItems();
  detail::TPointWriter writer(*this);
  writer.Reserve(list->FPoints.size());
  for (const TFuzzyPoint& point : list->FPoints) writer.Assign(point);
  block.Close();
}

// Handles and storage

bool TFuzzySetValues::Holds(const TFuzzySetValue* value) const noexcept {
  return value->GetCollection() == this;
}

TFuzzySetValue* TFuzzySetValues::Handle(int index) const noexcept {
  return FItems.empty() ? nullptr
                        : static_cast<TFuzzySetValue*>(FItems[static_cast<std::size_t>(index)]);
}

TCollectionItem* TFuzzySetValues::ItemAt(int index) const {
  if (TFuzzySetValue* handle = Handle(index)) return handle;
  // Making the object for a point does not change the list.
  auto* self = const_cast<TFuzzySetValues*>(this);
  self->FItems.resize(FPoints.size());
  auto* handle = new TFuzzySetValue({});
  self->Adopt(handle, index);
  self->FItems[static_cast<std::size_t>(index)] = handle;
  return handle;
}

void TFuzzySetValues::StoreItem(TCollectionItem* item) {
  FItems.resize(FPoints.size());
  FItems.push_back(item);
  FPoints.push_back(static_cast<TFuzzySetValue*>(item)->FPoint);
  Adopt(item, GetCount() - 1);
  NoteOrder(GetCount() - 1);
}

void TFuzzySetValues::DropItem(int index) {
  auto* value = static_cast<TFuzzySetValue*>(FItems[static_cast<std::size_t>(index)]);
  value->FPoint = FPoints[static_cast<std::size_t>(index)];
  Disown(value);
  ErasePoint(index);
}

void TFuzzySetValues::RelocateItem(int from, int to) {
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

void TFuzzySetValues::DeleteItem(int index) {
  if (Handle(index)) return TGCollection::DeleteItem(index);
  const TPin self(this);
  ErasePoint(index);
  Changed();
}

void TFuzzySetValues::ClearItems() { Truncate(0); }

void TFuzzySetValues::DropHandle(int index) noexcept {
  TFuzzySetValue* value = Handle(index);
  if (!value) return;
  value->FPoint = FPoints[static_cast<std::size_t>(index)];
  FItems[static_cast<std::size_t>(index)] = nullptr;
  Disown(value);
  value->Free();  // tells nobody: it stands in no list any more
}

void TFuzzySetValues::NumberHandles(int first, int last) noexcept {
  if (FItems.empty()) return;
  for (int i = first; i < last; ++i) {
    if (TFuzzySetValue* value = Handle(i)) Adopt(value, i);
  }
}

void TFuzzySetValues::ErasePoint(int index) noexcept {
  FPoints.erase(FPoints.begin() + index);
  if (FItems.empty()) return;
  FItems.erase(FItems.begin() + index);
  NumberHandles(index, GetCount());
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
  if (!FItems.empty()) {
    for (int i = count; i < GetCount(); ++i) DropHandle(i);
    FItems.resize(static_cast<std::size_t>(count));
  }
  FPoints.resize(static_cast<std::size_t>(count));
  if (count < 2) FAscending = true;
}

void TFuzzySetValues::NoteOrder(int index) noexcept {
  if (!FAscending) return;
  const auto i = static_cast<std::size_t>(index);
  FAscending = (i == 0 || FPoints[i - 1].X <= FPoints[i].X) &&
               (i + 1 >= FPoints.size() || FPoints[i].X <= FPoints[i + 1].X);
}

void TFuzzySetValues::Reorder(const std::vector<int>& order) {
  const auto apply = [&order](auto& list) {
    auto sorted = list;
    for (std::size_t i = 0; i < order.size(); ++i)
      sorted[i] = list[static_cast<std::size_t>(order[i])];
    list.swap(sorted);
  };
  apply(FPoints);
  if (!FItems.empty()) apply(FItems);
  NumberHandles(0, GetCount());
  FAscending = fzy::IsAscending(FPoints);
}

// Look-ups and statistics

int TFuzzySetValues::SkipX(int index, TFzyFloat x, int dir) const noexcept {
  return fzy::SkipX(FPoints, index, x, dir);
}

int TFuzzySetValues::SkipY(int index, TFzyFloat y, int dir) const noexcept {
  return fzy::SkipY(FPoints, index, y, dir);
}

int TFuzzySetValues::GetXCount(TFzyFloat x) const noexcept {
  return static_cast<int>(std::count_if(FPoints.begin(), FPoints.end(),
                                        [x](const TFuzzyPoint& point) { return point.X == x; }));
}

void TFuzzySetValues::RequirePoints(const char* operation) const {
  if (FPoints.empty()) throw EFzyException(SFuzzySetEmpty, {TString(operation)});
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
