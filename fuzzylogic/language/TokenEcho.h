#pragma once

#include <array>
#include <memory>
#include <vector>

#include "fuzzylogic/language/FuzzyStreamToken.h"

namespace fzy {

/// The text of the tokens handed out so far, as error messages show it. Writing happens at a
/// position and overwrites what lies there; what an earlier, longer text left beyond stays
/// readable. The text stands in pages, so that a long one grows without being copied.
class TTokenEcho {
 public:
  void Rewind() noexcept { FPosition = 0; }
  /// Writes the token's text and a blank.
  void Write(const IFuzzyStreamToken& token);
  void WriteLineBreak() { Write(u"\r\n"); }
  /// Takes a token back that was written last: cuts the text before it, drops blanks and line
  /// breaks at its end, and closes it with one blank. The cost is that of what is cut.
  void TakeBack(const IFuzzyStreamToken& token);
  TString ToString() const;

 private:
  static constexpr std::size_t PageSize = 4096;
  using TPage = std::array<char16_t, PageSize>;

  void Write(std::u16string_view text);
  char16_t& At(std::size_t position) { return (*FPages[position / PageSize])[position % PageSize]; }

  std::vector<std::unique_ptr<TPage>> FPages;
  std::size_t FLength = 0;
  std::size_t FPosition = 0;
};

}  // namespace fzy
