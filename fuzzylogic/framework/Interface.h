#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <type_traits>
#include <utility>

namespace fzy {

/// Identifier of an interface, in the usual notation's order: {d1-d2-d3-d4...}.
struct TGuid {
  std::uint32_t D1;
  std::uint16_t D2;
  std::uint16_t D3;
  std::array<std::uint8_t, 8> D4;

  friend constexpr bool operator==(const TGuid&, const TGuid&) = default;
};

/// What `QueryInterface` answers.
using HResult = std::uint32_t;
inline constexpr HResult S_Ok = 0;
inline constexpr HResult E_NoInterface = 0x80004002;

/// Base of all counted interfaces. An object lives as long as references to it are held; it starts
/// with a count of 0 and whoever makes it holds it in a `Ref` at once. Counts change atomically.
class IInterface {
 public:
  static constexpr TGuid Id{0x00000000, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

  IInterface() = default;
  IInterface(const IInterface&) = delete;
  IInterface& operator=(const IInterface&) = delete;

  /// Answers `S_Ok` and a counted pointer to the interface `id` in `*result`, or `E_NoInterface`
  /// and nothing. Use `Query` rather than this.
  virtual HResult QueryInterface(const TGuid& id, void** result) = 0;
  virtual std::int32_t AddRef() noexcept = 0;
  virtual std::int32_t Release() noexcept = 0;

 protected:
  ~IInterface() = default;
};

/// A counted reference. Assignment builds a temporary and swaps, so that assigning a reference to
/// itself and releases that come back to the same reference are safe.
template <class I>
class Ref {
 public:
  Ref() = default;
  Ref(std::nullptr_t) noexcept {}
  Ref(I* object) noexcept : FObject(object) {
    if (FObject) FObject->AddRef();
  }
  Ref(const Ref& other) noexcept : Ref(other.FObject) {}
  Ref(Ref&& other) noexcept : FObject(std::exchange(other.FObject, nullptr)) {}
  template <class Other>
  requires std::is_convertible_v<Other*, I*> Ref(Ref<Other>&& other)
  noexcept : FObject(other.Detach()) {}
  template <class Other>
  requires std::is_convertible_v<Other*, I*> Ref(const Ref<Other>& other)
  noexcept : Ref(static_cast<I*>(other.Get())) {}
  Ref& operator=(Ref other) noexcept {
    std::swap(FObject, other.FObject);
    return *this;
  }
  ~Ref() {
    if (FObject) FObject->Release();
  }

  /// Takes over a pointer that is counted already.
  static Ref Attach(I* counted) noexcept {
    Ref result;
    result.FObject = counted;
    return result;
  }

  /// Gives the counted pointer up.
  I* Detach() noexcept { return std::exchange(FObject, nullptr); }

  I* Get() const noexcept { return FObject; }
  I* operator->() const noexcept { return FObject; }
  I& operator*() const noexcept { return *FObject; }
  explicit operator bool() const noexcept { return FObject != nullptr; }
  friend bool operator==(const Ref& left, const Ref& right) noexcept = default;
  friend bool operator==(const Ref& left, std::nullptr_t) noexcept { return !left.FObject; }
  /// Without counting the object, unlike a comparison with a reference made for it.
  friend bool operator==(const Ref& left, const I* right) noexcept { return left.FObject == right; }

 private:
  I* FObject = nullptr;
};

/// The interface `I` of an object, or nothing when it has none (or there is no object).
template <class I>
Ref<I> Query(IInterface* object) {
  void* result = nullptr;
  if (!object || object->QueryInterface(I::Id, &result) != S_Ok) return nullptr;
  return Ref<I>::Attach(static_cast<I*>(result));
}

/// The first of an object's interfaces that has the identifier, or nothing.
template <class... I>
void* FindInterface(const TGuid& id, I*... faces) noexcept {
  void* found = nullptr;
  ((!found && id == I::Id ? void(found = faces) : void()), ...);
  return found;
}

/// An object's own interface, handed to others for the time of a call without being counted: an
/// object that looks at its count whenever a reference is dropped hands itself out this way. Who
/// keeps it copies the reference.
template <class I>
class TBorrowed {
 public:
  explicit TBorrowed(I* object) noexcept : FRef(Ref<I>::Attach(object)) {}
  TBorrowed(const TBorrowed&) = delete;
  TBorrowed& operator=(const TBorrowed&) = delete;
  ~TBorrowed() { FRef.Detach(); }
  operator const Ref<I>&() const noexcept { return FRef; }

 private:
  Ref<I> FRef;
};

/// Implements `IInterface` for a class whose interfaces form one chain, from `I` down to
/// `IInterface`; each interface names its parent as `Base`.
template <class I>
class TInterfaced : public I {
 public:
  HResult QueryInterface(const TGuid& id, void** result) override {
    *result = Find(static_cast<I*>(this), id);
    if (!*result) return E_NoInterface;
    AddRef();
    return S_Ok;
  }
  std::int32_t AddRef() noexcept override { return ++FRefCount; }
  std::int32_t Release() noexcept override {
    const std::int32_t count = --FRefCount;
    if (count == 0) delete this;
    return count;
  }
  /// Whether one reference alone keeps the object.
  bool IsLastReference() const noexcept { return FRefCount == 1; }

 protected:
  TInterfaced() = default;
  virtual ~TInterfaced() = default;

 private:
  template <class Interface>
  static void* Find(Interface* self, const TGuid& id) {
    if (id == Interface::Id) return self;
    if constexpr (std::is_same_v<Interface, IInterface>)
      return nullptr;
    else
      return Find(static_cast<typename Interface::Base*>(self), id);
  }

  std::atomic<std::int32_t> FRefCount{0};
};

}  // namespace fzy
