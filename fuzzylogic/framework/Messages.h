#pragma once

#include "fuzzylogic/framework/Message.h"

namespace fzy {

/// "Cannot assign a %s to a %s"
extern TMessage SAssignError;
/// "List index out of bounds (%d)"
extern TMessage SListIndexError;

}  // namespace fzy
