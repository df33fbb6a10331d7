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
  TPropertyValue old = property.Get();
  if (const auto* link = std::get_if<TComponent*>(&old)) FPins.emplace_back(*link);
  (property.IsLate ? FLateValues : FValues)
      .emplace_back([set = property.Set, old = std::move(old)] {
        // A handler may have freed it by the time that all is taken back.
        const auto* link = std::get_if<TComponent*>(&old);
        const bool hasGone = link && *link && (*link)->IsFreed();
        set(hasGone ? TPropertyValue(static_cast<TComponent*>(nullptr)) : old);
      });
  property.Set(value);
}

void TLoadTransaction::Exchange(std::unique_ptr<TStagedEntries> entries) {
  TStagedEntries* staged = FStaged.emplace_back(std::move(entries)).get();
  FExchanges.emplace_back([staged] { staged->Exchange(); });
  staged->Exchange();
}

void TLoadTransaction::Keep() {
  FIsKept = true;
  TFirstException first;
  for (const auto& staged : FStaged) first.Run([&] { staged->Tell(); });
  first.Rethrow();
}

void TLoadTransaction::Run(TUndo& undo) noexcept {
  for (; !undo.empty(); undo.pop_back()) {
    try {
      undo.back()();
    } catch (...) {  // NOLINT(bugprone-empty-catch): of a setter that refuses what it had
    }
  }
}

void TLoadTransaction::TakeBack() noexcept {
  Run(FExchanges);
  Run(FValues);
  Run(FLateValues);
  for (TComponent* component : FLoading) component->SetState(csLoading, false);
}

}  // namespace fzy::detail
