#pragma once

#include "fuzzylogic/framework/Message.h"
#include "fuzzylogic/language/FuzzyLogicParserBase.h"
#include "fuzzylogic/language/FuzzyLogicTokenStream.h"

namespace fzy {

/// The parser of the definition language. It reads
///
///     (deffuzzy temperature "comment" (range 0 100) (units celsius)
///       (values (term cold ((0 1) (20 1) (40 0)))
///               (term warm "comment" (tri 20 50 80))))
///
/// into a `TFuzzyLogic`. The clauses of a variable come in any order and may repeat: a later range
/// or units overwrites, every values clause adds its terms. A term's body is a list of points or
/// the call of a shape function; the fuzzy expressions of the language are refused. Keywords and
/// names are case-sensitive.
///
/// Errors are `EFzyParseException`s with the failing step, the line and the text read so far;
/// reading stops at the first, and what was built before it stays: the half-read variable too.
/// Nothing at the top level of a text is passed over. Entry points may be called from the parser's
/// own events. Time is linear in the text; nothing recurses.
class TKelFuzzyLogicParser : public TCustomFuzzyLogicParser {
 public:
  explicit TKelFuzzyLogicParser(TComponent* owner = nullptr) : TCustomFuzzyLogicParser(owner) {}
  ~TKelFuzzyLogicParser() override { Destroying(); }
  TString ClassName() const override { return "TKelFuzzyLogicParser"; }

  // Entry points. Each reads its text with a tokenizer of its own, by the given encoding (UTF-8 for
  // none, which loses nothing).

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

  /// @throws EFzyParseException always: definition text is read only, so far
  TString PrettyPrint(TFuzzyVariable* fuzzyVariable) override;

  // Reading steps, on the tokenizer of the innermost entry point that runs. For descendants.
  // Between parses they raise an EFzyParseException (`SFzyNoText`).

  virtual std::unique_ptr<TFuzzyLogicTokenStream> CreateStream(std::unique_ptr<TStream> stream,
                                                               const TEncoding* encoding);
  virtual void ParseFuzzyLogic();
  virtual TFuzzyVariable* ParseFuzzyVariable();
  virtual TFuzzySet* ParseFuzzySet(TFuzzyVariable* variable);
  virtual TFuzzySet* ParseFuzzyValues(TFuzzyVariable* variable);
  virtual TFuzzySet* ParseFuzzyValuePairs(TFuzzyVariable* variable);
  virtual TFuzzySet* ParseFuzzyFunction(TFuzzyVariable* variable);
  /// The head "( keyword name" with an optional comment; returns the token behind it.
  virtual Ref<IFuzzyStreamToken> ParseHeader(TString& name, TString& comment, bool allowComment,
                                             const TString& keyword, const TString& method,
                                             const TMessage& errorMsg);
  /// The tokens up to the end of the current group, nested groups as list tokens; the closing ")"
  /// stays.
  Ref<IFuzzyStreamTokenList> ParseTokenList();
  /// Fills a set from a list of point groups.
  TFuzzySet* ConvertListToValues(TFuzzySet* fuzzySet, const Ref<IFuzzyStreamTokenList>& list);
  /// "FuzzySet" and the next number of the process.
  TString GetUniqueName() const;

  int GetLineNumber() override;
  TString GetParsedText() override;

  /// The tokenizer of the parse under way, or nothing.
  TFuzzyLogicTokenStream* GetStream() const noexcept { return FStream; }

 private:
  class TStreamFrame;
  TFuzzyLogicTokenStream& Stream() const;

  TFuzzyLogicTokenStream* FStream = nullptr;
};

}  // namespace fzy
