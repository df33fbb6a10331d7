#include "fuzzylogic/common/NamedCollection.h"

#include "fuzzylogic/framework/FirstException.h"

namespace fzy {

TGCollectionItem::~TGCollectionItem() {
  if (!FWatchers) return;
  for (TGCollectionItem* watcher : *FWatchers) watcher->Unwatch(this);
}

void TGCollectionItem::Watch(TGCollectionItem* item) {
  if (!FWatchers) FWatchers = std::make_unique<TWatchers>();
  FWatchers->push_back(item);
}

void TGCollectionItem::Unwatch(TGCollectionItem* item) noexcept {
  if (FWatchers) std::erase(*FWatchers, item);
}

void TGCollectionItem::FreeNotification(TGCollectionItem* item) {
  if (!item || item == this || IsFreed() || item->IsFreed()) return;
  RemoveFreeNotification(item);
  Watch(item);
  item->Watch(this);
}

void TGCollectionItem::RemoveFreeNotification(TGCollectionItem* item) noexcept {
  if (!item) return;
  Unwatch(item);
  item->Unwatch(this);
}

void TGCollectionItem::Notification(TGCollectionItem* /*item*/, TOperation /*operation*/) {}

void TGCollectionItem::Leave() {
  TFirstException first;
  first.Run([this] { TCollectionItem::Leave(); });
  while (FWatchers && !FWatchers->empty()) {
    TGCollectionItem* watcher = FWatchers->back();
    RemoveFreeNotification(watcher);
    first.Run([&] { watcher->Notification(this, opRemove); });
  }
  first.Rethrow();
}

int TGCollection::IndexOf(const TString& name) const {
  const int count = GetCount();
  for (int i = 0; i < count; ++i) {
    if (ItemAt(i)->GetItemName() == name) return i;
  }
  return -1;
}

}  // namespace fzy
