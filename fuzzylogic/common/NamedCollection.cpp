#include "fuzzylogic/common/NamedCollection.h"

#include <compare>
#include <utility>

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

void TGCollectionItem::StoreName(TString& name, const TString& value) {
  TString copy = value;
  auto* list = static_cast<TGCollection*>(GetCollection());
  if (!list || !list->FNames) {
    name = std::move(copy);
    return;
  }
  auto entry = list->FNames->extract(this);
  name = std::move(copy);
  list->FNames->insert(std::move(entry));
}

namespace {

/// Shorter names come first: names of derived sets are long and begin alike.
std::strong_ordering CompareNames(std::u16string_view left, std::u16string_view right) {
  const auto order = left.size() <=> right.size();
  return order != std::strong_ordering::equal ? order : left <=> right;
}

}  // namespace

bool TGCollection::TByName::operator()(const TCollectionItem* left,
                                       const TCollectionItem* right) const {
  const auto order = CompareNames(left->GetItemName(), right->GetItemName());
  return order == std::strong_ordering::equal ? left->GetIndex() < right->GetIndex()
                                              : order == std::strong_ordering::less;
}

bool TGCollection::TByName::operator()(const TCollectionItem* left, const TNamePlace& right) const {
  const auto order = CompareNames(left->GetItemName(), right.Name);
  return order == std::strong_ordering::equal ? left->GetIndex() <= right.After
                                              : order == std::strong_ordering::less;
}

int TGCollection::IndexOf(const TString& name, int after) const {
  if (!FNames) {
    if (GetCount() <= ShortList || ++FScans <= FewScans) return Scan(name, after);
    auto names = std::make_unique<TNames>();
    for (int i = 0; i < GetCount(); ++i) names->insert(ItemAt(i));
    FNames = std::move(names);
  }
  const auto found = FNames->lower_bound(TNamePlace{name, after});
  return found != FNames->end() && (*found)->GetItemName() == name ? (*found)->GetIndex() : -1;
}

int TGCollection::Scan(const TString& name, int after) const {
  const int count = GetCount();
  for (int i = after + 1; i < count; ++i) {
    if (ItemAt(i)->GetItemName() == name) return i;
  }
  return -1;
}

void TGCollection::StoreItem(TCollectionItem* item) {
  TCollection::StoreItem(item);
  if (FNames) FNames->insert(item);
}

void TGCollection::DropItem(int index) {
  if (FNames) FNames->erase(ItemAt(index));
  TCollection::DropItem(index);
}

void TGCollection::RelocateItem(int from, int to) {
  TNames::node_type entry;
  if (FNames) entry = FNames->extract(ItemAt(from));
  TCollection::RelocateItem(from, to);
  if (FNames) FNames->insert(std::move(entry));
}

}  // namespace fzy
