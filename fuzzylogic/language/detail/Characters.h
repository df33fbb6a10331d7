#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "fuzzylogic/common/HelperFunctions.h"
#include "fuzzylogic/language/FuzzyNumbers.h"

// The characters of the definition language, for what reads it and what writes it.

namespace fzy::detail {

inline constexpr char16_t CommentChar = u';';
inline constexpr char16_t QuoteChar = u'"';
inline constexpr char16_t EscapeChar = u'\\';
inline constexpr char16_t VariableChar = u'?';

constexpr bool IsBlank(char16_t ch) { return ch <= 32; }

/// A token of its own where a token starts.
constexpr bool IsPunctuation(int ch) {
  constexpr std::u16string_view characters = u"()[]=&|~";
  return ch > 0 && ch < 128 &&
         characters.find(static_cast<char16_t>(ch)) != std::u16string_view::npos;
}

// Not within the function, which would make it anew for every character.
inline constexpr auto WordEnds = [] {
  std::array<bool, 128> table{};
  for (const char16_t end : std::u16string_view(u"[]()&;<\"|~")) table[end] = true;
  return table;
}();

/// Ends a word and is read again, unless it is escaped.
constexpr bool EndsWord(char16_t ch) { return ch < WordEnds.size() && WordEnds[ch]; }

/// The number that a word stands for, if any. A lone sign or point is none.
inline std::optional<TFuzzyNumber> NumberOfWord(std::u16string_view word) {
  if (word.empty() || !IsNumberChar(word[0]) || (word.size() == 1 && IsNumberSymbol(word[0])))
    return std::nullopt;
  return ReadFuzzyNumber(word);
}

}  // namespace fzy::detail
