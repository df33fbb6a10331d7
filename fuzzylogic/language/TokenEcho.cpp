#include "fuzzylogic/language/TokenEcho.h"

#include <algorithm>
#include <charconv>
#include <iterator>

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
      char digits[16];
      char16_t units[16];
      const auto end = std::to_chars(std::begin(digits), std::end(digits), whole);
      const auto last = std::copy(std::begin(digits), end.ptr, std::begin(units));
      return use({std::begin(units), last});
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
  Write({});
  FText[end] = u' ';
  FPosition = FLength = end + 1;
}

}  // namespace fzy
