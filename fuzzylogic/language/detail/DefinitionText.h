#pragma once

#include <optional>

#include "fuzzylogic/language/FuzzyStreamToken.h"

// Tokens as a definition text has them: what is made here, the tokenizer reads back.

namespace fzy::detail {

/// A text as a word that is read as an atom: characters that would end the word are escaped.
/// Nothing when there is no such word, because nothing escapes a first character and because
/// numbers and ?names are words too.
std::optional<TString> WordText(std::u16string_view text);

/// A text as a quoted string.
TString StringText(std::u16string_view text);

/// A text as one token that reads back with this text: bare where it can be, else quoted.
TString TokenText(std::u16string_view text);

/// The tokens of an expression, groups in parentheses. Numbers are written so that they read back
/// to the same bits. Reading the result and writing it again gives the same text. Takes no stack.
TString ExpressionText(const IFuzzyStreamTokenList& list);

}  // namespace fzy::detail
