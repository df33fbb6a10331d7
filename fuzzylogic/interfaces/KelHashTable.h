#pragma once

#include "fuzzylogic/common/CommonMessages.h"
#include "fuzzylogic/common/KelException.h"
#include "fuzzylogic/framework/Component.h"
#include "fuzzylogic/framework/Format.h"
#include "fuzzylogic/framework/Properties.h"
#include "fuzzylogic/framework/UpdateBlock.h"
#include "fuzzylogic/interfaces/KelDictionary.h"

namespace fzy {

/// A keyed table that tells of changes as a whole, holds them back inside update blocks, and gives
/// entries by their position.
///
/// `OnChange` fires after every addition, replacement and removal (also when the key that was to be
/// removed was absent), and once when the outermost update block closes, whether or not anything
/// changed. Inside a block keys and values are not told of at all. `Clear` is a block.
template <class TKey, class TValue>
class TKelHashTable : public TKelDictionary<TKey, TValue> {
 public:
  using TTable = TKelDictionary<TKey, TValue>;
  using TTable::ContainsKey;
  using TTable::GetCount;
  using TTable::TTable;
  /// Releases the entries; nobody is told.
  ~TKelHashTable() override {
    ++FUpdating;
    TTable::Empty();
  }
  TString ClassName() const override { return "TKelHashTable"; }

  /// @throws EListError (`SItemNotFound`) when the key is absent
  TValue Get(const TKey& key) const { return TTable::GetItem(key); }
  /// Adds or replaces; the result is the value before, or none.
  TValue Put(const TKey& key, const TValue& value) {
    TValue previous{};
    TTable::TryGetValue(key, previous);
    TTable::AddOrSetValue(key, value);
    return previous;
  }
  void PutItem(const TKey& key, const TValue& value) { TTable::AddOrSetValue(key, value); }
  bool ContainsKey(const TKey& key, TValue& foundItem) const {
    return TTable::TryGetValue(key, foundItem);
  }
  bool ContainsItem(const TValue& value) const { return TTable::ContainsValue(value); }
  bool IsEmpty() const noexcept { return GetCount() == 0; }

  /// The entry at a position, in the order of the table. A walk from one position to the next costs
  /// one pass over the table altogether, any other jump a search from the start.
  /// @throws EListError (`SListIndexError`) for a position outside the table
  TPair<TKey, TValue> GetPairByIndex(int index) const {
    const int slot = SlotByIndex(index);
    return {TTable::KeyAt(slot), TTable::ValueAt(slot)};
  }
  TValue GetItemByIndex(int index) const { return TTable::ValueAt(SlotByIndex(index)); }
  TKey GetKeyByIndex(int index) const { return TTable::KeyAt(SlotByIndex(index)); }

  /// A form may say how the table is laid out, which is accepted and ignored. Entries are published
  /// by the classes that can make them.
  void DefineProperties(TFiler& filer) override {
    TTable::DefineProperties(filer);
    for (const char* name : {"LoadFactor", "HashType", "Capacity"}) filer.DefineIgnored(name);
  }

  virtual void BeginUpdate() { ++FUpdating; }
  /// Closes one block; without an open block nothing happens.
  virtual void EndUpdate() {
    if (FUpdating > 0 && --FUpdating == 0) Change();
  }
  const TNotifyEvent& GetOnChange() const noexcept { return FOnChange; }
  void SetOnChange(TNotifyEvent value) { FOnChange = std::move(value); }

  /// Removes all entries: one change, no key or value is told of.
  void Clear() override {
    TUpdateBlock block(*this);
    TTable::Clear();
    block.Close();
  }

 protected:
  void DoAdd(std::int32_t hashCode, int index, const TKey& key, const TValue& value) override {
    Act([&] { TTable::DoAdd(hashCode, index, key, value); });
  }
  void DoSetValue(int index, const TValue& value) override {
    Act([&] { TTable::DoSetValue(index, value); });
  }
  /// @throws EGHashtableError (`STableEmpty`) when there is nothing to remove
  TValue DoRemove(const TKey& key, std::int32_t hashCode,
                  TKeyedNotification notification) override {
    if (IsEmpty()) throw EGHashtableError(STableEmpty);
    TValue removed{};
    Act([&] { removed = TTable::DoRemove(key, hashCode, notification); });
    return removed;
  }
  void KeyNotify(const TKey& key, TKeyedNotification action) override {
    FCachedIndex = -1;
    if (FUpdating < 1) TTable::KeyNotify(key, action);
  }
  void ValueNotify(const TValue& value, TKeyedNotification action) override {
    if (FUpdating < 1) TTable::ValueNotify(value, action);
  }
  void SlotsMoved() override { FCachedIndex = -1; }

  /// Tells of a change, unless a block is open.
  virtual void Change() {
    if (FUpdating > 0) return;
    const TPin self(this);
    FireEvent(FOnChange, this);
  }

 private:
  template <class Action>
  void Act(Action&& action) {
    const TPin self(this);
    TFirstException first;
    first.Run(action);
    first.Run([this] { Change(); });
    first.Rethrow();
  }

  int SlotByIndex(int index) const {
    if (index < 0 || index >= GetCount())
      throw EListError(FormatText(SListIndexError, {std::int64_t{index}}));
    if (FCachedIndex < 0 || std::abs(index - FCachedIndex) > 1) {
      FCachedIndex = 0;
      FCachedItemIndex = TTable::DoNext(-1);
    }
    for (; FCachedIndex < index; ++FCachedIndex)
      FCachedItemIndex = TTable::DoNext(FCachedItemIndex);
    if (FCachedIndex > index) {
      do --FCachedItemIndex;
      while (!TTable::IsUsed(FCachedItemIndex));
      --FCachedIndex;
    }
    return FCachedItemIndex;
  }

  TEvent<TNotifyEvent> FOnChange;
  std::int32_t FUpdating = 0;
  mutable std::int32_t FCachedIndex = -1;
  mutable std::int32_t FCachedItemIndex = -1;
};

}  // namespace fzy
