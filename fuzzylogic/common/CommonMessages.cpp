#include "fuzzylogic/common/CommonMessages.h"

namespace fzy {

constinit TMessage SUnbalancedString{u"Unbalanced string: the closing quote is missing"};
constinit TMessage SInvalidBaseTokenHint{u"Invalid token kind: %s"};
constinit TMessage SUnmatchedBracket{u"Unmatched bracket"};
constinit TMessage STableEmpty{u"The table is empty"};

}  // namespace fzy
