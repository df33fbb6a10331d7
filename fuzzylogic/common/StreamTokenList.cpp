#include "fuzzylogic/common/StreamTokenList.h"

#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/framework/Messages.h"

namespace fzy {

void RaiseTokenIndex(int index) {
  throw EListError(FormatText(SListIndexError, {std::int64_t{index}}));
}

}  // namespace fzy
