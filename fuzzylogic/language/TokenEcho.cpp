#include "fuzzylogic/language/TokenEcho.h"

#include <algorithm>

namespace fzy {

void TTokenEcho::Write(std::u16string_view text) {
  const std::size_t over = std::min(text.size(), FText.size() - FPosition);
  std::copy_n(text.begin(), over, FText.begin() + static_cast<std::ptrdiff_t>(FPosition));
  FText.append(text.substr(over));
  FPosition += text.size();
}

void TTokenEcho::TakeBack(std::size_t length) {
  std::size_t end = FPosition > length ? FPosition - length - 1 : 0;
  while (end > 0 && FText[end - 1] <= u' ') --end;
  FText.resize(end);
  FText += u' ';
  FPosition = FText.size();
}

}  // namespace fzy
