#pragma once

#include <memory>
#include <vector>

#include "fuzzylogic/framework/Event.h"
#include "fuzzylogic/framework/Message.h"
#include "fuzzylogic/interfaces/FuzzyInterfaces.h"
#include "fuzzylogic/language/FuzzyStreamToken.h"
#include "fuzzylogic/language/ReadingFault.h"
#include "fuzzylogic/model/FuzzyLogic.h"

namespace fzy {

/// Fired before a function call in a definition text is carried out. The handler may fill or
/// replace `result` itself and then sets `handled`; so it can add functions of its own. The result
/// is nothing when a handler of its addition freed it. What is given as the result becomes the term
/// that is read, under its name.
using TCalcFuzzyFunctionEvent =
    std::function<void(TObject* sender, const TString& funcName,
                       const Ref<IFuzzyStreamTokenList>& list, TFuzzySet*& result, bool& handled)>;
/// The same for the counted model, where the result may be made none.
using TCalcFuzzyIntfFunctionEvent = std::function<void(TObject* sender, const TString& funcName,
                                                       const Ref<IFuzzyStreamTokenList>& list,
                                                       Ref<IFuzzySet>& result, bool& handled)>;
namespace detail {
struct TClassModel;
struct TInterfaceModel;
class TParserFace;
class TReadingNotes;
}  // namespace detail

/// The frame of a parser: its link to the component that it reads into (weak, cleared when that
/// goes), its events, its error reports, and the shape functions "pi", "tri", "s", "z" and "beta".
/// Operations and events that read or write sets and variables stand here twice, for the owned and
/// the counted model.
class TCustomFuzzyLogicParser : public TFuzzyTextParser {
 public:
  explicit TCustomFuzzyLogicParser(TComponent* owner = nullptr);
  ~TCustomFuzzyLogicParser() override;

  TCustomFuzzyLogic* GetFuzzyLogic() const noexcept { return FFuzzyLogic; }
  /// Does not touch the component's own link to a parser.
  void SetFuzzyLogic(TCustomFuzzyLogic* value);
  void Notification(TComponent* component, TOperation operation) override;
  void DefineProperties(TFiler& filer) override;

  /// The parser as the counted model holds it. References do not own the parser; when it has gone
  /// they answer no query any more, not even for `IFuzzyParser`, and their operations raise an
  /// EFzyException (`SParserUnassigned`).
  Ref<IFuzzyParser> GetInterface();
  HResult QueryInterface(const TGuid& id, void** result) override;

  // Events: a parse begins and has succeeded; a term, a variable was read; an expression was
  // evaluated; a function is called.
  const TNotifyEvent& GetOnParsing() const noexcept { return FOnParsing; }
  void SetOnParsing(TNotifyEvent value) { FOnParsing = std::move(value); }
  const TNotifyEvent& GetOnParsed() const noexcept { return FOnParsed; }
  void SetOnParsed(TNotifyEvent value) { FOnParsed = std::move(value); }
  const TFuzzySetEvent& GetOnParseFuzzySet() const noexcept { return FOnParseFuzzySet; }
  void SetOnParseFuzzySet(TFuzzySetEvent value) { FOnParseFuzzySet = std::move(value); }
  const TFuzzyVariableEvent& GetOnParseFuzzyVariable() const noexcept {
    return FOnParseFuzzyVariable;
  }
  void SetOnParseFuzzyVariable(TFuzzyVariableEvent value) {
    FOnParseFuzzyVariable = std::move(value);
  }
  const TFuzzyExpressionEvent& GetOnEvalExpression() const noexcept { return FOnEvalExpression; }
  void SetOnEvalExpression(TFuzzyExpressionEvent value) { FOnEvalExpression = std::move(value); }
  const TCalcFuzzyFunctionEvent& GetOnCalcFuzzyFunction() const noexcept {
    return FOnCalcFuzzyFunction;
  }
  void SetOnCalcFuzzyFunction(TCalcFuzzyFunctionEvent value) {
    FOnCalcFuzzyFunction = std::move(value);
  }

  // The same of the counted model; those of sets and expressions name the variable as the sender.
  const TIFuzzySetEvent& GetOnParseFuzzySetIntf() const noexcept { return FOnParseFuzzySetIntf; }
  void SetOnParseFuzzySetIntf(TIFuzzySetEvent value) { FOnParseFuzzySetIntf = std::move(value); }
  const TIFuzzyVariableEvent& GetOnParseFuzzyVariableIntf() const noexcept {
    return FOnParseFuzzyVariableIntf;
  }
  void SetOnParseFuzzyVariableIntf(TIFuzzyVariableEvent value) {
    FOnParseFuzzyVariableIntf = std::move(value);
  }
  const TIFuzzyExpressionEvent& GetOnEvalExpressionIntf() const noexcept {
    return FOnEvalExpressionIntf;
  }
  void SetOnEvalExpressionIntf(TIFuzzyExpressionEvent value) {
    FOnEvalExpressionIntf = std::move(value);
  }
  const TCalcFuzzyIntfFunctionEvent& GetOnCalcFuzzyIntfFunction() const noexcept {
    return FOnCalcFuzzyIntfFunction;
  }
  void SetOnCalcFuzzyIntfFunction(TCalcFuzzyIntfFunctionEvent value) {
    FOnCalcFuzzyIntfFunction = std::move(value);
  }

  // What a reading leaves for whoever wrote its text. A reading goes from the call of an entry
  // point (`Parse`, and those of descendants that take a text, tokens or one token) to its end;
  // it is outermost unless it is called within another one of this parser, as from its events.
  // Fault and warnings are those of the last outermost reading, and stay until the next begins.
  //
  // Places are in the text of the outermost reading: of what goes wrong in the text of a ?name the
  // place is that of the ?name, and of what goes wrong in a reading within it the place that the
  // outermost one has come to. A place is that of the word at fault, so its line may be less than
  // that of the error, which is the line of the token read last.

  /// Where the last outermost reading failed, whatever was raised, by a handler too; nothing after
  /// one that succeeded. The place is empty when it failed before or behind its text. Valid until
  /// the next outermost reading.
  const TReadingFault* GetFault() const noexcept;
  /// What the last outermost reading read silently though it was hardly meant, in the order in
  /// which it was found; the first 1000.
  const std::vector<TReadingWarning>& GetWarnings() const noexcept;
  /// Fired as each warning is found, before the events of the term or variable that it is about. A
  /// handler may do what one of the other events may; what it throws ends the reading.
  const TReadingWarningEvent& GetOnWarning() const noexcept { return FOnWarning; }
  void SetOnWarning(TReadingWarningEvent value) { FOnWarning = std::move(value); }
  /// Whether faults and warnings are noted and told; true at first. Without them an error is raised
  /// sooner, which counts where many texts are only tried.
  bool GetDiagnostics() const noexcept;
  void SetDiagnostics(bool value) noexcept;

  /// Reads a whole definition text into the linked component, framed by `OnParsing` and (when
  /// nothing was raised) `OnParsed`. The text is Unicode already, so `encoding` does not matter.
  /// @throws EFzyParseException (`SFuzzyLogicNotSet`) without a component, before any event, and
  /// for
  ///   every reading error. What was built before an error stays.
  void Parse(const TString& text, const TEncoding* encoding) override;

  /// Carries out a shape function on `fuzzySet`: "pi" (Range Center, or Left Right Center), "tri"
  /// (Left Middle Right), "s" and "z" (Left Right), "beta" (Range Center Inflection_Point
  /// [Weight]), with the component's number of points.
  /// @throws EFzyParseException for arguments that are no numbers, their count, and an unknown
  ///   name; EFzyException as the shapes do
  virtual void CalcFuzzyFunction(const TString& funcName, const Ref<IFuzzyStreamTokenList>& list,
                                 TFuzzySet*& fuzzySet);
  virtual void CalcFuzzyFunction(const TString& funcName, const Ref<IFuzzyStreamTokenList>& list,
                                 Ref<IFuzzySet>& fuzzySet);
  /// Fires `OnCalcFuzzyFunction`; unless that handled it, the virtual form. Returns the set,
  /// replaced or not; nothing when a handler freed it.
  TFuzzySet* CalcFuzzyFunction(TFuzzySet* fuzzySet, const TString& funcName,
                               const Ref<IFuzzyStreamTokenList>& list);
  Ref<IFuzzySet> CalcFuzzyFunction(const Ref<IFuzzySet>& fuzzySet, const TString& funcName,
                                   const Ref<IFuzzyStreamTokenList>& list);

  using TFuzzyTextParser::PrettyPrint;
  virtual void ParseFuzzyLogic(const TString& text, const TEncoding* encoding) = 0;
  virtual TFzyFloat EvalFuzzyExpression(const Ref<IFuzzyVariable>& variable,
                                        const TString& expression, Ref<IFuzzySet>& fuzzySet) = 0;
  virtual Ref<IFuzzySet> EvalFuzzyExpression(const Ref<IFuzzyVariable>& variable,
                                             const TString& expression) = 0;
  virtual TFzyFloat EvalFuzzyExpression(TFuzzyVariable* variable, const TString& expression,
                                        TFuzzySet*& fuzzySet) = 0;
  virtual TFuzzySet* EvalFuzzyExpression(TFuzzyVariable* variable, const TString& expression) = 0;
  virtual TFuzzySet* ParseFuzzySet(TFuzzyVariable* variable, const TString& text,
                                   const TEncoding* encoding) = 0;
  virtual TFuzzyVariable* ParseFuzzyVariable(const TString& text, const TEncoding* encoding) = 0;
  virtual Ref<IFuzzySet> ParseFuzzySet(const Ref<IFuzzyVariable>& variable, const TString& text,
                                       const TEncoding* encoding) = 0;
  virtual Ref<IFuzzyVariable> ParseFuzzyVariableIntf(const TString& text,
                                                     const TEncoding* encoding) = 0;
  virtual TString PrettyPrint(const Ref<IFuzzySet>& fuzzySet, bool asDefinition) = 0;
  virtual TString PrettyPrint(const Ref<IFuzzyVariable>& fuzzyVariable) = 0;

  /// Raises an EFzyParseException "Parsing Error, msg in method at line n: "text"". A text of more
  /// than 255 characters is shown as its first and last 128.
  virtual void ParseError(const TString& method, const TString& msg, TString text, int lineNumber);
  /// The same with the text read so far and the current line.
  [[noreturn]] void ParseError(const TString& method, const TString& msg);
  [[noreturn]] void ParseError(const TString& method, const TString& format,
                               std::initializer_list<TFormatArg> args);
  /// The same with a message by which the fault finds its advice, about a word; without one, about
  /// the current token.
  [[noreturn]] void ParseError(const TString& method, const TMessage& message,
                               const Ref<IFuzzyStreamToken>& word = nullptr);
  [[noreturn]] void ParseError(const TString& method, const TMessage& format,
                               std::initializer_list<TFormatArg> args,
                               const Ref<IFuzzyStreamToken>& word = nullptr);

  /// Whether every token is of one of the kinds; true for an empty list, or none.
  bool VerifyAll(const Ref<IFuzzyStreamTokenList>& list, TFuzzyStreamTokenTypes allowedTypes) const;

  /// The line of the current token, and the tokens read so far; 0 and nothing between parses.
  virtual int GetLineNumber() { return 0; }
  virtual TString GetParsedText() { return {}; }

 protected:
  void Leave() override;

 private:
  friend class TKelFuzzyLogicParser;  // which fire the events
  friend struct detail::TClassModel;
  friend struct detail::TInterfaceModel;
  friend class detail::TReadingNotes;
  int ShapePoints() const noexcept { return FFuzzyLogic ? FFuzzyLogic->GetNumFunctionValues() : 7; }

  TEvent<TFuzzySetEvent> FOnParseFuzzySet;
  TEvent<TFuzzyVariableEvent> FOnParseFuzzyVariable;
  TCustomFuzzyLogic* FFuzzyLogic = nullptr;
  TEvent<TFuzzyExpressionEvent> FOnEvalExpression;
  TEvent<TCalcFuzzyFunctionEvent> FOnCalcFuzzyFunction;
  TEvent<TIFuzzySetEvent> FOnParseFuzzySetIntf;
  TEvent<TIFuzzyVariableEvent> FOnParseFuzzyVariableIntf;
  TEvent<TCalcFuzzyIntfFunctionEvent> FOnCalcFuzzyIntfFunction;
  TEvent<TIFuzzyExpressionEvent> FOnEvalExpressionIntf;
  TEvent<TNotifyEvent> FOnParsed;
  TEvent<TNotifyEvent> FOnParsing;
  TEvent<TReadingWarningEvent> FOnWarning;
  Ref<detail::TParserFace> FFace;
  const std::unique_ptr<detail::TReadingNotes> FNotes;
};

}  // namespace fzy
