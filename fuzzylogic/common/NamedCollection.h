#pragma once

#include <memory>
#include <vector>

#include "fuzzylogic/framework/Collection.h"
#include "fuzzylogic/framework/Component.h"

namespace fzy {

/// A collection item whose end others may watch.
class TGCollectionItem : public TCollectionItem {
 public:
  /// Asks that `item` be told by `Notification(this, opRemove)` when this item is freed. One that
  /// was freed already takes no new watchers.
  void FreeNotification(TGCollectionItem* item);
  void RemoveFreeNotification(TGCollectionItem* item) noexcept;
  /// Told when a watched item goes. The watched item has left its collection but is still whole.
  virtual void Notification(TGCollectionItem* item, TOperation operation);

 protected:
  TGCollectionItem() = default;
  ~TGCollectionItem() override;
  void Leave() override;

 private:
  using TWatchers = std::vector<TGCollectionItem*>;
  std::unique_ptr<TWatchers> FWatchers;  // symmetric: each watches the other's end
  void Watch(TGCollectionItem* item);
  void Unwatch(TGCollectionItem* item) noexcept;
};

/// An owned collection whose items are found by name.
class TGCollection : public TCollection {
 public:
  /// The index of the first item whose name equals `name`, case-sensitively, or -1. Linear time.
  int IndexOf(const TString& name) const;

 protected:
  TGCollection() = default;
};

}  // namespace fzy
