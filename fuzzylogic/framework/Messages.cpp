#include "fuzzylogic/framework/Messages.h"

namespace fzy {

TMessage SAssignError{u"Cannot assign a %s to a %s"};
TMessage SListIndexError{u"List index out of bounds (%d)"};

}  // namespace fzy
