#include "fuzzylogic/common/Spelling.h"

#include <algorithm>
#include <vector>

namespace fzy {
namespace {

constexpr std::size_t MostChanges = 2;
constexpr std::size_t CharactersPerChange = 3;

bool SameCharacter(char16_t a, char16_t b) {
  return a == b || SameText(std::u16string_view(&a, 1), std::u16string_view(&b, 1));
}

}  // namespace

/// The table of distances between all beginnings of the two texts, row by row; of each row only
/// the cells within `most` of the diagonal can matter, and all others count as too far.
int EditDistance(std::u16string_view left, std::u16string_view right, int most) {
  const int rows = static_cast<int>(std::min<std::size_t>(left.size(), INT32_MAX / 2));
  const int columns = static_cast<int>(std::min<std::size_t>(right.size(), INT32_MAX / 2));
  if (std::abs(rows - columns) > most) return most + 1;
  most = std::min(most, std::max(rows, columns));  // more is never needed
  const int far = most + 1;
  const auto same = [&](int i, int j) {
    return SameCharacter(left[static_cast<std::size_t>(i) - 1],
                         right[static_cast<std::size_t>(j) - 1]);
  };
  const auto width = static_cast<std::size_t>(columns) + 1;
  std::vector<int> twoBefore(width, far), before(width, far), row(width, far);
  const auto at = [](std::vector<int>& cells, int j) -> int& {
    return cells[static_cast<std::size_t>(j)];
  };
  for (int j = 0; j <= std::min(columns, most); ++j) at(row, j) = j;
  for (int i = 1; i <= rows; ++i) {
    std::swap(twoBefore, before);
    std::swap(before, row);
    const int first = std::max(0, i - most), last = std::min(columns, i + most);
    if (first > 0) at(row, first - 1) = far;
    int nearest = far;
    for (int j = first; j <= last; ++j) {
      int changes = j == 0 ? i : at(before, j - 1) + (same(i, j) ? 0 : 1);
      if (j > 0) changes = std::min(changes, at(row, j - 1) + 1);
      if (j < i + most) changes = std::min(changes, at(before, j) + 1);
      if (i > 1 && j > 1 && same(i, j - 1) && same(i - 1, j))
        changes = std::min(changes, at(twoBefore, j - 2) + 1);
      at(row, j) = std::min(changes, far);
      nearest = std::min(nearest, at(row, j));
    }
    if (nearest == far) return far;
  }
  return at(row, columns);
}

TSpellingGuess::TSpellingGuess(TString word)
    : FWord(std::move(word)),
      FMost(static_cast<int>(std::min(MostChanges, FWord.size() / CharactersPerChange))) {}

void TSpellingGuess::Consider(std::u16string_view name) {
  if (FMost < 0 || name.empty() || name == FWord.View()) return;
  const int changes = EditDistance(FWord, name, FMost);
  if (changes > FMost) return;
  FName = name;
  FMost = changes - 1;
}

}  // namespace fzy
