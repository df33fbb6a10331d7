#include "fuzzylogic/common/CommonMessages.h"

namespace fzy {

TMessage SUnbalancedString{u"Unbalanced string: the closing quote is missing"};
TMessage SInvalidBaseTokenHint{u"Invalid token kind: %s"};
TMessage SUnmatchedBracket{u"Unmatched bracket"};
TMessage STableEmpty{u"The table is empty"};

}  // namespace fzy
