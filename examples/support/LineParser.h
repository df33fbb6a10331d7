#pragma once

#include "fuzzylogic/FuzzyLogic.h"

namespace support {

/// Gives every error its line: one of a set or a variable, which knows nothing of the text that it
/// is made from, becomes one of the text.
class LineParser final : public fzy::TKelFuzzyLogicParser {
 public:
  using TKelFuzzyLogicParser::ParseFuzzyVariable;

  fzy::TFuzzyVariable* ParseFuzzyVariable() override {
    try {
      return TKelFuzzyLogicParser::ParseFuzzyVariable();
    } catch (const fzy::EFzyParseException&) {
      throw;
    } catch (const fzy::EFzyException& error) {
      throw fzy::EFzyParseException(error.GetMessage(), GetLineNumber());
    }
  }
};

}  // namespace support
