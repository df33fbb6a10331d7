#include "fuzzylogic/framework/detail/LoadTransaction.h"

#include "fuzzylogic/framework/Component.h"
#include "fuzzylogic/framework/FirstException.h"

namespace fzy::detail {

TLoadTransaction::~TLoadTransaction() {
  if (!FIsKept) TakeBack();
}

void TLoadTransaction::Begin(TPersistent& target, const TFiler& description) {
  FPins.emplace_back(&target);
  if (auto* component = dynamic_cast<TComponent*>(&target)) {
    FLoading.push_back(component);
    component->Loading();
  }
  if (description.GetReplaced()) Exchange(description.GetReplaced()());
}

void TLoadTransaction::Set(const TProperty& property, const TPropertyValue& value) {
  FUndo.emplace_back([set = property.Set, old = property.Get()] { set(old); });
  property.Set(value);
}

void TLoadTransaction::Exchange(std::unique_ptr<TStagedEntries> entries) {
  TStagedEntries* staged = FStaged.emplace_back(std::move(entries)).get();
  FUndo.emplace_back([staged] { staged->Exchange(); });
  staged->Exchange();
}

void TLoadTransaction::Keep() {
  FIsKept = true;
  TFirstException first;
  for (const auto& staged : FStaged) first.Run([&] { staged->Tell(); });
  first.Rethrow();
}

void TLoadTransaction::TakeBack() noexcept {
  for (; !FUndo.empty(); FUndo.pop_back()) {
    try {
      FUndo.back()();
    } catch (...) {  // NOLINT(bugprone-empty-catch): of a setter that refuses what it had
    }
  }
  for (TComponent* component : FLoading) component->SetState(csLoading, false);
}

}  // namespace fzy::detail
