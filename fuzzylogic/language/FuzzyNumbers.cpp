#include "fuzzylogic/language/FuzzyNumbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>

#include "fuzzylogic/common/HelperFunctions.h"

namespace fzy {
namespace {

bool IsDigit(char ch) { return ch >= '0' && ch <= '9'; }

/// Whether a decimal that fits no double does so because it is too small: whether its first
/// significant digit stands behind the point, once the exponent has moved that.
bool IsTiny(std::string_view digits) {
  const std::size_t mark = std::min(digits.find_first_of("eE"), digits.size());
  std::int64_t exponent = 0;
  for (const char ch : digits.substr(mark)) {
    if (IsDigit(ch)) exponent = std::min<std::int64_t>(exponent * 10 + (ch - '0'), INT32_MAX);
  }
  if (digits.find('-', mark) != std::string_view::npos) exponent = -exponent;
  const std::string_view mantissa = digits.substr(0, mark);
  const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
  const std::size_t first = mantissa.find_first_of("123456789");
  if (first == std::string_view::npos) return true;
  return static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first) + exponent <= 0;
}

std::optional<TFuzzyNumber> ReadDigits(std::string_view digits) {
  const char* end = digits.data() + digits.size();
  std::int32_t whole = 0;
  const auto asWhole = std::from_chars(digits.data(), end, whole);
  if (asWhole.ec == std::errc() && asWhole.ptr == end)
    return TFuzzyNumber{static_cast<TFzyFloat>(whole), true};
  TFzyFloat value = 0;
  const auto asFloat = std::from_chars(digits.data(), end, value);
  if (asFloat.ptr != end) return std::nullopt;
  if (asFloat.ec == std::errc::result_out_of_range) {
    if (!IsTiny(digits)) return std::nullopt;
    value = 0;
  } else if (asFloat.ec != std::errc() || std::isinf(value)) {
    return std::nullopt;
  }
  return TFuzzyNumber{value, false};
}

}  // namespace

std::optional<TFuzzyNumber> ReadFuzzyNumber(std::u16string_view word) {
  if (!word.empty() && word.front() == u'+') {
    word.remove_prefix(1);
    if (!word.empty() && word.front() == u'-') return std::nullopt;
  }
  // Only what decimal numbers are made of: "inf" and "nan" are words.
  const auto foreign = [](char16_t ch) { return !IsNumberChar(ch) && ch != u'e' && ch != u'E'; };
  if (word.empty() || std::any_of(word.begin(), word.end(), foreign)) return std::nullopt;
  constexpr std::size_t shortWord = 64;
  if (word.size() <= shortWord) {
    std::array<char, shortWord> digits{};
    std::transform(word.begin(), word.end(), digits.begin(),
                   [](char16_t ch) { return static_cast<char>(ch); });
    return ReadDigits({digits.data(), word.size()});
  }
  return ReadDigits(std::string(word.begin(), word.end()));
}

}  // namespace fzy
