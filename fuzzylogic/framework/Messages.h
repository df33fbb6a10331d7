#pragma once

#include "fuzzylogic/framework/Message.h"

namespace fzy {

/// "Cannot assign a %s to a %s"
extern TMessage SAssignError;
/// "List index out of bounds (%d)"
extern TMessage SListIndexError;

/// "Duplicates not allowed"
extern TMessage SDuplicateItem;
/// "Item not found"
extern TMessage SItemNotFound;
/// "Argument out of range"
extern TMessage SArgumentOutOfRange;
/// "Interface not supported"
extern TMessage SIntfCastError;

}  // namespace fzy
