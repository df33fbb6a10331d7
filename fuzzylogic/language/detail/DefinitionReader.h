#pragma once

#include "fuzzylogic/framework/FirstException.h"
#include "fuzzylogic/language/KelFuzzyLogicParser.h"
#include "fuzzylogic/language/detail/DefinitionText.h"
#include "fuzzylogic/language/detail/ExpressionEvaluator.h"
#include "fuzzylogic/language/detail/ReadingAdvice.h"
#include "fuzzylogic/language/detail/ReadingWarnings.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy::detail {

inline bool IsOpen(const IFuzzyStreamToken& token) { return token.GetDataType() == u'('; }
inline bool IsClose(const IFuzzyStreamToken& token) { return token.GetDataType() == u')'; }
inline bool IsEnd(const IFuzzyStreamToken& token) { return token.GetDataType() == KindOf(fstNone); }
inline bool IsAtom(const IFuzzyStreamToken& token) {
  return token.GetDataType() == KindOf(fstAtom);
}
inline bool IsNumber(const IFuzzyStreamToken& token) {
  return token.GetDataType() == KindOf(fstInteger) || token.GetDataType() == KindOf(fstFloat);
}

/// The reading steps of a variable and its terms, for one object model. `Model` says how variables
/// and sets of that model are held while handlers may free them, how a set is added, named and
/// filled, and which event tells of it. Steps within steps go through the parser, so that its
/// descendants may override each.
template <class Model>
class TDefinitionReader {
 public:
  using TVariable = typename Model::TVariable;
  using TSet = typename Model::TSet;

  TDefinitionReader(TKelFuzzyLogicParser& parser, TFuzzyLogicTokenStream& stream)
      : FParser(parser), FStream(stream), FNotes(TReadingNotes::Of(parser)) {}

  /// The clauses of a variable, from the token `t` behind its head to its ")".
  void ReadClauses(const TVariable& variable, Ref<IFuzzyStreamToken> t) {
    constexpr const char* method = "ParseFuzzyVariable";
    while (!IsClose(*t)) {
      Ref<IFuzzyStreamToken> keyword = FStream.NextToken();
      if (!IsOpen(*t)) FParser.ParseError(method, SFzyMissingOpenParens, t);
      const TClause clause = FindClause(*keyword);
      if (!clause)
        FParser.ParseError(method, SFzyExpectedKeyword, {TString("range, units, or values")});
      FNotes.Track()->Clause = std::move(keyword);
      t = (this->*clause)(variable);
      if (!IsClose(*t)) FParser.ParseError(method, SFzyMissingCloseParens);
      FNotes.Track()->Clause = nullptr;
      t = FStream.NextToken();
    }
  }

  /// One term.
  TSet ReadSet(const TVariable& variable) {
    RequireVariable(variable);
    static const TString method = "ParseFuzzySet";
    static const TString keyword = "term";
    TString name;
    TString comment;
    const THeldVariable held(variable);
    TReadingTrack& track = *FNotes.Track();
    track.BeginTerm();
    FStream.PutBackToken(
        FParser.ParseHeader(name, comment, true, keyword, method, SFzyExpectedFuzzySet));
    const THeldSet set(FParser.ParseFuzzyValues(variable));
    FNotes.About(track.Term.Name, [&] {
      if (set.Get()) Model::NameSet(set.Get(), name, comment);
    });
    if (set.Get()) Model::PlaceLast(set.Get(), variable);
    if (!IsClose(*FStream.NextToken())) FParser.ParseError(method, SFzyMissingCloseParens);
    if (set.Get()) Model::FireParseFuzzySet(FParser, held.Get(), set.Get());
    track.Term.Clear();
    return Result(held, set);
  }

  /// The body of a term, by what it starts with.
  TSet ReadValues(const TVariable& variable) {
    RequireVariable(variable);
    const Ref<IFuzzyStreamToken> t1 = FStream.NextToken();
    if (!IsOpen(*t1)) {
      FStream.PutBackToken(t1);
      return ReadExpression(variable);
    }
    const Ref<IFuzzyStreamToken> t2 = FStream.NextToken();
    FStream.PutBackToken(t2);
    FStream.PutBackToken(t1);
    return IsOpen(*t2) ? FParser.ParseFuzzyValuePairs(variable)
                       : FParser.ParseFuzzyFunction(variable);
  }

  /// A list of points. What stands where a point's ")" belongs is taken for it.
  TSet ReadValuePairs(const TVariable& variable) {
    RequireVariable(variable);
    constexpr const char* method = "ParseFuzzyValuePairs";
    const THeldVariable held(variable);
    const THeldSet set(Model::AddSet(FParser, variable));
    if (!IsOpen(*FStream.NextToken())) FParser.ParseError(method, SFzyMissingOpenParens);
    Ref<IFuzzyStreamToken> t = FStream.NextToken();
    TRangeWatch watch(FNotes, Model::EngineOf(set.Get()));
    while (IsOpen(*t)) {
      const Ref<IFuzzyStreamToken> x = FStream.NextToken();
      const Ref<IFuzzyStreamToken> y = FStream.NextToken();
      if (!IsNumber(*x) || !IsNumber(*y))
        FParser.ParseError(method, SFzyExpectedNumber, IsNumber(*x) ? y : x);
      if (set.Get()) Model::AddPoint(set.Get(), x->GetNumber(), y->GetNumber());
      watch.See(x, [&] { return Model::EngineOf(set.Get()); });
      FStream.NextToken();
      t = FStream.NextToken();
    }
    if (!IsClose(*t)) FParser.ParseError(method, SFzyMissingCloseParens);
    if (set.Get()) Model::Complete(set.Get());
    return Result(held, set);
  }

  /// The call of a shape function.
  TSet ReadFunction(const TVariable& variable) {
    RequireVariable(variable);
    constexpr const char* method = "ParseFuzzyFunction";
    if (!IsOpen(*FStream.NextToken())) FParser.ParseError(method, SFzyMissingOpenParens);
    const Ref<IFuzzyStreamToken> name = FStream.NextToken();
    if (!IsAtom(*name)) FParser.ParseError(method, SFzyMissingName);
    const Ref<IFuzzyStreamTokenList> arguments = FParser.ParseTokenList();
    const THeldVariable held(variable);
    const THeldSet made(Model::AddSet(FParser, variable));
    const THeldSet set(CallFunction(held, made, name, arguments));
    FStream.NextToken();  // taken for the call's ")" whatever it is
    if (set.Get() && set.Get() == made.Get()) Model::Complete(set.Get());
    return Result(held, set);
  }

  /// Points from token groups of two numbers each. The tokens may come from no text, so it needs no
  /// tokenizer.
  static void ConvertList(TKelFuzzyLogicParser& parser, const TSet& fuzzySet,
                          const Ref<IFuzzyStreamTokenList>& list) {
    constexpr const char* method = "ConvertListToValues";
    const THeldSet set(fuzzySet);
    TRangeWatch watch(TReadingNotes::Of(parser), Model::EngineOf(fuzzySet));
    for (int i = 0; list && i < list->GetValueCount(); ++i) {
      const Ref<IFuzzyStreamToken> item = list->Get(i);
      const Ref<IFuzzyStreamTokenList> pair =
          item->GetDataType() == KindOf(fstList) ? item->GetList() : nullptr;
      if (!pair || pair->GetValueCount() != 2)
        parser.ParseError(method, SFzyInvalidValuePair, {item->ToString()}, item);
      if (!parser.VerifyAll(pair, {fstInteger, fstFloat}))
        parser.ParseError(method, SFzyExpectedNumber, pair->Get(IsNumber(*pair->Get(0)) ? 1 : 0));
      if (!set.Get()) continue;
      Model::AddPoint(set.Get(), pair->Get(0)->GetNumber(), pair->Get(1)->GetNumber());
      watch.See(pair->Get(0), [&] { return Model::EngineOf(set.Get()); });
    }
  }

 private:
  static void RequireVariable(const TVariable& variable) {
    if (!variable) throw EFzyParseException(SFzyUndefinedVariable);
  }

  using THeldVariable = typename Model::THeldVariable;
  using THeldSet = typename Model::THeldSet;

  /// A set of a variable that handlers may have freed, and its sets with it.
  static TSet Result(const THeldVariable& variable, const THeldSet& set) {
    return variable.Get() ? set.Get() : TSet();
  }

  /// Reads a clause behind its keyword and returns the token that should close it.
  using TClause = Ref<IFuzzyStreamToken> (TDefinitionReader::*)(const TVariable&);

  static TClause FindClause(const IFuzzyStreamToken& keyword) {
    if (!IsAtom(keyword)) return nullptr;
    const std::u16string_view word = keyword.GetText();
    if (word == u"range") return &TDefinitionReader::ReadRange;
    if (word == u"units") return &TDefinitionReader::ReadUnits;
    if (word == u"values") return &TDefinitionReader::ReadTerms;
    return nullptr;
  }

  TSet CallFunction(const THeldVariable& held, const THeldSet& set,
                    const Ref<IFuzzyStreamToken>& name,
                    const Ref<IFuzzyStreamTokenList>& arguments) {
    try {
      return FParser.CalcFuzzyFunction(set.Get(), name->GetText(), arguments);
    } catch (...) {
      NoteCall<Model>(FParser, held.Get(), name, arguments);
      throw;
    }
  }

  TSet ReadExpression(const TVariable& variable) {
    const Ref<IFuzzyStreamTokenList> tokens = FParser.ParseTokenList();
    const TString definition = ExpressionText(*tokens);  // before evaluation reorders them
    const int count = Model::CountSets(variable);
    const TPin self(&FParser);
    const THeldSet result(TExpressionEvaluator<Model>(FParser, variable).EvalList(tokens));
    // A set that an earlier expression left stays where it is: moving many of them to the end would
    // cost more than copies.
    const bool older = Model::IsOlder(result.Get(), variable, count);
    const THeldSet set(older ? Model::CopySet(FParser, variable, result.Get()) : result.Get());
    if (set.Get()) Model::NoteDefinition(set.Get(), definition);
    return set.Get();
  }

  Ref<IFuzzyStreamToken> ReadRange(const TVariable& variable) {
    const Ref<IFuzzyStreamToken> minimum = FStream.NextToken();
    const Ref<IFuzzyStreamToken> maximum = FStream.NextToken();
    if (!IsNumber(*minimum) || !IsNumber(*maximum))
      FParser.ParseError("ParseFuzzyVariable", SFzyExpectedNumber,
                         IsNumber(*minimum) ? maximum : minimum);
    if (FNotes.Track()->HasTerms || !(minimum->GetNumber() < maximum->GetNumber()))
      WarnOfRange(variable, minimum, maximum);
    FNotes.Track()->HasRange = true;
    variable->SetMinimum(minimum->GetNumber());
    variable->SetMaximum(maximum->GetNumber());
    return FStream.NextToken();
  }

  void WarnOfRange(const TVariable& variable, const Ref<IFuzzyStreamToken>& minimum,
                   const Ref<IFuzzyStreamToken>& maximum) {
    const THeldVariable held(variable);
    const TFzyFloat least = minimum->GetNumber(), greatest = maximum->GetNumber();
    const TFzyFloat before[] = {variable->GetMinimum(), variable->GetMaximum()};
    if (!(least < greatest)) {
      const TString advice = least == greatest
                                 ? SFzyAdviseWidth.Get()
                                 : FormatText(SFzyAdviseOrder, {u"range " + maximum->ToString() +
                                                                u" " + minimum->ToString()});
      FNotes.Warn(rwEmptyRange, minimum, {minimum->ToString(), maximum->ToString()}, advice);
    }
    if (FNotes.Track()->HasTerms && (before[0] != least || before[1] != greatest))
      FNotes.Warn(rwLateRange, FNotes.Track()->Clause,
                  {FormatShortest(before[0]), FormatShortest(before[1])}, SFzyAdviseEarlyRange);
  }

  Ref<IFuzzyStreamToken> ReadUnits(const TVariable& variable) {
    variable->SetUnits(FStream.NextToken()->ToString());
    return FStream.NextToken();
  }

  Ref<IFuzzyStreamToken> ReadTerms(const TVariable& variable) {
    Ref<IFuzzyStreamToken> t = FStream.NextToken();
    while (!IsClose(*t)) {
      FStream.PutBackToken(t);
      const THeldSet set(FParser.ParseFuzzySet(variable));
      if (set.Get()) Model::MakeTerm(set.Get(), variable);
      FNotes.Track()->HasTerms = true;
      t = FStream.NextToken();
    }
    return t;
  }

  TKelFuzzyLogicParser& FParser;
  TFuzzyLogicTokenStream& FStream;
  TReadingNotes& FNotes;
};

}  // namespace fzy::detail
