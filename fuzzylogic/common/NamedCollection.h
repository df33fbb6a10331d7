#pragma once

#include <compare>
#include <memory>
#include <set>
#include <string_view>
#include <utility>
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

  /// Whether the item comes before others of its name for who looks up by `IndexOfPreferred`; no,
  /// unless a class says otherwise.
  virtual bool IsPreferred() const { return false; }

 protected:
  TGCollectionItem() = default;
  ~TGCollectionItem() override;
  void Leave() override;

  /// Stores `value` in `field`, on which `GetItemName` or `IsPreferred` rests, so that the
  /// collection finds the item as it is now. Nobody is told.
  template <class Value>
  void StoreKey(Value& field, Value value) {
    ChangeKey([&] { field = std::move(value); });
  }
  /// The same by `change()`, which must not throw unless there is nothing to undo.
  template <class Change>
  void ChangeKey(Change change);

 private:
  using TWatchers = std::vector<TGCollectionItem*>;
  std::unique_ptr<TWatchers> FWatchers;  // symmetric: each watches the other's end
  void MakeRoomForWatcher();
  void Unwatch(TGCollectionItem* item) noexcept;
};

/// An owned collection whose items are found by name.
class TGCollection : public TCollection {
 public:
  /// The index of the first item whose name equals `name`, case-sensitively, or -1. The first
  /// look-ups scan the items; from then on the names of a longer list are kept in order, and a
  /// look-up takes logarithmic time.
  int IndexOf(const TString& name) const;
  /// The first preferred item of that name, else the first one, or -1. It costs the same.
  int IndexOfPreferred(const TString& name) const;

 protected:
  TGCollection() = default;

  /// The first preferred item of a name, and the first other one; -1 where there is none.
  struct TFound {
    int Preferred;
    int Other;
  };
  virtual TFound Find(const TString& name) const;

  void StoreItem(TCollectionItem* item) override;
  void DropItem(int index) override;
  void RelocateItem(int from, int to) override;
  void ExchangeItems(std::vector<TCollectionItem*>& items) noexcept override;

 private:
  friend class TGCollectionItem;

  /// By name, the preferred ones of a name first, and among those by position: adding, removing and
  /// moving an item leaves the order of the others as it is.
  struct TKey {
    std::u16string_view Name;
    bool Preferred;
  };
  struct TByKey {
    using is_transparent = void;
    bool operator()(const TGCollectionItem* left, const TGCollectionItem* right) const;
    bool operator()(const TGCollectionItem* left, const TKey& right) const;
  };
  using TNames = std::set<TGCollectionItem*, TByKey>;

  static TKey KeyOf(const TGCollectionItem& item);
  static std::strong_ordering Compare(const TKey& left, const TKey& right);
  void OrderNames() const noexcept;
  TFound Scan(const TString& name) const;
  TGCollectionItem* NamedItemAt(int index) const {
    return static_cast<TGCollectionItem*>(ItemAt(index));
  }

  mutable std::unique_ptr<TNames> FNames;  // only once look-ups are many
  mutable int FScans = 0;
};

template <class Change>
void TGCollectionItem::ChangeKey(Change change) {
  auto* list = static_cast<TGCollection*>(GetCollection());
  if (!list || !list->FNames) return change();
  auto entry = list->FNames->extract(this);
  try {
    change();
  } catch (...) {
    list->FNames->insert(std::move(entry));
    throw;
  }
  list->FNames->insert(std::move(entry));
}

}  // namespace fzy
