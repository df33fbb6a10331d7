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
  const std::size_t end = FPosition + text.size();
  if (end >= FText.size()) FText.resize(end + end / 2 + 64);
  std::copy(text.begin(), text.end(), FText.begin() + static_cast<std::ptrdiff_t>(FPosition));
  FPosition = end;
  FLength = std::max(FLength, end);
}

void TTokenEcho::Write(const IFuzzyStreamToken& token) {
  WithText(token, [this](std::u16string_view text) { Write(text); });
  FText[FPosition++] = u' ';  // `Write` leaves room for it
  FLength = std::max(FLength, FPosition);
}

void TTokenEcho::TakeBack(const IFuzzyStreamToken& token) {
  std::size_t length = 0;
  WithText(token, [&](std::u16string_view text) { length = text.size(); });
  std::size_t end = FPosition > length ? FPosition - length - 1 : 0;
  while (end > 0 && FText[end - 1] <= u' ') --end;
  Write(std::u16string_view());
  FText[end] = u' ';
  FPosition = FLength = end + 1;
}

}  // namespace fzy
