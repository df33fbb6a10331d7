#pragma once

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <utility>
#include <vector>

#include "fuzzylogic/framework/Persistent.h"

namespace fzy {

class TCollection;

/// What `TCollection::Notify` tells about an item.
enum class TCollectionNotification : unsigned char { cnAdded, cnExtracting, cnDeleting };
using enum TCollectionNotification;

/// An item of an owned collection. Made on the heap by a `Create` of its class; its collection
/// frees it, or `Free()` does, which takes it out first.
class TCollectionItem : public TPersistent {
 public:
  using TPersistent::Free;

  TCollection* GetCollection() const noexcept { return FCollection; }
  /// Takes the item out of its collection and puts it at the end of another (or of none).
  void SetCollection(TCollection* value);

  /// Position in the collection, -1 without one. Constant time.
  int GetIndex() const noexcept;
  /// Moves the item; the items between shift by one. The index it already has changes nothing.
  /// Without a collection nothing happens.
  /// @throws the collection's index error
  void SetIndex(int value);

  /// A name for people; the class name unless a class says otherwise.
  virtual TString GetDisplayName() const { return ClassName(); }
  /// The name by which a named collection finds the item; empty unless a class has names.
  virtual const TString& GetItemName() const;

 protected:
  TCollectionItem() = default;
  ~TCollectionItem() override = default;

  /// Tells the collection that this item changed (or, with `allItems`, that all may have), unless
  /// an update block is open there.
  void Changed(bool allItems);

  void Leave() override;

  /// Called whenever the item has joined or left a collection, before anybody is told.
  virtual void CollectionChanged() {}

 private:
  friend class TCollection;

  TCollection* FCollection = nullptr;
  int FIndex = -1;
  std::uint32_t FMark = 0;          // of the walk over the collection that will come to the item
  TCollection* FLeaving = nullptr;  // which tells at this moment that the item is about to leave
};

/// An ordered collection that owns its items: freeing or clearing it frees them.
///
/// Two hooks tell a descendant what happens. `Notify(item, action)` is told of every item that has
/// joined (`cnAdded`), is about to leave (`cnExtracting`, also when it is freed) or is about to be
/// freed by `Delete` (`cnDeleting`, then `cnExtracting`), even inside an update block.
/// `Update(item)` is told of changes, with the item or with nothing for the whole list: after every
/// addition, removal, move and `Clear`, and when an item says that it changed; inside an update
/// block it is held back and called once, with nothing, when the outermost block closes.
///
/// Where items are stored is a descendant's choice (the storage operations); by default an
/// array of pointers.
class TCollection : public TPersistent {
 public:
  /// Frees the items without telling anybody; `Free()` on a collection made on the heap tells.
  ~TCollection() override;
  using TPersistent::Free;

  /// The object that the collection belongs to, or nothing.
  virtual TPersistent* GetOwner() const { return nullptr; }
  virtual int GetCount() const { return static_cast<int>(FItems.size()); }

  /// Frees the item at `index` (`cnDeleting`, `cnExtracting`, then `Update`).
  /// @throws the index error
  void Delete(int index);
  /// Frees all items, last to first, inside one update block; nothing happens on an empty list.
  /// Items that handlers add meanwhile stay.
  void Clear();

  void BeginUpdate() noexcept { ++FUpdateCount; }
  /// Closes one block; closing the outermost calls `Update` with nothing, whether or not anything
  /// changed. Without an open block nothing happens.
  void EndUpdate();
  bool IsUpdating() const noexcept { return FUpdateCount > 0; }

  /// From another collection: clears this one and appends a copy of each of its items, inside one
  /// update block. A collection assigned to itself stays as it is.
  void Assign(TPersistent* source) override;
  /// Its entries are the items.
  void DefineProperties(TFiler& filer) override;

 protected:
  TCollection() = default;

  /// A new item of the collection's class, appended.
  virtual TCollectionItem* AddItem() = 0;
  /// A new item of the collection's class that is in no collection. A collection that is to be
  /// loaded overrides this.
  virtual TCollectionItem* NewItem();
  /// Called before the list is loaded: takes the memory that telling of it will need.
  virtual void PrepareToLoad() {}
  /// The items of this list and those of `items`, which are in none, change places; nobody is told.
  virtual void ExchangeItems(std::vector<TCollectionItem*>& items) noexcept;
  /// Called when the list has been loaded, to tell of it: by default of the removal of `replaced`,
  /// which were its items before and are freed afterwards, of the addition of those that are here
  /// now, and of a change of the list.
  virtual void ItemsLoaded(std::vector<TCollectionItem*>& replaced);

  virtual void Update(TCollectionItem* item);
  virtual void Notify(TCollectionItem* item, TCollectionNotification action);

  /// Raises the error for an index outside the list; EListError unless a descendant has its own.
  [[noreturn]] virtual void FailIndex(int index) const;
  void RequireIndex(int index) const {
    if (index < 0 || index >= GetCount()) FailIndex(index);
  }

  // Storage.
  virtual TCollectionItem* ItemAt(int index) const {
    return FItems[static_cast<std::size_t>(index)];
  }
  /// Takes the memory for that many items in all.
  virtual void MakeRoom(int count);
  virtual void StoreItem(TCollectionItem* item);
  virtual void DropItem(int index);
  virtual void RelocateItem(int from, int to);
  virtual void DeleteItem(int index);
  virtual void ClearItems();

  /// Frees the items with `Notify` but without `Update`: the list itself is about to go.
  void Leave() override;

  /// Calls `tell(item)` for each item that is here now and still is when its turn comes.
  template <class Tell>
  void TellOfEach(Tell tell);

  /// Calls `Update(nullptr)` unless a block is open.
  void Changed() { ItemChanged(nullptr); }
  void ItemChanged(TCollectionItem* item) {
    if (FUpdateCount > 0) return;
    const TPin self(this);  // so that a descendant's `Update` may go on after its handlers
    Update(item);
  }

  void InsertItem(TCollectionItem* item);
  void MoveItem(int from, int to);

  /// For storage in descendants: makes `item` this collection's item at `index`, or nobody's.
  void Adopt(TCollectionItem* item, int index) noexcept;
  static void Disown(TCollectionItem* item) noexcept;

  /// Where an item of this collection stands, while the items do not know it themselves.
  virtual int PositionOf(const TCollectionItem& item) const noexcept { return item.FIndex; }

  /// The stored pointers; a descendant with a storage of its own may use them as it likes.
  std::vector<TCollectionItem*> FItems;
  /// Whether items may not know their index: then `PositionOf` is asked.
  std::atomic<bool> FIsUnsettled{false};

 private:
  friend class TCollectionItem;
  class TStaged;
  void RemoveItem(TCollectionItem* item);
  void Renumber(int first, int last) noexcept;

  // A walk over the items that are here now, whatever handlers do to them on the way: they are
  // marked before, and each loses the mark when its turn comes. Takes no memory. No two walks have
  // the same mark.
  std::uint32_t MarkAll() noexcept;
  static bool TakeMark(TCollectionItem* item, std::uint32_t mark) noexcept {
    return item->FMark == mark && std::exchange(item->FMark, 0) == mark;
  }

  int FUpdateCount = 0;
};

inline int TCollectionItem::GetIndex() const noexcept {
  if (!FCollection) return -1;
  return FCollection->FIsUnsettled.load(std::memory_order_acquire) ? FCollection->PositionOf(*this)
                                                                   : FIndex;
}

template <class Tell>
void TCollection::TellOfEach(Tell tell) {
  const TPin self(this);
  const std::uint32_t mark = MarkAll();
  for (bool again = true; again;) {
    again = false;  // unless an item may have moved to where the walk has been
    for (int i = 0; i < GetCount(); ++i) {
      TCollectionItem* item = ItemAt(i);
      if (!TakeMark(item, mark)) continue;
      const TPin pinned(item);
      again = true;
      tell(item);
      i = std::min(i, item->GetCollection() == this ? item->GetIndex() : i - 1);
    }
  }
}

/// Walks a list by index, for `for (auto* item : list)`; ends where the list ended when it began,
/// or earlier when the list has become shorter.
template <class List>
class TListIterator {
 public:
  TListIterator(const List& list, int index) : FList(&list), FIndex(index) {}
  auto* operator*() const { return FList->GetItem(FIndex); }
  TListIterator& operator++() {
    ++FIndex;
    return *this;
  }
  friend bool operator!=(const TListIterator& at, const TListIterator& end) {
    return at.FIndex < end.FIndex && at.FIndex < at.FList->GetCount();
  }

 private:
  const List* FList;
  int FIndex;
};

}  // namespace fzy
