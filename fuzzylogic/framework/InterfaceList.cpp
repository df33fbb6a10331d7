#include "fuzzylogic/framework/InterfaceList.h"

#include <typeinfo>

#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/framework/Format.h"
#include "fuzzylogic/framework/Messages.h"

namespace fzy {

TInterfaceList::~TInterfaceList() {
  // The items of lists that go with this one are moved here first and freed in a loop.
  std::vector<Ref<IInterface>> doomed = std::move(FItems);
  while (!doomed.empty()) {
    const Ref<IInterface> item = std::move(doomed.back());
    doomed.pop_back();
    const IInterface* object = item.Get();
    if (!object || typeid(*object) != typeid(TInterfaceList)) continue;  // as nearly all are
    auto* list = dynamic_cast<TInterfaceList*>(item.Get());
    if (!list->IsLastReference()) continue;
    for (Ref<IInterface>& nested : list->FItems) doomed.push_back(std::move(nested));
    list->FItems.clear();
  }
}

Ref<IInterface> TInterfaceList::Get(int index) const {
  if (index < 0 || index >= GetCount())
    throw EListError(FormatText(SListIndexError, {std::int64_t{index}}));
  return FItems[static_cast<std::size_t>(index)];
}

int TInterfaceList::Add(const Ref<IInterface>& item) {
  FItems.push_back(item);
  return GetCount() - 1;
}

}  // namespace fzy
