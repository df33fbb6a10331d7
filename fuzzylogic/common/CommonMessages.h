#pragma once

#include "fuzzylogic/framework/Message.h"

namespace fzy {

/// "Unbalanced string: the closing quote is missing"
extern TMessage SUnbalancedString;
/// "Invalid token kind: %s"
extern TMessage SInvalidBaseTokenHint;
/// "Unmatched bracket"
extern TMessage SUnmatchedBracket;
/// "The table is empty"
extern TMessage STableEmpty;

/// One level of indentation in written definition text: two blanks.
inline constexpr const char16_t* IndentString = u"  ";

}  // namespace fzy
