#include "fuzzylogic/language/KelFuzzyLogicParser.h"

#include <new>
#include <vector>

#include "fuzzylogic/framework/Properties.h"
#include "fuzzylogic/framework/UpdateBlock.h"
#include "fuzzylogic/interfaces/UniqueID.h"
#include "fuzzylogic/language/detail/ClassModel.h"
#include "fuzzylogic/language/detail/DefinitionReader.h"
#include "fuzzylogic/language/detail/InterfaceModel.h"
#include "fuzzylogic/language/detail/TextReading.h"

// Entry points and reading steps. Expressions and printing stand in files of their own.

namespace fzy {
namespace {

using TClassReader = detail::TDefinitionReader<detail::TClassModel>;
using TInterfaceReader = detail::TDefinitionReader<detail::TInterfaceModel>;

/// Holds a new variable of the component while the reader fills it: inside an update block of the
/// collection, and outside the collection as long as automatic terms would join it.
class TNewVariable {
 public:
  explicit TNewVariable(TFuzzyLogic& fuzzy)
      : FFuzzy(fuzzy),
        FFuzzyPin(&fuzzy),
        FItems(fuzzy.GetItems()),
        FBlock(*FItems),
        FVariable(FItems->Add()),
        FPin(FVariable) {
    // Freed by a handler of its addition: the text is read all the same, into a stand-in.
    if (!FVariable) {
      FStandIn = TOwned<TFuzzyVariable>(TFuzzyVariable::Create());
      FVariable = FStandIn.Get();
    }
  }

  /// Takes the variable out, without its terms, as long as automatic terms would join it.
  void Detach() {
    if (FStandIn || !FFuzzy.GetAutoTerms()) return;
    FDetached = true;
    FVariable->SetCollection(nullptr);
    FVariable->GetItems()->Clear();
  }

  TFuzzyVariable* operator->() const noexcept { return FVariable; }
  TFuzzyVariable* Get() const noexcept { return FVariable; }

  /// Puts the variable back and closes the block; both are done even when a handler throws. Where
  /// the component has gone there is nothing to go back to, and the variable goes too, as it does
  /// when the collection finds no memory for it.
  void Close() {
    TFirstException first;
    if (std::exchange(FDetached, false) && !FVariable->IsFreed() && !FVariable->GetCollection()) {
      first.Run([this] {
        if (FFuzzy.IsFreed())
          FVariable->Free();
        else
          Return();
      });
    }
    first.Run([this] { FBlock.Close(); });
    first.Rethrow();
  }

  /// The variable, unless a handler freed it.
  TFuzzyVariable* Result() const noexcept {
    return FStandIn || FVariable->IsFreed() ? nullptr : FVariable;
  }

 private:
  void Return() {
    try {
      FVariable->SetCollection(FItems);
    } catch (const std::bad_alloc&) {
      if (!FVariable->GetCollection()) FVariable->Free();
      throw;
    }
  }

  TFuzzyLogic& FFuzzy;
  TPin FFuzzyPin;
  TFuzzyVariables* FItems;
  TUpdateBlock<TFuzzyVariables> FBlock;
  TFuzzyVariable* FVariable;
  TPin FPin;
  TOwned<TFuzzyVariable> FStandIn;
  bool FDetached = false;
};

/// Warns when a variable got terms behind the `count` of its text although that sets no range.
template <class Variable>
void WarnOfAutoTerms(detail::TReadingNotes& notes, Variable& variable, int count, int countNow) {
  if (notes.Track()->HasRange || countNow <= count) return;
  notes.Warn(rwAutoTerms, notes.Track()->Variable.Name,
             {variable.GetName(), FormatShortest(variable.GetMinimum()),
              FormatShortest(variable.GetMaximum())},
             SFzyAdviseAutoTerms);
}

}  // namespace

// Entry points

TComponentClass TKelFuzzyLogicParser::Class() {
  static constexpr TComponentDescriptor descriptor{
      "TKelFuzzyLogicParser",
      [](TComponent* owner) -> TComponent* { return new TKelFuzzyLogicParser(owner); }};
  return &descriptor;
}

void TKelFuzzyLogicParser::DefineProperties(TFiler& filer) {
  TCustomFuzzyLogicParser::DefineProperties(filer);
  filer.DefineField("FullPrecision", FFullPrecision, false);
}

void TKelFuzzyLogicParser::ParseFuzzyLogic(const TString& text, const TEncoding* encoding) {
  detail::TTextReading reading(*this);
  if (!GetFuzzyLogic()) throw EFzyParseException(SFuzzyLogicNotSet);
  reading.Open(text, encoding);
  ParseFuzzyLogic();
}

TFuzzyVariable* TKelFuzzyLogicParser::ParseFuzzyVariable(const TString& text,
                                                         const TEncoding* encoding) {
  detail::TTextReading reading(*this);
  if (!GetFuzzyLogic()) throw EFzyParseException(SFuzzyLogicNotSet);
  reading.Open(text, encoding);
  return ParseFuzzyVariable();
}

TFuzzySet* TKelFuzzyLogicParser::ParseFuzzySet(TFuzzyVariable* variable, const TString& text,
                                               const TEncoding* encoding) {
  detail::TTextReading reading(*this);
  if (!variable) throw EFzyParseException(SFzyUndefinedVariable);
  reading.Open(text, encoding);
  return ParseFuzzySet(variable);
}

Ref<IFuzzyVariable> TKelFuzzyLogicParser::ParseFuzzyVariableIntf(const TString& text,
                                                                 const TEncoding* encoding) {
  detail::TTextReading reading(*this);
  if (!GetFuzzyLogic()) throw EFzyParseException(SFuzzyLogicNotSet);
  reading.Open(text, encoding);
  return ParseFuzzyVariableIntf();
}

Ref<IFuzzySet> TKelFuzzyLogicParser::ParseFuzzySet(const Ref<IFuzzyVariable>& variable,
                                                   const TString& text, const TEncoding* encoding) {
  detail::TTextReading reading(*this);
  if (!variable) throw EFzyParseException(SFzyUndefinedVariable);
  reading.Open(text, encoding);
  return ParseFuzzySet(variable);
}

std::unique_ptr<TFuzzyLogicTokenStream> TKelFuzzyLogicParser::CreateStream(
    std::unique_ptr<TStream> stream, const TEncoding* encoding) {
  return std::make_unique<TFuzzyLogicTokenStream>(std::move(stream), encoding);
}

int TKelFuzzyLogicParser::GetLineNumber() {
  return FStream ? FStream->GetCurrentToken()->GetLineNumber()
                 : TCustomFuzzyLogicParser::GetLineNumber();
}

TString TKelFuzzyLogicParser::GetParsedText() {
  return FStream ? FStream->ToString() : TCustomFuzzyLogicParser::GetParsedText();
}

TFuzzyLogicTokenStream& TKelFuzzyLogicParser::Stream() const {
  if (!FStream) throw EFzyParseException(SFzyNoText);
  return *FStream;
}

TString TKelFuzzyLogicParser::GetUniqueName() const {
  return TString("FuzzySet") + TString(std::to_string(GetUniqueID()));
}

// Reading steps

void TKelFuzzyLogicParser::ParseFuzzyLogic() {
  for (;;) {
    const Ref<IFuzzyStreamToken> t = Stream().NextToken();
    if (detail::IsEnd(*t)) return;
    if (!detail::IsOpen(*t)) ParseError("ParseFuzzyLogic", SFzyUnexpectedToken, {t->ToString()});
    Stream().PutBackToken(t);
    if (dynamic_cast<TIFuzzyLogic*>(GetFuzzyLogic()))
      ParseFuzzyVariableIntf();
    else
      ParseFuzzyVariable();
  }
}

Ref<IFuzzyStreamToken> TKelFuzzyLogicParser::ParseHeader(TString& name, TString& comment,
                                                         bool allowComment, const TString& keyword,
                                                         const TString& method,
                                                         const TMessage& errorMsg) {
  const Ref<IFuzzyStreamToken> t1 = Stream().NextToken();
  const Ref<IFuzzyStreamToken> t2 = Stream().NextToken();
  detail::THead& head = *detail::TReadingNotes::Of(*this).Track()->Head;
  if (detail::IsOpen(*t1)) head.Open = detail::TokenPlace(*t1);
  if (!detail::IsOpen(*t1) || !detail::IsAtom(*t2) || t2->GetText() != keyword)
    ParseError(method, errorMsg, detail::IsOpen(*t1) ? t2 : t1);
  Ref<IFuzzyStreamToken> t = Stream().NextToken();
  if (!detail::IsAtom(*t)) ParseError(method, SFzyMissingName);
  name = t->GetText();
  head.Name = std::move(t);
  comment = TString();
  t = Stream().NextToken();
  if (allowComment && t->GetDataType() == KindOf(fstString)) {
    comment = t->GetText();
    head.HasComment = true;
    t = Stream().NextToken();
  }
  head.Next = detail::TokenPlace(*t);
  return t;
}

Ref<IFuzzyStreamToken> TKelFuzzyLogicParser::ParseVariableHeader(TString& name, TString& comment) {
  static const TString keyword = "deffuzzy";
  static const TString method = "ParseFuzzyVariable";
  Stream();
  detail::TReadingNotes::Of(*this).Track()->BeginVariable();
  return ParseHeader(name, comment, true, keyword, method, SFzyExpectedFuzzyDefinition);
}

TFuzzyVariable* TKelFuzzyLogicParser::ParseFuzzyVariable() {
  TString name;
  TString comment;
  const Ref<IFuzzyStreamToken> t = ParseVariableHeader(name, comment);
  auto* fuzzy = dynamic_cast<TFuzzyLogic*>(GetFuzzyLogic());
  if (!fuzzy) throw EFzyParseException(SFuzzyLogicNotTFuzzyLogic);
  TNewVariable variable(*fuzzy);
  TFirstException first;
  int terms = 0;
  first.Run([&] {
    variable.Detach();
    variable->SetName(name);
    variable->SetComment(comment);
    TClassReader(*this, Stream()).ReadClauses(variable.Get(), t);
    terms = variable->GetItems()->GetCount();
  });
  first.Run([&] { variable.Close(); });
  first.Rethrow();
  detail::TReadingNotes& notes = detail::TReadingNotes::Of(*this);
  if (variable.Result())
    WarnOfAutoTerms(notes, *variable.Get(), terms, variable->GetItems()->GetCount());
  if (variable.Result()) FireEvent(FOnParseFuzzyVariable, this, variable.Result());
  notes.Track()->EndVariable();
  return variable.Result();
}

Ref<IFuzzyVariable> TKelFuzzyLogicParser::ParseFuzzyVariableIntf() {
  TString name;
  TString comment;
  const Ref<IFuzzyStreamToken> t = ParseVariableHeader(name, comment);
  auto* fuzzy = dynamic_cast<TIFuzzyLogic*>(GetFuzzyLogic());
  if (!fuzzy) throw EFzyParseException(SFuzzyLogicNotTIFuzzyLogic);
  const TPin pinned(fuzzy);
  Ref<IFuzzyVariable> variable = fuzzy->NewVariable(name);
  variable->SetComment(comment);
  variable->SetParser(GetInterface());
  TInterfaceReader(*this, Stream()).ReadClauses(variable, t);
  const int terms = variable->GetCount();
  if (!fuzzy->IsFreed()) fuzzy->GetItems()->Put(name, variable);
  detail::TReadingNotes& notes = detail::TReadingNotes::Of(*this);
  WarnOfAutoTerms(notes, *variable, terms, variable->GetCount());
  FireEvent(FOnParseFuzzyVariableIntf, variable);
  notes.Track()->EndVariable();
  return variable;
}

TFuzzySet* TKelFuzzyLogicParser::ParseFuzzySet(TFuzzyVariable* variable) {
  const TPin pinned(variable);
  return TClassReader(*this, Stream()).ReadSet(variable);
}

TFuzzySet* TKelFuzzyLogicParser::ParseFuzzyValues(TFuzzyVariable* variable) {
  return TClassReader(*this, Stream()).ReadValues(variable);
}

TFuzzySet* TKelFuzzyLogicParser::ParseFuzzyValuePairs(TFuzzyVariable* variable) {
  return TClassReader(*this, Stream()).ReadValuePairs(variable);
}

TFuzzySet* TKelFuzzyLogicParser::ParseFuzzyFunction(TFuzzyVariable* variable) {
  return TClassReader(*this, Stream()).ReadFunction(variable);
}

Ref<IFuzzySet> TKelFuzzyLogicParser::ParseFuzzySet(const Ref<IFuzzyVariable>& variable) {
  return TInterfaceReader(*this, Stream()).ReadSet(variable);
}

Ref<IFuzzySet> TKelFuzzyLogicParser::ParseFuzzyValues(const Ref<IFuzzyVariable>& variable) {
  return TInterfaceReader(*this, Stream()).ReadValues(variable);
}

Ref<IFuzzySet> TKelFuzzyLogicParser::ParseFuzzyValuePairs(const Ref<IFuzzyVariable>& variable) {
  return TInterfaceReader(*this, Stream()).ReadValuePairs(variable);
}

Ref<IFuzzySet> TKelFuzzyLogicParser::ParseFuzzyFunction(const Ref<IFuzzyVariable>& variable) {
  return TInterfaceReader(*this, Stream()).ReadFunction(variable);
}

TFuzzySet* TKelFuzzyLogicParser::ConvertListToValues(TFuzzySet* fuzzySet,
                                                     const Ref<IFuzzyStreamTokenList>& list) {
  const detail::TClassModel::THeldSet held(fuzzySet);
  TClassReader::ConvertList(*this, fuzzySet, list);
  return held.Get();
}

Ref<IFuzzySet> TKelFuzzyLogicParser::ConvertListToValues(const Ref<IFuzzySet>& fuzzySet,
                                                         const Ref<IFuzzyStreamTokenList>& list) {
  TInterfaceReader::ConvertList(*this, fuzzySet, list);
  return fuzzySet;
}

Ref<IFuzzyStreamTokenList> TKelFuzzyLogicParser::ParseTokenList() {
  struct TGroup {
    Ref<IFuzzyStreamTokenList> List;
    Ref<IFuzzyStreamToken> Token;  // the "(" that becomes the list's token; none for the outermost
  };
  std::vector<TGroup> groups;
  groups.push_back({TFuzzyStreamTokenList::Create(), nullptr});
  for (;;) {
    const Ref<IFuzzyStreamToken> t = Stream().NextToken();
    if (detail::IsOpen(*t)) {
      groups.push_back({TFuzzyStreamTokenList::Create(), t});
    } else if (!detail::IsClose(*t) && !detail::IsEnd(*t)) {
      groups.back().List->Add(t);
    } else {
      Stream().PutBackToken(t);
      const TGroup done = std::move(groups.back());
      groups.pop_back();
      if (groups.empty()) return done.List;
      Stream().NextToken();  // the nested group's ")"
      done.Token->SetList(done.List);
      groups.back().List->Add(done.Token);
    }
  }
}

}  // namespace fzy
