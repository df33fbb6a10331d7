#pragma once

#include <optional>

#include "fuzzylogic/language/detail/ReadingNotes.h"
#include "fuzzylogic/language/detail/StreamFrame.h"

namespace fzy::detail {

/// The reading of one text. What it leaves is noted before its tokenizer goes.
class TTextReading : public TReading {
 public:
  explicit TTextReading(TKelFuzzyLogicParser& parser) : TReading(parser, false), FParser(parser) {}
  ~TTextReading() { Close(); }

  /// Makes the text the parser's current one, to the end of the scope.
  void Open(const TString& text, const TEncoding* encoding) {
    FFrame.emplace(FParser, text, encoding);
    Track().Stream = FParser.GetStream();
    Track().HasPlaces = true;
  }

 private:
  TKelFuzzyLogicParser& FParser;
  std::optional<TStreamFrame> FFrame;
};

}  // namespace fzy::detail
