#include "fuzzylogic/framework/Messages.h"

namespace fzy {

constinit TMessage SAssignError{u"Cannot assign a %s to a %s"};
constinit TMessage SListIndexError{u"List index out of bounds (%d)"};

}  // namespace fzy
