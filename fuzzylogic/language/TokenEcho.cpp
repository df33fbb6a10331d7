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
      char digits[16];
      char16_t units[16];
      const auto end = std::to_chars(std::begin(digits), std::end(digits),
                                     static_cast<std::int32_t>(token.GetNumber()));
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
  if (FPosition == FText.size()) {
    FText += text;
  } else {
    const std::size_t over = std::min(text.size(), FText.size() - FPosition);
    std::copy_n(text.begin(), over, FText.begin() + static_cast<std::ptrdiff_t>(FPosition));
    FText += text.substr(over);
  }
  FPosition += text.size();
}

void TTokenEcho::Write(const IFuzzyStreamToken& token) {
  WithText(token, [this](std::u16string_view text) { Write(text); });
  Write(u" ");
}

void TTokenEcho::TakeBack(const IFuzzyStreamToken& token) {
  std::size_t length = 0;
  WithText(token, [&](std::u16string_view text) { length = text.size(); });
  std::size_t end = FPosition > length ? FPosition - length - 1 : 0;
  while (end > 0 && FText[end - 1] <= u' ') --end;
  FText.resize(end);
  FText += u' ';
  FPosition = FText.size();
}

}  // namespace fzy
