#pragma once

#include "fuzzylogic/framework/Text.h"

namespace fzy {

/// The text of the tokens handed out so far, as error messages show it. Writing happens at a
/// position and overwrites what lies there; what an earlier, longer text left beyond stays
/// readable.
class TTokenEcho {
 public:
  void Rewind() noexcept { FPosition = 0; }
  void Write(std::u16string_view text);
  /// Takes back a token of `length` units and the blank behind it: cuts the text there, drops
  /// blanks and line breaks at its end, and closes it with one blank. The cost is that of what is
  /// cut.
  void TakeBack(std::size_t length);
  TString ToString() const { return std::u16string_view(FText); }

 private:
  std::u16string FText;
  std::size_t FPosition = 0;
};

}  // namespace fzy
