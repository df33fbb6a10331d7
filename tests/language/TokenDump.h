#pragma once

#include <string>

#include "fuzzylogic/common/StringStream.h"
#include "fuzzylogic/framework/Format.h"
#include "fuzzylogic/language/FuzzyLogicTokenStream.h"

namespace fzy::test {

inline TFuzzyLogicTokenStream Tokenizer(const TString& text, const TEncoding* encoding = nullptr) {
  return {std::make_unique<TKelStringStream>(text, encoding), encoding};
}

/// A token as "a:word", "s:string", "i:5", "f:0.5", "v:variable", "(", "$" for the end.
inline std::string Name(const IFuzzyStreamToken& token) {
  const int kind = token.GetDataType();
  const std::string text = token.GetText().Utf8();
  const std::string number = FormatShortest(token.GetNumber()).Utf8();
  if (kind == 0) return text == "EOF" ? "$" : "?" + text;
  if (kind == 3 || kind == 4) return (kind == 3 ? "i:" : "f:") + number + text;
  if (kind > 10) return text;
  return std::string(kind == 1 ? "a:" : kind == 2 ? "s:" : kind == 5 ? "v:" : "?:") + text;
}

inline std::string Visible(const TString& text) {
  std::string result;
  for (const char ch : text.Utf8()) {
    if (ch == '\r')
      result += "\\r";
    else if (ch == '\n')
      result += "\\n";
    else
      result += ch;
  }
  return result;
}

/// Tokens up to the end with a blank between, "@n" behind one on another line than the one before.
inline std::string Tokens(TFuzzyLogicTokenStream& stream) {
  std::string text;
  int line = 1;
  for (;;) {
    const Ref<IFuzzyStreamToken> token = stream.NextToken();
    text += Name(*token);
    if (token->GetLineNumber() != line) text += '@' + std::to_string(token->GetLineNumber());
    line = token->GetLineNumber();
    if (token->GetDataType() == 0) return Visible(text);
    text += ' ';
  }
}

inline std::string Tokens(const TString& text, const TEncoding* encoding = nullptr) {
  TFuzzyLogicTokenStream stream = Tokenizer(text, encoding);
  return Tokens(stream);
}

}  // namespace fzy::test
