#include "fuzzylogic/framework/Text.h"

#include <algorithm>
#include <locale>
#include <ostream>

#include "fuzzylogic/framework/Encoding.h"

namespace fzy {
namespace {

/// The lower-case form of one UTF-16 unit, for the alphabets whose letters lie in plain ranges.
char16_t Fold(char16_t unit) noexcept {
  const auto in = [unit](char16_t low, char16_t high) { return unit >= low && unit <= high; };
  const auto up = [unit](int distance) { return static_cast<char16_t>(unit + distance); };
  if (in(u'A', u'Z')) return up(32);
  if (unit < 0xC0) return unit;
  if (in(0xC0, 0xDE) && unit != 0xD7) return up(32);  // Latin-1
  // Latin Extended-A; the Turkish letters of 0x130 and 0x131 are no pair.
  if (in(0x100, 0x12F) || in(0x132, 0x137) || in(0x14A, 0x177)) return unit % 2 == 0 ? up(1) : unit;
  if (in(0x139, 0x148) || in(0x179, 0x17E)) return unit % 2 == 1 ? up(1) : unit;
  if (unit == 0x178) return 0xFF;
  if (in(0x391, 0x3A9) && unit != 0x3A2) return up(32);  // Greek
  if (in(0x400, 0x40F)) return up(80);                   // Cyrillic
  if (in(0x410, 0x42F)) return up(32);
  return unit;
}

/// The text for the wide functions of the standard library; a pair of surrogates becomes one
/// character where those are wide enough.
std::wstring Widen(std::u16string_view text, bool fold) {
  std::wstring wide;
  wide.reserve(text.size());
  for (const char16_t unit : text) {
    const bool pair = sizeof(wchar_t) > 2 && unit >> 10 == 0x37 && !wide.empty() &&
                      wide.back() >= 0xD800 && wide.back() < 0xDC00;
    if (pair)
      wide.back() = static_cast<wchar_t>(0x10000 + ((wide.back() & 0x3FF) << 10) + (unit & 0x3FF));
    else
      wide.push_back(static_cast<wchar_t>(fold ? Fold(unit) : unit));
  }
  return wide;
}

}  // namespace

TString::TString(std::string_view utf8) { TEncoding::UTF8()->Decode(utf8, true, FUnits); }

std::string TString::Utf8() const {
  std::string bytes;
  TEncoding::UTF8()->Encode(FUnits, bytes);
  return bytes;
}

TString TString::Slice(std::size_t start, std::size_t count) const {
  return start < size() ? TString(View().substr(start, count)) : TString();
}

TString TString::Trim() const {
  const auto blank = [](char16_t unit) { return unit <= 32; };
  const auto first = std::find_if_not(FUnits.begin(), FUnits.end(), blank);
  const auto last = std::find_if_not(FUnits.rbegin(), FUnits.rend(), blank).base();
  return first < last ? TString(std::u16string(first, last)) : TString();
}

std::ostream& operator<<(std::ostream& out, const TString& text) { return out << text.Utf8(); }

bool SameText(std::u16string_view left, std::u16string_view right) noexcept {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char16_t a, char16_t b) { return Fold(a) == Fold(b); });
}

int CompareText(std::u16string_view left, std::u16string_view right, bool caseSensitive) {
  const std::locale locale;
  const std::wstring a = Widen(left, !caseSensitive), b = Widen(right, !caseSensitive);
  return std::use_facet<std::collate<wchar_t>>(locale).compare(a.data(), a.data() + a.size(),
                                                               b.data(), b.data() + b.size());
}

}  // namespace fzy
