#pragma once

#include "fuzzylogic/framework/Text.h"
#include "fuzzylogic/vocabulary/FuzzyTypes.h"

namespace fzy {

// Names and expressions of derived sets. A component name that holds a blank is enclosed in "[" and
// "]" first; nothing else is escaped, and brackets that stand there already are not looked at. None
// of these raises; enumeration values must be valid.

/// "very tall", "not [very tall]"
TString CreateFuzzyName(TFuzzyHedge hedge, const TString& name);
/// "+ tall" when the modifier acts on Y, "+X tall" when it acts on X
TString CreateFuzzyName(TBaseFuzzyHedge modifyType, bool modifyY, const TString& name);
/// "hot and-mean [very humid]": the keyword comes last here and stands in the middle of the name
TString CreateFuzzyName(const TString& left, const TString& right, const TString& keyword);
/// "[a b] c d 1.5000": only the prefix is bracketed; the number has four decimals
TString CreateFuzzyName(const TString& prefix, const TString& name, TFzyFloat value);

/// The expression in brackets when it is compound (holds a blank) and not enclosed as a whole:
/// "a or b" gives "[a or b]", "[a] or [b]" gives "[[a] or [b]]"; "[a b]" and " x " give "[a b]" and
/// "x", trimmed.
TString FormatFuzzyExpression(const TString& s);

}  // namespace fzy
