#pragma once

#include "fuzzylogic/framework/Text.h"

namespace fzy {

/// How many changes make one text of the other, a change being a character put in, taken out or
/// replaced, or two neighbours exchanged (F. J. Damerau, "A technique for computer detection and
/// correction of spelling errors", Communications of the ACM 7, 1964); no part is changed twice.
/// Case does not count, as `SameText` has it. What takes more than `most` (at least 0) changes
/// gives `most` + 1. Time grows with `most` times the length.
int EditDistance(std::u16string_view left, std::u16string_view right, int most);

/// Looks for the name that a misspelt word stands for: the one that the fewest changes lead to, at
/// most 2 and at most one for each three characters of the word. Case alone is no change, so that a
/// name that differs in nothing else comes first.
class TSpellingGuess {
 public:
  explicit TSpellingGuess(TString word);

  /// Considers a name. Of several equally near ones the first is kept; the word itself is none.
  void Consider(std::u16string_view name);
  /// The best name so far; empty when none was near enough.
  const TString& GetName() const noexcept { return FName; }

 private:
  TString FWord;
  TString FName;
  int FMost;  // changes that a better name may take
};

}  // namespace fzy
