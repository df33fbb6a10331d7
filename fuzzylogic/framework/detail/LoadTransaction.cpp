#include "fuzzylogic/framework/detail/LoadTransaction.h"

#include "fuzzylogic/framework/Component.h"
#include "fuzzylogic/framework/FirstException.h"

namespace fzy::detail {

TLoadTransaction::~TLoadTransaction() {
  if (!FIsKept) TakeBack();
}

void TLoadTransaction::Begin(TPersistent& target, bool isPart) {
  if (!isPart) FPins.emplace_back(&target);
  if (auto* component = dynamic_cast<TComponent*>(&target)) {
    FLoading.push_back(component);
    component->Loading();
  }
  const TFiler description(target);
  if (description.GetReplaced()) Exchange(description.GetReplaced()());
}

void TLoadTransaction::Remember(const TFiler& description) {
  TValues values;
  for (const TProperty& property : description.GetProperties()) {
    if (!property.Get) continue;
    values.push_back({property.Set, property.Get(), property.IsLate});
    const auto* link = std::get_if<TComponent*>(&values.back().Value);
    if (link) FPins.emplace_back(*link);
  }
  FValues.push_back(std::move(values));
}

void TLoadTransaction::Exchange(std::unique_ptr<TStagedEntries> entries) {
  FStaged.push_back(std::move(entries));
  FStaged.back()->Exchange();
}

void TLoadTransaction::Keep() {
  FIsKept = true;
  TFirstException first;
  for (const auto& staged : FStaged) first.Run([&] { staged->Tell(); });
  first.Rethrow();
}

/// Each value moves back: this needs no memory.
void TLoadTransaction::SetAgain(TValues& values, bool late) noexcept {
  for (TValue& value : values) {
    if (value.IsLate != late) continue;
    try {
      // A handler may have freed what a link led to.
      const auto* link = std::get_if<TComponent*>(&value.Value);
      const bool hasGone = link && *link && (*link)->IsFreed();
      if (hasGone) value.Value = static_cast<TComponent*>(nullptr);
      value.Set(std::move(value.Value));
    } catch (...) {  // NOLINT(bugprone-empty-catch): of a setter that refuses what it had
    }
  }
}

/// Lists first, because values may depend on them, and the late ones last.
void TLoadTransaction::TakeBack() noexcept {
  for (std::size_t i = FStaged.size(); i-- > 0;) FStaged[i]->Exchange();
  for (const bool late : {false, true}) {
    for (std::size_t i = FValues.size(); i-- > 0;) SetAgain(FValues[i], late);
  }
  for (TComponent* component : FLoading) component->SetState(csLoading, false);
}

}  // namespace fzy::detail
