#include "fuzzylogic/language/TokenEcho.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace fzy {
namespace {

/// Calls `use` with the token's text, as its `ToString` gives it, without making a text of its own
/// for the kinds that nearly all tokens are of.
template <class Use>
void WithText(const IFuzzyStreamToken& token, Use use) {
  switch (token.GetDataType()) {
    case static_cast<int>(fstInteger): {
      const TFzyFloat number = token.GetNumber();
      if (!(number >= INT32_MIN && number <= INT32_MAX)) return use(token.ToString());
      const auto whole = static_cast<std::int32_t>(number);
      if (whole != number) return use(token.ToString());
      std::array<char, 16> digits{};
      std::array<char16_t, 16> units{};
      const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), whole);
      std::copy(digits.data(), end.ptr, units.data());
      return use({units.data(), static_cast<std::size_t>(end.ptr - digits.data())});
    }
    case u'(':
      return use(u"(");
    case u')':
      return use(u")");
    case static_cast<int>(fstAtom):
      return use(token.GetText());
    default:
      return use(token.ToString());
  }
}

}  // namespace

void TTokenEcho::Write(std::u16string_view text) {
  while (!text.empty()) {
    if (FPosition / PageSize == FPages.size())
      FPages.push_back(std::make_unique_for_overwrite<TPage>());
    const std::size_t part = std::min(text.size(), PageSize - FPosition % PageSize);
    std::copy_n(text.begin(), part, &At(FPosition));
    text.remove_prefix(part);
    FPosition += part;
  }
  FLength = std::max(FLength, FPosition);
}

void TTokenEcho::Write(const IFuzzyStreamToken& token) {
  WithText(token, [this](std::u16string_view text) {
    const std::size_t at = FPosition % PageSize;
    if (FPosition / PageSize < FPages.size() && at + text.size() < PageSize) {
      char16_t* target = FPages[FPosition / PageSize]->data() + at;
      for (const char16_t unit : text) *target++ = unit;
      *target = u' ';
      FPosition += text.size() + 1;
      FLength = std::max(FLength, FPosition);
    } else {
      Write(text);
      Write(u" ");
    }
  });
}

void TTokenEcho::TakeBack(const IFuzzyStreamToken& token) {
  std::size_t length = 0;
  WithText(token, [&](std::u16string_view text) { length = text.size(); });
  FPosition = FPosition > length ? FPosition - length - 1 : 0;
  while (FPosition > 0 && At(FPosition - 1) <= u' ') --FPosition;
  FLength = FPosition;
  Write(u" ");
}

TString TTokenEcho::ToString() const {
  TString text;
  text.Reserve(FLength);
  for (std::size_t start = 0; start < FLength; start += PageSize) {
    const std::size_t part = std::min(PageSize, FLength - start);
    text += std::u16string_view(FPages[start / PageSize]->data(), part);
  }
  return text;
}

}  // namespace fzy
