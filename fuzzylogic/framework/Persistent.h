#pragma once

#include <cstdint>
#include <utility>

#include "fuzzylogic/framework/Text.h"

namespace fzy {

class TFiler;

/// Root of the library's objects.
class TObject {
 public:
  TObject() = default;
  TObject(const TObject&) = delete;
  TObject& operator=(const TObject&) = delete;
  virtual ~TObject() = default;

  /// The name of the object's class, as messages show it.
  virtual TString ClassName() const = 0;
  /// A text for people; the class name unless a class says otherwise.
  virtual TString ToString() const { return ClassName(); }
};

/// An object whose content can be assigned from another, and whose life can be prolonged while one
/// of its operations runs.
///
/// Life: `Free()` ends it. While the object is still whole it leaves its container and tells those
/// who must know; then its memory goes. An operation that may call an event handler pins its object
/// (`TPin`), so that a handler may free any object, the one it was called for included: the object
/// is extracted and told about at once, and only its memory waits for the last pin.
class TPersistent : public TObject {
 public:
  /// Takes over the content of `source`. A class takes what it knows and hands other sources to its
  /// base; the root asks the source (`AssignTo`).
  /// @throws EConvertError when neither side knows the other, or `source` is nothing
  virtual void Assign(TPersistent* source);

  /// Hands this object's content to `dest`; the root refuses.
  /// @throws EConvertError
  virtual void AssignTo(TPersistent* dest);

  /// Names the object's published properties to `filer`; a class hands on to its base first. None,
  /// unless a class says otherwise.
  virtual void DefineProperties(TFiler& filer);

  /// Whether `Free()` was called: the object has left its container and only waits for its memory
  /// to be given back.
  bool IsFreed() const noexcept { return FLife == TLife::Freed; }

 protected:
  TPersistent() = default;
  ~TPersistent() override = default;

  /// Ends the object; a second call does nothing. An exception of a handler is passed on after the
  /// object has left completely.
  void Free();

  /// Called once by `Free()`, while the object is whole: leave the container and tell.
  virtual void Leave() {}

  /// For counted objects whose last reference has gone: ends the object at once, or when its last
  /// pin goes, unless somebody has picked it up again by then (`IsUnheld`). What handlers raise is
  /// dropped: who drops a reference expects no exception.
  void FreeUnheld() noexcept;
  virtual bool IsUnheld() const noexcept { return true; }

 private:
  friend class TPin;
  friend class TCollection;
  void Unpin() noexcept;

  enum class TLife : std::uint8_t { Alive, Unheld, Freed };

  std::uint32_t FPins = 0;
  TLife FLife = TLife::Alive;
};

/// Keeps an object's memory while it stands: the object may be freed meanwhile (`IsFreed()`), but
/// its memory is given back only when the last pin goes. Costs one increment and one decrement.
class TPin {
 public:
  TPin() = default;
  explicit TPin(const TPersistent* object) noexcept : FObject(const_cast<TPersistent*>(object)) {
    if (FObject) ++FObject->FPins;
  }
  TPin(TPin&& other) noexcept : FObject(std::exchange(other.FObject, nullptr)) {}
  TPin& operator=(TPin&& other) noexcept {
    std::swap(FObject, other.FObject);
    return *this;
  }
  ~TPin() {
    if (FObject) FObject->Unpin();
  }

 private:
  TPersistent* FObject = nullptr;
};

/// The handle of an intermediate item: frees it when the handle goes out of scope, and is empty
/// when the item went earlier with its container. `TOwned<TFuzzySet> sum(a->Union(b));`
template <class Item>
class TOwned {
 public:
  TOwned() = default;
  explicit TOwned(Item* item) noexcept : FItem(item), FPin(item) {}
  TOwned(TOwned&& other) noexcept
      : FItem(std::exchange(other.FItem, nullptr)), FPin(std::move(other.FPin)) {}
  TOwned& operator=(TOwned&& other) noexcept {
    std::swap(FItem, other.FItem);
    std::swap(FPin, other.FPin);
    return *this;
  }
  ~TOwned() { Reset(); }

  /// The item, or nothing when there is none or it was freed.
  Item* Get() const noexcept { return FItem && !FItem->IsFreed() ? FItem : nullptr; }
  Item* operator->() const noexcept { return FItem; }
  Item& operator*() const noexcept { return *FItem; }
  explicit operator bool() const noexcept { return Get() != nullptr; }

  /// Gives the item up without freeing it and returns it (nothing when it was freed).
  Item* Release() noexcept {
    Item* item = Get();
    FItem = nullptr;
    FPin = TPin();
    return item;
  }

  /// Frees the item now. What a handler throws meanwhile is dropped, as in a destructor.
  void Reset() noexcept {
    if (Item* item = Get()) {
      try {
        item->Free();
      } catch (...) {  // NOLINT(bugprone-empty-catch): a destructor must not throw
      }
    }
    Release();
  }

 private:
  Item* FItem = nullptr;
  TPin FPin;
};

}  // namespace fzy
