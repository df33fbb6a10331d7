#pragma once

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <string>
#include <string_view>

#include "fuzzylogic/framework/Format.h"
#include "tests/language/TokenDump.h"

namespace fzy::test {

/// The tokenizer in its plainest form, one raw token after the other from a text that lies there
/// whole: what the one of the library, which buffers and takes short cuts, must agree with.
class TPlainTokenizer {
 public:
  explicit TPlainTokenizer(std::u16string text) : FText(std::move(text)) {}

  /// All tokens as "name@line{white space}", or "!line" for a string without end.
  std::string Run() {
    std::string dump;
    for (;;) {
      const std::string token = Next();
      dump += token + '@' + std::to_string(FTokenLine);
      if (token == "!") return dump;
      dump += '{' + Visible(FSpace) + '}';
      FSpace.clear();
      if (token == "$") return dump;
    }
  }

 private:
  bool End() const { return FAt == FText.size(); }

  std::string Next() {
    while (!End() && (FText[FAt] <= 32 || FText[FAt] == u';')) {
      if (FText[FAt] == u';') {
        while (!End() && FText[FAt] != u'\r' && FText[FAt] != u'\n') FSpace += FText[FAt++];
        if (!End() && FText[FAt++] == u'\r' && !End() && FText[FAt] == u'\n') ++FAt;
        FSpace += u"\r\n";
        ++FLine;
      } else {
        CountLine();
        FSpace += FText[FAt++];
      }
    }
    FTokenLine = FLine;
    if (End()) return "$";
    const char16_t first = FText[FAt++];
    if (first == u'"') return String();
    if (std::u16string_view(u"()[]=&|~").find(first) != std::u16string_view::npos)
      return TString(1, first).Utf8();
    return Word(first);
  }

  std::string String() {
    std::u16string text;
    while (!End() && FText[FAt] != u'"') {
      if (FText[FAt] == u'\\' && ++FAt == FText.size()) break;
      CountLine();
      text += FText[FAt++];
    }
    if (End()) return "!";
    ++FAt;
    FTokenLine = FLine;
    return "s:" + TString(text).Utf8();
  }

  std::string Word(char16_t first) {
    std::u16string word(1, first);
    while (!End()) {
      char16_t ch = FText[FAt];
      if (std::u16string_view(u"[]()&;<\"|~").find(ch) != std::u16string_view::npos) break;
      FTokenLine = FLine;
      if (ch <= 32) {
        CountLine();
        FSpace += ch;
        ++FAt;
        break;
      }
      if (ch == u'\\') {
        if (++FAt == FText.size()) break;
        ch = FText[FAt];
        if (ch == u'\n') FTokenLine = ++FLine;
      }
      word += ch;
      ++FAt;
    }
    return Classified(TString(word).Utf8());
  }

  /// Counts the line that the character here ends; a CR before an LF leaves that to the LF.
  void CountLine() {
    const bool pair = FAt + 1 < FText.size() && FText[FAt + 1] == u'\n';
    if (FText[FAt] == u'\n' || (FText[FAt] == u'\r' && !pair)) ++FLine;
  }

  static std::string Classified(const std::string& word) {
    if (word[0] == '?') return "v:" + word.substr(1);
    const bool digits = word.find_first_not_of("0123456789+-.e") == std::string::npos;
    if (!digits || std::string_view("0123456789+-.").find(word[0]) == std::string_view::npos)
      return "a:" + word;
    char* end = nullptr;
    errno = 0;
    double value = std::strtod(word.c_str(), &end);
    if (*end || end == word.c_str() || std::isinf(value)) return "a:" + word;
    if (errno == ERANGE && std::fabs(value) < 0x1p-1074) value = 0;
    const bool whole =
        word.find_first_of(".e") == std::string::npos && value >= -0x1p31 && value < 0x1p31;
    return (whole ? "i:" : "f:") + FormatShortest(whole ? value + 0.0 : value).Utf8();
  }

  std::u16string FText;
  std::size_t FAt = 0;
  int FLine = 1;
  int FTokenLine = 1;
  std::u16string FSpace;
};

}  // namespace fzy::test
