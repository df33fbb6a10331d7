#include <utility>

#include "fuzzylogic/engine/FuzzyCurve.h"
#include "fuzzylogic/engine/FuzzySet.h"
#include "fuzzylogic/engine/FuzzySetValues.h"
#include "fuzzylogic/engine/detail/PointWriter.h"
#include "fuzzylogic/framework/Properties.h"

// How a point list is stored and loaded.

namespace fzy {

/// Points that are loaded, with what is known of their order, and the objects of those that they
/// replace.
class TFuzzySetValues::TStagedPoints final : public TStagedPairs {
 public:
  explicit TStagedPoints(TFuzzySetValues& list) : FPin(&list), FList(list) {
    list.Settle();
    FHeld.reserve(list.FItems.size());
    for (const TCollectionItem* handle : list.FItems) FHeld.emplace_back(handle);
  }
  ~TStagedPoints() override {
    DropForeign();
    for (TCollectionItem* handle : FHandles) TOwned<TCollectionItem>(handle).Reset();
  }

  /// Takes the point as it is, but for a degree below 0: the range may have changed since it was
  /// set, and an order that the list once kept is kept.
  void Add(TNumberPair entry) override {
    RequireFinite(entry.first, "Add");
    detail::CheckDegree(entry.second, "Add");
    const TFuzzyPoint point{entry.first, entry.second < 0 ? 0 : entry.second};
    if (!FPoints.empty()) {
      const TFuzzyPoint& last = FPoints.back();
      FAscending = FAscending && last.X <= point.X;
      FSorted = FSorted && last.X <= point.X + FuzzyTolerance;
      FDuplicatesRemoved = FDuplicatesRemoved && FSorted && !SamePoint(last, point);
    }
    FPoints.push_back(point);
  }

  void Exchange() noexcept override {
    DropForeign();
    FList.Settle();
    FList.ReleaseHandles();
    std::swap(FList.FPoints, FPoints);
    std::swap(FList.FItems, FHandles);
    std::swap(FList.FSorted, FSorted);
    std::swap(FList.FDuplicatesRemoved, FDuplicatesRemoved);
    FAscending = FList.FAscending.exchange(FAscending);
    FList.NumberHandles(0, FList.GetCount());
  }
  void Tell() override {
    if (FList.FFuzzySet) FList.FFuzzySet->PointsLoaded();
  }

 private:
  /// A handler may have freed the object of a point that stands aside, or put it into a list.
  void DropForeign() noexcept {
    for (TCollectionItem*& handle : FHandles) {
      if (handle && (handle->IsFreed() || handle->GetCollection())) handle = nullptr;
    }
  }

  TPin FPin;
  TFuzzySetValues& FList;
  std::vector<TPin> FHeld;
  std::vector<TFuzzyPoint> FPoints;
  std::vector<TCollectionItem*> FHandles;
  bool FSorted = true;
  bool FDuplicatesRemoved = true;
  bool FAscending = true;
};

/// Lets the objects of the points go without ending them: they hold their coordinates themselves.
void TFuzzySetValues::ReleaseHandles() noexcept {
  if (FItems.empty()) return;
  for (int i = 0; i < GetCount(); ++i) {
    TFuzzySetValue* value = Handle(i);
    if (!value) continue;
    value->FPoint = FPoints[static_cast<std::size_t>(i)];
    Disown(value);
  }
}

void TFuzzySetValues::DefineProperties(TFiler& filer) {
  // Not as a list of items, because points need no objects.
  TPersistent::DefineProperties(filer);  // NOLINT(bugprone-parent-virtual-call)
  filer.DefineEntries(TPairEntries{[this] { return GetCount(); },
                                   [this](int index) -> TNumberPair {
                                     const TFuzzyPoint point = PointAt(index);
                                     return {point.X, point.Y};
                                   },
                                   [this] { return std::make_unique<TStagedPoints>(*this); }});
}

}  // namespace fzy
