#include "fuzzylogic/language/FuzzyLogicTokenStream.h"

#include <algorithm>

#include "fuzzylogic/common/CommonMessages.h"
#include "fuzzylogic/common/HelperFunctions.h"
#include "fuzzylogic/language/FuzzyNumbers.h"
#include "fuzzylogic/vocabulary/FuzzyExceptions.h"

namespace fzy {
namespace {

// What `FinishToken` is asked for beside the codes of punctuation characters.
constexpr int EndType = -1;
constexpr int WordType = 0;
constexpr int LineEndType = 13;
constexpr int StringType = 34;

constexpr bool IsBlank(char16_t ch) { return ch <= 32; }

bool IsPunctuation(int ch) {
  constexpr std::u16string_view characters = u"()[]=&|~";
  return ch > 0 && ch < 128 && characters.find(static_cast<char16_t>(ch)) != TString::npos;
}

bool EndsWord(char16_t ch) {
  constexpr std::u16string_view characters = u"[]()&;<\"|~";
  return characters.find(ch) != TString::npos;
}

bool IsKind(const IFuzzyStreamToken& token, int kind) { return token.GetDataType() == kind; }

int KindOf(TFuzzyStreamTokenType kind) { return static_cast<int>(kind); }

/// Kind, number and text of a word.
void Classify(const TString& word, IFuzzyStreamToken& token) {
  const bool sign = word.size() == 1 && IsNumberSymbol(word[0]);
  if (!word.empty() && word[0] == u'?') {
    token.SetDataType(KindOf(fstVariable));
    token.SetText(word.Slice(1));
  } else if (const auto number = !sign && !word.empty() && IsNumberChar(word[0])
                                     ? ReadFuzzyNumber(word)
                                     : std::optional<TFuzzyNumber>()) {
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

char16_t TFuzzyLogicTokenStream::GetChar() {
  const char16_t ch = TGTextStream::GetChar();
  if (ch == u'\n') ++FLineNumber;
  return ch;
}

TString TFuzzyLogicTokenStream::GetLine() {
  TString line = TGTextStream::GetLine();
  FWhiteSpace += line;
  FWhiteSpace += u"\r\n";
  ++FLineNumber;
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
    if (ch == u'\r' && GetChar(ch)) {
      if (ch == u'\n')
        FWhiteSpace += ch;
      else
        PutBack(ch);
      ch = u'\n';
    }
    if (ch == u'\n' || ch == u'\r') {
      ++FLineNumber;
      return true;
    }
  }
  return false;
}

void TFuzzyLogicTokenStream::SkipBlanksAndComments() {
  for (;;) {
    while (SkipInLineSpaces() && !IsEof()) {
    }
    char16_t ch = 0;
    if (!GetChar(ch)) return;
    if (ch != FCommentChar) return PutBack(ch);
    FWhiteSpace += ch;
    GetLine();
  }
}

TString TFuzzyLogicTokenStream::ReadString(const TString& prefix) {
  const int opening = FLineNumber;
  TString text = prefix;
  char16_t ch = 0;
  char16_t previous = 0;
  bool escaped = false;
  while (GetChar(ch)) {
    if (ch == u'\r' || (ch == u'\n' && previous != u'\r')) ++FLineNumber;
    previous = ch;
    if (!escaped && ch == FQuoteChar) return text;
    escaped = !escaped && ch == FEscapeChar;
    if (!escaped) text += ch;
  }
  throw EFzyParseException(SUnbalancedString, opening);
}

// Tokens

Ref<IFuzzyStreamToken> TFuzzyLogicTokenStream::BuildNextToken() {
  FText = TString();
  SkipBlanksAndComments();
  if (IsEof()) return FinishToken(EndType, FText);
  const char16_t ch = GetChar();
  if (ch == FQuoteChar) {
    FText = ReadString(FText);
    return FinishToken(StringType, FText);
  }
  FText += ch;
  return IsPunctuation(ch) ? FinishToken(ch, FText) : BuildWord();
}

Ref<IFuzzyStreamToken> TFuzzyLogicTokenStream::BuildWord() {
  for (;;) {
    const int line = FLineNumber;
    if (IsEof()) return FinishToken(EndType, FText);
    char16_t ch = GetChar();
    if (IsBlank(ch)) {
      FWhiteSpace += ch;
      const Ref<IFuzzyStreamToken> token = FinishToken(WordType, FText);
      token->SetLineNumber(line);
      // A carriage return ends the line here unless the line feed of a pair still follows.
      if (ch == u'\r' && GetChar(ch)) {
        if (ch != u'\n') ++FLineNumber;
        PutBack(ch);
      }
      return token;
    }
    if (EndsWord(ch)) {
      PutBack(ch);
      return FinishToken(WordType, FText);
    }
    if (ch == FEscapeChar) {
      if (IsEof()) return FinishToken(EndType, FText);
      ch = GetChar();
    }
    FText += ch;
  }
}

Ref<IFuzzyStreamToken> TFuzzyLogicTokenStream::FinishToken(int tokenType, const TString& text) {
  if (tokenType == EndType && !text.empty()) return FinishToken(WordType, text);
  const Ref<TFuzzyStreamToken> token = TFuzzyStreamToken::Create();
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
  FWhiteSpace = TString();
  return token;
}

bool TFuzzyLogicTokenStream::PrepareSExp() {
  FEcho.Rewind();
  FTempStack.clear();  // what an unterminated string left behind
  int depth = 0;
  do {
    FTempStack.push_back(BuildNextToken());
    const IFuzzyStreamToken& token = *FTempStack.back();
    if (IsKind(token, KindOf(fstNone))) break;
    depth += IsKind(token, u'(') ? 1 : IsKind(token, u')') ? -1 : 0;
  } while (depth != 0);
  // The first token read comes to the top. A large construct is turned around in place.
  std::reverse(FTempStack.begin(), FTempStack.end());
  if (FStack.empty()) {
    FStack.swap(FTempStack);
  } else {
    FStack.insert(FStack.end(), FTempStack.begin(), FTempStack.end());
    FTempStack.clear();
  }
  return true;
}

void TFuzzyLogicTokenStream::CountParenthesis(const IFuzzyStreamToken& token,
                                              int direction) noexcept {
  if (IsKind(token, u'(')) FParenthesisLevel += direction;
  if (IsKind(token, u')')) FParenthesisLevel -= direction;
}

Ref<IFuzzyStreamToken> TFuzzyLogicTokenStream::NextToken() {
  if (FStack.empty()) PrepareSExp();
  Ref<IFuzzyStreamToken> token = std::move(FStack.back());
  FStack.pop_back();
  if (FCurrentToken && FCurrentToken->GetLineNumber() < token->GetLineNumber())
    FEcho.Write(u"\r\n");
  FCurrentToken = token;
  FEcho.Write(token->ToString());
  FEcho.Write(u" ");
  CountParenthesis(*token, 1);
  return token;
}

void TFuzzyLogicTokenStream::PutBackToken(const Ref<IFuzzyStreamToken>& token) {
  FStack.push_back(token);
  FCurrentToken = token;
  FEcho.TakeBack(token->ToString().size());
  CountParenthesis(*token, -1);
}

TString TFuzzyLogicTokenStream::Head() {
  const Ref<IFuzzyStreamToken> token = NextToken();
  if (!IsKind(*token, u'(') || FStack.empty()) return {};
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
  FEcho.Rewind();
}

}  // namespace fzy
