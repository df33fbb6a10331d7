#include "fuzzylogic/framework/detail/ObjectCopy.h"

#include <typeinfo>

#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/framework/Format.h"
#include "fuzzylogic/framework/Messages.h"
#include "fuzzylogic/framework/Properties.h"
#include "fuzzylogic/framework/detail/LoadTransaction.h"

namespace fzy::detail {
namespace {

using TKind = TProperty::TKind;

class TObjectCopy {
 public:
  explicit TObjectCopy(TLoadTransaction& transaction) noexcept : FTransaction(transaction) {}

  /// Values come after all objects, on which some depend.
  /// @param isLive  whether `dest` was there before
  /// @throws EConvertError for objects of different classes, whose descriptions do not match
  void Copy(TPersistent& source, TPersistent& dest, bool isLive) {
    if (typeid(source) != typeid(dest))
      throw EConvertError(FormatText(SAssignError, {source.ClassName(), dest.ClassName()}));
    const TFiler from(source);
    const TFiler to(dest);
    auto* component = isLive ? dynamic_cast<TComponent*>(&dest) : nullptr;
    if (component) FTransaction.Begin(dest, true);
    if (isLive) FTransaction.Remember(to);
    CopyEntries(from.GetEntries(), to.GetEntries(), isLive);
    const auto both = [&](auto copy) {
      for (std::size_t i = 0; i < to.GetProperties().size(); ++i)
        copy(from.GetProperties()[i], to.GetProperties()[i]);
    };
    both([&](const TProperty& original, const TProperty& property) {
      if (original.Refresh) original.Refresh();
      if (property.Kind == TKind::Object) Copy(*original.Object, *property.Object, isLive);
    });
    both([&](const TProperty& original, const TProperty& property) {
      if (property.IsPlain() && !property.IsInHeader) property.Set(original.Get());
    });
    if (component) FCopied.push_back(component);
  }

  void EndLoading() {
    for (TComponent* component : FCopied) {
      if (!component->IsFreed()) component->Loaded();
    }
  }

 private:
  void CopyEntries(const TEntries& from, const TEntries& to, bool isLive) {
    std::visit(
        [&](const auto& source) {
          using TList = std::remove_cvref_t<decltype(source)>;
          if constexpr (!std::is_same_v<TList, std::monostate>) {
            auto staged = std::get<TList>(to).Stage();
            for (int i = 0; i < source.GetCount(); ++i) Add(*staged, source.GetItem(i));
            if (isLive)
              FTransaction.Exchange(std::move(staged));
            else
              staged->Exchange();
          }
        },
        from);
  }
  template <class Staged, class Entry>
  static void Add(Staged& staged, Entry entry) {
    staged.Add(std::move(entry));
  }
  void Add(TStagedItems& staged, TPersistent& item) {
    Copy(item, staged.Begin(), false);
    staged.Complete();
  }

  TLoadTransaction& FTransaction;
  std::vector<TComponent*> FCopied;  // those inside others before these
};

}  // namespace

void CopyComponent(TComponent& source, TComponent& dest) {
  const TPin from(&source);
  const TPin to(&dest);
  TLoadTransaction transaction;
  TObjectCopy copy(transaction);
  copy.Copy(source, dest, true);
  copy.EndLoading();
  transaction.Keep();
}

}  // namespace fzy::detail
