#include "fuzzylogic/language/detail/DefinitionText.h"

#include <vector>

#include "fuzzylogic/language/detail/Characters.h"

namespace fzy::detail {
namespace {

/// Characters of a word behind its first one.
void AppendEscaped(std::u16string_view text, TString& word) {
  for (const char16_t ch : text) {
    if (IsBlank(ch) || EndsWord(ch) || ch == EscapeChar) word += EscapeChar;
    word += ch;
  }
}

bool MayBegin(char16_t ch) {
  return !IsBlank(ch) && !IsPunctuation(ch) && ch != QuoteChar && ch != CommentChar &&
         ch != VariableChar;
}

/// A token other than a group.
TString TextOf(const IFuzzyStreamToken& token) {
  switch (token.GetDataType()) {
    case KindOf(fstAtom):
    case KindOf(fstString): {
      const bool quoted = token.GetDataType() == KindOf(fstString);
      const std::optional<TString> word = quoted ? std::nullopt : WordText(token.GetText());
      return word ? *word : StringText(token.GetText());
    }
    case KindOf(fstVariable): {
      TString word(1, VariableChar);
      AppendEscaped(token.GetText(), word);
      return word;
    }
    default:
      return token.ToString();
  }
}

}  // namespace

std::optional<TString> WordText(std::u16string_view text) {
  if (text.empty() || !MayBegin(text[0]) || NumberOfWord(text)) return std::nullopt;
  TString word(1, text[0]);
  AppendEscaped(text.substr(1), word);
  return word;
}

TString StringText(std::u16string_view text) {
  TString quoted(1, QuoteChar);
  for (const char16_t ch : text) {
    if (ch == QuoteChar || ch == EscapeChar) quoted += EscapeChar;
    quoted += ch;
  }
  quoted += QuoteChar;
  return quoted;
}

TString TokenText(std::u16string_view text) {
  const std::optional<TFuzzyNumber> number = NumberOfWord(text);
  if (number && FormatShortest(number->Value).View() == text) return text;
  const std::optional<TString> word = WordText(text);
  const bool sign = text.size() == 1 && IsPunctuation(text[0]);
  return sign || (word && word->View() == text) ? TString(text) : StringText(text);
}

TString ExpressionText(const IFuzzyStreamTokenList& list) {
  struct TLevel {
    const IFuzzyStreamTokenList* List;
    int Next;
    Ref<IFuzzyStreamTokenList> Held;
  };
  TString text;
  bool tight = true;  // nothing stands before, or an opening bracket
  std::vector<TLevel> levels;
  levels.push_back({&list, 0, nullptr});
  for (;;) {
    TLevel& level = levels.back();
    if (level.Next == level.List->GetValueCount()) {
      levels.pop_back();
      if (levels.empty()) return text;
      text += u')';
      tight = false;
      continue;
    }
    const Ref<IFuzzyStreamToken> token = level.List->Get(level.Next++);
    const int kind = token->GetDataType();
    if (!tight && kind != u']') text += u' ';
    tight = kind == u'[' || kind == KindOf(fstList);
    if (kind == KindOf(fstList)) {
      text += u'(';
      const Ref<IFuzzyStreamTokenList> group = token->GetList();
      if (group) levels.push_back({group.Get(), 0, group});
      if (!group) text += u')', tight = false;
    } else {
      text += TextOf(*token);
    }
  }
}

}  // namespace fzy::detail
