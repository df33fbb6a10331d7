#include "fuzzylogic/language/FuzzyLogicTokenStream.h"

#include <algorithm>

#include "fuzzylogic/common/CommonMessages.h"
#include "fuzzylogic/language/detail/Characters.h"
#include "fuzzylogic/vocabulary/FuzzyExceptions.h"

namespace fzy {

using detail::EndsWord;
using detail::IsBlank;
using detail::IsPunctuation;

namespace {

// What `FinishToken` is asked for beside the codes of punctuation characters.
constexpr int EndType = -1;
constexpr int WordType = 0;
constexpr int LineEndType = 13;
constexpr int StringType = 34;

bool IsKind(const IFuzzyStreamToken& token, int kind) { return token.GetDataType() == kind; }

/// Kind, number and text of a word.
void Classify(const TString& word, TFuzzyStreamToken& token) {
  if (!word.empty() && word[0] == detail::VariableChar) {
    token.SetDataType(KindOf(fstVariable));
    token.SetText(word.Slice(1));
  } else if (const auto number = detail::NumberOfWord(word)) {
    token.SetDataType(KindOf(number->IsWhole ? fstInteger : fstFloat));
    token.SetNumber(number->Value);
  } else {
    token.SetDataType(KindOf(fstAtom));
    token.SetText(word);
  }
}

}  // namespace

TFuzzyLogicTokenStream::TFuzzyLogicTokenStream(std::unique_ptr<TStream> stream,
                                               const TEncoding* encoding)
    : TGTextStream(std::move(stream), encoding) {}

TFuzzyLogicTokenStream::~TFuzzyLogicTokenStream() = default;

// Characters

/// A line end has been crossed, up to here.
void TFuzzyLogicTokenStream::CountLine() noexcept {
  ++FLineNumber;
  FLineStart = GetPosition();
}

/// The column of the character that comes next; the largest that there is for what lies beyond.
int TFuzzyLogicTokenStream::GetColumn() const noexcept {
  return static_cast<int>(std::clamp<std::int64_t>(GetPosition() - FLineStart + 1, 1, INT32_MAX));
}

char16_t TFuzzyLogicTokenStream::GetChar() {
  const char16_t ch = TGTextStream::GetChar();
  if (ch == u'\n') CountLine();
  return ch;
}

TString TFuzzyLogicTokenStream::GetLine() {
  TString line = TGTextStream::GetLine();
  FWhiteSpace += line;
  FWhiteSpace += u"\r\n";
  CountLine();
  return line;
}

void TFuzzyLogicTokenStream::DiscardUntilEOL() { GetLine(); }

bool TFuzzyLogicTokenStream::SkipInLineSpaces() {
  char16_t ch = 0;
  while (GetChar(ch)) {
    if (!IsBlank(ch)) {
      PutBack(ch);
      return false;
    }
    FWhiteSpace += ch;
    if (ch != u'\r' && ch != u'\n') continue;
    char16_t next = 0;
    if (ch == u'\r' && Peek(next) && next == u'\n') {
      GetChar(next);
      FWhiteSpace += next;
    }
    CountLine();
    return true;
  }
  return false;
}

void TFuzzyLogicTokenStream::SkipBlanksAndComments() {
  char16_t ch = 0;
  while (Peek(ch)) {
    if (IsBlank(ch)) {
      SkipInLineSpaces();
    } else if (ch == FCommentChar) {
      GetChar(ch);
      FWhiteSpace += ch;
      GetLine();
    } else {
      return;
    }
  }
}

TString TFuzzyLogicTokenStream::ReadString(const TString& prefix) {
  const TTokenPlace opening{FLineNumber, std::max(1, GetColumn() - 1)};
  TString text = prefix;
  char16_t ch = 0;
  char16_t previous = 0;
  bool escaped = false;
  while (GetChar(ch)) {
    if (ch == u'\r' || (ch == u'\n' && previous != u'\r'))
      CountLine();
    else if (ch == u'\n')
      FLineStart = GetPosition();
    previous = ch;
    if (!escaped && ch == FQuoteChar) return text;
    escaped = !escaped && ch == FEscapeChar;
    if (!escaped) text += ch;
  }
  FUnbalancedString = opening;
  throw EFzyParseException(SUnbalancedString, opening.Line);
}

// Tokens

/// Reads the next raw token into `FText`, `FPlace` and `FWhiteSpace`; the result is the kind
/// that `FinishToken` makes of it.
int TFuzzyLogicTokenStream::ScanToken() {
  FText.Clear();
  SkipBlanksAndComments();
  FPlace = {FLineNumber, GetColumn()};
  if (IsEof()) return EndType;
  const char16_t ch = GetChar();
  if (ch == FQuoteChar) {
    FText = ReadString(FText);
    MoveToLine();
    return StringType;
  }
  FText += ch;
  return IsPunctuation(ch) ? ch : ScanWord();
}

/// The token that is being read reaches into the current line.
void TFuzzyLogicTokenStream::MoveToLine() noexcept {
  if (FPlace.Line != FLineNumber) FPlace = {FLineNumber, 1};
}

int TFuzzyLogicTokenStream::ScanWord() {
  for (;;) {
    MoveToLine();  // a line feed that ends the word is counted, but not for the word
    if (IsEof()) return EndType;
    char16_t ch = GetChar();
    if (IsBlank(ch)) {
      FWhiteSpace += ch;
      // A carriage return ends the line here unless the line feed of a pair still follows.
      if (ch == u'\r' && !(Peek(ch) && ch == u'\n')) CountLine();
      return WordType;
    }
    if (EndsWord(ch)) {
      PutBack(ch);
      return WordType;
    }
    if (ch == FEscapeChar) {
      if (IsEof()) return EndType;
      ch = GetChar();
    }
    FText += ch;
  }
}

Ref<IFuzzyStreamToken> TFuzzyLogicTokenStream::BuildNextToken() {
  const int type = ScanToken();
  Ref<IFuzzyStreamToken> token = FinishToken(type, FText);
  token->SetLineNumber(FPlace.Line);
  token->SetColumn(FPlace.Column);
  return token;
}

Ref<IFuzzyStreamToken> TFuzzyLogicTokenStream::FinishToken(int tokenType, const TString& text) {
  if (tokenType == EndType && !text.empty()) return FinishToken(WordType, text);
  Ref<TFuzzyStreamToken> token = TFuzzyStreamToken::Create();
  token->SetLineNumber(FLineNumber);
  if (tokenType == WordType) {
    Classify(text, *token);
  } else if (tokenType == StringType) {
    token->SetDataType(KindOf(fstString));
    token->SetText(text);
  } else if (tokenType == LineEndType) {
    token->SetDataType(KindOf(fstAtom));
    token->SetText("CRLF");
  } else if (tokenType == EndType) {
    token->SetText("EOF");
  } else if (IsPunctuation(tokenType)) {
    token->SetDataType(tokenType);
    if (text != token->GetText()) token->SetText(text);
  } else {
    throw EFzyParseException(SInvalidBaseTokenHint, {TString(std::to_string(tokenType))},
                             FLineNumber);
  }
  token->SetWhitespace(FWhiteSpace);
  FWhiteSpace.Clear();
  return token;
}

bool TFuzzyLogicTokenStream::PrepareSExp() {
  FEcho.Rewind();
  // What was read before and not handed out comes after the new construct, as in a stack.
  std::vector<Ref<IFuzzyStreamToken>> earlier;
  while (!FBuffer.IsEmpty()) earlier.push_back(TakeBuffered());
  FStack.insert(FStack.begin(), earlier.rbegin(), earlier.rend());
  const bool stacked = !FStack.empty();
  ScanConstruct();
  if (stacked) {
    std::vector<Ref<IFuzzyStreamToken>> construct;
    while (!FBuffer.IsEmpty()) construct.push_back(TakeBuffered());
    FStack.insert(FStack.end(), construct.rbegin(), construct.rend());
  }
  return true;
}

void TFuzzyLogicTokenStream::ScanConstruct() {
  int depth = 0;
  for (;;) {
    const int type = ScanToken();
    const bool end = type == EndType && FText.empty();
    depth += type == u'(' ? 1 : type == u')' ? -1 : 0;
    FBuffer.Push(type, FPlace, FText, FWhiteSpace);
    FWhiteSpace.Clear();
    if (end || depth == 0) return;
  }
}

Ref<IFuzzyStreamToken> TFuzzyLogicTokenStream::TakeBuffered() {
  FText.Clear();
  FText += FBuffer.GetText();
  // What was read since belongs to a token that is still to come.
  const bool pending = !FWhiteSpace.empty();
  if (pending) std::swap(FWhiteSpace, FPendingSpace);
  FWhiteSpace += FBuffer.GetWhitespace();
  Ref<IFuzzyStreamToken> token = FinishToken(FBuffer.GetType(), FText);
  if (pending) std::swap(FWhiteSpace, FPendingSpace);
  token->SetLineNumber(FBuffer.GetPlace().Line);
  token->SetColumn(FBuffer.GetPlace().Column);
  FBuffer.Pop();
  return token;
}

void TFuzzyLogicTokenStream::CountParenthesis(const IFuzzyStreamToken& token,
                                              int direction) noexcept {
  if (IsKind(token, u'(')) FParenthesisLevel += direction;
  if (IsKind(token, u')')) FParenthesisLevel -= direction;
}

Ref<IFuzzyStreamToken> TFuzzyLogicTokenStream::NextToken() {
  Ref<IFuzzyStreamToken> token;
  if (FStack.empty()) {
    if (FBuffer.IsEmpty()) PrepareSExp();
    token = TakeBuffered();
  } else {
    token = std::move(FStack.back());
    FStack.pop_back();
  }
  if (FCurrentToken && FCurrentToken->GetLineNumber() < token->GetLineNumber())
    FEcho.WriteLineBreak();
  FCurrentToken = token;
  FEcho.Write(*token);
  CountParenthesis(*token, 1);
  return token;
}

void TFuzzyLogicTokenStream::PutBackToken(const Ref<IFuzzyStreamToken>& token) {
  FStack.push_back(token);
  FCurrentToken = token;
  FEcho.TakeBack(*token);
  CountParenthesis(*token, -1);
}

TString TFuzzyLogicTokenStream::PeekNextText() const {
  if (!FStack.empty()) return FStack.back()->ToString();
  return FBuffer.IsEmpty() ? TString() : TString(FBuffer.GetText());
}

TString TFuzzyLogicTokenStream::Head() {
  const Ref<IFuzzyStreamToken> token = NextToken();
  if (!IsKind(*token, u'(') || (FStack.empty() && FBuffer.IsEmpty())) return {};
  if (FStack.empty()) FStack.push_back(TakeBuffered());
  const Ref<IFuzzyStreamToken> head = FStack.back();
  PutBackToken(token);
  if (IsKind(*head, KindOf(fstAtom)))
    return head->GetText().empty() ? head->ToString() : head->GetText();
  return IsKind(*head, u'=') ? TString(u"=") : TString();
}

void TFuzzyLogicTokenStream::MoveToNextConstruct() {
  while (FParenthesisLevel != 0 && !IsKind(*NextToken(), KindOf(fstNone))) {
  }
}

Ref<IFuzzyStreamToken> TFuzzyLogicTokenStream::GetCurrentToken() {
  if (!FCurrentToken) NextToken();
  return FCurrentToken;
}

void TFuzzyLogicTokenStream::Clear() {
  FStack.clear();
  FBuffer.Clear();
  FEcho.Rewind();
}

}  // namespace fzy
