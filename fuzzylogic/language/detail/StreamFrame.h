#pragma once

#include <memory>

#include "fuzzylogic/common/StringStream.h"
#include "fuzzylogic/language/KelFuzzyLogicParser.h"

namespace fzy::detail {

/// The tokenizer of one text, the parser's current one from here to the end of the scope. Frames
/// end in the reverse order of their beginning.
class TStreamFrame {
 public:
  TStreamFrame(TKelFuzzyLogicParser& parser, const TString& text, const TEncoding* encoding)
      : FPin(&parser),
        FParser(parser),
        FKept(parser.FStream),
        FStream(parser.CreateStream(std::make_unique<TKelStringStream>(text, encoding), encoding)) {
    FParser.FStream = FStream.get();
  }
  TStreamFrame(const TStreamFrame&) = delete;
  TStreamFrame& operator=(const TStreamFrame&) = delete;
  ~TStreamFrame() { FParser.FStream = FKept; }

 private:
  TPin FPin;
  TKelFuzzyLogicParser& FParser;
  TFuzzyLogicTokenStream* FKept;
  std::unique_ptr<TFuzzyLogicTokenStream> FStream;
};

}  // namespace fzy::detail
