#pragma once

#include <compare>
#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>

namespace fzy {

/// A Unicode text: a thin value over UTF-16 code units, so that positions and lengths are counted
/// the same way on every platform. Made implicitly from UTF-8 (`TString name = "cold"`); malformed
/// UTF-8 becomes U+FFFD, one for each faulty sequence. Unpaired surrogates are kept as they are and
/// become U+FFFD only on the way out. Comparison is by code unit, exact and case-sensitive.
class TString {
 public:
  static constexpr std::size_t npos = std::u16string_view::npos;

  TString() = default;
  TString(const char* utf8) : TString(std::string_view(utf8)) {}
  TString(const std::string& utf8) : TString(std::string_view(utf8)) {}
  TString(std::string_view utf8);
  TString(const char16_t* units) : FUnits(units) {}
  TString(std::u16string_view units) : FUnits(units) {}
  TString(std::u16string units) noexcept : FUnits(std::move(units)) {}
  TString(std::size_t count, char16_t unit) : FUnits(count, unit) {}

  std::size_t size() const noexcept { return FUnits.size(); }
  bool empty() const noexcept { return FUnits.empty(); }
  char16_t operator[](std::size_t index) const { return FUnits[index]; }
  auto begin() const noexcept { return FUnits.begin(); }
  auto end() const noexcept { return FUnits.end(); }

  std::u16string_view View() const noexcept { return FUnits; }
  operator std::u16string_view() const noexcept { return FUnits; }

  /// The text as UTF-8; an unpaired surrogate is written as U+FFFD.
  std::string Utf8() const;

  /// The part of at most `count` units from `start` on; empty when `start` lies beyond the end.
  TString Slice(std::size_t start, std::size_t count = npos) const;
  /// The position of the first `part` at or after `from`, or `npos`.
  std::size_t Find(std::u16string_view part, std::size_t from = 0) const noexcept {
    return FUnits.find(part, from);
  }
  bool Contains(char16_t unit) const noexcept { return FUnits.find(unit) != npos; }
  /// The text without leading and trailing units of code 32 or below.
  TString Trim() const;

  TString& operator+=(std::u16string_view text) {
    FUnits += text;
    return *this;
  }
  TString& operator+=(char16_t unit) {
    FUnits += unit;
    return *this;
  }
  void Reserve(std::size_t count) { FUnits.reserve(count); }
  /// Empties the text and keeps its memory.
  void Clear() noexcept { FUnits.clear(); }

  friend TString operator+(TString left, const TString& right) {
    left.FUnits += right.FUnits;
    return left;
  }
  friend bool operator==(const TString& left, const TString& right) noexcept {
    return left.FUnits == right.FUnits;
  }
  friend std::strong_ordering operator<=>(const TString& left, const TString& right) noexcept {
    return left.FUnits <=> right.FUnits;
  }

 private:
  std::u16string FUnits;
};

/// Writes the text as UTF-8.
std::ostream& operator<<(std::ostream& out, const TString& text);

/// Whether two texts are equal without regard to case, for the letters of Latin-1 and Latin
/// Extended-A, the plain Greek letters and the Cyrillic letters U+0400 to U+045F; all others are
/// equal to themselves only. Independent of the process's locale.
bool SameText(std::u16string_view left, std::u16string_view right) noexcept;

/// The order of two texts by the rules of the process's global locale (`std::locale()`): below, at
/// or above 0. Without regard to case, both are folded first as `SameText` folds. A strict weak
/// order, in which different texts may be equal; it changes with the global locale.
int CompareText(std::u16string_view left, std::u16string_view right, bool caseSensitive);

}  // namespace fzy

template <>
struct std::hash<fzy::TString> {
  std::size_t operator()(const fzy::TString& text) const noexcept {
    return std::hash<std::u16string_view>()(text.View());
  }
};
