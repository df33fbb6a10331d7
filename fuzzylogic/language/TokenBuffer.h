#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace fzy {

/// Line and column of a token, each counted from 1.
struct TTokenPlace {
  int Line;
  int Column;
};

/// The tokens of a construct that was read and not yet handed out, as what they are made from. A
/// text may be one construct, so they are kept as bare texts behind each other rather than as
/// objects, in pages: growing copies nothing, and a page is given back once its tokens are out.
class TTokenBuffer {
 public:
  bool IsEmpty() const noexcept { return FPages.empty() || FPages.front().IsEmpty(); }
  void Clear() noexcept { FPages.clear(); }

  /// Adds a token of a kind, as the tokenizer finishes it, at the end.
  /// Kinds go from -1 to 127; a column too large for the buffer becomes the largest.
  void Push(int type, TTokenPlace place, std::u16string_view text, std::u16string_view whitespace);

  // The token that comes first, and the step to the next.
  int GetType() const noexcept { return static_cast<std::int8_t>(First().Type); }
  TTokenPlace GetPlace() const noexcept { return {First().Line, static_cast<int>(First().Column)}; }
  std::u16string_view GetText() const noexcept;
  std::u16string_view GetWhitespace() const noexcept;
  void Pop() noexcept;

 private:
  struct TToken {
    std::uint32_t Type : 8;
    std::uint32_t Column : 24;
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
