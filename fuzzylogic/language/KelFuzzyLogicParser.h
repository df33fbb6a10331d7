#pragma once

#include "fuzzylogic/framework/InterfaceList.h"
#include "fuzzylogic/framework/Message.h"
#include "fuzzylogic/language/FuzzyLogicParserBase.h"
#include "fuzzylogic/language/FuzzyLogicTokenStream.h"

namespace fzy {
namespace detail {
class TStreamFrame;
}

/// The parser of the definition language. It reads
///
///     (deffuzzy temperature "comment" (range 0 100) (units celsius)
///       (values (term cold ((0 1) (20 1) (40 0)))
///               (term warm "comment" (tri 20 50 80))
///               (term hot very [warm or cold] and not cold)))
///
/// into a `TFuzzyLogic` or a `TIFuzzyLogic`, whichever it is linked to, and writes it. The clauses
/// of a variable come in any order and may repeat: a later range or units overwrites, every values
/// clause adds its terms. A term's body is a list of points, the call of a shape function, or a
/// fuzzy expression over the terms before it. Keywords and names are case-sensitive.
///
/// Errors are `EFzyParseException`s with the failing step, the line and the text read so far;
/// reading stops at the first, and what was built before it stays: in the owned model the half-read
/// variable too, while in the counted one a variable enters the component when it is complete.
/// `GetFault` tells the place of any error, those of sets and variables included, and what may
/// help; `GetWarnings` what was read silently though it was hardly meant.
///
/// Nothing at the top level of a text is passed over. Entry points may be called from the parser's
/// own events. Time is linear in the text; nothing recurses.
///
/// Operations stand here twice, for the owned and the counted model. They do the same in both, but
/// for what is said: in the counted model a list's points are added with both coordinates at once,
/// so a step up from 0 keeps its foot, a fourth point of one X stays, and every X is clamped into
/// the range; results of expressions are rid of duplicates of degree 0, too, and then of the fifth
/// point of one X; terms keep the expression that they were read from; nothing can be freed by a
/// handler meanwhile, so that there always is a result.
class TKelFuzzyLogicParser : public TCustomFuzzyLogicParser {
 public:
  static TComponentClass Class();
  explicit TKelFuzzyLogicParser(TComponent* owner = nullptr) : TCustomFuzzyLogicParser(owner) {}
  ~TKelFuzzyLogicParser() override { Destroying(); }
  TString ClassName() const override { return "TKelFuzzyLogicParser"; }
  void DefineProperties(TFiler& filer) override;

  // Entry points. Each reads its text with a tokenizer of its own, by the given encoding (UTF-8 for
  // none, which loses nothing but unpaired surrogates).

  /// A whole definition text, into the linked component.
  /// @throws EFzyParseException (`SFuzzyLogicNotSet`) without one
  void ParseFuzzyLogic(const TString& text, const TEncoding* encoding) override;
  /// One variable; it belongs to the component. Nothing is returned when a handler freed it. With
  /// automatic terms on, it stands outside the component while it is filled, and gets those terms
  /// that its text does not define when it is put back.
  /// @throws EFzyParseException likewise, and (`SFuzzyLogicNotTFuzzyLogic`) for another component
  TFuzzyVariable* ParseFuzzyVariable(const TString& text, const TEncoding* encoding) override;
  /// One term, into the given variable, which owns it. Nothing is returned when a handler freed it.
  /// @throws EFzyParseException (`SFzyUndefinedVariable`) without a variable
  TFuzzySet* ParseFuzzySet(TFuzzyVariable* variable, const TString& text,
                           const TEncoding* encoding) override;
  /// One variable, into the component's table, where it takes the place of one of its name.
  /// @throws EFzyParseException likewise, and (`SFuzzyLogicNotTIFuzzyLogic`) for another component
  Ref<IFuzzyVariable> ParseFuzzyVariableIntf(const TString& text,
                                             const TEncoding* encoding) override;
  Ref<IFuzzySet> ParseFuzzySet(const Ref<IFuzzyVariable>& variable, const TString& text,
                               const TEncoding* encoding) override;

  // Fuzzy expressions. Operands are the names of terms of the variable (of sets that an evaluation
  // left, where there is no such term), numbers (crisp sets),
  // ?names (the text that the component's `Variables` hold under the name, evaluated in turn; empty
  // when they hold none), groups in parentheses (a shape call or a list of points), and nothing at
  // all (the set "__Empty"). Hedges stand before an operand and bind tightest, the nearest applies
  // first; keywords ("and", "or" and their variants) and hedge operators ("^", "+X") stand between
  // two and group from the left; "[" and "]" group. A hedge operator takes its right operand as one
  // number: the number itself where one is written, whatever the range, else the mean of maxima.
  //
  // Sets made on the way are added to the variable, not defined, and stay there, after an error
  // too; a caller that evaluates often frees them. A term of the variable is never changed: hedges
  // work on a copy, and an expression that is just the name of a term gives a copy of it. After
  // each evaluation (those of ?names included) `OnEvalExpression` may replace the result. Nothing
  // is returned when a handler freed a set that is needed.
  //
  // Time is linear in the expression, besides what the operations on the sets cost; but names and
  // expressions of derived sets hold those of their operands, so a chain of n operators makes texts
  // of n^2 characters in all: megabytes for a thousand. One set may have 2^20 characters and one
  // call may make 2^27 (`SFzyExpressionTooLarge`); in the counted model terms keep their
  // expressions, so twenty terms that each name the one before twice come to that. Nothing
  // recurses.
  //
  // In the counted model the sets made on the way belong to the variable and some of them (numbers,
  // groups, copies) stand in its table, where a set under the same name takes their place; they
  // never take the place of a term.
  //
  // Each raises EFzyParseExceptions from the step "EvalFuzzyExpression": `SFzyUndefinedVariable`
  // without a variable, `SFzyMissingOperand`, `SFzyInvalidToken` (an unknown term among others),
  // `SFzyUnmatchedBracket`, `SFzyCircularVariable` for a ?name that needs itself,
  // `SFzyNestedVariables` for ?names more than 1000 deep, `SFuzzyLogicNotSet` for a ?name without a
  // component; and EFzyException as the operations on sets do.

  /// Evaluates a text, up to its end or an unmatched ")".
  TFuzzySet* EvalFuzzyExpression(TFuzzyVariable* variable, const TString& expression) override;
  /// The same; the result is the set's mean of maxima where the component has that method, else its
  /// centre of gravity; 0 without a set.
  TFzyFloat EvalFuzzyExpression(TFuzzyVariable* variable, const TString& expression,
                                TFuzzySet*& fuzzySet) override;
  Ref<IFuzzySet> EvalFuzzyExpression(const Ref<IFuzzyVariable>& variable,
                                     const TString& expression) override;
  TFzyFloat EvalFuzzyExpression(const Ref<IFuzzyVariable>& variable, const TString& expression,
                                Ref<IFuzzySet>& fuzzySet) override;
  /// Evaluates tokens; the list is in postfix order afterwards, and its shape calls have lost the
  /// name of the function.
  TFuzzySet* EvalFuzzyExpression(TFuzzyVariable* variable, const Ref<IFuzzyStreamTokenList>& list);
  Ref<IFuzzySet> EvalFuzzyExpression(const Ref<IFuzzyVariable>& variable,
                                     const Ref<IFuzzyStreamTokenList>& list);
  /// The set of one operand. Unlike the others this gives a term itself.
  TFuzzySet* EvalFuzzyExpression(TFuzzyVariable* variable, const Ref<IFuzzyStreamToken>& token);
  Ref<IFuzzySet> EvalFuzzyExpression(const Ref<IFuzzyVariable>& variable,
                                     const Ref<IFuzzyStreamToken>& token);

  // What an item is when an expression is put in postfix order. Priorities: a lower number binds
  // tighter, while the item is stacked and when it arrives.
  bool IsOpenParen(const Ref<IInterface>& item) const;
  bool IsCloseParen(const Ref<IInterface>& item) const;
  bool IsOperand(const Ref<IInterface>& item) const;
  int InStackPriority(const Ref<IInterface>& item) const;
  int IncomingPriority(const Ref<IInterface>& item) const;
  /// Adds the tokens of a list, and of the lists in it, to `tokenList`.
  /// @throws EConvertError for an item that is neither
  void FillExpression(const Ref<IInterfaceList>& list,
                      const Ref<IFuzzyStreamTokenList>& tokenList) const;

  // Writing. Definition text is written so that this parser, linked to the same component, reads it
  // back as the same model, and writes that again to the letter. Numbers have a point in every
  // locale and four decimals, or with `FullPrecision` as many as give the same bits back. Four
  // decimals lose what is smaller: a coordinate moves by up to 0.00005, and what lies closer
  // together falls together (a range from 0 to 0.00004, a triangle within it). In either form a
  // list of points is read with the tolerance of 0.0001 in X, so curves finer than that come back
  // coarser. What belongs to no text is not written: the threshold, the tags, the current set, and
  // the inflection point of anything but a bell.
  //
  // A term takes the first of these forms that gives its points back: the call of the shape
  // function that made it, with the component's present number of points; the expression that it
  // was read from; its expression; the list of its points, of those that share an X the first, the
  // highest and the last; the same list raised by 1 as "[((0 1) (9 1) (9 2))] - 1", because a list
  // as it is read loses a step up from 0 (with `FullPrecision` raised by as much as rounds no
  // degree). It is its points where none does.
  //
  // A name is written as one word, with characters escaped that would end it; comments are quoted,
  // and units where they need it. A name that no word gives back is refused: an empty one, one that
  // begins with a blank, a "?" or one of ( ) [ ] = & | ~ " ; or that reads as a number, and for a
  // term a reserved word or "__Empty". A component with automatic terms adds those that a text
  // leaves out. Changing `FullPrecision` does not make a component's text anew by itself.
  //
  // Nobody is told of anything. A term takes up to three times as long as to read it, and one with
  // an expression, written alone, as long as all terms up to it.

  /// The definition text of a variable, with those of its sets that are defined.
  /// @throws EFzyException (`SFzyNameNotWritable`); EFzyParseException (`SFzyUndefinedVariable`)
  ///   without a variable
  TString PrettyPrint(const TFuzzyVariable* fuzzyVariable) override;
  /// The definition text of a set: "(term name "comment" body)", or without a name (or with the
  /// name "__Empty") the body alone. A set that is no term of a variable is written without the
  /// check that it reads back: by its shape, or its expression unless that is its own name, or its
  /// points; its expression is taken as it stands. Otherwise, what is shown of it: its name, or
  /// without one its expression.
  /// @throws EFzyException (`SFzyNameNotWritable`, and `SFzySetMissing` without a set)
  TString PrettyPrint(const TFuzzySet* fuzzySet, bool asDefinition) override;
  /// The same of the counted model. Terms are written in the order of their indices. A set of
  /// another class than the library's has no expression that it was read from.
  TString PrettyPrint(const Ref<IFuzzyVariable>& fuzzyVariable) override;
  /// What is shown of a set without a name is an empty text.
  TString PrettyPrint(const Ref<IFuzzySet>& fuzzySet, bool asDefinition) override;
  /// Whether numbers are written with all their digits; false at first.
  bool GetFullPrecision() const noexcept { return FFullPrecision; }
  void SetFullPrecision(bool value) noexcept { FFullPrecision = value; }

  // Reading steps, on the tokenizer of the innermost entry point that runs. For descendants.
  // Between parses they raise an EFzyParseException (`SFzyNoText`), and without a variable
  // (`SFzyUndefinedVariable`).

  virtual std::unique_ptr<TFuzzyLogicTokenStream> CreateStream(std::unique_ptr<TStream> stream,
                                                               const TEncoding* encoding);
  virtual void ParseFuzzyLogic();
  virtual TFuzzyVariable* ParseFuzzyVariable();
  virtual TFuzzySet* ParseFuzzySet(TFuzzyVariable* variable);
  virtual TFuzzySet* ParseFuzzyValues(TFuzzyVariable* variable);
  virtual TFuzzySet* ParseFuzzyValuePairs(TFuzzyVariable* variable);
  virtual TFuzzySet* ParseFuzzyFunction(TFuzzyVariable* variable);
  virtual Ref<IFuzzyVariable> ParseFuzzyVariableIntf();
  virtual Ref<IFuzzySet> ParseFuzzySet(const Ref<IFuzzyVariable>& variable);
  virtual Ref<IFuzzySet> ParseFuzzyValues(const Ref<IFuzzyVariable>& variable);
  virtual Ref<IFuzzySet> ParseFuzzyValuePairs(const Ref<IFuzzyVariable>& variable);
  virtual Ref<IFuzzySet> ParseFuzzyFunction(const Ref<IFuzzyVariable>& variable);
  /// The head "( keyword name" with an optional comment; returns the token behind it.
  virtual Ref<IFuzzyStreamToken> ParseHeader(TString& name, TString& comment, bool allowComment,
                                             const TString& keyword, const TString& method,
                                             const TMessage& errorMsg);
  /// The tokens up to the end of the current group, nested groups as list tokens; the closing ")"
  /// stays.
  Ref<IFuzzyStreamTokenList> ParseTokenList();
  /// Fills a set from a list of point groups.
  TFuzzySet* ConvertListToValues(TFuzzySet* fuzzySet, const Ref<IFuzzyStreamTokenList>& list);
  Ref<IFuzzySet> ConvertListToValues(const Ref<IFuzzySet>& fuzzySet,
                                     const Ref<IFuzzyStreamTokenList>& list);
  /// "FuzzySet" and the next number of the process.
  TString GetUniqueName() const;

  int GetLineNumber() override;
  TString GetParsedText() override;

  /// The tokenizer of the parse under way, or nothing.
  TFuzzyLogicTokenStream* GetStream() const noexcept { return FStream; }

 private:
  friend class detail::TStreamFrame;
  TFuzzyLogicTokenStream& Stream() const;
  Ref<IFuzzyStreamToken> ParseVariableHeader(TString& name, TString& comment);

  TFuzzyLogicTokenStream* FStream = nullptr;
  bool FFullPrecision = false;
};

}  // namespace fzy
