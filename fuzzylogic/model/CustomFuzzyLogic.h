#pragma once

#include <functional>

#include "fuzzylogic/framework/Component.h"
#include "fuzzylogic/framework/Encoding.h"
#include "fuzzylogic/framework/Event.h"
#include "fuzzylogic/framework/FirstException.h"
#include "fuzzylogic/framework/Strings.h"
#include "fuzzylogic/framework/UpdateBlock.h"
#include "fuzzylogic/vocabulary/FuzzyTypes.h"

namespace fzy {

class TFuzzySet;
class TFuzzyVariable;

using TFuzzySetEvent = std::function<void(TObject* sender, TFuzzySet* fuzzySet)>;
using TFuzzyVariableEvent = std::function<void(TObject* sender, TFuzzyVariable* fuzzyVariable)>;
using TFuzzyVariableSetEvent =
    std::function<void(TObject* sender, TFuzzyVariable* fuzzyVariable, TFuzzySet* fuzzySet)>;
/// The handler may replace the result.
using TFuzzyExpressionEvent = std::function<void(TObject* sender, TFuzzyVariable* fuzzyVariable,
                                                 const TString& expression, TFuzzySet*& result)>;

/// What a component knows of the parser it is linked to.
class TFuzzyTextParser : public TComponent {
 public:
  /// Reads a whole definition text into the component that the parser names.
  virtual void Parse(const TString& text, const TEncoding* encoding) = 0;
  /// The definition text of a variable.
  virtual TString PrettyPrint(const TFuzzyVariable* fuzzyVariable) = 0;
  /// The definition text of a set, or what is shown of it.
  virtual TString PrettyPrint(const TFuzzySet* fuzzySet, bool asDefinition) = 0;

 protected:
  using TComponent::TComponent;
};

/// What the fuzzy-logic components share: the settings that sets and variables consult, the
/// definition text of the whole model, and the link to a parser (weak: not owned, and cleared when
/// the parser goes; the parser's own link to a component is another one).
///
/// Changing a method takes effect at the next operation and tells nobody.
class TCustomFuzzyLogic : public TComponent {
 public:
  explicit TCustomFuzzyLogic(TComponent* owner = nullptr);
  ~TCustomFuzzyLogic() override;

  TFuzzyCorrelationMethod GetCorrelationMethod() const noexcept { return FCorrelationMethod; }
  void SetCorrelationMethod(TFuzzyCorrelationMethod value) noexcept { FCorrelationMethod = value; }
  TFuzzyInferenceMethod GetInferenceMethod() const noexcept { return FInferenceMethod; }
  void SetInferenceMethod(TFuzzyInferenceMethod value) noexcept { FInferenceMethod = value; }
  TDefuzzificationMethod GetDefuzzificationMethod() const noexcept {
    return FDefuzzificationMethod;
  }
  void SetDefuzzificationMethod(TDefuzzificationMethod value) noexcept {
    FDefuzzificationMethod = value;
  }
  /// The most points of a shape that the component can be set to.
  static constexpr int MostFunctionValues = 1'000'000;
  /// Points of the shapes that sets generate when their type is set, and that a definition text
  /// calls; 7 at first. Clamped to [2, `MostFunctionValues`], also when it is loaded.
  int GetNumFunctionValues() const noexcept { return FNumFunctionValues; }
  void SetNumFunctionValues(int value) noexcept;
  /// The threshold of every variable, clamped to [0, 1]; 0.01 at first. Setting overwrites those
  /// set on single variables.
  /// @throws EFzyException when the value is not a number
  TFzyFloat GetThreshold() const noexcept { return FThreshold; }
  void SetThreshold(TFzyFloat value);
  /// Whether every variable that joins gets the terms "low", "medium" and "high"; true at first.
  bool GetAutoTerms() const noexcept { return FAutoTerms; }
  void SetAutoTerms(bool value) noexcept { FAutoTerms = value; }

  TFuzzyTextParser* GetParser() const noexcept { return FParser; }
  void SetParser(TFuzzyTextParser* value);

  /// The definition text. After a change of the model it is regenerated first (`UpdateStrings`).
  /// @throws EFzyException (`SParserUnassigned`) when that needs a parser and there is none
  TStrings* GetStrings();
  /// Copies the text and parses it: the model is rebuilt at once.
  /// @throws as `Parse`; the text is assigned nevertheless. In the owned model what was built
  /// before
  ///   an error is a change of the model, so that the next reading of the text gives that; the
  ///   counted one keeps the text until a set changes
  void SetStrings(TStrings* value);
  /// The same from one text.
  void SetStrings(const TString& text);
  /// Entries name=value, without regard to case, that expressions may name as ?name.
  TStrings* GetVariables() noexcept { return &FVariables; }
  void SetVariables(TStrings* value) { FVariables.Assign(value); }

  const TNotifyEvent& GetOnChange() const noexcept { return FOnChange; }
  void SetOnChange(TNotifyEvent value) { FOnChange = std::move(value); }

  void Notification(TComponent* component, TOperation operation) override;
  void DefineProperties(TFiler& filer) override;

  /// Regenerates the text from the model; the base only sees to flag and parser. While loading
  /// nothing is regenerated. A failure leaves the old text, still marked for regeneration.
  /// @throws EFzyException (`SParserUnassigned`)
  virtual void UpdateStrings();
  /// Hands the text to the parser, as it was set: lines, and that of its end, are numbered as they
  /// are when the parser gets the text itself. While loading nothing happens.
  /// @throws EFzyException (`SParserUnassigned`); the parser's EFzyParseException passes unchanged
  virtual void Parse();

 protected:
  /// The component's threshold has changed.
  virtual void ThresholdChanged() {}

  void Leave() override;

  /// Brings the text up to date before it is stored.
  virtual void RefreshText() { GetStrings(); }
  void RequireParser() const;
  void ParseText(const TString& text);
  /// Lets the old model go by `clear()` and has the text parsed that was assigned before, whatever
  /// handlers do to it meanwhile.
  template <class Clear>
  void Rebuild(Clear clear);
  /// Replaces the text by the lines that `write(lines)` makes; a failure leaves it as it was, still
  /// marked for regeneration.
  template <class Write>
  void Regenerate(Write write);
  /// Whether the model changed since the text was last generated or parsed.
  bool NeedsUpdate() const noexcept { return FNeedsUpdate; }
  void SetNeedsUpdate(bool value) noexcept { FNeedsUpdate = value; }
  void FireChange();

 private:
  void StoreThreshold(TFzyFloat value);

  int FNumFunctionValues = 7;
  TEvent<TNotifyEvent> FOnChange;
  TDefuzzificationMethod FDefuzzificationMethod = dmCenterOfGravity;
  TFuzzyTextParser* FParser = nullptr;
  TStrings FStrings;
  bool FNeedsUpdate = false;
  TStrings FVariables;
  bool FAutoTerms = true;
  TFuzzyCorrelationMethod FCorrelationMethod = fcmMinimum;
  TFuzzyInferenceMethod FInferenceMethod = fimMinMax;
  TFzyFloat FThreshold = 0.01;
};

template <class Clear>
void TCustomFuzzyLogic::Rebuild(Clear clear) {
  const TPin self(this);
  const TString text = FStrings.GetGivenText();
  TFirstException first;
  first.Run(clear);
  if (FStrings.GetGivenText() != text) FStrings.SetText(text);
  FNeedsUpdate = false;
  if (!IsFreed()) first.Run([&] { ParseText(text); });
  first.Rethrow();
}

template <class Write>
void TCustomFuzzyLogic::Regenerate(Write write) {
  const TPin self(this);
  try {
    TStrings lines;
    write(lines);
    TUpdateBlock block(FStrings);
    FStrings.Assign(&lines);
    block.Close();
  } catch (...) {
    FNeedsUpdate = true;
    throw;
  }
}

}  // namespace fzy
