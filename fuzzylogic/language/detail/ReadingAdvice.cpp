#include "fuzzylogic/language/detail/ReadingAdvice.h"

#include <algorithm>
#include <array>

#include "fuzzylogic/common/Spelling.h"
#include "fuzzylogic/language/detail/Characters.h"
#include "fuzzylogic/language/detail/DefinitionText.h"
#include "fuzzylogic/vocabulary/FuzzyKeywords.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

// Advice on errors: a table from the error's message to the function that looks at the words around
// it for what people often mean by them.

namespace fzy::detail {
namespace {

constexpr std::array<std::u16string_view, 3> Clauses{u"range", u"units", u"values"};
constexpr std::array<std::u16string_view, 5> Shapes{u"tri", u"s", u"z", u"pi", u"beta"};
/// Signs that other languages write for words of this one.
constexpr std::array<std::pair<int, const char16_t*>, 4> Signs{
    {{u'&', u"and"}, {u'|', u"or"}, {u'~', u"not"}, {u'=', u""}}};
constexpr std::size_t LongestShownPart = 60;
constexpr std::size_t LongestAdvisedWord = 256;  // longer ones were not mistyped
constexpr int MostOrderedNumbers = 3;
constexpr std::size_t MostShownTerms = 8;

template <class Names>
bool Contains(const Names& names, std::u16string_view word) {
  return std::any_of(names.begin(), names.end(),
                     [&](std::u16string_view name) { return name == word; });
}

/// Begins a part of a definition, wherever it stands behind a "(".
bool IsOpener(std::u16string_view word) {
  return word == u"term" || word == u"deffuzzy" || Contains(Clauses, word);
}

bool IsNumberKind(const IFuzzyStreamToken& token) {
  return token.GetDataType() == KindOf(fstInteger) || token.GetDataType() == KindOf(fstFloat);
}

TString Spelling(const TSpellingGuess& guess) {
  if (guess.GetName().empty()) return {};
  const std::optional<TString> word = WordText(guess.GetName());
  return FormatText(SFzyAdviseSpelling, {word ? *word : guess.GetName()});
}

template <class Names>
TString SpellingAmong(const Names& names, const TString& word) {
  TSpellingGuess guess(word);
  for (const std::u16string_view name : names) guess.Consider(name);
  return Spelling(guess);
}

/// Of a word with commas where a number belongs.
TString AdviceOnCommas(const TString& word) {
  const std::size_t comma = word.Find(u",");
  if (comma == TString::npos) return {};
  const TString pointed = word.Slice(0, comma) + u"." + word.Slice(comma + 1);
  const bool last = comma + 1 == word.size();
  if (!last && comma > 0 && NumberOfWord(pointed)) return FormatText(SFzyAdviseDecimal, {pointed});
  return NumberOfWord(word.Slice(0, comma)) ? SFzyAdviseComma.Get() : TString();
}

/// The numbers of a call in the order in which the function takes them, if they stand otherwise:
/// from left to right, but the center of a pi comes last.
TString OrderedCall(const TString& function, IFuzzyStreamTokenList& arguments) {
  std::vector<TFzyFloat> numbers;
  for (int i = 0; i < arguments.GetValueCount(); ++i) {
    if (!IsNumberKind(*arguments.Get(i)) || i == MostOrderedNumbers) return {};
    numbers.push_back(arguments.Get(i)->GetNumber());
  }
  const bool isPi = function.View() == u"pi";
  if (isPi ? numbers.size() != 3 : !Contains(Shapes, function) || function.View() == u"beta")
    return {};
  const std::vector<TFzyFloat> given = numbers;
  std::sort(numbers.begin(), numbers.end());
  if (isPi) std::swap(numbers[1], numbers[2]);
  if (numbers == given) return {};
  TString call = function;
  for (const TFzyFloat number : numbers) call += u" " + FormatShortest(number);
  return call;
}

/// Finds advice on the error under way of one reading.
class TAdviser {
 public:
  explicit TAdviser(const TReadingTrack& track)
      : FTrack(track),
        FCause(track.Cause),
        FToken(track.Cause.Word ? track.Cause.Word : track.CurrentToken()) {
    if (FToken) FWord = FToken->GetText();
  }

  TString Advise() const {
    if (!FToken || FCause.At != FTrack.CurrentToken()) return {};
    if (!FCause.Error) return Backwards();
    if (Kind() == KindOf(fstNone)) return Unclosed();
    for (const auto& [error, advise] : Table)
      if (FCause.Error == error) return (this->*advise)();
    return {};
  }

 private:
  using TAdvise = TString (TAdviser::*)() const;
  static const std::array<std::pair<const TMessage*, TAdvise>, 15> Table;

  int Kind() const { return FToken->GetDataType(); }
  bool IsAtom() const { return Kind() == KindOf(fstAtom); }
  bool Is(std::u16string_view word) const { return IsAtom() && FWord.View() == word; }
  bool IsClauseWord() const { return IsAtom() && Contains(Clauses, FWord); }
  TString NextText() const { return FTrack.Stream ? FTrack.Stream->PeekNextText() : TString(); }
  bool IsKnown(std::u16string_view name) const {
    return Contains(FCause.Terms, name) || NumberOfWord(name).has_value();
  }

  // Brackets

  /// Names the innermost bracket that is open.
  TString Unclosed() const {
    const auto naming = [](const char16_t* keyword, const THead& head) {
      const TString word = head.Name ? keyword + head.Name->GetText() : TString();
      return FormatText(SFzyAdviseUnclosed, {word, std::int64_t{head.Open.Line}});
    };
    if (FTrack.Term.IsOpen()) return naming(u"term ", FTrack.Term);
    if (FTrack.Clause) return OpenClause();
    return FTrack.Variable.IsOpen() ? naming(u"deffuzzy ", FTrack.Variable) : TString();
  }

  /// Whether a part of the definition begins here, though what stands before it is still open.
  bool BeginsPart() const {
    if (IsAtom()) return IsOpener(FWord);
    return Kind() == u'(' ? IsOpener(NextText()) : IsGroupOfPart(*FToken);
  }
  static bool IsGroupOfPart(const IFuzzyStreamToken& token) {
    const Ref<IFuzzyStreamTokenList> group =
        token.GetDataType() == KindOf(fstList) ? token.GetList() : nullptr;
    return group && group->GetValueCount() > 0 && IsOpener(group->Get(0)->GetText());
  }

  TString OnMissingClose() const {
    if (BeginsPart()) return Unclosed();
    const TString next = NextText();
    if (FTrack.Term.IsOpen()) {
      if (IsNumberKind(*FToken)) return SFzyAdvisePoint;
      if (Kind() == u'(') return NumberOfWord(next) ? SFzyAdvisePointList.Get() : TString();
      return FormatText(SFzyAdviseLeadingGroup, {WordOf(*FToken)});
    }
    return FTrack.Clause && FTrack.Clause->GetText() == "units" ? SFzyAdviseUnits.Get() : TString();
  }

  TString OnMissingOpen() const {
    if (FTrack.Variable.IsFollowedBy(*FToken) && FTrack.Variable.Name && IsAtom() &&
        !IsClauseWord())
      return AdviceOneWord(*FTrack.Variable.Name, *FToken);
    return IsClauseWord() ? FormatText(SFzyAdviseClauseBrackets, {FWord}) : TString();
  }

  TString OnUnexpected() const {
    if (Kind() == u')') return SFzyAdviseSurplus;
    return Is(u"deffuzzy") ? FormatText(SFzyAdviseClauseBrackets, {FWord}) : TString();
  }

  // Words of the grammar

  TString OnExpectedDefinition() const {
    if (Is(u"term") || IsClauseWord())
      return FTrack.HasVariables ? SFzyAdviseSurplus.Get() : TString();
    return SpellingAmong(std::array{std::u16string_view(u"deffuzzy")}, FWord);
  }

  TString OnExpectedTerm() const {
    if (!FTrack.Term.IsOpen())
      return IsAtom() ? FormatText(SFzyAdviseTermBrackets, {FWord}) : TString();
    if (Is(u"deffuzzy") || IsClauseWord()) return OpenClause();
    return SpellingAmong(std::array{std::u16string_view(u"term")}, FWord);
  }

  TString OpenClause() const {
    if (!FTrack.Clause) return {};
    return FormatText(SFzyAdviseUnclosed,
                      {FTrack.Clause->GetText(), std::int64_t{FTrack.Clause->GetLineNumber()}});
  }

  TString OnExpectedKeyword() const {
    if (Is(u"deffuzzy")) return Unclosed();
    if (Is(u"term")) return FTrack.HasTerms ? SFzyAdviseSurplus : SFzyAdviseTermPlace;
    return IsAtom() ? SpellingAmong(Clauses, FWord) : TString();
  }

  TString OnMissingName() const {
    const bool isHead = !(FTrack.Term.IsOpen() ? FTrack.Term : FTrack.Variable).Name;
    if (IsNumberKind(*FToken)) return isHead ? SFzyAdviseNumberName : SFzyAdvisePointList;
    if (!isHead || Kind() != KindOf(fstString)) return {};
    const std::optional<TString> word = WordText(FWord);
    return word ? FormatText(SFzyAdviseName, {*word}) : TString();
  }

  TString OnExpectedNumber() const {
    if (BeginsPart()) return Unclosed();
    return IsAtom() ? AdviceOnCommas(FWord) : TString();
  }

  // Shapes

  TString OnArgumentNumber() const {
    if (FWord == "s" || FWord == "z") return FormatText(SFzyAdviseTwoNumbers, {FWord, FWord});
    return FWord == "beta" ? SFzyAdviseBeta.Get() : TString();
  }

  TString OnUnknownFunction() const {
    if (IsNumberKind(*FToken)) return SFzyAdvisePointList;
    if (BeginsPart()) return Unclosed();
    if (IsExpression()) {
      TString text = FWord;
      if (FCause.Call && FCause.Call->GetValueCount() > 0)
        text += u" " + ExpressionText(*FCause.Call);
      return FormatText(SFzyAdviseGroup,
                        {text.size() <= LongestShownPart ? text : TString(u"...")});
    }
    const TString spelling = SpellingAmong(Shapes, FWord);
    if (!spelling.empty()) return spelling;
    TString shapes;
    for (const std::u16string_view shape : Shapes)
      shapes += (shapes.empty() ? TString() : TString(u", ")) + TString(shape);
    return FormatText(SFzyAdviseShapes, {shapes});
  }

  /// Whether the call can be an expression in the wrong brackets.
  bool IsExpression() const {
    if (IsReservedFuzzyWord(FWord) || Contains(FCause.Terms, FWord)) return true;
    for (int i = 0; FCause.Call && i < FCause.Call->GetValueCount(); ++i)
      if (IsReservedFuzzyWord(FCause.Call->Get(i)->GetText())) return true;
    return false;
  }

  /// A shape refused its numbers.
  TString Backwards() const { return FCause.Call ? AdviceOnOrder(FWord, *FCause.Call) : TString(); }

  // Expressions

  TString OnInvalidItem() const {
    for (const auto& [sign, word] : Signs)
      if (Kind() == sign && *word) return FormatText(SFzyAdviseSign, {TString(word)});
    if (!IsAtom() && Kind() != KindOf(fstString)) return {};
    if (FCause.Follower && IsGroupOfPart(*FCause.Follower)) return Unclosed();
    if (FWord.size() > LongestAdvisedWord) return {};
    for (const TString& advice : {AdviceOnCommas(FWord), AdviceOnBlanks()})
      if (!advice.empty()) return advice;
    if (FTrack.Term.IsFollowedBy(*FToken) && FCause.Follower &&
        FCause.Follower->GetDataType() == KindOf(fstList))
      return AdviceOneWord(*FTrack.Term.Name, *FToken);
    if (FTrack.Term.Name && FTrack.Term.Name->GetText() == FWord) return SFzyAdviseItself;
    const TString spelling = SpellingOfOperand();
    return spelling.empty() ? AdviceOnTerms() : spelling;
  }

  /// Of an operator that became part of a word.
  TString AdviceOnBlanks() const {
    const std::u16string_view word = FWord;
    for (std::size_t at = 0; at < word.size(); ++at) {
      for (std::size_t length = std::min<std::size_t>(3, word.size() - at); length > 0; --length) {
        const std::u16string_view sign = word.substr(at, length);
        if (!IsFuzzyHedgeOperator(sign)) continue;
        const std::u16string_view left = word.substr(0, at), right = word.substr(at + length);
        const bool number = NumberOfWord(right).has_value();
        const bool hyphen = sign == u"-" || sign == u"+";  // names may hold one, too
        if (left.empty()
                ? !IsKnown(right)
                : !(number && !hyphen) && !(IsKnown(left) && (right.empty() || IsKnown(right))))
          continue;
        TString parts(left);
        for (const std::u16string_view part : {sign, right})
          if (!part.empty()) parts += (parts.empty() ? TString() : TString(u" ")) + TString(part);
        return FormatText(SFzyAdviseBlanks, {parts});
      }
    }
    return {};
  }

  TString SpellingOfOperand() const {
    TSpellingGuess guess(FWord);
    for (auto name = FCause.Terms.rbegin(); name != FCause.Terms.rend(); ++name)
      guess.Consider(*name);
    for (const std::u16string_view hedge : HedgeNames) guess.Consider(hedge);
    for (const auto* keywords : {&FuzzyIntersectionKeywords, &FuzzyUnionKeywords})
      for (const std::u16string_view keyword : *keywords) guess.Consider(keyword);
    return Spelling(guess);
  }

  TString AdviceOnTerms() const {
    if (FCause.HasAutoTerms && (FWord == SLowFuzzyTerm.Get() || FWord == SMediumFuzzyTerm.Get() ||
                                FWord == SHighFuzzyTerm.Get()))
      return SFzyAdviseAutoTerm;
    if (FCause.Terms.empty()) return SFzyAdviseNoTerms;
    TString names;
    for (std::size_t i = 0; i < std::min(MostShownTerms, FCause.Terms.size()); ++i)
      names += (i > 0 ? TString(u", ") : TString()) + FCause.Terms[i];
    if (FCause.Terms.size() > MostShownTerms) names += u", ...";
    return FormatText(SFzyAdviseTermsAbove, {names});
  }

  TString OnMissingOperand() const {
    if (FTrack.Term.IsFollowedBy(*FToken) && FTrack.Term.HasComment && !IsFuzzyHedge(FWord))
      return SFzyAdviseComment;
    return IsFuzzyHedge(FWord) ? SFzyAdviseHedge : SFzyAdviseOperator;
  }

  TString OnUnmatchedBracket() const {
    return Kind() == u'[' ? SFzyAdviseSquareClose : SFzyAdviseSquareOpen;
  }

  TString OnInvalidPair() const { return SFzyAdvisePoint; }

  const TReadingTrack& FTrack;
  const TFaultCause& FCause;
  const Ref<IFuzzyStreamToken> FToken;
  TString FWord;
};

const std::array<std::pair<const TMessage*, TAdviser::TAdvise>, 15> TAdviser::Table{
    {{&SFzyMissingCloseParens, &TAdviser::OnMissingClose},
     {&SFzyMissingOpenParens, &TAdviser::OnMissingOpen},
     {&SFzyUnexpectedToken, &TAdviser::OnUnexpected},
     {&SFzyExpectedFuzzyDefinition, &TAdviser::OnExpectedDefinition},
     {&SFzyExpectedFuzzySet, &TAdviser::OnExpectedTerm},
     {&SFzyExpectedKeyword, &TAdviser::OnExpectedKeyword},
     {&SFzyMissingName, &TAdviser::OnMissingName},
     {&SFzyExpectedNumber, &TAdviser::OnExpectedNumber},
     {&SFzyArgTypeWrong, &TAdviser::OnExpectedNumber},
     {&SFzyArgNumWrong, &TAdviser::OnArgumentNumber},
     {&SUnknownFunctionName, &TAdviser::OnUnknownFunction},
     {&SFzyInvalidToken, &TAdviser::OnInvalidItem},
     {&SFzyMissingOperand, &TAdviser::OnMissingOperand},
     {&SFzyUnmatchedBracket, &TAdviser::OnUnmatchedBracket},
     {&SFzyInvalidValuePair, &TAdviser::OnInvalidPair}}};

}  // namespace

TString AdviceFor(const TReadingTrack& track) {
  const TString advice = TAdviser(track).Advise();
  if (!track.Name) return advice;
  const TString& name = track.Name->GetText();
  return advice.empty() ? FormatText(SFzyAdviseChangeText, {name})
                        : FormatText(SFzyAdviseNamedText, {name, advice});
}

TString AdviceOnOrder(const TString& function, IFuzzyStreamTokenList& arguments) {
  const TString call = OrderedCall(function, arguments);
  return call.empty() ? call : FormatText(SFzyAdviseOrder, {call});
}

TString AdviceOneWord(const IFuzzyStreamToken& first, const IFuzzyStreamToken& second) {
  const TString name = first.GetText() + u"-" + second.GetText();
  const std::optional<TString> word = WordText(name);
  return FormatText(SFzyAdviseOneWord, {word ? *word : name});
}

}  // namespace fzy::detail
