#include "fuzzylogic/framework/Format.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>

namespace fzy {
namespace {

char16_t DecimalSeparator = u'.';

// The longest fixed number: 309 digits before the point and the decimals that a format may ask for.
using TDigits = std::array<char, 512>;
constexpr int MostDecimals = 99;

// Never signed: the sign of a value that is not a number differs from one machine to the next.
constexpr const char16_t* NotANumber = u"nan";

TString Widen(const char* first, const char* last, char16_t separator) {
  std::u16string text(first, last);
  if (separator != u'.') {
    const std::size_t point = text.find(u'.');
    if (point != std::u16string::npos) text[point] = separator;
  }
  return text;
}

struct TPlaceholder {
  char16_t Kind;
  int Decimals;
  std::size_t Length;
};

/// Reads the placeholder that starts with the percent sign at `at`.
std::optional<TPlaceholder> ReadPlaceholder(std::u16string_view format, std::size_t at) {
  std::size_t i = at + 1;
  int decimals = 6;
  if (i < format.size() && format[i] == u'.') {
    decimals = 0;
    for (++i; i < format.size() && format[i] >= u'0' && format[i] <= u'9'; ++i)
      decimals = std::min(MostDecimals, decimals * 10 + (format[i] - u'0'));
  }
  if (i >= format.size() || std::u16string_view(u"sdf%").find(format[i]) == TString::npos)
    return std::nullopt;
  return TPlaceholder{format[i], decimals, i + 1 - at};
}

bool AppendArgument(const TPlaceholder& placeholder, const TFormatArg& arg, TString& result) {
  if (const auto* text = std::get_if<TString>(&arg); text && placeholder.Kind == u's') {
    result += *text;
  } else if (const auto* whole = std::get_if<std::int64_t>(&arg);
             whole && placeholder.Kind == u'd') {
    result += TString(std::to_string(*whole));
  } else if (const auto* number = std::get_if<double>(&arg); number && placeholder.Kind == u'f') {
    result += FormatFixed(*number, placeholder.Decimals);
  } else {
    return false;
  }
  return true;
}

}  // namespace

TString FormatText(const TString& format, std::initializer_list<TFormatArg> args) {
  TString result;
  const auto* arg = args.begin();
  for (std::size_t i = 0; i < format.size();) {
    const auto placeholder =
        format[i] == u'%' ? ReadPlaceholder(format, i) : std::optional<TPlaceholder>();
    if (!placeholder) {
      result += format[i++];
      continue;
    }
    if (placeholder->Kind == u'%') {
      result += u'%';
    } else if (arg == args.end() || !AppendArgument(*placeholder, *arg++, result)) {
      result += format.View().substr(i, placeholder->Length);
    }
    i += placeholder->Length;
  }
  return result;
}

TString FormatFixed(double value, int decimals) {
  return FormatFixed(value, decimals, DecimalSeparator);
}

TString FormatFixed(double value, int decimals, char16_t separator) {
  if (std::isnan(value)) return NotANumber;
  TDigits digits;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                 std::chars_format::fixed, std::clamp(decimals, 0, MostDecimals));
  return Widen(digits.data(), end.ptr, separator);
}

TString FormatShortest(double value) {
  if (std::isnan(value)) return NotANumber;
  TDigits digits;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  return Widen(digits.data(), end.ptr, u'.');
}

char16_t GetDecimalSeparator() noexcept { return DecimalSeparator; }
void SetDecimalSeparator(char16_t separator) noexcept { DecimalSeparator = separator; }

}  // namespace fzy
