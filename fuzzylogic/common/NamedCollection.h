#pragma once

#include <memory>
#include <set>
#include <string_view>
#include <vector>

#include "fuzzylogic/framework/Collection.h"
#include "fuzzylogic/framework/Component.h"

namespace fzy {

/// A collection item that has a name, and whose end others may watch. It joins `TGCollection`s
/// only.
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

  /// Stores `value` in `name`, the text that `GetItemName` answers, so that the collection finds
  /// the item under its new name. Nobody is told.
  void StoreName(TString& name, const TString& value);

 private:
  using TWatchers = std::vector<TGCollectionItem*>;
  std::unique_ptr<TWatchers> FWatchers;  // symmetric: each watches the other's end
  void Watch(TGCollectionItem* item);
  void Unwatch(TGCollectionItem* item) noexcept;
};

/// An owned collection whose items are found by name.
class TGCollection : public TCollection {
 public:
  /// The index of the first item whose name equals `name`, case-sensitively, or -1. The first
  /// look-ups scan the items; from then on the names of a longer list are kept in order, and a
  /// look-up takes logarithmic time.
  virtual int IndexOf(const TString& name) const { return IndexOf(name, -1); }
  /// The same among the items behind the one at `after`.
  int IndexOf(const TString& name, int after) const;

 protected:
  TGCollection() = default;

  void StoreItem(TCollectionItem* item) override;
  void DropItem(int index) override;
  void RelocateItem(int from, int to) override;

 private:
  friend class TGCollectionItem;

  /// By name, and within a name by position: adding, removing and moving an item leaves the order
  /// of the others as it is.
  struct TNamePlace {
    std::u16string_view Name;
    int After;
  };
  struct TByName {
    using is_transparent = void;
    bool operator()(const TCollectionItem* left, const TCollectionItem* right) const;
    bool operator()(const TCollectionItem* left, const TNamePlace& right) const;
  };
  using TNames = std::set<TCollectionItem*, TByName>;

  int Scan(const TString& name, int after) const;

  mutable std::unique_ptr<TNames> FNames;  // only once look-ups are many
  mutable int FScans = 0;
};

}  // namespace fzy
