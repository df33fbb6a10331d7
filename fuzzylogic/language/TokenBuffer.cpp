#include "fuzzylogic/language/TokenBuffer.h"

namespace fzy {

void TTokenBuffer::Clear() noexcept {
  FTokens.clear();
  FCharacters.clear();
  FNext = 0;
  FPosition = 0;
}

void TTokenBuffer::Push(int type, int line, std::u16string_view text,
                        std::u16string_view whitespace) {
  FCharacters += text;
  FCharacters += whitespace;
  FTokens.push_back({type, line, static_cast<std::uint32_t>(text.size()),
                     static_cast<std::uint32_t>(whitespace.size())});
}

std::u16string_view TTokenBuffer::GetText() const noexcept {
  return std::u16string_view(FCharacters).substr(FPosition, FTokens[FNext].TextLength);
}

std::u16string_view TTokenBuffer::GetWhitespace() const noexcept {
  const TToken& token = FTokens[FNext];
  return std::u16string_view(FCharacters)
      .substr(FPosition + token.TextLength, token.WhitespaceLength);
}

void TTokenBuffer::Pop() noexcept {
  FPosition += std::size_t{FTokens[FNext].TextLength} + FTokens[FNext].WhitespaceLength;
  if (++FNext == FTokens.size()) Clear();
}

}  // namespace fzy
