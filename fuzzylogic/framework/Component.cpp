#include "fuzzylogic/framework/Component.h"

#include <algorithm>
#include <typeinfo>

#include "fuzzylogic/framework/Properties.h"
#include "fuzzylogic/framework/detail/ObjectCopy.h"

namespace fzy {

TComponent::TComponent(TComponent* owner) : FOwner(owner) {
  if (!FOwner) return;
  FOwner->FComponents.push_back(this);
  if (FOwner->Is(csDesigning)) FState.Include(csDesigning);
  try {
    FOwner->Notification(this, opInsert);
  } catch (...) {
    std::erase(FOwner->FComponents, this);
    throw;
  }
}

TComponent::~TComponent() {
  Destroying();
  while (!FComponents.empty()) {
    TComponent* component = FComponents.back();
    FComponents.pop_back();
    component->FOwner = nullptr;
    // One on its way out may have brought its owner's end about; it goes on by itself.
    if (!component->Is(csDestroying)) component->Free();
  }
}

TComponent* TComponent::FindComponent(const TString& name) const {
  const auto found =
      std::find_if(FComponents.begin(), FComponents.end(),
                   [&](const TComponent* component) { return component->FName == name; });
  return found == FComponents.end() ? nullptr : *found;
}

HResult TComponent::QueryInterface(const TGuid& /*id*/, void** result) {
  *result = nullptr;
  return E_NoInterface;
}

void TComponent::Assign(TPersistent* source) {
  auto* component = dynamic_cast<TComponent*>(source);
  if (!component || typeid(*component) != typeid(*this)) return TPersistent::Assign(source);
  if (component != this) detail::CopyComponent(*component, *this);
}

void TComponent::DefineProperties(TFiler& filer) {
  TPersistent::DefineProperties(filer);
  filer.DefineField("Name", FName, TString()).IsInHeader = true;
  filer.DefineField("Tag", FTag, 0);
}

void TComponent::FreeNotification(TComponent* component) {
  if (!component || component == this) return;
  if (Is(csDestroying) || component->Is(csDestroying)) return;
  if (std::find(FWatchers.begin(), FWatchers.end(), component) != FWatchers.end()) return;
  FWatchers.push_back(component);
  try {
    component->FWatched.push_back(this);
  } catch (...) {
    FWatchers.pop_back();
    throw;
  }
}

bool TComponent::Unwatch(TComponent* watcher) noexcept {
  std::erase(watcher->FWatched, this);
  return std::erase(FWatchers, watcher) > 0;
}

void TComponent::RemoveFreeNotification(TComponent* component) noexcept {
  if (component && !Unwatch(component)) component->Unwatch(this);
}

void TComponent::Notification(TComponent* /*component*/, TOperation /*operation*/) {}

void TComponent::SetState(TComponentStateFlag flag, bool value) noexcept {
  if (value)
    FState.Include(flag);
  else
    FState.Exclude(flag);
}

void TComponent::NotifyRemoval(TComponent* watcher) noexcept {
  try {
    watcher->Notification(this, opRemove);
  } catch (...) {  // NOLINT(bugprone-empty-catch): a component on its way out cannot stop
  }
}

void TComponent::Destroying() noexcept {
  if (Is(csDestroying)) return;
  FState.Include(csDestroying);
  while (!FWatchers.empty() || !FWatched.empty()) {
    TComponent* other = (FWatchers.empty() ? FWatched : FWatchers).back();
    Unwatch(other);
    other->Unwatch(this);
    NotifyRemoval(other);
  }
  if (FOwner) {
    // The last ones made are often the first to go.
    auto& components = FOwner->FComponents;
    const auto found = std::find(components.rbegin(), components.rend(), this);
    if (found != components.rend()) components.erase(found.base() - 1);
    NotifyRemoval(FOwner);
    FOwner = nullptr;
  }
}

}  // namespace fzy
