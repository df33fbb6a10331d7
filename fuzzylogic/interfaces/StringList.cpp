#include "fuzzylogic/interfaces/StringList.h"

namespace fzy {

TMessage SDuplicateString{u"The list has this text already"};
TMessage SSortedListError{u"A sorted list keeps an order of its own"};
TMessage SListCapacityError{u"The list cannot have capacity %d"};
TMessage SOutOfMemory{u"There is not that much memory"};

}  // namespace fzy
