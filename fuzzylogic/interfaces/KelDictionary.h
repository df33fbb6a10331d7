#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <concepts>
#include <memory>
#include <optional>
#include <utility>

#include "fuzzylogic/common/HelperFunctions.h"
#include "fuzzylogic/framework/Event.h"
#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/framework/FirstException.h"
#include "fuzzylogic/framework/Messages.h"
#include "fuzzylogic/interfaces/KelEnumerable.h"
#include "fuzzylogic/interfaces/KeyComparer.h"

namespace fzy {

/// What a table tells of a key or a value.
enum class TKeyedNotification : unsigned char { knAdded, knRemoved, knExtracted };
using enum TKeyedNotification;

template <class TKey, class TValue>
struct TPair {
  TKey Key;
  TValue Value;
};

/// A table of values found by key: open addressing with linear probing, at most three quarters
/// full, and no marks left behind by removals. Adding, looking up and removing take constant time
/// on average.
///
/// The capacity is 0 or a power of two of at least 4 and at most 268,435,456: what would take more
/// is refused with an EArgumentOutOfRangeException before memory is asked for. Entries are visited
/// in the order of their slots, which follows from the hashes and the capacity: it is the same in
/// every run, but not the order of addition, and growing or removing may change it. When keys that
/// were made to collide drive one search or removal through a thousand slots, the addition or
/// removal at hand, or the next one, gives the hashes a random seed, once; from then on the order
/// is another in each run.
///
/// Handlers may change the table, or throw: the change that they were told of stays made, and what
/// else had to be told is told. One thread at a time; only the count may be read by others.
template <class TKey, class TValue>
class TKelDictionary : public TKelEnumerable<TPair<TKey, TValue>> {
 public:
  using TEntry = TPair<TKey, TValue>;
  using TComparer = std::shared_ptr<const TKeyComparer<TKey>>;
  using TKeyNotifyEvent =
      std::function<void(TObject* sender, const TKey& item, TKeyedNotification action)>;
  using TValueNotifyEvent =
      std::function<void(TObject* sender, const TValue& item, TKeyedNotification action)>;

  /// Without a comparer keys are compared by `==` (texts: case-sensitively).
  /// @throws EArgumentOutOfRangeException for a negative capacity, or one above the largest
  explicit TKelDictionary(int capacity = 0, TComparer comparer = nullptr)
      : FComparer(comparer ? std::move(comparer) : DefaultComparer()) {
    SetCapacity(capacity);
  }
  explicit TKelDictionary(TComparer comparer) : TKelDictionary(0, std::move(comparer)) {}
  /// With the entries of a sequence; of a key that repeats the last one stays. Nobody is told.
  explicit TKelDictionary(const TKelEnumerable<TEntry>& collection, TComparer comparer = nullptr)
      : TKelDictionary(0, std::move(comparer)) {
    for (const TEntry& entry : collection) TKelDictionary::AddOrSetValue(entry.Key, entry.Value);
  }
  /// Releases the entries while the table is whole; nobody is told.
  ~TKelDictionary() override {
    FOnKeyNotify = nullptr;
    FOnValueNotify = nullptr;
    Empty();
  }
  TString ClassName() const override { return "TKelDictionary"; }

  /// @throws EListError (`SDuplicateItem`) when the key is there already
  void Add(const TKey& key, const TValue& value) {
    GrowIfFull();
    const TPlace place = Find(key, HashCodeOf(key));
    if (place.IsFound) throw EListError(SDuplicateItem);
    Enter(place, key, value);
  }
  /// Adds the value, or replaces the one under the key.
  void AddOrSetValue(const TKey& key, const TValue& value) {
    TPlace place = Find(key, HashCodeOf(key));
    if (place.IsFound) return DoSetValue(place.Slot, value);
    if (GrowIfFull()) place = Find(key, place.HashCode);
    Enter(place, key, value);
  }
  /// @throws EListError (`SItemNotFound`) when the key is absent, as does `SetItem`
  TValue GetItem(const TKey& key) const { return FItems[Require(key)].Value; }
  /// Replaces the value and tells of both values; descendants' `DoSetValue` is passed by.
  void SetItem(const TKey& key, const TValue& value) {
    RequireValue(value);
    TKelDictionary::DoSetValue(static_cast<int>(Require(key)), value);
  }
  /// The value under the key; false, and none, when the key is absent.
  bool TryGetValue(const TKey& key, TValue& value) const {
    const TPlace place = Find(key);
    value = place.IsFound ? FItems[Index(place.Slot)].Value : TValue();
    return place.IsFound;
  }
  bool ContainsKey(const TKey& key) const { return Find(key).IsFound; }
  /// Linear.
  bool ContainsValue(const TValue& value) const {
    for (const TSlot& slot : FItems) {
      if (slot.IsUsed() && slot.Value == value) return true;
    }
    return false;
  }
  /// Removes the entry and returns its value; none when the key is absent.
  TValue Remove(const TKey& key) { return DoRemove(key, HashCodeOf(key), knRemoved); }
  /// The same, told as an extraction, with the key; an absent key tells nobody.
  TEntry ExtractPair(const TKey& key) {
    const std::int32_t hashCode = HashCodeOf(key);
    if (!Find(key, hashCode).IsFound) return {key, TValue()};
    const TKey extracted = key;
    return {extracted, DoRemove(extracted, hashCode, knExtracted)};
  }
  /// Removes all entries and gives the memory back; then each key and value is told of, in order.
  virtual void Clear() {
    const TPin self(this);
    const std::vector<TSlot> cleared = TakeAll();
    TFirstException first;
    for (const TSlot& slot : cleared) {
      if (!slot.IsUsed()) continue;
      first.Run([&] { KeyNotify(slot.Key, knRemoved); });
      first.Run([&] { ValueNotify(slot.Value, knRemoved); });
    }
    first.Rethrow();
  }
  /// Gives up the room that one entry more would not need.
  void TrimExcess() { SetCapacity(GetCount() + 1); }

  /// The number of entries; any thread may ask.
  int GetCount() const noexcept { return FCount.load(std::memory_order_relaxed); }
  int GetCapacity() const noexcept { return static_cast<int>(FItems.size()); }
  /// @throws EArgumentOutOfRangeException for less than the number of entries, or more than the
  ///   largest capacity
  void SetCapacity(int value) {
    if (value < GetCount()) throw EArgumentOutOfRangeException(SArgumentOutOfRange);
    std::size_t capacity = value == 0 ? 0 : LeastCapacity;
    while (capacity < static_cast<std::size_t>(value)) capacity *= 2;
    Rehash(capacity);
  }

  /// The keys, and the values, as sequences of their own that stay with the table.
  const TKelEnumerable<TKey>& GetKeys() const { return FKeyCollection; }
  const TKelEnumerable<TValue>& GetValues() const { return FValueCollection; }

  const TKeyNotifyEvent& GetOnKeyNotify() const noexcept { return FOnKeyNotify; }
  void SetOnKeyNotify(TKeyNotifyEvent value) { FOnKeyNotify = std::move(value); }
  const TValueNotifyEvent& GetOnValueNotify() const noexcept { return FOnValueNotify; }
  void SetOnValueNotify(TValueNotifyEvent value) { FOnValueNotify = std::move(value); }

  /// From a table of the same types: `Clear`, then `Add` of each entry in the source's order; an
  /// entry for which there is no memory is left out. Other sources are refused.
  void Assign(TPersistent* source) override {
    const auto* table = dynamic_cast<const TKelDictionary*>(source);
    if (!table) return TPersistent::Assign(source);
    if (table == this) return;
    const TPin self(this);
    const std::vector<TEntry> entries = table->ToArray();
    TFirstException first;
    first.Run([this] { Clear(); });
    for (const TEntry& entry : entries) first.Run([&] { Add(entry.Key, entry.Value); });
    first.Rethrow();
  }

 protected:
  int DoNext(int position) const override {
    for (std::size_t i = Index(position + 1); i < FItems.size(); ++i) {
      if (FItems[i].IsUsed()) return static_cast<int>(i);
    }
    return -1;
  }
  TEntry DoGet(int position) const override {
    return {FItems[Index(position)].Key, FItems[Index(position)].Value};
  }

  /// Takes the memory that the next entry under `key` needs, but for that of more slots. The two
  /// keys named last are kept: an operation may rename an entry twice.
  void PrepareEntry(const TKey& key) {
    if (FindPrepared(key)) return;
    TKeyCopies copies{key, key};
    FPrepared[1] = std::exchange(FPrepared[0], std::move(copies));
  }
  /// Takes the memory for an entry more, unless there is one under the key.
  void PrepareToAdd(const TKey& key) {
    PrepareEntry(key);
    if (!Find(key).IsFound) GrowIfFull();
  }

  /// Fills a free slot.
  virtual void DoAdd(std::int32_t hashCode, int index, const TKey& key, const TValue& value) {
    TKeyCopies keys = CopiesOf(key);
    const TEntry added{std::move(keys.Told), value};
    TSlot stored{hashCode, std::move(keys.Stored), value};
    FItems[Index(index)] = std::move(stored);
    SetCount(GetCount() + 1);
    Tell(added.Key, added.Value, knAdded);
  }
  virtual void DoSetValue(int index, const TValue& value) {
    const TPin self(this);
    const TValue added = value;
    TValue stored = value;
    const TValue removed = std::exchange(FItems[Index(index)].Value, std::move(stored));
    TFirstException first;
    first.Run([&] { ValueNotify(removed, knRemoved); });
    first.Run([&] { ValueNotify(added, knAdded); });
    first.Rethrow();
  }
  /// Takes the entry out, so that no later search breaks, and returns its value; an absent key
  /// changes nothing.
  virtual TValue DoRemove(const TKey& key, std::int32_t hashCode, TKeyedNotification notification) {
    const TPlace place = Find(key, Reseed() ? HashCodeOf(key) : hashCode);
    if (!place.IsFound) return TValue();
    TEntry removed = TakeOut(Index(place.Slot));
    SetCount(GetCount() - 1);
    Tell(removed.Key, removed.Value, notification);
    return std::move(removed.Value);
  }
  virtual void KeyNotify(const TKey& key, TKeyedNotification action) {
    FireEvent(FOnKeyNotify, this, key, action);
  }
  virtual void ValueNotify(const TValue& value, TKeyedNotification action) {
    FireEvent(FOnValueNotify, this, value, action);
  }
  /// Raises an error for a value that the table does not take.
  virtual void RequireValue(const TValue& /*value*/) const {}
  /// Called when entries have moved to other slots although none came or went.
  virtual void SlotsMoved() {}

  /// The value in a slot in use, and the key.
  const TValue& ValueAt(int slot) const { return FItems[Index(slot)].Value; }
  const TKey& KeyAt(int slot) const { return FItems[Index(slot)].Key; }
  bool IsUsed(int slot) const { return FItems[Index(slot)].IsUsed(); }
  /// The entries of two tables change places, their order included; nobody is told.
  void Exchange(TKelDictionary& other) noexcept {
    const int count = GetCount();
    SetCount(other.GetCount());
    other.SetCount(count);
    std::swap(FComparer, other.FComparer);
    std::swap(FGrowThreshold, other.FGrowThreshold);
    std::swap(FItems, other.FItems);
    std::swap(FSeed, other.FSeed);
    std::swap(FIsAttacked, other.FIsAttacked);
    SlotsMoved();
    other.SlotsMoved();
  }
  /// Releases all entries, also those that come meanwhile, without a word.
  void Empty() noexcept {
    while (!FItems.empty()) TakeAll();
  }

 private:
  static constexpr std::size_t LeastCapacity = 4;
  static constexpr std::size_t MostCapacity = std::size_t{1} << 28;
  static constexpr int LongestProbe = 1024;  // chance makes no run of half that length

  struct TSlot {
    std::int32_t HashCode = -1;  // of an empty slot
    TKey Key{};
    TValue Value{};
    bool IsUsed() const noexcept { return HashCode >= 0; }
  };

  /// Of the key of a new entry: one is told of, as handlers may remove the entry.
  struct TKeyCopies {
    TKey Told;
    TKey Stored;
  };

  /// Where a key is, or where it would be added.
  struct TPlace {
    std::int32_t HashCode;
    int Slot;
    bool IsFound;
  };

  /// The keys or the values as a sequence of their own.
  template <class T, T TSlot::*Part>
  class TView final : public TKelEnumerable<T> {
   public:
    explicit TView(const TKelDictionary* table) noexcept : FTable(table) {}
    TString ClassName() const override { return "TKelDictionary view"; }

   protected:
    int DoNext(int position) const override { return FTable->DoNext(position); }
    T DoGet(int position) const override { return FTable->FItems[Index(position)].*Part; }

   private:
    const TKelDictionary* FTable;
  };
  using TKeyView = TView<TKey, &TSlot::Key>;
  using TValueView = TView<TValue, &TSlot::Value>;

  static std::size_t Index(int slot) noexcept { return static_cast<std::size_t>(slot); }
  static const TComparer& DefaultComparer() {
    static const TComparer comparer = std::make_shared<const TKeyComparer<TKey>>();
    return comparer;
  }
  void SetCount(int value) noexcept { FCount.store(value, std::memory_order_relaxed); }
  std::size_t Mask() const noexcept { return FItems.size() - 1; }
  /// Never negative, so that no key is taken for an empty slot.
  std::int32_t HashCodeOf(const TKey& key) const {
    const auto code = static_cast<std::uint32_t>(FComparer->GetHashCode(key, FSeed));
    return static_cast<std::int32_t>(((code & 0x7FFFFFFFU) + 1) & 0x7FFFFFFFU);
  }

  TPlace Find(const TKey& key) const {
    return FItems.empty() ? TPlace{0, 0, false} : Find(key, HashCodeOf(key));
  }
  TPlace Find(const TKey& key, std::int32_t hashCode) const {
    if (FItems.empty()) return {hashCode, 0, false};
    int probes = 0;
    bool isFound = false;
    std::size_t i = Index(hashCode) & Mask();
    for (; FItems[i].IsUsed() && probes < GetCapacity(); i = (i + 1) & Mask(), ++probes) {
      isFound = FItems[i].HashCode == hashCode && FComparer->Equals(FItems[i].Key, key);
      if (isFound) break;
    }
    NoteProbes(probes);
    return {hashCode, static_cast<int>(i), isFound};
  }
  /// In a table that was trimmed to less room than it takes itself long ways are no attack.
  void NoteProbes(int probes) const noexcept {
    if (probes >= LongestProbe && GetCount() <= FGrowThreshold) FIsAttacked = true;
  }
  std::size_t Require(const TKey& key) const {
    const TPlace place = Find(key);
    if (!place.IsFound) throw EListError(SItemNotFound);
    return Index(place.Slot);
  }
  bool GrowIfFull() {
    if (GetCount() < FGrowThreshold) return false;
    Rehash(std::max(LeastCapacity, FItems.size() * 2));
    return true;
  }
  std::optional<TKeyCopies>* FindPrepared(const TKey& key) {
    if constexpr (std::equality_comparable<TKey>) {
      for (std::optional<TKeyCopies>& prepared : FPrepared) {
        if (prepared && prepared->Told == key) return &prepared;
      }
    }
    return nullptr;
  }
  TKeyCopies CopiesOf(const TKey& key) {
    if (std::optional<TKeyCopies>* prepared = FindPrepared(key))
      return *std::exchange(*prepared, std::nullopt);
    return {key, key};
  }
  void Enter(TPlace place, const TKey& key, const TValue& value) {
    if (Reseed()) place = Find(key);
    DoAdd(place.HashCode, place.Slot, key, value);
  }
  /// Gives the hashes a random seed when the table is attacked and they have none.
  bool Reseed() {
    if (!FIsAttacked || FSeed != THashSeed{}) return false;
    const THashSeed seed = RandomHashSeed();
    std::vector<TSlot> items(FItems.size());
    FSeed = seed;
    for (TSlot& slot : FItems) {
      if (slot.IsUsed()) slot.HashCode = HashCodeOf(slot.Key);
    }
    MoveTo(std::move(items));
    return true;
  }

  void Rehash(std::size_t capacity) {
    if (capacity > MostCapacity) throw EArgumentOutOfRangeException(SArgumentOutOfRange);
    MoveTo(std::vector<TSlot>(capacity));
    FGrowThreshold = static_cast<int>(capacity / 2 + capacity / 4);
  }
  /// Puts every entry into another array, in the order of the slots.
  void MoveTo(std::vector<TSlot> items) {
    FItems.swap(items);
    for (TSlot& slot : items) {
      if (!slot.IsUsed()) continue;
      std::size_t i = Index(slot.HashCode) & Mask();
      while (FItems[i].IsUsed()) i = (i + 1) & Mask();
      FItems[i] = std::move(slot);
    }
    SlotsMoved();
  }

  std::vector<TSlot> TakeAll() noexcept {
    SetCount(0);
    FGrowThreshold = 0;
    return std::exchange(FItems, {});
  }
  /// Empties a slot, and moves back those behind it that were displaced by it.
  TEntry TakeOut(std::size_t gap) {
    TEntry taken{std::move(FItems[gap].Key), std::move(FItems[gap].Value)};
    FItems[gap].HashCode = -1;
    int probes = 0;
    for (std::size_t i = (gap + 1) & Mask(); FItems[i].IsUsed(); i = (i + 1) & Mask(), ++probes) {
      const std::size_t home = Index(FItems[i].HashCode) & Mask();
      if (InCircularRange(static_cast<int>(gap), static_cast<int>(home), static_cast<int>(i)))
        continue;
      FItems[gap] = std::move(FItems[i]);
      FItems[i].HashCode = -1;
      gap = i;
    }
    FItems[gap] = TSlot();
    NoteProbes(probes);
    return taken;
  }

  void Tell(const TKey& key, const TValue& value, TKeyedNotification action) {
    const TPin self(this);
    TFirstException first;
    first.Run([&] { KeyNotify(key, action); });
    first.Run([&] { ValueNotify(value, action); });
    first.Rethrow();
  }

  std::atomic<std::int32_t> FCount{0};
  TComparer FComparer;
  std::int32_t FGrowThreshold = 0;
  std::vector<TSlot> FItems;
  TEvent<TKeyNotifyEvent> FOnKeyNotify;
  TEvent<TValueNotifyEvent> FOnValueNotify;
  const TKeyView FKeyCollection{this};
  const TValueView FValueCollection{this};
  std::array<std::optional<TKeyCopies>, 2> FPrepared;
  THashSeed FSeed{};
  mutable bool FIsAttacked = false;
};

}  // namespace fzy
