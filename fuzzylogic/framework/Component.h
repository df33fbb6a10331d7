#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "fuzzylogic/framework/EnumSet.h"
#include "fuzzylogic/framework/Interface.h"
#include "fuzzylogic/framework/Persistent.h"

namespace fzy {
namespace detail {
class TLoadTransaction;
}
class TComponent;

/// A class of components, as it is given for those that a form makes.
struct TComponentDescriptor {
  const char* Name;
  /// Makes a component that `owner` owns.
  TComponent* (*New)(TComponent* owner);
};
using TComponentClass = const TComponentDescriptor*;

/// Who stands for a component by an interface answers which one.
class IComponentReference : public IInterface {
 public:
  using Base = IInterface;
  static constexpr TGuid Id{
      0x5D1F6A2C, 0x84B3, 0x4E07, {0x9A, 0x61, 0x2B, 0xC8, 0x0D, 0x73, 0xE5, 0x14}};
  /// The component, or nothing when it has gone.
  virtual TComponent* GetComponent() = 0;

 protected:
  ~IComponentReference() = default;
};

/// A plain event: the handler is told who sends it.
using TNotifyEvent = std::function<void(TObject* sender)>;

enum class TOperation : unsigned char { opInsert, opRemove };
using enum TOperation;

/// csDesigning: the component stands in a form designer. csLoading: its stored state is being read.
/// csDestroying: it is on its way out.
enum class TComponentStateFlag : unsigned char { csDesigning, csLoading, csDestroying };
using enum TComponentStateFlag;
using TComponentState = TEnumSet<TComponentStateFlag>;

/// An object that an application places in a form or makes in code. It may be owned by another
/// component, which frees it, and two components may watch each other's end (`FreeNotification`).
///
/// Life: a component lives on the stack, as a member, or on the heap; on the heap it ends by
/// `Free()` (or by its owner), which is also what an event handler calls: a handler must not
/// `delete`. A component with an owner must live on the heap unless it goes before its owner.
class TComponent : public TPersistent {
 public:
  /// @param owner the component that frees this one, or nothing
  explicit TComponent(TComponent* owner = nullptr);
  ~TComponent() override;
  using TPersistent::Free;

  TComponent* GetOwner() const noexcept { return FOwner; }
  int GetComponentCount() const noexcept { return static_cast<int>(FComponents.size()); }
  TComponent* GetComponent(int index) const {
    return FComponents.at(static_cast<std::size_t>(index));
  }
  /// The first owned component of that name, or nothing. Linear.
  TComponent* FindComponent(const TString& name) const;

  const TString& GetName() const noexcept { return FName; }
  void SetName(TString value) { FName = std::move(value); }
  std::intptr_t GetTag() const noexcept { return FTag; }
  void SetTag(std::intptr_t value) noexcept { FTag = value; }

  TComponentState GetComponentState() const noexcept { return FState; }
  bool Is(TComponentStateFlag flag) const noexcept { return FState.Contains(flag); }
  /// For form designers: sets or clears the designing state.
  void SetDesigning(bool value) noexcept { SetState(csDesigning, value); }

  /// Asks that `component` be told by `Notification(this, opRemove)` when this component goes. One
  /// that is on its way out takes no new watchers.
  void FreeNotification(TComponent* component);
  /// Takes that back. What the other has asked of this one in its turn stays, so that each of two
  /// components that link to each other may drop its own link; it is taken back only when there is
  /// nothing else to take back.
  void RemoveFreeNotification(TComponent* component) noexcept;

  /// An interface that stands for the component, for classes that have one. Such interfaces do not
  /// own it.
  virtual HResult QueryInterface(const TGuid& id, void** result);

  /// From a component of the very same class: all its published properties but the name and the
  /// links, as if they were stored and loaded (`LoadForm`). Other sources are refused.
  /// @throws EConvertError; what reading them and `Loaded` raise. Then nothing has changed
  void Assign(TPersistent* source) override;
  void DefineProperties(TFiler& filer) override;

  /// Told when a watched or owned component goes (`opRemove`) or an owned one comes (`opInsert`:
  /// from its base constructor, when it has no class or name yet).
  virtual void Notification(TComponent* component, TOperation operation);

  /// Called when the stored state has been read; ends the loading state.
  virtual void Loaded() { SetState(csLoading, false); }

 protected:
  /// Begins the loading state; `Loaded` ends it.
  void Loading() noexcept { SetState(csLoading, true); }

  /// Tells the watchers that this component goes, once. A class whose watchers or owner must find
  /// it whole calls this first in its destructor.
  void Destroying() noexcept;

  void Leave() override { Destroying(); }

 private:
  friend class detail::TLoadTransaction;
  void SetState(TComponentStateFlag flag, bool value) noexcept;
  void NotifyRemoval(TComponent* watcher) noexcept;
  bool Unwatch(TComponent* watcher) noexcept;

  TComponent* FOwner;
  std::vector<TComponent*> FComponents;
  std::vector<TComponent*> FWatchers;
  std::vector<TComponent*> FWatched;  // those that have this one among their watchers
  TString FName;
  std::intptr_t FTag = 0;
  TComponentState FState;
};

}  // namespace fzy
