#include "fuzzylogic/language/TokenBuffer.h"

#include <algorithm>

namespace fzy {
namespace {

constexpr std::size_t TokensOfAPage = 1024;
constexpr std::size_t CharactersOfAPage = 4096;
constexpr int LastColumn = 0xFFFFFF;

}  // namespace

void TTokenBuffer::Push(int type, TTokenPlace place, std::u16string_view text,
                        std::u16string_view whitespace) {
  if (FPages.empty() || FPages.back().Tokens.size() == TokensOfAPage) FPages.emplace_back();
  TPage& page = FPages.back();
  page.Characters += text;
  page.Characters += whitespace;
  page.Tokens.push_back(
      {static_cast<std::uint8_t>(type),
       static_cast<std::uint32_t>(std::min(place.Column, LastColumn)) & LastColumn, place.Line,
       static_cast<std::uint32_t>(text.size()), static_cast<std::uint32_t>(whitespace.size())});
}

std::u16string_view TTokenBuffer::GetText() const noexcept {
  const TPage& page = FPages.front();
  return std::u16string_view(page.Characters).substr(page.Position, First().TextLength);
}

std::u16string_view TTokenBuffer::GetWhitespace() const noexcept {
  const TPage& page = FPages.front();
  return std::u16string_view(page.Characters)
      .substr(page.Position + First().TextLength, First().WhitespaceLength);
}

void TTokenBuffer::Pop() noexcept {
  TPage& page = FPages.front();
  page.Position += std::size_t{First().TextLength} + First().WhitespaceLength;
  if (++page.Next < page.Tokens.size()) return;
  if (FPages.size() > 1 || page.Characters.capacity() > 4 * CharactersOfAPage) {
    FPages.pop_front();
    return;
  }
  // The one page serves the next construct: most of them fit into it.
  page.Tokens.clear();
  page.Characters.clear();
  page.Next = 0;
  page.Position = 0;
}

}  // namespace fzy
