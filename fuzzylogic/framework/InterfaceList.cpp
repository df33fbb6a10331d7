#include "fuzzylogic/framework/InterfaceList.h"

#include <typeinfo>

#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/framework/Format.h"
#include "fuzzylogic/framework/Messages.h"

namespace fzy {

TInterfaceList::~TInterfaceList() {
  // Lists that go with this one are freed in a loop. They are chained by a field of theirs, because
  // there may be no memory for them now.
  std::vector<Ref<IInterface>> items = std::move(FItems);
  Ref<TInterfaceList> doomed;
  for (;;) {
    for (; !items.empty(); items.pop_back()) {
      IInterface* object = items.back().Get();
      if (!object || typeid(*object) != typeid(TInterfaceList)) continue;  // as nearly all are
      auto* list = dynamic_cast<TInterfaceList*>(object);
      if (!list->IsLastReference()) continue;
      list->FNext = std::move(doomed);
      doomed = list;
    }
    if (!doomed) return;
    items = std::move(doomed->FItems);
    doomed = std::move(doomed->FNext);
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
