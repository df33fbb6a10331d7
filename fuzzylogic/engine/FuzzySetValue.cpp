#include "fuzzylogic/engine/FuzzySetValue.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "fuzzylogic/engine/FuzzyCurve.h"
#include "fuzzylogic/engine/FuzzySetValues.h"
#include "fuzzylogic/framework/FirstException.h"
#include "fuzzylogic/framework/Properties.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy {
namespace {

/// A degree as a point may hold it: refused above all numbers, never negative.
TFzyFloat AdmitY(TFzyFloat y, const char* operation) {
  RequireNumber(y, operation);
  if (y == std::numeric_limits<TFzyFloat>::infinity()) RequireFinite(y, operation);
  return y < 0 ? 0 : y;
}

}  // namespace

TFuzzySetValue* TFuzzySetValue::Create(TCollection* collection) {
  return Join(new TFuzzySetValue, collection);
}

TFuzzySetValue* TFuzzySetValue::Join(TFuzzySetValue* value, TCollection* collection) {
  TOwned<TFuzzySetValue> made(value);
  auto* list = dynamic_cast<TFuzzySetValues*>(collection);
  if (collection && !list) throw EFzyException(SFzyNotAPointList, {collection->ClassName()});
  return list ? list->Join(std::move(made)) : made.Release();
}

TFuzzySetValues* TFuzzySetValue::GetCollection() const noexcept {
  return static_cast<TFuzzySetValues*>(TCollectionItem::GetCollection());
}

void TFuzzySetValue::SetCollection(TFuzzySetValues* value) {
  TCollectionItem::SetCollection(value);
}

TFzyFloat TFuzzySetValue::GetX() const noexcept {
  const TFuzzySetValues* list = GetCollection();
  return list ? list->PointAt(GetIndex()).X : FPoint.X;
}

TFzyFloat TFuzzySetValue::GetY() const noexcept {
  const TFuzzySetValues* list = GetCollection();
  return list ? list->PointAt(GetIndex()).Y : FPoint.Y;
}

void TFuzzySetValue::SetX(TFzyFloat value) {
  RequireNumber(value, "SetX");
  if (value == GetX()) return;
  if (TFuzzySetValues* list = GetCollection()) {
    list->StorePoint(GetIndex(), {list->AdmitX(value), GetY()});
    Tell({utX});
  } else {
    RequireFinite(value, "SetX");
    FPoint.X = value;
  }
}

void TFuzzySetValue::SetY(TFzyFloat value) {
  const TFzyFloat y = AdmitY(value, "SetY");
  if (value == GetY()) return;
  if (TFuzzySetValues* list = GetCollection()) {
    list->StorePoint(GetIndex(), {GetX(), y});
    Tell({utY});
  } else {
    FPoint.Y = y;
  }
}

void TFuzzySetValue::SetValue(TFzyFloat x, TFzyFloat y) {
  TFuzzySetValues* list = GetCollection();
  const bool hasRange = list && list->GetFuzzySet();
  if (hasRange) {
    x = list->AdmitX(x);
    y = AdmitY(y, "SetValue");
  } else {
    RequireFinite(x, "SetValue");
    RequireFinite(y, "SetValue");
  }
  if (list) {
    list->StorePoint(GetIndex(), {x, y});
    Tell({utX, utY});
  } else {
    FPoint = {x, y};
  }
}

void TFuzzySetValue::Tell(TXYUpdateTypes coordinates) {
  TFuzzySetValues* list = GetCollection();
  const TPin self(this);
  const TPin pinned(list);
  TFirstException first;
  first.Run([&] { list->UpdateValue(this, coordinates); });
  first.Run([this] { Changed(false); });
  first.Rethrow();
}

void TFuzzySetValue::Assign(TPersistent* source) {
  const auto* value = dynamic_cast<const TFuzzySetValue*>(source);
  if (!value) return TCollectionItem::Assign(source);
  SetValue(value->GetX(), value->GetY());
}

void TFuzzySetValue::DefineProperties(TFiler& filer) {
  TCollectionItem::DefineProperties(filer);
  filer.Define(
      "X", [this] { return GetX(); },
      [this](TFzyFloat value) {
        Load({value, GetY()}, {utX});
      });
  filer.Define(
      "Y", [this] { return GetY(); },
      [this](TFzyFloat value) {
        Load({GetX(), value}, {utY});
      });
}

void TFuzzySetValue::Load(TFuzzyPoint point, TXYUpdateTypes coordinates) {
  RequireFinite(point.X, "SetX");
  point.Y = AdmitY(point.Y, "SetY");
  TFuzzySetValues* list = GetCollection();
  if (!list) {
    FPoint = point;
    return;
  }
  list->StorePoint(GetIndex(), point);
  list->Record(GetIndex(), coordinates);
}

bool TFuzzySetValue::Equals(const TFuzzySetValue& source) const {
  return SamePoint(GetPoint(), source.GetPoint());
}

}  // namespace fzy
