#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "fuzzylogic/common/PostFix.h"
#include "fuzzylogic/framework/InterfaceList.h"
#include "fuzzylogic/language/detail/ExpressionItems.h"
#include "fuzzylogic/language/detail/ReadingAdvice.h"
#include "fuzzylogic/language/detail/ReadingWarnings.h"
#include "fuzzylogic/language/detail/StreamFrame.h"
#include "fuzzylogic/vocabulary/FuzzyKeywords.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy::detail {

/// Evaluates fuzzy expressions against a variable of one object model, on a stack of its own: texts
/// that name other texts (?name) are nested in frames here, not in calls. `Model` says how sets are
/// held, found, added, copied and told about.
template <class Model>
class TExpressionEvaluator {
 public:
  using TVariable = typename Model::TVariable;
  using TSet = typename Model::TSet;

  TExpressionEvaluator(TKelFuzzyLogicParser& parser, const TVariable& variable)
      : FParser(parser), FNotes(TReadingNotes::Of(parser)), FVariable(variable), FHeld(variable) {
    FNotes.Track()->Name = nullptr;
  }
  TExpressionEvaluator(const TExpressionEvaluator&) = delete;
  TExpressionEvaluator& operator=(const TExpressionEvaluator&) = delete;
  ~TExpressionEvaluator() {
    while (!FFrames.empty()) FFrames.pop_back();  // the innermost tokenizer goes first
  }

  // Each evaluates one thing; an evaluator serves one call.

  /// The parser's current text.
  TSet EvalText() {
    Spend(0);
    FFrames.emplace_back();
    OpenList(FParser.ParseTokenList());
    return Run();
  }
  /// Leaves the list in postfix order. No list is an empty one.
  TSet EvalList(const Ref<IFuzzyStreamTokenList>& list) {
    FFrames.emplace_back();
    OpenList(list ? list : TFuzzyStreamTokenList::Create());
    return Run();
  }
  TSet EvalToken(const Ref<IFuzzyStreamToken>& token) {
    try {
      Take(token);
    } catch (...) {
      NoteFault(token);
      throw;
    }
    return Run();
  }

 private:
  using THeldSet = typename Model::THeldSet;

  /// A set on the stack, with the number that it stands for when it is nothing else: the range may
  /// have moved the set.
  struct TOperand {
    THeldSet Set;
    std::optional<TFzyFloat> Number;
  };

  /// A list that is being evaluated.
  struct TFrame {
    std::unique_ptr<TStreamFrame> Stream;  // of a text
    Ref<IFuzzyStreamToken> Name;           // the ?name whose value this is
    Ref<IFuzzyStreamTokenList> List;       // in postfix order
    int Next = 0;                          // the token that comes next
    std::size_t Base = 0;                  // the operands below belong to frames outside
    TGap Gap;                              // where an operator is missing
  };

  static constexpr const char* Method = "EvalFuzzyExpression";
  static constexpr std::size_t MostNestedNames = 1000;
  // What the sets made by one call may take, in characters of their names and expressions: those of
  // a set hold those of its operands, so that a text of a few hundred kilobytes could ask for more
  // memory than there is. One set may take less, because terms of the counted model keep their
  // expressions and each may double those before it.
  static constexpr std::size_t MostCharacters = std::size_t{1} << 27;
  static constexpr std::size_t MostCharactersOfSet = std::size_t{1} << 20;
  static constexpr std::size_t CharactersOfSet = 128;  // what else a set takes

  /// A number that was moved into the range, which matters unless it is taken as a number.
  struct TMoved {
    Ref<IFuzzyStreamToken> Token;
    TFzyFloat Number;
  };

  /// Nothing when the variable went meanwhile, because its sets go with it.
  TSet Run() {
    try {
      while (!FFrames.empty() && !IsGone()) {
        TFrame& frame = FFrames.back();
        if (frame.Next < frame.List->GetValueCount())
          Step(frame.List->Get(frame.Next++));
        else
          CloseFrame();
      }
    } catch (...) {
      NoteFault();
      throw;
    }
    return IsGone() ? TSet() : FOperands.back().Set.Get();
  }

  /// Adds to the error under way the token that was being evaluated, by default that of the list.
  void NoteFault(const Ref<IFuzzyStreamToken>& token = nullptr) {
    TFaultCause& cause = FNotes.Cause();
    const TFrame* frame = FFrames.empty() ? nullptr : &FFrames.back();
    if (frame && frame->List && frame->Next > 0 && !cause.Word)
      cause.Word = frame->List->Get(frame->Next - 1);
    if (!cause.Word) cause.Word = token;
    if (frame && frame->Gap.Left && frame->Gap.Left == cause.Word)
      cause.Follower = frame->Gap.Right;
    NoteTerms<Model>(FParser, FHeld.Get());
  }

  /// The token in the text that is being read itself: the ?name for a token of what it stands for.
  const Ref<IFuzzyStreamToken>& OuterToken(const Ref<IFuzzyStreamToken>& token) const {
    const Ref<IFuzzyStreamToken>& name = FNotes.Track()->Name;
    return name ? name : token;
  }

  /// Tells what is read silently, before the result is told.
  void Warn() {
    const TGap gap = FFrames.back().Gap;
    if (gap.Left) WarnOfGap(FNotes, gap);
    if (FFrames.size() > 1 || FMoved.empty() || IsGone()) return;
    const TFzyFloat range[] = {FVariable->GetMinimum(), FVariable->GetMaximum()};
    for (const TMoved& moved : std::exchange(FMoved, {}))
      if (moved.Token != gap.Right)  // that one was meant otherwise
        WarnOfMoved(FNotes, moved.Token, moved.Number, range[0], range[1]);
  }

  bool IsGone() const { return FVariable && !FHeld.Get(); }

  void OpenText(const TString& text, const Ref<IFuzzyStreamToken>& name) {
    Spend(0);
    TFrame& frame = FFrames.emplace_back();
    frame.Stream = std::make_unique<TStreamFrame>(FParser, text, nullptr);
    frame.Name = name;
    OpenList(FParser.ParseTokenList());
  }

  void OpenList(const Ref<IFuzzyStreamTokenList>& list) {
    std::vector<TExpressionToken> infix;
    infix.reserve(static_cast<std::size_t>(list->GetValueCount()));
    for (int i = 0; i < list->GetValueCount(); ++i)
      if (Ref<IFuzzyStreamToken> token = list->Get(i)) infix.emplace_back(std::move(token));
    FFrames.back().Gap = FindGap(infix);
    const Ref<IInterfaceList> postfix = TInterfaceList::Create();
    try {
      for (const TExpressionToken& item : PostFix(infix, TExpressionRules()))
        postfix->Add(item.Token);
    } catch (const EUnmatchedBracket& error) {
      const Ref<IFuzzyStreamToken>& bracket = infix[error.GetIndex()].Token;
      FParser.ParseError(Method, SFzyUnmatchedBracket, {bracket->ToString()}, bracket);
    }
    list->Clear();
    FParser.FillExpression(postfix, list);
    FFrames.back().List = list;
    FFrames.back().Base = FOperands.size();
  }

  void CloseFrame() {
    Warn();
    if (IsGone()) return;
    const bool empty = FOperands.size() == FFrames.back().Base;
    if (empty) FOperands.push_back(EmptySet());
    TOperand result = std::move(FOperands.back());
    MakeOwn(result);
    TSet set = result.Set.Get();
    Model::FireEvalExpression(FParser, FVariable, *FFrames.back().List, set);
    if (set != result.Set.Get()) {
      result = {THeldSet(set), std::nullopt};
      MakeOwn(result);
    }
    while (FOperands.size() > FFrames.back().Base) FOperands.pop_back();
    const Ref<IFuzzyStreamToken> name = FFrames.back().Name;
    FFrames.pop_back();
    if (name && FNotes.Track()->Name == name) FNotes.Track()->Name = nullptr;
    if (name && result.Set.Get()) result.Set.Get()->SetName(Allowed(name->ToString()));
    FOperands.push_back(std::move(result));
  }

  void Step(const Ref<IFuzzyStreamToken>& token) {
    switch (ClassifyExpressionItem(*token)) {
      case TExpressionItem::Operand:
        return Take(token);
      case TExpressionItem::Hedge:
        return ApplyHedge(*token);
      case TExpressionItem::HedgeOperator:
        return ApplyHedgeOperator(*token);
      default:
        return Combine(*token);
    }
  }

  /// The uppermost operand of the list that is being evaluated.
  TOperand& Top(const IFuzzyStreamToken& item) {
    if (FOperands.size() == FFrames.back().Base)
      FParser.ParseError(Method, SFzyMissingOperand, {item.ToString()});
    return FOperands.back();
  }

  TOperand Pop(const IFuzzyStreamToken& item) {
    TOperand operand = std::move(Top(item));
    FOperands.pop_back();
    return operand;
  }

  void ApplyHedge(const IFuzzyStreamToken& item) {
    TFuzzyHedge hedge{};
    IsFuzzyHedge(item.GetText(), hedge);
    TOperand& operand = Top(item);
    MakeOwn(operand);
    const TSet set = operand.Set.Get();
    if (set) operand = Made(set->Hedge(hedge));
  }

  void ApplyHedgeOperator(const IFuzzyStreamToken& item) {
    TBaseFuzzyHedge hedge{};
    bool modifyY = true;
    IsFuzzyHedgeOperator(item.GetText(), hedge, modifyY);
    const TOperand value = Pop(item);
    if (value.Number && !FMoved.empty() && FMoved.back().Number == *value.Number) FMoved.pop_back();
    TOperand& operand = Top(item);
    MakeOwn(operand);
    const TSet set = operand.Set.Get();
    if (!set || (!value.Number && !value.Set.Get())) {
      operand = Made(nullptr);
      return;
    }
    const TFzyFloat number = value.Number ? *value.Number : value.Set.Get()->MeanOfMaxima();
    operand = Made(set->Hedge(hedge, number, modifyY));
  }

  void Combine(const IFuzzyStreamToken& item) {
    bool isUnion = true;
    TFuzzyOperation operation{};
    IsFuzzyKeyword(item.GetText(), isUnion, operation);
    const TOperand a = Pop(item);
    const TOperand b = Pop(item);
    TSet result{};
    if (a.Set.Get() && b.Set.Get()) {
      result = isUnion ? b.Set.Get()->Union(a.Set.Get(), operation)
                       : b.Set.Get()->Intersection(a.Set.Get(), operation);
    }
    if (result) result->SetDefined(false);  // a form designer defines every set
    FOperands.push_back(Made(result));
  }

  /// A set that was made or changed on the way.
  TOperand Made(const TSet& set, std::optional<TFzyFloat> number = std::nullopt) {
    TOperand operand{THeldSet(set), number};
    if (set) Spend(Model::CountCharacters(set));
    return operand;
  }

  void Spend(std::size_t characters) {
    if (characters > MostCharactersOfSet) RefuseSize(MostCharactersOfSet);
    FCharacters += CharactersOfSet + characters;
    if (FCharacters > MostCharacters) RefuseSize(MostCharacters);
  }

  [[noreturn]] void RefuseSize(std::size_t limit) {
    FParser.ParseError(Method, SFzyExpressionTooLarge, {static_cast<std::int64_t>(limit)});
  }

  /// A name that a set may have.
  const TString& Allowed(const TString& name) {
    if (IsReservedFuzzyWord(name)) FParser.ParseError(Method, SInvalidFuzzySetName, {name});
    return name;
  }

  /// A new set under a name.
  TOperand Added(const TString& name, std::optional<TFzyFloat> number = std::nullopt) {
    return Made(Model::AddSetNamed(FParser, FVariable, Allowed(name)), number);
  }

  /// Replaces a term of the variable by a copy, which may be changed and named.
  void MakeOwn(TOperand& operand) {
    const TSet set = operand.Set.Get();
    if (set && set->GetDefined()) operand = Made(Model::CopySet(FParser, FVariable, set));
  }

  /// Puts the set of one operand on the stack, or opens the text that it names.
  void Take(const Ref<IFuzzyStreamToken>& token) {
    if (!FVariable) FParser.ParseError(Method, SFzyUndefinedVariable);
    if (!token) return FOperands.push_back(EmptySet());
    switch (token->GetDataType()) {
      case KindOf(fstVariable):
        return OpenName(token);
      case KindOf(fstAtom):
      case KindOf(fstString):
        return FOperands.push_back(TermOf(*token));
      case KindOf(fstInteger):
      case KindOf(fstFloat):
        return FOperands.push_back(NumberOf(token));
      case KindOf(fstList):
        return FOperands.push_back(GroupOf(*token));
      default: {
        const TSet payload = Model::PayloadOf(*token);
        if (!payload) Refuse(*token);
        FOperands.push_back({THeldSet(payload), std::nullopt});
      }
    }
  }

  [[noreturn]] void Refuse(const IFuzzyStreamToken& token) {
    FParser.ParseError(Method, SFzyInvalidToken, {token.ToString()});
  }

  TOperand EmptySet() {
    if (!FVariable) FParser.ParseError(Method, SFzyUndefinedVariable);
    const TSet found = Model::FindSet(FVariable, SEmptyFuzzy);
    return found ? TOperand{THeldSet(found), std::nullopt} : Added(SEmptyFuzzy);
  }

  TOperand TermOf(const IFuzzyStreamToken& token) {
    const TString& name = token.GetText();
    if (IsEmptyFuzzyName(name)) return EmptySet();
    const TSet found = Model::FindSet(FVariable, name);
    if (!found) Refuse(token);
    return {THeldSet(found), std::nullopt};
  }

  TOperand NumberOf(const Ref<IFuzzyStreamToken>& token) {
    const TFzyFloat number = token->GetNumber();
    const TString text = token->ToString();
    TOperand operand = Added(text, number);
    if (operand.Set.Get()) operand.Set.Get()->CreateTriangleFunctionValues(number, number, number);
    if (operand.Set.Get()) Model::NoteNumber(operand.Set.Get(), text);
    const TFuzzySet* set = Model::EngineOf(operand.Set.Get());
    if (set && IsOutside(number, set->GetXRange(1), set->GetXRange(0)) &&
        !HasPointAt(set->GetValues()->Points(), number))
      FMoved.push_back({OuterToken(token), number});
    return operand;
  }

  TOperand GroupOf(const IFuzzyStreamToken& token) {
    const THeldSet set = Added(token.ToString()).Set;
    const Ref<IFuzzyStreamTokenList> group = token.GetList();
    if (!group || group->GetValueCount() == 0) Refuse(token);
    const Ref<IFuzzyStreamToken> first = group->Get(0);
    if (first->GetDataType() == KindOf(fstList))
      return {THeldSet(FParser.ConvertListToValues(set.Get(), group)), std::nullopt};
    const TString function = first->ToString();
    group->Delete(0);
    try {
      return {THeldSet(FParser.CalcFuzzyFunction(set.Get(), function, group)), std::nullopt};
    } catch (...) {
      NoteCall<Model>(FParser, FHeld.Get(), first, group);
      throw;
    }
  }

  void OpenName(const Ref<IFuzzyStreamToken>& token) {
    TCustomFuzzyLogic* fuzzy = FParser.GetFuzzyLogic();
    if (!fuzzy) FParser.ParseError(Method, SFuzzyLogicNotSet);
    const TStrings& texts = *fuzzy->GetVariables();
    CheckChain(*token, texts.GetCaseSensitive());
    if (!FNotes.Track()->Name) FNotes.Track()->Name = token;
    OpenText(texts.GetValue(token->GetText()), token);
  }

  /// Refuses a name whose value is being evaluated already, and a chain of names without end.
  void CheckChain(const IFuzzyStreamToken& token, bool caseSensitive) {
    const TString& name = token.GetText();
    const auto same = [&](const TString& other) {
      return caseSensitive ? other == name : SameText(other, name);
    };
    TString chain;
    for (const TFrame& frame : FFrames) {
      if (!frame.Name) continue;
      if (chain.empty() && !same(frame.Name->GetText())) continue;
      chain += u"?" + frame.Name->GetText() + u" > ";
    }
    if (!chain.empty()) FParser.ParseError(Method, SFzyCircularVariable, {chain + u"?" + name});
    if (FFrames.size() > MostNestedNames)
      FParser.ParseError(Method, SFzyNestedVariables, {std::int64_t{MostNestedNames}, name});
  }

  TKelFuzzyLogicParser& FParser;
  TReadingNotes& FNotes;
  TVariable FVariable;
  typename Model::THeldVariable FHeld;
  std::vector<TFrame> FFrames;
  std::vector<TOperand> FOperands;
  std::vector<TMoved> FMoved;
  std::size_t FCharacters = 0;
};

}  // namespace fzy::detail
