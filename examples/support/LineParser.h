#pragma once

#include <type_traits>

#include "fuzzylogic/FuzzyLogic.h"

namespace support {

/// Gives every error its line: one of a set or a variable, which knows nothing of the text that it
/// is made from, becomes one of the text.
class LineParser final : public fzy::TKelFuzzyLogicParser {
 public:
  using TKelFuzzyLogicParser::ParseFuzzyVariable;
  using TKelFuzzyLogicParser::ParseFuzzyVariableIntf;

  fzy::TFuzzyVariable* ParseFuzzyVariable() override {
    return WithLine([this] { return TKelFuzzyLogicParser::ParseFuzzyVariable(); });
  }
  fzy::Ref<fzy::IFuzzyVariable> ParseFuzzyVariableIntf() override {
    return WithLine([this] { return TKelFuzzyLogicParser::ParseFuzzyVariableIntf(); });
  }

 private:
  template <class Parse>
  std::invoke_result_t<Parse> WithLine(Parse parse) {
    try {
      return parse();
    } catch (const fzy::EFzyParseException&) {
      throw;
    } catch (const fzy::EFzyException& error) {
      throw fzy::EFzyParseException(error.GetMessage(), GetLineNumber());
    }
  }
};

}  // namespace support
