#pragma once

#include <cstdint>
#include <vector>

#include "fuzzylogic/framework/Text.h"

namespace fzy {

/// The tokens of a construct that was read and not yet handed out, as what they are made from. A
/// text may be one construct, so they are kept as bare texts behind each other rather than as
/// objects.
class TTokenBuffer {
 public:
  bool IsEmpty() const noexcept { return FNext == FTokens.size(); }
  void Clear() noexcept;

  /// Adds a token of a kind, as the tokenizer finishes it, at the end.
  void Push(int type, int line, std::u16string_view text, std::u16string_view whitespace);

  // The token that comes first, and the step to the next.
  int GetType() const noexcept { return FTokens[FNext].Type; }
  int GetLine() const noexcept { return FTokens[FNext].Line; }
  std::u16string_view GetText() const noexcept;
  std::u16string_view GetWhitespace() const noexcept;
  void Pop() noexcept;

 private:
  struct TToken {
    std::int32_t Type;
    std::int32_t Line;
    std::uint32_t TextLength;
    std::uint32_t WhitespaceLength;
  };

  std::vector<TToken> FTokens;
  std::u16string FCharacters;  // of each token its text, then its white space
  std::size_t FNext = 0;
  std::size_t FPosition = 0;
};

}  // namespace fzy
