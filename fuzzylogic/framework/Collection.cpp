#include "fuzzylogic/framework/Collection.h"

#include <algorithm>

#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/framework/FirstException.h"
#include "fuzzylogic/framework/Format.h"
#include "fuzzylogic/framework/Messages.h"
#include "fuzzylogic/framework/Properties.h"
#include "fuzzylogic/framework/UpdateBlock.h"

namespace fzy {

// TCollectionItem

void TCollectionItem::SetCollection(TCollection* value) {
  if (value == FCollection) return;
  const TPin self(this);
  const TPin target(value);
  if (value) value->MakeRoom(value->GetCount() + 1);
  TFirstException first;
  if (FCollection) first.Run([this] { FCollection->RemoveItem(this); });
  // A handler of the removal may have freed the item or filed it elsewhere.
  if (value && !FCollection && !IsFreed()) first.Run([&] { value->InsertItem(this); });
  first.Rethrow();
}

void TCollectionItem::SetIndex(int value) {
  if (!FCollection) return;
  FCollection->RequireIndex(value);
  FCollection->MoveItem(GetIndex(), value);
}

const TString& TCollectionItem::GetItemName() const {
  static const TString none;
  return none;
}

void TCollectionItem::Changed(bool allItems) {
  if (FCollection) FCollection->ItemChanged(allItems ? nullptr : this);
}

void TCollectionItem::Leave() {
  if (FCollection) FCollection->RemoveItem(this);
}

// TCollection

/// Items that are loaded. They join the list as a whole, so that nobody is told of one that is not
/// complete.
class TCollection::TStaged final : public TStagedItems {
 public:
  explicit TStaged(TCollection& list) : FPin(&list), FList(list) {
    list.PrepareToLoad();
    for (int i = 0; i < list.GetCount(); ++i) FHeld.emplace_back(list.ItemAt(i));
  }
  ~TStaged() override {
    DropForeign();
    for (TCollectionItem* item : FItems) TOwned<TCollectionItem>(item).Reset();
  }
  TPersistent& Begin() override {
    TOwned<TCollectionItem> item(FList.NewItem());
    if (!item) throw EConvertError(FormatText(SFormUnknownEntry, {FList.ClassName()}));
    FHeld.emplace_back(item.Get());
    FItems.push_back(item.Get());
    return *item.Release();
  }
  void Complete() override {}
  void Exchange() noexcept override {
    DropForeign();
    FList.ExchangeItems(FItems);
  }
  void Tell() override {
    DropForeign();
    FList.ItemsLoaded(FItems);
  }

 private:
  /// A handler may have freed an item that stands aside, or put it into a list.
  void DropForeign() noexcept {
    std::erase_if(FItems, [](const TCollectionItem* item) {
      return item->IsFreed() || item->GetCollection();
    });
  }

  TPin FPin;
  TCollection& FList;
  std::vector<TPin> FHeld;  // all that stand aside at any time
  std::vector<TCollectionItem*> FItems;
};

TCollection::~TCollection() {
  for (TCollectionItem* item : FItems) {
    if (!item) continue;
    const TPin last(item);
    item->FLife = TLife::Freed;
    Disown(item);
    item->CollectionChanged();
  }
}

void TCollection::Leave() {
  ++FUpdateCount;  // never closed: nobody is told of a list that goes as a whole
  ClearItems();
}

void TCollection::Delete(int index) {
  RequireIndex(index);
  DeleteItem(index);
}

void TCollection::DeleteItem(int index) {
  const TPin self(this);
  TCollectionItem* item = ItemAt(index);
  const TPin pinned(item);
  TFirstException first;
  if (item->FLeaving != this) first.Run([&] { Notify(item, cnDeleting); });
  first.Run([&] { item->Free(); });
  first.Rethrow();
}

void TCollection::Clear() {
  if (GetCount() == 0) return;
  TUpdateBlock block(*this);
  TFirstException first;
  first.Run([this] { ClearItems(); });
  first.Run([&block] { block.Close(); });
  first.Rethrow();
}

std::uint32_t TCollection::MarkAll() noexcept {
  static std::atomic<std::uint32_t> walks{0};
  const std::uint32_t mark = ++walks;
  for (int i = 0; i < GetCount(); ++i) ItemAt(i)->FMark = mark;
  return mark;
}

void TCollection::ClearItems() {
  const TPin self(this);
  // Handlers may free, move, take away and add items meanwhile: those that are here now go, and no
  // others.
  const std::uint32_t mark = MarkAll();
  TFirstException first;
  for (bool again = true; again;) {
    again = false;  // unless an item may have moved to where the walk has been
    for (int i = GetCount() - 1; i >= 0; i = std::min(i, GetCount()) - 1) {
      TCollectionItem* item = ItemAt(i);
      if (!TakeMark(item, mark)) continue;
      again = true;
      first.Run([item] { item->Free(); });
    }
  }
  first.Rethrow();
}

void TCollection::EndUpdate() {
  if (FUpdateCount > 0 && --FUpdateCount == 0) Changed();
}

void TCollection::Assign(TPersistent* source) {
  if (source == this) return;
  auto* from = dynamic_cast<TCollection*>(source);
  if (!from) return TPersistent::Assign(source);
  const TPin pinned(from);
  MakeRoom(from->GetCount());
  TUpdateBlock block(*this);
  Clear();
  const int count = from->GetCount();  // handlers may change the source while it is copied
  for (int i = 0; i < count && i < from->GetCount(); ++i) {
    TCollectionItem* item = AddItem();
    if (item && i < from->GetCount()) item->Assign(from->ItemAt(i));
  }
  block.Close();
}

void TCollection::DefineProperties(TFiler& filer) {
  TPersistent::DefineProperties(filer);
  filer.DefineEntries(TItemEntries{[this] { return GetCount(); },
                                   [this](int index) -> TPersistent& { return *ItemAt(index); },
                                   [this] { return std::make_unique<TStaged>(*this); }});
}

TCollectionItem* TCollection::NewItem() { return nullptr; }

void TCollection::ExchangeItems(std::vector<TCollectionItem*>& items) noexcept {
  for (TCollectionItem* item : FItems) {
    Disown(item);
    item->CollectionChanged();
  }
  FItems.swap(items);
  int index = 0;
  for (TCollectionItem* item : FItems) {
    Adopt(item, index++);
    item->CollectionChanged();
  }
}

void TCollection::ItemsLoaded(std::vector<TCollectionItem*>& replaced) {
  const TPin self(this);
  TFirstException first;
  for (TCollectionItem* item : replaced) {
    if (!item->IsFreed() && !item->GetCollection()) first.Run([&] { Notify(item, cnExtracting); });
  }
  TellOfEach([&](TCollectionItem* item) { first.Run([&] { Notify(item, cnAdded); }); });
  first.Run([this] { Changed(); });
  first.Rethrow();
}

void TCollection::Update(TCollectionItem* /*item*/) {}

void TCollection::Notify(TCollectionItem* /*item*/, TCollectionNotification /*action*/) {}

void TCollection::FailIndex(int index) const {
  throw EListError(FormatText(SListIndexError, {std::int64_t{index}}));
}

void TCollection::MakeRoom(int count) {
  const auto room = static_cast<std::size_t>(count);
  if (FItems.capacity() < room) FItems.reserve(std::max(room, 2 * FItems.capacity()));
}

void TCollection::StoreItem(TCollectionItem* item) {
  FItems.push_back(item);
  Adopt(item, static_cast<int>(FItems.size()) - 1);
}

void TCollection::DropItem(int index) {
  Disown(ItemAt(index));
  FItems.erase(FItems.begin() + index);
  Renumber(index, GetCount());
}

void TCollection::RelocateItem(int from, int to) {
  const auto first = FItems.begin() + std::min(from, to);
  const auto last = FItems.begin() + std::max(from, to) + 1;
  if (from < to)
    std::rotate(first, first + 1, last);
  else
    std::rotate(first, last - 1, last);
  Renumber(std::min(from, to), std::max(from, to) + 1);
}

void TCollection::Renumber(int first, int last) noexcept {
  for (int i = first; i < last; ++i) FItems[static_cast<std::size_t>(i)]->FIndex = i;
}

void TCollection::Adopt(TCollectionItem* item, int index) noexcept {
  item->FCollection = this;
  item->FIndex = index;
}

void TCollection::Disown(TCollectionItem* item) noexcept {
  item->FCollection = nullptr;
  item->FIndex = -1;
}

void TCollection::InsertItem(TCollectionItem* item) {
  const TPin self(this);
  const TPin pinned(item);
  item->FLeaving = nullptr;
  StoreItem(item);
  item->CollectionChanged();
  TFirstException first;
  first.Run([&] { Notify(item, cnAdded); });
  first.Run([&] { Changed(); });
  first.Rethrow();
}

void TCollection::RemoveItem(TCollectionItem* item) {
  const TPin self(this);
  const TPin pinned(item);
  TFirstException first;
  // A handler that takes out or frees an item on its way out is not told of it again.
  bool here = true;
  if (item->FLeaving != this) {
    item->FLeaving = this;
    first.Run([&] { Notify(item, cnExtracting); });
    // One that joined a list meanwhile, this one perhaps, stays where it is now.
    here = item->FLeaving == this;
    item->FLeaving = nullptr;
  }
  if (here && item->FCollection == this) {
    DropItem(item->GetIndex());
    item->CollectionChanged();
    first.Run([&] { Changed(); });
  }
  first.Rethrow();
}

void TCollection::MoveItem(int from, int to) {
  if (from == to) return;
  const TPin self(this);
  RelocateItem(from, to);
  Changed();
}

}  // namespace fzy
