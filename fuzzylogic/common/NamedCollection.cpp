#include "fuzzylogic/common/NamedCollection.h"

#include <algorithm>
#include <new>

#include "fuzzylogic/framework/FirstException.h"

namespace fzy {
namespace {

// A short list is scanned as quickly as it is searched, and the names of a longer one are worth
// being put in order only for more than a few look-ups.
constexpr int ShortList = 16;
constexpr int FewScans = 8;

}  // namespace

TGCollectionItem::~TGCollectionItem() {
  if (!FWatchers) return;
  for (TGCollectionItem* watcher : *FWatchers) watcher->Unwatch(this);
}

void TGCollectionItem::MakeRoomForWatcher() {
  if (!FWatchers) FWatchers = std::make_unique<TWatchers>();
  if (FWatchers->size() == FWatchers->capacity()) FWatchers->reserve(2 * FWatchers->size() + 1);
}

void TGCollectionItem::Unwatch(TGCollectionItem* item) noexcept {
  if (FWatchers) std::erase(*FWatchers, item);
}

void TGCollectionItem::FreeNotification(TGCollectionItem* item) {
  if (!item || item == this || IsFreed() || item->IsFreed()) return;
  MakeRoomForWatcher();
  item->MakeRoomForWatcher();
  RemoveFreeNotification(item);
  FWatchers->push_back(item);
  item->FWatchers->push_back(this);
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

TGCollection::TKey TGCollection::KeyOf(const TGCollectionItem& item) {
  return {item.GetItemName(), item.IsPreferred()};
}

/// Shorter names come first: names of derived sets are long and begin alike.
std::strong_ordering TGCollection::Compare(const TKey& left, const TKey& right) {
  auto order = left.Name.size() <=> right.Name.size();
  if (order == std::strong_ordering::equal) order = left.Name <=> right.Name;
  return order == std::strong_ordering::equal ? right.Preferred <=> left.Preferred : order;
}

bool TGCollection::TByKey::operator()(const TGCollectionItem* left,
                                      const TGCollectionItem* right) const {
  const auto order = Compare(KeyOf(*left), KeyOf(*right));
  return order == std::strong_ordering::equal ? left->GetIndex() < right->GetIndex()
                                              : order == std::strong_ordering::less;
}

bool TGCollection::TByKey::operator()(const TGCollectionItem* left, const TKey& right) const {
  return Compare(KeyOf(*left), right) == std::strong_ordering::less;
}

int TGCollection::IndexOf(const TString& name) const {
  const TFound found = Find(name);
  return found.Preferred < 0 || found.Other < 0 ? std::max(found.Preferred, found.Other)
                                                : std::min(found.Preferred, found.Other);
}

int TGCollection::IndexOfPreferred(const TString& name) const {
  const TFound found = Find(name);
  return found.Preferred < 0 ? found.Other : found.Preferred;
}

TGCollection::TFound TGCollection::Find(const TString& name) const {
  if (!FNames) {
    if (GetCount() <= ShortList || ++FScans <= FewScans) return Scan(name);
    OrderNames();
    if (!FNames) return Scan(name);
  }
  const auto first = [&](bool preferred) {
    const TKey key{name, preferred};
    const auto found = FNames->lower_bound(key);
    return found != FNames->end() && Compare(KeyOf(**found), key) == std::strong_ordering::equal
               ? (*found)->GetIndex()
               : -1;
  };
  return {first(true), first(false)};
}

/// Without memory for it there is no order.
void TGCollection::OrderNames() const noexcept {
  try {
    auto names = std::make_unique<TNames>();
    for (int i = 0; i < GetCount(); ++i) names->insert(NamedItemAt(i));
    FNames = std::move(names);
  } catch (const std::bad_alloc&) {  // NOLINT(bugprone-empty-catch)
  }
}

TGCollection::TFound TGCollection::Scan(const TString& name) const {
  TFound found{-1, -1};
  const int count = GetCount();
  for (int i = 0; i < count && found.Preferred < 0; ++i) {
    const TGCollectionItem* item = NamedItemAt(i);
    if (item->GetItemName() != name) continue;
    if (item->IsPreferred())
      found.Preferred = i;
    else if (found.Other < 0)
      found.Other = i;
  }
  return found;
}

void TGCollection::StoreItem(TCollectionItem* item) {
  TCollection::StoreItem(item);
  if (!FNames) return;
  try {
    FNames->insert(static_cast<TGCollectionItem*>(item));
  } catch (const std::bad_alloc&) {
    FNames.reset();  // look-ups make it anew
  }
}

void TGCollection::DropItem(int index) {
  if (FNames) FNames->erase(NamedItemAt(index));
  TCollection::DropItem(index);
}

void TGCollection::ExchangeItems(std::vector<TCollectionItem*>& items) noexcept {
  FNames.reset();
  TCollection::ExchangeItems(items);
}

void TGCollection::RelocateItem(int from, int to) {
  TNames::node_type entry;
  if (FNames) entry = FNames->extract(NamedItemAt(from));
  TCollection::RelocateItem(from, to);
  if (FNames) FNames->insert(std::move(entry));
}

}  // namespace fzy
