#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace fzy {

/// The tokens of a construct that was read and not yet handed out, as what they are made from. A
/// text may be one construct, so they are kept as bare texts behind each other rather than as
/// objects, in pages: growing copies nothing, and a page is given back once its tokens are out.
class TTokenBuffer {
 public:
  bool IsEmpty() const noexcept { return FPages.empty() || FPages.front().IsEmpty(); }
  void Clear() noexcept { FPages.clear(); }

  /// Adds a token of a kind, as the tokenizer finishes it, at the end.
  void Push(int type, int line, std::u16string_view text, std::u16string_view whitespace);

  // The token that comes first, and the step to the next.
  int GetType() const noexcept { return First().Type; }
  int GetLine() const noexcept { return First().Line; }
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
  struct TPage {
    bool IsEmpty() const noexcept { return Next == Tokens.size(); }

    std::vector<TToken> Tokens;
    std::u16string Characters;  // of each token its text, then its white space
    std::size_t Next = 0;
    std::size_t Position = 0;
  };

  const TToken& First() const noexcept { return FPages.front().Tokens[FPages.front().Next]; }

  std::deque<TPage> FPages;
};

}  // namespace fzy
