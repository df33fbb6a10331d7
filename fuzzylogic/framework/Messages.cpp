#include "fuzzylogic/framework/Messages.h"

namespace fzy {

TMessage SAssignError{u"Cannot assign a %s to a %s"};
TMessage SListIndexError{u"List index out of bounds (%d)"};
TMessage SDuplicateItem{u"Duplicates not allowed"};
TMessage SItemNotFound{u"Item not found"};
TMessage SArgumentOutOfRange{u"Argument out of range"};
TMessage SIntfCastError{u"Interface not supported"};

}  // namespace fzy
