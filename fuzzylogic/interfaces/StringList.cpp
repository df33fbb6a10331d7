#include "fuzzylogic/interfaces/StringList.h"

namespace fzy {

TMessage SDuplicateString{u"String list does not allow duplicates"};
TMessage SSortedListError{u"Operation not allowed on sorted list"};
TMessage SListCapacityError{u"List capacity out of bounds (%d)"};
TMessage SOutOfMemory{u"Out of memory"};

}  // namespace fzy
