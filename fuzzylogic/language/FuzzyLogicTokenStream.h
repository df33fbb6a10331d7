#pragma once

#include <vector>

#include "fuzzylogic/common/TextStream.h"
#include "fuzzylogic/language/FuzzyStreamToken.h"
#include "fuzzylogic/language/TokenBuffer.h"
#include "fuzzylogic/language/TokenEcho.h"

namespace fzy {

/// Turns definition text into tokens. Tokens are handed out one balanced construct at a time:
/// before the first token of a parenthesised group is seen, the whole group has been read and
/// buffered, in 16 bytes a token and 2 for each of its characters and of the blanks before it.
/// Lines are counted from 1, and so are columns, in UTF-16 units: a tabulator is one unit, a
/// character beyond the basic plane two.
///
/// A character of code 32 or below is a blank. ( ) [ ] = & | ~ are tokens of their own where a
/// token starts; "..." is a string, in which the escape character "\" takes the next one literally;
/// ";" starts a comment up to the end of the line. A word ends at a blank, which is consumed, or
/// before one of [ ] ( ) & ; < " | ~; the escape character inside a word takes the next character
/// literally. A word that starts with "?" is a variable, one that reads as a number a number, any
/// other an atom.
///
/// Time and memory are linear in the text; nothing recurses.
class TFuzzyLogicTokenStream : public TGTextStream {
 public:
  /// Owns `stream`; no encoding means UTF-8.
  TFuzzyLogicTokenStream(std::unique_ptr<TStream> stream, const TEncoding* encoding);
  ~TFuzzyLogicTokenStream() override;

  /// Skips blanks up to and including the next line end; whether there was one.
  virtual bool SkipInLineSpaces();
  /// The next character; a line feed counts a line.
  char16_t GetChar() override;
  using TGTextStream::GetChar;
  /// The rest of the line; it goes to the white space of the next token and counts a line.
  TString GetLine() override;

  /// The next raw token. `NextToken` reads constructs by the same scanner, not through this: to
  /// make tokens in another way override `FinishToken`. At the end of the text, a token of kind
  /// `fstNone` with the text "EOF".
  /// @throws EFzyParseException (`SUnbalancedString`, with the line on which the string opens)
  virtual Ref<IFuzzyStreamToken> BuildNextToken();
  /// Makes the token of a kind: 34 a string, 13 an atom "CRLF", -1 what stands before the end, 0 a
  /// word to be classified, or the code of a punctuation character. The white space read so far is
  /// handed over to the token.
  /// @throws EFzyParseException (`SInvalidBaseTokenHint`) for any other
  virtual Ref<IFuzzyStreamToken> FinishToken(int tokenType, const TString& text);
  /// Forgets what is buffered and rewinds the echo; the position in the text stays.
  virtual void Clear();
  virtual void DiscardUntilEOL();
  /// Takes tokens until as many ")" as "(" were handed out, or the text ends.
  virtual void MoveToNextConstruct();
  /// The next token; at the end of the text, end tokens for ever.
  virtual Ref<IFuzzyStreamToken> NextToken();
  /// Makes a token the next one again; any number of them. It leaves the echo.
  virtual void PutBackToken(const Ref<IFuzzyStreamToken>& token);
  /// Peeks at the word behind the "(" of the next construct; empty when there is none (a token that
  /// is not "(" stays consumed).
  virtual TString Head();

  /// The content of a string whose opening quote was read, appended to `prefix`.
  TString ReadString(const TString& prefix);
  /// Buffers the next construct; always true. A stray ")" makes it read on until the parentheses
  /// balance or the text ends.
  bool PrepareSExp();
  /// The token last handed out or put back; reads one when there is none yet.
  Ref<IFuzzyStreamToken> GetCurrentToken();
  void SetLineNumber(int value) noexcept { FLineNumber = value; }
  /// The token last handed out or put back, or nothing; unlike `GetCurrentToken` it reads none.
  const Ref<IFuzzyStreamToken>& PeekCurrentToken() const noexcept { return FCurrentToken; }
  /// The text of the token that comes next, as far as the construct was read; empty at its end.
  TString PeekNextText() const;
  /// Where the string opens that was found to be unbalanced; line 0 while there was none.
  TTokenPlace GetUnbalancedString() const noexcept { return FUnbalancedString; }
  /// Takes out the next token of a construct that could not be read to its end, for reports about
  /// it; nothing behind the last.
  Ref<IFuzzyStreamToken> TakeUnfinished() { return FBuffer.IsEmpty() ? nullptr : TakeBuffered(); }
  int GetParenthesisLevel() const noexcept { return FParenthesisLevel; }

  /// The echo: the tokens handed out since the current construct began, with line breaks.
  TString ToString() const { return FEcho.ToString(); }

 private:
  void ScanConstruct();
  int ScanToken();
  int ScanWord();
  void SkipBlanksAndComments();
  Ref<IFuzzyStreamToken> TakeBuffered();
  void CountLine() noexcept;
  int GetColumn() const noexcept;
  void MoveToLine() noexcept;
  void CountParenthesis(const IFuzzyStreamToken& token, int direction) noexcept;

  TTokenBuffer FBuffer;                        // the rest of the construct that was read
  std::vector<Ref<IFuzzyStreamToken>> FStack;  // tokens put back; the top is the next token
  int FLineNumber = 1;
  std::int64_t FLineStart = 0;  // the position of its first character
  TTokenPlace FPlace{1, 1};     // of the token that is being read
  TTokenPlace FUnbalancedString{0, 0};
  TString FText;
  TTokenEcho FEcho;
  Ref<IFuzzyStreamToken> FCurrentToken;
  int FParenthesisLevel = 0;
  TString FWhiteSpace;
  TString FPendingSpace;
  char16_t FCommentChar = u';';
  char16_t FQuoteChar = u'"';
  char16_t FEscapeChar = u'\\';
};

}  // namespace fzy
